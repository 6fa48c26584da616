// Messages that mean nothing, or something else than they say: from another program of the same
// user, and as commands of a menu that has no such item.
#include "basket/commands/commands.h"
#include "tests/e2e/component_win.h"

namespace demovex {
namespace {

class StrangeMessages : public ComponentTest {
  protected:
    // Runs the program that sends `count` messages to this process' basket windows; its result.
    static int Send(int count, int seed) {
        std::array<wchar_t, MAX_PATH> path{};
        GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        std::wstring command(path.data());
        command.resize(command.find_last_of(L'\\') + 1);
        command = L"\"" + command + L"message_sender.exe\" " +
                  std::to_wstring(GetCurrentProcessId()) + L" " + std::to_wstring(count) + L" " +
                  std::to_wstring(seed);
        STARTUPINFOW start{};
        start.cb = sizeof start;
        PROCESS_INFORMATION process{};
        if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                            &start, &process)) {
            return -1;
        }
        const bool ended = PumpUntil(
            [&] { return WaitForSingleObject(process.hProcess, 0) == WAIT_OBJECT_0; }, 120'000);
        DWORD code = 0;
        GetExitCodeProcess(process.hProcess, &code);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
        return ended ? static_cast<int>(code) : -2;
    }
    // What was ordered is there, the host was told nothing, and the basket takes orders and its
    // end.
    void ExpectWhole(IVEXClient* client) {
        ASSERT_EQ(BasketWindows().size(), 1u);
        const HWND window = BasketWindows()[0];
        EXPECT_TRUE(host.calls.empty());
        EXPECT_NE(BasketText(window).find(L"Hammer"), std::wstring::npos);
        ASSERT_EQ(Follow(client, L"2000"), S_OK);
        EXPECT_NE(BasketText(window).find(L"Zange"), std::wstring::npos);
        Close(window, {IDNO});
        EXPECT_TRUE(BasketWindows().empty());
    }
};

TEST_F(StrangeMessages, FiftyFiveThousandOfAnotherProcessHarmNothing) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
    EXPECT_EQ(Send(55'000, 1), 0);
    ExpectWhole(client.Get());
}

TEST_F(StrangeMessages, CommandsThatAreNoneDoNothing) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
    const HWND window = BasketWindows()[0];
    const std::wstring before = BasketText(window);
    int sent = 0;
    for (WPARAM id = 0; id <= 0xFFFF; ++id) {
        const bool known = std::ranges::any_of(CommandTable(), [&](const CommandRow& row) {
            return static_cast<WPARAM>(row.id) == id;
        });
        if (known) continue;
        // of a menu, of an accelerator, and of a control that is none of the window's
        SendMessageW(window, WM_COMMAND, id, 0);
        SendMessageW(window, WM_COMMAND, id | 0x10000, 0);
        SendMessageW(window, WM_COMMAND, id, reinterpret_cast<LPARAM>(window));
        ++sent;
    }
    EXPECT_GT(sent, 65'000);
    EXPECT_EQ(BasketText(window), before);
    ExpectWhole(client.Get());
}

}  // namespace
}  // namespace demovex
