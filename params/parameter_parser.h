// ParameterParser: a table of strings, addressed by column and row from 1, parsed from delimited
// text and composed back into it.
//
//   ParameterParser parser;                 // "," between fields, ";" between rows
//   parser.SetParameterString(L"a,b;c");
//   parser.Value(2, 1);                     // "b"
//   parser.SetValue(1, 2, L"d");
//   parser.ParameterString();               // "a,b;d;"
//
// The delimiters are set before text is parsed or composed; setting them re-splits nothing. An
// empty delimiter never occurs in a text. There is no quoting.
//
// A row's column count is the index of its last non-empty field. The row count only grows, save
// when a text is parsed: then trailing rows without any field are dropped.
//
// Costs: parsing and composing are linear in the text, reading and storing a field constant, save
// that emptying a row's last field looks back for the last one that is not. All texts live in one
// arena and all fields in one array, so a large table is a handful of allocations.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace demovex {

class ParameterParser {
  public:
    ParameterParser();

    const std::wstring& ColumnDelimiter() const noexcept { return column_delimiter_; }
    void SetColumnDelimiter(std::wstring_view delimiter) { column_delimiter_ = delimiter; }
    const std::wstring& RowDelimiter() const noexcept { return row_delimiter_; }
    void SetRowDelimiter(std::wstring_view delimiter) { row_delimiter_ = delimiter; }

    // The table as text: every row, the last one too, is followed by the row delimiter.
    std::wstring ParameterString() const;
    // Replaces the table by the parsed text.
    void SetParameterString(std::wstring text);

    // A field; the empty text for any place that holds none, never an error. The view is valid
    // until the next change of the table.
    std::wstring_view Value(std::int32_t col, std::int32_t row) const noexcept;
    // Stores a field. Raises -1 from "ParameterParser::Value" for a column or row below 1 (the
    // column is checked first) and 6 for one so large that the capacity passes 32 bits.
    void SetValue(std::int32_t col, std::int32_t row, std::wstring_view text);

    std::int32_t Rows() const noexcept { return extent_.rows; }
    // Number of fields of a row; 0 for a row out of range.
    std::int32_t Cols(std::int32_t row = 1) const noexcept;

    // The first row whose field in column `col` equals `text` exactly, or 0. A column that a row
    // lacks counts as empty.
    std::int32_t Find(std::int32_t col, std::wstring_view text) const noexcept;

    // Both start at 10; a column beyond it gives column + 10, a row beyond it row + 20.
    std::int32_t ColumnCapacity() const noexcept { return extent_.column_capacity; }
    std::int32_t RowCapacity() const noexcept { return extent_.row_capacity; }

  private:
    // A text in the arena.
    struct Field {
        std::size_t offset = 0;
        std::size_t length = 0;
    };
    // `room` fields in fields_ from `first` on, of which the first `count` are in use and the rest
    // are empty.
    struct Row {
        std::size_t first = 0;
        std::int32_t room = 0;
        std::int32_t count = 0;
    };

    // Row count and capacities as they are reported.
    struct Extent {
        std::int32_t rows = 0;
        std::int32_t row_capacity = 0;
        std::int32_t column_capacity = 0;
    };

    void Reset() noexcept;
    // The extent after storing a field; set only when all that may fail has been done.
    Extent Reach(std::int32_t col, std::int32_t row) const;
    // Gives the row room for `col` fields.
    void Widen(Row& row, std::int32_t col);
    Field& FieldAt(const Row& row, std::int32_t col) {
        return fields_[row.first + static_cast<std::size_t>(col - 1)];
    }
    const Field& FieldAt(const Row& row, std::int32_t col) const {
        return fields_[row.first + static_cast<std::size_t>(col - 1)];
    }
    void StoreText(Field& field, std::wstring_view text);
    // Rewrites the arena without the texts that were overwritten. Every field that is not empty
    // must be counted by its row.
    void Compact() noexcept;

    std::wstring column_delimiter_ = L",";
    std::wstring row_delimiter_ = L";";
    std::vector<Row> rows_;      // as far as fields were stored; may be shorter than Rows
    std::vector<Field> fields_;  // the rows' fields; a row that outgrew its room moved to the end
    std::wstring text_;          // the arena
    std::size_t unused_ = 0;     // characters of the arena that no field refers to any more
    Extent extent_;
};

}  // namespace demovex
