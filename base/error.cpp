#include "base/error.h"

#include <utility>

namespace demovex {

Error::Error(std::int32_t number, std::wstring source, std::wstring description)
    : number_(number), source_(std::move(source)), description_(std::move(description)) {
    what_ = "error " + std::to_string(number_) + ": ";
    for (wchar_t c : description_) what_ += c < 128 ? static_cast<char>(c) : '?';
}

std::wstring_view StandardDescription(std::int32_t number) noexcept {
    switch (number) {
        case runtime_error::kInvalidProcedureCall:
            return L"Invalid procedure call or argument";
        case runtime_error::kOverflow:
            return L"Overflow";
        case runtime_error::kOutOfMemory:
            return L"Out of memory";
        case runtime_error::kSubscriptOutOfRange:
            return L"Subscript out of range";
        case runtime_error::kDivisionByZero:
            return L"Division by zero";
        case runtime_error::kTypeMismatch:
            return L"Type mismatch";
        case runtime_error::kBadFileName:
            return L"Bad file name or number";
        case runtime_error::kFileNotFound:
            return L"File not found";
        case runtime_error::kDeviceIoError:
            return L"Device I/O error";
        case runtime_error::kDiskFull:
            return L"Disk full";
        case runtime_error::kTooManyFiles:
            return L"Too many files";
        case runtime_error::kPermissionDenied:
            return L"Permission denied";
        case runtime_error::kPathFileAccessError:
            return L"Path/File access error";
        case runtime_error::kPathNotFound:
            return L"Path not found";
        case runtime_error::kObjectNotSet:
            return L"Object variable or With block variable not set";
        case runtime_error::kPrinterError:
            return L"Printer error";
        case runtime_error::kCantOpenClipboard:
            return L"Can't open Clipboard";
        case runtime_error::kCannotRemoveLastRow:
            return L"Cannot remove last non-fixed row";
        default:
            return L"Application-defined or object-defined error";
    }
}

CaughtError CurrentError() noexcept {
    const auto standard = [](std::int32_t number) {
        return CaughtError{number, {}, StandardDescription(number)};
    };
    try {
        throw;
    } catch (const Error& error) {
        return {error.number(), error.source(), error.description()};
    } catch (const std::bad_alloc&) {
        return standard(runtime_error::kOutOfMemory);
    } catch (...) {
        return standard(runtime_error::kInvalidProcedureCall);
    }
}

void RaiseRuntimeError(std::int32_t number) {
    throw Error(number, {}, std::wstring(StandardDescription(number)));
}

void RaiseOwnError(std::wstring_view source, std::wstring_view description) {
    throw Error(kOwnError, std::wstring(source), std::wstring(description));
}

}  // namespace demovex
