#include "tools/search.h"

#include <algorithm>

#include "tools/encodings.h"

namespace demovex::tools {
namespace {

// The letters of Windows-1252 from 0xC0 to 0xDE in plain lower case; those from 0xE0 on are the
// same in lower case. '\xD7' and '\xDE' have no plain letter and stand for themselves.
constexpr char kPlain[] = "aaaaaaaceeeeiiiidnooooo\xD7ouuuuy\xDE";

// In lower case, accents taken away; umlauts and ligatures as one letter or, `wide`, as two.
std::string Folded(std::string_view bytes, bool wide) {
    std::string folded;
    for (const char c : bytes) {
        auto code = static_cast<unsigned char>(c);
        if (code >= 'A' && code <= 'Z') {
            folded += static_cast<char>(code - 'A' + 'a');
            continue;
        }
        if (code == 0xDF) {
            folded += "ss";
            continue;
        }
        if (code == 0xFF) {
            folded += 'y';
            continue;
        }
        if (code < 0xC0) {
            folded += c;
            continue;
        }
        if (code >= 0xE0 && code != 0xF7) code = static_cast<unsigned char>(code - 0x20);
        folded += code == 0xF7 ? c : kPlain[code - 0xC0];
        const bool umlaut = code == 0xC4 || code == 0xC6 || code == 0xD6 || code == 0xDC;
        if (umlaut && wide) folded += 'e';
    }
    return folded;
}

}  // namespace

ArticleSearch::ArticleSearch(const std::vector<std::string>& words) {
    for (const std::string& text : words) {
        std::string bytes;
        Utf8ToWindows1252(text, bytes);
        for (std::size_t at = 0; at < bytes.size();) {
            const std::size_t end = std::min(bytes.find(' ', at), bytes.size());
            const std::string_view word = std::string_view(bytes).substr(at, end - at);
            if (!word.empty()) words_.push_back({Folded(word, false), Folded(word, true)});
            at = end + 1;
        }
    }
}

bool ArticleSearch::Finds(const ArtikelRecord& record) const {
    // a line break between both, so that no word is found across their border
    std::string text(record.TrimmedNr());
    text.append(1, '\n').append(record.TrimmedBezeichnung());
    const std::string plain = Folded(text, false), wide = Folded(text, true);
    for (const Word& word : words_) {
        if (plain.find(word.plain) == std::string::npos &&
            wide.find(word.wide) == std::string::npos) {
            return false;
        }
    }
    return true;
}

}  // namespace demovex::tools
