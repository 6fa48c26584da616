// The about box on the screen, used by a second thread the way a user does.
#include "dialogs/about_box_win.h"

#include <gtest/gtest.h>

// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on

#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "dialogs/about_text.h"
#include "tests/support/fake_services.h"
#include "tests/support/wait_until.h"
#include "tests/support/window_picture_win.h"

namespace demovex {
namespace {

const std::wstring kTwoLinks =
    L"Version " DEMOVEX_VERSION
    "\r\n\r\n<A HREF=\"C:\\Hilfe\\Hilfe.html\">Hilfe zum Warenkorb</A>\r\n"
    L"<A HREF=\"http://www.vexmart.example/\">www.vexmart.example</A>";

BOOL CALLBACK FindDialog(HWND window, LPARAM place) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    wchar_t name[20] = L"";
    GetClassNameW(window, name, 20);
    if (process != GetCurrentProcessId() || std::wstring_view(name) != L"#32770" ||
        !IsWindowVisible(window) || GetDlgItem(window, AboutBox::kInfo) == nullptr) {
        return TRUE;
    }
    *reinterpret_cast<HWND*>(place) = window;
    return FALSE;
}
BOOL CALLBACK FindToolTips(HWND window, LPARAM place) {
    wchar_t name[30] = L"";
    GetClassNameW(window, name, 30);
    if (std::wstring_view(name) == TOOLTIPS_CLASSW) *reinterpret_cast<HWND*>(place) = window;
    return TRUE;
}

std::wstring TextOf(HWND window) {
    wchar_t text[1000] = L"";
    SendMessageW(window, WM_GETTEXT, 1000, reinterpret_cast<LPARAM>(text));
    return text;
}
RECT PlaceOf(HWND child) {
    RECT rect = {};
    GetWindowRect(child, &rect);
    MapWindowPoints(nullptr, GetParent(child), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}
HWND FocusOf(HWND dialog) {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &info);
    return info.hwndFocus;
}
void Key(WORD key) {
    INPUT input[2] = {};
    for (INPUT& each : input) {
        each.type = INPUT_KEYBOARD;
        each.ki.wVk = key;
    }
    input[1].ki.dwFlags = KEYEVENTF_KEYUP;
    SendInput(2, input, sizeof(INPUT));
}

struct AboutBoxTest : testing::Test {
    HWND owner = CreateWindowExW(0, L"STATIC", L"Warenkorb", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100,
                                 80, 700, 500, nullptr, nullptr, nullptr, nullptr);
    FakeShell shell;
    FakeMessageBox messages;
    HICON picture = LoadIconW(nullptr, IDI_INFORMATION);

    ~AboutBoxTest() override { DestroyWindow(owner); }

