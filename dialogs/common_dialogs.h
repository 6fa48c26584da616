// CommonDialogs: choose a file to open or to save to. Each call shows one dialog and leaves nothing
// behind for the next.
//
//   CommonDialogs dialogs(services.file_dialogs);
//   std::wstring path = dialogs.GetOpenFileName({.sExtensions = L"Warenkorb Dateien|*.bsk"});
//   if (path.empty()) return;  // cancelled
#pragma once

#include <cstdint>
#include <string>

#include "platform/file_dialogs.h"

namespace demovex {

inline constexpr wchar_t kDefaultDialogTitle[] = L"Wählen Sie eine Datei";
inline constexpr wchar_t kDefaultDialogFilter[] = L"Alle Dateien (*.*)|*.*";

// The arguments that both dialogs take; each may be left out. `sExtensions` is description and
// pattern pairs separated by "|".
struct OpenFileArguments {
    std::wstring InitDir = {};
    std::wstring InitFileName = {};
    std::wstring Title = kDefaultDialogTitle;
    std::wstring sExtensions = kDefaultDialogFilter;
    bool bFileMustExist = false;
    bool bHideReadOnly = false;
    bool bHideHelpButton = false;
    std::int32_t HelpID = 0;
    bool* bReadOnly = nullptr;  // set after a choice: whether the dialog left any flag set
    bool bMultiSelect = false;
};

struct SaveFileArguments {
    std::wstring InitDir = {};
    std::wstring InitFileName = {};
    std::wstring Title = kDefaultDialogTitle;
    std::wstring sExtensions = kDefaultDialogFilter;
    bool bHideHelpButton = false;
    std::int32_t HelpID = 0;
};

class CommonDialogs {
  public:
    // `dialogs` outlives this object.
    explicit CommonDialogs(IFileDialogs& dialogs) : dialogs_(dialogs) {}

    // The chosen path; with bMultiSelect the system's own text for several files, unchanged. Empty
    // when the dialog was cancelled or could not be shown: no error leaves these functions, and
    // *bReadOnly keeps its value then.
    std::wstring GetOpenFileName(const OpenFileArguments& arguments = {});
    std::wstring GetSaveFileName(const SaveFileArguments& arguments = {});

  private:
    IFileDialogs& dialogs_;
};

}  // namespace demovex
