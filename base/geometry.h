// Twips and the pixels of a screen, and the one conversion between them. A twip is 1/1440 inch, so
// there are 15 twips to the pixel at 96 dpi. Where a printer's dots lie is the business of
// platform/printer_win, which rounds another way. Deciding code uses twips only.
#pragma once

#include <cstdint>

namespace demovex {

using Twips = std::int32_t;

inline constexpr int kTwipsPerInch = 1440;

struct TwipsPoint {
    Twips x = 0;
    Twips y = 0;
    friend bool operator==(const TwipsPoint&, const TwipsPoint&) = default;
};

struct TwipsRect {
    Twips left = 0;
    Twips top = 0;
    Twips width = 0;
    Twips height = 0;
    [[nodiscard]] constexpr Twips right() const noexcept { return left + width; }
    [[nodiscard]] constexpr Twips bottom() const noexcept { return top + height; }
    friend bool operator==(const TwipsRect&, const TwipsRect&) = default;
};

// Pixel rectangle; right and bottom are exclusive.
struct PixelRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    [[nodiscard]] constexpr int width() const noexcept { return right - left; }
    [[nodiscard]] constexpr int height() const noexcept { return bottom - top; }
    [[nodiscard]] constexpr bool empty() const noexcept { return right <= left || bottom <= top; }
    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

// Converts between twips and the pixels of a screen with `dpi` dots per inch.
class Scale {
  public:
    explicit constexpr Scale(int dpi = 96) noexcept : dpi_(dpi) {}
    [[nodiscard]] constexpr int dpi() const noexcept { return dpi_; }
    // Nearest pixel.
    [[nodiscard]] constexpr int ToPixels(Twips twips) const noexcept {
        constexpr int kHalf = kTwipsPerInch / 2;
        const std::int64_t scaled = std::int64_t{twips} * dpi_;
        return static_cast<int>((scaled + (scaled >= 0 ? kHalf : -kHalf)) / kTwipsPerInch);
    }
    // Nearest twip; ToPixels(ToTwips(p)) is p for every dpi up to 1440.
    [[nodiscard]] constexpr Twips ToTwips(int pixels) const noexcept {
        const std::int64_t scaled = std::int64_t{pixels} * kTwipsPerInch;
        const int half = dpi_ / 2;
        return static_cast<Twips>((scaled + (scaled >= 0 ? half : -half)) / dpi_);
    }

  private:
    int dpi_;
};

}  // namespace demovex
