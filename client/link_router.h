// Which of the links that a user follows are the basket's own, and what they order.
#pragma once

#include <optional>
#include <string_view>

#include "platform/text.h"

namespace demovex {

// An order link is this address followed by a product number.
inline constexpr std::wstring_view kBasketPrefix =
    L"http://www.vexmart.example/vex/basket.html?prodno=";

// The product number of an order link: everything after the prefix as it stands, with no decoding,
// no trimming and no cut at a further "&"; it may be empty. Nothing for any other link. The prefix
// is compared as text, letter case ignored. The result points into `url`. The cost does not grow
// with the length of the link.
std::optional<std::wstring_view> ProductNumber(std::wstring_view url, const ITextService& text);

}  // namespace demovex
