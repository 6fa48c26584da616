// The file system for native tests, on the C++ library. Files are where the path says; a backslash
// in a path also separates folders. Attributes are reduced to "read-only" (no write permission of
// the owner, honoured also for a superuser). Also works as a Windows program.
#pragma once

#ifndef _WIN32
#include <sys/stat.h>
#endif

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include "base/error.h"
#include "platform/files.h"
#include "tests/support/native_path.h"

namespace demovex {

class StdFileSystem : public IFileSystem {
  public:
    using Path = std::filesystem::path;

    static bool IsReadOnly(const Path& path) {
        std::error_code error;
        const auto status = std::filesystem::status(path, error);
        return std::filesystem::exists(status) &&
               (status.permissions() & std::filesystem::perms::owner_write) ==
                   std::filesystem::perms::none;
    }

    bool Exists(std::wstring_view path) const noexcept override {
        try {
            if (path.empty()) return false;
            const Path p = ToNativePath(path);
            if (path.find_first_of(L"*?") == std::wstring_view::npos) {
                return std::filesystem::exists(p);
            }
            const Path folder = p.has_parent_path() ? p.parent_path() : Path(".");
            for (const auto& entry : std::filesystem::directory_iterator(folder)) {
                if (Matches(FromNativePath(p.filename()), FromNativePath(entry.path().filename())))
                    return true;
            }
            return false;
        } catch (...) {
            return false;
        }
    }

    std::string ReadWhole(std::wstring_view path) override {
        const Path p = ToNativePath(path);
        RequireFile(p);
        std::ifstream in(p, std::ios::binary);
        if (!in) RaiseRuntimeError(runtime_error::kPathFileAccessError);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }

    std::wstring Absolute(std::wstring_view path) const override {
        // a drive's path stands for itself on every system
        if (path.empty() || path.find(L':') != std::wstring_view::npos) return std::wstring(path);
        std::error_code error;
        const Path full = std::filesystem::absolute(ToNativePath(path), error);
        return error ? std::wstring(path) : FromNativePath(full);
    }

    std::optional<FileStamp> Stamp(std::wstring_view path) const noexcept override {
        try {
            return StampOf(ToNativePath(path));
        } catch (...) {
            return std::nullopt;
        }
    }

    std::wstring ResolveTarget(std::wstring_view path) override {
        const Path p = ToNativePath(path);
        std::error_code error;
        if (IsReadOnly(p) || std::filesystem::is_directory(p, error)) {
            RaiseRuntimeError(runtime_error::kPathFileAccessError);
        }
        const Path target = std::filesystem::canonical(p, error);
        return error ? Absolute(path) : FromNativePath(target);
    }

    std::unique_ptr<IReplacementFile> CreateReplacement(std::wstring_view path,
                                                        std::wstring_view) override {
        const Path p = ToNativePath(path);
        RequireFolderOf(p);
        std::error_code error;
        if (std::filesystem::exists(p, error)) {
            RaiseRuntimeError(runtime_error::kPathFileAccessError);
        }
        return std::make_unique<OutputFile>(p, "wb");
    }

    std::unique_ptr<IOutputFile> OpenAppend(std::wstring_view path) override {
        const Path p = ToNativePath(path);
        RequireFolderOf(p);
        if (IsReadOnly(p)) RaiseRuntimeError(runtime_error::kPathFileAccessError);
        return std::make_unique<OutputFile>(p, "ab");
    }

    void Delete(std::wstring_view path) override {
        const Path p = ToNativePath(path);
        RequireFile(p);
        if (IsReadOnly(p) || std::filesystem::is_symlink(p) ||
            std::filesystem::hard_link_count(p) > 1) {
            RaiseRuntimeError(runtime_error::kPathFileAccessError);
        }
        std::error_code error;
        std::filesystem::remove(p, error);
        if (error) RaiseFrom(error.value());
    }

    std::unique_ptr<IRandomReader> OpenShared(std::wstring_view path) override {
        const Path p = ToNativePath(path);
        RequireFile(p);
        return std::make_unique<Reader>(p);
    }

  private:
    [[noreturn]] static void RaiseFrom(int code) {
        RaiseRuntimeError(code == ENOSPC    ? runtime_error::kDiskFull
                          : code == ENOENT  ? runtime_error::kFileNotFound
                          : code == ENOTDIR ? runtime_error::kPathNotFound
                          : code == EIO     ? runtime_error::kDeviceIoError
                                            : runtime_error::kPathFileAccessError);
    }

