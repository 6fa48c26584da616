// Names and paths: what is decided without a disk.
#include <gtest/gtest.h>

#include "base/error.h"
#include "platform/file_system_tools.h"
#include "tests/support/fake_text_service.h"
#include "tests/support/memory_files.h"
#include "tests/support/raised.h"

namespace demovex {
namespace {

// A save that was ended under an earlier version must be cleared away by this one: the name is for
// good. FNV-1a over the lower-case name, seven digits to the base of 36, lowest first.
TEST(TemporaryName, IsComputedFromTheNameAlone) {
    const FakeTextService text;
    EXPECT_EQ(TemporaryName(text, L"C:\\B\\a.bsk"), L"C:\\B\\~AIAGEMS.dvx");
    EXPECT_EQ(TemporaryName(text, L"D:/x/Montag.bsk"), L"D:/x/~9GA2ZIF.dvx");
    EXPECT_EQ(TemporaryName(text, L"\u00C4.bsk"), L"~HFNU3GM.dvx");
    EXPECT_EQ(TemporaryName(text, L"x.dvx"), L"~71II2UA.dvy");
    EXPECT_NE(TemporaryName(text, L"ab.bsk"), TemporaryName(text, L"ba.bsk"));
}

TEST(FileNames, TheEmptyPathDoesNotExistWhateverTheSystemSays) {
    MemoryFiles files;
    files.AddFolder(L"");
    EXPECT_FALSE(FileExists(files, L""));
}

TEST(SaveFile, APathThatEndsInAFolderOrADriveNamesNoFile) {
    MemoryFiles files;
    const FakeTextService text;
    files.AddFolder(L"C:");
    for (const wchar_t* path : {L"", L"C:", L"C:\\", L"C:\\B/", L"/"}) {
        EXPECT_EQ(RaisedBy([&] { SaveFile(files, text, path, L"x"); }), 75)
            << testing::PrintToString(path);
    }
    EXPECT_TRUE(files.Operations().empty()) << "the disk was not asked";
}

}  // namespace
}  // namespace demovex
