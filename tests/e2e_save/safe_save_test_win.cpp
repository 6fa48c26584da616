// A save that is ended at any call to the system, for real, and saves against other programs.
#include <windows.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>

#include "base/error.h"
#include "platform/file_system_tools.h"
#include "platform/files_win.h"
#include "platform/handle_win.h"
#include "platform/text_win.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace demovex {
namespace {

constexpr DWORD kSaved = 0;
constexpr DWORD kEnded = 77;
constexpr DWORD kDeadline = 60'000;  // milliseconds
// Two blocks and a bit, so that the end falls into the midst of writing, too.
constexpr std::size_t kLength = kSaveBlock * 2 + 7;

class SafeSave : public testing::Test {
  protected:
    // Runs the program beside this one that saves `kLength` times "n" and ends at call `n`; answers
    // its exit code.
    DWORD SaveInChild(int n) {
        std::wstring self(MAX_PATH, L'\0');
        self.resize(GetModuleFileNameW(nullptr, self.data(), MAX_PATH));
        std::wstring line = L"\"" + GetFolderName(self) + L"\\save_child.exe\" " +
                            std::to_wstring(n) + L" \"" + target + L"\" n " +
                            std::to_wstring(kLength);
        STARTUPINFOW start{};
        start.cb = sizeof start;
        PROCESS_INFORMATION process{};
        if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                            &start, &process)) {
            ADD_FAILURE() << "save_child.exe did not start: " << GetLastError();
            return kSaved;
        }
        const UniqueHandle handle = OwnFile(process.hProcess);
        const UniqueHandle thread = OwnFile(process.hThread);
        if (WaitForSingleObject(handle.get(), kDeadline) != WAIT_OBJECT_0) {
            TerminateProcess(handle.get(), 3);
            ADD_FAILURE() << "save_child.exe did not end at call " << n;
            return kSaved;
        }
        DWORD code = 0;
        GetExitCodeProcess(handle.get(), &code);
        return code;
    }
    void Save(std::wstring_view content) { SaveFile(files, text, target, content); }
    // Opens the target for ourselves alone, as a scanner might.
    UniqueHandle HoldTarget(DWORD share) const {
        return OwnFile(CreateFileW(target.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING,
                                   FILE_ATTRIBUTE_NORMAL, nullptr));
    }

    TempFolder folder;
    std::wstring target = folder / L"Bestellung Grün.bsk";
    WinFileSystem files;
    WinTextService text;
    const std::string fresh = std::string(kLength, 'n');
};

TEST_F(SafeSave, AProcessEndedAtAnyCallLeavesTheOldOrTheNewFile) {
    struct Scenario {
        const char* name;
        bool had_old;
        bool had_leftover;
    };
    int points = 0, kept = 0, replaced = 0, left_something = 0;
    for (const Scenario& scenario :
         {Scenario{"over an old file", true, false}, Scenario{"a new file", false, false},
          Scenario{"after a save that was ended", true, true}}) {
        for (int n = 1;; ++n) {
            std::error_code ignored;
            std::filesystem::remove(std::filesystem::path(target), ignored);
            if (scenario.had_old) folder.Put(L"Bestellung Grün.bsk", "old");
            if (scenario.had_leftover) {
                folder.Put(GetFileName(TemporaryName(text, target)), "left by another");
            }
            const DWORD code = SaveInChild(n);
            ASSERT_TRUE(code == kSaved || code == kEnded) << scenario.name << ": " << code;
            const std::string now = folder.Get(L"Bestellung Grün.bsk");
            if (code == kSaved) {
                EXPECT_EQ(now, fresh);
                EXPECT_EQ(folder.Count(), 1);
                EXPECT_GT(n, 8) << "the calls were not caught";
                break;
            }
            ++points;
            const bool is_old = now == (scenario.had_old ? "old" : "<missing>");
            ASSERT_TRUE(is_old || now == fresh)
                << scenario.name << ", call " << n << ": " << now.size() << " bytes";
            ++(is_old ? kept : replaced);
            if (folder.Count() > (now == "<missing>" ? 0 : 1)) ++left_something;

            Save(L"later");
            ASSERT_EQ(folder.Get(L"Bestellung Grün.bsk"), "later") << scenario.name << ", " << n;
            ASSERT_EQ(folder.Count(), 1) << scenario.name << ", call " << n;
        }
    }
    EXPECT_GT(kept, 0);
    EXPECT_GE(replaced, 3);  // ended after the last step that matters
    EXPECT_GT(left_something, 0);
    std::printf(
        "save ended by force: %d points covered; %d kept the old file, %d had the new one, %d left "
        "a temporary file that the next save removed\n",
        points, kept, replaced, left_something);
}

