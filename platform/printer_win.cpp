#include "platform/printer_win.h"

// clang-format off
#include <windows.h>
#include <winspool.h>
// clang-format on

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "base/error.h"
#include "base/geometry.h"
#include "platform/handle_win.h"
#include "platform/system_library_win.h"

namespace demovex {
namespace {

constexpr int kPointsPerInch = 72;
constexpr int kFrameTwips = 10;  // half a point
// Longer texts are wider than any paper, and GDI need not take them.
constexpr std::size_t kLongestText = 8192;

// What the system says about the error `code`; "Printer error" when it says nothing.
std::wstring Describe(DWORD code) {
    wchar_t* buffer = nullptr;
    DWORD length = 0;
    // an invalid handle is about our innards and would tell a user nothing
    if (code != 0 && code != ERROR_INVALID_HANDLE) {
        // with ALLOCATE_BUFFER the parameter is the address of the pointer
        length = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                                    FORMAT_MESSAGE_IGNORE_INSERTS,
                                nullptr, code, 0, reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
    }
    const std::unique_ptr<wchar_t, decltype(&LocalFree)> owned(buffer, &LocalFree);
    std::wstring text = length == 0 ? std::wstring() : std::wstring(buffer, length);
    while (!text.empty() && text.back() <= L' ') text.pop_back();
    return text.empty() ? std::wstring(L"Printer error") : text;
}

// `code` is what GetLastError said right after the failed call.
[[noreturn]] void RaisePrinterError(DWORD code) {
    throw Error(runtime_error::kPrinterError, {}, Describe(code));
}

// A window takes no input for as long as this lives.
class InputBlocked {
  public:
    explicit InputBlocked(HWND window) noexcept
        : window_(window != nullptr && IsWindowEnabled(window) ? window : nullptr) {
        if (window_ != nullptr) EnableWindow(window_, FALSE);
    }
    ~InputBlocked() {
        if (window_ != nullptr) EnableWindow(window_, TRUE);
    }
    InputBlocked(const InputBlocked&) = delete;
    InputBlocked& operator=(const InputBlocked&) = delete;

  private:
    HWND window_;
};

std::int32_t ScaleRound(std::int64_t value, std::int64_t numerator, std::int64_t denominator) {
    const std::int64_t scaled = value * numerator;
    const std::int64_t half = denominator / 2;
    // halves upwards, below zero as well, so that equal distances stay equal
    const std::int64_t shifted = scaled + half;
    std::int64_t whole = shifted / denominator;
    if (shifted % denominator < 0) --whole;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(whole, INT32_MIN, INT32_MAX));
}

// A horizontal or vertical stretch of a frame, in dots.
struct Edge {
    int at;  // y of a horizontal one, x of a vertical one
    int from;
    int to;
};

// The same stretches with those that touch or overlap made one.
std::vector<Edge> Joined(std::vector<Edge> edges) {
    std::sort(edges.begin(), edges.end(), [](const Edge& a, const Edge& b) {
        return a.at != b.at ? a.at < b.at : a.from < b.from;
    });
    std::vector<Edge> joined;
    for (const Edge& edge : edges) {
        if (!joined.empty() && joined.back().at == edge.at && edge.from <= joined.back().to) {
            joined.back().to = std::max(joined.back().to, edge.to);
        } else {
            joined.push_back(edge);
        }
    }
    return joined;
}

class WinPrintJob : public IPrintJob {
  public:
    WinPrintJob(UniqueDc dc, HWND owner)
        : blocked_(owner),
          dc_(std::move(dc)),
          dpi_x_(std::max(1, GetDeviceCaps(dc_.get(), LOGPIXELSX))),
          dpi_y_(std::max(1, GetDeviceCaps(dc_.get(), LOGPIXELSY))),
          pen_x_(std::max(1, DeviceX(kFrameTwips))),
          pen_y_(std::max(1, DeviceY(kFrameTwips))) {
        SetFont(10, false);
    }

    // False when the user has given up a dialog of the printer's (for a file's name, say).
    bool Start(std::wstring_view document) {
        const std::wstring name(document);
        DOCINFOW info = {};
        info.cbSize = sizeof info;
        info.lpszDocName = name.c_str();
        SetLastError(0);
        if (StartDocW(dc_.get(), &info) <= 0) {
            const DWORD code = GetLastError();
            if (code == ERROR_CANCELLED || code == ERROR_PRINT_CANCELLED) return false;
            RaisePrinterError(code);
        }
        in_document_ = true;
        return true;
    }

