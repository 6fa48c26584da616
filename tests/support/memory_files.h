// A disk in memory for tests: Windows' rules for open and read-only files, every operation counted,
// and chosen operations failing with chosen errors.
//
//   MemoryFiles files;
//   files.AddFolder(L"C:\\B");
//   files.Put(L"C:\\B\\a.bsk", "old");
//   files.FailAt(3, 61);          // the third operation from now on fails once with "disk full"
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"
#include "platform/files.h"

namespace demovex {

class MemoryFiles final : public IFileSystem {
  public:
    struct File {
        std::string bytes;
        bool read_only = false;
        bool hidden = false;
        int open = 0;
        std::uint64_t id = 0;
        std::uint64_t written = 0;  // a number that grows with every write
    };

    // --- what tests set up and look at
    void AddFolder(std::wstring path) { folders_.insert(std::move(path)); }
    // Writes into the file of that name, a new one if need be.
    void Put(const std::wstring& path, std::string bytes) {
        File& file = Named(path);
        file.bytes = std::move(bytes);
        file.written = ++clock_;
    }
    // The path of the file that was written to last.
    std::wstring Newest() const {
        return std::ranges::max_element(files_, {}, [](const auto& f) { return f.second.written; })
            ->first;
    }
    void Rename(const std::wstring& from, const std::wstring& to) {
        files_[to] = files_.at(from);
        files_.erase(from);
    }
    // Called before every read of a shared file.
    std::function<void()> before_read;
    void Remove(const std::wstring& path) { files_.erase(path); }
    // `path` leads to `target` from now on.
    void Link(std::wstring path, std::wstring target) {
        links_[std::move(path)] = std::move(target);
    }
    // What relative paths are relative to.
    std::wstring current_folder = L"C:\\B";
    // Called before every operation with its name, as if another program did something then.
    std::function<void(std::string_view operation)> before;
    File& At(const std::wstring& path) { return files_.at(path); }
    bool Has(const std::wstring& path) const { return files_.contains(path); }
    std::size_t FileCount() const { return files_.size(); }
    const std::vector<std::string>& Operations() const { return operations_; }
    void ClearOperations() { operations_.clear(); }

    // Operation `n` (1-based, counted from now) raises `number`, and so do the `times` - 1
    // operations after it. A failing write leaves half of its bytes behind, as a full disk does.
    void FailAt(std::size_t n, std::int32_t number, std::size_t times = 1) {
        countdown_ = n;
        fail_number_ = number;
        fail_times_ = times;
    }
    void FailNever() { countdown_ = 0; }
    // True when a failure that was asked for has not happened.
    bool FailurePending() const { return countdown_ != 0; }
    // Every operation on `path` raises 70 while the callback says so.
    void HoldOpen(std::wstring path, std::function<bool()> held) {
        held_path_ = std::move(path);
        held_ = std::move(held);
    }

    // --- IFileSystem
    bool Exists(std::wstring_view path) const noexcept override {
        return files_.contains(std::wstring(path)) || folders_.contains(std::wstring(path));
    }

    std::wstring Absolute(std::wstring_view path) const override {
        if (path.empty() || path.find(L':') != std::wstring_view::npos) return std::wstring(path);
        return current_folder + L"\\" + std::wstring(path);
    }

    std::optional<FileStamp> Stamp(std::wstring_view path) const noexcept override {
        const auto file = files_.find(std::wstring(path));
        if (file == files_.end()) return std::nullopt;
        return StampOf(file->second);
    }

    std::wstring ResolveTarget(std::wstring_view path) override {
        Step("ResolveTarget", path);
        const std::wstring full = Absolute(path);
        const auto link = links_.find(full);
        const std::wstring target = link == links_.end() ? full : link->second;
        const auto file = files_.find(target);
        if (folders_.contains(target) || (file != files_.end() && file->second.read_only)) {
            RaiseRuntimeError(75);
        }
        return target;
    }

    std::string ReadWhole(std::wstring_view path) override {
        Step("ReadWhole", path);
        const auto file = files_.find(std::wstring(path));
        if (file == files_.end()) RaiseRuntimeError(Exists(path) ? 75 : 53);
        return file->second.bytes;
    }

    std::unique_ptr<IReplacementFile> CreateReplacement(std::wstring_view path,
                                                        std::wstring_view) override {
        Step("CreateReplacement", path);
        NeedFolder(path);
        if (Exists(path)) RaiseRuntimeError(75);
        return std::make_unique<Output>(*this, std::wstring(path));
    }

    std::unique_ptr<IOutputFile> OpenAppend(std::wstring_view path) override {
        Step("OpenAppend", path);
        NeedFolder(path);
        const auto file = files_.find(std::wstring(path));
        if (file != files_.end() && file->second.read_only) RaiseRuntimeError(75);
        return std::make_unique<Output>(*this, std::wstring(path));
    }

