// What assistive programs call a cell.
#pragma once

#include <cstdint>
#include <string>

#include "grid/flex_grid.h"

namespace demovex {

// "Menge, Zeile 3": the column's caption and the row's number as its header shows it (its index
// where that is empty). Headers have the one or the other alone.
std::wstring CellName(const FlexGrid& grid, std::int32_t row, std::int32_t col);

}  // namespace demovex
