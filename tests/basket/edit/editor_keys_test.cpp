#include <gtest/gtest.h>

#include "tests/support/cell_editor_fixture.h"

namespace demovex {
namespace {

using View = FakeBasketView;

TEST_F(CellEditorTest, LeftAtTheStartOfTheNumberStaysInTheTextBox) {
    basket.Click(2, column::kArtNr);
    basket.view.Select(0, 0);
    EXPECT_TRUE(basket.view.Press(View::kLeft));
    EXPECT_TRUE(basket.view.grid_keys.empty());
}

TEST_F(CellEditorTest, LeftAtTheStartOfADescriptionMovesToTheNumber) {
    basket.Click(2, column::kBezeichnung);
    basket.view.Type(L"x");
    EXPECT_TRUE(basket.view.Press(View::kLeft));  // the caret is behind the x
    basket.Press(View::kLeft);
    EXPECT_EQ(basket.grid.Col(), column::kArtNr);
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"x");
    EXPECT_EQ(basket.form.State().EditCol, column::kArtNr);
}

TEST_F(CellEditorTest, RightMovesOnOnlyFromTheEndOfTheText) {
    basket.Click(2, column::kArtNr);
    basket.view.Type(L"x");
    basket.view.Press(View::kHome);
    EXPECT_TRUE(basket.view.Press(View::kRight));  // from 0 to 1
    basket.messages.answers = {MessageAnswer::kOk};
    basket.Press(View::kRight);
    EXPECT_EQ(basket.grid.Col(), column::kBezeichnung);
    EXPECT_EQ(basket.form.State().EditCol, column::kBezeichnung);
}

TEST_F(CellEditorTest, RightMovesOnFromASelectionThatReachesTheEnd) {
    basket.Click(1, column::kMenge);
    ASSERT_EQ(basket.view.sel_length, 1);
    basket.Press(View::kRight);
    EXPECT_EQ(basket.grid.Col(), column::kPreisAts);
    EXPECT_FALSE(basket.view.EditorOpen());
}

TEST_F(CellEditorTest, UpAndDownCommitAndMove) {
    basket.Click(2, column::kBezeichnung);
    basket.view.Type(L"oben");
    basket.Press(View::kUp);
    EXPECT_EQ(basket.grid.Row(), 1);
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"oben");
    basket.Click(2, column::kArtNr);
    basket.Press(View::kDown);
    EXPECT_EQ(basket.grid.Row(), 3);  // the totals row
    EXPECT_FALSE(basket.view.EditorOpen());
}

TEST_F(CellEditorTest, UpInTheFirstLineStaysInTheTextBox) {
    basket.Click(1, column::kMenge);
    EXPECT_TRUE(basket.view.Press(View::kUp));
    EXPECT_TRUE(basket.view.Press(View::kPageUp));
    EXPECT_TRUE(basket.view.grid_keys.empty());
    EXPECT_TRUE(basket.view.EditorOpen());
}

TEST_F(CellEditorTest, PageKeysMoveByThePage) {
    for (int i = 0; i < 100; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
    basket.grid.SetTopRow(1);
    basket.Click(1, column::kMenge);
    basket.Press(View::kPageDown);
    const std::int32_t row = basket.grid.Row();
    EXPECT_GT(row, 10);
    EXPECT_EQ(basket.form.State().EditRow, row);
    EXPECT_TRUE(basket.view.EditorOpen());
    basket.Press(View::kPageUp);
    EXPECT_EQ(basket.grid.Row(), 1);
}

TEST_F(CellEditorTest, EveryKeyThatMovesCommitsBeforeItIsSent) {
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"9");
    EXPECT_FALSE(basket.view.Press(View::kDown));
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"9");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"900,00");
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_EQ(basket.view.grid_keys, (std::deque<GridKey>{GridKey::kDown}));
}

