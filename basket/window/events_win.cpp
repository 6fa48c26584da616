// What happens to the basket window: its procedure, the way to the form, and what the form tells.
#include <windowsx.h>

#include <algorithm>

#include "basket/rows/columns.h"
#include "basket/state.h"
#include "basket/window/ids.h"
#include "basket/window/impl_win.h"
#include "basket/window/key_hook_win.h"
#include "dialogs/about_box_win.h"
#include "dialogs/about_text.h"
#include "platform/screen_scale_win.h"

namespace demovex {
namespace {

// Since Windows 8.1; older ones have one scale for all screens.
constexpr UINT kDpiChanged = 0x02E0;  // WM_DPICHANGED

}  // namespace

// --- the edge

void BasketWindowImpl::ShowError(std::wstring_view description) noexcept {
    if (services_ == nullptr) return;
    try {
        const auto keep = KeepAlive();
        std::wstring title(static_cast<std::size_t>(GetWindowTextLengthW(window_)), L'\0');
        GetWindowTextW(window_, title.data(), static_cast<int>(title.size()) + 1);
        services_->messages.Show(description, title, MessageButtons::kOk,
                                 MessageIcon::kExclamation);
    } catch (...) {
        MessageBeep(MB_ICONEXCLAMATION);  // not even a message is possible
    }
}

void BasketWindowImpl::Forward(FormCall call) noexcept {
    const auto keep = KeepAlive();
    if (window_ == nullptr || !form_) return;
    try {
        call(*form_);
    } catch (...) {
        ShowError(CurrentError().description);
    }
}

LRESULT CALLBACK BasketWindowImpl::Procedure(HWND window, UINT message, WPARAM wparam,
                                             LPARAM lparam) noexcept {
    auto* impl = reinterpret_cast<BasketWindowImpl*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_NCCREATE) {
        // the system's comes first; any further one is another program's, and so is its pointer
        if (impl != nullptr) return TRUE;
        impl = static_cast<BasketWindowImpl*>(
            reinterpret_cast<const CREATESTRUCTW*>(lparam)->lpCreateParams);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(impl));
        impl->window_ = window;
        impl->self_ = impl->weak_from_this().lock();
        ScaleBordersOf(window);
    }
    if (impl == nullptr) return DefWindowProcW(window, message, wparam, lparam);
    const auto keep = impl->KeepAlive();
    if (message == WM_NCDESTROY) {
        // the system destroys the controls first: with them in place it is another program's
        if (GetWindow(window, GW_CHILD) != nullptr) return 0;
        impl->OnDestroy();
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        impl->OnDestroyed();
        return DefWindowProcW(window, message, wparam, lparam);
    }
    try {
        return impl->OnMessage(message, wparam, lparam);
    } catch (...) {
        impl->ShowError(CurrentError().description);
    }
    return 0;
}

