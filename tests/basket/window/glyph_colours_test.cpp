#include "basket/window/glyph_colours.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace demovex {
namespace {

constexpr GlyphScheme kUsual{0xF0F0F0, 0xA0A0A0, 0xFFFFFF, 0x6D6D6D};
constexpr GlyphScheme kBlack{0x000000, 0x808080, 0xC0C0C0, 0x00FF00};

// The sixteen colours that glyphs are drawn in, magenta left out: nothing is drawn there.
const std::vector<std::uint32_t> kPalette = {0x000000, 0x800000, 0x008000, 0x808000, 0x000080,
                                             0x800080, 0x008080, 0xC0C0C0, 0x808080, 0xFF0000,
                                             0x00FF00, 0xFFFF00, 0x0000FF, 0x00FFFF, 0xFFFFFF};

TEST(GlyphColours, ALightFaceShowsTheGlyphsAsTheyAreDrawn) {
    for (const std::uint32_t colour : kPalette) EXPECT_EQ(GlyphColour(colour, kUsual), colour);
    EXPECT_FALSE(IsDark({0xC0C0C0, 0, 0, 0}));
}

TEST(GlyphColours, OnADarkFaceLightAndDarkChangePlacesAndHuesStay) {
    EXPECT_EQ(GlyphColour(0x000000, kBlack), 0xFFFFFFu);
    EXPECT_EQ(GlyphColour(0xFFFFFF, kBlack), 0x000000u);
    EXPECT_EQ(GlyphColour(0x000080, kBlack), 0x7F7FFFu);
    EXPECT_EQ(GlyphColour(0x008000, kBlack), 0x7FFF7Fu);
    EXPECT_EQ(GlyphColour(0x808080, kBlack), 0x7F7F7Fu);
    for (const std::uint32_t full : {0xFF0000u, 0x00FF00u, 0xFFFF00u, 0x0000FFu, 0x00FFFFu}) {
        EXPECT_EQ(GlyphColour(full, kBlack), full);
    }
}

TEST(GlyphColours, OutlinesStandOutFromADarkFace) {
    for (const std::uint32_t outline : {0x000000u, 0x000080u, 0x008000u, 0x808080u, 0xFF0000u}) {
        EXPECT_GE(Brightness(GlyphColour(outline, kBlack)), 75) << std::hex << outline;
    }
}

TEST(GlyphColours, AFadedGlyphHasThreeTonesOfTheScheme) {
    for (const GlyphScheme& scheme : {kUsual, kBlack}) {
        const std::uint32_t outline = FadedGlyphColour(0x000000, scheme);
        const std::uint32_t ground = FadedGlyphColour(0x808080, scheme);
        const std::uint32_t filling = FadedGlyphColour(0xFFFFFF, scheme);
        EXPECT_NE(outline, ground);
        EXPECT_NE(ground, filling);
        for (const std::uint32_t colour : kPalette) {
            const std::uint32_t faded = FadedGlyphColour(colour, scheme);
            EXPECT_TRUE(faded == outline || faded == ground || faded == filling);
        }
    }
    EXPECT_EQ(FadedGlyphColour(0x000080, kUsual), kUsual.shadow);
    EXPECT_EQ(FadedGlyphColour(0x808080, kUsual), 0xC8C8C8u);
    EXPECT_EQ(FadedGlyphColour(0xFFFF00, kUsual), kUsual.light);
    EXPECT_EQ(FadedGlyphColour(0x000080, kBlack), kBlack.grey);
    EXPECT_EQ(FadedGlyphColour(0x808080, kBlack), 0x007F00u);
    EXPECT_EQ(FadedGlyphColour(0xFFFF00, kBlack), kBlack.face);
}

// A cross over grey rows: the cross is what says "delete".
TEST(GlyphColours, WhatCrossesAGreyStaysLegibleWhenFaded) {
    for (const std::uint32_t mark : {0xFF0000u, 0x008000u, 0x000080u}) {
        EXPECT_NE(FadedGlyphColour(mark, kUsual), FadedGlyphColour(0x808080, kUsual));
        EXPECT_NE(FadedGlyphColour(mark, kBlack), FadedGlyphColour(0x808080, kBlack));
    }
}

}  // namespace
}  // namespace demovex
