// A monkey at the basket window: real keys, clicks and menus and followed links, known and unknown,
// in every kind of host loop. After every few actions the basket is copied out and looked at: the
// totals are the sum of the lines that read, and every order that came is there.
#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "base/error.h"
#include "basket/window/handles_win.h"
#include "tests/support/test_basket_window_win.h"

namespace demovex {
namespace {

// A line of the copied text, as far as it has a number.
struct CopiedLine {
    std::wstring nr;
    std::wstring quantity;
    std::wstring amounts[2];  // ATS, EURO
};

struct Copied {
    std::size_t rows = 0;  // header and totals included
    std::vector<CopiedLine> articles;
    std::wstring totals[2];
};

std::vector<std::wstring> Split(const std::wstring& text, wchar_t at) {
    std::vector<std::wstring> parts(1);
    for (const wchar_t c : text) {
        if (c == at) {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

class Monkey {
  public:
    Monkey(HostLoop loop, unsigned seed) : basket_(loop), random_(seed) {
        basket_.messages.otherwise = MessageAnswer::kNo;
    }

    void Run(int steps) {
        for (int step = 0; step < steps; ++step) {
            const int action = Pick(24);
            SCOPED_TRACE(::testing::Message() << "step " << step << " action " << action);
            Act(action);
            if (step % 4 == 3) Look();
            if (::testing::Test::HasFatalFailure()) return;
        }
        Look();
        EXPECT_TRUE(basket_.host.commands.empty());
        EXPECT_GT(orders_, steps / 20);
    }

  private:
    int Pick(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
    const wchar_t* Number() {
        // 9999 has no price, and two are unknown
        static const wchar_t* const numbers[] = {L"1000", L"2000", L"4711", L"4712",
                                                 L"ABC",  L"4712", L"9999", L"nope"};
        return numbers[Pick(8)];
    }

    void Act(int action) {
        const bool room = basket_.Lines() < 40;
        switch (action) {
            case 0:
            case 1:
            case 2:
            case 3:
                if (room) Order(Number());
                break;
            case 4:
                if (room) basket_.Press('N', {VK_CONTROL});
                break;
            case 5:
                if (room) basket_.Press('E', {VK_CONTROL});
                break;
            case 6:
                basket_.Press('L', {VK_CONTROL});
                break;
            case 7:
                basket_.Press(Pick(2) == 0 ? 'U' : 'D', {VK_CONTROL});
                break;
            case 8:
            case 9:
                basket_.Press(Pick(2) == 0 ? VK_UP : VK_DOWN);
                break;
            case 10:
            case 11:
                basket_.Press(Pick(2) == 0 ? VK_LEFT : VK_RIGHT);
                break;
            case 12:
                basket_.Press(Pick(2) == 0 ? VK_UP : VK_DOWN, {VK_SHIFT});
                break;
            case 13:
                basket_.Press(VK_TAB,
                              Pick(3) == 0 ? std::vector<WORD>{VK_SHIFT} : std::vector<WORD>{});
                break;
            case 14:
                if (room) basket_.Press(VK_RETURN);
                break;
            case 15:
            case 16:
                basket_.Type(std::to_wstring(Pick(50) + 1));
                break;
            case 17:
                basket_.Press('A', {VK_CONTROL});
                basket_.Type(Number());
                break;
            case 18:
            case 19:
            case 20: {
                const FlexGrid& grid = basket_.Grid();
                const std::int32_t row = grid.TopRow() + Pick(18);
                if (row < grid.Rows()) basket_.ClickCell(row, 1 + Pick(5));
                break;
            }
            case 21: {
                static const WORD keys[] = {VK_F2,     VK_DELETE, VK_BACK, VK_HOME,
                                            VK_ESCAPE, VK_NEXT,   VK_PRIOR};
                basket_.Press(keys[Pick(7)]);
                break;
            }
            case 22:
                Menu('B', room ? "NELOU"[Pick(5)] : 'L');
                break;
            default:
                if (Pick(4) == 0) Menu('D', 'N');  // a new basket now and then
                break;
        }
    }

    // Opens a menu from the keyboard and chooses an entry of it by its letter.
    void Menu(char menu, char entry) {
        const auto top = static_cast<WORD>(menu);
        const auto item = static_cast<WORD>(entry);
        basket_.PressAtOnce({{WORD{VK_MENU}, true},
                             {top, true},
                             {top, false},
                             {WORD{VK_MENU}, false},
                             {item, true},
                             {item, false},
                             {WORD{VK_ESCAPE}, true},
                             {WORD{VK_ESCAPE}, false},
                             {WORD{VK_ESCAPE}, true},
                             {WORD{VK_ESCAPE}, false}});
        basket_.Pump();
    }

    // A link that the user follows in the catalogue while anything may be under way in the basket.
    void Order(const std::wstring& nr) {
        ++orders_;
        const bool open = basket_.EditorOpen();
        const std::int32_t before = basket_.Lines();
        const bool on_last = open && basket_.window->Form()->State().EditRow == before;
        const bool same = before > 0 && (basket_.Cell(before, column::kArtNr) == nr || on_last);
        try {
            basket_.Link(nr);
        } catch (const Error&) {
            basket_.Pump();  // told to the host; the order stands all the same
        }
        const std::int32_t after = basket_.Lines();
        ASSERT_TRUE(after == before + 1 || (same && after == before)) << basket_.AsText();
        ASSERT_EQ(basket_.Cell(after, column::kArtNr), nr) << basket_.AsText();
        const std::wstring quantity = basket_.Cell(after, column::kMenge);
        if (nr == L"nope" && after == before + 1) {
            ASSERT_EQ(quantity, L"");
        } else if (after == before + 1 && nr != L"9999") {
            ASSERT_EQ(quantity, L"1");
        }
    }

    // The basket as the user copies it out, from the menu.
    Copied CopyOut() {
        const int before = basket_.clipboard.sets;
        const std::size_t told = basket_.messages.shown.size();
        const auto copy = [&] {
            SendMessageW(basket_.Handle(), WM_COMMAND,
                         static_cast<WPARAM>(Command::mnuDateiSendenanZwischenablage), 0);
            basket_.Pump();
        };
        copy();
        if (basket_.clipboard.sets == before) {
            // only a number being typed whose article has no price stops a command: with a message,
            // and with what stood there before put back
            EXPECT_GT(basket_.messages.shown.size(), told);
            EXPECT_FALSE(basket_.EditorOpen());
            copy();
        }
        Copied copied;
        EXPECT_EQ(basket_.clipboard.sets, before + 1) << basket_.AsText();
        std::vector<std::wstring> lines = Split(basket_.clipboard.text, L'\n');
        lines.pop_back();  // behind the last line's end
        copied.rows = lines.size();
        for (std::wstring& line : lines) {
            if (line.ends_with(L'\r')) line.pop_back();
            const std::vector<std::wstring> fields = Split(line, L'\t');
            if (&line == &lines.back()) {
                // the totals line's first cell is empty and writes no tab
                EXPECT_EQ(fields.size(), 6u);
                EXPECT_EQ(fields[0], L"Gesamt");
                if (fields.size() == 6) {
                    copied.totals[0] = fields[4];
                    copied.totals[1] = fields[5];
                }
            } else if (&line != &lines.front() && fields.size() == 7) {
                copied.articles.push_back({fields[0], fields[2], {fields[5], fields[6]}});
            }
        }
        return copied;
    }

    void Look() {
        ASSERT_TRUE(IsWindow(basket_.Handle()));
        const Copied copied = CopyOut();
        ASSERT_EQ(copied.rows, static_cast<std::size_t>(basket_.Grid().Rows()));
        std::size_t numbers = 0;
        for (std::int32_t row = 1; row <= basket_.Lines(); ++row) {
            ASSERT_EQ(basket_.Cell(row, column::kNumber), std::to_wstring(row));
            numbers += basket_.Cell(row, column::kArtNr).empty() ? 0 : 1;
        }
        ASSERT_EQ(copied.articles.size(), numbers) << basket_.AsText();
        for (int i = 0; i < 2; ++i) {
            double sum = 0;
            for (const CopiedLine& line : copied.articles) sum += ValueOf(line.amounts[i]);
            ASSERT_NEAR(ValueOf(copied.totals[i]), sum, 0.001) << i << "\n" << basket_.AsText();
        }
    }

    // What a text reads as; nothing when it does not.
    double ValueOf(const std::wstring& text) const {
        try {
            return basket_.text.ToNumber(text);
        } catch (const Error&) {
            return 0;
        }
    }

    BasketWindowFixture basket_;
    std::mt19937 random_;
    int orders_ = 0;
};

class WindowMonkey : public ::testing::TestWithParam<HostLoop> {};
INSTANTIATE_TEST_SUITE_P(HostLoops, WindowMonkey, ::testing::ValuesIn(kHostLoops),
                         [](const auto& of) { return HostLoopName(of.param); });

TEST_P(WindowMonkey, TotalsAreTheSumOfTheLinesThatReadAndNoOrderIsLost) {
    for (const unsigned seed : {20260601u, 20260602u}) {
        SCOPED_TRACE(seed);
        Monkey(GetParam(), seed + 10 * static_cast<unsigned>(GetParam())).Run(400);
        if (HasFatalFailure()) return;
    }
}

}  // namespace
}  // namespace demovex
