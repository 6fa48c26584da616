// The table of the order lines: the one door through which the basket's rows and cells change. It
// lies below everything else in the basket and knows neither editor nor window; whoever needs the
// editor closed tells the editor before (see order_entry.h). Reading the grid and moving its
// current cell is everybody's business.
//
// Row 0 of the grid is the header, rows 1 to LastRow() are the basket, TotalsRow() shows the
// totals. The grid's texts are the basket; beside them the table keeps, for each of the two amount
// columns, the sum of the line totals of the rows that count (basket rows with an article number)
// in whole groschen or cents, so that a recalculation costs the same in an empty basket and in one
// of ten thousand lines. Line numbers are kept right with every row that comes or goes.
//
// Amounts that do not read as a number are counted: while there are any, a recalculation raises the
// type mismatch that summing up would meet, once it has written the totals of all lines that do
// read. Amounts that are not whole hundredths or too large to be exact are counted too: while there
// are any, the totals are summed up row by row.
//
// A file with two lines of one number takes the totals row away while it loads. What is in its
// place then is no longer counted, until RestoreTotalsRow.
//
// Every change of the grid's cells passes one of four private operations: Write, AddRows, DropRows
// and ShiftRows. Whoever is to be told of changes, say a journal, is told there.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "base/error.h"
#include "base/key_value.h"
#include "basket/rows/article_lookup.h"
#include "basket/rows/columns.h"
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

class OrderTable {
  public:
    // All outlive the table.
    OrderTable(FlexGrid& grid, const ITextService& text, IArticleLookup& articles)
        : grid_(grid), text_(text), articles_(articles) {}
    OrderTable(const OrderTable&) = delete;
    OrderTable& operator=(const OrderTable&) = delete;

    // --- places
    // 0 when the basket is empty.
    [[nodiscard]] std::int32_t LastRow() const noexcept { return demovex::LastRow(grid_); }
    [[nodiscard]] std::int32_t TotalsRow() const noexcept { return demovex::TotalsRow(grid_); }
    [[nodiscard]] GridRange Selection() const noexcept { return grid_.Selection(); }
    // Whether the row has an article number; one without takes free text.
    bool IsArticleRow(std::int32_t row) const {
        return !grid_.TextMatrix(row, column::kArtNr).empty();
    }

    // --- changes
    // Two rows, ten columns, captions, widths; (0, 2) is current.
    void BuildEmpty();

    // Writes one cell of any row, control characters as blanks; nothing shown but the cell
    // changes. O(text).
    void SetCell(std::int32_t row, std::int32_t col, std::wstring_view text);

    // Inserts `count` empty rows before basket row or totals row `index`; raises 9 for any other.
    void InsertRows(std::int32_t index, std::int32_t count);

    // Removes rows; the totals shown stay as they are. Raises what the grid raises and changes
    // nothing then. When the totals row goes, the row that is last then is no longer counted. While
    // loading, the line numbers below stay as they are.
    void RemoveRows(std::int32_t first, std::int32_t count);

    // Moves basket rows among themselves (columns 1 to 9); raises 9 when others are touched.
    void MoveRows(std::int32_t first, std::int32_t count, std::int32_t to);

    // Removes all basket rows and empties the totals.
    void Clear();

    enum class Added : std::uint8_t {
        kNew,      // a row of its own, complete; or an empty one when the number is empty
        kMerged,   // the basket's last row has the same number (exact comparison) and took it
        kUnknown,  // a row with number and catalogue columns alone
    };
    // Adds `Menge` of an article at the end. The new row becomes current, selected from the number
    // to the last column; one without a number with its description as the current cell. Nothing is
    // recalculated: that is the caller's, who may know better what the quantity is. What looking
    // the article up raises is raised when the row stands.
    Added AddArtikel(const std::wstring& ArtikelNr, const std::wstring& Katalog,
                     const std::wstring& KatalogURL, std::int32_t Menge);

    // Completes `row` from the article master and makes its quantity current; `Menge` −1 keeps the
    // quantity. True when the article was found; otherwise the row stays as it is. Nothing is
    // recalculated.
    bool RefreshArtikel(std::int32_t row, std::int32_t Menge);

