// The keys of the basket window in a host whose message loop knows nothing of them.
//
// A host may offer each key to its own accelerators first, or hand it to IsDialogMessage, which
// makes of it what a dialog makes of Tab, Return, Escape and arrows. So a hook on the thread's
// message queue turns a key that means something in a basket window into a private message of that
// window when it is taken from the queue, before the host's loop has seen it. The host dispatches
// that one like any other, and the window then does with the key what a plain loop does: translates
// it, so that dead keys, AltGr and programs that type work as everywhere, and dispatches it to the
// control with the focus. Nothing is carried out inside the hook.
//
// The hook acts only when a basket window is the active window and it or one of its controls has
// the focus; neither while a menu is open or the window is being moved, whose own loops take the
// keys. What an input method is working on passes as it is: its editor sees every key before any
// loop does. Keys going up mean nothing to either side and pass, too.
#pragma once

#include "basket/commands/commands.h"
#include "basket/window/handles_win.h"

namespace demovex {

// Installs the hook for the calling thread. Every window holds a hook of its own; a key that one of
// them has turned is no longer a key for the next. Raises 7.
UniqueHook InstallKeyHook();

// Whether a message is a turned key, and the key as it was, for `target`.
bool IsTurnedKey(UINT message) noexcept;
MSG TurnedBack(HWND target, UINT message, WPARAM wparam, LPARAM lparam) noexcept;

// The command whose shortcut a key message is; kNone for any other.
Command ShortcutOf(const MSG& key) noexcept;

// The shift state of the event being handled: shift_state's Shift, Ctrl and Alt.
int ShiftState() noexcept;

}  // namespace demovex
