// How long a host waits: for the basket window to stand, and for a followed link.
#include "benches/bench.h"
#include "benches/client/bench_host_win.h"

namespace demovex {
namespace {

constexpr int kLines = 10'000;

int Main() {
    Require(OleInitialize(nullptr) == S_OK, "OleInitialize");
    const HMODULE module = LoadLibraryW((BinFolder() + L"DemoVexClient.dll").c_str());
    Require(module != nullptr, "loading the component");
    {
        Host host(module);
        const std::wstring empty = WriteBasket(L"leer.bsk", 0, ArticleLine);
        const std::wstring many = WriteBasket(L"viele.bsk", kLines, ArticleLine);

        ComPtr<IVEXClient> client = host.Open();  // warm
        host.Close(client, empty);
        bench::Measure("create to visible window", [&] { client = host.Open(); },
                       {.runs = 9, .bar = "below 100 ms", .before = [&] {
                            if (client) host.Close(client, empty);
                        }});
        host.Close(client, empty);

        // One link at a time, as a person follows them: what a call leaves to the loop (painting)
        // and to the system (playing the sound) is done before the next one, and is part of neither
        // side.
        Links links;
        const auto few_client = host.Open();
        const HWND few_window = Basket();
        const auto many_client = host.Open();
        Require(many_client->OpenFile(Bstr(many).Get()) == S_OK, "OpenFile");
        int turn = 0;
        bench::Compare("following a link into 10,000 lines",
                       {"10,000 lines", [&] { links.Follow(many_client.Get()); }},
                       {"empty basket", [&] { links.Follow(few_client.Get()); }},
                       {.runs = 51, .bar = "below 1 ms, at least 0.67", .before = [&] {
                            if (turn++ % 2) {
                                Require(few_client->OpenFile(Bstr(empty).Get()) == S_OK,
                                        "OpenFile");
                            }
                            Rest();
                        }});
        Require(few_client->OpenFile(Bstr(empty).Get()) == S_OK, "OpenFile");
        Require(many_client->OpenFile(Bstr(empty).Get()) == S_OK, "OpenFile");
        SendMessageW(few_window, WM_CLOSE, 0, 0);
        SendMessageW(Basket(), WM_CLOSE, 0, 0);
        Pump();
    }
    OleUninitialize();
    return 0;
}

}  // namespace
}  // namespace demovex

int main() {
    return demovex::Main();
}
