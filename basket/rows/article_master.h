// The article master as the basket uses it: none until a file is open.
//
// The file is open while it is looked at and closed in between, so that another program may at any
// time write a new article master into it or put one in its place by rename, however many baskets
// are open. The next look-up notices the other file and takes it once it looks whole. Until then,
// and while there is no file of that name at all, the old one serves where it still exists under
// another name (as with an updater that first renames the old one); else the look-up waits a moment
// for the update to be through, and raises what is wrong when it is not. No look-up answers from
// two files.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "basket/rows/article_lookup.h"
#include "catalog/artikel_stamm.h"
#include "platform/file_system_tools.h"
#include "platform/files.h"
#include "platform/text.h"

namespace demovex {

class ArticleMaster final : public IArticleLookup {
  public:
    // How often a look-up that meets an update under way tries, and how long it waits in between.
    static constexpr int kTries = 10;
    static constexpr std::chrono::milliseconds kPause{20};

    // All outlive the article master; `clock` times the waiting, null is the system's.
    ArticleMaster(IFileSystem& files, const ITextService& text, IRetryClock* clock = nullptr);

    // Takes the file from now on until Close. Raises what ArtikelStamm raises when it cannot be
    // opened, with none taken then.
    void Open(const std::wstring& path);
    void Close() noexcept;
    bool IsOpen() const noexcept;

    // Raises 91 when no file is taken, the error of opening or reading otherwise, and 70 when
    // another program is still rewriting the file.
    bool LookUpArtikelNr(const std::wstring& Nr, std::wstring& Bezeichnung,
                         std::wstring& Preis) override;

    // Between these two the file stays open: many look-ups in a row are answered from one file and
    // at the full speed of its reader.
    void BeginSeries() noexcept override { in_series_ = true; }
    void EndSeries() noexcept override;

  private:
    // Opens the file again after a rest.
    void Wake();
    // Nothing when the answer is in doubt: "not found" in a file that was written to meanwhile.
    std::optional<bool> TryLookUp(const std::wstring& nr, std::wstring& bezeichnung,
                                  std::wstring& preis);

    IFileSystem& files_;
    const ITextService& text_;
    IRetryClock& clock_;
    std::wstring path_;                    // empty when no file is taken
    std::unique_ptr<ArtikelStamm> stamm_;  // null while resting
    std::optional<FileStamp> stamp_;       // of the file when it was last opened
    bool in_series_ = false;
};

}  // namespace demovex
