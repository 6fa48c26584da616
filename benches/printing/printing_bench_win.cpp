// Printing baskets into a queue that throws the pages away: what layout, GDI calls and driver take,
// and how long the whole job lasts with spool file and spooler.
// clang-format off
#include <windows.h>
#include <winspool.h>
// clang-format on

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "basket/printing.h"
#include "basket/rows/columns.h"
#include "benches/bench.h"
#include "platform/printer_win.h"
#include "tests/support/print_queue_win.h"
#include "tests/support/sample_basket.h"

namespace demovex {
namespace {

// Seconds of processor time that this program has spent in its own code: layout, GDI and the
// driver. The driver hands its output to the spool file word by word; those file writes are the
// kernel's time and not counted.
double ProcessorSeconds() {
    FILETIME created, exited, kernel, user;
    GetProcessTimes(GetCurrentProcess(), &created, &exited, &kernel, &user);
    return (static_cast<double>(user.dwHighDateTime) * 4294967296.0 + user.dwLowDateTime) / 1e7;
}

// Times what happens between the start of the document and its end.
struct TimedJob : IPrintJob {
    std::unique_ptr<IPrintJob> job;
    double& cpu;
    int& pages;
    double cpu_begin = ProcessorSeconds();
    TimedJob(std::unique_ptr<IPrintJob> real, double& a_cpu, int& a_pages)
        : job(std::move(real)), cpu(a_cpu), pages(a_pages) {}
    std::int32_t PageWidth() const override { return job->PageWidth(); }
    std::int32_t PageHeight() const override { return job->PageHeight(); }
    void SetFont(int points, bool bold) override { job->SetFont(points, bold); }
    std::int32_t TextWidth(std::wstring_view text) override { return job->TextWidth(text); }
    std::int32_t TextHeight(std::wstring_view text) override { return job->TextHeight(text); }
    void Text(std::int32_t x, std::int32_t y, std::wstring_view text) override {
        job->Text(x, y, text);
    }
    void Frame(std::int32_t l, std::int32_t t, std::int32_t r, std::int32_t b) override {
        job->Frame(l, t, r, b);
    }
    void NewPage() override {
        ++pages;
        job->NewPage();
    }
    void End() override {
        cpu = ProcessorSeconds() - cpu_begin;
        ++pages;
        job->End();
    }
};

struct TimedPrinter : IPrinter {
    WinPrinter printer;
    double cpu = 0;
    int pages = 0;
    int InstalledCount() const override { return printer.InstalledCount(); }
    std::unique_ptr<IPrintJob> Begin(std::wstring_view document) override {
        pages = 0;
        return std::make_unique<TimedJob>(printer.Begin(document), cpu, pages);
    }
};

struct FailingBox : IMessageBox {
    MessageAnswer Show(std::wstring_view text, std::wstring_view, MessageButtons,
                       MessageIcon) override {
        std::printf("printing failed: %ls\n", std::wstring(text).c_str());
        std::exit(1);
    }
};

struct Times {
    double cpu = 0;    // processor time of layout, GDI and driver
    double whole = 0;  // from the command to the spooled job
    int pages = 0;
};

Times Print(std::int32_t lines) {
    FlexGrid grid;
    grid.SetCols(column::kCount);
    FillBasket(grid, lines, L"plain");
    TimedPrinter printer;
    FailingBox box;
    Printing printing(grid, printer, box,
                      {[] {}, [] { return std::wstring(L"bench"); }, [] { return std::wstring(); },
                       [](std::wstring_view) {}, [] {}});
    std::vector<double> cpu, whole;
    for (int run = 0; run < (lines > 1000 ? 1 : 3); ++run) {
        whole.push_back(bench::Seconds([&] { printing.mnuDateiDrucken_Click(); }));
        cpu.push_back(printer.cpu);
    }
    return {bench::Median(cpu), bench::Median(whole), printer.pages};
}

// A queue of our own where there is none; its port swallows what it gets.
bool MakeQueue() {
    if (WinPrinter().InstalledCount() > 0) return true;
    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Wine\\Printing\\Spooler", 0, nullptr, 0,
                        KEY_WRITE, nullptr, &key, nullptr) != ERROR_SUCCESS) {
        return false;
    }
    const std::wstring port = L"|cat > /dev/null";
    RegSetValueExW(key, L"LPT1:", 0, REG_SZ, reinterpret_cast<const BYTE*>(port.c_str()),
                   static_cast<DWORD>((port.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
    const std::string data = DEMOVEX_TEST_DATA "/print/a4.ppd";
    std::wstring ppd = L"Z:" + std::wstring(data.begin(), data.end());
    std::replace(ppd.begin(), ppd.end(), L'/', L'\\');
    return RegisterPrintQueue(L"Bench", ppd, false) == nullptr;
}

int Run() {
    if (!MakeQueue()) {
        bench::PrintRow("printing", "no printer queue here", "", "", "");
        return 0;
    }
    std::map<std::int32_t, Times> times;
    for (const std::int32_t lines : {250, 1000, 4000}) times[lines] = Print(lines);
    const Times& thousand = times[1000];
    char ratio[32];
    std::snprintf(ratio, sizeof ratio, "%.2f", thousand.whole / thousand.cpu);
    bench::PrintRow(
        "print 1,000 lines: layout, GDI calls and driver", bench::Duration(thousand.cpu),
        "with spool file and spooler " + bench::Duration(thousand.whole), ratio, "below 1 s");
    const double small = times[250].cpu / times[250].pages;
    for (const std::int32_t lines : {1000, 4000}) {
        const double each = times[lines].cpu / times[lines].pages;
        std::snprintf(ratio, sizeof ratio, "%.2f", small / each);
        bench::PrintRow("print a page, " + std::to_string(lines) + " lines in " +
                            std::to_string(times[lines].pages) + " pages",
                        bench::Duration(each), "of 250 lines " + bench::Duration(small), ratio,
                        "about 1");
    }
    return 0;
}

}  // namespace
}  // namespace demovex

int main() {
    return demovex::Run();
}
