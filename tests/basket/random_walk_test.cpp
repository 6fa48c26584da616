// Random walks of user actions: the basket beside a plain reference, and the basket alone in a
// window so small that cells scroll out of view.
#include <gtest/gtest.h>

#include <cstdlib>
#include <deque>
#include <sstream>
#include <string>

#include "tests/support/basket_fixture.h"
#include "tests/support/basket_invariants.h"
#include "tests/support/reference_document.h"
#include "tests/support/walk_words.h"

namespace demovex {
namespace {

using View = FakeBasketView;

class Walk {
  public:
    Walk(std::uint32_t seed, bool with_reference)
        : seed_(seed), dice_(seed), reference_(text_), with_reference_(with_reference) {
        // tall enough for all rows of the walk, or too small for most
        basket_.grid.SetFrame(with_reference ? GridFrame{700, 1300, 2, 17}
                                             : GridFrame{420, 200, 2, 17});
        basket_.messages.otherwise = MessageAnswer::kNo;
    }

    void Run(int steps) {
        for (int step = 0; step < steps; ++step) {
            Act();
            Check();
            if (::testing::Test::HasFailure()) {
                FAIL() << "seed " << seed_ << ", step " << step << ", last actions:\n"
                       << LastActions() << basket_.AsText();
            }
        }
    }
    int errors() const { return errors_; }
    int opened() const { return opened_; }
    int loaded() const { return loaded_; }
    int unhealed() const { return unhealed_; }

  private:
    // Does one thing to both baskets; both must raise the same.
    template <typename Real, typename Reference>
    void Do(const std::string& what, Real&& real, Reference&& reference) {
        actions_.push_back(what);
        if (actions_.size() > 12) actions_.pop_front();
        const std::int32_t raised = RaisedBy(real);
        if (raised != 0) ++errors_;
        basket_.view.PumpKeys();
        basket_.view.Tick();
        if (!with_reference_) return;
        const std::int32_t expected = RaisedBy(reference);
        EXPECT_EQ(raised, expected);
    }

    void Act() {
        // An unknown number stops all totals; sooner or later the user removes its row.
        const int unreadable = UnreadableRow();
        if ((unreadable > 0 && dice_.Below(4) == 0) || basket_.Lines() > 30) {
            const int r = unreadable > 0 ? unreadable : dice_.Between(1, 3);
            const int r_sel = unreadable > 0 ? r : r + dice_.Below(25);
            SelectCells(r, 1, r_sel, 1);
            Do(
                "delete", [&] { basket_.form.Run(Command::mnuEditZeilenLöschen); },
                [&] { reference_.Delete(); });
            return;
        }
        const int kind = dice_.Below(104);
        if (kind >= 100) return Files(kind - 100);
        if (kind < 10) return Link();
        if (kind < 30) return Click();
        if (kind < 36) return SelectSome();
        if (kind < 40) return GridKeys();
        if (kind < 65 && basket_.view.EditorOpen()) return Type();
        if (kind < 85 && basket_.view.EditorOpen()) return Press();
        Command();
    }

