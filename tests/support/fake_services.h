// Recording fakes of the system's small services, for native tests: settings, clipboard, message
// box, sound, shell. What a test wants to know stands in public members.
//
//   struct Fixture : FakeServices {                          // with printer and file dialogs
//       Services services = Over(text, files, L"C:\\Basket");
//   };
//   Services own = With(services, faulty_files);             // the same but for one
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/error.h"
#include "basket/services.h"
#include "platform/clipboard.h"
#include "platform/message_box.h"
#include "platform/settings.h"
#include "platform/shell.h"
#include "platform/sound.h"
#include "tests/support/fake_file_dialogs.h"
#include "tests/support/fake_printer.h"

namespace demovex {

class FakeSettings : public ISettings {
  public:
    std::map<std::pair<std::wstring, std::wstring>, std::wstring> values;
    bool refuse = false;
    std::wstring refused_key;  // this key alone

    std::wstring Get(std::wstring_view section, std::wstring_view key,
                     std::wstring_view fallback) const override {
        const auto found = values.find({std::wstring(section), std::wstring(key)});
        return found == values.end() ? std::wstring(fallback) : found->second;
    }
    void Set(std::wstring_view section, std::wstring_view key, std::wstring_view value) override {
        if (refuse || (!refused_key.empty() && key == refused_key)) {
            RaiseRuntimeError(runtime_error::kInvalidProcedureCall);
        }
        values[{std::wstring(section), std::wstring(key)}] = value;
    }
};

class FakeClipboard : public IClipboard {
  public:
    std::wstring text;
    int sets = 0;
    bool held_by_another = false;

    void SetText(std::wstring_view new_text) override {
        if (held_by_another) throw Error(521, {}, L"Can't open Clipboard");
        text = new_text;
        ++sets;
    }
};

// Answers come from `answers` in order, then kOk or, where that is no choice, `otherwise`.
class FakeMessageBox : public IMessageBox {
  public:
    struct Shown {
        std::wstring text, title;
        MessageButtons buttons;
        MessageIcon icon;
    };
    std::vector<Shown> shown;
    std::deque<MessageAnswer> answers;
    MessageAnswer otherwise = MessageAnswer::kCancel;
    // What goes on while the next box is open: a host is not blocked by it.
    std::function<void()> while_open;

    MessageAnswer Show(std::wstring_view text, std::wstring_view title, MessageButtons buttons,
                       MessageIcon icon) override {
        shown.push_back({std::wstring(text), std::wstring(title), buttons, icon});
        if (const auto meanwhile = std::exchange(while_open, nullptr)) meanwhile();
        if (answers.empty()) {
            return buttons == MessageButtons::kOk ? MessageAnswer::kOk : otherwise;
        }
        const MessageAnswer answer = answers.front();
        answers.pop_front();
        return answer;
    }
};

class FakeSound : public ISound {
  public:
    std::vector<std::wstring> played;
    int beeps = 0;

    void Play(std::wstring_view path) noexcept override { played.emplace_back(path); }
    void Beep() noexcept override { ++beeps; }
};

class FakeShell : public IShell {
  public:
    std::vector<std::wstring> opened;
    int result = 42;  // 32 or less means failure

    int Open(std::wstring_view address) override {
        opened.emplace_back(address);
        return result;
    }
};

// All that a basket needs of the system but texts and files.
struct FakeServices {
    FakeSettings settings;
    FakeClipboard clipboard;
    FakeMessageBox messages;
    FakeSound sound;
    FakeShell shell;
    FakePrinter printer;
    FakeFileDialogs file_dialogs;

    Services Over(ITextService& text, IFileSystem& files, std::wstring folder) {
        return {text,  files, settings, clipboard,    messages,
                sound, shell, printer,  file_dialogs, std::move(folder)};
    }
};

inline Services With(const Services& s, IFileSystem& files) {
    return {s.text,  files,   s.settings, s.clipboard,    s.messages,
            s.sound, s.shell, s.printer,  s.file_dialogs, s.component_folder};
}
inline Services With(const Services& s, IMessageBox& messages) {
    return {s.text,  s.files, s.settings, s.clipboard,    messages,
            s.sound, s.shell, s.printer,  s.file_dialogs, s.component_folder};
}
inline Services With(const Services& s, IShell& shell) {
    return {s.text,  s.files, s.settings, s.clipboard,    s.messages,
            s.sound, shell,   s.printer,  s.file_dialogs, s.component_folder};
}

}  // namespace demovex
