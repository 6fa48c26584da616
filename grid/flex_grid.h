// FlexGrid, the flexible grid: text cells, a current cell and a selection, geometry, scrolling,
// keys and mouse. It shows cells and never edits. Portable: it holds no window; the control
// (flex_grid_control_win.h) forwards input to it, paints it with grid_painter.h and carries out
// what it reports through IFlexGridDisplay.
//
// Rows and columns are numbered from 0; row 0 and column 0 are fixed (header, line numbers). All
// lengths are twips unless said otherwise. A row or column number out of range raises 9 and changes
// nothing.
//
// Events are raised synchronously through IFlexGridEvents, after the change, and only for a real
// change. A handler may call back into the grid.
//
//   FlexGrid grid;                           // 96 dpi, a plain reading of numbers
//   grid.SetEvents(&handler);                // outlives the grid or resets it to null
//   grid.SetFrame({400, 300, 2, 17, 17});    // outer size, border and scroll bars, in pixels
//   grid.SetRows(2); grid.SetCols(10);
//   grid.SetTextMatrix(0, 1, L"ArtNr");
//   grid.SetRow(1); grid.SetCol(1);          // RowColChange, selection collapsed onto (1, 1)
//   grid.Key(GridKey::kDown, false, false);
//
// A new grid has 2 rows and 2 columns, the current cell (1, 1), columns of 960 twips and rows of
// 240 twips, in a frame of 640 x 400 pixels.
//
// Costs: reading or writing a cell O(text); AddItem and RemoveItem O(rows moved) with a constant of
// a few bytes per row; painting and geometry O(what is visible).
//
// Geometry. CellLeft, CellTop, RowPos and ColPos count from the outer top left corner of the grid,
// border included: a control that belongs to the grid's parent and is placed at the grid's left +
// CellLeft, top + CellTop with CellWidth and CellHeight covers the cell exactly. CellWidth and
// CellHeight leave out the line of one pixel that ends each cell on the right and below, so that
// the lines stay in view around an editor. Cell text begins kTextLeft from the cell's left edge
// and kTextTop from its upper edge (a text on the right ends kTextLeft before the line): a text
// box without border and margins at (45, 15) inside the cell shows the same text in the same
// place.
//
// At the edges:
// - AddItem and RemoveItem accept non-fixed rows only (9 otherwise); AddItem at Rows appends.
// - A negative size, count or Rows below 2 and Cols below 2 raise 9. No memory raises 7.
// - TopRow and LeftCol beyond the last useful scroll position are cut to it.
// - An unshifted key that finds the current cell at the edge still collapses the selection.
// - A key pressed while a fixed cell is current (by code) ends on a non-fixed one.
// - A text longer than any number that a person writes (kLongestNumber) stands left: whether it
//   reads as one is asked at every repaint, and would cost a second for millions of characters.
// - Keys move by visible columns and rows only.
// - When one operation changes the current cell and scrolls, both changes are complete before
//   RowColChange and then Scroll are raised. A handler may destroy the grid.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "base/geometry.h"
#include "grid/cell_store.h"
#include "grid/grid_axis.h"

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

// Rows and columns from the first to the last, both included.
struct GridRange {
    std::int32_t first_row = 0;
    std::int32_t last_row = 0;
    std::int32_t first_col = 0;
    std::int32_t last_col = 0;
    [[nodiscard]] std::int32_t Rows() const noexcept { return last_row - first_row + 1; }
};

// What a control must do after a change. Called before the grid's events; the first three never
// while Redraw is off. Must not call the grid's setters.
class IFlexGridDisplay {
  public:
    virtual ~IFlexGridDisplay() = default;
    virtual void Invalidate(const PixelRect& view_rect) = 0;
    // Moves the pixels of `area` by (dx, dy) and repaints the strip that becomes free.
    virtual void ScrollArea(const PixelRect& area, int dx, int dy) = 0;
    // Range, page, position or presence of the scroll bars changed.
    virtual void ScrollBarsChanged() = 0;
    virtual void CurrentCellChanged() = 0;
    virtual void SelectionChanged() = 0;
    // One cell has another text.
    virtual void CellChanged(std::int32_t row, std::int32_t col) = 0;
    // Rows or columns came, went or changed places.
    virtual void CellsMoved() = 0;
    // Redraw was switched on again.
    virtual void RedrawIsOn() = 0;
};

// Outer size of the grid, its border on each side, the width of the vertical scroll bar and the
// height of the horizontal one, in pixels.
struct GridFrame {
    int width = 0;
    int height = 0;
    int border = 0;
    int bar_width = 0;
    int bar_height = 0;
    friend bool operator==(const GridFrame&, const GridFrame&) = default;
};

// A scroll bar: the position runs from `min` to `max` - `page` + 1.
struct GridScrollBar {
    bool visible = false;
    std::int32_t min = 0;
    std::int32_t max = 0;
    std::int32_t page = 0;
    std::int32_t position = 0;
    friend bool operator==(const GridScrollBar&, const GridScrollBar&) = default;
};

