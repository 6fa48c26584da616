#include <gtest/gtest.h>

#include "tests/support/basket_fixture.h"

namespace demovex {
namespace {

using View = FakeBasketView;

// A basket with one priced line, one free line, and the totals row: rows 1, 2 and 3.
class CellEditorTest : public ::testing::Test {
  protected:
    CellEditorTest() {
        basket.Link(L"4711", 3, L"Parfum", L"vex://parfum");
        basket.Link(L"");
    }
    bool OpensAt(std::int32_t row, std::int32_t col) {
        basket.Click(row, col);
        return basket.view.EditorOpen() && basket.form.State().EditRow == row &&
               basket.form.State().EditCol == col;
    }
    BasketFixture basket;
};

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
    EXPECT_FALSE(basket.view.ComboButtonVisible());
}

TEST_F(CellEditorTest, ShowsTheCellsTextWhollySelectedAndTakesTheFocusOnTheTimer) {
    basket.grid.Select(1, column::kMenge, 1, column::kMenge);
    EXPECT_EQ(basket.view.text, L"3");
    EXPECT_EQ(basket.view.sel_start, 0);
    EXPECT_EQ(basket.view.sel_length, 1);
    EXPECT_TRUE(basket.view.timer_enabled);
    EXPECT_NE(basket.view.focus, View::Focus::kText);
    basket.view.Tick();
    EXPECT_EQ(basket.view.focus, View::Focus::kText);
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

TEST_F(CellEditorTest, StaysClosedOnACellCutOffByTheBottomEdgeUntilScrolledIntoView) {
    for (int i = 0; i < 60; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
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
    EXPECT_EQ(basket.Cell(2, column::kArtNr), L"9999");
    basket.Select(2, column::kArtNr, 2, column::kArtNr);
    basket.form.Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(basket.Lines(), 1);
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"300,00");
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
    basket.Click(1, column::kMenge);
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
    Services services{
        basket.text,  basket.files, basket.settings, basket.clipboard,    messages,
        basket.sound, basket.shell, basket.printer,  basket.file_dialogs, L"C:\\Basket"};
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

// --- the quantity filter

class QuantityFilter : public CellEditorTest {
  protected:
    QuantityFilter() {
        basket.Click(1, column::kMenge);
        basket.view.Type(L"1");
    }
};

TEST_F(QuantityFilter, ALetterIsUndoneAndTypingGoesOnBehindTheDigits) {
    basket.view.Type(L"a");
    EXPECT_EQ(basket.view.text, L"1");
    basket.view.Type(L"2");
    EXPECT_EQ(basket.view.text, L"12");
}

TEST_F(QuantityFilter, DeletingTheLastDigitRestoresIt) {
    basket.view.Press(View::kBack);
    EXPECT_EQ(basket.view.text, L"1");
    basket.view.Press(View::kHome);
    basket.view.Press(View::kDelete);
    EXPECT_EQ(basket.view.text, L"1");
}

TEST_F(QuantityFilter, WhatReadsAsANumberInTheUsersLocaleIsTaken) {
    for (const wchar_t* pasted : {L"1\u00A0234,5", L"(5)", L" 7 ", L"-3", L"1e3", L"12-"}) {
        basket.TypeOver(L"1");
        basket.view.Select(0, 1);
        basket.view.Paste(pasted);
        EXPECT_EQ(basket.view.text, pasted);
    }
}

TEST_F(QuantityFilter, WhatDoesNotIsUndone) {
    for (const std::wstring& pasted :
         {std::wstring(L"1a"), std::wstring(L"-"), std::wstring(L"1e400"), std::wstring(L"1,2,3"),
          std::wstring(), std::wstring(L"zehn"), std::wstring(L"1\r\n2"),
          std::wstring(10000, L'x')}) {
        basket.view.Select(0, 1);
        basket.view.Paste(pasted);
        EXPECT_EQ(basket.view.text, L"1") << pasted.size();
    }
}

TEST_F(QuantityFilter, TenThousandDigitsAreTooLargeANumber) {
    basket.view.Select(0, 1);
    basket.view.Paste(std::wstring(10000, L'9'));
    EXPECT_EQ(basket.view.text, L"1");
}

TEST_F(QuantityFilter, TheGermanThousandsPointIsReadInGerman) {
    BasketFixture german(FakeLocale::kGermany);
    german.Link(L"4711");
    german.Click(1, column::kMenge);
    german.view.Paste(L"1.234,5");
    EXPECT_EQ(german.view.text, L"1.234,5");
    german.Press(View::kReturn);
    EXPECT_EQ(german.Total(column::kGesamtAts), L"123.450,00");
    EXPECT_EQ(german.Cell(1, column::kMenge), L"1.234,5");
}

TEST_F(QuantityFilter, ANegativeQuantityIsANumber) {
    basket.view.Select(0, 1);
    basket.view.Paste(L"(5)");
    basket.Press(View::kReturn);
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), L"-500,00");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"-500,00");
}

