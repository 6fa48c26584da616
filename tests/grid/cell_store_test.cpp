#include "grid/cell_store.h"

#include <gtest/gtest.h>

#include <string>

namespace demovex {
namespace {

TEST(CellStore, TheArenaIsCompactedWhenMostOfItIsDead) {
    CellStore store(10, 2);
    store.SetText(5, 1, L"stays");
    const std::wstring text(100, L'x');
    for (std::size_t round = 0; round < 10'000; ++round) {
        // ever longer and shorter texts, so that the place is never reused for long
        store.SetText(static_cast<std::int32_t>(round % 5), 0, text.substr(0, round * 37 % 100));
    }
    EXPECT_EQ(store.Text(5, 1), L"stays");
    EXPECT_LT(store.ArenaSize(), 20'000U) << "500 characters live";
}

TEST(CellStore, AShorterTextTakesThePlaceOfTheOldOne) {
    CellStore store(2, 2);
    store.SetText(1, 1, L"a long text");
    const std::size_t size = store.ArenaSize();
    store.SetText(1, 1, L"short");
    EXPECT_EQ(store.ArenaSize(), size);
    EXPECT_EQ(store.Text(1, 1), L"short");
}

TEST(CellStore, SettingTheSameTextOrFormatSaysSo) {
    CellStore store(2, 2);
    EXPECT_FALSE(store.SetText(1, 1, L""));
    EXPECT_TRUE(store.SetText(1, 1, L"x"));
    EXPECT_FALSE(store.SetText(1, 1, L"x"));
    EXPECT_FALSE(store.SetBold(1, 1, false));
    EXPECT_TRUE(store.SetBold(1, 1, true));
    EXPECT_FALSE(store.SetBold(1, 1, true));
    EXPECT_FALSE(store.SetLeft(1, 1, false));
    EXPECT_TRUE(store.SetLeft(1, 1, true));
}

TEST(CellStore, ATextFromItsOwnArenaSurvivesTheCompactionThatItCauses) {
    CellStore store(3, 1);
    store.SetText(0, 0, std::wstring(50, L'k'));
    for (std::size_t round = 1; round < 400; ++round) {
        store.SetText(1, 0, std::wstring(round % 90, L'a') + std::to_wstring(round));
        store.SetText(2, 0, store.Text(1, 0));
        ASSERT_EQ(store.Text(2, 0), std::wstring(round % 90, L'a') + std::to_wstring(round));
        ASSERT_EQ(store.Text(0, 0), std::wstring(50, L'k'));
        store.SetText(2, 0, L"");
    }
}

TEST(CellStore, TextsMayHoldNullAndAnyOtherCharacter) {
    CellStore store(2, 2);
    const std::wstring odd(L"a\0b\t\n\xFFFF", 6);
    store.SetText(0, 0, odd);
    EXPECT_EQ(store.Text(0, 0), odd);
}

TEST(CellStore, AMillionEmptyRowsTakeFourBytesEach) {
    CellStore store(1'000'000, 1000);  // would be 8 GB if rows without text took room
    EXPECT_EQ(store.Text(999'999, 999), L"");
    store.SetText(999'999, 999, L"x");
    EXPECT_EQ(store.Text(999'999, 999), L"x");
}

}  // namespace
}  // namespace demovex
