#include "basket/article_master.h"

#include <utility>

#include "base/error.h"

namespace demovex {

ArticleMaster::ArticleMaster(IFileSystem& files, const ITextService& text)
    : files_(files), text_(text) {}

void ArticleMaster::Open(const std::wstring& path) {
    Close();
    auto stamm = std::make_unique<ArtikelStamm>(files_, text_);
    stamm->OpenFile(path);
    stamm_ = std::move(stamm);
}

void ArticleMaster::Close() noexcept {
    stamm_.reset();
}

bool ArticleMaster::IsOpen() const noexcept {
    return stamm_ != nullptr;
}

bool ArticleMaster::LookUpArtikelNr(const std::wstring& Nr, std::wstring& Bezeichnung,
                                    std::wstring& Preis) {
    if (stamm_ == nullptr) RaiseRuntimeError(runtime_error::kObjectNotSet);
    return stamm_->LookUpArtikelNr(Nr, &Bezeichnung, &Preis);
}

}  // namespace demovex
