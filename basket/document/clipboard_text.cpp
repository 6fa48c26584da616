#include "basket/document/clipboard_text.h"

#include "basket/rows/columns.h"

namespace demovex {

std::wstring CellsAsText(const FlexGrid& grid, const GridRange& range) {
    std::wstring text;
    for (std::int32_t row = range.first_row; row <= range.last_row; ++row) {
        const std::size_t line = text.size();
        for (std::int32_t col = range.first_col; col <= range.last_col; ++col) {
            if (grid.ColWidth(col) == 0) continue;
            if (text.size() != line) text += L'\t';
            text += grid.TextMatrix(row, col);
        }
        text += L"\r\n";
    }
    return text;
}

void ClipboardCommands::mnuContextCopySelectionToClipboard_Click() {
    editor_.CommitCellEdit();
    context_.services.clipboard.SetText(CellsAsText(context_.Liste, context_.table.Selection()));
}

void ClipboardCommands::mnuDateiSendenanZwischenablage_Click() {
    editor_.CommitCellEdit();
    const FlexGrid& grid = context_.Liste;
    context_.services.clipboard.SetText(
        CellsAsText(grid, {0, context_.table.TotalsRow(), column::kArtNr, grid.Cols() - 1}));
}

}  // namespace demovex