TEST_F(QuantityFilter, AProductBeyondAllNumbersRaisesOverflowAndKeepsTheText) {
    basket.view.Select(0, 1);
    basket.view.Paste(L"1e307");
    EXPECT_EQ(RaisedBy([&] { basket.Press(View::kReturn); }), 6);
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"1e307");
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), L"300,00");
    EXPECT_FALSE(basket.view.EditorOpen());
    basket.Click(2, column::kArtNr);
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"1");
    basket.view.Select(0, 5);
    basket.view.Paste(L"4");
    basket.Press(View::kReturn);
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"400,00");
}

TEST_F(QuantityFilter, OtherColumnsTakeAnyText) {
    basket.Click(2, column::kBezeichnung);
    basket.view.Type(L"1a");
    EXPECT_EQ(basket.view.text, L"1a");
}

TEST_F(CellEditorTest, ADescriptionIsAtMostTwentyFiveCharacters) {
    basket.Click(2, column::kBezeichnung);
    basket.view.Paste(std::wstring(40, L'x'));
    EXPECT_EQ(basket.view.text.size(), 25u);
    basket.view.Type(L"y");
    EXPECT_EQ(basket.view.text, std::wstring(25, L'x'));
    basket.Click(2, column::kArtNr);
    EXPECT_EQ(basket.view.max_length, 0);
    basket.Click(1, column::kMenge);
    EXPECT_EQ(basket.view.max_length, 0);
}

TEST_F(CellEditorTest, ALongerDescriptionFromAFileIsNotCutByPassingOverIt) {
    const std::wstring text(40, L'x');
    basket.files.Put(L"C:\\Basket\\l.bsk",
                     "DemoVexClient.Client\r\n\t" + std::string(40, 'x') + "\r\n");
    basket.form.Load(L"C:\\Basket\\l.bsk");
    basket.Click(1, column::kBezeichnung);
    ASSERT_TRUE(basket.view.EditorOpen());
    basket.Click(1, column::kArtNr);
    EXPECT_EQ(basket.Cell(1, column::kBezeichnung), text);
}

// --- keys

TEST_F(CellEditorTest, LeftAtTheStartOfTheNumberStaysInTheTextBox) {
    basket.Click(2, column::kArtNr);
    basket.view.Select(0, 0);
    EXPECT_TRUE(basket.view.Press(View::kLeft));
    EXPECT_TRUE(basket.view.grid_keys.empty());
}

TEST_F(CellEditorTest, LeftAtTheStartOfADescriptionMovesToTheNumber) {
    basket.Click(2, column::kBezeichnung);
    basket.view.Type(L"x");
    EXPECT_TRUE(basket.view.Press(View::kLeft));  // the caret is behind the x
    basket.Press(View::kLeft);
    EXPECT_EQ(basket.grid.Col(), column::kArtNr);
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"x");
    EXPECT_EQ(basket.form.State().EditCol, column::kArtNr);
}

TEST_F(CellEditorTest, RightMovesOnOnlyFromTheEndOfTheText) {
    basket.Click(2, column::kArtNr);
    basket.view.Type(L"x");
    basket.view.Press(View::kHome);
    EXPECT_TRUE(basket.view.Press(View::kRight));  // from 0 to 1
    basket.messages.answers = {MessageAnswer::kOk};
    basket.Press(View::kRight);
    EXPECT_EQ(basket.grid.Col(), column::kBezeichnung);
    EXPECT_EQ(basket.form.State().EditCol, column::kBezeichnung);
}

TEST_F(CellEditorTest, RightMovesOnFromASelectionThatReachesTheEnd) {
    basket.Click(1, column::kMenge);
    ASSERT_EQ(basket.view.sel_length, 1);
    basket.Press(View::kRight);
    EXPECT_EQ(basket.grid.Col(), column::kPreisAts);
    EXPECT_FALSE(basket.view.EditorOpen());
}

