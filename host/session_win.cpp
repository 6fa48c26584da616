#include "host/session_win.h"

#include <algorithm>
#include <array>
#include <utility>

namespace demovex::host {

namespace {

// Published by the plug-in for those who look for its windows.
constexpr wchar_t kBasketClass[] = L"DemoVexClient.TestLibForm";

Outcome NoClient() {
    Outcome outcome;
    outcome.code = E_FAIL;
    outcome.description = L"Kein Warenkorb ist ge\u00F6ffnet";
    return outcome;
}

BOOL CALLBACK Collect(HWND window, LPARAM found) noexcept {
    std::array<wchar_t, 64> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    if (lstrcmpW(name.data(), kBasketClass) == 0) {
        reinterpret_cast<std::vector<HWND>*>(found)->push_back(window);
    }
    return TRUE;
}

}  // namespace

Session::Session(std::function<void(const std::wstring&)> show_position,
                 std::function<void()> changed)
    : show_position_(std::move(show_position)),
      changed_(std::move(changed)),
      host_(HostObject::Create(this)) {}

Session::~Session() {
    host_->Disconnect();
    clients_.clear();
}

Outcome Session::CreateClient() {
    Outcome outcome;
    auto client = PlugInClient::Create(manifest_, outcome);
    if (client) {
        clients_.push_back({std::move(client), nullptr});
        current_ = clients_.size() - 1;
        changed_();
    }
    return outcome;
}

Outcome Session::Initialize(Parent parent) {
    PlugInClient* client = Current();
    if (!client) return NoClient();
    const auto before = Windows();
    Ref<HostObject> foreign;
    IDispatch* object = nullptr;
    if (parent == Parent::kHost) object = host_->Dispatch();
    if (parent == Parent::kForeign) {
        foreign = HostObject::Create(nullptr, false);
        object = foreign->Dispatch();
    }
    Outcome outcome = client->Initialize(object);
    if (!outcome.Failed()) {
        // the window that was not there before
        for (HWND window : Windows()) {
            const bool old = std::find(before.begin(), before.end(), window) != before.end();
            if (!old && Current() == client) clients_[current_].window = window;
        }
    }
    changed_();
    return outcome;
}

Outcome Session::NewBasket() {
    Outcome outcome = CreateClient();
    if (outcome.Failed()) return outcome;
    outcome = Initialize();
    if (outcome.Failed()) ReleaseCurrent();
    return outcome;
}

Outcome Session::Order(const Article& article, const std::wstring& group) {
    if (clients_.empty()) {
        Outcome outcome = NewBasket();
        if (outcome.Failed()) return outcome;
    }
    return FollowLink(OrderLink(article.number), PositionAddress(article.number), group);
}

Outcome Session::FollowLink(const std::wstring& link, const std::wstring& position,
                            const std::wstring& name) {
    PlugInClient* client = Current();
    return client ? client->FollowLink(link, position, name) : NoClient();
}

Outcome Session::OpenFile(const std::wstring& path) {
    PlugInClient* client = Current();
    return client ? client->OpenFile(path) : NoClient();
}

PlugInClient* Session::Current() const {
    return current_ < clients_.size() ? clients_[current_].client.get() : nullptr;
}

bool Session::Select(std::size_t index) {
    if (index >= clients_.size()) return false;
    current_ = index;
    changed_();
    return true;
}

void Session::ReleaseCurrent() {
    if (current_ >= clients_.size()) return;
    // out of the list before it is released: the release may come back to this object
    const Entry gone = std::move(clients_[current_]);
    clients_.erase(clients_.begin() + static_cast<std::ptrdiff_t>(current_));
    current_ = clients_.empty() ? 0 : clients_.size() - 1;
    changed_();
}

HWND Session::CurrentWindow() const {
    const HWND window = current_ < clients_.size() ? clients_[current_].window : nullptr;
    return window && IsWindow(window) ? window : nullptr;
}

std::vector<HWND> Session::Windows() {
    std::vector<HWND> found;
    EnumThreadWindows(GetCurrentThreadId(), Collect, reinterpret_cast<LPARAM>(&found));
    return found;
}

void Session::ShowPosition(const std::wstring& address) {
    show_position_(address);
}

void Session::ForgetClient(IUnknown* client) {
    for (std::size_t i = 0; i < clients_.size(); ++i) {
        if (!clients_[i].client->Is(client)) continue;
        const Entry gone = std::move(clients_[i]);
        clients_.erase(clients_.begin() + static_cast<std::ptrdiff_t>(i));
        if (current_ >= clients_.size()) current_ = clients_.empty() ? 0 : clients_.size() - 1;
        changed_();
        return;
    }
}

}  // namespace demovex::host
