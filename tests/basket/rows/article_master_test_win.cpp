// Price updates during the day, on a real disk: other programs replace and rewrite the article
// master while it is in use.
#include <gtest/gtest.h>

#include <windows.h>

#include <atomic>
#include <cstdio>
#include <string>
#include <thread>

#include "basket/rows/article_master.h"
#include "platform/files_win.h"
#include "platform/handle_win.h"
#include "platform/text_win.h"
#include "tests/support/basket_fixture.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace demovex {
namespace {

std::string Numbered(const std::string& name, int count) {
    std::vector<TestArticle> articles;
    for (int i = 0; i < count; ++i) {
        articles.push_back({std::to_string(10'000 + i), name, name + std::to_string(i)});
    }
    return ArticleFile(articles);
}

struct PriceUpdate : testing::Test {
    PriceUpdate() {
        folder.Put(L"artikel.db", Numbered("A", 1000));
        master.Open(path);
    }
    std::wstring Price(int nr) {
        std::wstring name, price;
        return master.LookUpArtikelNr(std::to_wstring(nr), name, price) ? price : L"unknown";
    }
    // As an updater rewrites a file: emptied, then written in several steps. The system's error
    // code, 0 for none.
    DWORD Rewrite(const std::string& bytes) {
        const UniqueHandle file =
            OwnFile(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                nullptr, TRUNCATE_EXISTING, 0, nullptr));
        if (!file) return GetLastError();
        for (std::size_t at = 0; at < bytes.size(); at += 10'000) {
            const std::string_view piece = std::string_view(bytes).substr(at, 10'000);
            DWORD written = 0;
            if (!WriteFile(file.get(), piece.data(), static_cast<DWORD>(piece.size()), &written,
                           nullptr)) {
                return GetLastError();
            }
        }
        return 0;
    }
    DWORD PutInPlace(const std::string& bytes) {
        folder.Put(L"neu.db", bytes);
        return MoveFileExW((folder / L"neu.db").c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING)
                   ? 0
                   : GetLastError();
    }

    TempFolder folder;
    const std::wstring path = folder / L"artikel.db";
    WinFileSystem files;
    WinTextService text;
    ArticleMaster master{files, text};
};

TEST_F(PriceUpdate, AFileInUseCanBeRewrittenAndReplaced) {
    EXPECT_EQ(Price(10'500), L"A500");
    EXPECT_EQ(Rewrite(Numbered("B", 800)), 0u);
    EXPECT_EQ(Price(10'500), L"B500");
    EXPECT_EQ(Price(10'900), L"unknown");
    EXPECT_EQ(PutInPlace(Numbered("C", 1200)), 0u);
    EXPECT_EQ(Price(10'500), L"C500");
    EXPECT_EQ(Price(11'199), L"C1199");
    // also after a load, which reads through a map of the file
    master.BeginSeries();
    for (int i = 0; i < 200; ++i) ASSERT_EQ(Price(10'000 + i), L"C" + std::to_wstring(i));
    master.EndSeries();
    EXPECT_EQ(Rewrite(Numbered("D", 1000)), 0u);
    EXPECT_EQ(Price(10'500), L"D500");
    EXPECT_EQ(PutInPlace(Numbered("E", 1000)), 0u);
    EXPECT_EQ(Price(10'500), L"E500");
}

TEST_F(PriceUpdate, AnOldFileThatWasRenamedServesUntilTheNewOneIsWhole) {
    EXPECT_EQ(Price(10'500), L"A500");
    ASSERT_TRUE(MoveFileExW(path.c_str(), (folder / L"artikel.old").c_str(), 0));
    EXPECT_EQ(Price(10'500), L"A500");
    folder.Put(L"artikel.db", Numbered("B", 1000).substr(0, 5000));
    EXPECT_EQ(Price(10'500), L"A500");
    folder.Put(L"artikel.db", std::string(54'000, '\0'));
    EXPECT_EQ(Price(10'500), L"A500");
    folder.Put(L"artikel.db", Numbered("B", 1000));
    EXPECT_EQ(Price(10'500), L"B500");
    EXPECT_TRUE(DeleteFileW((folder / L"artikel.old").c_str())) << "nobody holds the old one";
}

// Two updates after each order, in the midst of the next one.
TEST_F(PriceUpdate, OrdersDuringUpdatesAreAnsweredFromOneFileOrTheOther) {
    const std::string a = Numbered("A", 1000), b = Numbered("B", 1500);
    std::atomic<int> orders{0};
    std::atomic<bool> over{false};
    int updates = 0;
    std::thread updater([&] {
        for (int done = -1; !over; ++updates) {
            while (orders == done && !over) std::this_thread::yield();
            done = orders;
            const std::string& next = updates % 2 == 0 ? b : a;
            const DWORD code = updates % 3 == 0 ? PutInPlace(next) : Rewrite(next);
            // a look-up that is just reading holds the file for its moment
            EXPECT_TRUE(code == 0 || code == ERROR_ACCESS_DENIED) << code;
        }
    });
    int found = 0, unknown = 0, refused = 0;
    for (int i = 0; i < 400; ++i) {
        const int nr = 10'000 + i * 7 % 1500;
        std::wstring name, price;
        bool is_found = false;
        if (RaisedBy([&] {
                is_found = master.LookUpArtikelNr(std::to_wstring(nr), name, price);
            }) != 0) {
            ++refused;
        } else if (is_found) {
            ++found;
            EXPECT_EQ(price, name + std::to_wstring(nr - 10'000));
            EXPECT_TRUE(name == L"B" || nr < 11'000) << nr;
        } else {
            ++unknown;
            EXPECT_GE(nr, 11'000);  // only A lacks it
        }
        ++orders;
    }
    over = true;
    updater.join();
    EXPECT_GT(found, 200);
    EXPECT_GT(updates, 100);
    EXPECT_LT(refused, 10);
    std::printf("orders during %d updates: %d found, %d unknown, %d refused\n", updates, found,
                unknown, refused);
}

}  // namespace
}  // namespace demovex
