#include <gtest/gtest.h>

#include "grid/grid_painter.h"
#include "tests/support/recording_surface.h"

namespace demovex {
namespace {

// A little basket at 96 dpi: view of 480 x 200 pixels, rows of 16, columns as the basket has them.
class GridPainter : public testing::Test {
  protected:
    GridPainter() {
        grid.SetFrame({484, 204, 2, 17, 17});
        grid.SetRows(5);
        grid.SetCols(5);
        const Twips widths[] = {420, 1200, 2400, 0, 1200};  // 28, 80, 160, 0, 80 pixels
        for (int col = 0; col < 5; ++col) {
            grid.SetColWidth(col, widths[col]);
            grid.SetCellBold(0, col, true);
        }
        grid.SetTextMatrix(0, 1, L"ArtNr");
        grid.SetTextMatrix(0, 3, L"versteckt");
        grid.SetTextMatrix(0, 4, L"Summe");
        for (int row = 1; row < 4; ++row) {
            grid.SetTextMatrix(row, 0, std::to_wstring(row));
            grid.SetCellBold(row, 0, true);
            grid.SetTextMatrix(row, 1, L"4711-" + std::to_wstring(row));
            grid.SetTextMatrix(row, 2, L"Heft");
            grid.SetTextMatrix(row, 3, L"geheim");
            grid.SetTextMatrix(row, 4, std::to_wstring(row) + L"2,50");
        }
        grid.SetTextMatrix(4, 2, L"Gesamt");
        grid.SetCellBold(4, 2, true);
    }
    RecordingSurface Paint() { return Paint(grid.View()); }
    RecordingSurface Paint(const PixelRect& invalid) {
        RecordingSurface surface(grid.View().right, grid.View().bottom);
        PaintGrid(grid, surface, invalid);
        return surface;
    }
    FlexGrid grid;
};

TEST_F(GridPainter, EveryPixelOfTheViewIsDrawn) {
    const RecordingSurface surface = Paint();
    EXPECT_EQ(surface.Touched(), grid.View().right * grid.View().bottom);
}

TEST_F(GridPainter, TextsBeginWhereTheEditorsTextWillStand) {
    const RecordingSurface surface = Paint();
    const auto* text = surface.Find(L"4711-2");
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->x, 28 + 3) << "45 twips from the cell's left edge";
    EXPECT_EQ(text->y, 2 * 16 + 1) << "15 twips from its upper edge";
    EXPECT_EQ(text->box, (PixelRect{28, 32, 28 + 80 - 1, 48 - 1})) << "clipped before the lines";
    EXPECT_FALSE(text->style.right);
    EXPECT_FALSE(text->style.bold);
}

TEST_F(GridPainter, NumbersEndOnTheRightWithTheSameMargin) {
    const RecordingSurface surface = Paint();
    const auto* text = surface.Find(L"22,50");
    ASSERT_NE(text, nullptr);
    EXPECT_TRUE(text->style.right);
    EXPECT_EQ(text->x, 28 + 80 + 160 + 80 - 1 - 3);
}

TEST_F(GridPainter, BoldCellsAreBold) {
    const RecordingSurface surface = Paint();
    for (const wchar_t* bold : {L"ArtNr", L"1", L"Gesamt"}) {
        ASSERT_NE(surface.Find(bold), nullptr);
        EXPECT_TRUE(surface.Find(bold)->style.bold);
    }
    EXPECT_FALSE(surface.Find(L"Heft")->style.bold);
}

TEST_F(GridPainter, HiddenColumnsAreNotDrawn) {
    const RecordingSurface surface = Paint();
    EXPECT_EQ(surface.Find(L"versteckt"), nullptr);
    EXPECT_EQ(surface.Find(L"geheim"), nullptr);
}

TEST_F(GridPainter, FixedCellsAreRaised) {
    const RecordingSurface s = Paint();
    // the header cell of column 1: 28..107, 0..15
    EXPECT_EQ(s.At(28, 5), s.Is(GridColor::kEdgeLight));
    EXPECT_EQ(s.At(50, 0), s.Is(GridColor::kEdgeLight));
    EXPECT_EQ(s.At(107, 5), s.Is(GridColor::kEdgeShadow));
    EXPECT_EQ(s.At(50, 15), s.Is(GridColor::kEdgeShadow));
    EXPECT_EQ(s.At(100, 8), s.Is(GridColor::kFixed));
    // the line number of row 2
    EXPECT_EQ(s.At(0, 40), s.Is(GridColor::kEdgeLight));
    EXPECT_EQ(s.At(27, 40), s.Is(GridColor::kEdgeShadow));
    EXPECT_EQ(s.At(10, 47), s.Is(GridColor::kEdgeShadow));
    EXPECT_EQ(s.At(10, 40), s.Is(GridColor::kFixed));
}

TEST_F(GridPainter, ThinLinesEndTheCellsAndTheRestIsBackground) {
    const RecordingSurface s = Paint();
    EXPECT_EQ(s.At(107, 40), s.Is(GridColor::kGridLine));
    EXPECT_EQ(s.At(50, 47), s.Is(GridColor::kGridLine));
    EXPECT_EQ(s.At(50, 40), s.Is(GridColor::kWindow));
    EXPECT_EQ(s.At(347, 40), s.Is(GridColor::kGridLine));
    EXPECT_EQ(s.At(348, 40), s.Is(GridColor::kBackground));
    EXPECT_EQ(s.At(50, 80), s.Is(GridColor::kBackground));
}

TEST_F(GridPainter, TheSelectionIsHighlightedExceptTheCurrentCell) {
    grid.Select(2, 1, 3, 2);
    const RecordingSurface s = Paint();
    EXPECT_EQ(s.At(50, 40), s.Is(GridColor::kWindow)) << "current";
    EXPECT_EQ(s.At(150, 40), s.Is(GridColor::kHighlight));
    EXPECT_EQ(s.At(50, 56), s.Is(GridColor::kHighlight));
    EXPECT_EQ(s.At(50, 24), s.Is(GridColor::kWindow)) << "above the selection";
    EXPECT_EQ(s.At(300, 40), s.Is(GridColor::kWindow)) << "beside the selection";
    EXPECT_EQ(s.At(10, 40), s.Is(GridColor::kFixed)) << "line numbers are never selected";
    EXPECT_EQ(s.Find(L"4711-3")->style.text, GridColor::kHighlightText);
    EXPECT_EQ(s.Find(L"4711-2")->style.text, GridColor::kWindowText);
}

TEST_F(GridPainter, AnUpwardSelectionLooksTheSame) {
    grid.Select(3, 2, 2, 1);
    const RecordingSurface s = Paint();
    EXPECT_EQ(s.At(150, 56), s.Is(GridColor::kWindow)) << "current";
    EXPECT_EQ(s.At(50, 40), s.Is(GridColor::kHighlight));
}

TEST_F(GridPainter, TheFocusRectangleMarksTheCurrentCellWhileTheGridHasTheFocus) {
    EXPECT_TRUE(Paint().focus_rects.empty());
    grid.SetFocused(true);
    const RecordingSurface s = Paint();
    ASSERT_EQ(s.focus_rects.size(), 1U);
    EXPECT_EQ(s.focus_rects[0], (PixelRect{28, 16, 107, 31}));
    grid.SetFocusRect(FocusRectStyle::kNone);
    EXPECT_TRUE(Paint().focus_rects.empty());
    grid.SetFocusRect(FocusRectStyle::kLight);
    grid.SetRow(0);
    EXPECT_TRUE(Paint().focus_rects.empty()) << "not in the header";
}

TEST_F(GridPainter, OnlyTheInvalidRectangleIsDrawn) {
    const PixelRect invalid{40, 20, 120, 48};
    const RecordingSurface s = Paint(invalid);
    EXPECT_EQ(s.Touched(), invalid.width() * invalid.height());
    EXPECT_EQ(s.TouchedIn(invalid), s.Touched());
    EXPECT_EQ(s.Find(L"4711-3"), nullptr);
    ASSERT_NE(s.Find(L"4711-2"), nullptr);
    EXPECT_EQ(s.Find(L"4711-2")->x, 31) << "the text stands where it stands, only its box is cut";
    EXPECT_EQ(s.Find(L"4711-2")->box, (PixelRect{40, 32, 107, 47}));
}

TEST_F(GridPainter, AnInvalidRectangleOutsideTheViewDrawsNothing) {
    EXPECT_EQ(Paint({500, 0, 600, 50}).Touched(), 0);
    EXPECT_EQ(Paint({10, 10, 10, 50}).Touched(), 0);
}

TEST_F(GridPainter, PartsPaintedOneByOneGiveTheSamePicture) {
    grid.Select(2, 1, 3, 2);
    const RecordingSurface whole = Paint();
    for (int y = 0; y < 200; y += 13) {
        for (int x = 0; x < 480; x += 37) {
            const PixelRect part{x, y, std::min(x + 37, 480), std::min(y + 13, 200)};
            const RecordingSurface s = Paint(part);
            for (int py = part.top; py < part.bottom; ++py) {
                for (int px = part.left; px < part.right; ++px) {
                    ASSERT_EQ(s.At(px, py), whole.At(px, py)) << px << "," << py;
                }
            }
        }
    }
}

TEST_F(GridPainter, AScrolledGridKeepsHeaderAndLineNumbersInView) {
    grid.SetRows(1000);
    grid.SetTextMatrix(500, 0, L"500");
    grid.SetTextMatrix(500, 1, L"tief");
    grid.SetTopRow(500);
    const RecordingSurface s = Paint();
    ASSERT_NE(s.Find(L"ArtNr"), nullptr);
    EXPECT_EQ(s.Find(L"ArtNr")->y, 1);
    ASSERT_NE(s.Find(L"tief"), nullptr);
    EXPECT_EQ(s.Find(L"tief")->y, 17);
    ASSERT_NE(s.Find(L"500"), nullptr);
    EXPECT_EQ(s.Find(L"4711-1"), nullptr);
}

TEST_F(GridPainter, TheWorkDependsOnWhatIsVisibleNotOnTheNumberOfRows) {
    grid.SetRows(20);
    const RecordingSurface few = Paint();
    grid.SetRows(10'000'000);
    const RecordingSurface many = Paint();
    EXPECT_EQ(many.texts.size(), few.texts.size());
    EXPECT_EQ(many.fills, few.fills);
}

TEST_F(GridPainter, ALongTextIsHandedOverOnlyAsFarAsItCanBeSeen) {
    grid.SetTextMatrix(1, 2, std::wstring(100'000, L'x'));
    const RecordingSurface s = Paint();
    for (const auto& text : s.texts) EXPECT_LE(text.text.size(), 200U);
}

TEST_F(GridPainter, OwnRowHeightsAreDrawn) {
    grid.SetRowHeight(1, 480);
    grid.SetRowHeight(2, 0);
    const RecordingSurface s = Paint();
    EXPECT_EQ(s.Find(L"4711-2"), nullptr);
    EXPECT_EQ(s.Find(L"4711-3")->y, 16 + 32 + 1);
    EXPECT_EQ(s.Touched(), grid.View().right * grid.View().bottom);
}

TEST(GridPainterDpi, MarginsAreFortyFiveAndFifteenTwipsAtEveryDpi) {
    for (const int dpi : {96, 120, 144, 192}) {
        const Scale scale(dpi);
        FlexGrid grid(scale);
        grid.SetTextMatrix(1, 1, L"x");
        grid.SetFrame({800, 400, 2, 17, 17});
        RecordingSurface s(grid.View().right, grid.View().bottom);
        PaintGrid(grid, s, grid.View());
        const PixelRect cell = grid.CellRect(1, 1);
        ASSERT_NE(s.Find(L"x"), nullptr);
        EXPECT_EQ(s.Find(L"x")->x, cell.left + scale.ToPixels(45)) << dpi;
        EXPECT_EQ(s.Find(L"x")->y, cell.top + scale.ToPixels(15)) << dpi;
    }
}

// What is asked and drawn of a text depends on the room that it has, not on its length.
TEST(GridPainterCost, ATextOfMillionsCostsWhatIsInView) {
    std::size_t longest_asked = 0;
    FlexGrid grid(Scale(96), [&](std::wstring_view text) {
        longest_asked = std::max(longest_asked, text.size());
        return LooksLikeNumber(text);
    });
    grid.SetFrame({484, 204, 2, 17, 17});
    const std::wstring number(FlexGrid::kLongestNumber, L'7');
    for (const std::wstring& text : {std::wstring(5'000'000, L'7'),
                                     L"x" + std::wstring(5'000'000, L'7'), number, number + L"7"}) {
        grid.SetTextMatrix(1, 1, text);
        RecordingSurface surface(grid.View().right, grid.View().bottom);
        PaintGrid(grid, surface, grid.View());
        const bool right = text == number;
        EXPECT_EQ(grid.StandsRight(1, 1), right);
        EXPECT_NE(surface.Find(std::wstring_view(text).substr(0, 65)), nullptr);
        EXPECT_LE(longest_asked, FlexGrid::kLongestNumber);
    }
}

}  // namespace
}  // namespace demovex
