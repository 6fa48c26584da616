#include "basket/commands/menu_model.h"

#include "base/error.h"

namespace demovex {

MenuModel::MenuModel() {
    for (const CommandRow& row : CommandTable()) {
        rows_.push_back({std::wstring(row.caption), {row.visible, row.enabled, false}});
    }
}

std::size_t MenuModel::Index(Command id) const {
    const auto table = CommandTable();
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (table[i].id == id) return i;
    }
    RaiseRuntimeError(runtime_error::kInvalidProcedureCall);
}

void MenuModel::SetState(Command id, const MenuItemState& state) {
    rows_[Index(id)].state = state;
}

const MenuItemState& MenuModel::State(Command id) const {
    return rows_[Index(id)].state;
}

void MenuModel::SetCaption(Command id, std::wstring_view caption) {
    rows_[Index(id)].caption = caption;
}

const std::wstring& MenuModel::Caption(Command id) const {
    return rows_[Index(id)].caption;
}

std::vector<MenuEntry> MenuModel::Visible(Command parent) const {
    std::vector<MenuEntry> entries;
    const auto table = CommandTable();
    MenuEntry separator;  // waits for the entry that it divides from the one above
    bool separator_waits = false;
    for (std::size_t i = 0; i < table.size(); ++i) {
        const CommandRow& row = table[i];
        const Row& now = rows_[i];
        if (row.parent != parent || !now.state.visible) continue;
        if (row.kind == MenuKind::kSeparator) {
            if (!entries.empty() && !separator_waits) {
                separator = {row.id, row.kind, {}, true, false};
                separator_waits = true;
            }
            continue;
        }
        if (separator_waits) entries.push_back(separator);
        separator_waits = false;
        std::wstring text = now.caption;
        if (row.shortcut != 0 && text.find(L'\t') == std::wstring::npos) {
            text += L"\tStrg+";
            text += row.shortcut;
        }
        entries.push_back(
            {row.id, row.kind, std::move(text), now.state.enabled, now.state.checked});
    }
    return entries;
}

}  // namespace demovex
