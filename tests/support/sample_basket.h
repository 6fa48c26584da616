// A basket of sample lines with right sums, for printing.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/round.h"
#include "basket/rows/columns.h"
#include "grid/flex_grid.h"

namespace demovex {

// "1.234,50" for 123450 hundredths.
inline std::wstring SampleAmount(std::int64_t hundredths) {
    std::wstring text = std::to_wstring(hundredths / 100);
    for (std::size_t at = text.size(); at > 3;) text.insert(at -= 3, L".");
    const std::wstring cents = std::to_wstring(100 + hundredths % 100);
    return text + L"," + cents.substr(1);
}

// Fills a grid of 2 rows and column::kCount columns. Kinds: plain, long (long descriptions),
// umlauts.
inline void FillBasket(FlexGrid& grid, std::int32_t lines, std::wstring_view kind) {
    for (std::int32_t c = 0; c < column::kCount; ++c) {
        grid.SetColWidth(c, kColumns[static_cast<std::size_t>(c)].width);
        grid.SetTextMatrix(0, c, kColumns[static_cast<std::size_t>(c)].caption);
    }
    if (lines > 0) grid.AddItem(1, lines);
    const wchar_t* const words[] = {L"Ringmappe A4", L"Kugelschreiber blau", L"Kopierpapier weiß",
                                    L"Heftklammern", L"Schreibblock",        L"Klebestift groß"};
    std::int64_t sum_ats = 0;
    std::int64_t sum_euro = 0;
    for (std::int32_t r = 1; r <= lines; ++r) {
        std::wstring description = words[r % 6];
        if (kind == L"long") {
            description = L"Beschreibung " + std::to_wstring(r) +
                          L" die für ihre Spalte bei weitem zu lang ist und weitergeht";
        } else if (kind == L"umlauts") {
            description = L"ÄÖÜäöüß € " + std::to_wstring(r);
        }
        const std::int64_t pieces = 1 + r % 12;
        const std::int64_t ats = 990 + r * 7919 % 180'000;
        const std::int64_t euro =
            RoundToInt32(RoundToHundredths(static_cast<double>(ats) / 100 / 13.7603) * 100);
        sum_ats += pieces * ats;
        sum_euro += pieces * euro;
        grid.SetTextMatrix(r, column::kNumber, std::to_wstring(r));
        grid.SetTextMatrix(r, column::kArtNr, std::to_wstring(4700 + r));
        grid.SetTextMatrix(r, column::kBezeichnung, description);
        grid.SetTextMatrix(r, column::kMenge, std::to_wstring(pieces));
        grid.SetTextMatrix(r, column::kPreisAts, SampleAmount(ats));
        grid.SetTextMatrix(r, column::kPreisEuro, SampleAmount(euro));
        grid.SetTextMatrix(r, column::kKatalog, L"Katalog");
        grid.SetTextMatrix(r, column::kKatalogUrl, L"http://www.vexmart.example/");
        grid.SetTextMatrix(r, column::kGesamtAts, SampleAmount(pieces * ats));
        grid.SetTextMatrix(r, column::kGesamtEuro, SampleAmount(pieces * euro));
    }
    const std::int32_t totals = grid.Rows() - 1;
    grid.SetTextMatrix(totals, column::kBezeichnung, L"Gesamt");
    if (lines > 0) {
        grid.SetTextMatrix(totals, column::kGesamtAts, SampleAmount(sum_ats));
        grid.SetTextMatrix(totals, column::kGesamtEuro, SampleAmount(sum_euro));
    }
}

}  // namespace demovex
