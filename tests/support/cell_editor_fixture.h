// The basket that the tests of the cell editor start with.
#pragma once

#include <gtest/gtest.h>

#include "tests/support/basket_fixture.h"

namespace demovex {

// A basket with one priced line, one free line, and the totals row: rows 1, 2 and 3.
class CellEditorTest : public ::testing::Test {
  protected:
    CellEditorTest() {
        basket.Link(L"4711", 3, L"Parfum", L"vex://parfum");
        basket.Link(L"");
    }
    bool OpensAt(std::int32_t row, std::int32_t col) {
        basket.Click(row, col);
        return basket.view.EditorOpen() && basket.form.State().EditRow == row &&
               basket.form.State().EditCol == col;
    }
    BasketFixture basket;
};

}  // namespace demovex
