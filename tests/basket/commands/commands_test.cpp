#include "basket/commands/commands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/support/raised.h"

namespace demovex {
namespace {

TEST(CommandsTable, EveryIdStandsOnceAndParentsStandFirst) {
    std::set<Command> ids;
    for (const CommandRow& row : CommandTable()) {
        EXPECT_TRUE(row.parent == Command::kNone || ids.contains(row.parent));
        EXPECT_TRUE(ids.insert(row.id).second);
        EXPECT_FALSE(row.caption.empty());
        EXPECT_EQ(row.parent == Command::kNone, row.kind == MenuKind::kTop);
        EXPECT_EQ(row.kind == MenuKind::kSeparator, row.caption == L"-");
        EXPECT_EQ(&FindCommand(row.id), &row);
    }
}

TEST(CommandsTable, TheShortcutsAreTheseAndEachLeadsToItsCommand) {
    const std::map<wchar_t, Command> expected = {
        {L'N', Command::mnuEditNeueZeile},       {L'E', Command::mnuEditZeileOberhalbEinfügen},
        {L'L', Command::mnuEditZeilenLöschen},   {L'U', Command::mnuEditZeilenNachOben},
        {L'D', Command::mnuEditZeilenNachUnten}, {L'G', Command::mnuAnsichtGotoCatalogPage},
        {L'O', Command::mnuDateiOeffnen},        {L'S', Command::mnuDateiSpeichern},
        {L'P', Command::mnuDateiDrucken},
    };
    std::map<wchar_t, Command> found;
    for (const CommandRow& row : CommandTable()) {
        if (row.shortcut != 0) {
            EXPECT_TRUE(found.emplace(row.shortcut, row.id).second);
        }
    }
    EXPECT_EQ(found, expected);
    for (wchar_t letter = L'A'; letter <= L'Z'; ++letter) {
        const auto command = expected.find(letter);
        EXPECT_EQ(CommandForShortcut(letter),
                  command == expected.end() ? Command::kNone : command->second);
    }
    EXPECT_EQ(CommandForShortcut(0), Command::kNone);
}

TEST(CommandsTable, TheTextBoxKeepsItsOwnKeys) {
    for (const wchar_t letter : {L'X', L'C', L'V', L'Z', L'A'}) {
        EXPECT_EQ(CommandForShortcut(letter), Command::kNone);
    }
}

TEST(CommandsTable, TheToolbarRunsTheseCommandsInThisOrder) {
    const std::vector<std::pair<std::wstring_view, Command>> expected = {
        {L"New", Command::mnuDateiNeu},
        {L"Open", Command::mnuDateiOeffnen},
        {L"Save", Command::mnuDateiSpeichern},
        {L"", Command::kNone},
        {L"Print", Command::mnuDateiDrucken},
        {L"", Command::kNone},
        {L"Cut", Command::mnuEditAusschneiden},
        {L"Copy", Command::mnuEditKopieren},
        {L"Paste", Command::mnuEditEinfuegen},
        {L"", Command::kNone},
        {L"GotoCatalog", Command::mnuAnsichtGotoCatalogPage},
        {L"NewRow", Command::mnuEditNeueZeile},
        {L"InsertRow", Command::mnuEditZeileOberhalbEinfügen},
        {L"DeleteRow", Command::mnuEditZeilenLöschen},
        {L"", Command::kNone},
        {L"OptColWidth", Command::mnuAnsichtOptColWidth},
        {L"", Command::kNone},
        {L"SelectionUp", Command::mnuEditZeilenNachOben},
        {L"SelectionDown", Command::mnuEditZeilenNachUnten},
    };
    ASSERT_EQ(ToolbarTable().size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const ToolbarButton& button = ToolbarTable()[i];
        EXPECT_EQ(button.key, expected[i].first);
        EXPECT_EQ(button.command, expected[i].second);
        EXPECT_EQ(button.key.empty(), button.tool_tip.empty());
        EXPECT_EQ(CommandForToolbarKey(button.key), button.command);
    }
    EXPECT_EQ(CommandForToolbarKey(L"new"), Command::kNone);
    EXPECT_EQ(CommandForToolbarKey(L"Quit"), Command::kNone);
}

TEST(CommandsTable, TheToolTipsSayWhatTheButtonsDoAndTheirKeys) {
    const std::vector<std::wstring_view> expected = {
        L"Leert den Warenkorb",
        L"Lädt einen Warenkorb (Strg+O)",
        L"Speichert den Warenkorb (Strg+S)",
        L"Druckt den Warenkorb am Standarddrucker",
        L"Ausschneiden (Strg+X)",
        L"Kopieren (Strg+C)",
        L"Einfügen (Strg+V)",
        L"Zeigt den Artikel im Katalog (Strg+G)",
        L"Fügt am Ende eine neue Zeile ein (Strg+N)",
        L"Fügt oberhalb der aktuellen Zeile neue Zeilen ein",
        L"Löscht die selektierten Zeilen (Strg+L)",
        L"Optimale Spaltenbreite",
        L"Verschiebt selektierte Zeilen nach oben (Strg+U)",
        L"Verschiebt selektierte Zeilen nach unten (Strg+D)",
    };
    std::vector<std::wstring_view> found;
    for (const ToolbarButton& button : ToolbarTable()) {
        if (!button.key.empty()) found.push_back(button.tool_tip);
    }
    EXPECT_EQ(found, expected);
}

// What the window keeps for later and never shows; those below a hidden menu are hidden with it.
TEST(CommandsTable, TheseItemsAreHiddenOrDisabledFromTheBeginning) {
    const std::map<Command, std::wstring_view> expected = {
        {Command::mnuDel1, L"-"},
        {Command::mnuDateiPreisdateiInstallieren, L"Preisdatei update installieren ..."},
        {Command::mnuDel5, L"-"},
        {Command::mnuDateiSendenanDiskette, L"&Diskette ..."},
        {Command::mnuDateiSendenanWeb, L"&Web"},
        {Command::mnuDelLRUHeader, L"-"},
        {Command::mnuDateiLRU1, L"&1"},
        {Command::mnuDateiLRU2, L"&2"},
        {Command::mnuDateiLRU3, L"&3"},
        {Command::mnuDateiLRU4, L"&4"},
        {Command::mnuDel6, L"-"},
        {Command::mnuEditSortNr, L"Warenkorb nach Artikelnummer sortieren"},
        {Command::mnuEditSortText, L"Warenkorb nach Artikeltext sortieren"},
        {Command::mnuDel11, L"-"},
        {Command::mnuEditAppendManual, L"Artikel &manuell erfassen"},
        {Command::mnuDel9, L"-"},
        {Command::mnuAnsichtShowPrice, L"Eigene &Preise anzeigen"},
        {Command::mnuAnsichtShowInfo, L"Zusatz&info in eigener Box anzeigen"},
        {Command::mnuExtras, L"E&xtras"},
        {Command::mnuContext, L"ContextMenu"},
    };
    std::map<Command, std::wstring_view> found;
    for (const CommandRow& row : CommandTable()) {
        if (!row.visible) found.emplace(row.id, row.caption);
        EXPECT_EQ(row.enabled, row.id != Command::mnuDateiSendenanRTFDoc);
    }
    EXPECT_EQ(found, expected);
    EXPECT_EQ(FindCommand(Command::mnuExtrasOptionen).caption, L"&Optionen ...");
}

TEST(CommandsTable, EveryButtonHasItsPictureAndTheListItsOwnOrder) {
    const std::vector<std::pair<std::wstring_view, int>> expected = {
        {L"New", 104},         {L"Open", 126},        {L"Save", 106},
        {L"Print", 118},       {L"Cut", 102},         {L"Copy", 111},
        {L"Paste", 105},       {L"NewRow", 115},      {L"InsertRow", 114},
        {L"DeleteRow", 117},   {L"SelectionUp", 113}, {L"SelectionDown", 116},
        {L"GotoCatalog", 121}, {L"OptColWidth", 127},
    };
    ASSERT_EQ(ImageTable().size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(ImageTable()[i].key, expected[i].first);
        EXPECT_EQ(ImageTable()[i].bitmap, expected[i].second);
    }
    for (const ToolbarButton& button : ToolbarTable()) {
        if (button.key.empty()) continue;
        EXPECT_EQ(std::ranges::count(ImageTable(), button.key, &ToolbarImage::key), 1);
    }
}

TEST(CommandsTable, AnUnknownIdIsRefused) {
    EXPECT_EQ(RaisedBy([] { FindCommand(Command::kNone); }), 5);
    EXPECT_EQ(RaisedBy([] { FindCommand(static_cast<Command>(9999)); }), 5);
}

}  // namespace
}  // namespace demovex
