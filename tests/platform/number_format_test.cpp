#include "platform/number_format.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "tests/support/raised.h"

namespace demovex {
namespace {

NumberFormat Germany() {
    return {};
}
NumberFormat Austria() {
    NumberFormat format;
    format.thousands = L"\u00A0";
    return format;
}
NumberFormat UnitedStates() {
    NumberFormat format;
    format.decimal = L".";
    format.thousands = L",";
    return format;
}

TEST(FormatAmount, GroupsThousandsAndShowsTwoDecimals) {
    EXPECT_EQ(FormatAmount(0, Germany()), L"0,00");
    EXPECT_EQ(FormatAmount(7.27, Germany()), L"7,27");
    EXPECT_EQ(FormatAmount(0.05, Germany()), L"0,05");
    EXPECT_EQ(FormatAmount(999.999, Germany()), L"1.000,00");
    EXPECT_EQ(FormatAmount(1234567.891, Germany()), L"1.234.567,89");
    EXPECT_EQ(FormatAmount(-1234.5, Germany()), L"-1.234,50");
    EXPECT_EQ(FormatAmount(1234.5, Austria()), L"1\u00A0234,50");
    EXPECT_EQ(FormatAmount(1234.5, UnitedStates()), L"1,234.50");
}

TEST(FormatAmount, RoundsTheFifteenDigitFormHalfAwayFromZero) {
    EXPECT_EQ(FormatAmount(2.675, Germany()), L"2,68");
    EXPECT_EQ(FormatAmount(1.005, Germany()), L"1,01");
    EXPECT_EQ(FormatAmount(-1.005, Germany()), L"-1,01");
    EXPECT_EQ(FormatAmount(0.125, Germany()), L"0,13");
    EXPECT_EQ(FormatAmount(0.005, Germany()), L"0,01");
    EXPECT_EQ(FormatAmount(0.995, Germany()), L"1,00");
    EXPECT_EQ(FormatAmount(9.995, Germany()), L"10,00");
    EXPECT_EQ(FormatAmount(0.00499999999999999, Germany()), L"0,00");
    // the nearest doubles lie closer to the half than fifteen digits can tell
    EXPECT_EQ(FormatAmount(std::nextafter(0.125, 0.0), Germany()), L"0,13");
}

TEST(FormatAmount, HasNoMinusBeforeAZero) {
    EXPECT_EQ(FormatAmount(-0.0, Germany()), L"0,00");
    EXPECT_EQ(FormatAmount(-0.004, Germany()), L"0,00");
    EXPECT_EQ(FormatAmount(-0.00499999999999999, Germany()), L"0,00");
    EXPECT_EQ(FormatAmount(-1e-300, Germany()), L"0,00");
    EXPECT_EQ(FormatAmount(-0.005, Germany()), L"-0,01");
}

TEST(FormatAmount, ShowsAtMostFifteenDigitsOfLargeValues) {
    EXPECT_EQ(FormatAmount(123456789012345.6, Germany()), L"123.456.789.012.346,00");
    EXPECT_EQ(FormatAmount(99999999999999.95, Germany()), L"100.000.000.000.000,00");
    EXPECT_EQ(FormatAmount(1234567890123456.0, Germany()), L"1.234.567.890.123.460,00");
    EXPECT_EQ(FormatAmount(9999999999999999.0, Germany()), L"10.000.000.000.000.000,00");
    const std::wstring huge = FormatAmount(-1.5e300, Germany());
    EXPECT_EQ(huge.substr(0, 9), L"-1.500.00");
    EXPECT_EQ(huge.size(), 1u + 301u + 100u + 3u);
}

TEST(FormatAmount, RaisesOverflowForWhatIsNoNumber) {
    EXPECT_EQ(RaisedBy([] { FormatAmount(std::numeric_limits<double>::infinity(), Germany()); }),
              6);
    EXPECT_EQ(RaisedBy([] { FormatAmount(std::nan(""), Germany()); }), 6);
    EXPECT_EQ(RaisedBy([] { FormatGeneral(-std::numeric_limits<double>::infinity(), Germany()); }),
              6);
}

TEST(FormatAmount, FollowsTheGroupingOfTheLocale) {
    NumberFormat format = UnitedStates();
    format.SetGrouping(L"3;2;0");
    EXPECT_EQ(FormatAmount(123456789.0, format), L"12,34,56,789.00");
    format.SetGrouping(L"3");
    EXPECT_EQ(FormatAmount(123456789.0, format), L"123456,789.00");
    format.SetGrouping(L"0");
    EXPECT_EQ(FormatAmount(123456789.0, format), L"123456789.00");
    format.SetGrouping(L"4;0");
    EXPECT_EQ(FormatAmount(123456789.0, format), L"1,2345,6789.00");
    format.SetGrouping(L"");
    EXPECT_EQ(FormatAmount(1234.0, format), L"1234.00");
    format.SetGrouping(L"x");
    EXPECT_EQ(FormatAmount(1234.0, format), L"1234.00");
}

TEST(FormatGeneral, UsesAtMostFifteenDigitsWithoutTrailingZeros) {
    EXPECT_EQ(FormatGeneral(0, Germany()), L"0");
    EXPECT_EQ(FormatGeneral(-0.0, Germany()), L"0");
    EXPECT_EQ(FormatGeneral(2, Germany()), L"2");
    EXPECT_EQ(FormatGeneral(2.5, Germany()), L"2,5");
    EXPECT_EQ(FormatGeneral(2.5, UnitedStates()), L"2.5");
    EXPECT_EQ(FormatGeneral(-0.001, Germany()), L"-0,001");
    EXPECT_EQ(FormatGeneral(0.1 + 0.2, Germany()), L"0,3");
    EXPECT_EQ(FormatGeneral(1234567.5, Germany()), L"1234567,5");
    EXPECT_EQ(FormatGeneral(1.0 / 3, Germany()), L"0,333333333333333");
    EXPECT_EQ(FormatGeneral(123456789012345.0, Germany()), L"123456789012345");
    EXPECT_EQ(FormatGeneral(100000000000000.0, Germany()), L"100000000000000");
}

TEST(FormatGeneral, UsesTheScientificFormForVeryLargeAndVerySmallValues) {
    EXPECT_EQ(FormatGeneral(1e15, Germany()), L"1E+15");
    EXPECT_EQ(FormatGeneral(-1.5e300, Germany()), L"-1,5E+300");
    EXPECT_EQ(FormatGeneral(1.0 / 30, Germany()), L"3,33333333333333E-02");
    EXPECT_EQ(FormatGeneral(1e-15, Germany()), L"0,000000000000001");
    EXPECT_EQ(FormatGeneral(1e-16, Germany()), L"1E-16");
    EXPECT_EQ(FormatGeneral(999999999999999.9, Germany()), L"1E+15");
}

TEST(ReadPlainNumber, ReadsDigitsWithSeparatorsBlanksAndASign) {
    EXPECT_EQ(ReadPlainNumber(L"1.234,56", Germany()), 1234.56);
    EXPECT_EQ(ReadPlainNumber(L"  -1.234,56 ", Germany()), -1234.56);
    EXPECT_EQ(ReadPlainNumber(L"+7", Germany()), 7.0);
    EXPECT_EQ(ReadPlainNumber(L",5", Germany()), 0.5);
    EXPECT_EQ(ReadPlainNumber(L"5,", Germany()), 5.0);
    EXPECT_EQ(ReadPlainNumber(L"007", Germany()), 7.0);
    EXPECT_EQ(ReadPlainNumber(L"1,234.5", UnitedStates()), 1234.5);
}

TEST(ReadPlainNumber, TakesThousandsSeparatorsAnywhereBetweenIntegerDigits) {
    EXPECT_EQ(ReadPlainNumber(L"1234.56", Germany()), 123456.0);
    EXPECT_EQ(ReadPlainNumber(L"1.2.3", Germany()), 123.0);
}

TEST(ReadPlainNumber, ReadsNoBreakSpacesOfEitherWidthAsOneSeparator) {
    EXPECT_EQ(ReadPlainNumber(L"1\u00A0234,5", Austria()), 1234.5);
    EXPECT_EQ(ReadPlainNumber(L"1\u202F234,5", Austria()), 1234.5);
    NumberFormat narrow = Austria();
    narrow.thousands = L"\u202F";
    EXPECT_EQ(ReadPlainNumber(L"1\u00A0234,5", narrow), 1234.5);
    EXPECT_EQ(ReadPlainNumber(L"1\u00A0234,5", Germany()), std::nullopt);
}

TEST(ReadPlainNumber, LeavesEverythingUnusualToTheSystem) {
    for (const wchar_t* text :
         {L"",    L" ",    L"-",     L",",    L".",   L"1a",       L"1,2,3",
          L"12-", L"(5)",  L"1e3",   L"&H10", L"- 5", L"1 234",    L".5",
          L"5.",  L"1..2", L"1,2.3", L"--1",  L"1\t", L"\u20AC 5", L"1\u0660"}) {
        EXPECT_EQ(ReadPlainNumber(text, Germany()), std::nullopt) << testing::PrintToString(text);
    }
}

TEST(ReadPlainNumber, RaisesOverflowWhereADoubleEnds) {
    EXPECT_EQ(ReadPlainNumber(L"1" + std::wstring(308, L'0'), Germany()), 1e308);
    EXPECT_EQ(RaisedBy([] { ReadPlainNumber(L"1" + std::wstring(309, L'0'), Germany()); }), 6);
    EXPECT_EQ(RaisedBy([] { ReadPlainNumber(L"2" + std::wstring(308, L'0'), Germany()); }), 6);
    EXPECT_EQ(ReadPlainNumber(L"0," + std::wstring(400, L'0') + L"1", Germany()), 0.0);
}

TEST(ReadPlainNumber, ReadsTenThousandDigitsOrRaisesWithoutHarm) {
    EXPECT_EQ(RaisedBy([] { ReadPlainNumber(std::wstring(10000, L'9'), Germany()); }), 6);
    EXPECT_EQ(ReadPlainNumber(std::wstring(10000, L'0') + L"5", Germany()), 5.0);
    EXPECT_EQ(ReadPlainNumber(L"0," + std::wstring(10000, L'3'), Germany()), 1.0 / 3);
}

TEST(NumberFormats, WhatWasFormattedReadsBack) {
    std::mt19937_64 random(7);
    for (const NumberFormat& format : {Germany(), Austria(), UnitedStates()}) {
        for (int i = 0; i < 20000; ++i) {
            const int size = static_cast<int>(random() % 14);
            const double value =
                static_cast<double>(static_cast<std::int64_t>(random() % 2000000)) - 1000000;
            const double scaled = value / 100.0 * std::pow(10.0, size);
            const std::wstring text = FormatAmount(scaled, format);
            const auto back = ReadPlainNumber(text, format);
            ASSERT_TRUE(back.has_value()) << testing::PrintToString(text);
            EXPECT_EQ(FormatAmount(*back, format), text);
            EXPECT_NEAR(*back, scaled, std::fabs(scaled) * 1e-14 + 0.00500000001);
        }
    }
}

// The short way that most values take must round exactly as the digits do.
TEST(NumberFormats, RoundingNearHalvesAgreesWithTheDigits) {
    std::mt19937_64 random(11);
    for (int i = 0; i < 20000; ++i) {
        const std::uint64_t thousandths = (random() % 100000000) * 10 + 5;
        const double value = static_cast<double>(thousandths) / 1000.0;
        // at most 12 digits: the fifteen-digit form is the number that was meant, a true half
        const std::string hundredths = std::to_string((thousandths + 5) / 10);
        const std::wstring wide(hundredths.begin(), hundredths.end());
        std::wstring text = FormatAmount(value, Germany());
        std::erase(text, L'.');
        std::erase(text, L',');
        text.erase(0, std::min(text.find_first_not_of(L'0'), text.size()));
        ASSERT_EQ(text, wide) << value;
    }
}

TEST(NumberFormats, SeparatorsWithADigitInThemAreOfNoUse) {
    NumberFormat format;
    EXPECT_TRUE(IsUsable(format));
    format.thousands.clear();
    EXPECT_TRUE(IsUsable(format));
    for (const wchar_t* text : {L"0", L"5", L"9", L",1"}) {
        format = NumberFormat();
        format.decimal = text;
        EXPECT_FALSE(IsUsable(format));
        format = NumberFormat();
        format.thousands = text;
        EXPECT_FALSE(IsUsable(format));
    }
    format = NumberFormat();
    format.decimal = L"'";
    format.thousands = L"\u00A0";
    EXPECT_TRUE(IsUsable(format));
}

TEST(DecimalToDouble, IsCorrectlyRoundedAtTheEdges) {
    EXPECT_EQ(DecimalToDouble("9007199254740993", 0), 9007199254740992.0);
    EXPECT_EQ(DecimalToDouble("17976931348623157", 292), 1.7976931348623157e308);
    EXPECT_EQ(DecimalToDouble("49", -325), 5e-324);
    EXPECT_EQ(DecimalToDouble("1", -400), 0.0);
    EXPECT_EQ(DecimalToDouble("0", 4000), 0.0);
    EXPECT_EQ(RaisedBy([] { DecimalToDouble("1", 309); }), 6);
    EXPECT_EQ(RaisedBy([] { DecimalToDouble("1", 1'000'000'000'000); }), 6);
}

}  // namespace
}  // namespace demovex
