// What happens to the controls of the in-place editor: their procedures.
#include "basket/test_lib_form.h"
#include "basket/window/editor_win.h"
#include "basket/window/impl_win.h"
#include "basket/window/key_hook_win.h"

// after windows.h
#include <windowsx.h>

namespace demovex {
namespace {

// The platform's number of the mouse button that a message's key state names first.
int ButtonState(WPARAM keys) noexcept {
    return (keys & MK_LBUTTON ? 1 : 0) | (keys & MK_RBUTTON ? 2 : 0) | (keys & MK_MBUTTON ? 4 : 0);
}

// Characters below the blank that the text box itself understands: back space, and copy, paste,
// cut and undo with Ctrl. It beeps at the others or types a box.
bool TextBoxKnows(wchar_t character) noexcept {
    if (character == 0x7F) return false;
    return character >= L' ' || character == 0x08 || character == 0x03 || character == 0x16 ||
           character == 0x18 || character == 0x1A;
}

// What may give the text box another text, selection or place of its text.
bool ChangesLook(UINT message) noexcept {
    switch (message) {
        case WM_PAINT:
        case WM_SETTEXT:
        case WM_SETFONT:
        case WM_CHAR:
        case WM_KEYDOWN:
        case WM_LBUTTONDOWN:
        case WM_LBUTTONUP:
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
        case WM_CUT:
        case WM_PASTE:
        case WM_CLEAR:
        case WM_UNDO:
        case EM_UNDO:
        case EM_SETSEL:
            return true;
        default:
            return false;
    }
}

}  // namespace

// The text box draws nothing to the left of itself, and some glyphs reach there from the box's
// beginning. That part of them stands on the background, as it does in the cell.

// The first character of a text that is neither scrolled nor highlighted; 0 for none.
wchar_t WindowEditor::Overhanging() const {
    const HWND text = TextWindow();
    if (right_ || !text_visible_) return 0;
    wchar_t first[2] = L"";
    if (GetWindowTextW(text, first, 2) == 0) return 0;
    if (LOWORD(SendMessageW(text, EM_POSFROMCHAR, 0, 0)) != 0) return 0;
    DWORD start = 0, end = 0;
    SendMessageW(text, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    return start == 0 && end > 0 && GetFocus() == text ? L'\0' : first[0];
}

void WindowEditor::PaintOverhang(HDC dc) const {
    if (overhang_ == 0) return;
    const RECT& text = text_rect_[0];
    const RECT before{0, text.top, text.left, text.bottom};
    const auto font = reinterpret_cast<HFONT>(SendMessageW(TextWindow(), WM_GETFONT, 0, 0));
    const HGDIOBJ previous = SelectObject(dc, font);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    ExtTextOutW(dc, text.left, text.top, ETO_CLIPPED, &before, &overhang_, 1, nullptr);
    SelectObject(dc, previous);
}

void WindowEditor::FollowOverhang() {
    const wchar_t now = Overhanging();
    if (now == overhang_) return;
    overhang_ = now;
    const RECT& text = text_rect_[0];
    const RECT before{0, text.top, text.left, text.bottom};
    InvalidateRect(background_, &before, FALSE);
}

LRESULT CALLBACK WindowEditor::PictureProc(HWND window, UINT message, WPARAM wparam,
                                           LPARAM lparam) noexcept {
    auto* editor = reinterpret_cast<WindowEditor*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (editor == nullptr) return DefWindowProcW(window, message, wparam, lparam);
    const auto keep = editor->window_.KeepAlive();
    if (message == WM_NCDESTROY && window == editor->background_) {
        // the system destroys the text boxes first: with them in place it is another program's
        if (GetWindow(window, GW_CHILD) != nullptr) return 0;
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        editor->gone_ = true;
        return DefWindowProcW(window, message, wparam, lparam);
    }
    return editor->OnPictureMessage(window, message, wparam, lparam);
}

LRESULT WindowEditor::OnPictureMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT: {
            PAINTSTRUCT paint;
            HDC dc = BeginPaint(window, &paint);
            if (window == button_) {
                PaintButton(dc);
            } else {
                FillRect(dc, &paint.rcPaint, GetSysColorBrush(COLOR_WINDOW));
                PaintOverhang(dc);
            }
            EndPaint(window, &paint);
            return 0;
        }
        case WM_COMMAND:
            if (HIWORD(wparam) == EN_CHANGE && !setting_text_ &&
                reinterpret_cast<HWND>(lparam) == TextWindow()) {
                OnTextChanged();
            }
            return 0;
        case WM_LBUTTONUP:
            if (window == button_) {
                window_.Forward([](TestLibForm& form) { form.IPComboButton_Click(); });
            }
            return 0;
        case WM_LBUTTONDOWN:
            if (window == background_ && ParentActive()) SetFocus(TextWindow());
            return 0;
        case WM_MOUSEWHEEL:
        case WM_MOUSEHWHEEL:
            return SendMessageW(grid_, message, wparam, lparam);
        case WM_CLOSE:
            return 0;  // a control is not closed alone
        default:
            return DefWindowProcW(window, message, wparam, lparam);
    }
}

