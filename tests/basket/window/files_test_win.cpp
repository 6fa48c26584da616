// New, Open, Save, Save As, recent files and Exit in the real window, with the system's dialogs and
// files. What is saved is compared byte for byte.
#include <gtest/gtest.h>

#include "platform/handle_win.h"
#include "tests/support/real_basket_window_win.h"

namespace demovex {
namespace {

using namespace real_basket;

struct WindowFiles : testing::Test {
    // An article, which makes the basket a changed one.
    void Order(const std::wstring& number) { basket.Link(number, L"K", L"U"); }
    // A basket of 4711 that is saved as `name`.
    void SaveNew(const std::wstring& name) {
        Order(L"4711");
        ASSERT_EQ(basket.Choose(Command::mnuDateiSpeichernUnter, {User::Choose(name)}),
                  (Texts{L"Speichern unter: "}));
        ASSERT_EQ(basket.folder.Get(name), kHeader + k4711);
        ASSERT_FALSE(basket.Modified());
    }
    std::wstring Path(const std::wstring& name) const { return basket.folder / name; }

    RealBasketWindow basket;
};

// --- Open

TEST_F(WindowFiles, OpenLoadsTheChosenFileAndNamesItInTheCaption) {
    const std::wstring name = L"Körbe für März.bsk";
    basket.folder.Put(name, kHeader +
                                "4711\t\t3\t\t\tD\xFC"
                                "fte\tvex:1\r\n\tGr\xFC\xDF"
                                "e aus \xD6sterreich \x80\r\n");
    EXPECT_EQ(basket.PressCtrl('O', {User::Choose(name)}), (Texts{L"Öffnen: "}));
    EXPECT_EQ(basket.Numbers(), (Texts{L"4711", L""}));
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"3");
    EXPECT_EQ(basket.Cell(1, column::kKatalog), L"Düfte");
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"Grüße aus Österreich €");
    EXPECT_EQ(basket.Caption(), Titled(name));
    EXPECT_FALSE(basket.Modified());
    EXPECT_EQ(basket.Stored(), (Texts{Path(name)}));
    EXPECT_EQ(basket.RecentEntries(), Texts{basket.Entry(1, Path(name))});

    EXPECT_EQ(basket.PressCtrl('S'), Texts{});
    EXPECT_EQ(basket.folder.Get(name), kHeader +
                                           "4711\tEau de Cologne\t3\t100,00\t7,27\tD\xFC"
                                           "fte\tvex:1\t300,00\t21,81\r\n\tGr\xFC\xDF"
                                           "e aus \xD6sterreich \x80\r\n");
    EXPECT_EQ(basket.Files(), 1);
}

TEST_F(WindowFiles, TheOpenDialogOffersBasketFilesAloneInTheComponentsFolder) {
    std::wstring title, filter;
    LRESULT filters = 0;
    HWND owner = nullptr;
    bool owner_enabled = true;
    const auto look = [&](HWND dialog) {
        title = User::TextOf(dialog);
        const HWND box = GetDlgItem(dialog, User::kFilterBox);
        filters = SendMessageW(box, CB_GETCOUNT, 0, 0);
        wchar_t text[200] = L"";
        SendMessageW(box, CB_GETLBTEXT, 0, reinterpret_cast<LPARAM>(text));
        filter = text;
        owner = GetWindow(dialog, GW_OWNER);
        owner_enabled = IsWindowEnabled(owner) != 0;
    };
    Order(L"4711");
    const std::pair<Command, std::wstring> commands[] = {
        {Command::mnuDateiOeffnen, L"Öffnen"},
        {Command::mnuDateiSpeichernUnter, L"Speichern unter"},
        {Command::mnuContextSendToOther, L"Warenkorb wählen"}};
    for (const auto& [command, expected] : commands) {
        SCOPED_TRACE(static_cast<int>(command));
        std::vector<User::Act> acts;
        if (command == Command::mnuDateiOeffnen) acts.push_back(User::Answer(IDNO));
        acts.push_back(User::Looking(User::Cancel(), look));
        basket.Choose(command, acts);
        EXPECT_EQ(title, expected);
        EXPECT_EQ(filters, 1);
        EXPECT_EQ(filter, L"Warenkorb Dateien (*.bsk)");
        EXPECT_EQ(owner, basket.Handle());
        EXPECT_FALSE(owner_enabled);
        EXPECT_TRUE(IsWindowEnabled(basket.Handle()));
    }
}

