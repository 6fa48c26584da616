// Prices as the article master holds them: texts that the basket reads with the user's locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace demovex::tools {

enum class DecimalSign : char { kComma = ',', kPoint = '.' };

// The sign that this system's user writes; a comma where there is no Windows to ask.
DecimalSign SystemDecimalSign();

// An amount in ten-thousandths, which holds every price exactly.
using Amount = std::int64_t;

// What `text` (Windows-1252, without blanks around it) means when decimals stand behind `sign`:
// digits, a minus before them if need be, groups of three set apart by the other sign, a blank, a
// no-break space or an apostrophe, and at most four decimals. Nothing for any other text; "12.50"
// is no number where decimals stand behind a comma, while "1.250" is 1250.
std::optional<Amount> ReadPrice(std::string_view text, DecimalSign sign);

// The amount without groups, with two decimals, or four where it has more; none for whole ones.
// Such a text reads alike in every locale with that sign, whatever sets its thousands apart.
std::string WritePrice(Amount amount, DecimalSign sign);

// The amount with groups and at least two decimals, for people.
std::string ShowAmount(Amount amount, DecimalSign sign);

}  // namespace demovex::tools
