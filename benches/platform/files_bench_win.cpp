// Reading records of a shared file: the guarded copy out of the map against an unguarded one, and
// against a seek and a read for each record.
#include <windows.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "benches/bench.h"
#include "platform/files_win.h"
#include "platform/handle_win.h"
#include "platform/shared_reader_win.h"

using namespace demovex;

namespace {

constexpr std::size_t kRecord = 54;
constexpr std::size_t kRecords = 1'000'000;
constexpr int kReads = 20'000;

std::wstring MakeFile() {
    wchar_t folder[MAX_PATH + 1];
    GetTempPathW(MAX_PATH + 1, folder);
    const std::wstring path = std::wstring(folder) + L"demovex-bench.db";
    WinFileSystem files;
    if (files.Exists(path)) files.Delete(path);
    auto file = files.CreateNew(path);
    const std::string line = std::string(kRecord - 2, 'x') + "\r\n";
    std::string block;
    for (int i = 0; i < 10'000; ++i) block += line;
    for (std::size_t i = 0; i < kRecords; i += 10'000) file->Write(block);
    file->Close();
    return path;
}

void ReadAll(WinSharedReader& reader, const std::vector<std::uint64_t>& places,
             std::size_t length) {
    for (std::uint64_t place : places) bench::Keep(reader.Read(place, length).front());
}

void Reads(const std::wstring& path) {
    std::mt19937 random(1);
    std::vector<std::uint64_t> places;
    for (int i = 0; i < kReads; ++i) places.push_back(random() % kRecords * kRecord);

    WinSharedReader mapped(path, {});
    WinSharedReader by_windows(path, {.map = true, .whole_limit = 1});
    WinSharedReader direct(path, {.map = false});
    const UniqueHandle file = OwnFile(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ,
                                                  nullptr, OPEN_EXISTING, 0, nullptr));
    const UniqueHandle section(
        CreateFileMappingW(file.get(), nullptr, PAGE_READONLY, 0, 0, nullptr));
    const UniqueView view(MapViewOfFile(section.get(), FILE_MAP_READ, 0, 0, 0));
    const char* bytes = static_cast<const char*>(view.get());

    for (const std::size_t length : {std::size_t{10}, std::size_t{52}}) {
        const std::string name = "reading " + std::to_string(length) + " bytes of a record, ";
        const auto unguarded = [&] {
            char copy[64];
            for (std::uint64_t place : places) {
                std::memcpy(copy, bytes + place, length);
                bench::Keep(copy[0]);
            }
        };
        bench::Compare(name + "mapped", {"ours", [&] { ReadAll(mapped, places, length); }},
                       {"unguarded", unguarded},
                       {.runs = 9, .operations = kReads, .bar = "what the guard costs"});
        bench::Compare(name + "mapped", {"ours", [&] { ReadAll(mapped, places, length); }},
                       {"seek and read", [&] { ReadAll(direct, places, length); }},
                       {.runs = 5, .operations = kReads, .bar = "at least 1"});
    }
    bench::Compare("reading 10 bytes, by windows of 4 MB, random places",
                   {"ours", [&] { ReadAll(by_windows, places, 10); }},
                   {"seek and read", [&] { ReadAll(direct, places, 10); }},
                   {.runs = 5, .operations = kReads, .bar = "at least 1"});
}

void Opening(const std::wstring& path) {
    WinFileSystem files;
    bench::Measure("opening a file of 54 MB for shared reading",
                   [&] {
                       for (int i = 0; i < 100; ++i) bench::Keep(files.OpenShared(path)->Size());
                   },
                   {.operations = 100, .bar = "no byte read"});
}

}  // namespace

int main() {
    const std::wstring path = MakeFile();
    Reads(path);
    Opening(path);
    DeleteFileW(path.c_str());
}
