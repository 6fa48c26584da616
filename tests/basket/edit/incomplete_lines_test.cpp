// A line that lacks readable amounts, and the basket around it: totals stay right, no order is
// lost, commands go on, and the note says which line it is.
#include <gtest/gtest.h>

#include "tests/support/basket_fixture.h"

namespace demovex {
namespace {

using Texts = std::vector<std::wstring>;
using View = FakeBasketView;

constexpr wchar_t kUnknownInLine2[] = L"Zeile 2: Artikel nope steht nicht im Artikelstamm";

// 4711 in line 1, an unknown number in line 2.
class IncompleteLines : public ::testing::Test {
  protected:
    IncompleteLines() {
        basket.Link(L"4711");
        EXPECT_EQ(RaisedBy([&] { basket.Link(L"nope", 1, L"K", L"U"); }), 13);
    }
    std::wstring Ats() const { return basket.Total(column::kGesamtAts); }
    std::wstring Euro() const { return basket.Total(column::kGesamtEuro); }

    BasketFixture basket;
};

TEST_F(IncompleteLines, EveryLaterOrderStandsWithItsTotalsAndTheCallEndsWithTypeMismatch) {
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"4712", 3, L"Seife", L"u3"); }), 13);
    ASSERT_EQ(basket.Lines(), 3) << basket.AsText();
    EXPECT_EQ(basket.Cell(3, column::kBezeichnung), L"Duftwasser");
    EXPECT_EQ(basket.Cell(3, column::kMenge), L"3");
    EXPECT_EQ(basket.Cell(3, column::kKatalog), L"Seife");
    EXPECT_EQ(basket.Cell(3, column::kKatalogUrl), L"u3");
    EXPECT_EQ(basket.Cell(3, column::kGesamtAts), L"300,00");
    EXPECT_EQ(Ats(), L"400,00");
    EXPECT_EQ(Euro(), L"29,08");
    EXPECT_EQ(basket.grid.Row(), 3);
    EXPECT_EQ(basket.grid.Col(), column::kArtNr);
    EXPECT_EQ(basket.grid.ColSel(), 9);
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"4712"); }), 13);  // merged
    EXPECT_EQ(basket.Cell(3, column::kMenge), L"4");
    EXPECT_EQ(Ats(), L"500,00");
    EXPECT_TRUE(basket.messages.shown.empty());
}

TEST_F(IncompleteLines, AnOrderThatMeetsAnOpenEditorIsAddedAndWhatWasTypedIsKept) {
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"5");
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"4712"); }), 13);
    ASSERT_EQ(basket.Lines(), 3) << basket.AsText();
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"5");
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), L"500,00");
    EXPECT_EQ(basket.Cell(3, column::kGesamtAts), L"100,00");
    EXPECT_EQ(Ats(), L"600,00");
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_FALSE(basket.form.State().SuppressEditor);
}

TEST_F(IncompleteLines, AQuantityThatIsCommittedIsReckonedAndRaisesNothing) {
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"7");
    EXPECT_EQ(RaisedBy([&] { basket.Press(View::kReturn); }), 0);
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), L"700,00");
    EXPECT_EQ(basket.Cell(1, column::kGesamtEuro), L"50,89");
    EXPECT_EQ(Ats(), L"700,00");
    EXPECT_EQ(Euro(), L"50,89");
    EXPECT_TRUE(basket.view.EditorOpen());  // Return opens the same cell again
}

TEST_F(IncompleteLines, AQuantityForTheIncompleteLineItselfRaisesNothingEither) {
    basket.Click(2, column::kMenge);
    ASSERT_TRUE(basket.view.EditorOpen());
    basket.TypeOver(L"7");
    EXPECT_EQ(RaisedBy([&] { basket.form.CommitCellEdit(); }), 0);
    EXPECT_EQ(basket.Cell(2, column::kMenge), L"7");
    EXPECT_EQ(basket.Cell(2, column::kGesamtAts), L"");
    EXPECT_EQ(Ats(), L"100,00");
    EXPECT_EQ(basket.view.notes, Texts{kUnknownInLine2});  // told when it came
}

