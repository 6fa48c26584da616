#include "platform/file_system_tools.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
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

    // `passes` tells the errors that may pass.
    template <typename Operation>
    auto Try(bool (*passes)(std::int32_t number), Operation&& operation) {
        while (true) {
            try {
                return operation();
            } catch (const Error& error) {
                if (!passes(error.number()) || Exhausted()) throw;
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

bool IsInUse(std::int32_t number) {
    return number == runtime_error::kPermissionDenied;
}

// A scanner that looks at the target, or a target that is about to be deleted, reads as missing
// rights, too. A read-only target has been refused before.
bool IsInUseOrRefused(std::int32_t number) {
    return IsInUse(number) || number == runtime_error::kPathFileAccessError;
}

constexpr std::size_t kTemporaryDigits = 7;

// The place of a temporary file for `path`, up to where its digits begin, and what follows them.
struct TemporaryForm {
    std::wstring begin;
    std::wstring_view end;
};

TemporaryForm FormOf(std::wstring_view path, std::wstring_view name,
                     std::wstring_view lower_case_name) {
    return {std::wstring(path.substr(0, path.size() - name.size())) + L'~',
            lower_case_name.ends_with(L".dvx") ? L".dvy" : L".dvx"};
}

// What follows the last separator; a drive without a backslash ("C:a.bsk") belongs to the folder,
// too.
std::wstring_view NameBehindFolder(std::wstring_view path) {
    const std::size_t separator = path.find_last_of(L"\\/:");
    return path.substr(separator == kNone ? 0 : separator + 1);
}

std::wstring WithDigits(TemporaryForm form, std::uint64_t number) {
    for (std::size_t digit = 0; digit < kTemporaryDigits; ++digit) {
        form.begin += L"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"[number % 36];
        number /= 36;
    }
    return form.begin += form.end;
}

std::wstring RandomTemporaryName(const ITextService& text, std::wstring_view path) {
    std::random_device random;
    const std::uint64_t number = (std::uint64_t{random()} << 32) | random();
    const std::wstring_view name = NameBehindFolder(path);
    return WithDigits(FormOf(path, name, text.LowerCase(name)), number);
}

// Whether nothing of an ended save stands under `path` any more.
bool IsCleared(IFileSystem& files, std::wstring_view path) {
    try {
        files.Delete(path);
        return true;
    } catch (const Error& error) {
        return error.number() == runtime_error::kFileNotFound;  // it went by itself
    }
}

// What an ended save has left under the usual name is removed. Anything else there (a folder, a
// link, the temporary file of a save that is still running) stays, and the name is another one.
std::unique_ptr<IReplacementFile> CreateTemporary(IFileSystem& files, const ITextService& text,
                                                  std::wstring_view target, Patience& patience) {
    const std::wstring usual = TemporaryName(text, target);
    for (bool cleared = false;; cleared = true) {
        try {
            return files.CreateReplacement(usual, target);
        } catch (const Error& error) {
            // what concerns more than a name, such as a missing folder
            if (!IsInUseOrRefused(error.number())) throw;
        }
        if (cleared || !IsCleared(files, usual)) break;
    }
    return patience.Try(&IsInUse, [&] {
        return files.CreateReplacement(RandomTemporaryName(text, target), target);
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

std::wstring ShownPath(std::wstring_view path, std::size_t limit) {
    constexpr std::wstring_view kGap = L" ... ";
    std::wstring shown;
    if (path.size() <= limit) {
        shown = path;
    } else {
        // more of the end than of the beginning: the file's name stands there
        std::size_t begin = (limit - kGap.size()) / 3;
        std::size_t end = path.size() - (limit - kGap.size() - begin);
        const auto is_second_half = [&](std::size_t at) {
            return (static_cast<std::uint32_t>(path[at]) & 0xFFFFFC00u) == 0xDC00u;
        };
        if (is_second_half(begin)) --begin;  // no character is cut in two
        if (is_second_half(end)) ++end;
        shown.append(path.substr(0, begin)).append(kGap).append(path.substr(end));
    }
    for (wchar_t& c : shown) {
        if (c < L' ' || c == 0x7F) c = L' ';
    }
    return shown;
}

std::wstring LoadFile(IFileSystem& files, const ITextService& text, std::wstring_view path,
                      std::wstring_view shown) {
    if (shown.empty()) shown = path;
    if (!FileExists(files, path)) {
        RaiseOwnError(L"LoadFile", L"File '" + ShownPath(shown) + L"' not found");
    }
    return text.FromAnsi(files.ReadWhole(path));
}

IRetryClock& SystemRetryClock() {
    static SystemClock clock;
    return clock;
}

std::wstring TemporaryName(const ITextService& text, std::wstring_view path) {
    const std::wstring_view given = NameBehindFolder(path);
    const std::wstring name = text.LowerCase(given);
    std::uint64_t hash = 14695981039346656037u;  // FNV-1a over the name's 16-bit units
    for (const wchar_t unit : name) {
        hash = (hash ^ static_cast<std::uint16_t>(unit)) * 1099511628211u;
    }
    return WithDigits(FormOf(path, given, name), hash);
}

std::optional<FileStamp> SaveFile(IFileSystem& files, const ITextService& text,
                                  std::wstring_view path, std::wstring_view content,
                                  const SaveOptions& options) {
    if (path.empty() || path.find_last_of(L"\\/:") == path.size() - 1) {
        RaiseRuntimeError(runtime_error::kPathFileAccessError);  // names no file
    }
    bool lossy = false;
    const std::string bytes = text.ToAnsi(content, &lossy);
    Patience patience(options.clock != nullptr ? *options.clock : SystemRetryClock());
    const std::wstring target = patience.Try(&IsInUse, [&] { return files.ResolveTarget(path); });
    const std::unique_ptr<IReplacementFile> file = CreateTemporary(files, text, target, patience);
    std::optional<FileStamp> stamp;
    try {
        WriteBlocks(*file, bytes, options);
        file->Flush();
        stamp = patience.Try(&IsInUseOrRefused, [&] { return file->TakePlaceOf(target); });
    } catch (...) {
        file->Discard();
        throw;
    }
    if (lossy && options.lossy != nullptr) *options.lossy = true;
    return stamp;
}

}  // namespace demovex
