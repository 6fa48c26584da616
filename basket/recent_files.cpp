#include "basket/recent_files.h"

#include <utility>

#include "base/error.h"

namespace demovex {
namespace {

constexpr wchar_t kSection[] = L"LRU";

std::wstring KeyOf(std::int32_t slot) {
    return L"File" + std::to_wstring(slot);
}

// The `slot`th of four commands with consecutive numbers.
Command Entry(Command first, std::int32_t slot) {
    return static_cast<Command>(static_cast<std::int32_t>(first) + slot - 1);
}

}  // namespace

void RecentFiles::AddRecentFile(const std::wstring& Path) {
    ISettings& settings = context_.services.settings;
    const ITextService& text = context_.services.text;
    const std::wstring wanted = text.LowerCase(Path);
    std::wstring carry = Path;
    for (std::int32_t slot = 1; slot <= kCount; ++slot) {
        std::wstring old = settings.Get(kSection, KeyOf(slot), L"");
        settings.Set(kSection, KeyOf(slot), carry);
        if (text.LowerCase(old) == wanted) return;
        carry = std::move(old);
    }
    RefreshRecentFiles();
}

void RecentFiles::RefreshRecentFiles() {
    IBasketView& view = context_.view;
    for (std::int32_t slot = 1; slot <= kCount; ++slot) {
        std::wstring& tag = tags_[static_cast<std::size_t>(slot - 1)];
        tag = context_.services.settings.Get(kSection, KeyOf(slot), L"");
        const std::wstring access = L"&" + std::to_wstring(slot);

        const Command recent = Entry(Command::mnuDateiLRU1, slot);
        view.SetMenuCaption(recent, access + L" " + tag);
        view.SetMenuState(recent, {.visible = !tag.empty()});

        const Command send_to = Entry(Command::mnuContextSendTo1, slot);
        view.SetMenuCaption(send_to, access + L" Selektion senden an " + tag);
        view.SetMenuState(send_to, {.visible = !tag.empty()});
    }
    view.SetMenuState(Command::mnuDelLRUHeader, {.visible = !tags_.front().empty()});
}

const std::wstring& RecentFiles::Tag(std::int32_t Index) const {
    if (Index < 1 || Index > kCount) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    return tags_[static_cast<std::size_t>(Index - 1)];
}

}  // namespace demovex