TEST_F(WindowFiles, ACancelledOpenLeavesEverythingAsItIs) {
    SaveNew(L"a.bsk");
    const std::string cells = basket.AsText();
    EXPECT_EQ(basket.Choose(Command::mnuDateiOeffnen, {User::Cancel()}), (Texts{L"Öffnen: "}));
    EXPECT_EQ(basket.AsText(), cells);
    EXPECT_EQ(basket.Caption(), Titled(L"a.bsk"));
    EXPECT_EQ(basket.Stored(), (Texts{Path(L"a.bsk")}));
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711);
}

TEST_F(WindowFiles, OpenOverAChangedBasketAsksAndCancelAbandonsIt) {
    SaveNew(L"a.bsk");
    Order(L"4712");
    EXPECT_EQ(basket.Choose(Command::mnuDateiOeffnen, {User::Answer(IDCANCEL)}), (Texts{kAsks}));
    EXPECT_EQ(basket.Numbers(), (Texts{L"4711", L"4712"}));
    EXPECT_TRUE(basket.Modified());
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711);
}

TEST_F(WindowFiles, OpenOverAChangedBasketThatIsNotToBeSavedLoadsTheOther) {
    basket.folder.Put(L"b.bsk", kHeader + k4712);
    SaveNew(L"a.bsk");
    Order(L"1000");
    EXPECT_EQ(basket.Choose(Command::mnuDateiOeffnen, {User::Answer(IDNO), User::Choose(L"b.bsk")}),
              (Texts{kAsks, L"Öffnen: "}));
    EXPECT_EQ(basket.Numbers(), (Texts{L"4712"}));
    EXPECT_FALSE(basket.Modified());
    EXPECT_EQ(basket.Caption(), Titled(L"b.bsk"));
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711);
}

TEST_F(WindowFiles, OpenOverAChangedBasketSavesItFirst) {
    basket.folder.Put(L"b.bsk", kHeader + k4712);
    SaveNew(L"a.bsk");
    Order(L"4712");
    EXPECT_EQ(
        basket.Choose(Command::mnuDateiOeffnen, {User::Answer(IDYES), User::Choose(L"b.bsk")}),
        (Texts{kAsks, L"Öffnen: "}));
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711 + k4712);
    EXPECT_EQ(basket.Numbers(), (Texts{L"4712"}));
    EXPECT_EQ(basket.Stored(), (Texts{Path(L"b.bsk"), Path(L"a.bsk")}));
}

TEST_F(WindowFiles, OpenOverAnUntitledBasketAsksForItsNameFirst) {
    basket.folder.Put(L"b.bsk", kHeader + k4712);
    Order(L"4711");
    EXPECT_EQ(basket.Choose(Command::mnuDateiOeffnen,
                            {User::Answer(IDYES), User::Choose(L"a.bsk"), User::Choose(L"b.bsk")}),
              (Texts{kAsks, L"Speichern unter: ", L"Öffnen: "}));
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711);
    EXPECT_EQ(basket.Numbers(), (Texts{L"4712"}));
}

TEST_F(WindowFiles, WithoutANameForTheUntitledBasketOpenIsAbandoned) {
    Order(L"4711");
    EXPECT_EQ(basket.Choose(Command::mnuDateiOeffnen, {User::Answer(IDYES), User::Cancel()}),
              (Texts{kAsks, L"Speichern unter: "}));
    EXPECT_EQ(basket.Numbers(), (Texts{L"4711"}));
    EXPECT_TRUE(basket.Modified());
    EXPECT_EQ(basket.Caption(), kTitle);
    EXPECT_EQ(basket.Stored(), Texts{});
    EXPECT_EQ(basket.Files(), 0);
}

