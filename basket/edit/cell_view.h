// What the user is shown of the current cell, and bringing rows and cells into view. The grid does
// not scroll when code moves its current cell, and a cell out of view is not edited: whoever moves
// it for the user scrolls.
#pragma once

#include <cstdint>

#include "basket/state.h"

namespace demovex {

// Shows the current row's catalogue position in the status bar; none while several rows are
// selected.
void ShowPosition(const BasketContext& context);

// The row, or the cell, inside what the scroll bars leave free and so far from the grid's lower
// edge that the editor opens on it, scrolled as little as that takes. Numbers out of range are left
// alone.
void BringRowIntoView(BasketContext& context, std::int32_t row);
void BringCellIntoView(BasketContext& context, std::int32_t row, std::int32_t col);

// The last of that: the editor opens on cells that end well above the grid's lower edge, and a row
// that has just come into view may end closer to it. Rows out of view, the header and the totals
// row stay where they are.
void LiftAboveEdge(FlexGrid& grid, std::int32_t row);

}  // namespace demovex
