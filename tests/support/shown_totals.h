// What the totals row of a basket must show.
#pragma once

#include <cmath>
#include <cstdint>
#include <optional>
#include <string>

#include "tests/support/basket_fixture.h"

namespace demovex {

// False when a load of doubled numbers has taken it away.
inline bool HasTotalsRow(const BasketFixture& basket) {
    return basket.grid.CellBold(basket.grid.Rows() - 1, column::kGesamtAts);
}

// The sum of the line totals of column `col` that read as numbers, as text; nothing when it is
// beyond what fifteen digits can tell.
inline std::optional<std::wstring> SumOfLines(const BasketFixture& basket, std::int32_t col) {
    long double sum = 0;
    for (std::int32_t row = 1; row <= basket.Lines(); ++row) {
        const std::wstring_view amount = basket.grid.TextMatrix(row, col);
        if (basket.grid.TextMatrix(row, column::kArtNr).empty() || amount.empty()) continue;
        sum += basket.text.ToNumber(amount);
    }
    const double plain = static_cast<double>(sum);
    if (!(std::abs(plain) <= 1e13)) return std::nullopt;
    const double whole = std::round(plain * 100) / 100;
    return whole == 0 ? std::wstring() : basket.text.FormatAmount(whole);
}

}  // namespace demovex
