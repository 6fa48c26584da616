// The file commands in the whole form: with the real cell editor, the real article master, and the
// events of a real grid.
#include <gtest/gtest.h>

#include "basket/state.h"
#include "tests/support/basket_fixture.h"

namespace demovex {
namespace {

const std::wstring kFile = L"C:\\Basket\\a.bsk";

class Document : public testing::Test, protected BasketFixture {
  protected:
    void PutBasket(const std::string& lines) {
        files.Put(kFile, "DemoVexClient.Client\r\n" + lines);
    }
    std::string Saved() { return files.Has(kFile) ? files.At(kFile).bytes : "<missing>"; }
    // A basket with one line and a file, changed since.
    void Changed() {
        PutBasket("4711\t\t1\r\n");
        form.Load(kFile);
        Link(L"4712");
    }
};

TEST_F(Document, ClosingAndAnsweringYesSavesAndCloses) {
    Changed();
    messages.answers = {MessageAnswer::kYes};
    EXPECT_FALSE(form.Form_Unload());
    EXPECT_NE(Saved().find("\r\n4712\tDuftwasser\t1\t"), std::string::npos);
    EXPECT_EQ(owner.closed, 1);
}

// A number just typed and found opens the editor anew on its quantity.
TEST_F(Document, OpenAndRecentFilesLeaveNoEditorOpenWhileTheyAsk) {
    messages.otherwise = MessageAnswer::kNo;
    int asked = 0;
    const auto expect_closed = [&] {
        ++asked;
        EXPECT_FALSE(view.EditorOpen());
        EXPECT_EQ(Cell(Lines(), column::kArtNr), L"4711");
    };
    for (const Command command : {Command::mnuDateiOeffnen, Command::mnuDateiLRU1}) {
        Link(L"");
        Click(Lines(), column::kArtNr);
        view.Type(L"4711");
        messages.while_open = expect_closed;
        form.Run(command);
    }
    EXPECT_EQ(asked, 2);
}

// --- no save destroys what the basket does not know

TEST_F(Document, AFileThatChangedWhileItWasLoadedIsAskedFor) {
    PutBasket("4711\t\t1\r\n4712\t\t2\r\n");
    files.before = [this](std::string_view operation) {
        if (operation != "OpenShared") return;
        files.before = nullptr;
        PutBasket("1000\t\t9\r\n");  // the lines above have been read
    };
    form.Load(kFile);
    ASSERT_EQ(Lines(), 2);
    form.Run(Command::mnuDateiSpeichern);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].title, L"Speichern");
    EXPECT_EQ(Saved(), "DemoVexClient.Client\r\n1000\t\t9\r\n");
}

TEST_F(Document, AFileThatWasKnownAndWhoseSecondLoadEndedHalfWayIsAskedFor) {
    std::string lines;
    for (int i = 0; i < 600; ++i) lines += i % 2 == 0 ? "4711\t\t1\r\n" : "4712\t\t1\r\n";
    PutBasket(lines);
    form.Load(kFile);
    const std::string whole = Saved();
    view.cancel_after = 1;  // Escape
    EXPECT_EQ(RaisedBy([&] { form.Load(kFile); }), -1);
    ASSERT_LT(Lines(), 600);
    form.Run(Command::mnuDateiSpeichern);
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(Saved(), whole);
}

// A link that is followed while a question or a dialog stands may open the editor.
TEST_F(Document, WhatWasSavedIsNotChangedByAnEditorThatOpenedMeanwhile) {
    Changed();
    const auto link = [this] { Link(L""); };
    const auto leave_and_expect_unmodified = [this] {
        EXPECT_FALSE(view.EditorOpen());
        EXPECT_FALSE(form.Modified());
        Click(1, column::kPreisAts);
        EXPECT_FALSE(form.Modified());
        EXPECT_NE(Saved().find("4712"), std::string::npos);
    };
    PutBasket("1000\t\t9\r\n");
    messages.answers = {MessageAnswer::kYes};
    messages.while_open = link;
    form.Run(Command::mnuDateiSpeichern);
    ASSERT_EQ(Lines(), 3);
    leave_and_expect_unmodified();
    file_dialogs.while_open = link;
    file_dialogs.Choose(kFile);
    form.Run(Command::mnuDateiSpeichernUnter);
    ASSERT_EQ(Lines(), 4);
    leave_and_expect_unmodified();
}

TEST_F(Document, ASaveThatFailsNamesThePathAsItWasGiven) {
    files.AddFolder(L"C:\\B");
    files.Put(L"C:\\B\\b.bsk", "4711\t\t1\r\n");
    form.Load(L"b.bsk");
    files.At(L"C:\\B\\b.bsk").read_only = true;
    std::wstring told;
    try {
        form.Run(Command::mnuDateiSpeichern);
    } catch (const Error& error) {
        told = error.description();
    }
    EXPECT_EQ(told.substr(0, told.find(L':')), L"Datei 'b.bsk' kann nicht gespeichert werden");
}

