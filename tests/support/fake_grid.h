// A plain grid for tests of code above the grid: cells in vectors, the rules of IFlexGrid and its
// events, a viewport of settable size. No painting, no input.
//
//   FakeGrid grid(10, 10);               // rows, columns
//   grid.events = &form;                 // may stay null
//   grid.viewport = {9000, 4500};        // outer size in twips
//
// A failed test prints the cells with grid.AsText().
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"
#include "grid/flex_grid.h"

namespace demovex {

class FakeGrid : public IFlexGrid {
  public:
    static constexpr Twips kDefaultColWidth = 960;
    static constexpr Twips kDefaultRowHeight = 240;

    explicit FakeGrid(std::int32_t rows = 2, std::int32_t cols = 2)
        : rows_(static_cast<std::size_t>(rows)),
          cols_(cols),
          widths_(static_cast<std::size_t>(cols), kDefaultColWidth) {
        for (RowData& row : rows_) row.cells.resize(static_cast<std::size_t>(cols));
    }

    IFlexGridEvents* events = nullptr;
    struct {
        Twips width = 9000;
        Twips height = 4500;
    } viewport;
    // Events raised so far, counted whether or not somebody listens.
    int row_col_changes = 0;
    int sel_changes = 0;
    int scrolls = 0;

    std::string AsText() const {
        std::string text;
        for (const RowData& row : rows_) {
            for (const Cell& cell : row.cells) {
                for (wchar_t c : cell.text) text += c < 128 ? static_cast<char>(c) : '?';
                text += cell.bold ? "*|" : "|";
            }
            text += '\n';
        }
        return text;
    }

    std::int32_t Rows() const override { return static_cast<std::int32_t>(rows_.size()); }
    std::int32_t Cols() const override { return cols_; }
    void SetRows(std::int32_t rows) override {
        if (rows < kFixed + 1) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
        rows_.resize(static_cast<std::size_t>(rows), EmptyRow());
        CutToSize();
    }
    void SetCols(std::int32_t cols) override {
        if (cols < kFixed + 1) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
        cols_ = cols;
        widths_.resize(static_cast<std::size_t>(cols), kDefaultColWidth);
        for (RowData& row : rows_) row.cells.resize(static_cast<std::size_t>(cols));
        CutToSize();
    }

    std::int32_t Row() const override { return at_.row; }
    std::int32_t Col() const override { return at_.col; }
    std::int32_t RowSel() const override { return at_.row_sel; }
    std::int32_t ColSel() const override { return at_.col_sel; }
    void SetRow(std::int32_t row) override {
        CheckRow(row);
        MoveTo({row, at_.col, row, at_.col});
    }
    void SetCol(std::int32_t col) override {
        CheckCol(col);
        MoveTo({at_.row, col, at_.row, col});
    }
    void SetRowSel(std::int32_t row) override {
        CheckRow(row);
        MoveTo({at_.row, at_.col, row, at_.col_sel});
    }
    void SetColSel(std::int32_t col) override {
        CheckCol(col);
        MoveTo({at_.row, at_.col, at_.row_sel, col});
    }

    std::int32_t TopRow() const override { return top_row_; }
    std::int32_t LeftCol() const override { return left_col_; }
    void SetTopRow(std::int32_t row) override {
        CheckRow(row);
        ScrollTo(std::max(row, kFixed), left_col_);
    }
    void SetLeftCol(std::int32_t col) override {
        CheckCol(col);
        ScrollTo(top_row_, std::max(col, kFixed));
    }

    std::wstring_view TextMatrix(std::int32_t row, std::int32_t col) const override {
        return At(row, col).text;
    }
    void SetTextMatrix(std::int32_t row, std::int32_t col, std::wstring_view text) override {
        At(row, col).text = std::wstring(text);
    }
    bool CellBold(std::int32_t row, std::int32_t col) const override { return At(row, col).bold; }
    void SetCellBold(std::int32_t row, std::int32_t col, bool bold) override {
        At(row, col).bold = bold;
    }
    CellAlignment CellAlign(std::int32_t row, std::int32_t col) const override {
        return At(row, col).alignment;
    }
    void SetCellAlign(std::int32_t row, std::int32_t col, CellAlignment alignment) override {
        At(row, col).alignment = alignment;
    }

    void AddItem(std::int32_t index, std::int32_t count = 1) override {
        if (index < kFixed || index > Rows() || count < 0) {
            RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
        }
        rows_.insert(rows_.begin() + index, static_cast<std::size_t>(count), EmptyRow());
    }
    void RemoveItem(std::int32_t index, std::int32_t count = 1) override {
        if (index < kFixed || count < 0 || index > Rows() - count) {
            RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
        }
        if (Rows() - count < kFixed + 1) {
            RaiseRuntimeError(runtime_error::kCannotRemoveLastRow);
        }
        rows_.erase(rows_.begin() + index, rows_.begin() + index + count);
        CutToSize();
    }
    void MoveRows(std::int32_t first, std::int32_t count, std::int32_t to) override {
        if (first < kFixed || to < kFixed || count < 0 || first > Rows() - count ||
            to > Rows() - count) {
            RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
        }
        std::vector<Cell> numbers;
        for (const RowData& row : rows_) numbers.push_back(row.cells.front());
        if (to < first) {
            std::rotate(rows_.begin() + to, rows_.begin() + first, rows_.begin() + first + count);
        } else {
            std::rotate(rows_.begin() + first, rows_.begin() + first + count,
                        rows_.begin() + to + count);
        }
        for (std::size_t i = 0; i < rows_.size(); ++i) {
            rows_[i].cells.front().text = numbers[i].text;
        }
    }

