// Prints baskets for the printing tests: one case per call, with the room that prints and the real
// default printer. What was asked of the printer goes to a log beside the pages.
//
//   print_cases register QUEUE PPD [landscape]   registers a queue and makes it the default
//   print_cases default QUEUE                    makes it the default, whether or not it is there
//   print_cases print LOG LINES [KIND]           prints a basket of LINES lines
//
// Kinds: plain, long (long descriptions), umlauts; given_up: the user cancels a dialog of the
// printer's, as one that prints to a file shows.
#include <windows.h>

#include <winspool.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "basket/printing.h"
#include "basket/rows/columns.h"
#include "platform/printer_win.h"
#include "tests/support/import_table_win.h"
#include "tests/support/print_queue_win.h"
#include "tests/support/sample_basket.h"

namespace demovex {
namespace {

std::string Utf8(std::wstring_view text) {
    if (text.empty()) return {};
    const int length = static_cast<int>(text.size());
    std::string bytes(text.size() * 4, '\0');
    const int used = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(),
                                         static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(used));
    return bytes;
}

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using Log = std::unique_ptr<std::FILE, FileCloser>;

int Fail(const char* what) {
    std::fprintf(stderr, "%s: error %lu\n", what, GetLastError());
    return 1;
}

int Register(const std::wstring& queue, const std::wstring& ppd, bool landscape) {
    const char* failed = RegisterPrintQueue(queue, ppd, landscape);
    return failed == nullptr ? 0 : Fail(failed);
}

// As the system keeps it; SetDefaultPrinter would refuse a queue that is not there.
int MakeDefault(const std::wstring& queue) {
    const std::wstring device = queue + L",winspool,LPT1:";
    return WriteProfileStringW(L"windows", L"device", device.c_str()) ? 0 : Fail("default");
}

// Writes down what is asked of a real job.
class LoggingJob : public IPrintJob {
  public:
    LoggingJob(std::unique_ptr<IPrintJob> job, std::FILE* log) : job_(std::move(job)), log_(log) {}
    std::int32_t PageWidth() const override { return job_->PageWidth(); }
    std::int32_t PageHeight() const override { return job_->PageHeight(); }
    void SetFont(int points, bool bold) override {
        job_->SetFont(points, bold);
        points_ = points;
        bold_ = bold;
    }
    std::int32_t TextWidth(std::wstring_view text) override { return job_->TextWidth(text); }
    std::int32_t TextHeight(std::wstring_view text) override { return job_->TextHeight(text); }
    void Text(std::int32_t x, std::int32_t y, std::wstring_view text) override {
        std::fprintf(log_, "text\t%d\t%d\t%d\t%d\t%d\t%d\t%s\n", page_, static_cast<int>(x),
                     static_cast<int>(y), points_, bold_ ? 1 : 0,
                     static_cast<int>(job_->TextWidth(text)), Utf8(text).c_str());
        job_->Text(x, y, text);
    }
    void Frame(std::int32_t left, std::int32_t top, std::int32_t right,
               std::int32_t bottom) override {
        std::fprintf(log_, "frame\t%d\t%d\t%d\t%d\t%d\n", page_, static_cast<int>(left),
                     static_cast<int>(top), static_cast<int>(right), static_cast<int>(bottom));
        job_->Frame(left, top, right, bottom);
    }
    void NewPage() override {
        job_->NewPage();
        ++page_;
    }
    void End() override { job_->End(); }

  private:
    std::unique_ptr<IPrintJob> job_;
    std::FILE* log_;
    int page_ = 1;
    int points_ = 10;
    bool bold_ = false;
};

class LoggingPrinter : public IPrinter {
  public:
    explicit LoggingPrinter(std::FILE* log) : log_(log) {}
    int InstalledCount() const override { return printer_.InstalledCount(); }
    std::unique_ptr<IPrintJob> Begin(std::wstring_view document) override {
        auto real = printer_.Begin(document);
        if (!real) {
            std::fprintf(log_, "given up\n");
            return nullptr;
        }
        auto job = std::make_unique<LoggingJob>(std::move(real), log_);
        job->SetFont(10, false);
        std::fprintf(log_, "page\t%d\t%d\t%d\n", static_cast<int>(job->PageWidth()),
                     static_cast<int>(job->PageHeight()), static_cast<int>(job->TextHeight(L"Xy")));
        return job;
    }

