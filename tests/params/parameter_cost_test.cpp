// Cost: no text makes parsing take more than linear time. Each shape is parsed at two lengths; the
// longer one may take proportionally longer, with room for a busy machine.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include "params/parameter_parser.h"

namespace demovex {
namespace {

constexpr std::size_t kShort = 100000;
constexpr std::size_t kLong = 1000000;

std::wstring Repeated(std::wstring_view piece, std::size_t times) {
    std::wstring text;
    text.reserve(piece.size() * times);
    for (; times > 0; --times) text += piece;
    return text;
}

double Seconds(ParameterParser& parser, const std::wstring& text) {
    const auto start = std::chrono::steady_clock::now();
    parser.SetParameterString(text);
    const std::wstring composed = parser.ParameterString();
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    EXPECT_LE(composed.size(), text.size() + parser.RowDelimiter().size());
    return time.count();
}

// Ten times the text, at most forty times the time, where quadratic would be a hundred times. What
// takes less than a second is not measured on a busy machine: quadratic would take many minutes.
void ExpectLinear(ParameterParser& parser, const std::wstring& head, std::wstring_view piece,
                  const std::wstring& tail) {
    const double small = Seconds(parser, head + Repeated(piece, kShort) + tail);
    const double large = Seconds(parser, head + Repeated(piece, kLong) + tail);
    EXPECT_LT(large, std::max(40 * small, 1.0)) << small << " s and " << large << " s";
}

class ParameterCost : public ::testing::Test {
  protected:
    ParameterCost() {
        parser.SetColumnDelimiter(L"\t");
        parser.SetRowDelimiter(L"\r\n");
    }
    ParameterParser parser;
};

TEST_F(ParameterCost, AMillionTabsInOneLine) {
    ExpectLinear(parser, L"", L"\t", L"");
    EXPECT_EQ(parser.Rows(), 1);
    EXPECT_EQ(parser.Cols(1), 0);
    EXPECT_EQ(parser.ColumnCapacity(), 1000009) << "the last step: 999,999 and 10";
}

TEST_F(ParameterCost, AMillionTabsAfterAField) {
    ExpectLinear(parser, L"x", L"\t", L"");
    EXPECT_EQ(parser.Cols(1), 1);
}

TEST_F(ParameterCost, AMillionTabsBeforeAField) {
    ExpectLinear(parser, L"", L"\t", L"x");
    EXPECT_EQ(parser.Cols(1), 1000001);
    EXPECT_EQ(parser.Value(1000001, 1), L"x");
}

TEST_F(ParameterCost, AMillionRowDelimiters) {
    ExpectLinear(parser, L"", L"\r\n", L"");
    EXPECT_EQ(parser.Rows(), 0);
    ExpectLinear(parser, L"", L"\r\n", L"x");
    EXPECT_EQ(parser.Rows(), 1000001);
}

TEST_F(ParameterCost, AMillionRowsWithoutAColumnDelimiter) {
    ExpectLinear(parser, L"", L"x\r\n", L"");
    EXPECT_EQ(parser.Rows(), 1000000);
}

TEST_F(ParameterCost, AMillionFieldsWithoutARowDelimiter) {
    ExpectLinear(parser, L"", L"x\t", L"");
    EXPECT_EQ(parser.Cols(1), 1000000);
}

TEST_F(ParameterCost, AMillionLoneCarriageReturns) {
    ExpectLinear(parser, L"", L"\r", L"");
    EXPECT_EQ(parser.Value(1, 1).size(), 1000000u);
}

TEST_F(ParameterCost, LongDelimitersThatAlmostMatchEverywhere) {
    parser.SetColumnDelimiter(std::wstring(2000, L'a') + L"b");
    parser.SetRowDelimiter(std::wstring(2000, L'a') + L"c");
    ExpectLinear(parser, L"", L"a", L"");
}

// The same text, once with delimiters of ten characters and once of ten thousand: compared afresh
// at every place, the longer ones would cost a thousand times as much.
TEST_F(ParameterCost, LongerDelimitersCostNoMore) {
    const std::wstring text(kLong, L'a');
    const auto seconds = [&](std::size_t length) {
        parser.SetColumnDelimiter(std::wstring(length, L'a') + L"b");
        parser.SetRowDelimiter(std::wstring(length, L'a') + L"c");
        const double time = Seconds(parser, text);
        EXPECT_EQ(parser.Rows(), 1);
        EXPECT_EQ(parser.Cols(1), 1);
        return time;
    };
    const double small = seconds(10);
    const double large = seconds(10000);
    EXPECT_LT(large, std::max(10 * small, 1.0)) << small << " s and " << large << " s";
}

TEST_F(ParameterCost, AColumnDelimiterFullOfRowDelimiters) {
    parser.SetColumnDelimiter(Repeated(L"ab", 1000));
    parser.SetRowDelimiter(L"b");
    ExpectLinear(parser, L"", L"ab", L"");
}

TEST_F(ParameterCost, EmptyingAMillionFieldsOneByOne) {
    const auto build_and_empty = [&](std::int32_t fields) {
        const auto start = std::chrono::steady_clock::now();
        parser.SetParameterString(L"");
        for (std::int32_t col = 1; col <= fields; ++col) parser.SetValue(col, 1, L"x");
        for (std::int32_t col = 1; col <= fields; ++col) parser.SetValue(col, 1, L"");
        EXPECT_EQ(parser.Cols(1), 0);
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    const double small = build_and_empty(100000);
    EXPECT_LT(build_and_empty(1000000), std::max(40 * small, 1.0));
}

}  // namespace
}  // namespace demovex
