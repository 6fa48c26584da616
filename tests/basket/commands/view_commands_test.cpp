#include <gtest/gtest.h>

#include "tests/support/basket_fixture.h"
#include "tests/support/recording_display.h"

namespace demovex {
namespace {

using Key = std::pair<std::wstring, std::wstring>;
const Key kToolbar{L"View", L"Toolbarvisible"};
const Key kStatusbar{L"View", L"Statusbarvisible"};

// --- set-up

TEST(BasketSetUp, ShowsBothBarsWithoutStoredSettings) {
    BasketFixture basket;
    EXPECT_TRUE(basket.form.State().ToolbarVisible);
    EXPECT_TRUE(basket.form.State().StatusbarVisible);
    EXPECT_TRUE(basket.view.toolbar_visible);
    EXPECT_TRUE(basket.view.statusbar_visible);
    EXPECT_TRUE(basket.view.Checked(Command::mnuAnsichtSymbolleiste));
    EXPECT_TRUE(basket.view.Checked(Command::mnuAnsichtStatusleiste));
    EXPECT_FALSE(basket.form.State().InitPending);
    EXPECT_EQ(basket.view.toolbars_built, 1);
    EXPECT_TRUE(basket.settings.values.empty());
}

TEST(BasketSetUp, AnythingButTrueHidesABar) {
    for (const wchar_t* value : {L"true", L"TRUE", L"1", L"", L" True", L"False"}) {
        BasketFixture basket(FakeLocale::kAustria, false);
        basket.settings.values[kToolbar] = value;
        basket.settings.values[kStatusbar] = L"True";
        basket.form.Initialize();
        EXPECT_FALSE(basket.view.toolbar_visible) << value;
        EXPECT_FALSE(basket.view.Checked(Command::mnuAnsichtSymbolleiste)) << value;
        EXPECT_TRUE(basket.view.statusbar_visible) << value;
    }
    BasketFixture basket(FakeLocale::kAustria, false);
    basket.settings.values[kStatusbar] = L"true";
    basket.form.Initialize();
    EXPECT_FALSE(basket.view.statusbar_visible);
    EXPECT_FALSE(basket.view.Checked(Command::mnuAnsichtStatusleiste));
    EXPECT_TRUE(basket.view.toolbar_visible);
}

TEST(BasketSetUp, TheEditMenuNamesTheKeysOfTheTextBox) {
    BasketFixture basket;
    EXPECT_EQ(basket.view.menu_captions[Command::mnuEditKopieren], L"&Kopieren\tStrg+C");
    EXPECT_EQ(basket.view.menu_captions[Command::mnuEditAusschneiden], L"A&usschneiden\tStrg+X");
    EXPECT_EQ(basket.view.menu_captions[Command::mnuEditEinfuegen], L"E&infügen\tStrg+V");
}

TEST(BasketSetUp, StartsOnTheHeaderWithTheDesignedCaption) {
    BasketFixture basket;
    EXPECT_EQ(basket.grid.Row(), 0);
    EXPECT_EQ(basket.form.Caption(), L"Vexmart Demo Warenkorb 1.1");
    EXPECT_FALSE(basket.view.EditorOpen());
}

TEST(BasketSetUp, AMissingArticleMasterFailsAndALaterSetUpWorks) {
    BasketFixture basket(FakeLocale::kAustria, false);
    const std::string bytes = basket.files.At(BasketFixture::ArticlePath()).bytes;
    basket.files.Delete(BasketFixture::ArticlePath());
    try {
        basket.form.Initialize();
        FAIL() << "no error";
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), -1);
        EXPECT_EQ(error.source(), L"Artikelstamm::OpenFile");
        EXPECT_EQ(error.description(),
                  L"Artikelstamm (C:\\Basket\\artikel.db) kann nicht geladen werden: Datei nicht "
                  L"gefunden");
    }
    basket.files.Put(BasketFixture::ArticlePath(), bytes);
    basket.form.Initialize();
    EXPECT_TRUE(basket.Link(L"4711"));
}

