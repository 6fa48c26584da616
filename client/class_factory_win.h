// The class factory of Client.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <functional>

#include "client/client_win.h"

namespace demovex {

class ClassFactory final : public Counted<ClassFactory, IClassFactory> {
  public:
    // A new factory with one reference, which is the caller's. `make_parts` is asked once per
    // object; what it raises fails the creation.
    static ComPtr<ClassFactory> Create(std::function<ClientParts()> make_parts);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override;

    // Aggregation is refused.
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid,
                                             void** object) noexcept override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override;

  private:
    explicit ClassFactory(std::function<ClientParts()> make_parts);
    friend Counted;
    ~ClassFactory() = default;

    ModuleLock lock_;
    std::function<ClientParts()> make_parts_;
};

}  // namespace demovex