LRESULT BasketWindowImpl::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    HWND window = window_;
    if (IsTurnedKey(message)) {
        OnTurnedKey(message, wparam, lparam);
        return 0;
    }
    switch (message) {
        case WM_SIZE:
            OnSize(wparam);
            return 0;
        case WM_GETMINMAXINFO:
            OnMinimum(*reinterpret_cast<MINMAXINFO*>(lparam));
            return 0;
        case WM_ACTIVATE:
            OnActivate(LOWORD(wparam) != WA_INACTIVE && HIWORD(wparam) == 0);
            return 0;
        case WM_SETFOCUS:
            RestoreFocus();
            return 0;
        case WM_COMMAND:
            if (OnCommand(wparam, lparam)) return 0;
            break;
        case WM_NOTIFY:
            // it comes from a control of this thread, or its pointer is another program's
            if (lparam == 0 || InSendMessage()) return 0;
            if (toolbar_ && toolbar_->OnNotify(reinterpret_cast<NMHDR*>(lparam))) return 0;
            break;
        case WM_INITMENUPOPUP:
            if (HIWORD(lparam) == 0 && menu_) {
                const Command top = menu_->TopOf(reinterpret_cast<HMENU>(wparam));
                if (top != Command::kNone && top != Command::mnuContext) {
                    Forward([&](TestLibForm& form) { form.MenuOpened(top); });
                }
            }
            return 0;
        case WM_CONTEXTMENU:
            if (lparam == -1) {
                OnContextKey();
                return 0;
            }
            break;
        case WM_SETCURSOR:
            if (status_ && status_->Busy()) {
                SetCursor(LoadCursorW(nullptr, IDC_WAIT));
                return TRUE;
            }
            break;
        case WM_TIMER:
            if (wparam == window_timer::kSetFocusTimer && editor_) {
                editor_->OnSetFocusTimer();
                return 0;
            }
            break;
        case window_message::kSetFocusTimer:
            if (editor_) editor_->OnSetFocusTimer();
            return 0;
        case window_message::kEditKey:
            if (editor_) {
                // a window that has been left meanwhile goes by the control that had the focus
                const bool active = GetActiveWindow() == window;
                editor_->OnEditKey(static_cast<EditKey>(wparam), active ? GetFocus() : last_focus_);
            }
            return 0;
        case WM_CHAR:
            if (initialised_ && CharacterTyped(static_cast<wchar_t>(wparam))) return 0;
            break;
        case WM_MOUSEWHEEL:
        case WM_MOUSEHWHEEL:
            // over the toolbar or the status bar, which have no use for it
            return grid_ ? SendMessageW(grid_->Handle(), message, wparam, lparam) : 0;
        case WM_SYSCOLORCHANGE:
        case WM_SETTINGCHANGE:
            OnSettings(message, wparam, lparam);
            break;
        case WM_THEMECHANGED:
            if (editor_) ApplyScaleAndFont();
            break;
        case kDpiChanged:
            OnDpiChanged(LOWORD(wparam), lparam);
            return 0;
        case WM_CLOSE:
            CloseUnlessCancelled();
            return 0;
        case WM_QUERYENDSESSION:
            return OnQueryEndSession(lparam) ? TRUE : FALSE;
        case WM_ENDSESSION:
            OnEndSession(wparam != FALSE);
            return 0;
        default:
            if (message == HelpMessage()) {
                OnHelp();
                return 0;
            }
            break;
    }
    return DefWindowProcW(window, message, wparam, lparam);
}

// --- events

void BasketWindowImpl::OnSize(WPARAM kind) {
    if (kind == SIZE_MINIMIZED || !status_ || !toolbar_) return;
    if (rescaling_) return LayOut();
    RECT client{};
    GetClientRect(window_, &client);
    toolbar_->Layout(client.right);
    status_->Layout();
    PlaceNote();
    if (initialised_) Forward([](TestLibForm& form) { form.Form_Resize(); });
}

bool BasketWindowImpl::OnCommand(WPARAM wparam, LPARAM lparam) {
    if (!initialised_ || !IsWindowEnabled(window_)) return true;
    if (lparam != 0) {
        if (reinterpret_cast<HWND>(lparam) != toolbar_->Handle()) return false;
        const std::wstring_view key = WindowToolbar::KeyOf(LOWORD(wparam));
        Forward([&](TestLibForm& form) { form.Toolbar_ButtonClick(key); });
        return true;
    }
    const auto id = static_cast<Command>(LOWORD(wparam));
    for (const CommandRow& row : CommandTable()) {
        if (row.id != id) continue;
        Forward([&](TestLibForm& form) { form.Run(id); });
        return true;
    }
    return false;
}

void BasketWindowImpl::OnActivate(bool active) {
    if (active) {
        RestoreFocus();
        return;
    }
    const HWND focus = GetFocus();
    last_focus_ = focus != nullptr && IsChild(window_, focus) ? focus : nullptr;
}

void BasketWindowImpl::RestoreFocus() noexcept {
    if (!grid_ || !editor_ || IsIconic(window_)) return;
    if (editor_->ListIsOpen()) {
        SetFocus(editor_->ComboList());
    } else if (editor_->IsOpen()) {
        SetFocus(editor_->TextWindow());
    } else {
        SetFocus(grid_->Handle());
    }
}

