#include "platform/text.h"

#include <gtest/gtest.h>

#include "tests/support/fake_text_service.h"
#include "tests/support/raised.h"

namespace demovex {
namespace {

TEST(TryNumber, IsTheNumberOrNothingWhereReadingOneRaises) {
    const FakeTextService text(FakeLocale::kGermany);
    EXPECT_EQ(text.TryNumber(L"1.234,5"), 1234.5);
    for (const wchar_t* refused : {L"", L"zwei", L"1e999"}) {
        EXPECT_NE(RaisedBy([&] { text.ToNumber(refused); }), 0) << testing::PrintToString(refused);
        EXPECT_EQ(text.TryNumber(refused), std::nullopt) << testing::PrintToString(refused);
    }
}

TEST(LeadingNumber, TakesTheNumberThatLeads) {
    EXPECT_EQ(LeadingNumber(L"12"), 12);
    EXPECT_EQ(LeadingNumber(L"12 St\u00FCck"), 12);
    EXPECT_EQ(LeadingNumber(L"-2.5kg"), -2.5);
    EXPECT_EQ(LeadingNumber(L"+.5"), 0.5);
    EXPECT_EQ(LeadingNumber(L"1..2"), 1);
    EXPECT_EQ(LeadingNumber(L"2,5"), 2);
    EXPECT_EQ(LeadingNumber(L"1.234,5"), 1.234);
}

TEST(LeadingNumber, IsZeroWhereNoNumberLeads) {
    for (const wchar_t* text : {L"", L"   ", L"St\u00FCck 3", L"-", L".", L"--1", L"(5)", L"&",
                                L"&H", L"&X1", L"e5", L"\u00A05", L"\r5"}) {
        EXPECT_EQ(LeadingNumber(text), 0) << testing::PrintToString(text);
    }
}

TEST(LeadingNumber, PassesOverBlanksTabsAndLineFeedsAnywhere) {
    EXPECT_EQ(LeadingNumber(L"  1 615 198th Street"), 1615198);
    EXPECT_EQ(LeadingNumber(L"\t-\n 1\t2 . 5"), -12.5);
    EXPECT_EQ(LeadingNumber(L"1 e 2"), 100);
}

TEST(LeadingNumber, ReadsExponents) {
    EXPECT_EQ(LeadingNumber(L"1e3"), 1000);
    EXPECT_EQ(LeadingNumber(L"1.5D-2"), 0.015);
    EXPECT_EQ(LeadingNumber(L"1d+2x"), 100);
    EXPECT_EQ(LeadingNumber(L"1e"), 1);
    EXPECT_EQ(LeadingNumber(L"1e+"), 1);
    EXPECT_EQ(LeadingNumber(L"1e-400"), 0);
    EXPECT_EQ(LeadingNumber(L"0e400"), 0);
    EXPECT_EQ(LeadingNumber(L"0e99999999999999999999999"), 0);
    EXPECT_EQ(LeadingNumber(L"0." + std::wstring(2000, L'0') + L"1e2001"), 1);
    EXPECT_EQ(LeadingNumber(L"1" + std::wstring(2000, L'0') + L"e-2000"), 1);
    EXPECT_EQ(RaisedBy([] { LeadingNumber(L"1e400"); }), 6);
    EXPECT_EQ(RaisedBy([] { LeadingNumber(std::wstring(400, L'9')); }), 6);
}

TEST(LeadingNumber, ReadsHexadecimalAndOctalLiterals) {
    EXPECT_EQ(LeadingNumber(L"&H10"), 16);
    EXPECT_EQ(LeadingNumber(L" & h f f g"), 255);
    EXPECT_EQ(LeadingNumber(L"&o17"), 15);
    EXPECT_EQ(LeadingNumber(L"&O18"), 1);
    EXPECT_EQ(LeadingNumber(L"&HFFFF"), -1);
    EXPECT_EQ(LeadingNumber(L"&HFFFF&"), 65535);
    EXPECT_EQ(LeadingNumber(L"&H10000"), 65536);
    EXPECT_EQ(LeadingNumber(L"&HFFFFFFFF"), -1);
    EXPECT_EQ(LeadingNumber(L"&H100000000"), 4294967296.0);
    // each range of signed literals at its edges
    EXPECT_EQ(LeadingNumber(L"&H7FFF"), 32767);
    EXPECT_EQ(LeadingNumber(L"&H8000"), -32768);
    EXPECT_EQ(LeadingNumber(L"&H8000&"), 32768);
    EXPECT_EQ(LeadingNumber(L"&H7FFFFFFF"), 2147483647.0);
    EXPECT_EQ(LeadingNumber(L"&H80000000"), -2147483648.0);
    EXPECT_EQ(LeadingNumber(L"&HFFFFFFFF&"), -1);
    EXPECT_EQ(LeadingNumber(L"&habcdefABCDEF"), 0xABCDEFABCDEFull);
    EXPECT_EQ(LeadingNumber(L"&HG"), 0);
}

TEST(LeadingNumber, AHexadecimalNumberTooLargeForADoubleIsAnOverflow) {
    const auto digits = [](std::size_t count) { return L"&H" + std::wstring(count, L'F'); };
    EXPECT_GT(LeadingNumber(digits(240)), 1e288);
    EXPECT_EQ(RaisedBy([&] { LeadingNumber(digits(260)); }), 6);
    EXPECT_EQ(RaisedBy([&] { LeadingNumber(digits(100000)); }), 6);
}

TEST(TrimBlanks, RemovesOnlyBlanksAndOnlyAtTheEnds) {
    EXPECT_EQ(TrimBlanks(L"  a b  "), L"a b");
    EXPECT_EQ(TrimBlanks(L"\t a\u00A0 "), L"\t a\u00A0");
    EXPECT_EQ(TrimBlanks(L"   "), L"");
    EXPECT_EQ(TrimBlanks(L""), L"");
}

// The fake that native tests of other floors stand on.

TEST(FakeTextService, ReadsUnusualNumbers) {
    const FakeTextService text(FakeLocale::kGermany);
    EXPECT_EQ(text.ToNumber(L"1.234,5"), 1234.5);
    EXPECT_EQ(text.ToNumber(L"(5)"), -5);
    EXPECT_EQ(text.ToNumber(L"12-"), -12);
    EXPECT_EQ(text.ToNumber(L"- 5"), -5);
    EXPECT_EQ(text.ToNumber(L"1e3"), 1000);
    EXPECT_EQ(text.ToNumber(L"1,5E-2"), 0.015);
    EXPECT_EQ(text.ToNumber(L"\u20AC 5"), 5);
    EXPECT_EQ(text.ToNumber(L"&H10"), 16);
    EXPECT_EQ(text.ToNumber(L"\t5 "), 5);
}

TEST(FakeTextService, PassesOverSeparatorsAsTheSystemDoes) {
    const FakeTextService german(FakeLocale::kGermany);
    EXPECT_EQ(german.ToNumber(L"1234.56"), 123456);
    EXPECT_EQ(german.ToNumber(L"1..2"), 12);
    EXPECT_EQ(german.ToNumber(L"5."), 5);
    EXPECT_EQ(RaisedBy([&] { german.ToNumber(L"1 234,5"); }), 13);
    EXPECT_EQ(RaisedBy([&] { german.ToNumber(L".5"); }), 13);
    const FakeTextService austrian;
    EXPECT_EQ(austrian.ToNumber(L"1.234,5"), 1234.5);
    EXPECT_EQ(austrian.ToNumber(L"1 234,5"), 1234.5);
    EXPECT_EQ(austrian.ToNumber(L"1\u00A0234,5"), 1234.5);
}

TEST(FakeTextService, RaisesTypeMismatchAndOverflow) {
    const FakeTextService text;
    for (const wchar_t* bad : {L"", L" ", L"1a", L"a", L"-", L"1,2,3", L"()", L"(-5)", L"1e",
                               L"--5", L"&Hxyz", L"&H", L"5 5 5x", L"e5", L"\u20AC"}) {
        EXPECT_EQ(RaisedBy([&] { text.ToNumber(bad); }), 13) << testing::PrintToString(bad);
    }
    EXPECT_EQ(RaisedBy([&] { text.ToNumber(L"1e400"); }), 6);
}

TEST(FakeTextService, FormatsInTheChosenLocale) {
    EXPECT_EQ(FakeTextService().FormatAmount(1234.5), L"1\u00A0234,50");
    EXPECT_EQ(FakeTextService(FakeLocale::kGermany).FormatAmount(1234.5), L"1.234,50");
    EXPECT_EQ(FakeTextService(FakeLocale::kUnitedStates).FormatAmount(1234.5), L"1,234.50");
    EXPECT_EQ(FakeTextService().FromNumber(2.5), L"2,5");
}

TEST(FakeTextService, ComparesWithoutCaseAndWithUmlautsBesideTheirLetter) {
    const FakeTextService text;
    EXPECT_EQ(text.CompareText(L"abc", L"ABC"), 0);
    EXPECT_EQ(text.CompareText(L"4711", L"47110"), -1);
    EXPECT_EQ(text.CompareText(L"\u00E4", L"\u00C4"), 0);
    EXPECT_EQ(text.CompareText(L"a", L"\u00E4"), -1);
    EXPECT_EQ(text.CompareText(L"\u00E4", L"b"), -1);
    EXPECT_EQ(text.CompareText(L"9", L"a"), -1);
    EXPECT_EQ(text.CompareText(L"_", L"0"), -1);
    EXPECT_EQ(text.CompareText(L"coop", L"co-op"), -1);
    EXPECT_EQ(text.CompareText(L"co-op", L"coox"), -1);
    EXPECT_EQ(text.CompareText(L"Stra\u00DFe", L"strasse"), 0);
    EXPECT_EQ(text.CompareText(L"", L""), 0);
    EXPECT_EQ(text.CompareText(L"", L"a"), -1);
}

TEST(FakeTextService, ConvertsTheCodePageBothWays) {
    const FakeTextService text;
    bool lossy = false;
    EXPECT_EQ(text.ToAnsi(L"\u20AC \u00E4\u00DF", &lossy), "\x80 \xE4\xDF");
    EXPECT_FALSE(lossy);
    EXPECT_EQ(text.ToAnsi(L"\u4E00x", &lossy), "?x");
    EXPECT_TRUE(lossy);
    std::string all;
    for (int i = 0; i < 256; ++i) all += static_cast<char>(static_cast<unsigned char>(i));
    EXPECT_EQ(text.ToAnsi(text.FromAnsi(all)), all);
}

}  // namespace
}  // namespace demovex
