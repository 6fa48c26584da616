// The grid against the system's list view, filled and as a virtual list: the same texts, columns,
// font and size of window. Filling, memory, a repainted page, a scrolled line, a keystroke, and
// what of it depends on the number of rows.
#include <windows.h>

#include <commctrl.h>

#include <memory>
#include <string>
#include <vector>

#include "benches/bench.h"
#include "grid/flex_grid_control_win.h"
#include "platform/text_win.h"

using namespace demovex;

namespace {

constexpr int kRows = 100'000;
constexpr int kCols = 10;
constexpr int kWidth = 900;
constexpr int kHeight = 600;
constexpr int kColWidth = 85;  // pixels

std::vector<std::wstring> MakeTexts() {
    std::vector<std::wstring> texts;
    texts.reserve(static_cast<std::size_t>(kRows) * kCols);
    for (int row = 0; row < kRows; ++row) {
        for (int col = 0; col < kCols; ++col) {
            texts.push_back(col == 2 ? L"Artikel " + std::to_wstring(row)
                                     : std::to_wstring(row * 7 + col) + L",50");
        }
    }
    return texts;
}

const std::vector<std::wstring>& Texts() {
    static const std::vector<std::wstring> texts = MakeTexts();
    return texts;
}

const std::wstring& TextOf(int row, int col) {
    return Texts()[static_cast<std::size_t>(row % kRows) * kCols + static_cast<std::size_t>(col)];
}

// The parent answers what the virtual list asks for.
LRESULT CALLBACK Parent(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
    if (message == WM_NOTIFY) {
        auto* info = reinterpret_cast<NMLVDISPINFOW*>(lparam);
        if (info->hdr.code == LVN_GETDISPINFOW && (info->item.mask & LVIF_TEXT) != 0) {
            lstrcpynW(info->item.pszText, TextOf(info->item.iItem, info->item.iSubItem).c_str(),
                      info->item.cchTextMax);
        }
        return 0;
    }
    return DefWindowProcW(window, message, wparam, lparam);
}

HWND MakeParent() {
    WNDCLASSW c{};
    c.lpfnWndProc = Parent;
    c.hInstance = GetModuleHandleW(nullptr);
    c.lpszClassName = L"DemoVexBench.Parent";
    RegisterClassW(&c);
    return CreateWindowExW(0, c.lpszClassName, L"", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0,
                           kWidth + 20, kHeight + 20, nullptr, nullptr, c.hInstance, nullptr);
}

void Pump() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

// Committed private memory of this process.
double PrivateMegabytes() {
    std::size_t bytes = 0;
    MEMORY_BASIC_INFORMATION info{};
    for (const char* at = nullptr; VirtualQuery(at, &info, sizeof info) == sizeof info;) {
        if (info.State == MEM_COMMIT && info.Type == MEM_PRIVATE) bytes += info.RegionSize;
        const char* next = static_cast<const char*>(info.BaseAddress) + info.RegionSize;
        if (next <= at) break;
        at = next;
    }
    return static_cast<double>(bytes) / 1048576.0;
}

class ListView {
  public:
    ListView(HWND parent, HFONT font, bool virtual_list) {
        window_ = CreateWindowExW(
            WS_EX_CLIENTEDGE, WC_LISTVIEWW, L"",
            WS_CHILD | WS_VISIBLE | LVS_REPORT | (virtual_list ? LVS_OWNERDATA : 0U), 10, 10,
            kWidth, kHeight, parent, nullptr, GetModuleHandleW(nullptr), nullptr);
        SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
        SendMessageW(window_, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_GRIDLINES | LVS_EX_FULLROWSELECT,
                     LVS_EX_GRIDLINES | LVS_EX_FULLROWSELECT);
        for (int col = 0; col < kCols; ++col) {
            LVCOLUMNW column{};
            column.mask = LVCF_WIDTH | LVCF_TEXT | LVCF_FMT;
            column.cx = kColWidth;
            column.fmt = col == 2 ? LVCFMT_LEFT : LVCFMT_RIGHT;
            wchar_t title[] = L"Spalte";
            column.pszText = title;
            SendMessageW(window_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(col),
                         reinterpret_cast<LPARAM>(&column));
        }
    }
    ~ListView() { DestroyWindow(window_); }
    ListView(const ListView&) = delete;
    ListView& operator=(const ListView&) = delete;