TEST_F(Document, ClosingWithASaveThatFailsKeepsTheWindowAndTheBasket) {
    Changed();
    files.At(kFile).read_only = true;
    messages.answers = {MessageAnswer::kYes};
    EXPECT_EQ(RaisedBy([&] { form.Form_Unload(); }), 75);
    EXPECT_EQ(owner.closed, 0);
    EXPECT_EQ(form.moLibrary, &owner);
    EXPECT_TRUE(form.Modified());
    EXPECT_EQ(Lines(), 2);
    EXPECT_EQ(settings.Get(L"View", L"Toolbarvisible", L"<none>"), L"<none>");

    files.At(kFile).read_only = false;
    messages.answers = {MessageAnswer::kYes};
    EXPECT_FALSE(form.Form_Unload());
    EXPECT_EQ(owner.closed, 1);
}

TEST_F(Document, ClosingAnUntitledBasketAndCancellingTheDialogKeepsTheWindow) {
    Link(L"4711");
    messages.answers = {MessageAnswer::kYes};
    EXPECT_TRUE(form.Form_Unload());
    EXPECT_EQ(file_dialogs.shown.size(), 1u);
    EXPECT_EQ(owner.closed, 0);
    EXPECT_TRUE(form.Modified());
}

TEST_F(Document, ClosingAndAnsweringNoLeavesTheFileAlone) {
    Changed();
    const std::string before = Saved();
    messages.answers = {MessageAnswer::kNo};
    EXPECT_FALSE(form.Form_Unload());
    EXPECT_EQ(Saved(), before);
    EXPECT_EQ(owner.closed, 1);
}

TEST_F(Document, AQuantityBeingTypedIsSaved) {
    Changed();
    Click(1, column::kMenge);
    TypeOver(L"7");
    form.Run(Command::mnuDateiSpeichern);
    EXPECT_NE(Saved().find("4711\tEau de Cologne\t7\t100,00\t7,27\t\t\t700,00\t50,89\r\n"),
              std::string::npos)
        << Saved();
    EXPECT_FALSE(form.Modified());
}

TEST_F(Document, LoadingWithAnEditorOpenClosesItAndWritesNothingIntoTheNewRows) {
    Changed();
    form.Run(Command::mnuEditNeueZeile);
    ASSERT_TRUE(view.EditorOpen()) << AsText();
    TypeOver(L"5000");
    PutBasket("1000\t\t4\r\n2000\t\t5\r\n6000\t\t6\r\n\tfrei\r\n");
    form.Load(kFile);
    EXPECT_FALSE(view.EditorOpen());
    EXPECT_EQ(Column(column::kArtNr), (std::vector<std::wstring>{L"1000", L"2000", L"6000", L""}));
    EXPECT_EQ(Column(column::kMenge), (std::vector<std::wstring>{L"4", L"5", L"6", L""}));
    EXPECT_EQ(Cell(4, column::kBezeichnung), L"frei");
    EXPECT_FALSE(form.Modified());
    form.CommitCellEdit();
    EXPECT_FALSE(form.Modified());
}

TEST_F(Document, AnArticleNumberBeingTypedDoesNotReachTheNextBasket) {
    Changed();
    form.Run(Command::mnuEditNeueZeile);
    view.PumpKeys();
    Click(Lines(), column::kArtNr);
    ASSERT_TRUE(view.EditorOpen()) << AsText();
    TypeOver(L"5000");
    messages.answers = {MessageAnswer::kNo};
    form.Run(Command::mnuDateiNeu);
    EXPECT_EQ(Lines(), 0);
    EXPECT_EQ(Total(column::kGesamtAts), L"");
    EXPECT_FALSE(form.Modified());
    EXPECT_FALSE(view.EditorOpen());
    Link(L"4711");
    EXPECT_EQ(Total(column::kGesamtAts), L"100,00");
}

// The host goes on while the question stands: a link to the article of the last row opens the
// editor on that row's quantity.
TEST_F(Document, AnArticleOrderedDuringTheQuestionDoesNotReachTheNewBasket) {
    Changed();
    Click(2, column::kMenge);
    messages.while_open = [&] { Link(L"4712"); };
    messages.answers = {MessageAnswer::kNo};
    EXPECT_EQ(RaisedBy([&] { form.Run(Command::mnuDateiNeu); }), 0);
    EXPECT_EQ(Lines(), 0);
    EXPECT_EQ(Total(column::kMenge), L"");
    EXPECT_EQ(Total(column::kGesamtAts), L"");
    EXPECT_TRUE(grid.Redraw());
    EXPECT_FALSE(form.Modified());
    EXPECT_FALSE(form.State().SuppressEditor);
    EXPECT_EQ(form.Caption(), kDesignedCaption);
    EXPECT_FALSE(view.EditorOpen());
}

TEST_F(Document, AnArticleOrderedDuringTheQuestionIsSavedWithTheRest) {
    Changed();
    Click(2, column::kMenge);
    messages.while_open = [&] { Link(L"4712"); };
    messages.answers = {MessageAnswer::kYes};
    form.Run(Command::mnuDateiNeu);
    EXPECT_NE(Saved().find("\r\n4712\tDuftwasser\t2\t"), std::string::npos) << Saved();
    EXPECT_EQ(Lines(), 0);
}

