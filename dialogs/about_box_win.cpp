#include "dialogs/about_box_win.h"

// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "base/error.h"
#include "base/geometry.h"
#include "dialogs/about_links.h"
#include "platform/gdi_win.h"
#include "platform/handle_win.h"
#include "platform/message_box_win.h"
#include "platform/shell_win.h"

namespace demovex {
namespace {

// Places in twips; 15 to the pixel at 96 dpi.
constexpr int kMargin = 180;
constexpr int kPictureSize = 480;
constexpr int kTextLeft = 2 * kMargin + kPictureSize;
constexpr int kTitleHeight = 345;
constexpr int kInfoTop = kMargin + kTitleHeight + 75;
constexpr int kButtonWidth = 1125;
constexpr int kButtonHeight = 345;
constexpr int kLeastWidth = 4500;

// The desktop's font of dialogs: 8 points are 13 pixels high at 96 dpi, the lines' fixed height.
UniqueFont MakeFont(int points, int dpi, bool bold, bool underlined) {
    return UniqueFont(CreateFontW(-MulDiv(points, dpi, 72), 0, 0, 0, bold ? FW_BOLD : FW_NORMAL,
                                  FALSE, underlined, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                  CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_DONTCARE,
                                  L"MS Shell Dlg"));
}

// The parts of a text between line feeds, without the carriage returns before them.
template <typename F>
void ForEachLine(std::wstring_view text, F&& f) {
    for (std::size_t begin = 0, number = 0;; ++number) {
        const std::size_t end = std::min(text.find(L'\n', begin), text.size());
        std::wstring_view line = text.substr(begin, end - begin);
        if (!line.empty() && line.back() == L'\r') line.remove_suffix(1);
        f(static_cast<int>(number), line);
        if (end == text.size()) return;
        begin = end + 1;
    }
}

// Draws a text with its letters where they were measured, so that text and label agree to the dot
// even where a font is drawn wider than it says it is.
void DrawMeasured(HDC dc, int x, int y, std::wstring_view text) {
    std::vector<int> ends(text.size() + 1);
    SIZE size = {};
    const int length = static_cast<int>(text.size());
    if (!GetTextExtentExPointW(dc, text.data(), length, 0, nullptr, ends.data(), &size)) return;
    for (std::size_t i = text.size(); i-- > 1;) ends[i] -= ends[i - 1];
    ExtTextOutW(dc, x, y, 0, nullptr, text.data(), static_cast<UINT>(length), ends.data());
}

// How bright a colour is seen, 0 to 255.
int Brightness(COLORREF color) {
    return (299 * GetRValue(color) + 587 * GetGValue(color) + 114 * GetBValue(color)) / 1000;
}

// The user's colour of links where it can be read on a dialog's ground; some colour schemes have
// one that is meant for other grounds.
COLORREF LinkColor() {
    const int ground = Brightness(GetSysColor(COLOR_BTNFACE));
    for (const COLORREF color : {GetSysColor(COLOR_HOTLIGHT), RGB(0, 0, 192)}) {
        if (std::abs(Brightness(color) - ground) >= 90) return color;
    }
    return GetSysColor(COLOR_BTNTEXT);
}

class Dialog : private ITextMeasure {
  public:
    Dialog(HINSTANCE module, HICON picture, IShell* shell, IMessageBox* messages,
           const std::wstring& title, const std::wstring& text)
        : module_(module),
          picture_(picture),
          own_shell_([this] { return window_; }),
          own_messages_([this] { return window_; }, title),
          shell_(shell != nullptr ? *shell : own_shell_),
          messages_(messages != nullptr ? *messages : own_messages_),
          title_(title),
          text_(text) {}