TEST(BasketSetUp, LeavesTheArticleMasterFreeForUpdatesBetweenItsLookUps) {
    BasketFixture basket;
    EXPECT_EQ(basket.files.At(BasketFixture::ArticlePath()).open, 0);
    basket.Link(L"4711");
    EXPECT_EQ(basket.files.At(BasketFixture::ArticlePath()).open, 0);
}

TEST(BasketSetUp, AnArticleBeforeTheSetUpIsRefused) {
    BasketFixture basket(FakeLocale::kAustria, false);
    EXPECT_NE(RaisedBy([&] { basket.Link(L"4711"); }), 0);
}

// A grid that cannot be built: the file that was opened before is closed again.
class RefusingDisplay final : public RecordingDisplay {
  public:
    bool refuse = true;
    void CellsMoved() override {
        if (refuse) RaiseRuntimeError(runtime_error::kOutOfMemory);
    }
};

TEST(BasketSetUp, AFailureAfterTheArticleMasterWasOpenedClosesIt) {
    BasketFixture basket(FakeLocale::kAustria, false);
    FlexGrid grid;
    RefusingDisplay display;
    grid.SetDisplay(&display);
    FakeBasketView view;
    TestLibForm form(grid, view, basket.services);
    EXPECT_EQ(RaisedBy([&] { form.Initialize(); }), 7);
    EXPECT_EQ(basket.files.At(BasketFixture::ArticlePath()).open, 0);
    EXPECT_TRUE(form.State().InitPending);
    bool info = false;
    EXPECT_NE(RaisedBy([&] { form.AddArtikel(L"4711", L"", L"", info, 1, true); }), 0);
    display.refuse = false;
    form.Initialize();
    EXPECT_TRUE(form.AddArtikel(L"4711", L"", L"", info, 1, true));
}

// --- layout

TEST(BasketLayout, TheGridStandsBetweenTheBars) {
    BasketFixture basket;
    basket.view.inner_width = 9000;
    basket.view.inner_height = 7000;
    basket.view.status_height = 315;
    basket.form.Form_Resize();
    EXPECT_EQ(basket.view.grid_rect, (TwipsRect{0, 360, 9000, 7000 - 360 - 315}));
}

TEST(BasketLayout, WithoutToolbarTheGridStartsAtTheTopAndEndsAtTheStatusBar) {
    BasketFixture basket;
    basket.view.inner_height = 7000;
    basket.view.status_height = 315;
    basket.form.Run(Command::mnuAnsichtSymbolleiste);
    EXPECT_EQ(basket.view.grid_rect.top, 0);
    EXPECT_EQ(basket.view.grid_rect.height, 7000 - 315);
    EXPECT_FALSE(basket.view.toolbar_visible);
}

TEST(BasketLayout, AMinimisedWindowLeavesGridAndEditorAlone) {
    BasketFixture basket;
    basket.Link(L"4711");
    basket.Click(1, column::kMenge);
    const TwipsRect before = basket.view.grid_rect;
    basket.view.minimised = true;
    basket.view.inner_width = basket.view.inner_height = 0;
    basket.form.Form_Resize();
    EXPECT_EQ(basket.view.grid_rect, before);
    EXPECT_TRUE(basket.view.EditorOpen());
}

TEST(BasketLayout, AWindowTooLowForTheBarsLeavesAGridWithoutHeight) {
    BasketFixture basket;
    basket.view.inner_height = 100;
    basket.form.DoReSize();
    EXPECT_EQ(basket.view.grid_rect.height, 0);
}

TEST(BasketLayout, ResizingCommitsWhatIsBeingTyped) {
    BasketFixture basket;
    basket.Link(L"4711");
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"4");
    basket.form.Form_Resize();
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"400,00");
}

