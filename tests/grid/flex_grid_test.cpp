#include <gtest/gtest.h>

#include <array>

#include "base/error.h"
#include "grid/flex_grid.h"
#include "tests/support/grid_dump.h"
#include "tests/support/grid_event_log.h"

namespace demovex {
namespace {

// The number of the error that `action` raises, 0 when it raises none.
template <class Action>
int ErrorOf(Action action) {
    try {
        action();
    } catch (const Error& error) {
        return error.number();
    }
    return 0;
}

class FlexGridTest : public testing::Test {
  protected:
    FlexGridTest() {
        grid.SetRows(6);
        grid.SetCols(5);
        for (int row = 0; row < 6; ++row) {
            for (int col = 0; col < 5; ++col) grid.SetTextMatrix(row, col, Name(row, col));
        }
        grid.SetEvents(&log);
    }
    static std::wstring Name(int row, int col) {
        return L"r" + std::to_wstring(row) + L"c" + std::to_wstring(col);
    }

    FlexGrid grid;
    GridEventLog log{grid};
};

using FlexGridCells = FlexGridTest;
using FlexGridCurrent = FlexGridTest;
using FlexGridRows = FlexGridTest;
using FlexGridErrors = FlexGridTest;
using FlexGridEvents = FlexGridTest;

TEST(FlexGrid, StartsWithTwoRowsAndColumnsAndTheFirstNormalCellCurrent) {
    const FlexGrid grid;
    EXPECT_EQ(grid.Rows(), 2);
    EXPECT_EQ(grid.Cols(), 2);
    EXPECT_EQ(grid.Row(), 1);
    EXPECT_EQ(grid.Col(), 1);
    EXPECT_EQ(grid.RowSel(), 1);
    EXPECT_EQ(grid.ColSel(), 1);
    EXPECT_EQ(grid.TopRow(), 1);
    EXPECT_EQ(grid.LeftCol(), 1);
    EXPECT_EQ(grid.RowHeight(1), 240);
    EXPECT_EQ(grid.ColWidth(1), 960);
    EXPECT_TRUE(grid.Redraw());
    EXPECT_EQ(grid.FocusRect(), FocusRectStyle::kLight);
    EXPECT_EQ(grid.TextMatrix(1, 1), L"");
    EXPECT_EQ(grid.CellAlign(1, 1), CellAlignment::kGeneral);
    EXPECT_FALSE(grid.CellBold(0, 0));
}

TEST_F(FlexGridCells, ReadingAndWritingTextDoesNotMoveTheCurrentCell) {
    grid.SetTextMatrix(5, 4, L"x");
    EXPECT_EQ(grid.TextMatrix(5, 4), L"x");
    EXPECT_EQ(grid.Row(), 1);
    EXPECT_EQ(grid.Col(), 1);
    EXPECT_EQ(log.Take(), "");
}

TEST_F(FlexGridCells, ATextMayBeWrittenFromAnotherCellsView) {
    for (int round = 0; round < 2000; ++round) {
        grid.SetTextMatrix(2, 2, std::wstring(static_cast<std::size_t>(round), L'a') + L"b");
        grid.SetTextMatrix(3, 3, grid.TextMatrix(2, 2));
        ASSERT_EQ(grid.TextMatrix(3, 3), grid.TextMatrix(2, 2)) << round;
    }
    grid.SetTextMatrix(3, 3, L"0123456789");
    grid.SetTextMatrix(3, 3, grid.TextMatrix(3, 3).substr(2, 5));  // part of itself
    EXPECT_EQ(grid.TextMatrix(3, 3), L"23456");
}

TEST_F(FlexGridCells, BoldAndAlignmentBelongToTheCell) {
    grid.SetCellBold(2, 2, true);
    grid.SetCellAlign(2, 3, CellAlignment::kLeft);
    grid.SetTextMatrix(2, 2, L"new");
    EXPECT_TRUE(grid.CellBold(2, 2));
    EXPECT_FALSE(grid.CellBold(2, 3));
    EXPECT_EQ(grid.CellAlign(2, 3), CellAlignment::kLeft);
    EXPECT_EQ(grid.CellAlign(2, 2), CellAlignment::kGeneral);
    grid.SetCellBold(2, 2, false);
    grid.SetCellAlign(2, 3, CellAlignment::kGeneral);
    EXPECT_FALSE(grid.CellBold(2, 2));
    EXPECT_EQ(grid.CellAlign(2, 3), CellAlignment::kGeneral);
}

TEST_F(FlexGridCells, ATextThatReadsAsANumberStandsRightUnlessTheCellIsLeftAligned) {
    grid.SetTextMatrix(1, 1, L"1.234,50");
    grid.SetTextMatrix(1, 2, L"Tinte");
    grid.SetTextMatrix(1, 3, L"");
    EXPECT_TRUE(grid.StandsRight(1, 1));
    EXPECT_FALSE(grid.StandsRight(1, 2));
    EXPECT_FALSE(grid.StandsRight(1, 3));
    grid.SetCellAlign(1, 1, CellAlignment::kLeft);
    EXPECT_FALSE(grid.StandsRight(1, 1));
}

TEST(FlexGrid, TheOwnerDecidesWhatReadsAsANumber) {
    FlexGrid grid(Scale(96), [](std::wstring_view text) { return text == L"eins"; });
    grid.SetTextMatrix(1, 1, L"eins");
    EXPECT_TRUE(grid.StandsRight(1, 1));
    grid.SetTextMatrix(1, 1, L"1");
    EXPECT_FALSE(grid.StandsRight(1, 1));
}

TEST_F(FlexGridCurrent, SettingTheRowCollapsesTheSelectionOntoTheNewCell) {
    grid.SetRowSel(4);
    grid.SetColSel(3);
    log.Take();
    grid.SetRow(2);
    EXPECT_EQ(DumpGrid(grid).substr(0, DumpGrid(grid).find(", TopRow")),
              "Rows 6, Cols 5, current (2, 1), selection to (2, 1)");
    EXPECT_EQ(log.Take(), "RowColChange(2,1)");
}

TEST_F(FlexGridCurrent, SettingTheColumnCollapsesTheSelectionOntoTheNewCell) {
    grid.SetRowSel(4);
    grid.SetColSel(3);
    log.Take();
    grid.SetCol(2);
    EXPECT_EQ(grid.RowSel(), 1);
    EXPECT_EQ(grid.ColSel(), 2);
    EXPECT_EQ(log.Take(), "RowColChange(1,2)");
}

TEST_F(FlexGridCurrent, SettingTheOtherCornerOnlyExtendsTheSelection) {
    grid.SetRow(3);
    grid.SetCol(3);
    log.Take();
    grid.SetRowSel(1);
    EXPECT_EQ(log.Take(), "SelChange(3,3:1,3)");
    grid.SetColSel(4);
    EXPECT_EQ(log.Take(), "SelChange(3,3:1,4)");
    EXPECT_EQ(grid.Row(), 3);
    EXPECT_EQ(grid.Col(), 3);
    EXPECT_TRUE(grid.Selected(1, 4));
    EXPECT_TRUE(grid.Selected(2, 3));
    EXPECT_FALSE(grid.Selected(4, 3));
    EXPECT_FALSE(grid.Selected(2, 2));
}

TEST_F(FlexGridCurrent, SettingTheSameValueRaisesNothing) {
    grid.SetRow(1);
    grid.SetCol(1);
    grid.SetRowSel(1);
    grid.SetColSel(1);
    grid.SetTopRow(1);
    grid.SetLeftCol(1);
    EXPECT_EQ(log.Take(), "");
}

TEST_F(FlexGridCurrent, CollapsingASelectionOnAnUnchangedCurrentCellRaisesSelChangeOnly) {
    grid.SetRowSel(4);
    log.Take();
    grid.SetRow(1);
    EXPECT_EQ(log.Take(), "SelChange(1,1:1,1)");
}

TEST_F(FlexGridCurrent, CodeMayMakeAFixedCellCurrent) {
    grid.SetRow(0);
    EXPECT_EQ(grid.Row(), 0);
    EXPECT_EQ(log.Take(), "RowColChange(0,1)");
    EXPECT_FALSE(grid.Selected(0, 1));
}

TEST_F(FlexGridCurrent, CodeDoesNotScrollTheCurrentCellIntoView) {
    grid.SetRows(1000);
    grid.SetRow(999);
    grid.SetRowSel(500);
    EXPECT_EQ(grid.TopRow(), 1);
    EXPECT_EQ(log.Take(), "RowColChange(999,1) SelChange(999,1:500,1)");
}

TEST_F(FlexGridRows, AddItemPushesTheRowsFromThereDownAndLeavesAPlainEmptyRow) {
    grid.SetCellBold(2, 1, true);
    grid.SetCellAlign(2, 1, CellAlignment::kLeft);
    grid.SetRow(3);
    log.Take();
    grid.AddItem(2);
    EXPECT_EQ(grid.Rows(), 7);
    EXPECT_EQ(grid.TextMatrix(1, 1), L"r1c1");
    EXPECT_EQ(grid.TextMatrix(2, 1), L"");
    EXPECT_FALSE(grid.CellBold(2, 1));
    EXPECT_EQ(grid.CellAlign(2, 1), CellAlignment::kGeneral);
    EXPECT_EQ(grid.TextMatrix(3, 1), L"r2c1");
    EXPECT_TRUE(grid.CellBold(3, 1));
    EXPECT_EQ(grid.CellAlign(3, 1), CellAlignment::kLeft);
    EXPECT_EQ(grid.TextMatrix(6, 4), L"r5c4");
    EXPECT_EQ(grid.Row(), 3) << "the current row number stays";
    EXPECT_EQ(log.Take(), "");
}

TEST_F(FlexGridRows, AddItemAtRowsAppendsAndSeveralRowsComeAtOnce) {
    grid.AddItem(6);
    EXPECT_EQ(grid.Rows(), 7);
    grid.AddItem(1, 3);
    EXPECT_EQ(grid.Rows(), 10);
    EXPECT_EQ(grid.TextMatrix(3, 1), L"");
    EXPECT_EQ(grid.TextMatrix(4, 1), L"r1c1");
    grid.AddItem(1, 0);
    EXPECT_EQ(grid.Rows(), 10);
}

TEST_F(FlexGridRows, AReusedRowIsEmptyAndPlain) {
    grid.SetCellBold(3, 1, true);
    grid.SetCellAlign(3, 1, CellAlignment::kLeft);
    grid.RemoveItem(3);
    grid.AddItem(3);
    grid.SetTextMatrix(3, 2, L"x");
    EXPECT_EQ(grid.TextMatrix(3, 1), L"") << grid;
    EXPECT_FALSE(grid.CellBold(3, 1));
    EXPECT_EQ(grid.CellAlign(3, 1), CellAlignment::kGeneral);
}

TEST_F(FlexGridRows, RemoveItemPullsTheRowsUpAndKeepsTheCurrentRowNumber) {
    grid.SetRow(3);
    log.Take();
    grid.RemoveItem(2);
    EXPECT_EQ(grid.Rows(), 5);
    EXPECT_EQ(grid.TextMatrix(2, 1), L"r3c1");
    EXPECT_EQ(grid.TextMatrix(4, 1), L"r5c1");
    EXPECT_EQ(grid.Row(), 3);
    EXPECT_EQ(log.Take(), "");
}

TEST_F(FlexGridRows, ACurrentRowBeyondTheEndIsCutAndReported) {
    grid.SetRow(5);
    log.Take();
    grid.RemoveItem(1, 2);
    EXPECT_EQ(grid.Row(), 3);
    EXPECT_EQ(grid.RowSel(), 3);
    EXPECT_EQ(log.Take(), "RowColChange(3,1)");
}

TEST_F(FlexGridRows, ASelectionCornerBeyondTheEndIsCutAndReported) {
    grid.SetRow(2);
    grid.SetRowSel(5);
    log.Take();
    grid.RemoveItem(4);
    EXPECT_EQ(grid.RowSel(), 4);
    EXPECT_EQ(log.Take(), "SelChange(2,1:4,1)");
}

TEST_F(FlexGridRows, TheLastNonFixedRowCannotBeRemoved) {
    EXPECT_EQ(ErrorOf([&] { grid.RemoveItem(1, 5); }), 30016);
    EXPECT_EQ(grid.Rows(), 6);
    grid.RemoveItem(1, 4);
    EXPECT_EQ(ErrorOf([&] { grid.RemoveItem(1); }), 30016);
    EXPECT_EQ(grid.Rows(), 2);
    EXPECT_EQ(grid.TextMatrix(1, 1), L"r5c1");
}

TEST_F(FlexGridRows, MovingRowsDownTakesTextsAndFormatsButLeavesTheLineNumbers) {
    grid.SetCellBold(2, 3, true);
    grid.MoveRows(2, 2, 4);
    EXPECT_EQ(grid.TextMatrix(2, 1), L"r4c1") << grid;
    EXPECT_EQ(grid.TextMatrix(3, 1), L"r5c1");
    EXPECT_EQ(grid.TextMatrix(4, 1), L"r2c1");
    EXPECT_EQ(grid.TextMatrix(5, 1), L"r3c1");
    EXPECT_TRUE(grid.CellBold(4, 3));
    for (int row = 0; row < 6; ++row) EXPECT_EQ(grid.TextMatrix(row, 0), Name(row, 0));
    EXPECT_EQ(grid.Row(), 1);
    EXPECT_EQ(log.Take(), "");
}

TEST_F(FlexGridRows, MovingRowsUpIsTheReverse) {
    grid.MoveRows(2, 3, 3);
    grid.MoveRows(3, 3, 2);
    for (int row = 0; row < 6; ++row) {
        for (int col = 0; col < 5; ++col) ASSERT_EQ(grid.TextMatrix(row, col), Name(row, col));
    }
}

TEST_F(FlexGridRows, RowHeightsFollowTheirRows) {
    grid.SetRowHeight(2, 600);
    grid.SetRowHeight(4, 480);
    grid.AddItem(1);
    EXPECT_EQ(grid.RowHeight(3), 600);
    EXPECT_EQ(grid.RowHeight(2), 240);
    grid.RemoveItem(3);
    EXPECT_EQ(grid.RowHeight(3), 240);
    EXPECT_EQ(grid.RowHeight(4), 480);
    grid.MoveRows(4, 1, 1);
    EXPECT_EQ(grid.RowHeight(1), 480);
    EXPECT_EQ(grid.RowHeight(4), 240);
    grid.MoveRows(1, 1, 3);
    EXPECT_EQ(grid.RowHeight(3), 480);
}

TEST_F(FlexGridRows, FewerRowsCutTheCurrentCellAndMoreRowsAreEmpty) {
    grid.SetRow(5);
    log.Take();
    grid.SetRows(3);
    EXPECT_EQ(grid.Row(), 2);
    EXPECT_EQ(log.Take(), "RowColChange(2,1)");
    grid.SetRows(5);
    EXPECT_EQ(grid.TextMatrix(4, 1), L"");
    EXPECT_EQ(grid.TextMatrix(2, 1), L"r2c1");
    EXPECT_EQ(log.Take(), "");
}

TEST_F(FlexGridRows, ColumnsAreAddedAndCutAtTheEnd) {
    grid.SetCol(4);
    log.Take();
    grid.SetCols(3);
    EXPECT_EQ(log.Take(), "RowColChange(1,2)");
    grid.SetCols(6);
    EXPECT_EQ(grid.TextMatrix(4, 2), L"r4c2");
    EXPECT_EQ(grid.TextMatrix(4, 3), L"");
    EXPECT_EQ(grid.TextMatrix(4, 5), L"");
}

TEST_F(FlexGridErrors, NumbersOutOfRangeRaise9AndChangeNothing) {
    const std::string before = DumpGrid(grid);
    for (const int bad : {-1, 6, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(ErrorOf([&] { grid.SetRow(bad); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.SetCol(bad); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.SetRowSel(bad); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.SetColSel(bad); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.SetTopRow(bad); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.SetLeftCol(bad); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.TextMatrix(bad, 0); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.TextMatrix(0, bad); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.SetTextMatrix(bad, 0, L"x"); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.SetTextMatrix(0, bad, L"x"); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.CellBold(bad, 0); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.SetCellBold(0, bad, true); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.CellAlign(bad, 0); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.SetCellAlign(0, bad, CellAlignment::kLeft); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.ColWidth(bad); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.SetColWidth(bad, 1); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.RowHeight(bad); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.SetRowHeight(bad, 1); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.RowPos(bad); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.ColPos(bad); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.RemoveItem(bad); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.MoveRows(bad, 1, 1); }), 9);
        EXPECT_EQ(ErrorOf([&] { grid.MoveRows(1, 1, bad); }), 9);
    }
    EXPECT_EQ(ErrorOf([&] { grid.SetTopRow(0); }), 9);
    EXPECT_EQ(ErrorOf([&] { grid.SetLeftCol(0); }), 9);
    EXPECT_EQ(ErrorOf([&] { grid.AddItem(0); }), 9);
    EXPECT_EQ(ErrorOf([&] { grid.AddItem(7); }), 9);
    EXPECT_EQ(ErrorOf([&] { grid.AddItem(1, -1); }), 9);
    EXPECT_EQ(ErrorOf([&] { grid.AddItem(1, 2147483647); }), 9);
    EXPECT_EQ(ErrorOf([&] { grid.RemoveItem(0); }), 9);
    EXPECT_EQ(ErrorOf([&] { grid.RemoveItem(5, 2); }), 9);
    EXPECT_EQ(ErrorOf([&] { grid.RemoveItem(1, -1); }), 9);
    EXPECT_EQ(ErrorOf([&] { grid.MoveRows(0, 1, 1); }), 9);
    EXPECT_EQ(ErrorOf([&] { grid.MoveRows(1, 1, 0); }), 9);
    EXPECT_EQ(ErrorOf([&] { grid.MoveRows(4, 2, 5); }), 9);
    EXPECT_EQ(ErrorOf([&] { grid.MoveRows(5, 2, 1); }), 9);
    EXPECT_EQ(ErrorOf([&] { grid.MoveRows(1, 2147483647, 1); }), 9);
    EXPECT_EQ(ErrorOf([&] { grid.SetRows(1); }), 9);
    EXPECT_EQ(ErrorOf([&] { grid.SetCols(1); }), 9);
    EXPECT_EQ(ErrorOf([&] { grid.SetColWidth(1, -1); }), 9);
    EXPECT_EQ(ErrorOf([&] { grid.SetRowHeight(1, -1); }), 9);
    EXPECT_EQ(DumpGrid(grid), before);
    EXPECT_EQ(log.Take(), "");
}

TEST_F(FlexGridErrors, TheErrorCarriesItsStandardDescription) {
    try {
        grid.SetRow(6);
        FAIL() << "nothing was raised";
    } catch (const Error& error) {
        EXPECT_EQ(error.description(), L"Subscript out of range");
    }
}

TEST_F(FlexGridEvents, AHandlerSeesTheFinishedChangeAndMayCallBack) {
    log.on_row_col_change = [&] {
        if (grid.Row() == 3) grid.SetRow(4);
    };
    grid.SetRow(3);
    EXPECT_EQ(grid.Row(), 4);
    EXPECT_EQ(log.Take(), "RowColChange(3,1) RowColChange(4,1)");
}

TEST_F(FlexGridEvents, AHandlerMayRemoveTheCurrentRow) {
    log.on_row_col_change = [&] {
        if (grid.Rows() == 6) grid.RemoveItem(2, 4);
    };
    grid.SetRow(5);
    EXPECT_EQ(grid.Rows(), 2);
    EXPECT_EQ(grid.Row(), 1);
    EXPECT_EQ(log.Take(), "RowColChange(5,1) RowColChange(1,1)");
}

TEST_F(FlexGridEvents, AHandlerMayStopListening) {
    grid.SetRows(500);
    log.on_row_col_change = [&] { grid.SetEvents(nullptr); };
    grid.Key(GridKey::kEnd, false, true);  // moves and scrolls
    EXPECT_EQ(log.Take(), "RowColChange(499,4)");
}

TEST(FlexGridLifetime, AHandlerMayDestroyTheGrid) {
    auto grid = std::make_unique<FlexGrid>();
    GridEventLog log(*grid);
    grid->SetRows(500);
    grid->SetEvents(&log);
    log.on_row_col_change = [&] { grid.reset(); };
    grid->Key(GridKey::kEnd, false, true);
    EXPECT_EQ(grid, nullptr);
    EXPECT_EQ(log.Take(), "RowColChange(499,1)");
}

TEST_F(FlexGridTest, TheSelectionRunsFromItsUpperLeftCellWhereverItsAnchorIs) {
    for (const auto& [row, col, row_sel, col_sel] :
         {std::array{2, 1, 4, 3}, {4, 3, 2, 1}, {2, 3, 4, 1}, {4, 1, 2, 3}}) {
        grid.Select(row, col, row_sel, col_sel);
        const GridRange selection = grid.Selection();
        EXPECT_EQ(selection.first_row, 2);
        EXPECT_EQ(selection.last_row, 4);
        EXPECT_EQ(selection.first_col, 1);
        EXPECT_EQ(selection.last_col, 3);
        EXPECT_EQ(selection.Rows(), 3);
    }
}

}  // namespace
}  // namespace demovex
