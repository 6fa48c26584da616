// 32-bit integer arithmetic that raises error 6 ("Overflow") instead of wrapping, and error 11
// ("Division by zero"). Computed in 64 bits, so that no compiler builtin is needed.
#pragma once

#include <cstdint>
#include <limits>

#include "base/error.h"

namespace demovex {

// `wide` as 32 bits; raises 6 when it does not fit.
constexpr std::int32_t CheckedNarrow(std::int64_t wide) {
    if (wide < std::numeric_limits<std::int32_t>::min() ||
        wide > std::numeric_limits<std::int32_t>::max()) {
        RaiseRuntimeError(runtime_error::kOverflow);
    }
    return static_cast<std::int32_t>(wide);
}

constexpr std::int32_t CheckedAdd(std::int32_t a, std::int32_t b) {
    return CheckedNarrow(std::int64_t{a} + b);
}

constexpr std::int32_t CheckedSub(std::int32_t a, std::int32_t b) {
    return CheckedNarrow(std::int64_t{a} - b);
}

constexpr std::int32_t CheckedMul(std::int32_t a, std::int32_t b) {
    return CheckedNarrow(std::int64_t{a} * b);
}

// Integer division that drops the remainder; raises 11 for b = 0.
constexpr std::int32_t CheckedDiv(std::int32_t a, std::int32_t b) {
    if (b == 0) RaiseRuntimeError(runtime_error::kDivisionByZero);
    return CheckedNarrow(std::int64_t{a} / b);
}

// Remainder with the sign of a; raises 11 for b = 0.
constexpr std::int32_t CheckedMod(std::int32_t a, std::int32_t b) {
    if (b == 0) RaiseRuntimeError(runtime_error::kDivisionByZero);
    return static_cast<std::int32_t>(std::int64_t{a} % b);
}

}  // namespace demovex
