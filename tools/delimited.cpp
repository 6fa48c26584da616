#include "tools/delimited.h"

#include <algorithm>

namespace demovex::tools {
namespace {

// A quoted field that does not end within so many bytes was never meant as one.
constexpr std::size_t kLongestQuoted = 10'000;

void Trim(std::string& field) {
    const auto blank = [](char c) { return c == ' ' || c == '\t'; };
    std::size_t end = field.size();
    while (end > 0 && blank(field[end - 1])) --end;
    field.resize(end);
    std::size_t begin = 0;
    while (begin < end && blank(field[begin])) ++begin;
    field.erase(0, begin);
}

}  // namespace

bool DelimitedReader::QuotedField(std::string& field) {
    std::size_t i = at_ + 1;
    std::size_t breaks = 0;
    const std::size_t limit = std::min(text_.size(), at_ + kLongestQuoted);
    for (; i < limit; ++i) {
        const char c = text_[i];
        if (c == '"') {
            if (i + 1 < text_.size() && text_[i + 1] == '"') {
                ++i;
            } else {
                break;
            }
        } else if (c == '\n' || (c == '\r' && (i + 1 >= text_.size() || text_[i + 1] != '\n'))) {
            ++breaks;
        }
        field += c;
    }
    std::size_t after = i + 1;
    while (after < text_.size() && text_[after] == ' ' && separator_ != ' ') ++after;
    const bool closed = i < limit && (after >= text_.size() || text_[after] == separator_ ||
                                      text_[after] == '\r' || text_[after] == '\n');
    if (!closed) {
        field.clear();
        return false;
    }
    at_ = after;
    line_ += breaks;
    return true;
}

void DelimitedReader::PlainField(std::string& field) {
    const std::size_t begin = at_;
    while (at_ < text_.size() && text_[at_] != separator_ && text_[at_] != '\n' &&
           text_[at_] != '\r') {
        ++at_;
    }
    field.assign(text_.substr(begin, at_ - begin));
}

void DelimitedReader::EndRow() {
    if (at_ < text_.size() && text_[at_] == '\r') ++at_;
    if (at_ < text_.size() && text_[at_] == '\n') ++at_;
    ++line_;
}

bool DelimitedReader::Next(std::vector<std::string>& fields) {
    while (at_ < text_.size()) {
        row_line_ = line_;
        std::size_t count = 0;
        bool empty = true;
        for (;;) {
            if (count == fields.size()) fields.emplace_back();
            std::string& field = fields[count++];
            field.clear();
            // blanks before a quotation mark do not hide it
            std::size_t mark = at_;
            while (mark < text_.size() && text_[mark] == ' ') ++mark;
            const std::size_t begin = at_;
            bool quoted = mark < text_.size() && text_[mark] == '"';
            if (quoted) {
                at_ = mark;
                quoted = QuotedField(field);
                if (!quoted) at_ = begin;
            }
            if (!quoted) PlainField(field);
            Trim(field);
            empty = empty && field.empty();
            if (at_ >= text_.size() || text_[at_] != separator_) break;
            ++at_;
        }
        EndRow();
        if (empty) continue;
        fields.resize(count);
        return true;
    }
    return false;
}

char GuessSeparator(std::string_view& text, bool* told) {
    if (told != nullptr) *told = false;
    if (text.size() > 5 && (text.substr(0, 4) == "sep=" || text.substr(0, 4) == "SEP=") &&
        (text[5] == '\r' || text[5] == '\n')) {
        const char separator = text[4];
        text.remove_prefix(5);
        if (told != nullptr) *told = true;
        return separator;
    }
    const std::string_view front = text.substr(0, 64 * 1024);
    for (const std::size_t enough : {std::size_t{3}, std::size_t{2}}) {
        for (const char separator : {'\t', ';', ','}) {
            std::vector<std::string> fields;
            DelimitedReader reader(front, separator);
            if (reader.Next(fields) && fields.size() >= enough) return separator;
        }
    }
    return '\t';
}

}  // namespace demovex::tools
