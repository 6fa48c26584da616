// Questions and messages to the user.
#pragma once

#include <string_view>

namespace demovex {

enum class MessageButtons { kOk, kYesNo, kYesNoCancel };
enum class MessageIcon { kNone, kExclamation, kCritical };
// Closing the box without a choice answers kCancel (kOk where there is only that button), and so
// does a box that goes with the window that owns it; the caller finds that window gone then.
enum class MessageAnswer { kOk, kYes, kNo, kCancel };

class IMessageBox {
  public:
    virtual ~IMessageBox() = default;

    // Shows a modal box owned by the basket window. An empty title means the application's own
    // title.
    virtual MessageAnswer Show(std::wstring_view text, std::wstring_view title,
                               MessageButtons buttons, MessageIcon icon) = 0;
};

}  // namespace demovex
