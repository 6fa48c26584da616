// Memory: what was overwritten or emptied is given back now and then, however it came to be unused.
// Fields are views of one text, so the distance of two of them tells how much of it lies between.
#include <gtest/gtest.h>

#include <cstdlib>

#include "params/parameter_parser.h"

namespace demovex {
namespace {

// Characters between the first field, which was stored first, and the one that was stored last.
std::ptrdiff_t Span(const ParameterParser& parser, std::int32_t row) {
    return parser.Value(1, row).data() - parser.Value(1, 1).data();
}

// Never more than this much is kept unused beside as much again in use.
constexpr std::ptrdiff_t kBound = 30000;

class ParameterMemory : public ::testing::Test {
  protected:
    ParameterMemory() { parser.SetValue(1, 1, L"first"); }
    ParameterParser parser;
};

TEST_F(ParameterMemory, OverwrittenFieldsAreGivenBack) {
    for (std::size_t step = 0; step < 2000; ++step) {
        // each longer than the one before, so none fits in its place
        parser.SetValue(1, 2, std::wstring(2000 + step, L'x'));
        ASSERT_LT(Span(parser, 2), kBound) << step;
    }
    EXPECT_EQ(parser.Value(1, 1), L"first");
}

TEST_F(ParameterMemory, EmptiedFieldsAreGivenBack) {
    for (std::size_t step = 0; step < 2000; ++step) {
        parser.SetValue(1, 2, std::wstring(2000, L'x'));
        ASSERT_LT(Span(parser, 2), kBound) << step;
        parser.SetValue(1, 2, L"");
    }
}

TEST_F(ParameterMemory, WhatAShorterTextLeavesOfALongerOneIsGivenBack) {
    for (std::int32_t row = 2; row < 2000; ++row) {
        parser.SetValue(1, row, std::wstring(2000, L'x'));
        ASSERT_LT(Span(parser, row), kBound) << row;
        parser.SetValue(1, row, L"x");
    }
}

// A text that fits into its field's place goes there.
TEST_F(ParameterMemory, ATextThatIsNotLongerStaysInItsPlace) {
    parser.SetValue(1, 2, L"abcdef");
    const std::ptrdiff_t place = Span(parser, 2);
    for (const wchar_t* text : {L"ABCDEF", L"xyz", L"uvw", L"a"}) {
        parser.SetValue(1, 2, text);
        EXPECT_EQ(Span(parser, 2), place);
        EXPECT_EQ(parser.Value(1, 2), text);
    }
}

TEST_F(ParameterMemory, AParsedTextBeginsWithNothingUnused) {
    parser.SetValue(1, 1, std::wstring(4000, L'x'));
    parser.SetValue(1, 1, L"");
    parser.SetParameterString(L"a;b");
    // one step of tidying up would now look for more unused characters than there are
    parser.SetValue(1, 2, std::wstring(500, L'y'));
    parser.SetValue(1, 2, L"z");
    parser.SetValue(1, 1, L"longer");
    EXPECT_EQ(parser.ParameterString(), L"longer;z;");
    EXPECT_GT(std::abs(Span(parser, 2)), 400) << "the unused 499 characters are too few to move";
}

}  // namespace
}  // namespace demovex
