// Rounding with halves to the even neighbour, independent of the floating-point environment.
#pragma once

#include <cstdint>

namespace demovex {

// The integral double nearest to `value`, halves to even.
double NearestEven(double value);

// The integer nearest to `value`, halves to even; raises 6 when it does not fit into 32 bits or
// `value` is not a number.
std::int32_t RoundToInt32(double value);

// `value` rounded to two decimals, halves to even, as the platform's Round(value, 2) does: the
// product value * 100 is rounded to an integer and divided by 100. Values too large for hundredths
// are returned as they are.
double RoundToHundredths(double value);

}  // namespace demovex
