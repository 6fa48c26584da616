#include "basket/commands/menu_model.h"

#include <gtest/gtest.h>

#include "base/error.h"

namespace demovex {
namespace {

std::vector<std::wstring> Texts(const MenuModel& menus, Command parent) {
    std::vector<std::wstring> texts;
    for (const MenuEntry& entry : menus.Visible(parent)) {
        texts.push_back(entry.kind == MenuKind::kSeparator ? L"-" : entry.text);
    }
    return texts;
}

TEST(MenuModel, TheBarHoldsTheTopLevelMenusInViewOnly) {
    EXPECT_EQ(Texts(MenuModel(), Command::kNone),
              (std::vector<std::wstring>{L"&Datei", L"&Bearbeiten", L"&Ansicht", L"&?"}));
}

TEST(MenuModel, TheFileMenuOfANewWindowReadsAsDesigned) {
    EXPECT_EQ(Texts(MenuModel(), Command::mnuDatei),
              (std::vector<std::wstring>{L"&Neu", L"Ö&ffnen\tStrg+O", L"&Speichern\tStrg+S",
                                         L"Speichern &unter ...", L"-", L"&Drucken\tStrg+P",
                                         L"S&enden an", L"-", L"&Beenden"}));
}

TEST(MenuModel, SendToShowsADisabledDocumentAndTheClipboard) {
    const auto entries = MenuModel().Visible(Command::mnuDateiSendenan);
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].text, L"&RTF-Dokument");
    EXPECT_FALSE(entries[0].enabled);
    EXPECT_EQ(entries[1].text, L"&Zwischenablage");
    EXPECT_TRUE(entries[1].enabled);
}

TEST(MenuModel, TheOtherMenusOfANewWindowReadAsDesigned) {
    const MenuModel menus;
    EXPECT_EQ(Texts(menus, Command::mnuEdit),
              (std::vector<std::wstring>{L"A&usschneiden", L"&Kopieren", L"E&infügen", L"-",
                                         L"&Neue Zeile anfügen\tStrg+N",
                                         L"Zeile oberhalb der aktuellen Zeile &einfügen\tStrg+E",
                                         L"Selektierte Zeilen &löschen\tStrg+L", L"-",
                                         L"Selektierte Zeilen nach &oben verschieben\tStrg+U",
                                         L"Selektierte Zeilen nach &unten verschieben\tStrg+D"}));
    EXPECT_EQ(Texts(menus, Command::mnuAnsicht),
              (std::vector<std::wstring>{L"Artikel im Katalog suchen\tStrg+G", L"-",
                                         L"Optimale Spaltenbreite einstellen", L"-",
                                         L"&Symbolleiste", L"S&tatusleiste"}));
    EXPECT_EQ(Texts(menus, Command::mnuHilfe), (std::vector<std::wstring>{L"Inf&o"}));
    EXPECT_EQ(
        Texts(menus, Command::mnuContext),
        (std::vector<std::wstring>{
            L"&Gehe zu Katalog", L"-", L"&Kopiere Selektion in die Zwischenablage", L"-",
            L"Send To 1", L"Send To 2", L"Send To 3", L"Send To 4", L"&Selektion senden an ..."}));
}

TEST(MenuModel, RecentFilesComeIntoViewWithTheirSeparator) {
    MenuModel menus;
    menus.SetState(Command::mnuDelLRUHeader, {.visible = true});
    menus.SetCaption(Command::mnuDateiLRU1, L"&1 a.bsk");
    menus.SetState(Command::mnuDateiLRU1, {.visible = true});
    const auto texts = Texts(menus, Command::mnuDatei);
    EXPECT_EQ(std::vector<std::wstring>(texts.begin() + 6, texts.end()),
              (std::vector<std::wstring>{L"S&enden an", L"-", L"&1 a.bsk", L"-", L"&Beenden"}));
}

TEST(MenuModel, SeparatorsNeverDoubleNorStandAtAnEnd) {
    MenuModel menus;
    // nothing but separators around the one item that is left
    for (const CommandRow& row : CommandTable()) {
        if (row.parent != Command::mnuDatei) continue;
        const bool separator = row.kind == MenuKind::kSeparator;
        menus.SetState(row.id, {.visible = separator || row.id == Command::mnuDateiDrucken});
    }
    EXPECT_EQ(Texts(menus, Command::mnuDatei), (std::vector<std::wstring>{L"&Drucken\tStrg+P"}));

    menus.SetState(Command::mnuDateiBeenden, {.visible = true});
    EXPECT_EQ(Texts(menus, Command::mnuDatei),
              (std::vector<std::wstring>{L"&Drucken\tStrg+P", L"-", L"&Beenden"}));
}

TEST(MenuModel, ACaptionThatNamesItsKeyKeepsItAsItIs) {
    MenuModel menus;
    menus.SetCaption(Command::mnuEditKopieren, L"&Kopieren\tStrg+C");
    EXPECT_EQ(menus.Visible(Command::mnuEdit)[1].text, L"&Kopieren\tStrg+C");
}

TEST(MenuModel, ChecksAreShown) {
    MenuModel menus;
    menus.SetState(Command::mnuAnsichtSymbolleiste, {.visible = true, .checked = true});
    const auto entries = menus.Visible(Command::mnuAnsicht);
    ASSERT_EQ(entries.size(), 6u);
    EXPECT_TRUE(entries[4].checked);
    EXPECT_FALSE(entries[5].checked);
}

TEST(MenuModel, AnUnknownIdIsRefused) {
    MenuModel menus;
    EXPECT_THROW(menus.SetState(Command::kNone, {}), Error);
    EXPECT_THROW(menus.Caption(static_cast<Command>(9999)), Error);
}

}  // namespace
}  // namespace demovex
