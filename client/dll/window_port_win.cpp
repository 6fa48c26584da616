#include "client/dll/window_port_win.h"

#include <string>
#include <utility>

#include "basket/window/basket_window_win.h"
#include "client/module_win.h"

namespace demovex {

namespace {

// The owner as the window holds it: passes everything on, and writes down the caption of a window
// that closes.
class CaptionKeeper final : public IBasketOwner {
  public:
    CaptionKeeper(std::shared_ptr<IBasketOwner> owner, std::shared_ptr<std::wstring> last_caption)
        : owner_(std::move(owner)), last_caption_(std::move(last_caption)) {}

    void Watch(const std::shared_ptr<BasketWindow>& window) { window_ = window; }

    void NavigateToCatalog(std::wstring_view url) override { owner_->NavigateToCatalog(url); }

    void ClientClosing() override {
        const auto window = window_.lock();
        if (window && window->Alive()) *last_caption_ = window->Form()->Caption();
        owner_->ClientClosing();
    }

  private:
    std::shared_ptr<IBasketOwner> owner_;
    std::shared_ptr<std::wstring> last_caption_;
    std::weak_ptr<BasketWindow> window_;
};

class WindowPort final : public IClientWindow {
  public:
    WindowPort(std::shared_ptr<BasketWindow> window, std::shared_ptr<std::wstring> last_caption)
        : window_(std::move(window)), last_caption_(std::move(last_caption)) {}

    void Initialize() override { window_->Initialize(); }
    void Show() override { window_->Show(); }

    std::wstring Caption() const override {
        return window_->Alive() ? window_->Form()->Caption() : *last_caption_;
    }

    void AddArtikel(const std::wstring& ArtikelNr, const std::wstring& Katalog,
                    const std::wstring& KatalogURL, bool& HasInfo, std::int32_t Menge,
                    bool UseExternalInfoBox) override {
        window_->Form()->AddArtikel(ArtikelNr, Katalog, KatalogURL, HasInfo, Menge,
                                    UseExternalInfoBox);
    }

    void Load(const std::wstring& Path) override { window_->Form()->Load(Path); }

  private:
    std::shared_ptr<BasketWindow> window_;
    std::shared_ptr<std::wstring> last_caption_;
};

}  // namespace

std::shared_ptr<IClientWindow> CreateBasketWindow(std::shared_ptr<IBasketOwner> owner) {
    PinModule();
    auto last_caption = std::make_shared<std::wstring>();
    auto keeper = std::make_shared<CaptionKeeper>(std::move(owner), last_caption);
    auto window = BasketWindow::Create(Module(), keeper, std::make_shared<ModuleLock>());
    keeper->Watch(window);
    return std::make_shared<WindowPort>(std::move(window), std::move(last_caption));
}

}  // namespace demovex
