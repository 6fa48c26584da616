#include "platform/file_system_tools.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <thread>
#include <utility>

#include "base/error.h"

namespace demovex {
namespace {

constexpr std::size_t kNone = std::wstring_view::npos;

class SystemClock final : public IRetryClock {
  public:
    std::chrono::milliseconds Now() override {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now().time_since_epoch());
    }
    void Wait(std::chrono::milliseconds duration) override {
        std::this_thread::sleep_for(duration);
    }
};

// Repeats operations that meet a file in use; one allowance of time for a whole save.
class Patience {
  public:
    explicit Patience(IRetryClock& clock) : clock_(clock) {}

    template <typename Operation>
    auto Try(Operation&& operation) {
        while (true) {
            try {
                return operation();
            } catch (const Error& error) {
                if (error.number() != runtime_error::kPermissionDenied || Exhausted()) throw;
            }
            clock_.Wait(kSaveRetryPause);
        }
    }

  private:
    bool Exhausted() {
        const auto now = clock_.Now();
        if (!started_) {
            started_ = true;
            first_ = now;
        }
        return now - first_ >= kSaveRetryTime;
    }

    IRetryClock& clock_;
    bool started_ = false;
    std::chrono::milliseconds first_{};
};

void DeleteQuietly(IFileSystem& files, std::wstring_view path) noexcept {
    try {
        files.Delete(path);
    } catch (...) {  // the save's own error is the one to tell; a later save removes the file
    }
}

// Removes what an ended save has left and creates the file again. A refusal counts as "in use":
// a save that is still running holds its own temporary open, and a file that a scanner looks at
// while it is deleted goes only when the scanner lets go.
std::unique_ptr<IOutputFile> RecreateTemporary(IFileSystem& files, std::wstring_view temporary) {
    try {
        try {
            files.Delete(temporary);
        } catch (const Error& error) {
            if (error.number() != runtime_error::kFileNotFound) throw;  // else it went by itself
        }
        return files.CreateNew(temporary);
    } catch (const Error& error) {
        if (error.number() != runtime_error::kPathFileAccessError) throw;
        RaiseRuntimeError(runtime_error::kPermissionDenied);
    }
}

std::unique_ptr<IOutputFile> CreateTemporary(IFileSystem& files, std::wstring_view temporary,
                                             Patience& patience) {
    return patience.Try([&] {
        try {
            return files.CreateNew(temporary);
        } catch (const Error& error) {
            if (error.number() != runtime_error::kPathFileAccessError || !files.Exists(temporary)) {
                throw;
            }
        }
        return RecreateTemporary(files, temporary);
    });
}

void WriteBlocks(IOutputFile& file, std::string_view bytes, const SaveOptions& options) {
    for (std::size_t at = 0; at < bytes.size(); at += kSaveBlock) {
        const std::string_view block = bytes.substr(at, kSaveBlock);
        file.Write(block);
        if (options.progress) {
            options.progress(static_cast<double>(at + block.size()) /
                             static_cast<double>(bytes.size()));
        }
    }
}

}  // namespace

bool FileExists(const IFileSystem& files, std::wstring_view path) noexcept {
    return !path.empty() && files.Exists(path);
}

std::wstring GetFileName(std::wstring_view path) {
    const std::size_t separator = path.find_last_of(L"\\/");
    return std::wstring(separator == kNone ? path : path.substr(separator + 1));
}

std::wstring GetFolderName(std::wstring_view path) {
    const std::size_t separator = path.find_last_of(L"\\/");
    return std::wstring(separator == kNone ? std::wstring_view() : path.substr(0, separator));
}

std::wstring LoadFile(IFileSystem& files, const ITextService& text, std::wstring_view path) {
    if (!FileExists(files, path)) {
        RaiseOwnError(L"LoadFile", L"File '" + std::wstring(path) + L"' not found");
    }
    return text.FromAnsi(files.ReadWhole(path));
}

IRetryClock& SystemRetryClock() {
    static SystemClock clock;
    return clock;
}

std::wstring TemporaryName(const ITextService& text, std::wstring_view path) {
    // a drive without a backslash ("C:a.bsk") belongs to the folder, too
    const std::size_t separator = path.find_last_of(L"\\/:");
    const std::size_t begin = separator == kNone ? 0 : separator + 1;
    const std::wstring name = text.LowerCase(path.substr(begin));

    std::uint64_t hash = 14695981039346656037u;  // FNV-1a over the name's 16-bit units
    for (const wchar_t unit : name) {
        hash = (hash ^ static_cast<std::uint16_t>(unit)) * 1099511628211u;
    }
    std::wstring temporary(path.substr(0, begin));
    temporary += L'~';
    for (int digit = 0; digit < 7; ++digit) {
        temporary += L"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"[hash % 36];
        hash /= 36;
    }
    temporary += name.ends_with(L".dvx") ? L".dvy" : L".dvx";
    return temporary;
}

void SaveFile(IFileSystem& files, const ITextService& text, std::wstring_view path,
              std::wstring_view content, const SaveOptions& options) {
    if (path.empty() || path.find_last_of(L"\\/:") == path.size() - 1) {
        RaiseRuntimeError(runtime_error::kPathFileAccessError);  // names no file
    }
    bool lossy = false;
    const std::string bytes = text.ToAnsi(content, &lossy);
    const std::wstring temporary = TemporaryName(text, path);
    Patience patience(options.clock != nullptr ? *options.clock : SystemRetryClock());

    std::unique_ptr<IOutputFile> file = CreateTemporary(files, temporary, patience);
    try {
        WriteBlocks(*file, bytes, options);
        file->Flush();
        file->Close();
        file.reset();
        patience.Try([&] { files.Replace(temporary, path); });
    } catch (...) {
        file.reset();  // an open file could not be removed
        DeleteQuietly(files, temporary);
        throw;
    }
    if (lossy && options.lossy != nullptr) *options.lossy = true;
}

}  // namespace demovex
