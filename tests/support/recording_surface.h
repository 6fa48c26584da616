// A Surface that records what was drawn, in order, and keeps which colour each pixel got last.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "grid/surface.h"

namespace demovex {

class RecordingSurface : public Surface {
  public:
    struct TextCall {
        PixelRect box;
        int x;
        int y;
        std::wstring text;
        GridTextStyle style;
    };

    RecordingSurface(int width, int height)
        : width_(width),
          height_(height),
          pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), kUntouched) {}

    void Fill(const PixelRect& rect, GridColor color) override {
        EXPECT_FALSE(rect.empty());
        ++fills;
        Set(rect, color);
    }
    void Text(const PixelRect& box, int x, int y, std::wstring_view text,
              const GridTextStyle& style) override {
        EXPECT_FALSE(box.empty());
        texts.push_back({box, x, y, std::wstring(text), style});
        Set(box, style.back);
    }
    void FocusRect(const PixelRect& rect) override { focus_rects.push_back(rect); }

    static constexpr int kUntouched = -1;
    // The GridColor of a pixel, kUntouched when nothing was drawn there.
    int At(int x, int y) const {
        return pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                       static_cast<std::size_t>(x)];
    }
    int Is(GridColor color) const { return static_cast<int>(color); }
    // Pixels outside / inside a rectangle that were (not) drawn.
    int Touched() const {
        int count = 0;
        for (const int pixel : pixels_) count += pixel != kUntouched;
        return count;
    }
    int TouchedIn(const PixelRect& rect) const {
        int count = 0;
        for (int y = rect.top; y < rect.bottom; ++y) {
            for (int x = rect.left; x < rect.right; ++x) count += At(x, y) != kUntouched;
        }
        return count;
    }
    const TextCall* Find(std::wstring_view text) const {
        for (const TextCall& call : texts) {
            if (call.text == text) return &call;
        }
        return nullptr;
    }

    std::vector<TextCall> texts;
    std::vector<PixelRect> focus_rects;
    int fills = 0;

  private:
    void Set(const PixelRect& rect, GridColor color) {
        if (rect.left < 0 || rect.top < 0 || rect.right > width_ || rect.bottom > height_) {
            ADD_FAILURE() << "drawn outside the view: " << rect.left << "," << rect.top << " "
                          << rect.right << "," << rect.bottom;
            return;
        }
        for (int y = rect.top; y < rect.bottom; ++y) {
            for (int x = rect.left; x < rect.right; ++x) {
                pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                        static_cast<std::size_t>(x)] = static_cast<int>(color);
            }
        }
    }

    int width_;
    int height_;
    std::vector<int> pixels_;
};

}  // namespace demovex
