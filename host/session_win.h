// The host's dealings with its plug-ins: which clients there are, which one gets the links, and
// which basket windows they have opened.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/catalogue.h"
#include "host/host_object_win.h"
#include "host/plug_in_win.h"

namespace demovex::host {

class Session final : public IHostEvents {
  public:
    // `show_position` is called when a plug-in asks for a position of the catalogue; `changed`
    // when clients came or went.
    Session(std::function<void(const std::wstring&)> show_position, std::function<void()> changed);
    ~Session() override;
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Uses the component without registration from here on.
    void UseManifest(std::wstring manifest) { manifest_ = std::move(manifest); }

    enum class Parent { kHost, kNull, kForeign };

    // A client that has no basket yet. It becomes the current one.
    Outcome CreateClient();
    Outcome Initialize(Parent parent = Parent::kHost);
    // Both in one; a client whose set-up fails is released.
    Outcome NewBasket();

    // Orders an article; opens a basket first when there is none.
    Outcome Order(const Article& article, const std::wstring& group);
    Outcome FollowLink(const std::wstring& link, const std::wstring& position,
                       const std::wstring& name);
    Outcome OpenFile(const std::wstring& path);

    // The current client; null when there is none.
    PlugInClient* Current() const;
    bool Select(std::size_t index);
    std::size_t Count() const { return clients_.size(); }
    // Lets go of the current client without closing its window.
    void ReleaseCurrent();

    // The current client's basket window; null when it has none.
    HWND CurrentWindow() const;
    // All basket windows of this program.
    static std::vector<HWND> Windows();

    void ShowPosition(const std::wstring& address) override;
    void ForgetClient(IUnknown* client) override;

  private:
    struct Entry {
        std::unique_ptr<PlugInClient> client;
        HWND window = nullptr;
    };

    std::function<void(const std::wstring&)> show_position_;
    std::function<void()> changed_;
    std::wstring manifest_;
    Ref<HostObject> host_;
    std::vector<Entry> clients_;
    std::size_t current_ = 0;
};

}  // namespace demovex::host
