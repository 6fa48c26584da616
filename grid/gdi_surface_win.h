// The grid's Surface on a GDI device context, in system colours (read anew for each surface, so
// that high contrast and a changed scheme work at once).
#pragma once

#include <windows.h>

#include <vector>

#include "grid/surface.h"

namespace demovex {

class GdiSurface : public Surface {
  public:
    // `dc` and the fonts are observed and outlive the surface, which leaves the device context as
    // it found it. (origin_x, origin_y) is the view's pixel that lies at (0, 0) of the context.
    GdiSurface(HDC dc, HFONT regular, HFONT bold, int origin_x, int origin_y);
    ~GdiSurface() override;
    GdiSurface(const GdiSurface&) = delete;
    GdiSurface& operator=(const GdiSurface&) = delete;

    void Fill(const PixelRect& rect, GridColor color) override;
    void Text(const PixelRect& box, int x, int y, std::wstring_view text,
              const GridTextStyle& style) override;
    void FocusRect(const PixelRect& rect) override;

    // The system colour behind a role.
    static COLORREF Color(GridColor color);

  private:
    static constexpr int kColors = static_cast<int>(GridColor::kBackground) + 1;
    RECT Move(const PixelRect& rect) const;
    void SetBack(GridColor color);
    COLORREF Cached(GridColor color) const { return colors_[static_cast<int>(color)]; }

    HDC dc_;
    int saved_;
    HFONT regular_;
    HFONT bold_;
    int x_;
    int y_;
    COLORREF colors_[kColors];
    // what is selected at the moment, so that a call is only made for a change
    COLORREF text_color_ = CLR_INVALID;
    COLORREF back_color_ = CLR_INVALID;
    bool is_bold_ = false;
    bool is_right_ = false;
    std::vector<int> advances_;  // of the text being drawn
};

}  // namespace demovex
