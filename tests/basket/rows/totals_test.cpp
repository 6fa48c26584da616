#include "basket/rows/order_table.h"

#include <gtest/gtest.h>

#include <string>

#include "basket/rows/columns.h"
#include "tests/support/fake_articles.h"
#include "tests/support/fake_text_service.h"
#include "tests/support/raised.h"

namespace demovex {
namespace {

// A basket of `lines` articles with the given amounts, and its totals row.
class TotalsTest : public ::testing::Test {
  protected:
    TotalsTest() { grid.SetCols(column::kCount); }
    void Fill(std::int32_t lines, const std::wstring& ats, const std::wstring& euro) {
        totals.InsertRows(1, lines);
        for (std::int32_t row = 1; row <= lines; ++row) {
            totals.SetCell(row, column::kArtNr, L"x");
            totals.SetCell(row, column::kGesamtAts, ats);
            totals.SetCell(row, column::kGesamtEuro, euro);
        }
    }
    std::int32_t Recalculate() {
        return RaisedBy([&] { totals.Recalculate(grid.Rows() - 1); });
    }
    std::wstring Ats() const { return std::wstring(grid.TextMatrix(grid.Rows() - 1, 8)); }
    std::wstring Euro() const { return std::wstring(grid.TextMatrix(grid.Rows() - 1, 9)); }

