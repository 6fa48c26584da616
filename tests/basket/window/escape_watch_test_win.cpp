#include "basket/window/escape_watch_win.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>

#include "tests/support/real_basket_window_win.h"
#include "tests/support/test_basket_window_win.h"
#include "tests/support/wait_until.h"

namespace demovex {
namespace {

void SendKey(WORD key, bool down) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
    SendInput(1, &input, sizeof input);
}

struct Watch : testing::Test {
    Watch() { basket.ClickCell(0, 1); }
    ~Watch() override { SendKey(VK_ESCAPE, false); }
    // Until the work shows.
    bool Shows() {
        const ULONGLONG end = GetTickCount64() + 700;
        WaitUntil([&] { return watch.Pressed() || GetTickCount64() >= end; });
        return !watch.Pressed();
    }
    bool KeysWait() {
        MSG message;
        return PeekMessageW(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_NOREMOVE) != FALSE;
    }
    BasketWindowFixture basket;
    EscapeWatch watch;
};

TEST_F(Watch, APressOnceTheWorkShowsIsSeenAndTheKeysAreTaken) {
    watch.Begin();
    ASSERT_TRUE(Shows());
    SendKey('X', true);
    SendKey('X', false);
    EXPECT_FALSE(watch.Pressed());
    SendKey(VK_ESCAPE, true);
    EXPECT_TRUE(WaitUntil([&] { return watch.Pressed(); }));
    SendKey(VK_ESCAPE, false);
    EXPECT_TRUE(watch.Pressed());  // it was
    watch.End();
    EXPECT_FALSE(KeysWait());
    EXPECT_FALSE(watch.Pressed());
}

TEST_F(Watch, AKeyThatWasHeldBeforeTheWorkShowsEndsNothing) {
    SendKey(VK_ESCAPE, true);
    watch.Begin();
    EXPECT_TRUE(Shows());
    SendKey(VK_ESCAPE, false);
    EXPECT_FALSE(watch.Pressed());
    watch.End();
    EXPECT_TRUE(KeysWait());  // it is for whoever takes it next
    basket.Pump();
}

TEST_F(Watch, WithoutWorkNothingIsWatched) {
    SendKey(VK_ESCAPE, true);
    EXPECT_FALSE(watch.Pressed());
    SendKey(VK_ESCAPE, false);
    basket.Pump();
}

// A disk on which every look-up takes its time.
class SlowFiles final : public WinFileSystem {
  public:
    std::unique_ptr<IRandomReader> OpenShared(std::wstring_view path) override {
        return std::make_unique<Reader>(WinFileSystem::OpenShared(path));
    }

  private:
    class Reader final : public IRandomReader {
      public:
        explicit Reader(std::unique_ptr<IRandomReader> inner) : inner_(std::move(inner)) {}
        std::uint64_t Size() const override { return inner_->Size(); }
        std::optional<FileStamp> Stamp() const noexcept override { return inner_->Stamp(); }
        std::string_view Read(std::uint64_t offset, std::size_t length) override {
            Sleep(1);  // what the disk needs
            return inner_->Read(offset, length);
        }

      private:
        std::unique_ptr<IRandomReader> inner_;
    };
};

struct SlowBasket : RealServices {
    SlowFiles slow;
    Services services = With(real, slow);
    BasketWindowFixture basket{HostLoop::kBare, 0, true, &services};
};

TEST(EscapeInTheWindow, EndsALoadAndLeavesItsMessageStanding) {
    SlowBasket slow;
    BasketWindowFixture& basket = slow.basket;
    slow.basket_window = basket.Handle();
    std::string lines;
    for (int i = 0; i < 20'000; ++i) lines += i % 2 == 0 ? "4711\t\t1\r\n" : "4712\t\t1\r\n";
    const std::wstring path = slow.folder.Put(L"a.bsk", lines);
    std::thread user([&] {
        // seen by its progress
        const HWND bar =
            GetDlgItem(GetDlgItem(basket.Handle(), child_id::kStatusBar), child_id::kProgress);
        WaitUntil([&] { return IsWindowVisible(bar) != FALSE; }, std::chrono::seconds(30));
        SendKey(VK_ESCAPE, true);
        WaitUntil([&] { return IsWindowVisible(bar) == FALSE; }, std::chrono::seconds(30));
        SendKey(VK_ESCAPE, false);
    });
    DialogUser dialogs(basket.Handle(), {DialogUser::Choose(path), DialogUser::Answer(IDOK)});
    SendMessageW(basket.Handle(), WM_COMMAND, static_cast<WPARAM>(Command::mnuDateiOeffnen), 0);
    user.join();
    basket.Pump();
    const auto seen = dialogs.Seen();
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[1], L"Fehler beim öffnen der Datei: Datei '" + path +
                           L"' kann nicht geöffnet werden: Abgebrochen (OK)");
    EXPECT_GT(basket.Lines(), 100);
    EXPECT_LT(basket.Lines(), 20'000);
    EXPECT_FALSE(basket.window->Form()->Modified());
}

}  // namespace
}  // namespace demovex
