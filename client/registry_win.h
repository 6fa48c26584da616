// The registry's two places for classes (client/registration.h).
#pragma once

#include <windows.h>

#include "client/registration.h"

namespace demovex {

// `Software\Classes` below the machine's root or the user's.
class RegistryClasses final : public IRegistryClasses {
  public:
    enum class Place { kMachine, kUser };
    explicit RegistryClasses(Place place) noexcept;

    void SetString(std::wstring_view key, std::wstring_view name, std::wstring_view value) override;
    void DeleteTree(std::wstring_view key) override;
    bool IsEmptyKey(std::wstring_view key) const override;

  private:
    HKEY root_;
};

}  // namespace demovex
