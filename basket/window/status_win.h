// The status bar of the basket window: one text, and for long work the wait cursor and after half a
// second a progress bar beside the text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "basket/window/handles_win.h"

namespace demovex {

class WindowStatus {
  public:
    // Creates the bar, hidden, at the bottom edge of the parent. Raises 7.
    WindowStatus(HWND parent, HINSTANCE module, const Scale& scale);

    void SetText(std::wstring_view text);
    const std::wstring& Text() const noexcept { return text_; }
    void Show(bool visible);
    // Another screen. Layout follows.
    void SetScale(const Scale& scale) { scale_ = scale; }
    // Lets the bar follow the parent's size.
    void Layout();
    int Height() const noexcept;
    // Whether it stands in the window, and where in the window's client area it shows its text.
    bool Visible() const noexcept;
    RECT TextPlace() const noexcept;

    // Long work: begun and ended in pairs, which may nest. `fraction` runs from 0 to 1. Nothing
    // here takes input or dispatches messages of other windows.
    void BeginProgress(std::wstring_view what);
    void SetProgress(double fraction);
    void EndProgress();
    bool Busy() const noexcept { return depth_ > 0; }
    bool ShowsProgress() const noexcept { return shown_ >= 0; }

    HWND Handle() const noexcept { return window_; }

  private:
    void ShowText(const std::wstring& text);
    void PlaceProgress();

    HWND window_ = nullptr;
    HWND progress_ = nullptr;
    Scale scale_;
    std::wstring text_;
    std::wstring work_;
    int depth_ = 0;
    std::uint64_t begun_ = 0;
    int shown_ = -1;  // position of the progress bar
    HCURSOR cursor_ = nullptr;
};

}  // namespace demovex
