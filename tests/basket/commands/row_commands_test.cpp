#include <gtest/gtest.h>

#include "tests/support/basket_fixture.h"

namespace demovex {
namespace {

using Texts = std::vector<std::wstring>;

// Lines numbered by description: "r1" to "r<count>", every third one an article.
class RowCommandsTest : public ::testing::Test {
  protected:
    void Fill(std::int32_t count) {
        std::string file = "DemoVexClient.Client\r\n";
        for (std::int32_t row = 1; row <= count; ++row) {
            if (row % 3 == 0) {
                file += (row % 2 == 0 ? "4711" : "4712");
                file += "\t\t" + std::to_string(row) + "\t\t\tK" + std::to_string(row) + "\r\n";
            } else {
                file += "\tr" + std::to_string(row) + "\r\n";
            }
        }
        basket.files.Put(L"C:\\Basket\\fill.bsk", file);
        basket.form.Load(L"C:\\Basket\\fill.bsk");
        ASSERT_EQ(basket.Lines(), count) << basket.AsText();
    }
    // The lines by what tells them apart: the free text, or the quantity of an article.
    Texts Lines() const {
        Texts lines;
        for (std::int32_t row = 1; row <= basket.Lines(); ++row) {
            const bool article = !basket.Cell(row, column::kArtNr).empty();
            lines.push_back(basket.Cell(row, article ? column::kMenge : column::kBezeichnung));
        }
        return lines;
    }
    void ExpectNumbered() const {
        for (std::int32_t row = 1; row <= basket.Lines(); ++row) {
            EXPECT_EQ(basket.Cell(row, column::kNumber), std::to_wstring(row)) << basket.AsText();
        }
    }
    void Run(Command command) { basket.form.Run(command); }

