// OrderTable: the sums of the amounts, and the totals that are shown.
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "base/error.h"
#include "basket/rows/columns.h"
#include "basket/rows/order_table.h"

namespace demovex {
namespace {

constexpr std::array<std::int32_t, 2> kAmountColumns = {column::kGesamtAts, column::kGesamtEuro};
constexpr std::int64_t kBillion = 1'000'000'000;
// Up to here every whole number of hundredths is a double of its own.
constexpr double kLargestExact = 9007199254740992.0;

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

bool AffectsTotals(std::int32_t col) {
    return col == column::kArtNr || col == column::kGesamtAts || col == column::kGesamtEuro;
}

}  // namespace

double OrderTable::Sum::Value() const {
    const std::int64_t high = billions + rest / kBillion;
    const std::int64_t low = rest % kBillion;
    constexpr std::int64_t kLimit = 9'000'000'000;
    if (high > -kLimit && high < kLimit) return static_cast<double>(high * kBillion + low) / 100.0;
    return static_cast<double>(high) * 1e7 + static_cast<double>(low) / 100.0;
}

bool OrderTable::Counts(std::int32_t row) const {
    return row >= 1 && row <= LastRow() && IsArticleRow(row);
}

void OrderTable::AccountAmount(Sum& sum, std::wstring_view text, int sign) const {
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

void OrderTable::Account(std::int32_t row, int sign) {
    if (!Counts(row)) return;
    for (std::size_t i = 0; i < kAmountColumns.size(); ++i) {
        AccountAmount(sums_[i], grid_.TextMatrix(row, kAmountColumns[i]), sign);
    }
}

void OrderTable::WriteCounted(std::int32_t row, std::int32_t col, std::wstring_view text) {
    if (!AffectsTotals(col)) {
        Write(row, col, text);
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
        Write(row, col, text);
    } catch (...) {
        account(+1);
        throw;
    }
    account(+1);
}

void OrderTable::RemoveRows(std::int32_t first, std::int32_t count) {
    if (count < 1) return;
    const std::int32_t end = first + count;
    const auto account = [&](int sign) {
        for (std::int32_t row = first; row < end; ++row) Account(row, sign);
        if (end == grid_.Rows()) Account(first - 1, sign);
    };
    if (first < 1 || end > grid_.Rows()) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    const bool last = end == grid_.Rows();
    account(-1);
    try {
        DropRows(first, count);
    } catch (...) {
        account(+1);
        throw;
    }
    if (last) {
        has_totals_row_ = false;
        pending_ = false;  // those were the totals of the row that has gone
    }
    if (!loading_) Renumber(first);
}

void OrderTable::RestoreTotalsRow() {
    if (loading_ || has_totals_row_) return;
    const std::int32_t row = grid_.Rows();
    AddRows(row, 1);
    Account(row - 1, +1);
    has_totals_row_ = true;
    MarkTotalsRow();
    Renumber(1);
    try {
        // the row above stood in the totals' place and may show their amounts
        Recalculate(row - 1);
    } catch (const Error&) {  // whoever recalculates next meets it again
    }
}

void OrderTable::SetLineTotal(std::int32_t row, double menge, std::int32_t price_column,
                              std::int32_t total_column) {
    const double product = menge * text_.ToNumber(grid_.TextMatrix(row, price_column));
    if (!std::isfinite(product)) RaiseRuntimeError(runtime_error::kOverflow);
    text_.WriteAmount(product, amount_);
    WriteCounted(row, total_column, amount_);
}

double OrderTable::Walk(std::int32_t col) const {
    double sum = 0;
    for (std::int32_t row = 1; row <= LastRow(); ++row) {
        if (!Counts(row)) continue;
        const std::wstring_view amount = grid_.TextMatrix(row, col);
        if (amount.empty()) continue;
        try {
            sum += text_.ToNumber(amount);
        } catch (const Error& error) {
            if (error.number() != runtime_error::kTypeMismatch) throw;
        }
        if (!std::isfinite(sum)) RaiseRuntimeError(runtime_error::kOverflow);
    }
    return sum;
}

void OrderTable::Recalculate(std::int32_t row) {
    try {
        RecalculateRow(row);
    } catch (const IncompleteLine& line) {
        if (listener_.recalculated) listener_.recalculated(&line);
        throw;
    }
    if (listener_.recalculated) listener_.recalculated(nullptr);
}

bool OrderTable::TryRecalculate(std::int32_t row) {
    try {
        Recalculate(row);
    } catch (const IncompleteLine&) {
        return false;
    }
    return true;
}

void OrderTable::RecalculateRow(std::int32_t row) {
    // Everything that can be written is written before the first error is raised.
    std::int32_t own_error = 0;
    const auto attempt = [&own_error](auto&& step) {
        try {
            step();
        } catch (const Error& error) {
            const std::int32_t number = error.number();
            if (number != runtime_error::kTypeMismatch && number != runtime_error::kOverflow) {
                throw;
            }
            if (own_error == 0) own_error = number;
        }
    };
    if (IsArticleRow(row)) {
        attempt([&] {
            const double menge = text_.ToNumber(grid_.TextMatrix(row, column::kMenge));
            attempt([&] { SetLineTotal(row, menge, column::kPreisAts, column::kGesamtAts); });
            attempt([&] { SetLineTotal(row, menge, column::kPreisEuro, column::kGesamtEuro); });
        });
    }
    bool written = true;
    if (loading_ && Exact()) {
        pending_ = true;
    } else {
        written = WriteTotalsRow();
    }
    if (own_error == runtime_error::kOverflow || (own_error == 0 && !written)) {
        RaiseRuntimeError(runtime_error::kOverflow);
    }
    if (own_error != 0) throw IncompleteLine(row);
    if (Unreadable() != 0) throw IncompleteLine(0);
}

void OrderTable::BeginLoading() {
    loading_ = true;
    articles_.BeginSeries();
}

void OrderTable::EndLoading() noexcept {
    articles_.EndSeries();
    loading_ = false;
    try {
        if (pending_) WriteTotalsRow();
    } catch (...) {  // the totals row keeps what it shows; the load has its own error to tell
    }
}

bool OrderTable::WriteTotalsRow() {
    pending_ = false;
    bool written = true;
    for (std::size_t i = 0; i < kAmountColumns.size(); ++i) {
        double value = 0;
        try {
            value = sums_[i].inexact == 0 ? sums_[i].Value() : Walk(kAmountColumns[i]);
        } catch (const Error& error) {
            if (error.number() != runtime_error::kOverflow) throw;
            written = false;
        }
        if (value == 0) {
            amount_.clear();
        } else {
            text_.WriteAmount(value, amount_);
        }
        WriteCounted(TotalsRow(), kAmountColumns[i], amount_);
    }
    return written;
}

bool OrderTable::Reads(std::int32_t row) const {
    for (const std::int32_t col : kAmountColumns) {
        Sum sum;
        AccountAmount(sum, grid_.TextMatrix(row, col), +1);
        if (sum.unreadable != 0) return false;
    }
    return true;
}

void OrderTable::Reformat(const std::function<void()>& change) {
    static constexpr std::array<std::int32_t, 5> kTexts = {column::kMenge, column::kPreisAts,
                                                           column::kPreisEuro, column::kGesamtAts,
                                                           column::kGesamtEuro};
    const std::int32_t rows = grid_.Rows();
    const auto number = [this](std::wstring_view text) {
        return text.empty() ? kNoNumber : text_.TryNumber(text).value_or(kNoNumber);
    };
    std::vector<double> values;
    try {
        values.reserve(kTexts.size() * static_cast<std::size_t>(rows - 1));
        for (std::int32_t row = 1; row < rows; ++row) {
            for (const std::int32_t col : kTexts) {
                values.push_back(number(grid_.TextMatrix(row, col)));
            }
        }
    } catch (...) {
        change();
        Recount();
        throw;
    }
    change();
    try {
        const double* value = values.data();
        for (std::int32_t row = 1; row < rows; ++row) {
            for (const std::int32_t col : kTexts) {
                const double old = *value++;
                if (std::isnan(old)) continue;
                if (col != column::kMenge) {
                    text_.WriteAmount(old, amount_);
                } else if (number(grid_.TextMatrix(row, col)) != old) {
                    amount_ = text_.FromNumber(old);
                } else {
                    continue;  // a quantity stays as it was typed
                }
                Write(row, col, amount_);
            }
        }
    } catch (...) {
        Recount();
        throw;
    }
    Recount();
    if (has_totals_row_) WriteTotalsRow();
}

void OrderTable::Recount() {
    sums_ = {};
    for (std::int32_t row = 1; row <= LastRow(); ++row) Account(row, +1);
}

}  // namespace demovex
