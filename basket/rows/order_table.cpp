// OrderTable: rows, cells and line numbers, articles, and the rows as a container's items. The
// totals are in order_totals.cpp.
#include "basket/rows/order_table.h"

#include <charconv>
#include <variant>

#include "base/one_line.h"
#include "base/round.h"
#include "basket/rows/first_error.h"

namespace demovex {
namespace {

// Written without the C library's formatted output, whose cost every insertion above a thousand
// lines would pay a thousand times.
std::wstring DecimalText(std::int32_t value) {
    char digits[12];
    char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    return std::wstring(&digits[0], end);
}

// Schillings to the euro, fixed for good.
constexpr double kSchillingsPerEuro = 13.7603;

}  // namespace

// --- the four operations that change the grid

void OrderTable::Write(std::int32_t row, std::int32_t col, std::wstring_view text) {
    grid_.SetTextMatrix(row, col, text);
}

void OrderTable::AddRows(std::int32_t index, std::int32_t count) {
    grid_.AddItem(index, count);
}

void OrderTable::DropRows(std::int32_t first, std::int32_t count) {
    grid_.RemoveItem(first, count);
}

void OrderTable::ShiftRows(std::int32_t first, std::int32_t count, std::int32_t to) {
    grid_.MoveRows(first, count, to);
}

// --- rows and cells

void OrderTable::BuildEmpty() {
    grid_.SetRows(2);
    grid_.SetCols(column::kCount);
    grid_.SetRow(0);
    for (std::int32_t col = 0; col < column::kCount; ++col) {
        const ColumnRow& design = kColumns[static_cast<std::size_t>(col)];
        grid_.SetCellBold(0, col, true);
        Write(0, col, design.caption);
        grid_.SetColWidth(col, design.width);
        Write(1, col, L"");
    }
    MarkTotalsRow();
    grid_.SetCol(column::kBezeichnung);
    Recount();
}

void OrderTable::MarkTotalsRow() {
    const std::int32_t row = TotalsRow();
    Write(row, column::kBezeichnung, L"Gesamt");
    for (const std::int32_t col : {column::kBezeichnung, column::kGesamtAts, column::kGesamtEuro}) {
        grid_.SetCellBold(row, col, true);
    }
}

void OrderTable::SetCell(std::int32_t row, std::int32_t col, std::wstring_view text) {
    if (HasControls(text)) {
        WriteCounted(row, col, OneLine(text));
    } else {
        WriteCounted(row, col, text);
    }
}

void OrderTable::InsertRows(std::int32_t index, std::int32_t count) {
    if (index < 1 || index > TotalsRow()) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    AddRows(index, count);
    for (std::int32_t row = index; row < index + count; ++row) {
        grid_.SetCellBold(row, column::kNumber, true);
        grid_.SetCellAlign(row, column::kArtNr, CellAlignment::kLeft);
        grid_.SetCellAlign(row, column::kBezeichnung, CellAlignment::kLeft);
    }
    Renumber(index);
}

void OrderTable::MoveRows(std::int32_t first, std::int32_t count, std::int32_t to) {
    const std::int32_t limit = TotalsRow();
    if (first < 1 || to < 1 || count < 0 || first + count > limit || to + count > limit) {
        RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    }
    ShiftRows(first, count, to);
}

void OrderTable::Clear() {
    RemoveRows(1, LastRow());
    if (listener_.cleared) listener_.cleared();
    for (const std::int32_t col : {column::kGesamtAts, column::kGesamtEuro}) {
        SetCell(TotalsRow(), col, L"");
    }
}

void OrderTable::Renumber(std::int32_t first) {
    for (std::int32_t row = first; row <= LastRow(); ++row) {
        Write(row, column::kNumber, DecimalText(row));
    }
}

// --- articles

OrderTable::Added OrderTable::AddArtikel(const std::wstring& ArtikelNr, const std::wstring& Katalog,
                                         const std::wstring& KatalogURL, std::int32_t Menge) {
    const std::int32_t last = LastRow();
    if (!ArtikelNr.empty() && grid_.TextMatrix(last, column::kArtNr) == ArtikelNr) {
        MergeIntoRow(last, Menge);
        return Added::kMerged;
    }
    InsertRows(TotalsRow(), 1);
    const std::int32_t row = LastRow();
    grid_.SetRow(row);
    SetCell(row, column::kArtNr, ArtikelNr);
    if (ArtikelNr.empty()) {
        grid_.SetCol(column::kArtNr);
        grid_.SetCol(column::kBezeichnung);
        return Added::kNew;
    }
    FirstError errors;
    bool found = false;
    errors.Run([&] { found = RefreshArtikel(row, Menge); });
    SetCell(row, column::kKatalog, Katalog);
    SetCell(row, column::kKatalogUrl, KatalogURL);
    grid_.SetCol(column::kArtNr);
    grid_.SetColSel(grid_.Cols() - 1);
    errors.Raise();
    return found ? Added::kNew : Added::kUnknown;
}

void OrderTable::MergeIntoRow(std::int32_t row, std::int32_t menge) {
    double before = 0;
    try {
        before = LeadingNumber(grid_.TextMatrix(row, column::kMenge));
    } catch (const Error& error) {
        if (error.number() != runtime_error::kOverflow) throw;  // too large to be read
    }
    SetCell(row, column::kMenge, text_.FromNumber(before + menge));
}

bool OrderTable::RefreshArtikel(std::int32_t row, std::int32_t Menge) {
    const std::wstring nr(grid_.TextMatrix(row, column::kArtNr));
    if (nr.empty() || !articles_.LookUpArtikelNr(nr, bezeichnung_, preis_)) return false;
    BlankControls(preis_);
    SetCell(row, column::kBezeichnung, bezeichnung_);
    if (Menge > -1) SetCell(row, column::kMenge, DecimalText(Menge));
    const double price = text_.ToNumber(preis_);
    text_.WriteAmount(price, amount_);
    SetCell(row, column::kPreisAts, amount_);
    text_.WriteAmount(RoundToHundredths(price / kSchillingsPerEuro), amount_);
    SetCell(row, column::kPreisEuro, amount_);
    grid_.SetCol(column::kMenge);
    return true;
}

// --- the rows as a container's items

std::int32_t OrderTable::EnumItems() {
    if (++cursor_ > LastRow()) cursor_ = 0;
    return cursor_;
}

std::int32_t OrderTable::CompareItems(std::int32_t id1, std::int32_t id2, std::int32_t tag) const {
    return text_.CompareText(grid_.TextMatrix(id1, tag), grid_.TextMatrix(id2, tag));
}

std::int32_t OrderTable::CompareItem(const KeyValue& key, std::int32_t id, std::int32_t tag) const {
    std::wstring key_text;
    if (const auto* string = std::get_if<std::wstring>(&key)) {
        key_text = *string;
    } else if (const auto* whole = std::get_if<std::int32_t>(&key)) {
        key_text = DecimalText(*whole);
    } else {
        key_text = text_.FromNumber(std::get<double>(key));
    }
    return text_.CompareText(key_text, grid_.TextMatrix(id, tag));
}

}  // namespace demovex
