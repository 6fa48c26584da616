#include "grid/grid_accessible_win.h"

#include <algorithm>
#include <new>

#include "grid/cell_name.h"
#include "grid/grid_accessible_object_win.h"
#include "grid/grid_selected_cells_win.h"
#include "platform/system_library_win.h"

namespace demovex {

namespace {

VARIANT LongVariant(LONG value) {
    VARIANT variant;
    VariantInit(&variant);
    variant.vt = VT_I4;
    variant.lVal = value;
    return variant;
}

HRESULT GiveText(std::wstring_view text, BSTR* out) {
    *out = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *out == nullptr ? E_OUTOFMEMORY : S_OK;
}

}  // namespace

template <class Action>
HRESULT GridAccessible::Run(Action action) noexcept {
    if (owner_ == nullptr) return CO_E_OBJNOTCONNECTED;
    try {
        // events of the grid may destroy the window in the middle of the action
        const std::shared_ptr<FlexGridImplWin> alive = owner_->weak_from_this().lock();
        return alive == nullptr ? CO_E_OBJNOTCONNECTED : action();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_FAIL;
    }
}

template <class Action>
HRESULT GridAccessible::Run(const VARIANT& child, Action action) noexcept {
    return Run([&]() -> HRESULT {
        Element element;
        return Find(child, element) ? action(element) : E_INVALIDARG;
    });
}

bool GridAccessible::Find(const VARIANT& child, Element& element) const {
    if (child.vt != VT_I4 || child.lVal < 0) return false;
    element.table = child.lVal == CHILDID_SELF;
    if (element.table) return true;
    element.row = (child.lVal - 1) / Grid().Cols();
    element.col = (child.lVal - 1) % Grid().Cols();
    return element.row < Grid().Rows();
}

bool GridAccessible::HoldsFocus() const {
    const HWND focus = GetFocus();
    return focus != nullptr &&
           (focus == owner_->window || IsChild(GetParent(owner_->window), focus));
}

std::wstring GridAccessible::NameOf(const Element& element) const {
    if (element.table) {
        wchar_t title[128];
        const int length = GetWindowTextW(owner_->window, title, 128);
        return length > 0 ? std::wstring(title, static_cast<std::size_t>(length)) : L"Tabelle";
    }
    return CellName(Grid(), element.row, element.col);
}

HRESULT GridAccessible::QueryInterface(REFIID iid, void** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IDispatch && iid != IID_IAccessible) {
        return E_NOINTERFACE;
    }
    *object = static_cast<IAccessible*>(this);
    AddRef();
    return S_OK;
}

HRESULT GridAccessible::GetTypeInfoCount(UINT* count) noexcept {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
}

HRESULT GridAccessible::GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept {
    if (info != nullptr) *info = nullptr;
    return E_NOTIMPL;
}

HRESULT GridAccessible::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept {
    return E_NOTIMPL;
}

HRESULT GridAccessible::Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                               UINT*) noexcept {
    return E_NOTIMPL;
}

HRESULT GridAccessible::get_accParent(IDispatch** parent) noexcept {
    if (parent == nullptr) return E_POINTER;
    *parent = nullptr;
    return Run([&] {
        static const auto object_from_window =
            SystemFunction<decltype(&AccessibleObjectFromWindow)>(L"oleacc.dll",
                                                                  "AccessibleObjectFromWindow");
        if (object_from_window == nullptr) return E_FAIL;
        return object_from_window(owner_->window, static_cast<DWORD>(OBJID_WINDOW), IID_IDispatch,
                                  reinterpret_cast<void**>(parent));
    });
}

HRESULT GridAccessible::get_accChildCount(LONG* count) noexcept {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return Run([&] {
        *count = static_cast<LONG>(
            std::min<std::int64_t>(std::int64_t{Grid().Rows()} * Grid().Cols(), 0x7FFFFFFE));
        return S_OK;
    });
}

HRESULT GridAccessible::get_accChild(VARIANT child, IDispatch** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    return Run(child, [&](const Element& element) {
        if (!element.table) return S_FALSE;  // cells are simple elements
        *object = this;
        AddRef();
        return S_OK;
    });
}

HRESULT GridAccessible::get_accName(VARIANT child, BSTR* name) noexcept {
    if (name == nullptr) return E_POINTER;
    *name = nullptr;
    return Run(child, [&](const Element& element) { return GiveText(NameOf(element), name); });
}

HRESULT GridAccessible::get_accValue(VARIANT child, BSTR* value) noexcept {
    if (value == nullptr) return E_POINTER;
    *value = nullptr;
    return Run(child, [&](const Element& element) {
        if (element.table) return S_FALSE;
        return GiveText(Grid().TextMatrix(element.row, element.col), value);
    });
}

