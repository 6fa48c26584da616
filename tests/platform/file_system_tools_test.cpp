#include "platform/file_system_tools.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "base/error.h"
#include "tests/support/fake_text_service.h"
#include "tests/support/memory_files.h"

namespace demovex {
namespace {

using std::chrono::milliseconds;

class FakeClock final : public IRetryClock {
  public:
    milliseconds Now() override { return now; }
    void Wait(milliseconds duration) override {
        now += duration;
        ++waits;
    }
    milliseconds now{0};
    int waits = 0;
};

const std::wstring kTarget = L"C:\\B\\a.bsk";

class SaveFileTest : public testing::Test {
  protected:
    SaveFileTest() { files.AddFolder(L"C:\\B"); }

    void Save(std::wstring_view content) {
        SaveFile(files, text, kTarget, content, {.clock = &clock});
    }
    // The number of the error that a save ends with, 0 for none.
    std::int32_t SaveError(std::wstring_view content, const std::wstring& path = kTarget) {
        try {
            SaveFile(files, text, path, content, {.clock = &clock});
            return 0;
        } catch (const Error& error) {
            return error.number();
        }
    }
    bool OnlyTarget() const { return files.FileCount() == 1 && files.Has(kTarget); }

    MemoryFiles files;
    FakeTextService text;
    FakeClock clock;
};

TEST(FileNames, TheNameIsWhatFollowsTheLastSeparatorOfEitherKind) {
    EXPECT_EQ(GetFileName(L"C:\\a/b\\c.bsk"), L"c.bsk");
    EXPECT_EQ(GetFileName(L"C:\\a\\b/c.bsk"), L"c.bsk");
    EXPECT_EQ(GetFileName(L"c.bsk"), L"c.bsk");
    EXPECT_EQ(GetFileName(L"C:\\a\\"), L"");
    EXPECT_EQ(GetFileName(L""), L"");
}

TEST(FileNames, TheFolderIsWhatStandsBeforeTheLastSeparator) {
    EXPECT_EQ(GetFolderName(L"C:\\a/b\\c.bsk"), L"C:\\a/b");
    EXPECT_EQ(GetFolderName(L"c.bsk"), L"");
    EXPECT_EQ(GetFolderName(L"\\c.bsk"), L"");
    EXPECT_EQ(GetFolderName(L"C:\\a\\"), L"C:\\a");
    EXPECT_EQ(GetFolderName(L""), L"");
}

TEST_F(SaveFileTest, AFolderExistsAndTheEmptyPathDoesNot) {
    files.Put(kTarget, "x");
    EXPECT_TRUE(FileExists(files, kTarget));
    EXPECT_TRUE(FileExists(files, L"C:\\B"));
    EXPECT_FALSE(FileExists(files, L""));
    EXPECT_FALSE(FileExists(files, L"C:\\B\\none.bsk"));
}

TEST_F(SaveFileTest, LoadingReadsTheWholeFileAsAnsiText) {
    files.Put(kTarget, std::string("a\0\xE4\r\n", 5));
    EXPECT_EQ(LoadFile(files, text, kTarget), std::wstring(L"a\0\u00E4\r\n", 5));
    files.Put(kTarget, "");
    EXPECT_EQ(LoadFile(files, text, kTarget), L"");
}

TEST_F(SaveFileTest, LoadingAMissingFileNamesItInTheError) {
    try {
        LoadFile(files, text, L"C:\\B\\none.bsk");
        FAIL() << "no error";
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), -1);
        EXPECT_EQ(error.source(), L"LoadFile");
        EXPECT_EQ(error.description(), L"File 'C:\\B\\none.bsk' not found");
    }
}

TEST_F(SaveFileTest, OtherErrorsOfReadingComeUnchanged) {
    files.Put(kTarget, "x");
    files.FailAt(1, 57);
    try {
        LoadFile(files, text, kTarget);
        FAIL() << "no error";
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), 57);
        EXPECT_EQ(error.description(), L"Device I/O error");
    }
}

TEST_F(SaveFileTest, AShorterContentLeavesNothingOfTheOldFile) {
    files.Put(kTarget, std::string(100, 'x'));
    Save(L"0123456789");
    EXPECT_EQ(files.At(kTarget).bytes, "0123456789");
    EXPECT_TRUE(OnlyTarget());
}

TEST_F(SaveFileTest, ANewFileIsCreatedAlsoAnEmptyOne) {
    Save(L"");
    EXPECT_EQ(files.At(kTarget).bytes, "");
    EXPECT_TRUE(OnlyTarget());
}

