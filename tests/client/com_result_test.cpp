#include "client/com_result.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

namespace demovex {
namespace {

template <typename E>
ComFailure Described(const E& thrown) {
    try {
        throw thrown;
    } catch (...) {
        return DescribeCurrentException(L"DemoVexClient");
    }
}

ComResult Code(std::uint32_t bits) {
    return static_cast<ComResult>(bits);
}

TEST(ComResults, RunTimeErrorsStandInTheControlFacility) {
    EXPECT_EQ(ComResultOf(1), Code(0x800A0001));
    EXPECT_EQ(ComResultOf(13), Code(0x800A000D));
    EXPECT_EQ(ComResultOf(91), Code(0x800A005B));
    EXPECT_EQ(ComResultOf(65535), Code(0x800AFFFF));
}

TEST(ComResults, ErrorsBelowZeroAreTheirOwnResult) {
    EXPECT_EQ(ComResultOf(-1), Code(0xFFFFFFFF));
    EXPECT_EQ(ComResultOf(Code(0x80004005)), Code(0x80004005));
}

TEST(ComResults, ANumberWithoutAResultIsStillAFailure) {
    EXPECT_EQ(ComResultOf(0), Code(0x800A0005));
    EXPECT_EQ(ComResultOf(65536), Code(0x800A0005));
}

TEST(ComResults, EveryNumberComesBackFromItsResult) {
    for (std::int32_t number = 1; number <= 0xFFFF; ++number) {
        ASSERT_EQ(ErrorNumberOf(ComResultOf(number)), number);
    }
    EXPECT_EQ(ErrorNumberOf(-1), -1);
    EXPECT_EQ(ErrorNumberOf(Code(0x80070005)), Code(0x80070005));
    EXPECT_EQ(ErrorNumberOf(Code(0x800A0000)), Code(0x800A0000));
}

TEST(ComResults, AnErrorKeepsItsNumberSourceAndDescription) {
    const auto failure = Described(Error(kOwnError, L"MSIndex.Item", L"Nicht gefunden"));
    EXPECT_EQ(failure.result, Code(0xFFFFFFFF));
    EXPECT_EQ(failure.source, L"MSIndex.Item");
    EXPECT_EQ(failure.description, L"Nicht gefunden");
}

TEST(ComResults, ARunTimeErrorNamesTheComponentAsItsSource) {
    const auto failure = Described(Error(13, L"", L"Type mismatch"));
    EXPECT_EQ(failure.result, Code(0x800A000D));
    EXPECT_EQ(failure.source, L"DemoVexClient");
    EXPECT_EQ(failure.description, L"Type mismatch");
}

TEST(ComResults, MemoryThatRanOutIsErrorSeven) {
    const auto failure = Described(std::bad_alloc());
    EXPECT_EQ(failure.result, Code(0x800A0007));
    EXPECT_EQ(failure.description, L"Out of memory");
}

TEST(ComResults, AnythingElseThrownIsAnInvalidCall) {
    EXPECT_EQ(Described(std::logic_error("x")).result, Code(0x800A0005));
    EXPECT_EQ(Described(42).result, Code(0x800A0005));
    EXPECT_EQ(Described(42).source, L"DemoVexClient");
    EXPECT_EQ(Described(42).description, L"Invalid procedure call or argument");
}

}  // namespace
}  // namespace demovex
