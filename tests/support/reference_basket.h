// The basket once more, as plainly as it can be told: rows are vectors of strings, commands work
// row by row, totals are summed up over all rows each time. A random walk drives it beside the real
// one and compares.
//
// It knows no geometry: it takes every cell to be wholly in view, so the real grid must be large
// enough for all its rows. Number reading and formatting are the text service's, which has tests of
// its own. Errors are thrown as their plain numbers. Files are reference_document.h's.
#pragma once

#include <algorithm>
#include <cmath>
#include <string>

#include "tests/support/basket_fixture.h"
#include "tests/support/reference_rows.h"

namespace demovex {

class ReferenceBasket : public ReferenceRows {
  public:
    using ReferenceRows::ReferenceRows;

    int row = 0, col = 2, row_sel = 0, col_sel = 2;
    bool editor = false;
    int edit_row = 0, edit_col = 0;
    std::wstring text;  // what is being typed
    int sel_start = 0, sel_length = 0;
    bool modified = false;
    bool suppress = false;
    std::wstring status;
    int messages = 0;
    int beeps = 0;

    // --- what the host does
    void Link(const std::wstring& nr, int menge, const std::wstring& catalog,
              const std::wstring& url) {
        Raise(Add(nr, menge, catalog, url).error);
    }
    // The number format: `change` makes the text service use the new one.
    template <typename Change>
    void ChangeFormat(Change&& change) {
        const bool typing = editor && edit_col == 3 && IsNumber(text);
        const double typed = typing ? text_.ToNumber(text) : 0;
        ReferenceRows::ChangeFormat(change);
        if (typing) KeepQuantity(text, typed);
    }

    // --- what the user does in the grid
    void Select(int r, int c, int r_sel, int c_sel) {
        const bool moved = r != row || c != col;
        row = r, col = c, row_sel = r_sel, col_sel = c_sel;
        if (moved) RowColChange();
    }
    void Select(int r, int c) { Select(r, c, r, c); }
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
            Select(r, c);
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
                case View::kTab:
                    NextCell(+1);
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
        if (shift == 1 && key == View::kTab) {
            NextCell(-1);
            return true;
        }
        if (shift == 1 && ((key == View::kUp && edit_row >= 2) ||
                           (key == View::kDown && edit_row < Rows() - 1))) {
            Suppress guard(*this);
            Close();
            suppress = true;
            Select(edit_row, col);
            row_sel = edit_row + (key == View::kUp ? -1 : 1);
            return true;
        }
        return false;
    }