    HWND Handle() const { return window_; }
    void Clear() const { SendMessageW(window_, LVM_DELETEALLITEMS, 0, 0); }
    void SetCount(int rows) const {
        SendMessageW(window_, LVM_SETITEMCOUNT, static_cast<WPARAM>(rows), 0);
    }
    void Fill(int rows) const {
        SendMessageW(window_, WM_SETREDRAW, FALSE, 0);
        SetCount(rows);
        for (int row = 0; row < rows; ++row) {
            LVITEMW item{};
            item.mask = LVIF_TEXT;
            item.iItem = row;
            for (int col = 0; col < kCols; ++col) {
                item.iSubItem = col;
                item.pszText = const_cast<wchar_t*>(TextOf(row, col).c_str());
                SendMessageW(window_, col == 0 ? LVM_INSERTITEMW : LVM_SETITEMW, 0,
                             reinterpret_cast<LPARAM>(&item));
            }
        }
        SendMessageW(window_, WM_SETREDRAW, TRUE, 0);
    }
    void ScrollLine() {
        RECT row{};
        row.left = LVIR_BOUNDS;
        SendMessageW(window_, LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&row));
        SendMessageW(window_, LVM_SCROLL, 0, row.bottom - row.top);
        UpdateWindow(window_);
        GdiFlush();
    }

  private:
    HWND window_;
};

class Grid {
  public:
    Grid(HWND parent, const WinTextService& text)
        : control_(GetModuleHandleW(nullptr), parent, 1, {150, 150, kWidth * 15, kHeight * 15},
                   Scale(96), text) {}
    FlexGrid& Cells() { return control_.Grid(); }
    HWND Handle() const { return control_.Handle(); }
    HFONT Font() const { return control_.Font(); }
    void Clear() { Cells().SetRows(2); }
    void Fill(int rows) {
        FlexGrid& grid = Cells();
        grid.SetRedraw(false);
        grid.SetRows(rows + 1);
        grid.SetCols(kCols);
        for (int col = 0; col < kCols; ++col) {
            grid.SetColWidth(col, kColWidth * 15);
            grid.SetTextMatrix(0, col, L"Spalte");
        }
        for (int row = 0; row < rows; ++row) {
            for (int col = 0; col < kCols; ++col)
                grid.SetTextMatrix(row + 1, col, TextOf(row, col));
        }
        grid.SetRedraw(true);
    }
    void ScrollLine() {
        Cells().SetTopRow(Cells().TopRow() + 1);
        UpdateWindow(Handle());
        GdiFlush();
    }
    // The moved thumb too, which the grid otherwise shows once for several lines.
    void ScrollLineAndBar() {
        ScrollLine();
        SendMessageW(Handle(), WM_TIMER, 2, 0);
        GdiFlush();
    }
    void Key(GridKey key) {
        Cells().Key(key, false, false);
        UpdateWindow(Handle());
        GdiFlush();
    }

  private:
    FlexGridControl control_;
};

void Repaint(HWND window) {
    InvalidateRect(window, nullptr, TRUE);
    UpdateWindow(window);
    GdiFlush();
}

void Show(HWND shown, HWND hidden) {
    ShowWindow(hidden, SW_HIDE);
    ShowWindow(shown, SW_SHOW);
    Pump();
}

constexpr char kBar[] = "at least 4";

void Memory(HWND parent, const WinTextService& text) {
    double before = PrivateMegabytes();
    double ours = 0;
    double filled = 0;
    {
        Grid grid(parent, text);
        ShowWindow(grid.Handle(), SW_HIDE);
        grid.Fill(kRows);
        ours = PrivateMegabytes() - before;
    }
    before = PrivateMegabytes();
    {
        const ListView list(parent, nullptr, false);
        ShowWindow(list.Handle(), SW_HIDE);
        list.Fill(kRows);
        filled = PrivateMegabytes() - before;
    }
    char a[32], b[48], r[32];
    std::snprintf(a, sizeof a, "%.1f MB", ours);
    std::snprintf(b, sizeof b, "list view %.1f MB", filled);
    std::snprintf(r, sizeof r, "%.2f", filled / ours);
    bench::PrintRow("memory of 100,000 x 10 cells", a, b, r, kBar);
}

