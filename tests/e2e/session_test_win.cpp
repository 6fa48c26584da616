// The user logs off while a basket is open in a host, and another program or the user's unsaved
// basket cancels it.
#include "tests/e2e/component_win.h"

namespace demovex {
namespace {

class Session : public ComponentTest {
  protected:
    // Runs the program that ends this process' session; its result.
    static int End(const std::wstring& how) {
        std::array<wchar_t, MAX_PATH> path{};
        GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        std::wstring command(path.data());
        command.resize(command.find_last_of(L'\\') + 1);
        command = L"\"" + command + L"session_ender.exe\" " +
                  std::to_wstring(GetCurrentProcessId()) + L" " + how;
        STARTUPINFOW start{};
        start.cb = sizeof start;
        PROCESS_INFORMATION process{};
        if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                            &start, &process)) {
            return -1;
        }
        const bool ended = PumpUntil(
            [&] { return WaitForSingleObject(process.hProcess, 0) == WAIT_OBJECT_0; }, 60'000);
        DWORD code = 0;
        GetExitCodeProcess(process.hProcess, &code);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
        return ended ? static_cast<int>(code) : -2;
    }
};

TEST_F(Session, AnEndThatAnotherProgramCancelsLeavesTheBasketOpen) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    BoxAnswers boxes({});
    EXPECT_EQ(End(L"refuse"), 0) << "no window of ours refused";
    EXPECT_TRUE(boxes.texts.empty());
    ASSERT_EQ(BasketWindows().size(), 1u);
    EXPECT_TRUE(host.calls.empty());
    ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
    EXPECT_NE(BasketText(BasketWindows()[0]).find(L"Hammer"), std::wstring::npos);
    Close(BasketWindows()[0], {IDNO});
}

TEST_F(Session, AnUnsavedBasketCancelsTheEndWithoutABox) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
    const std::wstring before = BasketText(BasketWindows()[0]);
    {
        BoxAnswers boxes({});
        EXPECT_EQ(End(L"agree"), 1) << "the basket's window refused, and the session goes on";
        EXPECT_TRUE(boxes.texts.empty());
    }
    ASSERT_EQ(BasketWindows().size(), 1u);
    EXPECT_TRUE(host.calls.empty());
    EXPECT_EQ(BasketText(BasketWindows()[0]), before);
    ASSERT_EQ(Follow(client.Get(), L"2000"), S_OK);
    Close(BasketWindows()[0], {IDNO});
}

TEST_F(Session, ACriticalEndIsNotHeldUp) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
    BoxAnswers boxes({});
    EXPECT_EQ(End(L"agree critical"), 100);
    EXPECT_TRUE(boxes.texts.empty());
    Close(BasketWindows()[0], {IDNO});
}

}  // namespace
}  // namespace demovex
