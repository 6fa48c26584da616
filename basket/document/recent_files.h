// The four most recently used basket files: kept in the user's settings, shown in the File menu
// and as send-to targets in the context menu.
//
// All basket windows of a user share the stored list. The menus are rebuilt when a path enters the
// list anew and at the window's set-up, so an entry's Tag may be older than the stored list.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "basket/state.h"

namespace demovex {

class RecentFiles {
  public:
    static constexpr std::int32_t kCount = 4;

    // `context` outlives this object.
    explicit RecentFiles(BasketContext& context) : context_(context) {}

    // Moves or inserts `Path` at the head of the stored list. A path that was there already (letter
    // case ignored) takes its new letter case with it, and the menus stay as they are; a new one
    // pushes the oldest out and the menus are rebuilt. Settings that refuse leave the list as it
    // was; nobody is kept from loading or saving by that.
    void AddRecentFile(const std::wstring& Path);

    // Rebuilds both menus from the stored list.
    void RefreshRecentFiles();

    // The path behind entry `Index` (1 to 4) of either menu, empty for a hidden entry. Raises 9.
    const std::wstring& Tag(std::int32_t Index) const;

  private:
    using Paths = std::array<std::wstring, kCount>;

    // Makes the first `count` entries of the stored list those of `paths`, or leaves it as `before`
    // it was.
    bool Store(const Paths& paths, const Paths& before, std::size_t count) const;

    BasketContext& context_;
    Paths tags_;
};

}  // namespace demovex
