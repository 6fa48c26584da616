#include <gtest/gtest.h>

#include <functional>

#include "tests/support/cell_editor_fixture.h"

namespace demovex {
namespace {

using View = FakeBasketView;

TEST_F(CellEditorTest, OpensOnNumberAndDescriptionOfAFreshRowAndNowhereElseInIt) {
    EXPECT_TRUE(OpensAt(2, column::kArtNr));
    EXPECT_TRUE(OpensAt(2, column::kBezeichnung));
    for (std::int32_t col = column::kMenge; col <= column::kGesamtEuro; ++col) {
        EXPECT_FALSE(OpensAt(2, col)) << col;
        EXPECT_FALSE(basket.view.EditorOpen()) << col;
    }
}

TEST_F(CellEditorTest, OpensOnTheQuantityOfAnArticleRowAlone) {
    EXPECT_TRUE(OpensAt(1, column::kMenge));
    for (const std::int32_t col : {1, 2, 4, 5, 6, 7, 8, 9}) {
        EXPECT_FALSE(OpensAt(1, col)) << col;
        EXPECT_FALSE(basket.view.EditorOpen()) << col;
    }
}

TEST_F(CellEditorTest, NeverOpensOnHeaderTotalsOrLineNumbers) {
    for (std::int32_t col = 0; col < 10; ++col) {
        basket.grid.Select(0, col, 0, col);
        EXPECT_FALSE(basket.view.EditorOpen()) << col;
        basket.grid.Select(3, col, 3, col);
        EXPECT_FALSE(basket.view.EditorOpen()) << col;
    }
    basket.grid.Select(2, 0, 2, 0);
    EXPECT_FALSE(basket.view.EditorOpen());
}

TEST_F(CellEditorTest, NeverOpensWhileSeveralCellsAreSelected) {
    basket.Select(2, column::kArtNr, 2, column::kBezeichnung);
    EXPECT_FALSE(basket.view.EditorOpen());
    basket.Select(1, column::kMenge, 2, column::kMenge);
    EXPECT_FALSE(basket.view.EditorOpen());
}

TEST_F(CellEditorTest, LiesExactlyOverItsCell) {
    basket.view.grid_rect = {0, 360, 9600, 6000};
    basket.Click(1, column::kMenge);
    const TwipsRect cell{basket.grid.CellLeft(), 360 + basket.grid.CellTop(),
                         basket.grid.CellWidth(), basket.grid.CellHeight()};
    EXPECT_EQ(basket.view.background_rect, cell);
    EXPECT_EQ(basket.view.text_rect, (TwipsRect{45, 15, cell.width - 45, cell.height - 15}));
    EXPECT_EQ(basket.grid.FocusRect(), FocusRectStyle::kNone);
    EXPECT_FALSE(basket.view.OffersList());
}

TEST_F(CellEditorTest, ShowsTheCellsTextWhollySelectedAndTakesTheFocusOnTheTimer) {
    basket.grid.Select(1, column::kMenge, 1, column::kMenge);
    EXPECT_EQ(basket.view.text, L"3");
    EXPECT_EQ(basket.view.sel_start, 0);
    EXPECT_EQ(basket.view.sel_length, 1);
    EXPECT_TRUE(basket.view.text_visible);
    EXPECT_TRUE(basket.view.timer_enabled);
    EXPECT_NE(basket.view.focus, View::FocusPlace::kText);
    basket.view.Tick();
    EXPECT_EQ(basket.view.focus, View::FocusPlace::kText);
    EXPECT_FALSE(basket.view.timer_enabled);
}

TEST_F(CellEditorTest, StaysClosedOnACellCutOffByTheRightEdge) {
    // The right edge of the quantity column, seen from the grid's edge.
    const Twips right = basket.grid.ColPos(column::kMenge + 1);
    const auto width = [&](Twips twips) { basket.grid.SetFrame({twips / 15, 400, 2, 0}); };
    width(right + 90);  // exactly at the margin is cut off
    basket.grid.Select(1, column::kMenge, 1, column::kMenge);
    EXPECT_FALSE(basket.view.EditorOpen()) << basket.AsText();
    width(right + 105);
    basket.form.RowColChange();
    EXPECT_TRUE(basket.view.EditorOpen());
}

TEST_F(CellEditorTest, ACellThatEndsAtTheMarginAboveTheBottomEdgeIsEdited) {
    const Twips bottom = basket.grid.RowPos(2);
    const auto height = [&](Twips twips) { basket.grid.SetFrame({640, twips / 15, 2, 0}); };
    height(bottom + 75);
    basket.grid.Select(1, column::kMenge, 1, column::kMenge);
    EXPECT_FALSE(basket.view.EditorOpen()) << basket.AsText();
    height(bottom + 90);
    basket.form.RowColChange();
    EXPECT_TRUE(basket.view.EditorOpen());
}

TEST_F(CellEditorTest, StaysClosedOnACellCutOffByTheBottomEdgeUntilScrolledIntoView) {
    for (int i = 0; i < 60; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
    basket.grid.SetTopRow(1);
    std::int32_t row = 2;
    while (basket.grid.RowPos(row + 1) <= basket.grid.Height() - 90) ++row;
    basket.grid.Select(row, column::kMenge, row, column::kMenge);
    EXPECT_FALSE(basket.view.EditorOpen());
    basket.grid.SetTopRow(basket.grid.TopRow() + 2);
    EXPECT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.form.State().EditRow, row);
}

TEST_F(CellEditorTest, ScrollingTheCellAwayCommitsAndClosesAndBackOpensAgain) {
    for (int i = 0; i < 60; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
    basket.grid.SetTopRow(1);
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"12");
    basket.grid.SetTopRow(5);
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"12");
    basket.grid.SetTopRow(1);
    EXPECT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.view.text, L"12");
}

