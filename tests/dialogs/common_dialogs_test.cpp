#include "dialogs/common_dialogs.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "tests/support/fake_file_dialogs.h"

namespace demovex {
namespace {

TEST(OpenDialog, WithoutArgumentsShowsTitleOneFilterAndTheHelpButton) {
    FakeFileDialogs dialogs;
    CommonDialogs(dialogs).GetOpenFileName();
    ASSERT_EQ(dialogs.shown.size(), 1u);
    const auto& shown = dialogs.shown[0];
    EXPECT_FALSE(shown.save);
    EXPECT_EQ(shown.request.title, L"Wählen Sie eine Datei");
    EXPECT_EQ(shown.request.filter, L"Alle Dateien (*.*)|*.*");
    EXPECT_EQ(shown.request.filter_index, 1);
    EXPECT_EQ(shown.request.flags, 16u);
    EXPECT_EQ(shown.request.init_dir, L"");
    EXPECT_EQ(shown.request.file_name, L"");
    EXPECT_EQ(shown.request.help_context, 0);
}

TEST(OpenDialog, EachArgumentAddsItsFlag) {
    struct Case {
        bool must_exist, hide_read_only, hide_help, multi;
        std::uint32_t flags;
    };
    const Case cases[] = {
        {false, false, true, false, 0},     {true, false, true, false, 4096},
        {false, true, true, false, 4},      {false, false, false, false, 16},
        {false, false, true, true, 524800}, {true, true, false, true, 4096 + 4 + 16 + 524800},
    };
    for (const Case& c : cases) {
        FakeFileDialogs dialogs;
        CommonDialogs(dialogs).GetOpenFileName({.bFileMustExist = c.must_exist,
                                                .bHideReadOnly = c.hide_read_only,
                                                .bHideHelpButton = c.hide_help,
                                                .bMultiSelect = c.multi});
        EXPECT_EQ(dialogs.shown.at(0).request.flags, c.flags);
    }
}

TEST(OpenDialog, PassesFolderNameTitleFilterAndHelpTopic) {
    FakeFileDialogs dialogs;
    CommonDialogs(dialogs).GetOpenFileName({.InitDir = L"C:\\Körbe",
                                            .InitFileName = L"a.bsk",
                                            .Title = L"Warenkorb öffnen",
                                            .sExtensions = L"Warenkorb Dateien (*.bsk)|*.bsk",
                                            .HelpID = 77});
    const FileDialogRequest& request = dialogs.shown.at(0).request;
    EXPECT_EQ(request.init_dir, L"C:\\Körbe");
    EXPECT_EQ(request.file_name, L"a.bsk");
    EXPECT_EQ(request.title, L"Warenkorb öffnen");
    EXPECT_EQ(request.filter, L"Warenkorb Dateien (*.bsk)|*.bsk");
    EXPECT_EQ(request.help_context, 77);
}

TEST(OpenDialog, GivesTheChosenPath) {
    FakeFileDialogs dialogs;
    dialogs.Choose(L"C:\\Körbe\\a.bsk");
    EXPECT_EQ(CommonDialogs(dialogs).GetOpenFileName(), L"C:\\Körbe\\a.bsk");
}

TEST(OpenDialog, ReadOnlyMeansThatAnyFlagIsLeftSet) {
    for (const std::uint32_t flags : {0u, 1u, 16u, 0x80000u}) {
        FakeFileDialogs dialogs;
        dialogs.Choose(L"C:\\a.bsk", flags);
        bool read_only = flags == 0;  // the opposite of what must come
        CommonDialogs(dialogs).GetOpenFileName({.bReadOnly = &read_only});
        EXPECT_EQ(read_only, flags != 0) << flags;
    }
}

TEST(OpenDialog, SeveralFilesComeAsTheSystemsOwnText) {
    FakeFileDialogs dialogs;
    const std::wstring several(L"C:\\Körbe\0a.bsk\0b.bsk", 20);
    dialogs.Choose(several);
    EXPECT_EQ(CommonDialogs(dialogs).GetOpenFileName({.bMultiSelect = true}), several);
}

TEST(OpenDialog, CancelledGivesTheEmptyTextAndLeavesReadOnlyAlone) {
    FakeFileDialogs dialogs;
    dialogs.answers.push_back({true, L"C:\\half-typed.bsk", 1});
    bool read_only = false;
    EXPECT_EQ(CommonDialogs(dialogs).GetOpenFileName({.bReadOnly = &read_only}), L"");
    EXPECT_FALSE(read_only);
}

TEST(SaveDialog, AsksBeforeOverwritingAndHidesTheReadOnlyBox) {
    FakeFileDialogs dialogs;
    CommonDialogs(dialogs).GetSaveFileName();
    CommonDialogs(dialogs).GetSaveFileName({.bHideHelpButton = true});
    ASSERT_EQ(dialogs.shown.size(), 2u);
    EXPECT_TRUE(dialogs.shown[0].save);
    EXPECT_EQ(dialogs.shown[0].request.flags, 6u + 16u);
    EXPECT_EQ(dialogs.shown[1].request.flags, 6u);
    EXPECT_EQ(dialogs.shown[0].request.title, L"Wählen Sie eine Datei");
    EXPECT_EQ(dialogs.shown[0].request.filter, L"Alle Dateien (*.*)|*.*");
    EXPECT_EQ(dialogs.shown[0].request.filter_index, 1);
}

TEST(SaveDialog, PassesItsArgumentsAndGivesTheChosenPath) {
    FakeFileDialogs dialogs;
    dialogs.Choose(L"D:\\neu.bsk");
    EXPECT_EQ(CommonDialogs(dialogs).GetSaveFileName({.InitDir = L"D:\\",
                                                      .InitFileName = L"neu",
                                                      .Title = L"Speichern",
                                                      .sExtensions = L"A|*.a",
                                                      .HelpID = 3}),
              L"D:\\neu.bsk");
    const FileDialogRequest& request = dialogs.shown.at(0).request;
    EXPECT_EQ(request.init_dir, L"D:\\");
    EXPECT_EQ(request.file_name, L"neu");
    EXPECT_EQ(request.title, L"Speichern");
    EXPECT_EQ(request.filter, L"A|*.a");
    EXPECT_EQ(request.help_context, 3);
}

TEST(SaveDialog, CancelledGivesTheEmptyText) {
    FakeFileDialogs dialogs;
    dialogs.Cancel();
    EXPECT_EQ(CommonDialogs(dialogs).GetSaveFileName(), L"");
}

TEST(FileDialogs, OneThatCannotBeShownIsACancelledOne) {
    struct Broken : IFileDialogs {
        FileDialogResult ShowOpen(const FileDialogRequest&) override { throw Error(7, {}, L"x"); }
        FileDialogResult ShowSave(const FileDialogRequest&) override { throw Error(7, {}, L"x"); }
    } broken;
    EXPECT_EQ(CommonDialogs(broken).GetOpenFileName(), L"");
    EXPECT_EQ(CommonDialogs(broken).GetSaveFileName(), L"");
}

}  // namespace
}  // namespace demovex
