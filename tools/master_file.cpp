#include "tools/master_file.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <type_traits>

#include "catalog/artikel_record.h"

namespace demovex::tools {
namespace {

// What Windows-1252 has between 0x80 and 0x9F; 0 for the five places that it leaves free.
constexpr wchar_t kUpper[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

std::uint32_t Code(wchar_t c) {
    return static_cast<std::make_unsigned_t<wchar_t>>(c);
}

[[noreturn]] void Fail(const std::wstring& message) {
    throw std::runtime_error(ToUtf8(message));
}

void AppendField(std::string& line, const std::wstring& text, std::size_t width,
                 const Article& article) {
    std::string bytes = ToWindows1252(text);
    for (const char c : bytes) {
        if (static_cast<unsigned char>(c) < 0x20) {
            Fail(L"article \"" + article.nr + L"\": a control character in \"" + text + L"\"");
        }
    }
    if (bytes.size() > width) {
        Fail(L"article \"" + article.nr + L"\": \"" + text + L"\" is longer than " +
             std::to_wstring(width) + L" characters");
    }
    bytes.resize(width, ' ');
    line += bytes;
}

}  // namespace

std::string ToWindows1252(std::wstring_view text) {
    std::string bytes;
    for (const wchar_t c : text) {
        const std::uint32_t code = Code(c);
        if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) {
            bytes += static_cast<char>(code);
            continue;
        }
        const wchar_t* found = c == 0 ? kUpper + 32 : std::find(kUpper, kUpper + 32, c);
        if (found == kUpper + 32) {
            Fail(L"a character that Windows-1252 lacks in \"" + std::wstring(text) + L"\"");
        }
        bytes += static_cast<char>(0x80 + (found - kUpper));
    }
    return bytes;
}

std::wstring FromWindows1252(std::string_view bytes) {
    std::wstring text;
    for (const char c : bytes) {
        const auto code = static_cast<unsigned char>(c);
        const bool upper = code >= 0x80 && code < 0xA0;
        text +=
            upper && kUpper[code - 0x80] != 0 ? kUpper[code - 0x80] : static_cast<wchar_t>(code);
    }
    return text;
}

std::wstring FromUtf8(std::string_view bytes) {
    std::wstring text;
    std::size_t i = bytes.substr(0, 3) == "\xEF\xBB\xBF" ? 3 : 0;  // a mark of the encoding
    while (i < bytes.size()) {
        const auto lead = static_cast<unsigned char>(bytes[i++]);
        const int more = lead < 0x80 ? 0 : lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
        std::uint32_t code = more == 0 ? lead : lead & (0x3Fu >> more);
        if ((lead >= 0x80 && lead < 0xC2) || lead > 0xF4) Fail(L"the text is not UTF-8");
        for (int k = 0; k < more; ++k, ++i) {
            const auto next = i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0;
            if ((next & 0xC0) != 0x80) Fail(L"the text is not UTF-8");
            code = code << 6 | (next & 0x3Fu);
        }
        // written longer than need be, half of a pair, or beyond the last character
        if ((more == 2 && (code < 0x800 || (code >= 0xD800 && code < 0xE000))) ||
            (more == 3 && (code < 0x10000 || code > 0x10FFFF))) {
            Fail(L"the text is not UTF-8");
        }
        if (sizeof(wchar_t) == 2 && code > 0xFFFF) {
            text += static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10));
            text += static_cast<wchar_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
        } else {
            text += static_cast<wchar_t>(code);
        }
    }
    return text;
}

