#include "client/com_result.h"

namespace demovex {

namespace {

// Failure, facility "control", as automation has always reported run-time errors.
constexpr std::uint32_t kControlFailure = 0x800A0000U;

}  // namespace

ComResult ComResultOf(std::int32_t error_number) noexcept {
    if (error_number < 0) return error_number;
    if (error_number == 0 || error_number > 0xFFFF) {
        error_number = runtime_error::kInvalidProcedureCall;
    }
    return static_cast<ComResult>(kControlFailure + static_cast<std::uint32_t>(error_number));
}

std::int32_t ErrorNumberOf(ComResult result) noexcept {
    const auto bits = static_cast<std::uint32_t>(result);
    if ((bits & 0xFFFF0000U) == kControlFailure && (bits & 0xFFFFU) != 0) {
        return static_cast<std::int32_t>(bits & 0xFFFFU);
    }
    return result;
}

ComFailure DescribeCurrentException(std::wstring_view default_source) {
    const CaughtError error = CurrentError();
    return {ComResultOf(error.number),
            std::wstring(error.source.empty() ? default_source : error.source),
            std::wstring(error.description)};
}

}  // namespace demovex
