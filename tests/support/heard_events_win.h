// What assistive programs hear: the events of this process between two numbers, in order.
//
//   HeardEvents heard(EVENT_OBJECT_REORDER, EVENT_OBJECT_REORDER);
//   ...
//   EXPECT_TRUE(heard.Hear(EVENT_OBJECT_REORDER, grid));
//   EXPECT_EQ(heard.Count(EVENT_OBJECT_REORDER, grid), 1);
#pragma once

#include <windows.h>

#include <algorithm>
#include <vector>

#include "tests/support/message_pump_win.h"

namespace demovex {

class HeardEvents {
  public:
    struct Event {
        DWORD event;
        HWND window;
        LONG object;
        LONG child;
    };

    HeardEvents(DWORD first, DWORD last) {
        current_ = this;
        hook_ = SetWinEventHook(first, last, nullptr, &HeardEvents::Tell, GetCurrentProcessId(), 0,
                                WINEVENT_OUTOFCONTEXT);
    }
    ~HeardEvents() {
        UnhookWinEvent(hook_);
        current_ = nullptr;
    }
    HeardEvents(const HeardEvents&) = delete;
    HeardEvents& operator=(const HeardEvents&) = delete;

    // Waits for an event of the window's client area.
    bool Hear(DWORD event, HWND window, LONG child = CHILDID_SELF) {
        return PumpUntil([&] { return Count(event, window, child) > 0; });
    }
    // How many of them are heard so far, all that were sent included.
    std::ptrdiff_t Count(DWORD event, HWND window, LONG child = CHILDID_SELF) {
        PumpMessages();
        return std::ranges::count_if(events, [&](const Event& heard) {
            return heard.event == event && heard.window == window && heard.object == OBJID_CLIENT &&
                   heard.child == child;
        });
    }
    // All events of the window's client area, whatever they are about.
    std::ptrdiff_t CountAll(HWND window) {
        PumpMessages();
        return std::ranges::count_if(events, [&](const Event& heard) {
            return heard.window == window && heard.object == OBJID_CLIENT;
        });
    }
    void Clear() {
        PumpMessages();
        events.clear();
    }

    std::vector<Event> events;

  private:
    static void CALLBACK Tell(HWINEVENTHOOK, DWORD event, HWND window, LONG object, LONG child,
                              DWORD, DWORD) noexcept {
        if (current_ != nullptr) current_->events.push_back({event, window, object, child});
    }
    static inline HeardEvents* current_ = nullptr;
    HWINEVENTHOOK hook_ = nullptr;
};

}  // namespace demovex