enum class GridArea { kNothing, kCorner, kColumnHeader, kRowHeader, kCell };

struct GridHit {
    GridArea area = GridArea::kNothing;
    std::int32_t row = -1;
    std::int32_t col = -1;
    friend bool operator==(const GridHit&, const GridHit&) = default;
};

// Whether a text reads as a number in the user's locale (it then stands right).
using NumberTest = std::function<bool(std::wstring_view)>;

// Digits with sign, points and commas: a stand-in where no locale is at hand.
bool LooksLikeNumber(std::wstring_view text);

class FlexGrid final {
  public:
    static constexpr std::int32_t kFixedRows = 1;
    static constexpr std::int32_t kFixedCols = 1;
    static constexpr Twips kTextLeft = 45;
    static constexpr Twips kTextTop = 15;
    static constexpr std::size_t kLongestNumber = 1000;
    static constexpr Twips kDefaultRowHeight = 240;
    static constexpr Twips kDefaultColWidth = 960;

    explicit FlexGrid(Scale scale = Scale(96), NumberTest reads_as_number = LooksLikeNumber);
    FlexGrid(const FlexGrid&) = delete;
    FlexGrid& operator=(const FlexGrid&) = delete;

    // Observed, not owned; null for none.
    void SetEvents(IFlexGridEvents* events) { events_ = events; }
    void SetDisplay(IFlexGridDisplay* display) { display_ = display; }

    [[nodiscard]] std::int32_t Rows() const noexcept { return rows_.Count(); }
    [[nodiscard]] std::int32_t Cols() const noexcept { return cols_.Count(); }
    void SetRows(std::int32_t rows);  // at least kFixedRows + 1
    void SetCols(std::int32_t cols);

    // Current cell (the anchor of the selection) and the selection's other corner.
    [[nodiscard]] std::int32_t Row() const noexcept { return cursor_.row; }
    [[nodiscard]] std::int32_t Col() const noexcept { return cursor_.col; }
    [[nodiscard]] std::int32_t RowSel() const noexcept { return cursor_.row_sel; }
    [[nodiscard]] std::int32_t ColSel() const noexcept { return cursor_.col_sel; }
    // Make (row, Col) or (Row, col) current and collapse the selection onto it.
    void SetRow(std::int32_t row);
    void SetCol(std::int32_t col);
    [[nodiscard]] GridRange Selection() const noexcept;
    // Extend the selection only.
    void SetRowSel(std::int32_t row);
    void SetColSel(std::int32_t col);

    [[nodiscard]] std::int32_t TopRow() const noexcept { return rows_.First(); }
    [[nodiscard]] std::int32_t LeftCol() const noexcept { return cols_.First(); }
    void SetTopRow(std::int32_t row);
    void SetLeftCol(std::int32_t col);

    // Cell text. The view is valid until the next change of any cell.
    std::wstring_view TextMatrix(std::int32_t row, std::int32_t col) const;
    void SetTextMatrix(std::int32_t row, std::int32_t col, std::wstring_view text);

    bool CellBold(std::int32_t row, std::int32_t col) const;
    void SetCellBold(std::int32_t row, std::int32_t col, bool bold);
    CellAlignment CellAlign(std::int32_t row, std::int32_t col) const;
    void SetCellAlign(std::int32_t row, std::int32_t col, CellAlignment alignment);

    // Pushes the rows from `index` down and leaves `count` empty rows there.
    void AddItem(std::int32_t index, std::int32_t count = 1);
    // Removes `count` rows from `index` on and pulls the rest up; raises 30016 when no non-fixed
    // row would be left (and removes none).
    void RemoveItem(std::int32_t index, std::int32_t count = 1);
    // Moves the `count` rows at `first` so that the first of them becomes row `to`; column 0 texts
    // stay where they are. Nothing else changes.
    void MoveRows(std::int32_t first, std::int32_t count, std::int32_t to);

    Twips ColWidth(std::int32_t col) const;
    void SetColWidth(std::int32_t col, Twips width);  // 0 hides the column
    Twips RowHeight(std::int32_t row) const;
    void SetRowHeight(std::int32_t row, Twips height);

    [[nodiscard]] bool Redraw() const noexcept { return redraw_; }
    void SetRedraw(bool redraw);
    [[nodiscard]] FocusRectStyle FocusRect() const noexcept { return focus_rect_; }
    void SetFocusRect(FocusRectStyle style);

    // The current cell, and where a row or column begins (scroll position counted in).
    Twips CellLeft() const { return ColPos(Col()); }
    Twips CellTop() const { return RowPos(Row()); }
    Twips CellWidth() const;
    Twips CellHeight() const;
    Twips RowPos(std::int32_t row) const;
    Twips ColPos(std::int32_t col) const;

    // Outer size of the grid.
    Twips Width() const { return scale_.ToTwips(frame_.width); }
    Twips Height() const { return scale_.ToTwips(frame_.height); }

