// The services of the system that the basket works with, handed in by whoever creates the window.
// All references outlive the window.
#pragma once

#include <string>

#include "platform/clipboard.h"
#include "platform/file_dialogs.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/printer.h"
#include "platform/settings.h"
#include "platform/shell.h"
#include "platform/sound.h"
#include "platform/text.h"

namespace demovex {

struct Services {
    ITextService& text;
    IFileSystem& files;
    ISettings& settings;
    IClipboard& clipboard;
    IMessageBox& messages;
    ISound& sound;
    IShell& shell;
    IPrinter& printer;
    IFileDialogs& file_dialogs;
    // The folder that the component was loaded from, without a trailing backslash.
    std::wstring component_folder;
};

}  // namespace demovex
