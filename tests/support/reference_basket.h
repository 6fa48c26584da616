// The basket once more, as plainly as it can be told: rows are vectors of strings, commands work
// row by row, totals are summed up over all rows each time. A random walk drives it beside the real
// one and compares.
//
// It knows no geometry: it takes every cell to be wholly in view, so the real grid must be large
// enough for all its rows. Number reading and formatting are the text service's, which has tests of
// its own. Errors are thrown as their plain numbers.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "basket/columns.h"
#include "platform/text.h"
#include "tests/support/basket_fixture.h"

namespace demovex {

class ReferenceBasket {
  public:
    using Row = std::array<std::wstring, 10>;

    explicit ReferenceBasket(const ITextService& service) : text_(service), rows(2) {
        for (std::size_t c = 0; c < 10; ++c) rows[0][c] = kColumns[c].caption;
        rows[1][2] = L"Gesamt";
    }

  private:
    const ITextService& text_;

  public:
    std::vector<Row> rows;
    int row = 0, col = 2, row_sel = 0, col_sel = 2;
    bool editor = false;
    int edit_row = 0, edit_col = 0;
    std::wstring text;
    int sel_start = 0, sel_length = 0;
    bool modified = false;
    bool suppress = false;
    std::wstring status;
    int messages = 0;
    int beeps = 0;

    int Rows() const { return static_cast<int>(rows.size()); }
    int Lines() const { return Rows() - 2; }
    std::wstring& At(int r, int c) {
        return rows[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)];
    }
    bool IsArticle(int r) { return !At(r, 1).empty(); }

    // --- what the host does
    void Link(const std::wstring& nr, int menge, const std::wstring& catalog,
              const std::wstring& url) {
        Commit();
        modified = true;
        Suppress guard(*this);
        const int last = Rows() - 2;
        if (!nr.empty() && At(last, 1) == nr) {
            if (col == 3) Commit();
            At(last, 3) = text_.FromNumber(LeadingNumber(At(last, 3)) + menge);
            if (col == 3) {
                suppress = false;
                RowColChange();
            }
        } else {
            Append(nr, menge, catalog, url);
        }
        Recalculate(Rows() - 2);
    }

    // --- what the user does in the grid
    void Select(int r, int c, int r_sel, int c_sel) {
        const bool moved = r != row || c != col;
        row = r, col = c, row_sel = r_sel, col_sel = c_sel;
        if (moved) RowColChange();
    }
    void GridArrow(int down, int right, bool shift) {
        int r = std::clamp((shift ? row_sel : row) + down, 1, Rows() - 1);
        int c = shift ? col_sel : col;
        if (right != 0) {
            int next = c + right;
            if (next == 6 || next == 7) next = right > 0 ? 8 : 5;
            c = next >= 1 && next <= 9 ? next : c;
        }
        if (shift) {
            row_sel = r, col_sel = c;
        } else {
            Select(r, c, r, c);
        }
    }

    // --- what the user does in the text box
    void Replace(std::wstring_view with) {
        std::wstring changed = text;
        std::wstring_view taken = with;
        if (edit_col == 2) {
            const int kept = static_cast<int>(text.size()) - sel_length;
            taken = taken.substr(0, static_cast<std::size_t>(std::max(0, 25 - kept)));
        }
        changed.replace(static_cast<std::size_t>(sel_start), static_cast<std::size_t>(sel_length),
                        taken);
        if (edit_col == 3 && !IsNumber(changed)) return;
        text = changed;
        // the caret is compared and taken over by the walk
    }
    // Answers false when the key belongs to the text box.
    bool Key(int key, int shift) {
        const int length = static_cast<int>(text.size());
        using View = FakeBasketView;
        if (shift == 0) {
            switch (key) {
                case View::kLeft:
                    if (!(edit_col >= 2 && sel_start == 0)) return false;
                    Commit();
                    GridArrow(0, -1, false);
                    return true;
                case View::kRight:
                    if (!(sel_start + sel_length == length && edit_col < 9)) return false;
                    Commit();
                    GridArrow(0, +1, false);
                    return true;
                case View::kUp:
                case View::kPageUp:
                    if (!(row >= 2)) return false;
                    Commit();
                    GridArrow(key == View::kUp ? -1 : -1000, 0, false);
                    return true;
                case View::kDown:
                case View::kPageDown:
                    if (!(row < Rows() - 1)) return false;
                    Commit();
                    GridArrow(key == View::kDown ? 1 : 1000, 0, false);
                    return true;
                case View::kF2:
                    sel_length = 0;
                    return true;
                case View::kReturn:
                    if (edit_col != 2) {
                        Commit();
                        RowColChange();
                    } else {
                        Insert(edit_row + 1, 1);
                    }
                    return true;
                default:
                    return false;
            }
        }
        if (shift == 1 && ((key == View::kUp && edit_row >= 2) ||
                           (key == View::kDown && edit_row < Rows() - 1))) {
            Suppress guard(*this);
            Close();
            suppress = true;
            Select(edit_row, col, edit_row, col);
            row_sel = edit_row + (key == View::kUp ? -1 : 1);
            return true;
        }
        return false;
    }

