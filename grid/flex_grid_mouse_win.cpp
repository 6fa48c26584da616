// FlexGridImplWin: mouse, wheel and scroll bar messages.
#include <windowsx.h>

#include <algorithm>

#include "grid/flex_grid_impl_win.h"
#include "platform/key_state_win.h"

namespace demovex {

namespace {

constexpr UINT_PTR kAutoScrollTimer = 1;
constexpr UINT kAutoScrollMilliseconds = 50;

int ButtonOf(UINT message) {
    switch (message) {
        case WM_LBUTTONUP:
            return grid_mouse::kLeft;
        case WM_RBUTTONUP:
            return grid_mouse::kRight;
        default:
            return grid_mouse::kMiddle;
    }
}

// The user's setting for one of the wheels.
UINT PerNotch(UINT setting) {
    UINT lines = 1;
    SystemParametersInfoW(setting, 0, &lines, 0);
    return lines;
}

}  // namespace

bool FlexGridImplWin::HandleMouse(UINT message, WPARAM wparam, LPARAM lparam) {
    const int x = GET_X_LPARAM(lparam);
    const int y = GET_Y_LPARAM(lparam);
    switch (message) {
        case WM_LBUTTONDOWN:
            Press(x, y, (wparam & MK_SHIFT) != 0);
            return true;
        case WM_LBUTTONDBLCLK:
            if (grid.HitTest(x, y).area == GridArea::kCell) {
                if (events != nullptr) events->DblClick();
            } else {
                Press(x, y, (wparam & MK_SHIFT) != 0);  // two quick presses on a header
            }
            return true;
        case WM_RBUTTONDOWN:
        case WM_MBUTTONDOWN:
            if (GetFocus() != window && !IsChild(window, GetFocus())) SetFocus(window);
            return true;
        case WM_RBUTTONDBLCLK:
        case WM_MBUTTONDBLCLK:
            return true;
        case WM_MOUSEMOVE:
            if (grid.Dragging()) grid.Drag(x, y);
            return true;
        case WM_TIMER:
            if (wparam != kAutoScrollTimer) return false;
            if (grid.Dragging()) {
                grid.AutoScroll();
            } else {
                KillTimer(window, kAutoScrollTimer);
            }
            return true;
        case WM_LBUTTONUP:
        case WM_RBUTTONUP:
        case WM_MBUTTONUP: {
            if (message == WM_LBUTTONUP) {
                grid.Release();
                if (GetCapture() == window) ReleaseCapture();
            }
            const Scale& scale = grid.PixelScale();
            const int border = grid.Frame().border;
            if (events != nullptr) {
                events->MouseUp(ButtonOf(message), ShiftState(), scale.ToTwips(x + border),
                                scale.ToTwips(y + border));
            }
            if (message == WM_LBUTTONUP && events != nullptr) events->UserActed();
            return true;  // a right button's release makes no WM_CONTEXTMENU
        }
        case WM_CAPTURECHANGED:
        case WM_CANCELMODE:
            grid.Release();
            KillTimer(window, kAutoScrollTimer);
            return message == WM_CAPTURECHANGED;
        case WM_MOUSEWHEEL:
            if ((GET_KEYSTATE_WPARAM(wparam) & MK_SHIFT) != 0) {
                Wheel(GET_WHEEL_DELTA_WPARAM(wparam), true, 1);
            } else {
                Wheel(GET_WHEEL_DELTA_WPARAM(wparam), false, PerNotch(SPI_GETWHEELSCROLLLINES));
            }
            return true;
        case WM_MOUSEHWHEEL:
            Wheel(-GET_WHEEL_DELTA_WPARAM(wparam), true, PerNotch(SPI_GETWHEELSCROLLCHARS));
            return true;
        default:
            return false;
    }
}

void FlexGridImplWin::Press(int x, int y, bool shift) {
    // leaving an editor raises its events first: what they do must be done before the cell moves
    if (GetFocus() != window) SetFocus(window);
    if (window == nullptr) return;
    SetCapture(window);
    SetTimer(window, kAutoScrollTimer, kAutoScrollMilliseconds, nullptr);
    grid.Press(x, y, shift);
    // an event may have shown a message box: the button is up again, and the drag over
    if (window != nullptr && GetCapture() != window) grid.Release();
}

void FlexGridImplWin::Wheel(int delta, bool columns, UINT lines) {
    int& rest = columns ? wheel_rest_h_ : wheel_rest_;
    if ((delta > 0) != (rest > 0)) rest = 0;  // another direction starts anew
    if (lines == WHEEL_PAGESCROLL) {
        lines = static_cast<UINT>((columns ? grid.ColAxis() : grid.RowAxis()).Page());
    }
    if (lines == 0) return;  // the user has turned the wheel off
    rest += delta;
    // fine-grained wheels report fractions of a notch
    const int steps = rest * static_cast<int>(lines) / WHEEL_DELTA;
    if (steps == 0) return;
    rest -= steps * WHEEL_DELTA / static_cast<int>(lines);
    if (columns) {
        grid.ScrollCols(-steps);
    } else {
        grid.ScrollRows(-steps);
    }
}

void FlexGridImplWin::Scroll(WPARAM code, int bar) {
    const bool vertical = bar == SB_VERT;
    const auto by = [&](int steps) { vertical ? grid.ScrollRows(steps) : grid.ScrollCols(steps); };
    const auto page = [&](int way) { vertical ? grid.PageRows(way) : grid.PageCols(way); };
    const auto to = [&](std::int32_t line) {
        vertical ? grid.SetTopRow(line) : grid.SetLeftCol(line);
    };
    switch (LOWORD(code)) {
        case SB_LINEUP:
            by(-1);
            break;
        case SB_LINEDOWN:
            by(1);
            break;
        case SB_PAGEUP:
            page(-1);
            break;
        case SB_PAGEDOWN:
            page(1);
            break;
        case SB_TOP:
            to(1);
            break;
        case SB_BOTTOM:
            to((vertical ? grid.Rows() : grid.Cols()) - 1);
            break;
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION: {
            // the message itself carries 16 bits of the position only
            SCROLLINFO info{};
            info.cbSize = sizeof info;
            info.fMask = SIF_TRACKPOS;
            if (!GetScrollInfo(window, bar, &info)) break;
            const std::int32_t last = (vertical ? grid.Rows() : grid.Cols()) - 1;
            to(std::clamp<std::int32_t>(info.nTrackPos, 1, last));
            break;
        }
        default:
            break;
    }
}

}  // namespace demovex
