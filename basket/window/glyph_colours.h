// The colours of toolbar glyphs in the user's scheme: portable arithmetic on 0x00RRGGBB pixels. The
// glyphs are drawn for light faces: dark outlines around light fillings.
#pragma once

#include <cstdint>

namespace demovex {

// What a scheme means for the glyphs.
struct GlyphScheme {
    std::uint32_t face = 0;    // what the glyphs stand on
    std::uint32_t shadow = 0;  // of raised controls
    std::uint32_t light = 0;   // their lit edge
    std::uint32_t grey = 0;    // text of what cannot be used
};

// From 0 (black) to 255 (white), as bright as the eye finds it.
int Brightness(std::uint32_t colour) noexcept;

// Whether dark outlines would be lost on the scheme's face.
bool IsDark(const GlyphScheme& scheme) noexcept;

// A pixel of a button that can be pressed. On a dark face light and dark change places while hues
// stay: black outlines become white, white paper black, navy a light blue; red and yellow stay.
std::uint32_t GlyphColour(std::uint32_t pixel, const GlyphScheme& scheme) noexcept;

// The same for a button that cannot be pressed: outlines in a grey, greys half as strong, so that
// what crosses them stays legible, fillings pale or, on a dark face, gone.
std::uint32_t FadedGlyphColour(std::uint32_t pixel, const GlyphScheme& scheme) noexcept;

}  // namespace demovex
