#include "basket/window/services_win.h"

#include "platform/clipboard_win.h"
#include "platform/file_dialogs_win.h"
#include "platform/files_win.h"
#include "platform/message_box_win.h"
#include "platform/module_path_win.h"
#include "platform/printer_win.h"
#include "platform/settings_win.h"
#include "platform/shell_win.h"
#include "platform/sound_win.h"
#include "platform/text_win.h"

namespace demovex {
namespace {

// Stands over boxes that have no title of their own.
constexpr wchar_t kApplicationTitle[] = L"DemoVexClient";

}  // namespace

struct WindowServices::All {
    All(HINSTANCE module, const OwnerWindow& owner)
        : clipboard(owner),
          messages(owner, kApplicationTitle),
          shell(owner),
          printer(owner),
          file_dialogs(owner),
          services{text,  files, settings, clipboard,    messages,
                   sound, shell, printer,  file_dialogs, ModuleFolder(module)} {}

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