    BasketFixture basket;
};

using RowCommands = RowCommandsTest;

TEST_F(RowCommands, AppendingAddsAnEmptyRowWithTheEditorOnItsDescription) {
    Fill(2);
    Run(Command::mnuEditNeueZeile);
    EXPECT_EQ(Lines(), (Texts{L"r1", L"r2", L""}));
    ExpectNumbered();
    EXPECT_EQ(basket.grid.Row(), 3);
    EXPECT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.form.State().EditRow, 3);
    EXPECT_EQ(basket.form.State().EditCol, column::kBezeichnung);
    EXPECT_TRUE(basket.form.Modified());
}

TEST_F(RowCommands, AppendingBelowTheWindowsEdgeScrollsAndOpensTheEditorOnTheNewRow) {
    Fill(200);  // the fixture's grid shows about two dozen rows
    for (std::int32_t row = 201; row <= 203; ++row) {
        Run(Command::mnuEditNeueZeile);
        EXPECT_EQ(basket.grid.Row(), row);
        EXPECT_GT(basket.grid.TopRow(), 170);
        EXPECT_LE(basket.grid.TopRow(), row);
        EXPECT_TRUE(basket.view.EditorOpen()) << basket.AsText();
        EXPECT_EQ(basket.form.State().EditRow, row);
        EXPECT_EQ(basket.form.State().EditCol, column::kBezeichnung);
    }
}

TEST_F(RowCommands, AppendingInViewDoesNotScroll) {
    Fill(3);
    Run(Command::mnuEditNeueZeile);
    EXPECT_EQ(basket.grid.TopRow(), 1);
    EXPECT_TRUE(basket.view.EditorOpen()) << basket.AsText();
}

TEST_F(RowCommands, AppendingKeepsWhatIsBeingTyped) {
    Fill(2);
    basket.Click(1, column::kBezeichnung);
    basket.TypeOver(L"getippt");
    Run(Command::mnuEditNeueZeile);
    EXPECT_EQ(Lines(), (Texts{L"getippt", L"r2", L""}));
}

TEST_F(RowCommands, InsertingWithThreeRowsSelectedInsertsThreeAboveTheAnchor) {
    Fill(4);
    basket.Select(2, 1, 4, 1);
    Run(Command::mnuEditZeileOberhalbEinfügen);
    EXPECT_EQ(Lines(), (Texts{L"r1", L"", L"", L"", L"r2", L"3", L"r4"}));
    ExpectNumbered();
    EXPECT_EQ(basket.grid.Row(), 2);
    EXPECT_TRUE(basket.view.EditorOpen());
}

TEST_F(RowCommands, InsertingWithAnUpwardSelectionInsertsAboveTheAnchorAtItsBottom) {
    Fill(4);
    basket.Select(4, 1, 2, 1);
    Run(Command::mnuEditZeileOberhalbEinfügen);
    EXPECT_EQ(Lines(), (Texts{L"r1", L"r2", L"3", L"", L"", L"", L"r4"}));
}

TEST_F(RowCommands, InsertingOnTheTotalsRowInsertsBeforeIt) {
    Fill(2);
    basket.Select(3, 2, 3, 2);
    Run(Command::mnuEditZeileOberhalbEinfügen);
    EXPECT_EQ(Lines(), (Texts{L"r1", L"r2", L""}));
    EXPECT_EQ(basket.Cell(4, column::kBezeichnung), L"Gesamt");
}

TEST_F(RowCommands, InsertingWithTheHeaderCurrentAppends) {
    Run(Command::mnuEditZeileOberhalbEinfügen);  // as the window is set up
    EXPECT_EQ(Lines(), (Texts{L""}));
    basket.grid.Select(0, 1, 0, 1);
    Run(Command::mnuEditZeileOberhalbEinfügen);
    EXPECT_EQ(Lines(), (Texts{L"", L""}));
}

TEST_F(RowCommands, InsertingAfterTypingANumberInsertsAboveItsLine) {
    Fill(2);
    basket.Click(1, column::kBezeichnung);
    basket.Click(1, column::kArtNr);
    basket.view.Type(L"4712");
    Run(Command::mnuEditZeileOberhalbEinfügen);
    EXPECT_EQ(Lines(), (Texts{L"", L"1", L"r2"})) << basket.AsText();
    EXPECT_EQ(basket.Cell(2, column::kArtNr), L"4712");
}

TEST_F(RowCommands, DeletingAnUpwardSelectionRemovesTheAnchorRowAndTheRowsBelow) {
    Fill(8);
    basket.Select(5, 1, 3, 1);
    Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(Lines(), (Texts{L"r1", L"r2", L"3", L"r4", L"r8"}));
    ExpectNumbered();
    EXPECT_EQ(basket.grid.Row(), 5);
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"300,00");
    EXPECT_TRUE(basket.view.EditorOpen());  // on what moved up
}

TEST_F(RowCommands, DeletingADownwardSelectionRemovesExactlyIt) {
    Fill(6);
    basket.Select(2, 2, 4, 2);
    Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(Lines(), (Texts{L"r1", L"r5", L"6"}));
    ExpectNumbered();
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"600,00");
    EXPECT_EQ(basket.grid.RowSel(), basket.grid.Row());
}

TEST_F(RowCommands, DeletingAllRowsLeavesHeaderAndEmptyTotals) {
    Fill(6);
    basket.Select(1, 3, 6, 3);
    Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(basket.grid.Rows(), 2) << basket.AsText();
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"");
    EXPECT_EQ(basket.Total(column::kGesamtEuro), L"");
    EXPECT_EQ(basket.grid.Col(), 2);
    EXPECT_FALSE(basket.view.EditorOpen());
}

TEST_F(RowCommands, DeletingAllRowsAndTheTotalsRowLeavesHeaderAndEmptyTotals) {
    Fill(6);
    basket.Select(1, 3, 7, 3);
    Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(basket.grid.Rows(), 2) << basket.AsText();
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"");
    EXPECT_EQ(basket.Cell(1, column::kBezeichnung), L"Gesamt");
    EXPECT_EQ(basket.grid.Col(), 2);
}

