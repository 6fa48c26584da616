// Whole baskets: any bytes are loaded as a basket file, every cell is visited with keys, the basket
// is copied, saved and loaded again.
//
// Most cases are quick ones, which look at the whole basket when a row has been walked and not
// after each key; the thorough ones look after each key, and load, copy and change more.
#include <algorithm>
#include <string>
#include <string_view>

#include "base/one_line.h"
#include "tests/fuzz/check.h"
#include "tests/fuzz/targets.h"
#include "tests/support/basket_fixture.h"
#include "tests/support/shown_totals.h"

namespace demovex::fuzz {
namespace {

// Texts of cells one after the other, each with a control character behind it, which none holds.
using Cells = std::wstring;
using View = FakeBasketView;

const std::wstring kFile = L"C:\\Basket\\a.bsk";
const std::wstring kSaved = L"C:\\Basket\\b.bsk";

class Driver {
  public:
    Driver(FakeLocale locale, bool thorough) : thorough_(thorough), basket_(locale) {
        basket_.messages.otherwise = MessageAnswer::kNo;
    }

    // True when every line of the file became a line of the basket.
    bool Load(const std::wstring& path) {
        basket_.messages.shown.clear();
        bool whole = true;
        try {
            basket_.form.Load(path);
        } catch (const Error& error) {
            FUZZ_CHECK(error.number() == -1 && error.source() == L"Load");
            whole = false;
        }
        FUZZ_CHECK(basket_.messages.shown.size() <= 1);
        FUZZ_CHECK(!basket_.form.Modified() && !basket_.form.State().Loading);
        Check();
        return whole && basket_.messages.shown.empty();
    }

    // Arrows through every cell, as far as a basket is worth it, with the keys of the input.
    void Walk(const std::uint8_t* keys, std::size_t count) {
        static constexpr int kKeys[] = {View::kReturn, View::kF2,     View::kHome,
                                        View::kEnd,    View::kEscape, View::kF4};
        FlexGrid& grid = basket_.grid;
        const std::int32_t rows = std::min(grid.Rows(), 24);
        for (std::int32_t row = 1; row < rows; ++row) {
            grid.Select(row, 1, row, 1);
            for (std::int32_t step = 0; step < 8; ++step) {
                basket_.view.Tick();
                if (basket_.view.EditorOpen()) {
                    if (count > 0) {
                        basket_.Press(kKeys[*keys++ % std::size(kKeys)]);
                        --count;
                    }
                    basket_.view.Select(static_cast<std::int32_t>(basket_.view.text.size()), 0);
                    basket_.Press(View::kRight);
                } else {
                    grid.Key(GridKey::kRight, false, false);
                }
                CheckEditor();
                if (thorough_ && rows < 24) Check();
                if (grid.Rows() > rows + 16) return;  // Return in a description adds a line
            }
            basket_.form.CommitCellEdit();
            if (rows < 24) Check();
        }
    }

    // The copied text has a line for every row, and in it what the row shows.
    void Copy() {
        basket_.form.Run(Command::mnuDateiSendenanZwischenablage);
        std::wstring_view rest = basket_.clipboard.text;
        const auto take = [&rest](std::wstring_view expected) {
            FUZZ_CHECK(rest.starts_with(expected));
            rest.remove_prefix(expected.size());
        };
        for (std::int32_t row = 0; row < basket_.grid.Rows(); ++row) {
            bool begun = false;
            for (const std::int32_t col : {1, 2, 3, 4, 5, 8, 9}) {
                const std::wstring_view cell = basket_.grid.TextMatrix(row, col);
                if (begun) take(L"\t");
                take(cell);
                begun = begun || !cell.empty();
            }
            take(L"\r\n");
        }
        FUZZ_CHECK(rest.empty());
    }

    void Save() {
        basket_.files.Put(kSaved, "");
        basket_.file_dialogs.Choose(kSaved);
        basket_.form.Run(Command::mnuDateiSpeichernUnter);
        FUZZ_CHECK(!basket_.form.Modified());
        FUZZ_CHECK(HasTotalsRow(basket_));
        const std::string& bytes = basket_.files.At(kSaved).bytes;
        FUZZ_CHECK(std::count(bytes.begin(), bytes.end(), '\n') == basket_.grid.Rows() - 1);
        Check();
    }

