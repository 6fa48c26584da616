#include "basket/window/glyph_colours.h"

#include <algorithm>

namespace demovex {
namespace {

constexpr int Red(std::uint32_t colour) noexcept {
    return static_cast<int>(colour >> 16 & 255);
}
constexpr int Green(std::uint32_t colour) noexcept {
    return static_cast<int>(colour >> 8 & 255);
}
constexpr int Blue(std::uint32_t colour) noexcept {
    return static_cast<int>(colour & 255);
}

// What is less bright than this belongs to a glyph's outline, or to what it is drawn upon.
constexpr int kOutline = 100;
constexpr int kGround = 140;

std::uint32_t Between(std::uint32_t a, std::uint32_t b) noexcept {
    return static_cast<std::uint32_t>((Red(a) + Red(b)) / 2 << 16 | (Green(a) + Green(b)) / 2 << 8 |
                                      (Blue(a) + Blue(b)) / 2);
}

}  // namespace

int Brightness(std::uint32_t colour) noexcept {
    return (Red(colour) * 3 + Green(colour) * 6 + Blue(colour)) / 10;
}

bool IsDark(const GlyphScheme& scheme) noexcept {
    return Brightness(scheme.face) < 110;
}

std::uint32_t GlyphColour(std::uint32_t pixel, const GlyphScheme& scheme) noexcept {
    if (!IsDark(scheme)) return pixel;
    // all three move by the same amount, so that hue and strength stay
    const auto [least, most] = std::minmax({Red(pixel), Green(pixel), Blue(pixel)});
    const int shift = 255 - least - most;
    return static_cast<std::uint32_t>((Red(pixel) + shift) << 16 | (Green(pixel) + shift) << 8 |
                                      (Blue(pixel) + shift));
}

std::uint32_t FadedGlyphColour(std::uint32_t pixel, const GlyphScheme& scheme) noexcept {
    const bool dark = IsDark(scheme);
    const std::uint32_t outline = dark ? scheme.grey : scheme.shadow;
    const int brightness = Brightness(pixel);
    if (brightness < kOutline) return outline;
    if (brightness < kGround) return Between(outline, scheme.face);
    return dark ? scheme.face : scheme.light;
}

}  // namespace demovex