TEST_F(RowCommands, DeletingASelectionThatReachesTheTotalsRowStopsThere) {
    Fill(6);
    basket.Select(5, 1, 7, 1);
    Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(Lines(), (Texts{L"r1", L"r2", L"3", L"r4"}));
    EXPECT_EQ(basket.Cell(5, column::kBezeichnung), L"Gesamt");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"300,00");
    ExpectNumbered();
}

// What is left of a selection that reached the totals row is the current cell.
TEST_F(RowCommands, DeletingUpToTheTotalsRowCollapsesTheSelectionAndOpensWhatMayBeEdited) {
    Fill(6);
    basket.Select(5, 1, 7, 4);
    basket.view.status = L"vorher";
    Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(basket.grid.Row(), 5);
    EXPECT_EQ(basket.grid.RowSel(), 5);
    EXPECT_EQ(basket.grid.ColSel(), basket.grid.Col());
    EXPECT_EQ(basket.view.status, L"");  // the totals row is current and has no position
    // upwards from the totals row nothing is removed, but the rest is the same
    basket.Select(5, 3, 2, 1);
    Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(Lines(), (Texts{L"r1", L"r2", L"3", L"r4"}));
    EXPECT_EQ(basket.grid.Row(), 5);
    EXPECT_EQ(basket.grid.RowSel(), 5);
    EXPECT_EQ(basket.grid.ColSel(), 3);
    ExpectNumbered();
}

TEST_F(RowCommands, DeletingEverythingAndTheTotalsRowRunsTheCurrentCellHandler) {
    Fill(2);
    basket.Select(1, 3, 3, 9);
    basket.view.status = L"vorher";
    Run(Command::mnuEditZeilenLöschen);
    ASSERT_EQ(basket.grid.Rows(), 2) << basket.AsText();
    EXPECT_EQ(basket.grid.RowSel(), 1);
    EXPECT_EQ(basket.grid.ColSel(), 2);
    EXPECT_EQ(basket.view.status, L"");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"");
    EXPECT_EQ(basket.Total(column::kGesamtEuro), L"");
}

TEST_F(RowCommands, DeletingTheTotalsRowAloneDoesNothing) {
    Fill(3);
    basket.Select(4, 2, 4, 2);
    Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(Lines(), (Texts{L"r1", L"r2", L"3"}));
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"300,00");
    EXPECT_EQ(basket.sound.beeps, 0);
}

TEST_F(RowCommands, DeletingInAnEmptyBasketKeepsHeaderAndTotals) {
    basket.grid.Select(1, 5, 1, 5);
    Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(basket.grid.Rows(), 2);
    EXPECT_EQ(basket.grid.Col(), 2);
}

TEST_F(RowCommands, DeletingWithTheHeaderCurrentBeepsAndMarksTheBasketModified) {
    Fill(2);
    basket.grid.Select(0, 1, 0, 1);
    Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(basket.sound.beeps, 1);
    EXPECT_EQ(Lines(), (Texts{L"r1", L"r2"}));
    EXPECT_TRUE(basket.form.Modified());
}

TEST_F(RowCommands, DeletingTheLineWhoseNumberWasJustTypedLeavesTheNextLineAlone) {
    Fill(3);
    basket.Click(2, column::kArtNr);
    basket.view.Type(L"4712");
    Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(Lines(), (Texts{L"r1", L"3"})) << basket.AsText();
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"300,00");
}

TEST_F(RowCommands, DeletingTheLineOfAnUnknownNumberMakesTheTotalsRightAgain) {
    basket.Link(L"4711");
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"nope"); }), 13);
    basket.Select(2, 1, 2, 9);
    Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(basket.Lines(), 1);
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"4711"); }), 0);
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"200,00");
}

