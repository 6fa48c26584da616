#include "platform/clipboard_win.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"
#include "tests/support/unix_command_win.h"
#include "tests/support/wait_until.h"

namespace demovex {
namespace {

HWND MakeWindow() {
    return CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr,
                           nullptr);
}

std::wstring ClipboardText() {
    if (!WaitUntil([] { return OpenClipboard(nullptr) != FALSE; })) return L"<held>";
    std::wstring text = L"<none>";
    if (HANDLE memory = GetClipboardData(CF_UNICODETEXT)) {
        text = static_cast<const wchar_t*>(GlobalLock(memory));
        GlobalUnlock(memory);
    }
    CloseClipboard();
    return text;
}

// Holds the clipboard open as another program does: another thread with a window of its own.
class Holder {
  public:
    explicit Holder(std::chrono::milliseconds duration)
        : thread_([this, duration] {
              const HWND window = MakeWindow();
              WaitUntil([&] { return OpenClipboard(window) != FALSE; });
              holds_ = true;
              const auto end = std::chrono::steady_clock::now() + duration;
              WaitUntil([&] { return release_ || std::chrono::steady_clock::now() >= end; },
                        std::chrono::seconds(60));
              CloseClipboard();
              DestroyWindow(window);
          }) {
        EXPECT_TRUE(WaitUntil([this] { return holds_.load(); }));
    }
    ~Holder() {
        release_ = true;
        thread_.join();
    }

  private:
    std::atomic<bool> holds_{false}, release_{false};
    std::thread thread_;
};

struct SystemClipboard : testing::Test {
    HWND window = MakeWindow();
    WinClipboard clipboard{[this] { return window; }};
    ~SystemClipboard() override { DestroyWindow(window); }
};

TEST_F(SystemClipboard, TakesTextWithAllItsCharacters) {
    const std::wstring text =
        L"ArtNr\tBezeichnung\r\n4711\t\u00C4pfel \u20AC \u4E00 \U0001F600\r\n";
    clipboard.SetText(text);
    EXPECT_EQ(ClipboardText(), text);
    clipboard.SetText(L"");
    EXPECT_EQ(ClipboardText(), L"");
    clipboard.SetText(std::wstring(1'000'000, L'x'));
    EXPECT_EQ(ClipboardText().size(), 1'000'000u);
}

TEST_F(SystemClipboard, LeavesNothingOfTheOldContent) {
    ASSERT_TRUE(OpenClipboard(window));
    EmptyClipboard();
    const UINT format = RegisterClipboardFormatW(L"DemoVexTest");
    SetClipboardData(format, GlobalAlloc(GMEM_MOVEABLE, 8));
    CloseClipboard();
    clipboard.SetText(L"new");
    EXPECT_FALSE(IsClipboardFormatAvailable(format));
    EXPECT_TRUE(IsClipboardFormatAvailable(CF_TEXT));  // made by the system
}

TEST_F(SystemClipboard, WorksWithoutAnOwnerWindow) {
    WinClipboard ownerless{{}};
    ownerless.SetText(L"without");
    EXPECT_EQ(ClipboardText(), L"without");
}

TEST_F(SystemClipboard, WaitsForAProgramThatHoldsItBriefly) {
    clipboard.SetText(L"old");
    const Holder holder(std::chrono::milliseconds(150));
    clipboard.SetText(L"new");
    EXPECT_EQ(ClipboardText(), L"new");
}

TEST_F(SystemClipboard, RaisesCantOpenAndKeepsTheContentWhileAnotherProgramHoldsIt) {
    clipboard.SetText(L"old");
    {
        const Holder holder(std::chrono::seconds(30));
        const auto begin = std::chrono::steady_clock::now();
        try {
            clipboard.SetText(L"new");
            ADD_FAILURE() << "nothing was raised";
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), 521);
            EXPECT_EQ(error.description(), L"Can't open Clipboard");
        }
        const auto took = std::chrono::steady_clock::now() - begin;
        EXPECT_GE(took, std::chrono::milliseconds(450));
        EXPECT_LT(took, std::chrono::milliseconds(5'000));
    }
    EXPECT_EQ(ClipboardText(), L"old");
}

TEST_F(SystemClipboard, PassesTextToOtherProgramsOfTheDesktop) {
    if (!HasUnixCommands()) GTEST_SKIP() << "needs a desktop program beneath Wine";
    const TempFolder folder;
    const std::string out = UnixPath(folder.path().wstring());
    ASSERT_TRUE(StartUnix("command -v xclip > '" + out + "/which'; echo > '" + out + "/done'"));
    ASSERT_TRUE(WaitUntil([&] { return folder.Get(L"done") != "<missing>"; }));
    if (folder.Get(L"which").empty()) GTEST_SKIP() << "needs xclip";
    clipboard.SetText(L"4711\t\u00C4pfel \u20AC");
    ASSERT_TRUE(StartUnix("timeout 20 xclip -selection clipboard -o -t UTF8_STRING > '" + out +
                          "/part'; mv '" + out + "/part' '" + out + "/text'"));
    // the system asks this thread for the text
    ASSERT_TRUE(WaitUntil(
        [&] {
            MSG message;
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
            return folder.Get(L"text") != "<missing>";
        },
        std::chrono::seconds(25)));
    EXPECT_EQ(folder.Get(L"text"), "4711\t\xC3\x84pfel \xE2\x82\xAC");
}

}  // namespace
}  // namespace demovex
