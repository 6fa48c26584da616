// Files on the real disk.
//
// Errors are the system's, mapped as system_error_win.h lists them. Paths may be up to 32,000
// characters long; a NUL in a path raises 52. Files are opened so that other programs may read and,
// while a file is only read here, write them. No call ever shows a dialog of the system ("insert a
// disk"). Devices and pipes are refused, and whoever stands behind a path learns who opens it but
// cannot act in the user's name.
#pragma once

#include "platform/files.h"

namespace demovex {

// How OpenShared reads; the defaults serve the component, tests narrow them.
struct SharedReadPolicy {
    bool map = true;  // false: every read is a seek and a read
    // Reads that are made so before anything is mapped: a few look-ups need no map, and what is
    // mapped keeps other programs from writing a new file into the old one.
    int reads_before_mapping = 64;
    // Files up to this size are mapped whole, larger ones by windows. 0 stands for a third of the
    // address space that is free at the first read, so that the host always keeps the most of it.
    std::uint64_t whole_limit = 0;
};

class WinFileSystem : public IFileSystem {
  public:
    explicit WinFileSystem(SharedReadPolicy policy = {}) : policy_(policy) {}

    bool Exists(std::wstring_view path) const noexcept override;
    std::wstring Absolute(std::wstring_view path) const override;
    std::optional<FileStamp> Stamp(std::wstring_view path) const noexcept override;
    std::string ReadWhole(std::wstring_view path) override;

    std::wstring ResolveTarget(std::wstring_view path) override;
    // The new file is held open from its creation until it has its final name: other programs may
    // read it, not write, rename or delete it. It is renamed over the target in one step: at any
    // moment the name stands for the old or the new file, also when the process or the power ends.
    // A Write that fails takes back what it has written, as far as the system allows. TakePlaceOf
    // raises 70 while another program has the target open.
    std::unique_ptr<IReplacementFile> CreateReplacement(std::wstring_view path,
                                                        std::wstring_view target) override;
    std::unique_ptr<IOutputFile> OpenAppend(std::wstring_view path) override;
    void Delete(std::wstring_view path) override;

    std::unique_ptr<IRandomReader> OpenShared(std::wstring_view path) override;
    std::unique_ptr<IRandomReader> OpenRenamed(std::wstring_view path,
                                               const FileStamp& stamp) override;

  private:
    SharedReadPolicy policy_;
};

}  // namespace demovex
