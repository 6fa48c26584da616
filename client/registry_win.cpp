#include "client/registry_win.h"

#include <utility>

#include "base/error.h"

namespace demovex {

namespace {

class Key {
  public:
    Key() noexcept = default;
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() {
        if (key_) RegCloseKey(key_);
    }
    HKEY Get() const noexcept { return key_; }
    HKEY* Out() noexcept { return &key_; }

  private:
    HKEY key_ = nullptr;
};

std::wstring FullKey(std::wstring_view key) {
    return std::wstring(L"Software\\Classes\\").append(key);
}

void Require(LSTATUS status) {
    if (status != ERROR_SUCCESS) RaiseRuntimeError(runtime_error::kPermissionDenied);
}

// Deletes what is below an open key, then the caller deletes the key itself. Keys are deleted one
// by one from the deepest up, since older systems delete only keys that have none below them.
LSTATUS DeleteBelow(HKEY key) {
    std::wstring name(256, L'\0');  // the longest name of a key has 255 characters
    for (;;) {
        auto length = static_cast<DWORD>(name.size());
        LSTATUS status =
            RegEnumKeyExW(key, 0, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) return ERROR_SUCCESS;
        if (status != ERROR_SUCCESS) return status;
        {
            Key child;
            status = RegOpenKeyExW(key, name.c_str(), 0, KEY_READ | DELETE, child.Out());
            if (status == ERROR_SUCCESS) status = DeleteBelow(child.Get());
        }
        if (status == ERROR_SUCCESS) status = RegDeleteKeyW(key, name.c_str());
        if (status != ERROR_SUCCESS) return status;
    }
}

}  // namespace

RegistryClasses::RegistryClasses(Place place) noexcept
    : root_(place == Place::kMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER) {}

void RegistryClasses::SetString(std::wstring_view key, std::wstring_view name,
                                std::wstring_view value) {
    Key open;
    Require(RegCreateKeyExW(root_, FullKey(key).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                            KEY_SET_VALUE, nullptr, open.Out(), nullptr));
    const std::wstring value_name(name);
    const std::wstring text(value);
    const std::size_t bytes = (text.size() + 1) * sizeof(wchar_t);
    Require(RegSetValueExW(open.Get(), value_name.empty() ? nullptr : value_name.c_str(), 0, REG_SZ,
                           reinterpret_cast<const BYTE*>(text.c_str()), static_cast<DWORD>(bytes)));
}

void RegistryClasses::DeleteTree(std::wstring_view key) {
    const std::wstring full = FullKey(key);
    {
        Key open;
        const LSTATUS status = RegOpenKeyExW(root_, full.c_str(), 0, KEY_READ | DELETE, open.Out());
        if (status == ERROR_FILE_NOT_FOUND) return;
        Require(status);
        Require(DeleteBelow(open.Get()));
    }
    Require(RegDeleteKeyW(root_, full.c_str()));
}

bool RegistryClasses::IsEmptyKey(std::wstring_view key) const {
    Key open;
    if (RegOpenKeyExW(root_, FullKey(key).c_str(), 0, KEY_READ, open.Out())) return false;
    DWORD keys = 0, values = 0;
    return RegQueryInfoKeyW(open.Get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values,
                            nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS &&
           keys == 0 && values == 0;
}

}  // namespace demovex
