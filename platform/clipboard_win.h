// The system's clipboard.
#pragma once

#include <windows.h>

#include "platform/clipboard.h"
#include "platform/owner_window_win.h"

namespace demovex {

class WinClipboard : public IClipboard {
  public:
    // How long SetText waits for another program that holds the clipboard open, in milliseconds.
    static constexpr DWORD kPatience = 500;

    explicit WinClipboard(OwnerWindow owner) : owner_(std::move(owner)) {}

    // The text up to its first NUL. Raises 521 when the clipboard stays held and 7 when there is no
    // memory for the text; both before anything has been changed.
    void SetText(std::wstring_view text) override;

  private:
    OwnerWindow owner_;
};

}  // namespace demovex
