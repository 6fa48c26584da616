#include "platform/files_win.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <aclapi.h>

#include "platform/handle_win.h"
#include "platform/path_win.h"
#include "platform/system_error_win.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"
#include "tests/support/unix_command_win.h"
#include "tests/support/wait_until.h"

namespace demovex {
namespace {

struct WinFiles : testing::Test {
    TempFolder folder;
    WinFileSystem files;

    // Writes `bytes` to a new file "b" and puts it in the place of `target`.
    std::optional<FileStamp> Replace(const std::wstring& target, std::string_view bytes = "new") {
        const std::wstring resolved = files.ResolveTarget(target);
        const auto file = files.CreateReplacement(folder / L"b", resolved);
        try {
            file->Write(bytes);
            file->Flush();
            return file->TakePlaceOf(resolved);
        } catch (...) {
            file->Discard();
            throw;
        }
    }

    UniqueHandle Hold(std::wstring_view name, DWORD access, DWORD share) {
        UniqueHandle handle = OwnFile(CreateFileW((folder / name).c_str(), access, share, nullptr,
                                                  OPEN_EXISTING, 0, nullptr));
        EXPECT_TRUE(handle) << GetLastError();
        return handle;
    }
};

TEST_F(WinFiles, FindWhatADirectorySearchFinds) {
    folder.Put(L"\u00FCber.bsk", "x");
    EXPECT_TRUE(files.Exists(folder / L"\u00FCber.bsk"));
    EXPECT_TRUE(files.Exists(folder / L"\u00DCBER.BSK"));
    EXPECT_TRUE(files.Exists(folder.path().wstring()));
    EXPECT_TRUE(files.Exists(folder.path().wstring() + L"\\"));
    EXPECT_TRUE(files.Exists(L"C:\\"));
    EXPECT_TRUE(files.Exists(folder / L"*.bsk"));
    EXPECT_TRUE(files.Exists(folder / L"?ber.*"));
    EXPECT_FALSE(files.Exists(folder / L"*.txt"));
    EXPECT_FALSE(files.Exists(folder / L"none\\none"));
    EXPECT_FALSE(files.Exists(L""));
    EXPECT_FALSE(files.Exists(L"\\\\nowhere.invalid\\share\\file"));
    EXPECT_FALSE(files.Exists(L"a|b<c>"));
    EXPECT_FALSE(files.Exists(std::wstring_view(L"C:\\\0x", 5)));
    EXPECT_FALSE(files.Exists(std::wstring(100'000, L'x')));
}

TEST_F(WinFiles, FindFilesWithAnyOfTheUsualAttributes) {
    for (DWORD attribute : {FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM,
                            FILE_ATTRIBUTE_ARCHIVE}) {
        folder.Put(L"a", "x");
        ASSERT_TRUE(SetFileAttributesW((folder / L"a").c_str(), attribute));
        EXPECT_TRUE(files.Exists(folder / L"a")) << attribute;
        SetFileAttributesW((folder / L"a").c_str(), FILE_ATTRIBUTE_NORMAL);
    }
}

TEST_F(WinFiles, WriteReadAppendAndDelete) {
    const std::string all("a\0b\r\n\xFF\x1A end", 11);
    auto file = files.CreateNew(folder / L"\u00FC.bsk");
    file->Write(all);
    file->Write("");
    file->Flush();
    file->Close();
    file.reset();
    EXPECT_EQ(files.ReadWhole(folder / L"\u00FC.bsk"), all);
    EXPECT_EQ(RaisedBy([&] { files.CreateNew(folder / L"\u00FC.bsk"); }), 75);
    auto append = files.OpenAppend(folder / L"\u00FC.bsk");
    append->Write("1");
    append->Write("2");
    append->Flush();
    append->Close();
    EXPECT_EQ(files.ReadWhole(folder / L"\u00FC.bsk"), all + "12");
    files.OpenAppend(folder / L"new")->Write("1");
    EXPECT_EQ(files.ReadWhole(folder / L"new"), "1");
    EXPECT_EQ(files.ReadWhole(folder.Put(L"empty", "")), "");
    files.Delete(folder / L"new");
    EXPECT_FALSE(files.Exists(folder / L"new"));
}

TEST_F(WinFiles, RaiseTheErrorThatTheSystemMeans) {
    const std::wstring none = folder / L"none", deep = folder / L"none\\none";
    EXPECT_EQ(RaisedBy([&] { files.ReadWhole(none); }), 53);
    EXPECT_EQ(RaisedBy([&] { files.Delete(none); }), 53);
    EXPECT_EQ(RaisedBy([&] { files.OpenShared(none); }), 53);
    EXPECT_EQ(RaisedBy([&] { Replace(deep); }), 76);
    EXPECT_EQ(RaisedBy([&] { files.ReadWhole(deep); }), 76);
    EXPECT_EQ(RaisedBy([&] { files.CreateNew(deep); }), 76);
    EXPECT_EQ(RaisedBy([&] { files.OpenAppend(deep); }), 76);
    EXPECT_EQ(RaisedBy([&] { files.OpenShared(deep); }), 76);
    EXPECT_EQ(RaisedBy([&] { files.Delete(deep); }), 76);
    // a folder is no file
    EXPECT_EQ(RaisedBy([&] { files.ReadWhole(folder.path().wstring()); }), 75);
    EXPECT_EQ(RaisedBy([&] { files.OpenAppend(folder.path().wstring()); }), 75);
    EXPECT_EQ(RaisedBy([&] { files.Delete(folder.path().wstring()); }), 75);
    // a name with a NUL is none
    const std::wstring with_nul = folder / L"a" + std::wstring(1, L'\0') + L"b";
    EXPECT_EQ(RaisedBy([&] { files.CreateNew(with_nul); }), 52);
    EXPECT_NE(RaisedBy([&] { files.ReadWhole(L""); }), 0);
}

TEST_F(WinFiles, RefuseDevices) {
    EXPECT_NE(RaisedBy([&] { files.ReadWhole(L"NUL"); }), 0);
    EXPECT_NE(RaisedBy([&] { files.OpenShared(L"CON"); }), 0);
}

TEST_F(WinFiles, SayWhenAnotherProgramHoldsTheFile) {
    const std::wstring path = folder.Put(L"a", "old");
    const auto holder = Hold(L"a", GENERIC_READ | GENERIC_WRITE, 0);
    EXPECT_EQ(RaisedBy([&] { files.ReadWhole(path); }), 70);
    EXPECT_EQ(RaisedBy([&] { files.OpenAppend(path); }), 70);
    EXPECT_EQ(RaisedBy([&] { files.OpenShared(path); }), 70);
    EXPECT_EQ(RaisedBy([&] { files.Delete(path); }), 70);
    EXPECT_EQ(RaisedBy([&] { Replace(path); }), 70);
    EXPECT_TRUE(files.Exists(path));
    EXPECT_EQ(folder.Count(), 1);
}

TEST_F(WinFiles, SayWhenAReaderKeepsTheTargetFromBeingReplaced) {
    const std::wstring path = folder.Put(L"a", "old");
    {
        const auto reader = Hold(L"a", GENERIC_READ, FILE_SHARE_READ);
        EXPECT_EQ(RaisedBy([&] { Replace(path); }), 70);
        EXPECT_EQ(files.ReadWhole(path), "old");
    }
    Replace(path);
    EXPECT_EQ(files.ReadWhole(path), "new");
}

TEST_F(WinFiles, ReplaceKeepsAttributesAndCreationTimeOfTheTarget) {
    const std::wstring path = folder.Put(L"a", "old");
    FILETIME made{0x12345600, 0x01C00000}, found{};
    {
        const auto handle = Hold(L"a", GENERIC_WRITE, 0);
        ASSERT_TRUE(SetFileTime(handle.get(), &made, nullptr, nullptr));
        ASSERT_TRUE(GetFileTime(handle.get(), &made, nullptr, nullptr));
    }
    ASSERT_TRUE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE));
    // not every file system below can store every attribute
    const DWORD attributes = GetFileAttributesW(path.c_str());
    Replace(path);
    EXPECT_EQ(files.ReadWhole(path), "new");
    EXPECT_EQ(GetFileAttributesW(path.c_str()), attributes);
    EXPECT_NE(attributes & FILE_ATTRIBUTE_HIDDEN, 0u);
    EXPECT_EQ(folder.Count(), 1);
    const auto handle = Hold(L"a", GENERIC_READ, FILE_SHARE_READ);
    ASSERT_TRUE(GetFileTime(handle.get(), &found, nullptr, nullptr));
    RecordProperty("creation_time_kept", CompareFileTime(&made, &found) == 0);
}

TEST_F(WinFiles, ReplaceCreatesAMissingTarget) {
    Replace(folder / L"a");
    EXPECT_EQ(folder.Get(L"a"), "new");
    EXPECT_EQ(folder.Count(), 1);
}

TEST_F(WinFiles, ReplaceRefusesReadOnlyTargetsAndFolders) {
    const std::wstring path = folder.Put(L"a", "old");
    ASSERT_TRUE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_EQ(RaisedBy([&] { Replace(path); }), 75);
    EXPECT_EQ(RaisedBy([&] { files.Delete(path); }), 75);
    EXPECT_EQ(RaisedBy([&] { files.OpenAppend(path); }), 75);
    EXPECT_EQ(folder.Get(L"a"), "old");
    ASSERT_TRUE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL));
    ASSERT_TRUE(CreateDirectoryW((folder / L"sub").c_str(), nullptr));
    EXPECT_EQ(RaisedBy([&] { Replace(folder / L"sub"); }), 75);
    EXPECT_EQ(folder.Count(), 2);
}

TEST_F(WinFiles, LetOthersReadAFileThatIsBeingWritten) {
    auto file = files.OpenAppend(folder / L"a");
    file->Write("12");
    EXPECT_EQ(files.ReadWhole(folder / L"a"), "12");
    EXPECT_EQ(RaisedBy([&] { files.OpenAppend(folder / L"a"); }), 70);
}

TEST_F(WinFiles, TakeBackTheHalfOfAWriteThatFails) {
    if (!HasUnixCommands()) GTEST_SKIP() << "no way to make a write fail half-way";
    // a file just below the largest size that usual file systems beneath Wine can hold (16 TB); it
    // is all holes and takes no room
    const std::uint64_t size = (std::uint64_t{1} << 44) - 20'000;
    const std::wstring path = folder.Put(L"a", "old");
    const auto length = [&] {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data);
        return (std::uint64_t{data.nFileSizeHigh} << 32) + data.nFileSizeLow;
    };
    ASSERT_TRUE(StartUnix("truncate -s " + std::to_string(size) + " '" + UnixPath(path) +
                          "'; echo > '" + UnixPath(folder.path().wstring()) + "/done'"));
    ASSERT_TRUE(WaitUntil([&] { return folder.Get(L"done") != "<missing>"; }));
    if (length() != size) GTEST_SKIP() << "the file system does not hold files of 16 TB";
    auto file = files.OpenAppend(path);
    const int error = RaisedBy([&] { file->Write(std::string(65'536, 'x')); });
    if (error == 0) GTEST_SKIP() << "the file system holds larger files";
    EXPECT_TRUE(error == 57 || error == 61) << error;  // as the system beneath explains it
    EXPECT_EQ(length(), size);
    file->Write("1234");  // what fits goes where the failed write would have gone
    file->Close();
    EXPECT_EQ(length(), size + 4);
}

TEST_F(WinFiles, TakeLongPaths) {
    // folders of 200 characters each, far beyond 260
    std::wstring path = folder.path().wstring();
    for (int i = 0; i < 5; ++i) {
        path += L"\\" + std::wstring(200, static_cast<wchar_t>(L'a' + i));
        ASSERT_TRUE(CreateDirectoryW(SystemPath(path).c_str(), nullptr)) << GetLastError();
    }
    const std::wstring file = path + L"\\.\\x/../long.bsk";
    files.CreateNew(file)->Write("long");
    EXPECT_TRUE(files.Exists(file));
    EXPECT_TRUE(files.Exists(path + L"\\*.bsk"));
    EXPECT_EQ(files.ReadWhole(file), "long");
    const std::wstring resolved = files.ResolveTarget(file);
    const auto newer = files.CreateReplacement(path + L"\\new", resolved);
    newer->Write("newer");
    newer->TakePlaceOf(resolved);
    EXPECT_EQ(files.OpenShared(file)->Read(0, 5), "newer");
    files.Delete(file);
    EXPECT_FALSE(files.Exists(file));
    for (int i = 4; i >= 0; --i) {
        EXPECT_TRUE(RemoveDirectoryW(SystemPath(path).c_str()));
        path.resize(path.size() - 201);
    }
}

TEST_F(WinFiles, RefusePathsThatAreTooLongWithoutHarm) {
    std::wstring path = folder.path().wstring();
    while (path.size() < 31'900) path += L"\\" + std::wstring(99, L'x');
    EXPECT_EQ(RaisedBy([&] { files.ReadWhole(path); }), 76);
    EXPECT_FALSE(files.Exists(path));
    EXPECT_EQ(RaisedBy([&] { files.CreateNew(path + std::wstring(10'000, L'y')); }), 75);
    const int one_long_name =
        RaisedBy([&] { files.CreateNew(folder / std::wstring(32'000, L'x')); });
    EXPECT_NE(one_long_name, 0);
    EXPECT_EQ(folder.Count(), 0);
}

TEST(SystemPaths, GetThePrefixOnlyWhenLong) {
    EXPECT_EQ(SystemPath(L"C:\\a/b"), L"C:\\a/b");
    const std::wstring name(250, L'x');
    EXPECT_EQ(SystemPath(L"C:\\a/./" + name), L"\\\\?\\C:\\a\\" + name);
    EXPECT_EQ(SystemPath(L"\\\\server\\share\\" + name), L"\\\\?\\UNC\\server\\share\\" + name);
    EXPECT_EQ(SystemPath(L"\\\\?\\C:\\" + name), L"\\\\?\\C:\\" + name);
    EXPECT_EQ(SystemPath(name + name).substr(0, 4), L"\\\\?\\");
}

TEST(SystemErrors, BecomeRunTimeErrors) {
    EXPECT_EQ(RuntimeErrorOfFile(ERROR_DISK_FULL), 61);
    EXPECT_EQ(RuntimeErrorOfFile(ERROR_HANDLE_DISK_FULL), 61);
    EXPECT_EQ(RuntimeErrorOfFile(ERROR_WRITE_PROTECT), 70);
    EXPECT_EQ(RuntimeErrorOfFile(ERROR_USER_MAPPED_FILE), 70);
    EXPECT_EQ(RuntimeErrorOfFile(ERROR_NOT_READY), 57);
    EXPECT_EQ(RuntimeErrorOfFile(ERROR_NETNAME_DELETED), 57);
    EXPECT_EQ(RuntimeErrorOfFile(ERROR_BAD_NET_NAME), 76);
    EXPECT_EQ(RuntimeErrorOfFile(ERROR_INVALID_NAME), 52);
    EXPECT_EQ(RuntimeErrorOfFile(ERROR_TOO_MANY_OPEN_FILES), 67);
    EXPECT_EQ(RuntimeErrorOfFile(ERROR_NOT_ENOUGH_MEMORY), 7);
    EXPECT_EQ(RuntimeErrorOfFile(ERROR_ACCESS_DENIED), 75);
    EXPECT_EQ(RuntimeErrorOfFile(ERROR_INVALID_FUNCTION), 75);
}

}  // namespace
}  // namespace demovex
