#include "tools/master_changes.h"

#include <gtest/gtest.h>

#include "tools/master_file.h"
#include "tools/search.h"

namespace demovex::tools {
namespace {

using Texts = std::vector<std::string>;

TEST(MasterChanges, EachIsToldInTheOrderOfTheNumbersWithItsPrices) {
    auto before = MasterRecords(MakeMaster({{L"1", L"gone", L"10", L""},
                                            {L"2", L"dearer", L"20", L""},
                                            {L"3", L"cheaper", L"30", L""},
                                            {L"4", L"old text", L"40", L""},
                                            {L"5", L"same", L"1,5", L""},
                                            {L"7", L"odd", L"abc", L""}}));
    auto after = MasterRecords(MakeMaster({{L"2", L"dearer", L"20,01", L""},
                                           {L"3", L"cheaper and other", L"29", L""},
                                           {L"4", L"text", L"40", L""},
                                           {L"5", L"same", L"1,50", L""},
                                           {L"6", L"new", L"60", L""},
                                           {L"7", L"odd", L"70", L""}}));
    Texts lines;
    const ChangeSums sums =
        CompareMasters(before, after, DecimalSign::kComma,
                       [&](const Change& change) { lines.push_back(ChangeLine(change)); });
    EXPECT_EQ(lines, (Texts{"gone\t1\tgone\t10\t", "up\t2\tdearer\t20\t20,01",
                            "down\t3\tcheaper and other\t30\t29\t(was: cheaper)",
                            "text\t4\ttext\t40\t40\t(was: old text)", "new\t6\tnew\t\t60",
                            "price\t7\todd\tabc\t70"}));
    EXPECT_EQ(sums.added, 1u);
    EXPECT_EQ(sums.gone, 1u);
    EXPECT_EQ(sums.dearer, 1u);
    EXPECT_EQ(sums.cheaper, 1u);
    EXPECT_EQ(sums.other_price, 1u);
    EXPECT_EQ(sums.other_text, 1u);
    EXPECT_EQ(sums.same, 1u);
    EXPECT_EQ(sums.before, 1015000);
    EXPECT_EQ(sums.after, 2205100);
}

TEST(MasterChanges, RecordsOutOfOrderAreComparedAllTheSame) {
    auto before = MasterRecords(MakeMaster({{L"2", L"b", L"2", L""}, {L"1", L"a", L"1", L""}}));
    auto after = MasterRecords(MakeMaster({{L"1", L"a", L"1", L""}, {L"2", L"b", L"2", L""}}));
    EXPECT_FALSE(CompareMasters(before, after, DecimalSign::kComma, [](const Change&) {}).Any());
}

TEST(Masters, AreKnownByTheirFirstLine) {
    const std::string a = MakeMaster({{L"1", L"S\u00E4ge", L"1", L""}});
    EXPECT_TRUE(LooksLikeMaster(""));
    EXPECT_TRUE(LooksLikeMaster(a));
    EXPECT_TRUE(LooksLikeMaster(a.substr(0, 53)));
    EXPECT_FALSE(LooksLikeMaster(a.substr(0, 52)));
    EXPECT_FALSE(LooksLikeMaster("1;a;5\r\n"));
    EXPECT_FALSE(LooksLikeMaster(std::string(54, 'x')));
    EXPECT_FALSE(LooksLikeMaster(std::string(51, 'x') + "\n\r\n"));
    EXPECT_EQ(MasterRecords(a + a.substr(0, 53)).size(), 2u);
    EXPECT_EQ(MasterRecords(a + a.substr(0, 52)).size(), 1u);
}

TEST(Search, FindsWordsInAnyOrderAndSpelling) {
    const auto records = MasterRecords(
        MakeMaster({{L"47A", L"Gabelschl\u00FCssel gro\u00DF M\u00FCller", L"1", L""}}));
    const auto finds = [&](const Texts& words) { return ArticleSearch(words).Finds(records[0]); };
    for (const char* word : {"gabel", "SCHL\xC3\x9CSSEL", "schlussel", "schluessel", "gross", "47a",
                             "mueller gabel", "\xC3\xBC", ""}) {
        EXPECT_TRUE(finds({word})) << word;
    }
    EXPECT_TRUE(finds({"m\xC3\xBCller", "47"}));
    for (const char* word : {"hammer", "aga", "muellerx", "schlissel"}) {
        EXPECT_FALSE(finds({word})) << word;
    }
    EXPECT_FALSE(finds({"gabel", "hammer"}));
}

}  // namespace
}  // namespace demovex::tools
