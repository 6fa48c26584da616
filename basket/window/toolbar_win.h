// Toolbar: the command buttons at the top edge of the basket window, built from ToolbarTable() and
// ImageTable(). It always takes 360 twips of height.
#pragma once

#include <string_view>

#include "basket/window/handles_win.h"

namespace demovex {

class WindowToolbar {
  public:
    // Creates the empty toolbar, hidden. The parent gets WM_COMMAND with a button's id.
    WindowToolbar(HWND parent, HINSTANCE module, const Scale& scale);

    // Fills the image list from the bitmap resources and the bar with its buttons. Raises 7 when
    // the system refuses.
    void Build();

    // Another screen. Build follows, and Layout.
    void SetScale(const Scale& scale);

    void Show(bool visible);
    // Stretches the bar along the top edge of a client area of `width` pixels, its buttons in the
    // middle of the 360 twips.
    void Layout(int width);

    // The key of a button id; empty for any other id.
    static std::wstring_view KeyOf(int button_id) noexcept;

    // Fills in the text that a tool tip asks for; false when it is not ours.
    bool OnNotify(NMHDR* header) const noexcept;

    HWND Handle() const noexcept { return window_; }

  private:
    UniqueImageList LoadImages(int size, bool disabled) const;

    HWND window_ = nullptr;
    HINSTANCE module_;
    Scale scale_;
    int width_ = 0;
    UniqueImageList images_;
    UniqueImageList disabled_images_;
};

// Side of the glyphs for a screen: the largest of 16, 20, 24, 32, 40, 48 and 64 pixels that fits.
int GlyphSize(int dpi) noexcept;

}  // namespace demovex
