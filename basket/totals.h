// The totals of the basket, kept right with every change instead of being summed up anew.
//
// The grid's texts are the basket; beside them this keeps, for each of the two amount columns, the
// sum of the line totals of the rows that count (basket rows with an article number) in whole
// groschen or cents. Every write of columns 1, 8 and 9 and every insertion, removal or move of rows
// goes through here, so that a recalculation costs the same in an empty basket and in one of ten
// thousand lines.
//
// Amounts that do not read as a number are counted: while there are any, a recalculation raises the
// type mismatch that summing up would meet, once it has written the totals of all lines that do
// read. Amounts that are not whole hundredths or too large to be exact are counted too: while there
// are any, the totals are summed up row by row.
//
// A file with two lines of one number takes the totals row away while it loads. What is in its
// place then is no longer counted, until RestoreTotalsRow.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string_view>

#include "base/error.h"
#include "grid/flex_grid.h"
#include "platform/text.h"

namespace demovex {

// The type mismatch that a recalculation ends with when a line with a number lacks readable
// amounts. All that can be reckoned has been written then.
class IncompleteLine final : public Error {
  public:
    // `row` is the row that was recalculated when it lacks them itself, otherwise 0.
    explicit IncompleteLine(std::int32_t row)
        : Error(runtime_error::kTypeMismatch, {},
                std::wstring(StandardDescription(runtime_error::kTypeMismatch))),
          row_(row) {}
    std::int32_t row() const noexcept { return row_; }

  private:
    std::int32_t row_;
};

class Totals {
  public:
    // Both outlive the totals.
    Totals(FlexGrid& grid, const ITextService& text) : grid_(grid), text_(text) {}

    // Writes a cell. O(text).
    void SetCell(std::int32_t row, std::int32_t col, std::wstring_view text);

    // Inserts `count` empty rows before basket row or totals row `index`; raises 9 for any other.
    void InsertRows(std::int32_t index, std::int32_t count);

    // Removes rows; O(rows removed). When the totals row goes, the row that is last then is no
    // longer counted.
    void RemoveRows(std::int32_t first, std::int32_t count);

    // Moves basket rows among themselves (columns 1 to 9); raises 9 when others are touched.
    void MoveRows(std::int32_t first, std::int32_t count, std::int32_t to);

    // Line totals of `row`, then the totals row. Raises IncompleteLine and 6, see IBasketRows,
    // after both. A total that overflows is shown empty.
    void Recalculate(std::int32_t row);

    // While deferred, a recalculation leaves the totals row as it is; the last one's sums are
    // written when the deferring ends, unless that row has gone. For many recalculations in a row.
    void Defer(bool deferred);

    // Sums up all rows afresh; for a grid that was changed behind this object's back.
    void Recount();

    // How many amounts of counted rows do not read as numbers.
    std::int64_t Unreadable() const { return sums_[0].unreadable + sums_[1].unreadable; }
    // Whether both amounts of `row` read as numbers.
    bool Reads(std::int32_t row) const;

    bool HasTotalsRow() const { return has_totals_row_; }
    // Adds an empty row below the last one for the totals; the row in its place counts again.
    void RestoreTotalsRow();

    // Writes unit prices, line totals and totals anew in the number format that `change` makes the
    // text service use, from the values they had in the old one, and quantities that would read
    // differently. Texts that are no numbers stay. Whatever is raised, `change` was called and the
    // sums fit the cells.
    void Reformat(const std::function<void()>& change);

  private:
    // The sum of one column: exact in whole hundredths, split so that it cannot overflow.
    struct Sum {
        std::int64_t billions = 0;  // of hundredths
        std::int64_t rest = 0;      // below a billion in magnitude for each amount added
        std::int64_t unreadable = 0;
        std::int64_t inexact = 0;
        double Value() const;  // of the amounts that read, when all of them are exact
    };

    bool Counts(std::int32_t row) const;
    // Takes the amounts of `row` into the sums, or out of them with `sign` −1, when the row counts.
    void Account(std::int32_t row, int sign);
    void AccountAmount(Sum& sum, std::wstring_view text, int sign) const;
    void SetLineTotal(std::int32_t row, double menge, std::int32_t price_column,
                      std::int32_t total_column);
    double Walk(std::int32_t col) const;
    bool Exact() const { return sums_[0].inexact == 0 && sums_[1].inexact == 0; }
    // False when a total overflows.
    bool WriteTotalsRow();

    FlexGrid& grid_;
    const ITextService& text_;
    std::array<Sum, 2> sums_;  // columns 8 and 9
    bool deferred_ = false;
    bool pending_ = false;  // a deferred recalculation has not been written
    bool has_totals_row_ = true;
    std::wstring amount_;  // kept for its memory
};

}  // namespace demovex
