#include "base/scope_guard.h"

#include <gtest/gtest.h>

#include "base/error.h"

namespace demovex {
namespace {

TEST(ScopeGuard, ActsWhenTheScopeIsLeftAndNotBefore) {
    int acted = 0;
    {
        const ScopeExit act([&] { ++acted; });
        EXPECT_EQ(acted, 0);
    }
    EXPECT_EQ(acted, 1);
    EXPECT_NE(FailureOf([&] {
                  const ScopeExit act([&] { ++acted; });
                  RaiseRuntimeError(5);
              }),
              std::nullopt);
    EXPECT_EQ(acted, 2);
}

TEST(ScopeGuard, AFlagIsSetForAsLongAsItLives) {
    bool flag = false;
    EXPECT_NE(FailureOf([&] {
                  const FlagWhile busy(flag);
                  EXPECT_TRUE(flag);
                  RaiseRuntimeError(5);
              }),
              std::nullopt);
    EXPECT_FALSE(flag);
}

}  // namespace
}  // namespace demovex
