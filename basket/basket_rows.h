// The rows of the basket: adding, completing and inserting articles, the row types, the line
// numbers, and the rows as items of a container.
//
// Rows 1 to Rows − 2 of the grid are the basket; row 0 is the header, the last row the totals.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "base/key_value.h"
#include "basket/basket_rooms.h"
#include "basket/columns.h"
#include "basket/incomplete_note.h"
#include "basket/totals.h"

namespace demovex {

// What the rows need of the cell editor.
class ICellCommit {
  public:
    virtual ~ICellCommit() = default;
    virtual void CommitCellEdit() = 0;
    virtual void CloseEditor() = 0;
    virtual void Liste_RowColChange() = 0;
};

class BasketRows final : public IBasketRows {
  public:
    // All outlive the rows.
    BasketRows(BasketContext& context, ICellCommit& editor, IArticleLookup& articles);

    // Two rows, ten columns, captions, widths; (0, 2) is current.
    void BuildEmptyGrid();

    // Adds `Menge` of an article at the end; the basket's last row takes it when it has the same
    // number (exact comparison). True when a new row was added and the article was found. An
    // unknown number leaves a row with number and catalogue columns alone and raises 13.
    // Whatever is raised, also by what was being typed or for another line that is incomplete, is
    // raised when the order stands.
    bool AddArtikel(const std::wstring& ArtikelNr, const std::wstring& Katalog,
                    const std::wstring& KatalogURL, std::int32_t Menge) override;

    // Completes `row` from the article master; `Menge` −1 keeps the quantity. True when the article
    // was found; otherwise the row stays as it is.
    bool RefreshArtikel(std::int32_t row, std::int32_t Menge);

    // Inserts `rowcount` empty rows before `row` (1 to Rows − 1, else 9 is raised); below 1 none.
    // What was being typed may raise when the rows stand.
    void InsertArtikel(std::int32_t row, std::int32_t rowcount);

    // What the user does: the same, but a line that is incomplete is told in the note instead of
    // being raised.
    void AppendEmptyRow();
    bool CompleteTypedArticle(std::int32_t row);
    void RecalculateWithNote(std::int32_t row);
    // After an article that could not be completed: the row is what it was.
    void PutBack(std::int32_t row, const std::array<std::wstring, column::kCount>& texts);

    // The number format changes: `change` makes the text service use the new one. See
    // TestLibForm::NumberFormatChanged.
    void NumberFormatChanged(const std::function<void()>& change);

    // 1 for a row whose article number is empty, else 0.
    std::int32_t GetRowType(std::int32_t row) const;
    bool IsArticleRow(std::int32_t row) const { return GetRowType(row) == 0; }

    // Puts the line numbers of rows `first` to Rows − 2 right.
    void Renumber(std::int32_t first);

    // Moves the block of basket rows to begin at `to`; line numbers stay where they are.
    void MoveRows(std::int32_t first, std::int32_t count, std::int32_t to);

    // --- IBasketRows
    void CommitCellEdit() override { editor_.CommitCellEdit(); }
    void CloseEditor() override { editor_.CloseEditor(); }
    void Liste_RowColChange() override { editor_.Liste_RowColChange(); }
    void RestoreTotalsRow() override;
    void RecalculateTotals(std::int32_t row) override;
    void BeginLoading() override;
    void EndLoading() noexcept override;
    void RemoveRows(std::int32_t first, std::int32_t count) override;
    void ClearRows() override;
    void SetCell(std::int32_t row, std::int32_t col, std::wstring_view text) override;

    // --- the rows as a container's items; the tag is the column
    std::int32_t Count() const;
    std::int32_t EnumItems();
    std::int32_t CompareItems(std::int32_t id1, std::int32_t id2, std::int32_t tag) const;
    std::int32_t CompareItem(const KeyValue& key, std::int32_t id, std::int32_t tag) const;

  private:
    void MergeIntoRow(std::int32_t row, std::int32_t menge);
    bool AppendRow(const std::wstring& nr, const std::wstring& katalog,
                   const std::wstring& katalog_url, std::int32_t menge);
    void DressRow(std::int32_t row);
    void DressTotalsRow(std::int32_t row);
    void ReformatEditor(const std::function<void()>& change);

    BasketContext& context_;
    FlexGrid& grid_;
    BasketState& state_;
    ICellCommit& editor_;
    IArticleLookup& articles_;
    Totals totals_;
    IncompleteNote note_;
    std::int32_t cursor_ = 0;
    // of the row being filled; kept for their memory
    std::wstring bezeichnung_, preis_, amount_;
};

}  // namespace demovex