HRESULT GridAccessible::get_accDescription(VARIANT, BSTR* text) noexcept {
    if (text != nullptr) *text = nullptr;
    return DISP_E_MEMBERNOTFOUND;
}

HRESULT GridAccessible::get_accRole(VARIANT child, VARIANT* role) noexcept {
    if (role == nullptr) return E_POINTER;
    VariantInit(role);
    return Run(child, [&](const Element& element) {
        LONG is = ROLE_SYSTEM_CELL;
        if (element.table) {
            is = ROLE_SYSTEM_TABLE;
        } else if (element.row < FlexGrid::kFixedRows) {
            is = ROLE_SYSTEM_COLUMNHEADER;
        } else if (element.col < FlexGrid::kFixedCols) {
            is = ROLE_SYSTEM_ROWHEADER;
        }
        *role = LongVariant(is);
        return S_OK;
    });
}

HRESULT GridAccessible::get_accState(VARIANT child, VARIANT* state) noexcept {
    if (state == nullptr) return E_POINTER;
    VariantInit(state);
    return Run(child, [&](const Element& element) {
        const FlexGrid& grid = Grid();
        LONG is = STATE_SYSTEM_READONLY;  // the grid itself never edits
        if (element.table) {
            is |=
                STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_MULTISELECTABLE | STATE_SYSTEM_EXTSELECTABLE;
            if (GetFocus() == owner_->window) is |= STATE_SYSTEM_FOCUSED;
        } else {
            const bool current = element.row == grid.Row() && element.col == grid.Col();
            const bool fixed =
                element.row < FlexGrid::kFixedRows || element.col < FlexGrid::kFixedCols;
            if (!fixed) is |= STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_FOCUSABLE;
            if (grid.Selected(element.row, element.col)) is |= STATE_SYSTEM_SELECTED;
            if (current && HoldsFocus()) is |= STATE_SYSTEM_FOCUSED;
            if (grid.ColAxis().Hidden(element.col) || grid.RowAxis().Hidden(element.row)) {
                is |= STATE_SYSTEM_INVISIBLE;
            } else if (grid.CellRect(element.row, element.col).empty()) {
                is |= STATE_SYSTEM_OFFSCREEN | STATE_SYSTEM_INVISIBLE;
            }
        }
        *state = LongVariant(is);
        return S_OK;
    });
}

HRESULT GridAccessible::get_accHelp(VARIANT, BSTR* text) noexcept {
    if (text != nullptr) *text = nullptr;
    return DISP_E_MEMBERNOTFOUND;
}

HRESULT GridAccessible::get_accHelpTopic(BSTR* file, VARIANT, LONG* topic) noexcept {
    if (file != nullptr) *file = nullptr;
    if (topic != nullptr) *topic = 0;
    return DISP_E_MEMBERNOTFOUND;
}

HRESULT GridAccessible::get_accKeyboardShortcut(VARIANT, BSTR* text) noexcept {
    if (text != nullptr) *text = nullptr;
    return DISP_E_MEMBERNOTFOUND;
}

HRESULT GridAccessible::get_accFocus(VARIANT* child) noexcept {
    if (child == nullptr) return E_POINTER;
    VariantInit(child);
    return Run([&] {
        if (!HoldsFocus()) return S_FALSE;
        *child = LongVariant(IdOf(Grid().Row(), Grid().Col()));
        return S_OK;
    });
}

HRESULT GridAccessible::get_accSelection(VARIANT* children) noexcept {
    if (children == nullptr) return E_POINTER;
    VariantInit(children);
    return Run([&] {
        const GridRange selected = Grid().Selection();
        const SelectedRange range{std::max(1, selected.first_row), std::max(1, selected.first_col),
                                  selected.last_row, selected.last_col, Grid().Cols()};
        if (range.row2 < range.row1 || range.col2 < range.col1) return S_FALSE;
        if (range.row1 == range.row2 && range.col1 == range.col2) {
            *children = LongVariant(IdOf(range.row1, range.col1));
            return S_OK;
        }
        children->punkVal = NewSelectedCells(range, module_lock_);
        children->vt = VT_UNKNOWN;
        return S_OK;
    });
}

HRESULT GridAccessible::get_accDefaultAction(VARIANT, BSTR* text) noexcept {
    if (text != nullptr) *text = nullptr;
    return DISP_E_MEMBERNOTFOUND;
}

