// Where the basket window opens: portable arithmetic on pixels.
#pragma once

#include <span>

#include "base/geometry.h"

namespace demovex {

// Centres a window of `width` by `height` in `work_area`, makes it no larger than the area, and
// moves it by `step` to the lower right for as long as its corner lies on that of a window in
// `others`, starting anew at the upper left corner when it would leave the area.
PixelRect PlaceWindow(const PixelRect& work_area, int width, int height,
                      std::span<const PixelRect> others, int step);

}  // namespace demovex