    void Link() {
        const bool odd = dice_.Below(12) == 0;
        const std::wstring nr = odd ? dice_.Of(kNumbers) : dice_.Of(kLinked);
        const int menge = dice_.Between(1, 3);
        const std::wstring catalog = dice_.Below(2) == 0 ? L"Katalog" : L"";
        Do(
            "link '" + Narrow(nr) + "' x" + std::to_string(menge),
            [&] { basket_.Link(nr, menge, catalog, L"u"); },
            [&] { reference_.Link(nr, menge, catalog, L"u"); });
    }
    void SelectCells(int r, int c, int r_sel, int c_sel) {
        r_sel = std::clamp(r_sel, 1, static_cast<int>(basket_.grid.Rows()) - 1);
        Do(
            "select " + std::to_string(r) + "," + std::to_string(c) + " to " +
                std::to_string(r_sel) + "," + std::to_string(c_sel),
            [&] { basket_.grid.Select(r, c, r_sel, c_sel); },
            [&] { reference_.Select(r, c, r_sel, c_sel); });
    }
    void Click() {
        const int r = dice_.Between(1, basket_.grid.Rows() - 1);
        static constexpr int kCols[] = {1, 1, 2, 2, 3, 3, 3, 4, 5, 8, 9};
        const int c = dice_.Of(kCols);
        Do(
            "click " + std::to_string(r) + "," + std::to_string(c), [&] { basket_.Click(r, c); },
            [&] {
                reference_.Select(r, c, r, c);
                reference_.Acted();
            });
    }
    void SelectSome() {
        const int last = basket_.grid.Rows() - 1;
        if (dice_.Below(15) == 0) return SelectCells(0, 1, last, 9);
        SelectCells(dice_.Between(1, last), dice_.Between(1, 9), dice_.Between(1, last),
                    dice_.Between(1, 9));
    }
    void GridKeys() {
        static constexpr struct {
            GridKey key;
            int down, right;
        } kArrows[] = {{GridKey::kUp, -1, 0},
                       {GridKey::kDown, 1, 0},
                       {GridKey::kLeft, 0, -1},
                       {GridKey::kRight, 0, 1}};
        const auto arrow = dice_.Of(kArrows);
        const bool shift = dice_.Below(2) == 0;
        Do(
            std::string("grid key ") + std::to_string(static_cast<int>(arrow.key)) +
                (shift ? " shift" : ""),
            [&] {
                basket_.grid.Key(arrow.key, shift, false);
                basket_.form.Liste_Acted();
            },
            [&] {
                reference_.GridArrow(arrow.down, arrow.right, shift);
                reference_.Acted();
            });
    }
    void Type() {
        const int c = basket_.form.State().EditCol;
        const std::wstring text = c == 1   ? dice_.Of(kNumbers)
                                  : c == 3 ? dice_.Of(kQuantities)
                                           : dice_.Of(kTexts);
        const bool paste = dice_.Below(2) == 0;
        // over the whole text, as an editor opens, or at the caret
        if (dice_.Below(4) != 0) {
            basket_.view.Select(0, static_cast<std::int32_t>(basket_.view.text.size()));
        }
        if (paste) {
            TakeOverCaret();
            Do(
                "paste '" + Narrow(text) + "'", [&] { basket_.view.Paste(text); },
                [&] { reference_.Replace(text); });
            TakeOverCaret();
            return;
        }
        for (const wchar_t character : text) {
            TakeOverCaret();
            const std::wstring one(1, character);
            Do(
                "type '" + Narrow(one) + "'", [&] { basket_.view.Type(one); },
                [&] { reference_.Replace(one); });
        }
        TakeOverCaret();
    }
    void Press() {
        static constexpr struct {
            int key, shift;
        } kPresses[] = {
            {View::kLeft, 0},   {View::kRight, 0},    {View::kUp, 0},     {View::kDown, 0},
            {View::kPageUp, 0}, {View::kPageDown, 0}, {View::kReturn, 0}, {View::kReturn, 0},
            {View::kF2, 0},     {View::kF4, 0},       {View::kEscape, 0}, {View::kHome, 0},
            {View::kEnd, 0},    {View::kUp, 1},       {View::kDown, 1},   {View::kDown, 4},
            {View::kBack, 0},   {View::kDelete, 0},   {View::kTab, 0},    {View::kTab, 1}};
        const auto press = dice_.Of(kPresses);
        TakeOverCaret();
        const std::wstring before = basket_.view.text;
        const int start = basket_.view.sel_start, length = basket_.view.sel_length;
        bool left_to_the_text_box = false;
        Do(
            "press " + std::to_string(press.key) + " shift " + std::to_string(press.shift),
            [&] { left_to_the_text_box = basket_.view.Press(press.key, press.shift); },
            [&] {
                if (reference_.Key(press.key, press.shift)) return;
                // the text box's own keys that change the text
                if (press.key != View::kBack && press.key != View::kDelete) return;
                const int size = static_cast<int>(before.size());
                reference_.sel_start = start;
                reference_.sel_length = length;
                if (length == 0) {
                    if (press.key == View::kBack ? start == 0 : start == size) return;
                    if (press.key == View::kBack) --reference_.sel_start;
                    reference_.sel_length = 1;
                }
                reference_.Replace(L"");
            });
        TakeOverCaret();
    }
    void Command() {
        static constexpr demovex::Command kRows[] = {
            Command::mnuEditNeueZeile, Command::mnuEditZeileOberhalbEinfügen,
            Command::mnuEditZeilenLöschen, Command::mnuEditZeilenNachOben,
            Command::mnuEditZeilenNachUnten};
        const int which = dice_.Below(12);
        if (which < 10) {
            const auto command = kRows[which % 5];
            Do(
                "command " + Narrow(FindCommand(command).caption),
                [&] { basket_.form.Run(command); }, [&] { Mirror(command); });
        } else if (which == 10) {
            const auto bar = dice_.Below(2) == 0 ? Command::mnuAnsichtSymbolleiste
                                                 : Command::mnuAnsichtStatusleiste;
            Do(
                "toggle", [&] { basket_.form.Run(bar); }, [&] { reference_.Resize(); });
        } else if (dice_.Below(8) == 0) {
            Do(
                "new", [&] { basket_.form.Run(Command::mnuDateiNeu); }, [&] { reference_.New(); });
            file_.clear();
        } else if (dice_.Below(6) == 0) {
            Copy();
        } else if (dice_.Below(6) == 0) {
            const std::size_t shown = basket_.owner.navigated.size();
            const bool has_place = !basket_.Cell(basket_.grid.Row(), 7).empty();
            Do(
                "catalogue", [&] { basket_.form.Run(Command::mnuAnsichtGotoCatalogPage); }, [] {});
            EXPECT_EQ(basket_.owner.navigated.size(), shown + (has_place ? 1 : 0));
        } else if (dice_.Below(6) == 0) {
            Do(
                "print", [&] { basket_.form.Run(Command::mnuDateiDrucken); },
                [&] { reference_.Resize(); });
        } else if (!with_reference_ && dice_.Below(3) == 0) {
            basket_.messages.answers = {MessageAnswer::kYes};
            Do(
                "column widths", [&] { basket_.form.Run(Command::mnuAnsichtOptColWidth); }, [] {});
            for (int c = 0; c < 10; ++c) {
                basket_.grid.SetColWidth(c, kColumns[static_cast<std::size_t>(c)].width);
            }
        } else if (!with_reference_) {
            const int top = dice_.Between(1, basket_.grid.Rows() - 1);
            Do(
                "scroll", [&] { basket_.grid.SetTopRow(top); }, [] {});
        } else {
            Do(
                "resize", [&] { basket_.form.DoReSize(); }, [&] { reference_.Resize(); });
        }
    }
    void Copy() {
        if (dice_.Below(2) == 0) {
            std::wstring expected;
            Do(
                "copy all", [&] { basket_.form.Run(Command::mnuDateiSendenanZwischenablage); },
                [&] { expected = reference_.CopyAll(); });
            if (with_reference_) {
                EXPECT_EQ(basket_.clipboard.text, expected);
            }
        } else {
            std::wstring expected = basket_.clipboard.text;
            Do(
                "copy selection",
                [&] { basket_.form.Run(Command::mnuContextCopySelectionToClipboard); },
                [&] { expected = reference_.CopySelection(); });
            if (with_reference_) {
                EXPECT_EQ(basket_.clipboard.text, expected);
            }
        }
    }
    void Files(int kind) {
        switch (kind) {
            case 0:
                return Load();
            case 1:
                return Save();
            case 2:
                return Send();
            default:
                return ChangeFormat();
        }
    }
    std::wstring NewFile() { return L"C:\\Basket\\f" + std::to_wstring(++files_) + L".bsk"; }
    // A file of the walk's own making, or what was sent so far. It has a name that was never used:
    // files that other programs change are another matter.
    void Load() {
        const std::string bytes =
            sent_.empty() || dice_.Below(3) != 0 ? RandomBasketFile(dice_) : sent_;
        file_ = NewFile();
        basket_.files.Put(file_, bytes);
        bool failed = false;
        Do(
            "load " + std::to_string(bytes.size()) + " bytes",
            [&] {
                failed = true;
                basket_.form.Load(file_);
                failed = false;
            },
            [&] { reference_.Load(bytes); });
        basket_.form.Run(Command::mnuHilfeInfo);  // any command lets the grid be painted again
        // what was read half-way is saved elsewhere
        if (failed) file_.clear();
        loaded_ += failed ? 0 : 1;
    }
    void Save() {
        std::wstring path = file_;
        if (path.empty()) {
            path = NewFile();
            basket_.file_dialogs.Choose(path);
        }
        const auto command =
            file_.empty() ? Command::mnuDateiSpeichernUnter : Command::mnuDateiSpeichern;
        std::string expected;
        bool failed = false;
        Do(
            "save",
            [&] {
                failed = true;
                basket_.form.Run(command);
                failed = false;
            },
            [&] {
                expected =
                    command == Command::mnuDateiSpeichern ? reference_.Save() : reference_.SaveAs();
            });
        basket_.file_dialogs.answers.clear();
        if (failed) return;
        file_ = path;
        if (with_reference_) {
            EXPECT_EQ(basket_.files.At(path).bytes, expected);
        }
        EXPECT_FALSE(basket_.form.Modified());
    }
    void Send() {
        const std::wstring target = NewFile();
        basket_.file_dialogs.Choose(target);
        std::string expected;
        bool failed = false;
        Do(
            "send",
            [&] {
                failed = true;
                basket_.form.Run(Command::mnuContextSendToOther);
                failed = false;
            },
            [&] { expected = reference_.Send(); });
        basket_.file_dialogs.answers.clear();
        if (failed) return;
        sent_ = basket_.files.At(target).bytes;
        if (with_reference_) {
            EXPECT_EQ(sent_, expected);
        }
    }
    void ChangeFormat() {
        static constexpr FakeLocale kLocales[] = {FakeLocale::kAustria, FakeLocale::kGermany,
                                                  FakeLocale::kUnitedStates};
        const FakeLocale locale = dice_.Of(kLocales);
        Do(
            "number format " + std::to_string(static_cast<int>(locale)),
            [&] { basket_.form.NumberFormatChanged([&] { basket_.text.SetLocale(locale); }); },
            [&] { reference_.ChangeFormat([&] { text_.SetLocale(locale); }); });
        TakeOverCaret();
    }
    void Mirror(demovex::Command command) {
        switch (command) {
            case Command::mnuEditNeueZeile:
                return reference_.AppendRow();
            case Command::mnuEditZeileOberhalbEinfügen:
                return reference_.InsertAbove();
            case Command::mnuEditZeilenLöschen:
                return reference_.Delete();
            case Command::mnuEditZeilenNachOben:
                return reference_.Move(-1);
            default:
                return reference_.Move(+1);
        }
    }