// Nothing had to be asked before the dialog opened; what comes in while it is open has to be.
TEST_F(Document, AnArticleOrderedWhileTheOpenDialogStandsIsAskedAbout) {
    PutBasket("4711\t\t1\r\n");
    for (const MessageAnswer answer : {MessageAnswer::kCancel, MessageAnswer::kNo}) {
        messages.shown.clear();
        messages.answers = {answer};
        file_dialogs.Choose(kFile);
        file_dialogs.while_open = [&] { Link(L"4712"); };
        form.Run(Command::mnuDateiNeu);
        ASSERT_TRUE(messages.shown.empty());
        form.Run(Command::mnuDateiOeffnen);
        ASSERT_EQ(messages.shown.size(), 1u);
        EXPECT_EQ(messages.shown[0].title, L"Schließen");
        const bool loaded = answer == MessageAnswer::kNo;
        EXPECT_EQ(Column(column::kArtNr), (std::vector<std::wstring>{loaded ? L"4711" : L"4712"}));
        EXPECT_EQ(form.Modified(), !loaded);
        messages.answers = {MessageAnswer::kNo};
        form.Run(Command::mnuDateiNeu);
    }
}

TEST_F(Document, ChangesThatAreNotToBeSavedAreAskedAboutOnce) {
    Changed();
    file_dialogs.Choose(kFile);
    messages.answers = {MessageAnswer::kNo};
    form.Run(Command::mnuDateiOeffnen);
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(Column(column::kArtNr), (std::vector<std::wstring>{L"4711"}));
}

TEST_F(Document, AfterALoadThatFailedForTheHostTheNextLinkPaintsTheGridAgain) {
    PutBasket("4711\t\t2\r\n4712\t\tviele\r\n");
    EXPECT_EQ(RaisedBy([&] { form.Load(kFile); }), -1);
    EXPECT_FALSE(grid.Redraw());
    EXPECT_EQ(form.Caption(), std::wstring(kDesignedCaption) + L" - a.bsk");
    EXPECT_EQ(Lines(), 2);
    EXPECT_FALSE(form.Modified());
    // the row with the bad quantity stands there; a further article meets it
    EXPECT_EQ(RaisedBy([&] { Link(L"1000"); }), 0);
    EXPECT_TRUE(grid.Redraw());
}

TEST_F(Document, AfterALoadThatFailedForTheUserTheGridIsPainted) {
    PutBasket("4711\t\tviele\r\n");
    file_dialogs.Choose(kFile);
    form.Run(Command::mnuDateiOeffnen);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text,
              L"Datei '" + kFile + L"' kann nicht geöffnet werden: Type mismatch");
    EXPECT_TRUE(grid.Redraw());
}

TEST_F(Document, ArticlesAreMergedIntoALoadedBasketAsIntoAnyOther) {
    PutBasket("4712\t\t1\r\n4711\t\t3\r\n");
    form.Load(kFile);
    Link(L"4711", 2);
    EXPECT_EQ(Column(column::kMenge), (std::vector<std::wstring>{L"1", L"5"}));
    EXPECT_EQ(Total(column::kGesamtAts), L"600,00");
    EXPECT_TRUE(form.Modified());
}

// The totals row is gone after two lines with one number; the window goes on working.
TEST_F(Document, ABasketWithoutTotalsRowCanBeUsedSavedAndEmptied) {
    PutBasket("4711\t\t1\r\n4711\t\t1\r\n");
    form.Load(kFile);
    EXPECT_EQ(grid.Rows(), 2);
    EXPECT_EQ(Lines(), 0);
    for (const Command command :
         {Command::mnuEditNeueZeile, Command::mnuEditZeileOberhalbEinfügen,
          Command::mnuEditZeilenLöschen, Command::mnuEditZeilenNachUnten, Command::mnuEditKopieren,
          Command::mnuDateiSpeichern, Command::mnuDateiNeu}) {
        EXPECT_NO_THROW(form.Run(command)) << static_cast<int>(command);
        view.PumpKeys();
    }
    Link(L"1000");
    EXPECT_GE(Lines(), 1);
    EXPECT_EQ(Total(column::kGesamtAts), L"3,50");
}

TEST_F(Document, TheRecentEntriesOfBothMenusReachTheirFiles) {
    PutBasket("4711\t\t3\r\n");
    settings.Set(L"LRU", L"File2", kFile);
    settings.Set(L"LRU", L"File1", L"C:\\Basket\\b.bsk");
    BasketFixture other;
    other.settings.values = settings.values;
    other.files.Put(kFile, Saved());
    other.form.Initialize();
    other.form.Run(Command::mnuDateiLRU2);
    EXPECT_EQ(other.Column(column::kArtNr), (std::vector<std::wstring>{L"4711"}));
    other.grid.Select(1, 1, 1, 1);
    other.form.Run(Command::mnuContextSendTo1);
    EXPECT_EQ(other.files.At(L"C:\\Basket\\b.bsk").bytes,
              "4711\tEau de Cologne\t3\t100,00\t7,27\t\t\t300,00\t21,81\r\n");
}

}  // namespace
}  // namespace demovex
