// Child windows of the basket window, and where they lie in pixels.
#pragma once

#include <windows.h>

#include "base/error.h"
#include "base/geometry.h"
#include "platform/handle_win.h"

namespace demovex {

// A child window, or error 7. `style` is completed with WS_CHILD and WS_CLIPSIBLINGS.
inline HWND CreateChild(HWND parent, HINSTANCE module, const wchar_t* window_class, int id,
                        DWORD style, DWORD ex_style = 0) {
    HWND child =
        CreateWindowExW(ex_style, window_class, L"", style | WS_CHILD | WS_CLIPSIBLINGS, 0, 0, 0, 0,
                        parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), module, nullptr);
    if (child == nullptr) RaiseRuntimeError(runtime_error::kOutOfMemory);
    return child;
}

// Twips as pixels, edge by edge, so that neighbours stay neighbours.
inline RECT ToPixels(const Scale& scale, const TwipsRect& rect) {
    return {scale.ToPixels(rect.left), scale.ToPixels(rect.top), scale.ToPixels(rect.right()),
            scale.ToPixels(rect.bottom())};
}

}  // namespace demovex
