// ArtikelRecord: one line of the article master file, byte for byte as it lies there.
//
// A record is 54 bytes of single-byte characters in the system's ANSI code page: number,
// description and price, each padded with blanks, and a line break. The file is a plain text file
// whose lines are 52 characters long, in ascending order of the number.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace demovex {

// The characters of a field without leading and trailing blanks (0x20 only).
std::string_view TrimmedField(std::string_view field) noexcept;

struct ArtikelRecord {
    // Every field blank.
    ArtikelRecord() noexcept;

    std::array<char, 10> Nr;
    std::array<char, 30> Bezeichnung;
    std::array<char, 12> Preis;   // as text; never interpreted here
    std::array<char, 2> LineEnd;  // never interpreted

    // Length of a record in the file, and of its part that is ever looked at.
    static constexpr std::size_t kSize = 54;
    static constexpr std::size_t kTextSize = 52;

    // Takes the fields from the first kTextSize bytes of a line. `line` is at least that long.
    void Assign(std::string_view line) noexcept;

    // The fields without leading and trailing blanks; views of this record.
    std::string_view TrimmedNr() const noexcept;
    std::string_view TrimmedBezeichnung() const noexcept;
    std::string_view TrimmedPreis() const noexcept;
};

static_assert(sizeof(ArtikelRecord) == ArtikelRecord::kSize);

}  // namespace demovex
