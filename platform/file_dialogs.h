// The system's dialogs for choosing a file.
#pragma once

#include <cstdint>
#include <string>

namespace demovex {

// The bits of a file dialog, as the system numbers them (OPENFILENAME flags).
namespace file_dialog_flags {
inline constexpr std::uint32_t kOverwritePrompt = 0x2;
inline constexpr std::uint32_t kHideReadOnly = 0x4;
inline constexpr std::uint32_t kShowHelp = 0x10;
inline constexpr std::uint32_t kFileMustExist = 0x1000;
inline constexpr std::uint32_t kMultiSelectExplorer = 0x80200;
}  // namespace file_dialog_flags

// What one dialog is shown with. `filter` is description and pattern pairs separated by "|".
struct FileDialogRequest {
    std::wstring init_dir;
    std::wstring file_name;
    std::wstring title;
    std::wstring filter;
    int filter_index = 1;  // 1-based
    std::uint32_t flags = 0;
    std::int32_t help_context = 0;
};

struct FileDialogResult {
    bool cancelled = true;
    std::wstring file_name;   // the full path; the system's own format for several files
    std::uint32_t flags = 0;  // as the dialog left them
};

class IFileDialogs {
  public:
    virtual ~IFileDialogs() = default;
    virtual FileDialogResult ShowOpen(const FileDialogRequest& request) = 0;
    virtual FileDialogResult ShowSave(const FileDialogRequest& request) = 0;
};

}  // namespace demovex
