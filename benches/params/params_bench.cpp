// Parsing and composing 10 MB of basket lines against a splitter written by hand: one pass over the
// text, each field a string in a vector of vectors.
#include <string>
#include <vector>

#include "benches/bench.h"
#include "params/parameter_parser.h"

using namespace demovex;

namespace {

std::wstring BasketText(std::size_t characters) {
    std::wstring text = L"DemoVexClient.Client\r\n";
    text.reserve(characters + 200);
    for (int i = 0; text.size() < characters; ++i) {
        text += std::to_wstring(1000 + i % 9000) + L"\tSchlosserhammer 300 g Esche\t" +
                std::to_wstring(i % 20 + 1) +
                L"\t159,00\t11,55\tWerkzeug\thttp://catalog.example/" + std::to_wstring(i % 500) +
                L"\t318,00\t23,10\r\n";
    }
    return text;
}

using Table = std::vector<std::vector<std::wstring>>;

Table Split(const std::wstring& text) {
    Table table;
    std::vector<std::wstring> row;
    std::size_t begin = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == L'\t') {
            row.emplace_back(text, begin, i - begin);
            begin = i + 1;
        } else if (text[i] == L'\r' && i + 1 < text.size() && text[i + 1] == L'\n') {
            row.emplace_back(text, begin, i - begin);
            begin = i + 2;
            ++i;
            table.push_back(std::move(row));
            row.clear();
        }
    }
    if (begin < text.size()) row.emplace_back(text, begin);
    if (!row.empty()) table.push_back(std::move(row));
    return table;
}

std::wstring Join(const Table& table) {
    std::wstring text;
    for (const auto& row : table) {
        bool first = true;
        for (const std::wstring& field : row) {
            if (!first) text += L'\t';
            text += field;
            first = false;
        }
        text += L"\r\n";
    }
    return text;
}

}  // namespace

int main() {
    const std::wstring text = BasketText(10 * 1024 * 1024);
    ParameterParser parser;
    parser.SetColumnDelimiter(L"\t");
    parser.SetRowDelimiter(L"\r\n");
    Table table;
    bench::Compare("parameter parser: parse 10 MB of lines",
                   {"ours", [&] { parser.SetParameterString(text); }},
                   {"hand-written splitter", [&] { table = Split(text); }},
                   {.runs = 7, .operations = 1, .bar = "at least 0.67"});
    bench::Compare("parameter parser: compose 10 MB of lines",
                   {"ours", [&] { bench::Keep(parser.ParameterString().size()); }},
                   {"hand-written join", [&] { bench::Keep(Join(table).size()); }}, {.bar = ""});
    bench::Compare("parameter parser: store 1,000,000 fields",
                   {"ours",
                    [&] {
                        ParameterParser fresh;
                        for (std::int32_t row = 1; row <= 100000; ++row) {
                            for (std::int32_t col = 1; col <= 10; ++col) {
                                fresh.SetValue(col, row, L"159,00");
                            }
                        }
                        bench::Keep(fresh.Rows());
                    }},
                   {"vectors of strings",
                    [&] {
                        Table fresh;
                        for (std::size_t row = 0; row < 100000; ++row) {
                            fresh.emplace_back();
                            for (std::size_t col = 0; col < 10; ++col) {
                                fresh[row].emplace_back(L"159,00");
                            }
                        }
                        bench::Keep(fresh.size());
                    }},
                   {.runs = 7, .operations = 1000000, .bar = ""});
}