    // The lines, without those at the end that are wholly empty, and the totals.
    Cells Lines() const {
        Cells cells;
        std::size_t used = 0;
        const std::int32_t last = basket_.grid.Rows() - 1;
        for (std::int32_t row = 1; row <= last; ++row) {
            if (row == last) cells.resize(used);
            const std::size_t before = cells.size();
            for (std::int32_t col = 1; col < 10; ++col) {
                (cells += basket_.grid.TextMatrix(row, col)) += L'\n';
            }
            if (cells.size() > before + 9) used = cells.size();
        }
        return cells;
    }

    void ChangeFormat(FakeLocale locale) {
        const bool modified = basket_.form.Modified();
        basket_.form.NumberFormatChanged([&] { basket_.text.SetLocale(locale); });
        FUZZ_CHECK(basket_.form.Modified() == modified);
        Check();
    }

    void CheckEditor() {
        FUZZ_CHECK(!basket_.form.State().SuppressEditor);
        if (!basket_.view.EditorOpen()) return;
        FUZZ_CHECK(basket_.form.State().EditRow == basket_.grid.Row());
        FUZZ_CHECK(basket_.form.State().EditCol == basket_.grid.Col());
    }

    void Check() {
        const FlexGrid& grid = basket_.grid;
        const std::int32_t last = grid.Rows() - 1;
        FUZZ_CHECK(last >= 1);
        for (std::int32_t row = 0; row <= last; ++row) {
            for (std::int32_t col = 0; col < 10; ++col) {
                FUZZ_CHECK(!HasControls(grid.TextMatrix(row, col)));
            }
        }
        CheckEditor();
        if (!HasTotalsRow(basket_)) return;  // a load has taken it away
        FUZZ_CHECK(grid.TextMatrix(last, 2) == L"Gesamt");
        for (const std::int32_t col : {8, 9}) {
            const auto sum = SumOfLines(basket_, col);
            FUZZ_CHECK(!sum || basket_.Total(col) == *sum);
        }
    }

    BasketFixture& Basket() { return basket_; }

  private:
    bool thorough_;
    BasketFixture basket_;
};

}  // namespace

// The first byte chooses the number format and how thorough the case is, the second the length of
// the keys that follow; the rest is the file.
void Basket(const std::uint8_t* data, std::size_t size) {
    static constexpr FakeLocale kLocales[] = {FakeLocale::kAustria, FakeLocale::kGermany,
                                              FakeLocale::kUnitedStates};
    const std::size_t first_byte = size > 0 ? data[0] : 0;
    const std::size_t format = first_byte % 3;
    const bool thorough = first_byte / 3 % 8 == 1;
    const std::size_t header = std::min<std::size_t>(size, 2);
    const std::size_t keys = std::min<std::size_t>(size - header, size > 1 ? data[1] % 32 : 0);
    Driver driver(kLocales[format], thorough);
    driver.Basket().files.Put(kFile, std::string(data + header + keys, data + size));

    const bool whole = driver.Load(kFile);
    const Cells loaded = driver.Lines();
    if (thorough) driver.Copy();
    bool typed = false;
    try {
        driver.Walk(data + header, keys);
    } catch (const Error&) {  // a total that no number is large enough for
        typed = true;
    }
    driver.Check();
    const bool same = !typed && driver.Lines() == loaded;
    FUZZ_CHECK(same || !whole || keys > 0);
    driver.Copy();
    try {
        driver.Save();
    } catch (const Error&) {
        return;
    }
    // What every line of was read is the same basket when it has been saved and read again, and in
    // any case what was saved is.
    const Cells saved = driver.Lines();
    const bool again = driver.Load(kSaved);
    const Cells first = driver.Lines();
    if (whole && same) FUZZ_CHECK(again && first == saved && saved == loaded);
    if (!thorough) return;
    FUZZ_CHECK(driver.Load(kSaved) == again);
    FUZZ_CHECK(driver.Lines() == first);

    driver.ChangeFormat(kLocales[(format + 1) % 3]);
    RaisedBy([&] { driver.Basket().Link(L"4711"); });
    driver.Check();
    driver.ChangeFormat(kLocales[format]);
    RaisedBy([&] { driver.Basket().Link(L"nope"); });
    driver.Check();
    driver.Basket().form.Run(Command::mnuDateiNeu);
    driver.Check();
    FUZZ_CHECK(driver.Basket().Lines() == 0 && driver.Basket().Total(8).empty());
}

}  // namespace demovex::fuzz