    ~WinPrintJob() override {
        if (in_document_) AbortDoc(dc_.get());
        // the DC lets go of the fonts before they are deleted
        dc_.reset();
    }

    std::int32_t PageWidth() const override {
        return ScaleRound(GetDeviceCaps(dc_.get(), HORZRES), kTwipsPerInch, dpi_x_);
    }
    std::int32_t PageHeight() const override {
        return ScaleRound(GetDeviceCaps(dc_.get(), VERTRES), kTwipsPerInch, dpi_y_);
    }

    void SetFont(int points, bool bold) override {
        UniqueFont& font = fonts_[{points, bold}];
        if (!font) {
            font.reset(CreateFontW(-ScaleRound(points, dpi_y_, kPointsPerInch), 0, 0, 0,
                                   bold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                   OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                                   VARIABLE_PITCH | FF_ROMAN, L"Times New Roman"));
            if (!font) RaisePrinterError(GetLastError());
        }
        if (SelectObject(dc_.get(), font.get()) == nullptr) RaisePrinterError(GetLastError());
        font_ = font.get();
    }

    std::int32_t TextWidth(std::wstring_view text) override {
        return ScaleRound(Measure(text).cx, kTwipsPerInch, dpi_x_);
    }
    std::int32_t TextHeight(std::wstring_view text) override {
        return ScaleRound(Measure(text.empty() ? L" " : text).cy, kTwipsPerInch, dpi_y_);
    }

    void Text(std::int32_t x, std::int32_t y, std::wstring_view text) override {
        NeedPage();
        const std::wstring_view part = text.substr(0, kLongestText);
        // The letters' places are given, too: else a driver may set them by widths other than those
        // that were measured, and a column of amounts would not end on one line.
        ends_.resize(part.size());
        Measure(part, ends_.data());
        for (std::size_t i = part.size(); i-- > 1;) ends_[i] -= ends_[i - 1];
        SetLastError(0);
        if (!ExtTextOutW(dc_.get(), DeviceX(x), DeviceY(y), 0, nullptr, part.data(),
                         static_cast<UINT>(part.size()), ends_.data())) {
            RaisePrinterError(GetLastError());
        }
    }

    void Frame(std::int32_t left, std::int32_t top, std::int32_t right,
               std::int32_t bottom) override {
        NeedPage();
        const int x0 = DeviceX(left);
        const int y0 = DeviceY(top);
        const int x1 = DeviceX(right);
        const int y1 = DeviceY(bottom);
        across_.push_back({y0, x0, x1});
        across_.push_back({y1, x0, x1});
        down_.push_back({x0, y0, y1});
        down_.push_back({x1, y0, y1});
    }

    void NewPage() override {
        NeedPage();
        ClosePage();
        NeedPage();
    }

    void End() override {
        if (!in_page_) {
            // nothing was printed: no empty sheet
            in_document_ = false;
            AbortDoc(dc_.get());
            return;
        }
        ClosePage();
        SetLastError(0);
        if (EndDoc(dc_.get()) <= 0) RaisePrinterError(GetLastError());
        in_document_ = false;
    }

  private:
    int DeviceX(std::int32_t twips) const { return ScaleRound(twips, dpi_x_, kTwipsPerInch); }
    int DeviceY(std::int32_t twips) const { return ScaleRound(twips, dpi_y_, kTwipsPerInch); }

    void Bar(int x, int y, int width, int height) {
        SetLastError(0);
        if (!PatBlt(dc_.get(), x, y, width, height, PATCOPY)) RaisePrinterError(GetLastError());
    }

    // In dots. `ends` receives where each character ends, when it is given.
    SIZE Measure(std::wstring_view text, int* ends = nullptr) {
        const std::wstring_view part = text.substr(0, kLongestText);
        SIZE size = {};
        SetLastError(0);
        if (!GetTextExtentExPointW(dc_.get(), part.data(), static_cast<int>(part.size()), 0,
                                   nullptr, ends, &size)) {
            RaisePrinterError(GetLastError());
        }
        return size;
    }

    // Starts a page when none is open; some drivers forget what was selected then.
    void NeedPage() {
        if (in_page_) return;
        SetLastError(0);
        if (StartPage(dc_.get()) <= 0) RaisePrinterError(GetLastError());
        in_page_ = true;
        SetTextAlign(dc_.get(), TA_LEFT | TA_TOP | TA_NOUPDATECP);
        SetBkMode(dc_.get(), TRANSPARENT);
        SetTextColor(dc_.get(), RGB(0, 0, 0));
        SelectObject(dc_.get(), font_);
        SelectObject(dc_.get(), GetStockObject(BLACK_BRUSH));
    }

