#include "basket/window_services_win.h"

#include "base/error.h"
#include "platform/clipboard_win.h"
#include "platform/file_dialogs_win.h"
#include "platform/files_win.h"
#include "platform/message_box_win.h"
#include "platform/printer_win.h"
#include "platform/settings_win.h"
#include "platform/shell_win.h"
#include "platform/sound_win.h"
#include "platform/text_win.h"

namespace demovex {
namespace {

// Stands over boxes that have no title of their own.
constexpr wchar_t kApplicationTitle[] = L"DemoVexClient";

std::wstring FolderOf(HINSTANCE module) {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) RaiseRuntimeError(runtime_error::kPathFileAccessError);
        if (length < path.size()) {
            path.resize(length);
            break;
        }
        path.resize(path.size() * 2);
    }
    return path.substr(0, path.find_last_of(L'\\'));
}

}  // namespace

struct WindowServices::All {
    All(HINSTANCE module, const OwnerWindow& owner)
        : clipboard(owner),
          messages(owner, kApplicationTitle),
          shell(owner),
          printer(owner),
          file_dialogs(owner),
          services{text,  files, settings, clipboard,    messages,
                   sound, shell, printer,  file_dialogs, FolderOf(module)} {}

    WinTextService text;
    WinFileSystem files;
    WinSettings settings;
    WinClipboard clipboard;
    WinMessageBox messages;
    WinSound sound;
    WinShell shell;
    WinPrinter printer;
    WinFileDialogs file_dialogs;
    Services services;
};

WindowServices::WindowServices(HINSTANCE module, HWND window)
    : all_(std::make_unique<All>(module,
                                 [window] { return IsWindow(window) ? window : nullptr; })) {}

WindowServices::~WindowServices() = default;

Services& WindowServices::Get() noexcept {
    return all_->services;
}

void WindowServices::SettingsChanged() {
    all_->text.Refresh();
}

}  // namespace demovex
