// What else happens while a file dialog or a question of the basket window is open: keys, the
// host's calls, the window's end.
#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include "tests/support/real_basket_window_win.h"

namespace demovex {
namespace {

using namespace real_basket;

// Runs what another thread wants on the thread that made it, also inside a dialog's loop.
class Caller {
  public:
    Caller() {
        window_ = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                                  nullptr);
        SetWindowSubclass(window_, &Procedure, 0, 0);
    }
    ~Caller() { DestroyWindow(window_); }
    Caller(const Caller&) = delete;
    Caller& operator=(const Caller&) = delete;
    void Run(const std::function<void()>& work) const {
        SendMessageW(window_, WM_APP, 0, reinterpret_cast<LPARAM>(&work));
    }

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                                      DWORD_PTR) {
        if (message != WM_APP) return DefSubclassProc(window, message, w, l);
        (*reinterpret_cast<const std::function<void()>*>(l))();
        return 0;
    }
    HWND window_;
};

// Presses keys once `dialog` has the focus.
void PressKeys(HWND dialog, std::initializer_list<std::pair<WORD, bool>> keys) {
    WaitUntil([dialog] {
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        return GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &info) &&
               (info.hwndFocus == dialog || IsChild(dialog, info.hwndFocus));
    });
    std::vector<INPUT> input;
    for (const auto& [key, down] : keys) {
        INPUT one{};
        one.type = INPUT_KEYBOARD;
        one.ki.wVk = key;
        one.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
        one.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
        input.push_back(one);
    }
    SendInput(static_cast<UINT>(input.size()), input.data(), sizeof(INPUT));
}

struct WindowDialogs : testing::Test {
    void Order(const std::wstring& number) { basket.Link(number, L"K", L"U"); }
    // The host's link, while a dialog is open.
    void FollowLink(const std::wstring& number) {
        bool has_info = false;
        basket.window->Form()->AddArtikel(number, L"K", L"U", has_info, 1, true);
    }

    RealBasketWindow basket;
    Caller main;
};

TEST_F(WindowDialogs, ANameTypedByKeysAndEnterIsChosen) {
    Order(L"4711");
    User::Act typed{User::Kind::kFileDialog, 0};
    std::wstring name;
    typed.look = [&](HWND dialog) {
        // the shortcuts of the basket window are none in a dialog
        PressKeys(dialog, {{WORD{VK_CONTROL}, true},
                           {'S', true},
                           {'S', false},
                           {'O', true},
                           {'O', false},
                           {WORD{VK_CONTROL}, false}});
        // Wine takes the state of the keys from the X server when a window gets the focus, so a
        // Ctrl key that was sent just before may count as released, and the letters are typed: they
        // go.
        PressKeys(dialog, {{WORD{VK_HOME}, true},
                           {WORD{VK_HOME}, false},
                           {WORD{VK_SHIFT}, true},
                           {WORD{VK_END}, true},
                           {WORD{VK_END}, false},
                           {WORD{VK_SHIFT}, false},
                           {WORD{VK_BACK}, true},
                           {WORD{VK_BACK}, false}});
        PressKeys(dialog, {{'4', true}, {'4', false}, {'2', true}, {'2', false}});
        const HWND box = GetDlgItem(dialog, User::kNameBox);
        WaitUntil([&] { return (name = User::TextOf(box)) == L"42"; });
        PressKeys(dialog, {{WORD{VK_RETURN}, true}, {WORD{VK_RETURN}, false}});
    };
    EXPECT_EQ(basket.PressCtrl('S', {typed}), (Texts{L"Speichern unter: "}));
    EXPECT_EQ(name, L"42");
    EXPECT_EQ(basket.folder.Get(L"42"), kHeader + k4711);
}

TEST_F(WindowDialogs, EscapeCancelsTheDialogAndTheQuestion) {
    Order(L"4711");
    const auto escape = [](HWND dialog) {
        PressKeys(dialog, {{WORD{VK_ESCAPE}, true}, {WORD{VK_ESCAPE}, false}});
    };
    EXPECT_EQ(basket.PressCtrl('S', {{User::Kind::kFileDialog, 0, {}, escape}}),
              (Texts{L"Speichern unter: "}));
    EXPECT_EQ(basket.PressCtrl('O', {{User::Kind::kBox, 0, {}, escape}}), (Texts{kAsks}));
    EXPECT_TRUE(basket.Modified());
    EXPECT_EQ(basket.Numbers(), (Texts{L"4711"}));
    EXPECT_EQ(basket.Files(), 0);
}

