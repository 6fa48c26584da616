// FlexGrid: where cells lie, scroll bars, scrolling, and what has to be repainted.
#include <algorithm>
#include <cstdlib>
#include <limits>

#include "base/error.h"
#include "grid/flex_grid.h"

namespace demovex {

namespace {

// Far enough outside any screen, and safe to add up.
constexpr std::int64_t kFar = 1 << 28;

int ToInt(std::int64_t pixels) {
    return static_cast<int>(std::clamp(pixels, -kFar, kFar));
}

}  // namespace

Twips FlexGrid::ToTwips(std::int64_t pixels) const {
    // places far beyond the view stop at the ends of 32 bits
    const std::int64_t limit =
        std::int64_t{std::numeric_limits<std::int32_t>::max()} * scale_.dpi() / kTwipsPerInch - 1;
    return scale_.ToTwips(static_cast<int>(std::clamp(pixels, -limit, limit)));
}

Twips FlexGrid::RowPos(std::int32_t row) const {
    CheckRow(row);
    return ToTwips(frame_.border + rows_.Place(row));
}

Twips FlexGrid::ColPos(std::int32_t col) const {
    CheckCol(col);
    return ToTwips(frame_.border + cols_.Place(col));
}

Twips FlexGrid::CellWidth() const {
    return scale_.ToTwips(std::max(0, cols_.Pixels(cursor_.col) - 1));
}

Twips FlexGrid::CellHeight() const {
    return scale_.ToTwips(std::max(0, rows_.Pixels(cursor_.row) - 1));
}

void FlexGrid::SetFrame(const GridFrame& frame) {
    frame_ = frame;
    Restructure(-1);
}

void FlexGrid::Layout() {
    const int width = frame_.width - 2 * frame_.border;
    const int height = frame_.height - 2 * frame_.border;
    bar_v_ = bar_h_ = false;
    // a bar takes room and may make the other one necessary
    for (int round = 0; round < 2; ++round) {
        bar_h_ = cols_.Total() > width - (bar_v_ ? frame_.bar_width : 0);
        bar_v_ = rows_.Total() > height - (bar_h_ ? frame_.bar_height : 0);
    }
    cols_.SetView(width - (bar_v_ ? frame_.bar_width : 0));
    rows_.SetView(height - (bar_h_ ? frame_.bar_height : 0));
    // unscrolled is always possible; the farthest place to scroll to takes some counting
    if (rows_.First() > kFixedRows) rows_.SetFirst(std::min(rows_.First(), rows_.MaxFirst()));
    if (cols_.First() > kFixedCols) cols_.SetFirst(std::min(cols_.First(), cols_.MaxFirst()));
}

GridScrollBar FlexGrid::VerticalBar() const {
    return {bar_v_, kFixedRows, Rows() - 1, Rows() - rows_.MaxFirst(), TopRow()};
}

GridScrollBar FlexGrid::HorizontalBar() const {
    return {bar_h_, kFixedCols, Cols() - 1, Cols() - cols_.MaxFirst(), LeftCol()};
}

PixelRect FlexGrid::CellRect(std::int32_t row, std::int32_t col) const {
    CheckCell(row, col);
    if ((row >= kFixedRows && row < TopRow()) || (col >= kFixedCols && col < LeftCol())) return {};
    PixelRect rect;
    rect.left = ToInt(cols_.Place(col));
    rect.top = ToInt(rows_.Place(row));
    rect.right = rect.left + cols_.Pixels(col);
    rect.bottom = rect.top + rows_.Pixels(row);
    if (rect.left >= cols_.View() || rect.top >= rows_.View() || rect.empty()) return {};
    return rect;
}

GridHit FlexGrid::HitTest(int x, int y) const {
    const std::int32_t row = rows_.LineAt(y);
    const std::int32_t col = cols_.LineAt(x);
    if (row < 0 || col < 0) return {};
    if (row < kFixedRows) {
        return {col < kFixedCols ? GridArea::kCorner : GridArea::kColumnHeader, row, col};
    }
    return {col < kFixedCols ? GridArea::kRowHeader : GridArea::kCell, row, col};
}

// --- scrolling ---

void FlexGrid::SetTopRow(std::int32_t row) {
    if (row < kFixedRows || row >= Rows()) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    ScrollTo(row, LeftCol());
}

void FlexGrid::SetLeftCol(std::int32_t col) {
    if (col < kFixedCols || col >= Cols()) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    ScrollTo(TopRow(), col);
}

void FlexGrid::ScrollTo(std::int32_t top, std::int32_t left) {
    Apply(cursor_, std::min(top, rows_.MaxFirst()), std::min(left, cols_.MaxFirst()));
}

void FlexGrid::Show(std::int32_t row, std::int32_t col) {
    CheckCell(row, col);
    ScrollTo(rows_.FirstToShow(row), cols_.FirstToShow(col));
}

void FlexGrid::ScrollRows(std::int32_t steps) {
    ScrollTo(rows_.Step(TopRow(), steps), LeftCol());
}

void FlexGrid::ScrollCols(std::int32_t steps) {
    ScrollTo(TopRow(), cols_.Step(LeftCol(), steps));
}

void FlexGrid::PageRows(int direction) {
    ScrollRows(direction * rows_.Page());
}

void FlexGrid::PageCols(int direction) {
    ScrollCols(direction * cols_.Page());
}

void FlexGrid::ScrollPixels(std::int32_t old_top, std::int32_t old_left) {
    const std::int64_t dy =
        old_top < TopRow() ? -rows_.Span(old_top, TopRow()) : rows_.Span(TopRow(), old_top);
    const std::int64_t dx =
        old_left < LeftCol() ? -cols_.Span(old_left, LeftCol()) : cols_.Span(LeftCol(), old_left);
    PixelRect area = View();
    // the header moves with the columns, the line numbers with the rows
    if (dy != 0) area.top = ToInt(std::min<std::int64_t>(rows_.FixedSpan(), area.bottom));
    if (dx != 0) area.left = ToInt(std::min<std::int64_t>(cols_.FixedSpan(), area.right));
    if (area.empty()) return;
    if (dx != 0 && dy != 0) {
        InvalidateAll();
    } else if (std::llabs(dy) >= area.height() || std::llabs(dx) >= area.width()) {
        display_->Invalidate(area);
    } else if (dx != 0 || dy != 0) {
        display_->ScrollArea(area, static_cast<int>(dx), static_cast<int>(dy));
    }
}

// --- what has to be repainted ---

void FlexGrid::InvalidateAll() {
    if (ShowsChanges()) display_->Invalidate(View());
}

void FlexGrid::InvalidateCell(std::int32_t row, std::int32_t col) {
    if (!ShowsChanges()) return;
    const PixelRect rect = CellRect(row, col);
    if (!rect.empty()) display_->Invalidate(rect);
}

void FlexGrid::InvalidateCells(std::int32_t row1, std::int32_t col1, std::int32_t row2,
                               std::int32_t col2) {
    if (!ShowsChanges()) return;
    // from where a line begins, but never over the fixed ones unless it is one of them
    const auto begin = [](const GridAxis& axis, std::int32_t line) {
        const std::int64_t place = axis.Place(line);
        return ToInt(line < axis.Fixed() ? place : std::max(place, axis.FixedSpan()));
    };
    const auto end = [](const GridAxis& axis, std::int32_t line) {
        return ToInt(std::min<std::int64_t>(axis.Place(line) + axis.Pixels(line), axis.View()));
    };
    const PixelRect rect{begin(cols_, col1), begin(rows_, row1), end(cols_, col2),
                         end(rows_, row2)};
    if (!rect.empty()) display_->Invalidate(rect);
}

void FlexGrid::InvalidateSelection(const Cursor& before, const Cursor& after) {
    if (before == after) return;
    const auto whole = [this](const Cursor& c) {
        const std::int32_t last_row = Rows() - 1;
        const std::int32_t last_col = Cols() - 1;
        InvalidateCells(std::min({c.row, c.row_sel, last_row}),
                        std::min({c.col, c.col_sel, last_col}),
                        std::min(std::max(c.row, c.row_sel), last_row),
                        std::min(std::max(c.col, c.col_sel), last_col));
    };
    const bool same_anchor = before.row == after.row && before.col == after.col;
    if (same_anchor && before.col_sel == after.col_sel && before.row_sel < Rows()) {
        // only rows between the two corners change
        const auto [row1, row2] = std::minmax({before.row_sel, after.row_sel});
        const auto [col1, col2] = std::minmax({after.col, after.col_sel});
        InvalidateCells(row1, col1, row2, col2);
        return;
    }
    whole(before);
    whole(after);
}

}  // namespace demovex
