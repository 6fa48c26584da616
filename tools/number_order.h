// The order of article numbers: the user's collation, letter case ignored.
#pragma once

#include <optional>
#include <string_view>

namespace demovex::tools {

// Negative, zero or positive as number `a` sorts before, equal to or after `b`, letter case
// ignored. The Windows program asks the system; elsewhere digits come before letters and both in
// their usual order, which is right for numbers made of digits and plain letters.
int CompareNumbers(std::wstring_view a, std::wstring_view b);
// Whether CompareNumbers is right for this number, bytes of a `Nr` field, on this system.
bool OrderIsKnown(std::string_view number);

// The same for the bytes of two trimmed `Nr` fields; quick where QuickOrder knows.
int CompareNumberBytes(std::string_view a, std::string_view b);

// -1, 0 or 1 where every locale orders the two alike, nothing where the system must be asked.
// Behind what both begin with, letter for letter, digits decide among themselves and stand before
// plain letters, provided that a digit or nothing stands before: behind a letter, a letter could
// belong to it (as "ng" is one in Welsh).
std::optional<int> QuickOrder(std::string_view a, std::string_view b) noexcept;

}  // namespace demovex::tools
