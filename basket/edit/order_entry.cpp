#include "basket/edit/order_entry.h"

#include "basket/edit/scopes.h"
#include "basket/rows/columns.h"
#include "basket/rows/first_error.h"

namespace demovex {

void BeginChange(const BasketContext& context) {
    context.table.RestoreTotalsRow();
    context.state.Modified = true;
}

OrderTable::Added AddArtikel(BasketContext& context, ICellCommit& editor,
                             const std::wstring& ArtikelNr, const std::wstring& Katalog,
                             const std::wstring& KatalogURL, std::int32_t Menge) {
    OrderTable& table = context.table;
    FirstError errors;
    errors.Run([&] { editor.CloseEditor(); });
    BeginChange(context);
    SuppressEditorScope suppress(context.state);
    auto added = OrderTable::Added::kUnknown;
    errors.Run([&] {
        added = table.AddArtikel(ArtikelNr, Katalog, KatalogURL, Menge);
        // The row is as it will be, so the editor may show the new quantity at once.
        const bool shows_quantity =
            added == OrderTable::Added::kMerged && context.Liste.Col() == column::kMenge;
        if (!ArtikelNr.empty() && !shows_quantity) return;
        suppress.Clear();
        editor.Liste_RowColChange();
    });
    errors.Run([&] { table.Recalculate(table.LastRow()); });
    errors.Raise();
    return added;
}

void AppendEmptyRow(BasketContext& context, ICellCommit& editor) {
    try {
        AddArtikel(context, editor, L"", L"", L"", 1);
    } catch (const IncompleteLine&) {  // told in the note
    }
}

bool RefreshArtikel(BasketContext& context, ICellCommit& editor, std::int32_t row,
                    std::int32_t Menge) {
    if (!context.table.IsArticleRow(row)) return false;
    editor.CommitCellEdit();
    BeginChange(context);
    const SuppressEditorScope suppress(context.state);
    if (!context.table.RefreshArtikel(row, Menge)) return false;
    context.table.Recalculate(row);
    return true;
}

void InsertArtikel(BasketContext& context, ICellCommit& editor, std::int32_t row,
                   std::int32_t rowcount) {
    FirstError errors;
    errors.Run([&] { editor.CloseEditor(); });
    BeginChange(context);
    SuppressEditorScope suppress(context.state);
    if (rowcount >= 1) context.table.InsertRows(row, rowcount);
    context.Liste.SetCol(column::kArtNr);
    suppress.Clear();
    context.Liste.SetCol(column::kBezeichnung);
    errors.Raise();
}

}  // namespace demovex
