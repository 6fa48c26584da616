// Per-user settings: string values by section and key, kept by the system between runs.
#pragma once

#include <string>
#include <string_view>

namespace demovex {

class ISettings {
  public:
    virtual ~ISettings() = default;

    // The stored value, or `fallback` when there is none.
    virtual std::wstring Get(std::wstring_view section, std::wstring_view key,
                             std::wstring_view fallback) const = 0;

    // Stores a value. Raises 5 when the store refuses.
    virtual void Set(std::wstring_view section, std::wstring_view key, std::wstring_view value) = 0;
};

}  // namespace demovex
