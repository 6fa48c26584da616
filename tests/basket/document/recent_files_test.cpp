#include "basket/document/recent_files.h"

#include <gtest/gtest.h>

#include "tests/support/files_fixture.h"

namespace demovex {
namespace {

class RecentFilesTest : public testing::Test, protected FilesFixture {
  protected:
    std::vector<std::wstring> Stored() const {
        std::vector<std::wstring> paths;
        for (const wchar_t* key : {L"File1", L"File2", L"File3", L"File4"}) {
            paths.push_back(settings.Get(L"LRU", key, L"<none>"));
        }
        return paths;
    }
    void Store(std::vector<std::wstring> paths) {
        for (std::size_t i = 0; i < paths.size(); ++i) {
            settings.Set(L"LRU", L"File" + std::to_wstring(i + 1), paths[i]);
        }
    }
    using Paths = std::vector<std::wstring>;
};

TEST_F(RecentFilesTest, ANewPathEntersAtTheHeadAndPushesTheOthersDown) {
    recent.AddRecentFile(L"a");
    recent.AddRecentFile(L"b");
    EXPECT_EQ(Stored(), (Paths{L"b", L"a", L"", L""}));
}

TEST_F(RecentFilesTest, AFifthPathDropsTheOldest) {
    Store({L"1", L"2", L"3", L"4"});
    recent.AddRecentFile(L"5");
    EXPECT_EQ(Stored(), (Paths{L"5", L"1", L"2", L"3"}));
}

TEST_F(RecentFilesTest, APathOfTheListMovesToTheHeadAndTheOnesBelowItStay) {
    Store({L"1", L"2", L"3", L"4"});
    recent.AddRecentFile(L"3");
    EXPECT_EQ(Stored(), (Paths{L"3", L"1", L"2", L"4"}));
    recent.AddRecentFile(L"3");
    EXPECT_EQ(Stored(), (Paths{L"3", L"1", L"2", L"4"}));
}

TEST_F(RecentFilesTest, LetterCaseDoesNotMatterAndTheNewOneIsStored) {
    Store({L"C:\\x.bsk", L"C:\\Körbe\\Ä.bsk"});
    recent.AddRecentFile(L"c:\\KÖRBE\\ä.BSK");
    EXPECT_EQ(Stored(), (Paths{L"c:\\KÖRBE\\ä.BSK", L"C:\\x.bsk", L"<none>", L"<none>"}));
}

TEST_F(RecentFilesTest, TheMenusAreRebuiltForANewPathOnly) {
    recent.AddRecentFile(L"a");
    recent.AddRecentFile(L"b");
    EXPECT_EQ(recent.Tag(1), L"b");
    recent.AddRecentFile(L"a");
    EXPECT_EQ(Stored(), (Paths{L"a", L"b", L"", L""}));
    EXPECT_EQ(recent.Tag(1), L"b");
    EXPECT_EQ(view.menu_captions[Command::mnuDateiLRU1], L"&1 b");
    recent.AddRecentFile(L"c");
    EXPECT_EQ(recent.Tag(1), L"c");
    EXPECT_EQ(recent.Tag(2), L"a");
}

TEST_F(RecentFilesTest, BothMenusShowThePathsBehindTheirNumbers) {
    Store({L"C:\\a.bsk", L"C:\\b.bsk"});
    recent.RefreshRecentFiles();
    EXPECT_EQ(view.menu_captions[Command::mnuDateiLRU1], L"&1 C:\\a.bsk");
    EXPECT_EQ(view.menu_captions[Command::mnuDateiLRU2], L"&2 C:\\b.bsk");
    EXPECT_EQ(view.menu_captions[Command::mnuContextSendTo1], L"&1 Selektion senden an C:\\a.bsk");
    EXPECT_EQ(view.menu_captions[Command::mnuContextSendTo2], L"&2 Selektion senden an C:\\b.bsk");
    EXPECT_TRUE(view.menu_states[Command::mnuDateiLRU2].visible);
    EXPECT_FALSE(view.menu_states[Command::mnuDateiLRU3].visible);
    EXPECT_TRUE(view.menu_states[Command::mnuContextSendTo2].visible);
    EXPECT_FALSE(view.menu_states[Command::mnuContextSendTo4].visible);
    EXPECT_TRUE(view.menu_states[Command::mnuDelLRUHeader].visible);
    EXPECT_EQ(recent.Tag(3), L"");
}

TEST_F(RecentFilesTest, AnEmptyListHidesEntriesAndSeparator) {
    recent.RefreshRecentFiles();
    EXPECT_FALSE(view.menu_states[Command::mnuDateiLRU1].visible);
    EXPECT_FALSE(view.menu_states[Command::mnuContextSendTo1].visible);
    EXPECT_FALSE(view.menu_states[Command::mnuDelLRUHeader].visible);
}

// The separator follows the first entry alone, also when another slot is filled.
TEST_F(RecentFilesTest, AHoleAtTheHeadHidesTheSeparator) {
    Store({L"", L"b"});
    recent.RefreshRecentFiles();
    EXPECT_FALSE(view.menu_states[Command::mnuDelLRUHeader].visible);
    EXPECT_TRUE(view.menu_states[Command::mnuDateiLRU2].visible);
}

TEST_F(RecentFilesTest, AnIndexBeyondTheFourEntriesIsRefused) {
    EXPECT_EQ(RaisedBy([&] { recent.Tag(0); }), 9);
    EXPECT_EQ(RaisedBy([&] { recent.Tag(5); }), 9);
}

TEST_F(RecentFilesTest, SettingsThatRefuseLeaveTheListAndTheMenusAsTheyWere) {
    Store({L"1", L"2", L"3", L"4"});
    recent.RefreshRecentFiles();
    settings.refuse = true;
    recent.AddRecentFile(L"5");
    EXPECT_EQ(Stored(), (Paths{L"1", L"2", L"3", L"4"}));
    EXPECT_EQ(recent.Tag(1), L"1");
    // also a store that refuses in the midst of it
    settings.refuse = false;
    for (const wchar_t* refused : {L"File1", L"File2", L"File4"}) {
        settings.refused_key = refused;
        recent.AddRecentFile(L"5");
        EXPECT_EQ(Stored(), (Paths{L"1", L"2", L"3", L"4"})) << refused;
        EXPECT_EQ(recent.Tag(1), L"1");
    }
    settings.refused_key.clear();
    recent.AddRecentFile(L"5");
    EXPECT_EQ(Stored(), (Paths{L"5", L"1", L"2", L"3"}));
}

TEST_F(RecentFilesTest, MenusShowAPathInOneShortLineWithAllItsAmpersands) {
    Store({L"C:\\R&D\\A && B.bsk", L"C:\\a\tStrg+X\r\nb.bsk",
           L"C:\\" + std::wstring(1'000'000, L'x') + L"\\ende.bsk",
           L"C:\\" + std::wstring(73, L'y') + L".bsk"});
    recent.RefreshRecentFiles();
    const auto caption = [&](Command first, int slot) {
        return view.menu_captions[static_cast<Command>(static_cast<int>(first) + slot - 1)];
    };
    EXPECT_EQ(caption(Command::mnuDateiLRU1, 1), L"&1 C:\\R&&D\\A &&&& B.bsk");
    EXPECT_EQ(caption(Command::mnuContextSendTo1, 1),
              L"&1 Selektion senden an C:\\R&&D\\A &&&& B.bsk");
    EXPECT_EQ(caption(Command::mnuDateiLRU1, 2), L"&2 C:\\a Strg+X  b.bsk");
    const std::wstring shortened = caption(Command::mnuDateiLRU1, 3);
    EXPECT_EQ(shortened.size(), 3u + 80u);
    EXPECT_TRUE(shortened.starts_with(L"&3 C:\\xxx"));
    EXPECT_TRUE(shortened.ends_with(L"xxx\\ende.bsk"));
    EXPECT_NE(shortened.find(L" ... "), std::wstring::npos);
    EXPECT_EQ(caption(Command::mnuDateiLRU1, 4), L"&4 " + recent.Tag(4));  // 80 characters
    // what is opened is the path itself
    EXPECT_EQ(recent.Tag(2), L"C:\\a\tStrg+X\r\nb.bsk");
    EXPECT_EQ(recent.Tag(3).size(), 1'000'012u);
}

}  // namespace
}  // namespace demovex
