#include "grid/flex_grid.h"

#include <algorithm>
#include <limits>

#include "base/error.h"

namespace demovex {

namespace {

[[noreturn]] void OutOfRange() {
    RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
}

}  // namespace

bool LooksLikeNumber(std::wstring_view text) {
    bool digit = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const wchar_t c = text[i];
        if (c >= L'0' && c <= L'9') {
            digit = true;
        } else if (c != L'.' && c != L',' && c != L'\xA0' &&
                   !(i == 0 && (c == L'-' || c == L'+'))) {
            return false;
        }
    }
    return digit;
}

FlexGrid::FlexGrid(Scale scale, NumberTest reads_as_number)
    : scale_(scale),
      reads_as_number_(std::move(reads_as_number)),
      cells_(kFixedRows + 1, kFixedCols + 1),
      rows_(scale, kFixedRows + 1, kFixedRows, kDefaultRowHeight),
      cols_(scale, kFixedCols + 1, kFixedCols, kDefaultColWidth) {
    Layout();
}

void FlexGrid::CheckRow(std::int32_t row) const {
    if (row < 0 || row >= rows_.Count()) OutOfRange();
}

void FlexGrid::CheckCol(std::int32_t col) const {
    if (col < 0 || col >= cols_.Count()) OutOfRange();
}

void FlexGrid::CheckCell(std::int32_t row, std::int32_t col) const {
    CheckRow(row);
    CheckCol(col);
}

void FlexGrid::CheckSize(Twips size) {
    if (size < 0) OutOfRange();
}

// --- rows and columns ---

void FlexGrid::SetRows(std::int32_t rows) {
    if (rows < kFixedRows + 1) OutOfRange();
    if (rows == Rows()) return;
    const std::int32_t from = std::min(rows, Rows());
    cells_.SetRows(rows);
    rows_.SetCount(rows);
    TellMoved();
    Restructure(from);
}

void FlexGrid::SetCols(std::int32_t cols) {
    if (cols < kFixedCols + 1) OutOfRange();
    if (cols == Cols()) return;
    cells_.SetCols(cols);
    cols_.SetCount(cols);
    TellMoved();
    Restructure(-1);
}

void FlexGrid::AddItem(std::int32_t index, std::int32_t count) {
    if (index < kFixedRows || index > Rows() || count < 0 ||
        count > std::numeric_limits<std::int32_t>::max() - Rows()) {
        OutOfRange();
    }
    if (count == 0) return;
    cells_.InsertRows(index, count);
    rows_.Insert(index, count);
    TellMoved();
    Restructure(index);
}

void FlexGrid::RemoveItem(std::int32_t index, std::int32_t count) {
    if (index < kFixedRows || index >= Rows() || count < 0 || count > Rows() - index) OutOfRange();
    if (Rows() - count < kFixedRows + 1) RaiseRuntimeError(runtime_error::kCannotRemoveLastRow);
    if (count == 0) return;
    cells_.RemoveRows(index, count);
    rows_.Remove(index, count);
    TellMoved();
    Restructure(index);
}

void FlexGrid::MoveRows(std::int32_t first, std::int32_t count, std::int32_t to) {
    if (first < kFixedRows || to < kFixedRows || count < 0 || first > Rows() - count ||
        to > Rows() - count) {
        OutOfRange();
    }
    if (count == 0 || first == to) return;
    cells_.MoveRows(first, count, to, kFixedCols);
    rows_.Move(first, count, to);
    TellMoved();
    if (!rows_.Uniform()) {
        Restructure(std::min(first, to));
    } else {
        InvalidateCells(std::min(first, to), 0, std::max(first, to) + count - 1, Cols() - 1);
    }
}

void FlexGrid::TellMoved() {
    if (display_ != nullptr) display_->CellsMoved();
}