  private:
    WinPrinter printer_;
    std::FILE* log_;
};

class LoggingBox : public IMessageBox {
  public:
    explicit LoggingBox(std::FILE* log) : log_(log) {}
    MessageAnswer Show(std::wstring_view text, std::wstring_view, MessageButtons,
                       MessageIcon) override {
        std::fprintf(log_, "message\t%s\n", Utf8(text).c_str());
        return MessageAnswer::kOk;
    }

  private:
    std::FILE* log_;
};

// Where the printable area lies on the paper; nothing when there is no printer.
void LogPaper(std::FILE* log) {
    wchar_t name[256] = {};
    DWORD size = 256;
    if (!GetDefaultPrinterW(name, &size)) return;
    const HDC dc = CreateDCW(L"WINSPOOL", name, nullptr, nullptr);
    if (dc == nullptr) return;
    std::fprintf(log, "paper");
    for (const int cap : {LOGPIXELSX, LOGPIXELSY, HORZRES, VERTRES, PHYSICALOFFSETX,
                          PHYSICALOFFSETY, PHYSICALWIDTH, PHYSICALHEIGHT}) {
        std::fprintf(log, "\t%d", GetDeviceCaps(dc, cap));
    }
    std::fprintf(log, "\n");
    DeleteDC(dc);
}

int WINAPI GiveUp(HDC, const DOCINFOW*) {
    SetLastError(ERROR_CANCELLED);
    return 0;
}

int Print(const wchar_t* log_path, std::int32_t lines, std::wstring_view kind) {
    const Log log(_wfopen(log_path, L"wb"));
    if (!log) return Fail("log");
    LogPaper(log.get());
    FlexGrid grid;
    grid.SetCols(column::kCount);
    FillBasket(grid, lines, kind);
    LoggingPrinter printer(log.get());
    LoggingBox box(log.get());
    std::wstring status = L"vorher";
    decltype(&GiveUp) real = nullptr;
    std::optional<CaughtImport> given_up;
    if (kind == L"given_up") given_up.emplace("StartDocW", &GiveUp, &real);
    if (given_up && !given_up->Caught()) return Fail("StartDocW is not imported");
    int painted = 0;
    Printing printing(grid, printer, box,
                      {[] {}, [] { return std::wstring(L"Vexmart Demo Warenkorb 1.1 - Büro.bsk"); },
                       [&] { return status; }, [&](std::wstring_view text) { status = text; },
                       [&] { ++painted; }});
    printing.mnuDateiDrucken_Click();
    std::fprintf(log.get(), "end\t%s\t%d\n", Utf8(status).c_str(), painted);
    return 0;
}

int Run(int argc, wchar_t** argv) {
    const std::wstring_view verb = argc > 1 ? argv[1] : L"";
    if (verb == L"register" && argc >= 4) {
        return Register(argv[2], argv[3], argc > 4 && std::wstring_view(argv[4]) == L"landscape");
    }
    if (verb == L"default" && argc == 3) return MakeDefault(argv[2]);
    if (verb == L"print" && argc >= 4) {
        return Print(argv[2], static_cast<std::int32_t>(wcstol(argv[3], nullptr, 10)),
                     argc > 4 ? argv[4] : L"plain");
    }
    std::fprintf(stderr, "print_cases register|default|print ...\n");
    return 2;
}

}  // namespace
}  // namespace demovex

int wmain(int argc, wchar_t** argv) {
    return demovex::Run(argc, argv);
}
