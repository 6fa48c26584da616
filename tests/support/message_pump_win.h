// A test's message loop: handles what is queued until a condition holds, with a deadline. Never a
// blind sleep.
#pragma once

#include <windows.h>

#include <functional>

namespace demovex {

// Handles every message that is queued now.
inline void PumpMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

// Handles messages until `condition` holds; false when the deadline passed first.
inline bool PumpUntil(const std::function<bool()>& condition, DWORD milliseconds = 5000) {
    const ULONGLONG deadline = GetTickCount64() + milliseconds;
    for (;;) {
        PumpMessages();
        if (condition()) return true;
        const ULONGLONG now = GetTickCount64();
        if (now >= deadline) return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE,
                                  static_cast<DWORD>(deadline - now < 20 ? deadline - now : 20),
                                  QS_ALLINPUT);
    }
}

// Handles messages until `window` has nothing left to paint.
inline bool PumpUntilPainted(HWND window) {
    return PumpUntil([window] { return !GetUpdateRect(window, nullptr, FALSE); });
}

}  // namespace demovex
