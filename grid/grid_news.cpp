#include "grid/grid_news.h"

#include <algorithm>

namespace demovex {

void GridNews::AllChanged() noexcept {
    told_.all = true;
    told_.current = true;
    told_.count = 0;
}

void GridNews::CellChanged(std::int32_t row, std::int32_t col) noexcept {
    if (told_.all) return;
    const Cell cell(row, col);
    const auto end = told_.cells.begin() + static_cast<std::ptrdiff_t>(told_.count);
    if (std::find(told_.cells.begin(), end, cell) != end) return;
    if (told_.count == kCells) return AllChanged();
    told_.cells[told_.count++] = cell;
}

bool GridNews::Empty() const noexcept {
    return !told_.all && told_.count == 0 && !told_.current && !told_.selection;
}

GridNews::Told GridNews::Take() noexcept {
    Told told = std::exchange(told_, {});
    // who hears of another current cell asks for the selection, too
    if (told.current) told.selection = false;
    return told;
}

}  // namespace demovex
