#include "basket/window/note.h"

#include <algorithm>

namespace demovex {
namespace {

// Time to notice a text and to read it, slow readers included.
constexpr std::uint64_t kNoticed = 6000;
constexpr std::uint64_t kReadPerCharacter = 100;

std::wstring OneLine(std::wstring_view text) {
    std::wstring line(text.substr(0, Note::kLongest));
    if (text.size() > Note::kLongest) line.replace(line.size() - 3, 3, L"...");
    std::ranges::replace_if(
        line, [](wchar_t c) { return c < L' ' || c == L'\x7F'; }, L' ');
    return line;
}

}  // namespace

void Note::Say(std::wstring_view text, std::uint64_t now) {
    said_ = OneLine(text);
    until_ = now + kNoticed + kReadPerCharacter * said_.size();
}

void Note::SetStanding(std::wstring_view text) {
    standing_ = OneLine(text);
}

bool Note::Expire(std::uint64_t now) {
    if (said_.empty() || now < until_) return false;
    said_.clear();
    return true;
}

std::uint64_t Note::TimeLeft(std::uint64_t now) const {
    if (said_.empty()) return 0;
    return until_ > now ? until_ - now : 1;
}

}  // namespace demovex
