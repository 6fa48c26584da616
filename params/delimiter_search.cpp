#include "params/delimiter_search.h"

namespace demovex {
namespace {

// Up to here searching afresh costs a bounded number of comparisons per character.
constexpr std::size_t kShort = 4;

}  // namespace

DelimiterSearch::DelimiterSearch(std::wstring_view text, std::wstring_view delimiter)
    : text_(text), delimiter_(delimiter), short_(delimiter.size() <= kShort) {
    if (delimiter.empty()) {
        place_ = kNone;
        return;
    }
    if (!short_) {
        borders_.assign(delimiter.size() + 1, 0);
        std::size_t border = 0;
        for (std::size_t i = 1; i < delimiter.size(); ++i) {
            while (border > 0 && delimiter[i] != delimiter[border]) border = borders_[border];
            if (delimiter[i] == delimiter[border]) ++border;
            borders_[i + 1] = border;
        }
    }
    place_ = short_ ? NextShort(0) : NextLong(0);
}

std::size_t DelimiterSearch::NextShort(std::size_t from) {
    place_ = text_.find(delimiter_, from);
    return place_;
}

std::size_t DelimiterSearch::NextLong(std::size_t from) {
    while (read_ < text_.size()) {
        while (matched_ > 0 &&
               (matched_ == delimiter_.size() || text_[read_] != delimiter_[matched_])) {
            matched_ = borders_[matched_];
        }
        if (text_[read_] == delimiter_[matched_]) ++matched_;
        ++read_;
        if (matched_ == delimiter_.size() && read_ - matched_ >= from) {
            place_ = read_ - matched_;
            return place_;
        }
    }
    place_ = kNone;
    return place_;
}

}  // namespace demovex