TEST(BasketLayout, ResizingClosesTheEditorAlsoWhenANumberWasJustTyped) {
    BasketFixture basket;
    basket.Link(L"");
    basket.Click(1, column::kArtNr);
    basket.view.Type(L"4711");
    basket.form.Run(Command::mnuAnsichtSymbolleiste);  // the grid moves up under the editor
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_EQ(basket.grid.FocusRect(), FocusRectStyle::kLight);
    EXPECT_EQ(basket.Cell(1, column::kBezeichnung), L"Eau de Cologne");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"100,00");
}

TEST(BasketLayout, AnEditThatCannotBeReckonedDoesNotKeepTheGridFromItsPlace) {
    BasketFixture basket;
    basket.Link(L"4711");
    basket.Click(1, column::kMenge);
    basket.view.Select(0, static_cast<std::int32_t>(basket.view.text.size()));
    basket.view.Paste(L"1e307");
    basket.view.inner_width = 12000;
    basket.view.inner_height = 9000;
    EXPECT_EQ(RaisedBy([&] { basket.form.Form_Resize(); }), 6);
    EXPECT_EQ(basket.view.grid_rect,
              (TwipsRect{0, 360, 12000, 9000 - 360 - basket.view.status_height}));
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"1e307");
}

// Another screen or a larger text: the user has done nothing to the basket.
TEST(BasketLayout, LayingOutAnewPlacesTheGridAndKeepsWhatIsBeingTyped) {
    BasketFixture basket;
    basket.Link(L"4711");
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"7");
    const TwipsRect before = basket.view.background_rect;
    basket.view.inner_height = 5000;
    basket.view.status_height = 450;
    basket.view.grid_rect = {0, 400, 0, 0};
    basket.form.LayOut();
    EXPECT_EQ(basket.view.grid_rect, (TwipsRect{0, 360, 9600, 5000 - 360 - 450}));
    EXPECT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.view.text, L"7");
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"1");
    EXPECT_EQ(basket.view.background_rect, before);
    basket.view.minimised = true;
    basket.view.inner_height = 0;
    basket.form.LayOut();
    EXPECT_EQ(basket.view.grid_rect.height, 5000 - 360 - 450);
}

