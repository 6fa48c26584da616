// The table of the order lines alone: without editor, window or form.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "basket/rows/order_table.h"
#include "tests/support/fake_articles.h"
#include "tests/support/fake_text_service.h"
#include "tests/support/raised.h"

namespace demovex {
namespace {

using Added = OrderTable::Added;

class TableTest : public ::testing::Test {
  protected:
    TableTest() {
        articles.articles = {{L"4711", {L"Duftwasser", L"100"}}, {L"4712", {L"Seife", L"25,5"}}};
        table.BuildEmpty();
    }
    std::vector<std::wstring> Numbers() const {
        std::vector<std::wstring> numbers;
        for (std::int32_t row = 1; row < grid.Rows(); ++row) {
            numbers.emplace_back(grid.TextMatrix(row, column::kNumber));
        }
        return numbers;
    }
    Added Add(const std::wstring& nr) { return table.AddArtikel(nr, L"K", L"U", 1); }

    FakeTextService text{FakeLocale::kGermany};
    FlexGrid grid;
    FakeArticles articles;
    OrderTable table{grid, text, articles};
};

TEST_F(TableTest, AnArticleIsNewMergedOrUnknown) {
    EXPECT_EQ(Add(L"4711"), Added::kNew);
    EXPECT_EQ(Add(L"4711"), Added::kMerged);
    EXPECT_EQ(Add(L"9999"), Added::kUnknown);
    EXPECT_EQ(Add(L""), Added::kNew);
    EXPECT_EQ(Add(L""), Added::kNew) << "two rows without a number are two rows";
    EXPECT_EQ(table.LastRow(), 4);
    EXPECT_EQ(grid.TextMatrix(1, column::kMenge), L"2");
    EXPECT_EQ(grid.TextMatrix(2, column::kKatalog), L"K");
    EXPECT_EQ(grid.TextMatrix(2, column::kBezeichnung), L"");
}

TEST_F(TableTest, NothingIsRecalculatedUntilTheCallerSaysSo) {
    Add(L"4711");
    EXPECT_EQ(grid.TextMatrix(1, column::kGesamtAts), L"");
    EXPECT_EQ(RaisedBy([&] { table.Recalculate(table.LastRow()); }), 0);
    EXPECT_EQ(grid.TextMatrix(1, column::kGesamtAts), L"100,00");
    EXPECT_EQ(grid.TextMatrix(table.TotalsRow(), column::kGesamtAts), L"100,00");
}

TEST_F(TableTest, LineNumbersStayRightWhateverComesGoesOrMoves) {
    for (const wchar_t* nr : {L"4711", L"4712", L"4711"}) Add(nr);
    EXPECT_EQ(Numbers(), (std::vector<std::wstring>{L"1", L"2", L"3", L""}));
    table.InsertRows(1, 2);
    EXPECT_EQ(Numbers(), (std::vector<std::wstring>{L"1", L"2", L"3", L"4", L"5", L""}));
    table.MoveRows(1, 2, 3);
    EXPECT_EQ(Numbers(), (std::vector<std::wstring>{L"1", L"2", L"3", L"4", L"5", L""}));
    table.RemoveRows(2, 2);
    EXPECT_EQ(Numbers(), (std::vector<std::wstring>{L"1", L"2", L"3", L""}));
    table.Clear();
    EXPECT_EQ(Numbers(), (std::vector<std::wstring>{L""}));
}

TEST_F(TableTest, AnIncompleteLineIsNoErrorForWhoeverOnlyTries) {
    Add(L"4711");
    EXPECT_TRUE(table.TryRecalculate(1));
    Add(L"9999");
    EXPECT_EQ(RaisedBy([&] { table.Recalculate(2); }), 13);
    EXPECT_FALSE(table.TryRecalculate(2));
    EXPECT_EQ(grid.TextMatrix(table.TotalsRow(), column::kGesamtAts), L"100,00");
}

TEST_F(TableTest, WhoeverListensHearsOfEachRecalculationAndOfAnEmptiedTable) {
    std::vector<std::int32_t> heard;  // −1 for nothing missing
    int cleared = 0;
    table.SetListener(
        {[&](const IncompleteLine* line) { heard.push_back(line ? line->row() : -1); },
         [&] { ++cleared; }});
    Add(L"4711");
    table.TryRecalculate(1);
    Add(L"9999");
    table.TryRecalculate(2);
    table.TryRecalculate(1);
    EXPECT_EQ(heard, (std::vector<std::int32_t>{-1, 2, 0}));
    table.Clear();
    EXPECT_EQ(cleared, 1);
    EXPECT_EQ(heard.size(), 3u);
}

}  // namespace
}  // namespace demovex
