// The few functions of POSIX threads that the compiler's libraries call, on Windows' own locks.
//
// The toolchain's library of threads is made for programs, not for a guest that comes and goes:
// with each loading it takes a TLS slot, four handles and memory and never gives them back, and it
// leaves a handler of exceptions behind that may run in another thread while the library is
// unloaded. A process has 1,088 slots; a host that loads and unloads us for every order would be
// ended with the last one. These functions stand in its place, so that none of it is linked; a test
// counts what a thousand loadings leave.
//
// What is kept for a thread (the exceptions it handles at the moment) stands in a block that one
// TLS slot of the library points to; all blocks form a list, so that those of other threads go,
// too, when the library does.
#include <windows.h>

#include <pthread.h>

#include <cerrno>
#include <cstdlib>
#include <ctime>

#include "client/dll/run_time_win.h"

namespace {

// The compiler's libraries make one, for all that they keep.
constexpr pthread_key_t kMostKeys = 4;

struct ThreadBlock {
    void* values[kMostKeys];
    ThreadBlock* previous;
    ThreadBlock* next;
};

SRWLOCK lock = SRWLOCK_INIT;  // over all that follows
DWORD slot = TLS_OUT_OF_INDEXES;
pthread_key_t keys = 0;
void (*destructors[kMostKeys])(void*) = {};
ThreadBlock* first_block = nullptr;

class Locked {
  public:
    Locked() noexcept { AcquireSRWLockExclusive(&lock); }
    ~Locked() { ReleaseSRWLockExclusive(&lock); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
};

// The calling thread's block; null when it has none. Leaves the thread's last error as it is.
ThreadBlock* OwnBlock() noexcept {
    if (slot == TLS_OUT_OF_INDEXES) return nullptr;
    const DWORD error = GetLastError();
    void* const block = TlsGetValue(slot);
    SetLastError(error);
    return static_cast<ThreadBlock*>(block);
}

ThreadBlock* NewBlock() noexcept {
    auto* block = static_cast<ThreadBlock*>(std::calloc(1, sizeof(ThreadBlock)));
    if (block == nullptr || !TlsSetValue(slot, block)) {
        std::free(block);
        return nullptr;
    }
    const Locked locked;
    block->next = first_block;
    if (first_block != nullptr) first_block->previous = block;
    first_block = block;
    return block;
}

void FreeBlock(ThreadBlock* block) noexcept {
    {
        const Locked locked;
        (block->previous != nullptr ? block->previous->next : first_block) = block->next;
        if (block->next != nullptr) block->next->previous = block->previous;
    }
    for (pthread_key_t key = 0; key < keys; ++key) {
        void* const value = block->values[key];
        if (value != nullptr && destructors[key] != nullptr) destructors[key](value);
    }
    std::free(block);
}

// Windows' locks begin as zero and never become one of these small negative numbers.
bool IsInitialiser(intptr_t value) noexcept {
    return value == GENERIC_INITIALIZER || value == GENERIC_ERRORCHECK_INITIALIZER ||
           value == GENERIC_RECURSIVE_INITIALIZER;
}

// The Windows object in the place of one that may hold its initialiser still.
void* Ready(intptr_t* object) noexcept {
    static_assert(sizeof(SRWLOCK) == sizeof(intptr_t) &&
                  sizeof(CONDITION_VARIABLE) == sizeof(intptr_t));
    const intptr_t value = *static_cast<volatile intptr_t*>(object);
    if (IsInitialiser(value)) {
        InterlockedCompareExchangePointer(reinterpret_cast<void**>(object), nullptr,
                                          reinterpret_cast<void*>(value));
    }
    return object;
}

SRWLOCK* LockOf(pthread_mutex_t* mutex) noexcept {
    return static_cast<SRWLOCK*>(Ready(mutex));
}

}  // namespace

namespace demovex {

void ForgetThread() noexcept {
    ThreadBlock* const block = OwnBlock();
    if (block == nullptr) return;
    FreeBlock(block);
    TlsSetValue(slot, nullptr);
}

void ForgetThreads() noexcept {
    // NOLINTNEXTLINE(clang-analyzer-unix.Malloc): each is taken out of the list before it goes
    while (first_block != nullptr) FreeBlock(first_block);
    if (slot != TLS_OUT_OF_INDEXES) TlsFree(slot);
    slot = TLS_OUT_OF_INDEXES;
}

}  // namespace demovex

extern "C" {

int pthread_once(pthread_once_t* once, void (*function)()) {
    constexpr long kNew = PTHREAD_ONCE_INIT, kRunning = 1, kDone = 2;
    volatile long* const state = once;
    while (*state != kDone) {
        if (InterlockedCompareExchange(state, kRunning, kNew) == kNew) {
            function();
            InterlockedExchange(state, kDone);
        } else {
            SwitchToThread();
        }
    }
    return 0;
}

// All locks are Windows' slim ones. None of those that the compiler's libraries use is taken twice
// by one thread, not even the one that is declared as recursive: it is let go of before anything
// else is called.
int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t*) {
    *mutex = 0;
    return 0;
}

int pthread_mutex_destroy(pthread_mutex_t*) {
    return 0;
}

int pthread_mutex_lock(pthread_mutex_t* mutex) {
    AcquireSRWLockExclusive(LockOf(mutex));
    return 0;
}

int pthread_mutex_unlock(pthread_mutex_t* mutex) {
    ReleaseSRWLockExclusive(LockOf(mutex));
    return 0;
}

int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
    SleepConditionVariableSRW(static_cast<CONDITION_VARIABLE*>(Ready(condition)), LockOf(mutex),
                              INFINITE, 0);
    return 0;
}

int pthread_cond_broadcast(pthread_cond_t* condition) {
    WakeAllConditionVariable(static_cast<CONDITION_VARIABLE*>(Ready(condition)));
    return 0;
}

int pthread_key_create(pthread_key_t* key, void (*destructor)(void*)) {
    const Locked locked;
    if (slot == TLS_OUT_OF_INDEXES) slot = TlsAlloc();
    if (slot == TLS_OUT_OF_INDEXES || keys == kMostKeys) return EAGAIN;
    *key = keys++;
    destructors[*key] = destructor;
    return 0;
}

void* pthread_getspecific(pthread_key_t key) {
    const ThreadBlock* const block = OwnBlock();
    return block == nullptr ? nullptr : block->values[key];
}

int pthread_setspecific(pthread_key_t key, const void* value) {
    ThreadBlock* block = OwnBlock();
    if (block == nullptr) block = NewBlock();
    if (block == nullptr) return ENOMEM;
    block->values[key] = const_cast<void*>(value);
    return 0;
}

int nanosleep(const timespec* time, timespec*) {
    Sleep(static_cast<DWORD>(time->tv_sec * 1000 + (time->tv_nsec + 999'999) / 1'000'000));
    return 0;
}

// Any clock: the time since the machine was started.
int clock_gettime(clockid_t, timespec* time) {
    LARGE_INTEGER count, each_second;
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&each_second);
    const LONGLONG rest = count.QuadPart % each_second.QuadPart;
    time->tv_sec = static_cast<time_t>(count.QuadPart / each_second.QuadPart);
    time->tv_nsec = static_cast<long>(rest * 1'000'000'000 / each_second.QuadPart);
    return 0;
}

}  // extern "C"