void FlexGrid::Restructure(std::int32_t row) {
    const Cursor before = cursor_;
    const std::int32_t top = rows_.First();
    const std::int32_t left = cols_.First();
    cursor_.row = std::min(cursor_.row, Rows() - 1);
    cursor_.row_sel = std::min(cursor_.row_sel, Rows() - 1);
    cursor_.col = std::min(cursor_.col, Cols() - 1);
    cursor_.col_sel = std::min(cursor_.col_sel, Cols() - 1);
    const PixelRect view = View();
    Layout();
    const bool scrolled = rows_.First() != top || cols_.First() != left;
    if (ShowsChanges()) {
        if (row < 0 || scrolled || !(view == View())) {
            display_->Invalidate(View());
        } else {
            const std::int64_t from =
                std::max(rows_.Place(row), row < kFixedRows ? 0 : rows_.FixedSpan());
            PixelRect below = View();
            if (from < below.bottom) {
                below.top = static_cast<int>(from);
                display_->Invalidate(below);
            }
            InvalidateSelection(before, cursor_);
        }
        display_->ScrollBarsChanged();
    }
    Raise(before.row != cursor_.row || before.col != cursor_.col,
          before.row_sel != cursor_.row_sel || before.col_sel != cursor_.col_sel, scrolled);
}

// --- current cell and selection ---

void FlexGrid::SetRow(std::int32_t row) {
    CheckRow(row);
    Apply({row, cursor_.col, row, cursor_.col}, TopRow(), LeftCol());
}

void FlexGrid::SetCol(std::int32_t col) {
    CheckCol(col);
    Apply({cursor_.row, col, cursor_.row, col}, TopRow(), LeftCol());
}

void FlexGrid::SetRowSel(std::int32_t row) {
    CheckRow(row);
    Apply({cursor_.row, cursor_.col, row, cursor_.col_sel}, TopRow(), LeftCol());
}

void FlexGrid::SetColSel(std::int32_t col) {
    CheckCol(col);
    Apply({cursor_.row, cursor_.col, cursor_.row_sel, col}, TopRow(), LeftCol());
}

void FlexGrid::Select(std::int32_t row, std::int32_t col, std::int32_t row_sel,
                      std::int32_t col_sel) {
    CheckCell(row, col);
    CheckCell(row_sel, col_sel);
    Apply({row, col, row_sel, col_sel}, TopRow(), LeftCol());
}

GridRange FlexGrid::Selection() const noexcept {
    const auto [first_row, last_row] = std::minmax({cursor_.row, cursor_.row_sel});
    const auto [first_col, last_col] = std::minmax({cursor_.col, cursor_.col_sel});
    return {first_row, last_row, first_col, last_col};
}

bool FlexGrid::Selected(std::int32_t row, std::int32_t col) const {
    if (row < kFixedRows || col < kFixedCols) return false;
    const GridRange selection = Selection();
    return row >= selection.first_row && row <= selection.last_row && col >= selection.first_col &&
           col <= selection.last_col;
}

void FlexGrid::Apply(const Cursor& cursor, std::int32_t top, std::int32_t left) {
    const Cursor before = cursor_;
    const std::int32_t old_top = TopRow();
    const std::int32_t old_left = LeftCol();
    const bool moved = cursor.row != before.row || cursor.col != before.col;
    const bool selected = cursor.row_sel != before.row_sel || cursor.col_sel != before.col_sel;
    const bool scrolled = top != old_top || left != old_left;
    if (!moved && !selected && !scrolled) return;
    cursor_ = cursor;
    rows_.SetFirst(top);
    cols_.SetFirst(left);
    if (ShowsChanges()) {
        if (scrolled) {
            ScrollPixels(old_top, old_left);
            display_->ScrollBarsChanged();
        }
        // the pixels have moved already, so both selections are where the geometry has them now
        if (moved || selected) InvalidateSelection(before, cursor_);
    }
    Raise(moved, selected, scrolled);
}

