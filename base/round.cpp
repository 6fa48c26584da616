#include "base/round.h"

#include <cmath>

#include "base/error.h"

namespace demovex {

double NearestEven(double value) {
    const double floor = std::floor(value);
    const double rest = value - floor;
    if (rest < 0.5) return floor;
    if (rest > 0.5) return floor + 1;
    return std::fmod(floor, 2.0) == 0.0 ? floor : floor + 1;
}

std::int32_t RoundToInt32(double value) {
    const double nearest = NearestEven(value);
    // written so that a NaN fails, too
    if (!(nearest >= -2147483648.0 && nearest <= 2147483647.0)) {
        RaiseRuntimeError(runtime_error::kOverflow);
    }
    return static_cast<std::int32_t>(nearest);
}

double RoundToHundredths(double value) {
    const double hundredths = value * 100.0;
    // from 2^52 on every double is integral
    if (!(std::fabs(hundredths) < 4503599627370496.0)) return value;
    return NearestEven(hundredths) / 100.0;
}

}  // namespace demovex
