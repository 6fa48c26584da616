#include "host/plug_in_win.h"

#include <objbase.h>

namespace demovex::host {

namespace {

constexpr wchar_t kProgId[] = L"DemoVexClient.Client";

// An activation context that is in force while it lives; none when the path is empty.
class Activation {
  public:
    explicit Activation(const std::wstring& manifest) {
        if (manifest.empty()) return;
        ACTCTXW description{};
        description.cbSize = sizeof description;
        description.lpSource = manifest.c_str();
        context_ = CreateActCtxW(&description);
        if (context_ != INVALID_HANDLE_VALUE) active_ = ActivateActCtx(context_, &cookie_);
    }
    ~Activation() {
        if (active_) DeactivateActCtx(0, cookie_);
        if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
    }
    Activation(const Activation&) = delete;
    Activation& operator=(const Activation&) = delete;

  private:
    HANDLE context_ = INVALID_HANDLE_VALUE;
    BOOL active_ = FALSE;
    ULONG_PTR cookie_ = 0;
};

}  // namespace

std::unique_ptr<PlugInClient> PlugInClient::Create(const std::wstring& manifest, Outcome& outcome) {
    const Activation activation(manifest);
    CLSID class_id{};
    outcome.code = CLSIDFromProgID(kProgId, &class_id);
    Ref<IVEXClient> client;
    if (SUCCEEDED(outcome.code)) {
        outcome = OutcomeOf(CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER,
                                             IID_IVEXClient, client.OutVoid()));
    }
    if (outcome.Failed()) {
        if (outcome.description.empty()) {
            outcome.description = std::wstring(kProgId) + L" ist nicht registriert";
        }
        return nullptr;
    }
    return std::unique_ptr<PlugInClient>(new PlugInClient(std::move(client)));
}

PlugInClient::~PlugInClient() = default;

// The calls hold a reference of their own: during each of them the host may be asked to forget the
// client.

Outcome PlugInClient::Initialize(IDispatch* parent) {
    const auto client = client_;
    return OutcomeOf(client->Initialize(parent));
}

Outcome PlugInClient::FollowLink(const std::wstring& link, const std::wstring& position,
                                 const std::wstring& name) {
    const auto client = client_;
    return OutcomeOf(client->OnSelectURL(Text(link).Get(), Text(position).Get(), Text(name).Get()));
}

Outcome PlugInClient::FollowNothing() {
    const auto client = client_;
    return OutcomeOf(client->OnSelectURL(nullptr, nullptr, nullptr));
}

Outcome PlugInClient::OpenFile(const std::wstring& path) {
    const auto client = client_;
    return OutcomeOf(client->OpenFile(Text(path).Get()));
}

Outcome PlugInClient::Caption(std::wstring& caption) {
    Text text;
    Outcome outcome = OutcomeOf(client_->get_Caption(text.Out()));
    caption = text.Copy();
    return outcome;
}

Outcome PlugInClient::Producer(std::wstring& producer) {
    Text text;
    Outcome outcome = OutcomeOf(client_->get_Producer(text.Out()));
    producer = text.Copy();
    return outcome;
}

Outcome PlugInClient::Description(std::wstring& description) {
    Text text;
    Outcome outcome = OutcomeOf(client_->get_Description(text.Out()));
    description = text.Copy();
    return outcome;
}

bool PlugInClient::Is(IUnknown* other) const {
    Ref<IUnknown> mine, theirs;
    return SUCCEEDED(client_->QueryInterface(IID_IUnknown, mine.OutVoid())) &&
           SUCCEEDED(other->QueryInterface(IID_IUnknown, theirs.OutVoid())) &&
           mine.Get() == theirs.Get();
}

ULONG PlugInClient::References() const {
    client_->AddRef();
    return client_->Release();
}

}  // namespace demovex::host
