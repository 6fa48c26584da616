// A list of articles as people have it (CSV, tab-separated text, any usual encoding), taken into
// the records of an article master.
//
//   const Import import = ImportArticles(bytes, options);
//   if (import.findings.empty()) ... MasterBytes(import.records) ...
//
// The first row may name the columns ("ArtNr", "Bezeichnung", "Preis", "Gruppe" and their usual
// variants, any letter case, in any order among others); without such a row they are number,
// description, price and perhaps the group, which the article master has no place for.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "catalog/artikel_record.h"
#include "tools/price.h"

namespace demovex::tools {

// Told what is being done and its share, 0 to 1.
using Progress = std::function<void(const char* work, double share)>;

struct ImportOptions {
    // Takes what can be taken of a line that cannot be taken as it is: a description too long is
    // cut, a character that the article master lacks becomes "?", a control character a blank.
    // Lines whose number or price would be another one, and further lines of one number, are left
    // out.
    bool lenient = false;
    char separator = 0;  // 0: as the first row shows
    // Where number, description and price stand, from 1; zeros: as the first row says.
    std::array<std::size_t, 3> columns{};
    // How the list writes decimals, and how the article master's readers do.
    DecimalSign list_sign = DecimalSign::kComma;
    DecimalSign master_sign = DecimalSign::kComma;
    Progress progress{};
};

struct ImportFinding {
    std::size_t line = 0;  // from 1
    std::string text;      // UTF-8
};

struct Import {
    std::vector<ArtikelRecord> records;   // in the order of their numbers
    std::vector<ImportFinding> findings;  // in the order of the lines
    std::size_t rows = 0;                 // with an article, the row of names not counted
    std::size_t left_out = 0;             // rows of which nothing was taken
    const char* encoding = "";
    char separator = 0;
    bool has_names = false;
};

Import ImportArticles(std::string bytes, const ImportOptions& options = {});

// The bytes of an article master.
std::string MasterBytes(const std::vector<ArtikelRecord>& records);

}  // namespace demovex::tools
