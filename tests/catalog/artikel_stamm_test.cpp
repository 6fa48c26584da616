#include "catalog/artikel_stamm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <random>

#include "tests/support/fake_text_service.h"
#include "tests/support/one_file.h"
#include "tests/support/raised_error.h"

namespace demovex {
namespace {

std::string Padded(std::string_view text, std::size_t width) {
    std::string field(text);
    field.resize(width, ' ');
    return field;
}

std::string Line(std::string_view nr, std::string_view name = "Name",
                 std::string_view price = "1") {
    return Padded(nr, 10) + Padded(name, 30) + Padded(price, 12) + "\r\n";
}

const std::string kThree = Line("4710", "Nagel", "10") + Line("4711", " Hammer \xE4", " 100") +
                           Line("4712", "Zange", "250,50");

// A master over a file of these bytes.
struct Master {
    explicit Master(std::string bytes) : files(std::move(bytes)) {
        stamm.OpenFile(L"C:\\artikel.db");
    }
    Master(std::uint64_t size, OneFile::Maker maker) : files(size, std::move(maker)) {
        stamm.OpenFile(L"C:\\artikel.db");
    }
    bool LookUp(std::wstring_view nr) {
        bezeichnung = preis = L"untouched";
        files.reads = 0;
        return stamm.LookUpArtikelNr(nr, &bezeichnung, &preis);
    }