    // Frame and looks.
    void SetFrame(const GridFrame& frame);
    const GridFrame& Frame() const { return frame_; }
    void SetDefaultRowHeight(Twips height);
    // Another screen, another size of its pixels; sizes in twips stay.
    void SetScale(Scale scale);
    // Whether the grid has the keyboard focus: the focus rectangle is only shown then.
    void SetFocused(bool focused);
    bool Focused() const { return focused_; }
    const Scale& PixelScale() const { return scale_; }

    // The view: everything inside border and scroll bars, in pixels from its top left corner.
    PixelRect View() const { return {0, 0, cols_.View(), rows_.View()}; }
    GridScrollBar VerticalBar() const;
    GridScrollBar HorizontalBar() const;
    // A cell in the view, its lines on the right and below included; empty when out of view. A
    // cell that is cut off by the edge of the view is not cut here.
    PixelRect CellRect(std::int32_t row, std::int32_t col) const;
    GridHit HitTest(int x, int y) const;
    bool Selected(std::int32_t row, std::int32_t col) const;  // false for fixed cells
    // True when the cell's text stands right.
    bool StandsRight(std::int32_t row, std::int32_t col) const;
    const GridAxis& RowAxis() const { return rows_; }
    const GridAxis& ColAxis() const { return cols_; }

    // Input, in pixels of the view. Only the first button counts; others are not forwarded.
    void Key(GridKey key, bool shift, bool ctrl);
    void Press(int x, int y, bool shift);
    void Drag(int x, int y);  // after Press; places outside the view are meant
    void Release();
    bool Dragging() const { return drag_.area != GridArea::kNothing; }
    // True while a drag is beyond the edge of the scrolled cells: call AutoScroll periodically.
    bool WantsAutoScroll() const;
    void AutoScroll();  // one row or column towards the pointer
    // Scrolls by visible rows or columns (wheel, scroll bar arrows); negative is up or left.
    void ScrollRows(std::int32_t steps);
    void ScrollCols(std::int32_t steps);
    void PageRows(int direction);
    void PageCols(int direction);

    // Makes (row, col) current and selects from it to (row_sel, col_sel) in one change; 9 for a
    // number out of range. For the row and column selection and for assistive programs.
    void Select(std::int32_t row, std::int32_t col, std::int32_t row_sel, std::int32_t col_sel);
    // Scrolls as little as it takes to have the cell wholly in view.
    void Show(std::int32_t row, std::int32_t col);

  private:
    struct Cursor {
        std::int32_t row = kFixedRows;
        std::int32_t col = kFixedCols;
        std::int32_t row_sel = kFixedRows;
        std::int32_t col_sel = kFixedCols;
        friend bool operator==(const Cursor&, const Cursor&) = default;
    };
    struct DragState {
        GridArea area = GridArea::kNothing;  // what the press hit; kNothing: no drag
        bool moved = false;                  // the pointer has left the place of the press
        int press_x = 0, press_y = 0;
        int x = 0, y = 0;
    };

    void CheckRow(std::int32_t row) const;
    void CheckCol(std::int32_t col) const;
    void CheckCell(std::int32_t row, std::int32_t col) const;
    static void CheckSize(Twips size);

    // Changes cursor and scroll position together, repaints and raises what changed.
    void Apply(const Cursor& cursor, std::int32_t top, std::int32_t left);
    void ScrollTo(std::int32_t top, std::int32_t left);
    void ApplyShown(const Cursor& cursor, std::int32_t row, std::int32_t col);
    // After rows, columns or sizes changed: scroll bars, cursor and scroll position cut to what
    // exists; everything from `row` on or, when negative, the whole view repainted; events.
    void Restructure(std::int32_t row);
    void Layout();
    void TellMoved();
    void Raise(bool moved, bool selected, bool scrolled);
    bool ShowsChanges() const { return display_ != nullptr && redraw_; }
    void InvalidateAll();
    void InvalidateCell(std::int32_t row, std::int32_t col);
    void InvalidateCells(std::int32_t row1, std::int32_t col1, std::int32_t row2,
                         std::int32_t col2);
    void InvalidateSelection(const Cursor& before, const Cursor& after);
    void ScrollPixels(std::int32_t old_top, std::int32_t old_left);
    Cursor DragCursor(std::int32_t row, std::int32_t col) const;
    Twips ToTwips(std::int64_t pixels) const;
    std::int32_t FirstVisibleCol() const;
    std::int32_t LastVisibleCol() const;
    std::int32_t FirstVisibleRow() const;
    std::int32_t LastVisibleRow() const;

    Scale scale_;
    NumberTest reads_as_number_;
    IFlexGridEvents* events_ = nullptr;
    IFlexGridDisplay* display_ = nullptr;
    CellStore cells_;
    GridAxis rows_;
    GridAxis cols_;
    Cursor cursor_;
    GridFrame frame_{640, 400, 2, 17, 17};
    DragState drag_;
    bool bar_v_ = false;
    bool bar_h_ = false;
    bool redraw_ = true;
    bool focused_ = false;
    FocusRectStyle focus_rect_ = FocusRectStyle::kLight;
    std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace demovex
