// Rows edited in the real window with real keys and clicks.
#include <gtest/gtest.h>

#include "basket/window/handles_win.h"
#include "tests/support/test_basket_window_win.h"

namespace demovex {
namespace {

constexpr WORD kCtrl = VK_CONTROL;

// Lines with the free texts "a", "b", ...: as many as `count`.
void TypeLines(BasketWindowFixture& basket, int count) {
    for (int line = 0; line < count; ++line) {
        basket.Press('N', {kCtrl});
        basket.Type(std::wstring(1, static_cast<wchar_t>(L'a' + line)));
    }
    basket.ClickCell(1, column::kPreisAts);
}

std::wstring Texts(const BasketWindowFixture& basket) {
    std::wstring texts;
    for (std::int32_t row = 1; row <= basket.Lines(); ++row) {
        const std::wstring cell = basket.Cell(row, column::kBezeichnung);
        texts += cell.empty() ? L"." : cell;
    }
    return texts;
}

void ExpectNumbered(const BasketWindowFixture& basket) {
    for (std::int32_t row = 1; row <= basket.Lines(); ++row) {
        EXPECT_EQ(basket.Cell(row, column::kNumber), std::to_wstring(row)) << basket.AsText();
    }
}

// Clicks a price cell of `from`, which is never edited, and extends the selection with the
// keyboard.
void SelectRows(BasketWindowFixture& basket, std::int32_t from, std::int32_t to) {
    basket.ClickCell(from, column::kPreisAts);
    for (std::int32_t row = from; row < to; ++row) basket.Press(VK_DOWN, {VK_SHIFT});
    for (std::int32_t row = from; row > to; --row) basket.Press(VK_UP, {VK_SHIFT});
    ASSERT_EQ(basket.Grid().Row(), from);
    ASSERT_EQ(basket.Grid().RowSel(), to);
}

TEST(WindowRows, AFreshRowTakesNumberAndDescriptionAnArticleRowTheQuantityOnly) {
    BasketWindowFixture basket;
    basket.Press('N', {kCtrl});
    for (const std::int32_t col : {column::kArtNr, column::kBezeichnung, column::kMenge}) {
        basket.ClickCell(1, column::kPreisAts);
        basket.ClickCell(1, col);
        EXPECT_EQ(basket.EditorOpen(), col != column::kMenge) << col;
    }
    basket.ClickCell(1, column::kArtNr);
    basket.Type(L"4711");
    basket.Press(VK_RETURN);
    ASSERT_EQ(basket.Cell(1, column::kMenge), L"1") << basket.AsText();
    for (const std::int32_t col : {column::kArtNr, column::kBezeichnung, column::kMenge}) {
        basket.ClickCell(1, column::kPreisAts);
        basket.ClickCell(1, col);
        EXPECT_EQ(basket.EditorOpen(), col == column::kMenge) << col;
    }
}

TEST(WindowRows, TotalsHeaderAndPriceCellsShowNoEditor) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    for (const std::int32_t col :
         {column::kPreisAts, column::kPreisEuro, column::kGesamtAts, column::kGesamtEuro}) {
        basket.ClickCell(1, col);
        EXPECT_FALSE(basket.EditorOpen()) << col;
    }
    for (const std::int32_t col : {column::kArtNr, column::kBezeichnung, column::kMenge}) {
        basket.ClickCell(2, col);
        EXPECT_FALSE(basket.EditorOpen()) << col;
        basket.ClickCell(0, col);
        EXPECT_FALSE(basket.EditorOpen()) << col;
    }
}

TEST(WindowRows, LeftAtTheBeginningOfANumberStaysAndRightLeavesOnlyAtTheEnd) {
    BasketWindowFixture basket;
    basket.Press('N', {kCtrl});
    basket.Press(VK_LEFT);
    ASSERT_EQ(basket.Grid().Col(), column::kArtNr);
    basket.Type(L"47");
    basket.Press(VK_HOME);
    basket.Press(VK_LEFT);
    EXPECT_EQ(basket.Grid().Col(), column::kArtNr);
    EXPECT_TRUE(basket.EditorOpen());
    basket.Press(VK_RIGHT);  // behind the 4
    EXPECT_EQ(basket.Grid().Col(), column::kArtNr);
    basket.Press(VK_RIGHT);  // behind the 7
    EXPECT_EQ(basket.Grid().Col(), column::kArtNr);
    basket.Type(L"11");
    basket.Press(VK_RIGHT);  // leaves and commits
    EXPECT_EQ(basket.Cell(1, column::kArtNr), L"4711");
    EXPECT_NE(basket.Grid().Col(), column::kArtNr);
}

TEST(WindowRows, ALetterTypedIntoAQuantityIsTakenBackAndSoIsDeletingTheLastDigit) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    basket.ClickCell(1, column::kMenge);
    ASSERT_TRUE(basket.EditorOpen());
    basket.Type(L"1A");
    EXPECT_EQ(basket.TextOf(basket.Text()), L"1");
    basket.Press(VK_BACK);
    EXPECT_EQ(basket.TextOf(basket.Text()), L"1");
    EXPECT_TRUE(basket.messages.shown.empty());
}

