// A basket of 100,000 lines in the real window, through the host's calls: loading lines of every
// kind, and what a user does with such a basket afterwards. Beside each stands the same in a small
// basket, so that the ratio tells what the length costs.
// clang-format off
#include <windows.h>
#include <commctrl.h>
#include <oleacc.h>
// clang-format on

#include "basket/commands/commands.h"
#include "benches/bench.h"
#include "benches/client/bench_host_win.h"

namespace demovex {
namespace {

constexpr int kMany = 100'000;
constexpr int kFew = 10'000;
constexpr int kHandful = 10;
constexpr int kBlock = 1'000;
constexpr int kColumns = 10;
constexpr int kArtNr = 1;
constexpr int kMenge = 3;

std::string TextLine(int i) {
    return "\tZeile " + std::to_string(i) + "\t\r\n";
}
std::string BlankLine(int) {
    return "\t\t\r\n";
}
std::string MixedLine(int i) {
    return i % 3 == 0 ? TextLine(i) : i % 3 == 1 ? BlankLine(i) : ArticleLine(i / 3);
}

// The window of one client, used as a person uses it.
class OpenBasket {
  public:
    explicit OpenBasket(Host& host) : client_(host.Open()), window_(Basket()) {
        grid_ = FindWindowExW(window_, nullptr, L"DemoVexClient.FlexGrid", nullptr);
        Require(grid_ != nullptr &&
                    AccessibleObjectFromWindow(grid_, static_cast<DWORD>(OBJID_CLIENT),
                                               IID_IAccessible, table_.OutVoid()) == S_OK,
                "the grid");
    }

    void Load(const std::wstring& path) {
        const HRESULT result = client_->OpenFile(Bstr(path).Get());
        if (result == S_OK) return;
        std::printf("OpenFile answers %08lX for %ls\n", static_cast<unsigned long>(result),
                    path.c_str());
        std::exit(1);
    }
    void Run(Command command) {
        SendMessageW(window_, WM_COMMAND, static_cast<WPARAM>(command), 0);
        Settle();
    }
    // One key as the queue delivers it, everything that it causes, and the picture.
    void Key(WPARAM key) {
        PostMessageW(GetFocus(), WM_KEYDOWN, key, 1);
        Settle();
    }
    void Select(int row, int col) { Take(SELFLAG_TAKESELECTION, row, col); }
    void SelectBlock(int row, int rows) {
        Select(row, kArtNr);
        Take(SELFLAG_EXTENDSELECTION, row + rows - 1, kColumns - 1);
    }
    void Link(const Bstr& url) {
        const Bstr none(L"");
        Require(client_->OnSelectURL(url.Get(), none.Get(), none.Get()) == S_OK, "OnSelectURL");
        Settle();
    }
    // Handles what is queued and paints.
    void Settle() {
        Pump();
        RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        GdiFlush();
    }
    int Rows() const {
        LONG cells = 0;
        Require(table_->get_accChildCount(&cells) == S_OK, "counting");
        return static_cast<int>(cells) / kColumns - 2;
    }
    void Front() {
        SetForegroundWindow(window_);
        Settle();
    }
    void Close(const std::wstring& empty) {
        Load(empty);
        table_ = {};
        SendMessageW(window_, WM_CLOSE, 0, 0);
        client_ = {};
        Pump();
    }
    HWND Window() const { return window_; }

  private:
    void Take(LONG how, int row, int col) {
        VARIANT cell{};
        cell.vt = VT_I4;
        cell.lVal = row * kColumns + col + 1;
        Require(table_->accSelect(how, cell) == S_OK, "selecting");
        Settle();
    }

    ComPtr<IVEXClient> client_;
    HWND window_;
    HWND grid_ = nullptr;
    ComPtr<IAccessible> table_;
};

// A list view of the system with the same lines, the way a program fills it that minds the time.
class ListView {
  public:
    ListView() {
        const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_LISTVIEW_CLASSES};
        InitCommonControlsEx(&controls);
        window_ = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_OVERLAPPEDWINDOW | LVS_REPORT, 0, 0, 800,
                                  500, nullptr, nullptr, nullptr, nullptr);
        Require(window_ != nullptr, "a list view");
        for (int i = 0; i < kColumns; ++i) {
            LVCOLUMNW column{};
            column.mask = LVCF_WIDTH;
            column.cx = 80;
            SendMessageW(window_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(i),
                         reinterpret_cast<LPARAM>(&column));
        }
        ShowWindow(window_, SW_SHOWNA);
    }
    ~ListView() { DestroyWindow(window_); }
    ListView(const ListView&) = delete;
    ListView& operator=(const ListView&) = delete;

