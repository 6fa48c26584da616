#include "platform/plain_order.h"

#include <gtest/gtest.h>

#include <string>

namespace demovex {
namespace {

using namespace std::string_view_literals;

std::optional<int> Order(std::wstring_view a, std::string_view b) {
    const auto order = OrderOfPlainText(a, b);
    const auto turned = OrderOfPlainText(b, a);
    // what is told one way is told the other way round
    EXPECT_EQ(order.has_value(), turned.has_value());
    if (order) {
        EXPECT_EQ(*order, -turned.value_or(99));
    }
    return order;
}

TEST(PlainOrder, DigitsDecideWhateverStandsBeforeOrFollows) {
    EXPECT_EQ(Order(L"4711", "4712"), -1);
    EXPECT_EQ(Order(L"ng1", "ng2"), -1);
    EXPECT_EQ(Order(L"K-9\u00E4", "K-1zz"), 1);
    EXPECT_EQ(Order(L"10", "9"), -1);
}

TEST(PlainOrder, ADigitIsLessThanALetterWhereNoLetterStandsBefore) {
    EXPECT_EQ(Order(L"9", "A"), -1);
    EXPECT_EQ(Order(L"19", "1a"), -1);
    EXPECT_EQ(Order(L"n9", "ng"), std::nullopt);
    EXPECT_EQ(Order(L"-9", "-g"), std::nullopt);
}

TEST(PlainOrder, ATextThatEndsComesBeforeADigitAndBeforeALetterBehindADigit) {
    EXPECT_EQ(Order(L"", "0"), -1);
    EXPECT_EQ(Order(L"", "a"), -1);
    EXPECT_EQ(Order(L"a", "a0"), -1);
    EXPECT_EQ(Order(L"a-", "a-0"), -1);
    EXPECT_EQ(Order(L"1", "1z"), -1);
    EXPECT_EQ(Order(L"n", "ng"), std::nullopt);
    EXPECT_EQ(Order(L"1", "1-"), std::nullopt);
    EXPECT_EQ(Order(L"", "-"), std::nullopt);
}

TEST(PlainOrder, TheSameTextIsEqual) {
    EXPECT_EQ(Order(L"", ""), 0);
    EXPECT_EQ(Order(L"KB-11/a", "KB-11/a"), 0);
    EXPECT_EQ(Order(L"a\0b"sv, "a\0b"sv), 0);
}

TEST(PlainOrder, LettersThatDifferAreTheCollations) {
    EXPECT_EQ(Order(L"a", "b"), std::nullopt);
    EXPECT_EQ(Order(L"a", "A"), std::nullopt);
    EXPECT_EQ(Order(L"aA1", "AA2"), std::nullopt);
}

TEST(PlainOrder, WhatIsNotAsciiIsTheCollations) {
    EXPECT_EQ(Order(L"\u00E4", "\xE4"), std::nullopt);
    EXPECT_EQ(Order(L"\u0394"
                    L"1",
                    "\x44"
                    "2"),
              std::nullopt);
    EXPECT_EQ(Order(L"1", "\xB2"), std::nullopt);
    EXPECT_EQ(Order(L"1", "1\xE4"), std::nullopt);
}

}  // namespace
}  // namespace demovex
