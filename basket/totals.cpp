#include "basket/totals.h"

#include <cmath>
#include <string>

#include "base/error.h"
#include "basket/columns.h"

namespace demovex {
namespace {

constexpr std::array<std::int32_t, 2> kAmountColumns = {column::kGesamtAts, column::kGesamtEuro};
constexpr std::int64_t kBillion = 1'000'000'000;
// Up to here every whole number of hundredths is a double of its own.
constexpr double kLargestExact = 9007199254740992.0;

bool AffectsTotals(std::int32_t col) {
    return col == column::kArtNr || col == column::kGesamtAts || col == column::kGesamtEuro;
}

}  // namespace

double Totals::Sum::Value() const {
    const std::int64_t high = billions + rest / kBillion;
    const std::int64_t low = rest % kBillion;
    constexpr std::int64_t kLimit = 9'000'000'000;
    if (high > -kLimit && high < kLimit) return static_cast<double>(high * kBillion + low) / 100.0;
    return static_cast<double>(high) * 1e7 + static_cast<double>(low) / 100.0;
}

bool Totals::Counts(std::int32_t row) const {
    return row >= 1 && row <= grid_.Rows() - 2 && !grid_.TextMatrix(row, column::kArtNr).empty();
}

void Totals::AccountAmount(Sum& sum, std::wstring_view text, int sign) const {
    // A fresh row's amounts are empty; spare it the exception.
    if (text.empty()) {
        sum.unreadable += sign;
        return;
    }
    double value = 0;
    try {
        value = text_.ToNumber(text);
    } catch (const Error& error) {
        // Too large a number is left to the row-by-row sum, which meets the same error in its turn.
        (error.number() == runtime_error::kTypeMismatch ? sum.unreadable : sum.inexact) += sign;
        return;
    }
    const double scaled = value * 100.0;
    if (!(std::abs(scaled) < kLargestExact)) {
        sum.inexact += sign;
        return;
    }
    const auto whole = static_cast<std::int64_t>(scaled < 0 ? scaled - 0.5 : scaled + 0.5);
    if (static_cast<double>(whole) / 100.0 != value) {
        sum.inexact += sign;
        return;
    }
    if (whole > -kBillion && whole < kBillion) {
        sum.rest += sign * whole;
    } else {
        sum.billions += sign * (whole / kBillion);
        sum.rest += sign * (whole % kBillion);
    }
}

void Totals::Account(std::int32_t row, int sign) {
    if (!Counts(row)) return;
    for (std::size_t i = 0; i < kAmountColumns.size(); ++i) {
        AccountAmount(sums_[i], grid_.TextMatrix(row, kAmountColumns[i]), sign);
    }
}

void Totals::SetCell(std::int32_t row, std::int32_t col, std::wstring_view text) {
    if (!AffectsTotals(col)) {
        grid_.SetTextMatrix(row, col, text);
        return;
    }
    if (grid_.TextMatrix(row, col) == text) return;
    // an amount concerns its own column, the article number decides for both
    const auto account = [&](int sign) {
        if (col == column::kArtNr) return Account(row, sign);
        if (!Counts(row)) return;
        AccountAmount(sums_[col == column::kGesamtAts ? 0 : 1], grid_.TextMatrix(row, col), sign);
    };
    account(-1);
    try {
        grid_.SetTextMatrix(row, col, text);
    } catch (...) {
        account(+1);
        throw;
    }
    account(+1);
}

void Totals::InsertRows(std::int32_t index, std::int32_t count) {
    if (index < 1 || index > grid_.Rows() - 1) {
        RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    }
    grid_.AddItem(index, count);
}

void Totals::RemoveRows(std::int32_t first, std::int32_t count) {
    if (count < 1) return;
    const std::int32_t end = first + count;
    const auto account = [&](int sign) {
        for (std::int32_t row = first; row < end; ++row) Account(row, sign);
        if (end == grid_.Rows()) Account(first - 1, sign);
    };
    if (first < 1 || end > grid_.Rows()) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    if (end == grid_.Rows()) WritePending();  // to the row that is the last one still
    account(-1);
    try {
        grid_.RemoveItem(first, count);
    } catch (...) {
        account(+1);
        throw;
    }
}

void Totals::MoveRows(std::int32_t first, std::int32_t count, std::int32_t to) {
    const std::int32_t limit = grid_.Rows() - 1;
    if (first < 1 || to < 1 || count < 0 || first + count > limit || to + count > limit) {
        RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    }
    grid_.MoveRows(first, count, to);
}

void Totals::SetLineTotal(std::int32_t row, double menge, std::int32_t price_column,
                          std::int32_t total_column) {
    const double product = menge * text_.ToNumber(grid_.TextMatrix(row, price_column));
    if (!std::isfinite(product)) RaiseRuntimeError(runtime_error::kOverflow);
    text_.WriteAmount(product, amount_);
    SetCell(row, total_column, amount_);
}

double Totals::Walk(std::int32_t col) const {
    double sum = 0;
    for (std::int32_t row = 1; row <= grid_.Rows() - 2; ++row) {
        if (!Counts(row)) continue;
        sum += text_.ToNumber(grid_.TextMatrix(row, col));
        if (!std::isfinite(sum)) RaiseRuntimeError(runtime_error::kOverflow);
    }
    return sum;
}

void Totals::Recalculate(std::int32_t row) {
    if (!grid_.TextMatrix(row, column::kArtNr).empty()) {
        const double menge = text_.ToNumber(grid_.TextMatrix(row, column::kMenge));
        SetLineTotal(row, menge, column::kPreisAts, column::kGesamtAts);
        SetLineTotal(row, menge, column::kPreisEuro, column::kGesamtEuro);
    }
    if (sums_[0].inexact == 0 && sums_[1].inexact == 0 &&
        (sums_[0].unreadable != 0 || sums_[1].unreadable != 0)) {
        RaiseRuntimeError(runtime_error::kTypeMismatch);
    }
    if (deferred_ && sums_[0].Plain() && sums_[1].Plain()) {
        pending_ = true;
        return;
    }
    WriteTotalsRow();
}

void Totals::Defer(bool deferred) {
    deferred_ = deferred;
    if (!deferred) WritePending();
}

void Totals::WritePending() {
    if (pending_) WriteTotalsRow();
}

void Totals::WriteTotalsRow() {
    pending_ = false;
    std::array<double, 2> values{};
    for (std::size_t i = 0; i < kAmountColumns.size(); ++i) {
        values[i] = sums_[i].Plain() ? sums_[i].Value() : Walk(kAmountColumns[i]);
    }
    for (std::size_t i = 0; i < kAmountColumns.size(); ++i) {
        SetCell(grid_.Rows() - 1, kAmountColumns[i],
                values[i] == 0 ? std::wstring() : text_.FormatAmount(values[i]));
    }
}

void Totals::Recount() {
    sums_ = {};
    for (std::int32_t row = 1; row <= grid_.Rows() - 2; ++row) Account(row, +1);
}

}  // namespace demovex