TEST_F(RowCommands, TheEditorGoesFromRowToRowWithoutLeavingTheScreen) {
    for (const Command command : {Command::mnuEditNeueZeile, Command::mnuEditZeileOberhalbEinfügen,
                                  Command::mnuEditZeilenLöschen}) {
        Fill(8);
        basket.Click(4, column::kBezeichnung);
        ASSERT_TRUE(basket.view.on_screen);
        const int changes = basket.view.screen_changes;
        Run(command);
        basket.view.Tick();
        EXPECT_TRUE(basket.view.EditorOpen());
        EXPECT_EQ(basket.form.State().EditRow, basket.grid.Row());
        EXPECT_EQ(basket.view.screen_changes, changes);
        EXPECT_EQ(basket.view.focus, FakeBasketView::FocusPlace::kText);
    }
}

TEST_F(RowCommands, TheEditorLeavesTheScreenWhereNothingCanBeEdited) {
    Fill(2);
    basket.grid.Select(1, column::kBezeichnung, 1, column::kBezeichnung);
    basket.view.Tick();
    Run(Command::mnuEditZeilenLöschen);
    ASSERT_TRUE(basket.view.on_screen);
    Run(Command::mnuEditZeilenLöschen);  // of the last line
    EXPECT_EQ(basket.Lines(), 0);
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_FALSE(basket.view.on_screen);
    EXPECT_EQ(basket.view.focus, FakeBasketView::FocusPlace::kGrid);
}

TEST_F(RowCommands, ARefusedNumbersMessageFindsTheEditorOffTheScreen) {
    for (const Command command : {Command::mnuEditNeueZeile, Command::mnuEditZeileOberhalbEinfügen,
                                  Command::mnuEditZeilenLöschen}) {
        Fill(2);
        basket.Click(1, column::kArtNr);
        basket.TypeOver(L"nope");
        bool on_screen = true;
        basket.messages.while_open = [&] { on_screen = basket.view.on_screen; };
        Run(command);
        EXPECT_FALSE(on_screen);
    }
}

TEST_F(RowCommands, MovingABlockTwiceDownAndTwiceUpRestoresTheBasket) {
    Fill(7);
    const Texts before = Lines();
    const std::wstring total = basket.Total(column::kGesamtAts);
    basket.Select(2, 2, 3, 4);
    for (const Command command : {Command::mnuEditZeilenNachUnten, Command::mnuEditZeilenNachUnten,
                                  Command::mnuEditZeilenNachOben, Command::mnuEditZeilenNachOben}) {
        const std::int32_t step = command == Command::mnuEditZeilenNachUnten ? 1 : -1;
        const std::int32_t row = basket.grid.Row();
        Run(command);
        EXPECT_EQ(basket.grid.Row(), row + step);
        EXPECT_EQ(basket.grid.RowSel(), row + step + 1);
        EXPECT_EQ(basket.grid.Col(), 2);
        EXPECT_EQ(basket.grid.ColSel(), 4);
        ExpectNumbered();
        EXPECT_EQ(basket.Total(column::kGesamtAts), total);
        EXPECT_TRUE(basket.grid.Redraw());
    }
    EXPECT_EQ(Lines(), before);
}

TEST_F(RowCommands, MovingDownCarriesEveryCellButTheLineNumber) {
    Fill(4);
    basket.Select(3, 1, 3, 9);
    Run(Command::mnuEditZeilenNachUnten);
    EXPECT_EQ(Lines(), (Texts{L"r1", L"r2", L"r4", L"3"}));
    EXPECT_EQ(basket.Cell(4, column::kKatalog), L"K3");
    EXPECT_EQ(basket.Cell(4, column::kGesamtAts), L"300,00");
    EXPECT_EQ(basket.Cell(3, column::kKatalog), L"");
    ExpectNumbered();
}

