// Paints a FlexGrid onto a Surface in the classic look: raised fixed cells, thin lines between the
// others, the selection in highlight colours except the current cell, which keeps normal colours
// and, when the grid has the focus, the focus rectangle. Only what intersects the invalid rectangle
// is drawn; the cost depends on that alone.
#pragma once

#include "grid/flex_grid.h"
#include "grid/surface.h"

namespace demovex {

// `invalid` is in pixels of the grid's view. Every pixel of it is drawn.
void PaintGrid(const FlexGrid& grid, Surface& surface, const PixelRect& invalid);

}  // namespace demovex
