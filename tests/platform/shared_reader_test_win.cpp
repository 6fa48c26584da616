#include "platform/shared_reader_win.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>
#include <random>

#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"
#include "tests/support/unix_command_win.h"
#include "tests/support/wait_until.h"

namespace demovex {
namespace {

// Bytes that tell their own place.
std::string Pattern(std::uint64_t offset, std::size_t length) {
    std::string bytes;
    for (std::size_t i = 0; i < length; ++i) {
        const std::uint64_t at = offset + i;
        bytes += static_cast<char>('A' + (at / 7 + at / 4096 + at / 1000003) % 26);
    }
    return bytes;
}

// Mapped with the first read.
constexpr SharedReadPolicy kAtOnce{.reads_before_mapping = 0};

struct SharedReader : testing::Test {
    TempFolder folder;

    std::wstring PutPattern(std::size_t size) { return folder.Put(L"data", Pattern(0, size)); }

    void WriteAt(std::uint64_t offset, std::string_view bytes) {
        const UniqueHandle file = OwnFile(CreateFileW((folder / L"data").c_str(), GENERIC_WRITE,
                                                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                                      OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(file) << GetLastError();
        SetFilePointer(file.get(), static_cast<LONG>(offset), nullptr, FILE_BEGIN);
        DWORD written = 0;
        ASSERT_TRUE(WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written,
                              nullptr));
    }

    // What another system on the network could do at any time.
    void CutFromOutside(std::uint64_t size) {
        const std::string path = UnixPath(folder / L"data");
        ASSERT_TRUE(StartUnix("truncate -s " + std::to_string(size) + " '" + path + "'"));
        ASSERT_TRUE(WaitUntil([&] {
            WIN32_FILE_ATTRIBUTE_DATA data{};
            return GetFileAttributesExW((folder / L"data").c_str(), GetFileExInfoStandard, &data) &&
                   data.nFileSizeLow == size;
        }));
    }
};

TEST_F(SharedReader, ReadsAnyPlaceFromTheMap) {
    WinSharedReader reader(PutPattern(1'000'000), kAtOnce);
    EXPECT_EQ(reader.Size(), 1'000'000u);
    EXPECT_EQ(reader.mapped_views(), 0);  // opening touches nothing
    std::mt19937 random(1);
    for (int i = 0; i < 20'000; ++i) {
        const std::size_t length = random() % 60;
        const std::uint64_t offset = random() % (1'000'000 - 60);
        ASSERT_EQ(reader.Read(offset, length), Pattern(offset, length));
    }
    EXPECT_EQ(reader.mapped_views(), 1);
    EXPECT_EQ(reader.direct_reads(), 0);
    EXPECT_EQ(reader.Read(999'946, 54), Pattern(999'946, 54));
    EXPECT_EQ(reader.Read(999'999, 1), Pattern(999'999, 1));
    EXPECT_EQ(reader.Read(1'000'000, 0), "");
    EXPECT_EQ(reader.Read(5, 500'000), Pattern(5, 500'000));
}

TEST_F(SharedReader, MapsOnlyWhatIsReadALot) {
    const std::wstring path = PutPattern(100'000);
    WinSharedReader reader(path, {});
    for (int i = 0; i < 60; ++i) reader.Read(static_cast<std::uint64_t>(i) * 54, 54);
    EXPECT_EQ(reader.mapped_views(), 0);
    {  // a few look-ups keep nobody from writing a new file into this one
        const UniqueHandle file =
            OwnFile(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                nullptr, OPEN_EXISTING, 0, nullptr));
        SetFilePointer(file.get(), 90'000, nullptr, FILE_BEGIN);
        EXPECT_TRUE(SetEndOfFile(file.get())) << GetLastError();
        SetFilePointer(file.get(), 100'000, nullptr, FILE_BEGIN);
        EXPECT_TRUE(SetEndOfFile(file.get()));
    }
    for (int i = 0; i < 60; ++i) reader.Read(static_cast<std::uint64_t>(i) * 54, 54);
    EXPECT_EQ(reader.mapped_views(), 1);
    EXPECT_EQ(reader.direct_reads(), 64);
}

TEST_F(SharedReader, ReadsLargeFilesByWindows) {
    const std::size_t size = 90'000'000;
    WinSharedReader reader(PutPattern(size), {.reads_before_mapping = 0, .whole_limit = 1});
    std::mt19937 random(1);
    for (int i = 0; i < 3'000; ++i) {
        const std::uint64_t offset = random() % (size - 54);
        ASSERT_EQ(reader.Read(offset, 54), Pattern(offset, 54));
    }
    // across the border of two windows, and at the end
    for (std::uint64_t at = 4u * 1024 * 1024 - 60; at < 4u * 1024 * 1024 + 6; ++at) {
        ASSERT_EQ(reader.Read(at, 54), Pattern(at, 54));
    }
    EXPECT_EQ(reader.Read(size - 54, 54), Pattern(size - 54, 54));
    EXPECT_EQ(reader.mapped_views(), 16);
    EXPECT_LE(reader.direct_reads(), 1);
}

TEST_F(SharedReader, ReadsRecordByRecordWhereNothingIsMapped) {
    WinSharedReader reader(PutPattern(100'000), {.map = false});
    std::mt19937 random(1);
    for (int i = 0; i < 2'000; ++i) {
        const std::uint64_t offset = random() % (100'000 - 54);
        ASSERT_EQ(reader.Read(offset, 54), Pattern(offset, 54));
    }
    EXPECT_EQ(reader.direct_reads(), 2'000);
    EXPECT_EQ(reader.mapped_views(), 0);
}

TEST_F(SharedReader, GivesZeroBytesAsTheyAre) {
    std::string bytes = Pattern(0, 4096);
    bytes[100] = '\0';
    bytes[101] = '\0';
    bytes[253] = '\0';
    WinSharedReader reader(folder.Put(L"data", bytes), kAtOnce);
    EXPECT_EQ(reader.Read(90, 54), bytes.substr(90, 54));
    EXPECT_EQ(reader.Read(200, 54), bytes.substr(200, 54));
    EXPECT_EQ(reader.Read(200, 53), bytes.substr(200, 53));
    EXPECT_EQ(reader.Read(0, 4096), bytes);
    EXPECT_EQ(reader.Read(4095, 1), bytes.substr(4095, 1));
}

TEST_F(SharedReader, RaisesDeviceErrorBehindTheEnd) {
    for (bool map : {true, false}) {
        WinSharedReader reader(PutPattern(100), {.map = map, .reads_before_mapping = 0});
        EXPECT_EQ(RaisedBy([&] { reader.Read(47, 54); }), 57);
        EXPECT_EQ(RaisedBy([&] { reader.Read(100, 1); }), 57);
        EXPECT_EQ(RaisedBy([&] { reader.Read(~std::uint64_t{0}, 54); }), 57);
        EXPECT_EQ(reader.Read(46, 54), Pattern(46, 54));
    }
    WinSharedReader empty(folder.Put(L"empty", ""), kAtOnce);
    EXPECT_EQ(empty.Size(), 0u);
    EXPECT_EQ(empty.Read(0, 0), "");
    EXPECT_EQ(RaisedBy([&] { empty.Read(0, 1); }), 57);
}

TEST_F(SharedReader, SeesWhatOthersWriteInPlace) {
    for (bool map : {true, false}) {
        WinSharedReader reader(PutPattern(10'000), {.map = map, .reads_before_mapping = 0});
        EXPECT_EQ(reader.Read(5'000, 10), Pattern(5'000, 10));
        WriteAt(5'000, "9999999999");
        EXPECT_EQ(reader.Read(5'000, 10), "9999999999");
        EXPECT_EQ(reader.Read(4'990, 10), Pattern(4'990, 10));
    }
}

TEST_F(SharedReader, RaisesDeviceErrorWhenAnotherProgramCutsTheFile) {
    WinSharedReader reader(PutPattern(10'000), {.map = false});
    EXPECT_EQ(reader.Read(9'000, 54), Pattern(9'000, 54));
    {
        const UniqueHandle file = OwnFile(CreateFileW((folder / L"data").c_str(), GENERIC_WRITE,
                                                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                                      OPEN_EXISTING, 0, nullptr));
        SetFilePointer(file.get(), 5'000, nullptr, FILE_BEGIN);
        ASSERT_TRUE(SetEndOfFile(file.get()));
    }
    EXPECT_EQ(RaisedBy([&] { reader.Read(9'000, 54); }), 57);
    EXPECT_EQ(RaisedBy([&] { reader.Read(4'980, 54); }), 57);
    EXPECT_EQ(reader.Read(4'900, 54), Pattern(4'900, 54));
}

TEST_F(SharedReader, KeepsOtherProgramsFromCuttingAMappedFile) {
    WinSharedReader reader(PutPattern(10'000), kAtOnce);
    EXPECT_EQ(reader.Read(9'000, 54), Pattern(9'000, 54));
    const UniqueHandle file = OwnFile(CreateFileW((folder / L"data").c_str(), GENERIC_WRITE,
                                                  FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                                  OPEN_EXISTING, 0, nullptr));
    SetFilePointer(file.get(), 5'000, nullptr, FILE_BEGIN);
    EXPECT_FALSE(SetEndOfFile(file.get()));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_USER_MAPPED_FILE));
}

TEST_F(SharedReader, RaisesDeviceErrorInsteadOfAFaultWhenMappedPagesVanish) {
    if (!HasUnixCommands()) GTEST_SKIP() << "only another system can cut off a mapped file";
    WinSharedReader reader(PutPattern(1'000'000), kAtOnce);
    EXPECT_EQ(reader.Read(900'000, 54), Pattern(900'000, 54));
    CutFromOutside(500'010);
    // whole pages that are gone
    EXPECT_EQ(RaisedBy([&] { reader.Read(900'000, 54); }), 57);
    EXPECT_EQ(RaisedBy([&] { reader.Read(999'946, 53); }), 57);
    // within the last page, whose rest now reads as zeros; also cut in the middle of the bytes
    EXPECT_EQ(RaisedBy([&] { reader.Read(500'100, 54); }), 57);
    for (std::uint64_t end = 500'011; end <= 500'063; ++end) {
        ASSERT_EQ(RaisedBy([&] { reader.Read(end - 54, 54); }), 57) << end;
        ASSERT_EQ(RaisedBy([&] { reader.Read(end - 53, 53); }), 57) << end;
    }
    // what is left can still be read
    EXPECT_EQ(reader.Read(499'956, 54), Pattern(499'956, 54));
    EXPECT_EQ(reader.Read(499'957, 53), Pattern(499'957, 53));
    EXPECT_EQ(reader.Read(0, 54), Pattern(0, 54));
    CutFromOutside(0);
    EXPECT_EQ(RaisedBy([&] { reader.Read(0, 54); }), 57);
}

TEST_F(SharedReader, RaisesDeviceErrorWhenWindowsCanNoLongerBeMapped) {
    if (!HasUnixCommands()) GTEST_SKIP() << "only another system can cut off a mapped file";
    WinSharedReader reader(PutPattern(20'000'000), {.reads_before_mapping = 0, .whole_limit = 1});
    EXPECT_EQ(reader.Read(0, 54), Pattern(0, 54));
    CutFromOutside(1'000'000);
    EXPECT_EQ(RaisedBy([&] { reader.Read(19'000'000, 54); }), 57);
    EXPECT_EQ(RaisedBy([&] { reader.Read(3'000'000, 54); }), 57);
    EXPECT_EQ(reader.Read(999'000, 54), Pattern(999'000, 54));
}

// The reader's guard must leave alone what is not its own.
void* fault_page = nullptr;
int faults_seen = 0;
LONG CALLBACK MendFault(EXCEPTION_POINTERS* exception) {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    if (record.ExceptionCode != EXCEPTION_ACCESS_VIOLATION ||
        record.ExceptionInformation[1] != reinterpret_cast<ULONG_PTR>(fault_page)) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    ++faults_seen;
    DWORD before = 0;
    VirtualProtect(fault_page, 1, PAGE_READWRITE, &before);
    return EXCEPTION_CONTINUE_EXECUTION;
}

TEST_F(SharedReader, LeavesTheFaultsOfOthersToThem) {
    WinSharedReader reader(PutPattern(10'000), kAtOnce);
    EXPECT_EQ(reader.Read(0, 54), Pattern(0, 54));
    ASSERT_TRUE(MappedView::IsGuarding());
    faults_seen = 0;
    fault_page = VirtualAlloc(nullptr, 4096, MEM_RESERVE | MEM_COMMIT, PAGE_NOACCESS);
    void* others = AddVectoredExceptionHandler(0, &MendFault);
    EXPECT_EQ(*static_cast<volatile char*>(fault_page), 0);
    RemoveVectoredExceptionHandler(others);
    EXPECT_EQ(faults_seen, 1);
    EXPECT_EQ(reader.Read(54, 54), Pattern(54, 54));
    VirtualFree(fault_page, 0, MEM_RELEASE);
}

TEST_F(SharedReader, GuardsOnlyWhileSomethingIsMapped) {
    EXPECT_FALSE(MappedView::IsGuarding());
    {
        WinSharedReader first(PutPattern(10'000), kAtOnce);
        EXPECT_FALSE(MappedView::IsGuarding());
        first.Read(0, 10);
        {
            WinSharedReader second(folder / L"data", kAtOnce);
            second.Read(0, 10);
        }
        EXPECT_TRUE(MappedView::IsGuarding());
        WinSharedReader third(folder / L"data", {.map = false});
        third.Read(0, 10);
    }
    EXPECT_FALSE(MappedView::IsGuarding());
}

TEST_F(SharedReader, OneReadersLossLeavesTheOthersWhole) {
    if (!HasUnixCommands()) GTEST_SKIP() << "only another system can cut off a mapped file";
    const std::wstring path = PutPattern(100'000);
    WinSharedReader other(folder.Put(L"other", Pattern(0, 100'000)), kAtOnce);
    EXPECT_EQ(other.Read(90'000, 54), Pattern(90'000, 54));
    WinSharedReader reader(path, {}), twin(path, kAtOnce);
    EXPECT_EQ(reader.Read(90'000, 54), Pattern(90'000, 54));
    EXPECT_EQ(twin.Read(90'000, 54), Pattern(90'000, 54));
    CutFromOutside(50'000);
    // across the border of two missing pages
    EXPECT_EQ(RaisedBy([&] { reader.Read(90'112 - 20, 54); }), 57);
    EXPECT_EQ(RaisedBy([&] { twin.Read(90'000, 54); }), 57);
    EXPECT_EQ(reader.mapped_views(), 0);
    EXPECT_EQ(other.Read(90'000, 54), Pattern(90'000, 54));
    EXPECT_EQ(other.direct_reads(), 0);
    EXPECT_EQ(reader.Read(1'000, 54), Pattern(1'000, 54));
}

// What another thread has put where a lost view was, quicker than the handler.
void* g_taken = nullptr;
void TakeTheRange(void* address, std::size_t) {
    g_taken = VirtualAlloc(address, 65536, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    if (g_taken != nullptr) std::memcpy(g_taken, "another's", 9);
}

TEST_F(SharedReader, ALostViewsRangeThatAnotherThreadTookStaysItsOwn) {
    if (!HasUnixCommands()) GTEST_SKIP() << "only another system can cut off a mapped file";
    const std::wstring path = PutPattern(60'000);
    MappedView::on_unmapped_for_tests = &TakeTheRange;
    {
        WinSharedReader reader(path, kAtOnce);
        EXPECT_EQ(reader.Read(50'000, 54), Pattern(50'000, 54));
        CutFromOutside(10'000);
        EXPECT_EQ(RaisedBy([&] { reader.Read(50'000, 54); }), 57);
        EXPECT_EQ(reader.Read(1'000, 54), Pattern(1'000, 54));
    }
    MappedView::on_unmapped_for_tests = nullptr;
    ASSERT_NE(g_taken, nullptr);
    MEMORY_BASIC_INFORMATION memory;
    ASSERT_NE(VirtualQuery(g_taken, &memory, sizeof memory), 0u);
    ASSERT_EQ(memory.State, static_cast<DWORD>(MEM_COMMIT));
    EXPECT_EQ(std::memcmp(g_taken, "another's", 9), 0);
    VirtualFree(g_taken, 0, MEM_RELEASE);
}

TEST_F(SharedReader, SharesTheFileWithWritersAndDeleters) {
    WinSharedReader reader(PutPattern(100), kAtOnce);
    EXPECT_EQ(reader.Read(0, 10), Pattern(0, 10));
    const UniqueHandle writer = OwnFile(
        CreateFileW((folder / L"data").c_str(), GENERIC_READ | GENERIC_WRITE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(writer) << GetLastError();
}

TEST_F(SharedReader, SaysWhenTheBytesAreLocked) {
    WinSharedReader reader(PutPattern(10'000), {.map = false});
    const UniqueHandle locker = OwnFile(
        CreateFileW((folder / L"data").c_str(), GENERIC_READ | GENERIC_WRITE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(LockFile(locker.get(), 0, 0, 100, 0));
    {
        const UniqueHandle other = OwnFile(CreateFileW((folder / L"data").c_str(), GENERIC_READ,
                                                       FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                                       OPEN_EXISTING, 0, nullptr));
        char byte = 0;
        DWORD got = 0;
        if (ReadFile(other.get(), &byte, 1, &got, nullptr)) {
            GTEST_SKIP() << "this system does not keep readers from locked bytes";
        }
    }
    EXPECT_EQ(RaisedBy([&] { reader.Read(50, 54); }), 70);
    EXPECT_EQ(reader.Read(100, 54), Pattern(100, 54));
    UnlockFile(locker.get(), 0, 0, 100, 0);
    EXPECT_EQ(reader.Read(50, 54), Pattern(50, 54));
}

TEST_F(SharedReader, ReadsPlacesBeyondFourGigabytes) {
    const std::wstring path = folder.Put(L"data", "");
    const std::uint64_t far_place = 5'000'000'000u;
    {
        const UniqueHandle file = OwnFile(
            CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        DWORD bytes = 0;
        DeviceIoControl(file.get(), 0x900C4 /* make it sparse */, nullptr, 0, nullptr, 0, &bytes,
                        nullptr);
        LARGE_INTEGER place;
        place.QuadPart = static_cast<LONGLONG>(far_place);
        ASSERT_TRUE(SetFilePointerEx(file.get(), place, nullptr, FILE_BEGIN));
        ASSERT_TRUE(WriteFile(file.get(), "0123456789", 10, &bytes, nullptr));
    }
    for (bool map : {true, false}) {
        WinSharedReader reader(path, {.map = map, .reads_before_mapping = 0});
        EXPECT_EQ(reader.Size(), far_place + 10);
        EXPECT_EQ(reader.Read(far_place + 2, 8), "23456789");
        EXPECT_EQ(reader.Read(10, 3), std::string(3, '\0'));
    }
}

}  // namespace
}  // namespace demovex
