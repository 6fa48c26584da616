// Every file of a few lines made of a few kinds of lines, loaded one after the other into the same
// basket, beside a plain reference that goes the steps of a load one by one.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/basket_fixture.h"
#include "tests/support/reference_document.h"

namespace demovex {
namespace {

class LoadAllFiles : public ::testing::Test {
  protected:
    LoadAllFiles() { basket.grid.SetFrame({700, 1300, 2, 17}); }

    void LoadOne(const std::string& bytes) {
        basket.files.Put(kFile, bytes);
        basket.messages.shown.clear();
        const int before = reference.messages;
        std::wstring raised;
        try {
            basket.form.Load(kFile);
        } catch (const Error& error) {
            raised = error.description();
        }
        const bool failed = RaisedBy([&] { reference.Load(bytes); }) != 0;
        ASSERT_EQ(!raised.empty(), failed);
        failures += failed ? 1 : 0;
        ASSERT_EQ(basket.messages.shown.size(),
                  static_cast<std::size_t>(reference.messages - before));
        if (!basket.messages.shown.empty()) {
            ASSERT_EQ(basket.messages.shown[0].text, reference.rejected_message);
        }
        Compare();
        without_totals += reference.has_totals ? 0 : 1;
    }
    void Compare() {
        const FlexGrid& grid = basket.grid;
        ASSERT_EQ(grid.Rows(), reference.Rows());
        for (int r = 0; r < grid.Rows(); ++r) {
            for (int c = 0; c < 10; ++c) {
                ASSERT_EQ(grid.TextMatrix(r, c), reference.At(r, c)) << r << "," << c;
            }
        }
        ASSERT_EQ(grid.CellBold(grid.Rows() - 1, 8), reference.has_totals);
        ASSERT_EQ(grid.Row(), reference.row);
        ASSERT_EQ(grid.Col(), reference.col);
        ASSERT_EQ(grid.RowSel(), reference.row_sel);
        ASSERT_EQ(grid.ColSel(), reference.col_sel);
        ASSERT_EQ(basket.view.status, reference.status);
        ASSERT_FALSE(basket.form.Modified());
        ASSERT_FALSE(basket.form.State().Loading);
        ASSERT_FALSE(basket.form.State().SuppressEditor);
        ASSERT_FALSE(basket.view.EditorOpen());
    }
    // What heals a basket: an order, which also shows that the sums were kept.
    void OrderSomething() {
        const auto order = [](auto&& link) { return RaisedBy(link); };
        ASSERT_EQ(order([&] { basket.Link(L"2000"); }),
                  order([&] { reference.Link(L"2000", 1, L"", L""); }));
        const FlexGrid& grid = basket.grid;
        ASSERT_EQ(grid.Rows(), reference.Rows());
        for (int r = 0; r < grid.Rows(); ++r) {
            for (int c = 0; c < 10; ++c) {
                ASSERT_EQ(grid.TextMatrix(r, c), reference.At(r, c)) << r << "," << c;
            }
        }
    }
    // All files of at most `longest` lines of these kinds.
    void LoadAll(const std::vector<std::string>& kinds, std::size_t longest) {
        std::vector<std::size_t> file;
        for (;;) {
            std::string bytes;
            for (const std::size_t kind : file) bytes += kinds[kind] + "\r\n";
            ++files;
            LoadOne(bytes);
            if (files % 2 == 0 && !HasFatalFailure()) OrderSomething();
            if (HasFatalFailure()) {
                ADD_FAILURE() << "file " << files << ":\n" << bytes << basket.AsText();
                return;
            }
            // the next file in the order of a counter that grows at its front
            auto digit = file.begin();
            while (digit != file.end() && *digit == kinds.size() - 1) *digit++ = 0;
            if (digit != file.end()) {
                ++*digit;
            } else if (file.size() == longest) {
                return;
            } else {
                file.push_back(0);
            }
        }
    }

    const std::wstring kFile = L"C:\\Basket\\all.bsk";
    BasketFixture basket;
    ReferenceDocument reference{basket.text};
    int files = 0;
    int failures = 0;
    int without_totals = 0;
};

TEST_F(LoadAllFiles, OfUpToSixLinesOfFiveKindsLeaveWhatTheStepsSay) {
    LoadAll({"4711\t\t2\t\t\tSeite\tu", "1000\t\t0,5", "8888\t\t3", "\tfrei", "4712\t\tviele"}, 6);
    EXPECT_EQ(files, 19531);
    EXPECT_GT(failures, 1000);
    EXPECT_GT(without_totals, 1000);
}

TEST_F(LoadAllFiles, OfUpToFourLinesOfTenKindsLeaveWhatTheStepsSay) {
    LoadAll({"4711\t\t2", "4712\t\t1", "8888\t\t3", "\tfrei", "4712\t\tviele", "",
             "9999\t\t1\t\t\tSeite\tu", "ArtNr\t\t1", "DemoVexClient.Client", "6000\t\t1e305"},
            4);
    EXPECT_EQ(files, 11111);
    EXPECT_GT(failures, 1000);
    EXPECT_GT(without_totals, 100);
}

}  // namespace
}  // namespace demovex
