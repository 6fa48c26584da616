#include "params/parameter_parser.h"

#include <gtest/gtest.h>

#include "base/error.h"

namespace demovex {
namespace {

ParameterParser Parsed(std::wstring text) {
    ParameterParser parser;
    parser.SetParameterString(std::move(text));
    return parser;
}

template <typename F>
Error RaisedBy(F&& f) {
    try {
        f();
    } catch (const Error& error) {
        return error;
    }
    return Error(0, L"", L"nothing was raised");
}

TEST(ParameterParser, ANewOneIsEmptyWithTheDefaultDelimitersAndCapacities) {
    const ParameterParser parser;
    EXPECT_EQ(parser.ColumnDelimiter(), L",");
    EXPECT_EQ(parser.RowDelimiter(), L";");
    EXPECT_EQ(parser.Rows(), 0);
    EXPECT_EQ(parser.Cols(1), 0);
    EXPECT_EQ(parser.ColumnCapacity(), 10);
    EXPECT_EQ(parser.RowCapacity(), 10);
    EXPECT_EQ(parser.ParameterString(), L"");
}

TEST(ParameterParser, SplitsRowsAndColumns) {
    const ParameterParser parser = Parsed(L"a,b;c");
    EXPECT_EQ(parser.Rows(), 2);
    EXPECT_EQ(parser.Cols(1), 2);
    EXPECT_EQ(parser.Cols(2), 1);
    EXPECT_EQ(parser.Value(1, 1), L"a");
    EXPECT_EQ(parser.Value(2, 1), L"b");
    EXPECT_EQ(parser.Value(1, 2), L"c");
    EXPECT_EQ(parser.Value(2, 2), L"");
    EXPECT_EQ(parser.ParameterString(), L"a,b;c;");
}

TEST(ParameterParser, AnEmptyFieldInTheMiddleIsKeptAndOneAtTheEndIsNot) {
    const ParameterParser middle = Parsed(L"a,,b");
    EXPECT_EQ(middle.Cols(1), 3);
    EXPECT_EQ(middle.Value(2, 1), L"");
    EXPECT_EQ(middle.Value(3, 1), L"b");
    const ParameterParser trailing = Parsed(L"a,b,");
    EXPECT_EQ(trailing.Cols(1), 2);
    EXPECT_EQ(trailing.ParameterString(), L"a,b;");
    EXPECT_EQ(Parsed(L"a,b,,,").Cols(1), 2);
    EXPECT_EQ(Parsed(L",,,a").Cols(1), 4);
}

TEST(ParameterParser, AnEmptyRowBetweenOthersStaysAndTrailingOnesDoNot) {
    const ParameterParser parser = Parsed(L"x;;y");
    EXPECT_EQ(parser.Rows(), 3);
    EXPECT_EQ(parser.Cols(2), 0);
    EXPECT_EQ(parser.ParameterString(), L"x;;y;");
    EXPECT_EQ(Parsed(L"x;;").Rows(), 1);
    EXPECT_EQ(Parsed(L"x;;;;;;").Rows(), 1);
    EXPECT_EQ(Parsed(L"").Rows(), 0);
    EXPECT_EQ(Parsed(L";").Rows(), 0);
    EXPECT_EQ(Parsed(L";;;x").Rows(), 4);
}

TEST(ParameterParser, ARowOfEmptyFieldsOnlyCountsAsARow) {
    const ParameterParser parser = Parsed(L"x;,;");
    EXPECT_EQ(parser.Rows(), 2);
    EXPECT_EQ(parser.Cols(2), 0);
    EXPECT_EQ(parser.ParameterString(), L"x;;");
}

TEST(ParameterParser, DelimitersMayBeLongerThanOneCharacter) {
    ParameterParser parser;
    parser.SetColumnDelimiter(L"\t");
    parser.SetRowDelimiter(L"\r\n");
    parser.SetParameterString(L"a\tb\r\nc\rd\ne\r\n\r\n\tf");
    EXPECT_EQ(parser.Rows(), 4);
    EXPECT_EQ(parser.Value(2, 1), L"b");
    EXPECT_EQ(parser.Value(1, 2), L"c\rd\ne");
    EXPECT_EQ(parser.Cols(3), 0);
    EXPECT_EQ(parser.Value(2, 4), L"f");
    EXPECT_EQ(parser.ParameterString(), L"a\tb\r\nc\rd\ne\r\n\r\n\tf\r\n");
}

TEST(ParameterParser, DelimitersAreCaseSensitive) {
    ParameterParser parser;
    parser.SetColumnDelimiter(L"x");
    parser.SetParameterString(L"aXbxc");
    EXPECT_EQ(parser.Value(1, 1), L"aXb");
    EXPECT_EQ(parser.Value(2, 1), L"c");
}

TEST(ParameterParser, AColumnDelimiterThatReachesIntoTheRowDelimiterStillSplits) {
    ParameterParser parser;
    parser.SetColumnDelimiter(L"ab");
    parser.SetRowDelimiter(L"bc");
    parser.SetParameterString(L"xabcy");
    EXPECT_EQ(parser.Rows(), 2);
    EXPECT_EQ(parser.Value(1, 1), L"x");
    EXPECT_EQ(parser.Value(1, 2), L"y");
}

TEST(ParameterParser, LongDelimitersThatOverlapThemselvesAreFoundFromTheLeft) {
    ParameterParser parser;
    parser.SetColumnDelimiter(L"aabaaba");
    parser.SetParameterString(L"aaabaabaabaxaabaabay");
    EXPECT_EQ(parser.Cols(1), 3);
    EXPECT_EQ(parser.Value(1, 1), L"a");
    EXPECT_EQ(parser.Value(2, 1), L"abax");
    EXPECT_EQ(parser.Value(3, 1), L"y");
}

TEST(ParameterParser, AnEmptyDelimiterNeverOccurs) {
    ParameterParser parser;
    parser.SetColumnDelimiter(L"");
    parser.SetRowDelimiter(L"");
    parser.SetParameterString(L"a,b;c");
    EXPECT_EQ(parser.Rows(), 1);
    EXPECT_EQ(parser.Cols(1), 1);
    EXPECT_EQ(parser.ParameterString(), L"a,b;c");
}

TEST(ParameterParser, ChangingADelimiterReSplitsNothing) {
    ParameterParser parser = Parsed(L"a,b;c");
    parser.SetColumnDelimiter(L"\t");
    parser.SetRowDelimiter(L"\r\n");
    EXPECT_EQ(parser.Rows(), 2);
    EXPECT_EQ(parser.Value(2, 1), L"b");
    EXPECT_EQ(parser.ParameterString(), L"a\tb\r\nc\r\n");
}

TEST(ParameterParser, ParsingReplacesTheTableAndItsCapacities) {
    ParameterParser parser;
    parser.SetValue(40, 40, L"x");
    parser.SetParameterString(L"a");
    EXPECT_EQ(parser.Rows(), 1);
    EXPECT_EQ(parser.Value(40, 40), L"");
    EXPECT_EQ(parser.ColumnCapacity(), 10);
    EXPECT_EQ(parser.RowCapacity(), 10);
}

TEST(ParameterParser, ColumnsGrowToTenMoreThanAskedFor) {
    ParameterParser parser;
    parser.SetValue(10, 1, L"x");
    EXPECT_EQ(parser.ColumnCapacity(), 10);
    parser.SetValue(12, 1, L"x");
    EXPECT_EQ(parser.ColumnCapacity(), 22);
    EXPECT_EQ(parser.RowCapacity(), 10);
    parser.SetValue(23, 1, L"");
    EXPECT_EQ(parser.ColumnCapacity(), 33);
    EXPECT_EQ(parser.Cols(1), 12);
}

TEST(ParameterParser, RowsGrowToTwentyMoreThanAskedFor) {
    ParameterParser parser;
    parser.SetValue(1, 31, L"x");
    EXPECT_EQ(parser.RowCapacity(), 51);
    EXPECT_EQ(parser.ColumnCapacity(), 10);
    EXPECT_EQ(parser.Rows(), 31);
    EXPECT_EQ(parser.ParameterString(), std::wstring(30, L';') + L"x;");
}

TEST(ParameterParser, TheTenthRowIsTheLastThatFits) {
    ParameterParser parser;
    parser.SetValue(1, 10, L"x");
    EXPECT_EQ(parser.RowCapacity(), 10);
    parser.SetValue(1, 11, L"");
    EXPECT_EQ(parser.RowCapacity(), 31);
    parser.SetValue(1, 31, L"x");
    EXPECT_EQ(parser.RowCapacity(), 31);
    parser.SetValue(1, 32, L"x");
    EXPECT_EQ(parser.RowCapacity(), 52);
    ParameterParser columns;
    columns.SetValue(11, 1, L"x");
    EXPECT_EQ(columns.ColumnCapacity(), 21);
    columns.SetValue(21, 1, L"x");
    EXPECT_EQ(columns.ColumnCapacity(), 21);
    EXPECT_EQ(columns.RowCapacity(), 10);
}

TEST(ParameterParser, ParsingGrowsByTheSameSteps) {
    ParameterParser parser = Parsed(L"1,2,3,4,5,6,7,8,9,10,11,12");
    EXPECT_EQ(parser.ColumnCapacity(), 21);
    parser.SetParameterString(L"1,2,3,4,5,6,7,8,9,10");
    EXPECT_EQ(parser.ColumnCapacity(), 10);
    parser.SetParameterString(std::wstring(9, L';') + L"x");
    EXPECT_EQ(parser.Rows(), 10);
    EXPECT_EQ(parser.RowCapacity(), 10);
    parser.SetParameterString(std::wstring(10, L';') + L"x");
    EXPECT_EQ(parser.RowCapacity(), 31);
    parser.SetParameterString(std::wstring(100, L';'));
    EXPECT_EQ(parser.RowCapacity(), 10) << "rows without a field are not stored";
}

TEST(ParameterParser, AnEmptyTextInTheLastFieldTrimsTheRow) {
    ParameterParser last = Parsed(L"a,b");
    last.SetValue(2, 1, L"");
    EXPECT_EQ(last.Cols(1), 1);
    ParameterParser first = Parsed(L"a,b");
    first.SetValue(1, 1, L"");
    EXPECT_EQ(first.Cols(1), 2);
    first.SetValue(2, 1, L"");
    EXPECT_EQ(first.Cols(1), 0);
    EXPECT_EQ(first.Rows(), 1);
    EXPECT_EQ(first.ParameterString(), L";");
}

TEST(ParameterParser, AFieldStoredAfterATrimFindsTheOnesBetweenEmpty) {
    ParameterParser parser = Parsed(L"a,b,c,d");
    for (std::int32_t col = 2; col <= 4; ++col) parser.SetValue(col, 1, L"");
    EXPECT_EQ(parser.Cols(1), 1);
    parser.SetValue(4, 1, L"e");
    EXPECT_EQ(parser.ParameterString(), L"a,,,e;");
}

TEST(ParameterParser, StoringBeyondTheRowCountRaisesItEvenWithAnEmptyText) {
    ParameterParser parser;
    parser.SetValue(3, 4, L"");
    EXPECT_EQ(parser.Rows(), 4);
    EXPECT_EQ(parser.Cols(4), 0);
    EXPECT_EQ(parser.ParameterString(), L";;;;");
}

TEST(ParameterParser, AColumnBelowOneIsRefusedFirst) {
    ParameterParser parser = Parsed(L"a");
    for (const std::int32_t col : {0, -7}) {
        const Error error = RaisedBy([&] { parser.SetValue(col, 0, L"x"); });
        EXPECT_EQ(error.number(), -1);
        EXPECT_EQ(error.source(), L"ParameterParser::Value");
        EXPECT_EQ(error.description(), L"Column must be > 0 (was " + std::to_wstring(col) + L")");
    }
    EXPECT_EQ(parser.ParameterString(), L"a;");
}

TEST(ParameterParser, ARowBelowOneIsRefused) {
    ParameterParser parser = Parsed(L"a");
    for (const std::int32_t row : {0, -2147483647 - 1}) {
        const Error error = RaisedBy([&] { parser.SetValue(1, row, L"x"); });
        EXPECT_EQ(error.number(), -1);
        EXPECT_EQ(error.source(), L"ParameterParser::Value");
        EXPECT_EQ(error.description(), L"Row must be > 0 (was " + std::to_wstring(row) + L")");
    }
    EXPECT_EQ(parser.ParameterString(), L"a;");
}

TEST(ParameterParser, ACapacityBeyond32BitsRaisesOverflowAndStoresNothing) {
    ParameterParser parser = Parsed(L"a");
    EXPECT_EQ(RaisedBy([&] { parser.SetValue(2147483638, 1, L"x"); }).number(), 6);
    EXPECT_EQ(RaisedBy([&] { parser.SetValue(1, 2147483628, L"x"); }).number(), 6);
    EXPECT_EQ(parser.ParameterString(), L"a;");
    EXPECT_EQ(parser.ColumnCapacity(), 10);
    EXPECT_EQ(parser.RowCapacity(), 10);
}

TEST(ParameterParser, AFarEmptyFieldCostsNoMemory) {
    ParameterParser parser;
    parser.SetValue(2147483637, 1, L"");
    EXPECT_EQ(parser.ColumnCapacity(), 2147483647);
    EXPECT_EQ(parser.Cols(1), 0);
}

TEST(ParameterParser, ReadingNeverFails) {
    const ParameterParser parser = Parsed(L"a");
    EXPECT_EQ(parser.Value(0, 1), L"");
    EXPECT_EQ(parser.Value(1, 0), L"");
    EXPECT_EQ(parser.Value(-1, -1), L"");
    EXPECT_EQ(parser.Value(2147483647, 2147483647), L"");
    EXPECT_EQ(parser.Cols(0), 0);
    EXPECT_EQ(parser.Cols(-1), 0);
    EXPECT_EQ(parser.Cols(2), 0);
    EXPECT_EQ(parser.Find(0, L"x"), 0);
}

TEST(ParameterParser, FindGivesTheFirstRowThatHoldsTheText) {
    const ParameterParser parser = Parsed(L"a,x;b,y;c,x;d");
    EXPECT_EQ(parser.Find(2, L"x"), 1);
    EXPECT_EQ(parser.Find(1, L"c"), 3);
    EXPECT_EQ(parser.Find(1, L"C"), 0);
    EXPECT_EQ(parser.Find(1, L"z"), 0);
    EXPECT_EQ(parser.Find(2, L""), 4) << "the row that lacks the column";
    EXPECT_EQ(parser.Find(0, L""), 1);
}

TEST(ParameterParser, AFieldMayBeStoredFromTheTableItself) {
    ParameterParser parser = Parsed(L"alpha,beta;gamma");
    parser.SetValue(1, 2, parser.Value(2, 1));
    parser.SetValue(1, 1, parser.Value(1, 1).substr(2));
    parser.SetValue(3, 3, parser.Value(1, 1));
    EXPECT_EQ(parser.ParameterString(), L"pha,beta;beta;,,pha;");
}

// Emptied fields leave room unused in the arena; storing a new one is what tidies it up.
TEST(ParameterParser, ANewFieldIsKeptWhenTheArenaIsTidiedUp) {
    ParameterParser parser;
    for (std::int32_t step = 1; step <= 300; ++step) {
        const std::wstring text(static_cast<std::size_t>(10 * step), L'x');
        parser.SetValue(1, 2, text);
        ASSERT_EQ(parser.Value(1, 2), text);
        parser.SetValue(step, 1, std::to_wstring(step));
        ASSERT_EQ(parser.Value(step, 1), std::to_wstring(step));
        parser.SetValue(1, 2, L"");
    }
    for (std::int32_t col = 1; col <= 300; ++col) {
        ASSERT_EQ(parser.Value(col, 1), std::to_wstring(col));
    }
}

// A field that was empty between two others when the arena was tidied up, then dropped with the
// last one, comes back when the row grows again.
TEST(ParameterParser, AnEmptyFieldStaysEmptyWhenTheArenaIsTidiedUpTwice) {
    ParameterParser parser;
    const auto tidy_up = [&parser](std::int32_t row) {
        parser.SetValue(1, row, std::wstring(20000, L'x'));
        parser.SetValue(1, row, L"y");
    };
    parser.SetValue(1, 1, std::wstring(9000, L'x'));
    parser.SetValue(1, 2, L"a");
    parser.SetValue(3, 2, L"c");
    tidy_up(3);
    EXPECT_EQ(parser.Value(2, 2), L"");
    parser.SetValue(3, 2, L"");
    parser.SetValue(1, 1, L"y");
    tidy_up(3);
    parser.SetValue(3, 2, L"d");
    EXPECT_EQ(parser.Value(2, 2), L"");
    EXPECT_EQ(parser.ParameterString(), L"y;a,,d;y;");
}

TEST(ParameterParser, NulCharactersAreCharacters) {
    const std::wstring text(L"a\0b,\0;\0", 7);
    const ParameterParser parser = Parsed(text);
    EXPECT_EQ(parser.Value(1, 1), std::wstring_view(L"a\0b", 3));
    EXPECT_EQ(parser.ParameterString(), text + L";");
}

}  // namespace
}  // namespace demovex
