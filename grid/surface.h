// What the grid draws on: few operations, in pixels of the grid's view (the area inside the
// border, origin at its top left). The control draws them with the system (flex_grid_control_win),
// the tests record them.
#pragma once

#include <string_view>

#include "base/geometry.h"

namespace demovex {

// Colours by role; the surface takes them from the system, so that high contrast works.
enum class GridColor {
    kWindow,         // normal cells
    kWindowText,     //
    kHighlight,      // selected cells
    kHighlightText,  //
    kFixed,          // header row and line numbers
    kFixedText,      //
    kEdgeLight,      // upper and left edge of a raised cell
    kEdgeShadow,     // lower and right edge of a raised cell
    kGridLine,       // lines between normal cells
    kBackground,     // the area beyond the last row and column
};

struct GridTextStyle {
    GridColor text = GridColor::kWindowText;
    GridColor back = GridColor::kWindow;
    bool bold = false;
    bool right = false;  // `x` is where the text ends instead of where it begins
    friend bool operator==(const GridTextStyle&, const GridTextStyle&) = default;
};

class Surface {
  public:
    virtual ~Surface() = default;

    virtual void Fill(const PixelRect& rect, GridColor color) = 0;
    // Fills `box` with the back colour and draws `text` in it, clipped to `box`; `y` is the top of
    // the text. An empty text only fills.
    virtual void Text(const PixelRect& box, int x, int y, std::wstring_view text,
                      const GridTextStyle& style) = 0;
    // The dotted focus rectangle just inside `rect`.
    virtual void FocusRect(const PixelRect& rect) = 0;
};

}  // namespace demovex
