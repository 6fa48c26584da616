#include <gtest/gtest.h>

#include "tests/support/basket_fixture.h"

namespace demovex {
namespace {

using Texts = std::vector<std::wstring>;

TEST(BasketRows, TheTenColumnsHaveTheirCaptionsAndWidths) {
    BasketFixture basket;
    static constexpr struct {
        const wchar_t* caption;
        Twips width;
    } kExpected[] = {{L"", 400},          {L"ArtNr", 1000},     {L"Bezeichnung", 2470},
                     {L"Menge", 800},     {L"Preis ATS", 1085}, {L"Preis EURO", 1085},
                     {L"Katalog", 0},     {L"KatalogURL", 0},   {L"Gesamt ATS", 1135},
                     {L"Ges. EURO", 1135}};
    ASSERT_EQ(basket.grid.Cols(), 10);
    for (std::int32_t col = 0; col < 10; ++col) {
        EXPECT_EQ(basket.Cell(0, col), kExpected[col].caption) << col;
        EXPECT_EQ(basket.grid.ColWidth(col), kExpected[col].width) << col;
    }
}

// Half a cent goes to the even neighbour, and the euro is made from the price as it stands in the
// article master, not from the two decimals that are shown.
TEST(BasketRows, TheEuroPriceIsRoundedOnceWithHalvesToEven) {
    BasketFixture basket(FakeLocale::kAustria, false);
    basket.files.Put(BasketFixture::ArticlePath(),
                     ArticleFile({{"1", "halb", "1,7200375"}, {"2", "knapp", "0,066"}}));
    basket.form.Initialize();
    ASSERT_EQ(1.7200375 / 13.7603, 0.125);
    basket.Link(L"1");
    EXPECT_EQ(basket.Cell(1, column::kPreisAts), L"1,72");
    EXPECT_EQ(basket.Cell(1, column::kPreisEuro), L"0,12");
    EXPECT_EQ(basket.Cell(1, column::kGesamtEuro), L"0,12");
    // 0,066 is 0,0048 euro, but the 0,07 that are shown would be 0,0051
    basket.Link(L"2");
    EXPECT_EQ(basket.Cell(2, column::kPreisAts), L"0,07");
    EXPECT_EQ(basket.Cell(2, column::kPreisEuro), L"0,00");
}

TEST(BasketRows, AQuantityTooLargeToReadCountsAsNoneWhenItsArticleIsOrderedAgain) {
    BasketFixture basket;
    basket.files.Put(L"C:\\Basket\\h.bsk", "4711\t\t1e400\r\n");
    EXPECT_EQ(RaisedBy([&] { basket.form.Load(L"C:\\Basket\\h.bsk"); }), -1);
    ASSERT_EQ(basket.Cell(1, column::kMenge), L"1e400");
    EXPECT_FALSE(basket.Link(L"4711", 2));
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"2");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"200,00");
}

TEST(BasketRows, AnEmptyBasketHasHeaderAndTotalsRow) {
    BasketFixture basket;
    ASSERT_EQ(basket.grid.Rows(), 2);
    ASSERT_EQ(basket.grid.Cols(), 10);
    for (std::int32_t col = 0; col < 10; ++col) {
        const ColumnRow& design = kColumns[static_cast<std::size_t>(col)];
        EXPECT_EQ(basket.Cell(0, col), design.caption);
        EXPECT_EQ(basket.grid.ColWidth(col), design.width);
        EXPECT_TRUE(basket.grid.CellBold(0, col));
    }
    EXPECT_EQ(basket.Cell(1, column::kBezeichnung), L"Gesamt");
    EXPECT_TRUE(basket.grid.CellBold(1, column::kBezeichnung));
    EXPECT_TRUE(basket.grid.CellBold(1, column::kGesamtAts));
    EXPECT_TRUE(basket.grid.CellBold(1, column::kGesamtEuro));
    EXPECT_FALSE(basket.grid.CellBold(1, column::kMenge));
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"");
    EXPECT_EQ(basket.grid.Col(), column::kBezeichnung);
    EXPECT_FALSE(basket.form.Modified());
}

