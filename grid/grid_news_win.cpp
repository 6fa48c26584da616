// GridAccessibility: the object that assistive programs get, what they are told, and when.
#include "grid/cell_name.h"
#include "grid/flex_grid_impl_win.h"
#include "grid/grid_accessible_object_win.h"
#include "platform/system_library_win.h"

namespace demovex {

GridAccessibility::GridAccessibility(FlexGridImplWin& owner) : owner_(owner) {}

GridAccessibility::~GridAccessibility() {
    Disconnect();
}

LRESULT GridAccessibility::Answer(WPARAM wparam) {
    if (!object_) {
        object_ = ComPtr<GridAccessible>::Attach(new GridAccessible(owner_, module_lock_));
    }
    static const auto lresult_from_object =
        SystemFunction<decltype(&LresultFromObject)>(L"oleacc.dll", "LresultFromObject");
    if (lresult_from_object == nullptr) return 0;
    return lresult_from_object(IID_IAccessible, wparam, object_.Get());
}

void GridAccessibility::Disconnect() noexcept {
    if (!object_) return;
    object_->Disconnect();
    // references of other processes end here; those within the process keep a disconnected object
    CoDisconnectObject(object_.Get(), 0);
    object_ = ComPtr<GridAccessible>();
}

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
