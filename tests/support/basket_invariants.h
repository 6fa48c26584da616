// What holds for a basket after every action, whatever it was.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/support/basket_fixture.h"
#include "tests/support/shown_totals.h"

namespace demovex {

// The cell that an editor may be open on: wholly in view and of a kind that is edited.
inline bool MayBeEdited(const FlexGrid& grid, int r, int c) {
    if (r < 1 || r >= grid.Rows() - 1) return false;
    const bool article = !grid.TextMatrix(r, 1).empty();
    if (article ? c != 3 : c != 1 && c != 2) return false;
    if (c < grid.LeftCol() || r < grid.TopRow()) return false;
    if (grid.ColPos(c + 1) >= grid.Width() - 90) return false;
    return grid.RowPos(r + 1) <= grid.Height() - 90;
}

// The totals row is the last one and shows the sums of the lines above it.
inline void CheckTotalsRow(const BasketFixture& basket) {
    const FlexGrid& grid = basket.grid;
    const int rows = grid.Rows();
    for (int r = 1; r < rows; ++r) {
        ASSERT_EQ(grid.TextMatrix(r, 0), r < rows - 1 ? std::to_wstring(r) : L"");
    }
    ASSERT_EQ(grid.TextMatrix(rows - 1, 2), L"Gesamt");
    ASSERT_TRUE(grid.TextMatrix(rows - 1, 1).empty());
    int totals_rows = 0;
    for (int r = 1; r < rows; ++r) totals_rows += grid.CellBold(r, 2) ? 1 : 0;
    ASSERT_EQ(totals_rows, 1);
    for (const int c : {8, 9}) {
        const auto sum = SumOfLines(basket, c);
        ASSERT_EQ(basket.Total(c), sum.value_or(basket.Total(c)));
    }
}

inline void CheckInvariants(const BasketFixture& basket) {
    const FlexGrid& grid = basket.grid;
    ASSERT_GE(grid.Rows(), 2);
    ASSERT_EQ(grid.TextMatrix(0, 1), L"ArtNr");
    if (HasTotalsRow(basket)) CheckTotalsRow(basket);
    const BasketState& state = basket.form.State();
    ASSERT_FALSE(state.SuppressEditor);
    ASSERT_TRUE(grid.Redraw());
    if (basket.view.EditorOpen()) {
        ASSERT_EQ(state.EditRow, grid.Row());
        ASSERT_EQ(state.EditCol, grid.Col());
        ASSERT_TRUE(MayBeEdited(grid, state.EditRow, state.EditCol));
        ASSERT_EQ(grid.FocusRect(), FocusRectStyle::kNone);
    } else {
        ASSERT_FALSE(basket.view.timer_enabled);
    }
}

}  // namespace demovex
