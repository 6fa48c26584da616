// The COM object behind GridAccessibility. Every method is an edge to foreign programs: noexcept,
// nothing leaves it but a result code.
#pragma once

#include <windows.h>

#include <oleacc.h>

#include <memory>

#include "grid/cell_name.h"
#include "grid/flex_grid_impl_win.h"
#include "platform/com_ptr_win.h"

namespace demovex {

class GridAccessible final : public Counted<GridAccessible, IAccessible> {
  public:
    // Starts with one reference, the creator's.
    GridAccessible(FlexGridImplWin& owner, std::shared_ptr<void> module_lock)
        : owner_(&owner), module_lock_(std::move(module_lock)) {}
    void Disconnect() noexcept { owner_ = nullptr; }

    // IUnknown
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override;
    // IDispatch: assistive programs call IAccessible itself
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID,
                                            DISPID*) noexcept override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) noexcept override;
    // IAccessible
    HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT, BSTR* text) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT, BSTR* text) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT, LONG* topic) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT, BSTR* text) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* children) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT, BSTR* text) noexcept override;
    HRESULT STDMETHODCALLTYPE accSelect(LONG flags, VARIANT child) noexcept override;
    HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                                          VARIANT child) noexcept override;
    HRESULT STDMETHODCALLTYPE accNavigate(LONG direction, VARIANT start,
                                          VARIANT* end) noexcept override;
    HRESULT STDMETHODCALLTYPE accHitTest(LONG x, LONG y, VARIANT* child) noexcept override;
    HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT) noexcept override;
    HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) noexcept override;
    HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR) noexcept override;

  private:
    // What a child id means.
    struct Element {
        bool table = false;
        std::int32_t row = 0;
        std::int32_t col = 0;
    };
    friend Counted;
    ~GridAccessible() = default;
    const FlexGrid& Grid() const { return owner_->grid; }
    bool HoldsFocus() const;
    bool Find(const VARIANT& child, Element& element) const;
    LONG IdOf(std::int32_t row, std::int32_t col) const {
        return CellNumber(row, col, Grid().Cols());
    }
    std::wstring NameOf(const Element& element) const;
    // Carries out `action` while connected and with a good child; every error becomes a code.
    template <class Action>
    HRESULT Run(Action action) noexcept;
    template <class Action>
    HRESULT Run(const VARIANT& child, Action action) noexcept;

    FlexGridImplWin* owner_;  // null once the window is gone
    std::shared_ptr<void> module_lock_;
};

}  // namespace demovex
