#include "client/plug_in.h"

#include <utility>

#include "base/error.h"
#include "client/link_router.h"

namespace demovex {

namespace {
constexpr std::wstring_view kOrderSound = L"\\Order.wav";
}

PlugIn::PlugIn(Parts parts) : parts_(std::move(parts)) {}

std::shared_ptr<IBasketWindow> PlugIn::Window() const {
    if (!window_) RaiseRuntimeError(runtime_error::kObjectNotSet);
    return window_;
}

std::wstring PlugIn::Caption() const {
    return Window()->Caption();
}

std::wstring PlugIn::EnumURLPrefixes(bool) const {
    return {};
}

void PlugIn::Initialize() {
    auto fresh = parts_.create_window();
    fresh->Initialize();
    auto before = std::exchange(window_, fresh);
    try {
        fresh->Show();
    } catch (...) {
        window_ = std::move(before);
        throw;
    }
}

void PlugIn::OnSelectURL(std::wstring_view URL, std::wstring_view CatalogPositionURL,
                         std::wstring_view CatalogPositionDisplayName) {
    const auto product = ProductNumber(URL, parts_.text);
    if (!product) return;
    bool has_info = false;
    // the name of the position is the catalogue column, its address the address column
    Window()->AddArtikel(std::wstring(*product), std::wstring(CatalogPositionDisplayName),
                         std::wstring(CatalogPositionURL), has_info, 1, true);
    if (!has_info) parts_.sound.Play(parts_.folder + std::wstring(kOrderSound));
}

void PlugIn::OpenFile(std::wstring_view Path) {
    Window()->Load(std::wstring(Path));
}

}  // namespace demovex