    void TakeOverCaret() {
        reference_.sel_start = basket_.view.sel_start;
        reference_.sel_length = basket_.view.sel_length;
    }
    // A basket row whose line totals do not read as numbers, or 0.
    int UnreadableRow() const {
        for (int r = 1; r <= basket_.Lines(); ++r) {
            if (!basket_.Cell(r, 1).empty() && basket_.Cell(r, 9).empty()) return r;
        }
        return 0;
    }

    void Check() {
        // Only a load leaves a basket without its totals row, and only what reads it keeps it so.
        const bool whole = HasTotalsRow(basket_);
        if (!whole) {
            ++unhealed_;
            ASSERT_TRUE(actions_.back().starts_with("load") || !was_whole_);
        }
        was_whole_ = whole;
        CheckInvariants(basket_);
        opened_ += basket_.view.EditorOpen() ? 1 : 0;
        if (with_reference_) CompareWithReference();
    }
    void CompareWithReference() {
        const FlexGrid& grid = basket_.grid;
        ASSERT_EQ(grid.Rows(), reference_.Rows());
        ASSERT_EQ(was_whole_, reference_.has_totals);
        for (int r = 0; r < grid.Rows(); ++r) {
            for (int c = 0; c < 10; ++c) {
                ASSERT_EQ(grid.TextMatrix(r, c), reference_.At(r, c)) << r << "," << c;
            }
        }
        ASSERT_EQ(grid.Row(), reference_.row);
        ASSERT_EQ(grid.Col(), reference_.col);
        ASSERT_EQ(grid.RowSel(), reference_.row_sel);
        ASSERT_EQ(grid.ColSel(), reference_.col_sel);
        ASSERT_EQ(basket_.view.EditorOpen(), reference_.editor);
        if (reference_.editor) {
            ASSERT_EQ(basket_.form.State().EditRow, reference_.edit_row);
            ASSERT_EQ(basket_.form.State().EditCol, reference_.edit_col);
            ASSERT_EQ(basket_.view.text, reference_.text);
        }
        ASSERT_EQ(basket_.form.Modified(), reference_.modified);
        ASSERT_EQ(basket_.view.status, reference_.status);
        ASSERT_EQ(basket_.sound.beeps, reference_.beeps);
        int refused = 0;
        for (const auto& shown : basket_.messages.shown) {
            refused += shown.buttons == MessageButtons::kOk ? 1 : 0;
        }
        ASSERT_EQ(refused, reference_.messages);
    }
    std::string LastActions() const {
        std::ostringstream out;
        for (const std::string& action : actions_) out << "  " << action << "\n";
        return out.str();
    }

