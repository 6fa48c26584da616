// The system's message box.
#pragma once

#include <string>

#include "platform/message_box.h"
#include "platform/owner_window_win.h"

namespace demovex {

class WinMessageBox : public IMessageBox {
  public:
    // `default_title` stands for an empty title.
    WinMessageBox(OwnerWindow owner, std::wstring default_title)
        : owner_(std::move(owner)), default_title_(std::move(default_title)) {}

    // A NUL in the text is shown as a blank. Raises 7 when the system cannot show the box.
    MessageAnswer Show(std::wstring_view text, std::wstring_view title, MessageButtons buttons,
                       MessageIcon icon) override;

  private:
    OwnerWindow owner_;
    std::wstring default_title_;
};

}  // namespace demovex