TEST_F(CellEditorTest, UpAndDownCommitAndMove) {
    basket.Click(2, column::kBezeichnung);
    basket.view.Type(L"oben");
    basket.Press(View::kUp);
    EXPECT_EQ(basket.grid.Row(), 1);
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"oben");
    basket.Click(2, column::kArtNr);
    basket.Press(View::kDown);
    EXPECT_EQ(basket.grid.Row(), 3);  // the totals row
    EXPECT_FALSE(basket.view.EditorOpen());
}

TEST_F(CellEditorTest, UpInTheFirstLineStaysInTheTextBox) {
    basket.Click(1, column::kMenge);
    EXPECT_TRUE(basket.view.Press(View::kUp));
    EXPECT_TRUE(basket.view.Press(View::kPageUp));
    EXPECT_TRUE(basket.view.grid_keys.empty());
    EXPECT_TRUE(basket.view.EditorOpen());
}

TEST_F(CellEditorTest, PageKeysMoveByThePage) {
    for (int i = 0; i < 100; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
    basket.grid.SetTopRow(1);
    basket.Click(1, column::kMenge);
    basket.Press(View::kPageDown);
    const std::int32_t row = basket.grid.Row();
    EXPECT_GT(row, 10);
    EXPECT_EQ(basket.form.State().EditRow, row);
    EXPECT_TRUE(basket.view.EditorOpen());
    basket.Press(View::kPageUp);
    EXPECT_EQ(basket.grid.Row(), 1);
}

TEST_F(CellEditorTest, EveryKeyThatMovesCommitsBeforeItIsSent) {
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"9");
    EXPECT_FALSE(basket.view.Press(View::kDown));
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"9");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"900,00");
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_EQ(basket.view.grid_keys, (std::deque<GridKey>{GridKey::kDown}));
}

TEST_F(CellEditorTest, AKeyThatArrivesAfterTheEditorHasClosedDoesNothing) {
    basket.Click(2, column::kBezeichnung);
    basket.form.CommitCellEdit();
    EXPECT_TRUE(basket.view.Press(View::kReturn));
    EXPECT_TRUE(basket.view.Press(View::kDown));
    EXPECT_EQ(basket.Lines(), 2);
    EXPECT_TRUE(basket.view.grid_keys.empty());
}

TEST_F(CellEditorTest, FTwoDropsTheSelection) {
    basket.Click(1, column::kMenge);
    EXPECT_FALSE(basket.view.Press(View::kF2));
    EXPECT_EQ(basket.view.sel_length, 0);
}

TEST_F(CellEditorTest, FFourAndAltDownBelongToTheTextBoxWithoutAList) {
    basket.Click(1, column::kMenge);
    EXPECT_TRUE(basket.view.Press(View::kF4));
    EXPECT_TRUE(basket.view.Press(View::kDown, shift_state::kAlt));
    EXPECT_FALSE(basket.view.list_visible);
}

TEST_F(CellEditorTest, KeysWithOtherShiftStatesBelongToTheTextBox) {
    basket.Click(2, column::kBezeichnung);
    for (const int shift : {1, 2, 3, 4, 6}) {
        EXPECT_TRUE(basket.view.Press(View::kLeft, shift)) << shift;
        EXPECT_TRUE(basket.view.Press(View::kReturn, shift)) << shift;
    }
    EXPECT_TRUE(basket.view.Press(View::kUp, shift_state::kCtrl));
    EXPECT_TRUE(basket.view.EditorOpen());
}

TEST_F(CellEditorTest, ReturnInTheDescriptionInsertsARowBelow) {
    basket.Link(L"4712");  // row 3
    basket.Click(2, column::kBezeichnung);
    basket.view.Type(L"Hinweis");
    basket.Press(View::kReturn);
    ASSERT_EQ(basket.Lines(), 4) << basket.AsText();
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"Hinweis");
    EXPECT_EQ(basket.Cell(3, column::kBezeichnung), L"");
    EXPECT_EQ(basket.Cell(4, column::kArtNr), L"4712");
    EXPECT_EQ(basket.Cell(4, column::kNumber), L"4");
    EXPECT_EQ(basket.grid.Row(), 2);
    EXPECT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.form.State().EditCol, column::kBezeichnung);
}

