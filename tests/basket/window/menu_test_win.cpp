// The menus of the running window, read back through the system.
#include <gtest/gtest.h>

#include <map>

#include "tests/support/test_basket_window_win.h"

namespace demovex {
namespace {

struct Item {
    UINT id = 0;
    std::wstring text;
    bool separator = false;
    bool enabled = false;
    bool checked = false;
    HMENU below = nullptr;
};

Item ItemAt(HMENU menu, int position) {
    wchar_t text[256] = L"";
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_ID | MIIM_FTYPE | MIIM_STATE | MIIM_STRING | MIIM_SUBMENU;
    info.dwTypeData = text;
    info.cch = 256;
    EXPECT_TRUE(GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &info));
    return {info.wID,
            text,
            (info.fType & MFT_SEPARATOR) != 0,
            (info.fState & MFS_DISABLED) == 0,
            (info.fState & MFS_CHECKED) != 0,
            info.hSubMenu};
}

std::vector<Item> ItemsOf(HMENU menu) {
    std::vector<Item> items;
    for (int i = 0; i < GetMenuItemCount(menu); ++i) items.push_back(ItemAt(menu, i));
    return items;
}

// Compares a menu with the rows of the table that are in view, and the menus below it.
void ExpectMenu(HMENU menu, Command parent, const std::map<Command, bool>& checks, int& compared) {
    std::vector<const CommandRow*> rows;
    for (const CommandRow& row : CommandTable()) {
        if (row.parent == parent && row.visible) rows.push_back(&row);
    }
    const std::vector<Item> items = ItemsOf(menu);
    ASSERT_EQ(items.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const CommandRow& row = *rows[i];
        SCOPED_TRACE(::testing::Message() << "row " << static_cast<int>(row.id));
        ++compared;
        EXPECT_EQ(items[i].id, static_cast<UINT>(row.id));
        EXPECT_EQ(items[i].separator, row.kind == MenuKind::kSeparator);
        if (row.kind == MenuKind::kSeparator) continue;
        std::wstring text(row.caption);
        if (row.shortcut != 0) text += std::wstring(L"\tStrg+") + row.shortcut;
        if (row.id == Command::mnuEditAusschneiden) text += L"\tStrg+X";
        if (row.id == Command::mnuEditKopieren) text += L"\tStrg+C";
        if (row.id == Command::mnuEditEinfuegen) text += L"\tStrg+V";
        EXPECT_EQ(items[i].text, text);
        EXPECT_EQ(items[i].enabled, row.enabled);
        const auto check = checks.find(row.id);
        EXPECT_EQ(items[i].checked, check != checks.end() && check->second);
        const bool menu_below = row.kind == MenuKind::kTop || row.kind == MenuKind::kSubmenu;
        ASSERT_EQ(items[i].below != nullptr, menu_below);
        if (menu_below) ExpectMenu(items[i].below, row.id, checks, compared);
    }
}

TEST(WindowMenu, TheMenuTreeEqualsTheTableItemByItem) {
    BasketWindowFixture basket;
    int compared = 0;
    ExpectMenu(GetMenu(basket.Handle()), Command::kNone,
               {{Command::mnuAnsichtSymbolleiste, true}, {Command::mnuAnsichtStatusleiste, true}},
               compared);
    EXPECT_EQ(compared, 32);  // every row in view outside the context menu
}

TEST(WindowMenu, HiddenItemsAreAbsentAndSeparatorsNeverDouble) {
    BasketWindowFixture basket;
    const std::function<void(HMENU)> check = [&](HMENU menu) {
        bool separator_before = true;  // so that none stands first
        for (const Item& item : ItemsOf(menu)) {
            EXPECT_FALSE(item.separator && separator_before);
            separator_before = item.separator;
            EXPECT_NE(item.id, static_cast<UINT>(Command::mnuExtras));
            EXPECT_NE(item.id, static_cast<UINT>(Command::mnuContext));
            EXPECT_NE(item.id, static_cast<UINT>(Command::mnuDateiSendenanDiskette));
            if (item.below != nullptr) check(item.below);
        }
        EXPECT_FALSE(separator_before);
    };
    check(GetMenu(basket.Handle()));
}

TEST(WindowMenu, ViewSwitchesFlipTheirCheckMarks) {
    BasketWindowFixture basket;
    SendMessageW(basket.Handle(), WM_COMMAND, static_cast<WPARAM>(Command::mnuAnsichtStatusleiste),
                 0);
    HMENU bar = GetMenu(basket.Handle());
    EXPECT_EQ(GetMenuState(bar, static_cast<UINT>(Command::mnuAnsichtStatusleiste), MF_BYCOMMAND) &
                  MF_CHECKED,
              0u);
    EXPECT_FALSE(IsWindowVisible(basket.Child(child_id::kStatusBar)));
    SendMessageW(basket.Handle(), WM_COMMAND, static_cast<WPARAM>(Command::mnuAnsichtStatusleiste),
                 0);
    EXPECT_NE(GetMenuState(bar, static_cast<UINT>(Command::mnuAnsichtStatusleiste), MF_BYCOMMAND) &
                  MF_CHECKED,
              0u);
    EXPECT_TRUE(IsWindowVisible(basket.Child(child_id::kStatusBar)));
}

TEST(WindowMenu, RecentFilesStandInTheFileMenuAndTheirNumbersOpenThem) {
    BasketWindowFixture basket;
    basket.files.Put(L"C:\\Basket\\alt.bsk", "[Warenkorb]\r\n");
    basket.window->Form()->Load(L"C:\\Basket\\alt.bsk");
    basket.Pump();
    const std::vector<Item> items = ItemsOf(ItemAt(GetMenu(basket.Handle()), 0).below);
    ASSERT_EQ(items.size(), 11u);
    EXPECT_TRUE(items[7].separator);
    EXPECT_EQ(items[8].id, static_cast<UINT>(Command::mnuDateiLRU1));
    EXPECT_NE(items[8].text.find(L"alt.bsk"), std::wstring::npos);
    EXPECT_TRUE(items[9].separator);
    EXPECT_EQ(items[10].text, L"&Beenden");
}

// What stands in the context menu when it is open: seen from a timer, since the menu has a loop of
// its own.
class OpenMenu {
  public:
    OpenMenu() {
        current_ = this;
        timer_ = SetTimer(nullptr, 0, 20, &OpenMenu::Look);
    }
    ~OpenMenu() {
        KillTimer(nullptr, timer_);
        current_ = nullptr;
    }
    std::vector<Item> items;
    UINT default_item = 0;
    RECT place{};