TEST_F(RowCommands, AnUpwardSelectionMovesWithItsDirection) {
    Fill(5);
    basket.Select(4, 2, 3, 1);
    Run(Command::mnuEditZeilenNachOben);
    EXPECT_EQ(Lines(), (Texts{L"r1", L"3", L"r4", L"r2", L"r5"}));
    EXPECT_EQ(basket.grid.Row(), 3);
    EXPECT_EQ(basket.grid.RowSel(), 2);
    EXPECT_EQ(basket.grid.ColSel(), 1);
}

TEST_F(RowCommands, MovingUpFromTheFirstRowDoesNothingButMarksTheBasketModified) {
    Fill(3);
    basket.Select(1, 1, 2, 1);
    ASSERT_FALSE(basket.form.Modified());
    Run(Command::mnuEditZeilenNachOben);
    EXPECT_EQ(Lines(), (Texts{L"r1", L"r2", L"3"}));
    EXPECT_TRUE(basket.form.Modified());
    EXPECT_EQ(basket.grid.RowSel(), 2);
}

TEST_F(RowCommands, MovingIsRefusedWhereTheTotalsRowOrTheHeaderIsTouched) {
    Fill(3);
    const struct {
        std::int32_t row, row_sel;
        Command command;
    } refused[] = {
        {2, 4, Command::mnuEditZeilenNachOben},  {4, 4, Command::mnuEditZeilenNachOben},
        {3, 3, Command::mnuEditZeilenNachUnten}, {3, 2, Command::mnuEditZeilenNachUnten},
        {4, 1, Command::mnuEditZeilenNachUnten}, {0, 0, Command::mnuEditZeilenNachUnten},
        {0, 1, Command::mnuEditZeilenNachUnten}, {0, 0, Command::mnuEditZeilenNachOben},
    };
    for (const auto& [row, row_sel, command] : refused) {
        basket.Select(row, 1, row_sel, 2);
        Run(command);
        EXPECT_EQ(Lines(), (Texts{L"r1", L"r2", L"3"})) << row << " " << row_sel;
        EXPECT_EQ(basket.Cell(0, column::kArtNr), L"ArtNr");
        EXPECT_EQ(basket.Cell(4, column::kBezeichnung), L"Gesamt");
    }
}

TEST_F(RowCommands, ARefusedMoveLeavesTheEditorOpen) {
    Fill(2);
    basket.Click(1, column::kBezeichnung);
    basket.TypeOver(L"offen");
    Run(Command::mnuEditZeilenNachOben);
    EXPECT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.view.text, L"offen");
}

TEST_F(RowCommands, MovingWhileEditingCarriesTheTypedTextAndTheEditorAlong) {
    Fill(3);
    basket.Click(1, column::kBezeichnung);
    basket.TypeOver(L"neu");
    Run(Command::mnuEditZeilenNachUnten);
    EXPECT_EQ(Lines(), (Texts{L"r2", L"neu", L"3"}));
    EXPECT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.form.State().EditRow, 2);
    EXPECT_EQ(basket.view.text, L"neu");
}

TEST_F(RowCommands, MovingTheLineWhoseNumberWasJustTypedLeavesTheOthersAlone) {
    Fill(3);
    basket.Click(2, column::kArtNr);
    basket.view.Type(L"4712");
    Run(Command::mnuEditZeilenNachUnten);
    EXPECT_EQ(Lines(), (Texts{L"r1", L"3", L"1"})) << basket.AsText();
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"400,00");
    EXPECT_FALSE(basket.form.State().SuppressEditor);
}

TEST_F(RowCommands, AnErrorInTheMiddleOfAMoveLeavesGridAndEditorUsable) {
    Fill(3);
    basket.Click(3, column::kMenge);
    basket.view.Select(0, static_cast<std::int32_t>(basket.view.text.size()));
    basket.view.Paste(L"1e307");  // no number is large enough for the line's total
    EXPECT_EQ(RaisedBy([&] { Run(Command::mnuEditZeilenNachOben); }), 6);
    EXPECT_FALSE(basket.form.State().SuppressEditor);
    EXPECT_TRUE(basket.grid.Redraw());
    EXPECT_EQ(basket.Cell(3, column::kMenge), L"1e307");
}

