#include <gtest/gtest.h>

#include "grid/flex_grid.h"
#include "tests/support/grid_dump.h"
#include "tests/support/grid_event_log.h"

namespace demovex {
namespace {

// 100 rows of 16 pixels, 10 columns of 64 pixels; 10 whole rows and 4 whole columns scroll in the
// view.
class GridKeys : public testing::Test {
  protected:
    GridKeys() {
        grid.SetRows(100);
        grid.SetCols(10);
        // 16 header + 10 rows + 8 pixels of an eleventh; 64 line numbers + 4 columns + 30 pixels
        grid.SetFrame({64 * 5 + 30 + 4 + 17, 16 * 11 + 8 + 4 + 17, 2, 17, 17});
        grid.SetEvents(&log);
    }
    void Key(GridKey key, bool shift = false, bool ctrl = false) { grid.Key(key, shift, ctrl); }
    void Go(std::int32_t row, std::int32_t col) {
        grid.SetRow(row);
        grid.SetCol(col);
        log.Take();
    }
    std::string At() const {
        return std::to_string(grid.Row()) + "," + std::to_string(grid.Col()) + ":" +
               std::to_string(grid.RowSel()) + "," + std::to_string(grid.ColSel());
    }

    FlexGrid grid;
    GridEventLog log{grid};
};

TEST_F(GridKeys, ArrowsMoveTheCurrentCellByOne) {
    Go(3, 3);
    Key(GridKey::kDown);
    EXPECT_EQ(At(), "4,3:4,3");
    Key(GridKey::kRight);
    EXPECT_EQ(At(), "4,4:4,4");
    Key(GridKey::kUp);
    Key(GridKey::kLeft);
    EXPECT_EQ(At(), "3,3:3,3");
    EXPECT_EQ(log.Take(),
              "RowColChange(4,3) RowColChange(4,4) RowColChange(3,4) RowColChange(3,3)");
}

TEST_F(GridKeys, ArrowsStopAtTheEdgesOfTheNormalCells) {
    Key(GridKey::kUp);
    Key(GridKey::kLeft);
    EXPECT_EQ(At(), "1,1:1,1");
    EXPECT_EQ(log.Take(), "");
    Key(GridKey::kEnd, false, true);
    log.Take();
    Key(GridKey::kDown);
    Key(GridKey::kRight);
    EXPECT_EQ(At(), "99,9:99,9");
    EXPECT_EQ(log.Take(), "");
}

TEST_F(GridKeys, AnArrowAtTheEdgeStillCollapsesTheSelection) {
    grid.SetRowSel(4);
    log.Take();
    Key(GridKey::kUp);
    EXPECT_EQ(At(), "1,1:1,1");
    EXPECT_EQ(log.Take(), "SelChange(1,1:1,1)");
}

TEST_F(GridKeys, AKeyInAFixedCellEndsOnANormalOne) {
    grid.SetRow(0);
    grid.SetCol(2);
    Key(GridKey::kDown);
    EXPECT_EQ(At(), "1,2:1,2");
    grid.SetCol(0);
    Key(GridKey::kDown);
    EXPECT_EQ(At(), "2,1:2,1");
}

TEST_F(GridKeys, ShiftWithAnArrowExtendsTheSelectionInstead) {
    Go(3, 3);
    Key(GridKey::kDown, true);
    Key(GridKey::kDown, true);
    Key(GridKey::kRight, true);
    EXPECT_EQ(At(), "3,3:5,4");
    Key(GridKey::kUp, true);
    Key(GridKey::kUp, true);
    Key(GridKey::kUp, true);
    EXPECT_EQ(At(), "3,3:2,4") << "the other corner may lie before the anchor";
    EXPECT_EQ(log.Take(),
              "SelChange(3,3:4,3) SelChange(3,3:5,3) SelChange(3,3:5,4) SelChange(3,3:4,4) "
              "SelChange(3,3:3,4) SelChange(3,3:2,4)");
}

TEST_F(GridKeys, ExtendingScrollsTheMovingCornerIntoView) {
    Go(10, 1);
    Key(GridKey::kDown, true);
    EXPECT_EQ(At(), "10,1:11,1");
    EXPECT_EQ(grid.TopRow(), 2);
    EXPECT_EQ(log.Take(), "SelChange(10,1:11,1) Scroll(2,1)");
}

TEST_F(GridKeys, MovingBeyondTheViewScrollsByWholeRowsAndColumns) {
    Go(10, 4);
    EXPECT_EQ(grid.TopRow(), 1);
    Key(GridKey::kDown);
    EXPECT_EQ(grid.TopRow(), 2);
    Key(GridKey::kRight);
    EXPECT_EQ(grid.LeftCol(), 2);
    EXPECT_EQ(log.Take(), "RowColChange(11,4) Scroll(2,1) RowColChange(11,5) Scroll(2,2)");
}

TEST_F(GridKeys, ACellScrolledOutByCodeComesBackIntoViewWithTheNextKey) {
    Go(5, 1);
    grid.SetTopRow(50);
    log.Take();
    Key(GridKey::kDown);
    EXPECT_EQ(grid.TopRow(), 6);
    EXPECT_EQ(log.Take(), "RowColChange(6,1) Scroll(6,1)");
}

TEST_F(GridKeys, PageKeysMoveByTheVisiblePage) {
    Key(GridKey::kPageDown);
    EXPECT_EQ(grid.Row(), 11);
    EXPECT_EQ(grid.TopRow(), 11);
    EXPECT_EQ(log.Take(), "RowColChange(11,1) Scroll(11,1)");
    Key(GridKey::kPageDown);
    EXPECT_EQ(grid.Row(), 21);
    Key(GridKey::kPageUp);
    Key(GridKey::kPageUp);
    EXPECT_EQ(grid.Row(), 1);
    EXPECT_EQ(grid.TopRow(), 1);
}

TEST_F(GridKeys, APageBeyondTheEndStopsAtTheLastRowWhichIsInView) {
    Go(95, 1);
    Key(GridKey::kPageDown);
    EXPECT_EQ(grid.Row(), 99);
    EXPECT_EQ(grid.TopRow(), 90);
    Go(4, 1);
    Key(GridKey::kPageUp);
    EXPECT_EQ(grid.Row(), 1);
    EXPECT_EQ(grid.TopRow(), 1);
}

TEST_F(GridKeys, ShiftWithAPageKeyExtendsByThePage) {
    Go(3, 1);
    Key(GridKey::kPageDown, true);
    EXPECT_EQ(At(), "3,1:13,1");
}

TEST_F(GridKeys, HomeAndEndGoToTheFirstAndLastVisibleColumn) {
    Go(5, 5);
    grid.SetColWidth(1, 0);
    grid.SetColWidth(9, 0);
    Key(GridKey::kHome);
    EXPECT_EQ(At(), "5,2:5,2");
    Key(GridKey::kEnd);
    EXPECT_EQ(At(), "5,8:5,8");
    EXPECT_EQ(grid.LeftCol(), 5) << "the last visible column is wholly in view";
}

TEST_F(GridKeys, CtrlHomeAndCtrlEndGoToTheFirstAndLastCell) {
    Go(5, 5);
    Key(GridKey::kEnd, false, true);
    EXPECT_EQ(At(), "99,9:99,9");
    EXPECT_EQ(grid.TopRow(), 90);
    Key(GridKey::kHome, false, true);
    EXPECT_EQ(At(), "1,1:1,1");
    EXPECT_EQ(grid.TopRow(), 1);
    EXPECT_EQ(grid.LeftCol(), 1);
}

TEST_F(GridKeys, ShiftCtrlEndExtendsToTheLastCell) {
    Go(5, 5);
    Key(GridKey::kEnd, true, true);
    EXPECT_EQ(At(), "5,5:99,9");
    Key(GridKey::kHome, true, true);
    EXPECT_EQ(At(), "5,5:1,1");
    Key(GridKey::kEnd, true);
    EXPECT_EQ(At(), "5,5:1,9");
}

TEST_F(GridKeys, HiddenColumnsAreSteppedOver) {
    grid.SetColWidth(6, 0);
    grid.SetColWidth(7, 0);
    Go(1, 5);
    Key(GridKey::kRight);
    EXPECT_EQ(grid.Col(), 8);
    Key(GridKey::kLeft);
    EXPECT_EQ(grid.Col(), 5);
    Key(GridKey::kRight, true);
    EXPECT_EQ(At(), "1,5:1,8");
}

TEST_F(GridKeys, HiddenColumnsAtTheEdgeAreNotEntered) {
    grid.SetColWidth(1, 0);
    grid.SetColWidth(9, 0);
    Go(1, 2);
    Key(GridKey::kLeft);
    EXPECT_EQ(grid.Col(), 2);
    Go(1, 8);
    Key(GridKey::kRight);
    EXPECT_EQ(grid.Col(), 8);
}

TEST_F(GridKeys, WithEveryColumnHiddenTheCurrentCellStays) {
    for (int col = 1; col < 10; ++col) grid.SetColWidth(col, 0);
    Key(GridKey::kRight);
    Key(GridKey::kEnd);
    Key(GridKey::kHome);
    Key(GridKey::kEnd, false, true);
    EXPECT_EQ(grid.Row(), 99);
    EXPECT_EQ(grid.Col(), 1);
}

TEST_F(GridKeys, HiddenRowsAreSteppedOver) {
    grid.SetRowHeight(2, 0);
    grid.SetRowHeight(3, 0);
    Key(GridKey::kDown);
    EXPECT_EQ(grid.Row(), 4);
    Key(GridKey::kUp);
    EXPECT_EQ(grid.Row(), 1);
}

TEST_F(GridKeys, AViewSmallerThanOneRowStillMovesAndShowsTheRow) {
    grid.SetFrame({60, 20, 2, 17, 17});
    log.Take();
    Key(GridKey::kDown);
    EXPECT_EQ(grid.Row(), 2);
    EXPECT_EQ(grid.TopRow(), 2);
    Key(GridKey::kPageDown);
    EXPECT_EQ(grid.Row(), 3) << "a page is at least one row";
}

TEST_F(GridKeys, HoldingAnArrowThroughAThousandRowsEndsOnTheRightCell) {
    grid.SetRows(2000);
    for (int i = 0; i < 1000; ++i) Key(GridKey::kDown);
    EXPECT_EQ(grid.Row(), 1001);
    EXPECT_EQ(grid.TopRow(), 992);
}

}  // namespace
}  // namespace demovex
