// Save, Save As and Exit in the real window, with the system's dialogs and files: names, questions,
// targets that refuse. What is saved is compared byte for byte.
#include <gtest/gtest.h>

#include <thread>

#include "platform/handle_win.h"
#include "tests/support/real_basket_window_win.h"

namespace demovex {
namespace {

using namespace real_basket;

// The message of a save to `path` that failed, under the window's title.
std::wstring Failed(std::wstring_view title, const std::wstring& path, std::wstring_view why) {
    return L"[exclamation] " + Titled(title) + L": Datei '" + path +
           L"' kann nicht gespeichert werden: " + std::wstring(why) + L" (OK)";
}

UniqueHandle HoldAlone(const std::wstring& path) {
    return OwnFile(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
}

struct WindowSaving : testing::Test {
    void Order(const std::wstring& number) { basket.Link(number, L"K", L"U"); }
    std::wstring Path(const std::wstring& name) const { return basket.folder / name; }
    // A basket that was saved as "a.bsk" with 4711 and has 4712 since.
    void ChangeSaved() {
        Order(L"4711");
        ASSERT_EQ(basket.Choose(Command::mnuDateiSpeichern, {User::Choose(L"a.bsk")}),
                  (Texts{L"Speichern unter: "}));
        Order(L"4712");
    }
    // Nothing has changed but what was said.
    void ExpectUnsaved() {
        EXPECT_TRUE(basket.Modified());
        EXPECT_EQ(basket.Numbers(), (Texts{L"4711", L"4712"}));
        EXPECT_EQ(basket.Caption(), Titled(L"a.bsk"));
    }

    RealBasketWindow basket;
};

// --- names

TEST_F(WindowSaving, AnUntitledBasketIsAskedForItsNameOnce) {
    Order(L"4711");
    EXPECT_EQ(basket.PressCtrl('S', {User::Choose(L"Österreich & Söhne.bsk")}),
              (Texts{L"Speichern unter: "}));
    EXPECT_EQ(basket.folder.Get(L"Österreich & Söhne.bsk"), kHeader + k4711);
    EXPECT_EQ(basket.Caption(), Titled(L"Österreich & Söhne.bsk"));
    EXPECT_FALSE(basket.Modified());
    EXPECT_EQ(basket.Stored(), (Texts{Path(L"Österreich & Söhne.bsk")}));

    Order(L"4712");
    EXPECT_EQ(basket.PressCtrl('S'), Texts{});
    EXPECT_EQ(basket.folder.Get(L"Österreich & Söhne.bsk"), kHeader + k4711 + k4712);
    EXPECT_FALSE(basket.Modified());
    EXPECT_EQ(basket.Files(), 1);
}

TEST_F(WindowSaving, WithoutANameNothingIsSaved) {
    Order(L"4711");
    EXPECT_EQ(basket.PressCtrl('S', {User::Cancel()}), (Texts{L"Speichern unter: "}));
    EXPECT_TRUE(basket.Modified());
    EXPECT_EQ(basket.Caption(), kTitle);
    EXPECT_EQ(basket.Stored(), Texts{});
    EXPECT_EQ(basket.Files(), 0);
}

TEST_F(WindowSaving, WhatIsBeingTypedIsSavedToo) {
    Order(L"4711");
    basket.ClickCell(1, column::kMenge);
    basket.Type(L"3");
    ASSERT_TRUE(basket.EditorOpen());
    EXPECT_EQ(basket.PressCtrl('S', {User::Choose(L"a.bsk")}), (Texts{L"Speichern unter: "}));
    EXPECT_EQ(basket.folder.Get(L"a.bsk"),
              kHeader + "4711\tEau de Cologne\t3\t100,00\t7,27\tK\tU\t300,00\t21,81\r\n");
    EXPECT_FALSE(basket.Modified());
}

TEST_F(WindowSaving, SaveAsBeginsAtTheFileAndLeavesTheOldOneBehind) {
    ChangeSaved();
    const TempFolder other;
    EXPECT_EQ(basket.Choose(Command::mnuDateiSpeichernUnter, {User::Choose(other / L"b.bsk")}),
              (Texts{L"Speichern unter: a.bsk"}));
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711);
    EXPECT_EQ(other.Get(L"b.bsk"), kHeader + k4711 + k4712);
    EXPECT_EQ(basket.Caption(), Titled(L"b.bsk"));
    EXPECT_EQ(basket.Stored(), (Texts{other / L"b.bsk", Path(L"a.bsk")}));

    // a name alone is one of that folder now
    EXPECT_EQ(basket.Choose(Command::mnuDateiSpeichernUnter, {User::Choose(L"c.bsk")}),
              (Texts{L"Speichern unter: b.bsk"}));
    EXPECT_EQ(other.Get(L"c.bsk"), kHeader + k4711 + k4712);
    EXPECT_EQ(basket.Files(), 1);
}

// The dialog is given no extension to add.
TEST_F(WindowSaving, ANameWithoutAnExtensionIsTakenAsItWasTyped) {
    Order(L"4711");
    EXPECT_EQ(basket.Choose(Command::mnuDateiSpeichernUnter, {User::Choose(L"März")}),
              (Texts{L"Speichern unter: "}));
    EXPECT_EQ(basket.folder.Get(L"März"), kHeader + k4711);
    EXPECT_EQ(basket.Caption(), Titled(L"März"));
    EXPECT_EQ(basket.Files(), 1);
}

TEST_F(WindowSaving, AnExistingFileIsReplacedOnlyWithItsUsersConsent) {
    const std::string old = std::string(5000, 'x');
    basket.folder.Put(L"da.bsk", old);
    Order(L"4711");
    EXPECT_EQ(basket.Choose(Command::mnuDateiSpeichernUnter,
                            {User::Choose(L"da.bsk"), User::Overwrite(IDNO), User::Cancel()}),
              (Texts{L"Speichern unter: ", L"<overwrite>", L"Speichern unter: da.bsk"}));
    EXPECT_EQ(basket.folder.Get(L"da.bsk"), old);
    EXPECT_EQ(basket.Caption(), kTitle);
    EXPECT_TRUE(basket.Modified());

    EXPECT_EQ(
        basket.Choose(Command::mnuDateiSpeichernUnter,
                      {User::Choose(L"da.bsk"), User::Overwrite(IDNO), User::Choose(L"neu.bsk")}),
        (Texts{L"Speichern unter: ", L"<overwrite>", L"Speichern unter: da.bsk"}));
    EXPECT_EQ(basket.folder.Get(L"da.bsk"), old);
    EXPECT_EQ(basket.folder.Get(L"neu.bsk"), kHeader + k4711);

    EXPECT_EQ(basket.Choose(Command::mnuDateiSpeichernUnter,
                            {User::Choose(L"da.bsk"), User::Overwrite(IDYES)}),
              (Texts{L"Speichern unter: neu.bsk", L"<overwrite>"}));
    EXPECT_EQ(basket.folder.Get(L"da.bsk"), kHeader + k4711);
    EXPECT_EQ(basket.Caption(), Titled(L"da.bsk"));
}

// --- targets that refuse

TEST_F(WindowSaving, AReadOnlyTargetIsReportedAndKeepsItsOldBytes) {
    ChangeSaved();
    basket.folder.SetReadOnly(L"a.bsk", true);
    EXPECT_EQ(basket.PressCtrl('S', {User::Answer(IDOK)}),
              (Texts{Failed(L"a.bsk", Path(L"a.bsk"), L"Path/File access error")}));
    ExpectUnsaved();
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711);
    EXPECT_EQ(basket.Files(), 1);

