// The system's own dialogs for choosing a file.
//
//   WinFileDialogs dialogs([&] { return window; });
//   FileDialogResult chosen = dialogs.ShowOpen(request);
//
// The program's current folder is the same before and after. A help button, where one is asked for,
// sends the system's registered help message to the owner, which may ignore it.
#pragma once

#include "platform/file_dialogs.h"
#include "platform/owner_window_win.h"

namespace demovex {

// What the dialogs raise when the system cannot show one or cannot give back the choice.
namespace file_dialog_error {
inline constexpr int kBufferTooSmall = 20476;  // more files chosen than a path list can hold
inline constexpr int kInvalidFileName = 20477;
inline constexpr int kOther = 32765;
}  // namespace file_dialog_error

class WinFileDialogs : public IFileDialogs {
  public:
    explicit WinFileDialogs(OwnerWindow owner) : owner_(std::move(owner)) {}

    // In the result's flags stand those of the request and what the dialog added or took away.
    FileDialogResult ShowOpen(const FileDialogRequest& request) override;
    FileDialogResult ShowSave(const FileDialogRequest& request) override;

  private:
    OwnerWindow owner_;
};

}  // namespace demovex
