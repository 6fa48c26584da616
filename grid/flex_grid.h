// The flexible grid: text cells, a current cell and a selection, geometry, keys and mouse. It shows
// cells and never edits. Portable: the control (flex_grid_control_win) forwards input to it, asks
// it to paint onto a Surface, and repaints what it reports as changed.
//
// Rows and columns are numbered from 0; row 0 and column 0 are fixed (header, line numbers). All
// lengths are twips. A row or column number out of range raises 9 and changes nothing.
//
// Events are raised synchronously through IFlexGridEvents, after the change, and only for a real
// change. A handler may call back into the grid.
//
//   FlexGrid grid;
//   grid.SetRows(2); grid.SetCols(10);
//   grid.SetTextMatrix(0, 1, L"ArtNr");
//   grid.SetRow(1); grid.SetCol(1);      // RowColChange, selection collapsed onto (1, 1)
//
// Costs: reading or writing a cell O(text); AddItem and RemoveItem O(rows moved) with a constant of
// a few bytes per row; painting and geometry O(what is visible).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "grid/geometry.h"

namespace demovex {

// Keys that the grid understands; Shift extends the selection, Ctrl goes to the ends.
enum class GridKey { kLeft, kRight, kUp, kDown, kPageUp, kPageDown, kHome, kEnd };

enum class CellAlignment {
    kLeft = 0,     // left, vertically centred
    kGeneral = 9,  // a text that reads as a number right, any other left
};

enum class FocusRectStyle { kNone = 0, kLight = 1 };

class IFlexGridEvents {
  public:
    virtual ~IFlexGridEvents() = default;
    virtual void RowColChange() = 0;  // the current cell has changed
    virtual void SelChange() = 0;     // the selection has changed, the current cell has not
    virtual void Scroll() = 0;        // TopRow or LeftCol has changed
};

// What the rest of the component calls. The grid room adds painting, hit testing and input to the
// implementing class FlexGrid (grid/flex_grid_impl.h is free to change; this interface is not).
class IFlexGrid {
  public:
    virtual ~IFlexGrid() = default;

    virtual std::int32_t Rows() const = 0;
    virtual std::int32_t Cols() const = 0;
    virtual void SetRows(std::int32_t rows) = 0;  // at least FixedRows + 1
    virtual void SetCols(std::int32_t cols) = 0;

    // Current cell (the anchor of the selection) and the selection's other corner.
    virtual std::int32_t Row() const = 0;
    virtual std::int32_t Col() const = 0;
    virtual std::int32_t RowSel() const = 0;
    virtual std::int32_t ColSel() const = 0;
    // Make (row, Col) or (Row, col) current and collapse the selection onto it.
    virtual void SetRow(std::int32_t row) = 0;
    virtual void SetCol(std::int32_t col) = 0;
    // Extend the selection only.
    virtual void SetRowSel(std::int32_t row) = 0;
    virtual void SetColSel(std::int32_t col) = 0;

    virtual std::int32_t TopRow() const = 0;
    virtual std::int32_t LeftCol() const = 0;
    virtual void SetTopRow(std::int32_t row) = 0;
    virtual void SetLeftCol(std::int32_t col) = 0;

    // Cell text. The view is valid until the next change of any cell.
    virtual std::wstring_view TextMatrix(std::int32_t row, std::int32_t col) const = 0;
    virtual void SetTextMatrix(std::int32_t row, std::int32_t col, std::wstring_view text) = 0;

    virtual bool CellBold(std::int32_t row, std::int32_t col) const = 0;
    virtual void SetCellBold(std::int32_t row, std::int32_t col, bool bold) = 0;
    virtual CellAlignment CellAlign(std::int32_t row, std::int32_t col) const = 0;
    virtual void SetCellAlign(std::int32_t row, std::int32_t col, CellAlignment alignment) = 0;

    // Pushes the rows from `index` down and leaves an empty row there; `count` rows at once.
    virtual void AddItem(std::int32_t index, std::int32_t count = 1) = 0;
    // Removes `count` rows from `index` on and pulls the rest up; raises 30016 when no non-fixed
    // row would be left (and removes none).
    virtual void RemoveItem(std::int32_t index, std::int32_t count = 1) = 0;
    // Moves the `count` rows at `first` so that the first of them becomes row `to`; column 0 texts
    // stay where they are. Nothing else changes.
    virtual void MoveRows(std::int32_t first, std::int32_t count, std::int32_t to) = 0;

    virtual Twips ColWidth(std::int32_t col) const = 0;
    virtual void SetColWidth(std::int32_t col, Twips width) = 0;  // 0 hides the column
    virtual Twips RowHeight(std::int32_t row) const = 0;
    virtual void SetRowHeight(std::int32_t row, Twips height) = 0;

    virtual bool Redraw() const = 0;
    virtual void SetRedraw(bool redraw) = 0;
    virtual FocusRectStyle FocusRect() const = 0;
    virtual void SetFocusRect(FocusRectStyle style) = 0;

    // The current cell relative to the grid's top left corner, and where a row or column begins
    // (scroll position counted in).
    virtual Twips CellLeft() const = 0;
    virtual Twips CellTop() const = 0;
    virtual Twips CellWidth() const = 0;
    virtual Twips CellHeight() const = 0;
    virtual Twips RowPos(std::int32_t row) const = 0;
    virtual Twips ColPos(std::int32_t col) const = 0;

    // Outer size of the grid.
    virtual Twips Width() const = 0;
    virtual Twips Height() const = 0;
};

}  // namespace demovex
