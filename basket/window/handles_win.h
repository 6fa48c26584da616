// Owners of what the window borrows from the system: each gives back in its destructor.
#pragma once

// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on

#include <utility>

#include "base/error.h"
#include "grid/geometry.h"

namespace demovex {

// A handle and the call that gives it back.
template <class Handle, auto GiveBack>
class UniqueHandle {
  public:
    UniqueHandle() = default;
    explicit UniqueHandle(Handle handle) : handle_(handle) {}
    UniqueHandle(UniqueHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        if (this != &other) reset(std::exchange(other.handle_, nullptr));
        return *this;
    }
    UniqueHandle(const UniqueHandle&) = delete;
    UniqueHandle& operator=(const UniqueHandle&) = delete;
    ~UniqueHandle() { reset(); }

    Handle get() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != nullptr; }
    Handle release() noexcept { return std::exchange(handle_, nullptr); }
    void reset(Handle handle = nullptr) noexcept {
        if (handle_ != nullptr) GiveBack(handle_);
        handle_ = handle;
    }

  private:
    Handle handle_ = nullptr;
};

template <class Object>
void GiveBackObject(Object object) noexcept {
    DeleteObject(object);
}
inline void GiveBackImageList(HIMAGELIST list) noexcept {
    ImageList_Destroy(list);
}

using UniqueMenu = UniqueHandle<HMENU, &DestroyMenu>;
using UniqueFont = UniqueHandle<HFONT, &GiveBackObject<HFONT>>;
using UniqueBitmap = UniqueHandle<HBITMAP, &GiveBackObject<HBITMAP>>;
using UniqueImageList = UniqueHandle<HIMAGELIST, &GiveBackImageList>;
using UniqueIcon = UniqueHandle<HICON, &DestroyIcon>;
using UniqueHook = UniqueHandle<HHOOK, &UnhookWindowsHookEx>;

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
