// A thousand saves beside neighbours that create, link, rename and delete names in the same folder
// at random: every other file stays untouched, and the target is at any moment the old or the new
// one.
#include <windows.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <string>

#include "base/error.h"
#include "platform/file_system_tools.h"
#include "platform/files_win.h"
#include "platform/handle_win.h"
#include "platform/text_win.h"
#include "tests/support/temp_folder.h"
#include "tests/support/unix_command_win.h"
#include "tests/support/wait_until.h"

namespace demovex {
namespace {

constexpr DWORD kDeadline = 60'000;  // milliseconds, for the neighbour's end
constexpr int kSaves = 500;          // beside each of the two neighbours
// No new save is begun after this time, so that a slow machine ends as well.
constexpr std::chrono::seconds kLongest{18};

class Chaos : public testing::Test {
  protected:
    Chaos() {
        for (const wchar_t* name : {L"victim1", L"victim2", L"victim3"}) folder.Put(name, kVictim);
        SetFileAttributesW((folder / L"victim2").c_str(), FILE_ATTRIBUTE_HIDDEN);
        if (HasUnixCommands()) {
            EXPECT_TRUE(RunUnix(Folder(), "chmod 600 victim1 victim2 victim3"));
        }
        for (int i = 1; i <= 3; ++i) before_[i] = Look(i);
        SaveFile(files, text, target, Content(0));
    }

    struct Seen {
        DWORD attributes = 0;
        DWORD links = 0;
        FILETIME written{};
        std::string access;
    };
    std::wstring Folder() const { return folder.path().wstring(); }
    std::wstring Victim(int i) const { return folder / (L"victim" + std::to_wstring(i)); }
    Seen Look(int i) const {
        Seen seen;
        BY_HANDLE_FILE_INFORMATION information{};
        const UniqueHandle file = OwnFile(CreateFileW(Victim(i).c_str(), FILE_READ_ATTRIBUTES, 7,
                                                      nullptr, OPEN_EXISTING, 0, nullptr));
        EXPECT_TRUE(GetFileInformationByHandle(file.get(), &information)) << i;
        seen.attributes = information.dwFileAttributes;
        seen.links = information.nNumberOfLinks;
        seen.written = information.ftLastWriteTime;
        DWORD needed = 0;
        GetFileSecurityW(Victim(i).c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &needed);
        seen.access.resize(needed);
        GetFileSecurityW(Victim(i).c_str(), DACL_SECURITY_INFORMATION, seen.access.data(), needed,
                         &needed);
        return seen;
    }
    static std::wstring Content(int n) {
        return std::to_wstring(n) + std::wstring(static_cast<std::size_t>(n * 37 % 5000), L'x');
    }

    // Saves again and again. After each the target is what was saved, or what it was before where
    // the save says that it failed.
    void SaveManyTimes() {
        const auto end = std::chrono::steady_clock::now() + kLongest;
        int last = 0;
        for (int n = 1; n <= kSaves && std::chrono::steady_clock::now() < end; ++n) {
            ++saves;
            try {
                SaveFile(files, text, target, Content(n));
                last = n;
            } catch (const Error& error) {
                ++refused;
                EXPECT_TRUE(error.number() == 70 || error.number() == 75) << error.number();
            }
            ASSERT_EQ(LoadFile(files, text, target), Content(last)) << "save " << n;
        }
    }
    void ExpectOthersUntouched() {
        for (int i = 1; i <= 3; ++i) {
            const Seen now = Look(i);
            EXPECT_EQ(folder.Get(L"victim" + std::to_wstring(i)), kVictim) << i;
            EXPECT_EQ(now.attributes, before_[i].attributes) << i;
            EXPECT_EQ(CompareFileTime(&now.written, &before_[i].written), 0) << i;
            EXPECT_EQ(now.access, before_[i].access) << i;
            EXPECT_EQ(now.links, 1u) << i;
        }
        EXPECT_EQ(folder.Count(), 4) << "something was left";
    }

    static inline const std::string kVictim = "not yours";
    TempFolder folder;
    WinFileSystem files;
    WinTextService text;
    const std::wstring target = folder / L"Warenkorb.bsk";
    int saves = 0;
    int refused = 0;

  private:
    Seen before_[4];
};

TEST_F(Chaos, ANeighbourThatTakesEveryNameItCan) {
    std::wstring self(MAX_PATH, L'\0');
    self.resize(GetModuleFileNameW(nullptr, self.data(), MAX_PATH));
    std::wstring line = L"\"" + GetFolderName(self) + L"\\neighbour.exe\" \"" + Folder() +
                        L"\" 4711 " + GetFileName(TemporaryName(text, target)) +
                        L" ~0000000.dvx x.tmp y.tmp";
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    ASSERT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                               &start, &process))
        << GetLastError();
    const UniqueHandle handle = OwnFile(process.hProcess), thread = OwnFile(process.hThread);
    EXPECT_TRUE(WaitUntil([&] { return files.Exists(folder / L"begun"); }));
    SaveManyTimes();
    folder.Put(L"stop", "");
    ASSERT_EQ(WaitForSingleObject(handle.get(), kDeadline), DWORD{WAIT_OBJECT_0});
    DWORD code = 1;
    GetExitCodeProcess(handle.get(), &code);
    EXPECT_EQ(code, 0u);
    ASSERT_TRUE(DeleteFileW((folder / L"stop").c_str()));
    ExpectOthersUntouched();
    EXPECT_GT(saves, refused * 10) << "names of ours stood in the way";
    std::printf("saves beside a neighbour: %d, refused and the target kept: %d\n", saves, refused);
}

// It only ever makes links and removes links: another system's programs do not see what is open
// here, so one that deletes everything would delete the file that is being written, too.
TEST_F(Chaos, ANeighbourThatPutsLinksUnderTheTemporarysName) {
    if (!HasUnixCommands()) GTEST_SKIP() << "links are made by the system beneath";
    const std::wstring wide = GetFileName(TemporaryName(text, target));
    const std::string name(wide.begin(), wide.end());
    ASSERT_TRUE(StartUnix("cd '" + UnixPath(Folder()) +
                          "'; echo > begun; n=0; while [ ! -e stop ] && [ $n -lt 100000 ]; do "
                          "n=$((n+1)); ln -s victim$((n%3+1)) '" +
                          name + "' 2> /dev/null; [ -L '" + name +
                          "' ] && [ $((n%2)) = 0 ] && rm '" + name + "'; done; [ -L '" + name +
                          "' ] && rm '" + name + "'; rm begun; echo > ended"));
    ASSERT_TRUE(WaitUntil([&] { return files.Exists(folder / L"begun"); }));
    SaveManyTimes();
    folder.Put(L"stop", "");
    EXPECT_TRUE(WaitUntil([&] { return files.Exists(folder / L"ended"); },
                          std::chrono::milliseconds(kDeadline)));
    DeleteFileW((folder / L"stop").c_str());
    DeleteFileW((folder / L"ended").c_str());
    ExpectOthersUntouched();
    EXPECT_GT(saves, refused * 10);
    std::printf("saves beside links: %d, refused and the target kept: %d\n", saves, refused);
}

}  // namespace
}  // namespace demovex
