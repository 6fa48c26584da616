// Paths as the system's file functions take them.
#pragma once

#include <string>
#include <string_view>

namespace demovex {

// `path` itself while it is short; a long one made absolute and given the prefix that lifts the
// system's limit of 260 characters. Raises 52 for a path with a NUL, 75 for one longer than the
// system's last limit (32,767 characters with the prefix).
std::wstring SystemPath(std::wstring_view path);

// Keeps the system from showing its own dialogs about missing media while it lives.
class NoSystemDialogs {
  public:
    NoSystemDialogs() noexcept;
    ~NoSystemDialogs();
    NoSystemDialogs(const NoSystemDialogs&) = delete;
    NoSystemDialogs& operator=(const NoSystemDialogs&) = delete;

  private:
    unsigned long before_ = 0;
    bool set_ = false;
};

}  // namespace demovex
