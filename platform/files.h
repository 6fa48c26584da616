// Files: the operations that saving, appending, reading and the article master are made of.
//
// Every failure is raised as the platform's run-time error (53 file not found, 57 device I/O error,
// 61 disk full, 70 permission denied or in use, 75 path/file access error, 76 path not found, ...).
// A _win implementation serves the component; the tests use a std one natively and wrap either in a
// decorator that makes chosen operations fail.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace demovex {

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
};

class IFileSystem {
  public:
    virtual ~IFileSystem() = default;

    // True when a directory search for `path` finds anything: a file or folder with any of the
    // usual attributes; a path with wildcards when something matches. Every error is false, and so
    // is the empty path.
    virtual bool Exists(std::wstring_view path) const noexcept = 0;

    // All bytes of a file.
    virtual std::string ReadWhole(std::wstring_view path) = 0;

    // Creates a new file; raises 75 when one exists.
    virtual std::unique_ptr<IOutputFile> CreateNew(std::wstring_view path) = 0;

    // Opens for appending, creating a missing file.
    virtual std::unique_ptr<IOutputFile> OpenAppend(std::wstring_view path) = 0;

    // Puts the closed file `replacement` in the place of `target` in one step; both are on one
    // volume. The target may be missing. Its attributes survive. A read-only target raises 75.
    virtual void Replace(std::wstring_view replacement, std::wstring_view target) = 0;

    virtual void Delete(std::wstring_view path) = 0;

    virtual std::unique_ptr<IRandomReader> OpenShared(std::wstring_view path) = 0;
};

}  // namespace demovex
