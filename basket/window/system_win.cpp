// What the system tells the basket window: another scale of its screen, other settings of the user,
// the end of the session, a wish for help from a dialog of the system's.
#include <string>

#include "base/scope_guard.h"
#include "basket/state.h"
#include "basket/window/impl_win.h"
#include "dialogs/about_text.h"

namespace demovex {

// --- scale, font, colours

// Measures everything for a screen of `dpi`. The window keeps its size.
void BasketWindowImpl::Rescale(int dpi) {
    if (dpi < 24 || dpi > 1440 || dpi == scale_.dpi() || !editor_) return;
    scale_ = Scale(dpi);
    CreateFont();
    LoadIcons();
    ApplyScaleAndFont();
}

void BasketWindowImpl::ApplyScaleAndFont() {
    const HFONT font = font_.get();
    SendMessageW(status_->Handle(), WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    status_->SetScale(scale_);
    note_->SetScale(scale_, font);
    toolbar_->SetScale(scale_);
    if (initialised_) toolbar_->Build();
    grid_->SetScale(scale_, font);
    editor_->SetScale(scale_, font);
    former_font_.reset();
    LayOut();
}

// Lays everything out without closing an editor: nothing was done to the basket.
void BasketWindowImpl::LayOut() {
    RECT client{};
    GetClientRect(window_, &client);
    toolbar_->Layout(client.right);
    status_->Layout();
    PlaceNote();
    if (initialised_) Forward([](TestLibForm& form) { form.LayOut(); });
    RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

// The window has come to a screen of another scale; the system proposes a place for it. A message
// that the system did not send may hold any address: it is read as one of another program's.
void BasketWindowImpl::OnDpiChanged(int dpi, LPARAM place) {
    RECT rect{};
    SIZE_T read = 0;
    const bool proposed =
        ReadProcessMemory(GetCurrentProcess(), reinterpret_cast<const void*>(place), &rect,
                          sizeof rect, &read) &&
        read == sizeof rect && rect.right > rect.left && rect.bottom > rect.top;
    if (!editor_) return;
    const FlagWhile rescaling(rescaling_);
    Rescale(dpi);
    if (!proposed) return;
    SetWindowPos(window_, nullptr, rect.left, rect.top, rect.right - rect.left,
                 rect.bottom - rect.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

void BasketWindowImpl::OnSettings(UINT message, WPARAM wparam, LPARAM lparam) {
    for (HWND child = GetWindow(window_, GW_CHILD); child != nullptr;
         child = GetWindow(child, GW_HWNDNEXT)) {
        SendMessageW(child, message, wparam, lparam);
    }
    if (!editor_) return;
    if (message == WM_SYSCOLORCHANGE && initialised_) toolbar_->Build();
    if (message == WM_SETTINGCHANGE && own_services_ && form_) {
        // what is shown is read in the old format before the new one is asked for
        Forward([this](TestLibForm& form) {
            form.NumberFormatChanged([this] { own_services_->SettingsChanged(); });
        });
    }
    // a larger text, or bars and borders of other sizes
    if (CreateFont()) {
        ApplyScaleAndFont();
    } else {
        LayOut();
    }
}

// --- the end of the session

// Nothing is asked, closed or written: the user decides in the system's own picture.
bool BasketWindowImpl::OnQueryEndSession(LPARAM reasons) {
    if ((reasons & static_cast<LPARAM>(ENDSESSION_CRITICAL)) != 0) return true;
    std::wstring lost;
    Forward([&](TestLibForm& form) { lost = form.UnsavedChanges(); });
    if (lost.empty()) return true;
    ShutdownBlockReasonCreate(window_, lost.c_str());
    return false;
}

void BasketWindowImpl::OnEndSession(bool ends) {
    if (!ends) {
        ShutdownBlockReasonDestroy(window_);
        return;
    }
    if (initialised_ && form_) form_->SessionEnds();
}

// --- help

UINT BasketWindowImpl::HelpMessage() noexcept {
    static const UINT message = RegisterWindowMessageW(L"commdlg_help");  // HELPMSGSTRING
    return message;
}

// The help button of a file dialog, which is open now.
void BasketWindowImpl::OnHelp() {
    if (IsWindowEnabled(window_)) return;
    services_->shell.Open(services_->component_folder + L"\\" + kHelpPage);
}

}  // namespace demovex
