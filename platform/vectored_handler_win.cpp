#include "platform/vectored_handler_win.h"

#include <cstdint>
#include <cstring>
#include <cwchar>

namespace demovex {

// The part of the memory that is written. Layout and meaning are shared with other versions of the
// component in the same process: a change needs another name for the atom.
struct VectoredHandler::Gate {
    void* function;       // null: nobody is called
    LONG inside;          // threads between the first and the last instruction
    LONG taken;           // 1 while a library uses it
    std::uint32_t magic;  // says that this is one
    void* code;
};

namespace {

using Gate = VectoredHandler::Gate;

constexpr std::uint32_t kMagic = 0x5E7DE3C1;
constexpr std::size_t kPage = 4096;
// An atom's name is this and the gate's address in as many hexadecimal digits as it has.
constexpr wchar_t kAtomPrefix[] = L"DemoVexClient.Gate1.";
constexpr std::size_t kPrefixLength = sizeof kAtomPrefix / sizeof(wchar_t) - 1;
constexpr std::size_t kDigits = 2 * sizeof(void*);
constexpr std::size_t kNameLength = kPrefixLength + kDigits;
constexpr ATOM kFirstAtom = 0xC000;
constexpr ATOM kLastAtom = 0xFFFF;
// Longer than any handler of ours runs. A thread that was ended while it was inside never leaves.
constexpr DWORD kLongestWait = 2000;

template <std::size_t N>
void Put(unsigned char*& to, const unsigned char (&bytes)[N]) noexcept {
    std::memcpy(to, bytes, N);
    to += N;
}

void PutAddress(unsigned char*& to, const void* address) noexcept {
    std::memcpy(to, &address, sizeof address);
    to += sizeof address;
}

#ifdef __i386__

// LONG CALLBACK(EXCEPTION_POINTERS*)
void WriteCode(unsigned char* to, Gate* gate) noexcept {
    Put(to, {0xF0, 0xFF, 0x05});  // lock inc [inside]
    PutAddress(to, &gate->inside);
    Put(to, {0xA1});  // mov eax, [function]
    PutAddress(to, &gate->function);
    Put(to, {0x85, 0xC0,              // test eax, eax
             0x74, 0x06,              // jz out: 0 is EXCEPTION_CONTINUE_SEARCH
             0xFF, 0x74, 0x24, 0x04,  // push [esp + 4]
             0xFF, 0xD0,              // call eax
             0xF0, 0xFF, 0x0D});      // out: lock dec [inside]
    PutAddress(to, &gate->inside);
    Put(to, {0xC2, 0x04, 0x00});  // ret 4
}

#elif defined(__x86_64__)

void WriteCode(unsigned char* to, Gate* gate) noexcept {
    Put(to, {0x48, 0x83, 0xEC, 0x38,  // sub rsp, 56
             0x48, 0xB8});            // mov rax, &inside
    PutAddress(to, &gate->inside);
    Put(to, {0xF0, 0xFF, 0x00,  // lock inc [rax]
             0x48, 0xB8});      // mov rax, &function
    PutAddress(to, &gate->function);
    Put(to, {0x48, 0x8B, 0x00,  // mov rax, [rax]
             0x48, 0x85, 0xC0,  // test rax, rax
             0x74, 0x02,        // jz out
             0xFF, 0xD0,        // call rax
             0x49, 0xBB});      // out: mov r11, &inside
    PutAddress(to, &gate->inside);
    Put(to, {0xF0, 0x41, 0xFF, 0x0B,  // lock dec [r11]
             0x48, 0x83, 0xC4, 0x38,  // add rsp, 56
             0xC3});                  // ret
}

#else
#error "the instructions of the gate are missing for this processor"
#endif

void WriteName(wchar_t (&name)[kNameLength + 1], const Gate* gate) noexcept {
    std::wmemcpy(name, kAtomPrefix, kPrefixLength);
    auto rest = reinterpret_cast<std::uintptr_t>(gate);
    for (std::size_t i = kNameLength; i-- > kPrefixLength; rest /= 16) {
        name[i] = L"0123456789abcdef"[rest % 16];
    }
    name[kNameLength] = L'\0';
}

// The gate that a name tells of; null when it is another kind of name.
Gate* ReadName(const wchar_t* name) noexcept {
    if (std::wcslen(name) != kNameLength || std::wcsncmp(name, kAtomPrefix, kPrefixLength) != 0) {
        return nullptr;
    }
    std::uintptr_t address = 0;
    for (const wchar_t* at = name + kPrefixLength; *at != L'\0'; ++at) {
        const bool digit = *at >= L'0' && *at <= L'9';
        if (!digit && (*at < L'a' || *at > L'f')) return nullptr;
        address = address * 16 + static_cast<unsigned>(digit ? *at - L'0' : *at - L'a' + 10);
    }
    return reinterpret_cast<Gate*>(address);
}

bool Take(Gate* gate) noexcept {
    return InterlockedCompareExchange(&gate->taken, 1, 0) == 0;
}

// A gate that an earlier loading has left, taken; null when there is none.
Gate* FindGate() noexcept {
    for (unsigned atom = kFirstAtom; atom <= kLastAtom; ++atom) {
        wchar_t name[64];
        if (GetAtomNameW(static_cast<ATOM>(atom), name, 64) == 0) continue;
        Gate* const gate = ReadName(name);
        MEMORY_BASIC_INFORMATION memory;
        if (gate == nullptr || VirtualQuery(gate, &memory, sizeof memory) == 0 ||
            memory.State != MEM_COMMIT || memory.Protect != PAGE_READWRITE ||
            memory.AllocationBase != gate || gate->magic != kMagic) {
            continue;
        }
        if (Take(gate)) return gate;
    }
    return nullptr;
}

// A new one, taken; null when the process does not allow it.
Gate* MakeGate() noexcept {
    auto* pages = static_cast<unsigned char*>(
        VirtualAlloc(nullptr, 2 * kPage, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    if (pages == nullptr) return nullptr;
    auto* gate = reinterpret_cast<Gate*>(pages);
    gate->taken = 1;
    gate->magic = kMagic;
    gate->code = pages + kPage;
    WriteCode(pages + kPage, gate);
    DWORD before = 0;
    wchar_t name[kNameLength + 1];
    WriteName(name, gate);
    // never writable and executable at once
    if (!VirtualProtect(pages + kPage, kPage, PAGE_EXECUTE_READ, &before) || AddAtomW(name) == 0) {
        VirtualFree(pages, 0, MEM_RELEASE);
        return nullptr;
    }
    FlushInstructionCache(GetCurrentProcess(), pages + kPage, kPage);
    return gate;
}

bool Leave(const Gate* gate) noexcept {
    const DWORD start = GetTickCount();
    while (*static_cast<const volatile LONG*>(&gate->inside) != 0) {
        if (GetTickCount() - start > kLongestWait) return false;
        Sleep(1);
    }
    return true;
}

}  // namespace

VectoredHandler::~VectoredHandler() {
    Remove();
    if (gate_ != nullptr) InterlockedExchange(&gate_->taken, 0);
}

bool VectoredHandler::Install() noexcept {
    if (registration_ != nullptr) return true;
    if (gate_ == nullptr) gate_ = FindGate();
    if (gate_ == nullptr) gate_ = MakeGate();
    if (gate_ == nullptr) return false;
    InterlockedExchangePointer(&gate_->function, reinterpret_cast<void*>(function_));
    PVECTORED_EXCEPTION_HANDLER code = nullptr;
    std::memcpy(&code, &gate_->code, sizeof code);
    registration_ = AddVectoredExceptionHandler(1, code);
    if (registration_ == nullptr) InterlockedExchangePointer(&gate_->function, nullptr);
    return registration_ != nullptr;
}

void VectoredHandler::Remove() noexcept {
    if (registration_ == nullptr) return;
    // whoever comes in from here on is not led to the handler
    InterlockedExchangePointer(&gate_->function, nullptr);
    RemoveVectoredExceptionHandler(registration_);
    registration_ = nullptr;
    if (Leave(gate_)) return;
    // a thread is stuck in the handler: its code must stay
    HMODULE self = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(reinterpret_cast<void*>(function_)), &self);
}

}  // namespace demovex
