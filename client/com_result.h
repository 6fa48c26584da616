// How an error's number becomes the result code that a host sees, and back.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/error.h"

namespace demovex {

// Result codes as plain numbers (the system's HRESULT is a signed 32-bit integer).
using ComResult = std::int32_t;

inline constexpr ComResult kComOk = 0;

// 0x800A0000 + number for run-time errors 1 to 65535; a number below 0 is its own result. Any other
// number is answered like 5, since no result code is reserved for it.
ComResult ComResultOf(std::int32_t error_number) noexcept;

// The error number behind a failed result code: the inverse of ComResultOf.
std::int32_t ErrorNumberOf(ComResult result) noexcept;

// What a host is told about a failed call.
struct ComFailure {
    ComResult result = kComOk;
    std::wstring source;
    std::wstring description;
};

// The exception being handled as a failure: an Error with its own texts (`default_source` where it
// names none), memory that ran out as error 7, anything else as error 5. Call it from a catch
// block only.
ComFailure DescribeCurrentException(std::wstring_view default_source);

}  // namespace demovex
