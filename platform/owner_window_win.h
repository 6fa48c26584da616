// The window that owns what a service shows.
#pragma once

#include <windows.h>

#include <functional>

namespace demovex {

// Asked each time when a window is needed, since the basket window comes and goes; may be empty or
// return null (no owner).
using OwnerWindow = std::function<HWND()>;

inline HWND CurrentOwner(const OwnerWindow& owner) {
    return owner ? owner() : nullptr;
}

}  // namespace demovex
