// The help button of the system's file dialogs.
#include <gtest/gtest.h>

#include "tests/support/real_basket_window_win.h"

namespace demovex {
namespace {

// The system's own services but for the browser.
struct HelpServices : RealServices {
    FakeShell browser;
    Services mixed = With(real, browser);
};

class HelpWindow : public HelpServices, public BasketWindowFixture {
  public:
    HelpWindow() : BasketWindowFixture(HostLoop::kBare, 0, true, &mixed) {
        basket_window = Handle();
    }
    void Open(Command command, std::vector<DialogUser::Act> acts) {
        DialogUser user(Handle(), std::move(acts));
        SendMessageW(Handle(), WM_COMMAND, static_cast<WPARAM>(command), 0);
        Pump();
        EXPECT_EQ(user.Seen().size(), 1u);
    }
};

// What the system's dialog sends its owner when the button is pressed; the one these tests run with
// tells nobody but a hook.
DialogUser::Act PressHelp() {
    return DialogUser::Looking(DialogUser::Cancel(), [](HWND dialog) {
        SendMessageW(GetWindow(dialog, GW_OWNER), RegisterWindowMessageW(L"commdlg_help"),
                     reinterpret_cast<WPARAM>(dialog), 0);
    });
}

TEST(WindowHelp, TheHelpButtonOfAFileDialogOpensTheHelpPage) {
    HelpWindow basket;
    const std::wstring page = HelpServices::PathOf(basket.folder) + L"\\DemoVexClient.html";
    basket.Open(Command::mnuDateiOeffnen, {PressHelp()});
    EXPECT_EQ(basket.browser.opened, Texts{page});
    basket.Link(L"4711");
    basket.Open(Command::mnuDateiSpeichern, {PressHelp()});
    EXPECT_EQ(basket.browser.opened, (Texts{page, page}));
}

TEST(WindowHelp, OnlyAnOpenDialogCanAskForIt) {
    HelpWindow basket;
    SendMessageW(basket.Handle(), RegisterWindowMessageW(L"commdlg_help"), 0, 0);
    EXPECT_TRUE(basket.browser.opened.empty());
}

}  // namespace
}  // namespace demovex
