// A file system that holds one file, made up as it is read if need be, and counts what is done.
//
//   OneFile files(bytes);
//   OneFile files(54 * std::uint64_t{10'000'000}, [](std::uint64_t offset, std::size_t length)
//   {...});
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "base/error.h"
#include "platform/files.h"

namespace demovex {

class OneFile final : public IFileSystem {
  public:
    using Maker = std::function<std::string(std::uint64_t offset, std::size_t length)>;

    OneFile(std::uint64_t length, Maker maker) : size(length), maker_(std::move(maker)) {}
    explicit OneFile(std::string bytes) : size(bytes.size()) {
        maker_ = [bytes = std::move(bytes)](std::uint64_t offset, std::size_t length) {
            return bytes.substr(static_cast<std::size_t>(offset), length);
        };
    }

    std::uint64_t size;
    bool exists = true;
    std::int32_t open_error = 0;    // raised by OpenShared when not 0
    std::int32_t read_error = 0;    // raised by Read when not 0
    bool open_memory_ends = false;  // OpenShared finds no memory
    int reads = 0;
    int open_files = 0;  // readers alive
    std::wstring opened_path;

    std::uint64_t written = 1;  // another value: the file was written to

    bool Exists(std::wstring_view) const noexcept override { return exists; }
    std::wstring Absolute(std::wstring_view path) const override { return std::wstring(path); }
    std::optional<FileStamp> Stamp(std::wstring_view) const noexcept override {
        return FileStamp{.length = size, .written = written, .volume = 1, .file = 1};
    }
    std::unique_ptr<IRandomReader> OpenShared(std::wstring_view path) override {
        if (open_error != 0) RaiseRuntimeError(open_error);
        if (open_memory_ends) throw std::bad_alloc();
        opened_path = path;
        return std::make_unique<Reader>(*this);
    }

    std::string ReadWhole(std::wstring_view) override { Refuse(); }
    std::wstring ResolveTarget(std::wstring_view) override { Refuse(); }
    std::unique_ptr<IReplacementFile> CreateReplacement(std::wstring_view,
                                                        std::wstring_view) override {
        Refuse();
    }
    std::unique_ptr<IOutputFile> OpenAppend(std::wstring_view) override { Refuse(); }
    void Delete(std::wstring_view) override { Refuse(); }

  private:
    [[noreturn]] static void Refuse() { RaiseRuntimeError(runtime_error::kPathFileAccessError); }

    class Reader final : public IRandomReader {
      public:
        explicit Reader(OneFile& file) : file_(file), size_(file.size) { ++file_.open_files; }
        ~Reader() override { --file_.open_files; }
        std::uint64_t Size() const override { return size_; }
        std::string_view Read(std::uint64_t offset, std::size_t length) override {
            ++file_.reads;
            if (file_.read_error != 0) RaiseRuntimeError(file_.read_error);
            if (offset > file_.size || length > file_.size - offset) {
                RaiseRuntimeError(runtime_error::kDeviceIoError);
            }
            // a block of its own each time, so that a view kept too long is caught
            buffer_ = std::make_unique<std::string>(file_.maker_(offset, length));
            return *buffer_;
        }
        std::optional<FileStamp> Stamp() const noexcept override { return file_.Stamp({}); }

      private:
        OneFile& file_;
        std::uint64_t size_;
        std::unique_ptr<std::string> buffer_;
    };

    Maker maker_;
};

}  // namespace demovex
