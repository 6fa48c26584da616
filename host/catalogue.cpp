#include "host/catalogue.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cwctype>

namespace demovex::host {

namespace {

constexpr double kSchillingsPerEuro = 13.7603;
constexpr std::wstring_view kOrderLink = L"http://www.vexmart.example/vex/basket.html?prodno=";
constexpr std::wstring_view kPosition = L"http://www.vexmart.example/vex/katalog.html?artno=";

// Digits with at most one decimal separator, "," or ".".
std::optional<double> ReadPrice(std::wstring_view text) {
    double value = 0;
    double place = 0;
    bool any = false;
    for (wchar_t c : text) {
        if (c >= L'0' && c <= L'9') {
            any = true;
            if (place == 0) {
                value = value * 10 + (c - L'0');
            } else {
                value += (c - L'0') * place;
                place /= 10;
            }
        } else if ((c == L',' || c == L'.') && place == 0) {
            place = 0.1;
        } else {
            return std::nullopt;
        }
    }
    if (!any) return std::nullopt;
    return value;
}

std::wstring Lower(std::wstring_view text) {
    std::wstring lower(text);
    for (wchar_t& c : lower) c = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
    return lower;
}

}  // namespace

Catalogue Catalogue::Parse(std::string_view utf8, std::size_t* skipped) {
    Catalogue catalogue;
    const std::wstring text = FromUtf8(utf8);
    std::size_t bad = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(L'\n', at), text.size());
        std::wstring_view line(text.data() + at, end - at);
        at = end + 1;
        if (!line.empty() && line.back() == L'\r') line.remove_suffix(1);
        if (line.empty()) continue;
        std::array<std::wstring_view, 4> fields;
        std::size_t count = 0;
        for (; count < fields.size(); ++count) {
            const std::size_t tab = line.find(L'\t');
            fields[count] = line.substr(0, tab);
            if (tab == std::wstring_view::npos) {
                ++count;
                break;
            }
            line.remove_prefix(tab + 1);
        }
        const auto price = ReadPrice(fields[2]);
        if (count < 4 || fields[0].empty() || fields[3].empty() || !price) {
            ++bad;
            continue;
        }
        auto group = std::find(catalogue.groups_.begin(), catalogue.groups_.end(), fields[3]);
        if (group == catalogue.groups_.end()) {
            group = catalogue.groups_.emplace(group, fields[3]);
        }
        catalogue.articles_.push_back(
            {std::wstring(fields[0]), std::wstring(fields[1]), *price,
             static_cast<std::size_t>(group - catalogue.groups_.begin())});
    }
    if (skipped) *skipped = bad;
    return catalogue;
}

std::vector<std::size_t> Catalogue::InGroup(std::size_t group) const {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < articles_.size(); ++i) {
        if (articles_[i].group == group) found.push_back(i);
    }
    return found;
}

std::vector<std::size_t> Catalogue::Matching(std::wstring_view text) const {
    const std::wstring wanted = Lower(text);
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < articles_.size(); ++i) {
        if (Lower(articles_[i].number).starts_with(wanted) ||
            Lower(articles_[i].description).find(wanted) != std::wstring::npos) {
            found.push_back(i);
        }
    }
    return found;
}

std::optional<std::size_t> Catalogue::Find(std::wstring_view number) const {
    const auto found = std::find_if(articles_.begin(), articles_.end(),
                                    [&](const Article& a) { return a.number == number; });
    if (found == articles_.end()) return std::nullopt;
    return static_cast<std::size_t>(found - articles_.begin());
}

double Euros(double schillings) {
    const double cents = schillings / kSchillingsPerEuro * 100;
    const double below = std::floor(cents);
    const double rest = cents - below;
    const bool up = rest > 0.5 || (rest == 0.5 && std::fmod(below, 2) != 0);
    return (below + (up ? 1 : 0)) / 100;
}

std::wstring OrderLink(std::wstring_view number) {
    return std::wstring(kOrderLink).append(number);
}

std::wstring PositionAddress(std::wstring_view number) {
    return std::wstring(kPosition).append(number);
}

std::optional<std::wstring> ArticleAt(std::wstring_view address) {
    if (!address.starts_with(kPosition)) return std::nullopt;
    return std::wstring(address.substr(kPosition.size()));
}

bool IsWebAddress(std::wstring_view address) {
    constexpr std::size_t kLongest = 2000;
    const std::wstring begin = Lower(address.substr(0, 8));
    const std::size_t site = begin.starts_with(L"http://") ? 7 : begin == L"https://" ? 8 : 0;
    if (site == 0 || address.size() == site || address.size() > kLongest) return false;
    return std::all_of(address.begin(), address.end(), [](wchar_t c) {
        return c > L' ' && c < 0x7F &&
               std::wstring_view(L"\"<>\\^`{|}").find(c) == std::wstring_view::npos;
    });
}

std::wstring ShownAddress(std::wstring_view address) {
    constexpr std::size_t kBegin = 120, kEnd = 60;
    std::wstring shown(address);
    if (shown.size() > kBegin + kEnd) {
        shown = shown.substr(0, kBegin) + L" ... " + shown.substr(shown.size() - kEnd);
    }
    for (wchar_t& c : shown) {
        if (c < L' ' || c == 0x7F) c = L' ';
    }
    return shown;
}

std::wstring FromUtf8(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    std::wstring text;
    for (std::size_t i = 0; i < bytes.size();) {
        const auto lead = static_cast<unsigned char>(bytes[i]);
        const int more = lead < 0x80   ? 0
                         : lead < 0xC2 ? -1
                         : lead < 0xE0 ? 1
                         : lead < 0xF0 ? 2
                         : lead < 0xF5 ? 3
                                       : -1;
        char32_t code = more <= 0 ? lead : lead & (0x3FU >> more);
        bool good = more >= 0 && i + static_cast<std::size_t>(more) < bytes.size();
        for (int k = 1; good && k <= more; ++k) {
            const auto next = static_cast<unsigned char>(bytes[i + static_cast<std::size_t>(k)]);
            good = (next & 0xC0) == 0x80;
            code = code << 6 | (next & 0x3FU);
        }
        good = good && !(more == 2 && (code < 0x800 || (code >= 0xD800 && code < 0xE000))) &&
               !(more == 3 && (code < 0x10000 || code > 0x10FFFF));
        i += good ? static_cast<std::size_t>(more) + 1 : 1;
        if (!good) code = 0xFFFD;
        if (sizeof(wchar_t) == 2 && code > 0xFFFF) {
            code -= 0x10000;
            text += static_cast<wchar_t>(0xD800 + (code >> 10));
            text += static_cast<wchar_t>(0xDC00 + (code & 0x3FF));
        } else {
            text += static_cast<wchar_t>(code);
        }
    }
    return text;
}

std::string ToUtf8(std::wstring_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto code = static_cast<char32_t>(text[i]);
        if (sizeof(wchar_t) == 2) {
            code &= 0xFFFF;
            if (code >= 0xD800 && code < 0xDC00 && i + 1 < text.size() &&
                (text[i + 1] & 0xFC00) == 0xDC00) {
                code =
                    0x10000 + ((code & 0x3FF) << 10) + (static_cast<char32_t>(text[++i]) & 0x3FF);
            }
        }
        if (code >= 0xD800 && code < 0xE000) code = 0xFFFD;
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

}  // namespace demovex::host