    std::uint32_t seed_;
    Dice dice_;
    BasketFixture basket_;
    FakeTextService text_;  // the reference's own
    ReferenceDocument reference_;
    bool with_reference_;
    bool was_whole_ = true;
    std::wstring file_;  // what Save may replace; empty for none
    std::string sent_;
    std::deque<std::string> actions_;
    int errors_ = 0;
    int opened_ = 0;
    int files_ = 0;
    int loaded_ = 0;
    int unhealed_ = 0;
};

// How many walks; a longer run by hand sets DEMOVEX_WALKS.
std::uint32_t Seeds(std::uint32_t usual) {
    const char* wanted = std::getenv("DEMOVEX_WALKS");
    return wanted == nullptr ? usual : static_cast<std::uint32_t>(std::atoi(wanted));
}

TEST(RandomWalk, TwoHundredThousandActionsAgreeWithThePlainReference) {
    int errors = 0, opened = 0, loaded = 0, unhealed = 0;
    for (std::uint32_t seed = 1; seed <= Seeds(40) && !::testing::Test::HasFailure(); ++seed) {
        Walk walk(seed, true);
        walk.Run(5000);
        errors += walk.errors();
        opened += walk.opened();
        loaded += walk.loaded();
        unhealed += walk.unhealed();
    }
    // the walk met what it is for
    EXPECT_GT(errors, 100);
    EXPECT_GT(opened, 10000);
    EXPECT_GT(loaded, 500);
    EXPECT_GT(unhealed, 100);
}

TEST(RandomWalk, InASmallWindowTheEditorIsOnlyEverOpenWhereItMayBe) {
    for (std::uint32_t seed = 101; seed <= 104 && !::testing::Test::HasFailure(); ++seed) {
        Walk walk(seed, false);
        walk.Run(5000);
        EXPECT_GT(walk.opened(), 100);
    }
}

}  // namespace
}  // namespace demovex
