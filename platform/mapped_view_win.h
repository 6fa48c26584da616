// A mapped view of a file that can be touched safely.
//
// A page of a mapped file can be missing when it is touched: the drive was pulled out, a sector is
// bad, another system has cut the file off. The system then raises an exception in the reading
// thread, which must never reach the host. While any view lives, a vectored exception handler waits
// for exactly this: a failed read of an address inside one of our views. It puts zeroed memory in
// the view's place, marks the view as lost and lets the read go on; every other exception passes by
// untouched. This costs nothing while all is well; a guard around each copy would cost several
// times the copy.
//
//   const auto view = MappedView::Map(section, 0, size);   // null where the system refuses
//   if (!view->Copy(offset, length, to)) ...               // read the file itself
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <memory>

namespace demovex {

class VectoredHandler;

class MappedView {
  public:
    // `begin` is a multiple of 64 KB. Null when the system refuses or there is no memory.
    static std::unique_ptr<MappedView> Map(HANDLE section, std::uint64_t begin,
                                           std::size_t size) noexcept;
    ~MappedView();
    MappedView(const MappedView&) = delete;
    MappedView& operator=(const MappedView&) = delete;

    std::size_t size() const noexcept { return size_; }

    // Copies `length` bytes, at least one, from `offset` within the view. False when they are not
    // beyond doubt the file's: a page was missing, or the last byte is a zero, as bytes behind the
    // end of a file that has become shorter are. The bytes copied then are worthless.
    bool Copy(std::size_t offset, std::size_t length, char* to) const noexcept;

    // Whether a page was missing; from then on Copy always fails.
    bool lost() const noexcept { return place_.load(std::memory_order_relaxed) != Place::kFile; }

    // For tests: whether the handler is installed.
    static bool IsGuarding() noexcept;
    // For tests: called when a view with a missing page has been unmapped, before its range of
    // addresses is taken.
    static void (*on_unmapped_for_tests)(void* address, std::size_t size);

  private:
    MappedView(void* address, std::size_t size) noexcept : address_(address), size_(size) {}

    static LONG CALLBACK OnException(EXCEPTION_POINTERS* exception) noexcept;
    bool Contains(ULONG_PTR address) const noexcept;
    bool ReplaceMissingPage(ULONG_PTR address) noexcept;

    static VectoredHandler handler_;

    // What lies at the view's addresses.
    enum class Place { kFile, kOurs, kNobodys };

    void* address_;
    std::size_t size_;
    std::atomic<Place> place_{Place::kFile};
    bool listed_ = false;
    // the list of all views
    MappedView* previous_ = nullptr;
    MappedView* next_ = nullptr;
};

}  // namespace demovex
