// COM: owners of interface pointers and strings, and the counting of references that an object of
// ours is born with.
#pragma once

#include <windows.h>

#include <oleauto.h>
#include <unknwn.h>

#include <atomic>
#include <new>
#include <string_view>
#include <utility>

namespace demovex {

// A counted reference. `ComPtr<T>(p)` takes a reference of its own; Attach takes over the caller's.
template <typename T>
class ComPtr {
  public:
    ComPtr() noexcept = default;
    explicit ComPtr(T* pointer) noexcept : pointer_(pointer) {
        if (pointer_) pointer_->AddRef();
    }
    ComPtr(const ComPtr& other) noexcept : ComPtr(other.pointer_) {}
    ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept {
        // the old reference goes last: its release may come back to this object
        std::swap(pointer_, other.pointer_);
        return *this;
    }
    ~ComPtr() {
        if (pointer_) pointer_->Release();
    }

    static ComPtr Attach(T* pointer) noexcept {
        ComPtr attached;
        attached.pointer_ = pointer;
        return attached;
    }

    T* Get() const noexcept { return pointer_; }
    T* operator->() const noexcept { return pointer_; }
    explicit operator bool() const noexcept { return pointer_ != nullptr; }

    // The reference itself, handed over to the caller.
    T* Detach() noexcept { return std::exchange(pointer_, nullptr); }

    // For calls that return a reference through a pointer; what was held is let go of before.
    T** Out() noexcept {
        *this = ComPtr();
        return &pointer_;
    }
    void** OutVoid() noexcept { return reinterpret_cast<void**>(Out()); }

    // Another interface of the same object; empty when it has none.
    template <typename U>
    ComPtr<U> As(REFIID iid) const noexcept {
        ComPtr<U> other;
        if (pointer_ && FAILED(pointer_->QueryInterface(iid, other.OutVoid()))) return {};
        return other;
    }

  private:
    T* pointer_ = nullptr;
};

// An object with `Interfaces` that counts its references: it starts with one, the creator's, and is
// deleted with the last. `Object` is the final class, which befriends this one when its destructor
// is not public.
template <typename Object, typename... Interfaces>
class Counted : public Interfaces... {
  public:
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() noexcept override {
        const ULONG left = --references_;
        if (left == 0) delete static_cast<Object*>(this);
        return left;
    }

  protected:
    Counted() noexcept = default;
    ~Counted() = default;
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

  private:
    std::atomic<ULONG> references_{1};
};

// The characters of an automation string, which the caller keeps; null is the empty string.
inline std::wstring_view TextOf(BSTR text) noexcept {
    return text ? std::wstring_view(text, SysStringLen(text)) : std::wstring_view();
}

// An automation string of its own.
class Bstr {
  public:
    Bstr() noexcept = default;
    // Throws std::bad_alloc when memory runs out.
    explicit Bstr(std::wstring_view text)
        : text_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
        if (!text_) throw std::bad_alloc();
    }
    Bstr(Bstr&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
    Bstr& operator=(Bstr&& other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    ~Bstr() { SysFreeString(text_); }

    BSTR Get() const noexcept { return text_; }
    BSTR Detach() noexcept { return std::exchange(text_, nullptr); }
    // For calls that return a string through a pointer.
    BSTR* Out() noexcept {
        SysFreeString(std::exchange(text_, nullptr));
        return &text_;
    }

  private:
    BSTR text_ = nullptr;
};

}  // namespace demovex