TEST_F(SaveFileTest, TheNewContentIsOnTheDiskBeforeItTakesTheTargetsPlace) {
    files.Put(kTarget, "old");
    Save(L"new");
    EXPECT_EQ(files.Operations(), (std::vector<std::string>{"ResolveTarget", "CreateReplacement",
                                                            "Write", "Flush", "TakePlaceOf"}));
}

TEST_F(SaveFileTest, TheTargetsAttributesSurvive) {
    files.Put(kTarget, "old");
    files.At(kTarget).hidden = true;
    Save(L"new");
    EXPECT_TRUE(files.At(kTarget).hidden);
}

TEST_F(SaveFileTest, AReadOnlyTargetIsRefusedAndKept) {
    files.Put(kTarget, "old");
    files.At(kTarget).read_only = true;
    EXPECT_EQ(SaveError(L"new"), 75);
    EXPECT_EQ(files.At(kTarget).bytes, "old");
    EXPECT_TRUE(OnlyTarget());
    EXPECT_EQ(clock.waits, 0);
}

TEST_F(SaveFileTest, AMissingFolderAndAPathWithoutNameAreRefused) {
    EXPECT_EQ(SaveError(L"x", L"C:\\none\\a.bsk"), 76);
    EXPECT_EQ(SaveError(L"x", L""), 75);
    EXPECT_EQ(SaveError(L"x", L"C:\\B\\"), 75);
    EXPECT_EQ(files.FileCount(), 0u);
}

TEST_F(SaveFileTest, AFolderInTheTargetsPlaceIsRefused) {
    files.AddFolder(L"C:\\B\\sub.bsk");
    EXPECT_EQ(SaveError(L"x", L"C:\\B\\sub.bsk"), 75);
    EXPECT_EQ(files.FileCount(), 0u);
}

TEST_F(SaveFileTest, ReplacedCharactersAreReportedAfterSuccessOnly) {
    bool lossy = false;
    SaveFile(files, text, kTarget, L"a\u0416b", {.lossy = &lossy, .clock = &clock});
    EXPECT_TRUE(lossy);
    EXPECT_EQ(files.At(kTarget).bytes, "a?b");

    lossy = false;
    SaveFile(files, text, kTarget, L"\u00E4\u20AC", {.lossy = &lossy, .clock = &clock});
    EXPECT_FALSE(lossy);

    files.FailAt(3, 61);
    EXPECT_THROW(SaveFile(files, text, kTarget, L"\u0416", {.lossy = &lossy, .clock = &clock}),
                 Error);
    EXPECT_FALSE(lossy);

    lossy = true;  // of an earlier save, say
    SaveFile(files, text, kTarget, L"a", {.lossy = &lossy, .clock = &clock});
    EXPECT_TRUE(lossy);
}

TEST_F(SaveFileTest, ALongContentIsWrittenInBlocksAndTellsItsProgress) {
    const std::wstring content(kSaveBlock * 2 + 5, L'x');
    std::vector<double> told;
    SaveFile(files, text, kTarget, content,
             {.progress = [&](double done) { told.push_back(done); }, .clock = &clock});
    EXPECT_EQ(std::ranges::count(files.Operations(), "Write"), 3);
    ASSERT_EQ(told.size(), 3u);
    EXPECT_LT(told[0], told[1]);
    EXPECT_EQ(told[2], 1.0);
    EXPECT_EQ(files.At(kTarget).bytes, std::string(content.size(), 'x'));
}

TEST_F(SaveFileTest, AnErrorInTheProgressIsAnErrorOfTheSave) {
    files.Put(kTarget, "old");
    EXPECT_THROW(SaveFile(files, text, kTarget, L"new",
                          {.progress = [](double) { RaiseRuntimeError(7); }, .clock = &clock}),
                 Error);
    EXPECT_EQ(files.At(kTarget).bytes, "old");
    EXPECT_TRUE(OnlyTarget());
}

TEST_F(SaveFileTest, ATargetHeldForAMomentIsReplacedWhenItIsFree) {
    files.Put(kTarget, "old");
    files.HoldOpen(kTarget, [&] { return clock.now < milliseconds(1900); });
    EXPECT_EQ(SaveError(L"new"), 0);
    EXPECT_EQ(files.At(kTarget).bytes, "new");
    EXPECT_TRUE(OnlyTarget());
    EXPECT_GE(clock.now, milliseconds(1900));
}

