#include "grid/cell_name.h"

#include <gtest/gtest.h>

namespace demovex {
namespace {

FlexGrid& Filled(FlexGrid& grid) {
    grid.SetRows(4);
    grid.SetCols(3);
    grid.SetTextMatrix(0, 1, L"Menge");
    grid.SetTextMatrix(1, 0, L"1");
    grid.SetTextMatrix(2, 0, L"17");
    return grid;
}

TEST(CellName, NamesColumnAndRowAsTheHeadersShowThem) {
    FlexGrid grid;
    EXPECT_EQ(CellName(Filled(grid), 1, 1), L"Menge, Zeile 1");
    EXPECT_EQ(CellName(grid, 2, 1), L"Menge, Zeile 17");
}

TEST(CellName, ARowWithoutANumberAndAColumnWithoutACaption) {
    FlexGrid grid;
    EXPECT_EQ(CellName(Filled(grid), 3, 1), L"Menge, Zeile 3");
    EXPECT_EQ(CellName(grid, 1, 2), L"Zeile 1");
}

TEST(CellName, Headers) {
    FlexGrid grid;
    EXPECT_EQ(CellName(Filled(grid), 0, 1), L"Menge");
    EXPECT_EQ(CellName(grid, 2, 0), L"Zeile 17");
}

}  // namespace
}  // namespace demovex
