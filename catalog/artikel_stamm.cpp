#include "catalog/artikel_stamm.h"

#include <algorithm>
#include <new>
#include <utility>

#include "base/checked.h"
#include "base/error.h"
#include "platform/plain_order.h"

namespace demovex {
namespace {

// The index's tag: the key is the article number.
constexpr std::int32_t kNumberTag = 1;

void CheckTag(std::int32_t tag) {
    if (tag < 0 || tag > 255) RaiseRuntimeError(runtime_error::kInvalidProcedureCall);
}

}  // namespace

ArtikelStamm::ArtikelStamm(IFileSystem& files, const ITextService& text) noexcept
    : files_(files), text_(text) {}

ArtikelStamm::~ArtikelStamm() = default;

void ArtikelStamm::OpenFile(const std::wstring& Path) {
    const auto cause = FailureOf([&] { OpenAndIndex(Path); });
    if (!cause) return;
    file_.reset();
    RaiseOwnError(L"Artikelstamm::OpenFile",
                  L"Artikelstamm (" + Path + L") kann nicht geladen werden: " + *cause);
}

void ArtikelStamm::OpenAndIndex(const std::wstring& path) {
    if (!files_.Exists(path)) RaiseOwnError(L"", L"Datei nicht gefunden");
    Use(files_.OpenShared(path));
}

void ArtikelStamm::Use(std::unique_ptr<IRandomReader> file) {
    if (file_ != nullptr) earlier_files_.push_back(std::move(file_));
    file_ = std::move(file);
    // A last line that lacks one byte of its line break still counts, one that lacks both does not.
    record_count_ =
        CheckedNarrow(static_cast<std::int64_t>((file_->Size() + 1) / ArtikelRecord::kSize));

    auto index = std::make_unique<MSIndex>();
    // Shares no count: this object owns the index, so a counted reference would keep it alive.
    index->SetMSContainer(std::shared_ptr<IMSContainer>(std::shared_ptr<IMSContainer>(), this));
    index->SetTag(kNumberTag);
    index->Create();
    index_ = std::move(index);
}

bool ArtikelStamm::LookUpArtikelNr(std::wstring_view Nr, std::wstring* Bezeichnung,
                                   std::wstring* Preis) {
    std::int32_t id = 1;
    const std::wstring_view key = TrimBlanks(Nr);
    if (!Nr.empty()) {
        if (index_ == nullptr) RaiseRuntimeError(runtime_error::kObjectNotSet);
        id = index_->Find(KeyValue(std::wstring(key)));
        if (id == 0) return false;
    }
    ReadRecord(id, record_);
    if (!Nr.empty() && OrderAgainst(key, record_.TrimmedNr()) != 0) {
        RaiseRuntimeError(runtime_error::kDeviceIoError);  // rewritten since it was found
    }
    // Both are made before either is stored, in memory that goes back and forth with the caller's.
    if (Bezeichnung != nullptr) text_.ReadAnsi(record_.TrimmedBezeichnung(), bezeichnung_);
    if (Preis != nullptr) text_.ReadAnsi(record_.TrimmedPreis(), preis_);
    if (Bezeichnung != nullptr) Bezeichnung->swap(bezeichnung_);
    if (Preis != nullptr) Preis->swap(preis_);
    return true;
}

std::optional<FileStamp> ArtikelStamm::Stamp() const noexcept {
    return file_ != nullptr ? file_->Stamp() : std::nullopt;
}

bool ArtikelStamm::LooksWhole() {
    if (file_ == nullptr || record_count_ == 0) return false;
    const std::uint64_t rest = file_->Size() % ArtikelRecord::kSize;
    if (rest != 0 && rest < ArtikelRecord::kTextSize) return false;
    for (const std::int32_t id : {1, record_count_}) {
        for (const char c : file_->Read(*Locate(id), ArtikelRecord::kTextSize)) {
            if (c >= 0 && c < ' ') return false;
        }
    }
    return true;
}

std::optional<std::uint64_t> ArtikelStamm::Locate(std::int32_t id) const {
    if (id < 1) RaiseRuntimeError(runtime_error::kInvalidProcedureCall);
    if (file_ == nullptr) RaiseRuntimeError(runtime_error::kObjectNotSet);
    if (id > record_count_) return std::nullopt;
    return static_cast<std::uint64_t>(id - 1) * ArtikelRecord::kSize;
}

void ArtikelStamm::ReadRecord(std::int32_t id, ArtikelRecord& record) {
    if (const auto offset = Locate(id)) {
        record.Assign(file_->Read(*offset, ArtikelRecord::kTextSize));
    } else {
        record = ArtikelRecord();
    }
}

std::string_view ArtikelStamm::ReadNr(std::int32_t id) {
    const auto offset = Locate(id);
    if (!offset) return {};
    return TrimmedField(file_->Read(*offset, sizeof(ArtikelRecord::Nr)));
}

std::int32_t ArtikelStamm::Count(std::int32_t Tag) {
    CheckTag(Tag);
    return record_count_;
}

std::int32_t ArtikelStamm::EnumItems(std::int32_t /*Tag*/) {
    cursor_ = cursor_ < record_count_ ? cursor_ + 1 : 0;
    return cursor_;
}

std::int32_t ArtikelStamm::CompareItems(std::int32_t id1, std::int32_t id2, std::int32_t Tag) {
    CheckTag(Tag);
    const std::string a(ReadNr(id1));  // a copy: the next read ends the view
    const std::string_view b = ReadNr(id2);
    if (const auto order = OrderOfPlainText(std::string_view(a), b)) return *order;
    return text_.CompareText(text_.FromAnsi(a), text_.FromAnsi(b));
}

std::int32_t ArtikelStamm::Hashvalue(std::int32_t /*id*/, std::int32_t /*Tag*/) {
    return 0;
}

std::int32_t ArtikelStamm::HashKeyvalue(const KeyValue& /*Key*/, std::int32_t /*Tag*/) {
    return 0;
}

std::int32_t ArtikelStamm::CompareItem(const KeyValue& Key, std::int32_t id, std::int32_t Tag) {
    CheckTag(Tag);
    const auto* key = std::get_if<std::wstring>(&Key);
    if (key == nullptr) RaiseRuntimeError(runtime_error::kTypeMismatch);
    return OrderAgainst(*key, ReadNr(id));
}

std::int32_t ArtikelStamm::OrderAgainst(std::wstring_view key, std::string_view nr) {
    if (const auto order = OrderOfPlainText(key, nr)) return *order;
    text_.ReadAnsi(nr, nr_);
    return text_.CompareText(key, nr_);
}

}  // namespace demovex
