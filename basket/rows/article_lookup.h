// Looks an article up by its number: what the order lines need of the article master.
#pragma once

#include <string>

namespace demovex {

class IArticleLookup {
  public:
    virtual ~IArticleLookup() = default;

    // On success writes the trimmed description and price (schillings, as text) and answers true;
    // otherwise answers false and leaves both untouched. Raises 57 when the article master's file
    // cannot be read any more, 91 when none is open.
    virtual bool LookUpArtikelNr(const std::wstring& Nr, std::wstring& Bezeichnung,
                                 std::wstring& Preis) = 0;

    // Between these two many look-ups follow one another; they are answered from one state of the
    // article master.
    virtual void BeginSeries() noexcept {}
    virtual void EndSeries() noexcept {}
};

}  // namespace demovex
