// The plain reference basket's rows and totals: vectors of strings, summed up anew each time. See
// reference_basket.h.
#pragma once

#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "base/error.h"
#include "basket/rows/columns.h"
#include "platform/text.h"
#include "tests/support/raised.h"

namespace demovex {

class ReferenceRows {
  public:
    using Row = std::array<std::wstring, 10>;

    explicit ReferenceRows(const ITextService& service) : text_(service), rows(2) {
        for (std::size_t c = 0; c < 10; ++c) rows[0][c] = kColumns[c].caption;
        rows[1][2] = L"Gesamt";
    }

  protected:
    const ITextService& text_;

  public:
    std::vector<Row> rows;
    bool has_totals = true;  // the last row is the totals row
    bool loading = false;

    int Rows() const { return static_cast<int>(rows.size()); }
    int Lines() const { return Rows() - 2; }
    std::wstring& At(int r, int c) {
        return rows[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)];
    }
    bool IsArticle(int r) { return !At(r, 1).empty(); }

    // The texts that the totals row must show for what the rows show: amounts that do not read are
    // left out. The error is 6 when there is no such number.
    std::wstring SumText(int c, int& error) {
        double plain = 0;
        long double hundredths = 0;
        bool whole = true;
        for (int r = 1; r <= Lines(); ++r) {
            if (!IsArticle(r) || !IsNumber(At(r, c))) continue;
            const double amount = text_.ToNumber(At(r, c));
            plain += amount;
            const double scaled = std::round(amount * 100);
            whole = whole && std::abs(scaled) < 9e15 && scaled / 100 == amount;
            hundredths += static_cast<long double>(scaled);
        }
        const double sum = whole ? static_cast<double>(hundredths / 100) : plain;
        if (!std::isfinite(sum)) error = 6;
        return sum == 0 || !std::isfinite(sum) ? std::wstring() : text_.FormatAmount(sum);
    }

    template <typename Change>
    void ChangeFormat(Change&& change) {
        struct Number {
            std::wstring* cell;
            bool quantity;
            double value;
        };
        std::vector<Number> numbers;
        for (std::size_t r = 1; r < rows.size(); ++r) {
            for (const std::size_t c : {3u, 4u, 5u, 8u, 9u}) {
                std::wstring& cell = rows[r][c];
                if (IsNumber(cell)) numbers.push_back({&cell, c == 3, text_.ToNumber(cell)});
            }
        }
        change();
        for (const Number& number : numbers) {
            if (number.quantity) {
                KeepQuantity(*number.cell, number.value);
            } else {
                *number.cell = text_.FormatAmount(number.value);
            }
        }
    }

  protected:
    bool IsNumber(const std::wstring& candidate) const {
        return RaisedBy([&] { text_.ToNumber(candidate); }) == 0;
    }
    // The totals row, when a load has taken it away, below all lines.
    void Heal() {
        if (loading || has_totals) return;
        has_totals = true;
        rows.emplace_back();
        rows.back()[2] = L"Gesamt";
        for (int r = 1; r <= Lines(); ++r) At(r, 0) = std::to_wstring(r);
        Recalculate(Lines());
    }
    // A quantity is written anew when its text would mean another number.
    void KeepQuantity(std::wstring& cell, double value) const {
        if (!IsNumber(cell) || text_.ToNumber(cell) != value) cell = text_.FromNumber(value);
    }
    // Writes what can be written; answers 6 for a product or sum that no number is large enough
    // for, 13 while a line lacks readable amounts.
    int Recalculate(int r) {
        int own = 0, sums = 0;
        if (IsArticle(r)) {
            for (const int c : {8, 9}) {
                if (!IsNumber(At(r, 3)) || !IsNumber(At(r, c - 4))) {
                    if (own == 0) own = 13;
                    continue;
                }
                const double product = text_.ToNumber(At(r, 3)) * text_.ToNumber(At(r, c - 4));
                if (std::isfinite(product)) {
                    At(r, c) = text_.FormatAmount(product);
                } else if (own == 0) {
                    own = 6;
                }
            }
        }
        for (const int c : {8, 9}) rows.back()[static_cast<std::size_t>(c)] = SumText(c, sums);
        if (own == 6 || (own == 0 && sums == 6)) return 6;
        for (int line = 1; line <= Lines() && own == 0; ++line) {
            if (IsArticle(line) && !(IsNumber(At(line, 8)) && IsNumber(At(line, 9)))) own = 13;
        }
        return own;
    }
};

}  // namespace demovex
