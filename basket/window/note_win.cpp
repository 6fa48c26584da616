#include "basket/window/note_win.h"

#include <objbase.h>
#include <oleacc.h>

#include <algorithm>
#include <string>

#include "basket/window/ids.h"
#include "platform/com_ptr_win.h"
#include "platform/gdi_win.h"
#include "platform/screen_scale_win.h"

namespace demovex {
namespace {

constexpr UINT_PTR kTimer = 1;

// What a static text of the system answers for OBJID_QUERYCLASSNAMEIDX.
constexpr LRESULT kStaticClass = 65536 + 3;
// Since Windows 8; older ones pass it on to nobody.
constexpr DWORD kLiveRegionChanged = 0x8019;  // EVENT_OBJECT_LIVEREGIONCHANGED
constexpr GUID kLiveSetting = {
    0xC12BCD8E, 0x2A8E, 0x4950, {0x8A, 0xE7, 0x36, 0x25, 0x11, 0x1D, 0x58, 0xEB}};
constexpr LONG kPolite = 1;

// The object that keeps what programs say of their windows; null where the system has none or the
// thread is done with COM.
ComPtr<IAccPropServices> AccProperties() noexcept {
    ComPtr<IAccPropServices> properties;
    CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices,
                     properties.OutVoid());
    return properties;
}

}  // namespace

void WindowNote::RegisterWindowClass(HINSTANCE module) {
    WNDCLASSEXW info{};
    info.cbSize = sizeof info;
    info.lpfnWndProc = &WindowNote::Procedure;
    info.hInstance = module;
    info.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    info.lpszClassName = kNoteClass;
    if (RegisterClassExW(&info) == 0 && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) {
        RaiseRuntimeError(runtime_error::kOutOfMemory);
    }
}

void WindowNote::UnregisterWindowClass(HINSTANCE module) noexcept {
    UnregisterClassW(kNoteClass, module);
}

WindowNote::WindowNote(HWND parent, HINSTANCE module, const Scale& scale, HFONT font)
    : window_(CreateChild(parent, module, kNoteClass, child_id::kNote, WS_VISIBLE)),
      scale_(scale),
      font_(font) {
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

WindowNote::~WindowNote() {
    // the window, should it outlive this object, must not reach it any more
    if (window_ != nullptr) SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
}

void WindowNote::SetScale(const Scale& scale, HFONT font) {
    scale_ = scale;
    font_ = font;
    if (window_ != nullptr) Place();
}

void WindowNote::Say(std::wstring_view text) {
    if (!IsWindow(window_) || (text.empty() && note_.TimeLeft(0) == 0)) return;
    note_.Say(text, GetTickCount64());
    Show();
    if (!text.empty()) Announce();
}

void WindowNote::Show() {
    SetWindowTextW(window_, note_.Text().c_str());
    if (const std::uint64_t left = note_.TimeLeft(GetTickCount64()); left > 0) {
        SetTimer(window_, kTimer, static_cast<UINT>(left), nullptr);
    } else {
        KillTimer(window_, kTimer);
    }
    Place();
    InvalidateRect(window_, nullptr, FALSE);
}

void WindowNote::SetBar(const RECT& bar) {
    if (EqualRect(&bar, &bar_)) return;
    bar_ = bar;
    if (window_ != nullptr) Place();
}

// At the right end of the bar, before the grip, as high as the bar's own text; a text that does not
// fit ends in three points.
void WindowNote::Place() {
    const std::wstring& text = note_.Text();
    RECT place{};
    if (!text.empty() && !IsRectEmpty(&bar_)) {
        SIZE size{};
        {
            const WindowDc dc(window_);
            const SelectedObject selected(dc.get(), font_);
            GetTextExtentPoint32W(dc.get(), text.c_str(), static_cast<int>(text.size()), &size);
        }
        place.right = bar_.right - MetricOf(window_, SM_CXVSCROLL);
        place.left = std::max(bar_.left, place.right - static_cast<LONG>(size.cx) - 2 * Room());
        place.top = bar_.top;
        place.bottom = bar_.bottom;
        if (place.left >= place.right || place.top >= place.bottom) place = {};
    }
    SetWindowPos(window_, nullptr, place.left, place.top, place.right - place.left,
                 place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

void WindowNote::Announce() {
    if (!live_) {
        live_ = true;  // not asked again where the system has no such thing
        if (const auto properties = AccProperties()) {
            VARIANT polite{};
            polite.vt = VT_I4;
            polite.lVal = kPolite;
            properties->SetHwndProp(window_, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF,
                                    kLiveSetting, polite);
        }
    }
    NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, window_, OBJID_CLIENT, CHILDID_SELF);
    NotifyWinEvent(kLiveRegionChanged, window_, OBJID_CLIENT, CHILDID_SELF);
}

void WindowNote::Paint() {
    PAINTSTRUCT paint{};
    HDC dc = BeginPaint(window_, &paint);
    if (dc == nullptr) return;
    RECT rect{};
    GetClientRect(window_, &rect);
    FillRect(dc, &rect, GetSysColorBrush(COLOR_BTNFACE));
    // a line between the bar's text and the note
    const RECT line{rect.left, rect.top, rect.left + 1, rect.bottom};
    FillRect(dc, &line, GetSysColorBrush(COLOR_BTNSHADOW));
    rect.left += Room();
    rect.right -= Room();
    const HGDIOBJ before = SelectObject(dc, font_);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
    const std::wstring& text = note_.Text();
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &rect,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    SelectObject(dc, before);
    EndPaint(window_, &paint);
}

void WindowNote::OnTimer() {
    if (note_.TimeLeft(GetTickCount64()) > 1 || note_.Expire(GetTickCount64())) Show();
}

LRESULT CALLBACK WindowNote::Procedure(HWND window, UINT message, WPARAM wparam,
                                       LPARAM lparam) noexcept {
    auto* note = reinterpret_cast<WindowNote*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (note == nullptr) return DefWindowProcW(window, message, wparam, lparam);
    switch (message) {
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            note->Paint();
            return 0;
        case WM_NCHITTEST:
            return HTTRANSPARENT;  // a press is meant for the status bar
        case WM_TIMER:
            if (wparam == kTimer) note->OnTimer();
            return 0;
        case WM_GETOBJECT:
            if (static_cast<LONG>(static_cast<DWORD>(lparam)) == OBJID_QUERYCLASSNAMEIDX) {
                return kStaticClass;
            }
            break;
        case WM_CLOSE:
            return 0;  // a control is not closed alone
        // (no WM_NCDESTROY, which another program could send: a handle without a window does no
        // harm)
        default:
            break;
    }
    return DefWindowProcW(window, message, wparam, lparam);
}

}  // namespace demovex
