// The component as a guest that comes and goes: loaded by hand from a file, whatever its name.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "demovexclient.h"
#include "platform/com_ptr_win.h"
#include "vexinterfaces.h"

namespace demovex {

class Guest {
  public:
    explicit Guest(const std::wstring& path) : module_(LoadLibraryW(path.c_str())) {
        EXPECT_NE(module_, nullptr) << GetLastError();
    }
    ~Guest() { Unload(); }
    Guest(const Guest&) = delete;
    Guest& operator=(const Guest&) = delete;

    HMODULE Module() const { return module_; }

    ComPtr<IVEXClient> NewClient() const {
        using Get = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);
        ComPtr<IClassFactory> factory;
        ComPtr<IVEXClient> client;
        EXPECT_EQ(
            Entry<Get>("DllGetClassObject")(CLSID_Client, IID_IClassFactory, factory.OutVoid()),
            S_OK);
        EXPECT_EQ(factory->CreateInstance(nullptr, IID_IVEXClient, client.OutVoid()), S_OK);
        return client;
    }

    HRESULT CanUnload() const { return Entry<HRESULT(STDMETHODCALLTYPE*)()>("DllCanUnloadNow")(); }

    // As COM does: only when the library agrees. True when it is gone.
    bool Unload() {
        if (module_ == nullptr) return true;
        if (CanUnload() != S_OK) return false;
        std::wstring path(MAX_PATH, L'\0');
        path.resize(GetModuleFileNameW(module_, path.data(), MAX_PATH));
        FreeLibrary(module_);
        module_ = nullptr;
        return GetModuleHandleW(path.c_str()) == nullptr;
    }

  private:
    template <typename F>
    F Entry(const char* name) const {
        return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    }

    HMODULE module_;
};

}  // namespace demovex
