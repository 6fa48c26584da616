#include <algorithm>
#include <string>

#include "params/parameter_parser.h"
#include "tests/fuzz/check.h"
#include "tests/fuzz/targets.h"
#include "tests/support/naive_parameter_table.h"

namespace demovex::fuzz {
namespace {

class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : data_(data), left_(size) {}

    bool Empty() const { return left_ == 0; }
    std::uint8_t Byte() {
        if (left_ == 0) return 0;
        --left_;
        return *data_++;
    }
    std::wstring Text(std::size_t length) {
        std::wstring text;
        for (length = std::min(length, left_); length > 0; --length) {
            const std::uint8_t byte = Byte();
            // a few characters beyond the code page, too
            text += byte >= 0xF0 ? static_cast<wchar_t>(0x2000 + byte) : static_cast<wchar_t>(byte);
        }
        return text;
    }
    std::wstring Rest() { return Text(left_); }

  private:
    const std::uint8_t* data_;
    std::size_t left_;
};

void CheckSame(const ParameterParser& parser, const NaiveParameterTable& table) {
    FUZZ_CHECK(parser.Rows() == table.rows);
    FUZZ_CHECK(parser.RowCapacity() == table.row_capacity);
    FUZZ_CHECK(parser.ColumnCapacity() == table.column_capacity);
    for (std::int32_t row = 0; row <= table.rows + 1; ++row) {
        FUZZ_CHECK(parser.Cols(row) == table.Cols(row));
        for (std::int32_t col = 0; col <= table.Cols(row) + 1; ++col) {
            FUZZ_CHECK(parser.Value(col, row) == table.Get(col, row));
        }
    }
    FUZZ_CHECK(parser.ParameterString() == table.Compose());
}

}  // namespace

void ParameterText(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    ParameterParser parser;
    const std::uint8_t mode = input.Byte() % 4;
    if (mode == 1) {
        parser.SetColumnDelimiter(L"\t");
        parser.SetRowDelimiter(L"\r\n");
    } else if (mode > 1) {
        const std::size_t column_length = input.Byte() % 12;
        const std::size_t row_length = input.Byte() % 12;
        parser.SetColumnDelimiter(input.Text(column_length));
        parser.SetRowDelimiter(input.Text(row_length));
    }
    const std::wstring text = input.Rest();
    NaiveParameterTable table;
    table.column_delimiter = parser.ColumnDelimiter();
    table.row_delimiter = parser.RowDelimiter();
    parser.SetParameterString(text);
    table.Parse(text);
    CheckSame(parser, table);
    if (mode > 1) return;  // delimiters that overlap need not come back

    // Trailing rows of empty fields only are composed as empty rows, which parsing drops; after
    // that nothing changes any more.
    const std::wstring once = parser.ParameterString();
    parser.SetParameterString(once);
    const std::wstring twice = parser.ParameterString();
    FUZZ_CHECK(once.compare(0, twice.size(), twice) == 0);
    const std::wstring& row = parser.RowDelimiter();
    FUZZ_CHECK((once.size() - twice.size()) % row.size() == 0);
    for (std::size_t at = twice.size(); at < once.size(); at += row.size()) {
        FUZZ_CHECK(once.compare(at, row.size(), row) == 0);
    }
    parser.SetParameterString(twice);
    FUZZ_CHECK(parser.ParameterString() == twice);
}

void ParameterCells(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    ParameterParser parser;
    NaiveParameterTable table;
    for (int step = 0; !input.Empty() && step < 600; ++step) {
        const std::uint8_t what = input.Byte();
        const std::int32_t col = input.Byte() % 40 + 1;
        const std::int32_t row = input.Byte() % 50 + 1;
        if (what < 40) {
            const std::wstring text = input.Text(what % 7);
            FUZZ_CHECK(parser.Find(col, text) == table.Find(col, text));
        } else if (what < 60) {
            // a field copied from another one, or from a part of itself
            const std::int32_t from_col = input.Byte() % 40 + 1;
            const std::wstring text = table.Get(from_col, row);
            const std::size_t skipped = text.empty() ? 0 : input.Byte() % text.size();
            parser.SetValue(col, row, parser.Value(from_col, row).substr(skipped));
            table.Set(col, row, text.substr(skipped));
        } else if (what == 60) {
            const std::wstring text = input.Text(col);
            parser.SetParameterString(text);
            table.Parse(text);
        } else if (what < 80) {
            parser.SetValue(col, row, L"");
            table.Set(col, row, L"");
        } else {
            // some texts long enough to make the arena collect its garbage
            const std::size_t length = what > 240 ? 900 : what % 16;
            const std::wstring text =
                length == 900 ? std::wstring(900, static_cast<wchar_t>(L'a' + step % 26))
                              : input.Text(length);
            parser.SetValue(col, row, text);
            table.Set(col, row, text);
        }
    }
    CheckSame(parser, table);
}

}  // namespace demovex::fuzz
