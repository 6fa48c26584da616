// Files being written on the real disk.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/handle_win.h"

namespace demovex {

// Writing behind the end of an open file.
class OpenOutput {
  public:
    explicit OpenOutput(UniqueHandle file);

    void Write(std::string_view bytes);
    void Flush();
    void Close();
    HANDLE get() const noexcept { return file_.get(); }

  private:
    // After a failed write: a part of a line is worse than none.
    void TakeBack(LARGE_INTEGER begin);

    UniqueHandle file_;
    LARGE_INTEGER end_{};
};

class WinOutputFile final : public IOutputFile {
  public:
    explicit WinOutputFile(UniqueHandle file) : file_(std::move(file)) {}
    void Write(std::string_view bytes) override { file_.Write(bytes); }
    void Flush() override { file_.Flush(); }
    void Close() override { file_.Close(); }

  private:
    OpenOutput file_;
};

// Why not the system's own function for this (ReplaceFile), which also keeps streams, encryption
// and rights: it takes both files by name and insists on opening the replacement alone, so the new
// file would have to be closed before. Whoever may create names in the folder could then put
// another file under the temporary's name, which would take the target's place and its rights. Here
// the new file stays open, and so keeps its name to itself, until the rename that is done to the
// open file; what that function keeps is given to it by CopyFileTraits and, for encryption, at its
// creation.
class WinReplacementFile final : public IReplacementFile {
  public:
    // Creates `path`; `target` may be empty.
    WinReplacementFile(std::wstring_view path, std::wstring_view target);

    void Write(std::string_view bytes) override { file_.Write(bytes); }
    void Flush() override { file_.Flush(); }
    void Close() override { file_.Close(); }
    std::optional<FileStamp> TakePlaceOf(std::wstring_view target) override;
    void Discard() noexcept override;

  private:
    OpenOutput file_;
};

}  // namespace demovex