HRESULT GridAccessible::accSelect(LONG flags, VARIANT child) noexcept {
    return Run(child, [&](const Element& element) {
        FlexGridImplWin& owner = *owner_;
        if (element.table) {
            if (flags != SELFLAG_TAKEFOCUS) return E_INVALIDARG;
            SetFocus(owner.window);
            return S_OK;
        }
        if (element.row < FlexGrid::kFixedRows || element.col < FlexGrid::kFixedCols) {
            return E_INVALIDARG;
        }
        constexpr LONG known = SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION | SELFLAG_EXTENDSELECTION;
        if (flags == 0 || (flags & ~known) != 0) return E_INVALIDARG;
        if ((flags & SELFLAG_TAKEFOCUS) != 0) SetFocus(owner.window);
        if ((flags & SELFLAG_EXTENDSELECTION) != 0) {
            owner.grid.Select(owner.grid.Row(), owner.grid.Col(), element.row, element.col);
        } else {
            owner.grid.Select(element.row, element.col, element.row, element.col);
        }
        owner.grid.Show(element.row, element.col);
        return S_OK;
    });
}

HRESULT GridAccessible::accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                                    VARIANT child) noexcept {
    if (left == nullptr || top == nullptr || width == nullptr || height == nullptr) {
        return E_POINTER;
    }
    *left = *top = *width = *height = 0;
    return Run(child, [&](const Element& element) {
        PixelRect rect = Grid().View();
        if (!element.table) {
            const PixelRect view = rect;
            rect = Grid().CellRect(element.row, element.col);
            rect.right = std::min(rect.right, view.right);
            rect.bottom = std::min(rect.bottom, view.bottom);
            if (rect.empty()) return S_FALSE;
        }
        POINT corner{rect.left, rect.top};
        ClientToScreen(owner_->window, &corner);
        *left = corner.x;
        *top = corner.y;
        *width = rect.width();
        *height = rect.height();
        return S_OK;
    });
}

HRESULT GridAccessible::accNavigate(LONG direction, VARIANT start, VARIANT* end) noexcept {
    if (end == nullptr) return E_POINTER;
    VariantInit(end);
    return Run(start, [&](const Element& element) {
        const FlexGrid& grid = Grid();
        const std::int64_t count = std::int64_t{grid.Rows()} * grid.Cols();
        if (direction == NAVDIR_FIRSTCHILD || direction == NAVDIR_LASTCHILD) {
            if (!element.table) return S_FALSE;
            *end = LongVariant(direction == NAVDIR_FIRSTCHILD ? 1 : static_cast<LONG>(count));
            return S_OK;
        }
        if (element.table) return S_FALSE;
        // up, down, left and right step over what is hidden and reach the headers
        const auto step = [](const GridAxis& axis, std::int32_t from, int way) {
            std::int32_t to = from + way;
            while (to >= 0 && to < axis.Count() && axis.Hidden(to)) to += way;
            return to >= 0 && to < axis.Count() ? to : from;
        };
        std::int32_t row = element.row;
        std::int32_t col = element.col;
        switch (direction) {
            case NAVDIR_UP:
                row = step(grid.RowAxis(), row, -1);
                break;
            case NAVDIR_DOWN:
                row = step(grid.RowAxis(), row, 1);
                break;
            case NAVDIR_LEFT:
                col = step(grid.ColAxis(), col, -1);
                break;
            case NAVDIR_RIGHT:
                col = step(grid.ColAxis(), col, 1);
                break;
            case NAVDIR_NEXT:
            case NAVDIR_PREVIOUS: {
                const LONG id = IdOf(row, col) + (direction == NAVDIR_NEXT ? 1 : -1);
                if (id < 1 || id > count) return S_FALSE;
                *end = LongVariant(id);
                return S_OK;
            }
            default:
                return E_INVALIDARG;
        }
        if (row == element.row && col == element.col) return S_FALSE;
        *end = LongVariant(IdOf(row, col));
        return S_OK;
    });
}

HRESULT GridAccessible::accHitTest(LONG x, LONG y, VARIANT* child) noexcept {
    if (child == nullptr) return E_POINTER;
    VariantInit(child);
    return Run([&] {
        RECT outer{};
        GetWindowRect(owner_->window, &outer);
        POINT point{x, y};
        if (!PtInRect(&outer, point)) return S_FALSE;
        ScreenToClient(owner_->window, &point);
        const GridHit hit = Grid().HitTest(point.x, point.y);
        *child =
            LongVariant(hit.area == GridArea::kNothing ? CHILDID_SELF : IdOf(hit.row, hit.col));
        return S_OK;
    });
}

HRESULT GridAccessible::accDoDefaultAction(VARIANT) noexcept {
    return DISP_E_MEMBERNOTFOUND;
}

HRESULT GridAccessible::put_accName(VARIANT, BSTR) noexcept {
    return DISP_E_MEMBERNOTFOUND;
}

HRESULT GridAccessible::put_accValue(VARIANT, BSTR) noexcept {
    return DISP_E_MEMBERNOTFOUND;
}

}  // namespace demovex