std::string ToUtf8(std::wstring_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::uint32_t code = Code(text[i]);
        if (sizeof(wchar_t) == 2 && code >= 0xD800 && code < 0xDC00 && i + 1 < text.size()) {
            code = 0x10000 + ((code - 0xD800) << 10) + (Code(text[++i]) - 0xDC00);
        }
        if (code < 0x80) {
            bytes += static_cast<char>(code);
        } else if (code < 0x800) {
            bytes += static_cast<char>(0xC0 | code >> 6);
            bytes += static_cast<char>(0x80 | (code & 0x3F));
        } else if (code < 0x10000) {
            bytes += static_cast<char>(0xE0 | code >> 12);
            bytes += static_cast<char>(0x80 | (code >> 6 & 0x3F));
            bytes += static_cast<char>(0x80 | (code & 0x3F));
        } else {
            bytes += static_cast<char>(0xF0 | code >> 18);
            bytes += static_cast<char>(0x80 | (code >> 12 & 0x3F));
            bytes += static_cast<char>(0x80 | (code >> 6 & 0x3F));
            bytes += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return bytes;
}

std::string MakeMaster(const std::vector<Article>& articles) {
    const ArtikelRecord widths;
    std::string bytes;
    bytes.reserve(articles.size() * ArtikelRecord::kSize);
    for (const Article& article : articles) {
        AppendField(bytes, article.nr, widths.Nr.size(), article);
        AppendField(bytes, article.bezeichnung, widths.Bezeichnung.size(), article);
        AppendField(bytes, article.preis, widths.Preis.size(), article);
        bytes += "\r\n";
    }
    return bytes;
}

std::vector<Article> FromTabSeparated(std::wstring_view text) {
    std::vector<Article> articles;
    int number = 0;
    while (!text.empty()) {
        const std::size_t end = text.find(L'\n');
        std::wstring_view line = text.substr(0, end);
        text.remove_prefix(end == std::wstring_view::npos ? text.size() : end + 1);
        ++number;
        if (!line.empty() && line.back() == L'\r') line.remove_suffix(1);
        if (line.empty()) continue;
        std::vector<std::wstring> fields;
        for (;;) {
            const std::size_t tab = line.find(L'\t');
            fields.emplace_back(line.substr(0, tab));
            if (tab == std::wstring_view::npos) break;
            line.remove_prefix(tab + 1);
        }
        if (fields.size() < 3 || fields[0].empty()) {
            Fail(L"line " + std::to_wstring(number) +
                 L": number, description and price, separated by tabs, are needed");
        }
        fields.resize(4);
        articles.push_back({fields[0], fields[1], fields[2], fields[3]});
    }
    return articles;
}

std::wstring ToTabSeparated(const std::vector<Article>& articles) {
    std::wstring text;
    for (const Article& article : articles) {
        text += article.nr + L'\t' + article.bezeichnung + L'\t' + article.preis + L'\t' +
                article.gruppe + L"\r\n";
    }
    return text;
}

std::vector<std::string> CheckMaster(std::string_view bytes, std::size_t limit) {
    std::vector<std::string> findings;
    std::size_t total = 0;
    const auto find = [&](const std::string& finding) {
        if (++total <= limit) findings.push_back(finding);
    };
    const std::size_t rest = bytes.size() % ArtikelRecord::kSize;
    if (rest != 0) {
        find("the file's length is not a multiple of " + std::to_string(ArtikelRecord::kSize) +
             " bytes: " + std::to_string(rest) + " bytes are left over");
    }
    std::wstring previous;
    bool unknown_order = false;
    for (std::size_t i = 0; (i + 1) * ArtikelRecord::kSize <= bytes.size(); ++i) {
        const std::string_view line = bytes.substr(i * ArtikelRecord::kSize, ArtikelRecord::kSize);
        ArtikelRecord record;
        record.Assign(line);
        const std::string where = "record " + std::to_string(i + 1);
        if (line.substr(ArtikelRecord::kTextSize) != "\r\n") {
            find(where + ": no line break at its end");
        }
        if (line.substr(0, ArtikelRecord::kTextSize).find_first_of("\r\n") !=
            std::string_view::npos) {
            find(where + ": a line break within it");
        }
        const std::wstring nr = FromWindows1252(record.TrimmedNr());
        if (nr.empty()) find(where + ": no number");
        if (record.TrimmedPreis().empty()) find(where + ": no price");
        if (!OrderIsKnown(nr)) unknown_order = true;
        if (i > 0) {
            const int order = CompareNumbers(previous, nr);
            std::string names = "\"";
            names.append(ToUtf8(previous)).append("\" and \"").append(ToUtf8(nr)).append("\"");
            if (order == 0) find(where + ": the numbers " + names + " are equal");
            if (order > 0) find(where + ": the numbers " + names + " are out of order");
        }
        previous = nr;
    }
    if (unknown_order) {
        find(
            "some numbers hold more than digits and plain letters: "
            "only the Windows program can tell their order");
    }
    if (total > limit) findings.push_back("and " + std::to_string(total - limit) + " more");
    return findings;
}

void SortByNumber(std::vector<Article>& articles) {
    std::stable_sort(articles.begin(), articles.end(), [](const Article& a, const Article& b) {
        return CompareNumbers(a.nr, b.nr) < 0;
    });
}

}  // namespace demovex::tools