    OneFile files;
    FakeTextService text;
    ArtikelStamm stamm{files, text};
    std::wstring bezeichnung, preis;
};

TEST(ArtikelStamm, CountsTheRecordsByTheFilesLength) {
    EXPECT_EQ(Master(kThree).stamm.RecordCount(), 3);
    EXPECT_EQ(Master(kThree.substr(0, kThree.size() - 2)).stamm.RecordCount(), 2);
    EXPECT_EQ(Master("").stamm.RecordCount(), 0);
    EXPECT_EQ(Master("4").stamm.RecordCount(), 0);
}

TEST(ArtikelStamm, ALastLineThatLacksOneByteStillCounts) {
    Master master(kThree.substr(0, kThree.size() - 1));
    EXPECT_EQ(master.stamm.RecordCount(), 3);
    EXPECT_TRUE(master.LookUp(L"4712"));
    EXPECT_EQ(master.preis, L"250,50");
}

TEST(ArtikelStamm, FindsDescriptionAndPriceWithoutTheBlanksAround) {
    Master master(kThree);
    EXPECT_TRUE(master.LookUp(L"4711"));
    EXPECT_EQ(master.bezeichnung, L"Hammer ä");
    EXPECT_EQ(master.preis, L"100");
    EXPECT_TRUE(master.LookUp(L"4710"));
    EXPECT_EQ(master.bezeichnung, L"Nagel");
    EXPECT_TRUE(master.stamm.LookUpArtikelNr(L"4712"));
}

TEST(ArtikelStamm, BlanksAroundTheNumberAreIgnored) {
    Master master(kThree);
    EXPECT_TRUE(master.LookUp(L"  4711 "));
    EXPECT_EQ(master.preis, L"100");
    EXPECT_FALSE(master.LookUp(L"\t4711")) << "blanks only";
}

TEST(ArtikelStamm, AnUnknownNumberTouchesNothing) {
    Master master(kThree);
    for (const wchar_t* nr : {L"4713", L"471", L"47111", L"1", L"x", L"4711 x"}) {
        EXPECT_FALSE(master.LookUp(nr)) << nr;
        EXPECT_EQ(master.bezeichnung, L"untouched");
        EXPECT_EQ(master.preis, L"untouched");
    }
    EXPECT_FALSE(master.LookUp(std::wstring(100000, L'7')));
}

TEST(ArtikelStamm, TheEmptyNumberIsTheFirstRecordOfTheFile) {
    Master master(Line("9", "Last in order", "9") + Line("1"));
    EXPECT_TRUE(master.LookUp(L""));
    EXPECT_EQ(master.bezeichnung, L"Last in order");
    EXPECT_EQ(master.files.reads, 1);
}

TEST(ArtikelStamm, ANumberOfBlanksIsSearchedAsTheEmptyKey) {
    Master without(kThree);
    EXPECT_FALSE(without.LookUp(L"   "));
    Master with(Line("", "Nameless", "3") + kThree);
    EXPECT_TRUE(with.LookUp(L" "));
    EXPECT_EQ(with.bezeichnung, L"Nameless");
}

TEST(ArtikelStamm, TheEmptyNumberOnAnEmptyFileIsABlankRecord) {
    Master master("");
    EXPECT_TRUE(master.LookUp(L""));
    EXPECT_EQ(master.bezeichnung, L"");
    EXPECT_EQ(master.preis, L"");
    EXPECT_FALSE(master.LookUp(L"4711"));
    EXPECT_EQ(master.files.reads, 0);
}

TEST(ArtikelStamm, LetterCaseIsIgnored) {
    Master master(Line("12") + Line("ABC", "Found", "7") +
                  Line("b\xD6"
                       "D",
                       "Umlaut", "8"));
    EXPECT_TRUE(master.LookUp(L"abc"));
    EXPECT_EQ(master.bezeichnung, L"Found");
    EXPECT_TRUE(master.LookUp(L"BÖd"));
    EXPECT_EQ(master.bezeichnung, L"Umlaut");
}

TEST(ArtikelStamm, ANumberSortsBeforeALongerOneThatItBegins) {
    Master master(Line("4711", "a") + Line("47110", "b") + Line("4711A", "c") + Line("4712", "d"));
    for (const wchar_t* nr : {L"4711", L"47110", L"4711a", L"4712"}) {
        EXPECT_TRUE(master.LookUp(nr)) << nr;
    }
}

TEST(ArtikelStamm, OfEqualNumbersOneIsFound) {
    Master master(Line("1", "a") + Line("7", "b") + Line("7", "c") + Line("7", "d") +
                  Line("9", "e"));
    EXPECT_TRUE(master.LookUp(L"7"));
    EXPECT_EQ(master.bezeichnung, L"c") << "the middle one is met first";
}

TEST(ArtikelStamm, AFileOutOfOrderMayHideNumbers) {
    Master master(Line("9") + Line("5") + Line("1"));
    EXPECT_FALSE(master.LookUp(L"9"));
    EXPECT_TRUE(master.LookUp(L"5"));
}

TEST(ArtikelStamm, AFileWithoutLineBreaksIsReadInStepsOfARecordAllTheSame) {
    std::string bytes = kThree;
    bytes.erase(std::remove(bytes.begin(), bytes.end(), '\n'), bytes.end());
    bytes.erase(std::remove(bytes.begin(), bytes.end(), '\r'), bytes.end());
    Master master(bytes);
    EXPECT_EQ(master.stamm.RecordCount(), 2);
    EXPECT_TRUE(master.LookUp(L"4710"));
    EXPECT_FALSE(master.LookUp(L"4712"));
}

TEST(ArtikelStamm, AFileCutAnywhereOpensAndAnswers) {
    for (std::size_t length = 0; length <= kThree.size(); ++length) {
        Master master(kThree.substr(0, length));
        EXPECT_EQ(master.stamm.RecordCount(), static_cast<std::int32_t>((length + 1) / 54));
        EXPECT_EQ(master.LookUp(L"4710"), length >= 53);
        EXPECT_EQ(master.LookUp(L"4712"), length >= 161);
        EXPECT_TRUE(master.LookUp(L""));
    }
}

TEST(ArtikelStamm, OpeningReadsNothingAndALookupAtMostTheBitsOfTheCountAndOne) {
    constexpr std::int32_t kCount = 100000;
    int most = 0;
    Master master(std::uint64_t{kCount} * 54, [](std::uint64_t offset, std::size_t length) {
        const auto n = static_cast<int>(offset / 54);
        return Line(std::to_string(1000000 + 2 * n), "Article " + std::to_string(n))
            .substr(0, length);
    });
    EXPECT_EQ(master.files.reads, 0);
    std::mt19937 random(3);
    for (int i = 0; i < 2000; ++i) {
        const auto n = static_cast<std::int32_t>(random() % kCount);
        EXPECT_TRUE(master.LookUp(std::to_wstring(1000000 + 2 * n)));
        EXPECT_EQ(master.bezeichnung, L"Article " + std::to_wstring(n));
        most = std::max(most, master.files.reads);
        EXPECT_FALSE(master.LookUp(std::to_wstring(1000001 + 2 * n)));
        EXPECT_LE(master.files.reads, 17);
    }
    EXPECT_EQ(most, 18) << "17 for the search and one for the result";
}

TEST(ArtikelStamm, TenMillionRecordsAndOffsetsBeyond32Bits) {
    for (const std::int32_t count : {10000000, 200000000}) {
        Master master(static_cast<std::uint64_t>(count) * 54, [](std::uint64_t offset,
                                                                 std::size_t length) {
            const auto n = static_cast<std::int32_t>(offset / 54);
            return Line(std::to_string(1000000000 + n), "x", std::to_string(n)).substr(0, length);
        });
        EXPECT_EQ(master.files.reads, 0);
        EXPECT_EQ(master.stamm.RecordCount(), count);
        for (const std::int32_t n : {0, 1, count / 3, count - 2, count - 1}) {
            EXPECT_TRUE(master.LookUp(std::to_wstring(1000000000 + n)));
            EXPECT_EQ(master.preis, std::to_wstring(n));
            EXPECT_LE(master.files.reads, std::bit_width(static_cast<std::uint32_t>(count)) + 1);
        }
        EXPECT_FALSE(master.LookUp(std::to_wstring(1000000000 + count)));
    }
}

TEST(ArtikelStamm, MoreRecordsThan32BitsIsAnOverflow) {
    OneFile files(std::uint64_t{3000000000} * 54, [](std::uint64_t, std::size_t) { return ""; });
    FakeTextService text;
    ArtikelStamm stamm(files, text);
    const auto raised = Raised([&] { stamm.OpenFile(L"big.db"); });
    EXPECT_EQ(raised.number, -1);
    EXPECT_EQ(raised.description, L"Artikelstamm (big.db) kann nicht geladen werden: Overflow");
    EXPECT_EQ(files.open_files, 0);
}

TEST(ArtikelStamm, AMissingFileIsNamed) {
    OneFile files("");
    files.exists = false;
    FakeTextService text;
    ArtikelStamm stamm(files, text);
    const auto raised = Raised([&] { stamm.OpenFile(L"C:\\x\\artikel.db"); });
    EXPECT_EQ(raised.number, -1);
    EXPECT_EQ(raised.source, L"Artikelstamm::OpenFile");
    EXPECT_EQ(raised.description,
              L"Artikelstamm (C:\\x\\artikel.db) kann nicht geladen werden: Datei nicht gefunden");
    EXPECT_EQ(files.open_files, 0);
    EXPECT_TRUE(files.opened_path.empty());
}

TEST(ArtikelStamm, AFileThatCannotBeOpenedIsNamedWithTheCause) {
    OneFile files("");
    files.open_error = 70;
    FakeTextService text;
    ArtikelStamm stamm(files, text);
    const auto raised = Raised([&] { stamm.OpenFile(L"a"); });
    EXPECT_EQ(raised.number, -1);
    EXPECT_EQ(raised.source, L"Artikelstamm::OpenFile");
    EXPECT_EQ(raised.description, L"Artikelstamm (a) kann nicht geladen werden: Permission denied");
}

TEST(ArtikelStamm, AnErrorOfReadingGoesOutAsItIs) {
    Master master(kThree);
    master.files.read_error = 57;
    auto raised = Raised([&] { master.LookUp(L"4711"); });
    EXPECT_EQ(raised.number, 57);
    EXPECT_EQ(raised.source, L"");
    EXPECT_EQ(master.bezeichnung, L"untouched");
    EXPECT_EQ(Raised([&] { master.LookUp(L""); }).number, 57);
    master.files.read_error = 0;
    EXPECT_TRUE(master.LookUp(L"4711"));
}

TEST(ArtikelStamm, AFileThatShrinksRaises57) {
    Master master(kThree);
    master.files.size = 60;
    EXPECT_EQ(Raised([&] { master.LookUp(L"4712"); }).number, 57);
    EXPECT_TRUE(master.LookUp(L""));
}

TEST(ArtikelStamm, APriceChangedInTheFileIsSeen) {
    std::string price = "100";
    Master master(54 * 3, [&](std::uint64_t offset, std::size_t length) {
        return Line(std::to_string(4710 + offset / 54), "x", price).substr(0, length);
    });
    EXPECT_TRUE(master.LookUp(L"4711"));
    EXPECT_EQ(master.preis, L"100");
    price = "120";
    EXPECT_TRUE(master.LookUp(L"4711"));
    EXPECT_EQ(master.preis, L"120");
}

TEST(ArtikelStamm, TheFileStaysOpenAsLongAsTheObject) {
    OneFile files(kThree);
    FakeTextService text;
    {
        ArtikelStamm stamm(files, text);
        EXPECT_EQ(files.open_files, 0);
        stamm.OpenFile(L"a");
        EXPECT_EQ(files.open_files, 1);
    }
    EXPECT_EQ(files.open_files, 0) << "no index keeps the object alive";
}

TEST(ArtikelStamm, ASecondOpenReplacesTheFileAndDoesNotCloseTheFirst) {
    OneFile files(kThree);
    FakeTextService text;
    {
        ArtikelStamm stamm(files, text);
        stamm.OpenFile(L"a");
        files.size = 54;
        stamm.OpenFile(L"b");
        EXPECT_EQ(files.open_files, 2);
        EXPECT_EQ(stamm.RecordCount(), 1);
        EXPECT_FALSE(stamm.LookUpArtikelNr(L"4711"));
        files.exists = false;
        EXPECT_EQ(Raised([&] { stamm.OpenFile(L"c"); }).number, -1);
        EXPECT_EQ(files.open_files, 1) << "the failure closes the file in use";
        EXPECT_EQ(Raised([&] { stamm.LookUpArtikelNr(L"4710"); }).number, 91);
    }
    EXPECT_EQ(files.open_files, 0);
}

TEST(ArtikelStamm, BeforeAFileIsOpenTheObjectIsNotSet) {
    OneFile files(kThree);
    FakeTextService text;
    ArtikelStamm stamm(files, text);
    EXPECT_EQ(Raised([&] { stamm.LookUpArtikelNr(L"4711"); }).number, 91);
    EXPECT_EQ(Raised([&] { stamm.LookUpArtikelNr(L""); }).number, 91);
    EXPECT_EQ(stamm.Count(1), 0);
}

TEST(ArtikelStamm, EnumeratesItsRecordsOverAndOver) {
    Master master(kThree);
    for (int pass = 0; pass < 2; ++pass) {
        for (const std::int32_t expected : {1, 2, 3, 0}) {
            EXPECT_EQ(master.stamm.EnumItems(pass), expected);
        }
    }
    Master empty("");
    EXPECT_EQ(empty.stamm.EnumItems(1), 0);
    EXPECT_EQ(empty.stamm.EnumItems(1), 0);
    EXPECT_EQ(master.files.reads, 0);
}

TEST(ArtikelStamm, ComparesRecordsAndKeysByTrimmedNumber) {
    Master master(Line("  10") + Line("9") + Line("ab") + Line("AB") + Line("abc"));
    ArtikelStamm& stamm = master.stamm;
    EXPECT_EQ(stamm.CompareItems(1, 2, 1), -1) << "as text";
    EXPECT_EQ(stamm.CompareItems(2, 1, 1), 1);
    EXPECT_EQ(stamm.CompareItems(3, 4, 1), 0);
    EXPECT_EQ(stamm.CompareItems(3, 5, 1), -1);
    master.files.reads = 0;
    EXPECT_EQ(stamm.CompareItems(2, 3, 1), -1) << "digits before letters";
    EXPECT_EQ(master.files.reads, 2);
    EXPECT_EQ(stamm.CompareItem(std::wstring(L"10"), 1, 1), 0);
    EXPECT_EQ(stamm.CompareItem(std::wstring(L"1"), 1, 1), -1);
    EXPECT_EQ(stamm.CompareItem(std::wstring(L"100"), 1, 1), 1);
    EXPECT_EQ(stamm.CompareItem(std::wstring(L"aB"), 3, 1), 0);
    EXPECT_EQ(stamm.CompareItem(std::wstring(L""), 1, 1), -1);
    EXPECT_EQ(stamm.CompareItem(std::wstring(L"z"), 5, 1), 1);
}

TEST(ArtikelStamm, DigitsCompareAsTheCollationDoes) {
    FakeTextService text;
    std::mt19937 random(5);
    for (int i = 0; i < 3000; ++i) {
        std::string a, b;
        for (std::size_t n = random() % 5; n > 0; --n) a += static_cast<char>('0' + random() % 3);
        for (std::size_t n = random() % 5; n > 0; --n) b += static_cast<char>('0' + random() % 3);
        Master master(Line(a) + Line(b));
        const std::wstring left(a.begin(), a.end()), right(b.begin(), b.end());
        ASSERT_EQ(master.stamm.CompareItems(1, 2, 1), text.CompareText(left, right))
            << a << " " << b;
        ASSERT_EQ(master.stamm.CompareItem(left, 2, 1), text.CompareText(left, right));
    }
}

TEST(ArtikelStamm, ATagBelow0OrAbove255IsAnInvalidCall) {
    Master master(kThree);
    ArtikelStamm& stamm = master.stamm;
    for (const std::int32_t tag : {-1, 256, -2147483647 - 1, 2147483647}) {
        EXPECT_EQ(Raised([&] { stamm.Count(tag); }).number, 5);
        EXPECT_EQ(Raised([&] { stamm.CompareItems(1, 2, tag); }).number, 5);
        EXPECT_EQ(Raised([&] { stamm.CompareItem(std::wstring(L"1"), 1, tag); }).number, 5);
        EXPECT_EQ(stamm.Hashvalue(1, tag), 0);
        EXPECT_EQ(stamm.HashKeyvalue(std::wstring(L"1"), tag), 0);
        EXPECT_EQ(Raised([&] { stamm.EnumItems(tag); }).number, 0);
    }
    for (const std::int32_t tag : {0, 2, 255}) {
        EXPECT_EQ(stamm.Count(tag), 3);
        EXPECT_EQ(stamm.CompareItems(1, 2, tag), -1);
        EXPECT_EQ(stamm.CompareItem(std::wstring(L"4711"), 2, tag), 0);
    }
}

TEST(ArtikelStamm, ARecordBeyondTheEndIsBlankAndOneBelow1AnInvalidCall) {
    Master master(kThree);
    EXPECT_EQ(master.stamm.CompareItem(std::wstring(L""), 4, 1), 0);
    EXPECT_EQ(Raised([&] { master.stamm.CompareItem(std::wstring(L""), 0, 1); }).number, 5);
    EXPECT_EQ(Raised([&] { master.stamm.CompareItems(-1, 1, 1); }).number, 5);
}

TEST(ArtikelStamm, AKeyThatIsNoTextIsATypeMismatch) {
    Master master(kThree);
    EXPECT_EQ(Raised([&] { master.stamm.CompareItem(std::int32_t{4711}, 2, 1); }).number, 13);
}

// The owner's callbacks suffice for an index that sorts a file out of order in memory.
TEST(ArtikelStamm, AnIndexSortedInMemoryFindsWhatAFileOutOfOrderHides) {
    std::string bytes;
    for (int i = 0; i < 200; ++i) bytes += Line(std::to_string(i * 37 % 200 + 1000));
    Master master(bytes);
    MSIndex index;
    index.SetMSContainer(std::shared_ptr<IMSContainer>(std::shared_ptr<int>(), &master.stamm));
    index.Sort();
    for (int i = 1000; i < 1200; ++i) EXPECT_NE(index.Find(std::to_wstring(i)), 0) << i;
}

}  // namespace
}  // namespace demovex
