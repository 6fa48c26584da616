// What becomes different when one article master takes another's place.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "catalog/artikel_record.h"
#include "tools/price.h"

namespace demovex::tools {

enum class ChangeKind { kNew, kGone, kDearer, kCheaper, kOtherPrice, kOtherText };

struct Change {
    ChangeKind kind;
    const ArtikelRecord* before;  // null for a new article
    const ArtikelRecord* after;   // null for one that is gone
};

struct ChangeSums {
    std::size_t added = 0, gone = 0, dearer = 0, cheaper = 0;
    std::size_t other_price = 0;  // one of both prices is no number
    std::size_t other_text = 0;   // the description alone
    std::size_t same = 0;
    Amount before = 0, after = 0;  // sums of the prices that are numbers

    bool Any() const { return added + gone + dearer + cheaper + other_price + other_text != 0; }
};

// Compares article by article; `tell` gets each change in the order of the numbers (an article
// whose price and description change counts with its price). Records need not be in order: both
// lists are sorted here.
ChangeSums CompareMasters(std::vector<ArtikelRecord>& before, std::vector<ArtikelRecord>& after,
                          DecimalSign sign, const std::function<void(const Change&)>& tell);

// "up", "down", "new" ...: the change as a line of text in UTF-8, fields separated by tabs: what,
// number, description, price before, price after. A changed description is followed by the old one.
std::string ChangeLine(const Change& change);

}  // namespace demovex::tools
