#include "platform/mapped_view_win.h"

#include <cstring>
#include <new>

namespace demovex {
namespace {

// The handler gets no argument of ours, so what it looks for stands here. Held for a few
// instructions only; nothing is touched under it that could raise an exception.
SRWLOCK lock = SRWLOCK_INIT;
MappedView* first_view = nullptr;
PVOID handler = nullptr;

class Locked {
  public:
    Locked() noexcept { AcquireSRWLockExclusive(&lock); }
    ~Locked() { ReleaseSRWLockExclusive(&lock); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
};

constexpr ULONG_PTR kPage = 4096;
constexpr ULONG_PTR kFailedRead = 0;

}  // namespace

std::unique_ptr<MappedView> MappedView::Map(HANDLE section, std::uint64_t begin,
                                            std::size_t size) noexcept {
    void* address = MapViewOfFile(section, FILE_MAP_READ, static_cast<DWORD>(begin >> 32),
                                  static_cast<DWORD>(begin & 0xFFFFFFFFu), size);
    if (address == nullptr) return nullptr;
    std::unique_ptr<MappedView> view(new (std::nothrow) MappedView(address, size));
    if (!view) {
        UnmapViewOfFile(address);
        return nullptr;
    }
    bool guarded = false;
    {
        const Locked locked;
        if (handler == nullptr) handler = AddVectoredExceptionHandler(1, &MappedView::OnException);
        guarded = handler != nullptr;
        view->next_ = first_view;
        if (first_view != nullptr) first_view->previous_ = view.get();
        first_view = view.get();
    }
    if (!guarded) view.reset();
    return view;
}

MappedView::~MappedView() {
    PVOID unused = nullptr;
    {
        const Locked locked;
        (previous_ != nullptr ? previous_->next_ : first_view) = next_;
        if (next_ != nullptr) next_->previous_ = previous_;
        if (first_view == nullptr) {
            unused = handler;
            handler = nullptr;
        }
    }
    // outside the lock: the system waits for handlers that run in other threads
    if (unused != nullptr) RemoveVectoredExceptionHandler(unused);
    if (lost()) {
        VirtualFree(address_, 0, MEM_RELEASE);
    } else {
        UnmapViewOfFile(address_);
    }
}

bool MappedView::Copy(std::size_t offset, std::size_t length, char* to) const noexcept {
    std::memcpy(to, static_cast<const char*>(address_) + offset, length);
    // the handler works in the midst of the copy: its mark is looked for only behind it
    std::atomic_signal_fence(std::memory_order_seq_cst);
    return !lost() && to[length - 1] != '\0';
}

bool MappedView::IsGuarding() noexcept {
    const Locked locked;
    return handler != nullptr;
}

LONG CALLBACK MappedView::OnException(EXCEPTION_POINTERS* exception) noexcept {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    if ((record.ExceptionCode != EXCEPTION_IN_PAGE_ERROR &&
         record.ExceptionCode != EXCEPTION_ACCESS_VIOLATION) ||
        record.NumberParameters < 2 || record.ExceptionInformation[0] != kFailedRead) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    const ULONG_PTR address = record.ExceptionInformation[1];
    const Locked locked;
    for (MappedView* view = first_view; view != nullptr; view = view->next_) {
        if (view->Contains(address) && view->ReplaceMissingPage(address)) {
            return EXCEPTION_CONTINUE_EXECUTION;
        }
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

bool MappedView::Contains(ULONG_PTR address) const noexcept {
    // views end with a page
    const ULONG_PTR begin = reinterpret_cast<ULONG_PTR>(address_);
    return address >= begin && address - begin < (size_ + kPage - 1) / kPage * kPage;
}

bool MappedView::ReplaceMissingPage(ULONG_PTR address) noexcept {
    if (!lost()) {
        // the whole range is taken, so that nobody else gets it; memory costs only what is touched
        if (!UnmapViewOfFile(address_)) return false;
        lost_.store(true, std::memory_order_relaxed);
        if (VirtualAlloc(address_, size_, MEM_RESERVE, PAGE_READONLY) != address_) return false;
    }
    return VirtualAlloc(reinterpret_cast<void*>(address / kPage * kPage), kPage, MEM_COMMIT,
                        PAGE_READONLY) != nullptr;
}

}  // namespace demovex
