#include "platform/file_dialogs_win.h"

// clang-format off
#include <windows.h>
#include <commdlg.h>
#include <cderr.h>
// clang-format on

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "base/error.h"

namespace demovex {
namespace {

// Room for the longest path there is, and for a good many names when several may be chosen.
constexpr std::size_t kOnePath = 32'768;
constexpr std::size_t kManyPaths = 1'048'576;

// What this file adds to a request, and takes out of the answer.
constexpr DWORD kAlways = OFN_NOCHANGEDIR | OFN_EXPLORER | OFN_ENABLESIZING;

// "Text|*.txt|All|*.*" as the system takes it: parts that end with NULs, and one more at the end.
std::wstring FilterParts(std::wstring_view filter) {
    std::wstring parts(filter);
    std::replace(parts.begin(), parts.end(), L'|', L'\0');
    if (!parts.empty() && parts.back() != L'\0') parts += L'\0';
    return parts + L'\0';
}

// The dialogs walk through folders and leave the program in the last one; this takes it back.
class CurrentFolderKept {
  public:
    CurrentFolderKept() {
        std::wstring folder(GetCurrentDirectoryW(0, nullptr), L'\0');
        const DWORD length = GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data());
        if (length > 0 && length < folder.size()) folder_ = folder.substr(0, length);
    }
    ~CurrentFolderKept() {
        if (!folder_.empty()) SetCurrentDirectoryW(folder_.c_str());
    }
    CurrentFolderKept(const CurrentFolderKept&) = delete;
    CurrentFolderKept& operator=(const CurrentFolderKept&) = delete;

  private:
    std::wstring folder_;
};

[[noreturn]] void RaiseDialogError(DWORD code) {
    switch (code) {
        case FNERR_BUFFERTOOSMALL:
            throw Error(file_dialog_error::kBufferTooSmall, {},
                        L"The buffer at which the member lpstrFile points is too small.");
        case FNERR_INVALIDFILENAME:
            throw Error(file_dialog_error::kInvalidFileName, {}, L"Filename is invalid.");
        case CDERR_MEMALLOCFAILURE:
        case CDERR_MEMLOCKFAILURE:
            RaiseRuntimeError(runtime_error::kOutOfMemory);
        default:
            throw Error(file_dialog_error::kOther, {}, L"The file dialog cannot be shown.");
    }
}

FileDialogResult Show(const FileDialogRequest& request, HWND owner,
                      BOOL(APIENTRY* show)(OPENFILENAMEW*)) {
    const bool several = (request.flags & OFN_ALLOWMULTISELECT) != 0;
    std::vector<wchar_t> file(several ? kManyPaths : kOnePath, L'\0');
    // up to a NUL, and never beyond the buffer
    const std::wstring name(request.file_name.c_str());
    std::copy_n(name.begin(), std::min(name.size(), file.size() - 1), file.begin());
    const std::wstring filter = FilterParts(request.filter);

    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.lpstrFilter = request.filter.empty() ? nullptr : filter.c_str();
    dialog.nFilterIndex = static_cast<DWORD>(std::max(request.filter_index, 0));
    dialog.lpstrFile = file.data();
    dialog.nMaxFile = static_cast<DWORD>(file.size());
    dialog.lpstrInitialDir = request.init_dir.empty() ? nullptr : request.init_dir.c_str();
    dialog.lpstrTitle = request.title.empty() ? nullptr : request.title.c_str();
    dialog.lCustData = request.help_context;  // for an owner that is asked for help
    dialog.Flags = request.flags | kAlways;
    // the help message goes to the owner; without one there is nobody to send it to
    if (owner == nullptr) dialog.Flags &= ~static_cast<DWORD>(OFN_SHOWHELP);

    const CurrentFolderKept folder;
    if (!show(&dialog)) {
        const DWORD code = CommDlgExtendedError();
        if (code != 0) RaiseDialogError(code);
        return {};  // the user cancelled
    }

    FileDialogResult result;
    result.cancelled = false;
    // what was asked for stands there also where this function knew better
    result.flags = (dialog.Flags & ~kAlways) | (request.flags & (kAlways | OFN_SHOWHELP));
    std::size_t length = 0;
    if (several) {
        // folder and names, each ended by a NUL, all of them by one more
        while (length + 1 < file.size() && (file[length] != 0 || file[length + 1] != 0)) ++length;
    } else {
        while (length < file.size() && file[length] != 0) ++length;
    }
    result.file_name.assign(file.data(), length);
    return result;
}

}  // namespace

FileDialogResult WinFileDialogs::ShowOpen(const FileDialogRequest& request) {
    return Show(request, CurrentOwner(owner_), &GetOpenFileNameW);
}

FileDialogResult WinFileDialogs::ShowSave(const FileDialogRequest& request) {
    return Show(request, CurrentOwner(owner_), &GetSaveFileNameW);
}

}  // namespace demovex
