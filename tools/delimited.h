// Delimited text (CSV, tab-separated) as rows of fields, read once from front to back.
//
//   DelimitedReader reader(text, ';');
//   while (reader.Next(fields)) ... reader.line() ...
//
// A field that begins with a quotation mark and ends with one before a separator or the line's end
// is a quoted one: separators and line breaks within belong to it, a doubled mark stands for one.
// Any other quotation mark is a character like others ("Bohrer 1/2""). Rows end with a line feed, a
// carriage return or both; rows of nothing but separators and blanks are passed over.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace demovex::tools {

class DelimitedReader {
  public:
    // `text` outlives the reader.
    DelimitedReader(std::string_view text, char separator) noexcept
        : text_(text), separator_(separator) {}

    // Puts the next row's fields, without blanks around them, in place of `fields`; false at the
    // end.
    bool Next(std::vector<std::string>& fields);

    // The line on which the row of the last Next began, from 1.
    std::size_t line() const noexcept { return row_line_; }
    // Where reading goes on, in bytes.
    std::size_t position() const noexcept { return at_; }

  private:
    bool QuotedField(std::string& field);
    void PlainField(std::string& field);
    void EndRow();

    std::string_view text_;
    char separator_;
    std::size_t at_ = 0;
    std::size_t line_ = 1;
    std::size_t row_line_ = 0;
};

// Which of tab, semicolon and comma separates the fields of `text`, as its first row shows; a line
// "sep=;" at its beginning, which spreadsheets write, says so itself and is skipped: `text` is left
// as what follows it.
char GuessSeparator(std::string_view& text, bool* told = nullptr);

}  // namespace demovex::tools
