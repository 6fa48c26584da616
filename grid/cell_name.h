// What assistive programs call a cell, and by which number they know it.
#pragma once

#include <cstdint>
#include <string>

#include "grid/flex_grid.h"

namespace demovex {

// "Menge, Zeile 3": the column's caption and the row's number as its header shows it (its index
// where that is empty). Headers have the one or the other alone.
std::wstring CellName(const FlexGrid& grid, std::int32_t row, std::int32_t col);

// The number under which they know it: counted row by row from 1, headers included. `cols` is the
// grid's.
constexpr std::int32_t CellNumber(std::int32_t row, std::int32_t col, std::int32_t cols) noexcept {
    return row * cols + col + 1;
}

}  // namespace demovex