TEST_F(SaveFileTest, ATargetHeldForLongEndsTheSaveAfterTwoSeconds) {
    files.Put(kTarget, "old");
    files.HoldOpen(kTarget, [] { return true; });
    EXPECT_EQ(SaveError(L"new"), 70);
    EXPECT_EQ(files.At(kTarget).bytes, "old");
    EXPECT_TRUE(OnlyTarget());
    EXPECT_GE(clock.now, kSaveRetryTime);
    EXPECT_LT(clock.now, kSaveRetryTime + 2 * kSaveRetryPause);
}

// No temporary file can be made for 1.5 s, then the target is held for good.
TEST_F(SaveFileTest, AllRetriesOfASaveShareOneAllowance) {
    files.Put(kTarget, "old");
    files.before = [&](std::string_view operation) {
        if (operation == "CreateReplacement" && clock.now < milliseconds(1500)) {
            RaiseRuntimeError(70);
        }
    };
    files.HoldOpen(kTarget, [&] { return clock.now >= milliseconds(1500); });
    EXPECT_EQ(SaveError(L"new"), 70);
    EXPECT_EQ(std::ranges::count(files.Operations(), "Write"), 1);
    EXPECT_GE(clock.now, kSaveRetryTime);
    EXPECT_LT(clock.now, kSaveRetryTime + 2 * kSaveRetryPause);
    EXPECT_EQ(files.At(kTarget).bytes, "old");
    EXPECT_TRUE(OnlyTarget());
}

TEST_F(SaveFileTest, WhatAnEndedSaveLeftIsRemovedByTheNextToTheSameTarget) {
    files.Put(kTarget, "old");
    files.Put(TemporaryName(text, kTarget), "half of a bas");
    Save(L"new");
    EXPECT_EQ(files.At(kTarget).bytes, "new");
    EXPECT_TRUE(OnlyTarget());
}

TEST_F(SaveFileTest, WhatAnEndedSaveLeftMayGoByItself) {
    files.Put(kTarget, "old");
    files.Put(TemporaryName(text, kTarget), "half of a bas");
    files.before = [&](std::string_view operation) {
        if (operation == "Delete") files.Remove(TemporaryName(text, kTarget));
    };
    EXPECT_EQ(SaveError(L"new"), 0);
    EXPECT_EQ(std::ranges::count(files.Operations(), "Delete"), 1);
    EXPECT_EQ(files.At(kTarget).bytes, "new");
    EXPECT_TRUE(OnlyTarget());
}

TEST_F(SaveFileTest, AFolderWithTheTemporarysNameDoesNotStandInTheWay) {
    files.Put(kTarget, "old");
    files.AddFolder(TemporaryName(text, kTarget));
    Save(L"new");
    EXPECT_EQ(files.At(kTarget).bytes, "new");
    EXPECT_TRUE(OnlyTarget());
    EXPECT_EQ(clock.waits, 0);
}

TEST_F(SaveFileTest, AFileThatCannotBeRemovedDoesNotStandInTheWayEither) {
    files.Put(kTarget, "old");
    files.Put(TemporaryName(text, kTarget), "somebody's");
    files.At(TemporaryName(text, kTarget)).read_only = true;
    Save(L"new");
    EXPECT_EQ(files.At(kTarget).bytes, "new");
    EXPECT_EQ(files.At(TemporaryName(text, kTarget)).bytes, "somebody's");
    EXPECT_EQ(files.FileCount(), 2u);
}

TEST_F(SaveFileTest, OtherTemporaryNamesHaveTheUsualFormAndDiffer) {
    std::vector<std::wstring> names;
    files.Put(TemporaryName(text, kTarget), "somebody's");
    files.At(TemporaryName(text, kTarget)).read_only = true;
    files.before = [&](std::string_view operation) {
        if (operation == "TakePlaceOf") names.push_back(files.Newest());
    };
    for (int i = 0; i < 3; ++i) Save(L"new");
    ASSERT_EQ(names.size(), 3u);
    for (const std::wstring& name : names) {
        EXPECT_EQ(GetFolderName(name), L"C:\\B");
        EXPECT_EQ(GetFileName(name).size(), 12u);
        EXPECT_EQ(GetFileName(name).front(), L'~');
        EXPECT_TRUE(name.ends_with(L".dvx"));
    }
    EXPECT_NE(names[0], names[1]);
    EXPECT_NE(names[1], names[2]);
}

