// An article master in memory: number, description and price.
#pragma once

#include <map>
#include <string>
#include <utility>

#include "basket/rows/article_lookup.h"

namespace demovex {

class FakeArticles final : public IArticleLookup {
  public:
    std::map<std::wstring, std::pair<std::wstring, std::wstring>> articles;
    bool LookUpArtikelNr(const std::wstring& Nr, std::wstring& Bezeichnung,
                         std::wstring& Preis) override {
        const auto found = articles.find(Nr);
        if (found == articles.end()) return false;
        Bezeichnung = found->second.first;
        Preis = found->second.second;
        return true;
    }
};

}  // namespace demovex
