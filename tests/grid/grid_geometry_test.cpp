#include <gtest/gtest.h>

#include <tuple>

#include "grid/flex_grid.h"
#include "tests/support/grid_event_log.h"
#include "tests/support/recording_display.h"

namespace demovex {
namespace {

class GridGeometry : public testing::Test {
  protected:
    GridGeometry() {
        grid.SetRows(100);
        grid.SetCols(10);
        grid.SetFrame({64 * 5 + 30 + 4 + 17, 16 * 11 + 8 + 4 + 17, 2, 17, 17});
        grid.SetEvents(&log);
    }
    FlexGrid grid;
    GridEventLog log{grid};
};

TEST_F(GridGeometry, PlacesCountFromTheOuterCornerBorderIncluded) {
    EXPECT_EQ(grid.RowPos(0), 30);
    EXPECT_EQ(grid.ColPos(0), 30);
    EXPECT_EQ(grid.RowPos(1), 30 + 240);
    EXPECT_EQ(grid.ColPos(1), 30 + 960);
    EXPECT_EQ(grid.RowPos(3), 30 + 3 * 240);
    EXPECT_EQ(grid.ColPos(4), 30 + 4 * 960);
}

TEST_F(GridGeometry, ScrollingIsCountedIn) {
    grid.SetTopRow(5);
    grid.SetLeftCol(3);
    EXPECT_EQ(grid.RowPos(0), 30) << "fixed rows stay";
    EXPECT_EQ(grid.RowPos(5), 30 + 240);
    EXPECT_EQ(grid.RowPos(7), 30 + 3 * 240);
    EXPECT_EQ(grid.RowPos(4), 30) << "one row above the first scrolled-in one";
    EXPECT_EQ(grid.RowPos(1), 30 + 240 - 4 * 240);
    EXPECT_EQ(grid.ColPos(0), 30);
    EXPECT_EQ(grid.ColPos(3), 30 + 960);
    EXPECT_EQ(grid.ColPos(1), 30 + 960 - 2 * 960);
}

TEST_F(GridGeometry, TheCurrentCellLeavesOutTheLinesOnItsRightAndBelow) {
    grid.SetRow(2);
    grid.SetCol(3);
    EXPECT_EQ(grid.CellLeft(), grid.ColPos(3));
    EXPECT_EQ(grid.CellTop(), grid.RowPos(2));
    EXPECT_EQ(grid.CellWidth(), 960 - 15);
    EXPECT_EQ(grid.CellHeight(), 240 - 15);
}

TEST_F(GridGeometry, AHiddenColumnTakesNoRoom) {
    grid.SetColWidth(2, 0);
    EXPECT_EQ(grid.ColPos(3), grid.ColPos(2));
    grid.SetCol(2);
    EXPECT_EQ(grid.CellWidth(), 0);
    EXPECT_TRUE(grid.CellRect(1, 2).empty());
}

TEST_F(GridGeometry, OwnHeightsAndWidthsShiftWhatFollows) {
    grid.SetRowHeight(2, 600);
    grid.SetColWidth(1, 1500);
    EXPECT_EQ(grid.RowPos(3), 30 + 240 + 240 + 600);
    EXPECT_EQ(grid.ColPos(2), 30 + 960 + 1500);
    EXPECT_EQ(grid.RowHeight(2), 600);
    EXPECT_EQ(grid.ColWidth(1), 1500);
    EXPECT_EQ(grid.RowHeight(3), 240);
}

TEST_F(GridGeometry, TheOuterSizeIsReportedInTwips) {
    EXPECT_EQ(grid.Width(), (64 * 5 + 30 + 4 + 17) * 15);
    EXPECT_EQ(grid.Height(), (16 * 11 + 8 + 4 + 17) * 15);
}

TEST_F(GridGeometry, TheLastUsefulTopRowHasTheLastRowWhollyInView) {
    grid.SetTopRow(99);
    EXPECT_EQ(grid.TopRow(), 90);
    const PixelRect last = grid.CellRect(99, 1);
    EXPECT_LE(last.bottom, grid.View().bottom);
    EXPECT_GT(last.bottom + 16, grid.View().bottom);
    EXPECT_EQ(log.Take(), "Scroll(90,1)");
}

TEST_F(GridGeometry, AGridThatFitsDoesNotScrollAndHasNoBars) {
    grid.SetRows(5);
    grid.SetCols(3);
    log.Take();
    grid.SetTopRow(4);
    grid.SetLeftCol(2);
    EXPECT_EQ(grid.TopRow(), 1);
    EXPECT_EQ(grid.LeftCol(), 1);
    EXPECT_EQ(log.Take(), "");
    EXPECT_FALSE(grid.VerticalBar().visible);
    EXPECT_FALSE(grid.HorizontalBar().visible);
    EXPECT_EQ(grid.View(), (PixelRect{0, 0, 64 * 5 + 30 + 17, 16 * 11 + 8 + 17}));
}

TEST_F(GridGeometry, AScrollBarThatTakesRoomMayMakeTheOtherNecessary) {
    grid.SetCols(3);  // 192 pixels
    grid.SetRows(5);  // 80 pixels
    grid.SetFrame({192 + 4, 80 + 4, 2, 17, 17});
    EXPECT_FALSE(grid.VerticalBar().visible);
    EXPECT_FALSE(grid.HorizontalBar().visible);
    grid.SetFrame({191 + 4, 80 + 4, 2, 17, 17});
    EXPECT_TRUE(grid.HorizontalBar().visible);
    EXPECT_TRUE(grid.VerticalBar().visible) << "the horizontal bar covers the last row";
}

TEST_F(GridGeometry, ScrollBarsCarryRangePageAndPosition) {
    EXPECT_EQ(grid.VerticalBar(), (GridScrollBar{true, 1, 99, 10, 1}));
    EXPECT_EQ(grid.HorizontalBar(), (GridScrollBar{true, 1, 9, 4, 1}));
    grid.SetTopRow(50);
    EXPECT_EQ(grid.VerticalBar().position, 50);
    grid.SetTopRow(99);
    const GridScrollBar bar = grid.VerticalBar();
    EXPECT_EQ(bar.position, bar.max - bar.page + 1) << "the thumb is at the end";
}

TEST_F(GridGeometry, RemovingRowsPullsTheScrollPositionBack) {
    grid.SetTopRow(90);
    log.Take();
    grid.RemoveItem(20, 70);
    EXPECT_EQ(grid.TopRow(), 20);
    EXPECT_EQ(log.Take(), "Scroll(20,1)");
    grid.RemoveItem(1, 25);
    EXPECT_EQ(grid.TopRow(), 1);
}

TEST_F(GridGeometry, AGrowingGridPullsTheScrollPositionBack) {
    grid.SetTopRow(90);
    log.Take();
    grid.SetFrame({400, 1000, 2, 17, 17});
    EXPECT_EQ(log.Take(), "Scroll(40,1)");
}

TEST_F(GridGeometry, HidingColumnsPullsTheLeftColumnBack) {
    grid.SetLeftCol(6);
    log.Take();
    for (int col = 3; col < 10; ++col) grid.SetColWidth(col, 0);
    EXPECT_EQ(grid.LeftCol(), 1);
}

TEST_F(GridGeometry, TenMillionRowsScrollToTheLastOne) {
    grid.SetRows(10'000'000);
    grid.SetTopRow(9'999'999);
    EXPECT_EQ(grid.TopRow(), 9'999'990);
    EXPECT_EQ(grid.VerticalBar(), (GridScrollBar{true, 1, 9'999'999, 10, 9'999'990}));
    EXPECT_EQ(grid.RowPos(9'999'990), 30 + 240);
    EXPECT_EQ(grid.CellRect(9'999'999, 1).top, 16 * 10);
    grid.SetTextMatrix(9'999'999, 1, L"last");
    EXPECT_EQ(grid.TextMatrix(9'999'999, 1), L"last");
}

TEST_F(GridGeometry, PlacesBeyondThirtyTwoBitsStopAtTheEnds) {
    grid.SetRows(100'000'000);
    EXPECT_GT(grid.RowPos(99'999'999), 2'000'000'000);
    grid.SetTopRow(99'999'999);
    EXPECT_LT(grid.RowPos(1), -2'000'000'000);
    grid.SetColWidth(1, 2147483647);
    grid.SetColWidth(2, 2147483647);
    EXPECT_GT(grid.ColPos(3), 2'000'000'000);
    EXPECT_TRUE(grid.CellRect(0, 3).empty());
}

TEST_F(GridGeometry, ARowHigherThanTheViewCanBeScrolledTo) {
    grid.SetRowHeight(50, 30000);
    grid.SetTopRow(50);
    EXPECT_EQ(grid.TopRow(), 50);
    grid.SetTopRow(51);
    EXPECT_EQ(grid.TopRow(), 51);
}

// Width of 400, 1000, 2470, 800 twips at each dpi: a cell's place is the sum of whole pixels and
// a control placed at the twips that the grid reports lands on exactly that pixel.
class GridDpi : public testing::TestWithParam<std::tuple<int, int>> {};

TEST_P(GridDpi, AControlPlacedByTwipsCoversTheCellToThePixel) {
    const auto [dpi, scroll] = GetParam();
    const Scale scale(dpi);
    FlexGrid grid(scale);
    grid.SetRows(200);
    grid.SetCols(8);
    const Twips widths[] = {400, 1000, 2470, 800, 1085, 1085, 0, 1135};
    for (int col = 0; col < 8; ++col) grid.SetColWidth(col, widths[col]);
    grid.SetRowHeight(3, 255);
    grid.SetFrame({700, 500, 2, 17, 17});
    grid.SetTopRow(scroll);
    const Twips left = scale.ToTwips(11);
    const Twips top = scale.ToTwips(37);
    for (std::int32_t row = scroll; row < scroll + 5; ++row) {
        for (const std::int32_t col : {1, 2, 3, 4}) {
            grid.SetRow(row);
            grid.SetCol(col);
            const PixelRect cell = grid.CellRect(row, col);
            ASSERT_FALSE(cell.empty());
            EXPECT_EQ(scale.ToPixels(left + grid.CellLeft()), 11 + 2 + cell.left);
            EXPECT_EQ(scale.ToPixels(top + grid.CellTop()), 37 + 2 + cell.top);
            EXPECT_EQ(scale.ToPixels(grid.CellWidth()), cell.width() - 1);
            EXPECT_EQ(scale.ToPixels(grid.CellHeight()), cell.height() - 1);
            EXPECT_EQ(cell.width(), scale.ToPixels(widths[col]));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Screens, GridDpi,
                         testing::Combine(testing::Values(96, 120, 144, 192),
                                          testing::Values(1, 40)));

// --- what the control is asked to repaint ---

class GridRepaint : public GridGeometry {
  protected:
    GridRepaint() {
        grid.SetDisplay(&display);
        display.Clear();
    }
    RecordingDisplay display;
};

TEST_F(GridRepaint, AChangedCellRepaintsItselfOnly) {
    grid.SetTextMatrix(3, 2, L"x");
    ASSERT_EQ(display.invalid.size(), 1U);
    EXPECT_EQ(display.invalid[0], grid.CellRect(3, 2));
    EXPECT_EQ(display.bars, 0);
}

TEST_F(GridRepaint, AnUnchangedOrUnseenCellRepaintsNothing) {
    grid.SetTextMatrix(3, 2, L"");
    grid.SetTextMatrix(50, 2, L"x");
    grid.SetTextMatrix(3, 9, L"x");
    grid.SetCellBold(3, 2, false);
    EXPECT_TRUE(display.Idle());
}

TEST_F(GridRepaint, AMovedCurrentCellRepaintsTheOldAndTheNewCell) {
    grid.SetRow(5);
    ASSERT_EQ(display.invalid.size(), 2U);
    EXPECT_EQ(display.invalid[0], grid.CellRect(1, 1));
    EXPECT_EQ(display.invalid[1], grid.CellRect(5, 1));
    EXPECT_EQ(display.moves, 1);
}

TEST_F(GridRepaint, ExtendingByARowRepaintsThatRowOnly) {
    grid.SetRow(2);
    grid.SetRowSel(8);
    display.Clear();
    grid.SetRowSel(9);
    EXPECT_EQ(display.Area(), 64 * 32) << "the old corner's row and the new one";
    EXPECT_EQ(display.selections, 1);
}

TEST_F(GridRepaint, ScrollingByARowMovesThePixels) {
    grid.SetTopRow(2);
    ASSERT_EQ(display.scrolls.size(), 1U);
    const PixelRect view = grid.View();
    EXPECT_EQ(display.scrolls[0],
              (RecordingDisplay::ScrollCall{{0, 16, view.right, view.bottom}, 0, -16}));
    EXPECT_TRUE(display.invalid.empty());
    EXPECT_EQ(display.bars, 1);
}

TEST_F(GridRepaint, ScrollingByAColumnMovesThePixelsAndTheHeader) {
    grid.SetLeftCol(3);
    display.Clear();
    grid.SetLeftCol(2);
    ASSERT_EQ(display.scrolls.size(), 1U);
    const PixelRect view = grid.View();
    EXPECT_EQ(display.scrolls[0],
              (RecordingDisplay::ScrollCall{{64, 0, view.right, view.bottom}, 64, 0}));
}

TEST_F(GridRepaint, ScrollingByMoreThanThePageRepaintsTheRowsInOneGo) {
    grid.SetTopRow(60);
    EXPECT_TRUE(display.scrolls.empty());
    ASSERT_EQ(display.invalid.size(), 1U);
    EXPECT_EQ(display.invalid[0].top, 16);
}

TEST_F(GridRepaint, WhileRedrawIsOffNothingIsPaintedAndSwitchingOnPaintsOnce) {
    grid.SetRedraw(false);
    grid.SetTextMatrix(1, 1, L"x");
    grid.SetRow(4);
    grid.SetTopRow(20);
    grid.AddItem(3, 50);
    grid.SetFocusRect(FocusRectStyle::kNone);
    EXPECT_TRUE(display.Idle());
    grid.SetRedraw(true);
    ASSERT_EQ(display.invalid.size(), 1U);
    EXPECT_EQ(display.invalid[0], grid.View());
    EXPECT_EQ(display.bars, 1);
    display.Clear();
    grid.SetRedraw(true);
    EXPECT_TRUE(display.Idle());
}

TEST_F(GridRepaint, AnInsertedRowRepaintsFromThereDown) {
    grid.AddItem(4);
    ASSERT_EQ(display.invalid.size(), 1U);
    EXPECT_EQ(display.invalid[0].top, 16 * 4);
    EXPECT_EQ(display.invalid[0].bottom, grid.View().bottom);
    display.Clear();
    grid.AddItem(80);
    EXPECT_TRUE(display.invalid.empty()) << "below the view";
}

TEST_F(GridRepaint, MovedRowsRepaintTheirRange) {
    grid.MoveRows(3, 2, 5);
    ASSERT_EQ(display.invalid.size(), 1U);
    EXPECT_EQ(display.invalid[0], (PixelRect{0, 48, grid.View().right, 48 + 4 * 16}));
}

TEST_F(GridRepaint, TheFocusRectangleRepaintsTheCurrentCell) {
    grid.SetFocused(true);
    grid.SetFocusRect(FocusRectStyle::kNone);
    grid.SetFocusRect(FocusRectStyle::kNone);
    ASSERT_EQ(display.invalid.size(), 2U);
    EXPECT_EQ(display.invalid[1], grid.CellRect(1, 1));
}

// --- what the control is told for assistive programs, painting or not ---

TEST_F(GridRepaint, EachChangedTextIsToldAlsoWhileNothingIsPainted) {
    using Cells = std::vector<std::pair<std::int32_t, std::int32_t>>;
    grid.SetTextMatrix(3, 2, L"x");
    grid.SetTextMatrix(3, 2, L"x");
    EXPECT_EQ(display.changed, (Cells{{3, 2}}));
    grid.SetRedraw(false);
    grid.SetTextMatrix(4, 2, L"x");
    EXPECT_EQ(display.changed, (Cells{{3, 2}, {4, 2}}));
    EXPECT_EQ(display.redraws, 0);
    grid.SetRedraw(true);
    grid.SetRedraw(true);
    EXPECT_EQ(display.redraws, 1);
}

TEST_F(GridRepaint, RowsAndColumnsThatComeGoOrMoveAreTold) {
    const auto told = [&](const auto& change) {
        display.Clear();
        change();
        return display.cells_moved;
    };
    EXPECT_EQ(told([&] { grid.AddItem(4); }), 1);
    EXPECT_EQ(told([&] { grid.AddItem(4, 0); }), 0);
    EXPECT_EQ(told([&] { grid.RemoveItem(4); }), 1);
    EXPECT_EQ(told([&] { grid.MoveRows(3, 2, 5); }), 1);
    EXPECT_EQ(told([&] { grid.MoveRows(3, 2, 3); }), 0);
    EXPECT_EQ(told([&] { grid.SetRows(90); }), 1);
    EXPECT_EQ(told([&] { grid.SetRows(90); }), 0);
    EXPECT_EQ(told([&] { grid.SetCols(11); }), 1);
    EXPECT_EQ(told([&] { grid.SetRow(7); }), 0);
}

// --- another screen ---

TEST_F(GridRepaint, AnotherScaleIsAsIfMadeForIt) {
    for (const int dpi : {110, 134, 144, 192, 96}) {
        SCOPED_TRACE(dpi);
        FlexGrid made{Scale(dpi)};
        for (FlexGrid* g : {&grid, &made}) {
            g->SetRows(100);
            g->SetCols(10);
            g->SetColWidth(3, 1234);
            g->SetRowHeight(4, 777);
            g->SetFrame({900, 600, 2, 17, 17});
        }
        display.Clear();
        const Scale before = grid.PixelScale();
        grid.SetScale(Scale(dpi));
        EXPECT_EQ(display.invalid.empty(), before.dpi() == dpi);
        EXPECT_EQ(grid.PixelScale().dpi(), dpi);
        EXPECT_EQ(grid.ColWidth(3), 1234);
        for (const std::int32_t line : {0, 1, 3, 4, 5, 9}) {
            EXPECT_EQ(grid.CellRect(line, line), made.CellRect(line, line));
            EXPECT_EQ(grid.RowPos(line), made.RowPos(line));
            EXPECT_EQ(grid.ColPos(line), made.ColPos(line));
        }
        EXPECT_EQ(grid.VerticalBar(), made.VerticalBar());
        EXPECT_EQ(grid.HorizontalBar(), made.HorizontalBar());
    }
}

TEST_F(GridRepaint, TheSameScaleAgainChangesNothing) {
    grid.SetScale(Scale(96));
    EXPECT_TRUE(display.Idle());
}

}  // namespace
}  // namespace demovex
