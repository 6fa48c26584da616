// The four most recently used basket files: kept in the user's settings, shown in the File menu
// and as send-to targets in the context menu.
//
// All basket windows of a user share the stored list. The menus are rebuilt when a path enters the
// list anew and at the window's set-up, so an entry's Tag may be older than the stored list.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "basket/basket_state.h"

namespace demovex {

class RecentFiles {
  public:
    static constexpr std::int32_t kCount = 4;

    // `context` outlives this object.
    explicit RecentFiles(BasketContext& context) : context_(context) {}

    // Moves or inserts `Path` at the head of the stored list. A path that was there already (letter
    // case ignored) takes its new letter case with it, and the menus stay as they are; a new one
    // pushes the oldest out and the menus are rebuilt. Raises 5 when the settings refuse.
    void AddRecentFile(const std::wstring& Path);

    // Rebuilds both menus from the stored list.
    void RefreshRecentFiles();

    // The path behind entry `Index` (1 to 4) of either menu, empty for a hidden entry. Raises 9.
    const std::wstring& Tag(std::int32_t Index) const;

  private:
    BasketContext& context_;
    std::array<std::wstring, kCount> tags_;
};

}  // namespace demovex
