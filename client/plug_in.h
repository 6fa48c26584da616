// PlugIn: what the class Client does, without COM. It owns the basket window and turns the host's
// calls into calls on it.
//
//   PlugIn plug_in({text, sound, folder, create_window});
//   plug_in.Initialize();
//   plug_in.OnSelectURL(url, position_url, position_name);
//
// Everything that needs the window raises 91 before Initialize and, Caption excepted, once the
// window has been closed.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "basket/basket_window.h"
#include "platform/sound.h"
#include "platform/text.h"

namespace demovex {

// The answers that never change.
inline constexpr std::wstring_view kDescription = L"Vexmart Test Client";
inline constexpr std::wstring_view kProducer = L"K.O.L.M.";

class PlugIn {
  public:
    struct Parts {
        const ITextService& text;  // outlives the plug-in
        ISound& sound;             // outlives the plug-in
        std::wstring folder;       // where the component lies, without a trailing backslash
        // Creates a new, hidden, empty window.
        std::function<std::shared_ptr<IBasketWindow>()> create_window;
    };

    explicit PlugIn(Parts parts);

    std::wstring Caption() const;

    // Always empty: no prefixes are announced.
    std::wstring EnumURLPrefixes(bool Start) const;

    // Creates, fills and shows a window. A second call makes a second window and lets go of the
    // first, which stays open. When it fails, the window held before is held still.
    void Initialize();

    // Orders the product of an order link once and plays the order sound; any other link does
    // nothing. An error of the window is raised, and no sound is played then.
    void OnSelectURL(std::wstring_view URL, std::wstring_view CatalogPositionURL,
                     std::wstring_view CatalogPositionDisplayName);

    void OpenFile(std::wstring_view Path);

  private:
    // The window, held for as long as the caller uses it: a call into it may end with the host
    // having initialised anew.
    std::shared_ptr<IBasketWindow> Window() const;

    Parts parts_;
    std::shared_ptr<IBasketWindow> window_;
};

}  // namespace demovex