    void Fill(int lines) {
        static wchar_t number[] = L"4711", name[] = L"Eau de Cologne", one[] = L"1",
                       price[] = L"100,00";
        wchar_t* const texts[] = {number, name, one, price, price, price, price};
        SendMessageW(window_, WM_SETREDRAW, FALSE, 0);
        SendMessageW(window_, LVM_DELETEALLITEMS, 0, 0);
        SendMessageW(window_, LVM_SETITEMCOUNT, static_cast<WPARAM>(lines), 0);
        for (int i = 0; i < lines; ++i) {
            LVITEMW item{};
            item.mask = LVIF_TEXT;
            item.iItem = i;
            for (wchar_t* text : texts) {
                item.pszText = text;
                SendMessageW(window_, item.iSubItem == 0 ? LVM_INSERTITEMW : LVM_SETITEMW, 0,
                             reinterpret_cast<LPARAM>(&item));
                ++item.iSubItem;
            }
        }
        SendMessageW(window_, WM_SETREDRAW, TRUE, 0);
        UpdateWindow(window_);
    }

  private:
    HWND window_;
};

std::string Ratio(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

// The same work in the long basket and in the small one, in turns.
void LongAgainstShort(const std::string& what, OpenBasket& many, OpenBasket& few, int runs,
                      const std::function<void(OpenBasket&)>& prepare,
                      const std::function<void(OpenBasket&)>& act, const char* bar) {
    std::vector<double> long_times, short_times;
    for (int run = 0; run < runs; ++run) {
        for (OpenBasket* basket : {&many, &few}) {
            basket->Front();
            prepare(*basket);
            (basket == &many ? long_times : short_times).push_back(bench::Seconds([&] {
                act(*basket);
            }));
        }
    }
    const double ours = bench::Median(long_times);
    const double theirs = bench::Median(short_times);
    bench::PrintRow(what, bench::Duration(ours), "small basket " + bench::Duration(theirs),
                    Ratio(theirs / ours), bar);
}

void Loads(Host& host, const std::wstring& empty) {
    struct Kind {
        const char* name;
        std::string (*line)(int);
    };
    const Kind kinds[] = {{"articles", ArticleLine},
                          {"texts", TextLine},
                          {"blank lines", BlankLine},
                          {"mixed", MixedLine}};
    OpenBasket basket(host);
    basket.Front();
    for (const Kind& kind : kinds) {
        const std::wstring many = WriteBasket(L"lang.bsk", kMany, kind.line);
        const std::wstring few = WriteBasket(L"kurz.bsk", kFew, kind.line);
        std::vector<double> many_times, few_times;
        for (int run = 0; run < 5; ++run) {
            for (const bool all : {true, false}) {
                basket.Load(empty);
                basket.Settle();
                (all ? many_times : few_times).push_back(bench::Seconds([&] {
                    basket.Load(all ? many : few);
                    basket.Settle();
                }));
                Require(basket.Rows() == (all ? kMany : kFew), "loading every line");
            }
        }
        const double per_many = bench::Median(many_times) / kMany;
        const double per_few = bench::Median(few_times) / kFew;
        bench::PrintRow(std::string("loading 100,000 lines, ") + kind.name,
                        bench::Duration(per_many * kMany),
                        "10,000 lines, times ten " + bench::Duration(per_few * kMany),
                        Ratio(per_few / per_many), "below 0.5 s, at least 0.8");
    }
    const std::wstring many = WriteBasket(L"lang.bsk", kMany, ArticleLine);
    ListView list;
    bench::Compare("loading 100,000 lines",
                   {"ours",
                    [&] {
                        basket.Load(many);
                        basket.Settle();
                    }},
                   {"the system's list view", [&] { list.Fill(kMany); }},
                   {.runs = 3, .bar = "at least 1"});
    basket.Close(empty);
}

// Makes a file all of the recent ones, so that lines can be sent to the last of them.
void RememberAsRecent(const std::wstring& path) {
    for (const wchar_t* entry : {L"File1", L"File2", L"File3", L"File4"}) {
        Require(RegSetKeyValueW(
                    HKEY_CURRENT_USER, L"Software\\VB and VBA Program Settings\\DemoVexClient\\LRU",
                    entry, REG_SZ, path.c_str(),
                    static_cast<DWORD>((path.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS,
                "remembering a recent file");
    }
}

void Work(Host& host, const std::wstring& empty) {
    RememberAsRecent(WriteBasket(L"ziel.bsk", 0, ArticleLine));
    OpenBasket many(host), few(host);
    many.Load(WriteBasket(L"lang.bsk", kMany, ArticleLine));
    few.Load(WriteBasket(L"klein.bsk", kHandful, ArticleLine));
    const char* const bar = "below 15 ms";
    const auto nothing = [](OpenBasket&) {};
    bool down = true;
    LongAgainstShort(
        "a key that moves the current cell", many, few, 31,
        [&](OpenBasket& basket) {
            basket.Select(4, kMenge);
            down = !down;
        },
        [&](OpenBasket& basket) { basket.Key(VK_DOWN); }, bar);
    LongAgainstShort(
        "inserting a line", many, few, 15, [](OpenBasket& basket) { basket.Select(3, kMenge); },
        [](OpenBasket& basket) { basket.Run(Command::mnuEditZeileOberhalbEinfügen); }, bar);
    LongAgainstShort(
        "deleting a line", many, few, 15, [](OpenBasket& basket) { basket.Select(3, kMenge); },
        [](OpenBasket& basket) { basket.Run(Command::mnuEditZeilenLöschen); }, bar);
    LongAgainstShort(
        "appending a line", many, few, 15, nothing,
        [](OpenBasket& basket) { basket.Run(Command::mnuEditNeueZeile); }, bar);
    const Bstr urls[] = {Bstr(L"http://www.vexmart.example/vex/basket.html?prodno=4711"),
                         Bstr(L"http://www.vexmart.example/vex/basket.html?prodno=4712")};
    int turn = 0;
    LongAgainstShort(
        "following a link", many, few, 15, nothing,
        [&](OpenBasket& basket) { basket.Link(urls[turn++ / 2 % 2]); }, bar);

    few.Load(WriteBasket(L"klein.bsk", 2 * kBlock, ArticleLine));
    const auto block = [](OpenBasket& basket) { basket.SelectBlock(3, kBlock); };
    LongAgainstShort(
        "selecting 1,000 lines", many, few, 15,
        [](OpenBasket& basket) { basket.Select(3, kArtNr); }, block, bar);
    LongAgainstShort(
        "moving 1,000 lines down", many, few, 9, block,
        [](OpenBasket& basket) { basket.Run(Command::mnuEditZeilenNachUnten); }, bar);
    LongAgainstShort(
        "moving 1,000 lines up", many, few, 9,
        [](OpenBasket& basket) { basket.SelectBlock(5, kBlock); },
        [](OpenBasket& basket) { basket.Run(Command::mnuEditZeilenNachOben); }, bar);
    LongAgainstShort(
        "sending 1,000 lines to a basket", many, few, 9, block,
        [](OpenBasket& basket) { basket.Run(Command::mnuContextSendTo4); }, bar);
    std::vector<double> times[2];
    for (int run = 0; run < 5; ++run) {
        many.Load(WriteBasket(L"lang.bsk", kMany, ArticleLine));
        few.Load(WriteBasket(L"klein.bsk", 2 * kBlock, ArticleLine));
        int side = 0;
        for (OpenBasket* basket : {&many, &few}) {
            basket->Front();
            block(*basket);
            const int before = basket->Rows();
            times[side++].push_back(
                bench::Seconds([&] { basket->Run(Command::mnuEditZeilenLöschen); }));
            Require(basket->Rows() == before - kBlock, "deleting a block");
        }
    }
    const double ours = bench::Median(times[0]), theirs = bench::Median(times[1]);
    bench::PrintRow("deleting 1,000 lines", bench::Duration(ours),
                    "small basket " + bench::Duration(theirs), Ratio(theirs / ours), bar);
    many.Close(empty);
    few.Close(empty);
}

int Main() {
    Require(OleInitialize(nullptr) == S_OK, "OleInitialize");
    const HMODULE module = LoadLibraryW((BinFolder() + L"DemoVexClient.dll").c_str());
    Require(module != nullptr, "loading the component");
    {
        Host host(module);
        const std::wstring empty = WriteBasket(L"leer.bsk", 0, ArticleLine);
        Loads(host, empty);
        Work(host, empty);
    }
    OleUninitialize();
    return 0;
}

}  // namespace
}  // namespace demovex

int main() {
    return demovex::Main();
}