TEST(WindowRows, MovingTheFirstRowUpDoesNothingButMarksTheBasket) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    basket.Link(L"1000");
    basket.file_dialogs.Choose(L"C:\\Basket\\neu.bsk");
    basket.Press('S', {kCtrl});
    ASSERT_FALSE(basket.window->Form()->Modified());
    basket.ClickCell(1, column::kPreisAts);
    basket.Press('U', {kCtrl});
    EXPECT_EQ(basket.Cell(1, column::kArtNr), L"4711");
    EXPECT_TRUE(basket.window->Form()->Modified());
}

TEST(WindowRows, ABlockMovesDownTwiceAndUpTwiceWithItsSelection) {
    BasketWindowFixture basket;
    TypeLines(basket, 5);
    ASSERT_EQ(Texts(basket), L"abcde");
    SelectRows(basket, 1, 2);
    basket.Press('D', {kCtrl});
    EXPECT_EQ(Texts(basket), L"cabde");
    basket.Press('D', {kCtrl});
    EXPECT_EQ(Texts(basket), L"cdabe");
    EXPECT_EQ(basket.Grid().Row(), 3);
    EXPECT_EQ(basket.Grid().RowSel(), 4);
    basket.Press('U', {kCtrl});
    basket.Press('U', {kCtrl});
    EXPECT_EQ(Texts(basket), L"abcde");
    EXPECT_EQ(basket.Grid().Row(), 1);
    EXPECT_EQ(basket.Grid().RowSel(), 2);
    ExpectNumbered(basket);
}

TEST(WindowRows, DeletingAllRowsLeavesHeaderAndEmptyTotals) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    basket.Link(L"1000");
    SelectRows(basket, 1, 2);
    basket.Press('L', {kCtrl});
    EXPECT_EQ(basket.Lines(), 0);
    EXPECT_EQ(basket.Cell(1, column::kBezeichnung), L"Gesamt");
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), L"");
    EXPECT_EQ(basket.Cell(1, column::kGesamtEuro), L"");
    EXPECT_EQ(basket.Grid().Col(), column::kBezeichnung);
}

TEST(WindowRows, DeletingStopsAtTheTotalsRow) {
    BasketWindowFixture basket;
    TypeLines(basket, 4);
    SelectRows(basket, 3, 5);  // row 5 is the totals row
    basket.Press('L', {kCtrl});
    EXPECT_EQ(Texts(basket), L"ab");
    EXPECT_EQ(basket.Cell(3, column::kBezeichnung), L"Gesamt");
}

TEST(WindowRows, DeletingAnUpwardSelectionRemovesTheAnchorRowAndTheRowsBelow) {
    BasketWindowFixture basket;
    TypeLines(basket, 8);
    SelectRows(basket, 5, 3);
    basket.Press('L', {kCtrl});
    EXPECT_EQ(Texts(basket), L"abcdh");
    ExpectNumbered(basket);
}

TEST(WindowRows, InsertingWithThreeRowsSelectedInsertsThreeAboveTheAnchor) {
    BasketWindowFixture basket;
    TypeLines(basket, 4);
    SelectRows(basket, 2, 4);
    basket.Press('E', {kCtrl});
    EXPECT_EQ(Texts(basket), L"a...bcd");
    ExpectNumbered(basket);
}

TEST(WindowRows, CopyingASelectionWithAnEmptyFirstCellWritesNoTabForIt) {
    BasketWindowFixture basket;
    TypeLines(basket, 1);
    basket.ClickCell(1, column::kPreisAts);
    basket.Press(VK_LEFT, {VK_SHIFT});
    basket.Press(VK_LEFT, {VK_SHIFT});
    basket.Press(VK_LEFT, {VK_SHIFT});
    ASSERT_EQ(basket.Grid().ColSel(), column::kArtNr);
    SendMessageW(basket.Handle(), WM_COMMAND,
                 static_cast<WPARAM>(Command::mnuContextCopySelectionToClipboard), 0);
    basket.Pump();
    EXPECT_EQ(basket.clipboard.text, L"a\t\t\r\n");
}

TEST(WindowRows, APageOfAppendedRowsIsScrolledIntoViewWithTheEditorOpen) {
    BasketWindowFixture basket;
    for (int line = 1; line <= 30; ++line) {
        basket.Press('N', {kCtrl});
        ASSERT_TRUE(basket.EditorOpen()) << "line " << line;
        basket.Type(L"x");
    }
    basket.ClickCell(basket.Grid().TopRow(), column::kPreisAts);
    EXPECT_EQ(Texts(basket), std::wstring(30, L'x'));
}

}  // namespace
}  // namespace demovex
