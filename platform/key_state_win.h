// The keys that are down at the event being handled.
#pragma once

#include <windows.h>

#include "platform/shift_state.h"

namespace demovex {

inline bool IsDown(int key) noexcept {
    return GetKeyState(key) < 0;
}

// Shift, Ctrl and Alt as bits of shift_state.
inline int ShiftState() noexcept {
    return (IsDown(VK_SHIFT) ? shift_state::kShift : 0) |
           (IsDown(VK_CONTROL) ? shift_state::kCtrl : 0) |
           (IsDown(VK_MENU) ? shift_state::kAlt : 0);
}

}  // namespace demovex
