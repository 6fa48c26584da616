#include "tools/import.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

#include "tools/delimited.h"
#include "tools/encodings.h"
#include "tools/number_order.h"

namespace demovex::tools {
namespace {

enum Column : std::size_t { kNumber, kDescription, kPrice, kGroup, kColumns };
constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);
constexpr std::size_t kRowsBetweenProgress = 1 << 14;

// Names of the columns without what is neither letter nor digit, in lower case.
struct ColumnName {
    const char* name;
    Column column;
};
constexpr ColumnName kNames[] = {
    {"artnr", kNumber},
    {"artikelnr", kNumber},
    {"artikelnummer", kNumber},
    {"nr", kNumber},
    {"nummer", kNumber},
    {"artno", kNumber},
    {"article", kNumber},
    {"articlenumber", kNumber},
    {"articleno", kNumber},
    {"number", kNumber},
    {"bezeichnung", kDescription},
    {"artikelbezeichnung", kDescription},
    {"beschreibung", kDescription},
    {"artikeltext", kDescription},
    {"text", kDescription},
    {"artikel", kDescription},
    {"name", kDescription},
    {"description", kDescription},
    {"preis", kPrice},
    {"preisats", kPrice},
    {"einzelpreis", kPrice},
    {"verkaufspreis", kPrice},
    {"vkpreis", kPrice},
    {"ats", kPrice},
    {"price", kPrice},
    {"priceats", kPrice},
    {"gruppe", kGroup},
    {"artikelgruppe", kGroup},
    {"warengruppe", kGroup},
    {"group", kGroup},
};

using Places = std::array<std::size_t, kColumns>;

std::string PlainName(std::string_view name) {
    std::string plain;
    for (const char c : name) {
        if (c >= 'A' && c <= 'Z') plain += static_cast<char>(c - 'A' + 'a');
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) plain += c;
    }
    return plain;
}

// Where the columns stand when `row` is one of names: at least number and price are among them.
bool ReadNames(const std::vector<std::string>& row, Places& places) {
    Places found;
    found.fill(kNowhere);
    for (std::size_t i = 0; i < row.size(); ++i) {
        const std::string name = PlainName(row[i]);
        for (const ColumnName& known : kNames) {
            // of two columns with one meaning the first counts
            if (name == known.name && found[known.column] == kNowhere) found[known.column] = i;
        }
    }
    if (found[kNumber] == kNowhere || found[kPrice] == kNowhere) return false;
    places = found;
    return true;
}

const char* NameOf(char separator) {
    switch (separator) {
        case '\t':
            return "tabs";
        case ';':
            return "semicolons";
        case ',':
            return "commas";
        default:
            return "the separator";
    }
}

std::string Quoted(std::string_view text) {
    return std::string("\"").append(text).append("\"");
}

template <std::size_t N>
void Fill(std::array<char, N>& field, std::string_view bytes) {
    field.fill(' ');
    std::copy_n(bytes.begin(), std::min(N, bytes.size()), field.begin());
}

// Takes one row after the other.
class Importer {
  public:
    Importer(const ImportOptions& options, Import& import) : options_(options), import_(import) {}

    void Run(std::string_view text);

  private:
    struct Taken {
        ArtikelRecord record;
        std::uint32_t line;
    };

    void TakeRow(const std::vector<std::string>& row);
    bool TakeNumber(const std::string& text);
    bool TakeDescription(const std::string& text);
    bool TakePrice(const std::string& text);
    // A problem of the current row; whether the row can be taken all the same.
    bool Find(const std::string& text, bool can_be_mended = false) {
        import_.findings.push_back(
            {line_, article_.empty() ? text : "article " + Quoted(article_) + ": " + text});
        return can_be_mended && options_.lenient;
    }
    void SortAndFindDoubles();

    const ImportOptions& options_;
    Import& import_;
    Places places_{kNumber, kDescription, kPrice, kNowhere};
    std::size_t most_fields_ = kNowhere;
    std::size_t line_ = 0;
    std::string article_;  // the current row's number, for findings
    std::string bytes_;
    ArtikelRecord record_;
    std::vector<Taken> taken_;
};

bool Importer::TakeNumber(const std::string& text) {
    const bool held = Utf8ToWindows1252(text, bytes_);
    if (bytes_.empty()) return Find("no number");
    if (!held) return Find("the number has a character that the article master lacks");
    if (bytes_.size() > record_.Nr.size()) return Find("the number is longer than 10 characters");
    if (std::any_of(bytes_.begin(), bytes_.end(),
                    [](char c) { return static_cast<unsigned char>(c) < 0x20; })) {
        return Find("the number has a control character");
    }
    Fill(record_.Nr, bytes_);
    return true;
}

bool Importer::TakeDescription(const std::string& text) {
    bool good = true;
    if (!Utf8ToWindows1252(text, bytes_)) {
        good = Find(
            "the description " + Quoted(text) + " has a character that the article master lacks",
            true);
    }
    const auto control = [](char c) { return static_cast<unsigned char>(c) < 0x20; };
    if (std::any_of(bytes_.begin(), bytes_.end(), control)) {
        const bool breaks = bytes_.find_first_of("\r\n") != std::string::npos;
        good = Find(breaks ? "the description has a line break"
                           : "the description has a control character",
                    true) &&
               good;
        std::replace_if(bytes_.begin(), bytes_.end(), control, ' ');
    }
    if (bytes_.size() > record_.Bezeichnung.size()) {
        good = Find("the description " + Quoted(text) + " is longer than 30 characters (" +
                        std::to_string(bytes_.size()) + ")",
                    true) &&
               good;
    }
    Fill(record_.Bezeichnung, bytes_);
    return good;
}

