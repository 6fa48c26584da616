// The article master on a real disk: opening, and looking articles up, against SQLite as a plug-in
// would plainly use it (a prepared statement, each lookup its own transaction) and tuned (one read
// transaction, the file mapped).
#include <windows.h>

#include <sqlite3.h>

#include <algorithm>
#include <bit>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "benches/bench.h"
#include "catalog/artikel_stamm.h"
#include "platform/files_win.h"
#include "platform/text_win.h"

using namespace demovex;

namespace {

// Counts what goes to the file.
class CountingFiles final : public WinFileSystem {
  public:
    using WinFileSystem::WinFileSystem;

    int reads = 0;

    std::unique_ptr<IRandomReader> OpenShared(std::wstring_view path) override {
        return std::make_unique<Reader>(WinFileSystem::OpenShared(path), reads);
    }

  private:
    class Reader final : public IRandomReader {
      public:
        Reader(std::unique_ptr<IRandomReader> inner, int& reads)
            : inner_(std::move(inner)), reads_(reads) {}
        std::uint64_t Size() const override { return inner_->Size(); }
        std::string_view Read(std::uint64_t offset, std::size_t length) override {
            ++reads_;
            return inner_->Read(offset, length);
        }
        std::optional<FileStamp> Stamp() const noexcept override { return inner_->Stamp(); }

      private:
        std::unique_ptr<IRandomReader> inner_;
        int& reads_;
    };
};

std::wstring TempPath(const std::wstring& name) {
    wchar_t folder[MAX_PATH + 1];
    GetTempPathW(MAX_PATH + 1, folder);
    return folder + name;
}

int Number(int record) {
    return 10000000 + 7 * record;
}

// What the numbers look like; each kind ascends under the collation.
enum class Kind { kDigits, kLetterBehind, kLettersInFront };

std::string NumberText(int record, Kind kind) {
    const std::string digits = std::to_string(Number(record));
    if (kind == Kind::kDigits) return digits;
    if (kind == Kind::kLetterBehind) return digits + "A";
    // three letters, a hyphen and two digits: "ABC-07"
    const int group = record / 50;
    std::string text;
    for (const int place : {26 * 26, 26, 1}) {
        text += static_cast<char>('A' + group / place % 26);
    }
    const int rest = record % 50;
    return text + "-" + static_cast<char>('0' + rest / 10) + static_cast<char>('0' + rest % 10);
}

std::string Padded(std::string text, std::size_t width) {
    text.resize(width, ' ');
    return text;
}

std::string Description(int record) {
    return "Article number " + std::to_string(record);
}

// A file of `count` articles.
std::wstring MakeMaster(int count, Kind kind) {
    const std::wstring path = TempPath(L"demovex-bench-artikel.db");
    WinFileSystem files;
    if (files.Exists(path)) files.Delete(path);
    const auto file = files.CreateNew(path);
    std::string block;
    for (int i = 0; i < count; ++i) {
        block += Padded(NumberText(i, kind), 10) + Padded(Description(i), 30) +
                 Padded(std::to_string(i % 5000 + 1), 12) + "\r\n";
        if (block.size() > 4000000 || i + 1 == count) {
            file->Write(block);
            block.clear();
        }
    }
    file->Close();
    return path;
}

std::vector<int> Wanted(int count, int lookups) {
    std::mt19937 random(1);
    std::vector<int> wanted;
    for (int i = 0; i < lookups; ++i) {
        wanted.push_back(static_cast<int>(random() % static_cast<unsigned>(count)));
    }
    return wanted;
}

void Opening() {
    const WinTextService text;
    double seconds[2] = {};
    double fill = 0;
    for (const int count : {1000, 10000000}) {
        const std::wstring path = MakeMaster(count, Kind::kDigits);
        CountingFiles files;
        std::vector<double> times;
        for (int i = 0; i < 15; ++i) {
            times.push_back(bench::Seconds([&] {
                ArtikelStamm master(files, text);
                master.OpenFile(path);
                bench::Keep(master.RecordCount());
            }));
        }
        seconds[count == 1000 ? 0 : 1] = bench::Median(times);
        bench::PrintRow("opening " + std::to_string(count) + " records: records read", "", "",
                        std::to_string(files.reads), "0");
    }
    std::vector<double> times;
    for (int i = 0; i < 5; ++i) {
        times.push_back(bench::Seconds([] {
            std::vector<std::int32_t> ids(10000000);
            for (std::size_t k = 0; k < ids.size(); ++k) ids[k] = static_cast<std::int32_t>(k) + 1;
            bench::Keep(ids[12345]);
        }));
    }
    fill = bench::Median(times);
    char ratio[32];
    std::snprintf(ratio, sizeof ratio, "%.2f", seconds[0] / seconds[1]);
    bench::PrintRow("opening 10,000,000 records against 1,000", bench::Duration(seconds[1]),
                    "1,000 records " + bench::Duration(seconds[0]), ratio,
                    "about 1, beyond filling an id array (" + bench::Duration(fill) + ")");
}

#ifndef SQLITE_MISSING
class Sqlite {
  public:
    Sqlite(int count, Kind kind, bool tuned) {
        const std::wstring path = TempPath(L"demovex-bench.sqlite");
        WinFileSystem files;
        if (files.Exists(path)) files.Delete(path);
        sqlite3_open16(path.c_str(), &db_);
        Run("create table artikel (nr text primary key collate nocase, bezeichnung text, preis "
            "text)"
            " without rowid");
        Run("begin");
        sqlite3_stmt* insert = nullptr;
        sqlite3_prepare_v2(db_, "insert into artikel values (?, ?, ?)", -1, &insert, nullptr);
        for (int i = 0; i < count; ++i) {
            const std::string nr = NumberText(i, kind);
            const std::string name = Description(i), price = std::to_string(i % 5000 + 1);
            sqlite3_bind_text(insert, 1, nr.data(), static_cast<int>(nr.size()), nullptr);
            sqlite3_bind_text(insert, 2, name.data(), static_cast<int>(name.size()), nullptr);
            sqlite3_bind_text(insert, 3, price.data(), static_cast<int>(price.size()), nullptr);
            sqlite3_step(insert);
            sqlite3_reset(insert);
        }
        sqlite3_finalize(insert);
        Run("commit");
        if (tuned) {
            Run("pragma mmap_size = 1000000000");
            Run("begin");
        }
        sqlite3_prepare16_v2(db_, L"select bezeichnung, preis from artikel where nr = ?", -1,
                             &select_, nullptr);
    }
    ~Sqlite() {
        sqlite3_finalize(select_);
        sqlite3_close(db_);
        WinFileSystem().Delete(TempPath(L"demovex-bench.sqlite"));
    }
    Sqlite(const Sqlite&) = delete;
    Sqlite& operator=(const Sqlite&) = delete;

