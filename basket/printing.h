// Prints the basket on the default printer: a framed table in the grid's proportions with title,
// page footers and the totals in bold at the end.
//
// All layout is done here, in twips, on an IPrintJob; the printer's own resolution is the job's
// business. Each page: the title "Warenkorb", the header line, the lines of the page, and "Seite p
// von n" at the foot. Columns of width 0 take no room; the others share 90 % of the printable
// width, beginning at 6 %.
//
//   Printing printing(context, [&] { editor.CloseEditor(); }, [&] { return state.Caption; });
//   printing.mnuDateiDrucken_Click();
//
// Cost: a few measured and printed texts per cell; nothing is kept between jobs.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "basket/state.h"
#include "grid/flex_grid.h"
#include "platform/message_box.h"
#include "platform/printer.h"

namespace demovex {

// Where things stand on every page of one job; twips from the top left of the printable area.
struct PrintLayout {
    std::int32_t page_width = 0;
    std::int32_t page_height = 0;
    std::int32_t line_height = 0;
    std::int32_t per_page = 0;  // lines per page; 0 or less on a page that is too low
    std::int32_t pages = 0;
    // x[c] is the left edge of column c; one more entry than columns, the table's right edge
    std::vector<std::int32_t> x;
    std::int32_t width(std::int32_t col) const {
        const auto c = static_cast<std::size_t>(col);
        return x[c + 1] - x[c];
    }
};

// Computes the layout for `grid` on a page of the given size, `text_height` being the height of a
// line of the body font. Raises 11 when no column has a width or exactly no line fits on a page,
// and 6 when a position does not fit into 32 bits.
PrintLayout LayOutPages(const FlexGrid& grid, std::int32_t page_width, std::int32_t page_height,
                        std::int32_t text_height);

// The longest leading part of `text` that is at most `width` twips wide in the job's current font;
// a surrogate pair is kept or cut as one. Costs one measurement when the text fits, else about the
// logarithm of its length.
std::wstring_view FitText(IPrintJob& job, std::wstring_view text, std::int32_t width);

class Printing {
  public:
    // What printing asks of the window; all are called on the window's thread.
    struct Window {
        std::function<void()> CommitCellEdit;
        std::function<std::wstring()> Caption;
        std::function<std::wstring()> StatusText;
        std::function<void(std::wstring_view)> SetStatusText;
        std::function<void()> KeepPainted;
    };

    // The references outlive this object.
    Printing(const FlexGrid& liste, IPrinter& printer, IMessageBox& messages, Window window);
    Printing(BasketContext& context, std::function<void()> commit_cell_edit,
             std::function<std::wstring()> caption);

    // Commits the cell being edited and prints. A failure to print is shown in a message box and
    // not raised; what the commit raises is. The basket is not changed. Does nothing while a job of
    // this window is under way (a printer's own dialog may let the user get here).
    void mnuDateiDrucken_Click();

  private:
    void Print();
    void PrintPage(IPrintJob& job, const PrintLayout& layout, std::int32_t page);
    void PrintRow(IPrintJob& job, const PrintLayout& layout, std::int32_t row, std::int32_t y);
    void ShowFailure(std::wstring_view description);

    const FlexGrid& liste_;
    IPrinter& printer_;
    IMessageBox& messages_;
    Window window_;
    bool printing_ = false;
};

}  // namespace demovex