    FakeTextService text{FakeLocale::kGermany};
    FlexGrid grid;
    FakeArticles articles;
    OrderTable totals{grid, text, articles};
};

TEST_F(TotalsTest, TenThousandTimesTenGroschenIsExactlyAThousand) {
    Fill(10000, L"0,10", L"0,01");
    EXPECT_EQ(Recalculate(), 0);
    EXPECT_EQ(Ats(), L"1.000,00");
    EXPECT_EQ(Euro(), L"100,00");
}

TEST_F(TotalsTest, OppositeAmountsSumToNothing) {
    Fill(3, L"0,10", L"0,10");
    totals.SetCell(1, 8, L"-0,20");
    totals.SetCell(2, 8, L"0,10");
    EXPECT_EQ(Recalculate(), 0);
    EXPECT_EQ(Ats(), L"");
    EXPECT_EQ(Euro(), L"0,30");
}

TEST_F(TotalsTest, SumsBeyondSixtyFourBitsOfHundredthsDoNotOverflow) {
    Fill(2000, L"90.000.000.000.000,00", L"0,01");
    EXPECT_EQ(Recalculate(), 0);
    EXPECT_EQ(Ats(), L"180.000.000.000.000.000,00");
    EXPECT_EQ(Euro(), L"20,00");
}

TEST_F(TotalsTest, AmountsTooLargeToBeExactAreSummedUpRowByRow) {
    Fill(3, L"0,10", L"0,10");
    totals.SetCell(2, 8, L"1000000000000000000");
    EXPECT_EQ(Recalculate(), 0);
    EXPECT_EQ(Ats(), L"1.000.000.000.000.000.000,00");
    totals.SetCell(2, 8, L"0,10");
    EXPECT_EQ(Recalculate(), 0);
    EXPECT_EQ(Ats(), L"0,30");
}

TEST_F(TotalsTest, AmountsWithMoreThanTwoDecimalsAreSummedUpRowByRow) {
    Fill(2, L"0,125", L"0,10");
    EXPECT_EQ(Recalculate(), 0);
    EXPECT_EQ(Ats(), L"0,25");
}

TEST_F(TotalsTest, OneUnreadableAmountRaisesUntilItIsGoneButNotBeforeTheOthersAreSummedUp) {
    Fill(3, L"1,00", L"2,00");
    EXPECT_EQ(Recalculate(), 0);
    totals.SetCell(2, 9, L"keine Zahl");
    totals.SetCell(1, 8, L"5,00");
    EXPECT_EQ(Recalculate(), 13);
    EXPECT_EQ(Ats(), L"7,00");
    EXPECT_EQ(Euro(), L"4,00");
    totals.SetCell(3, 8, L"0,125");  // summed up row by row
    EXPECT_EQ(Recalculate(), 13);
    EXPECT_EQ(Ats(), L"6,13");
    totals.SetCell(3, 8, L"1,00");
    totals.SetCell(2, column::kArtNr, L"");
    EXPECT_EQ(Recalculate(), 0);
    EXPECT_EQ(Ats(), L"6,00");
    EXPECT_EQ(Euro(), L"4,00");
    totals.SetCell(2, column::kArtNr, L"y");
    EXPECT_EQ(Recalculate(), 13);
    totals.RemoveRows(2, 1);
    EXPECT_EQ(Recalculate(), 0);
    EXPECT_EQ(Ats(), L"6,00");
}

TEST_F(TotalsTest, AnUnreadableQuantityLeavesItsLineTotalsAndRaisesAfterTheSums) {
    Fill(2, L"1,00", L"2,00");
    EXPECT_EQ(RaisedBy([&] { totals.Recalculate(1); }), 13);
    EXPECT_EQ(grid.TextMatrix(1, 8), L"1,00");
    EXPECT_EQ(Ats(), L"2,00");
}

TEST_F(TotalsTest, TheErrorTellsWhetherItsOwnLineIsTheIncompleteOne) {
    Fill(2, L"1,00", L"2,00");
    const auto row = [&](std::int32_t recalculated) {
        try {
            totals.Recalculate(recalculated);
        } catch (const IncompleteLine& line) {
            EXPECT_EQ(line.description(), L"Type mismatch");
            return line.row();
        }
        return -1;
    };
    EXPECT_EQ(row(2), 2);
    EXPECT_EQ(row(3), -1);
    totals.SetCell(1, 8, L"");
    EXPECT_EQ(totals.Unreadable(), 1);
    EXPECT_FALSE(totals.Reads(1));
    EXPECT_TRUE(totals.Reads(2));
    EXPECT_EQ(row(3), 0);
    EXPECT_EQ(row(2), 2);
}

TEST_F(TotalsTest, AnUnreadableEuroPriceRaisesAfterTheSchillingsAreWritten) {
    Fill(1, L"1,00", L"2,00");
    totals.SetCell(1, column::kMenge, L"3");
    totals.SetCell(1, column::kPreisAts, L"10,00");
    EXPECT_EQ(RaisedBy([&] { totals.Recalculate(1); }), 13);
    EXPECT_EQ(grid.TextMatrix(1, 8), L"30,00");
    EXPECT_EQ(grid.TextMatrix(1, 9), L"2,00");
    EXPECT_EQ(Ats(), L"30,00");
    EXPECT_EQ(Euro(), L"2,00");
}

TEST_F(TotalsTest, AnUnreadableSchillingPriceDoesNotKeepTheEurosFromBeingReckoned) {
    Fill(1, L"1,00", L"2,00");
    totals.SetCell(1, column::kMenge, L"3");
    totals.SetCell(1, column::kPreisEuro, L"10,00");
    EXPECT_EQ(RaisedBy([&] { totals.Recalculate(1); }), 13);
    EXPECT_EQ(grid.TextMatrix(1, 8), L"1,00");
    EXPECT_EQ(grid.TextMatrix(1, 9), L"30,00");
    EXPECT_EQ(Euro(), L"30,00");
}

TEST_F(TotalsTest, PutOffTotalsAreNotWrittenToARowThatGoes) {
    Fill(3, L"1,00", L"1,00");
    totals.BeginLoading();
    EXPECT_EQ(Recalculate(), 0);
    totals.SetCell(3, 8, L"");  // what is last then and lacks its amount
    totals.RemoveRows(4, 1);
    EXPECT_FALSE(totals.HasTotalsRow());
    EXPECT_EQ(RaisedBy([&] { totals.EndLoading(); }), 0);
    EXPECT_EQ(Ats(), L"");
    totals.RestoreTotalsRow();
    EXPECT_TRUE(totals.HasTotalsRow());
    ASSERT_EQ(grid.Rows(), 5);
    totals.SetCell(3, 8, L"4,00");
    EXPECT_EQ(Recalculate(), 0);
    EXPECT_EQ(Ats(), L"6,00");
    totals.RestoreTotalsRow();  // there already
    EXPECT_EQ(grid.Rows(), 5);
}

TEST_F(TotalsTest, RowsWithoutAnArticleNumberKeepTheirAmountsAndDoNotCount) {
    Fill(2, L"1,00", L"1,00");
    totals.SetCell(1, column::kArtNr, L"");
    EXPECT_EQ(RaisedBy([&] { totals.Recalculate(1); }), 0);
    EXPECT_EQ(grid.TextMatrix(1, 8), L"1,00");
    EXPECT_EQ(Ats(), L"1,00");
}

TEST_F(TotalsTest, WhenTheTotalsRowItselfIsRemovedTheRowThatIsLastThenNoLongerCounts) {
    Fill(3, L"1,00", L"1,00");
    totals.RemoveRows(4, 1);
    totals.SetCell(3, column::kArtNr, L"");
    EXPECT_EQ(Recalculate(), 0);
    // the row in its place shows the sum of the two before it
    EXPECT_EQ(Ats(), L"2,00");
    totals.RemoveRows(2, 2);
    ASSERT_EQ(grid.Rows(), 2);
    EXPECT_EQ(RaisedBy([&] { totals.RemoveRows(1, 1); }), 30016);
    totals.InsertRows(1, 1);
    EXPECT_EQ(RaisedBy([&] { totals.Recalculate(1); }), 0);
    EXPECT_EQ(Ats(), L"");
}

TEST_F(TotalsTest, RefusedRemovalsAndMovesChangeNothing) {
    Fill(2, L"1,00", L"1,00");
    EXPECT_EQ(RaisedBy([&] { totals.RemoveRows(0, 1); }), 9);
    EXPECT_EQ(RaisedBy([&] { totals.RemoveRows(3, 2); }), 9);
    EXPECT_EQ(RaisedBy([&] { totals.RemoveRows(1, 3); }), 30016);
    EXPECT_EQ(RaisedBy([&] { totals.MoveRows(1, 2, 2); }), 9);
    EXPECT_EQ(RaisedBy([&] { totals.MoveRows(0, 1, 1); }), 9);
    EXPECT_EQ(RaisedBy([&] { totals.InsertRows(0, 1); }), 9);
    EXPECT_EQ(RaisedBy([&] { totals.InsertRows(4, 1); }), 9);
    EXPECT_EQ(RaisedBy([&] { totals.SetCell(7, 8, L"1"); }), 9);
    EXPECT_EQ(Recalculate(), 0);
    EXPECT_EQ(Ats(), L"2,00");
}

}  // namespace
}  // namespace demovex