TEST_F(IncompleteLines, ANumberThatIsTypedCompletesItsLineAndGoesOnToTheQuantity) {
    basket.form.Run(Command::mnuEditNeueZeile);
    ASSERT_EQ(basket.Lines(), 3);
    basket.Click(3, column::kArtNr);
    basket.view.Type(L"1000");
    EXPECT_EQ(RaisedBy([&] { basket.Press(View::kReturn); }), 0);
    EXPECT_EQ(basket.Cell(3, column::kBezeichnung), L"Bleistift HB");
    EXPECT_EQ(basket.Cell(3, column::kGesamtAts), L"3,50");
    EXPECT_EQ(Ats(), L"103,50");
    EXPECT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.form.State().EditCol, column::kMenge);
}

TEST_F(IncompleteLines, RowCommandsDoTheirWorkToTheEnd) {
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"2");
    EXPECT_EQ(RaisedBy([&] { basket.form.Run(Command::mnuEditNeueZeile); }), 0);
    ASSERT_EQ(basket.Lines(), 3);
    EXPECT_EQ(Ats(), L"200,00");
    EXPECT_TRUE(basket.view.EditorOpen());
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"3");
    EXPECT_EQ(RaisedBy([&] { basket.form.Run(Command::mnuEditZeileOberhalbEinfügen); }), 0);
    EXPECT_EQ(basket.Column(column::kArtNr), (Texts{L"", L"4711", L"nope", L""}));
    EXPECT_EQ(Ats(), L"300,00");
    basket.Click(2, column::kMenge);
    basket.TypeOver(L"4");
    EXPECT_EQ(RaisedBy([&] { basket.form.Run(Command::mnuEditZeilenNachOben); }), 0);
    EXPECT_EQ(basket.Column(column::kArtNr), (Texts{L"4711", L"", L"nope", L""}));
    EXPECT_EQ(Ats(), L"400,00");
    basket.Select(2, 1, 2, 1);
    EXPECT_EQ(RaisedBy([&] { basket.form.Run(Command::mnuEditZeilenLöschen); }), 0);
    EXPECT_EQ(basket.Column(column::kArtNr), (Texts{L"4711", L"nope", L""}));
    EXPECT_TRUE(basket.messages.shown.empty());
}

TEST_F(IncompleteLines, SavingSavesWithWhatWasBeingTyped) {
    basket.file_dialogs.Choose(L"C:\\Basket\\a.bsk");
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"6");
    EXPECT_EQ(RaisedBy([&] { basket.form.Run(Command::mnuDateiSpeichern); }), 0);
    const std::string& saved = basket.files.At(L"C:\\Basket\\a.bsk").bytes;
    EXPECT_NE(saved.find("4711\tEau de Cologne\t6\t"), std::string::npos) << saved;
    EXPECT_NE(saved.find("\r\nnope\t\t\t\t\tK\tU\r\n"), std::string::npos) << saved;
    EXPECT_FALSE(basket.form.Modified());
}

TEST_F(IncompleteLines, TheNoteNamesTheLineOncePerLine) {
    EXPECT_EQ(basket.view.notes, (Texts{kUnknownInLine2}));
    for (const wchar_t* quantity : {L"2", L"3", L"4"}) {
        basket.Click(1, column::kMenge);
        basket.TypeOver(quantity);
        basket.Click(1, column::kBezeichnung);
    }
    EXPECT_EQ(basket.view.notes.size(), 1u);
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"4712"); }), 13);
    EXPECT_EQ(basket.view.notes.size(), 1u);
    // a second one of the same number is another line
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"nope"); }), 13);
    EXPECT_EQ(basket.view.note, L"Zeile 4: Artikel nope steht nicht im Artikelstamm");
    basket.Select(4, 1, 4, 1);
    basket.form.Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(basket.view.notes.size(), 2u);
    basket.Select(2, 1, 2, 1);
    basket.form.Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(basket.view.notes.size(), 2u);
    EXPECT_EQ(Ats(), L"500,00");
    // the same number once more, when all had been well in between
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"nope"); }), 13);
    EXPECT_EQ(basket.view.note, L"Zeile 3: Artikel nope steht nicht im Artikelstamm");
}

