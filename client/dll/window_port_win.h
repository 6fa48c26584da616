// The basket window as PlugIn sees it: what Client puts into its `create_window`.
#pragma once

#include <memory>

#include "basket/view.h"
#include "client/plug_in.h"

namespace demovex {

// A new hidden basket window, which holds `owner` and the module until it has closed. Raises 7 when
// the system refuses a window.
std::shared_ptr<IClientWindow> CreateBasketWindow(std::shared_ptr<IBasketOwner> owner);

}  // namespace demovex