    basket.folder.SetReadOnly(L"a.bsk", false);
    EXPECT_EQ(basket.PressCtrl('S'), Texts{});
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711 + k4712);
    EXPECT_FALSE(basket.Modified());
}

TEST_F(WindowSaving, AFolderThatIsGoneIsReported) {
    const TempFolder other;
    Order(L"4711");
    basket.Choose(Command::mnuDateiSpeichern, {User::Choose(other / L"a.bsk")});
    Order(L"4712");
    ASSERT_TRUE(DeleteFileW((other / L"a.bsk").c_str()));
    ASSERT_TRUE(RemoveDirectoryW(RealServices::PathOf(other).c_str()));
    EXPECT_EQ(basket.PressCtrl('S', {User::Answer(IDOK)}),
              (Texts{Failed(L"a.bsk", other / L"a.bsk", L"Path not found")}));
    ExpectUnsaved();
    // and goes elsewhere
    EXPECT_EQ(basket.Choose(Command::mnuDateiSpeichernUnter, {User::Choose(Path(L"a.bsk"))}),
              (Texts{L"Speichern unter: a.bsk"}));
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711 + k4712);
}

// The basket's path stays what it was.
TEST_F(WindowSaving, SaveAsToAReadOnlyFileIsReportedAndLeavesIt) {
    ChangeSaved();
    basket.folder.Put(L"fest.bsk", "old");
    basket.folder.SetReadOnly(L"fest.bsk", true);
    EXPECT_EQ(
        basket.Choose(Command::mnuDateiSpeichernUnter,
                      {User::Choose(L"fest.bsk"), User::Overwrite(IDYES), User::Answer(IDOK)}),
        (Texts{L"Speichern unter: a.bsk", L"<overwrite>",
               Failed(L"a.bsk", Path(L"fest.bsk"), L"Path/File access error")}));
    EXPECT_EQ(basket.folder.Get(L"fest.bsk"), "old");
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711);
    EXPECT_TRUE(basket.Modified());
    EXPECT_EQ(basket.Caption(), Titled(L"a.bsk"));
    EXPECT_EQ(basket.Files(), 2);
    EXPECT_EQ(basket.PressCtrl('S'), Texts{});  // the old file, which it knows
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711 + k4712);
}

