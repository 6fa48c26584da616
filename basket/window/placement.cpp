#include "basket/window/placement.h"

#include <algorithm>

namespace demovex {

PixelRect PlaceWindow(const PixelRect& work_area, int width, int height,
                      std::span<const PixelRect> others, int step) {
    width = std::min(width, work_area.width());
    height = std::min(height, work_area.height());
    int left = work_area.left + (work_area.width() - width) / 2;
    int top = work_area.top + (work_area.height() - height) / 2;
    const auto taken = [&] {
        return std::ranges::any_of(
            others, [&](const PixelRect& other) { return other.left == left && other.top == top; });
    };
    // every other window is passed at most once before a free place turns up
    for (std::size_t tries = 0; tries <= others.size() && taken(); ++tries) {
        left += step;
        top += step;
        if (left + width > work_area.right) left = work_area.left;
        if (top + height > work_area.bottom) top = work_area.top;
    }
    return {left, top, left + width, top + height};
}

}  // namespace demovex
