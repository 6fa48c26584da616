// What the note says when, and which actions take it back.
#include <gtest/gtest.h>

#include "basket/window/note.h"
#include "tests/support/basket_fixture.h"

namespace demovex {
namespace {

TEST(Note, SaysTheLastThingSaid) {
    Note note;
    EXPECT_EQ(note.Text(), L"");
    note.Say(L"eins", 0);
    note.Say(L"zwei", 10);
    EXPECT_EQ(note.Text(), L"zwei");
    note.Say({}, 20);
    EXPECT_EQ(note.Text(), L"");
}

TEST(Note, IsTakenBackOnceThereWasTimeToReadIt) {
    Note note;
    EXPECT_EQ(note.TimeLeft(5), 0u);
    EXPECT_FALSE(note.Expire(1'000'000));
    note.Say(L"3 Zeilen gelöscht", 1000);
    const std::uint64_t left = note.TimeLeft(1000);
    EXPECT_GE(left, 5000u);
    EXPECT_FALSE(note.Expire(1000 + left - 1));
    EXPECT_EQ(note.TimeLeft(1000 + left - 1), 1u);
    EXPECT_EQ(note.Text(), L"3 Zeilen gelöscht");
    EXPECT_TRUE(note.Expire(1000 + left));
    EXPECT_EQ(note.Text(), L"");
    EXPECT_FALSE(note.Expire(1000 + left));
}

TEST(Note, ALongTextStaysLonger) {
    Note shorter, longer;
    shorter.Say(L"kurz", 0);
    longer.Say(std::wstring(200, L'x'), 0);
    EXPECT_GE(longer.TimeLeft(0), shorter.TimeLeft(0) + 10'000);
}

TEST(Note, SayingSomethingAgainBeginsItsTimeAnew) {
    Note note;
    note.Say(L"eins", 0);
    const std::uint64_t left = note.TimeLeft(0);
    note.Say(L"eins", left - 1);
    EXPECT_FALSE(note.Expire(left + 1));
}

TEST(Note, TheStandingTextIsThereWhileNothingIsSaid) {
    Note note;
    note.SetStanding(L"3 Zeilen");
    EXPECT_EQ(note.Text(), L"3 Zeilen");
    EXPECT_EQ(note.TimeLeft(0), 0u);
    note.Say(L"gesagt", 0);
    note.SetStanding(L"4 Zeilen");
    EXPECT_EQ(note.Text(), L"gesagt");
    EXPECT_TRUE(note.Expire(note.TimeLeft(0)));
    EXPECT_EQ(note.Text(), L"4 Zeilen");
    note.SetStanding({});
    EXPECT_EQ(note.Text(), L"");
}

TEST(Note, IsOneLineThatCanBeRead) {
    Note note;
    note.Say(std::wstring_view(L"a\tb\r\nc\0d\x7F", 9), 0);
    EXPECT_EQ(note.Text(), L"a b  c d ");
    note.Say(std::wstring(5'000'000, L'x'), 0);
    EXPECT_EQ(note.Text().size(), Note::kLongest);
    EXPECT_TRUE(note.Text().ends_with(L"x..."));
    note.Say(std::wstring(Note::kLongest, L'x'), 0);
    EXPECT_TRUE(note.Text().ends_with(L"xxx"));
}

// --- the actions that take it back

class NoteActions : public ::testing::Test {
  protected:
    void Say() { basket.view.ShowNote(L"gesagt"); }
    bool Gone() const { return basket.view.note.empty(); }
    BasketFixture basket;
};

TEST_F(NoteActions, AFollowedLinkTakesTheNoteBack) {
    Say();
    basket.Link(L"4711");
    EXPECT_TRUE(Gone());
}

TEST_F(NoteActions, ALoadTakesTheNoteBack) {
    basket.files.Put(L"C:\\Basket\\a.bsk", "4711\t\t2\r\n");
    Say();
    basket.form.Load(L"C:\\Basket\\a.bsk");
    EXPECT_TRUE(Gone());
}

TEST_F(NoteActions, ACommandTakesTheNoteBack) {
    Say();
    basket.form.Run(Command::mnuEditNeueZeile);
    EXPECT_TRUE(Gone());
    Say();
    basket.form.Toolbar_ButtonClick(L"NewRow");
    EXPECT_TRUE(Gone());
}

TEST_F(NoteActions, AKeyInTheEditorTakesTheNoteBackButShiftCtrlAndAltDoNot) {
    basket.Link(L"4711");
    basket.Click(1, column::kMenge);
    ASSERT_TRUE(basket.view.EditorOpen());
    Say();
    for (const int modifier : {16, 17, 18}) basket.view.Press(modifier, 0);
    EXPECT_FALSE(Gone());
    basket.view.Press('3');
    EXPECT_TRUE(Gone());
}

TEST_F(NoteActions, AKeyInTheListTakesTheNoteBack) {
    Say();
    int key = FakeBasketView::kDown;
    basket.form.IPComboList_KeyDown(key, 0);
    EXPECT_TRUE(Gone());
}

TEST_F(NoteActions, MovesByCodeLeaveTheNote) {
    basket.Link(L"4711");
    basket.Link(L"4712");
    Say();
    basket.grid.SetRow(1);
    basket.form.SetFocusTimer_Timer();
    EXPECT_FALSE(Gone());
}

}  // namespace
}  // namespace demovex