    // Writes unit prices, line totals and totals anew in the number format that `change` makes the
    // text service use, from the values they had in the old one, and quantities that would read
    // differently. Texts that are no numbers stay. Whatever is raised, `change` was called and the
    // sums fit the cells.
    void Reformat(const std::function<void()>& change);

    // --- totals
    // Line totals of `row`, then the totals row. Raises, after both, IncompleteLine when a
    // quantity, price or line total of an article row does not read as a number, and 6 when a
    // product or sum overflows. A total that overflows is shown empty.
    void Recalculate(std::int32_t row);
    // The same, but a line that is incomplete is no error: false then.
    bool TryRecalculate(std::int32_t row);

    // Between these two, a recalculation leaves the totals row as it is; the last one's sums are
    // written at the end, unless that row has gone. EndLoading raises nothing.
    void BeginLoading();
    void EndLoading() noexcept;

    [[nodiscard]] bool HasTotalsRow() const noexcept { return has_totals_row_; }
    // Puts the totals row back below the last line, with right totals, when a load has taken it
    // away; whoever is about to change the basket or to write it calls this. Idle while loading.
    void RestoreTotalsRow();

    // How many amounts of counted rows do not read as numbers.
    [[nodiscard]] std::int64_t Unreadable() const noexcept {
        return sums_[0].unreadable + sums_[1].unreadable;
    }
    // Whether both amounts of `row` read as numbers.
    bool Reads(std::int32_t row) const;

    // Hears what each recalculation met, after everything is written: null for nothing missing; and
    // that all rows have gone.
    struct Listener {
        std::function<void(const IncompleteLine* line)> recalculated;
        std::function<void()> cleared;
    };
    void SetListener(Listener listener) { listener_ = std::move(listener); }

    // --- the rows as a container's items; the tag is the column
    std::int32_t EnumItems();
    std::int32_t CompareItems(std::int32_t id1, std::int32_t id2, std::int32_t tag) const;
    std::int32_t CompareItem(const KeyValue& key, std::int32_t id, std::int32_t tag) const;

  private:
    // The sum of one column: exact in whole hundredths, split so that it cannot overflow.
    struct Sum {
        std::int64_t billions = 0;  // of hundredths
        std::int64_t rest = 0;      // below a billion in magnitude for each amount added
        std::int64_t unreadable = 0;
        std::int64_t inexact = 0;
        double Value() const;  // of the amounts that read, when all of them are exact
    };

    // The four operations that change the grid.
    void Write(std::int32_t row, std::int32_t col, std::wstring_view text);
    void AddRows(std::int32_t index, std::int32_t count);
    void DropRows(std::int32_t first, std::int32_t count);
    void ShiftRows(std::int32_t first, std::int32_t count, std::int32_t to);

    void WriteCounted(std::int32_t row, std::int32_t col, std::wstring_view text);
    void MergeIntoRow(std::int32_t row, std::int32_t menge);
    void Renumber(std::int32_t first);
    void MarkTotalsRow();

    bool Counts(std::int32_t row) const;
    // Takes the amounts of `row` into the sums, or out of them with `sign` −1, when the row counts.
    void Account(std::int32_t row, int sign);
    void AccountAmount(Sum& sum, std::wstring_view text, int sign) const;
    void Recount();
    void SetLineTotal(std::int32_t row, double menge, std::int32_t price_column,
                      std::int32_t total_column);
    double Walk(std::int32_t col) const;
    bool Exact() const { return sums_[0].inexact == 0 && sums_[1].inexact == 0; }
    void RecalculateRow(std::int32_t row);
    // False when a total overflows.
    bool WriteTotalsRow();

    FlexGrid& grid_;
    const ITextService& text_;
    IArticleLookup& articles_;
    Listener listener_;
    std::array<Sum, 2> sums_;  // columns 8 and 9
    bool loading_ = false;
    bool pending_ = false;  // a deferred recalculation has not been written
    bool has_totals_row_ = true;
    std::int32_t cursor_ = 0;
    // kept for their memory
    std::wstring amount_, bezeichnung_, preis_;
};

}  // namespace demovex
