// How article numbers sort without a question to the system, compared with its answers in the
// languages that it knows.
#include <windows.h>

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <vector>

#include "platform/learned_order.h"
#include "platform/plain_order.h"

namespace demovex {
namespace {

int System(const std::wstring& locale, std::wstring_view a, std::wstring_view b) {
    return CompareStringEx(locale.c_str(), NORM_IGNORECASE, a.empty() ? L"" : a.data(),
                           static_cast<int>(a.size()), b.empty() ? L"" : b.data(),
                           static_cast<int>(b.size()), nullptr, nullptr, 0) -
           CSTR_EQUAL;
}

LearnedOrder Learned(const std::wstring& locale) {
    return LearnedOrder([locale](std::wstring_view text) {
        std::string key(8 * text.size() + 64, '\0');
        const int size =
            LCMapStringEx(locale.c_str(), LCMAP_SORTKEY | NORM_IGNORECASE, text.data(),
                          static_cast<int>(text.size()), reinterpret_cast<wchar_t*>(key.data()),
                          static_cast<int>(key.size()), nullptr, nullptr, 0);
        key.resize(size > 0 ? static_cast<std::size_t>(size) - 1 : 0);
        return key;
    });
}

BOOL CALLBACK TakeLocale(wchar_t* name, DWORD /*flags*/, LPARAM to) {
    if (*name != 0) reinterpret_cast<std::vector<std::wstring>*>(to)->emplace_back(name);
    return TRUE;
}

std::vector<std::wstring> Locales() {
    std::vector<std::wstring> names;
    EnumSystemLocalesEx(TakeLocale, LOCALE_ALL, reinterpret_cast<LPARAM>(&names), nullptr);
    return names;
}

// Two numbers that have their beginnings in common more often than not.
class Numbers {
  public:
    void Next() {
        a = Word();
        b = random_() % 3 != 0 ? a.substr(0, random_() % (a.size() + 1)) + Word() : Word();
    }
    std::wstring a, b;

  private:
    std::wstring Word() {
        // also what contracts somewhere: aa, ch, chj, cs, dz, dzs, lj, ll, ng, nj, th
        constexpr std::wstring_view kFrom = L"019aAacChdjlnngsStTzZ.-/ _+";
        std::wstring word;
        for (std::size_t n = random_() % 5; n > 0; --n) word += kFrom[random_() % kFrom.size()];
        return word;
    }
    std::mt19937 random_{77};
};

std::string Show(const std::wstring& locale, const Numbers& n) {
    const std::wstring text = locale + L": '" + n.a + L"' and '" + n.b + L"'";
    return std::string(text.begin(), text.end());
}

TEST(Order, WhatPlainOrderTellsTheSystemSaysInEveryLanguage) {
    const std::vector<std::wstring> locales = Locales();
    ASSERT_GT(locales.size(), 100u);
    Numbers n;
    int told = 0;
    for (const std::wstring& locale : locales) {
        for (int i = 0; i < 100; ++i) {
            n.Next();
            const auto order = OrderOfPlainText<wchar_t, wchar_t>(n.a, n.b);
            if (!order) continue;
            ++told;
            ASSERT_EQ(*order, System(locale, n.a, n.b)) << Show(locale, n);
        }
    }
    EXPECT_GT(told, 10'000);
}

TEST(Order, WhatIsLearnedOfALanguageIsWhatTheSystemSays) {
    Numbers n;
    // those after the first six sort two letters as one, or tell v from w by an accent only
    int number = 0;
    for (const wchar_t* name :
         {L"de-AT", L"de-DE", L"en-US", L"fr-FR", L"it-IT", L"pl-PL", L"da-DK", L"nb-NO", L"cs-CZ",
          L"sk-SK", L"hu-HU", L"hr-HR", L"cy-GB", L"vi-VN", L"co-FR"}) {
        LearnedOrder order = Learned(name);
        int told = 0;
        for (int i = 0; i < 20'000; ++i) {
            n.Next();
            const auto learned = order.Compare(n.a, n.b);
            if (!learned) continue;
            ++told;
            ASSERT_EQ(*learned, System(name, n.a, n.b)) << Show(name, n);
        }
        const bool taken = number++ < 6;
        EXPECT_EQ(told > 5'000, taken) << Show(name, n);
        EXPECT_EQ(told > 0, taken) << Show(name, n);
    }
}

TEST(Order, EveryLanguageThatIsLearnedIsLearnedRight) {
    Numbers n;
    int learned_languages = 0, count = 0;
    for (const std::wstring& locale : Locales()) {
        if (++count % 12 != 0) continue;  // some seventy, the time a test may take
        LearnedOrder order = Learned(locale);
        bool any = false;
        for (int i = 0; i < 2'000; ++i) {
            n.Next();
            const auto learned = order.Compare(n.a, n.b);
            if (!learned) continue;
            any = true;
            ASSERT_EQ(*learned, System(locale, n.a, n.b)) << Show(locale, n);
        }
        learned_languages += any;
    }
    EXPECT_GT(learned_languages, 20);
}

}  // namespace
}  // namespace demovex
