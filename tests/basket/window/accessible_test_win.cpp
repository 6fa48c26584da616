// What assistive programs are told of the basket window's controls: through the system's own
// objects, and through the texts that those of every Windows version read. The grid's own object is
// tested with the grid.
#include <gtest/gtest.h>
#include <oleacc.h>

#include "basket/window/handles_win.h"
#include "tests/support/test_basket_window_win.h"

namespace demovex {
namespace {

class Accessible {
  public:
    explicit Accessible(HWND window) {
        EXPECT_EQ(AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT),
                                             IID_IAccessible, reinterpret_cast<void**>(&object_)),
                  S_OK);
    }
    ~Accessible() {
        if (object_ != nullptr) object_->Release();
    }
    Accessible(const Accessible&) = delete;
    Accessible& operator=(const Accessible&) = delete;

    std::wstring Name() const {
        BSTR name = nullptr;
        if (object_ == nullptr || object_->get_accName(Self(), &name) != S_OK) return L"(none)";
        std::wstring result(name, SysStringLen(name));
        SysFreeString(name);
        return result;
    }
    LONG Role() const {
        VARIANT role;
        VariantInit(&role);
        if (object_ == nullptr || object_->get_accRole(Self(), &role) != S_OK) return -1;
        return role.vt == VT_I4 ? role.lVal : -1;
    }

  private:
    static VARIANT Self() {
        VARIANT self;
        VariantInit(&self);
        self.vt = VT_I4;
        self.lVal = CHILDID_SELF;
        return self;
    }
    IAccessible* object_ = nullptr;
};

class WindowAccessible : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(SUCCEEDED(CoInitialize(nullptr))); }
    void TearDown() override { CoUninitialize(); }
};

TEST_F(WindowAccessible, WindowGridAndToolbarHaveNames) {
    BasketWindowFixture basket;
    EXPECT_EQ(Accessible(basket.Handle()).Name(), L"Vexmart Demo Warenkorb 1.1");
    const Accessible grid(basket.Child(child_id::kListe));
    EXPECT_EQ(grid.Name(), L"Warenkorb");
    EXPECT_EQ(grid.Role(), ROLE_SYSTEM_TABLE);
    EXPECT_EQ(Accessible(basket.Child(child_id::kToolbar)).Name(), L"Symbolleiste");
}

TEST_F(WindowAccessible, AHeldObjectOfTheGridKeepsTheModuleLoaded) {
    BasketWindowFixture services(HostLoop::kBare, 0, false);
    auto lock = std::make_shared<int>(0);
    const std::weak_ptr<int> watch = lock;
    auto window = BasketWindow::Create(GetModuleHandleW(nullptr), services.owner, std::move(lock),
                                       {&services.services, 0});
    window->Initialize();
    {
        const Accessible held(GetDlgItem(window->Handle(), child_id::kListe));
        SendMessageW(window->Handle(), WM_CLOSE, 0, 0);
        ASSERT_FALSE(window->Alive());
        EXPECT_FALSE(watch.expired()) << "its code is still needed";
    }
    EXPECT_TRUE(watch.expired());
}

TEST_F(WindowAccessible, TheTextBoxBearsTheNameOfItsCell) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    basket.Link(L"");
    const auto open = [&](std::int32_t row, std::int32_t col) {
        basket.Grid().Select(row, col, row, col);
        basket.Pump();
        EXPECT_EQ(GetFocus(), basket.Text());
        const Accessible text(basket.Text());
        EXPECT_EQ(text.Role(), ROLE_SYSTEM_TEXT);
        return text.Name();
    };
    EXPECT_EQ(open(1, column::kMenge), L"Menge, Zeile 1");
    EXPECT_EQ(open(2, column::kArtNr), L"ArtNr, Zeile 2");
    EXPECT_EQ(open(2, column::kBezeichnung), L"Bezeichnung, Zeile 2");
    EXPECT_EQ(open(1, column::kMenge), L"Menge, Zeile 1");
}

// Right before the control in z-order stands a label with its name.
TEST_F(WindowAccessible, TheListIsLabelledWhenItOpens) {
    BasketWindowFixture basket;
    basket.Link(L"");
    ASSERT_TRUE(basket.EditorOpen());
    basket.window->View().Editor().OpenList({}, -1);
    const HWND list = basket.Child(child_id::kIPComboList);
    ASSERT_TRUE(IsWindowVisible(list));
    const HWND label = GetWindow(list, GW_HWNDPREV);
    EXPECT_EQ(BasketWindowFixture::TextOf(label), L"Bezeichnung, Zeile 1");
    RECT extent{};
    GetWindowRect(label, &extent);
    EXPECT_EQ(extent.right, extent.left);  // nothing to be seen
    basket.window->View().Editor().CloseList();
}

// The system's object for a toolbar names its buttons by their texts, which are never painted.
TEST_F(WindowAccessible, EveryToolbarButtonBearsItsToolTipAsText) {
    BasketWindowFixture basket;
    const HWND bar = basket.Child(child_id::kToolbar);
    int named = 0;
    for (int i = 0; i < static_cast<int>(ToolbarTable().size()); ++i) {
        const ToolbarButton& entry = ToolbarTable()[static_cast<std::size_t>(i)];
        const auto id = static_cast<WPARAM>(child_id::kFirstButton + i);
        const LRESULT length = SendMessageW(bar, TB_GETBUTTONTEXTW, id, 0);
        if (entry.key.empty()) {
            EXPECT_LE(length, 0) << i;
            continue;
        }
        ASSERT_GT(length, 0) << i;
        std::wstring text(static_cast<std::size_t>(length), L'\0');
        SendMessageW(bar, TB_GETBUTTONTEXTW, id, reinterpret_cast<LPARAM>(text.data()));
        EXPECT_EQ(text, entry.tool_tip);
        ++named;
    }
    EXPECT_EQ(named, 14);
    EXPECT_EQ(SendMessageW(bar, TB_GETTEXTROWS, 0, 0), 0);
}

// The system's object for a status bar reads the parts' texts.
TEST_F(WindowAccessible, TheStatusBarsOnePartHoldsItsText) {
    BasketWindowFixture basket;
    basket.Link(L"4711", L"Düfte / Seite 3", L"vex:3");
    basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    const HWND bar = basket.Child(child_id::kStatusBar);
    EXPECT_EQ(SendMessageW(bar, SB_GETPARTS, 0, 0), 1);
    wchar_t text[256] = L"";
    SendMessageW(bar, SB_GETTEXTW, 0, reinterpret_cast<LPARAM>(text));
    EXPECT_STREQ(text, L"Düfte / Seite 3");
}

}  // namespace
}  // namespace demovex