TEST_F(WindowSaving, SaveAsIntoAFolderThatDoesNotExistIsReported) {
    ChangeSaved();
    EXPECT_EQ(basket.Choose(Command::mnuDateiSpeichernUnter,
                            {User::Choose(Path(L"fehlt\\b.bsk")), User::Answer(IDOK)}),
              (Texts{L"Speichern unter: a.bsk",
                     Failed(L"a.bsk", Path(L"fehlt\\b.bsk"), L"Path not found")}));
    EXPECT_TRUE(basket.Modified());
    EXPECT_EQ(basket.Numbers(), (Texts{L"4711", L"4712"}));
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711);
    EXPECT_EQ(basket.Files(), 1);
}

TEST_F(WindowSaving, ATargetThatIsLetGoOfInTimeIsSaved) {
    ChangeSaved();
    UniqueHandle held = HoldAlone(Path(L"a.bsk"));
    ASSERT_TRUE(held);
    bool waited = false;
    std::thread other_program([&] {
        // the save has begun and meets the held file; that program needs a while yet
        waited = WaitUntil([&] { return basket.Files() == 2; });
        const ULONGLONG until = GetTickCount64() + 400;
        WaitUntil([&] { return GetTickCount64() >= until; });
        held.reset();
    });
    const Texts seen = basket.PressCtrl('S');
    other_program.join();
    EXPECT_TRUE(waited);
    EXPECT_EQ(seen, Texts{});
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711 + k4712);
    EXPECT_FALSE(basket.Modified());
    EXPECT_EQ(basket.Files(), 1);
}

TEST_F(WindowSaving, ATargetThatStaysHeldIsReportedAndWhole) {
    ChangeSaved();
    UniqueHandle held = HoldAlone(Path(L"a.bsk"));
    ASSERT_TRUE(held);
    EXPECT_EQ(basket.PressCtrl('S', {User::Answer(IDOK)}),
              (Texts{Failed(L"a.bsk", Path(L"a.bsk"), L"Permission denied")}));
    held.reset();
    ExpectUnsaved();
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711);
    EXPECT_EQ(basket.Files(), 1);
    EXPECT_EQ(basket.PressCtrl('S'), Texts{});
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711 + k4712);
}

TEST_F(WindowSaving, ASaveThatFailsBeforeOpenKeepsTheBasket) {
    basket.folder.Put(L"b.bsk", kHeader + k4712);
    ChangeSaved();
    basket.folder.SetReadOnly(L"a.bsk", true);
    EXPECT_EQ(basket.Choose(Command::mnuDateiOeffnen, {User::Answer(IDYES), User::Answer(IDOK)}),
              (Texts{kAsks, Failed(L"a.bsk", Path(L"a.bsk"), L"Path/File access error")}));
    ExpectUnsaved();
}

