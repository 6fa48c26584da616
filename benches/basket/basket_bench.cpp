// What the basket costs without its window: links into small and large baskets, commands on
// thousands of rows, and keystrokes. Everything runs through TestLibForm on the real grid, with a
// window and services that only record.
#include <memory>
#include <string>

#include "benches/bench.h"
#include "tests/support/basket_fixture.h"

using namespace demovex;

namespace {

constexpr std::int32_t kLarge = 10000;

class Basket : public BasketFixture {
  public:
    explicit Basket(std::int32_t lines) { GrowTo(lines); }

    void GrowTo(std::int32_t lines) {
        // two numbers in turns, so that every link is a new line
        while (Lines() < lines) AddOne();
    }
    void AddOne() { Link(++links_ % 2 == 0 ? L"4711" : L"1000", 1, L"Katalog", L"vex://x"); }
    void ShrinkTo(std::int32_t lines) {
        if (Lines() <= lines) return;
        grid.Select(lines + 1, 1, Lines(), 1);
        form.Run(Command::mnuEditZeilenLöschen);
    }
    void SelectRows(std::int32_t first, std::int32_t last) { grid.Select(first, 1, last, 1); }

  private:
    int links_ = 0;
};

void Links() {
    Basket large(kLarge), empty(0);
    const int kLinks = 500;
    const auto follow = [&](Basket& basket) {
        return [&basket] {
            for (int i = 0; i < kLinks; ++i) basket.AddOne();
        };
    };
    const auto trim = [&] {
        large.ShrinkTo(kLarge);
        empty.ShrinkTo(0);
    };
    bench::Compare("a link into 10,000 lines", {"ours", follow(large)},
                   {"into an empty basket", follow(empty)},
                   {.runs = 15, .operations = kLinks, .bar = "at least 0.67", .before = trim});

    Basket reread(kLarge);
    const auto read_all = [&] {
        for (int i = 0; i < 5; ++i) {
            reread.AddOne();
            for (const std::int32_t col : {column::kGesamtAts, column::kGesamtEuro}) {
                double sum = 0;
                for (std::int32_t row = 1; row <= reread.Lines(); ++row) {
                    if (reread.grid.TextMatrix(row, column::kArtNr).empty()) continue;
                    sum += reread.text.ToNumber(reread.grid.TextMatrix(row, col));
                }
                bench::Keep(sum);
            }
        }
    };
    bench::Compare("a link into 10,000 lines",
                   {"ours",
                    [&] {
                        for (int i = 0; i < 5; ++i) large.AddOne();
                    }},
                   {"re-reading all rows", read_all},
                   {.operations = 5, .bar = "at least 1", .before = [&] {
                        large.ShrinkTo(kLarge);
                        reread.ShrinkTo(kLarge);
                    }});
}

// A command on `count` rows in the middle of twice as many.
template <typename Act>
void OnRows(const std::string& name, Act act) {
    Basket half(kLarge / 2), whole(kLarge);
    const auto prepare = [](Basket& basket, std::int32_t lines) {
        basket.ShrinkTo(lines);
        basket.GrowTo(lines);
        basket.SelectRows(lines / 4 + 1, lines / 4 + lines / 2);
    };
    bench::Compare(name + ", 5,000 of 10,000 rows", {"ours", [&] { act(whole); }},
                   {"2,500 of 5,000", [&] { act(half); }},
                   {.bar = "below 100 ms, ratio about 0.5", .before = [&] {
                        prepare(half, kLarge / 2);
                        prepare(whole, kLarge);
                    }});
}

void RowCommands() {
    OnRows("delete selected rows",
           [](Basket& basket) { basket.form.Run(Command::mnuEditZeilenLöschen); });
    OnRows("insert as many rows",
           [](Basket& basket) { basket.form.Run(Command::mnuEditZeileOberhalbEinfügen); });
    OnRows("move a block down by one",
           [](Basket& basket) { basket.form.Run(Command::mnuEditZeilenNachUnten); });

    // Row by row on the bare grid, renumbering once.
    Basket ours(kLarge), plain(kLarge);
    bench::Compare("delete 5,000 of 10,000 rows",
                   {"ours", [&] { ours.form.Run(Command::mnuEditZeilenLöschen); }},
                   {"row by row on the grid",
                    [&] {
                        for (int i = 0; i < 5000; ++i) plain.grid.RemoveItem(2501);
                        for (std::int32_t row = 2501; row <= plain.Lines(); ++row) {
                            plain.grid.SetTextMatrix(row, 0, std::to_wstring(row));
                        }
                    }},
                   {.bar = "at least 1", .before = [&] {
                        ours.GrowTo(kLarge);
                        plain.GrowTo(kLarge);
                        ours.SelectRows(2501, 7500);
                    }});
}

void Keystrokes() {
    Basket few(10), many(kLarge);
    const int kKeys = 200;
    const auto down_and_up = [](Basket& basket) {
        return [&basket] {
            for (int i = 0; i < kKeys / 2; ++i) {
                basket.Press(FakeBasketView::kDown);
                basket.Press(FakeBasketView::kUp);
            }
        };
    };
    const auto start = [&] {
        for (Basket* basket : {&few, &many}) {
            basket->grid.SetTopRow(1);
            basket->Click(5, column::kPreisAts);
            basket->Click(5, column::kMenge);
        }
    };
    bench::Compare("a key that moves the editor, 10,000 lines", {"ours", down_and_up(many)},
                   {"10 lines", down_and_up(few)},
                   {.runs = 15, .operations = kKeys, .bar = "at least 0.83", .before = start});

    const auto commit = [](Basket& basket) {
        return [&basket] {
            for (int i = 0; i < kKeys; ++i) {
                basket.TypeOver(i % 2 == 0 ? L"7" : L"8");
                basket.Press(FakeBasketView::kReturn);
            }
        };
    };
    bench::Compare("typing and committing a quantity, 10,000 lines", {"ours", commit(many)},
                   {"10 lines", commit(few)},
                   {.runs = 15, .operations = kKeys, .bar = "at least 0.83", .before = start});
}

}  // namespace

int main() {
    Links();
    RowCommands();
    Keystrokes();
}
