// Finds one delimiter in one text from left to right, in time linear in the text however often it
// is asked: it remembers the last place found and never looks at a character twice.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace demovex {

class DelimiterSearch {
  public:
    static constexpr std::size_t kNone = std::wstring_view::npos;

    // Both views outlive the search. An empty delimiter is never found.
    DelimiterSearch(std::wstring_view text, std::wstring_view delimiter);

    // The first place at or after `from` where the delimiter begins, or kNone. `from` must not
    // decrease from call to call.
    std::size_t Next(std::size_t from) {
        if (place_ == kNone || place_ >= from) return place_;
        return short_ ? NextShort(from) : NextLong(from);
    }

  private:
    std::size_t NextShort(std::size_t from);
    std::size_t NextLong(std::size_t from);

    std::wstring_view text_;
    std::wstring_view delimiter_;
    bool short_;
    std::size_t place_ = 0;
    // For long delimiters, which may overlap themselves: how far the text has been read, how much
    // of the delimiter ends there, and for each of its beginnings the longest one that ends it.
    std::size_t read_ = 0;
    std::size_t matched_ = 0;
    std::vector<std::size_t> borders_;
};

}  // namespace demovex
