// The file systems that native tests of other floors stand on.
#include "tests/support/std_file_system.h"

#include <gtest/gtest.h>

#include "tests/support/faulty_file_system.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace demovex {
namespace {

struct StdFiles : testing::Test {
    TempFolder folder;
    StdFileSystem files;
};

TEST_F(StdFiles, FindWhatADirectorySearchFinds) {
    folder.Put(L"basket.bsk", "x");
    EXPECT_TRUE(files.Exists(folder / L"basket.bsk"));
    EXPECT_TRUE(files.Exists(FromNativePath(folder.path())));
    EXPECT_TRUE(files.Exists(folder / L"*.bsk"));
    EXPECT_TRUE(files.Exists(folder / L"bas?et.*"));
    EXPECT_FALSE(files.Exists(folder / L"*.txt"));
    EXPECT_FALSE(files.Exists(folder / L"none"));
    EXPECT_FALSE(files.Exists(folder / L"none\\none"));
    EXPECT_FALSE(files.Exists(L""));
}

TEST_F(StdFiles, WriteAppendReadAndDelete) {
    const std::string all("a\0b\r\n\xFF", 6);
    auto file = files.CreateNew(folder / L"\u00FCber.bsk");
    file->Write(all);
    file->Flush();
    file->Close();
    EXPECT_EQ(files.ReadWhole(folder / L"\u00FCber.bsk"), all);
    EXPECT_EQ(RaisedBy([&] { files.CreateNew(folder / L"\u00FCber.bsk"); }), 75);
    files.OpenAppend(folder / L"\u00FCber.bsk")->Write("more");
    EXPECT_EQ(files.ReadWhole(folder / L"\u00FCber.bsk"), all + "more");
    files.OpenAppend(folder / L"new")->Write("1");
    EXPECT_EQ(folder.Get(L"new"), "1");
    files.Delete(folder / L"new");
    EXPECT_EQ(folder.Get(L"new"), "<missing>");
    EXPECT_EQ(RaisedBy([&] { files.Delete(folder / L"new"); }), 53);
    EXPECT_EQ(RaisedBy([&] { files.ReadWhole(folder / L"none\\none"); }), 76);
    EXPECT_EQ(RaisedBy([&] { files.CreateNew(folder / L"none\\none"); }), 76);
}

TEST_F(StdFiles, ReplaceInOneStepAndRefuseReadOnlyTargets) {
    folder.Put(L"old", "old");
    const auto replace = [&](const wchar_t* target) {
        auto file = files.CreateReplacement(folder / L"new", folder / target);
        file->Write("new");
        const auto stamp = file->TakePlaceOf(folder / target);
        EXPECT_EQ(stamp, files.Stamp(folder / target));
        EXPECT_TRUE(stamp.has_value());
    };
    folder.SetReadOnly(L"old", true);
    EXPECT_EQ(RaisedBy([&] { files.ResolveTarget(folder / L"old"); }), 75);
    EXPECT_EQ(RaisedBy([&] { replace(L"old"); }), 75);
    EXPECT_EQ(RaisedBy([&] { files.Delete(folder / L"old"); }), 75);
    EXPECT_EQ(RaisedBy([&] { files.OpenAppend(folder / L"old"); }), 75);
    EXPECT_EQ(folder.Get(L"old"), "old");
    files.Delete(folder / L"new");
    folder.SetReadOnly(L"old", false);
    replace(L"old");
    EXPECT_EQ(folder.Get(L"old"), "new");
    EXPECT_EQ(folder.Count(), 1);
    replace(L"elsewhere");
    EXPECT_EQ(folder.Get(L"elsewhere"), "new");
    files.CreateNew(folder / L"unwanted")->Discard();
    EXPECT_EQ(folder.Count(), 2);
}

TEST_F(StdFiles, ReadAnywhereAndRaiseBehindTheEnd) {
    folder.Put(L"data", "0123456789");
    auto reader = files.OpenShared(folder / L"data");
    EXPECT_EQ(reader->Size(), 10u);
    EXPECT_EQ(reader->Read(7, 3), "789");
    EXPECT_EQ(reader->Read(0, 2), "01");
    EXPECT_EQ(RaisedBy([&] { reader->Read(8, 3); }), 57);
    folder.Put(L"data", "012");
    EXPECT_EQ(RaisedBy([&] { reader->Read(7, 3); }), 57);
    EXPECT_EQ(RaisedBy([&] { files.OpenShared(folder / L"none"); }), 53);
}

TEST_F(StdFiles, FaultyOnesFailAtTheChosenOperationOnly) {
    FaultyFileSystem faulty(files);
    faulty.FailAt(2, runtime_error::kDiskFull);
    auto file = faulty.CreateNew(folder / L"a");
    EXPECT_EQ(RaisedBy([&] { file->Write("12345678"); }), 61);
    file->Write("x");
    file->Close();
    EXPECT_EQ(folder.Get(L"a"), "x");
    EXPECT_EQ(faulty.count(), 4);
    EXPECT_EQ(faulty.log().back(), FileOperation::kClose);
}

TEST_F(StdFiles, FaultyOnesStayDeadAfterTheKill) {
    FaultyFileSystem faulty(files);
    faulty.KillAt(3);
    auto file = faulty.CreateNew(folder / L"a");
    file->Write("12");
    EXPECT_THROW(file->Flush(), Killed);
    EXPECT_THROW(file->Write("34"), Killed);
    EXPECT_THROW(faulty.Delete(folder / L"a"), Killed);
    file.reset();
    EXPECT_EQ(folder.Get(L"a"), "12");
    EXPECT_TRUE(faulty.killed());
    EXPECT_EQ(faulty.count(), 3);
}

}  // namespace
}  // namespace demovex