TEST_F(SaveFileTest, WhereALinkLeadsIsWritten) {
    files.AddFolder(L"C:\\Far");
    files.Put(L"C:\\Far\\real.bsk", "old");
    files.Link(kTarget, L"C:\\Far\\real.bsk");
    Save(L"new");
    EXPECT_EQ(files.At(L"C:\\Far\\real.bsk").bytes, "new");
    EXPECT_EQ(files.FileCount(), 1u);
}

TEST_F(SaveFileTest, ATargetThatIsRefusedForAMomentIsTriedAgain) {
    files.Put(kTarget, "old");
    files.before = [&](std::string_view operation) {
        if (operation == "TakePlaceOf" && clock.now < milliseconds(600)) RaiseRuntimeError(75);
    };
    EXPECT_EQ(SaveError(L"new"), 0);
    EXPECT_EQ(files.At(kTarget).bytes, "new");
    EXPECT_GE(clock.now, milliseconds(600));
    files.before = [](std::string_view operation) {
        if (operation == "TakePlaceOf") RaiseRuntimeError(75);
    };
    clock.now = {};
    EXPECT_EQ(SaveError(L"newer"), 75);
    EXPECT_GE(clock.now, kSaveRetryTime);
    EXPECT_LT(clock.now, kSaveRetryTime + 2 * kSaveRetryPause);
    EXPECT_EQ(files.At(kTarget).bytes, "new");
    EXPECT_TRUE(OnlyTarget());
}

TEST_F(SaveFileTest, TheStampIsThatOfTheFileAsItWasWritten) {
    const auto stamp = SaveFile(files, text, kTarget, L"new", {.clock = &clock});
    ASSERT_TRUE(stamp.has_value());
    EXPECT_EQ(stamp, files.Stamp(kTarget));
    files.Put(kTarget, "new");
    EXPECT_NE(stamp, files.Stamp(kTarget));
}

TEST(ShownPaths, AreShortenedInTheMiddleAndHaveNoControlCharacters) {
    const std::wstring hundred = L"C:\\" + std::wstring(97, L'x');
    EXPECT_EQ(ShownPath(hundred), hundred);
    const std::wstring shown = ShownPath(L"C:\\a" + std::wstring(1'000'000, L'x') + L"\\b.bsk");
    EXPECT_EQ(shown.size(), 100u);
    EXPECT_TRUE(shown.starts_with(L"C:\\axxx"));
    EXPECT_NE(shown.find(L" ... "), std::wstring::npos);
    EXPECT_TRUE(shown.ends_with(L"xx\\b.bsk"));
    EXPECT_EQ(ShownPath(L"a\r\nb\tc\x7F", 20), L"a  b c ");
    EXPECT_EQ(ShownPath(std::wstring(1, L'\0') + L"a"), L" a");
    // characters of two units stay whole
    std::wstring pairs;
    while (pairs.size() < 400) pairs += {wchar_t{0xD83D}, wchar_t{0xDE00}};
    for (const wchar_t* before : {L"", L"x"}) {
        const std::wstring cut = ShownPath(before + pairs);
        for (std::size_t i = 0; i < cut.size(); ++i) {
            const bool first = cut[i] == wchar_t{0xD83D};
            if (first) {
                ASSERT_LT(i + 1, cut.size());
            }
            EXPECT_EQ(first, i + 1 < cut.size() && cut[i + 1] == wchar_t{0xDE00}) << i;
        }
    }
}

TEST_F(SaveFileTest, TheTargetsLetterCaseDoesNotMatterForTheTemporaryName) {
    EXPECT_EQ(TemporaryName(text, L"C:\\B\\A.BSK"), TemporaryName(text, L"C:\\B\\a.bsk"));
    EXPECT_NE(TemporaryName(text, L"C:\\B\\b.bsk"), TemporaryName(text, L"C:\\B\\a.bsk"));
}

TEST_F(SaveFileTest, TheTemporaryStandsInTheTargetsFolderUnderAShortName) {
    const std::wstring name = TemporaryName(text, kTarget);
    EXPECT_EQ(GetFolderName(name), L"C:\\B");
    EXPECT_EQ(GetFileName(name).size(), 12u);
    EXPECT_EQ(GetFileName(name).front(), L'~');
    EXPECT_TRUE(name.ends_with(L".dvx"));
    EXPECT_EQ(TemporaryName(text, L"a.bsk").size(), 12u);
    EXPECT_EQ(TemporaryName(text, L"C:a.bsk").substr(0, 3), L"C:~");
    EXPECT_TRUE(TemporaryName(text, L"C:\\B\\~1234567.DVX").ends_with(L".dvy"));
}