    bool LookUp(const std::wstring& nr, std::wstring& name, std::wstring& price) {
        sqlite3_bind_text16(select_, 1, nr.data(), static_cast<int>(nr.size() * 2), nullptr);
        const bool found = sqlite3_step(select_) == SQLITE_ROW;
        if (found) {
            name = static_cast<const wchar_t*>(sqlite3_column_text16(select_, 0));
            price = static_cast<const wchar_t*>(sqlite3_column_text16(select_, 1));
        }
        sqlite3_reset(select_);
        return found;
    }

  private:
    void Run(const char* statement) { sqlite3_exec(db_, statement, nullptr, nullptr, nullptr); }
    sqlite3* db_ = nullptr;
    sqlite3_stmt* select_ = nullptr;
};
#endif

void LookingUp(int count, Kind kind) {
    const std::wstring path = MakeMaster(count, kind);
    const WinTextService text;
    const std::string what = std::to_string(count) + " records" +
                             (kind == Kind::kDigits         ? ""
                              : kind == Kind::kLetterBehind ? ", letters too"
                                                            : ", letters in front");

    CountingFiles counting;
    ArtikelStamm counted(counting, text);
    counted.OpenFile(path);
    int most = 0;
    std::wstring name, price;
    const auto number = [&](int record) {
        const std::string nr = NumberText(record, kind);
        return std::wstring(nr.begin(), nr.end());
    };
    for (const int record : Wanted(count, 2000)) {
        counting.reads = 0;
        if (!counted.LookUpArtikelNr(number(record), &name, &price)) std::puts("not found");
        most = std::max(most, counting.reads);
    }
    bench::PrintRow("lookup, " + what + ": most reads", "", "", std::to_string(most),
                    "at most " + std::to_string(std::bit_width(static_cast<unsigned>(count)) + 1));

    WinFileSystem files;
    ArtikelStamm master(files, text);
    master.OpenFile(path);
    std::vector<std::wstring> numbers;
    for (const int record : Wanted(count, 20000)) numbers.push_back(number(record));
    int hits = 0;
    const auto ours = [&](std::size_t lookups) {
        return [&, lookups] {
            for (std::size_t i = 0; i < lookups; ++i) {
                hits += master.LookUpArtikelNr(numbers[i], &name, &price) ? 1 : 0;
            }
        };
    };
    ours(numbers.size())();  // warm
    if (hits != static_cast<int>(numbers.size())) std::puts("some were not found");
#ifdef SQLITE_MISSING
    bench::Measure("lookup, " + what, ours(20000), {.runs = 7, .operations = 20000, .bar = ""});
    bench::PrintRow("lookup, " + what, "", "SQLite's source could not be fetched", "", "");
#else
    for (const bool tuned : {false, true}) {
        Sqlite peer(count, kind, tuned);
        const std::size_t lookups = tuned ? 20000 : 1000;
        bench::Compare("lookup, " + what, {"ours", ours(lookups)},
                       {tuned ? "SQLite tuned" : "SQLite plain",
                        [&] {
                            for (std::size_t i = 0; i < lookups; ++i) {
                                if (!peer.LookUp(numbers[i], name, price)) std::puts("not found");
                            }
                        }},
                       {.runs = 7, .operations = static_cast<double>(lookups), .bar = "above 1"});
    }
#endif
}

}  // namespace

int main() {
    Opening();
    for (const int count : {100000, 1000000}) LookingUp(count, Kind::kDigits);
    LookingUp(100000, Kind::kLetterBehind);
    LookingUp(100000, Kind::kLettersInFront);
    WinFileSystem().Delete(TempPath(L"demovex-bench-artikel.db"));
}
