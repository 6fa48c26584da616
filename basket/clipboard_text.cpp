#include "basket/clipboard_text.h"

#include <algorithm>

#include "basket/columns.h"

namespace demovex {

std::wstring CellsAsText(const FlexGrid& grid, std::int32_t first_row, std::int32_t last_row,
                         std::int32_t first_col, std::int32_t last_col) {
    std::wstring text;
    for (std::int32_t row = first_row; row <= last_row; ++row) {
        const std::size_t line = text.size();
        for (std::int32_t col = first_col; col <= last_col; ++col) {
            if (grid.ColWidth(col) == 0) continue;
            if (text.size() != line) text += L'\t';
            text += grid.TextMatrix(row, col);
        }
        text += L"\r\n";
    }
    return text;
}

void ClipboardCommands::mnuContextCopySelectionToClipboard_Click() {
    rows_.CommitCellEdit();
    const FlexGrid& grid = context_.Liste;
    context_.services.clipboard.SetText(
        CellsAsText(grid, std::min(grid.Row(), grid.RowSel()), std::max(grid.Row(), grid.RowSel()),
                    std::min(grid.Col(), grid.ColSel()), std::max(grid.Col(), grid.ColSel())));
}

void ClipboardCommands::mnuDateiSendenanZwischenablage_Click() {
    rows_.CommitCellEdit();
    const FlexGrid& grid = context_.Liste;
    context_.services.clipboard.SetText(
        CellsAsText(grid, 0, grid.Rows() - 1, column::kArtNr, grid.Cols() - 1));
}

}  // namespace demovex
