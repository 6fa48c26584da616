#include "tools/price.h"

#include <gtest/gtest.h>

namespace demovex::tools {
namespace {

constexpr DecimalSign kComma = DecimalSign::kComma, kPoint = DecimalSign::kPoint;

TEST(Price, ReadsWhatPeopleWrite) {
    const struct {
        const char* text;
        DecimalSign sign;
        Amount amount;
    } kCases[] = {
        {"0", kComma, 0},
        {"159", kComma, 1590000},
        {"159,5", kComma, 1595000},
        {"1.234,56", kComma, 12345600},
        {"1 234 567", kComma, 12345670000},
        {"1\xA0"
         "234,5",
         kComma, 12345000},
        {"1'234", kComma, 12340000},
        {"1.250", kComma, 12500000},
        {"12.50", kPoint, 125000},
        {"1,234.5678", kPoint, 12345678},
        {"-3,10", kComma, -31000},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(ReadPrice(c.text, c.sign), std::optional<Amount>(c.amount)) << c.text;
    }
}

TEST(Price, RefusesEverythingElse) {
    for (const char* text :
         {"",        "abc", "12.50", "1.2345", "1234.567", "1.23.456",       "1.234 567",
          "12,",     ",50", "1,2,3", "1e3",    "12-",      "ATS 5",          "5 ATS",
          "1,23456", "- 5", "--5",   ".123",   "1..234",   "123456789012345"}) {
        EXPECT_EQ(ReadPrice(text, kComma), std::nullopt) << text;
    }
    EXPECT_EQ(ReadPrice("12,50", kPoint), std::nullopt);
}

TEST(Price, IsWrittenWithoutGroupsAndReadsBack) {
    EXPECT_EQ(WritePrice(12345600, kComma), "1234,56");
    EXPECT_EQ(WritePrice(12345678, kPoint), "1234.5678");
    EXPECT_EQ(WritePrice(12345000, kComma), "1234,50");
    EXPECT_EQ(WritePrice(1590000, kComma), "159");
    EXPECT_EQ(WritePrice(-5000, kComma), "-0,50");
    for (const Amount amount : {Amount{0}, Amount{1}, Amount{-99990001}, Amount{123456789}}) {
        EXPECT_EQ(ReadPrice(WritePrice(amount, kComma), kComma), std::optional<Amount>(amount));
    }
}

TEST(Price, IsShownWithGroups) {
    EXPECT_EQ(ShowAmount(12345670000, kComma), "1.234.567,00");
    EXPECT_EQ(ShowAmount(-10000005, kPoint), "-1,000.0005");
    EXPECT_EQ(ShowAmount(9990000, kComma), "999,00");
}

}  // namespace
}  // namespace demovex::tools
