// The basket window under Wine: from creation to the picture on the screen, and from a key to the
// repainted editor, in a short and in a long basket.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "benches/bench.h"
#include "tests/support/test_basket_window_win.h"

namespace {

using namespace demovex;

void PaintNow(HWND window) {
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    GdiFlush();
}

// A basket with `lines` order lines, the editor open on a quantity in the middle of the window.
struct Filled {
    explicit Filled(int lines) {
        for (int i = 0; i < lines; ++i) {
            bool info = false;
            basket.window->Form()->AddArtikel(i % 2 == 0 ? L"4711" : L"4712", L"", L"", info, 1,
                                              true);
        }
        basket.Grid().SetTopRow(1);
        basket.Grid().Select(4, column::kMenge, 4, column::kMenge);
        basket.Pump();
        PaintNow(basket.Handle());
    }
    // One key as the queue delivers it, everything that it causes, and the picture.
    void Key(WPARAM key) {
        PostMessageW(basket.Text(), WM_KEYDOWN, key, 1);
        basket.Pump();
        PaintNow(basket.Handle());
    }
    void Character(wchar_t character) {
        PostMessageW(basket.Text(), WM_CHAR, character, 1);
        basket.Pump();
    }
    void DownAndUp() {
        Key(VK_DOWN);
        Key(VK_UP);
    }
    void CommitQuantity() {
        quantity = quantity == L'3' ? L'4' : L'3';
        Character(quantity);
        Key(VK_RETURN);
    }
    BasketWindowFixture basket;
    wchar_t quantity = L'3';
};

void ShortAgainstLong(const char* what, void (Filled::*act)(), double operations) {
    std::vector<double> short_times, long_times;
    {
        Filled small(10);
        Filled large(10000);
        for (int run = 0; run < 15; ++run) {
            SetForegroundWindow(small.basket.Handle());
            small.basket.Pump();
            (small.*act)();
            short_times.push_back(bench::Seconds([&] {
                for (int i = 0; i < 10; ++i) (small.*act)();
            }));
            SetForegroundWindow(large.basket.Handle());
            large.basket.Pump();
            (large.*act)();
            long_times.push_back(bench::Seconds([&] {
                for (int i = 0; i < 10; ++i) (large.*act)();
            }));
        }
    }
    const double few = bench::Median(short_times) / 10 / operations;
    const double many = bench::Median(long_times) / 10 / operations;
    char ratio[32];
    std::snprintf(ratio, sizeof ratio, "%.2f", few / many);
    bench::PrintRow(std::string(what) + ", 10,000 lines", bench::Duration(many),
                    "10 lines " + bench::Duration(few), ratio, "below 10 ms, ratio at least 0.83");
}

}  // namespace

// Two arguments, the number of times and what to do ("key" or "commit"), do just that: for those
// who count the system calls.
int main(int argc, char** argv) {
    if (argc == 3) {
        Filled small(10);
        SetForegroundWindow(small.basket.Handle());
        small.basket.Pump();
        const bool key = std::string_view(argv[2]) == "key";
        for (int i = std::atoi(argv[1]); i > 0; --i) {
            key ? small.Key(i % 2 == 0 ? VK_DOWN : VK_UP) : small.CommitQuantity();
        }
        return 0;
    }
    {
        BasketWindowFixture parts(HostLoop::kBare, 0, false);
        bench::Measure("create to visible window",
                       [&] {
                           auto window = BasketWindow::Create(
                               GetModuleHandleW(nullptr), parts.owner, {}, {&parts.services, 0});
                           window->Initialize();
                           window->Show();
                           PumpMessages();
                           PaintNow(window->Handle());
                           DestroyWindow(window->Handle());
                       },
                       {.runs = 11, .bar = "below 100 ms"});
    }
    ShortAgainstLong("a key that moves the current cell", &Filled::DownAndUp, 2);
    ShortAgainstLong("committing a quantity", &Filled::CommitQuantity, 1);
}
