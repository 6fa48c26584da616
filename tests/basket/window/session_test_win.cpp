// The real window at the end of the user's session: it shows no box, closes nothing and tells the
// system what would be lost.
#include <gtest/gtest.h>

#include "basket/window/handles_win.h"
#include "tests/support/import_table_win.h"
#include "tests/support/test_basket_window_win.h"

namespace demovex {
namespace {

class SessionWindow : public BasketWindowFixture {
  public:
    bool Asked(LPARAM reasons = 0) {
        return SendMessageW(Handle(), WM_QUERYENDSESSION, 0, reasons) != FALSE;
    }
    void Ended(bool ends) { SendMessageW(Handle(), WM_ENDSESSION, ends, 0); }
};

TEST(WindowSession, ABasketWithUnsavedChangesAsksTheSystemToWait) {
    SessionWindow basket;
    basket.Link(L"4711");
    EXPECT_FALSE(basket.Asked());
    EXPECT_TRUE(basket.messages.shown.empty());
    EXPECT_TRUE(basket.window->Alive());
    EXPECT_EQ(basket.owner->closed, 0);
    EXPECT_TRUE(basket.window->Form()->Modified());
}

// What the system would show the user while it waits, by the window that it belongs to.
std::vector<std::pair<HWND, std::wstring>> reasons_told;

BOOL WINAPI CreateReason(HWND window, LPCWSTR reason) {
    reasons_told.emplace_back(window, reason);
    return TRUE;
}
BOOL WINAPI DestroyReason(HWND window) {
    return std::erase_if(reasons_told, [&](const auto& told) { return told.first == window; }) > 0;
}

TEST(WindowSession, WhatWouldBeLostIsTheReasonToWaitUntilTheEndIsCancelled) {
    decltype(&CreateReason) create = nullptr;
    decltype(&DestroyReason) destroy = nullptr;
    const CaughtImport created("ShutdownBlockReasonCreate", &CreateReason, &create);
    const CaughtImport destroyed("ShutdownBlockReasonDestroy", &DestroyReason, &destroy);
    ASSERT_TRUE(created.Caught() && destroyed.Caught());
    reasons_told.clear();
    SessionWindow basket;
    EXPECT_TRUE(basket.Asked());
    EXPECT_TRUE(reasons_told.empty());
    basket.Link(L"4711");
    EXPECT_TRUE(basket.Asked(static_cast<LPARAM>(ENDSESSION_CRITICAL)));
    EXPECT_TRUE(reasons_told.empty());
    EXPECT_FALSE(basket.Asked());
    ASSERT_EQ(reasons_told.size(), 1u);
    EXPECT_EQ(reasons_told[0].first, basket.Handle());
    EXPECT_EQ(reasons_told[0].second, L"Der Warenkorb ist nicht gespeichert.");
    basket.Ended(false);
    EXPECT_TRUE(reasons_told.empty());
}

TEST(WindowSession, OneWithoutAgreesAndStaysOpen) {
    SessionWindow basket;
    EXPECT_TRUE(basket.Asked());
    EXPECT_TRUE(basket.window->Alive());
    EXPECT_EQ(basket.owner->closed, 0);
    EXPECT_TRUE(basket.messages.shown.empty());
}

TEST(WindowSession, ACriticalEndIsNotRefused) {
    SessionWindow basket;
    basket.Link(L"4711");
    EXPECT_TRUE(basket.Asked(static_cast<LPARAM>(ENDSESSION_CRITICAL)));
    EXPECT_TRUE(basket.Asked(static_cast<LPARAM>(ENDSESSION_CRITICAL | ENDSESSION_LOGOFF)));
    EXPECT_FALSE(basket.Asked(static_cast<LPARAM>(ENDSESSION_LOGOFF)));
    EXPECT_TRUE(basket.messages.shown.empty());
}

TEST(WindowSession, WhatIsBeingTypedStaysAsItIs) {
    SessionWindow basket;
    basket.files.Put(L"C:\\Basket\\a.bsk", "4711\t\t2\r\n");
    basket.window->Form()->Load(L"C:\\Basket\\a.bsk");
    basket.ClickCell(1, column::kMenge);
    basket.Type(L"77");
    EXPECT_FALSE(basket.Asked());
    EXPECT_TRUE(basket.EditorOpen());
    EXPECT_EQ(BasketWindowFixture::TextOf(basket.Text()), L"77");
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"2");
}

TEST(WindowSession, AfterAnEndThatWasCancelledEverythingGoesOn) {
    SessionWindow basket;
    basket.Link(L"4711");
    basket.Asked();
    basket.Ended(false);
    EXPECT_TRUE(basket.window->Alive());
    EXPECT_EQ(basket.owner->closed, 0);
    basket.Link(L"4712");
    EXPECT_EQ(basket.Lines(), 2);
    EXPECT_EQ(basket.settings.Get(L"View", L"Toolbarvisible", L"(none)"), L"(none)");
    // a later close asks as ever
    basket.messages.answers = {MessageAnswer::kCancel};
    SendMessageW(basket.Handle(), WM_CLOSE, 0, 0);
    EXPECT_EQ(basket.messages.shown.size(), 1u);
    EXPECT_TRUE(basket.window->Alive());
}

TEST(WindowSession, TheEndWritesTheSettingsAndAsksNothing) {
    SessionWindow basket;
    basket.Link(L"4711");
    SendMessageW(basket.Handle(), WM_COMMAND, static_cast<WPARAM>(Command::mnuAnsichtSymbolleiste),
                 0);
    basket.Ended(true);
    EXPECT_EQ(basket.settings.Get(L"View", L"Toolbarvisible", L"(none)"), L"False");
    EXPECT_EQ(basket.settings.Get(L"View", L"Statusbarvisible", L"(none)"), L"True");
    EXPECT_TRUE(basket.messages.shown.empty());
    EXPECT_EQ(basket.owner->closed, 0);
}

TEST(WindowSession, AQuestionThatStandsIsNotAnswered) {
    SessionWindow basket;
    basket.Link(L"4711");
    bool agreed = true;
    basket.messages.while_open = [&] { agreed = basket.Asked(); };
    basket.messages.answers = {MessageAnswer::kCancel};
    SendMessageW(basket.Handle(), WM_CLOSE, 0, 0);
    EXPECT_FALSE(agreed);
    EXPECT_TRUE(basket.window->Alive());
    EXPECT_EQ(basket.messages.shown.size(), 1u);
}

}  // namespace
}  // namespace demovex