    void Delete(std::wstring_view path) override {
        Step("Delete", path);
        const auto file = files_.find(std::wstring(path));
        if (file == files_.end()) RaiseRuntimeError(Exists(path) ? 75 : 53);
        if (file->second.read_only) RaiseRuntimeError(75);
        if (file->second.open != 0) RaiseRuntimeError(70);
        files_.erase(file);
    }

    std::unique_ptr<IRandomReader> OpenShared(std::wstring_view path) override {
        Step("OpenShared", path);
        if (!files_.contains(std::wstring(path))) RaiseRuntimeError(Exists(path) ? 75 : 53);
        return std::make_unique<Reader>(*this, std::wstring(path));
    }

    std::unique_ptr<IRandomReader> OpenRenamed(std::wstring_view, const FileStamp& stamp) override {
        for (const auto& [path, file] : files_) {
            if (StampOf(file) == stamp) return std::make_unique<Reader>(*this, path);
        }
        return nullptr;
    }

  private:
    class Output final : public IReplacementFile {
      public:
        Output(MemoryFiles& files, std::wstring path) : files_(files), path_(std::move(path)) {
            ++files_.Named(path_).open;
        }
        ~Output() override { Release(); }
        void Write(std::string_view bytes) override {
            try {
                files_.Step("Write", path_);
            } catch (...) {
                Add(bytes.substr(0, bytes.size() / 2));
                throw;
            }
            Add(bytes);
        }
        void Flush() override { files_.Step("Flush", path_); }
        void Close() override {
            files_.Step("Close", path_);
            Release();
        }
        std::optional<FileStamp> TakePlaceOf(std::wstring_view target) override {
            files_.Step("TakePlaceOf", target);
            files_.NeedFolder(target);
            const std::wstring name(target);
            if (files_.folders_.contains(name)) RaiseRuntimeError(75);
            const auto to = files_.files_.find(name);
            if (to != files_.files_.end() && to->second.read_only) RaiseRuntimeError(75);
            if (to != files_.files_.end() && to->second.open != 0) RaiseRuntimeError(70);
            Release();
            File moved = files_.files_.at(path_);
            if (to != files_.files_.end()) moved.hidden = to->second.hidden;
            files_.files_.erase(path_);
            files_.files_[name] = moved;
            return files_.StampOf(moved);
        }
        void Discard() noexcept override {
            Release();
            files_.files_.erase(path_);
        }

      private:
        void Add(std::string_view bytes) {
            files_.Named(path_).bytes += bytes;
            files_.Named(path_).written = ++files_.clock_;
        }
        void Release() {
            if (open_) --files_.Named(path_).open;
            open_ = false;
        }
        MemoryFiles& files_;
        std::wstring path_;
        bool open_ = true;
    };

    class Reader final : public IRandomReader {
      public:
        Reader(MemoryFiles& files, std::wstring path)
            : files_(files), path_(std::move(path)), size_(files_.files_[path_].bytes.size()) {
            ++files_.files_[path_].open;
        }
        ~Reader() override { --files_.files_[path_].open; }
        std::uint64_t Size() const override { return size_; }
        std::string_view Read(std::uint64_t offset, std::size_t length) override {
            if (files_.before_read) files_.before_read();
            const std::string_view bytes = files_.files_[path_].bytes;
            if (offset > bytes.size() || bytes.size() - offset < length) RaiseRuntimeError(57);
            return bytes.substr(static_cast<std::size_t>(offset), length);
        }
        std::optional<FileStamp> Stamp() const noexcept override { return files_.Stamp(path_); }

      private:
        MemoryFiles& files_;
        std::wstring path_;
        std::uint64_t size_;
    };

    File& Named(const std::wstring& path) {
        File& file = files_[path];
        if (file.id == 0) file.id = ++clock_;
        return file;
    }
    static FileStamp StampOf(const File& file) noexcept {
        return {.length = file.bytes.size(), .written = file.written, .volume = 1, .file = file.id};
    }

    void Step(std::string operation, std::wstring_view path) {
        operations_.push_back(std::move(operation));
        if (before) before(operations_.back());
        if (held_ && path == held_path_ && held_()) RaiseRuntimeError(70);
        if (countdown_ == 0) return;
        if (countdown_ > 1) {
            --countdown_;
            return;
        }
        if (--fail_times_ == 0) countdown_ = 0;
        RaiseRuntimeError(fail_number_);
    }

    void NeedFolder(std::wstring_view path) const {
        const std::size_t separator = path.find_last_of(L"\\/");
        if (separator == std::wstring_view::npos) return;  // the current folder
        if (!folders_.contains(std::wstring(path.substr(0, separator)))) RaiseRuntimeError(76);
    }

    std::map<std::wstring, File> files_;
    std::set<std::wstring> folders_;
    std::map<std::wstring, std::wstring> links_;
    std::uint64_t clock_ = 0;
    std::vector<std::string> operations_;
    std::size_t countdown_ = 0;
    std::int32_t fail_number_ = 0;
    std::size_t fail_times_ = 0;
    std::wstring held_path_;
    std::function<bool()> held_;
};

}  // namespace demovex
