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

#include "platform/sound.h"
#include "platform/text.h"

namespace demovex {

// The answers that never change.
inline constexpr std::wstring_view kDescription = L"Vexmart Test Client";
inline constexpr std::wstring_view kProducer = L"K.O.L.M.";

// The basket window as its client sees it. Operations raise whatever the window raises, and 91 once
// the window is gone.
class IClientWindow {
  public:
    virtual ~IClientWindow() = default;

    // Fills the window. An error leaves no window behind.
    virtual void Initialize() = 0;
    virtual void Show() = 0;
    // The window's caption; of a window that is gone, its last one.
    virtual std::wstring Caption() const = 0;
    virtual void AddArtikel(const std::wstring& ArtikelNr, const std::wstring& Katalog,
                            const std::wstring& KatalogURL, bool& HasInfo, std::int32_t Menge,
                            bool UseExternalInfoBox) = 0;
    virtual void Load(const std::wstring& Path) = 0;
};

class PlugIn {
  public:
    struct Parts {
        const ITextService& text;  // outlives the plug-in
        ISound& sound;             // outlives the plug-in
        std::wstring folder;       // where the component lies, without a trailing backslash
        // Creates a new, hidden, empty window.
        std::function<std::shared_ptr<IClientWindow>()> create_window;
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
    std::shared_ptr<IClientWindow> Window() const;

    Parts parts_;
    std::shared_ptr<IClientWindow> window_;
};

}  // namespace demovex
