// Opening addresses and documents with the program that the user has chosen for them.
#pragma once

#include <string_view>

namespace demovex {

class IShell {
  public:
    virtual ~IShell() = default;

    // Carries out the verb "open" on `address` (a web address or a file path) with the basket
    // window as owner; the result is the system's code: 32 or less means failure.
    virtual int Open(std::wstring_view address) = 0;
};

}  // namespace demovex
