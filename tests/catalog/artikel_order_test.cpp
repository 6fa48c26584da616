// How article numbers sort: as the user's collation says, though digits are compared without it.
#include <gtest/gtest.h>

#include <new>
#include <random>

#include "catalog/artikel_stamm.h"
#include "tests/support/fake_text_service.h"
#include "tests/support/one_file.h"
#include "tests/support/raised_error.h"

namespace demovex {
namespace {

std::string Line(std::string nr) {
    nr.resize(10, ' ');
    nr.resize(40, 'x');
    nr.resize(52, '1');
    return nr + "\r\n";
}

// Counts what it is asked; `fail_at` raises at that conversion from the code page.
struct WatchedText : FakeTextService {
    int CompareText(std::wstring_view a, std::wstring_view b) const override {
        ++compared;
        return FakeTextService::CompareText(a, b);
    }
    void ReadAnsi(std::string_view bytes, std::wstring& text) const override {
        if (++converted == fail_at) throw std::bad_alloc();
        FakeTextService::ReadAnsi(bytes, text);
    }
    mutable int compared = 0;
    mutable int converted = 0;
    int fail_at = 0;
};

struct Pair {
    Pair(const std::string& a, const std::string& b) : files(Line(a) + Line(b)) {
        stamm.OpenFile(L"a");
    }
    OneFile files;
    WatchedText text;
    ArtikelStamm stamm{files, text};
};

TEST(ArtikelOrder, AnyTwoNumbersCompareAsTheCollationDoes) {
    // signs that the collation passes over, letters in both cases, what stands beside the digits
    const std::string characters = "019-'aAz/:;.";
    std::mt19937 random(29);
    for (int round = 0; round < 10000; ++round) {
        std::string a, b;
        for (std::size_t n = random() % 4; n > 0; --n) a += characters[random() % 12];
        for (std::size_t n = random() % 4; n > 0; --n) b += characters[random() % 12];
        Pair pair(a, b);
        const std::wstring left(a.begin(), a.end()), right(b.begin(), b.end());
        const int order = FakeTextService().CompareText(left, right);
        ASSERT_EQ(pair.stamm.CompareItems(1, 2, 1), order) << a << " and " << b;
        ASSERT_EQ(pair.stamm.CompareItem(left, 2, 1), order) << a << " and " << b;
    }
}

TEST(ArtikelOrder, NumbersOfDigitsNeedNoCollation) {
    Pair pair("4711", "471");
    EXPECT_EQ(pair.stamm.CompareItems(1, 2, 1), 1);
    EXPECT_EQ(pair.stamm.CompareItems(2, 1, 1), -1);
    EXPECT_EQ(pair.stamm.CompareItem(std::wstring(L"4711"), 1, 1), 0);
    EXPECT_EQ(pair.stamm.CompareItem(std::wstring(L"5"), 1, 1), 1);
    EXPECT_EQ(pair.text.compared, 0);
    EXPECT_EQ(pair.text.converted, 0);
    EXPECT_EQ(pair.stamm.CompareItem(std::wstring(L"x"), 1, 1), 1);
    EXPECT_EQ(pair.text.compared, 0);
    EXPECT_EQ(pair.stamm.CompareItem(std::wstring(L"."), 1, 1), -1);
    EXPECT_EQ(pair.text.compared, 1);
}

TEST(ArtikelOrder, NumbersWithLettersThatDifferInADigitNeedNoCollation) {
    Pair pair("KB-11.A", "KB-2");
    EXPECT_EQ(pair.stamm.CompareItems(1, 2, 1), -1);
    EXPECT_EQ(pair.stamm.CompareItem(std::wstring(L"KB-11.A"), 1, 1), 0);
    EXPECT_EQ(pair.stamm.CompareItem(std::wstring(L"KB-1"), 1, 1), -1);
    EXPECT_EQ(pair.text.compared, 0);
    EXPECT_EQ(pair.text.converted, 0);
    EXPECT_EQ(pair.stamm.CompareItem(std::wstring(L"kb-2"), 2, 1), 0);
    EXPECT_EQ(pair.text.compared, 1);
}

TEST(ArtikelOrder, ALookupThatFailsHalfWayStoresNothing) {
    Pair pair("4711", "4712");
    std::wstring bezeichnung = L"old", preis = L"old";
    pair.text.fail_at = 2;
    EXPECT_THROW(pair.stamm.LookUpArtikelNr(L"4711", &bezeichnung, &preis), std::bad_alloc);
    EXPECT_EQ(bezeichnung, L"old");
    EXPECT_EQ(preis, L"old");
    EXPECT_TRUE(pair.stamm.LookUpArtikelNr(L"4711", &bezeichnung, &preis));
    EXPECT_EQ(preis, L"111111111111");
}

TEST(ArtikelOrder, MemoryThatEndsWhileOpeningIsNamedAsTheCause) {
    OneFile files(Line("1"));
    const FakeTextService text;
    ArtikelStamm stamm(files, text);
    files.open_memory_ends = true;
    const auto raised = Raised([&] { stamm.OpenFile(L"a"); });
    EXPECT_EQ(raised.number, -1);
    EXPECT_EQ(raised.description, L"Artikelstamm (a) kann nicht geladen werden: Out of memory");
    EXPECT_EQ(files.open_files, 0);
}

}  // namespace
}  // namespace demovex
