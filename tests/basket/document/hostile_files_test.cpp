// Files that nobody would write who means well: they are refused or loaded, in good time, and the
// basket goes on.
#include <gtest/gtest.h>

#include <filesystem>

#include "basket/document/files.h"
#include "tests/support/files_fixture.h"

namespace demovex {
namespace {

#ifdef DEMOVEX_REAL_FILES
constexpr std::size_t kMany = 100'000'000, kDigits = 10'000'000;
#else
// sanitizers keep books over each of them
constexpr std::size_t kMany = 1'000'000, kDigits = 300'000;
#endif

class HostileFile : public testing::Test, protected FilesFixture {
  protected:
    // The window goes on: an ordinary basket is loaded and shown as ever.
    void ExpectHealthy() {
        EXPECT_FALSE(state.Loading);
        EXPECT_FALSE(state.SuppressEditor);
        EXPECT_EQ(view.progress_depth, 0);
        EXPECT_EQ(LoadError(PutBasket(L"gut.bsk", "4711\t\t2\r\n4712\t\t1\r\n")), L"");
        EXPECT_EQ(Cell(3, column::kGesamtAts), L"225,50");
        EXPECT_EQ(grid.Rows(), 4);
    }
};

TEST_F(HostileFile, SeasOfTabsLoadOrAreRefused) {
    const std::wstring path = folder.Put(L"a.bsk", std::string(kMany, '\t'));
    const std::wstring error = LoadError(path);
    EXPECT_TRUE(error.empty() || error == LoadErrorOf(path, L"Out of memory"))
        << std::string(error.begin(), error.end());
    ExpectHealthy();
}

TEST_F(HostileFile, SeasOfLineBreaksAreNoRows) {
    std::string breaks;
    for (std::size_t i = 0; i < 1'000'000; ++i) breaks += "\r\n";
    const std::wstring path = folder.Put(L"a.bsk", breaks);
    EXPECT_EQ(LoadError(path), L"");
    EXPECT_EQ(grid.Rows(), 2);
    ExpectHealthy();
}

TEST_F(HostileFile, QuantitiesOfMillionsOfDigitsEndTheLoadAndNothingElse) {
    for (const std::string& quantity :
         {std::string(kDigits, '9'), "1" + std::string(kDigits, '0'),
          "0," + std::string(kDigits, '9'), std::string(kDigits, '0') + "3",
          "1E" + std::string(kDigits, '9'), "-" + std::string(kDigits, '8')}) {
        const std::wstring path = PutBasket(L"a.bsk", "4711\t\t" + quantity + "\r\n4712\t\t1\r\n");
        const std::wstring error = LoadError(path);
        EXPECT_TRUE(error.empty() || error == LoadErrorOf(path, L"Overflow") ||
                    error == LoadErrorOf(path, L"Type mismatch"))
            << quantity.substr(0, 5) << " " << std::string(error.begin(), error.end());
        ExpectHealthy();
    }
}

TEST_F(HostileFile, PricesThatAreNoneEndTheLoadAndNothingElse) {
    for (const wchar_t* price :
         {L"1e400", L"-1e400", L"1e308", L"", L" ", L"1,2,3", L"--1", L"&HFFFFFFFF", L"(5)", L"€",
          L"NaN", L"INF", L"1e-400", L"0x10", L"١٢٣"}) {
        articles.articles[L"666"] = {L"Falle", price};
        const std::wstring path = PutBasket(L"a.bsk", "666\t\t9999999999\r\n4711\t\t1\r\n");
        const std::wstring error = LoadError(path);
        EXPECT_TRUE(error.empty() || error == LoadErrorOf(path, L"Overflow") ||
                    error == LoadErrorOf(path, L"Type mismatch"))
            << std::string(error.begin(), error.end());
        ExpectHealthy();
    }
}

#ifdef DEMOVEX_REAL_FILES
// Holes: such a file takes no room on the disk and more memory than a process has.
TEST_F(HostileFile, FilesOfTwoGigabytesAndMoreAreRefusedAtOnce) {
    const std::wstring path = folder.Put(L"a.bsk", "");
    basket.Load(PutBasket(L"gut.bsk", "4711\t\t2\r\n"));
    const std::string before = CellsOf(grid);
    for (const std::uint64_t size :
         {std::uint64_t{0x7FFFFFFE}, std::uint64_t{0x7FFFFFFF}, std::uint64_t{0x80000000},
          std::uint64_t{0xFFFFFFFF}, std::uint64_t{0x100000005}, std::uint64_t{1} << 40}) {
        std::error_code refused;
        std::filesystem::resize_file(ToNativePath(path), size, refused);
        if (refused) GTEST_SKIP() << "no room for files with holes";
        EXPECT_EQ(LoadError(path), LoadErrorOf(path, L"Out of memory")) << size;
        EXPECT_EQ(CellsOf(grid), before) << size;
        EXPECT_EQ(state.CurrentPath, folder / L"gut.bsk");
    }
    ExpectHealthy();
}
#endif

}  // namespace
}  // namespace demovex