void Filling(Grid& grid, const ListView& list, const ListView& virtual_list) {
    bench::Options options{.runs = 3, .bar = kBar};
    options.before = [&] {
        grid.Clear();
        list.Clear();
    };
    bench::Compare("filling 100,000 x 10 cells", {"ours", [&] { grid.Fill(kRows); }},
                   {"list view", [&] { list.Fill(kRows); }}, options);
    options.before = [&] {
        grid.Clear();
        virtual_list.SetCount(0);
    };
    // a virtual list stores nothing: its owner fills cells of its own, as plainly as can be
    bench::Compare("the same, against cells of its owner", {"ours", [&] { grid.Fill(kRows); }},
                   {"virtual list",
                    [&] {
                        std::vector<std::vector<std::wstring>> cells(kRows);
                        for (int row = 0; row < kRows; ++row) {
                            auto& line = cells[static_cast<std::size_t>(row)];
                            line.resize(kCols);
                            for (int col = 0; col < kCols; ++col) {
                                line[static_cast<std::size_t>(col)] = TextOf(row, col);
                            }
                        }
                        virtual_list.SetCount(kRows);
                        bench::Keep(cells.back().back().size());
                    }},
                   options);
}

void Painting(Grid& grid, ListView& list, const char* name) {
    const std::string against = std::string(", against a ") + name;
    bench::Options page{.runs = 15, .bar = kBar};
    bool ours_next = true;
    page.before = [&] {
        Show(ours_next ? grid.Handle() : list.Handle(), ours_next ? list.Handle() : grid.Handle());
        ours_next = !ours_next;
    };
    bench::Compare("a repainted page" + against, {"ours", [&] { Repaint(grid.Handle()); }},
                   {name, [&] { Repaint(list.Handle()); }}, page);
    bench::Options line = page;
    line.bar = std::string(kBar);
    line.operations = 20;
    ours_next = true;
    bench::Compare("a scrolled line" + against,
                   {"ours",
                    [&] {
                        for (int i = 0; i < 20; ++i) grid.ScrollLine();
                    }},
                   {name,
                    [&] {
                        for (int i = 0; i < 20; ++i) list.ScrollLine();
                    }},
                   line);
    ours_next = true;
    line.bar = "the bar is drawn once for several lines";
    bench::Compare("the same, the scroll bar drawn for each line" + against,
                   {"ours",
                    [&] {
                        for (int i = 0; i < 20; ++i) grid.ScrollLineAndBar();
                    }},
                   {name,
                    [&] {
                        for (int i = 0; i < 20; ++i) list.ScrollLine();
                    }},
                   line);
}

// The same work with few and with many rows: the ratio should stay near 1.
void Independence(HWND parent, const WinTextService& text) {
    Grid few(parent, text);
    few.Fill(100);
    Grid many(parent, text);
    many.Fill(kRows);
    bool few_next = false;
    bench::Options options{.runs = 15, .bar = "at least 0.83 (within 1.2 times)"};
    options.before = [&] {
        Show(few_next ? few.Handle() : many.Handle(), few_next ? many.Handle() : few.Handle());
        few_next = !few_next;
    };
    bench::Compare("a repainted page of 100,000 rows", {"ours", [&] { Repaint(many.Handle()); }},
                   {"100 rows", [&] { Repaint(few.Handle()); }}, options);
    options.operations = 20;
    const auto keys = [](Grid& grid) {
        return [&grid] {
            for (int i = 0; i < 10; ++i) grid.Key(GridKey::kDown);
            for (int i = 0; i < 10; ++i) grid.Key(GridKey::kUp);
        };
    };
    few_next = false;
    bench::Compare("a keystroke in 100,000 rows, repainted", {"ours", keys(many)},
                   {"100 rows", keys(few)}, options);
    few_next = false;
    bench::Compare("a scrolled line in 100,000 rows",
                   {"ours",
                    [&] {
                        for (int i = 0; i < 20; ++i) many.ScrollLine();
                        many.Cells().SetTopRow(1);
                    }},
                   {"100 rows",
                    [&] {
                        for (int i = 0; i < 20; ++i) few.ScrollLine();
                        few.Cells().SetTopRow(1);
                    }},
                   options);
}

}  // namespace

int main() {
    INITCOMMONCONTROLSEX classes{sizeof classes, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&classes);
    Texts();
    const WinTextService text;
    const HWND parent = MakeParent();
    Memory(parent, text);
    {
        Grid grid(parent, text);
        ListView list(parent, grid.Font(), false);
        ListView virtual_list(parent, grid.Font(), true);
        ShowWindow(virtual_list.Handle(), SW_HIDE);
        Filling(grid, list, virtual_list);
        grid.Fill(kRows);
        list.Fill(kRows);
        Painting(grid, list, "filled list view");
        ShowWindow(list.Handle(), SW_HIDE);
        grid.Cells().SetTopRow(1);
        virtual_list.SetCount(kRows);
        Painting(grid, virtual_list, "virtual list view");
    }
    Independence(parent, text);
    DestroyWindow(parent);
}
