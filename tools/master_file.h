// Article master files for the tool: making one from articles, reading articles from tab-separated
// text, and checking a file's form and order.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/article.h"

namespace demovex::tools {

// Windows-1252 bytes of a text; throws std::runtime_error for a character that it cannot hold.
std::string ToWindows1252(std::wstring_view text);
std::wstring FromWindows1252(std::string_view bytes);
// Throws std::runtime_error for bytes that are no UTF-8.
std::wstring FromUtf8(std::string_view bytes);
std::string ToUtf8(std::wstring_view text);

// The file's bytes, articles in the order given. Throws std::runtime_error for a field too long.
std::string MakeMaster(const std::vector<Article>& articles);

// Articles from lines of number, description and price, separated by tabs (a fourth field, the
// group, may follow; empty lines are passed over). Throws std::runtime_error with the line's number
// for a line with less than three fields or without a number.
std::vector<Article> FromTabSeparated(std::wstring_view text);
std::wstring ToTabSeparated(const std::vector<Article>& articles);

// What is wrong with a file: one line each, empty when nothing is. At most `limit` lines, the last
// one saying that there are more.
std::vector<std::string> CheckMaster(std::string_view bytes, std::size_t limit = 20);

// Negative, zero or positive as number `a` sorts before, equal to or after `b`, letter case
// ignored. The Windows program asks the system; elsewhere digits come before letters and both in
// their usual order, which is right for numbers made of digits and plain letters.
int CompareNumbers(std::wstring_view a, std::wstring_view b);
// Whether CompareNumbers is right for this number on this system.
bool OrderIsKnown(std::wstring_view number);

// Sorts by number; articles with equal numbers keep their order.
void SortByNumber(std::vector<Article>& articles);

}  // namespace demovex::tools
