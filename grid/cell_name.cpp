#include "grid/cell_name.h"

namespace demovex {

std::wstring CellName(const FlexGrid& grid, std::int32_t row, std::int32_t col) {
    std::wstring column(grid.TextMatrix(0, col));
    if (row < FlexGrid::kFixedRows) return column;
    std::wstring number(grid.TextMatrix(row, 0));
    if (number.empty()) number = std::to_wstring(row);
    if (col < FlexGrid::kFixedCols || column.empty()) return L"Zeile " + number;
    return column + L", Zeile " + number;
}

}  // namespace demovex
