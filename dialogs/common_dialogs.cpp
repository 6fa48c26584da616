#include "dialogs/common_dialogs.h"

#include <utility>

#include "base/error.h"

namespace demovex {

namespace flag = file_dialog_flags;

std::wstring CommonDialogs::GetOpenFileName(const OpenFileArguments& arguments) {
    FileDialogRequest request;
    request.init_dir = arguments.InitDir;
    request.file_name = arguments.InitFileName;
    request.title = arguments.Title;
    request.filter = arguments.sExtensions;
    request.help_context = arguments.HelpID;
    if (arguments.bFileMustExist) request.flags += flag::kFileMustExist;
    if (arguments.bHideReadOnly) request.flags += flag::kHideReadOnly;
    if (!arguments.bHideHelpButton) request.flags += flag::kShowHelp;
    if (arguments.bMultiSelect) request.flags += flag::kMultiSelectExplorer;
    try {
        FileDialogResult result = dialogs_.ShowOpen(request);
        if (result.cancelled) return {};
        // any flag counts, not only that of the read-only box: callers rely on it
        if (arguments.bReadOnly != nullptr) *arguments.bReadOnly = result.flags != 0;
        return std::move(result.file_name);
    } catch (const Error&) {
        return {};  // a dialog that cannot be shown is a dialog that was cancelled
    }
}

std::wstring CommonDialogs::GetSaveFileName(const SaveFileArguments& arguments) {
    FileDialogRequest request;
    request.init_dir = arguments.InitDir;
    request.file_name = arguments.InitFileName;
    request.title = arguments.Title;
    request.filter = arguments.sExtensions;
    request.help_context = arguments.HelpID;
    request.flags = flag::kOverwritePrompt + flag::kHideReadOnly;
    if (!arguments.bHideHelpButton) request.flags += flag::kShowHelp;
    try {
        FileDialogResult result = dialogs_.ShowSave(request);
        if (result.cancelled) return {};
        return std::move(result.file_name);
    } catch (const Error&) {
        return {};
    }
}

}  // namespace demovex
