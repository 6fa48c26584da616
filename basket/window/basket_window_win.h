// BasketWindow: the real basket window "DemoVexClient.TestLibForm". It hosts the grid, the toolbar,
// the status bar, the menus and the cell editor, forwards what happens to TestLibForm and shows
// what TestLibForm says.
//
//   auto window = BasketWindow::Create(module, owner, module_lock);
//   window->Initialize();                    // raises; on an error nothing is left behind
//   window->Show();
//   window->AddArtikel(...);
//
// Life: while the window exists it holds itself, `owner` and `module_lock`. Once it is unloaded
// (the user closes it and nobody cancels) it has called owner->ClientClosing(), then lets go of the
// owner and destroys itself; the BasketWindow that a client still holds is an empty shell from then
// on. `module_lock` is let go of last, after everything else of the window is gone.
//
// One thread: every call and every destruction happens on the thread that created the window.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "basket/basket_window.h"
#include "basket/services.h"
#include "basket/test_lib_form.h"
#include "basket/view.h"

namespace demovex {

class BasketWindowImpl;

// What tests replace; the component itself uses the defaults.
struct BasketWindowOptions {
    Services* services = nullptr;  // outlives the window; null makes the system's own
    int dpi = 0;                   // dots per inch of the screen; 0 asks the system
};

class BasketWindow final : public IBasketWindow {
  public:
    // Creates the hidden window. `module` is the component's own module, where the resources are.
    // `module_lock` is any object that keeps the module loaded; may be null. Raises 7 when the
    // system refuses a window.
    static std::shared_ptr<BasketWindow> Create(HINSTANCE module,
                                                std::shared_ptr<IBasketOwner> owner,
                                                std::shared_ptr<void> module_lock = {},
                                                const BasketWindowOptions& options = {});
    // Takes the window classes from the system, which keeps them beyond the module that registered
    // them. The last window does so when it has closed; it cannot when the host destroys it, so the
    // module does it once more when it goes. Idle while a window stands.
    static void UnregisterWindowClasses(HINSTANCE module) noexcept;
    ~BasketWindow() override;
    BasketWindow(const BasketWindow&) = delete;
    BasketWindow& operator=(const BasketWindow&) = delete;

    // Fills the window. An error destroys the window (no question, no ClientClosing), closes what
    // was opened, lets go of the owner and is raised again.
    void Initialize() override;

    // Places the window on the monitor of the program's active window and shows it, modeless.
    void Show() override;

    std::wstring Caption() const override;
    void AddArtikel(const std::wstring& ArtikelNr, const std::wstring& Katalog,
                    const std::wstring& KatalogURL, bool& HasInfo, std::int32_t Menge,
                    bool UseExternalInfoBox) override;
    void Load(const std::wstring& Path) override;

    // The form, which stays whole for as long as the returned pointer is held, even when the window
    // closes in the middle of a call; so `window->Form()->Run(command)` is safe. Raises 91 when the
    // window is gone.
    std::shared_ptr<TestLibForm> Form() const;

    // The grid and the view, for tests. Raise 91 when the window is gone.
    FlexGrid& Liste() const;
    IBasketView& View() const;

    // Null when the window is gone.
    HWND Handle() const noexcept;
    bool Alive() const noexcept;

  private:
    explicit BasketWindow(const std::shared_ptr<BasketWindowImpl>& impl);
    std::shared_ptr<BasketWindowImpl> Standing() const;

    std::weak_ptr<BasketWindowImpl> impl_;
    std::shared_ptr<const std::wstring> last_caption_;  // empty until the window goes
};

}  // namespace demovex
