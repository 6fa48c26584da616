// Baskets whose totals row a load has taken away (two lines of one number), and files with numbers
// that are unknown: such a load runs to its end, and the basket heals before anything is changed or
// written.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/basket_fixture.h"

namespace demovex {
namespace {

using Texts = std::vector<std::wstring>;

const std::wstring kFile = L"C:\\Basket\\a.bsk";

class MissingTotalsRow : public ::testing::Test {
  protected:
    void Load(const std::string& lines) {
        basket.files.Put(kFile, lines);
        basket.form.Load(kFile);
    }
    // 4711 twice, which leaves one line in the totals row's place, and another above it.
    void LoadWithoutTotalsRow() {
        Load("4711\t\t5\r\n4711\t\t2\r\n4712\t\t4\r\n");
        ASSERT_EQ(basket.grid.Rows(), 3) << basket.AsText();
        ASSERT_EQ(basket.Cell(2, column::kArtNr), L"4711");
        basket.messages.shown.clear();
    }
    // The basket is whole: `numbers` in its lines, totals that are the sum of them, below them.
    void ExpectWhole(const Texts& numbers) {
        const std::int32_t totals = basket.grid.Rows() - 1;
        EXPECT_EQ(basket.Column(column::kArtNr), numbers) << basket.AsText();
        EXPECT_EQ(basket.Cell(totals, column::kBezeichnung), L"Gesamt");
        EXPECT_EQ(basket.Cell(totals, column::kNumber), L"");
        EXPECT_TRUE(basket.grid.CellBold(totals, column::kBezeichnung));
        EXPECT_TRUE(basket.grid.CellBold(totals, column::kGesamtAts));
        EXPECT_TRUE(basket.grid.CellBold(totals, column::kGesamtEuro));
        double ats = 0, euro = 0;
        for (std::int32_t row = 1; row < totals; ++row) {
            EXPECT_EQ(basket.Cell(row, column::kNumber), std::to_wstring(row));
            if (basket.Cell(row, column::kArtNr).empty()) continue;
            const double quantity = basket.text.ToNumber(basket.Cell(row, column::kMenge));
            const auto line = [&](std::int32_t price, std::int32_t total) {
                const double amount = quantity * basket.text.ToNumber(basket.Cell(row, price));
                EXPECT_EQ(basket.Cell(row, total), basket.text.FormatAmount(amount));
                return amount;
            };
            ats += line(column::kPreisAts, column::kGesamtAts);
            euro += line(column::kPreisEuro, column::kGesamtEuro);
        }
        EXPECT_EQ(basket.Total(column::kGesamtAts), ats == 0 ? L"" : basket.text.FormatAmount(ats));
        EXPECT_EQ(basket.Total(column::kGesamtEuro),
                  euro == 0 ? L"" : basket.text.FormatAmount(euro));
    }

