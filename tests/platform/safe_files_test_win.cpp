// Files among neighbours: links, names that others take, rights, streams, and who is trusted with
// what when a path is opened.
#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "platform/file_system_tools.h"
#include "platform/file_traits_win.h"
#include "platform/files_win.h"
#include "platform/handle_win.h"
#include "platform/text_win.h"
#include "tests/support/import_table_win.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"
#include "tests/support/unix_command_win.h"

namespace demovex {
namespace {

struct SafeFiles : testing::Test {
    TempFolder folder;
    WinFileSystem files;
    WinTextService text;
    const std::wstring target = folder / L"a.bsk";

    // Links of the system beneath: this one's library cannot remove them.
    void TearDown() override {
        if (has_links) Unix("find . -type l -exec rm {} +");
    }
    bool Link(const std::string& command) {
        has_links = true;
        return Unix(command);
    }
    bool has_links = false;

    std::optional<FileStamp> Save(std::wstring_view content) {
        return SaveFile(files, text, target, content);
    }
    std::wstring Temporary() const { return TemporaryName(text, target); }
    bool Unix(const std::string& command) const {
        return RunUnix(folder.path().wstring(), command);
    }
    // What a command there prints, without its line end.
    std::string UnixSays(const std::string& command) const {
        EXPECT_TRUE(Unix("{ " + command + "; } > said"));
        std::string said = folder.Get(L"said");
        files_of_ours_.Delete(folder / L"said");
        while (!said.empty() && said.back() == '\n') said.pop_back();
        return said;
    }
    static std::vector<BYTE> AccessOf(const std::wstring& path) {
        DWORD needed = 0;
        GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &needed);
        std::vector<BYTE> descriptor(needed);
        EXPECT_TRUE(GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(),
                                     needed, &needed));
        return descriptor;
    }

  private:
    mutable WinFileSystem files_of_ours_;
};

// --- links

TEST_F(SafeFiles, WhereALinkLeadsIsWrittenAndTheLinkStays) {
    if (!HasUnixCommands()) GTEST_SKIP() << "links are made by the system beneath";
    ASSERT_TRUE(Link("mkdir far && echo old > far/real.bsk && ln -s far/real.bsk a.bsk"));
    Save(L"new");
    EXPECT_EQ(folder.Get(L"far\\real.bsk"), "new");
    EXPECT_EQ(UnixSays("readlink a.bsk; ls far"), "far/real.bsk\nreal.bsk");
    EXPECT_EQ(folder.Count(), 2);
}

TEST_F(SafeFiles, ALinkUnderTheTemporarysNameIsNeitherFollowedNorInTheWay) {
    if (!HasUnixCommands()) GTEST_SKIP() << "links are made by the system beneath";
    folder.Put(L"a.bsk", "old");
    folder.Put(L"other", "other's");
    const std::wstring wide = GetFileName(Temporary());
    const std::string name(wide.begin(), wide.end());
    ASSERT_TRUE(Link("chmod 600 other && ln -s other '" + name + "'"));
    Save(L"new");
    EXPECT_EQ(folder.Get(L"a.bsk"), "new");
    EXPECT_EQ(folder.Get(L"other"), "other's");
    EXPECT_EQ(UnixSays("readlink '" + name + "'; stat -c %a other"), "other\n600");
    EXPECT_EQ(folder.Count(), 3);
}

TEST_F(SafeFiles, AnotherFilesSecondNameUnderTheTemporarysNameIsLeftAlone) {
    folder.Put(L"a.bsk", "old");
    folder.Put(L"other", "other's");
    ASSERT_TRUE(CreateHardLinkW(Temporary().c_str(), (folder / L"other").c_str(), nullptr));
    Save(L"new");
    EXPECT_EQ(folder.Get(L"a.bsk"), "new");
    EXPECT_EQ(folder.Get(L"other"), "other's");
    EXPECT_EQ(folder.Get(GetFileName(Temporary())), "other's");
    EXPECT_EQ(folder.Count(), 3);
}

TEST_F(SafeFiles, AFolderUnderTheTemporarysNameIsNotInTheWay) {
    folder.Put(L"a.bsk", "old");
    ASSERT_TRUE(CreateDirectoryW(Temporary().c_str(), nullptr));
    Save(L"new");
    EXPECT_EQ(folder.Get(L"a.bsk"), "new");
    EXPECT_EQ(folder.Count(), 2);
}

