// Life, layout and edges of the basket window.
#include <gtest/gtest.h>

#include "base/error.h"
#include "basket/window/handles_win.h"
#include "grid/flex_grid_control_win.h"
#include "tests/support/test_basket_window_win.h"
#include "tests/support/window_picture_win.h"

namespace demovex {
namespace {

RECT InClient(HWND window, HWND child) {
    RECT rect{};
    GetWindowRect(child, &rect);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

RECT Client(HWND window) {
    RECT rect{};
    GetClientRect(window, &rect);
    return rect;
}

TEST(BasketWindow, OpensCentredWideEnoughForAllColumnsWithTwentyRowsInView) {
    BasketWindowFixture basket;
    for (int i = 0; i < 30; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
    const FlexGrid& grid = basket.Grid();
    EXPECT_FALSE(grid.HorizontalBar().visible);
    EXPECT_TRUE(grid.VerticalBar().visible);
    EXPECT_GE(grid.View().height() / grid.CellRect(grid.TopRow(), 1).height(), 20);
    RECT rect{}, area{};
    GetWindowRect(basket.Handle(), &rect);
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    EXPECT_NEAR(rect.left - area.left, area.right - rect.right, 1);
    EXPECT_NEAR(rect.top - area.top, area.bottom - rect.bottom, 1);
}

TEST(BasketWindow, LaysOutToolbarGridAndStatusBarWithoutGaps) {
    for (const int dpi : {96, 120, 144, 192}) {
        SCOPED_TRACE(dpi);
        BasketWindowFixture basket(HostLoop::kBare, dpi);
        const RECT client = Client(basket.Handle());
        const RECT grid = InClient(basket.Handle(), basket.Child(child_id::kListe));
        const RECT status = InClient(basket.Handle(), basket.Child(child_id::kStatusBar));
        EXPECT_EQ(grid.left, 0);
        EXPECT_EQ(grid.right, client.right);
        EXPECT_EQ(grid.top, dpi / 4);  // 360 twips
        EXPECT_EQ(grid.bottom, status.top);
        EXPECT_EQ(status.bottom, client.bottom);
    }
}

TEST(BasketWindow, WithoutTheToolbarTheGridBeginsAtTheTopEdge) {
    BasketWindowFixture basket;
    SendMessageW(basket.Handle(), WM_COMMAND, static_cast<WPARAM>(Command::mnuAnsichtSymbolleiste),
                 0);
    EXPECT_FALSE(IsWindowVisible(basket.Child(child_id::kToolbar)));
    EXPECT_EQ(InClient(basket.Handle(), basket.Child(child_id::kListe)).top, 0);
    EXPECT_EQ(InClient(basket.Handle(), basket.Child(child_id::kListe)).bottom,
              InClient(basket.Handle(), basket.Child(child_id::kStatusBar)).top);
}

TEST(BasketWindow, WithoutTheStatusBarTheGridEndsAtTheBottomEdge) {
    BasketWindowFixture basket;
    SendMessageW(basket.Handle(), WM_COMMAND, static_cast<WPARAM>(Command::mnuAnsichtStatusleiste),
                 0);
    EXPECT_EQ(InClient(basket.Handle(), basket.Child(child_id::kListe)).bottom,
              Client(basket.Handle()).bottom);
}

TEST(BasketWindow, FollowsItsSize) {
    BasketWindowFixture basket;
    SetWindowPos(basket.Handle(), nullptr, 0, 0, 900, 700, SWP_NOMOVE | SWP_NOZORDER);
    basket.Pump();
    const RECT grid = InClient(basket.Handle(), basket.Child(child_id::kListe));
    EXPECT_EQ(grid.right, Client(basket.Handle()).right);
    EXPECT_EQ(grid.bottom, InClient(basket.Handle(), basket.Child(child_id::kStatusBar)).top);
}

TEST(BasketWindow, MinimisingLeavesTheGridAsItIs) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    const TwipsRect before{0, 0, basket.Grid().Width(), basket.Grid().Height()};
    ShowWindow(basket.Handle(), SW_MINIMIZE);
    basket.Pump();
    EXPECT_EQ(basket.Grid().Width(), before.width);
    EXPECT_EQ(basket.Grid().Height(), before.height);
    ShowWindow(basket.Handle(), SW_RESTORE);
    basket.Pump();
    EXPECT_EQ(basket.Grid().Width(), before.width);
}

TEST(BasketWindow, CannotBeMadeSmallerThanItsToolbar) {
    BasketWindowFixture basket;
    SetWindowPos(basket.Handle(), nullptr, 0, 0, 10, 10, SWP_NOMOVE | SWP_NOZORDER);
    MINMAXINFO info{};
    SendMessageW(basket.Handle(), WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
    EXPECT_GE(info.ptMinTrackSize.x, 370);
    EXPECT_GE(info.ptMinTrackSize.y, 100);
}

TEST(BasketWindow, BearsItsCaptionAndIcon) {
    BasketWindowFixture basket;
    EXPECT_EQ(basket.TextOf(basket.Handle()), L"Vexmart Demo Warenkorb 1.1");
    EXPECT_NE(SendMessageW(basket.Handle(), WM_GETICON, ICON_SMALL, 0), 0);
    EXPECT_NE(SendMessageW(basket.Handle(), WM_GETICON, ICON_BIG, 0), 0);
    wchar_t name[64] = L"";
    GetClassNameW(basket.Handle(), name, 64);
    EXPECT_STREQ(name, L"DemoVexClient.TestLibForm");
    GetClassNameW(basket.Child(child_id::kListe), name, 64);
    EXPECT_STREQ(name, kFlexGridControlClass);
}

TEST(BasketWindow, TheStatusBarShowsTheCataloguePositionOfTheRow) {
    BasketWindowFixture basket;
    basket.Link(L"4711", L"Düfte / Seite 3", L"vex:3");
    basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    wchar_t text[256] = L"";
    SendMessageW(basket.Child(child_id::kStatusBar), WM_GETTEXT, 256,
                 reinterpret_cast<LPARAM>(text));
    EXPECT_STREQ(text, L"Düfte / Seite 3");
}

TEST(BasketWindow, ATabInTheCataloguePositionIsABlankOfTheStatusBar) {
    BasketWindowFixture basket;
    basket.Link(L"4711", L"\tDüfte\tSeite 3", L"vex:3");
    wchar_t text[256] = L"";
    SendMessageW(basket.Child(child_id::kStatusBar), SB_GETTEXTW, 0,
                 reinterpret_cast<LPARAM>(text));
    EXPECT_STREQ(text, L" Düfte Seite 3");
}

// --- closing

TEST(BasketWindow, ClosingTellsTheOwnerOnceAndLeavesNothing) {
    BasketWindowFixture basket;
    const std::weak_ptr<FakeBasketOwner> owner = basket.owner;
    FakeBasketOwner& fake = *basket.owner;
    SendMessageW(basket.Handle(), WM_CLOSE, 0, 0);
    EXPECT_FALSE(basket.window->Alive());
    EXPECT_EQ(basket.window->Handle(), nullptr);
    EXPECT_EQ(fake.closed, 1);
    EXPECT_EQ(basket.owner.use_count(), 1);  // the window has let go
    EXPECT_EQ(basket.settings.values.size(), 2u);
    EXPECT_THROW(basket.window->Form(), Error);
    EXPECT_EQ(basket.files.At(L"C:\\Basket\\artikel.db").open, 0);
    EXPECT_EQ(FindWindowW(kBasketWindowClass, nullptr), nullptr);
}

TEST(BasketWindow, CancellingTheQuestionKeepsTheWindowAndStoresNothing) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    basket.messages.answers = {MessageAnswer::kCancel};
    SendMessageW(basket.Handle(), WM_CLOSE, 0, 0);
    basket.Pump();
    EXPECT_TRUE(basket.window->Alive());
    EXPECT_TRUE(IsWindowVisible(basket.Handle()));
    EXPECT_EQ(basket.messages.shown.size(), 1u);
    EXPECT_TRUE(basket.settings.values.empty());
    EXPECT_EQ(basket.owner->closed, 0);

    basket.messages.answers = {MessageAnswer::kNo};
    SendMessageW(basket.Handle(), WM_CLOSE, 0, 0);
    EXPECT_FALSE(basket.window->Alive());
    EXPECT_EQ(basket.owner->closed, 1);
}

TEST(BasketWindow, TheExitCommandClosesAsTheUserWould) {
    BasketWindowFixture basket;
    SendMessageW(basket.Handle(), WM_COMMAND, static_cast<WPARAM>(Command::mnuDateiBeenden), 0);
    EXPECT_TRUE(PumpUntil([&] { return !basket.window->Alive(); }));
    EXPECT_EQ(basket.owner->closed, 1);
}

TEST(BasketWindow, AWindowThatTheHostDestroysTellsTheOwnerAndLetsGo) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    DestroyWindow(basket.Handle());
    EXPECT_FALSE(basket.window->Alive());
    EXPECT_EQ(basket.owner->closed, 1);
    EXPECT_EQ(basket.owner.use_count(), 1);
    EXPECT_TRUE(basket.messages.shown.empty());
}

TEST(BasketWindow, TheModuleLockGoesLast) {
    FakeSettings settings;
    auto order = std::make_shared<std::vector<std::string>>();
    struct Owner final : IBasketOwner {
        explicit Owner(std::shared_ptr<std::vector<std::string>> o) : order(std::move(o)) {}
        ~Owner() override { order->push_back("owner"); }
        void NavigateToCatalog(std::wstring_view) override {}
        void ClientClosing() override { order->push_back("closing"); }
        std::shared_ptr<std::vector<std::string>> order;
    };
    BasketWindowFixture other(HostLoop::kBare, 0, false);
    std::shared_ptr<void> lock(nullptr, [order](void*) { order->push_back("lock"); });
    auto window = BasketWindow::Create(GetModuleHandleW(nullptr), std::make_shared<Owner>(order),
                                       std::move(lock), {&other.services, 0});
    window->Initialize();
    HWND handle = window->Handle();
    window.reset();  // the window lives on by itself
    ASSERT_TRUE(IsWindow(handle));
    EXPECT_TRUE(order->empty());
    SendMessageW(handle, WM_CLOSE, 0, 0);
    EXPECT_EQ(*order, (std::vector<std::string>{"closing", "owner", "lock"}));
}

TEST(BasketWindow, ASetUpThatFailsLeavesNothingBehind) {
    BasketWindowFixture basket(HostLoop::kBare, 0, false);
    basket.files.Delete(L"C:\\Basket\\artikel.db");
    EXPECT_THROW(basket.window->Initialize(), Error);
    EXPECT_FALSE(basket.window->Alive());
    EXPECT_EQ(FindWindowW(kBasketWindowClass, nullptr), nullptr);
    EXPECT_EQ(basket.owner->closed, 0);
    EXPECT_EQ(basket.owner.use_count(), 1);
    EXPECT_THROW(basket.window->Show(), Error);

    // and the next one works
    basket.files.Put(L"C:\\Basket\\artikel.db", ArticleFile(TestArticles()));
    basket.window =
        BasketWindow::Create(GetModuleHandleW(nullptr), basket.owner, {}, {&basket.services, 0});
    basket.window->Initialize();
    EXPECT_TRUE(basket.window->Alive());
}

// --- edges

TEST(BasketWindow, AnErrorInACommandBecomesAMessageAndGoesNoFurther) {
    BasketWindowFixture basket;
    basket.Link(L"4711", L"Seite", L"vex:1");
    basket.owner->fail_with = 70;
    SendMessageW(basket.Handle(), WM_COMMAND,
                 static_cast<WPARAM>(Command::mnuAnsichtGotoCatalogPage), 0);
    ASSERT_EQ(basket.messages.shown.size(), 1u);
    EXPECT_EQ(basket.messages.shown[0].text, L"Permission denied");
    EXPECT_EQ(basket.messages.shown[0].title, basket.TextOf(basket.Handle()));
    EXPECT_EQ(basket.messages.shown[0].icon, MessageIcon::kExclamation);
    EXPECT_EQ(basket.messages.shown[0].buttons, MessageButtons::kOk);
    EXPECT_TRUE(basket.window->Alive());
    EXPECT_EQ(basket.Lines(), 1);
}

TEST(BasketWindow, MayBeDestroyedFromWithinItsOwnCommand) {
    struct Owner final : IBasketOwner {
        HWND victim = nullptr;
        int closed = 0;
        void NavigateToCatalog(std::wstring_view) override { DestroyWindow(victim); }
        void ClientClosing() override { ++closed; }
    };
    BasketWindowFixture parts(HostLoop::kBare, 0, false);
    auto owner = std::make_shared<Owner>();
    auto window = BasketWindow::Create(GetModuleHandleW(nullptr), owner, {}, {&parts.services, 0});
    window->Initialize();
    window->Show();
    owner->victim = window->Handle();
    bool info = false;
    window->Form()->AddArtikel(L"4711", L"Seite", L"vex:1", info, 1, true);
    const HWND grid = GetDlgItem(window->Handle(), child_id::kListe);
    // a double press on a price: the command runs inside the grid's and the window's procedures
    SendMessageW(grid, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(340, 24));
    SendMessageW(grid, WM_LBUTTONUP, 0, MAKELPARAM(340, 24));
    SendMessageW(grid, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(340, 24));
    EXPECT_FALSE(window->Alive());
    EXPECT_EQ(owner->closed, 1);
    PumpMessages();
}

TEST(BasketWindow, AFormInUseOutlivesItsWindow) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    const auto form = basket.window->Form();
    DestroyWindow(basket.Handle());
    EXPECT_EQ(form->Caption(), L"Vexmart Demo Warenkorb 1.1");
    bool info = false;
    form->AddArtikel(L"1000", L"", L"", info, 1, true);  // no window, no harm
    EXPECT_EQ(form->GetRowType(1), 0);
}

TEST(BasketWindow, ALinkLeavesTheFocusWithTheHost) {
    BasketWindowFixture basket;
    SetForegroundWindow(basket.host.handle);
    SetFocus(basket.host.text);
    basket.Pump();
    ASSERT_EQ(GetFocus(), basket.host.text);
    basket.Link(L"");  // an empty line opens the editor on its description
    EXPECT_TRUE(basket.EditorOpen());
    EXPECT_EQ(GetFocus(), basket.host.text);
    SetForegroundWindow(basket.Handle());
    basket.Pump();
    EXPECT_EQ(GetFocus(), basket.Text());
}

TEST(BasketWindow, TwoWindowsDoNotDisturbEachOther) {
    BasketWindowFixture first;
    BasketWindowFixture second;
    RECT place1{}, place2{};
    GetWindowRect(first.Handle(), &place1);
    GetWindowRect(second.Handle(), &place2);
    EXPECT_NE(place1.left, place2.left);
    first.Link(L"4711");
    second.Link(L"1000");
    second.Link(L"2000");
    EXPECT_EQ(first.Lines(), 1);
    EXPECT_EQ(second.Lines(), 2);
    // the shortcut reaches the active window alone
    SetForegroundWindow(first.Handle());
    first.Pump();
    first.Press('N', {VK_CONTROL});
    EXPECT_EQ(first.Lines(), 2);
    EXPECT_EQ(second.Lines(), 2);
    SetForegroundWindow(second.Handle());
    second.Pump();
    second.Press('N', {VK_CONTROL});
    EXPECT_EQ(first.Lines(), 2);
    EXPECT_EQ(second.Lines(), 3);
    // closing one leaves the other whole, its shortcuts included
    first.messages.answers = {MessageAnswer::kNo};
    SendMessageW(first.Handle(), WM_CLOSE, 0, 0);
    EXPECT_FALSE(first.window->Alive());
    SetForegroundWindow(second.Handle());
    second.Pump();
    second.Press('N', {VK_CONTROL});
    EXPECT_EQ(second.Lines(), 4);
}

TEST(BasketWindow, LongWorkShowsAWaitCursorAndAfterHalfASecondItsProgress) {
    BasketWindowFixture basket;
    const HWND progress = GetDlgItem(basket.Child(child_id::kStatusBar), child_id::kProgress);
    ASSERT_NE(progress, nullptr);
    EXPECT_FALSE(IsWindowVisible(progress));
    const auto cursor = [&] {
        return SendMessageW(basket.Handle(), WM_SETCURSOR,
                            reinterpret_cast<WPARAM>(basket.Handle()),
                            MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    };
    // a file large enough for several seconds would slow the suite; the view itself is asked
    IBasketView& view = basket.window->View();
    view.BeginProgress(L"Der Warenkorb wird geladen ...");
    EXPECT_EQ(cursor(), TRUE);
    view.SetProgress(0.1);
    EXPECT_FALSE(IsWindowVisible(progress));
    const ULONGLONG begin = GetTickCount64();
    while (!IsWindowVisible(progress) && GetTickCount64() - begin < 3000) {
        view.SetProgress(0.5);
        Sleep(1);
    }
    EXPECT_GE(GetTickCount64() - begin, 400u);
    EXPECT_TRUE(IsWindowVisible(progress));
    EXPECT_EQ(SendMessageW(progress, PBM_GETPOS, 0, 0), 100);
    view.EndProgress();
    EXPECT_FALSE(IsWindowVisible(progress));
    EXPECT_EQ(GetCursor() == LoadCursorW(nullptr, IDC_WAIT), false);
}

}  // namespace
}  // namespace demovex
