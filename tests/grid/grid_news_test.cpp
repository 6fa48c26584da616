// What of a grid's changes is told to assistive programs, and in how many words.
#include <gtest/gtest.h>

#include <vector>

#include "grid/grid_news.h"

namespace demovex {
namespace {

using Cells = std::vector<GridNews::Cell>;

Cells Of(const GridNews::Told& told) {
    return {told.cells.begin(), told.cells.begin() + static_cast<std::ptrdiff_t>(told.count)};
}

TEST(GridNews, ASilentGridHasNone) {
    GridNews news;
    EXPECT_TRUE(news.Empty());
    const GridNews::Told told = news.Take();
    EXPECT_FALSE(told.all);
    EXPECT_TRUE(Of(told).empty());
    EXPECT_FALSE(told.current);
    EXPECT_FALSE(told.selection);
}

TEST(GridNews, EachChangedCellIsToldOnce) {
    GridNews news;
    news.CellChanged(3, 2);
    news.CellChanged(3, 4);
    news.CellChanged(3, 2);
    EXPECT_FALSE(news.Empty());
    const GridNews::Told told = news.Take();
    EXPECT_EQ(Of(told), (Cells{{3, 2}, {3, 4}}));
    EXPECT_FALSE(told.all);
    EXPECT_FALSE(told.current);
    EXPECT_TRUE(news.Empty());
    EXPECT_TRUE(Of(news.Take()).empty());
}

TEST(GridNews, RowsThatComeOrGoMakeProgramsAskAnewForEverything) {
    GridNews news;
    news.CellChanged(3, 2);
    news.AllChanged();
    news.CellChanged(4, 2);
    const GridNews::Told told = news.Take();
    EXPECT_TRUE(told.all);
    EXPECT_TRUE(Of(told).empty());
    EXPECT_TRUE(told.current) << "its number is another one";
}

TEST(GridNews, VeryManyCellsAreOneChangeOfEverything) {
    GridNews news;
    for (int i = 0; i < static_cast<int>(GridNews::kCells); ++i) news.CellChanged(i, 1);
    GridNews few = news;
    EXPECT_EQ(few.Take().count, GridNews::kCells);
    news.CellChanged(1000, 1);
    const GridNews::Told told = news.Take();
    EXPECT_TRUE(told.all);
    EXPECT_TRUE(Of(told).empty());
}

TEST(GridNews, AnotherCurrentCellIsToldOnceHoweverFarItMoved) {
    GridNews news;
    for (int i = 0; i < 100; ++i) news.CurrentCellChanged();
    news.SelectionChanged();
    const GridNews::Told told = news.Take();
    EXPECT_TRUE(told.current);
    EXPECT_FALSE(told.selection) << "whoever hears of the cell asks for the selection";
    news.SelectionChanged();
    EXPECT_TRUE(news.Take().selection);
}

}  // namespace
}  // namespace demovex
