// Changes of the order lines that may meet a cell being edited: the editor is closed first, the
// table changed, and the editor opened on the result. What was being typed may raise, and so may
// another line that is incomplete: no order is lost because of that, everything is raised when the
// change stands.
#pragma once

#include <cstdint>
#include <string>

#include "basket/edit/cell_commit.h"
#include "basket/rows/order_table.h"
#include "basket/state.h"

namespace demovex {

// Before a change of rows, with the editor closed: the totals row is in its place, and the basket
// counts as modified.
void BeginChange(const BasketContext& context);

// Adds `Menge` of an article at the end (see OrderTable::AddArtikel) and recalculates. An unknown
// number leaves its row and raises 13.
OrderTable::Added AddArtikel(BasketContext& context, ICellCommit& editor,
                             const std::wstring& ArtikelNr, const std::wstring& Katalog,
                             const std::wstring& KatalogURL, std::int32_t Menge);

// An empty row at the end, as the user adds it: a line that is incomplete is told in the note and
// not raised.
void AppendEmptyRow(BasketContext& context, ICellCommit& editor);

// Completes `row` from the article master and recalculates; `Menge` −1 keeps the quantity. True
// when the article was found; otherwise the row stays as it is.
bool RefreshArtikel(BasketContext& context, ICellCommit& editor, std::int32_t row,
                    std::int32_t Menge);

// Inserts `rowcount` empty rows before `row` (1 to the totals row, else 9 is raised); below 1 none.
void InsertArtikel(BasketContext& context, ICellCommit& editor, std::int32_t row,
                   std::int32_t rowcount);

}  // namespace demovex
