// A basket with its file rooms over real files in a temporary folder, without a window: real rows
// and totals on the real grid, recording services, and a file system that fails where a test says.
//
// With DEMOVEX_REAL_FILES defined (Windows only, a German user's locale) the files are read and
// written by the component's own file system, and texts converted by its own text service.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "basket/document/files.h"
#include "basket/document/recent_files.h"
#include "basket/document/sending.h"
#include "basket/edit/incomplete_note.h"
#include "basket/edit/order_entry.h"
#include "basket/rows/columns.h"
#include "tests/support/fake_articles.h"
#include "tests/support/fake_basket_view.h"
#include "tests/support/fake_file_dialogs.h"
#include "tests/support/fake_printer.h"
#include "tests/support/fake_services.h"
#include "tests/support/fake_text_service.h"
#include "tests/support/faulty_file_system.h"
#include "tests/support/grid_dump.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

#ifdef DEMOVEX_REAL_FILES
#include "platform/files_win.h"
#include "platform/text_win.h"
#else
#include "tests/support/std_file_system.h"
#endif

namespace demovex {

// Time that passes only while somebody waits.
class FakeRetryClock final : public IRetryClock {
  public:
    std::chrono::milliseconds now{0};
    int waits = 0;
    std::chrono::milliseconds Now() override { return now; }
    void Wait(std::chrono::milliseconds duration) override {
        now += duration;
        ++waits;
    }
};

// Stands in for the cell editor: what is being typed is written by a callback.
class FakeCellCommit final : public ICellCommit {
  public:
    std::function<void()> typed;  // runs once, with the next commit
    int commits = 0;
    int row_col_changes = 0;
    void CommitCellEdit() override {
        ++commits;
        const auto write = std::exchange(typed, nullptr);
        if (write) write();
    }
    void CloseEditor() override { CommitCellEdit(); }
    void Liste_RowColChange() override { ++row_col_changes; }
};

struct FilesFixture : FakeServices {
    TempFolder folder;
#ifdef DEMOVEX_REAL_FILES
    WinFileSystem disk;
    WinTextService text;
#else
    StdFileSystem disk;
    FakeTextService text{FakeLocale::kGermany};
#endif
    FaultyFileSystem files{disk};
    FakeRetryClock clock;
    FakeArticles articles;
    FakeCellCommit editor;
    FakeFileDialogs& dialogs = file_dialogs;
    Services services = Over(text, files, L"C:\\Programme\\Warenkorb");
    FlexGrid grid;
    FakeBasketView view;
    BasketState state;
    OrderTable rows{grid, text, articles};
    BasketContext context{grid, rows, view, services, state};
    IncompleteNote note{context};
    RecentFiles recent{context};
    BasketFiles basket{context, editor, recent, &clock};
    Sending sending{context, editor, recent};

    FilesFixture() {
        articles.articles = {{L"4711", {L"Duftwasser", L"100"}},
                             {L"4712", {L"Seife", L"25,5"}},
                             {L"4713", {L"Bürste", L"1000"}}};
        rows.BuildEmpty();
        state.InitPending = false;
        SetBasketCaption(context, kDesignedCaption);
    }

    // What a link does.
    void Add(const std::wstring& nr, const std::wstring& katalog, const std::wstring& url,
             std::int32_t menge) {
        AddArtikel(context, editor, nr, katalog, url, menge);
    }

    std::wstring Cell(std::int32_t row, std::int32_t col) const {
        return std::wstring(grid.TextMatrix(row, col));
    }
    // The texts of one column, row 1 to the last.
    std::vector<std::wstring> Column(std::int32_t col) const {
        std::vector<std::wstring> texts;
        for (std::int32_t row = 1; row < grid.Rows(); ++row) texts.push_back(Cell(row, col));
        return texts;
    }
    std::vector<std::wstring> ArticleNumbers() const {
        return Column(column::kArtNr);
    }
    std::vector<std::wstring> Quantities() const {
        return Column(column::kMenge);
    }

    // A basket file with the header and these lines.
    std::wstring PutBasket(std::wstring_view name, std::string_view lines) const {
        return folder.Put(name, "DemoVexClient.Client\r\n" + std::string(lines));
    }
    // What Load raises for `path`, its description; empty when it raises nothing.
    std::wstring LoadError(const std::wstring& path) {
        try {
            basket.Load(path);
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), -1);
            EXPECT_EQ(error.source(), L"Load");
            return error.description();
        }
        return L"";
    }
    std::wstring LoadErrorOf(const std::wstring& path, std::wstring_view cause) const {
        return L"Datei '" + ShownPath(path) + L"' kann nicht geöffnet werden: " +
               std::wstring(cause);
    }
    const FakeMessageBox::Shown& LastMessage() const {
        return messages.shown.back();
    }
};

}  // namespace demovex