    // The page's frames as few long bars, centred on the edges: neighbours share theirs, so that
    // all lines are equally thick. (A pen's place and a rectangle's far edges differ between
    // drivers by a dot, and a bar for each edge would be most of the job's cost.)
    void DrawFrames() {
        for (const Edge& edge : Joined(across_)) {
            Bar(edge.from - pen_x_ / 2, edge.at - pen_y_ / 2, edge.to - edge.from + pen_x_, pen_y_);
        }
        for (const Edge& edge : Joined(down_)) {
            Bar(edge.at - pen_x_ / 2, edge.from - pen_y_ / 2, pen_x_, edge.to - edge.from + pen_y_);
        }
        across_.clear();
        down_.clear();
    }

    void ClosePage() {
        DrawFrames();
        in_page_ = false;
        SetLastError(0);
        if (EndPage(dc_.get()) <= 0) RaisePrinterError(GetLastError());
    }

    InputBlocked blocked_;  // last to go
    std::map<std::pair<int, bool>, UniqueFont> fonts_;
    UniqueDc dc_;
    int dpi_x_;
    int dpi_y_;
    std::vector<Edge> across_;  // of the frames of this page
    std::vector<Edge> down_;
    int pen_x_;  // thickness of a frame's vertical lines in dots
    int pen_y_;
    std::vector<int> ends_;  // kept between texts for its memory
    HGDIOBJ font_ = nullptr;
    bool in_document_ = false;
    bool in_page_ = false;
};

// The print spooler's functions; null where the system has none.
struct Spooler {
    decltype(&EnumPrintersW) enum_printers =
        SystemFunction<decltype(&EnumPrintersW)>(L"winspool.drv", "EnumPrintersW");
    decltype(&GetDefaultPrinterW) get_default_printer =
        SystemFunction<decltype(&GetDefaultPrinterW)>(L"winspool.drv", "GetDefaultPrinterW");
};

const Spooler& TheSpooler() {
    static const Spooler spooler;
    return spooler;
}

std::wstring DefaultPrinterName() {
    const auto get_default_printer = TheSpooler().get_default_printer;
    if (get_default_printer == nullptr) RaisePrinterError(0);
    DWORD size = 0;
    get_default_printer(nullptr, &size);
    DWORD code = GetLastError();
    while (code == ERROR_INSUFFICIENT_BUFFER) {
        std::wstring name(size, L'\0');
        if (get_default_printer(name.data(), &size)) {
            name.resize(size > 0 ? size - 1 : 0);  // without the closing NUL
            return name;
        }
        code = GetLastError();  // another default may have been set in between
    }
    // "file not found" is what the system says when no default is set; it would only mislead
    RaisePrinterError(code == ERROR_FILE_NOT_FOUND ? 0 : code);
}

}  // namespace

WinPrinter::WinPrinter(OwnerWindow owner) : owner_(std::move(owner)) {}

int WinPrinter::InstalledCount() const {
    constexpr DWORD kFlags = PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS;
    const auto enum_printers = TheSpooler().enum_printers;
    if (enum_printers == nullptr) return 0;
    std::vector<BYTE> buffer;
    for (;;) {
        DWORD needed = 0;
        DWORD count = 0;
        if (enum_printers(kFlags, nullptr, 4, buffer.data(), static_cast<DWORD>(buffer.size()),
                          &needed, &count)) {
            return static_cast<int>(count);
        }
        const DWORD code = GetLastError();
        // a printer may have been added since the size was asked
        if (code != ERROR_INSUFFICIENT_BUFFER || needed <= buffer.size()) RaisePrinterError(code);
        buffer.resize(needed);
    }
}

std::unique_ptr<IPrintJob> WinPrinter::Begin(std::wstring_view document) {
    const std::wstring name = DefaultPrinterName();
    SetLastError(0);
    UniqueDc dc(CreateDCW(L"WINSPOOL", name.c_str(), nullptr, nullptr));
    if (!dc) RaisePrinterError(GetLastError());
    auto job = std::make_unique<WinPrintJob>(std::move(dc), CurrentOwner(owner_));
    if (!job->Start(document)) return nullptr;
    return job;
}

}  // namespace demovex
