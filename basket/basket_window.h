// The two ends between the basket and its owner, the plug-in object: what the owner asks of the
// window, and what the window needs of its owner. Implemented by the real window
// (window/basket_window_win.h) and the COM object, and by fakes in the tests of either side.
//
//   window->Initialize();   // first; an error leaves no window behind
//   window->Show();
//   window->AddArtikel(...); window->Load(...); window->Caption();
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace demovex {

// Operations raise whatever the window raises, and 91 once the window is gone.
class IBasketWindow {
  public:
    virtual ~IBasketWindow() = default;

    // Fills the window.
    virtual void Initialize() = 0;
    virtual void Show() = 0;
    // The window's caption; of a window that is gone, its last one.
    virtual std::wstring Caption() const = 0;
    virtual void AddArtikel(const std::wstring& ArtikelNr, const std::wstring& Katalog,
                            const std::wstring& KatalogURL, bool& HasInfo, std::int32_t Menge,
                            bool UseExternalInfoBox) = 0;
    virtual void Load(const std::wstring& Path) = 0;
};

class IBasketOwner {
  public:
    virtual ~IBasketOwner() = default;
    // The host shows the catalogue position at `url`. Errors of the host are raised.
    virtual void NavigateToCatalog(std::wstring_view url) = 0;
    // The window is being unloaded; the host should forget this client.
    virtual void ClientClosing() = 0;
};

}  // namespace demovex
