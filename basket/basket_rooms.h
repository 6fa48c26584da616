// What the rooms of the basket window may ask of each other. Each room takes these by reference;
// TestLibForm owns all of them.
//
// The rows go through one place: whoever writes columns 1, 8 or 9 of a basket row, or removes rows,
// uses IBasketRows and never the grid itself, because the running totals are kept there. Reading
// the grid and moving its current cell is everybody's business.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "basket/basket_state.h"
#include "basket/columns.h"

namespace demovex {

// The caption of a basket that has no file.
inline constexpr std::wstring_view kDesignedCaption = L"Vexmart Demo Warenkorb 1.1";

// Sets the window's caption: kept in the state for the host, shown by the view.
inline void SetBasketCaption(const BasketContext& context, std::wstring_view caption) {
    context.state.Caption = caption;
    context.view.SetCaption(caption);
}

// Shows the current row's catalogue position in the status bar; none while several rows are
// selected.
inline void ShowPosition(const BasketContext& context) {
    const FlexGrid& grid = context.Liste;
    const bool one_row = grid.RowSel() == grid.Row();
    context.view.SetStatusText(one_row ? grid.TextMatrix(grid.Row(), column::kKatalog)
                                       : std::wstring_view());
}

class IBasketRows {
  public:
    virtual ~IBasketRows() = default;

    // Writes the cell being edited back and closes the editor. A message about an unknown article
    // number may be shown meanwhile. A number just typed and found opens the editor anew on the
    // row's quantity; callers that change rows use CloseEditor instead.
    virtual void CommitCellEdit() = 0;

    // CommitCellEdit until no editor is open.
    virtual void CloseEditor() = 0;

    // Puts the totals row back below the last line, with right totals, when a load has taken it
    // away; whoever is about to change the basket or to write it calls this. Idle while a load is
    // running.
    virtual void RestoreTotalsRow() = 0;

    // Adds `Menge` of an article at the end of the basket; see TestLibForm::AddArtikel. While
    // BasketState::Loading is set an unknown number answers false, leaves its row without
    // description, quantity and prices, and raises nothing; and a new row of a found article is
    // left without line totals: the caller, who knows the real quantity, recalculates.
    virtual bool AddArtikel(const std::wstring& ArtikelNr, const std::wstring& Katalog,
                            const std::wstring& KatalogURL, std::int32_t Menge) = 0;

    // Recomputes the line totals of `row` and the totals row. Raises 13 when a quantity, price or
    // line total of an article row does not read as a number, 6 when a product or sum overflows;
    // not before it has written what it can: the line totals of its own row, and the totals over
    // all lines that do read.
    virtual void RecalculateTotals(std::int32_t row) = 0;

    // Between these two, the totals row is written only once, at the end. EndLoading raises
    // nothing.
    virtual void BeginLoading() = 0;
    virtual void EndLoading() noexcept = 0;

    // Removes `count` rows from `first` on and keeps the running totals right; the shown totals and
    // the line numbers stay as they are. Raises what the grid raises and changes nothing then.
    virtual void RemoveRows(std::int32_t first, std::int32_t count) = 0;

    // Removes all basket rows and empties the totals.
    virtual void ClearRows() = 0;

    // Writes one cell of any row, control characters as blanks, and keeps the running totals right;
    // nothing shown but the cell changes, and Modified stays as it is.
    virtual void SetCell(std::int32_t row, std::int32_t col, std::wstring_view text) = 0;

    // The current-cell handler: commits the cell left behind and opens the editor on the current
    // cell when it may be edited. Idle while InitPending or Loading is set.
    virtual void Liste_RowColChange() = 0;
};

// Looks an article up by its number.
class IArticleLookup {
  public:
    virtual ~IArticleLookup() = default;

    // On success writes the trimmed description and price (schillings, as text) and answers true;
    // otherwise answers false and leaves both untouched. Raises 57 when the article master's file
    // cannot be read any more, 91 when none is open.
    virtual bool LookUpArtikelNr(const std::wstring& Nr, std::wstring& Bezeichnung,
                                 std::wstring& Preis) = 0;

    // Between these two many look-ups follow one another; they are answered from one state of the
    // article master.
    virtual void BeginSeries() noexcept {}
    virtual void EndSeries() noexcept {}
};

}  // namespace demovex
