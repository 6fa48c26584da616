// Settings in the user's part of the registry, where the platform keeps the settings of
// applications: HKCU\Software\VB and VBA Program Settings\DemoVexClient\<section>, string values.
#pragma once

#include "platform/settings.h"

namespace demovex {

class WinSettings : public ISettings {
  public:
    WinSettings();
    // For tests: another key below HKCU.
    explicit WinSettings(std::wstring application_key);

    // `fallback` also for a value that is no string or cannot be read.
    std::wstring Get(std::wstring_view section, std::wstring_view key,
                     std::wstring_view fallback) const override;
    void Set(std::wstring_view section, std::wstring_view key, std::wstring_view value) override;

  private:
    std::wstring SectionKey(std::wstring_view section) const;

    std::wstring application_key_;
};

}  // namespace demovex
