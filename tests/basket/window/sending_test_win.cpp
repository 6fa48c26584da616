// Sending the selection to other baskets from the real window, with the system's dialog and files.
#include <gtest/gtest.h>

#include "platform/handle_win.h"
#include "tests/support/real_basket_window_win.h"

namespace demovex {
namespace {

using namespace real_basket;

const std::string k2000 = "2000\tRadiergummi\t1\t0,10\t0,01\tK\tU\t0,10\t0,01\r\n";

// Rows 4711, 4712, 2000 and an empty one.
struct WindowSending : testing::Test {
    WindowSending() {
        for (const wchar_t* number : {L"4711", L"4712", L"2000"}) basket.Link(number, L"K", L"U");
        basket.Choose(Command::mnuEditNeueZeile);
        Select(1, 1);
    }
    void Select(std::int32_t row, std::int32_t row_sel) {
        basket.Grid().Select(row, column::kArtNr, row_sel, column::kArtNr);
        basket.Pump();
    }
    std::wstring Path(const std::wstring& name) const { return basket.folder / name; }
    // The message of a sending that failed.
    std::wstring Failed(const std::wstring& name, const std::wstring& why) const {
        return L"DemoVexClient: Kann Bestelldaten nicht an '" + Path(name) + L"' senden: " + why +
               L" (OK)";
    }
    Texts SendTo(const std::wstring& name, std::vector<User::Act> then = {}) {
        then.insert(then.begin(), User::Choose(name));
        return basket.Choose(Command::mnuContextSendToOther, std::move(then));
    }

    RealBasketWindow basket;
    const Texts dialog{L"Warenkorb wählen: "};
};

TEST_F(WindowSending, ANewFileHoldsTheSelectedRowsAlone) {
    Select(3, 2);
    const std::string cells = basket.AsText();
    EXPECT_EQ(SendTo(L"für Höfer.bsk"), dialog);
    EXPECT_EQ(basket.folder.Get(L"für Höfer.bsk"), k4712 + k2000);
    EXPECT_EQ(basket.AsText(), cells);
    EXPECT_TRUE(basket.Modified());  // as it was
    EXPECT_EQ(basket.Caption(), L"Vexmart Demo Warenkorb 1.1");
    EXPECT_EQ(basket.Stored(), (Texts{Path(L"für Höfer.bsk")}));
    EXPECT_EQ(basket.RecentEntries(), Texts{basket.Entry(1, Path(L"für Höfer.bsk"))});
    EXPECT_EQ(basket.Files(), 1);
}

TEST_F(WindowSending, AnExistingFileIsAppendedToOnceItsUserAgreed) {
    basket.folder.Put(L"b.bsk", kHeader + k4711);
    Select(2, 4);
    EXPECT_EQ(SendTo(L"b.bsk", {User::Overwrite(IDYES)}),
              (Texts{L"Warenkorb wählen: ", L"<overwrite>"}));
    EXPECT_EQ(basket.folder.Get(L"b.bsk"),
              kHeader + k4711 + k4712 + k2000 + "\t\t\t\t\t\t\t\t\r\n");
}

TEST_F(WindowSending, AnExistingFileStaysAsItIsWithoutConsent) {
    basket.folder.Put(L"b.bsk", kHeader + k4711);
    EXPECT_EQ(SendTo(L"b.bsk", {User::Overwrite(IDNO), User::Cancel()}),
              (Texts{L"Warenkorb wählen: ", L"<overwrite>", L"Warenkorb wählen: b.bsk"}));
    EXPECT_EQ(basket.folder.Get(L"b.bsk"), kHeader + k4711);
    EXPECT_EQ(basket.Stored(), Texts{});
}

TEST_F(WindowSending, ACancelledDialogSendsNothing) {
    EXPECT_EQ(basket.Choose(Command::mnuContextSendToOther, {User::Cancel()}), dialog);
    EXPECT_EQ(basket.Files(), 0);
    EXPECT_EQ(basket.Stored(), Texts{});
}

TEST_F(WindowSending, ARecentFileReceivesTheRowsWithoutAQuestion) {
    SendTo(L"b.bsk");
    SendTo(L"c.bsk");
    const Texts stored = basket.Stored();
    Select(2, 2);
    EXPECT_EQ(basket.Choose(Command::mnuContextSendTo2), Texts{});
    EXPECT_EQ(basket.Choose(Command::mnuContextSendTo2), Texts{});
    EXPECT_EQ(basket.folder.Get(L"b.bsk"), k4711 + k4712 + k4712);
    EXPECT_EQ(basket.folder.Get(L"c.bsk"), k4711);
    EXPECT_EQ(basket.Stored(), stored);
}

TEST_F(WindowSending, ARecentFileThatWasDeletedIsMadeAnew) {
    SendTo(L"b.bsk");
    ASSERT_TRUE(DeleteFileW(Path(L"b.bsk").c_str()));
    Select(2, 2);
    EXPECT_EQ(basket.Choose(Command::mnuContextSendTo1), Texts{});
    EXPECT_EQ(basket.folder.Get(L"b.bsk"), k4712);
}

TEST_F(WindowSending, WhatWasSentOpensAsABasket) {
    Select(1, 3);
    SendTo(L"b.bsk");
    EXPECT_EQ(basket.Choose(Command::mnuDateiOeffnen, {User::Answer(IDNO), User::Choose(L"b.bsk")})
                  .size(),
              2u);
    EXPECT_EQ(basket.Numbers(), (Texts{L"4711", L"4712", L"2000"}));
    EXPECT_EQ(basket.Caption(), L"Vexmart Demo Warenkorb 1.1 - b.bsk");
}

TEST_F(WindowSending, AReadOnlyFileIsReportedAndUnchanged) {
    SendTo(L"b.bsk");
    basket.folder.SetReadOnly(L"b.bsk", true);
    EXPECT_EQ(basket.Choose(Command::mnuContextSendTo1, {User::Answer(IDOK)}),
              (Texts{Failed(L"b.bsk", L"Path/File access error")}));
    EXPECT_EQ(basket.folder.Get(L"b.bsk"), k4711);
}

TEST_F(WindowSending, AFileThatAnotherProgramKeepsForItselfIsReported) {
    SendTo(L"b.bsk");
    UniqueHandle held = OwnFile(
        CreateFileW(Path(L"b.bsk").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(held);
    EXPECT_EQ(basket.Choose(Command::mnuContextSendTo1, {User::Answer(IDOK)}),
              (Texts{Failed(L"b.bsk", L"Permission denied")}));
    held.reset();
    EXPECT_EQ(basket.folder.Get(L"b.bsk"), k4711);
}

TEST_F(WindowSending, AFolderThatIsGoneIsReported) {
    ASSERT_TRUE(CreateDirectoryW(Path(L"Ablage").c_str(), nullptr));
    EXPECT_EQ(SendTo(Path(L"Ablage\\b.bsk")), dialog);
    ASSERT_TRUE(DeleteFileW(Path(L"Ablage\\b.bsk").c_str()));
    ASSERT_TRUE(RemoveDirectoryW(Path(L"Ablage").c_str()));
    EXPECT_EQ(basket.Choose(Command::mnuContextSendTo1, {User::Answer(IDOK)}),
              (Texts{Failed(L"Ablage\\b.bsk", L"Path not found")}));
}

}  // namespace
}  // namespace demovex
