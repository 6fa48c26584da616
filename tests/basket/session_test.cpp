// The end of the user's session: what is named as a reason to wait, and what is done at the end.
#include <gtest/gtest.h>

#include "tests/support/basket_fixture.h"

namespace demovex {
namespace {

TEST(Session, ABasketWithoutChangesIsNoReasonToWait) {
    BasketFixture basket;
    EXPECT_EQ(basket.form.UnsavedChanges(), L"");
    basket.files.Put(L"C:\\Basket\\Montag.bsk", "4711\t\t2\r\n");
    basket.form.Load(L"C:\\Basket\\Montag.bsk");
    EXPECT_EQ(basket.form.UnsavedChanges(), L"");
}

TEST(Session, UnsavedChangesAreNamedWithTheirBasket) {
    BasketFixture basket;
    basket.Link(L"4711");
    EXPECT_EQ(basket.form.UnsavedChanges(), L"Der Warenkorb ist nicht gespeichert.");
    basket.files.Put(L"C:\\Basket\\Montag.bsk", "4711\t\t2\r\n");
    basket.form.Load(L"C:\\Basket\\Montag.bsk");
    basket.Link(L"4712");
    EXPECT_EQ(basket.form.UnsavedChanges(), L"Der Warenkorb 'Montag.bsk' ist nicht gespeichert.");
}

TEST(Session, AReasonIsShortEnoughForTheSystem) {
    BasketFixture basket;
    const std::wstring path = L"C:\\Basket\\" + std::wstring(240, L'x') + L".bsk";
    basket.files.Put(path, "4711\t\t2\r\n");
    basket.form.Load(path);
    basket.Link(L"4712");
    const std::wstring reason = basket.form.UnsavedChanges();
    EXPECT_LT(reason.size(), 200u);
    EXPECT_NE(reason.find(L"xxx...'"), std::wstring::npos);
}

TEST(Session, ATextThatIsBeingTypedIsUnsavedToo) {
    BasketFixture basket;
    basket.files.Put(L"C:\\Basket\\Montag.bsk", "4711\t\t2\r\n");
    basket.form.Load(L"C:\\Basket\\Montag.bsk");
    basket.Click(1, column::kMenge);
    ASSERT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.form.UnsavedChanges(), L"");
    basket.TypeOver(L"7");
    EXPECT_EQ(basket.form.UnsavedChanges(), L"Der Warenkorb 'Montag.bsk' ist nicht gespeichert.");
    EXPECT_TRUE(basket.view.EditorOpen());
    EXPECT_FALSE(basket.form.Modified()) << "nothing was committed";
}

TEST(Session, AWindowThatIsNotSetUpHasNothingToLose) {
    BasketFixture basket(FakeLocale::kAustria, false);
    EXPECT_EQ(basket.form.UnsavedChanges(), L"");
}

TEST(Session, TheEndWritesTheSettingsAndAsksNothing) {
    BasketFixture basket;
    basket.Link(L"4711");
    basket.form.Run(Command::mnuAnsichtStatusleiste);
    basket.form.SessionEnds();
    EXPECT_EQ(basket.settings.Get(L"View", L"Statusbarvisible", L""), L"False");
    EXPECT_EQ(basket.settings.Get(L"View", L"Toolbarvisible", L""), L"True");
    EXPECT_TRUE(basket.messages.shown.empty());
    EXPECT_EQ(basket.owner.closed, 0);
}

}  // namespace
}  // namespace demovex
