#include "basket/commands/keys.h"

#include "basket/commands/commands.h"

namespace demovex {
namespace {

using namespace shift_state;

// Sets of shift states.
constexpr unsigned Bit(int shift) {
    return 1U << static_cast<unsigned>(shift);
}
constexpr unsigned kPlain = Bit(0) | Bit(kShift);
constexpr unsigned kWithCtrl = Bit(kCtrl) | Bit(kCtrl | kShift);
constexpr unsigned kWithAlt = Bit(kAlt);
constexpr unsigned kTyping = kPlain | Bit(kAltGr) | Bit(kAltGr | kShift);

struct BasketKeyRow {
    int first;  // of the key codes that the row is about
    int last;
    unsigned states;
};

constexpr BasketKeyRow kKeys[] = {
    // what types characters: letters, digits, the number pad, punctuation, and the key that stands
    // for any character of a program that types
    {key_code::kSpace, key_code::kSpace, kTyping | kWithAlt},  // Alt: the window's own menu
    {'0', '9', kTyping},
    {'A', 'Z', kTyping},
    {0x60, 0x6F, kTyping},
    {0xBA, 0xC2, kTyping},
    {0xDB, 0xDF, kTyping},
    {0xE2, 0xE2, kTyping},
    {0xE7, 0xE7, ~kWithAlt},
    // what moves and deletes, in the text and in the grid
    {key_code::kPageUp, key_code::kDown, kPlain | kWithCtrl},
    {key_code::kDown, key_code::kDown, kWithAlt},  // drops a list
    {key_code::kInsert, key_code::kDelete, kPlain | kWithCtrl},
    {key_code::kBack, key_code::kBack, kPlain | kWithCtrl | kWithAlt},  // Alt: undo
    {key_code::kTab, key_code::kTab, kPlain},
    {key_code::kReturn, key_code::kReturn, kPlain},
    {key_code::kEscape, key_code::kEscape, kPlain},
    {key_code::kF2, key_code::kF2, kPlain},
    {key_code::kF4, key_code::kF4, kPlain | kWithAlt},  // Alt: the window closes
    // the text box: all, copy, paste, cut, redo, undo
    {'A', 'A', kWithCtrl},
    {'C', 'C', kWithCtrl},
    {'V', 'V', kWithCtrl},
    {'X', 'Z', kWithCtrl},
    // the menus; the letters of shortcuts and of top-level menus are in the table of commands
    {key_code::kF10, key_code::kF10, kPlain},
    {key_code::kMenu, key_code::kMenu, kPlain},
};

wchar_t UpperCase(wchar_t letter) {
    const bool lower =
        (letter >= L'a' && letter <= L'z') || letter == L'ä' || letter == L'ö' || letter == L'ü';
    return lower ? static_cast<wchar_t>(letter - (L'a' - L'A')) : letter;
}

// The character behind the "&" of a menu that can be opened with Alt.
bool IsAccessKey(wchar_t character) {
    for (const CommandRow& row : CommandTable()) {
        if (row.kind != MenuKind::kTop || !row.visible) continue;
        const std::size_t mark = row.caption.find(L'&');
        if (mark + 1 < row.caption.size() &&
            UpperCase(row.caption[mark + 1]) == UpperCase(character)) {
            return true;
        }
    }
    return false;
}

bool IsLetter(int key) {
    return key >= 'A' && key <= 'Z';
}

}  // namespace

bool IsBasketKey(int key, int shift) {
    const unsigned state = Bit(shift);
    for (const BasketKeyRow& row : kKeys) {
        if (key >= row.first && key <= row.last && (row.states & state) != 0) return true;
    }
    if (!IsLetter(key)) return false;
    const auto letter = static_cast<wchar_t>(key);
    if ((state & kWithCtrl) != 0) return CommandForShortcut(letter) != Command::kNone;
    return (state & kWithAlt) != 0 && IsAccessKey(letter);
}

bool IsBasketCharacter(wchar_t character) {
    switch (character) {
        case L'\b':
        case L'\t':
        case L'\r':
        case L'\x1B':
        case L'\x7F':  // Ctrl+Backspace
            return true;
        default:
            break;
    }
    if (character >= L' ') return true;
    return IsBasketKey('A' + character - 1, kCtrl);  // what Ctrl and a letter type
}

bool IsBasketAltCharacter(wchar_t character) {
    return character == L' ' || character == L'\b' || IsAccessKey(character);
}

}  // namespace demovex
