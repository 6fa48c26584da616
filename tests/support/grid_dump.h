// A grid as text, for the messages of failed tests: header, rows, the current cell in [brackets],
// selected cells marked *, bold cells in _underlines_, and the numbers that tests are about.
#pragma once

#include <algorithm>
#include <ostream>
#include <string>

#include "grid/flex_grid.h"

namespace demovex {

inline std::string DumpGrid(const FlexGrid& grid, std::int32_t max_rows = 40) {
    std::string out = "Rows " + std::to_string(grid.Rows()) + ", Cols " +
                      std::to_string(grid.Cols()) + ", current (" + std::to_string(grid.Row()) +
                      ", " + std::to_string(grid.Col()) + "), selection to (" +
                      std::to_string(grid.RowSel()) + ", " + std::to_string(grid.ColSel()) +
                      "), TopRow " + std::to_string(grid.TopRow()) + ", LeftCol " +
                      std::to_string(grid.LeftCol()) + "\n";
    const auto [row1, row2] = std::minmax({grid.Row(), grid.RowSel()});
    const auto [col1, col2] = std::minmax({grid.Col(), grid.ColSel()});
    for (std::int32_t row = 0; row < grid.Rows(); ++row) {
        if (row == max_rows && grid.Rows() > max_rows + 1) {
            row = grid.Rows() - 1;
            out += "  ...\n";
        }
        out += std::to_string(row) + " |";
        for (std::int32_t col = 0; col < grid.Cols(); ++col) {
            std::string cell;
            for (const wchar_t c : grid.TextMatrix(row, col)) {
                // readable for ASCII, exact for the rest
                cell += c >= L' ' && c < L'\x7F' ? std::string(1, static_cast<char>(c))
                                                 : "<" + std::to_string(static_cast<int>(c)) + ">";
            }
            if (grid.CellBold(row, col)) cell = "_" + cell + "_";
            const bool selected = row >= row1 && row <= row2 && col >= col1 && col <= col2;
            if (row == grid.Row() && col == grid.Col()) {
                cell = "[" + cell + "]";
            } else if (selected) {
                cell += "*";
            }
            out += " " + cell + " |";
        }
        out += "\n";
    }
    return out;
}

// The cells alone, bold ones marked, whatever the grid's current cell and scroll position are: for
// comparing a basket with what it was.
inline std::string CellsOf(const FlexGrid& grid) {
    std::string text;
    for (std::int32_t row = 0; row < grid.Rows(); ++row) {
        for (std::int32_t col = 0; col < grid.Cols(); ++col) {
            for (const wchar_t c : grid.TextMatrix(row, col)) {
                text += c < 128 ? std::string(1, static_cast<char>(c))
                                : "<" + std::to_string(static_cast<int>(c)) + ">";
            }
            text += grid.CellBold(row, col) ? "*|" : "|";
        }
        text += '\n';
    }
    return text;
}

// So that ASSERT_TRUE(x) << grid prints it.
inline std::ostream& operator<<(std::ostream& out, const FlexGrid& grid) {
    return out << DumpGrid(grid);
}

}  // namespace demovex