// --- clipboard

TEST_F(RowCommands, CutCopyAndPasteGoToTheTextBox) {
    Run(Command::mnuEditAusschneiden);
    Run(Command::mnuEditKopieren);
    Run(Command::mnuEditEinfuegen);
    EXPECT_EQ(basket.view.edit_keys,
              (std::vector<EditKey>{EditKey::kCut, EditKey::kCopy, EditKey::kPaste}));
    EXPECT_EQ(basket.clipboard.sets, 0);
}

TEST_F(RowCommands, TheWholeBasketIsTitlesLinesAndTotalsWithoutHiddenColumns) {
    basket.Link(L"4711", 2, L"K", L"U");
    basket.Link(L"1000");
    Run(Command::mnuDateiSendenanZwischenablage);
    EXPECT_EQ(basket.clipboard.text,
              L"ArtNr\tBezeichnung\tMenge\tPreis ATS\tPreis EURO\tGesamt ATS\tGes. EURO\r\n"
              L"4711\tEau de Cologne\t2\t100,00\t7,27\t200,00\t14,54\r\n"
              L"1000\tBleistift HB\t1\t3,50\t0,25\t3,50\t0,25\r\n"
              L"Gesamt\t\t\t\t203,50\t14,79\r\n");
}

TEST_F(RowCommands, TheSelectionCollapsesEmptyLeadingCells) {
    basket.Link(L"");
    basket.Click(1, column::kBezeichnung);
    basket.view.Type(L"Text");
    basket.Link(L"4711", 1, L"K");
    basket.Select(2, column::kMenge, 1, column::kArtNr);
    Run(Command::mnuContextCopySelectionToClipboard);
    EXPECT_EQ(basket.clipboard.text, L"Text\t\r\n4711\tEau de Cologne\t1\r\n");
}

TEST_F(RowCommands, TheSelectionLeavesHiddenColumnsOut) {
    basket.Link(L"4711", 1, L"K", L"U");
    basket.Select(1, column::kPreisEuro, 1, column::kGesamtAts);
    Run(Command::mnuContextCopySelectionToClipboard);
    EXPECT_EQ(basket.clipboard.text, L"7,27\t100,00\r\n");
}

TEST_F(RowCommands, CopyingCommitsWhatIsBeingTyped) {
    Fill(1);
    basket.Click(1, column::kBezeichnung);
    basket.TypeOver(L"frisch");
    Run(Command::mnuContextCopySelectionToClipboard);
    EXPECT_EQ(basket.clipboard.text, L"frisch\r\n");
    basket.Click(1, column::kArtNr);
    basket.Click(1, column::kBezeichnung);
    basket.TypeOver(L"neu");
    Run(Command::mnuDateiSendenanZwischenablage);
    EXPECT_NE(basket.clipboard.text.find(L"\r\nneu\t\t\t\t\t\r\n"), std::wstring::npos);
}

TEST_F(RowCommands, AClipboardHeldByAnotherProgramIsReportedAndNothingIsLost) {
    Fill(1);
    basket.clipboard.text = L"fremd";
    basket.clipboard.held_by_another = true;
    basket.Click(1, column::kBezeichnung);
    basket.TypeOver(L"bleibt");
    EXPECT_EQ(RaisedBy([&] { Run(Command::mnuContextCopySelectionToClipboard); }), 521);
    EXPECT_EQ(RaisedBy([&] { Run(Command::mnuDateiSendenanZwischenablage); }), 521);
    EXPECT_EQ(basket.clipboard.text, L"fremd");
    EXPECT_EQ(basket.Cell(1, column::kBezeichnung), L"bleibt");
}

}  // namespace
}  // namespace demovex