TEST(BasketLayout, LayingOutAnewCommitsAnEditorWhoseCellHasLeftTheView) {
    BasketFixture basket;
    for (int i = 0; i < 10; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
    basket.Click(9, column::kMenge);
    basket.TypeOver(L"7");
    basket.grid.SetFrame({640, 120, 2, 17});
    if (!basket.view.EditorOpen()) GTEST_FAIL() << "closed by the frame already";
    basket.form.LayOut();
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_EQ(basket.Cell(9, column::kMenge), L"7");
    EXPECT_EQ(basket.Cell(9, column::kGesamtAts), L"700,00");
}

TEST(BasketLayout, TogglingABarTwiceRestoresLayoutAndCheckMark) {
    for (const Command bar : {Command::mnuAnsichtSymbolleiste, Command::mnuAnsichtStatusleiste}) {
        BasketFixture basket;
        basket.form.Form_Resize();
        const TwipsRect before = basket.view.grid_rect;
        basket.form.Run(bar);
        EXPECT_NE(basket.view.grid_rect, before);
        EXPECT_FALSE(basket.view.Checked(bar));
        basket.form.Run(bar);
        EXPECT_EQ(basket.view.grid_rect, before);
        EXPECT_TRUE(basket.view.Checked(bar));
        EXPECT_TRUE(basket.view.toolbar_visible);
        EXPECT_TRUE(basket.view.statusbar_visible);
    }
}

// --- unload

TEST(BasketUnload, StoresTheViewSettingsAndTellsTheHost) {
    BasketFixture basket;
    basket.form.Run(Command::mnuAnsichtStatusleiste);
    EXPECT_FALSE(basket.form.Form_Unload());
    EXPECT_EQ(basket.settings.values[kToolbar], L"True");
    EXPECT_EQ(basket.settings.values[kStatusbar], L"False");
    EXPECT_EQ(basket.owner.closed, 1);
    EXPECT_EQ(basket.form.moLibrary, nullptr);
    EXPECT_TRUE(basket.messages.shown.empty());
}

TEST(BasketUnload, CancellingTheQuestionKeepsTheWindowAndStoresNothing) {
    BasketFixture basket;
    basket.Link(L"4711");
    basket.messages.answers = {MessageAnswer::kCancel};
    EXPECT_TRUE(basket.form.Form_Unload());
    EXPECT_TRUE(basket.settings.values.empty());
    EXPECT_EQ(basket.owner.closed, 0);
    EXPECT_EQ(basket.form.moLibrary, &basket.owner);
    basket.messages.answers = {MessageAnswer::kNo};
    EXPECT_FALSE(basket.form.Form_Unload());
    EXPECT_EQ(basket.owner.closed, 1);
}

TEST(BasketUnload, WhatIsBeingTypedIsCommittedBeforeTheQuestion) {
    BasketFixture basket;
    basket.Link(L"");
    basket.view.Type(L"zuletzt");
    basket.messages.answers = {MessageAnswer::kCancel};
    EXPECT_TRUE(basket.form.Form_Unload());
    EXPECT_EQ(basket.Cell(1, column::kBezeichnung), L"zuletzt");
}

TEST(BasketUnload, ASecondWishToCloseDuringTheQuestionAsksNothing) {
    BasketFixture basket;
    basket.Link(L"4711");
    bool stays = false;
    basket.messages.answers = {MessageAnswer::kNo};
    basket.messages.while_open = [&] { stays = basket.form.Form_Unload(); };
    EXPECT_FALSE(basket.form.Form_Unload());
    EXPECT_TRUE(stays);
    EXPECT_EQ(basket.messages.shown.size(), 1u);
    EXPECT_EQ(basket.owner.closed, 1);
}

TEST(BasketUnload, WorksWithoutAnOwner) {
    BasketFixture basket;
    basket.form.moLibrary = nullptr;
    EXPECT_FALSE(basket.form.Form_Unload());
}

TEST(BasketUnload, LetsGoOfTheOwnerBeforeItIsToldSoThatItIsToldOnce) {
    BasketFixture basket;
    basket.owner.on_closing = [&] { EXPECT_EQ(basket.form.moLibrary, nullptr); };
    EXPECT_FALSE(basket.form.Form_Unload());
    EXPECT_EQ(basket.owner.closed, 1);
}

TEST(BasketUnload, RefusingSettingsAreReportedAndTheWindowStillCloses) {
    BasketFixture basket;
    basket.settings.refuse = true;
    EXPECT_FALSE(basket.form.Form_Unload());
    ASSERT_EQ(basket.messages.shown.size(), 1u);
    EXPECT_EQ(basket.messages.shown[0].icon, MessageIcon::kExclamation);
    EXPECT_EQ(basket.messages.shown[0].title, L"Vexmart Demo Warenkorb 1.1");
    EXPECT_EQ(basket.owner.closed, 1);
}

TEST(BasketUnload, AHostThatFailsIsReportedAndTheWindowStillCloses) {
    BasketFixture basket;
    basket.owner.fail_with = 5;
    EXPECT_FALSE(basket.form.Form_Unload());
    EXPECT_EQ(basket.form.moLibrary, nullptr);
    EXPECT_EQ(basket.messages.shown.size(), 1u);
}

// --- the way to the catalogue

TEST(ViewCommands, ShowsTheCurrentRowsCataloguePosition) {
    BasketFixture basket;
    basket.Link(L"4711", 1, L"Parfum", L"vex://parfum");
    basket.form.Run(Command::mnuAnsichtGotoCatalogPage);
    basket.form.Run(Command::mnuContextGotoCatalog);
    basket.form.Liste_DblClick();
    basket.form.Toolbar_ButtonClick(L"GotoCatalog");
    EXPECT_EQ(basket.owner.navigated, std::vector<std::wstring>(4, L"vex://parfum"));
}

TEST(ViewCommands, RowsWithoutACataloguePositionGoNowhere) {
    BasketFixture basket;
    basket.Link(L"4711");
    basket.Link(L"");
    for (const std::int32_t row : {1, 2, 3}) {
        basket.grid.Select(row, 1, row, 1);
        basket.form.Run(Command::mnuAnsichtGotoCatalogPage);
    }
    EXPECT_TRUE(basket.owner.navigated.empty());
}

TEST(ViewCommands, AFailingHostsErrorComesOut) {
    BasketFixture basket;
    basket.Link(L"4711", 1, L"Parfum", L"vex://parfum");
    basket.owner.fail_with = 70;
    EXPECT_EQ(RaisedBy([&] { basket.form.Run(Command::mnuAnsichtGotoCatalogPage); }), 70);
    basket.form.moLibrary = nullptr;
    EXPECT_EQ(RaisedBy([&] { basket.form.Run(Command::mnuAnsichtGotoCatalogPage); }), 91);
}

// --- column widths

TEST(ViewCommands, OptimalWidthsFitTheWidestTextOfEachShownColumn) {
    BasketFixture basket;
    basket.Link(L"6000", 100, L"Katalog", L"U");  // 12 345 678,00
    basket.messages.answers = {MessageAnswer::kYes};
    basket.form.Run(Command::mnuAnsichtOptColWidth);
    ASSERT_EQ(basket.messages.shown.size(), 1u);
    EXPECT_EQ(basket.messages.shown[0].title, L"Optimale Spaltenbreiten");
    EXPECT_EQ(
        basket.messages.shown[0].text,
        L"Wollen Sie wirklich die Breite aller Spalten (außer Artikelnummer) auf die optimale "
        L"Breite einstellen ?\r\n\r\n(Dieser Vorgang kann nicht rückgängig gemacht werden!)");
    EXPECT_EQ(basket.messages.shown[0].buttons, MessageButtons::kYesNoCancel);
    EXPECT_EQ(basket.grid.ColWidth(0), 400);
    EXPECT_EQ(basket.grid.ColWidth(column::kArtNr), 1000);
    EXPECT_EQ(basket.grid.ColWidth(column::kKatalog), 0);
    EXPECT_EQ(basket.grid.ColWidth(column::kKatalogUrl), 0);
    // the fake measures 100 twips a character, a tenth more in bold, which the header alone is
    EXPECT_EQ(basket.grid.ColWidth(column::kBezeichnung), 11 * 110 + 120);
    EXPECT_EQ(basket.grid.ColWidth(column::kMenge), 5 * 110 + 120);
    EXPECT_EQ(basket.grid.ColWidth(column::kGesamtAts), 13 * 100 + 120);
    EXPECT_TRUE(basket.grid.Redraw());
}

TEST(ViewCommands, ATotalWiderThanEveryLineDecidesItsColumnsWidth) {
    BasketFixture basket;
    basket.Link(L"6000", 5);
    basket.Link(L"2000");
    basket.Link(L"6000", 5);
    ASSERT_EQ(basket.Cell(1, column::kGesamtAts).size(), 10u);
    ASSERT_EQ(basket.Total(column::kGesamtAts).size(), 12u);
    basket.messages.answers = {MessageAnswer::kYes};
    basket.form.Run(Command::mnuAnsichtOptColWidth);
    EXPECT_EQ(basket.grid.ColWidth(column::kGesamtAts), 12 * 100 + 120);
}

TEST(ViewCommands, AnyOtherAnswerChangesNoWidth) {
    for (const MessageAnswer answer : {MessageAnswer::kNo, MessageAnswer::kCancel}) {
        BasketFixture basket;
        basket.Link(L"6000");
        basket.messages.answers = {answer};
        basket.form.Run(Command::mnuAnsichtOptColWidth);
        for (std::int32_t col = 0; col < 10; ++col) {
            EXPECT_EQ(basket.grid.ColWidth(col), kColumns[static_cast<std::size_t>(col)].width);
        }
    }
}

TEST(ViewCommands, TheOpenEditorFollowsItsColumnWithWhatIsBeingTyped) {
    BasketFixture basket;
    basket.Link(L"4711");
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"12");
    basket.messages.answers = {MessageAnswer::kYes};
    basket.form.Run(Command::mnuAnsichtOptColWidth);
    EXPECT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.view.text, L"12");
    EXPECT_EQ(basket.view.background_rect.left, basket.grid.CellLeft());
    EXPECT_EQ(basket.view.background_rect.width, basket.grid.CellWidth());
}

