#include "basket/window/placement.h"

#include <gtest/gtest.h>

#include <vector>

namespace demovex {
namespace {

constexpr PixelRect kArea{100, 50, 1100, 850};

TEST(PlaceWindow, CentresOnTheWorkArea) {
    EXPECT_EQ(PlaceWindow(kArea, 600, 400, {}, 24), (PixelRect{300, 250, 900, 650}));
}

TEST(PlaceWindow, NeverExceedsTheWorkArea) {
    EXPECT_EQ(PlaceWindow(kArea, 5000, 5000, {}, 24), kArea);
}

TEST(PlaceWindow, StepsAsideFromAWindowInTheSamePlace) {
    const std::vector<PixelRect> others{{300, 250, 900, 650}, {324, 274, 924, 674}};
    EXPECT_EQ(PlaceWindow(kArea, 600, 400, others, 24), (PixelRect{348, 298, 948, 698}));
}

TEST(PlaceWindow, StaysInsideTheAreaHoweverManyWindowsThereAre) {
    std::vector<PixelRect> others;
    for (int i = 0; i < 100; ++i) {
        const PixelRect place = PlaceWindow(kArea, 600, 400, others, 24);
        EXPECT_GE(place.left, kArea.left);
        EXPECT_GE(place.top, kArea.top);
        EXPECT_LE(place.right, kArea.right);
        EXPECT_LE(place.bottom, kArea.bottom);
        others.push_back(place);
    }
}

TEST(PlaceWindow, AWindowAsLargeAsTheAreaEndsItsSearch) {
    const std::vector<PixelRect> others{kArea, kArea};
    EXPECT_EQ(PlaceWindow(kArea, 1000, 800, others, 24), kArea);
}

}  // namespace
}  // namespace demovex