TEST_F(IncompleteLines, AMovedLineIsNamedByItsNewNumber) {
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"auch"); }), 13);
    EXPECT_EQ(basket.view.note, L"Zeile 3: Artikel auch steht nicht im Artikelstamm");
    // a line that was told already is not told again because it is somewhere else now
    basket.Select(3, 1, 3, 1);
    basket.form.Run(Command::mnuEditZeilenNachOben);
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"2");
    basket.form.CommitCellEdit();
    EXPECT_EQ(basket.view.notes.size(), 2u);
}

TEST_F(IncompleteLines, AVeryLongNumberIsCutInTheNote) {
    EXPECT_EQ(RaisedBy([&] { basket.Link(std::wstring(100'000, L'7')); }), 13);
    EXPECT_EQ(basket.view.note,
              L"Zeile 3: Artikel " + std::wstring(40, L'7') + L"... steht nicht im Artikelstamm");
}

TEST_F(IncompleteLines, ANewBasketForgetsThem) {
    basket.messages.otherwise = MessageAnswer::kNo;
    basket.form.Run(Command::mnuDateiNeu);
    EXPECT_TRUE(basket.Link(L"4711"));
    EXPECT_EQ(Ats(), L"100,00");
}

TEST_F(IncompleteLines, InANewBasketTheSameNumberIsToldAgain) {
    basket.messages.otherwise = MessageAnswer::kNo;
    basket.form.Run(Command::mnuDateiNeu);
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"nope"); }), 13);
    EXPECT_EQ(basket.view.note, L"Zeile 1: Artikel nope steht nicht im Artikelstamm");
    basket.files.Put(L"C:\\Basket\\leer.bsk", "");
    basket.form.Load(L"C:\\Basket\\leer.bsk");
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"nope"); }), 13);
    EXPECT_EQ(basket.view.note, L"Zeile 1: Artikel nope steht nicht im Artikelstamm");
}

TEST(IncompleteLine, WithoutAReadablePriceKeepsItsOrder) {
    BasketFixture basket;
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"9999", 2, L"K", L"U"); }), 13);
    EXPECT_EQ(basket.Cell(1, column::kBezeichnung), L"Preis fehlt");
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"2");
    EXPECT_EQ(basket.Cell(1, column::kKatalog), L"K");
    EXPECT_EQ(basket.Cell(1, column::kKatalogUrl), L"U");
    EXPECT_EQ(basket.view.note, L"Zeile 1: Artikel 9999 hat keinen lesbaren Preis");
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"4711"); }), 13);
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"100,00");
}

TEST(IncompleteLine, AQuantityThatIsNoNumberIsToldWhenItsLineIsReckoned) {
    BasketFixture basket;
    basket.files.Put(L"C:\\Basket\\q.bsk", "4711\t\t2\r\n4712\t\tviele\r\n");
    EXPECT_EQ(RaisedBy([&] { basket.form.Load(L"C:\\Basket\\q.bsk"); }), -1);
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"300,00");
    for (const wchar_t* quantity : {L"3", L"4"}) {
        basket.Click(1, column::kMenge);
        basket.TypeOver(quantity);
        basket.grid.Select(2, column::kBezeichnung, 2, column::kBezeichnung);
    }
    EXPECT_EQ(basket.view.notes, Texts{L"Zeile 2: Die Menge von Artikel 4712 ist keine Zahl"});
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"500,00");
}

TEST(IncompleteLine, ALineThatALoadHasLeftIncompleteIsToldWhenAnotherIsReckoned) {
    BasketFixture basket;
    basket.files.Put(L"C:\\Basket\\q.bsk", "4711\t\t2\r\n9999\t\t1\r\n");
    EXPECT_EQ(RaisedBy([&] { basket.form.Load(L"C:\\Basket\\q.bsk"); }), -1);
    EXPECT_TRUE(basket.view.notes.empty());
    for (const wchar_t* quantity : {L"3", L"4"}) {
        basket.Click(1, column::kMenge);
        basket.TypeOver(quantity);
        EXPECT_EQ(RaisedBy([&] { basket.form.CommitCellEdit(); }), 0);
    }
    EXPECT_EQ(basket.view.notes, Texts{L"Zeile 2: Artikel 9999 hat keinen lesbaren Preis"});
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"400,00");
}

