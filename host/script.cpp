#include "host/script.h"

#include <algorithm>

namespace demovex::host {

const std::vector<Option>& Options() {
    static const std::vector<Option> options = {
        {L"script", 1, L"FILE: the steps in a file"},
        {L"log", 1, L"FILE: writes what happens into a file as well"},
        {L"catalogue", 1, L"FILE: another catalogue"},
        {L"unregistered", 0, L"uses the component beside the program without registration"},
        {L"create", 0, L"a client without a basket yet; it becomes the current one"},
        {L"basket", 0, L"a new basket window; it becomes the current one"},
        {L"initialize", 1, L"host, null or foreign: initialises the current client with that"},
        {L"client", 1, L"N: makes the N-th client (from 1) the current one"},
        {L"follow", 1, L"NUMBER: follows the order link of an article"},
        {L"follow-link", 1, L"ADDRESS: follows any link"},
        {L"follow-long", 1, L"COUNT: follows an order link with a number of so many characters"},
        {L"follow-null", 0, L"follows a link of null strings"},
        {L"show", 1, L"NUMBER: shows an article in the catalogue"},
        {L"click", 1, L"NUMBER: clicks the order link of an article with the mouse"},
        {L"enter", 1, L"NUMBER: presses the Enter key on an article"},
        {L"open", 1, L"FILE: opens a basket file"},
        {L"keys", 1, L"KEYS: presses keys in the current basket window (\"Ctrl+N 4 7 Enter\")"},
        {L"command", 1, L"ID: chooses a menu command of the current basket window"},
        {L"caption", 1, L"TEXT: the current client's caption is TEXT"},
        {L"position", 1, L"NUMBER: the catalogue shows that article"},
        {L"page", 1, L"ADDRESS: the page last handed to the browser (a script starts none)"},
        {L"references", 1, L"N: the host holds the last N references of the current client"},
        {L"windows", 1, L"N: N basket windows are open"},
        {L"clients", 1, L"N: the host knows N clients"},
        {L"answer", 1, L"BUTTON: answers the next message box with that button's number"},
        {L"file-dialog", 1, L"NAME: chooses that file in the next file dialog"},
        {L"cancel-dialog", 0, L"cancels the next file dialog"},
        {L"expect", 1, L"CODE: the next step fails with that result code"},
        {L"dump-basket", 1, L"FILE: writes the basket as tab-separated text (- is the log)"},
        {L"save-picture", 1, L"FILE: writes a picture of the basket window (bmp or png)"},
        {L"save-screen", 1, L"FILE: writes a picture of the screen (bmp or png)"},
        {L"close", 0, L"closes the current basket window as the user would"},
        {L"release", 0, L"lets go of the current client; its window stays open"},
        {L"unload", 1, L"0 or 1: whether the component's module stays loaded"},
        {L"stay", 0, L"ends the script and stays open"},
        {L"quit", 0, L"ends the program"},
    };
    return options;
}

namespace {

// The quoted and unquoted words of a line.
std::vector<std::wstring> Words(std::wstring_view line) {
    std::vector<std::wstring> words;
    for (std::size_t at = 0;;) {
        at = line.find_first_not_of(L" \t", at);
        if (at == std::wstring_view::npos) return words;
        const bool quoted = line[at] == L'"';
        if (quoted) ++at;
        const std::size_t end =
            std::min(quoted ? line.find(L'"', at) : line.find_first_of(L" \t", at), line.size());
        words.emplace_back(line.substr(at, end - at));
        at = std::min(end + 1, line.size());
    }
}

const Option* FindOption(std::wstring_view name) {
    for (const Option& option : Options()) {
        if (option.name == name) return &option;
    }
    return nullptr;
}

}  // namespace

std::optional<std::vector<Step>> ParseArguments(const std::vector<std::wstring>& arguments,
                                                std::wstring& error) {
    std::vector<Step> steps;
    for (std::size_t i = 0; i < arguments.size();) {
        const std::wstring& word = arguments[i++];
        const Option* option =
            word.empty() || word[0] != L'/' ? nullptr : FindOption(word.substr(1));
        if (!option) {
            error = L"unknown option: " + word;
            return std::nullopt;
        }
        if (arguments.size() - i < option->arguments) {
            error = word + L" needs " + std::wstring(option->help);
            return std::nullopt;
        }
        const auto from = arguments.begin() + static_cast<std::ptrdiff_t>(i);
        steps.push_back({std::wstring(option->name),
                         std::vector<std::wstring>(
                             from, from + static_cast<std::ptrdiff_t>(option->arguments))});
        i += option->arguments;
    }
    return steps;
}

std::optional<std::vector<Step>> ParseScript(std::wstring_view text, std::wstring& error) {
    std::vector<Step> steps;
    for (std::size_t at = 0, number = 1; at < text.size(); ++number) {
        const std::size_t end = std::min(text.find(L'\n', at), text.size());
        std::wstring_view line = text.substr(at, end - at);
        at = end + 1;
        if (!line.empty() && line.back() == L'\r') line.remove_suffix(1);
        auto words = Words(line);
        if (words.empty() || words[0].starts_with(L'#')) continue;
        words[0].insert(0, L"/");
        const auto parsed = ParseArguments(words, error);
        if (!parsed) {
            error = L"line " + std::to_wstring(number) + L": " + error;
            return std::nullopt;
        }
        steps.insert(steps.end(), parsed->begin(), parsed->end());
    }
    return steps;
}

namespace {

struct NamedKey {
    std::wstring_view name;
    std::uint16_t key;
};

constexpr NamedKey kKeys[] = {
    {L"Tab", 0x09},   {L"Enter", 0x0D}, {L"Shift", 0x10}, {L"Ctrl", 0x11}, {L"Alt", 0x12},
    {L"Esc", 0x1B},   {L"End", 0x23},   {L"Home", 0x24},  {L"Left", 0x25}, {L"Up", 0x26},
    {L"Right", 0x27}, {L"Down", 0x28},  {L"Apps", 0x5D},  {L"F1", 0x70},   {L"F2", 0x71},
    {L"F3", 0x72},    {L"F4", 0x73},    {L"F5", 0x74},    {L"F6", 0x75},   {L"F7", 0x76},
    {L"F8", 0x77},    {L"F9", 0x78},    {L"F10", 0x79},   {L"F11", 0x7A},  {L"F12", 0x7B},
};

// 0 for a name that is none.
std::uint16_t KeyOf(std::wstring_view name) {
    const bool sign = name.size() == 1 && ((name[0] >= L'A' && name[0] <= L'Z') ||
                                           (name[0] >= L'0' && name[0] <= L'9'));
    if (sign) return static_cast<std::uint16_t>(name[0]);
    for (const NamedKey& key : kKeys) {
        if (key.name == name) return key.key;
    }
    return 0;
}

bool Modifies(std::uint16_t key) {
    return key >= 0x10 && key <= 0x12;
}

}  // namespace

std::optional<std::vector<KeyStroke>> ParseKeys(std::wstring_view text) {
    std::vector<KeyStroke> strokes;
    const std::vector<std::wstring> words = Words(text);
    for (std::wstring_view word : words) {
        std::vector<std::uint16_t> held;
        for (std::size_t plus; (plus = word.find(L'+')) != std::wstring_view::npos;) {
            held.push_back(KeyOf(word.substr(0, plus)));
            if (!Modifies(held.back())) return std::nullopt;
            word.remove_prefix(plus + 1);
        }
        const std::uint16_t key = KeyOf(word);
        if (key == 0 || Modifies(key)) return std::nullopt;
        for (const std::uint16_t modifier : held) strokes.push_back({modifier, true});
        strokes.push_back({key, true});
        strokes.push_back({key, false});
        for (auto it = held.rbegin(); it != held.rend(); ++it) strokes.push_back({*it, false});
    }
    if (strokes.empty()) return std::nullopt;
    return strokes;
}

std::optional<std::uint32_t> ParseCode(std::wstring_view text) {
    if (text.size() < 3 || text.size() > 10 ||
        !(text.starts_with(L"0x") || text.starts_with(L"0X")))
        return std::nullopt;
    std::uint32_t code = 0;
    for (wchar_t c : text.substr(2)) {
        const wchar_t lower = c | 0x20;
        const int digit = c >= L'0' && c <= L'9'           ? c - L'0'
                          : lower >= L'a' && lower <= L'f' ? lower - L'a' + 10
                                                           : -1;
        if (digit < 0) return std::nullopt;
        code = code << 4 | static_cast<std::uint32_t>(digit);
    }
    return code;
}

}  // namespace demovex::host