TEST_F(SafeFiles, NobodyCanRenameDeleteOrWriteAFileThatIsToTakeAnothersPlace) {
    const auto file = files.CreateReplacement(folder / L"new", target);
    file->Write("new");
    EXPECT_FALSE(DeleteFileW((folder / L"new").c_str()));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
    EXPECT_FALSE(MoveFileExW((folder / L"new").c_str(), (folder / L"moved").c_str(), 0));
    EXPECT_EQ(RaisedBy([&] { files.OpenAppend(folder / L"new"); }), 70);
    folder.Put(L"other", "other's");
    EXPECT_FALSE(MoveFileExW((folder / L"other").c_str(), (folder / L"new").c_str(),
                             MOVEFILE_REPLACE_EXISTING));
    EXPECT_TRUE(file->TakePlaceOf(files.ResolveTarget(target)).has_value());
    EXPECT_EQ(folder.Get(L"a.bsk"), "new");
    EXPECT_EQ(folder.Get(L"other"), "other's");
    EXPECT_EQ(folder.Count(), 2);
}

TEST_F(SafeFiles, DeleteRemovesOrdinaryFilesOnly) {
    folder.Put(L"file", "x");
    ASSERT_TRUE(CreateHardLinkW((folder / L"second").c_str(), (folder / L"file").c_str(), nullptr));
    EXPECT_EQ(RaisedBy([&] { files.Delete(folder / L"file"); }), 75);
    ASSERT_TRUE(DeleteFileW((folder / L"second").c_str()));
    files.Delete(folder / L"FILE");
    EXPECT_EQ(folder.Count(), 0);
    if (!HasUnixCommands()) return;
    ASSERT_TRUE(Link("echo x > file && mkdir sub && ln -s file link && ln -s ../file sub/file"));
    EXPECT_EQ(RaisedBy([&] { files.Delete(folder / L"link"); }), 75);
    EXPECT_EQ(RaisedBy([&] { files.Delete(folder / L"sub\\file"); }), 75);
    EXPECT_EQ(folder.Get(L"file"), "x\n");
    // by way of a folder that is a link it is the same file under its own name
    ASSERT_TRUE(Link("rm sub/file && echo y > sub/own && ln -s sub way"));
    files.Delete(folder / L"way\\own");
    EXPECT_EQ(folder.Get(L"sub\\own"), "<missing>");
}

// --- rights

TEST_F(SafeFiles, TheModeBeneathStays) {
    if (!HasUnixCommands()) GTEST_SKIP() << "modes are those of the system beneath";
    folder.Put(L"a.bsk", "old");
    ASSERT_TRUE(Unix("chmod 644 a.bsk"));
    Save(L"new");
    EXPECT_EQ(UnixSays("stat -c %a a.bsk"), "644");
    Save(L"newer");
    EXPECT_EQ(UnixSays("stat -c %a a.bsk"), "644");
    // a file that is closed to the world stays so (there the group comes with the owner)
    ASSERT_TRUE(Unix("chmod 600 a.bsk"));
    Save(L"newest");
    EXPECT_EQ(UnixSays("stat -c %a a.bsk").substr(2), "0");
    EXPECT_EQ(folder.Get(L"a.bsk"), "newest");
}

TEST_F(SafeFiles, TheAccessListStays) {
    folder.Put(L"a.bsk", "old");
    if (HasUnixCommands()) {
        ASSERT_TRUE(Unix("chmod 700 a.bsk"));
    }
    const auto before = AccessOf(target);
    Save(L"new");
    EXPECT_EQ(AccessOf(target), before);
    // and is there before the first byte is
    const auto file = files.CreateReplacement(folder / L"fresh", target);
    EXPECT_EQ(AccessOf(folder / L"fresh"), before);
    file->Discard();
    EXPECT_EQ(folder.Count(), 1);
}

// --- streams, as a system that has them would hand them out

struct FakeStreams {
    std::string to_read;  // what the backup of the file consists of
    std::size_t at = 0;
    std::string written;
    HANDLE reading = nullptr;
    HANDLE writing = nullptr;
    static inline FakeStreams* now = nullptr;

    void Add(DWORD id, std::wstring_view name, std::string_view data) {
        WIN32_STREAM_ID header{};
        header.dwStreamId = id;
        header.Size.QuadPart = static_cast<LONGLONG>(data.size());
        header.dwStreamNameSize = static_cast<DWORD>(name.size() * sizeof(wchar_t));
        to_read.append(reinterpret_cast<const char*>(&header),
                       offsetof(WIN32_STREAM_ID, cStreamName));
        to_read.append(reinterpret_cast<const char*>(name.data()), header.dwStreamNameSize);
        to_read.append(data);
    }

