// A new empty folder that is removed with everything in it at the end of its life.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include "tests/support/native_path.h"

namespace demovex {

class TempFolder {
  public:
    TempFolder() {
        std::random_device random;
        do {
            path_ = std::filesystem::temp_directory_path() /
                    ("demovex-" + std::to_string(random()) + "-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(path_));
    }
    ~TempFolder() {
        std::error_code ignored;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(path_, ignored)) {
            std::filesystem::permissions(entry.path(), std::filesystem::perms::owner_all,
                                         std::filesystem::perm_options::add, ignored);
        }
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    // The full path of `name` in the folder, as the component takes it.
    std::wstring operator/(std::wstring_view name) const {
        return FromNativePath(path_ / ToNativePath(name));
    }

    // Puts a file there, and tells a file's bytes ("<missing>" when there is none).
    std::wstring Put(std::wstring_view name, std::string_view bytes) const {
        std::ofstream out(ToNativePath(*this / name), std::ios::binary);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return *this / name;
    }
    std::string Get(std::wstring_view name) const {
        std::ifstream in(ToNativePath(*this / name), std::ios::binary);
        if (!in) return "<missing>";
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    // Number of entries in the folder.
    int Count() const {
        const std::filesystem::directory_iterator entries(path_);
        return static_cast<int>(std::distance(begin(entries), end(entries)));
    }
    void SetReadOnly(std::wstring_view name, bool read_only) const {
        std::filesystem::permissions(
            ToNativePath(*this / name),
            std::filesystem::perms::owner_write | std::filesystem::perms::group_write |
                std::filesystem::perms::others_write,
            read_only ? std::filesystem::perm_options::remove : std::filesystem::perm_options::add);
    }

  private:
    std::filesystem::path path_;
};

}  // namespace demovex
