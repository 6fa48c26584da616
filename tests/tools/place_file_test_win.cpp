// The article master is put in place while others have it open.
#include <gtest/gtest.h>
#include <windows.h>

#include "platform/shared_reader_win.h"
#include "tests/support/temp_folder.h"
#include "tools/encodings.h"
#include "tools/files.h"

namespace demovex::tools {
namespace {

TEST(PlaceFile, ReplacesAMasterThatReadersHaveOpenAndMapped) {
    const TempFolder folder;
    const std::wstring path = folder.Put(L"artikel.db", std::string(5400, 'a'));
    {
        WinSharedReader reader(path, SharedReadPolicy());
        ASSERT_EQ(reader.Read(100, 1), "a");
        PlaceFile(ToUtf8(path), std::string(108, 'b'));
        EXPECT_EQ(folder.Get(L"artikel.db"), std::string(108, 'b'));
        // who has the old one open goes on with it
        EXPECT_EQ(reader.Read(5000, 1), "a");
        // (it may still stand beside the new one, where the system keeps an open file's name)
        EXPECT_LE(folder.Count(), 2);
    }
    PlaceFile(ToUtf8(path), std::string(54, 'c'));
    EXPECT_EQ(folder.Get(L"artikel.db"), std::string(54, 'c'));
    EXPECT_EQ(folder.Count(), 1);
}

TEST(PlaceFile, AReaderThatForbidsItKeepsTheFileAsItIs) {
    const TempFolder folder;
    const std::wstring path = folder.Put(L"artikel.db", "old");
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    EXPECT_THROW(PlaceFile(ToUtf8(path), "new"), std::runtime_error);
    CloseHandle(file);
    EXPECT_EQ(folder.Get(L"artikel.db"), "old");
    EXPECT_EQ(folder.Count(), 1);
}

}  // namespace
}  // namespace demovex::tools