LRESULT CALLBACK WindowEditor::TextProc(HWND window, UINT message, WPARAM wparam,
                                        LPARAM lparam) noexcept {
    WindowEditor& editor = Of(window);
    const auto keep = editor.window_.KeepAlive();
    if (editor.OnTextMessage(window, message, wparam, lparam)) return 0;
    if (!IsWindow(window)) return 0;
    if (message == WM_CLOSE) return 0;  // a control is not closed alone
    // what this message points to may be any program's: the control's own answer needs none of it
    if (message == WM_GETDLGCODE) lparam = 0;
    const LRESULT result = CallWindowProcW(editor.text_proc_, window, message, wparam, lparam);
    if (ChangesLook(message) && IsWindow(window)) editor.FollowOverhang();
    // in every host the editor gets all keys
    return message == WM_GETDLGCODE ? result | DLGC_WANTALLKEYS : result;
}

bool WindowEditor::OnTextMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
            return OnTextKey(wparam, lparam);
        case WM_CHAR: {
            int character = static_cast<int>(wparam);
            window_.Forward([&](TestLibForm& form) { form.IPText_KeyPress(character); });
            if (character == 0 || !TextBoxKnows(static_cast<wchar_t>(character))) return true;
            if (character != static_cast<int>(wparam) && IsWindow(window)) {
                CallWindowProcW(text_proc_, window, message, static_cast<WPARAM>(character),
                                lparam);
                return true;
            }
            return false;
        }
        case WM_MOUSEWHEEL:
        case WM_MOUSEHWHEEL:
            SendMessageW(grid_, message, wparam, lparam);
            return true;
        case WM_CONTEXTMENU:
            // from the keyboard it is the basket's own menu; the mouse gets the text box's
            if (lparam != -1) return false;
            SendMessageW(parent_, message, reinterpret_cast<WPARAM>(window), lparam);
            return true;
        default:
            return false;
    }
}

bool WindowEditor::OnTextKey(WPARAM key, LPARAM) {
    int code = static_cast<int>(key);
    const int shift = ShiftState();
    if (shift == shift_state::kCtrl && code == 'A') {
        SendMessageW(TextWindow(), EM_SETSEL, 0, -1);
        return true;
    }
    window_.Forward([&](TestLibForm& form) { form.IPText_KeyDown(code, shift); });
    return code == 0;
}

LRESULT CALLBACK WindowEditor::ListProc(HWND window, UINT message, WPARAM wparam,
                                        LPARAM lparam) noexcept {
    WindowEditor& editor = Of(window);
    const auto keep = editor.window_.KeepAlive();
    if (editor.OnListMessage(message, wparam, lparam)) return 0;
    if (!IsWindow(window)) return 0;
    if (message == WM_CLOSE) return 0;  // a control is not closed alone
    // what this message points to may be any program's: the control's own answer needs none of it
    if (message == WM_GETDLGCODE) lparam = 0;
    const LRESULT result = CallWindowProcW(editor.list_proc_, window, message, wparam, lparam);
    return message == WM_GETDLGCODE ? result | DLGC_WANTALLKEYS : result;
}

bool WindowEditor::OnListMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    const Twips x = scale_.ToTwips(GET_X_LPARAM(lparam));
    const Twips y = scale_.ToTwips(GET_Y_LPARAM(lparam));
    switch (message) {
        case WM_KEYDOWN: {
            int code = static_cast<int>(wparam);
            window_.Forward(
                [&](TestLibForm& form) { form.IPComboList_KeyDown(code, ShiftState()); });
            return code == 0;
        }
        case WM_MOUSEMOVE:
            window_.Forward([&](TestLibForm& form) {
                form.IPComboList_MouseMove(ButtonState(wparam), ShiftState() & 3, x, y);
            });
            return false;
        case WM_LBUTTONDOWN:
            // the list must not close on the press: the release chooses
            return true;
        case WM_LBUTTONUP:
            window_.Forward(
                [&](TestLibForm& form) { form.IPComboList_MouseUp(1, ShiftState() & 3, x, y); });
            return true;
        case WM_KILLFOCUS:
            if (list_visible_) {
                window_.Forward([](TestLibForm& form) { form.IPComboList_LostFocus(); });
            }
            return false;
        default:
            return false;
    }
}

}  // namespace demovex
