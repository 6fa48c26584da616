// Loading and saving baskets of 1,000, 10,000 and 100,000 lines, from the file on the disk to the
// finished grid: real form, grid, article master, files and texts; only the window is missing.
//
// The alternatives are tables in memory of a database engine, whose triggers keep the totals; they
// are given the file's bytes. The plain one takes the lines as they stand, the tuned one looks the
// articles up as we do.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "basket/rows/columns.h"
#include "basket/test_lib_form.h"
#include "benches/bench.h"
#include "benches/files/totals_table.h"
#include "grid/flex_grid.h"
#include "platform/file_system_tools.h"
#include "tests/support/fake_basket_view.h"
#include "tests/support/fake_file_dialogs.h"
#include "tests/support/fake_printer.h"
#include "tests/support/fake_services.h"

#ifdef _WIN32
#include "platform/files_win.h"
#include "platform/text_win.h"
#include "tests/support/temp_folder.h"
#else
#include "tests/support/fake_text_service.h"
#include "tests/support/memory_files.h"
#endif

namespace demovex {
namespace {

constexpr int kArticles = 10'000;

std::string Padded(std::string text, std::size_t width) {
    text.resize(width, ' ');
    return text;
}

std::string NumberOf(int article) {
    char text[16];
    std::snprintf(text, sizeof text, "%06d", 100'000 + article * 7);
    return text;
}

// Schillings with two decimals, as hundredths.
int PriceOf(int article) {
    return 150 + article * 37 % 900'000;
}

std::string PriceText(int article) {
    char text[16];
    std::snprintf(text, sizeof text, "%d,%02d", PriceOf(article) / 100, PriceOf(article) % 100);
    return text;
}

std::string ArticleMaster() {
    std::string bytes;
    for (int article = 0; article < kArticles; ++article) {
        bytes += Padded(NumberOf(article), 10);
        bytes += Padded("Artikelbezeichnung " + std::to_string(article), 30);
        bytes += Padded(PriceText(article), 12) + "\r\n";
    }
    return bytes;
}

int ArticleOfLine(int line) {
    return static_cast<int>((std::int64_t{line} * 7919 + 13) % kArticles);
}

std::string BasketFile(int lines) {
    std::string bytes = "DemoVexClient.Client\r\n";
    for (int line = 0; line < lines; ++line) {
        const int article = ArticleOfLine(line);
        bytes += NumberOf(article) + "\tArtikelbezeichnung " + std::to_string(article) + "\t" +
                 std::to_string(1 + line % 9) + "\t" + PriceText(article) +
                 "\t1,00\tKatalog 2026\tvex://katalog/seite" + std::to_string(line % 500) +
                 "\t1,00\t1,00\r\n";
    }
    return bytes;
}

#ifdef _WIN32
// Real files in a folder of their own.
struct Disk {
    TempFolder folder;
    WinFileSystem files;
    std::wstring Folder() const { return FromNativePath(folder.path()); }
    std::wstring Put(const std::wstring& name, const std::string& bytes) {
        return folder.Put(name, bytes);
    }
    std::string Get(const std::wstring& name) { return folder.Get(name); }
};
using Text = WinTextService;
#else
// Files in memory: this side measures the component, not a disk.
struct Disk {
    MemoryFiles files;
    Disk() { files.AddFolder(Folder()); }
    std::wstring Folder() const { return L"C:\\B"; }
    std::wstring Put(const std::wstring& name, const std::string& bytes) {
        files.Put(Folder() + L"\\" + name, bytes);
        return Folder() + L"\\" + name;
    }
    std::string Get(const std::wstring& name) { return files.At(Folder() + L"\\" + name).bytes; }
};
using Text = FakeTextService;
#endif

struct Rig : FakeServices {
    Disk disk;
    Text text;
    Services services = Over(text, disk.files, disk.Folder());
    FlexGrid grid;
    FakeBasketView view;
    TestLibForm form{grid, view, services};

    Rig() {
        disk.Put(L"artikel.db", ArticleMaster());
        grid.SetFrame({640, 400, 2, 17});
        grid.SetEvents(&form);
        view.form = &form;
        form.Initialize();
    }
};

// A bench that measures the wrong thing would be worse than none.
void Check(bool right, const char* what) {
    if (right) return;
    std::printf("wrong result: %s\n", what);
    std::exit(1);
}

void RunAll(int largest) {
    std::vector<int> sizes = {1'000, 10'000, 100'000};
    std::erase_if(sizes, [&](int size) { return size > largest; });
    Rig rig;
    std::vector<TotalsTable::Article> articles;
    for (int article = 0; article < kArticles; ++article) {
        articles.push_back({NumberOf(article), "Artikelbezeichnung " + std::to_string(article),
                            PriceOf(article) / 100.0});
    }
    TotalsTable table(articles);
    std::vector<double> per_line;
    for (const int lines : sizes) {
        const std::string bytes = BasketFile(lines);
        const std::wstring path = rig.disk.Put(L"b" + std::to_wstring(lines) + L".bsk", bytes);
        std::int64_t expected = 0;
        for (int line = 0; line < lines; ++line) {
            expected += std::int64_t{1 + line % 9} * PriceOf(ArticleOfLine(line));
        }

        const std::string name = "load a basket of " + std::to_string(lines) + " lines, per line";
        const auto load = [&] { rig.form.Load(path); };
        const bench::Options options{.runs = lines >= 100'000 ? 5 : 9,
                                     .operations = static_cast<double>(lines),
                                     .bar = "at least 3"};
        load();
        Check(rig.grid.Rows() == lines + 2, "number of rows");
        Check(rig.text.ToNumber(rig.grid.TextMatrix(lines + 1, column::kGesamtAts)) * 100 ==
                  static_cast<double>(expected),
              "total");
        std::vector<double> ours;
        const auto timed = [&] { ours.push_back(bench::Seconds(load) / lines); };
        if (TotalsTable::Available()) {
            const std::string engine = TotalsTable::Name();
            bench::Compare(name, {"ours", timed},
                           {engine + " plain", [&] { table.LoadPlain(bytes); }}, options);
            Check(std::abs(table.PlainTotal() - lines) < 0.5, "the plain table's total");
            bench::Options without_bar = options;
            without_bar.bar = "no bar";
            bench::Compare(name, {"ours", timed}, {engine + " tuned", [&] { table.Load(bytes); }},
                           without_bar);
            Check(std::abs(table.Total() * 100 - static_cast<double>(expected)) < 0.5,
                  "the tuned table's total");
        } else {
            bench::Measure(name, timed, options);
        }
        per_line.push_back(bench::Median(ours));
        if (lines == 100'000) {
            bench::PrintRow("load a basket of 100000 lines",
                            bench::Duration(per_line.back() * lines), "", "", "well below 1 s");
        }
    }
    char ratio[32];
    std::snprintf(ratio, sizeof ratio, "%.2f", per_line.back() / per_line.front());
    bench::PrintRow("load: a line of 100000 against a line of 1000",
                    bench::Duration(per_line.back()), bench::Duration(per_line.front()), ratio,
                    "at most 1.1");

    if (sizes.back() != 100'000) return;

    // the basket of 100,000 lines is still loaded
    const std::wstring saved = rig.disk.Folder() + L"\\saved.bsk";
    rig.file_dialogs.Choose(saved);
    rig.form.Run(Command::mnuDateiSpeichernUnter);
    bench::Measure("save a basket of 100000 lines",
                   [&] { rig.form.Run(Command::mnuDateiSpeichern); },
                   {.runs = 5, .bar = "below 0.5 s"});
    const std::string first = rig.disk.Get(L"saved.bsk");
    Check(first.size() > 6'000'000, "size of the saved file");
    rig.form.Load(saved);
    rig.form.Run(Command::mnuDateiSpeichern);
    Check(rig.disk.Get(L"saved.bsk") == first, "bytes after loading and saving again");
}

}  // namespace
}  // namespace demovex

// An argument limits the number of lines, for profilers.
int main(int argc, char** argv) {
    demovex::RunAll(argc > 1 ? std::max(1'000, std::atoi(argv[1])) : 100'000);
    return 0;
}
