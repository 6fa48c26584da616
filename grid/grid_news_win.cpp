// GridAccessibility: what assistive programs are told, and when.
#include "grid/cell_name.h"
#include "grid/flex_grid_impl_win.h"

namespace demovex {

void GridAccessibility::CurrentCellChanged() {
    news_.CurrentCellChanged();
    TellSoon();
}

void GridAccessibility::SelectionChanged() {
    news_.SelectionChanged();
    TellSoon();
}

void GridAccessibility::CellChanged(std::int32_t row, std::int32_t col) {
    news_.CellChanged(row, col);
    TellSoon();
}

void GridAccessibility::CellsMoved() {
    news_.AllChanged();
    TellSoon();
}

void GridAccessibility::TellSoon() {
    if (posted_ || news_.Empty() || !owner_.grid.Redraw()) return;
    posted_ = PostMessageW(owner_.window, FlexGridImplWin::kTellNews, 0, 0) != 0;
}

void GridAccessibility::Tell() {
    posted_ = false;
    if (!owner_.grid.Redraw()) return;  // RedrawIsOn asks again
    const HWND window = owner_.window;
    const FlexGrid& grid = owner_.grid;
    const auto id = [&](std::int32_t row, std::int32_t col) -> LONG {
        return CellNumber(row, col, grid.Cols());
    };
    const GridNews::Told told = news_.Take();
    if (told.all) NotifyWinEvent(EVENT_OBJECT_REORDER, window, OBJID_CLIENT, CHILDID_SELF);
    for (std::size_t i = 0; i < told.count; ++i) {
        const auto& [row, col] = told.cells[i];
        const bool header = row < FlexGrid::kFixedRows || col < FlexGrid::kFixedCols;
        if (header) NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, window, OBJID_CLIENT, id(row, col));
        NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, window, OBJID_CLIENT, id(row, col));
    }
    if (told.current) {
        const LONG current = id(grid.Row(), grid.Col());
        // an editor over the cell keeps the focus while the cell moves: the move is told all the
        // same
        const HWND focus = GetFocus();
        if (focus != nullptr && (focus == window || IsChild(GetParent(window), focus))) {
            NotifyWinEvent(EVENT_OBJECT_FOCUS, window, OBJID_CLIENT, current);
        }
        NotifyWinEvent(EVENT_OBJECT_SELECTION, window, OBJID_CLIENT, current);
    } else if (told.selection) {
        NotifyWinEvent(EVENT_OBJECT_SELECTIONWITHIN, window, OBJID_CLIENT, CHILDID_SELF);
    }
}

}  // namespace demovex
