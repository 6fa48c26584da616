#include "basket/window/status_win.h"

#include <algorithm>

#include "basket/window/ids.h"
#include "platform/screen_scale_win.h"

namespace demovex {
namespace {

constexpr std::uint64_t kProgressAfterMilliseconds = 500;
constexpr int kProgressSteps = 200;
constexpr Twips kProgressWidth = 2400;

}  // namespace

WindowStatus::WindowStatus(HWND parent, HINSTANCE module, const Scale& scale) : scale_(scale) {
    window_ = CreateChild(parent, module, STATUSCLASSNAMEW, child_id::kStatusBar,
                          SBARS_SIZEGRIP | CCS_BOTTOM | WS_CLIPCHILDREN);
    // one part as wide as the bar, which assistive programs read, without a part's border
    const int edge = -1;
    SendMessageW(window_, SB_SETPARTS, 1, reinterpret_cast<LPARAM>(&edge));
    ShowText({});
    progress_ = CreateChild(window_, module, PROGRESS_CLASSW, child_id::kProgress, PBS_SMOOTH);
    SendMessageW(progress_, PBM_SETRANGE32, 0, kProgressSteps);
}

// The control paints a new text at once, theme and all, and a command may set several: painting is
// left to the loop.
void WindowStatus::ShowText(const std::wstring& text) {
    const bool visible = Visible();
    if (visible) SendMessageW(window_, WM_SETREDRAW, FALSE, 0);
    SendMessageW(window_, SB_SETTEXTW, SBT_NOBORDERS, reinterpret_cast<LPARAM>(text.c_str()));
    if (!visible) return;
    SendMessageW(window_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(window_, nullptr, TRUE);
}

void WindowStatus::SetText(std::wstring_view text) {
    std::wstring plain(text);
    // the control takes tabs for orders to centre the text and to set it right
    std::replace(plain.begin(), plain.end(), L'\t', L' ');
    if (text_ == plain) return;
    text_ = std::move(plain);
    if (shown_ < 0) ShowText(text_);
}

void WindowStatus::Show(bool visible) {
    ShowWindow(window_, visible ? SW_SHOWNA : SW_HIDE);
}

void WindowStatus::Layout() {
    SendMessageW(window_, WM_SIZE, 0, 0);
    PlaceProgress();
}

int WindowStatus::Height() const noexcept {
    RECT rect{};
    GetWindowRect(window_, &rect);
    return rect.bottom - rect.top;
}

bool WindowStatus::Visible() const noexcept {
    return (GetWindowLongPtrW(window_, GWL_STYLE) & WS_VISIBLE) != 0;
}

RECT WindowStatus::TextPlace() const noexcept {
    RECT client{}, part{};
    GetClientRect(window_, &client);
    SendMessageW(window_, SB_GETRECT, 0, reinterpret_cast<LPARAM>(&part));
    RECT rect{client.left, part.top, client.right, part.bottom};
    MapWindowPoints(window_, GetParent(window_), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

void WindowStatus::PlaceProgress() {
    RECT client{};
    GetClientRect(window_, &client);
    const int grip = MetricOf(window_, SM_CXVSCROLL);
    const int width =
        std::min(scale_.ToPixels(kProgressWidth), static_cast<int>(client.right) - grip);
    const int edge = scale_.ToPixels(45);
    SetWindowPos(progress_, nullptr, client.right - grip - width, edge, std::max(0, width),
                 std::max(0, static_cast<int>(client.bottom) - 2 * edge),
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void WindowStatus::BeginProgress(std::wstring_view what) {
    if (depth_++ > 0) return;
    work_ = what;
    begun_ = GetTickCount64();
    shown_ = -1;
    cursor_ = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
}

void WindowStatus::SetProgress(double fraction) {
    if (depth_ == 0 || !IsWindowVisible(window_)) return;
    if (shown_ < 0 && GetTickCount64() - begun_ < kProgressAfterMilliseconds) return;
    const int position = static_cast<int>(std::clamp(fraction, 0.0, 1.0) * kProgressSteps);
    if (position == shown_) return;
    if (shown_ < 0) {
        ShowText(work_);
        PlaceProgress();
        ShowWindow(progress_, SW_SHOWNA);
    }
    shown_ = position;
    SendMessageW(progress_, PBM_SETPOS, static_cast<WPARAM>(position), 0);
    RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void WindowStatus::EndProgress() {
    if (depth_ == 0 || --depth_ > 0) return;
    if (shown_ >= 0) {
        shown_ = -1;
        ShowWindow(progress_, SW_HIDE);
        ShowText(text_);
    }
    SetCursor(cursor_);
}

}  // namespace demovex
