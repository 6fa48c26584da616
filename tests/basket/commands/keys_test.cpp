#include <gtest/gtest.h>

#include <initializer_list>

#include "basket/commands/keys.h"

namespace demovex {
namespace {

using namespace shift_state;

TEST(BasketKeys, CharactersMovingDeletingTabReturnAndEscapeAreTheBaskets) {
    for (const int key : {int{'A'},
                          int{'Z'},
                          int{'0'},
                          int{'9'},
                          int{' '},
                          0x60,
                          0x6E,
                          0xBA,
                          0xBC,
                          0xDB,
                          0xDE,
                          0xE2,
                          0xE7,
                          key_code::kLeft,
                          key_code::kRight,
                          key_code::kUp,
                          key_code::kDown,
                          key_code::kHome,
                          key_code::kEnd,
                          key_code::kPageUp,
                          key_code::kPageDown,
                          key_code::kDelete,
                          key_code::kBack,
                          key_code::kInsert,
                          key_code::kTab,
                          key_code::kReturn,
                          key_code::kEscape,
                          key_code::kF2,
                          key_code::kF4,
                          key_code::kF10,
                          key_code::kMenu}) {
        EXPECT_TRUE(IsBasketKey(key, 0)) << key;
        EXPECT_TRUE(IsBasketKey(key, kShift)) << key;
    }
}

TEST(BasketKeys, WhatCtrlMeansInTheTextBoxTheGridAndTheMenusIsTheBaskets) {
    for (const int key : {int{'A'},
                          int{'C'},
                          int{'V'},
                          int{'X'},
                          int{'Y'},
                          int{'Z'},
                          int{'N'},
                          int{'O'},
                          int{'S'},
                          int{'P'},
                          int{'E'},
                          int{'L'},
                          int{'U'},
                          int{'D'},
                          int{'G'},
                          key_code::kLeft,
                          key_code::kRight,
                          key_code::kUp,
                          key_code::kDown,
                          key_code::kHome,
                          key_code::kEnd,
                          key_code::kPageUp,
                          key_code::kPageDown,
                          key_code::kDelete,
                          key_code::kBack,
                          key_code::kInsert}) {
        EXPECT_TRUE(IsBasketKey(key, kCtrl)) << key;
        EXPECT_TRUE(IsBasketKey(key, kCtrl | kShift)) << key;
    }
}

TEST(BasketKeys, WhatMeansNothingInABasketStaysTheHosts) {
    for (const int key :
         {int{'B'},       int{'F'},          int{'H'},          int{'I'},      int{'J'},
          int{'K'},       int{'M'},          int{'Q'},          int{'R'},      int{'T'},
          int{'W'},       int{'0'},          int{'9'},          0x6B,          0xBB,
          key_code::kTab, key_code::kReturn, key_code::kEscape, key_code::kF2, key_code::kF4,
          key_code::kF10}) {
        EXPECT_FALSE(IsBasketKey(key, kCtrl)) << key;
    }
    constexpr int f1 = 112, f3 = 114, f5 = 116, f9 = 120, f11 = 122, f24 = 135;
    for (const int key : {f1, f3, f5, f9, f11, f24, 3, 12, 19, 44, 91, 144}) {
        for (int shift = 0; shift < 8; ++shift) {
            EXPECT_FALSE(IsBasketKey(key, shift)) << key << " " << shift;
        }
    }
    for (const int key : {key_code::kLeft, key_code::kRight, key_code::kUp, key_code::kHome,
                          key_code::kReturn, key_code::kDelete, int{'C'}, int{'1'}, int{'N'}}) {
        EXPECT_FALSE(IsBasketKey(key, kAlt)) << key;
        EXPECT_FALSE(IsBasketKey(key, kAlt | kCtrl)) << key;
        EXPECT_FALSE(IsBasketKey(key, kAlt | kCtrl | kShift)) << key;
    }
}

TEST(BasketKeys, AltOpensTheBasketsMenusClosesItsWindowAndUndoes) {
    for (const int key : {int{'D'}, int{'B'}, int{'A'}, key_code::kSpace, key_code::kF4,
                          key_code::kBack, key_code::kDown}) {
        EXPECT_TRUE(IsBasketKey(key, kAlt)) << key;
    }
    EXPECT_FALSE(IsBasketKey('X', kAlt));  // of a menu that is not shown
}

TEST(BasketKeys, TheThirdCharacterOfAKeyIsTyped) {
    for (const int key : {int{'Q'}, int{'E'}, int{'7'}, 0xDB, 0xE2}) {
        EXPECT_TRUE(IsBasketKey(key, kAltGr)) << key;
        EXPECT_TRUE(IsBasketKey(key, kAltGr | kShift)) << key;
    }
    EXPECT_FALSE(IsBasketKey(key_code::kLeft, kAltGr));
    EXPECT_FALSE(IsBasketKey(key_code::kDelete, kAltGr));
}

TEST(BasketKeys, ACharacterBelongsToWhomItsKeyBelongs) {
    for (const wchar_t character :
         std::initializer_list<wchar_t>{L'a', L'ß', L'€', L' ', 0xD83D, 8, 9, 13, 27, 0x7F, 1, 3,
                                        0x16, 0x18, 0x19, 0x1A, 14}) {
        EXPECT_TRUE(IsBasketCharacter(character)) << static_cast<int>(character);
    }
    for (const wchar_t character :
         std::initializer_list<wchar_t>{2, 6, 10, 11, 17, 18, 20, 23, 28}) {
        EXPECT_FALSE(IsBasketCharacter(character)) << static_cast<int>(character);
    }
    for (const wchar_t character : {L'd', L'D', L'b', L'a', L'?', L' ', L'\b'}) {
        EXPECT_TRUE(IsBasketAltCharacter(character)) << static_cast<int>(character);
    }
    for (const wchar_t character : {L'n', L'x', L'1', L'\r'}) {
        EXPECT_FALSE(IsBasketAltCharacter(character)) << static_cast<int>(character);
    }
}

}  // namespace
}  // namespace demovex
