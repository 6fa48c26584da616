// Messages that another program of the same user may send to the basket's windows, as if they were
// the system's own. Nothing of them is believed, and the basket stays as it is.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "basket/window/ids.h"
#include "tests/support/test_basket_window_win.h"

namespace demovex {
namespace {

BOOL CALLBACK Collect(HWND window, LPARAM to) {
    reinterpret_cast<std::vector<HWND>*>(to)->push_back(window);
    return TRUE;
}

// The basket window and all that is in it.
std::vector<HWND> AllWindows(HWND basket) {
    std::vector<HWND> windows{basket};
    EnumChildWindows(basket, &Collect, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

// Those whose procedure is ours alone; the others are the system's controls.
std::vector<HWND> OurWindows(HWND basket) {
    std::vector<HWND> ours;
    for (HWND window : AllWindows(basket)) {
        wchar_t name[64] = L"";
        GetClassNameW(window, name, 64);
        if (std::wstring_view(name).starts_with(L"DemoVexClient.")) ours.push_back(window);
    }
    return ours;
}

// The basket works as a user and a host expect, and its end is told once.
void ExpectWhole(BasketWindowFixture& basket, const std::wstring& caption) {
    ASSERT_TRUE(basket.window->Alive());
    EXPECT_EQ(basket.owner->closed, 0);
    wchar_t text[128] = L"";
    GetWindowTextW(basket.Handle(), text, 128);
    EXPECT_EQ(text, caption);
    EXPECT_TRUE(basket.Link(L"4711"));
    EXPECT_EQ(basket.window->Liste().TextMatrix(1, 1), L"4711");
    EXPECT_NE(GetMenu(basket.Handle()), nullptr);
    basket.messages.answers = {MessageAnswer::kNo};
    SendMessageW(basket.Handle(), WM_CLOSE, 0, 0);
    EXPECT_FALSE(basket.window->Alive());
    EXPECT_EQ(basket.owner->closed, 1);
}

std::wstring CaptionOf(HWND window) {
    wchar_t text[128] = L"";
    GetWindowTextW(window, text, 128);
    return text;
}

TEST(WindowNeighbours, AFakedCreationGivesNoObject) {
    BasketWindowFixture basket;
    const std::wstring caption = CaptionOf(basket.Handle());
    CREATESTRUCTW create{};
    create.lpszName = L"anders";
    create.lpszClass = L"anders";
    create.lpCreateParams = reinterpret_cast<void*>(16);
    const auto windows = OurWindows(basket.Handle());
    ASSERT_GE(windows.size(), 4u);
    for (HWND window : windows) {
        SendMessageW(window, WM_NCCREATE, 0, reinterpret_cast<LPARAM>(&create));
    }
    basket.Pump();
    ExpectWhole(basket, caption);
}

TEST(WindowNeighbours, AFakedDestructionTakesNothing) {
    BasketWindowFixture basket;
    const std::wstring caption = CaptionOf(basket.Handle());
    const HWND grid = GetDlgItem(basket.Handle(), child_id::kListe);
    for (HWND window : OurWindows(basket.Handle())) {
        SendMessageW(window, WM_DESTROY, 0, 0);
        SendMessageW(window, WM_NCDESTROY, 0, 0);
    }
    basket.Pump();
    EXPECT_EQ(CaptionOf(grid), L"Warenkorb");
    // the grid draws and takes keys still
    basket.Link(L"4711");
    basket.Link(L"4712");
    const std::int32_t row = basket.window->Liste().Row();
    SendMessageW(grid, WM_KEYDOWN, VK_UP, 0);
    EXPECT_EQ(basket.window->Liste().Row(), row - 1);
    ExpectWhole(basket, caption);
}

TEST(WindowNeighbours, APointerInAQuestionForKeysIsNotFollowed) {
    BasketWindowFixture basket;
    const std::wstring caption = CaptionOf(basket.Handle());
    for (HWND window : AllWindows(basket.Handle())) {
        SCOPED_TRACE(GetDlgCtrlID(window));
        for (const WPARAM key : {0, VK_RETURN, VK_TAB, VK_ESCAPE}) {
            // the toolbar and the status bar answer themselves
            const int id = GetDlgCtrlID(window);
            if (id == child_id::kToolbar || id == child_id::kStatusBar) continue;
            SendMessageW(window, WM_GETDLGCODE, key, 16);
        }
    }
    ExpectWhole(basket, caption);
}

TEST(WindowNeighbours, APointerInANoticeThatNoControlOfOursGaveIsNotFollowed) {
    BasketWindowFixture basket;
    const std::wstring caption = CaptionOf(basket.Handle());
    for (HWND window : OurWindows(basket.Handle())) SendMessageW(window, WM_NOTIFY, 0, 0);
    // from another thread, as from another program that had it arrive
    std::atomic<bool> done = false;
    std::thread neighbour([&, windows = OurWindows(basket.Handle())] {
        for (HWND window : windows) {
            DWORD_PTR answer = 0;
            SendMessageTimeoutW(window, WM_NOTIFY, 0, 16, SMTO_ABORTIFHUNG, 10'000, &answer);
        }
        done = true;
    });
    EXPECT_TRUE(PumpUntil([&] { return done.load(); }));
    neighbour.join();
    ExpectWhole(basket, caption);
}

TEST(WindowNeighbours, AControlIsNotClosedAlone) {
    BasketWindowFixture basket;
    const std::wstring caption = CaptionOf(basket.Handle());
    std::vector<HWND> controls;
    for (HWND window : OurWindows(basket.Handle())) {
        if (window != basket.Handle()) controls.push_back(window);
    }
    for (const int id : {child_id::kIPText, child_id::kIPComboList}) {
        for (HWND window : AllWindows(basket.Handle())) {
            if (GetDlgCtrlID(window) == id) controls.push_back(window);
        }
    }
    ASSERT_GE(controls.size(), 5u);
    for (HWND control : controls) SendMessageW(control, WM_CLOSE, 0, 0);
    basket.Pump();
    for (HWND control : controls) EXPECT_TRUE(IsWindow(control)) << GetDlgCtrlID(control);
    ExpectWhole(basket, caption);
}

}  // namespace
}  // namespace demovex
