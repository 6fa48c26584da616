// Numbers at the edges of the quick ways: the longest texts that they take, the shortest that they
// leave to the exact way, separators of every length.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <random>

#include "platform/number_format.h"

namespace demovex {
namespace {

// The nearest double by the C library, which reads no separators.
double Nearest(const std::string& plain) {
    return std::strtod(plain.c_str(), nullptr);
}

TEST(NumberEdges, EveryCountOfDigitsAndDecimalsReadsAsTheNearestDouble) {
    std::mt19937_64 random(23);
    const NumberFormat german;
    for (int round = 0; round < 30000; ++round) {
        const std::size_t count = random() % 26 + 1;
        std::string digits;
        for (std::size_t i = 0; i < count; ++i) {
            // often nines or zeros, which carry far
            const std::uint64_t kind = random() % 4;
            digits += static_cast<char>('0' + (kind == 0 ? 9 : kind == 1 ? 0 : random() % 10));
        }
        const std::size_t decimals = random() % (count + 1);
        const std::string head = digits.substr(0, count - decimals);
        const std::string tail = digits.substr(count - decimals);
        const std::string german_text = head + (decimals > 0 ? "," : "") + tail;
        const std::string plain = head + "." + tail;
        const auto read =
            ReadPlainNumber(std::wstring(german_text.begin(), german_text.end()), german);
        ASSERT_TRUE(read.has_value()) << german_text;
        ASSERT_EQ(*read, Nearest(plain)) << german_text;
        const auto negative =
            ReadPlainNumber(L"-" + std::wstring(german_text.begin(), german_text.end()), german);
        ASSERT_EQ(negative, -Nearest(plain)) << german_text;
    }
}

TEST(NumberEdges, ManyDecimalsReadAsTheNearestDouble) {
    for (std::size_t zeros = 0; zeros <= 400; ++zeros) {
        for (const std::string digits : {"1", "7", "9007199254740993", "123456789012345678901"}) {
            const std::string tail = std::string(zeros, '0') + digits;
            const auto read = ReadPlainNumber(L"0," + std::wstring(tail.begin(), tail.end()), {});
            ASSERT_EQ(read, Nearest("0." + tail)) << zeros << " zeros before " << digits;
            ASSERT_EQ(DecimalToDouble(digits, -static_cast<std::int64_t>(tail.size())),
                      Nearest("0." + tail));
        }
    }
}

TEST(NumberEdges, PositiveExponentsReadAsTheNearestDouble) {
    for (std::int64_t exponent = 0; exponent <= 280; ++exponent) {
        for (const std::string digits : {"1", "3", "9007199254740992", "9007199254740993",
                                         "999999999999999999", "9999999999999999999"}) {
            ASSERT_EQ(DecimalToDouble(digits, exponent),
                      Nearest(digits + "e" + std::to_string(exponent)))
                << digits << "e" << exponent;
        }
    }
}

TEST(NumberEdges, ACarryMayEndAtTheFirstDigit) {
    EXPECT_EQ(FormatAmount(1.995, {}), L"2,00");
    EXPECT_EQ(FormatAmount(8.995, {}), L"9,00");
    EXPECT_EQ(FormatAmount(-1.995, {}), L"-2,00");
    EXPECT_EQ(FormatAmount(0.015, {}), L"0,02");
    EXPECT_EQ(FormatAmount(99.995, {}), L"100,00");
}

// An amount too long for the quick way, and a separator too long for it.
TEST(NumberEdges, LongAmountsAndLongSeparatorsAreGroupedAlike) {
    struct Case {
        const wchar_t* grouping;
        const wchar_t* amount;  // of 1.5e23
    };
    for (const auto& [grouping, amount] :
         {Case{L"3;0", L"150.000.000.000.000.000.000.000,00"},
          Case{L"3", L"150000000000000000000.000,00"},
          Case{L"3;2;0", L"1.50.00.00.00.00.00.00.00.00.00.000,00"},
          Case{L"4;0", L"1500.0000.0000.0000.0000.0000,00"},
          Case{L"0", L"150000000000000000000000,00"}, Case{L"", L"150000000000000000000000,00"}}) {
        NumberFormat format;
        format.SetGrouping(grouping);
        EXPECT_EQ(FormatAmount(1.5e23, format), amount) << testing::PrintToString(grouping);
        format.thousands = L"";
        EXPECT_EQ(FormatAmount(1.5e23, format), L"150000000000000000000000,00");
        EXPECT_EQ(FormatAmount(1500, format), L"1500,00");
    }
    NumberFormat long_separators;
    long_separators.thousands = L" and ";
    EXPECT_EQ(FormatAmount(-1234567.5, long_separators), L"-1 and 234 and 567,50");
    long_separators.decimal = std::wstring(200, L'd');
    EXPECT_EQ(FormatAmount(7, long_separators), L"7" + std::wstring(200, L'd') + L"00");
    long_separators.thousands = L"";
    EXPECT_EQ(FormatAmount(1234.5, long_separators), L"1234" + std::wstring(200, L'd') + L"50");
}

// Twenty digits before the decimals are the most that the quick way has room for.
TEST(NumberEdges, TheLongestQuickAmountHasRoomForItsSeparators) {
    NumberFormat format;
    format.thousands = L"<3>";
    format.decimal = L"[,]";
    format.SetGrouping(L"1;0");
    const std::wstring amount = FormatAmount(-12345678901234500000.0, format);
    std::wstring expected = L"-1";
    for (const wchar_t digit : std::wstring_view(L"2345678901234500000")) {
        expected += format.thousands + digit;
    }
    EXPECT_EQ(amount, expected + L"[,]00");
}

TEST(NumberEdges, AGroupingThatIsNoneOfTheSystemsLeavesNoGrouping) {
    for (const wchar_t* pattern :
         {L"3;0;3", L"3;", L"3;x", L";3", L"x;3", L"3,0", L"33", L"3;;0", L"0;3", L"3 0", L"-3"}) {
        NumberFormat format;
        format.SetGrouping(pattern);
        if (std::wstring_view(pattern) == L"3;") {
            // a closing semicolon says nothing
            EXPECT_EQ(FormatAmount(1234567, format), L"1234.567,00");
            continue;
        }
        EXPECT_EQ(FormatAmount(1234567, format), L"1234567,00") << testing::PrintToString(pattern);
    }
}

// A host may have changed the C library's decimal point for the whole process.
TEST(NumberEdges, TheCLibrarysDecimalPointChangesNothing) {
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    bool changed = false;
    for (const char* name : {"German", "de_DE.UTF-8", "de_DE", "de_AT.UTF-8", "fr_FR.UTF-8"}) {
        changed = changed || std::setlocale(LC_NUMERIC, name) != nullptr;
    }
    if (!changed) GTEST_SKIP() << "no locale with another decimal point is installed here";
    const std::wstring amount = FormatAmount(2.675, {});
    const std::wstring general = FormatGeneral(1.0 / 3, {});
    const auto read = ReadPlainNumber(L"1234567890123456,5", {});
    std::setlocale(LC_NUMERIC, before.c_str());
    EXPECT_EQ(amount, L"2,68");
    EXPECT_EQ(general, L"0,333333333333333");
    EXPECT_EQ(read, 1234567890123456.5);
}

}  // namespace
}  // namespace demovex