TEST_F(WindowFiles, AFileThatDoesNotExistIsReportedInAPlainMessage) {
    SaveNew(L"a.bsk");
    const std::string cells = basket.AsText();
    const std::wstring path = Path(L"fehlt.bsk");
    EXPECT_EQ(
        basket.Choose(Command::mnuDateiOeffnen, {User::Choose(L"fehlt.bsk"), User::Answer(IDOK)}),
        (Texts{L"Öffnen: ", L"Fehler beim öffnen der Datei: Datei '" + path +
                                L"' kann nicht geöffnet werden: File '" + path +
                                L"' not found (OK)"}));
    EXPECT_EQ(basket.AsText(), cells);
    EXPECT_EQ(basket.Caption(), Titled(L"a.bsk"));
    EXPECT_EQ(basket.Stored(), (Texts{Path(L"a.bsk")}));
}

TEST_F(WindowFiles, AFileThatAnotherProgramKeepsForItselfIsReported) {
    const std::wstring path = basket.folder.Put(L"b.bsk", kHeader + k4712);
    const UniqueHandle held =
        OwnFile(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(held);
    EXPECT_EQ(basket.Choose(Command::mnuDateiOeffnen, {User::Choose(L"b.bsk"), User::Answer(IDOK)}),
              (Texts{L"Öffnen: ", L"Fehler beim öffnen der Datei: Datei '" + path +
                                      L"' kann nicht geöffnet werden: Permission denied (OK)"}));
    EXPECT_EQ(basket.Caption(), kTitle);
    EXPECT_EQ(basket.Stored(), Texts{});
}

TEST_F(WindowFiles, AnEmptyFileIsAnEmptyBasket) {
    basket.folder.Put(L"leer.bsk", "");
    EXPECT_EQ(basket.Choose(Command::mnuDateiOeffnen, {User::Choose(L"leer.bsk")}),
              (Texts{L"Öffnen: "}));
    EXPECT_EQ(basket.Lines(), 0);
    EXPECT_EQ(basket.Caption(), Titled(L"leer.bsk"));
}

TEST_F(WindowFiles, NumbersThatTheArticleMasterLacksAreListedAfterLoading) {
    basket.folder.Put(L"b.bsk", kHeader + "77\t\t2\r\n4712\t\t1\r\n88\t\t3\r\n");
    EXPECT_EQ(basket.Choose(Command::mnuDateiOeffnen, {User::Choose(L"b.bsk"), User::Answer(IDOK)}),
              (Texts{L"Öffnen: ",
                     L"[exclamation] Fehlerhafte Warenkorbdatei: Folgende Artikelnummern "
                     L"wurden nicht im Artikelstamm gefunden und wurden daher aus dem "
                     L"Warenkorb entfernt: \r\n\r\n77 (2)\r\n88 (3) (OK)"}));
    EXPECT_EQ(basket.Numbers(), (Texts{L"4712"}));
    EXPECT_FALSE(basket.Modified());
}

// --- New

TEST_F(WindowFiles, NewAsksEmptiesTheBasketAndForgetsItsFile) {
    SaveNew(L"a.bsk");
    Order(L"4712");
    EXPECT_EQ(basket.Choose(Command::mnuDateiNeu, {User::Answer(IDCANCEL)}), (Texts{kAsks}));
    EXPECT_EQ(basket.Numbers(), (Texts{L"4711", L"4712"}));
    EXPECT_EQ(basket.Choose(Command::mnuDateiNeu, {User::Answer(IDNO)}), (Texts{kAsks}));
    EXPECT_EQ(basket.Lines(), 0);
    EXPECT_EQ(basket.Caption(), kTitle);
    EXPECT_FALSE(basket.Modified());
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711);

    Order(L"4712");
    EXPECT_EQ(basket.PressCtrl('S', {User::Choose(L"b.bsk")}), (Texts{L"Speichern unter: "}));
    EXPECT_EQ(basket.folder.Get(L"b.bsk"), kHeader + k4712);
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711);
}

