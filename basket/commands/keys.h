// Which keys mean something in a basket window that has the focus, as one table. Whatever it names
// belongs to the basket, in any host; everything else is the host's: its accelerators, its
// navigation between panes, its help.
//
// The table knows nothing of what a key does (the text box, the grid, the cell editor and the menu
// know that); it only says who is asked. A new key of the basket needs one line here.
#pragma once

#include "platform/shift_state.h"

namespace demovex {

// Key codes of the platform that the basket knows by name.
namespace key_code {
inline constexpr int kBack = 8;
inline constexpr int kTab = 9;
inline constexpr int kReturn = 13;
inline constexpr int kEscape = 27;
inline constexpr int kSpace = 32;
inline constexpr int kPageUp = 33;
inline constexpr int kPageDown = 34;
inline constexpr int kEnd = 35;
inline constexpr int kHome = 36;
inline constexpr int kLeft = 37;
inline constexpr int kUp = 38;
inline constexpr int kRight = 39;
inline constexpr int kDown = 40;
inline constexpr int kInsert = 45;
inline constexpr int kDelete = 46;
inline constexpr int kMenu = 93;  // the key that opens the context menu
inline constexpr int kF2 = 113;
inline constexpr int kF4 = 115;
inline constexpr int kF10 = 121;
}  // namespace key_code

namespace shift_state {
// The key that types the third character of a key: neither Ctrl nor Alt, whatever the system says
// of those. Known to the table of keys alone.
inline constexpr int kAltGr = 8;
}  // namespace shift_state

// A key going down.
bool IsBasketKey(int key, int shift);

// A character that the system made of a key, and one made of a key with Alt. Control characters
// belong to whom their key belongs.
bool IsBasketCharacter(wchar_t character);
bool IsBasketAltCharacter(wchar_t character);

}  // namespace demovex
