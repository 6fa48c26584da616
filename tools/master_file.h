// Article master files for the tool: making one from articles, checking a file's form and order,
// taking its records.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "catalog/artikel_record.h"
#include "tools/article.h"
#include "tools/price.h"

namespace demovex::tools {

// The file's bytes, articles in the order given. Throws std::runtime_error for a field too long.
std::string MakeMaster(const std::vector<Article>& articles);

// Number, description, price and group of each article, separated by tabs.
std::wstring ToTabSeparated(const std::vector<Article>& articles);

// Whether a file is meant as an article master, by its first line; an empty file is one.
bool LooksLikeMaster(std::string_view bytes) noexcept;

// The records as lookups count them: a last line that lacks one byte still counts.
std::vector<ArtikelRecord> MasterRecords(std::string_view bytes);

// What is wrong with a file: one line each, empty when nothing is. At most `limit` lines, the last
// one saying that there are more.
std::vector<std::string> CheckMaster(std::string_view bytes, std::size_t limit = 20,
                                     DecimalSign sign = DecimalSign::kComma);

// Sorts by number; articles with equal numbers keep their order.
void SortByNumber(std::vector<Article>& articles);

}  // namespace demovex::tools
