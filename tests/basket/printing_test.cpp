#include "basket/printing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "basket/rows/columns.h"
#include "tests/support/fake_printer.h"
#include "tests/support/grid_dump.h"
#include "tests/support/grid_event_log.h"

namespace demovex {
namespace {

struct RecordingMessageBox : IMessageBox {
    struct Shown {
        std::wstring text, title;
        MessageButtons buttons;
        MessageIcon icon;
    };
    std::vector<Shown> shown;
    std::function<void()> while_open;
    MessageAnswer Show(std::wstring_view text, std::wstring_view title, MessageButtons buttons,
                       MessageIcon icon) override {
        shown.push_back({std::wstring(text), std::wstring(title), buttons, icon});
        if (while_open) while_open();
        return MessageAnswer::kOk;
    }
};

// A basket of `lines` article lines and everything that printing touches.
struct PrintingTest : ::testing::Test {
    FlexGrid grid;
    FakePrinter printer;
    RecordingMessageBox messages;
    std::vector<std::string> events;
    std::vector<std::wstring> status{L"Katalog Seite 7"};
    Printing printing{grid,
                      printer,
                      messages,
                      {[this] { events.push_back("commit"); },
                       [] { return std::wstring(L"Vexmart Demo Warenkorb 1.1 - März.bsk"); },
                       [this] { return status.back(); },
                       [this](std::wstring_view text) { status.emplace_back(text); },
                       [this] { events.push_back("paint"); }}};

    PrintingTest() {
        grid.SetCols(column::kCount);
        Fill(0);
    }

    void Fill(std::int32_t lines) {
        grid.SetRows(2);
        for (std::int32_t c = 0; c < column::kCount; ++c) {
            grid.SetColWidth(c, kColumns[static_cast<std::size_t>(c)].width);
            grid.SetTextMatrix(0, c, kColumns[static_cast<std::size_t>(c)].caption);
            grid.SetTextMatrix(1, c, L"");
        }
        if (lines > 0) grid.AddItem(1, lines);
        for (std::int32_t r = 1; r <= lines; ++r) {
            grid.SetTextMatrix(r, 0, std::to_wstring(r));
            grid.SetTextMatrix(r, 1, L"A" + std::to_wstring(r));
            grid.SetTextMatrix(r, 2, L"Artikel " + std::to_wstring(r));
            grid.SetTextMatrix(r, 3, L"2");
            grid.SetTextMatrix(r, 6, L"hidden");
            grid.SetTextMatrix(r, 8, L"1.234,50");
        }
        const std::int32_t totals = grid.Rows() - 1;
        grid.SetTextMatrix(totals, 2, L"Gesamt");
        grid.SetTextMatrix(totals, 8, L"9.999,00");
    }

