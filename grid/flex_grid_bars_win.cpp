// FlexGridImplWin: its scroll bars.
#include "grid/flex_grid_impl_win.h"

namespace demovex {

namespace {

void ShowState(HWND window, int bar, const GridScrollBar& state, bool redraw) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    // a bar never hides itself: the grid says when there is one
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
    info.nMin = state.min;
    info.nMax = state.max;
    info.nPage = static_cast<UINT>(state.page);
    info.nPos = state.position;
    SetScrollInfo(window, bar, &info, redraw);
}

}  // namespace

void FlexGridImplWin::SetBar(int bar, const GridScrollBar& state, GridScrollBar& shown) {
    if (state == shown) return;
    if (state.visible != shown.visible) {
        invalid_.clear();
        ShowScrollBar(window, bar, state.visible);
    }
    if (state.visible) ShowState(window, bar, state, true);
    shown = state;
}

// Drawing a scroll bar costs more than scrolling a line of text. So a changed position or range is
// drawn a moment later, once for all lines that were scrolled or added meanwhile; anything else at
// once.
void FlexGridImplWin::ScrollBarsChanged() {
    if (window == nullptr) return;
    const auto can_wait = [](GridScrollBar now, const GridScrollBar& shown) {
        now.position = shown.position;
        now.max = shown.max;
        return now == shown;
    };
    if (can_wait(grid.VerticalBar(), shown_v_) && can_wait(grid.HorizontalBar(), shown_h_)) {
        if (grid.VerticalBar().max != shown_v_.max && shown_v_.visible) {
            ShowState(window, SB_VERT, grid.VerticalBar(), false);
        }
        if (!bars_pending_) bars_pending_ = SetTimer(window, kBarTimer, 30, nullptr) != 0;
        if (bars_pending_) return;
    }
    FlushBars();
}

void FlexGridImplWin::FlushBars() {
    if (bars_pending_) KillTimer(window, kBarTimer);
    bars_pending_ = false;
    SetBar(SB_VERT, grid.VerticalBar(), shown_v_);
    SetBar(SB_HORZ, grid.HorizontalBar(), shown_h_);
}

}  // namespace demovex