TEST(BasketRows, AFollowedLinkMakesAPricedLineAndTotals) {
    BasketFixture basket;
    EXPECT_TRUE(basket.Link(L"4711", 1, L"Parfum", L"vex://parfum/1"));
    ASSERT_EQ(basket.Lines(), 1) << basket.AsText();
    EXPECT_EQ(basket.Cell(1, column::kNumber), L"1");
    EXPECT_TRUE(basket.grid.CellBold(1, column::kNumber));
    EXPECT_EQ(basket.Cell(1, column::kArtNr), L"4711");
    EXPECT_EQ(basket.Cell(1, column::kBezeichnung), L"Eau de Cologne");
    EXPECT_EQ(basket.grid.CellAlign(1, column::kArtNr), CellAlignment::kLeft);
    EXPECT_EQ(basket.grid.CellAlign(1, column::kBezeichnung), CellAlignment::kLeft);
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"1");
    EXPECT_EQ(basket.Cell(1, column::kPreisAts), L"100,00");
    EXPECT_EQ(basket.Cell(1, column::kPreisEuro), L"7,27");
    EXPECT_EQ(basket.Cell(1, column::kKatalog), L"Parfum");
    EXPECT_EQ(basket.Cell(1, column::kKatalogUrl), L"vex://parfum/1");
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), L"100,00");
    EXPECT_EQ(basket.Cell(1, column::kGesamtEuro), L"7,27");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"100,00");
    EXPECT_EQ(basket.Total(column::kGesamtEuro), L"7,27");
    EXPECT_TRUE(basket.form.Modified());
}

TEST(BasketRows, ANewLineIsHighlightedFromNumberToLastColumn) {
    BasketFixture basket;
    basket.Link(L"4711", 1, L"Parfum");
    EXPECT_EQ(basket.grid.Row(), 1);
    EXPECT_EQ(basket.grid.RowSel(), 1);
    EXPECT_EQ(basket.grid.Col(), column::kArtNr);
    EXPECT_EQ(basket.grid.ColSel(), 9);
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_FALSE(basket.form.State().SuppressEditor);
}

TEST(BasketRows, TheSameArticleTwiceInARowIsOneLineOfTwo) {
    BasketFixture basket;
    EXPECT_TRUE(basket.Link(L"4711", 1, L"K1", L"U1"));
    EXPECT_FALSE(basket.Link(L"4711", 1, L"K2", L"U2"));
    ASSERT_EQ(basket.Lines(), 1) << basket.AsText();
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"2");
    EXPECT_EQ(basket.Cell(1, column::kKatalog), L"K1");
    EXPECT_EQ(basket.Cell(1, column::kKatalogUrl), L"U1");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"200,00");
    EXPECT_EQ(basket.Total(column::kGesamtEuro), L"14,54");
}

TEST(BasketRows, TheSameArticleAfterAnotherIsANewLine) {
    BasketFixture basket;
    basket.Link(L"4711");
    basket.Link(L"4712");
    basket.Link(L"4711");
    EXPECT_EQ(basket.Column(column::kArtNr), (Texts{L"4711", L"4712", L"4711"}));
    EXPECT_EQ(basket.Column(column::kNumber), (Texts{L"1", L"2", L"3"}));
}

TEST(BasketRows, MergingComparesLetterCase) {
    BasketFixture basket;
    basket.Link(L"ABC");
    EXPECT_TRUE(basket.Link(L"abc"));
    EXPECT_EQ(basket.Column(column::kArtNr), (Texts{L"ABC", L"abc"}));
}

TEST(BasketRows, ThreeAtSevenTwentySevenAreTwentyOneEightyOne) {
    BasketFixture basket;
    basket.Link(L"4711", 3);
    EXPECT_EQ(basket.Cell(1, column::kPreisEuro), L"7,27");
    EXPECT_EQ(basket.Cell(1, column::kGesamtEuro), L"21,81");
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), L"300,00");
}

TEST(BasketRows, AmountsFollowTheUsersLocale) {
    BasketFixture german(FakeLocale::kGermany);
    german.Link(L"6000", 10);
    EXPECT_EQ(german.Cell(1, column::kGesamtAts), L"1.234.567,80");
    BasketFixture austrian;
    austrian.Link(L"6000", 10);
    EXPECT_EQ(austrian.Cell(1, column::kGesamtAts), L"1\u00A0234\u00A0567,80");
}

TEST(BasketRows, AnUnknownNumberFromALinkKeepsItsRowAndRaisesTypeMismatch) {
    BasketFixture basket;
    basket.Link(L"4711");
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"nope", 1, L"K", L"U"); }), 13);
    ASSERT_EQ(basket.Lines(), 2) << basket.AsText();
    EXPECT_EQ(basket.Cell(2, column::kArtNr), L"nope");
    EXPECT_EQ(basket.Cell(2, column::kKatalog), L"K");
    EXPECT_EQ(basket.Cell(2, column::kKatalogUrl), L"U");
    EXPECT_EQ(basket.Cell(2, column::kMenge), L"");
    EXPECT_EQ(basket.Cell(2, column::kGesamtAts), L"");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"100,00");
    EXPECT_TRUE(basket.messages.shown.empty());
    EXPECT_FALSE(basket.form.State().SuppressEditor);
    // and so does every later one, until the row is gone
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"4711"); }), 13);
    EXPECT_EQ(basket.Lines(), 3);
}

