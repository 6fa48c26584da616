#include "platform/settings_win.h"

#include <windows.h>

#include <memory>
#include <utility>

#include "base/error.h"

namespace demovex {
namespace {

struct KeyCloser {
    using pointer = HKEY;
    void operator()(HKEY key) const noexcept { RegCloseKey(key); }
};
using UniqueKey = std::unique_ptr<HKEY, KeyCloser>;

}  // namespace

WinSettings::WinSettings() : WinSettings(L"Software\\VB and VBA Program Settings\\DemoVexClient") {}

WinSettings::WinSettings(std::wstring application_key)
    : application_key_(std::move(application_key)) {}

std::wstring WinSettings::SectionKey(std::wstring_view section) const {
    std::wstring key = application_key_ + L'\\';
    key += section;
    return key;
}

std::wstring WinSettings::Get(std::wstring_view section, std::wstring_view key,
                              std::wstring_view fallback) const {
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, SectionKey(section).c_str(), 0, KEY_QUERY_VALUE,
                      &opened) != ERROR_SUCCESS) {
        return std::wstring(fallback);
    }
    const UniqueKey owner(opened);
    const std::wstring name(key);
    // the value may grow between asking for its size and reading it
    for (DWORD bytes = 256;;) {
        std::wstring value(bytes / sizeof(wchar_t) + 1, L'\0');
        DWORD type = 0;
        DWORD got = bytes;
        const LONG result = RegQueryValueExW(opened, name.c_str(), nullptr, &type,
                                             reinterpret_cast<BYTE*>(value.data()), &got);
        if (result == ERROR_MORE_DATA && got > bytes) {
            bytes = got;
            continue;
        }
        if (result != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ)) {
            return std::wstring(fallback);
        }
        value.resize(got / sizeof(wchar_t));
        // stored with a terminator as a rule, but nobody has to
        if (const std::size_t end = value.find(L'\0'); end != std::wstring::npos) value.resize(end);
        return value;
    }
}

void WinSettings::Set(std::wstring_view section, std::wstring_view key, std::wstring_view value) {
    HKEY opened = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, SectionKey(section).c_str(), 0, nullptr, 0,
                        KEY_SET_VALUE, nullptr, &opened, nullptr) != ERROR_SUCCESS) {
        RaiseRuntimeError(runtime_error::kInvalidProcedureCall);
    }
    const UniqueKey owner(opened);
    const std::wstring name(key), text(value);
    const std::size_t bytes = (text.size() + 1) * sizeof(wchar_t);
    if (text.size() > 0x3FFFFFFF ||
        RegSetValueExW(opened, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                       static_cast<DWORD>(bytes)) != ERROR_SUCCESS) {
        RaiseRuntimeError(runtime_error::kInvalidProcedureCall);
    }
}

}  // namespace demovex