TEST_F(WindowFiles, NewSavesTheChangedBasketWhenToldSo) {
    SaveNew(L"a.bsk");
    Order(L"4712");
    EXPECT_EQ(basket.Choose(Command::mnuDateiNeu, {User::Answer(IDYES)}), (Texts{kAsks}));
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711 + k4712);
    EXPECT_EQ(basket.Lines(), 0);

    Order(L"4711");
    EXPECT_EQ(basket.Choose(Command::mnuDateiNeu, {User::Answer(IDYES), User::Cancel()}),
              (Texts{kAsks, L"Speichern unter: "}));
    EXPECT_EQ(basket.Numbers(), (Texts{L"4711"}));
    EXPECT_TRUE(basket.Modified());
}

TEST_F(WindowFiles, NewOfAnUnchangedBasketAsksNothing) {
    SaveNew(L"a.bsk");
    EXPECT_EQ(basket.Choose(Command::mnuDateiNeu), Texts{});
    EXPECT_EQ(basket.Lines(), 0);
}

// --- recent files

TEST_F(WindowFiles, ARecentFileIsOpenedByItsEntry) {
    for (const wchar_t* name : {L"b.bsk", L"a.bsk"}) {
        basket.folder.Put(name, kHeader + (*name == L'a' ? k4711 : k4712));
        basket.Choose(Command::mnuDateiOeffnen, {User::Choose(name)});
    }
    const Texts entries = {basket.Entry(1, Path(L"a.bsk")), basket.Entry(2, Path(L"b.bsk"))};
    EXPECT_EQ(basket.RecentEntries(), entries);
    Order(L"1000");
    EXPECT_EQ(basket.Choose(Command::mnuDateiLRU2, {User::Answer(IDCANCEL)}), (Texts{kAsks}));
    EXPECT_EQ(basket.Caption(), Titled(L"a.bsk"));
    EXPECT_EQ(basket.Choose(Command::mnuDateiLRU2, {User::Answer(IDNO)}), (Texts{kAsks}));
    EXPECT_EQ(basket.Numbers(), (Texts{L"4712"}));
    EXPECT_EQ(basket.Caption(), Titled(L"b.bsk"));
    EXPECT_EQ(basket.Stored(), (Texts{Path(L"b.bsk"), Path(L"a.bsk")}));
    EXPECT_EQ(basket.RecentEntries(), entries);  // rebuilt only for a path that was not in the list
}

TEST_F(WindowFiles, ARecentFileThatWasDeletedIsReportedAndKeepsItsEntry) {
    SaveNew(L"weg.bsk");
    basket.Choose(Command::mnuDateiSpeichernUnter, {User::Choose(L"zweiter.bsk")});
    ASSERT_TRUE(DeleteFileW(Path(L"weg.bsk").c_str()));
    const Texts stored = basket.Stored();
    const Texts entries = basket.RecentEntries();
    const std::string cells = basket.AsText();
    const std::wstring path = Path(L"weg.bsk");
    EXPECT_EQ(basket.Choose(Command::mnuDateiLRU2, {User::Answer(IDOK)}),
              (Texts{L"[stop] Fehler beim Öffnen einer Datei: Datei '" + path +
                     L"' kann nicht geöffnet werden: File '" + path + L"' not found (OK)"}));
    EXPECT_EQ(basket.Stored(), stored);
    EXPECT_EQ(basket.RecentEntries(), entries);
    EXPECT_EQ(basket.AsText(), cells);
    EXPECT_EQ(basket.Caption(), Titled(L"zweiter.bsk"));
}

}  // namespace
}  // namespace demovex
