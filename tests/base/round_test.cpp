#include "base/round.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "base/error.h"

namespace demovex {
namespace {

TEST(RoundToInt32, TakesTheEvenNeighbourOfAHalf) {
    EXPECT_EQ(RoundToInt32(0.5), 0);
    EXPECT_EQ(RoundToInt32(1.5), 2);
    EXPECT_EQ(RoundToInt32(2.5), 2);
    EXPECT_EQ(RoundToInt32(-0.5), 0);
    EXPECT_EQ(RoundToInt32(-1.5), -2);
    EXPECT_EQ(RoundToInt32(-2.5), -2);
}

TEST(RoundToInt32, TakesTheNearestOtherwise) {
    EXPECT_EQ(RoundToInt32(14.2), 14);
    EXPECT_EQ(RoundToInt32(-14.7), -15);
    EXPECT_EQ(RoundToInt32(2147483647.4), 2147483647);
    EXPECT_EQ(RoundToInt32(-2147483648.5), -2147483648LL);
}

TEST(RoundToInt32, RaisesOverflowBeyond32Bits) {
    for (double value : {2147483647.5, -2147483649.0, 1e300, std::nan(""),
                         std::numeric_limits<double>::infinity()}) {
        try {
            RoundToInt32(value);
            FAIL() << value;
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), 6);
            EXPECT_EQ(error.description(), L"Overflow");
        }
    }
}

TEST(RoundToHundredths, RoundsHalvesToTheEvenHundredth) {
    EXPECT_EQ(RoundToHundredths(7.267), 7.27);
    EXPECT_EQ(RoundToHundredths(0.125), 0.12);
    EXPECT_EQ(RoundToHundredths(0.375), 0.38);
    EXPECT_EQ(RoundToHundredths(-0.125), -0.12);
    EXPECT_EQ(RoundToHundredths(-0.375), -0.38);
    EXPECT_EQ(RoundToHundredths(100 / 13.7603), 7.27);
}

TEST(RoundToHundredths, LeavesHugeValuesAsTheyAre) {
    EXPECT_EQ(RoundToHundredths(1e300), 1e300);
    EXPECT_EQ(RoundToHundredths(4503599627370497.0), 4503599627370497.0);
    // a hundred times as much is no double any more
    EXPECT_EQ(RoundToHundredths(1e307), 1e307);
    EXPECT_EQ(RoundToHundredths(-1e307), -1e307);
}

}  // namespace
}  // namespace demovex