TEST_F(CellEditorTest, AKeyThatArrivesAfterTheEditorHasClosedDoesNothing) {
    basket.Click(2, column::kBezeichnung);
    basket.form.CommitCellEdit();
    EXPECT_TRUE(basket.view.Press(View::kReturn));
    EXPECT_TRUE(basket.view.Press(View::kDown));
    EXPECT_EQ(basket.Lines(), 2);
    EXPECT_TRUE(basket.view.grid_keys.empty());
}

TEST_F(CellEditorTest, FTwoDropsTheSelection) {
    basket.Click(1, column::kMenge);
    EXPECT_FALSE(basket.view.Press(View::kF2));
    EXPECT_EQ(basket.view.sel_length, 0);
    EXPECT_EQ(basket.view.sel_start, 0);  // where the selection began
}

TEST_F(CellEditorTest, FFourAndAltDownBelongToTheTextBoxWithoutAList) {
    basket.Click(1, column::kMenge);
    EXPECT_TRUE(basket.view.Press(View::kF4));
    EXPECT_TRUE(basket.view.Press(View::kDown, shift_state::kAlt));
    EXPECT_FALSE(basket.view.list_visible);
}

TEST_F(CellEditorTest, KeysWithOtherShiftStatesBelongToTheTextBox) {
    basket.Click(2, column::kBezeichnung);
    for (const int shift : {1, 2, 3, 4, 6}) {
        EXPECT_TRUE(basket.view.Press(View::kLeft, shift)) << shift;
        EXPECT_TRUE(basket.view.Press(View::kReturn, shift)) << shift;
    }
    EXPECT_TRUE(basket.view.Press(View::kUp, shift_state::kCtrl));
    EXPECT_TRUE(basket.view.EditorOpen());
}

TEST_F(CellEditorTest, ReturnInTheDescriptionInsertsARowBelow) {
    basket.Link(L"4712");  // row 3
    basket.Click(2, column::kBezeichnung);
    basket.view.Type(L"Hinweis");
    basket.Press(View::kReturn);
    ASSERT_EQ(basket.Lines(), 4) << basket.AsText();
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"Hinweis");
    EXPECT_EQ(basket.Cell(3, column::kBezeichnung), L"");
    EXPECT_EQ(basket.Cell(4, column::kArtNr), L"4712");
    EXPECT_EQ(basket.Cell(4, column::kNumber), L"4");
    EXPECT_EQ(basket.grid.Row(), 2);
    EXPECT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.form.State().EditCol, column::kBezeichnung);
}

TEST_F(CellEditorTest, ReturnIsUsedUpAndDoesNotBeep) {
    basket.Click(1, column::kMenge);
    int code = View::kReturn;
    basket.form.IPText_KeyDown(code, 0);
    EXPECT_EQ(code, 0);
    int ascii = 13;
    basket.form.IPText_KeyPress(ascii);
    EXPECT_EQ(ascii, 0);
    int letter = L'x';
    basket.form.IPText_KeyPress(letter);
    EXPECT_EQ(letter, L'x');
}

TEST_F(CellEditorTest, ShiftDownSelectsTheEditedRowAndTheNext) {
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"8");
    EXPECT_FALSE(basket.view.Press(View::kDown, shift_state::kShift));
    EXPECT_EQ(basket.grid.Row(), 1);
    EXPECT_EQ(basket.grid.RowSel(), 2);
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"800,00");
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_FALSE(basket.form.State().SuppressEditor);
}

TEST_F(CellEditorTest, ShiftUpSelectsTheEditedRowAndTheOneAbove) {
    basket.Click(2, column::kArtNr);
    basket.view.Type(L"4712");
    EXPECT_FALSE(basket.view.Press(View::kUp, shift_state::kShift));
    EXPECT_EQ(basket.grid.Row(), 2);
    EXPECT_EQ(basket.grid.RowSel(), 1);
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"Duftwasser");
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_FALSE(basket.form.State().SuppressEditor);
    basket.Click(1, column::kMenge);
    EXPECT_TRUE(basket.view.Press(View::kUp, shift_state::kShift));  // no row above
}

}  // namespace
}  // namespace demovex
