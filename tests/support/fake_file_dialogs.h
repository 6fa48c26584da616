// File dialogs that answer what a test says and keep what they were shown with. Without an answer
// left they are cancelled.
//
//   FakeFileDialogs dialogs;
//   dialogs.Choose(L"C:\\a.bsk");
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/file_dialogs.h"

namespace demovex {

struct FakeFileDialogs : IFileDialogs {
    struct Shown {
        bool save = false;
        FileDialogRequest request;
    };
    std::vector<Shown> shown;
    std::deque<FileDialogResult> answers;
    // What goes on while the next dialog is open: a host is not blocked by it.
    std::function<void()> while_open;

    void Choose(std::wstring path, std::uint32_t flags = 0) {
        answers.push_back({false, std::move(path), flags});
    }
    void Cancel() { answers.push_back({}); }

    FileDialogResult ShowOpen(const FileDialogRequest& request) override {
        return Answer(false, request);
    }
    FileDialogResult ShowSave(const FileDialogRequest& request) override {
        return Answer(true, request);
    }

  private:
    FileDialogResult Answer(bool save, const FileDialogRequest& request) {
        shown.push_back({save, request});
        if (const auto meanwhile = std::exchange(while_open, nullptr)) meanwhile();
        if (answers.empty()) return {};
        FileDialogResult answer = std::move(answers.front());
        answers.pop_front();
        return answer;
    }
};

}  // namespace demovex
