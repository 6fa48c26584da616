#include "tools/delimited.h"

#include <gtest/gtest.h>

namespace demovex::tools {
namespace {

// Every row as "line: field|field".
std::vector<std::string> Rows(std::string_view text, char separator) {
    std::vector<std::string> rows, fields;
    DelimitedReader reader(text, separator);
    while (reader.Next(fields)) {
        std::string row = std::to_string(reader.line()) + ": ";
        for (std::size_t i = 0; i < fields.size(); ++i) row += (i == 0 ? "" : "|") + fields[i];
        rows.push_back(row);
    }
    return rows;
}
using Texts = std::vector<std::string>;

TEST(Delimited, RowsEndWithAnyLineBreakAndEmptyOnesArePassedOver) {
    EXPECT_EQ(Rows("a;b\r\nc\rd\n\n;;\n e ; f ", ';'), (Texts{"1: a|b", "2: c", "3: d", "6: e|f"}));
    EXPECT_EQ(Rows("", ';'), Texts());
    EXPECT_EQ(Rows("\n\r\n", ';'), Texts());
    EXPECT_EQ(Rows("a;;", ';'), Texts{"1: a||"});
}

TEST(Delimited, QuotedFieldsHoldSeparatorsMarksAndLineBreaks) {
    EXPECT_EQ(Rows("\"a;b\";\"say \"\"x\"\"\"\n2;\"two\r\nlines\" \n3", ';'),
              (Texts{"1: a;b|say \"x\"", "2: 2|two\r\nlines", "4: 3"}));
    EXPECT_EQ(Rows(" \"a\" ;b", ';'), Texts{"1: a|b"});
    EXPECT_EQ(Rows("\"\";x", ';'), Texts{"1: |x"});
}

TEST(Delimited, QuotationMarksOfOtherKindsAreCharacters) {
    EXPECT_EQ(Rows("1\tBohrer 1/2\"\t5\n2\t\"Gold\" Serie\t6", '\t'),
              (Texts{"1: 1|Bohrer 1/2\"|5", "2: 2|\"Gold\" Serie|6"}));
    EXPECT_EQ(Rows("\"never closed;x\ny", ';'), (Texts{"1: \"never closed|x", "2: y"}));
}

TEST(Delimited, TheFirstRowTellsTheSeparator) {
    const auto guess = [](std::string_view text) { return GuessSeparator(text); };
    EXPECT_EQ(guess("1\tx;y\t3"), '\t');
    EXPECT_EQ(guess("\n1;\"x\ty\";3,5"), ';');
    EXPECT_EQ(guess("1,\"x;y\",3"), ',');
    EXPECT_EQ(guess("1;2"), ';');
    EXPECT_EQ(guess(""), '\t');
    std::string_view told = "sep=,\r\n1,2,3;4;5";
    EXPECT_EQ(GuessSeparator(told), ',');
    EXPECT_EQ(Rows(told, ','), Texts{"2: 1|2|3;4;5"});
}

}  // namespace
}  // namespace demovex::tools
