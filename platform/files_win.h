// Files on the real disk.
//
// Errors are the system's, mapped as system_error_win.h lists them. Paths may be up to 32,000
// characters long; a NUL in a path raises 52. Files are opened so that other programs may read and,
// while a file is only read here, write them. No call ever shows a dialog of the system ("insert a
// disk").
#pragma once

#include "platform/files.h"

namespace demovex {

// How OpenShared reads; the defaults serve the component, tests narrow them.
struct SharedReadPolicy {
    bool map = true;  // false: every read is a seek and a read
    // Files up to this size are mapped whole, larger ones by windows. 0 stands for a third of the
    // address space that is free at the first read, so that the host always keeps the most of it.
    std::uint64_t whole_limit = 0;
};

class WinFileSystem : public IFileSystem {
  public:
    explicit WinFileSystem(SharedReadPolicy policy = {}) : policy_(policy) {}

    bool Exists(std::wstring_view path) const noexcept override;
    std::string ReadWhole(std::wstring_view path) override;

    // Other programs may read a file that is being written, not write it. A Write that fails takes
    // back what it has written, as far as the system allows.
    std::unique_ptr<IOutputFile> CreateNew(std::wstring_view path) override;
    std::unique_ptr<IOutputFile> OpenAppend(std::wstring_view path) override;

    // One rename over the target: at any moment the name stands for the old or the new file, also
    // when the process or the power ends. The target's attributes, creation time and access rights
    // are given to the replacement before. Raises 70 while another program has the target open.
    void Replace(std::wstring_view replacement, std::wstring_view target) override;
    void Delete(std::wstring_view path) override;

    std::unique_ptr<IRandomReader> OpenShared(std::wstring_view path) override;

  private:
    SharedReadPolicy policy_;
};

}  // namespace demovex
