#include "basket/window/basket_window_win.h"

#include "basket/window/impl_win.h"

namespace demovex {

std::shared_ptr<BasketWindow> BasketWindow::Create(HINSTANCE module,
                                                   std::shared_ptr<IBasketOwner> owner,
                                                   std::shared_ptr<void> module_lock,
                                                   const BasketWindowOptions& options) {
    auto impl = std::make_shared<BasketWindowImpl>(module, std::move(owner), std::move(module_lock),
                                                   options);
    impl->Create();
    return std::shared_ptr<BasketWindow>(new BasketWindow(impl));
}

void BasketWindow::UnregisterWindowClasses(HINSTANCE module) noexcept {
    BasketWindowImpl::UnregisterClasses(module);
}

BasketWindow::BasketWindow(const std::shared_ptr<BasketWindowImpl>& impl)
    : impl_(impl), last_caption_(impl->LastCaption()) {}

BasketWindow::~BasketWindow() = default;

std::shared_ptr<BasketWindowImpl> BasketWindow::Standing() const {
    auto impl = impl_.lock();
    if (!impl) RaiseRuntimeError(runtime_error::kObjectNotSet);
    return impl;
}

void BasketWindow::Initialize() {
    Standing()->Initialize();
}

void BasketWindow::Show() {
    Standing()->Show();
}

std::wstring BasketWindow::Caption() const {
    return Alive() ? Form()->Caption() : *last_caption_;
}

void BasketWindow::AddArtikel(const std::wstring& ArtikelNr, const std::wstring& Katalog,
                              const std::wstring& KatalogURL, bool& HasInfo, std::int32_t Menge,
                              bool UseExternalInfoBox) {
    Form()->AddArtikel(ArtikelNr, Katalog, KatalogURL, HasInfo, Menge, UseExternalInfoBox);
}

void BasketWindow::Load(const std::wstring& Path) {
    Form()->Load(Path);
}

std::shared_ptr<TestLibForm> BasketWindow::Form() const {
    return Standing()->Form();
}

FlexGrid& BasketWindow::Liste() const {
    const auto impl = impl_.lock();
    if (!impl || impl->Handle() == nullptr) RaiseRuntimeError(runtime_error::kObjectNotSet);
    return impl->Liste();
}

IBasketView& BasketWindow::View() const {
    const auto impl = impl_.lock();
    if (!impl || impl->Handle() == nullptr) RaiseRuntimeError(runtime_error::kObjectNotSet);
    return *impl;
}

HWND BasketWindow::Handle() const noexcept {
    const auto impl = impl_.lock();
    return impl ? impl->Handle() : nullptr;
}

bool BasketWindow::Alive() const noexcept {
    return Handle() != nullptr;
}

}  // namespace demovex
