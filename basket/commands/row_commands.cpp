#include "basket/commands/row_commands.h"

#include <algorithm>

#include "basket/edit/cell_view.h"
#include "basket/edit/order_entry.h"
#include "basket/edit/scopes.h"
#include "basket/rows/columns.h"

namespace demovex {

RowCommands::RowCommands(BasketContext& context, ICellCommit& editor)
    : context_(context),
      grid_(context.Liste),
      state_(context.state),
      table_(context.table),
      editor_(editor) {}

void RowCommands::AppendEmptyRow() {
    demovex::AppendEmptyRow(context_, editor_);
    BringCellIntoView(context_, grid_.Row(), grid_.Col());
}

void RowCommands::mnuEditNeueZeile_Click() {
    const HeldEditorScope held(context_.view.Editor(), state_);
    editor_.CloseEditor();
    AppendEmptyRow();
    editor_.Liste_RowColChange();
}

void RowCommands::mnuEditZeileOberhalbEinfügen_Click() {
    const HeldEditorScope held(context_.view.Editor(), state_);
    editor_.CloseEditor();
    BeginChange(context_);
    if (grid_.Row() == 0) {
        AppendEmptyRow();
    } else {
        InsertArtikel(context_, editor_, grid_.Row(), table_.Selection().Rows());
        BringCellIntoView(context_, grid_.Row(), grid_.Col());
    }
    editor_.Liste_RowColChange();
}

void RowCommands::mnuEditZeilenLöschen_Click() {
    const HeldEditorScope held(context_.view.Editor(), state_);
    editor_.CloseEditor();
    BeginChange(context_);
    const std::int32_t anchor = grid_.Row();
    if (anchor == 0) {
        context_.services.sound.Beep();
        editor_.Liste_RowColChange();
        return;
    }
    const std::int32_t removed =
        std::min(table_.Selection().Rows(), table_.TotalsRow() - anchor);  // up to the totals row
    if (removed > 0) table_.RemoveRows(anchor, removed);
    // What was selected is gone; what moved up into its place is not selected with it.
    grid_.SetRow(grid_.Row());
    // The lines that are left keep their totals, so only the sums are made anew.
    table_.TryRecalculate(table_.TotalsRow());
    if (table_.LastRow() == 0) grid_.SetCol(column::kBezeichnung);
    BringRowIntoView(context_, grid_.Row());
    editor_.Liste_RowColChange();
}

bool RowCommands::CanMove(std::int32_t step) const {
    const auto [first, last, first_col, last_col] = table_.Selection();
    // Neither header nor totals row is part of the block nor jumped over.
    if (step < 0) return first >= 2 && last <= table_.LastRow();
    return first >= 1 && last < table_.LastRow();
}

void RowCommands::MoveSelection(std::int32_t step) {
    BeginChange(context_);
    if (!CanMove(step)) return;
    const std::int32_t row = grid_.Row();
    const std::int32_t col = grid_.Col();
    const std::int32_t row_span = grid_.RowSel() - row;
    const std::int32_t col_span = grid_.ColSel() - col;
    {
        SuppressEditorScope suppress(state_);
        editor_.CloseEditor();
        suppress.Set();  // a number committed just now has cleared it
        const RedrawOffScope redraw_off(grid_);
        const std::int32_t first = std::min(row, row + row_span);
        const std::int32_t count = std::max(row, row + row_span) - first + 1;
        table_.MoveRows(first, count, first + step);
        grid_.SetRow(row + step);
        grid_.SetCol(col);
        grid_.SetRowSel(row + step + row_span);
        grid_.SetColSel(col + col_span);
        // the end that moves ahead
        BringRowIntoView(context_, step < 0 ? first + step : first + count - 1 + step);
    }
    editor_.Liste_RowColChange();
}

void RowCommands::mnuEditZeilenNachOben_Click() {
    MoveSelection(-1);
}

void RowCommands::mnuEditZeilenNachUnten_Click() {
    MoveSelection(+1);
}

}  // namespace demovex