    // Shows the box and lets `act` use it; closes it afterwards when it is still open.
    void Use(const std::wstring& text, const std::function<void(HWND)>& act) {
        bool seen = false;
        std::thread user([&] {
            HWND dialog = nullptr;
            seen = WaitUntil([&] {
                EnumWindows(&FindDialog, reinterpret_cast<LPARAM>(&dialog));
                return dialog != nullptr;
            });
            if (!seen) return;
            act(dialog);
            if (IsWindow(dialog)) PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
        });
        AboutBox(GetModuleHandleW(nullptr), picture, &shell, &messages)
            .Show(owner, kAboutTitle, text);
        user.join();
        ASSERT_TRUE(seen);
    }
};

TEST_F(AboutBoxTest, ShowsTitlePictureAndTextWithoutMarkup) {
    std::wstring caption, title, info;
    LRESULT icon = 0;
    bool owner_enabled = true;
    HWND dialog_owner = nullptr;
    Use(kTwoLinks, [&](HWND dialog) {
        caption = TextOf(dialog);
        title = TextOf(GetDlgItem(dialog, AboutBox::kTitle));
        info = TextOf(GetDlgItem(dialog, AboutBox::kInfo));
        icon = SendDlgItemMessageW(dialog, AboutBox::kPicture, STM_GETICON, 0, 0);
        owner_enabled = IsWindowEnabled(owner) != FALSE;
        dialog_owner = GetWindow(dialog, GW_OWNER);
    });
    EXPECT_EQ(caption, kAboutTitle);
    EXPECT_EQ(title, kAboutTitle);
    EXPECT_EQ(info,
              L"Version " DEMOVEX_VERSION "\r\n\r\nHilfe zum Warenkorb\r\nwww.vexmart.example");
    EXPECT_EQ(icon, reinterpret_cast<LRESULT>(picture));
    EXPECT_FALSE(owner_enabled);
    EXPECT_EQ(dialog_owner, owner);
    EXPECT_TRUE(IsWindowEnabled(owner));
}

TEST_F(AboutBoxTest, LinksLieExactlyOverTheirText) {
    Use(kTwoLinks, [&](HWND dialog) {
        const HWND info_window = GetDlgItem(dialog, AboutBox::kInfo);
        const RECT info = PlaceOf(info_window);
        for (int i = 0; i < 2; ++i) {
            const HWND link = GetDlgItem(dialog, AboutBox::kFirstLink + i);
            ASSERT_NE(link, nullptr);
            const RECT place = PlaceOf(link);
            EXPECT_EQ(place.left, info.left);
            EXPECT_EQ(place.top, info.top + (2 + i) * 13);
            // as high as the font, which fits its line
            EXPECT_GE(place.bottom - place.top, 10);
            EXPECT_LE(place.bottom - place.top, 13);
            // every dot of the text beneath is covered by a dot of the label
            RedrawWindow(dialog, nullptr, nullptr,
                         RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
            const WindowPicture label = WindowPicture::OfScreen(link);
            ShowWindow(link, SW_HIDE);
            RedrawWindow(dialog, nullptr, nullptr,
                         RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
            const WindowPicture beneath = WindowPicture::OfScreen(link);
            ShowWindow(link, SW_SHOW);
            const COLORREF ground = GetSysColor(COLOR_BTNFACE);
            // nothing of the text sticks out behind the label
            const WindowPicture whole = WindowPicture::OfScreen(info_window);
            const int end = static_cast<int>(place.right - info.left);
            EXPECT_EQ(whole.Count({end, (2 + i) * 13, whole.Width(), (3 + i) * 13}, ground),
                      (whole.Width() - end) * 13);
            int dots = 0;
            int uncovered = 0;
            for (int y = 0; y < beneath.Height(); ++y) {
                for (int x = 0; x < beneath.Width(); ++x) {
                    if (beneath.At(x, y) == ground) continue;
                    ++dots;
                    uncovered += label.At(x, y) == ground;
                }
            }
            EXPECT_GT(dots, 100);
            EXPECT_EQ(uncovered, 0);
            // and the link can be told from the text beneath by its line
            int underlined = 0;
            for (int y = 9; y < label.Height(); ++y) {
                int line = 0;
                for (int x = 0; x < label.Width(); ++x) line += label.At(x, y) != ground;
                underlined += line >= label.Width() - 1;
            }
            EXPECT_GE(underlined, 1);
        }
        EXPECT_EQ(GetDlgItem(dialog, AboutBox::kFirstLink + 2), nullptr);
    });
}

TEST_F(AboutBoxTest, AClickOpensTheAddressAndLeavesTheBoxOpen) {
    Use(kTwoLinks, [&](HWND dialog) {
        SendDlgItemMessageW(dialog, AboutBox::kFirstLink + 1, BM_CLICK, 0, 0);
        SendDlgItemMessageW(dialog, AboutBox::kFirstLink, BM_CLICK, 0, 0);
        EXPECT_TRUE(IsWindow(dialog));
    });
    const std::vector<std::wstring> expected = {L"http://www.vexmart.example/",
                                                L"C:\\Hilfe\\Hilfe.html"};
    EXPECT_EQ(shell.opened, expected);
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(AboutBoxTest, ALinkThatCannotBeOpenedIsReportedAndTheBoxStaysOpen) {
    shell.result = 31;
    Use(kTwoLinks, [&](HWND dialog) {
        SendDlgItemMessageW(dialog, AboutBox::kFirstLink + 1, BM_CLICK, 0, 0);
        EXPECT_TRUE(IsWindow(dialog));
    });
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].title, L"Fehler beim Öffnen");
    EXPECT_EQ(messages.shown[0].text,
              L"Die WebSite 'http://www.vexmart.example/' konnte nicht geöffnet werden. Versuchen "
              L"Sie bitte die Website direkt in Ihrem Webbrowser zu öffnen.");
    EXPECT_EQ(messages.shown[0].buttons, MessageButtons::kOk);
}

TEST_F(AboutBoxTest, TabReachesTheLinksEnterAndSpaceOpenThemAndTheFocusShows) {
    Use(kTwoLinks, [&](HWND dialog) {
        const HWND ok = GetDlgItem(dialog, IDOK);
        const HWND links[] = {GetDlgItem(dialog, AboutBox::kFirstLink),
                              GetDlgItem(dialog, AboutBox::kFirstLink + 1)};
        ASSERT_TRUE(WaitUntil([&] { return FocusOf(dialog) == ok; }));
        // each label went to the front in its turn, so the last one is first
        Key(VK_TAB);
        ASSERT_TRUE(WaitUntil([&] { return FocusOf(dialog) == links[1]; }));
        RedrawWindow(links[0], nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        RedrawWindow(links[1], nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        const WindowPicture focused = WindowPicture::OfScreen(links[1]);
        int dotted = 0;  // the top row holds the focus rectangle alone
        for (int x = 0; x < focused.Width(); ++x) {
            dotted += focused.At(x, 0) != GetSysColor(COLOR_BTNFACE);
        }
        EXPECT_GT(dotted, focused.Width() / 3);
        Key(VK_RETURN);
        EXPECT_TRUE(WaitUntil([&] { return shell.opened.size() == 1; }));
        Key(VK_TAB);
        ASSERT_TRUE(WaitUntil([&] { return FocusOf(dialog) == links[0]; }));
        Key(VK_SPACE);
        EXPECT_TRUE(WaitUntil([&] { return shell.opened.size() == 2; }));
        Key(VK_TAB);
        EXPECT_TRUE(WaitUntil([&] { return FocusOf(dialog) == ok; }));
        Key(VK_RETURN);
        EXPECT_TRUE(WaitUntil([&] { return !IsWindow(dialog); }));
    });
    const std::vector<std::wstring> expected = {L"http://www.vexmart.example/",
                                                L"C:\\Hilfe\\Hilfe.html"};
    EXPECT_EQ(shell.opened, expected);
}

// Another program may send what only the system should: no pointer of it is followed.
TEST_F(AboutBoxTest, FakedMessagesAreNotBelieved) {
    Use(kTwoLinks, [&](HWND dialog) {
        const HWND link = GetDlgItem(dialog, AboutBox::kFirstLink + 1);
        SendMessageW(dialog, WM_INITDIALOG, 0, 16);
        EXPECT_EQ(TextOf(dialog), kAboutTitle);
        // handed in as it stands: a newer Wine reads what this message points to on the way, and a
        // sender whose address nobody can read is never answered there
        const auto procedure = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(link, GWLP_WNDPROC));
        for (const WPARAM key : {0, VK_RETURN, VK_TAB}) {
            const LRESULT code = CallWindowProcW(procedure, link, WM_GETDLGCODE, key, 16);
            EXPECT_EQ((code & DLGC_WANTMESSAGE) != 0, key == VK_RETURN) << key;
        }
        SendMessageW(link, WM_CLOSE, 0, 0);
        EXPECT_TRUE(IsWindow(link));
        SendMessageW(link, BM_CLICK, 0, 0);
        EXPECT_TRUE(IsWindow(dialog));
    });
    EXPECT_EQ(shell.opened, std::vector<std::wstring>{L"http://www.vexmart.example/"});
}

TEST_F(AboutBoxTest, EscapeClosesTheBox) {
    Use(kTwoLinks, [&](HWND dialog) {
        ASSERT_TRUE(WaitUntil([&] { return FocusOf(dialog) == GetDlgItem(dialog, IDOK); }));
        Key(VK_ESCAPE);
        EXPECT_TRUE(WaitUntil([&] { return !IsWindow(dialog); }));
    });
}

TEST_F(AboutBoxTest, LinksHaveAHandCursorAndTheirAddressAsToolTip) {
    Use(kTwoLinks, [&](HWND dialog) {
        HWND tips = nullptr;
        EnumThreadWindows(GetWindowThreadProcessId(dialog, nullptr), &FindToolTips,
                          reinterpret_cast<LPARAM>(&tips));
        ASSERT_NE(tips, nullptr);
        for (int i = 0; i < 2; ++i) {
            const HWND link = GetDlgItem(dialog, AboutBox::kFirstLink + i);
            CURSORINFO cursor = {};
            cursor.cbSize = sizeof cursor;
            SendMessageW(link, WM_SETCURSOR, reinterpret_cast<WPARAM>(link),
                         MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
            GetCursorInfo(&cursor);
            EXPECT_EQ(cursor.hCursor, LoadCursorW(nullptr, IDC_HAND));
            wchar_t text[200] = L"";
            TTTOOLINFOW tool = {};
            tool.cbSize = TTTOOLINFOW_V2_SIZE;
            tool.uFlags = TTF_IDISHWND;
            tool.hwnd = dialog;
            tool.uId = reinterpret_cast<UINT_PTR>(link);
            tool.lpszText = text;
            SendMessageW(tips, TTM_GETTEXTW, 200, reinterpret_cast<LPARAM>(&tool));
            EXPECT_STREQ(text, i == 0 ? L"C:\\Hilfe\\Hilfe.html" : L"http://www.vexmart.example/");
        }
    });
}

TEST_F(AboutBoxTest, ATextWithoutLinksIsShownUnchanged) {
    std::wstring info;
    Use(L"<a href=\"x\">klein</a>", [&](HWND dialog) {
        info = TextOf(GetDlgItem(dialog, AboutBox::kInfo));
        EXPECT_EQ(GetDlgItem(dialog, AboutBox::kFirstLink), nullptr);
    });
    EXPECT_EQ(info, L"<a href=\"x\">klein</a>");
}

TEST_F(AboutBoxTest, UnfinishedMarkupIsReportedAndTheTextShownAsItIs) {
    std::wstring info;
    Use(L"Vor <A HREF=\"ohne Ende", [&](HWND dialog) {
        info = TextOf(GetDlgItem(dialog, AboutBox::kInfo));
        EXPECT_EQ(GetDlgItem(dialog, AboutBox::kFirstLink), nullptr);
    });
    EXPECT_EQ(info, L"Vor <A HREF=\"ohne Ende");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, L"Invalid procedure call or argument");
    EXPECT_EQ(messages.shown[0].icon, MessageIcon::kExclamation);
}

TEST_F(AboutBoxTest, TheShippedTextIsWholeOnTheScreen) {
    Use(AboutText(L"C:\\Programme\\Vexmart Demo"), [&](HWND dialog) {
        RECT outer = {};
        GetWindowRect(dialog, &outer);
        EXPECT_GE(outer.left, 0);
        EXPECT_LE(outer.right, GetSystemMetrics(SM_CXSCREEN));
        const RECT info = PlaceOf(GetDlgItem(dialog, AboutBox::kInfo));
        const RECT ok = PlaceOf(GetDlgItem(dialog, IDOK));
        RECT inner = {};
        GetClientRect(dialog, &inner);
        EXPECT_LE(info.bottom, ok.top);
        EXPECT_LE(ok.right, inner.right);
        EXPECT_LE(ok.bottom, inner.bottom);
        RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        EXPECT_TRUE(WindowPicture::OfScreen(dialog).Save("about_box.bmp"));
    });
}

}  // namespace
}  // namespace demovex