// The menu key or Shift+F10: the context menu below the current cell, as far as it is in view.
void BasketWindowImpl::OnContextKey() {
    if (!initialised_) return;
    const FlexGrid& grid = grid_->Grid();
    const Twips x = std::clamp(grid.CellLeft(), 0, std::max(0, grid.Width()));
    const Twips y = std::clamp(grid.CellTop() + grid.CellHeight(), 0, std::max(0, grid.Height()));
    Forward([&](TestLibForm& form) { form.Liste_MouseUp(grid_mouse::kRight, 0, x, y); });
}

void BasketWindowImpl::RowColChange() {
    const auto keep = KeepAlive();
    if (window_ != nullptr && form_) form_->RowColChange();
}

void BasketWindowImpl::SelChange() {
    const auto keep = KeepAlive();
    if (window_ != nullptr && form_) form_->SelChange();
}

void BasketWindowImpl::Scroll() {
    const auto keep = KeepAlive();
    if (window_ != nullptr && form_) form_->Scroll();
}

void BasketWindowImpl::MouseUp(int button, int shift, Twips x, Twips y) {
    Forward([&](TestLibForm& form) { form.Liste_MouseUp(button, shift, x, y); });
}

void BasketWindowImpl::DblClick() {
    Forward([](TestLibForm& form) { form.Liste_DblClick(); });
}

// --- what the form tells the window

void BasketWindowImpl::SendEditKey(EditKey key) {
    PostMessageW(window_, window_message::kEditKey, static_cast<WPARAM>(key), 0);
}

void BasketWindowImpl::MoveGrid(const TwipsRect& rect) {
    grid_rect_ = rect;
    grid_->Move(rect);
}

Twips BasketWindowImpl::InnerWidth() const {
    RECT client{};
    GetClientRect(window_, &client);
    return scale_.ToTwips(client.right);
}

Twips BasketWindowImpl::InnerHeight() const {
    RECT client{};
    GetClientRect(window_, &client);
    return scale_.ToTwips(client.bottom);
}

bool BasketWindowImpl::Minimised() const {
    return IsIconic(window_) != 0;
}

void BasketWindowImpl::SetCaption(std::wstring_view caption) {
    SetWindowTextW(window_, std::wstring(caption).c_str());
}

Twips BasketWindowImpl::StatusbarHeight() const {
    return scale_.ToTwips(status_->Height());
}

void BasketWindowImpl::SetStatusbarVisible(bool visible) {
    status_->Show(visible);
    PlaceNote();
}

void BasketWindowImpl::BeginProgress(std::wstring_view what) {
    escape_.Begin();
    status_->BeginProgress(what);
}

void BasketWindowImpl::SetProgress(double fraction) {
    status_->SetProgress(fraction);
    PlaceNote();
}

void BasketWindowImpl::EndProgress() {
    status_->EndProgress();
    PlaceNote();
    escape_.End();
}

// The progress of long work has the same place.
void BasketWindowImpl::PlaceNote() {
    const bool room = status_->Visible() && !status_->ShowsProgress();
    note_->SetBar(room ? status_->TextPlace() : RECT{});
}

void BasketWindowImpl::SetMenuState(Command item, const MenuItemState& state) {
    if (menu_) menu_->SetState(item, state);
}

void BasketWindowImpl::SetMenuCaption(Command item, std::wstring_view caption) {
    if (menu_) menu_->SetCaption(item, caption);
}

void BasketWindowImpl::PopupContextMenu(const TwipsPoint& at) {
    if (!menu_) return;
    POINT point{scale_.ToPixels(at.x), scale_.ToPixels(at.y)};
    ClientToScreen(window_, &point);
    menu_->PopupContext(point, Command::mnuContextGotoCatalog);
}

void BasketWindowImpl::KeepPainted() {
    RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void BasketWindowImpl::ShowAboutBox() {
    // what tests put in place of the system; otherwise the box uses its own, with itself as owner
    IShell* shell = own_services_ ? nullptr : &services_->shell;
    IMessageBox* messages = own_services_ ? nullptr : &services_->messages;
    AboutBox box(module_, large_icon_.get(), shell, messages);
    // nothing of the window is touched afterwards: it may be gone when the box closes
    box.Show(window_, kAboutTitle, AboutText(services_->component_folder));
}

void BasketWindowImpl::RequestClose() {
    PostMessageW(window_, WM_CLOSE, 0, 0);
}

}  // namespace demovex
