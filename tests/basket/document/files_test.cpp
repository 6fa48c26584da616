#include "basket/document/files.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "tests/support/files_fixture.h"

namespace demovex {
namespace {

using Texts = std::vector<std::wstring>;

constexpr wchar_t kQuestion[] = L"Möchten Sie die Änderungen im aktuellen Warenkorb speichern ?";

class BasketFilesTest : public testing::Test, protected FilesFixture {
  protected:
    // One article row as in a basket that was ordered from, and whether it counts as changed.
    void FillBasket() {
        Add(L"4711", L"K", L"U", 2);
        state.Modified = true;
    }
    std::int32_t SaveError() {
        return RaisedBy([&] { basket.mnuDateiSpeichern_Click(); });
    }
    bool Abandons() {
        bool cancel = false;
        basket.QuerySaveChanges(cancel);
        return cancel;
    }
};

// --- saving

TEST_F(BasketFilesTest, ASavedBasketHasAHeaderAndALineForEachRowWithoutTrailingEmptyFields) {
    FillBasket();
    Add(L"", L"", L"", 1);
    state.CurrentPath = folder / L"a.bsk";
    basket.mnuDateiSpeichern_Click();
    EXPECT_EQ(folder.Get(L"a.bsk"),
              "DemoVexClient.Client\r\n"
              "4711\tDuftwasser\t2\t100,00\t7,27\tK\tU\t200,00\t14,54\r\n"
              "\r\n");
    EXPECT_FALSE(state.Modified);
    EXPECT_EQ(folder.Count(), 1);
    EXPECT_EQ(view.progress_depth, 0);
}

TEST_F(BasketFilesTest, EmptyFieldsBeforeAFilledOneAreKept) {
    Add(L"", L"", L"", 1);
    rows.SetCell(1, column::kBezeichnung, L"Grüße €");
    Add(L"", L"", L"", 1);
    rows.SetCell(2, column::kKatalogUrl, L"U");
    state.CurrentPath = folder / L"a.bsk";
    basket.mnuDateiSpeichern_Click();
    EXPECT_EQ(folder.Get(L"a.bsk"),
              "DemoVexClient.Client\r\n\tGr\xFC\xDF"
              "e \x80\r\n\t\t\t\t\t\tU\r\n");
}

TEST_F(BasketFilesTest, AnEmptyBasketIsSavedAsTheHeaderAlone) {
    state.CurrentPath = folder / L"a.bsk";
    basket.mnuDateiSpeichern_Click();
    EXPECT_EQ(folder.Get(L"a.bsk"), "DemoVexClient.Client\r\n");
}

TEST_F(BasketFilesTest, TabsAndLineBreaksInATextForgeNoFieldsOrLines) {
    Add(L"", L"", L"", 1);
    rows.SetCell(1, column::kBezeichnung, L"a\tb\r\nc");
    state.CurrentPath = folder / L"a.bsk";
    basket.mnuDateiSpeichern_Click();
    EXPECT_EQ(folder.Get(L"a.bsk"), "DemoVexClient.Client\r\n\ta b  c\r\n");
}

TEST_F(BasketFilesTest, WhatWasSavedLoadsAsTheSameBasketAndSavesAsTheSameBytes) {
    FillBasket();
    Add(L"", L"", L"", 1);
    rows.SetCell(2, column::kBezeichnung, L"frei");
    Add(L"4713", L"K2", L"", 12);
    state.CurrentPath = folder / L"a.bsk";
    basket.mnuDateiSpeichern_Click();
    const std::string bytes = folder.Get(L"a.bsk");
    const std::string cells = CellsOf(grid);
    basket.Load(folder / L"a.bsk");
    EXPECT_EQ(CellsOf(grid), cells);
    basket.mnuDateiSpeichern_Click();
    EXPECT_EQ(folder.Get(L"a.bsk"), bytes);
}

TEST_F(BasketFilesTest, TheCellBeingEditedIsSavedToo) {
    FillBasket();
    state.CurrentPath = folder / L"a.bsk";
    editor.typed = [&] {
        rows.SetCell(1, column::kMenge, L"9");
        rows.Recalculate(1);
    };
    basket.mnuDateiSpeichern_Click();
    EXPECT_NE(folder.Get(L"a.bsk").find("\t9\t100,00\t"), std::string::npos);
}

TEST_F(BasketFilesTest, ACellThatCannotBeCommittedEndsTheSaveBeforeAnythingIsStored) {
    FillBasket();
    folder.Put(L"a.bsk", "old");
    state.CurrentPath = folder / L"a.bsk";
    editor.typed = [] { RaiseRuntimeError(runtime_error::kTypeMismatch); };
    EXPECT_EQ(SaveError(), 13);
    EXPECT_EQ(folder.Get(L"a.bsk"), "old");
    EXPECT_TRUE(settings.values.empty());
    EXPECT_TRUE(state.Modified);
}

TEST_F(BasketFilesTest, AShorterBasketLeavesNothingOfTheOldFile) {
    folder.Put(L"a.bsk", std::string(1000, 'x'));
    state.CurrentPath = folder / L"a.bsk";
    messages.answers = {MessageAnswer::kYes};
    basket.mnuDateiSpeichern_Click();
    EXPECT_EQ(folder.Get(L"a.bsk"), "DemoVexClient.Client\r\n");
}

TEST_F(BasketFilesTest, SavingPutsThePathAtTheHeadOfTheRecentFiles) {
    settings.Set(L"LRU", L"File1", L"other");
    settings.Set(L"LRU", L"File2", folder / L"A.BSK");
    state.CurrentPath = folder / L"a.bsk";
    basket.mnuDateiSpeichern_Click();
    EXPECT_EQ(settings.Get(L"LRU", L"File1", L""), folder / L"a.bsk");
    EXPECT_EQ(settings.Get(L"LRU", L"File2", L""), L"other");
    EXPECT_EQ(settings.Get(L"LRU", L"File3", L"<none>"), L"<none>");
}

TEST_F(BasketFilesTest, TheRecentFilesKnowThePathBeforeTheFileIsWritten) {
    FillBasket();
    state.CurrentPath = folder / L"a.bsk";
    files.FailAt(1, runtime_error::kDiskFull);
    EXPECT_EQ(SaveError(), 61);
    EXPECT_EQ(settings.Get(L"LRU", L"File1", L""), folder / L"a.bsk");
    EXPECT_EQ(folder.Count(), 0);
}

TEST_F(BasketFilesTest, AReadOnlyTargetRaisesAndTheBasketStaysModified) {
    FillBasket();
    folder.Put(L"a.bsk", "old");
    folder.SetReadOnly(L"a.bsk", true);
    state.CurrentPath = folder / L"a.bsk";
    messages.answers = {MessageAnswer::kYes};
    const std::string cells = CellsOf(grid);
    EXPECT_EQ(SaveError(), 75);
    EXPECT_EQ(folder.Get(L"a.bsk"), "old");
    EXPECT_EQ(folder.Count(), 1);
    EXPECT_TRUE(state.Modified);
    EXPECT_EQ(state.CurrentPath, folder / L"a.bsk");
    EXPECT_EQ(CellsOf(grid), cells);
    EXPECT_EQ(view.progress_depth, 0);
    EXPECT_EQ(messages.shown.size(), 1u);  // the question
}

TEST_F(BasketFilesTest, AMissingFolderAndAPathOf32000CharactersAreRaised) {
    FillBasket();
    state.CurrentPath = folder / L"fehlt\\a.bsk";
    EXPECT_EQ(SaveError(), 76);
    state.CurrentPath = folder / (std::wstring(32000, L'x') + L"\\a.bsk");
    EXPECT_NE(SaveError(), 0);
    EXPECT_TRUE(state.Modified);
    EXPECT_EQ(folder.Count(), 0);
}

TEST_F(BasketFilesTest, ATargetInUseForAMomentIsWaitedFor) {
    FillBasket();
    folder.Put(L"a.bsk", "old");
    state.CurrentPath = folder / L"a.bsk";
    messages.answers = {MessageAnswer::kYes};
    files.FailAt(5, runtime_error::kPermissionDenied, 10);
    EXPECT_EQ(SaveError(), 0);
    EXPECT_EQ(clock.waits, 10);
    EXPECT_FALSE(state.Modified);
    EXPECT_EQ(folder.Count(), 1);
}

TEST_F(BasketFilesTest, CharactersBeyondTheCodePageAreSavedAsQuestionMarksAndSaidInTheStatusBar) {
    Add(L"", L"", L"", 1);
    rows.SetCell(1, column::kBezeichnung, L"\u0416a\u0416");
    state.CurrentPath = folder / L"a.bsk";
    view.status = L"";
    basket.mnuDateiSpeichern_Click();
    EXPECT_EQ(folder.Get(L"a.bsk"), "DemoVexClient.Client\r\n\t?a?\r\n");
    EXPECT_NE(view.status.find(L"als ? gespeichert"), std::wstring::npos);
    EXPECT_FALSE(state.Modified);

    rows.SetCell(1, column::kBezeichnung, L"ä €");
    view.status = L"";
    basket.mnuDateiSpeichern_Click();
    EXPECT_EQ(view.status, L"");
}

TEST_F(BasketFilesTest, ALongSaveTellsItsProgressAndEndsIt) {
    for (int i = 0; i < 2000; ++i) Add(i % 2 == 0 ? L"4711" : L"4712", L"", L"", 1);
    state.CurrentPath = folder / L"a.bsk";
    basket.mnuDateiSpeichern_Click();
    EXPECT_EQ(view.progress_depth, 0);
    ASSERT_GE(view.progress.size(), 7u);
    for (std::size_t i = 1; i < view.progress.size(); ++i) {
        EXPECT_LT(view.progress[i - 1], view.progress[i]);
    }
    EXPECT_EQ(view.progress.back(), 1);
}

// Each file operation of a save fails with each error, once or from then on. The target is the old
// file or the new one, the basket is intact, still modified after an error, the error says what
// happened, and a later save leaves the target alone in its folder.
TEST_F(BasketFilesTest, ASaveThatFailsAnywhereLosesNeitherFileNorBasket) {
    const std::map<std::int32_t, std::wstring> says = {
        {runtime_error::kDiskFull, L"Disk full"},
        {runtime_error::kPathFileAccessError, L"Path/File access error"},
        {runtime_error::kPermissionDenied, L"Permission denied"},
        {runtime_error::kPathNotFound, L"Path not found"}};
    FillBasket();
    state.CurrentPath = folder / L"a.bsk";
    messages.otherwise = MessageAnswer::kYes;  // "old" is not this basket's
    const std::string cells = CellsOf(grid);
    const std::string fresh =
        "DemoVexClient.Client\r\n4711\tDuftwasser\t2\t100,00\t7,27\tK\tU\t200,00\t14,54\r\n";
    int points = 0;
    int recovered = 0;
    for (const bool had_old : {true, false}) {
        for (const auto& [number, description] : says) {
            for (const int times : {1, 1000}) {
                for (int n = 1;; ++n) {
                    FaultyFileSystem faulty(disk);
                    faulty.FailAt(n, number, times);
                    Services own = With(services, faulty);
                    BasketContext own_context{grid, rows, view, own, state};
                    BasketFiles own_basket(own_context, editor, recent, &clock);
                    if (had_old) folder.Put(L"a.bsk", "old");
                    state.Modified = true;
                    std::wstring raised;
                    try {
                        own_basket.mnuDateiSpeichern_Click();
                    } catch (const Error& error) {
                        raised = error.description();
                        EXPECT_EQ(error.number(), number);
                    }
                    const bool happened = faulty.count() >= n;
                    if (happened) ++points;
                    if (raised.empty()) {
                        if (happened) ++recovered;
                        EXPECT_EQ(folder.Get(L"a.bsk"), fresh);
                        EXPECT_FALSE(state.Modified);
                    } else {
                        EXPECT_EQ(raised, L"Datei '" + ShownPath(folder / L"a.bsk") +
                                              L"' kann nicht gespeichert werden: " + description);
                        EXPECT_EQ(folder.Get(L"a.bsk"), had_old ? "old" : "<missing>");
                        EXPECT_TRUE(state.Modified);
                    }
                    EXPECT_EQ(CellsOf(grid), cells);
                    EXPECT_EQ(state.CurrentPath, folder / L"a.bsk");
                    EXPECT_EQ(view.progress_depth, 0);

                    basket.mnuDateiSpeichern_Click();
                    EXPECT_EQ(folder.Get(L"a.bsk"), fresh);
                    EXPECT_EQ(folder.Count(), 1);
                    EXPECT_FALSE(state.Modified);
                    std::filesystem::remove(ToNativePath(folder / L"a.bsk"));
                    ASSERT_FALSE(HasFailure())
                        << "operation " << n << ", error " << number << ", " << times << " times";
                    if (!happened) break;
                }
            }
        }
    }
    EXPECT_GT(recovered, 0);
    EXPECT_GE(points, 80);
    std::printf("basket save under faults: %d points covered, %d recovered by trying again\n",
                points, recovered);
}

// The same with the program ending at each operation, as far as one process can play it; the real
// thing is tests/e2e_save.
TEST_F(BasketFilesTest, ASaveThatEndsAnywhereLeavesTheOldOrTheNewFile) {
    FillBasket();
    state.CurrentPath = folder / L"a.bsk";
    int points = 0;
    for (int n = 1;; ++n) {
        FaultyFileSystem faulty(disk);
        faulty.KillAt(n);
        folder.Put(L"a.bsk", "old");
        try {
            SaveFile(faulty, text, state.CurrentPath, L"new", {.clock = &clock});
        } catch (const Killed&) {
        }
        if (!faulty.killed()) break;
        ++points;
        EXPECT_EQ(folder.Get(L"a.bsk"), "old") << n;
        SaveFile(disk, text, state.CurrentPath, L"later", {.clock = &clock});
        EXPECT_EQ(folder.Get(L"a.bsk"), "later") << n;
        EXPECT_EQ(folder.Count(), 1) << n;
    }
    EXPECT_EQ(points, 5);
}

// --- Save As

TEST_F(BasketFilesTest, SavingABasketWithoutFileAsksForOne) {
    FillBasket();
    dialogs.Choose(folder / L"neu.bsk");
    basket.mnuDateiSpeichern_Click();
    ASSERT_EQ(dialogs.shown.size(), 1u);
    EXPECT_TRUE(dialogs.shown[0].save);
    EXPECT_EQ(dialogs.shown[0].request.init_dir, services.component_folder);
    EXPECT_EQ(dialogs.shown[0].request.file_name, L"");
    EXPECT_EQ(dialogs.shown[0].request.title, L"Speichern unter");
    EXPECT_EQ(dialogs.shown[0].request.filter, L"Warenkorb Dateien (*.bsk)|*.bsk");
    EXPECT_EQ(state.CurrentPath, folder / L"neu.bsk");
    EXPECT_EQ(state.Caption, L"Vexmart Demo Warenkorb 1.1 - neu.bsk");
    EXPECT_EQ(settings.Get(L"LRU", L"File1", L""), folder / L"neu.bsk");
    EXPECT_NE(folder.Get(L"neu.bsk").find("4711"), std::string::npos);
    EXPECT_FALSE(state.Modified);
}

TEST_F(BasketFilesTest, SaveAsStartsAtTheCurrentFile) {
    state.CurrentPath = L"C:\\a/b\\c.bsk";
    basket.mnuDateiSpeichernUnter_Click();
    ASSERT_EQ(dialogs.shown.size(), 1u);
    EXPECT_EQ(dialogs.shown[0].request.init_dir, L"C:\\a/b");
    EXPECT_EQ(dialogs.shown[0].request.file_name, L"c.bsk");
}

TEST_F(BasketFilesTest, SaveAsCommitsTheCellBeingEditedBeforeItAsks) {
    std::size_t asked = 1;
    editor.typed = [&] { asked = dialogs.shown.size(); };
    basket.mnuDateiSpeichernUnter_Click();
    EXPECT_EQ(asked, 0u);
    EXPECT_EQ(dialogs.shown.size(), 1u);
}

TEST_F(BasketFilesTest, ACancelledSaveAsChangesNothing) {
    FillBasket();
    state.CurrentPath = folder / L"a.bsk";
    basket.mnuDateiSpeichernUnter_Click();
    EXPECT_EQ(state.CurrentPath, folder / L"a.bsk");
    EXPECT_TRUE(state.Modified);
    EXPECT_EQ(folder.Count(), 0);
    EXPECT_TRUE(settings.values.empty());
}

TEST_F(BasketFilesTest, AFailedSaveAsLeavesPathCaptionAndChangesAsTheyWere) {
    FillBasket();
    state.CurrentPath = folder / L"a.bsk";
    basket.mnuDateiSpeichern_Click();
    state.Modified = true;
    SetBasketCaption(context, L"Vexmart Demo Warenkorb 1.1 - a.bsk");
    dialogs.Choose(folder / L"fehlt\\b.bsk");
    EXPECT_EQ(RaisedBy([&] { basket.mnuDateiSpeichernUnter_Click(); }), 76);
    EXPECT_EQ(state.CurrentPath, folder / L"a.bsk");
    EXPECT_EQ(state.Caption, L"Vexmart Demo Warenkorb 1.1 - a.bsk");
    EXPECT_EQ(view.caption, L"Vexmart Demo Warenkorb 1.1 - a.bsk");
    EXPECT_TRUE(state.Modified);
    // and the next save goes to the old file, which the basket still knows
    basket.mnuDateiSpeichern_Click();
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_FALSE(state.Modified);
}

TEST_F(BasketFilesTest, AFailedSaveAsOfANewBasketLeavesItWithoutAFile) {
    FillBasket();
    dialogs.Choose(folder / L"fehlt\\b.bsk");
    EXPECT_EQ(RaisedBy([&] { basket.mnuDateiSpeichernUnter_Click(); }), 76);
    EXPECT_EQ(state.CurrentPath, L"");
    EXPECT_EQ(state.Caption, kDesignedCaption);
    EXPECT_TRUE(state.Modified);
}

// --- the question

TEST_F(BasketFilesTest, AnUnmodifiedBasketIsDiscardedWithoutAsking) {
    EXPECT_FALSE(Abandons());
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(BasketFilesTest, TheQuestionOffersYesNoAndCancel) {
    FillBasket();
    messages.answers = {MessageAnswer::kCancel};
    EXPECT_TRUE(Abandons());
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(LastMessage().text, kQuestion);
    EXPECT_EQ(LastMessage().title, L"Schließen");
    EXPECT_EQ(LastMessage().buttons, MessageButtons::kYesNoCancel);
    EXPECT_EQ(LastMessage().icon, MessageIcon::kNone);
    EXPECT_TRUE(state.Modified);
}

TEST_F(BasketFilesTest, NoGoesOnWithoutSaving) {
    FillBasket();
    state.CurrentPath = folder / L"a.bsk";
    messages.answers = {MessageAnswer::kNo};
    EXPECT_FALSE(Abandons());
    EXPECT_EQ(folder.Count(), 0);
    EXPECT_TRUE(state.Modified);
}

TEST_F(BasketFilesTest, YesSavesToTheCurrentFileAndGoesOn) {
    FillBasket();
    state.CurrentPath = folder / L"a.bsk";
    messages.answers = {MessageAnswer::kYes};
    EXPECT_FALSE(Abandons());
    EXPECT_NE(folder.Get(L"a.bsk").find("4711"), std::string::npos);
    EXPECT_TRUE(dialogs.shown.empty());
}

TEST_F(BasketFilesTest, YesForABasketWithoutFileAsksForOneAndACancelledDialogAbandons) {
    FillBasket();
    messages.answers = {MessageAnswer::kYes, MessageAnswer::kYes};
    EXPECT_TRUE(Abandons());
    EXPECT_EQ(dialogs.shown.size(), 1u);
    dialogs.Choose(folder / L"neu.bsk");
    EXPECT_FALSE(Abandons());
    EXPECT_EQ(folder.Count(), 1);
}

TEST_F(BasketFilesTest, YesWithASaveThatFailsAbandonsAndRaises) {
    FillBasket();
    state.CurrentPath = folder / L"fehlt\\a.bsk";
    messages.answers = {MessageAnswer::kYes};
    bool cancel = false;
    EXPECT_EQ(RaisedBy([&] { basket.QuerySaveChanges(cancel); }), 76);
    EXPECT_TRUE(cancel);
    EXPECT_TRUE(state.Modified);
}

// --- New

TEST_F(BasketFilesTest, NewEmptiesTheBasketAndForgetsItsFile) {
    FillBasket();
    state.CurrentPath = folder / L"a.bsk";
    messages.answers = {MessageAnswer::kNo};
    const int handled = editor.row_col_changes;
    basket.mnuDateiNeu_Click();
    EXPECT_EQ(grid.Rows(), 2);
    EXPECT_EQ(Cell(1, column::kBezeichnung), L"Gesamt");
    EXPECT_EQ(Cell(1, column::kGesamtAts), L"");
    EXPECT_EQ(Cell(1, column::kGesamtEuro), L"");
    EXPECT_EQ(grid.Col(), 2);
    EXPECT_TRUE(grid.Redraw());
    EXPECT_EQ(editor.row_col_changes, handled + 1);
    EXPECT_EQ(state.CurrentPath, L"");
    EXPECT_EQ(view.caption, L"Vexmart Demo Warenkorb 1.1");
    EXPECT_EQ(state.Caption, L"Vexmart Demo Warenkorb 1.1");
    EXPECT_FALSE(state.Modified);
    EXPECT_FALSE(state.SuppressEditor);
}

TEST_F(BasketFilesTest, NewTakesTheRowsAwayWhileNothingIsPainted) {
    FillBasket();
    state.Modified = false;
    struct Watching final : IFlexGridEvents {
        explicit Watching(FlexGrid& watched) : grid(watched) {}
        void RowColChange() override { painted.emplace_back(grid.Rows(), grid.Redraw()); }
        void SelChange() override {}
        void Scroll() override {}
        FlexGrid& grid;
        std::vector<std::pair<std::int32_t, bool>> painted;
    } watching(grid);
    Add(L"4713", L"", L"", 1);
    state.Modified = false;
    grid.SetRow(2);
    grid.SetCol(column::kArtNr);
    grid.SetEvents(&watching);
    basket.mnuDateiNeu_Click();
    grid.SetEvents(nullptr);
    // the row that was current goes with the others, then the description becomes current
    EXPECT_EQ(watching.painted,
              (std::vector<std::pair<std::int32_t, bool>>{{2, false}, {2, true}}));
}

TEST_F(BasketFilesTest, ANewThatBreaksOffLeavesAGridThatIsPaintedAndAnEditorThatOpens) {
    FillBasket();
    state.Modified = false;
    struct Raising final : IFlexGridEvents {
        void RowColChange() override { RaiseRuntimeError(runtime_error::kOutOfMemory); }
        void SelChange() override {}
        void Scroll() override {}
    } raising;
    grid.SetRow(2);
    grid.SetEvents(&raising);
    EXPECT_EQ(RaisedBy([&] { basket.mnuDateiNeu_Click(); }), 7);
    grid.SetEvents(nullptr);
    EXPECT_TRUE(grid.Redraw());
    EXPECT_FALSE(state.SuppressEditor);
}

TEST_F(BasketFilesTest, ANewBasketAddsUpFromZero) {
    FillBasket();
    state.Modified = false;
    basket.mnuDateiNeu_Click();
    Add(L"4712", L"", L"", 1);
    EXPECT_EQ(Cell(2, column::kGesamtAts), L"25,50");
}

TEST_F(BasketFilesTest, AnAbandonedNewChangesNothing) {
    FillBasket();
    const std::string cells = CellsOf(grid);
    messages.answers = {MessageAnswer::kCancel};
    basket.mnuDateiNeu_Click();
    EXPECT_EQ(CellsOf(grid), cells);
    EXPECT_TRUE(state.Modified);
}

TEST_F(BasketFilesTest, ATextBeingTypedIsAskedAbout) {
    for (const auto& command : {+[](BasketFiles& b) { b.mnuDateiNeu_Click(); },
                                +[](BasketFiles& b) { b.mnuDateiOeffnen_Click(); },
                                +[](BasketFiles& b) { b.mnuDateiLRU_Click(1); }}) {
        messages.shown.clear();
        state.Modified = false;
        editor.typed = [&] { state.Modified = true; };
        messages.answers = {MessageAnswer::kCancel};
        command(basket);
        ASSERT_EQ(messages.shown.size(), 1u);
        EXPECT_EQ(LastMessage().text, kQuestion);
        EXPECT_TRUE(dialogs.shown.empty());
    }
}

// --- Open, recent files, Exit

TEST_F(BasketFilesTest, OpenAsksForAFileAndLoadsIt) {
    dialogs.Choose(PutBasket(L"a.bsk", "4711\t\t3\r\n"));
    basket.mnuDateiOeffnen_Click();
    ASSERT_EQ(dialogs.shown.size(), 1u);
    EXPECT_FALSE(dialogs.shown[0].save);
    EXPECT_EQ(dialogs.shown[0].request.init_dir, services.component_folder);
    EXPECT_EQ(dialogs.shown[0].request.file_name, L"");
    EXPECT_EQ(dialogs.shown[0].request.title, L"Öffnen");
    EXPECT_EQ(dialogs.shown[0].request.filter, L"Warenkorb Dateien (*.bsk)|*.bsk");
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4711", L""}));
}

TEST_F(BasketFilesTest, ACancelledOpenIsSilent) {
    state.CurrentPath = L"x";
    basket.mnuDateiOeffnen_Click();
    EXPECT_EQ(state.CurrentPath, L"x");
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(BasketFilesTest, AnAbandonedOpenShowsNoDialog) {
    FillBasket();
    messages.answers = {MessageAnswer::kCancel};
    basket.mnuDateiOeffnen_Click();
    EXPECT_TRUE(dialogs.shown.empty());
}

TEST_F(BasketFilesTest, AnOpenThatFailsIsShownInAPlainMessage) {
    const std::wstring path = PutBasket(L"a.bsk", "4711\t\tabc\r\n");
    dialogs.Choose(path);
    basket.mnuDateiOeffnen_Click();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(LastMessage().text, LoadErrorOf(path, L"Type mismatch"));
    EXPECT_EQ(LastMessage().title, L"Fehler beim öffnen der Datei");
    EXPECT_EQ(LastMessage().buttons, MessageButtons::kOk);
    EXPECT_EQ(LastMessage().icon, MessageIcon::kNone);
    EXPECT_TRUE(grid.Redraw());  // the user goes on with a window that is painted
}

TEST_F(BasketFilesTest, ARecentFileIsLoadedByItsEntry) {
    recent.AddRecentFile(PutBasket(L"a.bsk", "4711\t\t3\r\n"));
    recent.AddRecentFile(PutBasket(L"b.bsk", "4712\t\t3\r\n"));
    basket.mnuDateiLRU_Click(2);
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4711", L""}));
    EXPECT_EQ(settings.Get(L"LRU", L"File1", L""), folder / L"a.bsk");
    EXPECT_EQ(recent.Tag(1), folder / L"b.bsk");
}

TEST_F(BasketFilesTest, ARecentFileThatWasDeletedIsReportedWithTheStopSign) {
    const std::wstring path = folder / L"weg.bsk";
    recent.AddRecentFile(path);
    basket.mnuDateiLRU_Click(1);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(LastMessage().text, LoadErrorOf(path, L"File '" + path + L"' not found"));
    EXPECT_EQ(LastMessage().title, L"Fehler beim Öffnen einer Datei");
    EXPECT_EQ(LastMessage().buttons, MessageButtons::kOk);
    EXPECT_EQ(LastMessage().icon, MessageIcon::kCritical);
    EXPECT_EQ(recent.Tag(1), path);
}

TEST_F(BasketFilesTest, AfterARecentFileThatFailedHalfWayTheGridIsPainted) {
    recent.AddRecentFile(PutBasket(L"a.bsk", "4711\t\t1\r\n4712\t\tabc\r\n"));
    basket.mnuDateiLRU_Click(1);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4711", L"4712", L""}));
    EXPECT_TRUE(grid.Redraw());
}

TEST_F(BasketFilesTest, AnAbandonedRecentFileIsNotLoaded) {
    recent.AddRecentFile(PutBasket(L"a.bsk", "4711\t\t3\r\n"));
    Add(L"4712", L"", L"", 1);
    messages.answers = {MessageAnswer::kCancel};
    basket.mnuDateiLRU_Click(1);
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4712", L""}));
}

TEST_F(BasketFilesTest, ExitClosesTheWindowAsTheUserWould) {
    FillBasket();
    basket.mnuDateiBeenden_Click();
    EXPECT_EQ(view.close_requests, 1);
    EXPECT_TRUE(messages.shown.empty());
}

}  // namespace
}  // namespace demovex
