#include "base/checked.h"

#include <gtest/gtest.h>

namespace demovex {
namespace {

constexpr std::int32_t kMax = 2147483647;
constexpr std::int32_t kMin = -2147483647 - 1;

template <typename F>
std::int32_t RaisedBy(F&& f) {
    try {
        f();
    } catch (const Error& error) {
        return error.number();
    }
    return 0;
}

TEST(CheckedArithmetic, GivesTheExactResultWithin32Bits) {
    EXPECT_EQ(CheckedAdd(kMax - 1, 1), kMax);
    EXPECT_EQ(CheckedSub(kMin + 1, 1), kMin);
    EXPECT_EQ(CheckedMul(46340, 46340), 2147395600);
    EXPECT_EQ(CheckedDiv(-7, 2), -3);
    EXPECT_EQ(CheckedMod(-7, 3), -1);
    EXPECT_EQ(CheckedMod(kMin, -1), 0);
}

TEST(CheckedArithmetic, RaisesOverflowInsteadOfWrapping) {
    EXPECT_EQ(RaisedBy([] { CheckedAdd(kMax, 1); }), 6);
    EXPECT_EQ(RaisedBy([] { CheckedSub(kMin, 1); }), 6);
    EXPECT_EQ(RaisedBy([] { CheckedMul(46341, 46341); }), 6);
    EXPECT_EQ(RaisedBy([] { CheckedDiv(kMin, -1); }), 6);
}

TEST(CheckedArithmetic, RaisesDivisionByZero) {
    EXPECT_EQ(RaisedBy([] { CheckedDiv(1, 0); }), 11);
    EXPECT_EQ(RaisedBy([] { CheckedMod(1, 0); }), 11);
}

}  // namespace
}  // namespace demovex