    void Run(HWND owner) {
        // an empty dialog: its controls are made when it is there
        struct {
            DLGTEMPLATE header;
            WORD menu, window_class, title;
        } dialog = {};
        dialog.header.style = DS_MODALFRAME | WS_POPUP | WS_CAPTION | WS_SYSMENU;
        dialog.header.cx = 100;
        dialog.header.cy = 100;
        if (DialogBoxIndirectParamW(module_, &dialog.header, owner, &Dialog::Proc,
                                    reinterpret_cast<LPARAM>(this)) == -1) {
            RaiseRuntimeError(runtime_error::kOutOfMemory);
        }
    }

  private:
    // --- the edge to the system
    static INT_PTR CALLBACK Proc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
        auto* self = reinterpret_cast<Dialog*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message == WM_INITDIALOG) {
            // the system's comes first; any further one is somebody else's, and so is its pointer
            if (self != nullptr) return FALSE;
            SetWindowLongPtrW(window, GWLP_USERDATA, lparam);
            self = reinterpret_cast<Dialog*>(lparam);
            self->window_ = window;
        }
        if (self == nullptr) return FALSE;
        try {
            return self->Handle(message, wparam, lparam);
        } catch (const Error& error) {
            self->Report(error.description());
        } catch (const std::exception&) {
            self->Report(StandardDescription(runtime_error::kOutOfMemory));
        }
        return TRUE;
    }

