// A whole basket for tests: the form on a grid, a window without a window, recording services, and
// an article master in memory (4711 and 4712 cost "100", see kArticles).
//
//   BasketFixture basket;
//   basket.Link(L"4711");
//   EXPECT_EQ(basket.Cell(1, column::kMenge), L"1");
//   basket.Click(1, column::kMenge);
//   basket.view.Type(L"3");
//   basket.Press(FakeBasketView::kReturn);
//
// After a failed expectation print basket.AsText().
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "basket/rows/columns.h"
#include "basket/test_lib_form.h"
#include "grid/flex_grid.h"
#include "tests/support/fake_basket_view.h"
#include "tests/support/fake_file_dialogs.h"
#include "tests/support/fake_printer.h"
#include "tests/support/fake_services.h"
#include "tests/support/fake_text_service.h"
#include "tests/support/grid_dump.h"
#include "tests/support/memory_files.h"
#include "tests/support/raised.h"

namespace demovex {

struct TestArticle {
    std::string nr;
    std::string bezeichnung;
    std::string preis;
};

// In the order that the article master requires.
inline const std::vector<TestArticle>& TestArticles() {
    static const std::vector<TestArticle> articles = {
        {"1000", "Bleistift HB", "3,50"},       {"2000", "Radiergummi", "0,10"},
        {"4711", "Eau de Cologne", "100"},      {"4712", "Duftwasser", "100"},
        {"5000", "Kostenlose Beilage", "0"},    {"6000", "Tresor", "123456,78"},
        {"9999", "Preis fehlt", "auf Anfrage"}, {"ABC", "Ordner breit", "45,90"},
    };
    return articles;
}

inline std::string ArticleFile(const std::vector<TestArticle>& articles) {
    std::string bytes;
    const auto put = [&bytes](std::string field, std::size_t width) {
        field.resize(width, ' ');
        bytes += field;
    };
    for (const TestArticle& article : articles) {
        put(article.nr, 10);
        put(article.bezeichnung, 30);
        put(article.preis, 12);
        bytes += "\r\n";
    }
    return bytes;
}

// What the basket tells its owner.
class FakeBasketOwner final : public IBasketOwner {
  public:
    std::vector<std::wstring> navigated;
    int closed = 0;
    std::int32_t fail_with = 0;  // raised by either call when not 0
    std::function<void()> on_closing;

    void NavigateToCatalog(std::wstring_view url) override {
        navigated.emplace_back(url);
        if (fail_with != 0) RaiseRuntimeError(fail_with);
    }
    void ClientClosing() override {
        ++closed;
        if (on_closing) on_closing();
        if (fail_with != 0) RaiseRuntimeError(fail_with);
    }
};

class BasketFixture : public FakeServices {
  public:
    static constexpr std::wstring_view kFolder = L"C:\\Basket";

    explicit BasketFixture(FakeLocale locale = FakeLocale::kAustria, bool initialize = true)
        : text(locale),
          services(Over(text, files, std::wstring(kFolder))),
          form(grid, view, services) {
        files.AddFolder(std::wstring(kFolder));
        files.Put(ArticlePath(), ArticleFile(TestArticles()));
        grid.SetFrame({640, 400, 2, 17});  // 9600 by 6000 twips
        grid.SetEvents(&form);
        view.form = &form;
        view.send_to_grid = [this](GridKey key) {
            grid.Key(key, false, false);
            form.Liste_Acted();
        };
        view.show_grid_cell = [this](std::int32_t row, std::int32_t col) { grid.Show(row, col); };
        form.moLibrary = &owner;
        if (initialize) form.Initialize();
    }

    static std::wstring ArticlePath() { return std::wstring(kFolder) + L"\\artikel.db"; }

    // --- what the host does
    bool Link(const std::wstring& nr, std::int32_t menge = 1, const std::wstring& katalog = L"",
              const std::wstring& url = L"") {
        bool has_info = false;
        return form.AddArtikel(nr, katalog, url, has_info, menge, true);
    }

    // --- what the user does
    // A press on a cell; one that is out of view or hidden becomes current all the same, as by an
    // assistive program.
    void Click(std::int32_t row, std::int32_t col) {
        const PixelRect cell = grid.CellRect(row, col);
        if (row >= 1 && col >= 1 && !cell.empty() && cell.right <= grid.View().right &&
            cell.bottom <= grid.View().bottom) {
            grid.Press((cell.left + cell.right) / 2, (cell.top + cell.bottom) / 2, false);
            grid.Release();
            form.Liste_Acted();
        } else {
            grid.Select(row, col, row, col);
        }
        view.Tick();
    }
    // The anchor, and the selection's other corner.
    void Select(std::int32_t row, std::int32_t col, std::int32_t row_sel, std::int32_t col_sel) {
        grid.Select(row, col, row_sel, col_sel);
        view.Tick();
    }
    // A key in the text box; what it queues for the grid arrives there.
    void Press(int key, int shift = 0) {
        view.Press(key, shift);
        view.PumpKeys();
        view.Tick();
    }
    // Replaces the text of the open editor.
    void TypeOver(std::wstring_view typed) {
        view.Select(0, static_cast<std::int32_t>(view.text.size()));
        view.Type(typed);
    }

    // --- what is to be seen
    std::wstring Cell(std::int32_t row, std::int32_t col) const {
        return std::wstring(grid.TextMatrix(row, col));
    }
    std::wstring Total(std::int32_t col) const { return Cell(grid.Rows() - 1, col); }
    std::int32_t Lines() const { return grid.Rows() - 2; }
    std::vector<std::wstring> Column(std::int32_t col) const {
        std::vector<std::wstring> cells;
        for (std::int32_t row = 1; row <= Lines(); ++row) cells.push_back(Cell(row, col));
        return cells;
    }
    std::string AsText() const { return DumpGrid(grid); }

    FlexGrid grid;
    FakeBasketView view;
    FakeTextService text;
    MemoryFiles files;
    Services services;
    FakeBasketOwner owner;
    TestLibForm form;
};

}  // namespace demovex
