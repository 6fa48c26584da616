// Which keys a basket window keeps for itself and which it leaves to its host, and that its current
// cell can always be written in: in every kind of host loop, with real input.
#include <gtest/gtest.h>

#include <algorithm>

#include "basket/window/handles_win.h"
#include "tests/support/test_basket_window_win.h"

namespace demovex {
namespace {

class WindowLoops : public ::testing::TestWithParam<HostLoop> {
  protected:
    bool HasAccelerators() const {
        return GetParam() == HostLoop::kAccelerators || GetParam() == HostLoop::kBoth;
    }
};
INSTANTIATE_TEST_SUITE_P(HostLoops, WindowLoops, ::testing::ValuesIn(kHostLoops),
                         [](const auto& of) { return HostLoopName(of.param); });

// What the loop has seen of keys and characters, those that only hold others left out.
std::vector<int> Seen(const BasketWindowFixture& basket) {
    std::vector<int> keys;
    for (const MSG& message : basket.keys_seen) {
        const auto key = static_cast<int>(message.wParam);
        const bool down = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
        if (down && (key == VK_SHIFT || key == VK_CONTROL || key == VK_MENU)) continue;
        keys.push_back(key);
    }
    return keys;
}

TEST_P(WindowLoops, WhatABasketUsesReachesItAndNothingOfItTheHost) {
    for (const bool in_editor : {true, false}) {
        SCOPED_TRACE(in_editor ? "editor" : "grid");
        BasketWindowFixture basket(GetParam());
        basket.messages.otherwise = MessageAnswer::kNo;
        for (int i = 0; i < 3; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
        const std::int32_t col = in_editor ? column::kMenge : column::kPreisAts;
        const auto press = [&](int key, const std::vector<WORD>& modifiers) {
            basket.Grid().Select(2, column::kBezeichnung, 2, column::kBezeichnung);
            basket.Grid().Select(2, col, 2, col);
            basket.Pump();
            basket.Press(static_cast<WORD>(key), modifiers);
        };
        for (const int key : {int{'A'},     int{'M'},  int{'7'},  VK_SPACE,  VK_NUMPAD5, VK_ADD,
                              VK_OEM_COMMA, VK_LEFT,   VK_RIGHT,  VK_UP,     VK_DOWN,    VK_HOME,
                              VK_END,       VK_PRIOR,  VK_NEXT,   VK_DELETE, VK_BACK,    VK_INSERT,
                              VK_TAB,       VK_RETURN, VK_ESCAPE, VK_F2,     VK_F4}) {
            press(key, {});
            press(key, {VK_SHIFT});
        }
        for (const int key :
             {int{'A'}, int{'C'}, int{'V'}, int{'X'}, int{'Y'}, int{'Z'}, int{'S'}, VK_LEFT,
              VK_RIGHT, VK_UP, VK_DOWN, VK_HOME, VK_END, VK_DELETE, VK_BACK, VK_INSERT}) {
            press(key, {VK_CONTROL});
            press(key, {VK_CONTROL, VK_SHIFT});
        }
        press('Q', {VK_LCONTROL, VK_RMENU});
        press(VK_BACK, {VK_MENU});
        EXPECT_EQ(Seen(basket), std::vector<int>{});
        EXPECT_TRUE(basket.host.commands.empty());
        EXPECT_EQ(basket.Lines(), 3);
    }
}

TEST_P(WindowLoops, WhatABasketDoesNotUseStaysTheHosts) {
    for (const bool in_editor : {true, false}) {
        SCOPED_TRACE(in_editor ? "editor" : "grid");
        BasketWindowFixture basket(GetParam());
        basket.Link(L"4711");
        const std::int32_t col = in_editor ? column::kMenge : column::kPreisAts;
        basket.ClickCell(1, col);
        for (const WORD key : {VK_F1, VK_F3, VK_F5, VK_F11}) basket.Press(key);
        basket.Press('T', {VK_CONTROL});
        basket.Press(VK_TAB, {VK_CONTROL});
        basket.Press(VK_LEFT, {VK_MENU});
        const std::vector<int> keys = Seen(basket);
        for (const int key : {VK_F1, VK_F3, VK_F5, VK_F11, int{'T'}, VK_TAB, VK_LEFT}) {
            EXPECT_EQ(std::ranges::count(keys, key), 1) << key;
        }
        const std::vector<WORD> commands = {HostWindow::CommandOf(VK_F5, false),
                                            HostWindow::CommandOf('T', true)};
        EXPECT_EQ(basket.host.commands, HasAccelerators() ? commands : std::vector<WORD>{});
        EXPECT_EQ(basket.Grid().Col(), col);
        EXPECT_EQ(basket.Cell(1, column::kMenge), L"1");
    }
}

TEST_P(WindowLoops, InTheHostsOwnWindowEveryKeyIsTheHosts) {
    BasketWindowFixture basket(GetParam());
    basket.Link(L"4711");
    SetForegroundWindow(basket.host.handle);
    SetFocus(basket.host.text);
    basket.Pump();
    basket.keys_seen.clear();
    basket.Press('C', {VK_CONTROL});
    basket.Press(VK_F2);
    basket.Press('7');
    const std::vector<int> keys = Seen(basket);
    for (const int key : {int{'C'}, VK_F2, int{'7'}}) EXPECT_GE(std::ranges::count(keys, key), 1);
    const std::vector<WORD> commands = {HostWindow::CommandOf('C', true),
                                        HostWindow::CommandOf(VK_F2, false)};
    EXPECT_EQ(basket.host.commands, HasAccelerators() ? commands : std::vector<WORD>{});
    EXPECT_EQ(basket.TextOf(basket.host.text), L"7");
}

TEST_P(WindowLoops, NoModalLoopRunsInsideTheHook) {
    BasketWindowFixture basket(GetParam());
    int boxes = 0;
    const auto expect_outside = [&] {
        ++boxes;
        EXPECT_FALSE(basket.taking);
        basket.Pump();  // as a box's own loop does
    };
    for (const WORD key : {VK_RETURN, VK_UP, VK_TAB}) {
        basket.Link(L"4711");
        basket.Link(L"");
        basket.Grid().SetCol(column::kArtNr);
        basket.Pump();
        basket.Type(L"9");
        basket.messages.while_open = expect_outside;
        basket.Press(key);
    }
    basket.messages.while_open = expect_outside;
    basket.Press('O', {VK_CONTROL});
    EXPECT_EQ(boxes, 4);
}

TEST_P(WindowLoops, MenusOpenWithTheirAccessKeysAndWithFTen) {
    const std::pair<WORD, bool> end[] = {{'N', true}, {'N', false}};
    for (const bool by_letter : {true, false}) {
        BasketWindowFixture basket(GetParam());
        basket.messages.otherwise = MessageAnswer::kNo;
        basket.Link(L"4711");
        basket.ClickCell(1, column::kMenge);
        std::vector<std::pair<WORD, bool>> keys;
        if (by_letter) {
            keys = {{VK_MENU, true}, {'D', true}, {'D', false}, {VK_MENU, false}};
        } else {
            keys = {{VK_F10, true}, {VK_F10, false}, {VK_DOWN, true}, {VK_DOWN, false}};
        }
        keys.insert(keys.end(), std::begin(end), std::end(end));
        basket.PressAtOnce(keys);
        EXPECT_TRUE(PumpUntil([&] { return basket.Lines() == 0; })) << by_letter;
        EXPECT_TRUE(basket.host.commands.empty());
        EXPECT_EQ(Seen(basket), std::vector<int>{}) << by_letter;
    }
}

TEST_P(WindowLoops, AKeyHeldDownRepeatsAndKeysTypedAheadKeepTheirOrder) {
    BasketWindowFixture basket(GetParam());
    basket.Link(L"");
    std::vector<std::pair<WORD, bool>> keys;
    for (const char key : std::string("ABCAB")) {
        keys.emplace_back(static_cast<WORD>(key), true);
        keys.emplace_back(static_cast<WORD>(key), true);
        keys.emplace_back(static_cast<WORD>(key), false);
    }
    basket.PressAtOnce(keys);
    EXPECT_TRUE(PumpUntil([&] { return basket.TextOf(basket.Text()) == L"aabbccaabb"; }));
}

// --- the current editable cell can always be written in

// What leaves the cell as the current one, with the focus in the grid and no editor.
enum class Closing { kResize, kSave, kErrorBox, kShiftArrows };

void Close(BasketWindowFixture& basket, Closing closing) {
    switch (closing) {
        case Closing::kResize: {
            RECT rect{};
            GetWindowRect(basket.Handle(), &rect);
            SetWindowPos(basket.Handle(), nullptr, 0, 0, rect.right - rect.left + 8,
                         rect.bottom - rect.top, SWP_NOMOVE | SWP_NOZORDER);
            break;
        }
        case Closing::kSave:
            basket.file_dialogs.Choose(L"C:\\Basket\\neu.bsk");
            basket.Press('S', {VK_CONTROL});
            break;
        case Closing::kErrorBox:
            // a quantity whose total no number can hold
            SendMessageW(basket.Text(), EM_SETSEL, 0, -1);
            SendMessageW(basket.Text(), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"1e307"));
            basket.Press(VK_RETURN);
            ASSERT_EQ(basket.messages.shown.size(), 1u);
            basket.messages.shown.clear();
            break;
        case Closing::kShiftArrows:
            basket.Press(VK_DOWN, {VK_SHIFT});
            ASSERT_EQ(basket.Grid().RowSel(), 3);
            basket.Grid().SetRowSel(2);
            break;
    }
    basket.Pump();
    ASSERT_FALSE(basket.EditorOpen());
    ASSERT_EQ(GetFocus(), basket.Child(child_id::kListe));
    ASSERT_EQ(basket.Grid().Row(), 2);
}

TEST_P(WindowLoops, TheCurrentCellCanAlwaysBeWrittenIn) {
    BasketWindowFixture basket(GetParam());
    for (int i = 0; i < 3; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
    for (const Closing closing :
         {Closing::kResize, Closing::kSave, Closing::kErrorBox, Closing::kShiftArrows}) {
        for (int input = 0; input < 4; ++input) {
            SCOPED_TRACE(::testing::Message() << static_cast<int>(closing) << " " << input);
            basket.ClickCell(1, column::kPreisAts);
            basket.ClickCell(2, column::kMenge);
            Close(basket, closing);
            if (HasFatalFailure()) return;
            switch (input) {
                case 0:
                    basket.ClickCell(2, column::kMenge);
                    break;
                case 1:
                    basket.Press(VK_F2);
                    break;
                case 2:
                    basket.Press(VK_RETURN);
                    break;
                default:
                    break;
            }
            if (input < 3) {
                ASSERT_TRUE(basket.EditorOpen());
                EXPECT_EQ(GetFocus(), basket.Text());
                basket.Press('A', {VK_CONTROL});
            }
            basket.Type(L"42");
            ASSERT_TRUE(basket.EditorOpen());
            EXPECT_EQ(basket.TextOf(basket.Text()), L"42");
            basket.Press(VK_RETURN);
            EXPECT_EQ(basket.Cell(2, column::kGesamtAts), basket.text.FormatAmount(4200))
                << basket.AsText();
        }
    }
}

TEST_P(WindowLoops, ShiftDownAndShiftUpEndInTheEditor) {
    BasketWindowFixture basket(GetParam());
    for (int i = 0; i < 3; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
    basket.ClickCell(2, column::kMenge);
    basket.Press(VK_DOWN, {VK_SHIFT});
    ASSERT_FALSE(basket.EditorOpen());
    basket.Press(VK_UP, {VK_SHIFT});
    EXPECT_TRUE(basket.EditorOpen());
    EXPECT_EQ(GetFocus(), basket.Text());
}

TEST_P(WindowLoops, WhatIsTypedInTheGridWhileTheEditorIsOpenGoesIntoTheText) {
    BasketWindowFixture basket(GetParam());
    basket.Link(L"");
    basket.Type(L"Va");
    SetFocus(basket.Child(child_id::kListe));
    ASSERT_TRUE(basket.EditorOpen());
    basket.Type(L"se@€");
    EXPECT_EQ(basket.TextOf(basket.Text()), L"Vase@€");
    EXPECT_EQ(GetFocus(), basket.Text());
    SetFocus(basket.Child(child_id::kListe));
    basket.Press(VK_BACK);
    EXPECT_EQ(basket.TextOf(basket.Text()), L"Vase@");
    SetFocus(basket.Child(child_id::kListe));
    SendMessageW(basket.Text(), EM_SETSEL, 0, 1);
    basket.Press(VK_DELETE);
    EXPECT_EQ(basket.TextOf(basket.Text()), L"ase@");
    EXPECT_EQ(GetFocus(), basket.Text());
}

TEST_P(WindowLoops, UndoBringsBackNoOtherCellsText) {
    BasketWindowFixture basket(GetParam());
    basket.Link(L"4711");
    basket.Link(L"4712");
    basket.Link(L"4712");  // twice, as the first quantity will be
    basket.ClickCell(1, column::kMenge);
    basket.Type(L"2");
    basket.ClickCell(2, column::kMenge);
    ASSERT_EQ(basket.TextOf(basket.Text()), L"2");
    basket.Press('Z', {VK_CONTROL});
    EXPECT_EQ(basket.TextOf(basket.Text()), L"2");
    basket.Type(L"5");
    basket.Press('Z', {VK_CONTROL});
    EXPECT_EQ(basket.TextOf(basket.Text()), L"2");  // but it is undone what was typed here
}

TEST(WindowLoop, ACharacterSentToTheWindowItselfIsTypedIntoTheCell) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    basket.ClickCell(1, column::kMenge);
    SendMessageW(basket.Handle(), WM_CHAR, L'8', 1);
    EXPECT_EQ(basket.TextOf(basket.Text()), L"8");
}

TEST(WindowLoop, PasteChangesNoTextWhileTheGridHasTheFocus) {
    BasketWindowFixture basket;
    basket.Link(L"");
    basket.Type(L"AB");
    basket.Press('A', {VK_CONTROL});
    basket.Press('C', {VK_CONTROL});
    // the text box was what had the focus when the window was last left
    SetForegroundWindow(basket.host.handle);
    basket.Pump();
    SetForegroundWindow(basket.Handle());
    basket.Pump();
    SetFocus(basket.Child(child_id::kListe));
    // where pasting would be seen: what is selected is what would be pasted
    SendMessageW(basket.Text(), EM_SETSEL, 2, 2);
    basket.window->Form()->Run(Command::mnuEditEinfuegen);
    basket.Pump();
    EXPECT_EQ(basket.TextOf(basket.Text()), L"AB");
    SetFocus(basket.Text());
    SendMessageW(basket.Text(), EM_SETSEL, 2, 2);
    basket.window->Form()->Run(Command::mnuEditEinfuegen);
    basket.Pump();
    EXPECT_EQ(basket.TextOf(basket.Text()), L"ABAB");
}

}  // namespace
}  // namespace demovex