TEST_F(WindowDialogs, WhatTheHostOrdersMeanwhileIsSavedAndSentToo) {
    Order(L"4711");
    const auto order = [&](HWND) { main.Run([&] { FollowLink(L"4712"); }); };
    EXPECT_EQ(
        basket.Choose(Command::mnuDateiSpeichern, {User::Looking(User::Choose(L"a.bsk"), order)}),
        (Texts{L"Speichern unter: "}));
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711 + k4712);
    EXPECT_FALSE(basket.Modified());
}

TEST_F(WindowDialogs, AFileThatTheHostLoadsMeanwhileIsReplacedByTheChosenOne) {
    basket.folder.Put(L"a.bsk", kHeader + k4711);
    basket.folder.Put(L"b.bsk", kHeader + k4712);
    const auto load = [&](HWND) {
        main.Run([&] { basket.window->Form()->Load(basket.folder / L"a.bsk"); });
    };
    EXPECT_EQ(
        basket.Choose(Command::mnuDateiOeffnen, {User::Looking(User::Choose(L"b.bsk"), load)}),
        (Texts{L"Öffnen: "}));
    EXPECT_EQ(basket.Numbers(), (Texts{L"4712"}));
    EXPECT_EQ(basket.Stored(), (Texts{basket.folder / L"b.bsk", basket.folder / L"a.bsk"}));
}

// The host may end its basket windows at any time; whatever is open before them goes, too.
TEST_F(WindowDialogs, TheHostMayDestroyTheWindowWhileAFileDialogIsOpen) {
    Order(L"4711");
    const auto destroy = [&](HWND) { main.Run([&] { DestroyWindow(basket.Handle()); }); };
    EXPECT_EQ(
        basket.Choose(Command::mnuDateiSpeichern, {{User::Kind::kFileDialog, 0, {}, destroy}}),
        (Texts{L"Speichern unter: "}));
    EXPECT_FALSE(basket.window->Alive());
    EXPECT_EQ(basket.owner->closed, 1);
    EXPECT_EQ(basket.Files(), 0);
}

TEST_F(WindowDialogs, TheHostMayDestroyTheWindowWhileAQuestionIsOpen) {
    for (const Command command : {Command::mnuDateiNeu, Command::mnuDateiBeenden}) {
        SCOPED_TRACE(static_cast<int>(command));
        RealBasketWindow other;
        other.Link(L"4711");
        const auto destroy = [&](HWND) { main.Run([&] { DestroyWindow(other.Handle()); }); };
        EXPECT_EQ(other.Choose(command, {{User::Kind::kBox, 0, {}, destroy}}), (Texts{kAsks}));
        EXPECT_FALSE(other.window->Alive());
        EXPECT_EQ(other.owner->closed, 1);
    }
}

TEST_F(WindowDialogs, TheHostMayDestroyTheWindowWhileAMessageIsOpen) {
    basket.folder.Put(L"b.bsk", kHeader + "77\t\t1\r\n");
    const auto destroy = [&](HWND) { main.Run([&] { DestroyWindow(basket.Handle()); }); };
    EXPECT_EQ(basket
                  .Choose(Command::mnuDateiOeffnen,
                          {User::Choose(L"b.bsk"), {User::Kind::kBox, 0, {}, destroy}})
                  .size(),
              2u);
    EXPECT_FALSE(basket.window->Alive());
}

// The end of the session comes while a dialog is open.
TEST_F(WindowDialogs, AnUnchangedBasketClosesUnderItsOpenDialog) {
    const auto close = [&](HWND) {
        main.Run([&] { SendMessageW(basket.Handle(), WM_CLOSE, 0, 0); });
    };
    EXPECT_EQ(basket.Choose(Command::mnuDateiOeffnen, {{User::Kind::kFileDialog, 0, {}, close}}),
              (Texts{L"Öffnen: "}));
    EXPECT_FALSE(basket.window->Alive());
    EXPECT_EQ(basket.owner->closed, 1);
}

TEST_F(WindowDialogs, ClosingDuringAQuestionAsksOnTopOfItAndTheFirstQuestionIsAbandoned) {
    Order(L"4711");
    const auto close = [&](HWND first) {
        PostMessageW(basket.Handle(), WM_CLOSE, 0, 0);
        HWND second = nullptr;
        WaitUntil([&] { return (second = User::Front()) != first && second != nullptr; });
        PostMessageW(second, WM_COMMAND, IDNO, 0);
    };
    EXPECT_EQ(basket.Choose(Command::mnuDateiOeffnen, {{User::Kind::kBox, 0, {}, close}}),
              (Texts{kAsks}));
    EXPECT_FALSE(basket.window->Alive());
    EXPECT_EQ(basket.owner->closed, 1);
}

}  // namespace
}  // namespace demovex
