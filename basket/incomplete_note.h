// Tells the user in the note which line keeps the basket from being reckoned, once per line.
#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "basket/basket_state.h"
#include "basket/totals.h"

namespace demovex {

class IncompleteNote {
  public:
    // Both outlive the note.
    IncompleteNote(BasketContext& context, const Totals& totals)
        : context_(context), totals_(totals) {}

    // A recalculation met an incomplete line: `row`, or with 0 another one than its own.
    void Tell(std::int32_t row);
    // A recalculation met none.
    void AllComplete() { told_amounts_ = 0; }
    // The basket is another one.
    void Forget();

  private:
    enum class Lack : std::uint8_t { kArticle, kPrice, kQuantity };
    // A line is known by its number: its row changes with every row before it.
    struct Line {
        std::wstring number;
        Lack lack = Lack::kArticle;
        friend bool operator<(const Line& a, const Line& b) {
            return a.number != b.number ? a.number < b.number : a.lack < b.lack;
        }
    };

    Line LineOf(std::int32_t row) const;
    std::int32_t LastUnreadableRow() const;

    BasketContext& context_;
    const Totals& totals_;
    std::set<Line> told_;
    std::int64_t told_amounts_ = 0;  // unreadable amounts of the lines told
};

}  // namespace demovex
