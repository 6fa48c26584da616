#include "basket/rows/article_master.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

#include "tests/support/basket_fixture.h"
#include "tests/support/fake_text_service.h"
#include "tests/support/memory_files.h"
#include "tests/support/raised_error.h"

namespace demovex {
namespace {

using std::chrono::milliseconds;

const std::wstring kPath = L"C:\\B\\artikel.db";

// Time that passes only while somebody waits; what other programs do meanwhile.
struct UpdateClock final : IRetryClock {
    milliseconds now{0};
    std::function<void()> meanwhile;
    milliseconds Now() override { return now; }
    void Wait(milliseconds duration) override {
        now += duration;
        if (meanwhile) meanwhile();
    }
};

std::string Prices(const std::string& price) {
    return ArticleFile({{"4710", "Nagel", price}, {"4711", "Hammer", price}});
}

struct ArticleMasterTest : testing::Test {
    ArticleMasterTest() {
        files.AddFolder(L"C:\\B");
        files.Put(kPath, Prices("100"));
        master.Open(kPath);
    }
    std::wstring Price(const std::wstring& nr = L"4711") {
        std::wstring name, price;
        return master.LookUpArtikelNr(nr, name, price) ? price : L"unknown";
    }
    // Another file in the place of the old one.
    void PutInPlace(std::string bytes) {
        files.Remove(kPath);
        files.Put(kPath, std::move(bytes));
    }
    bool IsOpen() { return files.At(kPath).open != 0; }