    // --- commands
    void AppendRow() {
        Close();
        RaiseUnlessIncomplete(Add(L"", 1, L"", L"").error);
        RowColChange();
    }
    void InsertAbove() {
        Close();
        Heal();
        modified = true;
        if (row == 0) {
            RaiseUnlessIncomplete(Add(L"", 1, L"", L"").error);
        } else {
            Insert(row, std::abs(row_sel - row) + 1);
        }
        RowColChange();
    }
    void Delete() {
        Close();
        Heal();
        modified = true;
        if (row == 0) {
            ++beeps;
            RowColChange();
            return;
        }
        for (int count = std::abs(row_sel - row) + 1; count > 0 && row < Rows() - 1; --count) {
            rows.erase(rows.begin() + row);
        }
        row_sel = row, col_sel = col;
        for (int r = row; r <= Rows() - 2; ++r) At(r, 0) = std::to_wstring(r);
        RaiseUnlessIncomplete(Recalculate(Rows() - 1));
        if (Rows() == 2) Select(row, 2);
        RowColChange();
    }
    void Move(int step) {
        Heal();
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
            Select(r + step, col);
            Select(row, c);
            row_sel = row + row_span, col_sel = col + col_span;
        }
        RowColChange();
    }
    void New() {
        Close();
        Heal();
        suppress = true;
        Clear();
        Select(row, 2);
        RowColChange();
        modified = false;
        suppress = false;
    }
    void Commit() {
        if (!editor) return;
        editor = false;
        Heal();
        modified = true;
        const int r = edit_row, c = edit_col;
        const Row before = rows[static_cast<std::size_t>(r)];
        std::replace_if(
            text.begin(), text.end(), [](wchar_t x) { return x < L' ' || x == 0x7F; }, L' ');
        At(r, c) = text;
        if (c == 1 && IsArticle(r)) {
            const Added refreshed = Refresh(r, 1);
            if (refreshed.found) {
                Commit();
                RowColChange();
            } else {
                for (int i = 1; i < 10; ++i) At(r, i) = before[static_cast<std::size_t>(i)];
                if (refreshed.error == 0) {
                    ++messages;
                } else {
                    Recalculate(Rows() - 1);
                    Raise(refreshed.error);
                }
            }
        } else if (c == 3) {
            if (r != row) RaiseUnlessIncomplete(Recalculate(r));
            RaiseUnlessIncomplete(Recalculate(row));
        }
    }
    void Resize() { Close(); }
    // The user has pressed on the current cell, or moved: what may be edited is edited.
    void Acted() {
        if (!editor && !suppress && Editable()) Open();
    }
    // To the next of the cells that may be edited, row by row, or the one before.
    void NextCell(int step) {
        const std::pair<int, int> from =
            editor ? std::pair(edit_row, edit_col) : std::pair(row, col);
        Close();
        std::vector<std::pair<int, int>> cells;
        for (int r = 1; r <= Lines(); ++r) {
            if (IsArticle(r)) {
                cells.emplace_back(r, 3);
            } else {
                cells.emplace_back(r, 1);
                cells.emplace_back(r, 2);
            }
        }
        std::pair<int, int> next = from;
        for (const auto& cell : cells) {
            if (step < 0 && cell < from) next = cell;
            if (step > 0 && next == from && cell > from) next = cell;
        }
        if (next != from) {
            Suppress guard(*this);
            const auto [r, c] = next;
            Select(r, c, r, c);
        }
        Acted();
    }

    bool Editable() {
        if (row < 1 || row >= Rows() - 1 || row != row_sel || col != col_sel) return false;
        return IsArticle(row) ? col == 3 : col == 1 || col == 2;
    }

  protected:
    struct Added {
        bool found = false;
        int error = 0;
    };
    struct Suppress {
        explicit Suppress(ReferenceBasket& basket) : basket_(basket) { basket_.suppress = true; }
        ~Suppress() { basket_.suppress = false; }
        ReferenceBasket& basket_;
    };

    static void Raise(int error) {
        if (error != 0) RaiseRuntimeError(error);
    }
    // Lines that are incomplete stop no command.
    static void RaiseUnlessIncomplete(int error) {
        if (error != 13) Raise(error);
    }
    void CopyCells(const Row& from, int to) {
        for (std::size_t c = 1; c < 10; ++c) rows[static_cast<std::size_t>(to)][c] = from[c];
    }
    void Close() {
        while (editor) Commit();
    }
    void Remove(int r) {
        if (r < 1 || r >= Rows()) RaiseRuntimeError(9);
        if (Rows() == 2) RaiseRuntimeError(30016);
        if (r == Rows() - 1) has_totals = false;
        rows.erase(rows.begin() + r);
        KeepInside();
    }
    void Clear() {
        rows.erase(rows.begin() + 1, rows.end() - 1);
        At(1, 8).clear();
        At(1, 9).clear();
        KeepInside();
    }
    void KeepInside() {
        const int last = Rows() - 1;
        Select(std::min(row, last), col, std::min(row_sel, last), col_sel);
    }
    void RowColChange() {
        if (loading) return;
        ShowPosition();
        Commit();
        if (!suppress && Editable()) Open();
    }
    void Open() {
        editor = true;
        edit_row = row, edit_col = col;
        text = At(row, col);
        sel_start = 0, sel_length = static_cast<int>(text.size());
    }
    void ShowPosition() { status = row_sel == row ? At(row, 6) : L""; }
    // Adds an article, whatever goes wrong on the way; answers the first error.
    Added Add(const std::wstring& nr, int menge, const std::wstring& catalog,
              const std::wstring& url) {
        Added added;
        added.error = RaisedBy([&] { Close(); });
        Heal();
        modified = true;
        Suppress guard(*this);
        const auto note_error = [&](int error) {
            if (added.error == 0) added.error = error;
        };
        const int last = Rows() - 2;
        if (!nr.empty() && At(last, 1) == nr) {
            double quantity = 0;
            RaisedBy([&] { quantity = LeadingNumber(At(last, 3)); });  // too large is none
            At(last, 3) = text_.FromNumber(quantity + menge);
            if (col == 3) {
                suppress = false;
                RowColChange();
            }
        } else {
            const Added appended = Append(nr, menge, catalog, url);
            added.found = appended.found;
            note_error(appended.error);
            if (loading && !nr.empty() && (!appended.found || added.error != 0)) return added;
        }
        note_error(Recalculate(Rows() - 2));
        return added;
    }
    Added Append(const std::wstring& nr, int menge, const std::wstring& catalog,
                 const std::wstring& url) {
        rows.insert(rows.end() - 1, Row());
        const int r = Rows() - 2;
        Select(r, col);
        At(r, 0) = std::to_wstring(r);
        At(r, 1) = nr;
        if (nr.empty()) {
            Select(r, 1);
            suppress = false;
            Select(r, 2);
            return {};
        }
        const Added refreshed = Refresh(r, menge);
        At(r, 6) = catalog;
        At(r, 7) = url;
        Select(r, 1);
        col_sel = 9;
        return refreshed;
    }
    void Insert(int at, int count) {
        const int error = RaisedBy([&] { Close(); });
        Heal();
        modified = true;
        Suppress guard(*this);
        for (; count >= 1; --count) {
            rows.insert(rows.begin() + at, Row());
            for (int r = at; r <= Rows() - 2; ++r) At(r, 0) = std::to_wstring(r);
        }
        Select(row, 1);
        suppress = false;
        Select(row, 2);
        Raise(error);
    }
    Added Refresh(int r, int menge) {
        if (At(r, 1).empty()) return {};
        Commit();
        Heal();
        modified = true;
        Suppress guard(*this);
        const std::wstring nr(TrimBlanks(At(r, 1)));
        for (const TestArticle& article : TestArticles()) {
            if (text_.CompareText(nr, text_.FromAnsi(article.nr)) != 0) continue;
            At(r, 2) = text_.FromAnsi(article.bezeichnung);
            At(r, 3) = std::to_wstring(menge);
            const std::wstring price_text = text_.FromAnsi(article.preis);
            if (!IsNumber(price_text)) return {false, 13};
            const double price = text_.ToNumber(price_text);
            At(r, 4) = text_.FormatAmount(price);
            // halves to the even hundredth
            At(r, 5) = text_.FormatAmount(std::nearbyint(price / 13.7603 * 100) / 100);
            Select(row, 3);
            return {true, Recalculate(r)};
        }
        return {};
    }
};

}  // namespace demovex