void FlexGrid::Raise(bool moved, bool selected, bool scrolled) {
    if (display_ != nullptr) {
        if (moved) display_->CurrentCellChanged();
        if (selected && !moved) display_->SelectionChanged();
    }
    if (events_ == nullptr) return;
    const std::weak_ptr<char> alive = alive_;
    if (moved) {
        events_->RowColChange();
    } else if (selected) {
        events_->SelChange();
    }
    if (scrolled && !alive.expired() && events_ != nullptr) events_->Scroll();
}

// --- cells ---

std::wstring_view FlexGrid::TextMatrix(std::int32_t row, std::int32_t col) const {
    CheckCell(row, col);
    return cells_.Text(row, col);
}

void FlexGrid::SetTextMatrix(std::int32_t row, std::int32_t col, std::wstring_view text) {
    CheckCell(row, col);
    if (!cells_.SetText(row, col, text)) return;
    if (display_ != nullptr) display_->CellChanged(row, col);
    InvalidateCell(row, col);
}

bool FlexGrid::CellBold(std::int32_t row, std::int32_t col) const {
    CheckCell(row, col);
    return cells_.Bold(row, col);
}

void FlexGrid::SetCellBold(std::int32_t row, std::int32_t col, bool bold) {
    CheckCell(row, col);
    if (cells_.SetBold(row, col, bold)) InvalidateCell(row, col);
}

CellAlignment FlexGrid::CellAlign(std::int32_t row, std::int32_t col) const {
    CheckCell(row, col);
    return cells_.Left(row, col) ? CellAlignment::kLeft : CellAlignment::kGeneral;
}

void FlexGrid::SetCellAlign(std::int32_t row, std::int32_t col, CellAlignment alignment) {
    CheckCell(row, col);
    if (cells_.SetLeft(row, col, alignment == CellAlignment::kLeft)) InvalidateCell(row, col);
}

bool FlexGrid::StandsRight(std::int32_t row, std::int32_t col) const {
    CheckCell(row, col);
    if (cells_.Left(row, col)) return false;
    const std::wstring_view text = cells_.Text(row, col);
    if (text.empty() || text.size() > kLongestNumber) return false;
    return reads_as_number_ && reads_as_number_(text);
}

// --- looks ---

Twips FlexGrid::ColWidth(std::int32_t col) const {
    CheckCol(col);
    return cols_.Size(col);
}

void FlexGrid::SetColWidth(std::int32_t col, Twips width) {
    CheckCol(col);
    CheckSize(width);
    if (cols_.Size(col) == width) return;
    cols_.SetSize(col, width);
    Restructure(-1);
}

Twips FlexGrid::RowHeight(std::int32_t row) const {
    CheckRow(row);
    return rows_.Size(row);
}

void FlexGrid::SetRowHeight(std::int32_t row, Twips height) {
    CheckRow(row);
    CheckSize(height);
    if (rows_.Size(row) == height) return;
    rows_.SetSize(row, height);
    Restructure(row);
}

void FlexGrid::SetDefaultRowHeight(Twips height) {
    CheckSize(height);
    if (rows_.DefaultSize() == height) return;
    rows_.SetDefaultSize(height);
    Restructure(-1);
}

void FlexGrid::SetScale(Scale scale) {
    if (scale.dpi() == scale_.dpi()) return;
    scale_ = scale;
    rows_.SetScale(scale);
    cols_.SetScale(scale);
    Restructure(-1);
}

void FlexGrid::SetRedraw(bool redraw) {
    if (redraw == redraw_) return;
    redraw_ = redraw;
    if (!ShowsChanges()) return;
    display_->ScrollBarsChanged();
    InvalidateAll();
    display_->RedrawIsOn();
}

void FlexGrid::SetFocusRect(FocusRectStyle style) {
    if (style == focus_rect_) return;
    focus_rect_ = style;
    InvalidateCell(cursor_.row, cursor_.col);
}

void FlexGrid::SetFocused(bool focused) {
    if (focused == focused_) return;
    focused_ = focused;
    InvalidateCell(cursor_.row, cursor_.col);
}

}  // namespace demovex
