// A plug-in as the host drives it: created by its programmatic identifier, spoken to through
// IVEXClient alone.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "host/com_win.h"
#include "vexinterfaces.h"

namespace demovex::host {

class PlugInClient {
  public:
    // Creates the plug-in "DemoVexClient.Client". A description from its own registration-free
    // manifest is used when `manifest` names one.
    static std::unique_ptr<PlugInClient> Create(const std::wstring& manifest, Outcome& outcome);
    ~PlugInClient();
    PlugInClient(const PlugInClient&) = delete;
    PlugInClient& operator=(const PlugInClient&) = delete;

    Outcome Initialize(IDispatch* parent);
    Outcome FollowLink(const std::wstring& link, const std::wstring& position,
                       const std::wstring& name);
    // The same with null strings throughout.
    Outcome FollowNothing();
    Outcome OpenFile(const std::wstring& path);
    Outcome Caption(std::wstring& caption);
    Outcome Producer(std::wstring& text);
    Outcome Description(std::wstring& text);

    bool Is(IUnknown* other) const;
    // How many references to the object there are, the one held here among them.
    ULONG References() const;

  private:
    explicit PlugInClient(Ref<IVEXClient> client) : client_(std::move(client)) {}
    Ref<IVEXClient> client_;
};

}  // namespace demovex::host
