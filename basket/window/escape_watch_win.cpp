#include "basket/window/escape_watch_win.h"

namespace demovex {
namespace {

constexpr std::uint64_t kShowsAfterMilliseconds = 500;

bool IsOurTurn() noexcept {
    const HWND front = GetForegroundWindow();
    return front != nullptr && GetWindowThreadProcessId(front, nullptr) == GetCurrentThreadId();
}

}  // namespace

void EscapeWatch::Begin() noexcept {
    if (depth_++ > 0) return;
    begun_ = GetTickCount64();
    watching_ = held_ = pressed_ = false;
}

bool EscapeWatch::Pressed() noexcept {
    if (depth_ == 0 || pressed_) return pressed_;
    if (GetTickCount64() - begun_ < kShowsAfterMilliseconds) return false;
    // the highest bit: it is down; the lowest: it was pressed since the last question
    const int state = GetAsyncKeyState(VK_ESCAPE);
    const bool down = state < 0;
    if (!watching_ || held_) {
        watching_ = true;
        held_ = down;
        return false;
    }
    pressed_ = state != 0 && IsOurTurn();
    return pressed_;
}

void EscapeWatch::End() noexcept {
    if (depth_ == 0 || --depth_ > 0 || !pressed_) return;
    pressed_ = false;
    MSG message;
    while (PeekMessageW(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE | PM_QS_INPUT)) {
    }
}

}  // namespace demovex
