#include <gtest/gtest.h>

#include "grid/flex_grid.h"
#include "tests/support/grid_dump.h"
#include "tests/support/grid_event_log.h"

namespace demovex {
namespace {

// Rows of 16 pixels, columns of 64; 10 whole rows and 8 pixels, 4 whole columns and 30 pixels.
class GridMouse : public testing::Test {
  protected:
    GridMouse() {
        grid.SetRows(100);
        grid.SetCols(10);
        grid.SetFrame({64 * 5 + 30 + 4 + 17, 16 * 11 + 8 + 4 + 17, 2, 17, 17});
        grid.SetEvents(&log);
    }
    // The middle of a row or column in view, scrolled out ones not meant.
    int X(std::int32_t col) const { return 64 * (col < 1 ? col : col - grid.LeftCol() + 1) + 32; }
    int Y(std::int32_t row) const { return 16 * (row < 1 ? row : row - grid.TopRow() + 1) + 8; }
    void Press(std::int32_t row, std::int32_t col, bool shift = false) {
        grid.Press(X(col), Y(row), shift);
    }
    void Click(std::int32_t row, std::int32_t col, bool shift = false) {
        Press(row, col, shift);
        grid.Release();
    }
    std::string At() const {
        return std::to_string(grid.Row()) + "," + std::to_string(grid.Col()) + ":" +
               std::to_string(grid.RowSel()) + "," + std::to_string(grid.ColSel());
    }

