#include "basket/basket_rows.h"

#include <charconv>
#include <exception>
#include <optional>
#include <variant>

#include "base/error.h"
#include "base/one_line.h"
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

// Runs steps of which each is to be done whatever becomes of the others; the first error of all is
// raised at the end.
class FirstError {
  public:
    template <typename Step>
    void Run(Step&& step) {
        try {
            step();
        } catch (const Error&) {
            if (!first_) first_ = std::current_exception();
        }
    }
    void Raise() const {
        if (first_) std::rethrow_exception(first_);
    }

  private:
    std::exception_ptr first_;
};

}  // namespace

BasketRows::BasketRows(BasketContext& context, ICellCommit& editor, IArticleLookup& articles)
    : context_(context),
      grid_(context.Liste),
      state_(context.state),
      editor_(editor),
      articles_(articles),
      totals_(context.Liste, context.services.text),
      note_(context, totals_) {}

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
    DressTotalsRow(1);
    grid_.SetCol(column::kBezeichnung);
    totals_.Recount();
}

void BasketRows::DressTotalsRow(std::int32_t row) {
    grid_.SetTextMatrix(row, column::kBezeichnung, L"Gesamt");
    for (const std::int32_t col : {column::kBezeichnung, column::kGesamtAts, column::kGesamtEuro}) {
        grid_.SetCellBold(row, col, true);
    }
}

void BasketRows::RestoreTotalsRow() {
    if (state_.Loading || totals_.HasTotalsRow()) return;
    totals_.RestoreTotalsRow();
    const std::int32_t totals = grid_.Rows() - 1;
    DressTotalsRow(totals);
    Renumber(1);
    try {
        // the row above stood in the totals' place and may show their amounts
        RecalculateTotals(totals - 1);
    } catch (const Error&) {  // whoever recalculates next meets it again
    }
}

bool BasketRows::AddArtikel(const std::wstring& ArtikelNr, const std::wstring& Katalog,
                            const std::wstring& KatalogURL, std::int32_t Menge) {
    // No order is lost because something else is wrong in the basket.
    FirstError errors;
    errors.Run([this] { editor_.CloseEditor(); });
    RestoreTotalsRow();
    state_.Modified = true;
    SuppressEditorScope suppress(state_);
    const std::int32_t last = grid_.Rows() - 2;
    bool result = false;
    if (!ArtikelNr.empty() && grid_.TextMatrix(last, column::kArtNr) == ArtikelNr) {
        errors.Run([&] { MergeIntoRow(last, Menge); });
    } else {
        errors.Run([&] { result = AppendRow(ArtikelNr, Katalog, KatalogURL, Menge); });
        // A file that is being loaded lists unknown numbers; whoever loads it removes the row.
        // Line totals of a found article wait for the quantity that the file says.
        if (state_.Loading && !ArtikelNr.empty()) {
            errors.Raise();
            return result;
        }
    }
    errors.Run([this] { RecalculateTotals(grid_.Rows() - 2); });
    errors.Raise();
    return result;
}

void BasketRows::MergeIntoRow(std::int32_t row, std::int32_t menge) {
    if (grid_.Col() == column::kMenge) editor_.CommitCellEdit();
    double quantity = 0;
    try {
        quantity = LeadingNumber(grid_.TextMatrix(row, column::kMenge));
    } catch (const Error& error) {
        if (error.number() != runtime_error::kOverflow) throw;  // too large to be read
    }
    SetCell(row, column::kMenge, context_.services.text.FromNumber(quantity + menge));
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
    FirstError errors;
    bool found = false;
    errors.Run([&] { found = RefreshArtikel(row, menge); });
    SetCell(row, column::kKatalog, katalog);
    SetCell(row, column::kKatalogUrl, katalog_url);
    grid_.SetCol(column::kArtNr);
    grid_.SetColSel(grid_.Cols() - 1);
    errors.Raise();
    return found;
}

