// Owners of what is borrowed from the system by a handle: each gives it back in its destructor. One
// template, one name a thing.
//
//   UniqueFont font(CreateFontIndirectW(&shape));
//   if (!font) RaiseRuntimeError(runtime_error::kOutOfMemory);
#pragma once

// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on

#include <utility>

namespace demovex {

// A handle and the call that gives it back; none is null.
template <class Handle, auto GiveBack>
class Owner {
  public:
    Owner() noexcept = default;
    explicit Owner(Handle handle) noexcept : handle_(handle) {}
    Owner(Owner&& other) noexcept : handle_(other.release()) {}
    Owner& operator=(Owner&& other) noexcept {
        if (this != &other) reset(other.release());
        return *this;
    }
    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;
    ~Owner() { reset(); }

    [[nodiscard]] Handle get() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != nullptr; }
    [[nodiscard]] Handle release() noexcept { return std::exchange(handle_, nullptr); }
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

// A kernel handle. Wrap what CreateFile returned in OwnFile, since its "none" is
// INVALID_HANDLE_VALUE.
using UniqueHandle = Owner<HANDLE, &CloseHandle>;
using UniqueMenu = Owner<HMENU, &DestroyMenu>;
using UniqueFont = Owner<HFONT, &GiveBackObject<HFONT>>;
using UniqueBitmap = Owner<HBITMAP, &GiveBackObject<HBITMAP>>;
using UniquePen = Owner<HPEN, &GiveBackObject<HPEN>>;
using UniqueImageList = Owner<HIMAGELIST, &GiveBackImageList>;
using UniqueIcon = Owner<HICON, &DestroyIcon>;
using UniqueHook = Owner<HHOOK, &UnhookWindowsHookEx>;
// A device context that was made, not a window's (see gdi_win.h).
using UniqueDc = Owner<HDC, &DeleteDC>;

inline UniqueHandle OwnFile(HANDLE handle) noexcept {
    return UniqueHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

}  // namespace demovex
