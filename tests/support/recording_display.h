// Records what a grid asks of its control.
#pragma once

#include <utility>
#include <vector>

#include "grid/flex_grid.h"

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
    void CellChanged(std::int32_t row, std::int32_t col) override { changed.push_back({row, col}); }
    void CellsMoved() override { ++cells_moved; }
    void RedrawIsOn() override { ++redraws; }
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
    std::vector<std::pair<std::int32_t, std::int32_t>> changed;
    int cells_moved = 0;
    int redraws = 0;
};

}  // namespace demovex
