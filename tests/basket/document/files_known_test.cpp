// What a basket knows of its file: no save destroys what it does not know; paths made absolute
// once; a recent list that stands in nobody's way; a load that Escape ends.
#include <gtest/gtest.h>

#include <filesystem>

#include "basket/document/files.h"
#include "tests/support/files_fixture.h"

namespace demovex {
namespace {

using Texts = std::vector<std::wstring>;

class KnownFile : public testing::Test, protected FilesFixture {
  protected:
    // A basket that was saved as "a.bsk" and has changed since.
    void SaveAndChange() {
        Add(L"4711", L"K", L"U", 2);
        dialogs.Choose(path);
        basket.mnuDateiSpeichern_Click();
        ASSERT_EQ(messages.shown.size(), 0u);
        Add(L"4712", L"", L"", 1);
        state.Modified = true;
    }
    // Saves and answers the question, if it comes; tells whether it came.
    bool Asks(MessageAnswer answer) {
        messages.shown.clear();
        messages.answers = {answer};
        basket.mnuDateiSpeichern_Click();
        messages.answers.clear();
        return !messages.shown.empty();
    }
    bool Saved() { return folder.Get(L"a.bsk").find("4712") != std::string::npos; }

    const std::wstring path = folder / L"a.bsk";
};

TEST_F(KnownFile, ABasketsOwnFileIsReplacedWithoutAQuestion) {
    SaveAndChange();
    EXPECT_FALSE(Asks(MessageAnswer::kNo));
    EXPECT_TRUE(Saved());
    basket.Load(path);
    state.Modified = true;
    EXPECT_FALSE(Asks(MessageAnswer::kNo));
    EXPECT_FALSE(Asks(MessageAnswer::kNo));
}

TEST_F(KnownFile, AFileThatAnotherProgramHasChangedIsAskedFor) {
    SaveAndChange();
    folder.Put(L"a.bsk", "somebody else's");
    EXPECT_TRUE(Asks(MessageAnswer::kNo));
    EXPECT_EQ(LastMessage().title, L"Speichern");
    EXPECT_EQ(LastMessage().text, L"Die Datei '" + path +
                                      L"' wurde inzwischen geändert. Möchten Sie sie "
                                      L"überschreiben ?");
    EXPECT_EQ(LastMessage().buttons, MessageButtons::kYesNo);
    EXPECT_EQ(folder.Get(L"a.bsk"), "somebody else's");
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4711", L"4712", L""}));
    EXPECT_EQ(state.CurrentPath, path);
    EXPECT_TRUE(state.Modified);
    EXPECT_TRUE(Asks(MessageAnswer::kCancel));  // the box was closed
    EXPECT_EQ(folder.Get(L"a.bsk"), "somebody else's");
    EXPECT_TRUE(Asks(MessageAnswer::kYes));
    EXPECT_TRUE(Saved());
    EXPECT_FALSE(state.Modified);
    EXPECT_FALSE(Asks(MessageAnswer::kNo));
}

TEST_F(KnownFile, AFileOfTheSameLengthAndTimeIsAnotherOneAllTheSame) {
    SaveAndChange();
    const std::filesystem::path file = ToNativePath(path);
    const auto written = std::filesystem::last_write_time(file);
    const std::string bytes(folder.Get(L"a.bsk").size(), 'x');
    // the old one stays somewhere, so that the new one cannot be taken for it
    std::filesystem::rename(file, ToNativePath(folder / L"b.bsk"));
    folder.Put(L"a.bsk", bytes);
    std::filesystem::last_write_time(file, written);
    if (disk.Stamp(path)->file == disk.Stamp(folder / L"b.bsk")->file) {
        GTEST_SKIP() << "this file system does not tell files apart";
    }
    EXPECT_TRUE(Asks(MessageAnswer::kNo));
    EXPECT_EQ(folder.Get(L"a.bsk"), bytes);
}

TEST_F(KnownFile, LinesThatWereSentToItAreAskedFor) {
    SaveAndChange();
    sending.AppendSelection(path);
    ASSERT_TRUE(messages.shown.empty());
    const std::string sent = folder.Get(L"a.bsk");
    EXPECT_TRUE(Asks(MessageAnswer::kNo));
    EXPECT_EQ(folder.Get(L"a.bsk"), sent);
}

TEST_F(KnownFile, AFileWhoseLoadEndedHalfWayIsAskedFor) {
    SaveAndChange();
    const std::string lines = "4711\t\t1\r\n4712\t\tabc\r\n4713\t\t7\r\n";
    PutBasket(L"a.bsk", lines);
    EXPECT_EQ(LoadError(path), LoadErrorOf(path, L"Type mismatch"));
    rows.SetCell(2, column::kMenge, L"1");
    EXPECT_TRUE(Asks(MessageAnswer::kNo));
    EXPECT_EQ(folder.Get(L"a.bsk"), "DemoVexClient.Client\r\n" + lines);
}

TEST_F(KnownFile, AFileWhosePathWasTakenOverUnreadIsAskedFor) {
    folder.Put(L"a.bsk", "somebody else's");
    state.CurrentPath = path;
    EXPECT_TRUE(Asks(MessageAnswer::kNo));
    EXPECT_EQ(folder.Get(L"a.bsk"), "somebody else's");
}

TEST_F(KnownFile, AFileThatIsGoneIsWrittenAnew) {
    SaveAndChange();
    std::filesystem::remove(ToNativePath(path));
    EXPECT_FALSE(Asks(MessageAnswer::kNo));
    EXPECT_TRUE(Saved());
}

// The dialog has asked already whether the file may go.
TEST_F(KnownFile, SaveAsAsksNoSecondTime) {
    folder.Put(L"b.bsk", "old");
    SaveAndChange();
    dialogs.Choose(folder / L"b.bsk");
    basket.mnuDateiSpeichernUnter_Click();
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_NE(folder.Get(L"b.bsk").find("4712"), std::string::npos);
    EXPECT_FALSE(Asks(MessageAnswer::kNo));
}

TEST_F(KnownFile, ALoadThatCannotBeReadLeavesTheFormerFileKnown) {
    SaveAndChange();
    EXPECT_NE(LoadError(folder / L"fehlt.bsk"), L"");
    EXPECT_EQ(state.CurrentPath, path);
    EXPECT_FALSE(Asks(MessageAnswer::kNo));
}

TEST_F(KnownFile, ABasketThatCameWhileTheQuestionStoodIsNotSavedInItsPlace) {
    SaveAndChange();
    folder.Put(L"a.bsk", "somebody else's");
    const std::wstring other = PutBasket(L"b.bsk", "4713\t\t7\r\n");
    messages.while_open = [&] { basket.Load(other); };
    EXPECT_TRUE(Asks(MessageAnswer::kYes));
    EXPECT_EQ(folder.Get(L"a.bsk"), "somebody else's");
    EXPECT_EQ(folder.Get(L"b.bsk"), "DemoVexClient.Client\r\n4713\t\t7\r\n");
}

TEST_F(KnownFile, ANoBeforeNewKeepsTheBasket) {
    SaveAndChange();
    folder.Put(L"a.bsk", "somebody else's");
    messages.answers = {MessageAnswer::kYes, MessageAnswer::kNo};
    basket.mnuDateiNeu_Click();
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4711", L"4712", L""}));
    EXPECT_EQ(folder.Get(L"a.bsk"), "somebody else's");
    EXPECT_TRUE(state.Modified);
}

// --- paths

// The current folder is that of the whole process: what it was when a basket was loaded counts.
class InFolder {
  public:
    explicit InFolder(const std::filesystem::path& path)
        : before_(std::filesystem::current_path()) {
        std::filesystem::current_path(path);
    }
    ~InFolder() { std::filesystem::current_path(before_); }
    InFolder(const InFolder&) = delete;
    InFolder& operator=(const InFolder&) = delete;

