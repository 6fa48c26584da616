// The names and numbers of the basket window: class names and child window ids, which tests and
// programs of others rely on and which therefore stay, and the messages and timers of its own. Menu
// ids are the values of Command (basket/commands/commands.h), the grid's class is its own affair.
#pragma once

namespace demovex {

inline constexpr wchar_t kBasketWindowClass[] = L"DemoVexClient.TestLibForm";
inline constexpr wchar_t kPictureBoxClass[] = L"DemoVexClient.PictureBox";
inline constexpr wchar_t kNoteClass[] = L"DemoVexClient.Note";

// Child window ids. The editor's text and button are children of its background.
namespace child_id {
inline constexpr int kToolbar = 1001;        // ToolbarWindow32; button ids are 2001, 2002, ...
inline constexpr int kStatusBar = 1002;      // msctls_statusbar32
inline constexpr int kListe = 1003;          // DemoVexClient.FlexGrid
inline constexpr int kIPBackground = 1004;   // DemoVexClient.PictureBox
inline constexpr int kIPText = 1005;         // EDIT, in IPBackground
inline constexpr int kIPComboButton = 1006;  // DemoVexClient.PictureBox, in IPBackground
inline constexpr int kIPComboList = 1007;    // LISTBOX
inline constexpr int kProgress = 1008;       // msctls_progress32, in the status bar
inline constexpr int kNote = 1009;           // DemoVexClient.Note, over the status bar
inline constexpr int kFirstButton = 2001;    // toolbar buttons by position in ToolbarTable()
}  // namespace child_id

// Messages that the basket window posts to itself.
namespace window_message {
inline constexpr unsigned kSetFocusTimer = 0x8000 + 1;  // WM_APP + 1: a tick of SetFocusTimer
inline constexpr unsigned kEditKey = 0x8000 + 2;        // wParam: EditKey
// A key message that was kept from the host's loop, by its distance from the first of them (see
// key_hook_win.h).
inline constexpr unsigned kKey = 0x8000 + 0x100;
}  // namespace window_message

// Timers of the basket window.
namespace window_timer {
inline constexpr unsigned kSetFocusTimer = 1;
}

}  // namespace demovex