// --- files that have changed

TEST_F(WindowSaving, AFileThatHasChangedIsReplacedOnlyWithItsUsersConsent) {
    ChangeSaved();
    basket.folder.Put(L"a.bsk", "somebody else's");
    const std::wstring question = L"Speichern: Die Datei '" + Path(L"a.bsk") +
                                  L"' wurde inzwischen geändert. Möchten Sie sie überschreiben ? "
                                  L"(Ja, Nein)";
    EXPECT_EQ(basket.PressCtrl('S', {User::Answer(IDNO)}), (Texts{question}));
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), "somebody else's");
    ExpectUnsaved();
    EXPECT_EQ(basket.PressCtrl('S', {User::Answer(IDYES)}), (Texts{question}));
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711 + k4712);
    EXPECT_FALSE(basket.Modified());
}

// --- closing

TEST_F(WindowSaving, ExitOfAnUnchangedBasketClosesAtOnce) {
    EXPECT_EQ(basket.Choose(Command::mnuDateiBeenden), Texts{});
    EXPECT_FALSE(basket.window->Alive());
    EXPECT_EQ(basket.owner->closed, 1);
    EXPECT_EQ(basket.registry.Get(L"View", L"Toolbarvisible", L""), L"True");
}

TEST_F(WindowSaving, ExitOfAChangedBasketAsksAndCancelKeepsTheWindow) {
    ChangeSaved();
    EXPECT_EQ(basket.Choose(Command::mnuDateiBeenden, {User::Answer(IDCANCEL)}), (Texts{kAsks}));
    EXPECT_EQ(basket.ClickCross({User::Answer(IDCANCEL)}), (Texts{kAsks}));
    ASSERT_TRUE(basket.window->Alive());
    ExpectUnsaved();
    EXPECT_EQ(basket.owner->closed, 0);
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711);
}

TEST_F(WindowSaving, ExitWithoutSavingLeavesTheFileAsItWas) {
    ChangeSaved();
    EXPECT_EQ(basket.Choose(Command::mnuDateiBeenden, {User::Answer(IDNO)}), (Texts{kAsks}));
    EXPECT_FALSE(basket.window->Alive());
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711);
}

TEST_F(WindowSaving, ExitSavesWhenToldSo) {
    ChangeSaved();
    EXPECT_EQ(basket.ClickCross({User::Answer(IDYES)}), (Texts{kAsks}));
    EXPECT_FALSE(basket.window->Alive());
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711 + k4712);
}

TEST_F(WindowSaving, AnUntitledBasketIsSavedOnExitThroughTheDialog) {
    Order(L"4711");
    EXPECT_EQ(basket.Choose(Command::mnuDateiBeenden, {User::Answer(IDYES), User::Cancel()}),
              (Texts{kAsks, L"Speichern unter: "}));
    ASSERT_TRUE(basket.window->Alive());
    EXPECT_TRUE(basket.Modified());
    EXPECT_EQ(basket.Files(), 0);
    EXPECT_EQ(
        basket.Choose(Command::mnuDateiBeenden, {User::Answer(IDYES), User::Choose(L"a.bsk")}),
        (Texts{kAsks, L"Speichern unter: "}));
    EXPECT_FALSE(basket.window->Alive());
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711);
}

TEST_F(WindowSaving, ASaveThatFailsOnExitKeepsTheWindow) {
    ChangeSaved();
    basket.folder.SetReadOnly(L"a.bsk", true);
    EXPECT_EQ(basket.ClickCross({User::Answer(IDYES), User::Answer(IDOK)}),
              (Texts{kAsks, Failed(L"a.bsk", Path(L"a.bsk"), L"Path/File access error")}));
    ASSERT_TRUE(basket.window->Alive());
    ExpectUnsaved();
    EXPECT_EQ(basket.folder.Get(L"a.bsk"), kHeader + k4711);
}

}  // namespace
}  // namespace demovex
