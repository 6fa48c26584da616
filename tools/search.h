// Looking for articles by words, as people spell them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "catalog/artikel_record.h"

namespace demovex::tools {

class ArticleSearch {
  public:
    // Words in UTF-8; what a word holds between blanks counts as words of their own.
    explicit ArticleSearch(const std::vector<std::string>& words);

    // Whether every word occurs in number or description, in any order, upper and lower case and
    // the spellings of an umlaut alike ("muller" and "mueller" find "Müller").
    bool Finds(const ArtikelRecord& record) const;

  private:
    // Both spellings of an umlaut: as its letter, and as two.
    struct Word {
        std::string plain, wide;
    };
    std::vector<Word> words_;
};

}  // namespace demovex::tools
