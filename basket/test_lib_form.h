// TestLibForm, the basket window's deciding half: it owns the rooms (rows and totals, cell editor,
// row commands, files, sending, printing, view) and hands each event to one of them. The window
// (window/) forwards what happens to it and shows what IBasketView is told.
//
// Every operation may raise an Error; the caller at the edge converts it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "basket/basket_window.h"
#include "basket/commands/commands.h"
#include "basket/commands/keys.h"
#include "basket/services.h"
#include "basket/state.h"
#include "basket/view.h"
#include "containers/ims_container.h"
#include "grid/flex_grid.h"

namespace demovex {

class TestLibForm final : public IMSContainer, public IFlexGridEvents {
  public:
    // All arguments outlive the form. The grid's events must be routed to this object by the
    // caller.
    TestLibForm(FlexGrid& liste, IBasketView& view, Services& services);
    ~TestLibForm() override;
    TestLibForm(const TestLibForm&) = delete;
    TestLibForm& operator=(const TestLibForm&) = delete;

    // The owner, set before Initialize and cleared when the window lets go of it; may be null.
    IBasketOwner* moLibrary = nullptr;

    // --- set-up, layout, unload
    void Initialize();
    void DoReSize();
    void Form_Resize();
    // Puts grid and editor in their places in a window whose measures have changed; an open editor
    // stays open.
    void LayOut();
    // What the user would lose if the session ended now, as a text to wait for; empty for nothing.
    std::wstring UnsavedChanges() const;
    // The session ends: writes the settings. Asks nothing and raises nothing.
    void SessionEnds() noexcept;
    // True when the window stays open. After false the window destroys itself; ClientClosing has
    // been called and moLibrary is null.
    bool Form_Unload();
    void SetFocusTimer_Timer();

    // --- rows
    bool AddArtikel(const std::wstring& ArtikelNr, const std::wstring& Katalog,
                    const std::wstring& KatalogURL, bool& HasInfo, std::int32_t Menge,
                    bool UseExternalInfoBox);
    bool RefreshArtikel(std::int32_t row, std::int32_t Menge);
    void InsertArtikel(std::int32_t row, std::int32_t rowcount = 0);
    std::int32_t GetRowType(std::int32_t row) const;
    void CommitCellEdit();
    // The user's number format has changed (WM_SETTINGCHANGE): `change` makes the text service use
    // the new one. Unit prices, line totals and totals are written anew from the values that they
    // have in the format used so far, and so are quantities that would read differently, that which
    // is being typed included. Nothing is looked up and Modified stays as it is. `change` is called
    // once in any case. Raises 7 alone.
    void NumberFormatChanged(const std::function<void()>& change);

    // --- files
    void Load(const std::wstring& Path);
    const std::wstring& Caption() const;
    bool Modified() const;

    // --- events of the controls
    void RowColChange() override;  // Liste_RowColChange
    void SelChange() override;
    void Scroll() override;  // Liste_Scroll
    void Liste_DblClick();
    void Liste_MouseUp(int Button, int Shift, Twips X, Twips Y);
    // A key of the user in the grid or a release of the left button over it has been dealt with.
    void Liste_Acted();
    // A handler that uses a key sets it to 0.
    void Liste_KeyDown(int& KeyCode, int Shift);
    void Liste_KeyPress(int& KeyAscii);
    void IPText_KeyDown(int& KeyCode, int Shift);
    void IPText_KeyPress(int& KeyAscii);
    void IPText_Change();
    void IPComboButton_Click();
    void IPComboList_KeyDown(int& KeyCode, int Shift);
    void IPComboList_MouseMove(int Button, int Shift, Twips X, Twips Y);
    void IPComboList_MouseUp(int Button, int Shift, Twips X, Twips Y);
    void IPComboList_LostFocus();
    void Toolbar_ButtonClick(std::wstring_view key);
    // A top-level menu has been opened.
    void MenuOpened(Command top);
    // Runs a menu command; one without action does nothing.
    void Run(Command command);

    // The seam that marks a cell as offering a list; no cell does unless a test says so.
    void SetOffersList(bool (*offers)(std::int32_t row, std::int32_t col));

    // --- IMSContainer: the basket's rows as items, the tag is a column
    std::int32_t Count(std::int32_t Tag) override;
    std::int32_t EnumItems(std::int32_t Tag) override;
    std::int32_t CompareItems(std::int32_t id1, std::int32_t id2, std::int32_t Tag) override;
    std::int32_t Hashvalue(std::int32_t id, std::int32_t Tag) override;
    std::int32_t HashKeyvalue(const KeyValue& Key, std::int32_t Tag) override;
    std::int32_t CompareItem(const KeyValue& Key, std::int32_t id, std::int32_t Tag) override;

    const BasketState& State() const;

  private:
    void TellNumberFormat();

    struct Rooms;
    std::unique_ptr<Rooms> rooms_;
};

}  // namespace demovex