TEST_F(SafeSave, ATargetHeldForAMomentIsReplacedWhenItIsLetGo) {
    for (const DWORD share : {DWORD{0}, DWORD{FILE_SHARE_READ}}) {
        folder.Put(L"Bestellung Grün.bsk", "old");
        UniqueHandle held = HoldTarget(share);
        ASSERT_TRUE(held);
        std::thread other([&] {
            // how long the other program needs; not a wait for anything
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            held.reset();
        });
        std::int32_t raised = RaisedBy([&] { Save(L"new"); });
        other.join();
        EXPECT_EQ(raised, 0);
        EXPECT_EQ(folder.Get(L"Bestellung Grün.bsk"), "new");
        EXPECT_EQ(folder.Count(), 1);
    }
}

TEST_F(SafeSave, ATargetHeldForGoodIsReportedAfterTwoSecondsAndKept) {
    folder.Put(L"Bestellung Grün.bsk", "old");
    const auto begin = std::chrono::steady_clock::now();
    {
        const UniqueHandle held = HoldTarget(FILE_SHARE_READ);
        ASSERT_TRUE(held);
        EXPECT_EQ(RaisedBy([&] { Save(L"new"); }), 70);
    }
    EXPECT_GE(std::chrono::steady_clock::now() - begin, kSaveRetryTime);
    EXPECT_EQ(folder.Get(L"Bestellung Grün.bsk"), "old");
    EXPECT_EQ(folder.Count(), 1);
}

TEST_F(SafeSave, AttributesSurviveAndAReadOnlyTargetIsRefused) {
    folder.Put(L"Bestellung Grün.bsk", "old");
    SetFileAttributesW(target.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    Save(L"new");
    EXPECT_EQ(folder.Get(L"Bestellung Grün.bsk"), "new");
    EXPECT_EQ(GetFileAttributesW(target.c_str()) & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM),
              DWORD{FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM});

    SetFileAttributesW(target.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(RaisedBy([&] { Save(L"newer"); }), 75);
    EXPECT_EQ(folder.Get(L"Bestellung Grün.bsk"), "new");
    EXPECT_NE(GetFileAttributesW(target.c_str()) & FILE_ATTRIBUTE_READONLY, 0u);
    EXPECT_EQ(folder.Count(), 1);
    SetFileAttributesW(target.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(SafeSave, PathsThatLeadNowhereAreRefused) {
    target = folder / L"fehlt\\a.bsk";
    EXPECT_EQ(RaisedBy([&] { Save(L"x"); }), 76);
    target = L"Q:\\a.bsk";  // no such drive; systems differ in the number they give it
    EXPECT_NE(RaisedBy([&] { Save(L"x"); }), 0);
    target = L"\\\\no.such.host.example\\share\\a.bsk";
    EXPECT_NE(RaisedBy([&] { Save(L"x"); }), 0);
    target = folder / (std::wstring(32'000, L'x') + L".bsk");
    EXPECT_NE(RaisedBy([&] { Save(L"x"); }), 0);
    EXPECT_EQ(folder.Count(), 0);
}

// 250 characters of folders, where a long temporary name would not have fitted.
TEST_F(SafeSave, ADeepFolderTakesTheShortTemporaryName) {
    std::wstring deep = FromNativePath(folder.path());
    while (deep.size() < 225) deep += L"\\0123456789";
    std::filesystem::create_directories(std::filesystem::path(deep));
    target = deep + L"\\a.bsk";
    Save(L"x");
    Save(L"xy");
    EXPECT_EQ(LoadFile(files, text, target), L"xy");
}

}  // namespace
}  // namespace demovex
