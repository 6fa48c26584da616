#include "containers/prime.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "tests/support/raised_error.h"

namespace demovex {
namespace {

// The process shares one table, and any test may be first to ask it: taken before all of them.
// 7919 is the thousandth prime.
struct FirstSteps {
    PrimeTableSize fresh = KnownPrimes();
    PrimeTableSize up_to_limit = (IsPrime(7907 * 7907), KnownPrimes());
    PrimeTableSize one_more = (IsPrime(7919 * 7919), KnownPrimes());
} const first_steps;

TEST(KnownPrimes, BeginWithTheTenBelow30AndRoomForAThousand) {
    EXPECT_EQ(first_steps.fresh.count, 10);
    EXPECT_EQ(first_steps.fresh.capacity, 1000);
}

TEST(KnownPrimes, GrowByAThousandOnlyWhenAThousandAreKnown) {
    EXPECT_EQ(first_steps.up_to_limit.count, 1000) << "one above 7907";
    EXPECT_EQ(first_steps.up_to_limit.capacity, 1000);
    EXPECT_EQ(first_steps.one_more.count, 1001);
    EXPECT_EQ(first_steps.one_more.capacity, 2000);
}

TEST(FindPrime, GivesTheFirstPrimeNotBelow) {
    EXPECT_EQ(FindPrime(20), 23);
    EXPECT_EQ(FindPrime(23), 23);
    EXPECT_EQ(FindPrime(24), 29);
    EXPECT_EQ(FindPrime(0), 1);
    EXPECT_EQ(FindPrime(220), 223);
    EXPECT_EQ(FindPrime(1000), 1009);
    EXPECT_EQ(FindPrime(2000020), 2000029);
}

TEST(FindPrime, LooksAtOddNumbersOnly) {
    EXPECT_EQ(FindPrime(1), 1);
    EXPECT_EQ(FindPrime(2), 3) << "2 itself is even";
    EXPECT_EQ(FindPrime(3), 3);
}

TEST(FindPrime, ClearsTheSign) {
    EXPECT_EQ(FindPrime(-1), 2147483647);
    EXPECT_EQ(FindPrime(-2147483647 - 1), 1);
}

TEST(FindPrime, ReachesTheLargest32BitPrime) {
    EXPECT_EQ(FindPrime(2147483630), 2147483647);
    EXPECT_EQ(FindPrime(2147483646), 2147483647);
}

TEST(IsPrime, CountsZeroAndOneAsPrime) {
    EXPECT_TRUE(IsPrime(0));
    EXPECT_TRUE(IsPrime(1));
}

TEST(IsPrime, AgreesWithASieve) {
    constexpr std::int32_t kLimit = 100000;
    std::vector<bool> composite(kLimit);
    for (std::int32_t n = 2; n < kLimit; ++n) {
        if (!composite[static_cast<std::size_t>(n)]) {
            for (std::int64_t m = std::int64_t{n} * n; m < kLimit; m += n) {
                composite[static_cast<std::size_t>(m)] = true;
            }
        }
        ASSERT_EQ(IsPrime(n), !composite[static_cast<std::size_t>(n)]) << n;
    }
}

TEST(IsPrime, KnowsLargePrimesAndSquaresOfPrimes) {
    EXPECT_TRUE(IsPrime(2147483647));
    EXPECT_FALSE(IsPrime(2147117569)) << "46337 squared";
    EXPECT_FALSE(IsPrime(2147483646));
}

TEST(IsPrime, RefusesNegativeNumbers) {
    EXPECT_EQ(Raised([] { IsPrime(-1); }).number, 5);
}

TEST(KnownPrimes, GrowAsFarAsAskedForInStepsOfAThousand) {
    IsPrime(2147483647);
    const PrimeTableSize size = KnownPrimes();
    // the primes up to the first one above 46341
    EXPECT_EQ(size.count, 4793);
    EXPECT_EQ(size.capacity, 5000);
    IsPrime(1000);
    EXPECT_EQ(KnownPrimes().count, size.count);
}

}  // namespace
}  // namespace demovex
