#include "platform/message_box_win.h"

#include <algorithm>

#include "base/error.h"

namespace demovex {

MessageAnswer WinMessageBox::Show(std::wstring_view text, std::wstring_view title,
                                  MessageButtons buttons, MessageIcon icon) {
    std::wstring shown(text);
    std::replace(shown.begin(), shown.end(), L'\0', L' ');
    const std::wstring caption = title.empty() ? default_title_ : std::wstring(title);

    UINT type = buttons == MessageButtons::kOk      ? MB_OK
                : buttons == MessageButtons::kYesNo ? MB_YESNO
                                                    : MB_YESNOCANCEL;
    if (icon == MessageIcon::kExclamation) type |= MB_ICONEXCLAMATION;
    if (icon == MessageIcon::kCritical) type |= MB_ICONHAND;
    const HWND owner = CurrentOwner(owner_);
    // without an owner to stand before, the box must not open behind the host's windows
    if (owner == nullptr) type |= MB_TASKMODAL | MB_SETFOREGROUND;

    switch (MessageBoxW(owner, shown.c_str(), caption.c_str(), type)) {
        case IDOK:
            return MessageAnswer::kOk;
        case IDYES:
            return MessageAnswer::kYes;
        case IDNO:
            return MessageAnswer::kNo;
        case IDCANCEL:
            return buttons == MessageButtons::kOk ? MessageAnswer::kOk : MessageAnswer::kCancel;
        default:
            // the host has ended the window and the box with it: nobody has chosen anything
            if (owner != nullptr && !IsWindow(owner)) {
                return buttons == MessageButtons::kOk ? MessageAnswer::kOk : MessageAnswer::kCancel;
            }
            // an unasked question must not pass for an answer
            RaiseRuntimeError(runtime_error::kOutOfMemory);
    }
}

}  // namespace demovex