    static void RequireFolderOf(const Path& path) {
        std::error_code error;
        if (path.has_parent_path() && !std::filesystem::is_directory(path.parent_path(), error)) {
            RaiseRuntimeError(runtime_error::kPathNotFound);
        }
    }

    static void RequireFile(const Path& path) {
        RequireFolderOf(path);
        std::error_code error;
        if (path.empty() || !std::filesystem::exists(path, error)) {
            RaiseRuntimeError(runtime_error::kFileNotFound);
        }
        if (std::filesystem::is_directory(path, error)) {
            RaiseRuntimeError(runtime_error::kPathFileAccessError);
        }
    }

    static bool Matches(std::wstring_view pattern, std::wstring_view name) {
        if (pattern.empty()) return name.empty();
        if (pattern[0] == L'*') {
            return Matches(pattern.substr(1), name) ||
                   (!name.empty() && Matches(pattern, name.substr(1)));
        }
        return !name.empty() && (pattern[0] == L'?' || pattern[0] == name[0]) &&
               Matches(pattern.substr(1), name.substr(1));
    }

    static std::optional<FileStamp> StampOf(const Path& path) {
        if (!std::filesystem::is_regular_file(path)) return std::nullopt;
        FileStamp stamp{.length = std::filesystem::file_size(path)};
        stamp.written = static_cast<std::uint64_t>(
            std::filesystem::last_write_time(path).time_since_epoch().count());
#ifndef _WIN32
        struct stat status = {};
        if (stat(path.c_str(), &status) != 0) return std::nullopt;
        stamp.volume = status.st_dev;
        stamp.file = status.st_ino;
#endif
        return stamp;
    }

    class OutputFile : public IReplacementFile {
      public:
        OutputFile(const Path& path, const char* mode) : path_(path), file_(Open(path, mode)) {
            if (!file_) RaiseFrom(errno);
        }
        ~OutputFile() override {
            if (file_) std::fclose(file_);
        }
        OutputFile(const OutputFile&) = delete;
        OutputFile& operator=(const OutputFile&) = delete;

        void Write(std::string_view bytes) override {
            if (std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size()) RaiseFrom(errno);
        }
        void Flush() override {
            if (std::fflush(file_) != 0) RaiseFrom(errno);
        }
        void Close() override {
            std::FILE* file = file_;
            file_ = nullptr;
            if (file && std::fclose(file) != 0) RaiseFrom(errno);
        }
        std::optional<FileStamp> TakePlaceOf(std::wstring_view target) override {
            const Path to = ToNativePath(target);
            RequireFolderOf(to);
            if (IsReadOnly(to) || std::filesystem::is_directory(to)) {
                RaiseRuntimeError(runtime_error::kPathFileAccessError);
            }
            Close();
            std::error_code error;
            if (std::filesystem::exists(to)) {
                std::filesystem::permissions(path_, std::filesystem::status(to).permissions(),
                                             error);
            }
            std::filesystem::rename(path_, to, error);
            if (error) RaiseFrom(error.value());
            return StampOf(to);
        }
        void Discard() noexcept override {
            if (file_) std::fclose(file_);
            file_ = nullptr;
            std::error_code ignored;
            std::filesystem::remove(path_, ignored);
        }

      private:
        static std::FILE* Open(const Path& path, const char* mode) {
#ifdef _WIN32
            return _wfopen(path.c_str(), std::wstring(mode, mode + 2).c_str());
#else
            return std::fopen(path.c_str(), mode);
#endif
        }
        Path path_;
        std::FILE* file_;
    };

    class Reader : public IRandomReader {
      public:
        explicit Reader(const Path& path)
            : path_(path), in_(path, std::ios::binary), size_(std::filesystem::file_size(path)) {
            if (!in_) RaiseRuntimeError(runtime_error::kPathFileAccessError);
        }
        std::uint64_t Size() const override { return size_; }
        std::optional<FileStamp> Stamp() const noexcept override {
            try {
                return StampOf(path_);
            } catch (...) {
                return std::nullopt;
            }
        }
        std::string_view Read(std::uint64_t offset, std::size_t length) override {
            buffer_.resize(length);
            in_.clear();
            in_.seekg(static_cast<std::streamoff>(offset));
            in_.read(buffer_.data(), static_cast<std::streamsize>(length));
            if (static_cast<std::size_t>(in_.gcount()) != length) {
                RaiseRuntimeError(runtime_error::kDeviceIoError);
            }
            return buffer_;
        }

      private:
        Path path_;
        std::ifstream in_;
        std::uint64_t size_;
        std::string buffer_;
    };
};

}  // namespace demovex
