// The note: what the text at the right end of the status bar is at a moment. What was said last
// stays until the user's or the host's next action, or until there was time enough to read it;
// while nothing is said, a standing text (the sums of a selection, say) is there.
//
//   Note note;
//   note.Say(L"3 Zeilen gelöscht", now);
//   note.Text();                           // "3 Zeilen gelöscht"
//   note.Say({}, now);                     // the next action has begun
//
// Times are milliseconds of any clock that never goes back. The texts are one line: control
// characters become blanks, and no more is kept than anybody reads.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace demovex {

class Note {
  public:
    // No text is longer; what is left out of a longer one is marked by three points.
    static constexpr std::size_t kLongest = 300;

    // An empty text takes back what was said.
    void Say(std::wstring_view text, std::uint64_t now);
    // What is there while nothing is said; empty for nothing.
    void SetStanding(std::wstring_view text);
    // Takes back what was said when its time is over; true when it did.
    bool Expire(std::uint64_t now);

    const std::wstring& Text() const { return said_.empty() ? standing_ : said_; }
    // How long the said text still stays, at least 1; 0 when nothing is said.
    std::uint64_t TimeLeft(std::uint64_t now) const;

  private:
    std::wstring said_;
    std::wstring standing_;
    std::uint64_t until_ = 0;
};

}  // namespace demovex
