// Files: the operations that saving, appending, reading and the article master are made of.
//
// Every failure is raised as the platform's run-time error (53 file not found, 57 device I/O error,
// 61 disk full, 70 permission denied or in use, 75 path/file access error, 76 path not found, ...).
// A _win implementation serves the component; the tests use a std one natively and wrap either in a
// decorator that makes chosen operations fail.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace demovex {

// What tells a file from every other one, and from itself before it was written to again.
struct FileStamp {
    std::uint64_t length = 0;
    std::uint64_t written = 0;  // time of the last write, in units of the system's own
    std::uint64_t volume = 0;
    std::uint64_t file = 0;  // the file on that volume, whatever its name is
    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

// A file being written. Destroying it without Close closes it and ignores errors.
class IOutputFile {
  public:
    virtual ~IOutputFile() = default;
    // All of `bytes` or none: a write that breaks off (disk full, say) takes back what it has
    // written before it raises, so that a text written line by line ends with a whole line. As far
    // as the system allows: a process that is ended meanwhile may leave a part.
    virtual void Write(std::string_view bytes) = 0;
    // Returns after the bytes have reached the disk.
    virtual void Flush() = 0;
    virtual void Close() = 0;
};

// A new file that is to take another one's place. What happens to it happens to the open file,
// never to whatever bears its name: no other file can be slipped in.
class IReplacementFile : public IOutputFile {
  public:
    // Puts this file, written and flushed, in the place of `target` (which ResolveTarget gave) in
    // one step and closes it; both are on one volume. The target may be missing. What makes it the
    // user's file beyond its content stays: attributes, rights, time of creation and the like.
    // Answers the new target's stamp, nothing when another file stands there already. After an
    // error the file is open as before: 70 and 75 may pass when another program lets go of the
    // target.
    virtual std::optional<FileStamp> TakePlaceOf(std::wstring_view target) = 0;

    // Removes the file instead. A failure leaves it.
    virtual void Discard() noexcept = 0;
};

// An open file read at any place, shared with readers and writers; 64-bit offsets.
class IRandomReader {
  public:
    virtual ~IRandomReader() = default;

    // Length in bytes when the file was opened.
    virtual std::uint64_t Size() const = 0;

    // The `length` bytes at `offset`, valid until the next call on this object. They come from the
    // mapped file where mapping was possible, else they are read into the object's buffer. Bytes
    // beyond the end, a file that has shrunk or a drive that went away raise 57.
    virtual std::string_view Read(std::uint64_t offset, std::size_t length) = 0;

    // The open file as it is now, whatever its name has come to stand for; nothing when the system
    // cannot tell.
    virtual std::optional<FileStamp> Stamp() const noexcept = 0;
};

class IFileSystem {
  public:
    virtual ~IFileSystem() = default;

    // True when a directory search for `path` finds anything: a file or folder with any of the
    // usual attributes; a path with wildcards when something matches. Every error is false, and so
    // is the empty path.
    virtual bool Exists(std::wstring_view path) const noexcept = 0;

    // `path` as it stands whatever the current folder is; `path` itself where that cannot be said.
    virtual std::wstring Absolute(std::wstring_view path) const = 0;

    // The file that `path` leads to as it is now; nothing when there is none or on any error.
    virtual std::optional<FileStamp> Stamp(std::wstring_view path) const noexcept = 0;

    // All bytes of a file.
    virtual std::string ReadWhole(std::wstring_view path) = 0;

    // The path of the file that a writer of `path` means: where a link leads, made absolute. The
    // file may be missing; a read-only one, a folder, a device or a link that leads nowhere raises
    // 75.
    virtual std::wstring ResolveTarget(std::wstring_view path) = 0;

    // Creates a new file beside `target`, for which it is meant (empty for none); raises 75 when
    // anything has that name.
    virtual std::unique_ptr<IReplacementFile> CreateReplacement(std::wstring_view path,
                                                                std::wstring_view target) = 0;
    // A new file that is to keep its own name.
    std::unique_ptr<IReplacementFile> CreateNew(std::wstring_view path) {
        return CreateReplacement(path, {});
    }

    // Opens for appending, creating a missing file.
    virtual std::unique_ptr<IOutputFile> OpenAppend(std::wstring_view path) = 0;

    // Removes an ordinary file that has this name and no other. A link, a folder, a read-only file
    // and a file with further names raise 75 and stay, and so does one that is open (70).
    virtual void Delete(std::wstring_view path) = 0;

    virtual std::unique_ptr<IRandomReader> OpenShared(std::wstring_view path) = 0;

    // Opens the file with the identity of `stamp` once more that used to have the name `path` and
    // may have another by now; null when it cannot be found.
    virtual std::unique_ptr<IRandomReader> OpenRenamed(std::wstring_view /*path*/,
                                                       const FileStamp& /*stamp*/) {
        return nullptr;
    }
};

}  // namespace demovex
