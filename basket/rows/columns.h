// Where things stand in the basket's grid: its columns, and its last rows.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "grid/flex_grid.h"

namespace demovex {

namespace column {
inline constexpr std::int32_t kNumber = 0;  // running line number, fixed
inline constexpr std::int32_t kArtNr = 1;
inline constexpr std::int32_t kBezeichnung = 2;
inline constexpr std::int32_t kMenge = 3;
inline constexpr std::int32_t kPreisAts = 4;
inline constexpr std::int32_t kPreisEuro = 5;
inline constexpr std::int32_t kKatalog = 6;     // hidden
inline constexpr std::int32_t kKatalogUrl = 7;  // hidden
inline constexpr std::int32_t kGesamtAts = 8;
inline constexpr std::int32_t kGesamtEuro = 9;
inline constexpr std::int32_t kCount = 10;
}  // namespace column

// The last order line, 0 when there is none, and the row below it.
[[nodiscard]] inline std::int32_t LastRow(const FlexGrid& grid) noexcept {
    return grid.Rows() - 2;
}
[[nodiscard]] inline std::int32_t TotalsRow(const FlexGrid& grid) noexcept {
    return grid.Rows() - 1;
}

struct ColumnRow {
    std::wstring_view caption;
    Twips width;  // 0 hides
};

inline constexpr std::array<ColumnRow, column::kCount> kColumns = {{
    {L"", 400},
    {L"ArtNr", 1000},
    {L"Bezeichnung", 2470},
    {L"Menge", 800},
    {L"Preis ATS", 1085},
    {L"Preis EURO", 1085},
    {L"Katalog", 0},
    {L"KatalogURL", 0},
    {L"Gesamt ATS", 1135},
    {L"Ges. EURO", 1135},
}};

// A cell that comes nearer than this to the grid's right or lower edge runs under its border or
// scroll bar and is not edited.
inline constexpr Twips kEdgeMargin = 90;

// Longest description that can be typed, in characters.
inline constexpr std::int32_t kMaxBezeichnung = 25;

}  // namespace demovex
