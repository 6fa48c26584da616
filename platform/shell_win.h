// Opening addresses through the system's shell.
#pragma once

#include "platform/owner_window_win.h"
#include "platform/shell.h"

namespace demovex {

class WinShell : public IShell {
  public:
    explicit WinShell(OwnerWindow owner) : owner_(std::move(owner)) {}

    int Open(std::wstring_view address) override;

  private:
    OwnerWindow owner_;
};

}  // namespace demovex