  private:
    std::filesystem::path before_;
};

TEST_F(KnownFile, ARelativePathStandsForTheFolderThatWasCurrentThen) {
    const TempFolder elsewhere;
    PutBasket(L"a.bsk", "4711\t\t1\r\n");
    {
        const InFolder here(folder.path());
        basket.Load(L"a.bsk");
    }
    const InFolder there(elsewhere.path());
    EXPECT_EQ(ToNativePath(state.CurrentPath), ToNativePath(path));
    EXPECT_EQ(recent.Tag(1), state.CurrentPath);
    Add(L"4712", L"", L"", 1);
    EXPECT_FALSE(Asks(MessageAnswer::kNo));
    EXPECT_TRUE(Saved());
    EXPECT_EQ(elsewhere.Count(), 0);
    basket.mnuDateiLRU_Click(1);
    EXPECT_EQ(ArticleNumbers(), (Texts{L"4711", L"4712", L""}));
}

TEST_F(KnownFile, AChosenPathIsMadeAbsoluteToo) {
    Add(L"4712", L"", L"", 1);
    const InFolder here(folder.path());
    dialogs.Choose(L"a.bsk");
    basket.mnuDateiSpeichern_Click();
    EXPECT_EQ(ToNativePath(state.CurrentPath), ToNativePath(path));
    dialogs.Choose(L"b.bsk");
    sending.mnuContextSendToOther_Click();
    EXPECT_EQ(ToNativePath(recent.Tag(1)), ToNativePath(folder / L"b.bsk"));
    EXPECT_EQ(folder.Count(), 2);
}

TEST_F(KnownFile, MessagesShowThePathAsItWasGivenAndNoLongerThanALine) {
    const InFolder here(folder.path());
    EXPECT_EQ(LoadError(L"fehlt.bsk"),
              L"Datei 'fehlt.bsk' kann nicht geöffnet werden: File 'fehlt.bsk' not found");
    const std::wstring endless = L"C:\\" + std::wstring(1'000'000, L'x') + L"\\ende.bsk";
    const std::wstring shown = ShownPath(endless);
    EXPECT_LT(shown.size(), 110u);
    const std::wstring error = LoadError(endless);
    EXPECT_TRUE(error.starts_with(L"Datei '" + shown + L"' kann nicht geöffnet werden: "))
        << error.size();
    EXPECT_LT(error.size(), 400u);

    sending.AppendSelection(endless);
    EXPECT_TRUE(
        LastMessage().text.starts_with(L"Kann Bestelldaten nicht an '" + shown + L"' senden: "));
    EXPECT_LT(LastMessage().text.size(), 400u);
    dialogs.Choose(endless);
    try {
        basket.mnuDateiSpeichernUnter_Click();
        ADD_FAILURE() << "no error";
    } catch (const Error& error_of_save) {
        EXPECT_TRUE(error_of_save.description().starts_with(L"Datei '" + shown +
                                                            L"' kann nicht gespeichert werden: "));
        EXPECT_LT(error_of_save.description().size(), 400u);
    }
}

// --- the recent list

TEST_F(KnownFile, SettingsThatRefuseStopNeitherLoadNorSaveNorSending) {
    settings.refuse = true;
    PutBasket(L"a.bsk", "4711\t\t3\r\n");
    EXPECT_EQ(LoadError(path), L"");
    EXPECT_EQ(Quantities(), (Texts{L"3", L""}));
    Add(L"4712", L"", L"", 1);
    EXPECT_FALSE(Asks(MessageAnswer::kNo));
    EXPECT_TRUE(Saved());
    dialogs.Choose(folder / L"b.bsk");
    basket.mnuDateiSpeichernUnter_Click();
    EXPECT_EQ(folder.Get(L"b.bsk"), folder.Get(L"a.bsk"));
    dialogs.Choose(folder / L"c.bsk");
    sending.mnuContextSendToOther_Click();
    EXPECT_NE(folder.Get(L"c.bsk"), "<missing>");
    EXPECT_TRUE(settings.values.empty());
}

// Steps of a save, as they can be seen from outside.
TEST_F(KnownFile, TheRecentListIsWrittenBeforeTheFileIs) {
    SaveAndChange();
    settings.values.clear();
    files.FailAt(1, runtime_error::kDiskFull, 1000);
    EXPECT_EQ(RaisedBy([&] { basket.mnuDateiSpeichern_Click(); }), 61);
    EXPECT_EQ(settings.Get(L"LRU", L"File1", L""), path);
}

// --- a load that is ended

TEST_F(KnownFile, EscapeEndsALoadHalfWay) {
    std::string lines;
    for (int i = 0; i < 2000; ++i) lines += i % 2 == 0 ? "4711\t\t1\r\n" : "4712\t\t1\r\n";
    PutBasket(L"a.bsk", lines);
    view.cancel_after = 3;
    EXPECT_EQ(LoadError(path), LoadErrorOf(path, L"Abgebrochen"));
    EXPECT_EQ(view.cancel_asked, 4);  // rarely enough to cost nothing
    EXPECT_GT(grid.Rows(), 700);      // what was read so far stays
    EXPECT_LT(grid.Rows(), 1100);
    EXPECT_FALSE(state.Modified);
    EXPECT_FALSE(state.Loading);
    EXPECT_FALSE(state.SuppressEditor);
    EXPECT_EQ(view.progress_depth, 0);
    EXPECT_EQ(state.CurrentPath, path);
    EXPECT_TRUE(Asks(MessageAnswer::kNo));  // it has not been read whole
    view.cancel_after = -1;
    EXPECT_EQ(LoadError(path), L"");
    EXPECT_EQ(grid.Rows(), 2002);
}

TEST_F(KnownFile, ASaveIsNotEndedByEscape) {
    for (int i = 0; i < 600; ++i) Add(i % 2 == 0 ? L"4711" : L"4712", L"", L"", 1);
    view.cancel_after = 0;
    dialogs.Choose(path);
    basket.mnuDateiSpeichern_Click();
    EXPECT_FALSE(state.Modified);
    sending.AppendSelection(folder / L"b.bsk");
    EXPECT_EQ(view.cancel_asked, 0);
}

}  // namespace
}  // namespace demovex