    FlexGrid grid;
    GridEventLog log{grid};
};

TEST_F(GridMouse, APressMakesACellCurrent) {
    Click(4, 3);
    EXPECT_EQ(At(), "4,3:4,3");
    EXPECT_EQ(log.Take(), "RowColChange(4,3)");
    Click(4, 3);
    EXPECT_EQ(log.Take(), "");
}

TEST_F(GridMouse, APressOnACutOffCellScrollsItIntoView) {
    grid.Press(X(1), 16 * 11 + 4, false);
    EXPECT_EQ(At(), "11,1:11,1");
    EXPECT_EQ(log.Take(), "RowColChange(11,1) Scroll(2,1)");
    // the hand trembles: nothing is extended although another row is now under the pointer
    grid.Drag(X(1) + 2, 16 * 11 + 5);
    EXPECT_EQ(At(), "11,1:11,1");
    EXPECT_EQ(log.Take(), "");
}

TEST_F(GridMouse, APressBeyondTheLastCellChangesNothing) {
    grid.SetRows(4);
    grid.SetCols(3);
    log.Take();
    grid.Press(100, 150, false);
    grid.Drag(70, 20);
    grid.Press(300, 20, false);
    EXPECT_EQ(At(), "1,1:1,1");
    EXPECT_FALSE(grid.Dragging());
    EXPECT_EQ(log.Take(), "");
}

TEST_F(GridMouse, DraggingExtendsTheSelection) {
    Press(3, 2);
    grid.Drag(X(4), Y(6));
    EXPECT_EQ(At(), "3,2:6,4");
    grid.Drag(X(1), Y(1));
    EXPECT_EQ(At(), "3,2:1,1");
    grid.Release();
    grid.Drag(X(4), Y(6));
    EXPECT_EQ(At(), "3,2:1,1") << "after the release nothing is dragged";
    EXPECT_EQ(log.Take(), "RowColChange(3,2) SelChange(3,2:6,4) SelChange(3,2:1,1)");
}

TEST_F(GridMouse, ADragBackToTheAnchorSelectsOneCellAgain) {
    Press(3, 2);
    grid.Drag(X(4), Y(6));
    grid.Drag(X(2), Y(3));
    EXPECT_EQ(At(), "3,2:3,2");
}

TEST_F(GridMouse, DraggingBeyondTheLowerEdgeScrollsRowByRow) {
    Press(9, 2);
    grid.Drag(X(2), 16 * 11 + 7);
    EXPECT_EQ(At(), "9,2:11,2") << "the cut-off row is in view";
    EXPECT_FALSE(grid.WantsAutoScroll());
    grid.Drag(X(2), 300);
    EXPECT_TRUE(grid.WantsAutoScroll());
    log.Take();
    grid.AutoScroll();
    EXPECT_EQ(At(), "9,2:11,2");
    EXPECT_EQ(grid.TopRow(), 2);
    grid.AutoScroll();
    EXPECT_EQ(At(), "9,2:12,2");
    EXPECT_EQ(grid.TopRow(), 3);
    EXPECT_EQ(log.Take(), "Scroll(2,1) SelChange(9,2:12,2) Scroll(3,1)");
    for (int i = 0; i < 200; ++i) grid.AutoScroll();
    EXPECT_EQ(At(), "9,2:99,2");
    EXPECT_FALSE(grid.WantsAutoScroll()) << "the end is in view";
}

TEST_F(GridMouse, DraggingOntoTheHeaderScrollsUp) {
    grid.SetTopRow(50);
    Press(52, 2);
    grid.Drag(X(2), -20);
    log.Take();
    grid.AutoScroll();
    EXPECT_EQ(At(), "52,2:49,2");
    EXPECT_EQ(grid.TopRow(), 49);
    for (int i = 0; i < 200; ++i) grid.AutoScroll();
    EXPECT_EQ(At(), "52,2:1,2");
    EXPECT_EQ(grid.TopRow(), 1);
}

TEST_F(GridMouse, DraggingBeyondTheSidesScrollsColumns) {
    Press(3, 2);
    grid.Drag(600, Y(3));
    for (int i = 0; i < 20; ++i) grid.AutoScroll();
    EXPECT_EQ(At(), "3,2:3,9");
    EXPECT_EQ(grid.LeftCol(), 6);
    grid.Drag(-5, Y(3));
    for (int i = 0; i < 20; ++i) grid.AutoScroll();
    EXPECT_EQ(At(), "3,2:3,1");
    EXPECT_EQ(grid.LeftCol(), 1);
}

TEST_F(GridMouse, DraggingBeyondTheRightSidePassesHiddenColumns) {
    grid.SetColWidth(4, 0);
    grid.SetColWidth(5, 0);
    Press(3, 2);
    grid.Drag(600, Y(3));
    grid.AutoScroll();
    EXPECT_EQ(At(), "3,2:3,7") << "the first column beyond those in view";
    for (int i = 0; i < 20; ++i) grid.AutoScroll();
    EXPECT_EQ(At(), "3,2:3,9");
    EXPECT_FALSE(grid.WantsAutoScroll()) << "the end is in view";
}

TEST_F(GridMouse, ShiftPressExtendsTheSelection) {
    Click(3, 2);
    log.Take();
    Click(7, 4, true);
    EXPECT_EQ(At(), "3,2:7,4");
    Click(2, 1, true);
    EXPECT_EQ(At(), "3,2:2,1");
    EXPECT_EQ(log.Take(), "SelChange(3,2:7,4) SelChange(3,2:2,1)");
}

TEST_F(GridMouse, APressInTheLineNumbersSelectsTheRow) {
    Click(4, 0);
    EXPECT_EQ(At(), "4,1:4,9");
    EXPECT_EQ(log.Take(), "RowColChange(4,1)");
    EXPECT_FALSE(grid.Selected(4, 0));
    EXPECT_TRUE(grid.Selected(4, 9));
}

TEST_F(GridMouse, ARowSelectionStartsAtTheFirstVisibleColumn) {
    grid.SetColWidth(1, 0);
    Click(4, 0);
    EXPECT_EQ(At(), "4,2:4,9");
}

TEST_F(GridMouse, DraggingInTheLineNumbersSelectsRows) {
    Press(4, 0);
    grid.Drag(X(0), Y(7));
    EXPECT_EQ(At(), "4,1:7,9");
    grid.Drag(X(3), Y(2));
    EXPECT_EQ(At(), "4,1:2,9") << "whole rows, wherever the pointer is";
}

TEST_F(GridMouse, ShiftPressInTheLineNumbersExtendsByWholeRows) {
    Click(4, 0);
    Click(8, 0, true);
    EXPECT_EQ(At(), "4,1:8,9");
}

TEST_F(GridMouse, APressInTheHeaderSelectsTheColumn) {
    Click(0, 3);
    EXPECT_EQ(At(), "1,3:99,3");
    EXPECT_EQ(log.Take(), "RowColChange(1,3)");
}

TEST_F(GridMouse, DraggingInTheHeaderSelectsColumnsAndScrollsOnlySideways) {
    Press(0, 2);
    grid.Drag(X(4), 500);
    EXPECT_EQ(At(), "1,2:99,4");
    EXPECT_FALSE(grid.WantsAutoScroll());
    grid.Drag(900, 500);
    EXPECT_TRUE(grid.WantsAutoScroll());
    grid.AutoScroll();
    EXPECT_EQ(grid.TopRow(), 1);
    EXPECT_EQ(grid.LeftCol(), 2);
}

TEST_F(GridMouse, APressInTheCornerSelectsEverything) {
    Click(5, 3);
    log.Take();
    Press(0, 0);
    EXPECT_EQ(At(), "1,1:99,9");
    grid.Drag(X(2), Y(2));
    EXPECT_EQ(At(), "1,1:99,9");
    EXPECT_FALSE(grid.WantsAutoScroll());
    EXPECT_EQ(log.Take(), "RowColChange(1,1)");
}

TEST_F(GridMouse, TheWheelScrollsRowsAndMovesNoCell) {
    grid.ScrollRows(3);
    EXPECT_EQ(grid.TopRow(), 4);
    grid.ScrollRows(-1);
    EXPECT_EQ(grid.TopRow(), 3);
    grid.ScrollRows(-100);
    EXPECT_EQ(grid.TopRow(), 1);
    grid.ScrollRows(1000);
    EXPECT_EQ(grid.TopRow(), 90);
    EXPECT_EQ(At(), "1,1:1,1");
    EXPECT_EQ(log.Take(), "Scroll(4,1) Scroll(3,1) Scroll(1,1) Scroll(90,1)");
}

TEST_F(GridMouse, SidewaysScrollingPassesHiddenColumns) {
    grid.SetColWidth(2, 0);
    grid.SetColWidth(3, 0);
    grid.ScrollCols(1);
    EXPECT_EQ(grid.LeftCol(), 4);
    grid.ScrollCols(-1);
    EXPECT_EQ(grid.LeftCol(), 1);
    EXPECT_EQ(log.Take(), "Scroll(1,4) Scroll(1,1)");
}

TEST_F(GridMouse, PagesScrollByWhatIsInView) {
    grid.PageRows(1);
    EXPECT_EQ(grid.TopRow(), 11);
    grid.PageRows(-1);
    EXPECT_EQ(grid.TopRow(), 1);
    grid.PageCols(1);
    EXPECT_EQ(grid.LeftCol(), 5);
    grid.PageCols(1);
    EXPECT_EQ(grid.LeftCol(), 6) << "stops at the last useful position";
}

TEST_F(GridMouse, AHandlerThatRemovesRowsDuringAPressLeavesAWholeGrid) {
    log.on_row_col_change = [&] {
        if (grid.Rows() > 5) grid.RemoveItem(3, grid.Rows() - 4);
    };
    Press(9, 2);
    EXPECT_EQ(grid.Rows(), 4);
    EXPECT_EQ(At(), "3,2:3,2") << grid;
    grid.Drag(X(3), 300);
    grid.AutoScroll();
    grid.Release();
    EXPECT_EQ(At(), "3,2:3,3");
}

TEST_F(GridMouse, HitTestingTellsTheAreas) {
    EXPECT_EQ(grid.HitTest(5, 5), (GridHit{GridArea::kCorner, 0, 0}));
    EXPECT_EQ(grid.HitTest(100, 5), (GridHit{GridArea::kColumnHeader, 0, 1}));
    EXPECT_EQ(grid.HitTest(5, 20), (GridHit{GridArea::kRowHeader, 1, 0}));
    EXPECT_EQ(grid.HitTest(64, 16), (GridHit{GridArea::kCell, 1, 1}));
    EXPECT_EQ(grid.HitTest(127, 31), (GridHit{GridArea::kCell, 1, 1}));
    EXPECT_EQ(grid.HitTest(128, 32), (GridHit{GridArea::kCell, 2, 2}));
    EXPECT_EQ(grid.HitTest(-1, 20), GridHit{});
    EXPECT_EQ(grid.HitTest(20, 5000), GridHit{});
    grid.SetTopRow(40);
    EXPECT_EQ(grid.HitTest(64, 16), (GridHit{GridArea::kCell, 40, 1}));
}

}  // namespace
}  // namespace demovex