TEST_F(CellEditorTest, TheStatusTextNamesTheCataloguePositionOfASingleRow) {
    basket.Click(1, column::kMenge);
    EXPECT_EQ(basket.view.status, L"Parfum");
    basket.Click(2, column::kArtNr);
    EXPECT_EQ(basket.view.status, L"");
    basket.Select(1, column::kMenge, 2, column::kMenge);
    EXPECT_EQ(basket.view.status, L"");
}

TEST_F(CellEditorTest, StaysIdleUntilTheSetUpHasFinished) {
    BasketFixture bare(FakeLocale::kAustria, false);
    bare.form.RowColChange();
    EXPECT_FALSE(bare.view.EditorOpen());
    EXPECT_TRUE(bare.form.State().InitPending);
}

// --- committing

TEST_F(CellEditorTest, AKnownNumberPricesTheRowAndOpensItsQuantity) {
    basket.Click(2, column::kArtNr);
    basket.view.Type(L"4712");
    basket.Press(View::kReturn);
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"Duftwasser");
    EXPECT_EQ(basket.Cell(2, column::kMenge), L"1");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"400,00");
    EXPECT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.form.State().EditCol, column::kMenge);
    EXPECT_EQ(basket.grid.Col(), column::kMenge);
    EXPECT_FALSE(OpensAt(2, column::kArtNr));
    EXPECT_FALSE(OpensAt(2, column::kBezeichnung));
    EXPECT_TRUE(OpensAt(2, column::kMenge));
    EXPECT_TRUE(basket.messages.shown.empty());
}

TEST_F(CellEditorTest, AnUnknownNumberIsRefusedWithAMessageAndTheCellIsAsBefore) {
    basket.Click(2, column::kArtNr);
    basket.view.Type(L"nope");
    basket.Press(View::kReturn);
    ASSERT_EQ(basket.messages.shown.size(), 1u);
    EXPECT_EQ(basket.messages.shown[0].text, L"'nope' ist keine gültige Artikelnummer");
    EXPECT_EQ(basket.messages.shown[0].buttons, MessageButtons::kOk);
    EXPECT_EQ(basket.Cell(2, column::kArtNr), L"");
    EXPECT_EQ(basket.Cell(2, column::kMenge), L"");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"300,00");
    EXPECT_TRUE(basket.view.EditorOpen());  // Return opens the same cell again
    EXPECT_EQ(basket.view.text, L"");
}