    BasketFixture basket;
};

// --- the load itself

TEST_F(MissingTotalsRow, DoubledAndUnknownNumbersInOneFileAreNoError) {
    Load("4711\t\t1\r\n4711\t\t1\r\n4712\t\t1\r\n8888\t\t1\r\n\tEnde\r\n");
    // the unknown number took the last row away, which was the doubled one; the line after it went
    // before what is last now
    EXPECT_EQ(basket.grid.Rows(), 4) << basket.AsText();
    EXPECT_EQ(basket.Cell(1, column::kArtNr), L"4712");
    EXPECT_EQ(basket.Cell(2, column::kArtNr), L"");
    EXPECT_EQ(basket.Cell(3, column::kArtNr), L"8888");
    EXPECT_EQ(basket.Cell(3, column::kBezeichnung), L"Ende");
    ASSERT_EQ(basket.messages.shown.size(), 1u);
    EXPECT_NE(basket.messages.shown[0].text.find(L"\r\n\r\n4711 (1)\r\n8888 (1)"),
              std::wstring::npos);
    EXPECT_TRUE(basket.grid.Redraw());
}

TEST_F(MissingTotalsRow, AFileWithoutLinesEmptiesTheTotals) {
    for (const char* lines : {"", "\r\n\r\n", "8888\t\t1\r\n", "8888\r\n7777\r\n"}) {
        Load("4711\t\t5\r\n");
        ASSERT_EQ(basket.Total(column::kGesamtAts), L"500,00");
        Load(lines);
        ASSERT_EQ(basket.grid.Rows(), 2) << lines;
        EXPECT_EQ(basket.Total(column::kGesamtAts), L"") << lines;
        EXPECT_EQ(basket.Total(column::kGesamtEuro), L"") << lines;
        EXPECT_EQ(basket.Cell(1, column::kBezeichnung), L"Gesamt");
    }
}

TEST_F(MissingTotalsRow, ALoadThatFailsAtItsFirstLineShowsNoOldTotals) {
    Load("4711\t\t5\r\n");
    basket.files.Put(kFile, "9999\t\t1\r\n");  // its price does not read
    EXPECT_EQ(RaisedBy([&] { basket.form.Load(kFile); }), -1);
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"");
}

// --- until something changes or writes it, the basket stands as the load left it

TEST_F(MissingTotalsRow, CopyingShowsTheBasketAsItStands) {
    LoadWithoutTotalsRow();
    basket.form.Run(Command::mnuDateiSendenanZwischenablage);
    EXPECT_EQ(basket.clipboard.text,
              L"ArtNr\tBezeichnung\tMenge\tPreis ATS\tPreis EURO\tGesamt ATS\tGes. EURO\r\n"
              L"4712\tDuftwasser\t1\t100,00\t7,27\t100,00\t7,27\r\n"
              L"4711\tEau de Cologne\t4\t100,00\t7,27\t100,00\t7,27\r\n");
    EXPECT_EQ(basket.grid.Rows(), 3);
    EXPECT_FALSE(basket.form.Modified());
}

// --- what heals it

TEST_F(MissingTotalsRow, SavingSavesEveryLine) {
    LoadWithoutTotalsRow();
    basket.form.Run(Command::mnuDateiSpeichern);
    ExpectWhole({L"4712", L"4711"});
    EXPECT_EQ(basket.files.At(kFile).bytes,
              "DemoVexClient.Client\r\n"
              "4712\tDuftwasser\t1\t100,00\t7,27\t\t\t100,00\t7,27\r\n"
              "4711\tEau de Cologne\t4\t100,00\t7,27\t\t\t400,00\t29,08\r\n");
    EXPECT_FALSE(basket.form.Modified());
}

TEST_F(MissingTotalsRow, AnOrderIsAddedOrMergedBelowEveryLine) {
    LoadWithoutTotalsRow();
    EXPECT_FALSE(basket.Link(L"4711"));
    ExpectWhole({L"4712", L"4711"});
    EXPECT_EQ(basket.Cell(2, column::kMenge), L"5");
    LoadWithoutTotalsRow();
    EXPECT_TRUE(basket.Link(L"1000"));
    ExpectWhole({L"4712", L"4711", L"1000"});
    LoadWithoutTotalsRow();
    basket.form.InsertArtikel(1, 1);
    ExpectWhole({L"", L"4712", L"4711"});
    LoadWithoutTotalsRow();
    EXPECT_TRUE(basket.form.RefreshArtikel(2, 7));
    ExpectWhole({L"4712", L"4711"});
    EXPECT_EQ(basket.Cell(2, column::kMenge), L"7");
}

TEST_F(MissingTotalsRow, RowCommandsFindEveryLine) {
    LoadWithoutTotalsRow();
    basket.Select(2, 1, 2, 1);
    basket.form.Run(Command::mnuEditZeilenLöschen);
    ExpectWhole({L"4712"});
    LoadWithoutTotalsRow();
    basket.form.Run(Command::mnuEditNeueZeile);
    ExpectWhole({L"4712", L"4711", L""});
    LoadWithoutTotalsRow();
    basket.Select(2, 1, 2, 1);
    basket.form.Run(Command::mnuEditZeileOberhalbEinfügen);
    ExpectWhole({L"4712", L"", L"4711"});
    LoadWithoutTotalsRow();
    basket.Select(2, 1, 2, 1);
    basket.form.Run(Command::mnuEditZeilenNachOben);
    ExpectWhole({L"4711", L"4712"});
    LoadWithoutTotalsRow();
    basket.Select(1, 1, 1, 1);
    basket.form.Run(Command::mnuEditZeilenNachUnten);
    ExpectWhole({L"4711", L"4712"});
}

TEST_F(MissingTotalsRow, ACommittedEditHealsIt) {
    LoadWithoutTotalsRow();
    basket.Click(1, column::kMenge);
    ASSERT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.grid.Rows(), 3);
    basket.TypeOver(L"8");
    basket.form.CommitCellEdit();
    ExpectWhole({L"4712", L"4711"});
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"1\u00A0200,00");
}

TEST_F(MissingTotalsRow, NewAndTheNextLoadLeaveNothingOfIt) {
    LoadWithoutTotalsRow();
    basket.form.Run(Command::mnuDateiNeu);
    ExpectWhole({});
    EXPECT_EQ(basket.grid.Rows(), 2);
    LoadWithoutTotalsRow();
    Load("1000\t\t2\r\n");
    ExpectWhole({L"1000"});
    LoadWithoutTotalsRow();
    basket.files.Put(kFile, "2000\t\tviele\r\n");
    EXPECT_EQ(RaisedBy([&] { basket.form.Load(kFile); }), -1);
    EXPECT_EQ(basket.Column(column::kArtNr), Texts{L"2000"});
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"Gesamt");
}

TEST_F(MissingTotalsRow, ALineInItsPlaceThatIsUnknownCountsAsIncompleteAndIsNotLost) {
    Load("4711\t\t1\r\n4711\t\t1\r\n4712\t\t1\r\n8888\t\t1\r\n");
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"1000"); }), 13);
    EXPECT_EQ(basket.Column(column::kArtNr), (Texts{L"4712", L"8888", L"1000"}));
    EXPECT_EQ(basket.Cell(4, column::kBezeichnung), L"Gesamt");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"103,50");
    EXPECT_EQ(basket.view.note, L"Zeile 2: Artikel 8888 steht nicht im Artikelstamm");
}

}  // namespace
}  // namespace demovex