void BasketRows::AppendEmptyRow() {
    try {
        AddArtikel(L"", L"", L"", 1);
    } catch (const IncompleteLine&) {  // told in the note
    }
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
    RestoreTotalsRow();
    state_.Modified = true;
    SuppressEditorScope suppress(state_);
    if (!articles_.LookUpArtikelNr(nr, bezeichnung_, preis_)) return false;
    const ITextService& text = context_.services.text;
    BlankControls(preis_);
    SetCell(row, column::kBezeichnung, bezeichnung_);
    if (Menge > -1) SetCell(row, column::kMenge, DecimalText(Menge));
    const double price = text.ToNumber(preis_);
    text.WriteAmount(price, amount_);
    SetCell(row, column::kPreisAts, amount_);
    text.WriteAmount(RoundToHundredths(price / kSchillingsPerEuro), amount_);
    SetCell(row, column::kPreisEuro, amount_);
    grid_.SetCol(column::kMenge);
    if (!state_.Loading) RecalculateTotals(row);
    return true;
}

bool BasketRows::CompleteTypedArticle(std::int32_t row) {
    try {
        return RefreshArtikel(row, 1);
    } catch (const IncompleteLine&) {  // told in the note; the article was found
        return true;
    }
}

void BasketRows::InsertArtikel(std::int32_t row, std::int32_t rowcount) {
    FirstError errors;
    errors.Run([this] { editor_.CloseEditor(); });
    RestoreTotalsRow();
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
    errors.Raise();
}

std::int32_t BasketRows::GetRowType(std::int32_t row) const {
    return grid_.TextMatrix(row, column::kArtNr).empty() ? 1 : 0;
}

void BasketRows::Renumber(std::int32_t first) {
    for (std::int32_t row = first; row <= grid_.Rows() - 2; ++row) {
        grid_.SetTextMatrix(row, column::kNumber, DecimalText(row));
    }
}

void BasketRows::RecalculateTotals(std::int32_t row) {
    try {
        totals_.Recalculate(row);
    } catch (const IncompleteLine& line) {
        if (!state_.Loading) note_.Tell(line.row());
        throw;
    }
    note_.AllComplete();
}

void BasketRows::RecalculateWithNote(std::int32_t row) {
    try {
        RecalculateTotals(row);
    } catch (const IncompleteLine&) {  // told in the note
    }
}

void BasketRows::PutBack(std::int32_t row, const std::array<std::wstring, column::kCount>& texts) {
    for (std::int32_t col = column::kArtNr; col < column::kCount; ++col) {
        SetCell(row, col, texts[static_cast<std::size_t>(col)]);
    }
    try {
        RecalculateTotals(grid_.Rows() - 1);
    } catch (const Error&) {  // the caller has an error to tell already
    }
}

void BasketRows::NumberFormatChanged(const std::function<void()>& change) {
    ReformatEditor([&] { totals_.Reformat(change); });
}

// A quantity that is being typed is a number of the old format, too.
void BasketRows::ReformatEditor(const std::function<void()>& change) {
    IEditorView& editor = context_.view.Editor();
    const ITextService& text = context_.services.text;
    if (!editor.BackgroundVisible() || state_.EditCol != column::kMenge) return change();
    const auto number = [&](std::wstring_view typed) -> std::optional<double> {
        try {
            return text.ToNumber(typed);
        } catch (const Error&) {
            return std::nullopt;
        }
    };
    const std::optional<double> old = number(editor.Text());
    change();
    if (!old || number(editor.Text()) == old) return;
    state_.LastValidText = text.FromNumber(*old);
    editor.SetText(state_.LastValidText);
    editor.Select(static_cast<std::int32_t>(state_.LastValidText.size()), 0);
}

void BasketRows::MoveRows(std::int32_t first, std::int32_t count, std::int32_t to) {
    totals_.MoveRows(first, count, to);
}

void BasketRows::BeginLoading() {
    totals_.Defer(true);
    articles_.BeginSeries();
}

void BasketRows::EndLoading() noexcept {
    articles_.EndSeries();
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
    note_.Forget();
    for (const std::int32_t col : {column::kGesamtAts, column::kGesamtEuro}) {
        SetCell(grid_.Rows() - 1, col, L"");
    }
}

void BasketRows::SetCell(std::int32_t row, std::int32_t col, std::wstring_view text) {
    if (HasControls(text)) {
        totals_.SetCell(row, col, OneLine(text));
    } else {
        totals_.SetCell(row, col, text);
    }
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