TEST_F(CellEditorTest, ANumberWithBlanksAroundItIsFoundAndKeptAsTyped) {
    basket.Click(2, column::kArtNr);
    basket.view.Paste(L"  4712 ");
    basket.Press(View::kReturn);
    EXPECT_EQ(basket.Cell(2, column::kArtNr), L"  4712 ");
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"Duftwasser");
}

TEST_F(CellEditorTest, ANumberOfBlanksOnlyIsRefused) {
    basket.Click(2, column::kArtNr);
    basket.view.Type(L"   ");
    basket.Press(View::kReturn);
    ASSERT_EQ(basket.messages.shown.size(), 1u);
    EXPECT_EQ(basket.messages.shown[0].text, L"'   ' ist keine gültige Artikelnummer");
    EXPECT_EQ(basket.Cell(2, column::kArtNr), L"");
}

TEST_F(CellEditorTest, ANumberWithQuotesIsRefusedLetterForLetter) {
    basket.Click(2, column::kArtNr);
    basket.view.Paste(L"'47\"11'");
    basket.Press(View::kReturn);
    ASSERT_EQ(basket.messages.shown.size(), 1u);
    EXPECT_EQ(basket.messages.shown[0].text, L"''47\"11'' ist keine gültige Artikelnummer");
    EXPECT_EQ(basket.Cell(2, column::kArtNr), L"");
}

TEST_F(CellEditorTest, AnEmptyNumberIsNoNumberAndAsksNothing) {
    basket.Click(2, column::kArtNr);
    basket.Press(View::kReturn);
    EXPECT_TRUE(basket.messages.shown.empty());
    EXPECT_TRUE(basket.form.Modified());
}

TEST_F(CellEditorTest, AnArticleWithoutAPriceRaisesAndLeavesTheEditorUsable) {
    basket.Click(2, column::kArtNr);
    basket.view.Type(L"9999");
    EXPECT_EQ(RaisedBy([&] { basket.Press(View::kReturn); }), 13);
    EXPECT_FALSE(basket.form.State().SuppressEditor);
    EXPECT_EQ(basket.grid.FocusRect(), FocusRectStyle::kLight);
    for (std::int32_t col = column::kArtNr; col < column::kCount; ++col) {
        EXPECT_EQ(basket.Cell(2, col), L"") << col;
    }
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"300,00");
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"4712"); }), 0);
}

TEST_F(CellEditorTest, AnArticleMasterThatCannotBeReadPutsTheOldNumberBack) {
    basket.Click(2, column::kBezeichnung);
    basket.TypeOver(L"Notiz");
    basket.Click(2, column::kArtNr);
    basket.view.Type(L"4712");
    std::string records;
    records.swap(basket.files.At(BasketFixture::ArticlePath()).bytes);
    EXPECT_EQ(RaisedBy([&] { basket.Press(View::kReturn); }), kOwnError);
    records.swap(basket.files.At(BasketFixture::ArticlePath()).bytes);
    EXPECT_EQ(basket.Cell(2, column::kArtNr), L"");
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"Notiz");
    EXPECT_EQ(basket.Cell(2, column::kMenge), L"");
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_FALSE(basket.form.State().SuppressEditor);
    EXPECT_TRUE(basket.messages.shown.empty());
    EXPECT_TRUE(basket.Link(L"4712"));
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"400,00");
}

TEST_F(CellEditorTest, ClickingAnotherLineRecalculatesTheLineThatWasEdited) {
    basket.Link(L"4712");  // row 3
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"5");
    basket.Click(3, column::kMenge);
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), L"500,00");
    EXPECT_EQ(basket.Cell(1, column::kGesamtEuro), L"36,35");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"600,00");
    EXPECT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.form.State().EditRow, 3);
}

