// The articles of the sample article master: made up, plausible, always the same.
#pragma once

#include <vector>

#include "tools/article.h"

namespace demovex::tools {

// At least 2,000 articles in ascending order of their numbers; 4711 and 4712 are among them. The
// numbers are four digits, some followed by one letter, so that they sort alike in every locale.
// Prices are whole schillings: such a text reads as the same number in every locale.
std::vector<Article> SampleArticles();

}  // namespace demovex::tools
