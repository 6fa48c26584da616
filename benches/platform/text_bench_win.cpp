// Numbers and comparisons: the text service against the system's own functions.
#include <windows.h>

#include <oleauto.h>

#include <random>
#include <string>
#include <vector>

#include "benches/bench.h"
#include "platform/text_win.h"

using namespace demovex;

namespace {

constexpr int kCount = 2000;

bench::Options PerValue() {
    return {.runs = 9, .operations = kCount, .bar = "at least 1"};
}

void Numbers(const WinTextService& text) {
    std::mt19937_64 random(1);
    std::vector<double> values;
    std::vector<std::wstring> amounts, unusual;
    for (int i = 0; i < kCount; ++i) {
        values.push_back(static_cast<double>(random() % 1'000'000'000) / 100.0 / 13.7603);
        amounts.push_back(text.FormatAmount(values.back()));
        unusual.push_back(L"(" + text.FromNumber(values.back()) + L")");
    }
    const auto read_by_system = [&](std::vector<std::wstring>& texts) {
        for (std::wstring& one : texts) {
            double value = 0;
            VarR8FromStr(one.data(), LOCALE_USER_DEFAULT, 0, &value);
            bench::Keep(value);
        }
    };
    const auto read_by_us = [&](const std::vector<std::wstring>& texts) {
        for (const std::wstring& one : texts) bench::Keep(text.ToNumber(one));
    };
    bench::Compare("reading a formatted amount", {"ours", [&] { read_by_us(amounts); }},
                   {"VarR8FromStr", [&] { read_by_system(amounts); }}, PerValue());
    bench::Options unusual_options = PerValue();
    unusual_options.bar = "about 1 (the system reads it)";
    bench::Compare("reading \"(5)\" and the like", {"ours", [&] { read_by_us(unusual); }},
                   {"VarR8FromStr", [&] { read_by_system(unusual); }}, unusual_options);
    bench::Compare("formatting \"#,##0.00\"",
                   {"ours",
                    [&] {
                        for (double value : values) bench::Keep(text.FormatAmount(value).size());
                    }},
                   {"VarFormat",
                    [&] {
                        wchar_t pattern[] = L"#,##0.00";
                        for (double value : values) {
                            VARIANT variant;
                            VariantInit(&variant);
                            variant.vt = VT_R8;
                            variant.dblVal = value;
                            BSTR out = nullptr;
                            VarFormat(&variant, pattern, 0, 0, 0, &out);
                            bench::Keep(SysStringLen(out));
                            SysFreeString(out);
                        }
                    }},
                   PerValue());
    // 2.675, 1.005, ...: where the digits decide
    std::vector<double> halves;
    for (int i = 0; i < kCount; ++i) {
        halves.push_back(static_cast<double>(random() % 100'000'000 * 10 + 5) / 1000.0);
    }
    bench::Compare("formatting a half of the last place",
                   {"ours",
                    [&] {
                        for (double value : halves) bench::Keep(text.FormatAmount(value).size());
                    }},
                   {"VarFormat",
                    [&] {
                        wchar_t pattern[] = L"#,##0.00";
                        for (double value : halves) {
                            VARIANT variant;
                            VariantInit(&variant);
                            variant.vt = VT_R8;
                            variant.dblVal = value;
                            BSTR out = nullptr;
                            VarFormat(&variant, pattern, 0, 0, 0, &out);
                            bench::Keep(SysStringLen(out));
                            SysFreeString(out);
                        }
                    }},
                   PerValue());
}

void Comparisons(const WinTextService& text) {
    std::mt19937_64 random(2);
    std::vector<std::wstring> digits, names;
    for (int i = 0; i <= kCount; ++i) {
        digits.push_back(std::to_wstring(10'000'000 + random() % 1000));
        names.push_back(L"ART-" + std::to_wstring(random() % 1000) + (i % 2 ? L"\u00E4" : L"x"));
    }
    const auto by_us = [&](const std::vector<std::wstring>& texts) {
        for (int i = 0; i < kCount; ++i) bench::Keep(text.CompareText(texts[i], texts[i + 1]));
    };
    const auto by_system = [&](const std::vector<std::wstring>& texts) {
        for (int i = 0; i < kCount; ++i) {
            bench::Keep(CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, texts[i].data(),
                                       static_cast<int>(texts[i].size()), texts[i + 1].data(),
                                       static_cast<int>(texts[i + 1].size())));
        }
    };
    bench::Compare("comparing article numbers of digits", {"ours", [&] { by_us(digits); }},
                   {"CompareStringW", [&] { by_system(digits); }}, PerValue());
    bench::Options same = PerValue();
    same.bar = "about 1 (the system compares)";
    bench::Compare("comparing other article numbers", {"ours", [&] { by_us(names); }},
                   {"CompareStringW", [&] { by_system(names); }}, same);
}

}  // namespace

int main() {
    const WinTextService text;
    Numbers(text);
    Comparisons(text);
}
