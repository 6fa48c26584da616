#include "basket/document/recent_files.h"

#include <utility>

#include "base/error.h"
#include "platform/file_system_tools.h"

namespace demovex {
namespace {

constexpr wchar_t kSection[] = L"LRU";

// The name of entry `index`, counted from 0.
std::wstring KeyOf(std::size_t index) {
    return L"File" + std::to_wstring(index + 1);
}

// A path as a menu shows it: an ampersand would mark an access key, a tab set what follows it to
// the right as if it were a shortcut.
std::wstring MenuPath(std::wstring_view path) {
    constexpr std::size_t kLongest = 80;
    std::wstring shown = ShownPath(path, kLongest);
    for (std::size_t at = 0; (at = shown.find(L'&', at)) != std::wstring::npos; at += 2) {
        shown.insert(at, 1, L'&');
    }
    return shown;
}

// The `slot`th of four commands with consecutive numbers.
Command Entry(Command first, std::int32_t slot) {
    return static_cast<Command>(static_cast<std::int32_t>(first) + slot - 1);
}

}  // namespace

void RecentFiles::AddRecentFile(const std::wstring& Path) {
    const ISettings& settings = context_.services.settings;
    const ITextService& text = context_.services.text;
    const std::wstring wanted = text.LowerCase(Path);
    Paths before, after;
    std::size_t changed = 0;
    bool known = false;
    std::wstring carry = Path;
    for (; changed < before.size() && !known; ++changed) {
        before[changed] = settings.Get(kSection, KeyOf(changed), L"");
        after[changed] = std::exchange(carry, before[changed]);
        known = text.LowerCase(before[changed]) == wanted;
    }
    if (Store(after, before, changed) && !known) RefreshRecentFiles();
}

bool RecentFiles::Store(const Paths& paths, const Paths& before, std::size_t count) const {
    ISettings& settings = context_.services.settings;
    std::size_t at = 0;
    try {
        for (; at < count; ++at) settings.Set(kSection, KeyOf(at), paths[at]);
        return true;
    } catch (const Error&) {
        try {
            while (at > 0) {
                --at;
                settings.Set(kSection, KeyOf(at), before[at]);
            }
        } catch (const Error&) {  // a store that takes one entry and refuses the next
        }
        return false;
    }
}

void RecentFiles::RefreshRecentFiles() {
    IBasketView& view = context_.view;
    for (std::int32_t slot = 1; slot <= kCount; ++slot) {
        std::wstring& tag = tags_[static_cast<std::size_t>(slot - 1)];
        tag = context_.services.settings.Get(kSection, KeyOf(static_cast<std::size_t>(slot - 1)),
                                             L"");
        const std::wstring access = L"&" + std::to_wstring(slot), shown = MenuPath(tag);

        const Command recent = Entry(Command::mnuDateiLRU1, slot);
        view.SetMenuCaption(recent, access + L" " + shown);
        view.SetMenuState(recent, {.visible = !tag.empty()});

        const Command send_to = Entry(Command::mnuContextSendTo1, slot);
        view.SetMenuCaption(send_to, access + L" Selektion senden an " + shown);
        view.SetMenuState(send_to, {.visible = !tag.empty()});
    }
    view.SetMenuState(Command::mnuDelLRUHeader, {.visible = !tags_.front().empty()});
}

const std::wstring& RecentFiles::Tag(std::int32_t Index) const {
    if (Index < 1 || Index > kCount) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    return tags_[static_cast<std::size_t>(Index - 1)];
}

}  // namespace demovex
