// ArtikelStamm: the article master. It turns an article number into description and price.
//
//   ArtikelStamm master(files, text);
//   master.OpenFile(folder + L"\\artikel.db");
//   if (master.LookUpArtikelNr(L"4711", &bezeichnung, &preis)) ...
//
// No article text is kept in memory: the file stays open, shared with readers and writers, and each
// lookup reads the records it needs (ArtikelRecord tells their form). The file is its own index: it
// must stand in ascending order of the trimmed numbers under the user's collation, letter case
// ignored; nothing checks that. Of equal numbers any one may be found. A price changed in place in
// the file is seen by the next lookup. What a lookup answers stands in one record, read in one
// piece: where another program rewrites the file meanwhile, the record that was found is looked at
// again, and 57 raised when it has become another article's.
//
// Costs: opening reads no record; a lookup reads at most log2 n + 2.
//
// Errors: OpenFile as said there. Afterwards an error of reading (57) goes out as it is; 91 when no
// file is open.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/key_value.h"
#include "catalog/artikel_record.h"
#include "containers/ims_container.h"
#include "containers/ms_index.h"
#include "platform/files.h"
#include "platform/text.h"

namespace demovex {

class ArtikelStamm final : public IMSContainer {
  public:
    // Both outlive the article master.
    ArtikelStamm(IFileSystem& files, const ITextService& text) noexcept;
    ~ArtikelStamm() override;
    ArtikelStamm(const ArtikelStamm&) = delete;
    ArtikelStamm& operator=(const ArtikelStamm&) = delete;

    // Opens the file, once per object. Every failure raises -1 from "Artikelstamm::OpenFile" with
    // the path and the cause in the description, and leaves no file open. A second call replaces
    // the file that lookups see; the first stays open as long as the object.
    void OpenFile(const std::wstring& Path);

    // Reads a file that is open already.
    // Raises 6 for more records than 32 bits count.
    void Use(std::unique_ptr<IRandomReader> file);

    // The open file's stamp now; nothing when no file is open or the system cannot tell.
    std::optional<FileStamp> Stamp() const noexcept;

    // Whether the open file looks like one that somebody has finished writing: whole records, at
    // least one, and text in the first and the last. Reads those two.
    bool LooksWhole();

    // Looks `Nr` up, blanks around it ignored. True: the trimmed description and price have been
    // stored where asked for. False: nothing was touched. The empty number (not one of blanks) is
    // the first record of the file, unsearched; on an empty file that is a blank one.
    bool LookUpArtikelNr(std::wstring_view Nr, std::wstring* Bezeichnung = nullptr,
                         std::wstring* Preis = nullptr);

    // Number of records of the open file.
    std::int32_t RecordCount() const noexcept { return record_count_; }

    // --- IMSContainer: the records as items, their numbers in the file as ids from 1 on. The
    // comparisons and Count raise 5 for a tag below 0 or above 255.
    std::int32_t Count(std::int32_t Tag) override;
    std::int32_t EnumItems(std::int32_t Tag) override;
    std::int32_t CompareItems(std::int32_t id1, std::int32_t id2, std::int32_t Tag) override;
    std::int32_t Hashvalue(std::int32_t id, std::int32_t Tag) override;
    std::int32_t HashKeyvalue(const KeyValue& Key, std::int32_t Tag) override;
    std::int32_t CompareItem(const KeyValue& Key, std::int32_t id, std::int32_t Tag) override;

  private:
    void OpenAndIndex(const std::wstring& path);
    // How `key` sorts against a trimmed number of the file.
    std::int32_t OrderAgainst(std::wstring_view key, std::string_view nr);
    // Reads record `id` into `record`; a number beyond the end gives blank fields, one below 1
    // raises 5.
    void ReadRecord(std::int32_t id, ArtikelRecord& record);
    // The trimmed number of record `id`, for comparisons, which need nothing else; valid until the
    // next read. The same rules for `id`.
    std::string_view ReadNr(std::int32_t id);
    // Where record `id` begins, or nothing when it lies beyond the end.
    std::optional<std::uint64_t> Locate(std::int32_t id) const;

    IFileSystem& files_;
    const ITextService& text_;
    std::unique_ptr<IRandomReader> file_;
    std::vector<std::unique_ptr<IRandomReader>> earlier_files_;
    std::int32_t record_count_ = 0;
    std::unique_ptr<MSIndex> index_;
    std::int32_t cursor_ = 0;
    ArtikelRecord record_;  // the one that a lookup has found
    std::wstring bezeichnung_, preis_;
    std::wstring nr_;  // of the record that is compared with
};

}  // namespace demovex
