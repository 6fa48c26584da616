#include "basket/row_commands.h"

#include <algorithm>

#include "basket/cell_view.h"
#include "basket/columns.h"
#include "basket/scopes.h"

namespace demovex {

RowCommands::RowCommands(BasketContext& context, BasketRows& rows)
    : context_(context), grid_(context.Liste), state_(context.state), rows_(rows) {}

RowCommands::Selection RowCommands::SelectedRows() const {
    return {std::min(grid_.Row(), grid_.RowSel()), std::max(grid_.Row(), grid_.RowSel())};
}

void RowCommands::AppendEmptyRow() {
    rows_.AppendEmptyRow();
    BringCellIntoView(context_, grid_.Row(), grid_.Col());
}

void RowCommands::mnuEditNeueZeile_Click() {
    rows_.CloseEditor();
    AppendEmptyRow();
    rows_.Liste_RowColChange();
}

void RowCommands::mnuEditZeileOberhalbEinfügen_Click() {
    rows_.CloseEditor();
    rows_.RestoreTotalsRow();
    state_.Modified = true;
    if (grid_.Row() == 0) {
        AppendEmptyRow();
    } else {
        rows_.InsertArtikel(grid_.Row(), SelectedRows().Count());
        BringCellIntoView(context_, grid_.Row(), grid_.Col());
    }
    rows_.Liste_RowColChange();
}

void RowCommands::mnuEditZeilenLöschen_Click() {
    rows_.CloseEditor();
    rows_.RestoreTotalsRow();
    state_.Modified = true;
    const std::int32_t anchor = grid_.Row();
    if (anchor == 0) {
        context_.services.sound.Beep();
        rows_.Liste_RowColChange();
        return;
    }
    const std::int32_t removed =
        std::min(SelectedRows().Count(), grid_.Rows() - 1 - anchor);  // up to the totals row
    if (removed > 0) rows_.RemoveRows(anchor, removed);
    // What was selected is gone; what moved up into its place is not selected with it.
    grid_.SetRow(grid_.Row());
    rows_.Renumber(grid_.Row());
    // The lines that are left keep their totals, so only the sums are made anew.
    rows_.RecalculateWithNote(grid_.Rows() - 1);
    if (grid_.Rows() == 2) grid_.SetCol(column::kBezeichnung);
    BringRowIntoView(context_, grid_.Row());
    rows_.Liste_RowColChange();
}

bool RowCommands::CanMove(std::int32_t step) const {
    const auto [first, last] = SelectedRows();
    // Row 0 is the header, Rows − 1 the totals row; neither is part of the block nor jumped over.
    if (step < 0) return first >= 2 && last < grid_.Rows() - 1;
    return first >= 1 && last < grid_.Rows() - 2;
}

void RowCommands::MoveSelection(std::int32_t step) {
    rows_.RestoreTotalsRow();
    state_.Modified = true;
    if (!CanMove(step)) return;
    const std::int32_t row = grid_.Row();
    const std::int32_t col = grid_.Col();
    const std::int32_t row_span = grid_.RowSel() - row;
    const std::int32_t col_span = grid_.ColSel() - col;
    {
        SuppressEditorScope suppress(state_);
        rows_.CloseEditor();
        suppress.Set();  // a number committed just now has cleared it
        const RedrawOffScope redraw_off(grid_);
        const std::int32_t first = std::min(row, row + row_span);
        const std::int32_t count = std::max(row, row + row_span) - first + 1;
        rows_.MoveRows(first, count, first + step);
        grid_.SetRow(row + step);
        grid_.SetCol(col);
        grid_.SetRowSel(row + step + row_span);
        grid_.SetColSel(col + col_span);
        // the end that moves ahead
        BringRowIntoView(context_, step < 0 ? first + step : first + count - 1 + step);
    }
    rows_.Liste_RowColChange();
}

void RowCommands::mnuEditZeilenNachOben_Click() {
    MoveSelection(-1);
}

void RowCommands::mnuEditZeilenNachUnten_Click() {
    MoveSelection(+1);
}

}  // namespace demovex
