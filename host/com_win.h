// The little that the host needs of COM: a counted pointer, a string, a call's outcome.
#pragma once

#include <windows.h>

#include <oleauto.h>
#include <unknwn.h>

#include <string>
#include <string_view>
#include <utility>

namespace demovex::host {

// A counted reference.
template <typename T>
class Ref {
  public:
    Ref() noexcept = default;
    explicit Ref(T* pointer) noexcept : pointer_(pointer) {
        if (pointer_) pointer_->AddRef();
    }
    Ref(const Ref& other) noexcept : Ref(other.pointer_) {}
    Ref(Ref&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    Ref& operator=(Ref other) noexcept {
        std::swap(pointer_, other.pointer_);
        return *this;
    }
    ~Ref() {
        if (pointer_) pointer_->Release();
    }
    T* Get() const noexcept { return pointer_; }
    T* operator->() const noexcept { return pointer_; }
    explicit operator bool() const noexcept { return pointer_ != nullptr; }
    T** Out() noexcept {
        *this = Ref();
        return &pointer_;
    }
    void** OutVoid() noexcept { return reinterpret_cast<void**>(Out()); }

  private:
    T* pointer_ = nullptr;
};

// An automation string.
class Text {
  public:
    Text() noexcept = default;
    explicit Text(std::wstring_view text)
        : text_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { SysFreeString(text_); }
    BSTR Get() const noexcept { return text_; }
    BSTR* Out() noexcept {
        SysFreeString(std::exchange(text_, nullptr));
        return &text_;
    }
    std::wstring Copy() const {
        return text_ ? std::wstring(text_, SysStringLen(text_)) : std::wstring();
    }

  private:
    BSTR text_ = nullptr;
};

// How a call ended: the result code and, when it failed, what the callee says about it.
struct Outcome {
    HRESULT code = S_OK;
    std::wstring source;
    std::wstring description;

    bool Failed() const { return FAILED(code); }
    // "0x800A000D DemoVexClient: Type mismatch", or "ok".
    std::wstring Say() const;
};

// The outcome of a call that just returned `code`.
Outcome OutcomeOf(HRESULT code);

}  // namespace demovex::host
