// The article master as the basket uses it: none until a file is open.
#pragma once

#include <memory>
#include <string>

#include "basket/basket_rooms.h"
#include "catalog/artikel_stamm.h"
#include "platform/files.h"
#include "platform/text.h"

namespace demovex {

class ArticleMaster final : public IArticleLookup {
  public:
    // Both outlive the article master.
    ArticleMaster(IFileSystem& files, const ITextService& text);

    // Opens the file, which stays open until Close. Raises what ArtikelStamm raises, with no file
    // open then.
    void Open(const std::wstring& path);
    void Close() noexcept;
    bool IsOpen() const noexcept;

    bool LookUpArtikelNr(const std::wstring& Nr, std::wstring& Bezeichnung,
                         std::wstring& Preis) override;

  private:
    IFileSystem& files_;
    const ITextService& text_;
    std::unique_ptr<ArtikelStamm> stamm_;
};

}  // namespace demovex
