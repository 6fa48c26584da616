// Reading records of a file at any place while other programs read and write it.
//
// On a fixed disk the file is mapped once it is read a lot: whole where it takes no more than its
// share of the address space, else by windows of 4 MB, the 16 last used of which stay mapped. On
// other drives, and where
// the system refuses to map, every read is a seek and a read. Nothing of the file is kept: what
// another program writes in place is seen by the next read.
//
// Bytes are copied out of the map, so that a caller never holds on to mapped memory. Where a page
// is missing (see mapped_view_win.h) and in any other doubt the file itself is read, which tells
// the true state or fails with an ordinary error.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/files_win.h"
#include "platform/handle_win.h"
#include "platform/mapped_view_win.h"

namespace demovex {

class WinSharedReader : public IRandomReader {
  public:
    // Reads an open file on a disk. Raises the error of asking its length.
    WinSharedReader(UniqueHandle file, SharedReadPolicy policy);
    // Opens `path`. Raises the error of opening, 75 for what is no disk file.
    WinSharedReader(std::wstring_view path, SharedReadPolicy policy);

    std::uint64_t Size() const override { return size_; }
    // Raises 57, or 70 while another program has locked the bytes. A mapped read costs
    // about what copying the bytes costs.
    std::string_view Read(std::uint64_t offset, std::size_t length) override;
    std::optional<FileStamp> Stamp() const noexcept override;

    // For tests: number of views mapped now, and of reads that did not come from one.
    int mapped_views() const;
    int direct_reads() const { return direct_reads_; }

  private:
    struct View {
        std::unique_ptr<MappedView> map;
        std::uint64_t begin = 0;
        std::uint64_t end = 0;
        std::uint64_t used = 0;  // when it was last used, in reads
    };

    bool CopyFromMap(std::uint64_t offset, std::size_t length);
    void ReadDirectly(std::uint64_t offset, std::size_t length);
    const View* ViewFor(std::uint64_t offset, std::size_t length);
    bool CreateSection();
    void StopMapping() noexcept;

    UniqueHandle file_;
    std::uint64_t size_ = 0;
    SharedReadPolicy policy_;
    UniqueHandle section_;
    bool section_tried_ = false;
    std::uint64_t window_ = 0;  // bytes per view
    std::vector<View> views_;
    std::uint64_t clock_ = 0;
    int direct_reads_ = 0;
    std::vector<char> buffer_;
};

}  // namespace demovex