    // Where `text` stands on a page; fails the test when it does not.
    FakePrinter::PrintedText Find(std::size_t page, std::wstring_view text) {
        for (const auto& printed : printer.pages.at(page).texts) {
            if (printed.text == text) return printed;
        }
        ADD_FAILURE() << "not on page " << page + 1 << ": "
                      << std::string(text.begin(), text.end());
        return {};
    }
    bool Has(std::size_t page, std::wstring_view text) {
        for (const auto& printed : printer.pages.at(page).texts) {
            if (printed.text == text) return true;
        }
        return false;
    }
};

// 10 point text is 200 twips high on the fake printer, so a line is 320; on its A4 page of 16358
// twips 51 - 6 = 45 lines find room.
constexpr std::int32_t kLine = 320;
constexpr std::int32_t kPerPage = 45;

TEST_F(PrintingTest, AnEmptyBasketPrintsTitleFooterHeaderAndTotalsOnOnePage) {
    printing.mnuDateiDrucken_Click();
    ASSERT_EQ(printer.pages.size(), 1u);
    EXPECT_EQ(printer.ended, 1);
    EXPECT_EQ(printer.aborted, 0);
    EXPECT_TRUE(messages.shown.empty());
    const auto& texts = printer.pages[0].texts;
    std::vector<std::wstring> words;
    for (const auto& text : texts) words.push_back(text.text);
    const std::vector<std::wstring> expected = {
        L"Warenkorb",  L"Seite 1 von 1", L"ArtNr",     L"Bezeichnung", L"Menge",   L"Preis ATS",
        L"Preis EURO", L"Gesamt ATS",    L"Ges. EURO", L"Gesamt",      L"9.999,00"};
    EXPECT_EQ(words, expected);
    // two rows of eight visible cells
    EXPECT_EQ(printer.pages[0].frames.size(), 16u);
}

TEST_F(PrintingTest, TheDocumentIsNamedAfterTheWindowAndTheEditIsCommittedFirst) {
    printing.mnuDateiDrucken_Click();
    EXPECT_EQ(printer.document, L"Vexmart Demo Warenkorb 1.1 - März.bsk");
    EXPECT_EQ(events.front(), "commit");
    EXPECT_EQ(std::count(events.begin(), events.end(), "commit"), 1);
}

TEST_F(PrintingTest, ColumnsShareNinetyPercentOfThePageFromSixPercentOn) {
    printer.page_width = 10000;
    const PrintLayout layout = LayOutPages(grid, 10000, 16358, 200);
    // 400 + 1000 + 2470 + 800 + 1085 + 1085 + 1135 + 1135 = 9110; 9000 twips to share
    const std::vector<std::int32_t> expected = {600,  995,  1982, 4422, 5212, 6283,
                                                7354, 7354, 7354, 8475, 9596};
    EXPECT_EQ(layout.x, expected);
}

TEST_F(PrintingTest, TheLeftMarginIsRoundedWithHalvesToEven) {
    // 175 x 0.06 is 10.5, 225 x 0.06 is 13.5
    EXPECT_EQ(LayOutPages(grid, 175, 16358, 200).x.front(), 10);
    EXPECT_EQ(LayOutPages(grid, 225, 16358, 200).x.front(), 14);
    EXPECT_EQ(LayOutPages(grid, 11424, 16358, 200).x.front(), 685);  // 685.44
}

// The share is made a whole number, halves to even, and only then divided.
TEST_F(PrintingTest, AColumnsShareIsAWholeNumberBeforeItIsDivided) {
    for (std::int32_t c = 0; c < grid.Cols(); ++c) grid.SetColWidth(c, 0);
    grid.SetColWidth(1, 1);
    grid.SetColWidth(2, 4);
    EXPECT_EQ(LayOutPages(grid, 5, 16358, 200).width(1), 0);  // 4.5 is 4, not 5; by 5
    grid.SetColWidth(1, 3);
    grid.SetColWidth(2, 11);
    EXPECT_EQ(LayOutPages(grid, 5, 16358, 200).width(1), 1);  // 13.5 is 14, not 13; by 14
}

TEST_F(PrintingTest, ALineIsAsHighAsTheBodyTypeWhateverThePrinterBeginsWith) {
    struct Large : FakePrinter {
        std::unique_ptr<IPrintJob> Begin(std::wstring_view name) override {
            std::unique_ptr<IPrintJob> job = FakePrinter::Begin(name);
            job->SetFont(24, true);
            return job;
        }
    } large;
    Printing other(grid, large, messages,
                   {[] {}, [] { return std::wstring(); }, [] { return std::wstring(); },
                    [](std::wstring_view) {}, [] {}});
    other.mnuDateiDrucken_Click();
    ASSERT_EQ(large.pages.size(), 1u);
    EXPECT_EQ(large.pages[0].texts[0].y, kLine);
}

TEST_F(PrintingTest, AColumnWhosePrintedWidthIsZeroIsNotFramed) {
    grid.SetColWidth(1, 1);
    grid.SetColWidth(2, 900'000);
    printing.mnuDateiDrucken_Click();
    ASSERT_EQ(LayOutPages(grid, printer.page_width, printer.page_height, 200).width(1), 0);
    for (const auto& frame : printer.pages.at(0).frames) EXPECT_LT(frame.left, frame.right);
    EXPECT_FALSE(Has(0, L"ArtNr"));
}

TEST_F(PrintingTest, TitleStandsOneLineDownBoldInSixteenPoints) {
    printing.mnuDateiDrucken_Click();
    EXPECT_EQ(printer.pages[0].texts[0],
              (FakePrinter::PrintedText{685, kLine, L"Warenkorb", 16, true}));
}

TEST_F(PrintingTest, FooterEndsAtTheTablesRightEdgeAboveTheFoot) {
    printing.mnuDateiDrucken_Click();
    const PrintLayout layout = LayOutPages(grid, printer.page_width, printer.page_height, 200);
    const auto footer = Find(0, L"Seite 1 von 1");
    EXPECT_EQ(footer.points, 12);
    EXPECT_FALSE(footer.bold);
    EXPECT_EQ(footer.x + printer.WidthOf(footer.text, 12, false), layout.x.back());
    EXPECT_EQ(footer.y, 16358 - 240 - kLine);
}

TEST_F(PrintingTest, HeaderLineIsBoldFramedAndLeftAligned) {
    printing.mnuDateiDrucken_Click();
    const PrintLayout layout = LayOutPages(grid, printer.page_width, printer.page_height, 200);
    const std::int32_t y = 896;  // 320 x 2.8
    EXPECT_EQ(printer.pages[0].frames[0],
              (FakePrinter::PrintedFrame{layout.x[0], y, layout.x[1], y + kLine}));
    const auto menge = Find(0, L"Menge");
    EXPECT_EQ(menge, (FakePrinter::PrintedText{layout.x[3] + 45, y + 30, L"Menge", 10, true}));
}

TEST_F(PrintingTest, TheHeaderLinesPlaceIsRoundedToAWholeTwip) {
    printer.extra_height = 1;  // lines of 321 twips: 321 x 2.8 = 898.8
    printing.mnuDateiDrucken_Click();
    EXPECT_EQ(printer.pages[0].frames[0].top, 899);
    EXPECT_EQ(printer.pages[0].frames[0].bottom, 899 + 321);
    EXPECT_EQ(Find(0, L"Warenkorb").y, 321);
}

TEST_F(PrintingTest, BodyTextsStandLeftUpToTheDescriptionAndRightAfterIt) {
    Fill(2);
    printing.mnuDateiDrucken_Click();
    const PrintLayout layout = LayOutPages(grid, printer.page_width, printer.page_height, 200);
    const std::int32_t y = 896 + 2 * kLine + 30;  // the second line
    EXPECT_EQ(Find(0, L"2").y, y - kLine);        // quantity of line 1 comes first
    EXPECT_EQ(Find(0, L"A2"), (FakePrinter::PrintedText{layout.x[1] + 45, y, L"A2", 10, false}));
    EXPECT_EQ(Find(0, L"Artikel 2").x, layout.x[2] + 45);
    for (const auto& text : printer.pages[0].texts) {
        if (text.text != L"1.234,50") continue;
        EXPECT_EQ(text.x, layout.x[9] - 45 - printer.WidthOf(L"1.234,50", 10, false));
        EXPECT_FALSE(text.bold);
    }
}

TEST_F(PrintingTest, NeighbouringFramesShareTheirEdges) {
    Fill(3);
    printing.mnuDateiDrucken_Click();
    const auto& frames = printer.pages[0].frames;
    ASSERT_EQ(frames.size(), 5u * 8u);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (i % 8 != 0) {
            EXPECT_EQ(frames[i].left, frames[i - 1].right);
        }
        if (i >= 8) {
            EXPECT_EQ(frames[i].top, frames[i - 8].bottom);
            EXPECT_EQ(frames[i].left, frames[i - 8].left);
        }
        EXPECT_EQ(frames[i].bottom - frames[i].top, kLine);
    }
}

TEST_F(PrintingTest, HiddenColumnsTakeNoRoomAndAreNotPrinted) {
    Fill(1);
    printing.mnuDateiDrucken_Click();
    EXPECT_FALSE(Has(0, L"hidden"));
    EXPECT_FALSE(Has(0, L"Katalog"));
    for (const auto& frame : printer.pages[0].frames) EXPECT_LT(frame.left, frame.right);
}

TEST_F(PrintingTest, TheTotalsLineIsBoldAndLast) {
    Fill(3);
    printing.mnuDateiDrucken_Click();
    const auto gesamt = Find(0, L"Gesamt");
    EXPECT_TRUE(gesamt.bold);
    EXPECT_EQ(gesamt.points, 10);
    EXPECT_EQ(gesamt.y, 896 + 4 * kLine + 30);
    EXPECT_EQ(printer.pages[0].texts.back().text, L"9.999,00");
    EXPECT_FALSE(Find(0, L"A3").bold);
}

TEST_F(PrintingTest, ABasketThatExactlyFillsAPagePrintsTheTotalsAloneOnASecond) {
    Fill(kPerPage);
    printing.mnuDateiDrucken_Click();
    ASSERT_EQ(printer.pages.size(), 2u);
    EXPECT_EQ(printer.pages[0].frames.size(), (kPerPage + 1u) * 8u);
    EXPECT_EQ(printer.pages[1].frames.size(), 2u * 8u);
    EXPECT_TRUE(Has(0, L"A45"));
    EXPECT_FALSE(Has(0, L"Gesamt"));
    EXPECT_TRUE(Find(1, L"Gesamt").bold);
    EXPECT_EQ(Find(1, L"Gesamt").y, 896 + kLine + 30);
}

TEST_F(PrintingTest, OneLineLessKeepsTheTotalsOnTheFirstPage) {
    Fill(kPerPage - 1);
    printing.mnuDateiDrucken_Click();
    ASSERT_EQ(printer.pages.size(), 1u);
    EXPECT_TRUE(Has(0, L"A44"));
    EXPECT_TRUE(Has(0, L"Gesamt"));
}

TEST_F(PrintingTest, ThreePagesCarryTheirNumbersAndEveryLineOnce) {
    Fill(2 * kPerPage + 7);
    printing.mnuDateiDrucken_Click();
    ASSERT_EQ(printer.pages.size(), 3u);
    for (std::size_t p = 0; p < 3; ++p) {
        EXPECT_TRUE(Has(p, L"Seite " + std::to_wstring(p + 1) + L" von 3"));
        EXPECT_TRUE(Has(p, L"Warenkorb"));
        EXPECT_TRUE(Has(p, L"ArtNr"));
    }
    for (std::int32_t line = 1; line <= 2 * kPerPage + 7; ++line) {
        int times = 0;
        for (const auto& page : printer.pages) {
            for (const auto& text : page.texts) times += text.text == L"A" + std::to_wstring(line);
        }
        EXPECT_EQ(times, 1) << line;
    }
    EXPECT_FALSE(Find(2, L"A97").bold);
    EXPECT_TRUE(Find(2, L"Gesamt").bold);
}

TEST_F(PrintingTest, EachPageBeginsAgainInPlainBodyType) {
    Fill(kPerPage + 1);
    printing.mnuDateiDrucken_Click();
    EXPECT_FALSE(Find(1, L"A46").bold);
    EXPECT_EQ(Find(1, L"A46").points, 10);
}

TEST_F(PrintingTest, ALongDescriptionIsCutWithoutAnyMark) {
    Fill(1);
    grid.SetTextMatrix(1, 2, std::wstring(200, L'x'));
    printing.mnuDateiDrucken_Click();
    const PrintLayout layout = LayOutPages(grid, printer.page_width, printer.page_height, 200);
    const auto room = static_cast<std::size_t>((layout.width(2) - 45) / 100);  // 100 a letter
    EXPECT_TRUE(Has(0, std::wstring(room, L'x')));
}

TEST_F(PrintingTest, ATextThatJustFitsIsWholeAndOneTwipLessCutsOneLetter) {
    std::unique_ptr<IPrintJob> job = printer.Begin(L"");
    job->SetFont(10, false);
    EXPECT_EQ(FitText(*job, L"abcde", 500), L"abcde");
    EXPECT_EQ(FitText(*job, L"abcde", 499), L"abcd");
    EXPECT_EQ(FitText(*job, L"abcde", 100), L"a");
    EXPECT_EQ(FitText(*job, L"abcde", 99), L"");
    EXPECT_EQ(FitText(*job, L"abcde", -45), L"");
    EXPECT_EQ(FitText(*job, L"", 0), L"");
}

TEST_F(PrintingTest, FittingByHalvesFindsWhatCuttingOneByOneFinds) {
    std::unique_ptr<IPrintJob> job = printer.Begin(L"");
    job->SetFont(10, false);
    std::mt19937 random(20);
    for (int round = 0; round < 2000; ++round) {
        std::wstring text(random() % 60, L' ');
        for (wchar_t& c : text) c = L"abil.,mW"[random() % 8];
        const auto width = static_cast<std::int32_t>(random() % 6000) - 100;
        std::wstring one_by_one = text;
        while (!one_by_one.empty() && job->TextWidth(one_by_one) > width) one_by_one.pop_back();
        EXPECT_EQ(FitText(*job, text, width), one_by_one);
    }
}

TEST_F(PrintingTest, ACharacterOfTwoUnitsIsNotTornApart) {
    std::unique_ptr<IPrintJob> job = printer.Begin(L"");
    job->SetFont(10, false);
    const std::wstring text = {L'a', static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
    EXPECT_EQ(FitText(*job, text, 200), L"a");
    EXPECT_EQ(FitText(*job, text, 300), text);
}

TEST_F(PrintingTest, FittingAHugeTextMeasuresFewTimes) {
    std::unique_ptr<IPrintJob> job = printer.Begin(L"");
    job->SetFont(10, false);
    const int before = printer.operations;
    FitText(*job, std::wstring(1'000'000, L'x'), 2000);
    EXPECT_LT(printer.operations - before, 25);
}

TEST_F(PrintingTest, AColumnTooNarrowForAnyLetterIsFramedAndStaysEmpty) {
    Fill(1);
    grid.SetColWidth(1, 40);
    grid.SetColWidth(2, 900'000);
    printing.mnuDateiDrucken_Click();
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_FALSE(Has(0, L"A1"));
}

TEST_F(PrintingTest, VeryWideColumnsDoNotOverflow) {
    grid.SetColWidth(2, 1'000'000'000);
    const PrintLayout layout = LayOutPages(grid, 30'000, 16358, 200);
    EXPECT_EQ(layout.x.front(), 1800);
    EXPECT_LE(layout.x.back(), 1800 + 27'000);
    EXPECT_GE(layout.width(2), 26'990);
}

TEST_F(PrintingTest, WidthsWhoseSumDoesNotFitAreAnOverflow) {
    grid.SetColWidth(1, 2'000'000'000);
    grid.SetColWidth(2, 2'000'000'000);
    printing.mnuDateiDrucken_Click();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, L"Der Warenkorb kann nicht gedruckt werden: Overflow");
    EXPECT_EQ(printer.aborted, 1);
}

TEST_F(PrintingTest, APageOnWhichNoLineFitsFailsWithDivisionByZero) {
    printer.page_height = 6 * kLine + 319;
    printing.mnuDateiDrucken_Click();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text,
              L"Der Warenkorb kann nicht gedruckt werden: Division by zero");
    EXPECT_EQ(printer.aborted, 1);
    EXPECT_EQ(printer.ended, 0);
}

TEST_F(PrintingTest, AllColumnsHiddenFailsWithDivisionByZero) {
    for (std::int32_t c = 0; c < grid.Cols(); ++c) grid.SetColWidth(c, 0);
    printing.mnuDateiDrucken_Click();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text,
              L"Der Warenkorb kann nicht gedruckt werden: Division by zero");
}

TEST_F(PrintingTest, AnEvenLowerPageEndsWithoutLinesAndWithoutHarm) {
    for (std::int32_t lines = 0; lines < 20; ++lines) {
        for (std::int32_t height = 0; height < 6 * kLine; height += 100) {
            Fill(lines);
            printer = FakePrinter();
            printer.page_height = height;
            printing.mnuDateiDrucken_Click();
            const PrintLayout layout = LayOutPages(grid, printer.page_width, height, 200);
            ASSERT_LT(layout.per_page, 0);
            ASSERT_LE(layout.pages, 1);
            EXPECT_EQ(printer.ended, 1);
            EXPECT_EQ(printer.pages.size(), 1u);
            EXPECT_FALSE(Has(0, L"Gesamt"));
        }
    }
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(PrintingTest, APageThatHoldsOneLineTakesAPageForEach) {
    Fill(4);
    printer.page_height = 7 * kLine;
    printing.mnuDateiDrucken_Click();
    ASSERT_EQ(printer.pages.size(), 5u);
    EXPECT_TRUE(Has(3, L"A4"));
    EXPECT_TRUE(Has(4, L"Gesamt"));
}

TEST_F(PrintingTest, TheMessageIsPlainWithTheApplicationsTitle) {
    printer.fail_at = 1;
    printer.failure = Error(482, {}, L"Der Drucker ist ausgeschaltet.");
    printing.mnuDateiDrucken_Click();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text,
              L"Der Warenkorb kann nicht gedruckt werden: Der Drucker ist ausgeschaltet.");
    EXPECT_EQ(messages.shown[0].title, L"");
    EXPECT_EQ(messages.shown[0].buttons, MessageButtons::kOk);
    EXPECT_EQ(messages.shown[0].icon, MessageIcon::kNone);
}

TEST_F(PrintingTest, WithoutAnInstalledPrinterTheMessageSaysSo) {
    printer.fail_at = 1;
    printer.installed = 0;
    printing.mnuDateiDrucken_Click();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text,
              L"Der Warenkorb kann nicht gedruckt werden da kein Drucker installiert ist.");
}

TEST_F(PrintingTest, PrintersThatCannotBeCountedLeaveTheFirstMessage) {
    printer.fail_at = 1;
    printer.installed_count_fails = true;
    printing.mnuDateiDrucken_Click();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, L"Der Warenkorb kann nicht gedruckt werden: Printer error");
}

TEST_F(PrintingTest, AFailureAtAnyOperationAbortsTheJobShowsOneMessageAndLeavesTheBasket) {
    Fill(kPerPage + 3);
    printing.mnuDateiDrucken_Click();
    const int all = printer.operations;
    ASSERT_GT(all, 1000);
    const std::string before = CellsOf(grid);
    GridEventLog log(grid);
    grid.SetEvents(&log);
    for (int at = 1; at <= all; ++at) {
        printer = FakePrinter();
        printer.fail_at = at;
        messages.shown.clear();
        status = {L"vorher"};
        printing.mnuDateiDrucken_Click();
        ASSERT_EQ(messages.shown.size(), 1u) << at;
        ASSERT_EQ(messages.shown[0].text,
                  L"Der Warenkorb kann nicht gedruckt werden: Printer error");
        ASSERT_EQ(printer.aborted, at == 1 ? 0 : 1) << at;
        ASSERT_EQ(printer.ended, 0);
        ASSERT_EQ(status.back(), L"vorher") << at;
    }
    grid.SetEvents(nullptr);
    EXPECT_EQ(CellsOf(grid), before);
    EXPECT_EQ(log.Take(), "");
}

TEST_F(PrintingTest, TheJobIsAbortedBeforeTheMessageIsShown) {
    printer.fail_at = 30;
    int aborted_then = -1;
    messages.while_open = [&] { aborted_then = printer.aborted; };
    printing.mnuDateiDrucken_Click();
    EXPECT_EQ(aborted_then, 1);
}

TEST_F(PrintingTest, OutOfMemoryIsAFailureLikeAnyOther) {
    struct Exhausted : FakePrinter {
        std::unique_ptr<IPrintJob> Begin(std::wstring_view) override { throw std::bad_alloc(); }
    } exhausted;
    Printing other(grid, exhausted, messages,
                   {[] {}, [] { return std::wstring(); }, [] { return std::wstring(); },
                    [](std::wstring_view) {}, [] {}});
    other.mnuDateiDrucken_Click();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, L"Der Warenkorb kann nicht gedruckt werden: Out of memory");
}

// A printer may ask for a file's name, say, and the user think better of it.
TEST_F(PrintingTest, AUserWhoGivesUpInThePrintersDialogSeesNoMessage) {
    printer.user_gives_up = true;
    printing.mnuDateiDrucken_Click();
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(printer.jobs, 0);
    EXPECT_EQ(status.back(), L"Katalog Seite 7");
    // and can print the next time
    printer.user_gives_up = false;
    printing.mnuDateiDrucken_Click();
    EXPECT_EQ(printer.ended, 1);
}

TEST_F(PrintingTest, TheStatusBarShowsThePageAndIsRestored) {
    Fill(2 * kPerPage);
    printing.mnuDateiDrucken_Click();
    const std::vector<std::wstring> expected = {L"Katalog Seite 7", L"Drucke Seite 1 von 3 ...",
                                                L"Drucke Seite 2 von 3 ...",
                                                L"Drucke Seite 3 von 3 ...", L"Katalog Seite 7"};
    EXPECT_EQ(status, expected);
    EXPECT_EQ(std::count(events.begin(), events.end(), "paint"), 3);
}

TEST_F(PrintingTest, ASecondCommandDuringAJobDoesNothing) {
    struct Reentering : FakePrinter {
        Printing* printing = nullptr;
        std::unique_ptr<IPrintJob> Begin(std::wstring_view name) override {
            printing->mnuDateiDrucken_Click();
            return FakePrinter::Begin(name);
        }
    } reentering;
    int commits = 0;
    Printing other(grid, reentering, messages,
                   {[&] { ++commits; }, [] { return std::wstring(); },
                    [] { return std::wstring(); }, [](std::wstring_view) {}, [] {}});
    reentering.printing = &other;
    other.mnuDateiDrucken_Click();
    EXPECT_EQ(commits, 1);
    EXPECT_EQ(reentering.jobs, 1);
    EXPECT_EQ(reentering.ended, 1);
    // and afterwards printing works again
    other.mnuDateiDrucken_Click();
    EXPECT_EQ(reentering.jobs, 2);
}

TEST_F(PrintingTest, AFailedCommitIsRaisedAndNothingIsPrinted) {
    Printing other(
        grid, printer, messages,
        {[] { RaiseRuntimeError(runtime_error::kTypeMismatch); }, [] { return std::wstring(); },
         [] { return std::wstring(); }, [](std::wstring_view) {}, [] {}});
    for (int again = 0; again < 2; ++again) {
        try {
            other.mnuDateiDrucken_Click();
            FAIL() << "nothing raised";
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), 13);
        }
    }
    EXPECT_EQ(printer.jobs, 0);
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(PrintingTest, AThousandLinesFillTheirPages) {
    Fill(1000);
    printing.mnuDateiDrucken_Click();
    EXPECT_EQ(printer.pages.size(), 23u);  // (1000 + 45) / 45
    EXPECT_TRUE(Has(22, L"A1000"));
    EXPECT_TRUE(Has(22, L"Gesamt"));
}

}  // namespace
}  // namespace demovex
