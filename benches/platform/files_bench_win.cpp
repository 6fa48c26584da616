// Reading records of a shared file: the reader against a bare map without any check, and against a
// seek and a read for each record.
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
constexpr int kSearches = 500;

std::wstring MakeFile() {
    wchar_t folder[MAX_PATH + 1];
    GetTempPathW(MAX_PATH + 1, folder);
    const std::wstring path = std::wstring(folder) + L"demovex-bench.db";
    WinFileSystem files;
    if (files.Exists(path)) files.Delete(path);
    auto file = files.CreateNew(path);
    std::string block;
    for (std::size_t i = 0; i < kRecords; ++i) {
        std::string line = std::to_string(1'000'000'000 + i * 7);
        line.resize(kRecord - 2, 'x');
        block += line + "\r\n";
        if ((i + 1) % 10'000 == 0) {
            file->Write(block);
            block.clear();
        }
    }
    file->Close();
    return path;
}

// A search by halving for random numbers of the file; `read` gives the bytes at an offset.
template <typename Read>
void Search(const std::vector<std::size_t>& wanted, Read&& read) {
    for (std::size_t target : wanted) {
        const std::string key = std::to_string(1'000'000'000 + target * 7);
        std::size_t low = 0, high = kRecords;
        while (low + 1 < high) {
            const std::size_t middle = (low + high) / 2;
            if (std::memcmp(read(middle * kRecord), key.data(), 10) <= 0) {
                low = middle;
            } else {
                high = middle;
            }
        }
        bench::Keep(low);
    }
}

void Searches(const std::wstring& path) {
    std::mt19937 random(1);
    std::vector<std::size_t> wanted;
    for (int i = 0; i < kSearches; ++i) wanted.push_back(random() % kRecords);

    WinSharedReader mapped(path, {});
    WinSharedReader by_windows(path, {.map = true, .whole_limit = 1});
    WinSharedReader direct(path, {.map = false});
    const UniqueHandle file = OwnFile(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ,
                                                  nullptr, OPEN_EXISTING, 0, nullptr));
    const UniqueHandle section(
        CreateFileMappingW(file.get(), nullptr, PAGE_READONLY, 0, 0, nullptr));
    const void* view = MapViewOfFile(section.get(), FILE_MAP_READ, 0, 0, 0);
    const char* bytes = static_cast<const char*>(view);

    const auto search = [&](WinSharedReader& reader, std::size_t length) {
        return [&wanted, &reader, length] {
            Search(wanted, [&](std::uint64_t place) { return reader.Read(place, length).data(); });
        };
    };
    for (const std::size_t length : {std::size_t{10}, std::size_t{52}}) {
        char copy[64];
        const auto bare = [&] {
            Search(wanted, [&](std::uint64_t place) {
                std::memcpy(copy, bytes + place, length);
                return copy;
            });
        };
        bench::Compare("halving 1,000,000 records, " + std::to_string(length) + " bytes a read",
                       {"ours", search(mapped, length)}, {"bare map", bare},
                       {.runs = 61, .operations = kSearches, .bar = "what the checks cost"});
    }
    bench::Options options{.runs = 31, .operations = kSearches, .bar = "at least 1"};
    bench::Compare("the same, 10 bytes", {"ours", search(mapped, 10)},
                   {"seek and read", search(direct, 10)}, options);
    bench::Compare("the same, by windows of 4 MB", {"ours", search(by_windows, 10)},
                   {"seek and read", search(direct, 10)}, options);
    UnmapViewOfFile(view);
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
    Searches(path);
    Opening(path);
    DeleteFileW(path.c_str());
}