bool Importer::TakePrice(const std::string& text) {
    if (text.empty()) return Find("no price");
    Utf8ToWindows1252(text, bytes_);
    const auto amount = ReadPrice(bytes_, options_.list_sign);
    if (!amount) {
        const bool comma = options_.list_sign == DecimalSign::kComma;
        const auto other = ReadPrice(bytes_, comma ? DecimalSign::kPoint : DecimalSign::kComma);
        return Find("the price " + Quoted(text) + " is no number" +
                    (other ? comma ? " with a decimal comma" : " with a decimal point" : ""));
    }
    const std::string written = WritePrice(*amount, options_.master_sign);
    if (written.size() > record_.Preis.size()) {
        return Find("the price " + Quoted(text) + " is longer than 12 characters");
    }
    Fill(record_.Preis, written);
    return true;
}

void Importer::TakeRow(const std::vector<std::string>& row) {
    ++import_.rows;
    article_.clear();
    static const std::string kNothing;
    const auto field = [&](Column column) -> const std::string& {
        return places_[column] < row.size() ? row[places_[column]] : kNothing;
    };
    const std::size_t last = std::max(places_[kNumber], places_[kPrice]);
    bool good = false;
    if (last >= row.size()) {
        Find(std::string("number, description and price, separated by ") +
             NameOf(import_.separator) + ", are needed");
    } else if (row.size() > most_fields_ &&
               std::any_of(row.begin() + static_cast<std::ptrdiff_t>(most_fields_), row.end(),
                           [](const std::string& f) { return !f.empty(); })) {
        Find("more fields than there are columns: " + std::to_string(row.size()) + " instead of " +
             std::to_string(most_fields_) +
             (import_.separator == ',' ? " (a comma within a field needs quotation marks)" : ""));
    } else {
        article_ = field(kNumber);
        // all are looked at, so that one run tells everything
        good = TakeNumber(article_);
        good = TakeDescription(field(kDescription)) && good;
        good = TakePrice(field(kPrice)) && good;
    }
    if (!good) {
        ++import_.left_out;
        return;
    }
    taken_.push_back({record_, static_cast<std::uint32_t>(line_)});
}

void Importer::SortAndFindDoubles() {
    const auto before = [](const Taken& a, const Taken& b) {
        return CompareNumberBytes(a.record.TrimmedNr(), b.record.TrimmedNr()) < 0;
    };
    if (options_.progress) options_.progress("sorting", 0);
    if (!std::is_sorted(taken_.begin(), taken_.end(), before)) {
        std::stable_sort(taken_.begin(), taken_.end(), before);
    }
    import_.records.reserve(taken_.size());
    const Taken* first = nullptr;  // of equal numbers
    for (const Taken& taken : taken_) {
        if (first != nullptr && !before(*first, taken)) {
            line_ = taken.line;
            article_ = ToUtf8(FromWindows1252(taken.record.TrimmedNr()));
            Find("the number stands in line " + std::to_string(first->line) + " already");
            ++import_.left_out;
            continue;
        }
        first = &taken;
        import_.records.push_back(taken.record);
    }
    std::stable_sort(
        import_.findings.begin(), import_.findings.end(),
        [](const ImportFinding& a, const ImportFinding& b) { return a.line < b.line; });
    if (options_.progress) options_.progress("sorting", 1);
}

void Importer::Run(std::string_view text) {
    if (options_.separator != 0) {
        import_.separator = options_.separator;
    } else {
        import_.separator = GuessSeparator(text);
    }
    DelimitedReader reader(text, import_.separator);
    std::vector<std::string> row;
    bool first = true;
    const bool columns_given = options_.columns[0] != 0;
    if (columns_given) {
        for (const Column column : {kNumber, kDescription, kPrice}) {
            places_[column] = options_.columns[column] - 1;
        }
    }
    for (std::size_t rows = 0; reader.Next(row); ++rows) {
        line_ = reader.line();
        if (std::exchange(first, false)) {
            Places named;
            if (ReadNames(row, named)) {
                import_.has_names = true;
                if (!columns_given) places_ = named;
                // spreadsheets write empty columns behind the last one
                while (!row.empty() && row.back().empty()) row.pop_back();
                most_fields_ = row.size();
                if (places_[kDescription] == kNowhere) {
                    article_.clear();
                    Find("no column is named \"Bezeichnung\"");
                }
                continue;
            }
            // a comma may be a decimal one: "4711,Hammer,12,50" must not become 12
            if (import_.separator == ',' && !columns_given) most_fields_ = 3;
        }
        TakeRow(row);
        if (options_.progress && rows % kRowsBetweenProgress == 0) {
            options_.progress("reading", static_cast<double>(reader.position()) /
                                             static_cast<double>(text.size()));
        }
    }
    if (options_.progress) options_.progress("reading", 1);
    SortAndFindDoubles();
}

}  // namespace

Import ImportArticles(std::string bytes, const ImportOptions& options) {
    Import import;
    const DecodedText text = DecodeText(std::move(bytes));
    import.encoding = text.encoding;
    Importer(options, import).Run(text.utf8);
    return import;
}

std::string MasterBytes(const std::vector<ArtikelRecord>& records) {
    static_assert(alignof(ArtikelRecord) == 1);
    return {reinterpret_cast<const char*>(records.data()), records.size() * ArtikelRecord::kSize};
}

}  // namespace demovex::tools