TEST(ViewCommands, AnEditorWhoseColumnLeavesTheViewIsCommitted) {
    BasketFixture basket;
    basket.Link(L"4711");
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"12");
    basket.messages.answers = {MessageAnswer::kYes};
    basket.view.twips_per_character = 800;
    basket.form.Run(Command::mnuAnsichtOptColWidth);
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"12");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"1\u00A0200,00");
}

// --- mouse, menus, dispatch

TEST(ViewCommands, ThePlainRightButtonOpensTheContextMenuAtThePointer) {
    BasketFixture basket;
    basket.view.grid_rect = {0, 360, 9600, 6000};
    basket.form.Liste_MouseUp(2, 0, 150, 300);
    EXPECT_EQ(basket.view.popups, (std::vector<TwipsPoint>{{150, 660}}));
    basket.form.Liste_MouseUp(1, 0, 150, 300);
    basket.form.Liste_MouseUp(2, shift_state::kShift, 150, 300);
    EXPECT_EQ(basket.view.popups.size(), 1u);
}

TEST(ViewCommands, ItemsWithoutActionDoNothing) {
    BasketFixture basket;
    basket.Link(L"4711");
    const std::string before = basket.AsText();
    for (const Command command :
         {Command::mnuDateiPreisdateiInstallieren, Command::mnuDateiSendenanDiskette,
          Command::mnuDateiSendenanRTFDoc, Command::mnuDateiSendenanWeb, Command::mnuEditSortNr,
          Command::mnuEditSortText, Command::mnuEditAppendManual, Command::mnuAnsichtShowPrice,
          Command::mnuAnsichtShowInfo, Command::mnuExtrasOptionen, Command::mnuDel1,
          Command::mnuDatei, Command::kNone}) {
        basket.form.Run(command);
    }
    basket.form.Toolbar_ButtonClick(L"");
    basket.form.Toolbar_ButtonClick(L"new");
    EXPECT_EQ(basket.AsText(), before);
    EXPECT_TRUE(basket.messages.shown.empty());
}

