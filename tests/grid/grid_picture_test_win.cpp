// Saves pictures of a filled grid for people to look at, when DEMOVEX_PICTURES names a folder.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/grid_window_win.h"
#include "tests/support/window_picture_win.h"

namespace demovex {
namespace {

class GridPicture : public testing::TestWithParam<int> {};

TEST_P(GridPicture, ShowsAFilledBasket) {
    const int dpi = GetParam();
    GridWindow window(dpi, {150, 150, 10200, 4500});
    window.FillBasket(9);
    FlexGrid& grid = window.Grid();
    SetFocus(window.Handle());
    grid.Select(3, 2, 5, 4);
    ASSERT_TRUE(PumpUntilPainted(window.Handle()));
    const WindowPicture picture = WindowPicture::OfScreen(window.Handle());
    const PixelRect header = grid.CellRect(0, 1);
    EXPECT_EQ(picture.At(2 + header.right - 3, 2 + header.top + 2), GetSysColor(COLOR_BTNFACE));
    if (const char* folder = std::getenv("DEMOVEX_PICTURES")) {
        EXPECT_TRUE(picture.Save(std::string(folder) + "/grid-" + std::to_string(dpi) + ".bmp"));
    }
}

INSTANTIATE_TEST_SUITE_P(Dpi, GridPicture, testing::Values(96, 120, 144, 192));

}  // namespace
}  // namespace demovex