TEST_F(CellEditorTest, ClickingAwayFromANewNumberPricesItsRowNotTheOneClicked) {
    basket.Link(L"4712", 2);  // row 3
    basket.Click(2, column::kArtNr);
    basket.view.Type(L"1000");
    basket.Click(3, column::kMenge);
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"Bleistift HB");
    EXPECT_EQ(basket.Cell(2, column::kMenge), L"1");
    EXPECT_EQ(basket.Cell(3, column::kMenge), L"2");
    EXPECT_EQ(basket.form.State().EditRow, 3);
    EXPECT_EQ(basket.view.text, L"2");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"503,50");
}

TEST_F(CellEditorTest, LeavingADescriptionWritesItBack) {
    basket.Click(2, column::kBezeichnung);
    basket.view.Type(L"bitte rasch");
    basket.Click(1, column::kMenge);
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"bitte rasch");
}

TEST_F(CellEditorTest, LeavingACellMarksTheBasketModified) {
    basket.files.Put(L"C:\\Basket\\frei.bsk", "4711\t\t2\r\n\tfrei\r\n");
    basket.form.Load(L"C:\\Basket\\frei.bsk");
    basket.Click(2, column::kBezeichnung);
    ASSERT_FALSE(basket.form.Modified());
    basket.TypeOver(L"neu");
    basket.Click(1, column::kPreisAts);
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"neu");
    EXPECT_TRUE(basket.form.Modified());
}

TEST_F(CellEditorTest, EscapeKeepsWhatWasTyped) {
    basket.Click(2, column::kBezeichnung);
    basket.view.Type(L"bleibt");
    EXPECT_TRUE(basket.view.Press(View::kEscape));  // nothing of ours
    EXPECT_EQ(basket.view.text, L"bleibt");
    basket.Click(1, column::kMenge);
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"bleibt");
}

TEST_F(CellEditorTest, CommittingWithoutAnOpenEditorDoesNothing) {
    basket.Click(1, column::kPreisAts);
    ASSERT_FALSE(basket.view.EditorOpen());
    basket.view.text = L"stray";
    basket.form.CommitCellEdit();
    EXPECT_EQ(basket.Cell(1, column::kPreisAts), L"100,00");
}

TEST_F(CellEditorTest, AfterTheCommitTheGridShowsItsFocusAgain) {
    basket.grid.Select(1, column::kMenge, 1, column::kMenge);
    ASSERT_TRUE(basket.view.timer_enabled);  // closed before the focus has reached it
    basket.form.CommitCellEdit();
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_FALSE(basket.view.timer_enabled);
    EXPECT_EQ(basket.grid.FocusRect(), FocusRectStyle::kLight);
}

// A host that goes on while the message about an unknown number is shown.
class BusyMessageBox final : public IMessageBox {
  public:
    std::function<void()> meanwhile;
    MessageAnswer Show(std::wstring_view, std::wstring_view, MessageButtons, MessageIcon) override {
        if (meanwhile) meanwhile();
        return MessageAnswer::kOk;
    }
};

TEST(CellEditorReentrancy, ABasketReplacedDuringTheMessageIsLeftAlone) {
    BasketFixture basket;
    BusyMessageBox messages;
    Services services = With(basket.services, messages);
    FlexGrid grid;
    grid.SetFrame({640, 400, 2, 17});
    FakeBasketView view;
    TestLibForm form(grid, view, services);
    grid.SetEvents(&form);
    view.form = &form;
    form.Initialize();
    bool has_info = false;
    form.AddArtikel(L"", L"", L"", has_info, 1, true);
    basket.files.Put(L"C:\\Basket\\b.bsk", "DemoVexClient.Client\r\n4712\t\t7\r\n");
    grid.SetCol(column::kArtNr);
    view.Type(L"nope");
    messages.meanwhile = [&] { form.Load(L"C:\\Basket\\b.bsk"); };
    view.Press(View::kReturn);
    EXPECT_EQ(grid.Rows(), 3) << DumpGrid(grid);
    EXPECT_EQ(grid.TextMatrix(1, column::kArtNr), L"4712");
    EXPECT_EQ(grid.TextMatrix(1, column::kMenge), L"7");
    EXPECT_EQ(grid.TextMatrix(2, column::kGesamtAts), L"700,00");
}

}  // namespace
}  // namespace demovex