    // A link's own procedure stands before the button's, which the window's user data keeps. (The
    // common controls' functions for this have names from version 6 on only, and a host without a
    // manifest has version 5.82.)
    static LRESULT CALLBACK LinkProc(HWND window, UINT message, WPARAM wparam,
                                     LPARAM lparam) noexcept {
        const auto button = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_USERDATA));
        switch (message) {
            case WM_SETCURSOR:
                SetCursor(LoadCursorW(nullptr, IDC_HAND));
                return TRUE;
            case WM_CLOSE:
                return 0;  // a control is not closed alone
            case WM_GETDLGCODE: {
                // Enter opens the link instead of pressing OK. What the message points to is left
                // alone: any program may send it.
                const bool enter = lparam != 0 && wparam == VK_RETURN;
                return CallWindowProcW(button, window, message, wparam, 0) |
                       (enter ? DLGC_WANTMESSAGE : 0);
            }
            case WM_KEYDOWN:
                if (wparam == VK_RETURN) {
                    SendMessageW(GetParent(window), WM_COMMAND,
                                 MAKEWPARAM(GetDlgCtrlID(window), BN_CLICKED),
                                 reinterpret_cast<LPARAM>(window));
                    return 0;
                }
                break;
            default:
                break;
        }
        return CallWindowProcW(button, window, message, wparam, lparam);
    }

    static void MakeLink(HWND button) noexcept {
        SetWindowLongPtrW(button, GWLP_USERDATA, GetWindowLongPtrW(button, GWLP_WNDPROC));
        SetWindowLongPtrW(button, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Dialog::LinkProc));
    }

    void Report(std::wstring_view description) noexcept {
        try {
            messages_.Show(description, title_, MessageButtons::kOk, MessageIcon::kExclamation);
        } catch (const std::exception&) {
            // not even that can be shown
        }
    }

    INT_PTR Handle(UINT message, WPARAM wparam, LPARAM lparam) {
        switch (message) {
            case WM_INITDIALOG:
                Build();
                return FALSE;  // the focus has been set
            case WM_COMMAND: {
                const int id = LOWORD(wparam);
                if (id == IDOK || id == IDCANCEL) {
                    EndDialog(window_, id);
                } else if (id >= AboutBox::kFirstLink && HIWORD(wparam) == BN_CLICKED) {
                    Link_Click(static_cast<std::size_t>(id - AboutBox::kFirstLink));
                } else {
                    return FALSE;
                }
                return TRUE;
            }
            case WM_DRAWITEM:
                Draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(lparam));
                return TRUE;
            default:
                return FALSE;
        }
    }

    // --- text in twips
    int Pixels(int twips) const { return Scale(dpi_).ToPixels(twips); }
    int Twips(int pixels) const { return Scale(dpi_).ToTwips(pixels); }
    SIZE Measure(std::wstring_view text) {
        const WindowDc dc(window_);
        const SelectedObject font(dc.get(), font_.get());
        SIZE size = {};
        GetTextExtentPoint32W(dc.get(), text.data(), static_cast<int>(text.size()), &size);
        return size;
    }
    int TextWidth(std::wstring_view text) override { return Twips(Measure(text).cx); }
    int TextHeight(std::wstring_view text) override {
        return Twips(Measure(text.empty() ? L" " : text).cy);
    }

    // --- set-up
    HWND Child(const wchar_t* window_class, const wchar_t* text, DWORD style, int id, int left,
               int top, int width, int height) {
        const HWND child =
            CreateWindowExW(0, window_class, text, style | WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS,
                            Pixels(left), Pixels(top), Pixels(width), Pixels(height), window_,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), module_, nullptr);
        if (child == nullptr) RaiseRuntimeError(runtime_error::kOutOfMemory);
        SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), FALSE);
        return child;
    }

    void Build() {
        {
            const WindowDc dc(window_);
            dpi_ = std::max(1, GetDeviceCaps(dc.get(), LOGPIXELSY));
        }
        font_ = MakeFont(8, dpi_, false, false);
        link_font_ = MakeFont(8, dpi_, false, true);
        title_font_ = MakeFont(12, dpi_, true, false);
        SetWindowTextW(window_, title_.c_str());

        std::wstring failure;
        try {
            parsed_ = ParseLinks(text_, {kTextLeft, kInfoTop}, *this);
        } catch (const Error& error) {
            parsed_.caption = text_;
            failure = error.description();
        }

        int lines = 0;
        int text_width = 0;
        ForEachLine(parsed_.caption, [&](int number, std::wstring_view line) {
            lines = number + 1;
            text_width = std::max(text_width, TextWidth(line));
        });
        const int info_height = lines * kAboutLineHeight;
        const int width = std::max(kLeastWidth, kTextLeft + text_width + 2 * kMargin);
        const int button_top = kInfoTop + info_height + kMargin;

        const HWND picture = Child(L"STATIC", L"", SS_ICON | SS_REALSIZEIMAGE, AboutBox::kPicture,
                                   kMargin, kMargin, kPictureSize, kPictureSize);
        SendMessageW(picture, STM_SETICON, reinterpret_cast<WPARAM>(picture_), 0);
        const HWND title = Child(L"STATIC", title_.c_str(), SS_LEFT | SS_NOPREFIX, AboutBox::kTitle,
                                 kTextLeft, kMargin, width - kTextLeft - kMargin, kTitleHeight);
        SendMessageW(title, WM_SETFONT, reinterpret_cast<WPARAM>(title_font_.get()), FALSE);
        Child(L"STATIC", parsed_.caption.c_str(), SS_OWNERDRAW, AboutBox::kInfo, kTextLeft,
              kInfoTop, width - kTextLeft - kMargin, info_height);
        const HWND ok =
            Child(L"BUTTON", L"OK", BS_DEFPUSHBUTTON | WS_TABSTOP, IDOK,
                  width - kMargin - kButtonWidth, button_top, kButtonWidth, kButtonHeight);
        AddLinks();
        Place(Pixels(width), Pixels(button_top + kButtonHeight + kMargin));
        SetFocus(ok);
        if (!failure.empty()) Report(failure);
    }

    void AddLinks() {
        // owned by the dialog, which destroys it
        const HWND tips =
            CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                            WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT, CW_USEDEFAULT,
                            CW_USEDEFAULT, CW_USEDEFAULT, window_, nullptr, module_, nullptr);
        for (std::size_t i = 0; i < parsed_.links.size(); ++i) {
            LinkLabel& link = parsed_.links[i];
            const HWND label = Child(L"BUTTON", link.caption.c_str(), BS_OWNERDRAW | WS_TABSTOP,
                                     AboutBox::kFirstLink + static_cast<int>(i), link.left,
                                     link.top, link.width, link.height);
            MakeLink(label);
            // to the front, which makes it the first that Tab reaches, too
            SetWindowPos(label, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
            if (tips == nullptr) continue;
            TTTOOLINFOW tool = {};
            tool.cbSize = TTTOOLINFOW_V2_SIZE;
            tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
            tool.hwnd = window_;
            tool.uId = reinterpret_cast<UINT_PTR>(label);
            tool.lpszText = link.Tag.data();
            SendMessageW(tips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
        }
    }

    // Over the middle of the owner, whole on its screen.
    void Place(int inner_width, int inner_height) {
        RECT outer = {0, 0, inner_width, inner_height};
        AdjustWindowRectEx(&outer, static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_STYLE)), FALSE,
                           static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_EXSTYLE)));
        const int width = outer.right - outer.left;
        const int height = outer.bottom - outer.top;
        const HWND owner = GetWindow(window_, GW_OWNER);
        MONITORINFO monitor = {};
        monitor.cbSize = sizeof monitor;
        GetMonitorInfoW(
            MonitorFromWindow(owner != nullptr ? owner : window_, MONITOR_DEFAULTTONEAREST),
            &monitor);
        const RECT& work = monitor.rcWork;
        RECT around = work;
        if (owner != nullptr && !IsIconic(owner)) GetWindowRect(owner, &around);
        int left = (around.left + around.right - width) / 2;
        int top = (around.top + around.bottom - height) / 2;
        left = std::max<int>(work.left, std::min<int>(left, work.right - width));
        top = std::max<int>(work.top, std::min<int>(top, work.bottom - height));
        SetWindowPos(window_, nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
    }

    // --- painting and clicks
    void Draw(const DRAWITEMSTRUCT& item) {
        const bool is_link = item.CtlID >= static_cast<UINT>(AboutBox::kFirstLink);
        FillRect(item.hDC, &item.rcItem, GetSysColorBrush(COLOR_BTNFACE));
        const HGDIOBJ before = SelectObject(item.hDC, is_link ? link_font_.get() : font_.get());
        SetBkMode(item.hDC, TRANSPARENT);
        SetTextColor(item.hDC, is_link ? LinkColor() : GetSysColor(COLOR_BTNTEXT));
        if (is_link) {
            const std::wstring& text =
                parsed_.links.at(item.CtlID - static_cast<UINT>(AboutBox::kFirstLink)).caption;
            DrawMeasured(item.hDC, item.rcItem.left, item.rcItem.top, text);
            if ((item.itemState & ODS_FOCUS) != 0) {
                SetTextColor(item.hDC, GetSysColor(COLOR_BTNTEXT));
                DrawFocusRect(item.hDC, &item.rcItem);
            }
        } else {
            ForEachLine(parsed_.caption, [&](int number, std::wstring_view line) {
                DrawMeasured(item.hDC, item.rcItem.left,
                             item.rcItem.top + Pixels(number * kAboutLineHeight), line);
            });
        }
        SelectObject(item.hDC, before);
    }

    void Link_Click(std::size_t index) {
        if (index < parsed_.links.size()) OpenLink(parsed_.links[index].Tag, shell_, messages_);
    }

    HINSTANCE module_;
    HICON picture_;
    WinShell own_shell_;
    WinMessageBox own_messages_;
    IShell& shell_;
    IMessageBox& messages_;
    std::wstring title_;
    std::wstring text_;
    AboutLinks parsed_;
    HWND window_ = nullptr;
    int dpi_ = 96;
    UniqueFont font_;
    UniqueFont link_font_;
    UniqueFont title_font_;
};

}  // namespace

AboutBox::AboutBox(HINSTANCE module, HICON picture, IShell* shell, IMessageBox* messages)
    : module_(module), picture_(picture), shell_(shell), messages_(messages) {}

void AboutBox::Show(HWND owner, const std::wstring& title, const std::wstring& text) {
    Dialog(module_, picture_, shell_, messages_, title, text).Run(owner);
}

}  // namespace demovex
