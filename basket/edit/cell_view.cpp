#include "basket/edit/cell_view.h"

#include "basket/rows/columns.h"

namespace demovex {

void ShowPosition(const BasketContext& context) {
    const FlexGrid& grid = context.Liste;
    const bool one_row = grid.RowSel() == grid.Row();
    context.view.SetStatusText(one_row ? grid.TextMatrix(grid.Row(), column::kKatalog)
                                       : std::wstring_view());
}

void BringRowIntoView(BasketContext& context, std::int32_t row) {
    BringCellIntoView(context, row, column::kNumber);
}

void BringCellIntoView(BasketContext& context, std::int32_t row, std::int32_t col) {
    const FlexGrid& grid = context.Liste;
    if (row < 1 || row >= grid.Rows() || col < 0 || col >= grid.Cols()) return;
    context.view.ShowGridCell(row, col);
    LiftAboveEdge(context.Liste, row);
}

void LiftAboveEdge(FlexGrid& grid, std::int32_t row) {
    if (row < 1 || row > LastRow(grid) || row <= grid.TopRow()) return;
    if (grid.RowPos(row + 1) <= grid.Height() - kEdgeMargin) return;
    grid.SetTopRow(grid.TopRow() + 1);
}

}  // namespace demovex
