#include "tools/master_file.h"

#include <algorithm>
#include <stdexcept>

#include "tools/encodings.h"
#include "tools/number_order.h"

namespace demovex::tools {
namespace {

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

std::wstring ToTabSeparated(const std::vector<Article>& articles) {
    std::wstring text;
    for (const Article& article : articles) {
        text += article.nr + L'\t' + article.bezeichnung + L'\t' + article.preis + L'\t' +
                article.gruppe + L"\r\n";
    }
    return text;
}

bool LooksLikeMaster(std::string_view bytes) noexcept {
    // the first line tells: 52 characters and its line break, of which one byte may be missing
    if (bytes.empty()) return true;
    if (bytes.size() + 1 < ArtikelRecord::kSize) return false;
    const std::string_view line = bytes.substr(0, ArtikelRecord::kTextSize);
    return bytes[ArtikelRecord::kTextSize] == '\r' &&
           (bytes.size() < ArtikelRecord::kSize || bytes[ArtikelRecord::kTextSize + 1] == '\n') &&
           std::none_of(line.begin(), line.end(),
                        [](char c) { return static_cast<unsigned char>(c) < 0x20; });
}

std::vector<ArtikelRecord> MasterRecords(std::string_view bytes) {
    std::vector<ArtikelRecord> records((bytes.size() + 1) / ArtikelRecord::kSize);
    for (std::size_t i = 0; i < records.size(); ++i) {
        records[i].Assign(bytes.substr(i * ArtikelRecord::kSize, ArtikelRecord::kTextSize));
    }
    return records;
}

std::vector<std::string> CheckMaster(std::string_view bytes, std::size_t limit, DecimalSign sign) {
    std::vector<std::string> findings;
    std::size_t total = 0;
    const auto find = [&](std::size_t record, const std::string& finding) {
        if (++total > limit) return;
        findings.push_back(record == 0 ? finding
                                       : "record " + std::to_string(record) + ": " + finding);
    };
    const std::size_t rest = bytes.size() % ArtikelRecord::kSize;
    if (rest != 0) {
        find(0, "the file's length is not a multiple of " + std::to_string(ArtikelRecord::kSize) +
                    " bytes: " + std::to_string(rest) + " bytes are left over");
    }
    ArtikelRecord previous;
    bool unknown_order = false;
    for (std::size_t i = 0; (i + 1) * ArtikelRecord::kSize <= bytes.size(); ++i) {
        const std::string_view line = bytes.substr(i * ArtikelRecord::kSize, ArtikelRecord::kSize);
        ArtikelRecord record;
        record.Assign(line);
        if (line.substr(ArtikelRecord::kTextSize) != "\r\n")
            find(i + 1, "no line break at its end");
        const std::string_view text = line.substr(0, ArtikelRecord::kTextSize);
        if (text.find_first_of("\r\n") != std::string_view::npos) {
            find(i + 1, "a line break within it");
        }
        const std::string_view nr = record.TrimmedNr();
        if (nr.empty()) find(i + 1, "no number");
        const std::string_view price = record.TrimmedPreis();
        if (price.empty()) {
            find(i + 1, "no price");
        } else if (!ReadPrice(price, sign)) {
            find(i + 1, "the price \"" + ToUtf8(FromWindows1252(price)) + "\" is no number");
        }
        if (!OrderIsKnown(nr)) unknown_order = true;
        const int order = i == 0 ? -1 : CompareNumberBytes(previous.TrimmedNr(), nr);
        if (order >= 0) {
            find(i + 1, "the numbers \"" + ToUtf8(FromWindows1252(previous.TrimmedNr())) +
                            "\" and \"" + ToUtf8(FromWindows1252(nr)) +
                            (order == 0 ? "\" are equal" : "\" are out of order"));
        }
        previous = record;
    }
    if (unknown_order) {
        find(0,
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
