#include "client/link_router.h"

namespace demovex {

std::optional<std::wstring_view> ProductNumber(std::wstring_view url, const ITextService& text) {
    if (url.size() < kBasketPrefix.size()) return std::nullopt;
    const std::wstring_view head = url.substr(0, kBasketPrefix.size());
    // links come as the catalogue writes them, so the costly comparison is hardly ever made
    if (head != kBasketPrefix && text.CompareText(head, kBasketPrefix) != 0) return std::nullopt;
    return url.substr(kBasketPrefix.size());
}

}  // namespace demovex
