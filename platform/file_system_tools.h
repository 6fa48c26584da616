// Small helpers over the files service: does a path exist, its folder and name, a whole file as one
// text, and a save that never loses the old file.
//
//   const std::wstring text = LoadFile(files, ansi, path);
//   bool lossy = false;
//   SaveFile(files, ansi, path, text, {.lossy = &lossy});
//
// Texts are converted from and to the system's ANSI code page, with no mark, length or terminator.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/text.h"

namespace demovex {

// True when a directory search for `path` finds a file or folder (wildcards included); false for
// the empty path and on every error.
bool FileExists(const IFileSystem& files, std::wstring_view path) noexcept;

// What follows the last backslash or slash; the whole path without either.
std::wstring GetFileName(std::wstring_view path);

// What stands before the last backslash or slash; empty without either, and when the only one is
// the first character.
std::wstring GetFolderName(std::wstring_view path);

// `path` as it stands in a message or a menu: control characters as blanks, and one that is longer
// than `limit` (at least 20) shortened in the middle.
inline constexpr std::size_t kLongestShownPath = 100;
std::wstring ShownPath(std::wstring_view path, std::size_t limit = kLongestShownPath);

// The whole file. Raises kOwnError from "LoadFile" ("File '<path>' not found", with the path as it
// is to be shown, `path` itself unless given otherwise) when it does not exist; other errors of
// reading are raised as they come.
std::wstring LoadFile(IFileSystem& files, const ITextService& text, std::wstring_view path,
                      std::wstring_view shown = {});

// Passing of time while a save waits for another program to let go of a file; tests have their own.
class IRetryClock {
  public:
    virtual ~IRetryClock() = default;
    virtual std::chrono::milliseconds Now() = 0;
    virtual void Wait(std::chrono::milliseconds duration) = 0;
};

// The real clock; Wait blocks the thread.
IRetryClock& SystemRetryClock();

// How long a save puts up with files that another program holds open (error 70), in all, and how
// often it looks again.
inline constexpr std::chrono::milliseconds kSaveRetryTime{2000};
inline constexpr std::chrono::milliseconds kSaveRetryPause{50};

// Bytes handed to the file at a time.
inline constexpr std::size_t kSaveBlock = 256 * 1024;

struct SaveOptions {
    // Set to true (never to false) when a character had to be replaced by "?"; may be null.
    bool* lossy = nullptr;
    // Told the written share, 0 to 1, after each block; may be empty.
    std::function<void(double)> progress = {};
    IRetryClock* clock = nullptr;  // null is the system's
};

// Makes `content` the whole content of the file `path`, creating or replacing it. Where `path` is a
// link, the file that it leads to is meant. Answers the stamp of the file as it was written,
// nothing when another one has taken its place already.
//
// The content goes to a temporary file in the same folder, is flushed to the disk and then takes
// the target's place in one step, so that at any moment, also when the process or the power ends,
// the target is wholly the old or wholly the new file. What else makes the target the user's file
// survives. The temporary file stays open until then, so that nobody can put another file in its
// place. Operations that fail because another program holds a file (70, and 75 when the target is
// to be replaced) are tried again for up to kSaveRetryTime in all. Every other error (61 disk full,
// 75 read-only target, 76 missing folder, ...) is raised as it comes, after the temporary file has
// been removed; the target is untouched.
//
// The temporary file's name is computed from the target's (TemporaryName). What a process that was
// ended has left under that name is removed by the next save to the same target; nothing else ever
// is. Where that name cannot be used, a random one of the same form is.
std::optional<FileStamp> SaveFile(IFileSystem& files, const ITextService& text,
                                  std::wstring_view path, std::wstring_view content,
                                  const SaveOptions& options = {});

// The usual temporary file of a save to `path`, in the same folder: "~", seven letters or digits
// computed from the target's name regardless of letter case, and ".dvx" (".dvy" for a target that
// itself ends in ".dvx", so that no file is ever its own temporary). Twelve characters: wherever a
// folder can exist, such a name fits.
std::wstring TemporaryName(const ITextService& text, std::wstring_view path);

}  // namespace demovex