    // --- commands
    void AppendRow() {
        Close();
        Link(L"", 1, L"", L"");
        RowColChange();
    }
    void InsertAbove() {
        Close();
        modified = true;
        if (row == 0) {
            Link(L"", 1, L"", L"");
        } else {
            Insert(row, std::abs(row_sel - row) + 1);
        }
        RowColChange();
    }
    void Delete() {
        Close();
        modified = true;
        if (row == 0) {
            ++beeps;
            RowColChange();
            return;
        }
        bool removed = false;
        for (int count = std::abs(row_sel - row) + 1; count > 0; --count) {
            if (Rows() == 2) {
                Select(row, 2, row, 2);
                At(1, 8).clear();
                At(1, 9).clear();
                return;
            }
            if (row == Rows() - 1) break;
            rows.erase(rows.begin() + row);
            removed = true;
        }
        if (removed) {
            row_sel = row, col_sel = col;
            for (int r = row; r <= Rows() - 2; ++r) At(r, 0) = std::to_wstring(r);
            Recalculate(Rows() - 1);
            if (Rows() == 2) Select(row, 2, row, 2);
        }
        RowColChange();
    }
    void Move(int step) {
        modified = true;
        const int first = std::min(row, row_sel), last = std::max(row, row_sel);
        if (step < 0 && !(first >= 2 && last < Rows() - 1)) return;
        if (step > 0 && !(first >= 1 && last < Rows() - 2)) return;
        const int r = row, c = col, row_span = row_sel - row, col_span = col_sel - col;
        {
            Suppress guard(*this);
            Close();
            suppress = true;
            if (step < 0) {
                const Row saved = rows[static_cast<std::size_t>(first - 1)];
                for (int i = first; i <= last; ++i)
                    CopyCells(rows[static_cast<std::size_t>(i)], i - 1);
                CopyCells(saved, last);
            } else {
                const Row saved = rows[static_cast<std::size_t>(last + 1)];
                for (int i = last; i >= first; --i)
                    CopyCells(rows[static_cast<std::size_t>(i)], i + 1);
                CopyCells(saved, first);
            }
            Select(r + step, col, r + step, col);
            Select(row, c, row, c);
            row_sel = row + row_span, col_sel = col + col_span;
        }
        RowColChange();
    }
    void New() {
        Close();
        suppress = true;
        rows.erase(rows.begin() + 1, rows.end() - 1);
        At(1, 8).clear();
        At(1, 9).clear();
        const int r = std::min(row, 1);
        Select(r, col, r, std::min(col_sel, 9));
        Select(row, 2, row, 2);
        RowColChange();
        modified = false;
        suppress = false;
    }
    void Commit() {
        if (!editor) return;
        editor = false;
        modified = true;
        const int r = edit_row, c = edit_col;
        const std::wstring typed = text;
        const std::wstring old = At(r, c);
        At(r, c) = typed;
        if (c == 1 && IsArticle(r)) {
            if (Refresh(r, 1)) {
                Commit();
                RowColChange();
            } else {
                ++messages;
                At(r, c) = old;
            }
        } else if (c == 3) {
            if (r != row) Recalculate(r);
            Recalculate(row);
        }
    }
    void Resize() { Close(); }

