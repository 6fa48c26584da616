// The text service against the system's own conversions, in the locale of the run (the program runs
// once per locale).
//
// Where the conversions of Wine are known to be wrong, the values are left to the portable tests,
// which compare with hand-written results:
//   - VarFormat of 1E+15 and more: it prints the scientific form or misplaced zeros, and ends the
//     process on values near 1E+300;
//   - VarFormat of a negative value that rounds to zero: it keeps the minus sign, which an amount
//     shall not have;
//   - VarR8FromStr: it multiplies by inexact powers of ten, so that the last bits may be wrong.
#include "platform/text_win.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <oleauto.h>

#include <cmath>
#include <optional>
#include <random>

#include "tests/support/raised.h"

namespace demovex {
namespace {

std::wstring SystemFormat(double value) {
    VARIANT variant;
    VariantInit(&variant);
    variant.vt = VT_R8;
    variant.dblVal = value;
    wchar_t pattern[] = L"#,##0.00";
    BSTR text = nullptr;
    if (FAILED(VarFormat(&variant, pattern, 0, 0, 0, &text))) return L"<failed>";
    std::wstring result(text, SysStringLen(text));
    SysFreeString(text);
    return result;
}

struct SystemNumber {
    HRESULT result;
    double value;
};
SystemNumber SystemRead(std::wstring text) {
    SystemNumber number{S_OK, 0};
    number.result = VarR8FromStr(text.data(), LOCALE_USER_DEFAULT, 0, &number.value);
    return number;
}

std::string Show(std::wstring_view text) {
    return testing::PrintToString(std::wstring(text));
}

// Random values as they occur: few or many decimals, any size below 1E+15, near halves.
class Values {
  public:
    double Next() {
        const double sign = random_() % 2 ? 1 : -1;
        const auto integer = [&](std::uint64_t below) {
            return static_cast<double>(random_() % below);
        };
        switch (random_() % 5) {
            case 0:  // prices
                return sign * integer(100'000'000) / 100.0;
            case 1:  // halves of the last place shown
                return sign * (integer(1'000'000'000) * 10 + 5) / 1000.0;
            case 2:  // euro amounts out of schillings
                return sign * integer(100'000'000) / 100.0 / 13.7603;
            case 3:  // any size
                return sign * integer(1'000'000'000'000'000) / std::pow(10.0, integer(16));
            default: {  // beside a half
                const double half = (integer(1'000'000) * 10 + 5) / 1000.0;
                return sign * std::nextafter(half, random_() % 2 ? 0.0 : 1e300);
            }
        }
    }
    std::mt19937_64& random() { return random_; }

  private:
    std::mt19937_64 random_{20240229};
};

struct WinText : testing::Test {
    WinTextService text;
};

TEST_F(WinText, FormatsAmountsAsTheSystemDoes) {
    Values values;
    int compared = 0;
    for (int i = 0; i < 120'000; ++i) {
        const double value = values.Next();
        const std::wstring ours = text.FormatAmount(value);
        if (value < 0 && ours == text.FormatAmount(0)) continue;
        ASSERT_EQ(Show(ours), Show(SystemFormat(value))) << testing::PrintToString(value);
        ++compared;
    }
    EXPECT_GT(compared, 110'000);
}

TEST_F(WinText, ReadsBackWhatItFormatted) {
    Values values;
    for (int i = 0; i < 100'000; ++i) {
        const double value = values.Next();
        const std::wstring shown = text.FormatAmount(value);
        ASSERT_EQ(text.FormatAmount(text.ToNumber(shown)), shown) << Show(shown);
        ASSERT_NEAR(text.ToNumber(shown), value, 0.0050001 + std::fabs(value) * 1e-14);
        const std::wstring general = text.FromNumber(value);
        ASSERT_EQ(text.FromNumber(text.ToNumber(general)), general) << Show(general);
    }
    for (double value : {1e15, 1234567890123456.0, -1e20, 1.5e300}) {
        const std::wstring shown = text.FormatAmount(value);
        EXPECT_EQ(text.FormatAmount(text.ToNumber(shown)), shown) << Show(shown);
    }
}

TEST_F(WinText, ReadsTextsAsTheSystemDoes) {
    Values values;
    auto& random = values.random();
    // characters that occur in numbers and near them, digits most
    const std::wstring characters =
        L"00112233445566778899,,..  \u00A0\u00A0--++eE()\u20AC$%&H'abx\t" + text.format().thousands;
    int numbers = 0, refused = 0, plain = 0;
    for (int i = 0; i < 200'000; ++i) {
        std::wstring sample;
        if (i % 2 == 0) {
            // a written number with up to two characters changed
            sample = text.FormatAmount(values.Next());
            for (std::size_t n = random() % 3; n > 0; --n) {
                const wchar_t c = characters[random() % characters.size()];
                const std::size_t at = random() % (sample.size() + 1);
                if (random() % 2 && at < sample.size()) {
                    sample[at] = c;
                } else {
                    sample.insert(at, 1, c);
                }
            }
        } else {
            for (std::size_t n = random() % 8; n > 0; --n) {
                sample += characters[random() % characters.size()];
            }
        }
        const SystemNumber expected = SystemRead(sample);
        std::optional<double> ours;
        const int error = RaisedBy([&] { ours = text.ToNumber(sample); });
        if (ReadPlainNumber(sample, text.format())) ++plain;
        if (FAILED(expected.result)) {
            ++refused;
            ASSERT_EQ(error, expected.result == DISP_E_OVERFLOW ? 6 : 13) << Show(sample);
        } else {
            ++numbers;
            ASSERT_EQ(error, 0) << Show(sample);
            ASSERT_NEAR(*ours, expected.value, std::fabs(expected.value) * 1e-15) << Show(sample);
        }
    }
    // the samples must reach all sides
    EXPECT_GT(numbers, 60'000);
    EXPECT_GT(refused, 40'000);
    EXPECT_GT(plain, 40'000);
}

TEST_F(WinText, WritesNumbersAsTheSystemDoes) {
    Values values;
    for (int i = 0; i < 50'000; ++i) {
        const double value = values.Next();
        // small values: Wine turns to the scientific form too early
        if (value != 0 && std::fabs(value) < 0.0001) continue;
        const std::wstring ours = text.FromNumber(value);
        // ... and too late for those with more than fifteen decimals
        if (ours.find(L'E') != std::wstring::npos) continue;
        BSTR theirs = nullptr;
        ASSERT_EQ(VarBstrFromR8(value, LOCALE_USER_DEFAULT, 0, &theirs), S_OK);
        const std::wstring expected(theirs, SysStringLen(theirs));
        SysFreeString(theirs);
        ASSERT_EQ(Show(ours), Show(expected)) << testing::PrintToString(value);
    }
}

TEST_F(WinText, ReadsUnusualNumbersAndRefusesWhatIsNone) {
    EXPECT_EQ(text.ToNumber(L"(5)"), -5);
    EXPECT_EQ(text.ToNumber(L"12-"), -12);
    EXPECT_EQ(text.ToNumber(L"1e3"), 1000);
    EXPECT_EQ(text.ToNumber(L"&H10"), 16);
    EXPECT_EQ(text.ToNumber(L" \t5 "), 5);
    for (std::wstring_view bad : {L"", L" ", L"1a", L"-", L"Stk", L"()"}) {
        EXPECT_EQ(RaisedBy([&] { text.ToNumber(bad); }), 13) << Show(bad);
    }
    EXPECT_EQ(RaisedBy([&] { text.ToNumber(std::wstring_view(L"5\0x", 3)); }), 13);
    EXPECT_EQ(RaisedBy([&] { text.ToNumber(L"1e400"); }), 6);
    EXPECT_EQ(RaisedBy([&] { text.ToNumber(std::wstring(10'000, L'9')); }), 6);
    EXPECT_EQ(RaisedBy([&] { text.ToNumber(std::wstring(10'000, L'x')); }), 13);
}

TEST_F(WinText, ComparesAsTheUsersCollationWithoutCase) {
    EXPECT_EQ(text.CompareText(L"", L""), 0);
    EXPECT_EQ(text.CompareText(L"", L"a"), -1);
    // an empty text need not lie anywhere in memory
    EXPECT_EQ(text.CompareText(std::wstring_view(), L"a"), -1);
    EXPECT_EQ(text.CompareText(L"a", std::wstring_view()), 1);
    EXPECT_EQ(text.CompareText(std::wstring_view(), std::wstring_view()), 0);
    EXPECT_EQ(text.CompareText(L"abc", L"ABC"), 0);
    EXPECT_EQ(text.CompareText(L"\u00E4pfel", L"\u00C4PFEL"), 0);
    EXPECT_EQ(text.CompareText(L"a", L"\u00E4"), -1);
    EXPECT_EQ(text.CompareText(L"\u00E4", L"b"), -1);
    EXPECT_EQ(text.CompareText(L"Z", L"a"), 1);
    EXPECT_EQ(text.CompareText(L"9", L"a"), -1);
    EXPECT_EQ(text.CompareText(L"coop", L"co-op"), -1);
    EXPECT_EQ(text.CompareText(L"co-op", L"coox"), -1);
    EXPECT_EQ(text.CompareText(L"4711", L"47110"), -1);
    EXPECT_EQ(text.CompareText(L"10", L"9"), -1);
    EXPECT_EQ(text.CompareText(L"4711 a", L"4711 A"), 0);
}

TEST_F(WinText, ComparesDigitsAsTheSystemDoes) {
    std::mt19937 random(3);
    const auto number = [&] {
        std::wstring digits;
        for (std::size_t n = random() % 10; n > 0; --n)
            digits += static_cast<wchar_t>(L'0' + random() % 3);
        return digits;
    };
    for (int i = 0; i < 50'000; ++i) {
        const std::wstring prefix = number(), a = prefix + number(), b = prefix + number();
        const int system =
            CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, a.data(),
                           static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()));
        ASSERT_EQ(text.CompareText(a, b), system - CSTR_EQUAL) << Show(a) << Show(b);
    }
}

TEST_F(WinText, LowersLettersBeyondAscii) {
    EXPECT_EQ(Show(text.LowerCase(L"Art-\u00C4\u00D6\u00DC \u0416 1")),
              Show(L"art-\u00E4\u00F6\u00FC \u0436 1"));
    EXPECT_EQ(text.LowerCase(L""), L"");
    EXPECT_EQ(Show(text.LowerCase(std::wstring_view(L"A\0B", 3))),
              Show(std::wstring_view(L"a\0b", 3)));
}

TEST_F(WinText, ConvertsTheCodePageBothWaysAndTellsLosses) {
    bool lossy = false;
    EXPECT_EQ(text.ToAnsi(L"\u20AC \u00E4\u00DF", &lossy), "\x80 \xE4\xDF");
    EXPECT_EQ(text.ToAnsi(L"", &lossy), "");
    EXPECT_FALSE(lossy);
    // a look-alike (macron a) is a loss, too
    EXPECT_EQ(text.ToAnsi(L"\u0101\u4E00x", &lossy), "??x");
    EXPECT_TRUE(lossy);
    EXPECT_EQ(text.ToAnsi(L"x", &lossy), "x");
    EXPECT_TRUE(lossy);
    EXPECT_EQ(text.ToAnsi(L"\u4E00"), "?");
    std::string all;
    for (int i = 0; i < 256; ++i) all += static_cast<char>(static_cast<unsigned char>(i));
    EXPECT_EQ(text.ToAnsi(text.FromAnsi(all), &lossy), all);
    EXPECT_EQ(text.FromAnsi(""), L"");
}

TEST_F(WinText, FollowsAChangedLocaleAfterRefresh) {
    wchar_t decimal[8], grouping[16];
    ASSERT_GT(GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, decimal, 8), 0);
    ASSERT_GT(GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SGROUPING, grouping, 16), 0);
    ASSERT_TRUE(SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, L"'"));
    ASSERT_TRUE(SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SGROUPING, L"0"));
    EXPECT_EQ(text.FormatAmount(1234.5).find(L"'"), std::wstring::npos);
    text.Refresh();
    EXPECT_EQ(Show(text.FormatAmount(1234.5)), Show(L"1234'50"));
    SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, decimal);
    SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SGROUPING, grouping);
    text.Refresh();
    EXPECT_NE(text.FormatAmount(1234.5).find(decimal), std::wstring::npos);
}

// With a digit for a separator no number could be read back as what it was.
TEST_F(WinText, ADigitAsASeparatorGivesWayToWhatIsUsualInTheLocale) {
    EXPECT_TRUE(text.UsesOwnFormat());
    for (const LCTYPE type : {LOCALE_SDECIMAL, LOCALE_STHOUSAND}) {
        wchar_t own[8];
        ASSERT_GT(GetLocaleInfoW(LOCALE_USER_DEFAULT, type, own, 8), 0);
        const std::wstring before = text.FormatAmount(1234567.25);
        ASSERT_TRUE(SetLocaleInfoW(LOCALE_USER_DEFAULT, type, L"5"));
        text.Refresh();
        EXPECT_FALSE(text.UsesOwnFormat());
        EXPECT_EQ(Show(text.FormatAmount(1234567.25)), Show(before));
        EXPECT_EQ(text.ToNumber(before), 1234567.25);
        EXPECT_EQ(text.ToNumber(L"1555"), 1555.0);
        // also by the system's own reading, which is asked for unusual texts
        const std::wstring decimal = text.format().decimal;
        EXPECT_EQ(text.ToNumber(L"(1555" + decimal + L"5)"), -1555.5);
        SetLocaleInfoW(LOCALE_USER_DEFAULT, type, own);
        text.Refresh();
        EXPECT_TRUE(text.UsesOwnFormat());
        EXPECT_EQ(Show(text.FormatAmount(1234567.25)), Show(before));
    }
}

}  // namespace
}  // namespace demovex
