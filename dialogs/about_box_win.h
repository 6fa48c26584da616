// AboutBox: the modal information dialog with picture, title, text and clickable links.
//
//   AboutBox box(module, icon);
//   box.Show(basket_window, kAboutTitle, AboutText(folder));
//
// Each link of the text becomes a label laid over its place: hand cursor, the address as tool tip,
// reachable with Tab, opened by click, Enter or the space bar. Escape and OK close the dialog.
#pragma once

#include <windows.h>

#include <string>

#include "platform/message_box.h"
#include "platform/shell.h"

namespace demovex {

class AboutBox {
  public:
    // Child window ids, for tests and assistive programs; links follow from kFirstLink on, in the
    // order of the text.
    static constexpr int kPicture = 100;
    static constexpr int kTitle = 101;
    static constexpr int kInfo = 102;
    static constexpr int kFirstLink = 200;

    // `picture` is borrowed and may be null. A null `shell` or `messages` stands for the system's
    // own with the dialog as owner; others outlive this object.
    AboutBox(HINSTANCE module, HICON picture, IShell* shell = nullptr,
             IMessageBox* messages = nullptr);

    // Shows the dialog and returns when it is closed. `owner` may be null. Raises 7 when the system
    // cannot show it. Unfinished markup in `text` is reported in a message box; the text is shown
    // as it is then, without links.
    void Show(HWND owner, const std::wstring& title, const std::wstring& text);

  private:
    HINSTANCE module_;
    HICON picture_;
    IShell* shell_;
    IMessageBox* messages_;
};

}  // namespace demovex
