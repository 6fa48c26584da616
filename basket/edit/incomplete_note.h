// Tells the user in the note which line keeps the basket from being reckoned, once per line.
#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "basket/state.h"

namespace demovex {

class IncompleteNote {
  public:
    // Listens to the table. `context` outlives the note.
    explicit IncompleteNote(BasketContext& context);
    ~IncompleteNote();
    IncompleteNote(const IncompleteNote&) = delete;
    IncompleteNote& operator=(const IncompleteNote&) = delete;

  private:
    // A recalculation met an incomplete line: `row`, or with 0 another one than its own.
    void Tell(std::int32_t row);
    // The basket is another one.
    void Forget();

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
    std::set<Line> told_;
    std::int64_t told_amounts_ = 0;  // unreadable amounts of the lines told
};

}  // namespace demovex
