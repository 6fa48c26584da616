// The host's scripted mode: steps on the command line ("/follow 4711 /quit") or in a file, one step
// a line ("follow 4711"). Texts with blanks stand in quotes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace demovex::host {

struct Step {
    std::wstring name;  // without the slash
    std::vector<std::wstring> arguments;
};

struct Option {
    std::wstring_view name;
    std::size_t arguments;
    std::wstring_view help;
};

// Everything that the host understands.
const std::vector<Option>& Options();

// The steps of a command line's arguments (the program's name not among them). On an error the
// result is empty and `error` says what is wrong.
std::optional<std::vector<Step>> ParseArguments(const std::vector<std::wstring>& arguments,
                                                std::wstring& error);

// The steps of a script; empty lines and lines that begin with "#" are passed over.
std::optional<std::vector<Step>> ParseScript(std::wstring_view text, std::wstring& error);

// A key going down or coming up: its virtual-key code.
struct KeyStroke {
    std::uint16_t key;
    bool down;
    bool operator==(const KeyStroke&) const = default;
};

// The strokes of keys such as "Ctrl+N 4 7 Enter", pressed one after the other. Names are those of
// letters, digits, F1 to F12, Enter, Esc, Tab, Home, End, Left, Up, Right, Down, Apps, and before a
// plus sign Ctrl, Shift and Alt. Nothing for any other text.
std::optional<std::vector<KeyStroke>> ParseKeys(std::wstring_view text);

// A result code such as "0x800A000D"; nothing for any other text.
std::optional<std::uint32_t> ParseCode(std::wstring_view text);

}  // namespace demovex::host
