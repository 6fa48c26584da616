// Device contexts for a scope, and a memory bitmap to paint into before showing. Fonts, bitmaps and
// the like are owned as handle_win.h says.
#pragma once

#include <windows.h>

#include "platform/handle_win.h"

namespace demovex {

// A window's device context, or with null the screen's, given back at the end.
class WindowDc {
  public:
    explicit WindowDc(HWND window) noexcept : window_(window), dc_(GetDC(window)) {}
    ~WindowDc() {
        if (dc_ != nullptr) ReleaseDC(window_, dc_);
    }
    WindowDc(const WindowDc&) = delete;
    WindowDc& operator=(const WindowDc&) = delete;
    HDC get() const noexcept { return dc_; }

  private:
    HWND window_;
    HDC dc_;
};

// Selects an object for a scope.
class SelectedObject {
  public:
    SelectedObject(HDC dc, HGDIOBJ object) noexcept : dc_(dc), before_(SelectObject(dc, object)) {}
    ~SelectedObject() { SelectObject(dc_, before_); }
    SelectedObject(const SelectedObject&) = delete;
    SelectedObject& operator=(const SelectedObject&) = delete;

  private:
    HDC dc_;
    HGDIOBJ before_;
};

// A bitmap that grows to the largest size asked for and is painted into and then copied.
class BackBuffer {
  public:
    BackBuffer() = default;
    ~BackBuffer() { Reset(); }
    BackBuffer(const BackBuffer&) = delete;
    BackBuffer& operator=(const BackBuffer&) = delete;

    // A device context of at least this size, compatible with `like`; null when there is none.
    HDC Get(HDC like, int width, int height) noexcept {
        if (dc_ != nullptr && width <= width_ && height <= height_) return dc_;
        const int new_width = width > width_ ? width : width_;
        const int new_height = height > height_ ? height : height_;
        Reset();
        dc_ = CreateCompatibleDC(like);
        bitmap_ = UniqueBitmap(CreateCompatibleBitmap(like, new_width, new_height));
        if (dc_ == nullptr || !bitmap_) {
            Reset();
            return nullptr;
        }
        before_ = SelectObject(dc_, bitmap_.get());
        width_ = new_width;
        height_ = new_height;
        return dc_;
    }

    void Reset() noexcept {
        if (dc_ != nullptr) {
            if (before_ != nullptr) SelectObject(dc_, before_);
            DeleteDC(dc_);
        }
        dc_ = nullptr;
        before_ = nullptr;
        bitmap_.reset();
        width_ = height_ = 0;
    }

  private:
    HDC dc_ = nullptr;
    HGDIOBJ before_ = nullptr;
    UniqueBitmap bitmap_;
    int width_ = 0;
    int height_ = 0;
};

}  // namespace demovex