  private:
    static void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD) {
        HWND popup = FindWindowW(L"#32768", nullptr);
        if (popup == nullptr || !IsWindowVisible(popup) || current_ == nullptr) return;
        auto menu = reinterpret_cast<HMENU>(SendMessageW(popup, MN_GETHMENU, 0, 0));
        current_->items = ItemsOf(menu);
        current_->default_item = GetMenuDefaultItem(menu, FALSE, 0);
        GetWindowRect(popup, &current_->place);
        EndMenu();
    }
    static inline OpenMenu* current_ = nullptr;
    UINT_PTR timer_;
};

constexpr UINT kBold = static_cast<UINT>(Command::mnuContextGotoCatalog);

TEST(WindowMenu, TheRightButtonOpensTheContextMenuWithItsBoldItem) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    OpenMenu seen;
    const HWND grid = basket.Child(child_id::kListe);
    PostMessageW(grid, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(60, 24));
    PostMessageW(grid, WM_RBUTTONUP, 0, MAKELPARAM(60, 24));
    ASSERT_TRUE(PumpUntil([&] { return !seen.items.empty(); }));
    EXPECT_EQ(seen.default_item, kBold);
    ASSERT_GE(seen.items.size(), 5u);
    EXPECT_EQ(seen.items[0].text, L"&Gehe zu Katalog");
    EXPECT_TRUE(seen.items[1].separator);
    EXPECT_EQ(seen.items[2].text, L"&Kopiere Selektion in die Zwischenablage");
    EXPECT_TRUE(seen.items[3].separator);
    EXPECT_EQ(seen.items.back().text, L"&Selektion senden an ...");
}

void ExpectMenuAtCell(BasketWindowFixture& basket, const OpenMenu& seen) {
    const FlexGrid& grid = basket.Grid();
    const PixelRect cell = grid.CellRect(grid.Row(), grid.Col());
    POINT at{cell.left, cell.bottom};
    ClientToScreen(basket.Child(child_id::kListe), &at);
    EXPECT_EQ(seen.default_item, kBold);
    EXPECT_NEAR(seen.place.left, at.x, 3);
    EXPECT_NEAR(seen.place.top, at.y, 3);
}

TEST(WindowMenu, ShiftF10OpensTheContextMenuAtTheCurrentCellFromTheEditor) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    ASSERT_EQ(GetFocus(), basket.Text());
    OpenMenu seen;
    basket.Press(VK_F10, {VK_SHIFT});
    ASSERT_TRUE(PumpUntil([&] { return !seen.items.empty(); }));
    ExpectMenuAtCell(basket, seen);
}

TEST(WindowMenu, TheMenuKeyOpensTheContextMenuAtTheCurrentCellFromTheGrid) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    basket.Grid().Select(1, column::kPreisAts, 1, column::kPreisAts);
    basket.Pump();
    ASSERT_EQ(GetFocus(), basket.Child(child_id::kListe));
    OpenMenu seen;
    basket.Press(VK_APPS);
    ASSERT_TRUE(PumpUntil([&] { return !seen.items.empty(); }));
    ExpectMenuAtCell(basket, seen);
}

TEST(WindowMenu, AltAndALetterOpenAMenuAndItsAccessKeyRunsTheCommand) {
    BasketWindowFixture basket;
    basket.PressAtOnce(
        {{VK_MENU, true}, {'B', true}, {'B', false}, {VK_MENU, false}, {'N', true}, {'N', false}});
    PumpUntil([&] { return basket.Lines() == 1; }, 2000);
    EXPECT_EQ(basket.Lines(), 1);
}

}  // namespace
}  // namespace demovex
