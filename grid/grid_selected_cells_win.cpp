#include "grid/grid_selected_cells_win.h"

#include <algorithm>
#include <new>

#include "grid/cell_name.h"
#include "platform/com_ptr_win.h"

namespace demovex {

namespace {

// Enumerates the child ids of a rectangle of cells without listing them.
class SelectedCells final : public Counted<SelectedCells, IEnumVARIANT> {
  public:
    SelectedCells(const SelectedRange& range, ULONG at, std::shared_ptr<void> lock)
        : range_(range), at_(at), module_lock_(std::move(lock)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (iid != IID_IUnknown && iid != IID_IEnumVARIANT) return E_NOINTERFACE;
        *object = static_cast<IEnumVARIANT*>(this);
        AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* cells, ULONG* fetched) noexcept override {
        if (cells == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
        const ULONG wide = Wide();
        ULONG done = 0;
        for (; done < count && at_ < Count(); ++done, ++at_) {
            const auto row = range_.row1 + static_cast<std::int32_t>(at_ / wide);
            const auto col = range_.col1 + static_cast<std::int32_t>(at_ % wide);
            VariantInit(&cells[done]);
            cells[done].vt = VT_I4;
            cells[done].lVal = CellNumber(row, col, range_.cols);
        }
        if (fetched != nullptr) *fetched = done;
        return done == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override {
        const ULONG left = Count() - at_;
        at_ += std::min(count, left);
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() noexcept override {
        at_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) noexcept override {
        if (copy == nullptr) return E_POINTER;
        *copy = new (std::nothrow) SelectedCells(range_, at_, module_lock_);
        return *copy == nullptr ? E_OUTOFMEMORY : S_OK;
    }

  private:
    friend Counted;
    ~SelectedCells() = default;
    ULONG Wide() const {
        return static_cast<ULONG>(range_.col2) - static_cast<ULONG>(range_.col1) + 1;
    }
    ULONG Count() const {
        return Wide() * (static_cast<ULONG>(range_.row2) - static_cast<ULONG>(range_.row1) + 1);
    }
    SelectedRange range_;
    ULONG at_;
    std::shared_ptr<void> module_lock_;
};

}  // namespace

IEnumVARIANT* NewSelectedCells(const SelectedRange& range, std::shared_ptr<void> module_lock) {
    return new SelectedCells(range, 0, std::move(module_lock));
}

}  // namespace demovex