TEST_F(CellEditorTest, ReturnIsUsedUpAndDoesNotBeep) {
    basket.Click(1, column::kMenge);
    int code = View::kReturn;
    basket.form.IPText_KeyDown(code, 0);
    EXPECT_EQ(code, 0);
    int ascii = 13;
    basket.form.IPText_KeyPress(ascii);
    EXPECT_EQ(ascii, 0);
    int letter = L'x';
    basket.form.IPText_KeyPress(letter);
    EXPECT_EQ(letter, L'x');
}

TEST_F(CellEditorTest, ShiftDownSelectsTheEditedRowAndTheNext) {
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"8");
    EXPECT_FALSE(basket.view.Press(View::kDown, shift_state::kShift));
    EXPECT_EQ(basket.grid.Row(), 1);
    EXPECT_EQ(basket.grid.RowSel(), 2);
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"800,00");
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_FALSE(basket.form.State().SuppressEditor);
}

TEST_F(CellEditorTest, ShiftUpSelectsTheEditedRowAndTheOneAbove) {
    basket.Click(2, column::kArtNr);
    basket.view.Type(L"4712");
    EXPECT_FALSE(basket.view.Press(View::kUp, shift_state::kShift));
    EXPECT_EQ(basket.grid.Row(), 2);
    EXPECT_EQ(basket.grid.RowSel(), 1);
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"Duftwasser");
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_FALSE(basket.form.State().SuppressEditor);
    basket.Click(1, column::kMenge);
    EXPECT_TRUE(basket.view.Press(View::kUp, shift_state::kShift));  // no row above
}

// --- the dormant list

bool QuantityOffersList(std::int32_t, std::int32_t col) {
    return col == column::kMenge;
}

class DropDownList : public CellEditorTest {
  protected:
    DropDownList() {
        basket.form.SetOffersList(QuantityOffersList);
        basket.view.list_entries = {L"1", L"3", L"10"};
        basket.Click(1, column::kMenge);
    }
};

TEST_F(DropDownList, ACellThatOffersAListShowsTheButtonAtItsRightEdge) {
    EXPECT_TRUE(basket.view.ComboButtonVisible());
    EXPECT_FALSE(basket.view.button_pressed);
    const TwipsRect cell = basket.view.background_rect;
    EXPECT_EQ(basket.view.button_rect, (TwipsRect{cell.width - basket.view.button_width, 0,
                                                  basket.view.button_width, cell.height}));
    EXPECT_EQ(basket.view.text_rect.width, cell.width - 45 - basket.view.button_width);
    basket.Click(2, column::kArtNr);
    EXPECT_FALSE(basket.view.ComboButtonVisible());
}

TEST_F(DropDownList, OpensBelowTheCellOnItsEntryWithTheFocus) {
    basket.form.IPComboButton_Click();
    EXPECT_TRUE(basket.view.list_visible);
    EXPECT_EQ(basket.view.list_at,
              (TwipsPoint{basket.grid.CellLeft(),
                          basket.view.grid_rect.top + basket.grid.CellTop() + 225}));
    EXPECT_EQ(basket.view.list_index, 1);  // "3"
    EXPECT_EQ(basket.view.focus, View::Focus::kList);
    EXPECT_TRUE(basket.view.button_pressed);
    EXPECT_TRUE(basket.view.timer_enabled);
}

TEST_F(DropDownList, SelectsNoneWhenNoEntryIsTheCellsText) {
    basket.view.list_entries = {L"30", L"03"};
    basket.form.IPComboButton_Click();
    EXPECT_EQ(basket.view.list_index, -1);
}

TEST_F(DropDownList, OpensAboveWhenThereIsNoRoomBelow) {
    basket.view.list_height = basket.grid.Height() - basket.grid.CellTop() + 15;
    basket.form.IPComboButton_Click();
    EXPECT_EQ(basket.view.list_at.y,
              basket.view.grid_rect.top + basket.grid.CellTop() - basket.view.list_height);
}

TEST_F(DropDownList, FFourAndAltDownDropItAndTheButtonClosesIt) {
    EXPECT_FALSE(basket.view.Press(View::kF4));
    EXPECT_TRUE(basket.view.list_visible);
    basket.form.IPComboButton_Click();
    EXPECT_FALSE(basket.view.list_visible);
    EXPECT_FALSE(basket.view.button_pressed);
    EXPECT_FALSE(basket.view.Press(View::kDown, shift_state::kAlt));
    EXPECT_TRUE(basket.view.list_visible);
}

