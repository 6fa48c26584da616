// FlexGrid: keys, mouse and the drag that extends a selection.
#include <algorithm>
#include <cstdlib>

#include "grid/flex_grid.h"

namespace demovex {

namespace {

// A press that scrolls its cell into view must not extend the selection by the hand's tremble.
constexpr int kTremble = 3;

}  // namespace

std::int32_t FlexGrid::FirstVisibleCol() const {
    const std::int32_t col = cols_.Step(kFixedCols - 1, 1);
    return std::max(col, kFixedCols);
}

std::int32_t FlexGrid::LastVisibleCol() const {
    const std::int32_t col = cols_.Step(Cols(), -1);
    return col == Cols() ? kFixedCols : col;
}

std::int32_t FlexGrid::FirstVisibleRow() const {
    const std::int32_t row = rows_.Step(kFixedRows - 1, 1);
    return std::max(row, kFixedRows);
}

std::int32_t FlexGrid::LastVisibleRow() const {
    const std::int32_t row = rows_.Step(Rows(), -1);
    return row == Rows() ? kFixedRows : row;
}

void FlexGrid::ApplyShown(const Cursor& cursor, std::int32_t row, std::int32_t col) {
    Apply(cursor, rows_.FirstToShow(row), cols_.FirstToShow(col));
}

void FlexGrid::Key(GridKey key, bool shift, bool ctrl) {
    std::int32_t row = shift ? cursor_.row_sel : cursor_.row;
    std::int32_t col = shift ? cursor_.col_sel : cursor_.col;
    std::int32_t top = TopRow();
    switch (key) {
        case GridKey::kLeft:
            col = cols_.Step(col, -1);
            break;
        case GridKey::kRight:
            col = cols_.Step(col, 1);
            break;
        case GridKey::kUp:
            row = rows_.Step(row, -1);
            break;
        case GridKey::kDown:
            row = rows_.Step(row, 1);
            break;
        case GridKey::kPageUp:
        case GridKey::kPageDown: {
            // the page turns with the cell, so that the cell keeps its place in the view
            const std::int32_t page = key == GridKey::kPageUp ? -rows_.Page() : rows_.Page();
            row = rows_.Step(row, page);
            top = std::min(rows_.Step(top, page), rows_.MaxFirst());
            break;
        }
        case GridKey::kHome:
            col = FirstVisibleCol();
            if (ctrl) row = FirstVisibleRow();
            break;
        case GridKey::kEnd:
            col = LastVisibleCol();
            if (ctrl) row = LastVisibleRow();
            break;
    }
    row = std::max(row, kFixedRows);
    col = std::max(col, kFixedCols);
    const Cursor next =
        shift ? Cursor{cursor_.row, cursor_.col, row, col} : Cursor{row, col, row, col};
    if (top != TopRow()) {
        // the new page, then as little more as it takes to have the cell wholly in view
        GridAxis turned = rows_;
        turned.SetFirst(top);
        top = turned.FirstToShow(row);
    } else {
        top = rows_.FirstToShow(row);
    }
    Apply(next, top, cols_.FirstToShow(col));
}

void FlexGrid::Press(int x, int y, bool shift) {
    const GridHit hit = HitTest(x, y);
    drag_ = {hit.area, false, x, y, x, y};
    Cursor next = cursor_;
    switch (hit.area) {
        case GridArea::kNothing:
            return;
        case GridArea::kCorner:
            next = {FirstVisibleRow(), FirstVisibleCol(), Rows() - 1, Cols() - 1};
            ApplyShown(next, next.row, next.col);
            return;
        case GridArea::kColumnHeader:
            if (!shift) next.col = hit.col;
            if (!shift) next.row = FirstVisibleRow();
            next.row_sel = Rows() - 1;
            next.col_sel = hit.col;
            ApplyShown(next, shift ? TopRow() : next.row, hit.col);
            return;
        case GridArea::kRowHeader:
            if (!shift) next.row = hit.row;
            if (!shift) next.col = FirstVisibleCol();
            next.row_sel = hit.row;
            next.col_sel = Cols() - 1;
            ApplyShown(next, hit.row, shift ? LeftCol() : next.col);
            return;
        case GridArea::kCell:
            next.row_sel = hit.row;
            next.col_sel = hit.col;
            if (!shift) {
                next.row = hit.row;
                next.col = hit.col;
            }
            ApplyShown(next, hit.row, hit.col);
            return;
    }
}

FlexGrid::Cursor FlexGrid::DragCursor(std::int32_t row, std::int32_t col) const {
    Cursor next = cursor_;
    if (drag_.area != GridArea::kColumnHeader) next.row_sel = row;
    if (drag_.area != GridArea::kRowHeader) next.col_sel = col;
    return next;
}

void FlexGrid::Drag(int x, int y) {
    if (!Dragging()) return;
    drag_.x = x;
    drag_.y = y;
    if (!drag_.moved) {
        if (std::abs(x - drag_.press_x) <= kTremble && std::abs(y - drag_.press_y) <= kTremble) {
            return;
        }
        drag_.moved = true;
    }
    if (drag_.area == GridArea::kCorner) return;
    // the nearest cell in view
    const auto nearest = [](const GridAxis& axis, int place) {
        if (place < axis.FixedSpan()) return axis.First();
        const std::int32_t line = axis.LineAt(place);
        return line < 0 ? axis.LastInView() : std::max(line, axis.First());
    };
    Apply(DragCursor(nearest(rows_, y), nearest(cols_, x)), TopRow(), LeftCol());
}

void FlexGrid::Release() {
    drag_ = {};
}

bool FlexGrid::WantsAutoScroll() const {
    if (!drag_.moved || drag_.area == GridArea::kCorner) return false;
    const bool up = drag_.y < rows_.FixedSpan() && TopRow() > kFixedRows;
    const bool down = drag_.y >= rows_.View() && TopRow() < rows_.MaxFirst();
    const bool left = drag_.x < cols_.FixedSpan() && LeftCol() > kFixedCols;
    const bool right = drag_.x >= cols_.View() && LeftCol() < cols_.MaxFirst();
    return (drag_.area != GridArea::kColumnHeader && (up || down)) ||
           (drag_.area != GridArea::kRowHeader && (left || right));
}

void FlexGrid::AutoScroll() {
    if (!WantsAutoScroll()) return;
    const auto step = [](const GridAxis& axis, int place, std::int32_t corner) {
        // the corner goes one line beyond what is in view on that side
        if (place < axis.FixedSpan()) return axis.Step(axis.First(), -1);
        if (place >= axis.View()) return axis.Step(axis.First() - 1, axis.Page() + 1);
        return corner;
    };
    std::int32_t row = cursor_.row_sel;
    std::int32_t col = cursor_.col_sel;
    if (drag_.area != GridArea::kColumnHeader) row = step(rows_, drag_.y, row);
    if (drag_.area != GridArea::kRowHeader) col = step(cols_, drag_.x, col);
    const Cursor next = DragCursor(row, col);
    Apply(next, drag_.area == GridArea::kColumnHeader ? TopRow() : rows_.FirstToShow(row),
          drag_.area == GridArea::kRowHeader ? LeftCol() : cols_.FirstToShow(col));
}

}  // namespace demovex