    Twips ColWidth(std::int32_t col) const override {
        CheckCol(col);
        return widths_[static_cast<std::size_t>(col)];
    }
    void SetColWidth(std::int32_t col, Twips width) override {
        CheckCol(col);
        widths_[static_cast<std::size_t>(col)] = width;
    }
    Twips RowHeight(std::int32_t row) const override {
        CheckRow(row);
        return rows_[static_cast<std::size_t>(row)].height;
    }
    void SetRowHeight(std::int32_t row, Twips height) override {
        CheckRow(row);
        rows_[static_cast<std::size_t>(row)].height = height;
    }

    bool Redraw() const override { return redraw_; }
    void SetRedraw(bool redraw) override { redraw_ = redraw; }
    FocusRectStyle FocusRect() const override { return focus_rect_; }
    void SetFocusRect(FocusRectStyle style) override { focus_rect_ = style; }

    Twips CellLeft() const override { return ColPos(at_.col); }
    Twips CellTop() const override { return RowPos(at_.row); }
    Twips CellWidth() const override { return ColWidth(at_.col); }
    Twips CellHeight() const override { return RowHeight(at_.row); }
    Twips RowPos(std::int32_t row) const override {
        CheckRow(row);
        if (row < kFixed) return 0;
        Twips position = RowHeight(0);
        for (std::int32_t r = top_row_; r < row; ++r) position += RowHeight(r);
        for (std::int32_t r = row; r < top_row_; ++r) position -= RowHeight(r);
        return position;
    }
    Twips ColPos(std::int32_t col) const override {
        CheckCol(col);
        if (col < kFixed) return 0;
        Twips position = ColWidth(0);
        for (std::int32_t c = left_col_; c < col; ++c) position += ColWidth(c);
        for (std::int32_t c = col; c < left_col_; ++c) position -= ColWidth(c);
        return position;
    }
    Twips Width() const override { return viewport.width; }
    Twips Height() const override { return viewport.height; }

  private:
    static constexpr std::int32_t kFixed = 1;

    struct Cell {
        std::wstring text;
        bool bold = false;
        CellAlignment alignment = CellAlignment::kGeneral;
    };
    struct RowData {
        std::vector<Cell> cells;
        Twips height = kDefaultRowHeight;
    };
    struct Place {
        std::int32_t row = 1;
        std::int32_t col = 1;
        std::int32_t row_sel = 1;
        std::int32_t col_sel = 1;
        friend bool operator==(const Place&, const Place&) = default;
    };

    RowData EmptyRow() const {
        RowData row;
        row.cells.resize(static_cast<std::size_t>(cols_));
        return row;
    }
    void CheckRow(std::int32_t row) const {
        if (row < 0 || row >= Rows()) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    }
    void CheckCol(std::int32_t col) const {
        if (col < 0 || col >= cols_) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    }
    const Cell& At(std::int32_t row, std::int32_t col) const {
        CheckRow(row);
        CheckCol(col);
        return rows_[static_cast<std::size_t>(row)].cells[static_cast<std::size_t>(col)];
    }
    Cell& At(std::int32_t row, std::int32_t col) {
        return const_cast<Cell&>(static_cast<const FakeGrid&>(*this).At(row, col));
    }

    void MoveTo(const Place& place) {
        if (place == at_) return;
        const bool moved = place.row != at_.row || place.col != at_.col;
        at_ = place;
        ++(moved ? row_col_changes : sel_changes);
        if (events == nullptr) return;
        if (moved) {
            events->RowColChange();
        } else {
            events->SelChange();
        }
    }
    void ScrollTo(std::int32_t top, std::int32_t left) {
        if (top == top_row_ && left == left_col_) return;
        top_row_ = top;
        left_col_ = left;
        ++scrolls;
        if (events != nullptr) events->Scroll();
    }
    // After rows or columns went away.
    void CutToSize() {
        const std::int32_t last_row = Rows() - 1;
        const std::int32_t last_col = cols_ - 1;
        ScrollTo(std::min(top_row_, last_row), std::min(left_col_, last_col));
        MoveTo({std::min(at_.row, last_row), std::min(at_.col, last_col),
                std::min(at_.row_sel, last_row), std::min(at_.col_sel, last_col)});
    }

    std::vector<RowData> rows_;
    std::int32_t cols_;
    std::vector<Twips> widths_;
    Place at_;
    std::int32_t top_row_ = kFixed;
    std::int32_t left_col_ = kFixed;
    bool redraw_ = true;
    FocusRectStyle focus_rect_ = FocusRectStyle::kLight;
};

}  // namespace demovex
