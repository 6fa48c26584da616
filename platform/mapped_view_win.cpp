#include "platform/mapped_view_win.h"

#include <cstring>
#include <new>

#include "platform/vectored_handler_win.h"

namespace demovex {
namespace {

// The handler gets no argument of ours, so what it looks for stands here. Held for a few
// instructions only; nothing is touched under it that could raise an exception.
SRWLOCK list_lock = SRWLOCK_INIT;
MappedView* first_view = nullptr;
// Over the coming and going of the handler, which waits for threads that are in it: never taken by
// the handler itself, and before the other one.
SRWLOCK handler_lock = SRWLOCK_INIT;

class Locked {
  public:
    explicit Locked(SRWLOCK& lock) noexcept : lock_(lock) { AcquireSRWLockExclusive(&lock_); }
    ~Locked() { ReleaseSRWLockExclusive(&lock_); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;

  private:
    SRWLOCK& lock_;
};

constexpr ULONG_PTR kPage = 4096;
constexpr ULONG_PTR kFailedRead = 0;
constexpr ULONG_PTR kGranularity = 65536;

// Another thread has taken the addresses of a view that was given up, or some of them. What it has
// there may be read, since the view is known to be lost; where nobody has anything, a page is put
// that stays, so that the read can go on.
bool AnythingToRead(ULONG_PTR address) noexcept {
    MEMORY_BASIC_INFORMATION memory;
    if (VirtualQuery(reinterpret_cast<void*>(address), &memory, sizeof memory) == 0) return false;
    if (memory.State == MEM_COMMIT) return (memory.Protect & (PAGE_NOACCESS | PAGE_GUARD)) == 0;
    return memory.State == MEM_FREE &&
           VirtualAlloc(reinterpret_cast<void*>(address / kGranularity * kGranularity),
                        kGranularity, MEM_RESERVE | MEM_COMMIT, PAGE_READONLY) != nullptr;
}

}  // namespace

VectoredHandler MappedView::handler_(&MappedView::OnException);
void (*MappedView::on_unmapped_for_tests)(void* address, std::size_t size) = nullptr;

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
    const Locked handler_locked(handler_lock);
    if (!handler_.Install()) {
        UnmapViewOfFile(address);
        view->place_ = Place::kNobodys;
        return nullptr;
    }
    const Locked list_locked(list_lock);
    view->next_ = first_view;
    if (first_view != nullptr) first_view->previous_ = view.get();
    first_view = view.get();
    view->listed_ = true;
    return view;
}

MappedView::~MappedView() {
    if (listed_) {
        const Locked handler_locked(handler_lock);
        bool last = false;
        {
            const Locked list_locked(list_lock);
            (previous_ != nullptr ? previous_->next_ : first_view) = next_;
            if (next_ != nullptr) next_->previous_ = previous_;
            last = first_view == nullptr;
        }
        if (last) handler_.Remove();
    }
    switch (place_.load(std::memory_order_relaxed)) {
        case Place::kFile:
            UnmapViewOfFile(address_);
            break;
        case Place::kOurs:
            VirtualFree(address_, 0, MEM_RELEASE);
            break;
        case Place::kNobodys:
            break;
    }
}

bool MappedView::Copy(std::size_t offset, std::size_t length, char* to) const noexcept {
    std::memcpy(to, static_cast<const char*>(address_) + offset, length);
    // the handler works in the midst of the copy: its mark is looked for only behind it
    std::atomic_signal_fence(std::memory_order_seq_cst);
    return !lost() && to[length - 1] != '\0';
}

bool MappedView::IsGuarding() noexcept {
    const Locked locked(handler_lock);
    return handler_.Installed();
}

LONG CALLBACK MappedView::OnException(EXCEPTION_POINTERS* exception) noexcept {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    if ((record.ExceptionCode != EXCEPTION_IN_PAGE_ERROR &&
         record.ExceptionCode != EXCEPTION_ACCESS_VIOLATION) ||
        record.NumberParameters < 2 || record.ExceptionInformation[0] != kFailedRead) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    const ULONG_PTR address = record.ExceptionInformation[1];
    const Locked locked(list_lock);
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
        place_.store(Place::kNobodys, std::memory_order_relaxed);
        if (on_unmapped_for_tests != nullptr) on_unmapped_for_tests(address_, size_);
        if (VirtualAlloc(address_, size_, MEM_RESERVE, PAGE_READONLY) == address_) {
            place_.store(Place::kOurs, std::memory_order_relaxed);
        }
    }
    if (place_.load(std::memory_order_relaxed) != Place::kOurs) return AnythingToRead(address);
    return VirtualAlloc(reinterpret_cast<void*>(address / kPage * kPage), kPage, MEM_COMMIT,
                        PAGE_READONLY) != nullptr;
}

}  // namespace demovex
