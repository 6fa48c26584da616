// What the user changed is in view, inside what the scroll bars leave free.
#include <gtest/gtest.h>

#include "tests/support/basket_fixture.h"

namespace demovex {
namespace {

constexpr std::int32_t kLines = 60;

// A narrow grid, so that a horizontal scroll bar takes away a row's height below.
class InView : public ::testing::Test {
  protected:
    InView() {
        basket.grid.SetFrame({400, 300, 2, 17, 17});
        for (int i = 0; i < kLines; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
    }
    bool Shown(std::int32_t row) const {
        const PixelRect cell = basket.grid.CellRect(row, basket.grid.LeftCol());
        return !cell.empty() && cell.bottom <= basket.grid.View().bottom;
    }
    void Scroll(std::int32_t top) {
        basket.grid.SetTopRow(top);
        ASSERT_EQ(basket.grid.TopRow(), top);
    }
    BasketFixture basket;
};

TEST_F(InView, TheScrollBarsAreThere) {
    ASSERT_TRUE(basket.grid.HorizontalBar().visible);
    ASSERT_TRUE(basket.grid.VerticalBar().visible);
}

TEST_F(InView, AFollowedLink) {
    Scroll(1);
    basket.Link(L"1000");
    EXPECT_EQ(basket.grid.Row(), kLines + 1);
    EXPECT_TRUE(Shown(kLines + 1)) << basket.grid.TopRow();
    EXPECT_EQ(basket.grid.LeftCol(), 1);
}

TEST_F(InView, ALinkWithAnUnknownNumberWhoseTotalsCannotBeReckoned) {
    Scroll(1);
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"nope"); }), 13);
    EXPECT_TRUE(Shown(kLines + 1));
}

TEST_F(InView, ALinkThatRaisesAQuantityShowsTheCurrentRow) {
    basket.Click(3, column::kMenge);
    Scroll(20);
    basket.Link(L"4712");  // the last line's article
    EXPECT_EQ(basket.grid.Row(), 3);
    EXPECT_TRUE(Shown(3));
}

TEST_F(InView, AnAppendedRowIsEdited) {
    Scroll(1);
    basket.grid.SetLeftCol(column::kMenge);
    basket.form.Run(Command::mnuEditNeueZeile);
    EXPECT_EQ(basket.grid.Row(), kLines + 1);
    EXPECT_TRUE(Shown(kLines + 1));
    EXPECT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.form.State().EditRow, kLines + 1);
    EXPECT_EQ(basket.form.State().EditCol, column::kBezeichnung);
}

TEST_F(InView, RowsAppendedOneByOne) {
    Scroll(1);
    for (std::int32_t row = kLines + 1; row <= kLines + 30; ++row) {
        basket.form.Run(Command::mnuEditNeueZeile);
        EXPECT_TRUE(Shown(row)) << row;
        EXPECT_TRUE(basket.view.EditorOpen()) << row;
    }
}

TEST_F(InView, AnInsertedRowIsEdited) {
    basket.Select(50, column::kPreisAts, 50, column::kPreisAts);
    Scroll(1);
    basket.form.Run(Command::mnuEditZeileOberhalbEinfügen);
    EXPECT_EQ(basket.grid.Row(), 50);
    EXPECT_TRUE(Shown(50));
    EXPECT_TRUE(basket.view.EditorOpen());
}

TEST_F(InView, WhatMovedUpIntoADeletedRowsPlace) {
    basket.Select(50, column::kMenge, 50, column::kMenge);
    Scroll(1);
    basket.form.Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(basket.grid.Row(), 50);
    EXPECT_TRUE(Shown(50));
    EXPECT_TRUE(basket.view.EditorOpen());
}

TEST_F(InView, TheEndOfAMovedBlockThatMovesAhead) {
    // a block higher than the view, made from either end
    for (const auto& [anchor, other] : {std::pair{20, 50}, std::pair{50, 20}}) {
        basket.Select(anchor, column::kArtNr, other, column::kGesamtEuro);
        Scroll(30);
        basket.form.Run(Command::mnuEditZeilenNachOben);
        EXPECT_TRUE(Shown(19)) << anchor;
        EXPECT_FALSE(Shown(49)) << anchor;
        basket.form.Run(Command::mnuEditZeilenNachUnten);
        EXPECT_TRUE(Shown(50)) << anchor;
        EXPECT_FALSE(Shown(20)) << anchor;
    }
}

TEST_F(InView, ARowMovedOnAndOnIsEditedAllTheWay) {
    Scroll(1);
    basket.Click(1, column::kMenge);
    for (std::int32_t row = 2; row <= kLines; ++row) {
        basket.form.Run(Command::mnuEditZeilenNachUnten);
        ASSERT_EQ(basket.grid.Row(), row);
        EXPECT_TRUE(Shown(row)) << row;
        EXPECT_TRUE(basket.view.EditorOpen()) << row;
    }
    for (std::int32_t row = kLines - 1; row >= 1; --row) {
        basket.form.Run(Command::mnuEditZeilenNachOben);
        EXPECT_TRUE(Shown(row)) << row;
        EXPECT_TRUE(basket.view.EditorOpen()) << row;
    }
}

// However many pixels of a last row are left: a row that has come into view lies so far above the
// edge that the editor opens on it.
TEST_F(InView, EveryRowThatComesIntoViewIsEditedAtEveryHeight) {
    for (int height = 120; height < 142; ++height) {
        SCOPED_TRACE(height);
        BasketFixture low;
        low.grid.SetFrame({800, height, 2, 17, 17});  // no horizontal bar
        for (std::int32_t row = 1; row <= 20; ++row) {
            low.form.Run(Command::mnuEditNeueZeile);
            EXPECT_TRUE(low.view.EditorOpen()) << "appended " << row;
        }
        low.grid.SetTopRow(1);
        low.Click(1, column::kBezeichnung);
        for (std::int32_t row = 2; row <= 20; ++row) {
            low.Press(FakeBasketView::kDown);
            ASSERT_EQ(low.grid.Row(), row);
            EXPECT_TRUE(low.view.EditorOpen()) << "arrow to " << row;
        }
    }
}

TEST_F(InView, AnArrowIntoARowThatEndsAtTheLowerEdgeEditsIt) {
    Scroll(1);
    basket.Click(1, column::kMenge);
    for (std::int32_t row = 2; row <= kLines; ++row) {
        basket.Press(FakeBasketView::kDown);
        ASSERT_EQ(basket.grid.Row(), row);
        EXPECT_TRUE(Shown(row)) << row;
        EXPECT_TRUE(basket.view.EditorOpen()) << row;
    }
}

TEST_F(InView, ARowInViewStaysWhereItIs) {
    Scroll(10);
    basket.Click(12, column::kMenge);
    basket.form.Run(Command::mnuEditZeilenNachUnten);
    basket.form.Run(Command::mnuEditZeileOberhalbEinfügen);
    basket.form.Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(basket.grid.TopRow(), 10);
}

TEST_F(InView, MovesByCodeAloneDoNotScroll) {
    Scroll(1);
    basket.grid.SetRow(50);
    EXPECT_EQ(basket.grid.TopRow(), 1);
}

}  // namespace
}  // namespace demovex
