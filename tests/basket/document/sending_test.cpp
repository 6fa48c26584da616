#include "basket/document/sending.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <new>

#include "tests/support/files_fixture.h"

namespace demovex {
namespace {

class SendingTest : public testing::Test, protected FilesFixture {
  protected:
    // Rows 1 to 5 are articles, row 6 is an empty one.
    SendingTest() {
        for (const wchar_t* nr : {L"4711", L"4712", L"4713", L"4711", L"4712"}) {
            Add(nr, L"K", L"U", 1);
        }
        Add(L"", L"", L"", 1);
        state.Modified = false;
        Select(1, 1);
    }
    void Select(std::int32_t row, std::int32_t row_sel) {
        grid.SetRow(row);
        grid.SetCol(1);
        grid.SetRowSel(row_sel);
    }
    static constexpr char k4711[] = "4711\tDuftwasser\t1\t100,00\t7,27\tK\tU\t100,00\t7,27\r\n";
    static constexpr char k4712[] = "4712\tSeife\t1\t25,50\t1,85\tK\tU\t25,50\t1,85\r\n";
    static constexpr char k4713[] =
        "4713\tB\xFCrste\t1\t1.000,00\t72,67\tK\tU\t1.000,00\t72,67\r\n";
};

TEST_F(SendingTest, ASelectionMadeUpwardsIsSentFromTopToBottom) {
    Select(5, 3);
    sending.AppendSelection(folder / L"a.bsk");
    EXPECT_EQ(folder.Get(L"a.bsk"), std::string(k4713) + k4711 + k4712);
}

TEST_F(SendingTest, ASelectionMadeDownwardsIsSentInTheSameOrder) {
    Select(3, 5);
    sending.AppendSelection(folder / L"a.bsk");
    EXPECT_EQ(folder.Get(L"a.bsk"), std::string(k4713) + k4711 + k4712);
}

TEST_F(SendingTest, WithoutASelectionTheCurrentRowIsSent) {
    Select(2, 2);
    sending.AppendSelection(folder / L"a.bsk");
    EXPECT_EQ(folder.Get(L"a.bsk"), k4712);
}

TEST_F(SendingTest, AnEmptyRowIsALineOfEightTabs) {
    Select(6, 6);
    sending.AppendSelection(folder / L"a.bsk");
    EXPECT_EQ(folder.Get(L"a.bsk"), "\t\t\t\t\t\t\t\t\r\n");
}

TEST_F(SendingTest, TheTotalsRowIsSentWhenTheSelectionReachesIt) {
    Select(6, 7);
    sending.AppendSelection(folder / L"a.bsk");
    EXPECT_EQ(folder.Get(L"a.bsk"), "\t\t\t\t\t\t\t\t\r\n\tGesamt\t\t\t\t\t\t1.251,00\t90,91\r\n");
}

TEST_F(SendingTest, LinesAreAppendedToWhatIsThere) {
    PutBasket(L"a.bsk", k4711);
    Select(2, 2);
    sending.AppendSelection(folder / L"a.bsk");
    EXPECT_EQ(folder.Get(L"a.bsk"), std::string("DemoVexClient.Client\r\n") + k4711 + k4712);
    EXPECT_EQ(folder.Count(), 1);
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(SendingTest, TheSentLinesLoadIntoTheTarget) {
    Select(1, 6);
    sending.AppendSelection(folder / L"a.bsk");
    basket.Load(folder / L"a.bsk");
    EXPECT_EQ(ArticleNumbers(),
              (std::vector<std::wstring>{L"4711", L"4712", L"4713", L"4711", L"4712", L"", L""}));
}

TEST_F(SendingTest, TheSendingBasketStaysAsItIs) {
    const std::string cells = CellsOf(grid);
    state.Modified = true;
    sending.AppendSelection(folder / L"a.bsk");
    EXPECT_TRUE(state.Modified);
    state.Modified = false;
    sending.AppendSelection(folder / L"a.bsk");
    EXPECT_FALSE(state.Modified);
    EXPECT_EQ(CellsOf(grid), cells);
    EXPECT_EQ(view.progress_depth, 0);
}

TEST_F(SendingTest, ARecentEntryReceivesTheRowsAndTheListStays) {
    recent.AddRecentFile(folder / L"b.bsk");
    recent.AddRecentFile(folder / L"a.bsk");
    const auto stored = settings.values;
    editor.typed = [&] { rows.SetCell(1, column::kBezeichnung, L"getippt"); };
    sending.mnuContextSendTo_Click(2);
    EXPECT_EQ(folder.Get(L"b.bsk"), "4711\tgetippt\t1\t100,00\t7,27\tK\tU\t100,00\t7,27\r\n");
    EXPECT_EQ(settings.values, stored);
    EXPECT_EQ(recent.Tag(1), folder / L"a.bsk");
}

TEST_F(SendingTest, AFileChosenInTheDialogHeadsTheRecentFiles) {
    recent.AddRecentFile(folder / L"b.bsk");
    dialogs.Choose(folder / L"neu.bsk");
    sending.mnuContextSendToOther_Click();
    ASSERT_EQ(dialogs.shown.size(), 1u);
    EXPECT_TRUE(dialogs.shown[0].save);
    EXPECT_EQ(dialogs.shown[0].request.init_dir, services.component_folder);
    EXPECT_EQ(dialogs.shown[0].request.file_name, L"");
    EXPECT_EQ(dialogs.shown[0].request.title, L"Warenkorb wählen");
    EXPECT_EQ(dialogs.shown[0].request.filter, L"Warenkorb Dateien (*.bsk)|*.bsk");
    EXPECT_EQ(folder.Get(L"neu.bsk"), k4711);
    EXPECT_EQ(settings.Get(L"LRU", L"File1", L""), folder / L"neu.bsk");
    EXPECT_EQ(view.menu_captions[Command::mnuDateiLRU1], L"&1 " + (folder / L"neu.bsk"));
    EXPECT_EQ(view.menu_captions[Command::mnuContextSendTo1],
              L"&1 Selektion senden an " + (folder / L"neu.bsk"));
    EXPECT_EQ(state.CurrentPath, L"");
}

TEST_F(SendingTest, ACancelledDialogSendsNothing) {
    editor.commits = 0;
    sending.mnuContextSendToOther_Click();
    EXPECT_EQ(folder.Count(), 0);
    EXPECT_EQ(editor.commits, 0);
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_TRUE(settings.values.empty());
}

TEST_F(SendingTest, TheCellBeingEditedIsSentToo) {
    editor.typed = [&] { rows.SetCell(1, column::kBezeichnung, L"getippt"); };
    sending.AppendSelection(folder / L"a.bsk");
    EXPECT_EQ(folder.Get(L"a.bsk"), "4711\tgetippt\t1\t100,00\t7,27\tK\tU\t100,00\t7,27\r\n");
}

TEST_F(SendingTest, ACellThatCannotBeCommittedEndsTheCommandBeforeTheListIsChanged) {
    dialogs.Choose(folder / L"neu.bsk");
    editor.typed = [] { RaiseRuntimeError(runtime_error::kTypeMismatch); };
    EXPECT_EQ(RaisedBy([&] { sending.mnuContextSendToOther_Click(); }), 13);
    EXPECT_TRUE(settings.values.empty());
    EXPECT_EQ(folder.Count(), 0);
}

TEST_F(SendingTest, AFileThatCannotBeWrittenHeadsTheRecentFilesAllTheSame) {
    dialogs.Choose(folder / L"fehlt\\a.bsk");
    sending.mnuContextSendToOther_Click();
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(settings.Get(L"LRU", L"File1", L""), folder / L"fehlt\\a.bsk");
}

TEST_F(SendingTest, TheEndOfMemoryIsReportedLikeAnyFailure) {
    struct Exhausted final : FaultyFileSystem {
        using FaultyFileSystem::FaultyFileSystem;
        std::unique_ptr<IOutputFile> OpenAppend(std::wstring_view) override {
            throw std::bad_alloc();
        }
    } exhausted(disk);
    Services own = With(services, exhausted);
    BasketContext own_context{grid, rows, view, own, state};
    Sending(own_context, editor, recent).AppendSelection(folder / L"a.bsk");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(LastMessage().text,
              L"Kann Bestelldaten nicht an '" + (folder / L"a.bsk") + L"' senden: Out of memory");
}

TEST_F(SendingTest, AReadOnlyTargetIsReportedAndUnchanged) {
    folder.Put(L"a.bsk", "old");
    folder.SetReadOnly(L"a.bsk", true);
    sending.AppendSelection(folder / L"a.bsk");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(LastMessage().text, L"Kann Bestelldaten nicht an '" + (folder / L"a.bsk") +
                                      L"' senden: Path/File access error");
    EXPECT_EQ(LastMessage().title, L"");
    EXPECT_EQ(LastMessage().buttons, MessageButtons::kOk);
    EXPECT_EQ(LastMessage().icon, MessageIcon::kNone);
    EXPECT_EQ(folder.Get(L"a.bsk"), "old");
}

TEST_F(SendingTest, AMissingFolderIsReported) {
    sending.AppendSelection(folder / L"fehlt\\a.bsk");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(LastMessage().text, L"Kann Bestelldaten nicht an '" + (folder / L"fehlt\\a.bsk") +
                                      L"' senden: Path not found");
}

TEST_F(SendingTest, CharactersBeyondTheCodePageAreSentAsQuestionMarksAndSaid) {
    rows.SetCell(6, column::kBezeichnung, L"\u0416");
    Select(6, 6);
    sending.AppendSelection(folder / L"a.bsk");
    EXPECT_EQ(folder.Get(L"a.bsk"), "\t?\t\t\t\t\t\t\t\r\n");
    EXPECT_NE(view.status.find(L"als ? gespeichert"), std::wstring::npos);
}

// Each operation fails with each error: the target keeps what it had, followed by whole lines.
TEST_F(SendingTest, AppendingThatFailsAnywhereLeavesWholeLines) {
    const std::string lines[] = {k4711, k4712, k4713};
    int points = 0;
    for (const std::int32_t number : {61, 70, 75, 76, 57}) {
        for (int n = 1;; ++n) {
            messages.shown.clear();
            folder.Put(L"a.bsk", "old\r\n");
            FaultyFileSystem faulty(disk);
            faulty.FailAt(n, number);
            Services own = With(services, faulty);
            BasketContext own_context{grid, rows, view, own, state};
            Select(1, 3);
            Sending(own_context, editor, recent).AppendSelection(folder / L"a.bsk");
            if (faulty.count() < n) {
                EXPECT_TRUE(messages.shown.empty());
                EXPECT_EQ(folder.Get(L"a.bsk"), "old\r\n" + lines[0] + lines[1] + lines[2]);
                break;
            }
            ++points;
            ASSERT_EQ(messages.shown.size(), 1u);
            EXPECT_EQ(LastMessage().text, L"Kann Bestelldaten nicht an '" + (folder / L"a.bsk") +
                                              L"' senden: " +
                                              std::wstring(StandardDescription(number)));
            std::string expected = "old\r\n";
            for (int written = 0; written < std::min(n - 2, 3); ++written) {
                expected += lines[written];
            }
            EXPECT_EQ(folder.Get(L"a.bsk"), expected) << "operation " << n;
        }
    }
    EXPECT_EQ(points, 30);
    std::printf("sending under faults: %d points covered\n", points);
}

}  // namespace
}  // namespace demovex
