// The menu shortcuts of the basket window in a host whose message loop knows nothing of them.
//
// A hook on the thread's message queue turns Ctrl plus a shortcut's letter into the command's
// WM_COMMAND when the message is taken from the queue, before the host's loop translates or
// dispatches it: so no character follows, nothing beeps, and no IsDialogMessage sees the key. It
// acts only when a basket window is the active window and it or one of its controls has the focus.
#pragma once

#include "basket/window_handles_win.h"

namespace demovex {

// Installs the hook for the calling thread. Every window holds a hook of its own; a key that one of
// them has turned is no longer a key for the next. Raises 7.
UniqueHook InstallShortcutHook();

// Turns the message when it is a shortcut of a basket window; true when it did.
bool TurnShortcut(MSG& message) noexcept;

}  // namespace demovex