    static BOOL WINAPI Information(HANDLE file, FILE_INFO_BY_HANDLE_CLASS what, LPVOID to,
                                   DWORD length) {
        if (what != FileStreamInfo) return real_information(file, what, to, length);
        auto* const info = static_cast<FILE_STREAM_INFO*>(to);
        *info = {};
        info->NextEntryOffset = now->to_read.empty() ? 0 : 64;
        return TRUE;
    }
    static BOOL WINAPI Read(HANDLE file, LPBYTE to, DWORD length, LPDWORD got, BOOL abort,
                            BOOL security, LPVOID* context) {
        if (abort) return TRUE;
        EXPECT_FALSE(security);
        now->reading = file;
        *context = now;
        // in pieces smaller than asked for, as the real function may
        *got =
            static_cast<DWORD>(std::min<std::size_t>({length, 7, now->to_read.size() - now->at}));
        std::memcpy(to, now->to_read.data() + now->at, *got);
        now->at += *got;
        return TRUE;
    }
    static BOOL WINAPI Seek(HANDLE, DWORD low, DWORD high, LPDWORD low_done, LPDWORD high_done,
                            LPVOID*) {
        EXPECT_EQ(high, 0u);
        now->at += low;
        *low_done = low;
        *high_done = high;
        return TRUE;
    }
    static BOOL WINAPI Write(HANDLE file, LPBYTE from, DWORD length, LPDWORD done, BOOL abort, BOOL,
                             LPVOID* context) {
        if (abort) return TRUE;
        now->writing = file;
        *context = now;
        now->written.append(reinterpret_cast<const char*>(from), length);
        *done = length;
        return TRUE;
    }
    static inline decltype(&GetFileInformationByHandleEx) real_information = nullptr;
    static inline decltype(&BackupRead) real_read = nullptr;
    static inline decltype(&BackupSeek) real_seek = nullptr;
    static inline decltype(&BackupWrite) real_write = nullptr;
};