TEST_F(SaveFileTest, OtherFilesOfTheFolderAreNeverTouched) {
    files.Put(L"C:\\B\\a.bsk.tmp", "user's");
    files.Put(L"C:\\B\\~a.bsk", "user's");
    files.Put(L"C:\\B\\~AAAAAAA.dvx", "of another basket");
    Save(L"new");
    EXPECT_EQ(files.FileCount(), 4u);
    EXPECT_EQ(files.At(L"C:\\B\\~AAAAAAA.dvx").bytes, "of another basket");
}

TEST_F(SaveFileTest, ASaveThatIsStillRunningElsewhereIsNotDisturbedAndDoesNotStandInTheWay) {
    files.Put(kTarget, "old");
    const auto other = files.CreateNew(TemporaryName(text, kTarget));
    other->Write("theirs");
    EXPECT_EQ(SaveError(L"new"), 0);
    EXPECT_EQ(files.At(TemporaryName(text, kTarget)).bytes, "theirs");
    EXPECT_EQ(files.At(kTarget).bytes, "new");
    other->TakePlaceOf(kTarget);
    EXPECT_EQ(files.At(kTarget).bytes, "theirs");
    EXPECT_TRUE(OnlyTarget());
}

// Each operation of a save fails with each error, once or from then on, over an old file or without
// one, with or without something left by an ended save: old or new, never anything else; and the
// next save leaves the target alone in its folder.
TEST_F(SaveFileTest, AnyOperationFailingLeavesTheOldOrTheNewFile) {
    const std::wstring two_blocks(kSaveBlock + 7, L'n');
    int points = 0;
    int recovered = 0;

    // Returns false when a save has fewer than `n` operations.
    const auto run = [&](bool had_old, bool had_leftover, std::int32_t number, std::size_t times,
                         std::size_t n) {
        MemoryFiles disk;
        FakeClock time;
        // more than one block where that is of interest; converting it is slow here
        const std::wstring content = had_old && !had_leftover ? two_blocks : L"nn";
        disk.AddFolder(L"C:\\B");
        if (had_old) disk.Put(kTarget, "old");
        if (had_leftover) disk.Put(TemporaryName(text, kTarget), "left");
        disk.FailAt(n, number, times);
        std::int32_t raised = 0;
        try {
            SaveFile(disk, text, kTarget, content, {.clock = &time});
        } catch (const Error& error) {
            raised = error.number();
        }
        if (raised == 0 && disk.FailurePending()) return false;
        disk.FailNever();
        ++points;
        if (raised == 0) {
            ++recovered;
            EXPECT_EQ(disk.At(kTarget).bytes, std::string(content.size(), 'n'));
        } else if (had_old) {
            EXPECT_EQ(disk.At(kTarget).bytes, "old");
        } else {
            EXPECT_FALSE(disk.Has(kTarget));
        }
        const std::string failed = disk.Operations()[n - 1];
        if ((number == 70 || number == 75) && times == 1) {
            const bool repeatable = failed == "CreateReplacement" || failed == "Delete" ||
                                    failed == "TakePlaceOf" ||
                                    (number == 70 && failed == "ResolveTarget");
            EXPECT_EQ(raised, repeatable ? 0 : number) << failed;
        }
        // a leftover goes with the next save that can remove it
        if (number == 61 && failed != "Delete") {
            EXPECT_EQ(raised, 61) << failed;
        }

        SaveFile(disk, text, kTarget, L"later", {.clock = &time});
        EXPECT_EQ(disk.At(kTarget).bytes, "later");
        EXPECT_EQ(disk.FileCount(), 1u);
        return true;
    };

    for (const bool had_old : {true, false}) {
        for (const bool had_leftover : {true, false}) {
            for (const std::int32_t number : {61, 75, 70, 76, 57}) {
                for (const std::size_t times : {std::size_t{1}, std::size_t{1000}}) {
                    for (std::size_t n = 1; run(had_old, had_leftover, number, times, n); ++n) {
                        ASSERT_FALSE(HasFailure())
                            << "operation " << n << " with " << number << ", " << times << " times";
                    }
                }
            }
        }
    }
    EXPECT_GT(recovered, 0);
    EXPECT_EQ(points, 250);
    std::printf("save under faults: %d points covered, %d recovered by trying again\n", points,
                recovered);
}

}  // namespace
}  // namespace demovex
