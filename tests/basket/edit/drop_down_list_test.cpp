#include <gtest/gtest.h>

#include "tests/support/cell_editor_fixture.h"

namespace demovex {
namespace {

using View = FakeBasketView;

bool QuantityOffersList(std::int32_t, std::int32_t col) {
    return col == column::kMenge;
}

class DropDownList : public CellEditorTest {
  protected:
    DropDownList() {
        basket.form.SetOffersList(QuantityOffersList);
        basket.view.list_entries = {L"1", L"3", L"10"};
        basket.Click(1, column::kMenge);
    }
};

TEST_F(DropDownList, ACellThatOffersAListShowsTheButtonAtItsRightEdge) {
    EXPECT_TRUE(basket.view.OffersList());
    EXPECT_FALSE(basket.view.button_pressed);
    EXPECT_GT(basket.view.button_draws, 0);
    const TwipsRect cell = basket.view.background_rect;
    EXPECT_EQ(basket.view.button_rect, (TwipsRect{cell.width - basket.view.button_width, 0,
                                                  basket.view.button_width, cell.height}));
    EXPECT_EQ(basket.view.text_rect.width, cell.width - 45 - basket.view.button_width);
    basket.Click(2, column::kArtNr);
    EXPECT_FALSE(basket.view.OffersList());
}

TEST_F(DropDownList, OpensBelowTheCellOnItsEntryWithTheFocus) {
    basket.form.IPComboButton_Click();
    EXPECT_TRUE(basket.view.list_visible);
    EXPECT_EQ(basket.view.list_at,
              (TwipsPoint{basket.grid.CellLeft(),
                          basket.view.grid_rect.top + basket.grid.CellTop() + 225}));
    EXPECT_EQ(basket.view.list_index, 1);  // "3"
    EXPECT_EQ(basket.view.focus, View::FocusPlace::kList);
    EXPECT_TRUE(basket.view.button_pressed);
    EXPECT_TRUE(basket.view.timer_enabled);
}

TEST_F(DropDownList, SelectsNoneWhenNoEntryIsTheCellsText) {
    basket.view.list_entries = {L"30", L"03"};
    basket.form.IPComboButton_Click();
    EXPECT_EQ(basket.view.list_index, -1);
}

TEST_F(DropDownList, OpensBelowWhenTheRoomJustSuffices) {
    basket.view.list_height = basket.grid.Height() - basket.grid.CellTop();
    basket.form.IPComboButton_Click();
    EXPECT_EQ(basket.view.list_at.y, basket.view.grid_rect.top + basket.grid.CellTop() + 225);
}

TEST_F(DropDownList, OpensAboveWhenThereIsNoRoomBelow) {
    basket.view.list_height = basket.grid.Height() - basket.grid.CellTop() + 15;
    basket.form.IPComboButton_Click();
    EXPECT_EQ(basket.view.list_at.y,
              basket.view.grid_rect.top + basket.grid.CellTop() - basket.view.list_height);
}

TEST_F(DropDownList, FFourAndAltDownDropItAndTheButtonClosesIt) {
    EXPECT_FALSE(basket.view.Press(View::kF4));
    EXPECT_TRUE(basket.view.list_visible);
    basket.form.IPComboButton_Click();
    EXPECT_FALSE(basket.view.list_visible);
    EXPECT_FALSE(basket.view.button_pressed);
    EXPECT_FALSE(basket.view.Press(View::kDown, shift_state::kAlt));
    EXPECT_TRUE(basket.view.list_visible);
}

TEST_F(DropDownList, TheEntryUnderThePointerIsSelected) {
    basket.form.IPComboButton_Click();
    const auto hover = [&](Twips y) {
        basket.form.IPComboList_MouseMove(0, 0, 10, y);
        return basket.view.list_index;
    };
    EXPECT_EQ(hover(0), 0);
    EXPECT_EQ(hover(194), 0);
    EXPECT_EQ(hover(195), 1);
    EXPECT_EQ(hover(5000), 2);
    EXPECT_EQ(hover(-500), 0);
}

TEST_F(DropDownList, ReleasingOverAnEntryTakesItAndAnywhereElseOnlyCloses) {
    basket.form.IPComboButton_Click();
    basket.form.IPComboList_MouseUp(1, 0, 10, 400);
    EXPECT_FALSE(basket.view.list_visible);
    EXPECT_EQ(basket.view.text, L"10");
    EXPECT_EQ(basket.view.sel_length, 2);
    for (const Twips y : {-300, 600}) {
        basket.form.IPComboButton_Click();
        basket.form.IPComboList_MouseUp(1, 0, 10, y);
        EXPECT_FALSE(basket.view.list_visible);
        EXPECT_EQ(basket.view.text, L"10");
    }
}

TEST_F(DropDownList, ReleasingBelowTheThreeEntriesInViewTakesNoneOfTheFurtherOnes) {
    basket.view.list_entries = {L"1", L"3", L"10", L"20", L"30"};
    basket.form.IPComboButton_Click();
    basket.form.IPComboList_MouseUp(1, 0, 10, 3 * 195);
    EXPECT_FALSE(basket.view.list_visible);
    EXPECT_EQ(basket.view.text, L"3");
    basket.form.IPComboButton_Click();
    basket.form.IPComboList_MouseUp(1, 0, 10, 3 * 195 - 1);
    EXPECT_EQ(basket.view.text, L"10");
}

TEST_F(DropDownList, OfEqualEntriesTheFirstIsSelected) {
    basket.view.list_entries = {L"1", L"3", L"10", L"3", L"3"};
    basket.form.IPComboButton_Click();
    EXPECT_EQ(basket.view.list_index, 1);
}

TEST_F(DropDownList, AnEmptyListTakesNothing) {
    basket.view.list_entries.clear();
    basket.form.IPComboButton_Click();
    basket.form.IPComboList_MouseMove(0, 0, 10, 10);
    basket.form.IPComboList_MouseUp(1, 0, 10, 10);
    EXPECT_EQ(basket.view.text, L"3");
    basket.form.IPComboButton_Click();
    int key = View::kReturn;
    basket.form.IPComboList_KeyDown(key, 0);
    EXPECT_EQ(basket.view.text, L"3");
    EXPECT_FALSE(basket.view.list_visible);
}

TEST_F(DropDownList, ReturnTakesTheSelectedEntry) {
    basket.form.IPComboButton_Click();
    basket.view.list_index = 2;
    int key = View::kReturn;
    basket.form.IPComboList_KeyDown(key, 0);
    EXPECT_EQ(key, 0);
    EXPECT_EQ(basket.view.text, L"10");
    EXPECT_EQ(basket.view.sel_start, 0);
    EXPECT_EQ(basket.view.sel_length, 2);
    EXPECT_FALSE(basket.view.list_visible);
    EXPECT_TRUE(basket.view.EditorOpen());
}

TEST_F(DropDownList, EscapeFTwoAndFFourCloseItWithoutChange) {
    for (const int code : {View::kEscape, View::kF2, View::kF4}) {
        basket.form.IPComboButton_Click();
        basket.view.list_index = 2;
        int key = code;
        basket.form.IPComboList_KeyDown(key, 0);
        EXPECT_FALSE(basket.view.list_visible);
        EXPECT_EQ(basket.view.text, L"3");
    }
    basket.form.IPComboButton_Click();
    int other = View::kDown;
    basket.form.IPComboList_KeyDown(other, 0);
    EXPECT_EQ(other, static_cast<int>(View::kDown));
    EXPECT_TRUE(basket.view.list_visible);
}

TEST_F(DropDownList, LosesItselfWithTheFocusOnTheTimer) {
    basket.form.IPComboButton_Click();
    basket.view.Tick();
    EXPECT_TRUE(basket.view.list_visible);
    EXPECT_TRUE(basket.view.timer_enabled);  // keeps watching
    basket.view.focus = View::FocusPlace::kElsewhere;
    basket.view.Tick();
    EXPECT_FALSE(basket.view.list_visible);
    EXPECT_FALSE(basket.view.timer_enabled);
}

TEST_F(DropDownList, CommittingClosesIt) {
    basket.form.IPComboButton_Click();
    basket.form.CommitCellEdit();
    EXPECT_FALSE(basket.view.list_visible);
    EXPECT_FALSE(basket.view.EditorOpen());
}

TEST_F(DropDownList, OpeningATopLevelMenuClosesIt) {
    for (const Command menu :
         {Command::mnuDatei, Command::mnuEdit, Command::mnuAnsicht, Command::mnuHilfe}) {
        basket.form.IPComboButton_Click();
        ASSERT_TRUE(basket.view.list_visible);
        basket.form.MenuOpened(menu);
        EXPECT_FALSE(basket.view.list_visible);
    }
}

}  // namespace
}  // namespace demovex