TEST_F(SafeFiles, NamedStreamsGoWithTheFileAndNothingElseOfItDoes) {
    folder.Put(L"from", "old content");
    folder.Put(L"to", "new");
    FakeStreams streams, expected;
    FakeStreams::now = &streams;
    const std::string large(200'000, 'z');
    streams.Add(BACKUP_DATA, L"", "old content");
    streams.Add(BACKUP_ALTERNATE_DATA, L":Zone.Identifier:$DATA", "[ZoneTransfer]\r\nZoneId=3");
    streams.Add(BACKUP_EA_DATA, L"", "attributes");
    streams.Add(BACKUP_ALTERNATE_DATA, L":empty:$DATA", "");
    streams.Add(BACKUP_ALTERNATE_DATA, L":large:$DATA", large);
    expected.Add(BACKUP_ALTERNATE_DATA, L":Zone.Identifier:$DATA", "[ZoneTransfer]\r\nZoneId=3");
    expected.Add(BACKUP_ALTERNATE_DATA, L":empty:$DATA", "");
    expected.Add(BACKUP_ALTERNATE_DATA, L":large:$DATA", large);
    const CaughtImport information("GetFileInformationByHandleEx", &FakeStreams::Information,
                                   &FakeStreams::real_information);
    const CaughtImport read("BackupRead", &FakeStreams::Read, &FakeStreams::real_read);
    const CaughtImport seek("BackupSeek", &FakeStreams::Seek, &FakeStreams::real_seek);
    const CaughtImport write("BackupWrite", &FakeStreams::Write, &FakeStreams::real_write);
    ASSERT_TRUE(information.Caught() && read.Caught() && seek.Caught() && write.Caught());
    const auto open = [&](const wchar_t* name) {
        return OwnFile(CreateFileW((folder / name).c_str(), GENERIC_READ | GENERIC_WRITE, 7,
                                   nullptr, OPEN_EXISTING, 0, nullptr));
    };
    const UniqueHandle from = open(L"from"), to = open(L"to");
    CopyFileTraits(from.get(), to.get());
    EXPECT_EQ(streams.written, expected.to_read);
    EXPECT_EQ(streams.reading, from.get());
    EXPECT_EQ(streams.writing, to.get());

    // a file without any is not read again
    FakeStreams none;
    FakeStreams::now = &none;
    CopyFileTraits(from.get(), to.get());
    EXPECT_EQ(none.reading, nullptr);
}

// --- who stands behind a path

struct Opened {
    std::wstring path;
    DWORD flags;
};
std::vector<Opened>* opened_now = nullptr;
decltype(&CreateFileW) real_create = nullptr;

HANDLE WINAPI NoteCreate(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                         DWORD disposition, DWORD flags, HANDLE like) {
    opened_now->push_back({path, flags});
    return real_create(path, access, share, security, disposition, flags, like);
}

TEST_F(SafeFiles, WhoeverStandsBehindAPathLearnsWhoOpensItAndNoMore) {
    folder.Put(L"b.bsk", "old");
    std::vector<Opened> opened;
    opened_now = &opened;
    {
        const CaughtImport create("CreateFileW", &NoteCreate, &real_create);
        ASSERT_TRUE(create.Caught());
        Save(L"new");
        Save(L"newer");
        files.ReadWhole(target);
        files.OpenAppend(target);
        files.Stamp(target);
        const auto stamp = files.OpenShared(target)->Stamp();
        ASSERT_TRUE(stamp.has_value());
        files.OpenRenamed(target, *stamp);
        files.Delete(folder / L"b.bsk");
    }
    EXPECT_GE(opened.size(), 8u);
    for (const Opened& one : opened) {
        EXPECT_EQ(one.flags & (SECURITY_SQOS_PRESENT | SECURITY_VALID_SQOS_FLAGS),
                  static_cast<DWORD>(SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION))
            << std::string(one.path.begin(), one.path.end());
    }
}

TEST_F(SafeFiles, PipesAreRefusedByEveryOperation) {
    const wchar_t* const name = L"\\\\.\\pipe\\demovex-safe-files-test";
    const auto each = [&](auto&& operation) {
        const UniqueHandle pipe = OwnFile(
            CreateNamedPipeW(name, PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE, 1, 100, 100, 0, nullptr));
        ASSERT_TRUE(pipe);
        EXPECT_EQ(RaisedBy(operation), 75);
    };
    each([&] { files.ReadWhole(name); });
    each([&] { files.OpenAppend(name); });
    each([&] { files.OpenShared(name); });
    each([&] { files.ResolveTarget(name); });
    each([&] { SaveFile(files, text, name, L"new"); });
    each([&] {
        EXPECT_FALSE(files.Stamp(name).has_value());
        RaiseRuntimeError(75);
    });
}

// --- stamps and paths

TEST_F(SafeFiles, AStampTellsAFileFromAnotherAndFromItselfBefore) {
    const auto saved = Save(L"new");
    ASSERT_TRUE(saved.has_value());
    EXPECT_EQ(files.Stamp(target), saved);
    EXPECT_FALSE(files.Stamp(folder / L"none").has_value());
    EXPECT_FALSE(files.Stamp(folder.path().wstring()).has_value());
    files.OpenAppend(target)->Write("x");
    EXPECT_NE(files.Stamp(target), saved);
    const auto again = Save(L"new");
    EXPECT_NE(again->file, saved->file);
    EXPECT_EQ(files.OpenShared(target)->Stamp(), again);
    // another name is the same file
    ASSERT_TRUE(MoveFileExW(target.c_str(), (folder / L"moved").c_str(), 0));
    EXPECT_EQ(files.Stamp(folder / L"moved"), again);
    auto found = files.OpenRenamed(target, *again);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->Read(0, 3), "new");
    found.reset();
    folder.Put(L"a.bsk", "another");
    EXPECT_EQ(files.OpenRenamed(target, *again)->Read(0, 3), "new");
    ASSERT_TRUE(DeleteFileW((folder / L"moved").c_str()));
    EXPECT_EQ(files.OpenRenamed(target, *again), nullptr);
}

TEST_F(SafeFiles, AbsolutePathsStandWhateverTheCurrentFolderIs) {
    wchar_t before[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, before);
    ASSERT_TRUE(SetCurrentDirectoryW(folder.path().c_str()));
    const std::wstring absolute = files.Absolute(L"sub\\..\\a.bsk");
    SetCurrentDirectoryW(before);
    EXPECT_EQ(absolute, target);
    EXPECT_EQ(files.Absolute(target), target);
    EXPECT_EQ(files.Absolute(L""), L"");
    const std::wstring with_nul(L"a\0b", 3);
    EXPECT_EQ(files.Absolute(with_nul), with_nul);
    const std::wstring endless(1'000'000, L'x');
    EXPECT_TRUE(files.Absolute(endless).ends_with(L"xxx"));
}

}  // namespace
}  // namespace demovex