    MemoryFiles files;
    FakeTextService text;
    UpdateClock clock;
    ArticleMaster master{files, text, &clock};
};

TEST_F(ArticleMasterTest, TheFileIsOpenOnlyWhileItIsLookedAt) {
    EXPECT_TRUE(master.IsOpen());
    EXPECT_FALSE(IsOpen());
    EXPECT_EQ(Price(), L"100");
    EXPECT_FALSE(IsOpen());
    EXPECT_EQ(Price(L"9"), L"unknown");
    EXPECT_FALSE(IsOpen());
    files.before_read = [] { RaiseRuntimeError(57); };
    EXPECT_EQ(Raised([&] { Price(); }).number, 57);
    files.before_read = nullptr;
    EXPECT_FALSE(IsOpen());
    master.BeginSeries();
    EXPECT_EQ(Price(), L"100");
    EXPECT_TRUE(IsOpen());
    master.EndSeries();
    EXPECT_FALSE(IsOpen());
    EXPECT_EQ(Price(), L"100");
    master.Close();
    EXPECT_EQ(Raised([&] { Price(); }).number, 91);
}

TEST_F(ArticleMasterTest, TheNextLookUpSeesAFilePutInPlaceOrWrittenIntoTheOldOne) {
    EXPECT_EQ(Price(), L"100");
    PutInPlace(Prices("120"));
    EXPECT_EQ(Price(), L"120");
    files.Put(kPath, Prices("130"));
    EXPECT_EQ(Price(), L"130");
    PutInPlace(ArticleFile({{"1", "Neu", "1"}, {"2", "Neu", "2"}, {"4711", "Neu", "3"}}));
    EXPECT_EQ(Price(), L"3");
    EXPECT_EQ(Price(L"1"), L"1");
    EXPECT_EQ(Price(L"4710"), L"unknown");
    EXPECT_EQ(clock.now, milliseconds(0));
}

// A load opens the file once for all its lines, and afterwards others may put a new one in its
// place.
TEST(ArticleMasterOfABasket, IsOpenedOnceForALoadAndFreeWhenItIsOver) {
    BasketFixture basket;
    for (const char* lines : {"4711\t\tviele\r\n", "4711\t\t1\r\n4712\t\t2\r\n1000\t\t3\r\n"}) {
        basket.files.Put(L"C:\\Basket\\a.bsk", lines);
        basket.files.ClearOperations();
        const bool fails = std::string(lines).find("viele") != std::string::npos;
        EXPECT_EQ(RaisedBy([&] { basket.form.Load(L"C:\\Basket\\a.bsk"); }), fails ? -1 : 0);
        EXPECT_EQ(std::ranges::count(basket.files.Operations(), "OpenShared"), 1);
        EXPECT_EQ(basket.files.At(BasketFixture::ArticlePath()).open, 0);
    }
    basket.files.Put(BasketFixture::ArticlePath(), ArticleFile({{"4711", "Teurer", "200"}}));
    basket.form.RefreshArtikel(1, -1);
    EXPECT_EQ(basket.Cell(1, column::kPreisAts), L"200,00");
}

TEST_F(ArticleMasterTest, ALoadIsAnsweredFromOneFile) {
    master.BeginSeries();
    EXPECT_EQ(Price(L"4710"), L"100");
    files.ClearOperations();
    EXPECT_EQ(Price(), L"100");
    EXPECT_TRUE(files.Operations().empty()) << "opened again";
    master.EndSeries();
    PutInPlace(Prices("120"));
    EXPECT_EQ(Price(), L"120");
}

TEST_F(ArticleMasterTest, AnUpdateThatIsUnderWayIsWaitedFor) {
    const std::string whole = Prices("120");
    for (const std::string& now :
         {std::string(), whole.substr(0, 60), whole.substr(0, 54) + std::string(54, '\0'),
          std::string(whole.size(), '\0')}) {
        files.Put(kPath, now);
        clock.now = {};
        clock.meanwhile = [&] {
            if (clock.now >= milliseconds(100)) files.Put(kPath, whole);
        };
        EXPECT_EQ(Price(), L"120") << now.size();
        EXPECT_EQ(clock.now, milliseconds(100));
    }
}

TEST_F(ArticleMasterTest, AnUpdateThatStaysUnfinishedIsAnErrorUntilItIsMended) {
    files.Put(kPath, Prices("120").substr(0, 60));
    const auto raised = Raised([&] { Price(); });
    EXPECT_EQ(raised.number, -1);
    EXPECT_EQ(raised.description,
              L"Artikelstamm (C:\\B\\artikel.db) kann nicht geladen werden: Datei unvollständig");
    EXPECT_EQ(clock.now, ArticleMaster::kPause * (ArticleMaster::kTries - 1));
    files.Remove(kPath);
    EXPECT_EQ(Raised([&] { Price(); }).description,
              L"Artikelstamm (C:\\B\\artikel.db) kann nicht geladen werden: Datei nicht gefunden");
    files.Put(kPath, Prices("120"));
    EXPECT_EQ(Price(), L"120");
}

TEST_F(ArticleMasterTest, TheOldFileServesUnderAnotherNameUntilAWholeOneIsThere) {
    EXPECT_EQ(Price(), L"100");
    files.Rename(kPath, L"C:\\B\\artikel.old");
    EXPECT_EQ(Price(), L"100");  // none of that name
    files.Put(kPath, Prices("120").substr(0, 60));
    EXPECT_EQ(Price(), L"100");  // one that is no article master
    EXPECT_EQ(Price(L"4712"), L"unknown");
    files.Put(kPath, Prices("120"));
    EXPECT_EQ(Price(), L"120");
    EXPECT_EQ(clock.now, milliseconds(0));
    EXPECT_EQ(files.At(L"C:\\B\\artikel.old").open, 0);
}

// The file is rewritten in the midst of a search, at every read of it.
TEST_F(ArticleMasterTest, NoLookUpAnswersFromTwoFiles) {
    const std::string one =
        ArticleFile({{"1", "A", "1"}, {"2", "A", "1"}, {"3", "A", "1"}, {"5", "A", "1"}});
    const std::string two = ArticleFile(
        {{"2", "B", "2"}, {"3", "B", "2"}, {"4", "B", "2"}, {"5", "B", "2"}, {"6", "B", "2"}});
    for (const auto& [from, to] : {std::pair(one, two), std::pair(two, one)}) {
        for (const wchar_t* nr : {L"1", L"2", L"3", L"4", L"5", L"6"}) {
            for (int at = 1; at <= 8; ++at) {
                PutInPlace(from);
                Price(L"3");
                int reads = 0;
                files.before_read = [&, to = to] {
                    if (++reads == at) files.Put(kPath, to);
                };
                std::wstring name = L"-", price = L"-";
                const bool found = master.LookUpArtikelNr(nr, name, price);
                files.before_read = nullptr;
                const bool whole = found ? (name == L"A") == (price == L"1")
                                         : std::wstring(L"14 6").find(nr[0]) != std::wstring::npos;
                EXPECT_TRUE(whole) << "number " << nr << ", read " << at;
                if (found) {
                    const std::wstring a = L"1235", b = L"23456";
                    EXPECT_NE((name == L"A" ? a : b).find(nr[0]), std::wstring::npos);
                }
            }
        }
    }
}

TEST_F(ArticleMasterTest, ANumberThatIsNotFoundInAFileThatKeepsChangingIsAnErrorNotAnAnswer) {
    int reads = 0;
    files.before_read = [&] { files.Put(kPath, Prices(std::to_string(++reads))); };
    EXPECT_EQ(Raised([&] { Price(L"4712"); }).number, 70);
    files.before_read = nullptr;
    EXPECT_EQ(Price(L"4712"), L"unknown");
}

TEST_F(ArticleMasterTest, RowsKeepTheirPricesUntilTheyAreRefreshed) {
    BasketFixture basket;
    basket.Link(L"4711");
    basket.Link(L"4712");
    basket.files.Put(BasketFixture::ArticlePath(),
                     ArticleFile({{"4711", "Eau de Cologne", "200"}, {"4712", "Neu", "300"}}));
    EXPECT_EQ(basket.Cell(1, column::kPreisAts), L"100,00");
    basket.Link(L"4711");
    EXPECT_EQ(basket.Cell(1, column::kPreisAts), L"100,00");
    EXPECT_EQ(basket.Cell(2, column::kPreisAts), L"100,00");
    EXPECT_EQ(basket.Cell(3, column::kPreisAts), L"200,00");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"400,00");
    basket.form.RefreshArtikel(2, -1);
    EXPECT_EQ(basket.Cell(2, column::kPreisAts), L"300,00");
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"Neu");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"600,00");
}

}  // namespace
}  // namespace demovex
