// A file system that wraps another one and makes chosen operations fail, or "kills the program"
// there. Every operation that may raise counts one, in the order in which it is called: ReadWhole,
// ResolveTarget, CreateReplacement, OpenAppend, Delete, OpenShared; Write, Flush, Close and
// TakePlaceOf of a written file; Read of a shared one. (What cannot raise does not count.)
//
//   FaultyFileSystem files(std_files);
//   Save(files);                          // a dry run tells how many points there are
//   for (int n = 1; n <= points; ++n) {
//       FaultyFileSystem files(std_files);
//       files.FailAt(n, runtime_error::kDiskFull);   // or files.KillAt(n)
//       EXPECT_THROW(Save(files), Error);            // or Killed
//   }
#pragma once

#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/error.h"
#include "platform/files.h"

namespace demovex {

// Thrown where the program "dies": deliberately no Error and no std::exception, so that no handler
// for errors takes it for one. From then on every operation throws it and changes nothing.
struct Killed {
    int at_operation;
};

enum class FileOperation {
    kReadWhole,
    kResolveTarget,
    kCreateReplacement,
    kOpenAppend,
    kTakePlaceOf,
    kDelete,
    kOpenShared,
    kWrite,
    kFlush,
    kClose,
    kRead
};

class FaultyFileSystem : public IFileSystem {
  public:
    explicit FaultyFileSystem(IFileSystem& inner) : inner_(inner) {}

    // Operation `n` (1-based) and the `count` - 1 after it raise the run-time error and change
    // nothing.
    void FailAt(int n, std::int32_t error, int count = 1) {
        fail_from_ = n;
        fail_to_ = count < std::numeric_limits<int>::max() - n ? n + count
                                                               : std::numeric_limits<int>::max();
        error_ = error;
    }
    // The program ends instead of operation `n` (a Write has written half of its bytes).
    void KillAt(int n) { kill_at_ = n; }

    int count() const { return static_cast<int>(log_.size()); }
    bool killed() const { return killed_; }
    // What was called, in order; failed ones included.
    const std::vector<FileOperation>& log() const { return log_; }

    bool Exists(std::wstring_view path) const noexcept override { return inner_.Exists(path); }

    std::wstring Absolute(std::wstring_view path) const override { return inner_.Absolute(path); }
    std::optional<FileStamp> Stamp(std::wstring_view path) const noexcept override {
        return inner_.Stamp(path);
    }
    std::string ReadWhole(std::wstring_view path) override {
        Step(FileOperation::kReadWhole);
        return inner_.ReadWhole(path);
    }
    std::wstring ResolveTarget(std::wstring_view path) override {
        Step(FileOperation::kResolveTarget);
        return inner_.ResolveTarget(path);
    }
    std::unique_ptr<IReplacementFile> CreateReplacement(std::wstring_view path,
                                                        std::wstring_view target) override {
        Step(FileOperation::kCreateReplacement);
        return std::make_unique<ReplacementFile>(*this, inner_.CreateReplacement(path, target));
    }
    std::unique_ptr<IOutputFile> OpenAppend(std::wstring_view path) override {
        Step(FileOperation::kOpenAppend);
        return std::make_unique<OutputFile>(*this, inner_.OpenAppend(path));
    }
    void Delete(std::wstring_view path) override {
        Step(FileOperation::kDelete);
        inner_.Delete(path);
    }
    std::unique_ptr<IRandomReader> OpenShared(std::wstring_view path) override {
        Step(FileOperation::kOpenShared);
        return std::make_unique<Reader>(*this, inner_.OpenShared(path));
    }

  private:
    void WriteTo(IOutputFile& file, std::string_view bytes) {
        try {
            Step(FileOperation::kWrite);
        } catch (...) {
            // a program that ends while it writes leaves a part behind
            if (torn_) file.Write(bytes.substr(0, bytes.size() / 2));
            torn_ = false;
            throw;
        }
        file.Write(bytes);
    }

    class OutputFile : public IOutputFile {
      public:
        OutputFile(FaultyFileSystem& owner, std::unique_ptr<IOutputFile> file)
            : owner_(owner), file_(std::move(file)) {}
        void Write(std::string_view bytes) override { owner_.WriteTo(*file_, bytes); }
        void Flush() override {
            owner_.Step(FileOperation::kFlush);
            file_->Flush();
        }
        void Close() override {
            owner_.Step(FileOperation::kClose);
            file_->Close();
        }

      private:
        FaultyFileSystem& owner_;
        std::unique_ptr<IOutputFile> file_;
    };

    class ReplacementFile : public IReplacementFile {
      public:
        ReplacementFile(FaultyFileSystem& owner, std::unique_ptr<IReplacementFile> file)
            : owner_(owner), file_(std::move(file)) {}
        void Write(std::string_view bytes) override { owner_.WriteTo(*file_, bytes); }
        void Flush() override {
            owner_.Step(FileOperation::kFlush);
            file_->Flush();
        }
        void Close() override {
            owner_.Step(FileOperation::kClose);
            file_->Close();
        }
        std::optional<FileStamp> TakePlaceOf(std::wstring_view target) override {
            owner_.Step(FileOperation::kTakePlaceOf);
            return file_->TakePlaceOf(target);
        }
        void Discard() noexcept override {
            if (!owner_.killed_) file_->Discard();
        }

      private:
        FaultyFileSystem& owner_;
        std::unique_ptr<IReplacementFile> file_;
    };

    class Reader : public IRandomReader {
      public:
        Reader(FaultyFileSystem& owner, std::unique_ptr<IRandomReader> reader)
            : owner_(owner), reader_(std::move(reader)) {}
        std::uint64_t Size() const override { return reader_->Size(); }
        std::string_view Read(std::uint64_t offset, std::size_t length) override {
            owner_.Step(FileOperation::kRead);
            return reader_->Read(offset, length);
        }
        std::optional<FileStamp> Stamp() const noexcept override { return reader_->Stamp(); }

      private:
        FaultyFileSystem& owner_;
        std::unique_ptr<IRandomReader> reader_;
    };

    void Step(FileOperation operation) {
        if (killed_) throw Killed{count()};
        log_.push_back(operation);
        if (count() == kill_at_) {
            killed_ = true;
            torn_ = operation == FileOperation::kWrite;
            throw Killed{count()};
        }
        if (count() >= fail_from_ && count() < fail_to_) {
            RaiseRuntimeError(error_);
        }
    }

    IFileSystem& inner_;
    std::vector<FileOperation> log_;
    int fail_from_ = std::numeric_limits<int>::max();
    int fail_to_ = 0;
    int kill_at_ = 0;
    std::int32_t error_ = 0;
    bool killed_ = false;
    bool torn_ = false;
};

}  // namespace demovex
