// The keys of the basket window in a host whose message loop knows nothing of them.
//
// A host may offer each key to its own accelerators first, or hand it to IsDialogMessage, which
// makes of it what a dialog makes of Tab, Return, Escape and arrows. So a hook on the thread's
// message queue rewrites the message of a key that means something in a basket window: when it is
// taken from the queue, before the host's loop has seen it, it becomes a private message of that
// window (see TurnKey). The host dispatches it like any other, and the window makes the key's
// message of it again and does what a plain loop does: translates it, so that dead keys, AltGr and
// programs that type work as everywhere, and dispatches it to the control with the focus. Nothing
// is carried out inside the hook.
//
// The hook acts only when a basket window is the active window and it or one of its controls has
// the focus; neither while a menu is open or the window is being moved, whose own loops take the
// keys. What an input method is working on passes as it is: its editor sees every key before any
// loop does. Keys going up mean nothing to either side and pass, too.
#pragma once

#include "basket/commands/commands.h"
#include "basket/window/handles_win.h"
#include "platform/key_state_win.h"

namespace demovex {

// Installs the hook for the calling thread. Every window holds a hook of its own; a message
// that one of them has rewritten is no longer a key for the next. Raises 7.
UniqueHook InstallKeyHook();

// Whether a message is a key's message that the hook has rewritten ("turned"), and the key's
// message as it was, for `target`.
bool IsTurnedKey(UINT message) noexcept;
MSG TurnedBack(HWND target, UINT message, WPARAM wparam, LPARAM lparam) noexcept;

// The command whose shortcut a key message is; kNone for any other.
Command ShortcutOf(const MSG& key) noexcept;

}  // namespace demovex
