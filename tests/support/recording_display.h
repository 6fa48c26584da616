// Records what a grid asks of its control.
#pragma once

#include <vector>

#include "grid/flex_grid_impl.h"

namespace demovex {

class RecordingDisplay : public IFlexGridDisplay {
  public:
    struct ScrollCall {
        PixelRect area;
        int dx;
        int dy;
        friend bool operator==(const ScrollCall&, const ScrollCall&) = default;
    };
    void Invalidate(const PixelRect& rect) override { invalid.push_back(rect); }
    void ScrollArea(const PixelRect& area, int dx, int dy) override {
        scrolls.push_back({area, dx, dy});
    }
    void ScrollBarsChanged() override { ++bars; }
    void CurrentCellChanged() override { ++moves; }
    void SelectionChanged() override { ++selections; }
    void Clear() { *this = RecordingDisplay(); }
    bool Idle() const { return invalid.empty() && scrolls.empty() && bars == 0; }
    // Pixels of the recorded rectangles, overlaps counted twice.
    long Area() const {
        long area = 0;
        for (const PixelRect& r : invalid) area += long{r.width()} * r.height();
        return area;
    }

    std::vector<PixelRect> invalid;
    std::vector<ScrollCall> scrolls;
    int bars = 0;
    int moves = 0;
    int selections = 0;
};

}  // namespace demovex
