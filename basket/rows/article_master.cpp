#include "basket/rows/article_master.h"

#include <exception>
#include <utility>

#include "base/error.h"
#include "base/scope_guard.h"

namespace demovex {

ArticleMaster::ArticleMaster(IFileSystem& files, const ITextService& text, IRetryClock* clock)
    : files_(files), text_(text), clock_(clock != nullptr ? *clock : SystemRetryClock()) {}

void ArticleMaster::Open(const std::wstring& path) {
    Close();
    ArtikelStamm stamm(files_, text_);
    stamm.OpenFile(path);
    path_ = path;
    stamp_ = stamm.Stamp();
}

void ArticleMaster::Close() noexcept {
    path_.clear();
    stamm_.reset();
    stamp_.reset();
}

bool ArticleMaster::IsOpen() const noexcept {
    return !path_.empty();
}

void ArticleMaster::EndSeries() noexcept {
    in_series_ = false;
    stamm_.reset();
}

void ArticleMaster::Wake() {
    if (stamm_ != nullptr) return;
    auto next = std::make_unique<ArtikelStamm>(files_, text_);
    std::exception_ptr failure;
    try {
        next->OpenFile(path_);
        std::optional<FileStamp> stamp = next->Stamp();
        // what the basket was set up with is not judged
        if ((stamp && stamp == stamp_) || next->LooksWhole()) {
            stamp_ = stamp;
            stamm_ = std::move(next);
            return;
        }
    } catch (const Error&) {
        failure = std::current_exception();
    }
    if (stamp_) {
        if (auto old = files_.OpenRenamed(path_, *stamp_)) {
            next = std::make_unique<ArtikelStamm>(files_, text_);
            next->Use(std::move(old));
            stamm_ = std::move(next);
            return;
        }
    }
    if (failure) std::rethrow_exception(failure);
    RaiseOwnError(L"Artikelstamm::OpenFile",
                  L"Artikelstamm (" + path_ + L") kann nicht geladen werden: Datei unvollständig");
}

std::optional<bool> ArticleMaster::TryLookUp(const std::wstring& nr, std::wstring& bezeichnung,
                                             std::wstring& preis) {
    Wake();
    if (stamm_->LookUpArtikelNr(nr, &bezeichnung, &preis)) return true;
    // a number that the file had before or has now may have slipped through the search
    if (stamm_->Stamp() != stamp_) return std::nullopt;
    return false;
}

bool ArticleMaster::LookUpArtikelNr(const std::wstring& Nr, std::wstring& Bezeichnung,
                                    std::wstring& Preis) {
    if (path_.empty()) RaiseRuntimeError(runtime_error::kObjectNotSet);
    const ScopeExit rest([this] {
        if (!in_series_) stamm_.reset();
    });
    for (int tries_left = kTries - 1;; --tries_left) {
        try {
            if (const auto found = TryLookUp(Nr, Bezeichnung, Preis)) return *found;
            if (tries_left == 0) RaiseRuntimeError(runtime_error::kPermissionDenied);
        } catch (const Error&) {
            if (tries_left == 0) throw;
        }
        stamm_.reset();  // opened afresh, it is the new file or the old one as it is now
        clock_.Wait(kPause);
    }
}

}  // namespace demovex