    bool Editable() {
        if (row < 1 || row >= Rows() - 1 || row != row_sel || col != col_sel) return false;
        return IsArticle(row) ? col == 3 : col == 1 || col == 2;
    }
    // The texts that the totals row must show for what the rows show.
    std::wstring SumText(int c) {
        double plain = 0;
        long double hundredths = 0;
        bool whole = true;
        for (int r = 1; r <= Lines(); ++r) {
            if (!IsArticle(r)) continue;
            const double amount = text_.ToNumber(At(r, c));
            plain += amount;
            const double scaled = std::round(amount * 100);
            whole = whole && std::abs(scaled) < 9e15 && scaled / 100 == amount;
            hundredths += static_cast<long double>(scaled);
        }
        const double sum = whole ? static_cast<double>(hundredths / 100) : plain;
        return sum == 0 ? std::wstring() : text_.FormatAmount(sum);
    }

  private:
    struct Suppress {
        explicit Suppress(ReferenceBasket& basket) : basket_(basket) { basket_.suppress = true; }
        ~Suppress() { basket_.suppress = false; }
        ReferenceBasket& basket_;
    };

    bool IsNumber(const std::wstring& candidate) const {
        return RaisedBy([&] { text_.ToNumber(candidate); }) == 0;
    }
    void CopyCells(const Row& from, int to) {
        for (std::size_t c = 1; c < 10; ++c) rows[static_cast<std::size_t>(to)][c] = from[c];
    }
    void Close() {
        while (editor) Commit();
    }
    void RowColChange() {
        status = row_sel == row ? At(row, 6) : L"";
        Commit();
        if (suppress || !Editable()) return;
        editor = true;
        edit_row = row, edit_col = col;
        text = At(row, col);
        sel_start = 0, sel_length = static_cast<int>(text.size());
    }
    void Append(const std::wstring& nr, int menge, const std::wstring& catalog,
                const std::wstring& url) {
        rows.insert(rows.end() - 1, Row());
        const int r = Rows() - 2;
        Select(r, col, r, col);
        At(r, 0) = std::to_wstring(r);
        At(r, 1) = nr;
        if (nr.empty()) {
            Select(r, 1, r, 1);
            suppress = false;
            Select(r, 2, r, 2);
            return;
        }
        Refresh(r, menge);
        At(r, 6) = catalog;
        At(r, 7) = url;
        Select(r, 1, r, 1);
        col_sel = 9;
    }
    void Insert(int at, int count) {
        Commit();
        modified = true;
        Suppress guard(*this);
        for (; count >= 1; --count) {
            rows.insert(rows.begin() + at, Row());
            for (int r = at; r <= Rows() - 2; ++r) At(r, 0) = std::to_wstring(r);
        }
        Select(row, 1, row, 1);
        suppress = false;
        Select(row, 2, row, 2);
    }
    bool Refresh(int r, int menge) {
        if (At(r, 1).empty()) return false;
        Commit();
        modified = true;
        Suppress guard(*this);
        const std::wstring nr(TrimBlanks(At(r, 1)));
        for (const TestArticle& article : TestArticles()) {
            if (text_.CompareText(nr, text_.FromAnsi(article.nr)) != 0) continue;
            At(r, 2) = text_.FromAnsi(article.bezeichnung);
            At(r, 3) = std::to_wstring(menge);
            const double price = text_.ToNumber(text_.FromAnsi(article.preis));
            At(r, 4) = text_.FormatAmount(price);
            // halves to the even hundredth
            At(r, 5) = text_.FormatAmount(std::nearbyint(price / 13.7603 * 100) / 100);
            Select(row, 3, row, 3);
            Recalculate(r);
            return true;
        }
        return false;
    }
    void Recalculate(int r) {
        if (IsArticle(r)) {
            for (const int c : {8, 9}) {
                const double product = text_.ToNumber(At(r, 3)) * text_.ToNumber(At(r, c - 4));
                if (!std::isfinite(product)) RaiseRuntimeError(6);
                At(r, c) = text_.FormatAmount(product);
            }
        }
        const std::wstring schillings = SumText(8);
        const std::wstring euros = SumText(9);
        rows.back()[8] = schillings;
        rows.back()[9] = euros;
    }
};

}  // namespace demovex
