// The catalogue of the demonstration host: groups of articles, and the addresses that lead to them.
//
// Its file is UTF-8 text, one article a line: number, description, price in schillings and group,
// separated by tabs. Groups stand in the order in which they first occur.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace demovex::host {

struct Article {
    std::wstring number;
    std::wstring description;
    double schillings = 0;
    std::size_t group = 0;
};

class Catalogue {
  public:
    Catalogue() = default;

    // Lines that hold no article are passed over; `skipped` counts them.
    static Catalogue Parse(std::string_view utf8, std::size_t* skipped = nullptr);

    const std::vector<std::wstring>& Groups() const { return groups_; }
    const std::vector<Article>& Articles() const { return articles_; }

    // Indexes of a group's articles, in the file's order.
    std::vector<std::size_t> InGroup(std::size_t group) const;
    // Indexes of the articles whose number begins with `text` or whose description contains it,
    // letter case ignored.
    std::vector<std::size_t> Matching(std::wstring_view text) const;
    // Exact comparison.
    std::optional<std::size_t> Find(std::wstring_view number) const;

  private:
    std::vector<std::wstring> groups_;
    std::vector<Article> articles_;
};

// The euro price beside a schilling price: halves to the even cent.
double Euros(double schillings);

// The link that orders an article, and the address of its position in the catalogue.
std::wstring OrderLink(std::wstring_view number);
std::wstring PositionAddress(std::wstring_view number);
// The number of the article that a position address names; nothing for any other address.
std::optional<std::wstring> ArticleAt(std::wstring_view address);

// Whether a browser may be given the address at all: http or https, and nothing in it but what an
// address is written with. Everything else could be a program, a file or a script.
bool IsWebAddress(std::wstring_view address);
// An address as a question shows it: on one line, a long one shortened in the middle.
std::wstring ShownAddress(std::wstring_view address);

// The text of UTF-8 bytes; a byte order mark is dropped, what is no UTF-8 becomes U+FFFD.
std::wstring FromUtf8(std::string_view bytes);
std::string ToUtf8(std::wstring_view text);

}  // namespace demovex::host