TEST(BasketRows, APriceThatIsNoNumberRaisesTypeMismatch) {
    BasketFixture basket;
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"9999"); }), 13);
    EXPECT_EQ(basket.Cell(1, column::kBezeichnung), L"Preis fehlt");
    EXPECT_EQ(basket.Cell(1, column::kPreisAts), L"");
    EXPECT_FALSE(basket.form.State().SuppressEditor);
}

TEST(BasketRows, AnEmptyNumberAddsAnEmptyRowWithTheEditorOnItsDescription) {
    BasketFixture basket;
    EXPECT_FALSE(basket.Link(L""));
    ASSERT_EQ(basket.Lines(), 1) << basket.AsText();
    EXPECT_EQ(basket.Cell(1, column::kNumber), L"1");
    EXPECT_EQ(basket.grid.Row(), 1);
    EXPECT_EQ(basket.grid.Col(), column::kBezeichnung);
    EXPECT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.form.State().EditCol, column::kBezeichnung);
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"");
}

TEST(BasketRows, TheHeaderTextOnAnEmptyBasketMeetsTheHeaderRow) {
    BasketFixture basket;
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"ArtNr"); }), 13);
    EXPECT_EQ(basket.Lines(), 0);
    EXPECT_EQ(basket.Cell(0, column::kMenge), L"1");
}

TEST(BasketRows, ABasketThatSumsToNothingShowsEmptyTotals) {
    BasketFixture basket;
    basket.Link(L"5000");
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), L"0,00");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"");
    EXPECT_EQ(basket.Total(column::kGesamtEuro), L"");
}

TEST(BasketRows, TwoRowsInsertedAboveTheFirstOfThree) {
    BasketFixture basket;
    for (const wchar_t* nr : {L"4711", L"4712", L"1000"}) basket.Link(nr);
    basket.form.InsertArtikel(1, 2);
    EXPECT_EQ(basket.Column(column::kNumber), (Texts{L"1", L"2", L"3", L"4", L"5"}));
    EXPECT_EQ(basket.Column(column::kArtNr), (Texts{L"", L"", L"4711", L"4712", L"1000"}));
    EXPECT_EQ(basket.Column(column::kBezeichnung)[0], L"");
    EXPECT_TRUE(basket.grid.CellBold(1, column::kNumber));
    EXPECT_EQ(basket.grid.CellAlign(2, column::kBezeichnung), CellAlignment::kLeft);
    EXPECT_EQ(basket.grid.Col(), column::kBezeichnung);
}

TEST(BasketRows, InsertingNoRowsOnlyMovesToTheDescription) {
    BasketFixture basket;
    basket.Link(L"4711");
    basket.form.InsertArtikel(1);
    EXPECT_EQ(basket.Lines(), 1);
    EXPECT_EQ(basket.grid.Col(), column::kBezeichnung);
}

TEST(BasketRows, InsertingOutsideTheBasketIsRefused) {
    BasketFixture basket;
    basket.Link(L"4711");
    EXPECT_EQ(RaisedBy([&] { basket.form.InsertArtikel(0, 1); }), 9);
    EXPECT_EQ(RaisedBy([&] { basket.form.InsertArtikel(3, 1); }), 9);
    EXPECT_EQ(basket.Lines(), 1);
    EXPECT_FALSE(basket.form.State().SuppressEditor);
}

TEST(BasketRows, RowTypesLookAtTheNumberColumnAlone) {
    BasketFixture basket;
    basket.Link(L"4711");
    basket.Link(L"");
    EXPECT_EQ(basket.form.GetRowType(0), 0);
    EXPECT_EQ(basket.form.GetRowType(1), 0);
    EXPECT_EQ(basket.form.GetRowType(2), 1);
    EXPECT_EQ(basket.form.GetRowType(3), 1);
    EXPECT_EQ(RaisedBy([&] { basket.form.GetRowType(4); }), 9);
}

