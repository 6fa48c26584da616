#include "platform/path_win.h"

#include <windows.h>

#include "base/error.h"
#include "platform/system_error_win.h"

namespace demovex {
namespace {

// Folders may have 248 characters only, so that a name of 8.3 fits behind.
constexpr std::size_t kShortPath = 247;
constexpr std::size_t kLongestPath = 32'767;

}  // namespace

std::wstring SystemPath(std::wstring_view path) {
    if (path.find(L'\0') != std::wstring_view::npos) {
        RaiseRuntimeError(runtime_error::kBadFileName);
    }
    if (path.size() <= kShortPath || path.substr(0, 4) == L"\\\\?\\") return std::wstring(path);
    if (path.size() > kLongestPath) RaiseRuntimeError(runtime_error::kPathFileAccessError);
    // the prefix turns off all tidying (slashes, dots, relative parts), so that is done before
    const std::wstring given(path);
    std::wstring full(kLongestPath + 1, L'\0');
    const DWORD length =
        GetFullPathNameW(given.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    if (length == 0) RaiseFileError(GetLastError());
    if (length >= full.size()) RaiseRuntimeError(runtime_error::kPathFileAccessError);
    full.resize(length);
    if (full.substr(0, 4) == L"\\\\.\\") return full;
    if (full.substr(0, 2) == L"\\\\") {
        full.replace(0, 2, L"\\\\?\\UNC\\");
    } else {
        full.insert(0, L"\\\\?\\");
    }
    if (full.size() > kLongestPath) RaiseRuntimeError(runtime_error::kPathFileAccessError);
    return full;
}

NoSystemDialogs::NoSystemDialogs() noexcept {
    DWORD before = 0;
    set_ = SetThreadErrorMode(GetThreadErrorMode() | SEM_FAILCRITICALERRORS, &before) != FALSE;
    before_ = before;
}

NoSystemDialogs::~NoSystemDialogs() {
    if (set_) SetThreadErrorMode(before_, nullptr);
}

}  // namespace demovex
