// The one exception type inside the component: number, source, description.
//
// Run-time errors carry their classic numbers (5, 6, 9, 11, 13, 53, ...) and the standard
// description; the component's own errors carry kOwnError and say where they were raised. At every
// edge where the system or a host calls us, whatever was raised becomes a report once, by
// CurrentError. Inside, an error is caught where it says something that is not wrong (a text that
// is no number), or where what was begun must be finished whatever becomes of a part of it.
#pragma once

#include <cstdint>
#include <exception>
#include <new>
#include <optional>
#include <string>
#include <string_view>

namespace demovex {

// Number of the errors that the component's own classes raise.
inline constexpr std::int32_t kOwnError = -1;

// Run-time error numbers, as the host sees them (0x800A0000 + number).
namespace runtime_error {
inline constexpr std::int32_t kInvalidProcedureCall = 5;
inline constexpr std::int32_t kOverflow = 6;
inline constexpr std::int32_t kOutOfMemory = 7;
inline constexpr std::int32_t kSubscriptOutOfRange = 9;
inline constexpr std::int32_t kDivisionByZero = 11;
inline constexpr std::int32_t kTypeMismatch = 13;
inline constexpr std::int32_t kBadFileName = 52;
inline constexpr std::int32_t kFileNotFound = 53;
inline constexpr std::int32_t kDeviceIoError = 57;
inline constexpr std::int32_t kDiskFull = 61;
inline constexpr std::int32_t kTooManyFiles = 67;
inline constexpr std::int32_t kPermissionDenied = 70;
inline constexpr std::int32_t kPathFileAccessError = 75;
inline constexpr std::int32_t kPathNotFound = 76;
inline constexpr std::int32_t kObjectNotSet = 91;
inline constexpr std::int32_t kPrinterError = 482;
inline constexpr std::int32_t kCantOpenClipboard = 521;
// The grid's refusal to remove its last non-fixed row.
inline constexpr std::int32_t kCannotRemoveLastRow = 30016;
}  // namespace runtime_error

class Error : public std::exception {
  public:
    // `source` may be empty; `description` is shown to users and handed to the host as it stands.
    Error(std::int32_t number, std::wstring source, std::wstring description);

    std::int32_t number() const noexcept { return number_; }
    const std::wstring& source() const noexcept { return source_; }
    const std::wstring& description() const noexcept { return description_; }
    // For test failures and debuggers only; never shown.
    const char* what() const noexcept override { return what_.c_str(); }

  private:
    std::int32_t number_;
    std::wstring source_;
    std::wstring description_;
    std::string what_;
};

// The standard description of a run-time error, in English; "Application-defined or object-defined
// error" for a number that has none.
[[nodiscard]] std::wstring_view StandardDescription(std::int32_t number) noexcept;

// What is told of an exception at an edge. The texts are those of the exception being handled, or
// standing ones: they last until its handler ends.
struct CaughtError {
    std::int32_t number = 0;
    std::wstring_view source;
    std::wstring_view description;
};
// The exception being handled: an Error as it is, memory that ran out as error 7, anything else as
// error 5. Call it from a handler only.
[[nodiscard]] CaughtError CurrentError() noexcept;

// Runs `step` and says what went wrong, when that was an Error or memory that ran out; anything
// else passes on.
template <typename Step>
[[nodiscard]] std::optional<std::wstring> FailureOf(Step&& step) {
    try {
        step();
        return std::nullopt;
    } catch (const Error& error) {
        return error.description();
    } catch (const std::bad_alloc&) {
        return std::wstring(StandardDescription(runtime_error::kOutOfMemory));
    }
}

// Raises the run-time error `number` with its standard description and an empty source.
[[noreturn]] void RaiseRuntimeError(std::int32_t number);

// Raises kOwnError with the given source and description.
[[noreturn]] void RaiseOwnError(std::wstring_view source, std::wstring_view description);

}  // namespace demovex
