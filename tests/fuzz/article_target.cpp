#include <algorithm>
#include <bit>
#include <string>
#include <vector>

#include "catalog/artikel_stamm.h"
#include "tests/fuzz/check.h"
#include "tests/fuzz/targets.h"
#include "tests/support/fake_text_service.h"
#include "tests/support/one_file.h"

namespace demovex::fuzz {
namespace {

std::wstring Field(const FakeTextService& text, const std::string& bytes, std::size_t at,
                   std::size_t width) {
    const std::wstring field = text.FromAnsi(std::string_view(bytes).substr(at, width));
    return std::wstring(TrimBlanks(field));
}

}  // namespace

// The first 12 bytes are a number to look up, the next one says whether the records are put into
// order first; the rest is the file.
void ArticleMaster(const std::uint8_t* data, std::size_t size) {
    const FakeTextService text;
    std::string input(data, data + size);
    const std::wstring key = text.FromAnsi(input.substr(0, 12));
    const bool in_order = size > 12 && (input[12] & 1) != 0;
    std::string bytes = size > 13 ? input.substr(13) : std::string();
    const std::size_t count = (bytes.size() + 1) / 54;
    const auto number = [&](std::size_t i) { return Field(text, bytes, i * 54, 10); };
    if (in_order) {
        std::vector<std::string> records;
        for (std::size_t i = 0; i < count; ++i) records.push_back(bytes.substr(i * 54, 54));
        std::stable_sort(records.begin(), records.end(), [&](const auto& a, const auto& b) {
            return text.CompareText(Field(text, a, 0, 10), Field(text, b, 0, 10)) < 0;
        });
        bytes.clear();
        for (const std::string& record : records) bytes += record;
        bytes.resize(std::max(bytes.size(), count == 0 ? 0 : count * 54 - 1), '\n');
    }
    bool strictly_ascending = true;
    for (std::size_t i = 1; i < count; ++i) {
        if (text.CompareText(number(i - 1), number(i)) >= 0) strictly_ascending = false;
    }

    OneFile files(bytes);
    ArtikelStamm master(files, text);
    master.OpenFile(L"artikel.db");
    FUZZ_CHECK(files.reads == 0);
    FUZZ_CHECK(master.RecordCount() == static_cast<std::int32_t>(count));
    const int most_reads = static_cast<int>(std::bit_width(count)) + 1;

    std::wstring bezeichnung = L"untouched";
    std::wstring preis = L"untouched";
    FUZZ_CHECK(master.LookUpArtikelNr(L"", &bezeichnung, &preis));
    FUZZ_CHECK(bezeichnung == (count == 0 ? L"" : Field(text, bytes, 10, 30)));
    FUZZ_CHECK(preis == (count == 0 ? L"" : Field(text, bytes, 40, 12)));

    files.reads = 0;
    bezeichnung = preis = L"untouched";
    const bool found = master.LookUpArtikelNr(key, &bezeichnung, &preis);
    if (!key.empty()) FUZZ_CHECK(files.reads <= most_reads);
    if (!found) FUZZ_CHECK(bezeichnung == L"untouched" && preis == L"untouched");

    for (std::size_t i = 0; i < std::min<std::size_t>(count, 40); ++i) {
        const std::wstring nr = number(i);
        if (nr.empty()) continue;
        files.reads = 0;
        const bool there = master.LookUpArtikelNr(L"  " + nr + L" ", &bezeichnung, &preis);
        FUZZ_CHECK(files.reads <= most_reads);
        if (!strictly_ascending) continue;
        FUZZ_CHECK(there);
        FUZZ_CHECK(bezeichnung == Field(text, bytes, i * 54 + 10, 30));
        FUZZ_CHECK(preis == Field(text, bytes, i * 54 + 40, 12));
    }
    for (std::int32_t id = 1; id < std::min(master.RecordCount(), 20); ++id) {
        const std::int32_t there = master.CompareItems(id, id + 1, 1);
        FUZZ_CHECK(there >= -1 && there <= 1);
        FUZZ_CHECK(master.CompareItems(id + 1, id, 1) == -there);
        FUZZ_CHECK(master.CompareItem(number(static_cast<std::size_t>(id - 1)), id + 1, 1) ==
                   there);
        FUZZ_CHECK(master.EnumItems(1) == id);
    }
}

}  // namespace demovex::fuzz