TEST(BasketRows, RefreshingKeepsTheQuantityWithMinusOne) {
    BasketFixture basket;
    basket.Link(L"4711", 5);
    EXPECT_TRUE(basket.form.RefreshArtikel(1, -1));
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"5");
    EXPECT_TRUE(basket.form.RefreshArtikel(1, 0));
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"0");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"");
}

// A basket that was just loaded: an article, a free line, and nothing modified.
void LoadTwoLines(BasketFixture& basket) {
    basket.files.Put(L"C:\\Basket\\two.bsk", "4711\t\t2\r\n\tfrei\r\n");
    basket.form.Load(L"C:\\Basket\\two.bsk");
    ASSERT_EQ(basket.Lines(), 2) << basket.AsText();
    ASSERT_FALSE(basket.form.Modified());
}

TEST(BasketRows, RefreshingAndInsertingMarkTheBasketModified) {
    BasketFixture refreshed;
    LoadTwoLines(refreshed);
    EXPECT_FALSE(refreshed.form.RefreshArtikel(2, 1));
    EXPECT_FALSE(refreshed.form.Modified()) << "a row without a number is left alone";
    EXPECT_TRUE(refreshed.form.RefreshArtikel(1, -1));
    EXPECT_TRUE(refreshed.form.Modified());
    BasketFixture inserted;
    LoadTwoLines(inserted);
    inserted.form.InsertArtikel(1);
    EXPECT_TRUE(inserted.form.Modified());
}

TEST(BasketRows, RefreshingAndInsertingCommitWhatIsBeingTyped) {
    BasketFixture basket;
    LoadTwoLines(basket);
    basket.Click(2, column::kBezeichnung);
    basket.TypeOver(L"erst");
    EXPECT_TRUE(basket.form.RefreshArtikel(1, -1));
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"erst");
    basket.Click(2, column::kBezeichnung);
    basket.TypeOver(L"dann");
    basket.form.InsertArtikel(1, 1);
    EXPECT_EQ(basket.Column(column::kBezeichnung), (Texts{L"", L"Eau de Cologne", L"dann"}));
}

TEST(BasketRows, RefreshingAnEmptyRowChangesNothing) {
    BasketFixture basket;
    basket.Link(L"");
    EXPECT_FALSE(basket.form.RefreshArtikel(1, 3));
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"");
}

TEST(BasketRows, MergingReadsTheOldQuantityLeniently) {
    BasketFixture basket(FakeLocale::kGermany);
    basket.Link(L"4711");
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"2,5");
    basket.Link(L"4711");  // the decimal comma ends the leading number
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"3");
}

TEST(BasketRows, MergingWhileTheQuantityIsEditedShowsTheNewQuantity) {
    BasketFixture basket;
    basket.Link(L"4711");
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"7");
    EXPECT_FALSE(basket.Link(L"4711"));
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"8");
    EXPECT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.view.text, L"8");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"800,00");
}

TEST(BasketRows, EnumeratingGivesEachRowOnceAndThenNone) {
    BasketFixture basket;
    EXPECT_EQ(basket.form.Count(1), 0);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(basket.form.EnumItems(1), 0);
    basket.Link(L"4711");
    basket.Link(L"4712");
    EXPECT_EQ(basket.form.Count(1), 2);
    for (const std::int32_t id : {1, 2, 0, 1, 2, 0}) EXPECT_EQ(basket.form.EnumItems(1), id);
}

TEST(BasketRows, RowsCompareByTheColumnOfTheTagWithoutLetterCase) {
    BasketFixture basket;
    basket.Link(L"ABC");
    basket.Link(L"4711");
    basket.Link(L"abc");
    EXPECT_EQ(basket.form.CompareItems(1, 3, column::kArtNr), 0);
    EXPECT_EQ(basket.form.CompareItems(2, 1, column::kArtNr), -1);
    EXPECT_EQ(basket.form.CompareItems(1, 2, column::kArtNr), 1);
    EXPECT_EQ(basket.form.CompareItems(1, 2, column::kBezeichnung), 1);
    EXPECT_EQ(basket.form.CompareItem(std::wstring(L"4711"), 1, column::kArtNr), -1);
    EXPECT_EQ(basket.form.CompareItem(std::int32_t{4711}, 2, column::kArtNr), 0);
    EXPECT_EQ(basket.form.CompareItem(4711.0, 2, column::kArtNr), 0);
    EXPECT_EQ(basket.form.Hashvalue(1, 1), 0);
    EXPECT_EQ(basket.form.HashKeyvalue(std::wstring(L"x"), 1), 0);
}

}  // namespace
}  // namespace demovex
