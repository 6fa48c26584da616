#include <gtest/gtest.h>

#include <new>

#include "basket/document/files.h"
#include "tests/support/files_fixture.h"

namespace demovex {
namespace {

using Texts = std::vector<std::wstring>;

class LoadTest : public testing::Test, protected FilesFixture {
  protected:
    // Loads the bytes as they stand, no header added.
    void LoadBytes(std::string_view bytes) { basket.Load(folder.Put(L"a.bsk", bytes)); }
    void LoadLines(std::string_view lines) { basket.Load(PutBasket(L"a.bsk", lines)); }
};

constexpr wchar_t kRejectedTitle[] = L"Fehlerhafte Warenkorbdatei";

TEST_F(LoadTest, RowsTakeNumberQuantityAndCatalogueFromTheFileAndTheRestFromTheArticleMaster) {
    LoadLines("4711\tfalsch\t3\t1,00\t1,00\tKatalog\thttp://k\t9,99\t9,99\r\n4712\t\t1\r\n");
    ASSERT_EQ(grid.Rows(), 4) << CellsOf(grid);
    EXPECT_EQ(Cell(1, column::kNumber), L"1");
    EXPECT_EQ(Cell(1, column::kArtNr), L"4711");
    EXPECT_EQ(Cell(1, column::kBezeichnung), L"Duftwasser");
    EXPECT_EQ(Cell(1, column::kMenge), L"3");
    EXPECT_EQ(Cell(1, column::kPreisAts), L"100,00");
    EXPECT_EQ(Cell(1, column::kPreisEuro), L"7,27");
    EXPECT_EQ(Cell(1, column::kKatalog), L"Katalog");
    EXPECT_EQ(Cell(1, column::kKatalogUrl), L"http://k");
    EXPECT_EQ(Cell(1, column::kGesamtAts), L"300,00");
    EXPECT_EQ(Cell(1, column::kGesamtEuro), L"21,81");
}

TEST_F(LoadTest, TotalsCountTheQuantitiesOfTheFile) {
    LoadLines("4711\t\t3\r\n4713\t\t2\r\n");
    EXPECT_EQ(Cell(3, column::kBezeichnung), L"Gesamt");
    EXPECT_EQ(Cell(3, column::kGesamtAts), L"2.300,00");
    EXPECT_EQ(Cell(3, column::kGesamtEuro), L"167,15");
}

TEST_F(LoadTest, TheFileBecomesTheCurrentOneAndTheBasketIsUnmodified) {
    state.Modified = true;
    const std::wstring path = PutBasket(L"Körbe.bsk", "4711\t\t1\r\n");
    basket.Load(path);
    EXPECT_EQ(state.CurrentPath, path);
    EXPECT_EQ(state.Caption, L"Vexmart Demo Warenkorb 1.1 - Körbe.bsk");
    EXPECT_EQ(view.caption, state.Caption);
    EXPECT_EQ(settings.Get(L"LRU", L"File1", L""), path);
    EXPECT_FALSE(state.Modified);
    EXPECT_FALSE(state.Loading);
    EXPECT_FALSE(state.SuppressEditor);
    EXPECT_TRUE(grid.Redraw());
    EXPECT_EQ(grid.Row(), 1);
    EXPECT_EQ(grid.Col(), 1);
    EXPECT_EQ(grid.RowSel(), 1);
    EXPECT_EQ(grid.ColSel(), 1);
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(LoadTest, TheFirstRowsArticleNumberIsCurrentAfterwards) {
    LoadLines("4711\t\t5\r\n4712\t\t1\r\n\tfrei\r\n");
    EXPECT_EQ(grid.Row(), 1);
    EXPECT_EQ(grid.RowSel(), 1);
    EXPECT_EQ(grid.Col(), column::kArtNr);
    EXPECT_EQ(grid.ColSel(), column::kArtNr);
}

TEST_F(LoadTest, TheOldRowsAreReplaced) {
    LoadLines("4711\t\t5\r\n4712\t\t1\r\n");
    LoadLines("4713\t\t1\r\n");
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4713", L""}));
    EXPECT_EQ(Cell(2, column::kGesamtAts), L"1.000,00");
    EXPECT_EQ(Cell(1, column::kNumber), L"1");
}

TEST_F(LoadTest, AnEditBeingTypedIsCommittedBeforeTheRowsGo) {
    LoadLines("4711\t\t5\r\n");
    std::int32_t rows_at_commit = 0;
    editor.typed = [&] { rows_at_commit = grid.Rows(); };
    LoadLines("");
    EXPECT_EQ(rows_at_commit, 3);
    EXPECT_FALSE(state.Modified);
}

TEST_F(LoadTest, TheHeaderIsRecognisedInAnyLetterCase) {
    LoadBytes("demovexclient.client\r\n4711\t\t1\r\n");
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4711", L""}));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(LoadTest, AFileWithoutHeaderIsReadFromItsFirstLineOn) {
    LoadBytes("4711\t\t1\r\n4712\t\t2\r\n");
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4711", L"4712", L""}));
}

TEST_F(LoadTest, AnEmptyFileAndAHeaderAloneGiveAnEmptyBasket) {
    LoadLines("4711\t\t1\r\n");
    LoadBytes("");
    EXPECT_EQ(grid.Rows(), 2);
    EXPECT_EQ(state.CurrentPath, folder / L"a.bsk");
    LoadBytes("DemoVexClient.Client");
    EXPECT_EQ(grid.Rows(), 2);
    LoadBytes("\r\n\r\n\r\n");
    EXPECT_EQ(grid.Rows(), 2);
    EXPECT_EQ(grid.Row(), 1);
}

TEST_F(LoadTest, TheLastLineNeedsNoLineBreak) {
    LoadLines("4711\t\t1\r\n4712\t\t7");
    EXPECT_EQ(Quantities(), (Texts{L"1", L"7", L""}));
}

TEST_F(LoadTest, TrailingEmptyLinesAreLostAndOneInBetweenIsATextRow) {
    LoadLines("4711\t\t1\r\n\r\n4712\t\t2\r\n\r\n\r\n\r\n");
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4711", L"", L"4712", L""}));
    EXPECT_EQ(Quantities(), (Texts{L"1", L"", L"2", L""}));
    EXPECT_EQ(Cell(2, column::kNumber), L"2");
}

TEST_F(LoadTest, ALineWithoutNumberCarriesFreeTextAndNothingElse) {
    LoadLines("\tBitte rasch\t5\t1\t1\tK\tU\t1\t1\r\n");
    ASSERT_EQ(grid.Rows(), 3);
    EXPECT_EQ(Cell(1, column::kBezeichnung), L"Bitte rasch");
    for (const std::int32_t col : {1, 3, 4, 5, 6, 7, 8, 9}) EXPECT_EQ(Cell(1, col), L"") << col;
    EXPECT_EQ(Cell(2, column::kGesamtAts), L"");
}

TEST_F(LoadTest, AnsiBytesBecomeTheirCharacters) {
    LoadLines(
        "\tGr\xFC\xDF"
        "e \x80\r\n");
    EXPECT_EQ(Cell(1, column::kBezeichnung), L"Grüße €");
}

// --- unknown numbers

TEST_F(LoadTest, OneUnknownNumberIsLeftOutAndListedInTheSingular) {
    LoadLines("4711\t\t1\r\n9999\tx\t12\r\n4712\t\t2\r\n");
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4711", L"4712", L""}));
    EXPECT_EQ(Quantities(), (Texts{L"1", L"2", L""}));
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(LastMessage().text,
              L"Folgende Artikelnummer wurden nicht im Artikelstamm gefunden und wurde daher aus "
              L"dem Warenkorb entfernt: \r\n\r\n9999 (12)");
    EXPECT_EQ(LastMessage().title, kRejectedTitle);
    EXPECT_EQ(LastMessage().buttons, MessageButtons::kOk);
    EXPECT_EQ(LastMessage().icon, MessageIcon::kExclamation);
    EXPECT_FALSE(state.Modified);
}

TEST_F(LoadTest, TwoUnknownNumbersAreListedInThePluralInOneMessage) {
    LoadLines("8888\r\n4711\t\t1\r\n9999\tx\tviele\r\n");
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4711", L""}));
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(LastMessage().text,
              L"Folgende Artikelnummern wurden nicht im Artikelstamm gefunden und wurden daher aus "
              L"dem Warenkorb entfernt: \r\n\r\n8888 ()\r\n9999 (viele)");
}

TEST_F(LoadTest, UpToThirtyUnknownNumbersAreListedAndTheOthersCounted) {
    const auto text_of = [&](int count) {
        std::string lines;
        for (int i = 1; i <= count; ++i) lines += "u" + std::to_string(i) + "\t\t1\r\n";
        LoadLines(lines);
        return LastMessage().text;
    };
    std::wstring listed;
    for (int i = 1; i <= 30; ++i) listed += L"\r\nu" + std::to_wstring(i) + L" (1)";
    EXPECT_TRUE(text_of(30).ends_with(L" entfernt: \r\n" + listed)) << text_of(30).size();
    EXPECT_TRUE(text_of(31).ends_with(listed + L"\r\n... und 1 weitere"));
    EXPECT_TRUE(text_of(47).ends_with(listed + L"\r\n... und 17 weitere"));
    EXPECT_TRUE(text_of(5000).ends_with(listed + L"\r\n... und 4970 weitere"));
    EXPECT_EQ(messages.shown.size(), 4u);
}

TEST_F(LoadTest, AVeryLongUnknownNumberIsCutInTheMessage) {
    LoadLines(std::string(1'000'000, '7') + "\t\t" + std::string(500'000, '3') + "\r\n");
    EXPECT_TRUE(LastMessage().text.ends_with(L"\r\n\r\n" + std::wstring(100, L'7') + L"... (" +
                                             std::wstring(100, L'3') + L"...)"));
}

TEST_F(LoadTest, TheStatusBarShowsThePositionOfTheRowThatIsCurrentAfterwards) {
    view.status = L"vorher";
    LoadLines("4711\t\t5\t\t\tSeite 1\tu\r\n4712\t\t1\t\t\tSeite 2\tu\r\n");
    EXPECT_EQ(view.status, L"Seite 1");
    LoadLines("4711\t\t5\t\t\tSeite 3\tu\r\n");
    EXPECT_EQ(view.status, L"Seite 3");
    LoadLines("");
    EXPECT_EQ(view.status, L"");
    view.status = L"vorher";
    EXPECT_NE(LoadError(PutBasket(L"q.bsk", "4711\t\t1\t\t\tSeite 4\r\n4712\t\tx\r\n")), L"");
    EXPECT_EQ(view.status, L"");  // the second line is current and has none
}

TEST_F(LoadTest, AllNumbersUnknownLeavesAnEmptyBasketWithEmptyTotals) {
    LoadLines("4711\t\t1\r\n");
    LoadLines("1\r\n1\r\n2\r\n");
    EXPECT_EQ(grid.Rows(), 2);
    EXPECT_EQ(Cell(1, column::kBezeichnung), L"Gesamt");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_NE(LastMessage().text.find(L"\r\n\r\n1 ()\r\n1 ()\r\n2 ()"), std::wstring::npos);
}

TEST_F(LoadTest, TheMessageComesWhenTheLoadIsOver) {
    struct Watching final : IMessageBox {
        BasketState& state;
        FlexGrid& grid;
        bool idle = false;
        Watching(BasketState& s, FlexGrid& g) : state(s), grid(g) {}
        MessageAnswer Show(std::wstring_view, std::wstring_view, MessageButtons,
                           MessageIcon) override {
            idle = !state.Loading && !state.Modified && !state.SuppressEditor && grid.Redraw();
            return MessageAnswer::kOk;
        }
    } watching(state, grid);
    Services own = With(services, watching);
    BasketContext own_context{grid, rows, view, own, state};
    RecentFiles own_recent(own_context);
    BasketFiles(own_context, editor, own_recent).Load(PutBasket(L"a.bsk", "9\r\n"));
    EXPECT_TRUE(watching.idle);
}

// --- the same number in consecutive lines

// The second line is merged into the first one's row and counts as rejected; the row removed is the
// totals row, which stands at the counter then.
TEST_F(LoadTest, ASecondLineWithTheSameNumberIsMergedAndTakesTheTotalsRowAway) {
    LoadLines("4711\t\t5\r\n4711\t\t2\r\n");
    ASSERT_EQ(grid.Rows(), 2) << CellsOf(grid);
    EXPECT_EQ(Cell(1, column::kArtNr), L"4711");
    EXPECT_EQ(Cell(1, column::kMenge), L"6");
    EXPECT_EQ(Cell(1, column::kGesamtAts), L"600,00");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(LastMessage().text,
              L"Folgende Artikelnummer wurden nicht im Artikelstamm gefunden und wurde daher aus "
              L"dem Warenkorb entfernt: \r\n\r\n4711 (2)");
    EXPECT_FALSE(state.Modified);
}

// From there on the last row is a basket row in the totals row's place: new rows come before it,
// and quantities go to the row at the counter, which is that one.
TEST_F(LoadTest, LinesAfterADuplicateFollowTheSameCounter) {
    LoadLines("4711\t\t5\r\n4711\t\t2\r\n4712\t\t4\r\n4713\t\t9\r\n");
    ASSERT_EQ(grid.Rows(), 4) << CellsOf(grid);
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4712", L"4713", L"4711"}));
    EXPECT_EQ(Quantities(), (Texts{L"1", L"1", L"9"}));
    EXPECT_EQ(Cell(3, column::kGesamtAts), L"1.025,50");  // the sums of the rows above
}

TEST_F(LoadTest, ADuplicateFurtherDownTakesTheTotalsRowAwayToo) {
    LoadLines("4711\t\t5\r\n4712\t\t1\r\n4712\t\t1\r\n");
    ASSERT_EQ(grid.Rows(), 3) << CellsOf(grid);
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4711", L"4712"}));
    EXPECT_EQ(Quantities(), (Texts{L"5", L"2"}));
}

TEST_F(LoadTest, AFourthLineWithTheSameNumberFindsNoRowAtTheCounter) {
    EXPECT_EQ(
        LoadError(PutBasket(L"b.bsk", "4711\t\t1\r\n4711\t\t1\r\n4711\t\t1\r\n4711\t\t1\r\n")),
        LoadErrorOf(folder / L"b.bsk", L"Subscript out of range"));
    EXPECT_FALSE(state.Loading);
    EXPECT_EQ(messages.shown.size(), 0u);
}

TEST_F(LoadTest, TheSameNumberAgainAfterAnotherOneGetsItsOwnRow) {
    LoadLines("4711\t\t5\r\n4712\t\t1\r\n4711\t\t2\r\n");
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4711", L"4712", L"4711", L""}));
    EXPECT_EQ(Quantities(), (Texts{L"5", L"1", L"2", L""}));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(LoadTest, LoadingOverABasketWithoutTotalsRowPutsItBackFirst) {
    LoadLines("4711\t\t5\r\n4711\t\t2\r\n");
    LoadLines("4712\t\t1\r\n");
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4712", L""}));
    EXPECT_EQ(Cell(2, column::kBezeichnung), L"Gesamt");
    EXPECT_EQ(Cell(2, column::kGesamtAts), L"25,50");
}

// --- failures

TEST_F(LoadTest, AMissingFileIsNamedAndTheBasketStays) {
    LoadLines("4711\t\t5\r\n");
    const std::wstring old_path = state.CurrentPath;
    const std::wstring missing = folder / L"fehlt.bsk";
    state.Modified = true;
    EXPECT_EQ(LoadError(missing), LoadErrorOf(missing, L"File '" + missing + L"' not found"));
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4711", L""}));
    EXPECT_EQ(state.CurrentPath, old_path);
    EXPECT_FALSE(state.Modified);
    EXPECT_FALSE(state.Loading);
    EXPECT_FALSE(state.SuppressEditor);
    EXPECT_TRUE(grid.Redraw());
}

TEST_F(LoadTest, AMissingFolderAndTheEmptyPathAreMissingFiles) {
    const std::wstring missing = folder / L"fehlt\\a.bsk";
    EXPECT_EQ(LoadError(missing), LoadErrorOf(missing, L"File '" + missing + L"' not found"));
    EXPECT_EQ(LoadError(L""), LoadErrorOf(L"", L"File '' not found"));
}

TEST_F(LoadTest, APathOf32000CharactersIsAMissingFile) {
    const std::wstring path = folder / std::wstring(32000, L'x');
    EXPECT_EQ(LoadError(path), LoadErrorOf(path, L"File '" + ShownPath(path) + L"' not found"));
}

TEST_F(LoadTest, AFolderCannotBeLoaded) {
    const std::wstring path = FromNativePath(folder.path());
    EXPECT_EQ(LoadError(path), LoadErrorOf(path, L"Path/File access error"));
}

TEST_F(LoadTest, ADriveThatGoesAwayWhileReadingIsReported) {
    const std::wstring path = PutBasket(L"a.bsk", "4711\r\n");
    files.FailAt(1, runtime_error::kDeviceIoError);
    EXPECT_EQ(LoadError(path), LoadErrorOf(path, L"Device I/O error"));
    EXPECT_EQ(state.CurrentPath, L"");
}

TEST_F(LoadTest, AQuantityThatIsNoNumberEndsTheLoadAndKeepsTheRowsReadSoFar) {
    for (const std::string quantity : {"", "abc", "1a", "1,2,3", "--1"}) {
        const std::wstring path =
            PutBasket(L"q.bsk", "4711\t\t2\r\n4712\t\t" + quantity + "\tx\r\n4713\t\t1\r\n");
        EXPECT_EQ(LoadError(path), LoadErrorOf(path, L"Type mismatch")) << quantity;
        EXPECT_EQ(ArticleNumbers(), (Texts{L"4711", L"4712", L""})) << quantity;
        EXPECT_EQ(Cell(1, column::kMenge), L"2");
        EXPECT_EQ(Cell(2, column::kMenge), std::wstring(quantity.begin(), quantity.end()));
        EXPECT_EQ(Cell(2, column::kGesamtAts), L"25,50");  // as it was added, one piece
        EXPECT_EQ(Cell(3, column::kGesamtAts), L"225,50");
        EXPECT_EQ(state.CurrentPath, path);
        EXPECT_EQ(state.Caption, L"Vexmart Demo Warenkorb 1.1 - q.bsk");
        EXPECT_FALSE(state.Modified);
        EXPECT_FALSE(state.Loading);
        EXPECT_FALSE(state.SuppressEditor);
        EXPECT_FALSE(grid.Redraw());
        EXPECT_EQ(view.progress_depth, 0);
        EXPECT_TRUE(messages.shown.empty());
    }
    const std::wstring huge = PutBasket(L"h.bsk", "4711\t\t1e400\r\n");
    EXPECT_EQ(LoadError(huge), LoadErrorOf(huge, L"Overflow"));
}

TEST_F(LoadTest, ALoadThatFailedHalfWayIsFollowedByOneThatWorks) {
    EXPECT_NE(LoadError(PutBasket(L"q.bsk", "4711\t\tabc\r\n")), L"");
    LoadLines("4712\t\t2\r\n");
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4712", L""}));
    EXPECT_EQ(Cell(2, column::kGesamtAts), L"51,00");
    EXPECT_TRUE(grid.Redraw());
}

TEST_F(LoadTest, TheGridIsPaintedAgainWithTheNextCommandAfterALoadThatFailed) {
    EXPECT_NE(LoadError(PutBasket(L"q.bsk", "4711\t\tabc\r\n")), L"");
    EXPECT_FALSE(grid.Redraw());
    basket.ResumePainting();
    EXPECT_TRUE(grid.Redraw());
    grid.SetRedraw(false);
    state.Loading = true;
    basket.ResumePainting();
    EXPECT_FALSE(grid.Redraw());
}

// Neither what no handler expects nor the end of memory leaves the window as if it were loading.
TEST_F(LoadTest, WhateverEndsALoadTheWindowGoesOn) {
    const auto expect_idle = [&] {
        EXPECT_FALSE(state.Loading);
        EXPECT_FALSE(state.SuppressEditor);
        EXPECT_FALSE(state.Modified);
        EXPECT_EQ(view.progress_depth, 0);
    };
    const std::wstring path = PutBasket(L"a.bsk", "4711\t\t1\r\n");
    files.KillAt(1);
    state.Modified = true;
    EXPECT_THROW(basket.Load(path), Killed);
    expect_idle();

    struct Exhausted final : IArticleLookup {
        bool LookUpArtikelNr(const std::wstring&, std::wstring&, std::wstring&) override {
            throw std::bad_alloc();
        }
    } exhausted;
    Services own = With(services, disk);
    OrderTable own_rows(grid, text, exhausted);
    BasketContext own_context{grid, own_rows, view, own, state};
    BasketFiles own_basket(own_context, editor, recent);
    state.Modified = true;
    std::wstring raised;
    try {
        own_basket.Load(path);
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), -1);
        EXPECT_EQ(error.source(), L"Load");
        raised = error.description();
    }
    EXPECT_EQ(raised, LoadErrorOf(path, L"Out of memory"));
    expect_idle();
}

TEST_F(LoadTest, TheHeaderTextAsArticleNumberFailsTheLoad) {
    const std::wstring path = PutBasket(L"a.bsk", "ArtNr\t\t1\r\n");
    EXPECT_EQ(LoadError(path), LoadErrorOf(path, L"Type mismatch"));
    EXPECT_EQ(grid.Rows(), 2);
}

// --- files that are no baskets

TEST_F(LoadTest, LineFeedsAloneMakeOneLine) {
    LoadBytes("DemoVexClient.Client\n4711\t\t1\n");
    EXPECT_EQ(grid.Rows(), 2);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_NE(LastMessage().text.find(L"\r\n\r\nDemoVexClient.Client 4711 (1 )"),
              std::wstring::npos);
}

TEST_F(LoadTest, ALoneCarriageReturnIsABlankOfItsField) {
    LoadLines("4711\r\t\t1\r\n\tTe\rxt\r\n");
    EXPECT_EQ(ArticleNumbers(), (Texts{L"", L""}));
    EXPECT_EQ(Cell(1, column::kBezeichnung), L"Te xt");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_NE(LastMessage().text.find(L"4711  (1)"), std::wstring::npos);
}

TEST_F(LoadTest, ZeroBytesAreBlanks) {
    LoadLines(
        std::string("\tA\0B\r\n47\0"
                    "11\t\t1\r\n",
                    17));
    EXPECT_EQ(Cell(1, column::kBezeichnung), L"A B");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_NE(LastMessage().text.find(L"47 11 (1)"), std::wstring::npos);
}

TEST_F(LoadTest, AFileOfZerosIsOneUnknownNumber) {
    LoadBytes(std::string(4096, '\0'));
    EXPECT_EQ(grid.Rows(), 2);
    EXPECT_EQ(messages.shown.size(), 1u);
}

TEST_F(LoadTest, ALineOfAMegabyteIsReadWhole) {
    LoadLines("\t" + std::string(1 << 20, 'x') + "\r\n4711\t\t1\r\n" + std::string(1 << 20, '7') +
              "\r\n");
    EXPECT_EQ(Cell(1, column::kBezeichnung).size(), std::size_t{1} << 20);
    EXPECT_EQ(ArticleNumbers(), (Texts{L"", L"4711", L""}));
    EXPECT_EQ(messages.shown.size(), 1u);
}

TEST_F(LoadTest, AMillionTabsAreAnEmptyLine) {
    LoadLines(std::string(1000000, '\t') + "\r\n4711\t\t1\r\n");
    EXPECT_EQ(ArticleNumbers(), (Texts{L"", L"4711", L""}));
}

// --- progress

TEST_F(LoadTest, ALongLoadTellsItsProgressAndEndsIt) {
    std::string lines;
    for (int i = 0; i < 3000; ++i) lines += i % 2 == 0 ? "4711\t\t1\r\n" : "4712\t\t1\r\n";
    LoadLines(lines);
    EXPECT_EQ(view.progress_depth, 0);
    ASSERT_GE(view.progress.size(), 10u);
    for (std::size_t i = 1; i < view.progress.size(); ++i) {
        EXPECT_LT(view.progress[i - 1], view.progress[i]);
    }
    EXPECT_GT(view.progress.front(), 0);
    EXPECT_LE(view.progress.back(), 1);
    EXPECT_GT(view.progress.back(), 0.9);
    EXPECT_EQ(grid.Rows(), 3002);
}

TEST_F(LoadTest, AFailingLoadEndsItsProgress) {
    EXPECT_NE(LoadError(PutBasket(L"q.bsk", "4711\t\tabc\r\n")), L"");
    EXPECT_EQ(view.progress_depth, 0);
}

}  // namespace
}  // namespace demovex