TEST_F(DropDownList, TheEntryUnderThePointerIsSelected) {
    basket.form.IPComboButton_Click();
    const auto hover = [&](Twips y) {
        basket.form.IPComboList_MouseMove(0, 0, 10, y);
        return basket.view.list_index;
    };
    EXPECT_EQ(hover(0), 0);
    EXPECT_EQ(hover(194), 0);
    EXPECT_EQ(hover(195), 1);
    EXPECT_EQ(hover(5000), 2);
    EXPECT_EQ(hover(-500), 0);
}

TEST_F(DropDownList, ReleasingOverAnEntryTakesItAndAnywhereElseOnlyCloses) {
    basket.form.IPComboButton_Click();
    basket.form.IPComboList_MouseUp(1, 0, 10, 400);
    EXPECT_FALSE(basket.view.list_visible);
    EXPECT_EQ(basket.view.text, L"10");
    EXPECT_EQ(basket.view.sel_length, 2);
    for (const Twips y : {-300, 600}) {
        basket.form.IPComboButton_Click();
        basket.form.IPComboList_MouseUp(1, 0, 10, y);
        EXPECT_FALSE(basket.view.list_visible);
        EXPECT_EQ(basket.view.text, L"10");
    }
}

TEST_F(DropDownList, AnEmptyListTakesNothing) {
    basket.view.list_entries.clear();
    basket.form.IPComboButton_Click();
    basket.form.IPComboList_MouseMove(0, 0, 10, 10);
    basket.form.IPComboList_MouseUp(1, 0, 10, 10);
    EXPECT_EQ(basket.view.text, L"3");
    basket.form.IPComboButton_Click();
    int key = View::kReturn;
    basket.form.IPComboList_KeyDown(key, 0);
    EXPECT_EQ(basket.view.text, L"3");
    EXPECT_FALSE(basket.view.list_visible);
}

TEST_F(DropDownList, ReturnTakesTheSelectedEntry) {
    basket.form.IPComboButton_Click();
    basket.view.list_index = 2;
    int key = View::kReturn;
    basket.form.IPComboList_KeyDown(key, 0);
    EXPECT_EQ(key, 0);
    EXPECT_EQ(basket.view.text, L"10");
    EXPECT_EQ(basket.view.sel_start, 0);
    EXPECT_EQ(basket.view.sel_length, 2);
    EXPECT_FALSE(basket.view.list_visible);
    EXPECT_TRUE(basket.view.EditorOpen());
}

TEST_F(DropDownList, EscapeFTwoAndFFourCloseItWithoutChange) {
    for (const int code : {View::kEscape, View::kF2, View::kF4}) {
        basket.form.IPComboButton_Click();
        basket.view.list_index = 2;
        int key = code;
        basket.form.IPComboList_KeyDown(key, 0);
        EXPECT_FALSE(basket.view.list_visible);
        EXPECT_EQ(basket.view.text, L"3");
    }
    basket.form.IPComboButton_Click();
    int other = View::kDown;
    basket.form.IPComboList_KeyDown(other, 0);
    EXPECT_EQ(other, static_cast<int>(View::kDown));
    EXPECT_TRUE(basket.view.list_visible);
}

TEST_F(DropDownList, LosesItselfWithTheFocusOnTheTimer) {
    basket.form.IPComboButton_Click();
    basket.view.Tick();
    EXPECT_TRUE(basket.view.list_visible);
    EXPECT_TRUE(basket.view.timer_enabled);  // keeps watching
    basket.view.focus = View::Focus::kElsewhere;
    basket.view.Tick();
    EXPECT_FALSE(basket.view.list_visible);
    EXPECT_FALSE(basket.view.timer_enabled);
}

TEST_F(DropDownList, CommittingClosesIt) {
    basket.form.IPComboButton_Click();
    basket.form.CommitCellEdit();
    EXPECT_FALSE(basket.view.list_visible);
    EXPECT_FALSE(basket.view.EditorOpen());
}

TEST_F(DropDownList, OpeningATopLevelMenuClosesIt) {
    for (const Command menu :
         {Command::mnuDatei, Command::mnuEdit, Command::mnuAnsicht, Command::mnuHilfe}) {
        basket.form.IPComboButton_Click();
        ASSERT_TRUE(basket.view.list_visible);
        basket.form.MenuOpened(menu);
        EXPECT_FALSE(basket.view.list_visible);
    }
}

}  // namespace
}  // namespace demovex