TEST(ViewCommands, TheAboutBoxAndExitReachTheWindow) {
    BasketFixture basket;
    basket.form.Run(Command::mnuHilfeInfo);
    basket.form.Run(Command::mnuDateiBeenden);
    EXPECT_EQ(basket.view.about_boxes, 1);
    EXPECT_EQ(basket.view.close_requests, 1);
}

TEST(ViewCommands, AFrozenGridIsPaintedAgainByTheNextCommand) {
    BasketFixture basket;
    basket.files.Put(L"C:\\Basket\\bad.bsk", "4711\t\tzehn\r\n");
    EXPECT_EQ(RaisedBy([&] { basket.form.Load(L"C:\\Basket\\bad.bsk"); }), -1);
    EXPECT_FALSE(basket.grid.Redraw());
    basket.form.Run(Command::mnuEditKopieren);
    EXPECT_TRUE(basket.grid.Redraw());
}

TEST(ViewCommands, AFrozenGridIsPaintedAgainByTheNextClick) {
    for (const int button : {1, 2}) {
        BasketFixture basket;
        basket.files.Put(L"C:\\Basket\\bad.bsk", "4711\t\tzehn\r\n");
        EXPECT_EQ(RaisedBy([&] { basket.form.Load(L"C:\\Basket\\bad.bsk"); }), -1);
        ASSERT_FALSE(basket.grid.Redraw());
        basket.form.Liste_MouseUp(button, 0, 100, 100);
        EXPECT_TRUE(basket.grid.Redraw()) << button;
    }
}

}  // namespace
}  // namespace demovex
