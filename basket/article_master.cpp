#include "basket/article_master.h"

#include "base/error.h"

namespace demovex {
namespace {

constexpr std::uint64_t kRecord = 54;

}  // namespace

ArticleMaster::ArticleMaster(IFileSystem& files, const ITextService& text)
    : files_(files), text_(text) {}

ArticleMaster::~ArticleMaster() = default;

void ArticleMaster::Open(const std::wstring& path) {
    Close();
    try {
        if (!files_.Exists(path)) RaiseOwnError(L"", L"Datei nicht gefunden");
        file_ = files_.OpenShared(path);
    } catch (const Error& error) {
        RaiseOwnError(
            L"Artikelstamm::OpenFile",
            L"Artikelstamm (" + path + L") kann nicht geladen werden: " + error.description());
    }
}

void ArticleMaster::Close() noexcept {
    file_.reset();
}

bool ArticleMaster::IsOpen() const noexcept {
    return file_ != nullptr;
}

bool ArticleMaster::LookUpArtikelNr(const std::wstring& Nr, std::wstring& Bezeichnung,
                                    std::wstring& Preis) {
    if (!file_) RaiseRuntimeError(runtime_error::kObjectNotSet);
    const std::wstring key(TrimBlanks(Nr));
    std::uint64_t low = 0;
    std::uint64_t high = (file_->Size() + 1) / kRecord;
    const auto field = [&](std::uint64_t record, std::size_t at, std::size_t width) {
        return std::wstring(TrimBlanks(text_.FromAnsi(file_->Read(record * kRecord + at, width))));
    };
    while (low < high) {
        const std::uint64_t middle = low + (high - low) / 2;
        const int order = text_.CompareText(key, field(middle, 0, 10));
        if (order == 0) {
            Bezeichnung = field(middle, 10, 30);
            Preis = field(middle, 40, 12);
            return true;
        }
        if (order < 0) {
            high = middle;
        } else {
            low = middle + 1;
        }
    }
    return false;
}

}  // namespace demovex