// Pasted, for "1e" alone is no number.
void Over(BasketFixture& basket, std::wstring_view text) {
    basket.view.Select(0, static_cast<std::int32_t>(basket.view.text.size()));
    basket.view.Paste(text);
}

TEST(IncompleteLine, AnErrorInWhatIsBeingTypedDoesNotCostAnOrder) {
    BasketFixture basket;
    basket.Link(L"4711");
    basket.Click(1, column::kMenge);
    Over(basket, L"1e307");
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"1000"); }), 6);
    ASSERT_EQ(basket.Lines(), 2) << basket.AsText();
    EXPECT_EQ(basket.Cell(2, column::kGesamtAts), L"3,50");
    basket.Link(L"");
    basket.Click(3, column::kArtNr);
    basket.view.Type(L"9999");  // its price does not read
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"2000"); }), 13);
    EXPECT_EQ(basket.Column(column::kArtNr), (Texts{L"4711", L"1000", L"", L"2000"}));
    basket.Click(3, column::kArtNr);
    basket.view.Type(L"9999");
    EXPECT_EQ(RaisedBy([&] { basket.form.InsertArtikel(1, 1); }), 13);
    EXPECT_EQ(basket.Lines(), 5);
}

TEST(IncompleteLine, ATotalThatOverflowsIsShownEmptyAndComesBack) {
    BasketFixture basket;
    basket.Link(L"4711");
    basket.Link(L"4712");
    for (const std::int32_t row : {1, 2}) {
        basket.Click(row, column::kMenge);
        Over(basket, L"1e306");
        EXPECT_EQ(RaisedBy([&] { basket.form.CommitCellEdit(); }), row == 1 ? 0 : 6);
    }
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"");
    EXPECT_NE(basket.Total(column::kGesamtEuro), L"");
    basket.Select(2, 1, 2, 1);
    basket.form.Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(basket.Total(column::kGesamtAts), basket.Cell(1, column::kGesamtAts));
}

TEST(IncompleteLine, ATotalThatOverflowsEndsTheLoadThatMeetsIt) {
    BasketFixture basket;
    // each line's total is a number, and two of them are none any more
    basket.files.Put(L"C:\\Basket\\q.bsk", "4711\t\t1e306\r\n4712\t\t1e306\r\n1000\t\t1\r\n");
    EXPECT_EQ(RaisedBy([&] { basket.form.Load(L"C:\\Basket\\q.bsk"); }), -1);
    EXPECT_EQ(basket.Lines(), 2);
    // the second line has the total of one piece beside the quantity that was too much
    EXPECT_EQ(basket.Cell(2, column::kMenge), L"1e306");
    EXPECT_EQ(basket.Cell(2, column::kGesamtAts), L"100,00");
}

TEST(IncompleteLine, ANumberWhoseTotalsOverflowIsTakenBackAndTheTotalsAreAsBefore) {
    BasketFixture basket;
    basket.files.Put(BasketFixture::ArticlePath(),
                     ArticleFile({{"4711", "Viel", "9e307"}, {"4712", "Auch viel", "9e307"}}));
    basket.Link(L"4711");
    const std::wstring total = basket.Total(column::kGesamtAts);
    ASSERT_NE(total, L"");
    basket.Link(L"");
    basket.Click(2, column::kArtNr);
    basket.view.Type(L"4712");
    EXPECT_EQ(RaisedBy([&] { basket.Press(View::kReturn); }), 6);
    EXPECT_EQ(basket.Cell(2, column::kArtNr), L"");
    EXPECT_EQ(basket.Cell(2, column::kPreisAts), L"");
    EXPECT_EQ(basket.Total(column::kGesamtAts), total);
}

}  // namespace
}  // namespace demovex
