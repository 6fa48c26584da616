#include "basket/basket_rows.h"

#include <charconv>
#include <variant>

#include "base/error.h"
#include "base/round.h"
#include "basket/columns.h"
#include "basket/scopes.h"

namespace demovex {
namespace {

// Written without the C library's formatted output, which a line number in a long basket would
// feel.
std::wstring DecimalText(std::int32_t value) {
    char digits[12];
    char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    return std::wstring(&digits[0], end);
}

// Schillings to the euro, fixed for good.
constexpr double kSchillingsPerEuro = 13.7603;

}  // namespace

BasketRows::BasketRows(BasketContext& context, ICellCommit& editor, IArticleLookup& articles)
    : context_(context),
      grid_(context.Liste),
      state_(context.state),
      editor_(editor),
      articles_(articles),
      totals_(context.Liste, context.services.text) {}

void BasketRows::BuildEmptyGrid() {
    grid_.SetRows(2);
    grid_.SetCols(column::kCount);
    grid_.SetRow(0);
    for (std::int32_t col = 0; col < column::kCount; ++col) {
        const ColumnRow& design = kColumns[static_cast<std::size_t>(col)];
        grid_.SetCellBold(0, col, true);
        grid_.SetTextMatrix(0, col, design.caption);
        grid_.SetColWidth(col, design.width);
        grid_.SetTextMatrix(1, col, L"");
    }
    grid_.SetTextMatrix(1, column::kBezeichnung, L"Gesamt");
    for (const std::int32_t col : {column::kBezeichnung, column::kGesamtAts, column::kGesamtEuro}) {
        grid_.SetCellBold(1, col, true);
    }
    grid_.SetCol(column::kBezeichnung);
    totals_.Recount();
}

bool BasketRows::AddArtikel(const std::wstring& ArtikelNr, const std::wstring& Katalog,
                            const std::wstring& KatalogURL, std::int32_t Menge) {
    editor_.CloseEditor();
    state_.Modified = true;
    SuppressEditorScope suppress(state_);
    const std::int32_t last = grid_.Rows() - 2;
    bool result = false;
    if (!ArtikelNr.empty() && grid_.TextMatrix(last, column::kArtNr) == ArtikelNr) {
        MergeIntoRow(last, Menge);
    } else {
        result = AppendRow(ArtikelNr, Katalog, KatalogURL, Menge);
        // A file that is being loaded lists unknown numbers; whoever loads it removes the row.
        // Line totals of a found article wait for the quantity that the file says.
        if (state_.Loading && !ArtikelNr.empty()) return result;
    }
    totals_.Recalculate(grid_.Rows() - 2);
    return result;
}

void BasketRows::MergeIntoRow(std::int32_t row, std::int32_t menge) {
    if (grid_.Col() == column::kMenge) editor_.CommitCellEdit();
    const double quantity = LeadingNumber(grid_.TextMatrix(row, column::kMenge)) + menge;
    SetCell(row, column::kMenge, context_.services.text.FromNumber(quantity));
    if (grid_.Col() == column::kMenge) {
        // The row is as it will be, so the editor may show the new quantity at once.
        state_.SuppressEditor = false;
        editor_.Liste_RowColChange();
    }
}

bool BasketRows::AppendRow(const std::wstring& nr, const std::wstring& katalog,
                           const std::wstring& katalog_url, std::int32_t menge) {
    totals_.InsertRows(grid_.Rows() - 1, 1);
    const std::int32_t row = grid_.Rows() - 2;
    grid_.SetRow(row);
    DressRow(row);
    SetCell(row, column::kNumber, DecimalText(row));
    SetCell(row, column::kArtNr, nr);
    if (nr.empty()) {
        grid_.SetCol(column::kArtNr);
        state_.SuppressEditor = false;
        grid_.SetCol(column::kBezeichnung);
        return false;
    }
    const bool found = RefreshArtikel(row, menge);
    SetCell(row, column::kKatalog, katalog);
    SetCell(row, column::kKatalogUrl, katalog_url);
    grid_.SetCol(column::kArtNr);
    grid_.SetColSel(grid_.Cols() - 1);
    return found;
}

void BasketRows::DressRow(std::int32_t row) {
    grid_.SetCellBold(row, column::kNumber, true);
    grid_.SetCellAlign(row, column::kArtNr, CellAlignment::kLeft);
    grid_.SetCellAlign(row, column::kBezeichnung, CellAlignment::kLeft);
}

bool BasketRows::RefreshArtikel(std::int32_t row, std::int32_t Menge) {
    const std::wstring nr(grid_.TextMatrix(row, column::kArtNr));
    if (nr.empty()) return false;
    editor_.CommitCellEdit();
    state_.Modified = true;
    SuppressEditorScope suppress(state_);
    if (!articles_.LookUpArtikelNr(nr, bezeichnung_, preis_)) return false;
    const ITextService& text = context_.services.text;
    SetCell(row, column::kBezeichnung, bezeichnung_);
    if (Menge > -1) SetCell(row, column::kMenge, DecimalText(Menge));
    const double price = text.ToNumber(preis_);
    text.WriteAmount(price, amount_);
    SetCell(row, column::kPreisAts, amount_);
    text.WriteAmount(RoundToHundredths(price / kSchillingsPerEuro), amount_);
    SetCell(row, column::kPreisEuro, amount_);
    grid_.SetCol(column::kMenge);
    if (!state_.Loading) totals_.Recalculate(row);
    return true;
}

void BasketRows::InsertArtikel(std::int32_t row, std::int32_t rowcount) {
    editor_.CloseEditor();
    state_.Modified = true;
    SuppressEditorScope suppress(state_);
    if (rowcount >= 1) {
        totals_.InsertRows(row, rowcount);
        for (std::int32_t inserted = 0; inserted < rowcount; ++inserted) DressRow(row + inserted);
        Renumber(row);
    }
    grid_.SetCol(column::kArtNr);
    suppress.Clear();
    grid_.SetCol(column::kBezeichnung);
}

std::int32_t BasketRows::GetRowType(std::int32_t row) const {
    return grid_.TextMatrix(row, column::kArtNr).empty() ? 1 : 0;
}

void BasketRows::Renumber(std::int32_t first) {
    for (std::int32_t row = first; row <= grid_.Rows() - 2; ++row) {
        grid_.SetTextMatrix(row, column::kNumber, DecimalText(row));
    }
}

void BasketRows::MoveRows(std::int32_t first, std::int32_t count, std::int32_t to) {
    totals_.MoveRows(first, count, to);
}

void BasketRows::EndLoading() noexcept {
    try {
        totals_.Defer(false);
    } catch (...) {  // the totals row keeps what it shows; the load has its own error to tell
    }
}

void BasketRows::RemoveRows(std::int32_t first, std::int32_t count) {
    totals_.RemoveRows(first, count);
}

void BasketRows::ClearRows() {
    totals_.RemoveRows(1, grid_.Rows() - 2);
}

void BasketRows::SetCell(std::int32_t row, std::int32_t col, std::wstring_view text) {
    totals_.SetCell(row, col, text);
}

std::int32_t BasketRows::Count() const {
    return grid_.Rows() - 2;
}

std::int32_t BasketRows::EnumItems() {
    if (++cursor_ > Count()) cursor_ = 0;
    return cursor_;
}

std::int32_t BasketRows::CompareItems(std::int32_t id1, std::int32_t id2, std::int32_t tag) const {
    return context_.services.text.CompareText(grid_.TextMatrix(id1, tag),
                                              grid_.TextMatrix(id2, tag));
}

std::int32_t BasketRows::CompareItem(const KeyValue& key, std::int32_t id, std::int32_t tag) const {
    const ITextService& text = context_.services.text;
    std::wstring key_text;
    if (const auto* string = std::get_if<std::wstring>(&key)) {
        key_text = *string;
    } else if (const auto* whole = std::get_if<std::int32_t>(&key)) {
        key_text = DecimalText(*whole);
    } else {
        key_text = text.FromNumber(std::get<double>(key));
    }
    return text.CompareText(key_text, grid_.TextMatrix(id, tag));
}

}  // namespace demovex
