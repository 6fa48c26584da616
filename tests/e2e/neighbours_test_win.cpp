// The component in processes that have more than one would wish for: run-times of other compilers,
// another copy of the component, threads that raise exceptions; and loaded over and over again.
#include <atomic>
#include <thread>

#include "tests/e2e/component_win.h"
#include "tests/e2e/guest_win.h"

namespace demovex {
namespace {

constexpr auto kObjectNotSet = static_cast<HRESULT>(0x800A005B);
constexpr auto kTypeMismatch = static_cast<HRESULT>(0x800A000D);

class Neighbours : public ComponentTest {
  protected:
    // Another copy of the component, beside the first and under a name of its own.
    std::wstring Copy() {
        EXPECT_TRUE(
            CopyFileW(Path(L"DemoVexClient.dll").c_str(), Path(L"Gast.dll").c_str(), FALSE));
        return Path(L"Gast.dll");
    }

    // So many lines in succession that the component maps the article master while it loads them.
    std::wstring LongBasket() {
        std::string lines;
        for (int i = 0; i < 200; ++i) lines += i % 2 == 0 ? "1000\t\t1\r\n" : "2000\t\t1\r\n";
        WriteBytes(Path(L"lang.bsk"), lines);
        return Path(L"lang.bsk");
    }

    // Calls that fail, each with an exception within: before the set-up, and of an unknown article.
    void FailIn(const ComPtr<IVEXClient>& client) {
        SetErrorInfo(0, nullptr);
        BSTR text = nullptr;
        ASSERT_EQ(client->get_Caption(&text), kObjectNotSet);
        EXPECT_EQ(ErrorObject().description, L"Object variable or With block variable not set");
        ASSERT_EQ(client->Initialize(Parent()), S_OK);
        ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
        ASSERT_EQ(Follow(client.Get(), L"9999"), kTypeMismatch);
        EXPECT_TRUE(ErrorObject().present);
        Close(BasketWindows().at(0), {IDNO});
        ASSERT_TRUE(BasketWindows().empty());
    }
};

// The run-times of another program that was built with the same kind of compiler, but shares them.
class SharedRunTimes {
  public:
    SharedRunTimes() {
        for (const wchar_t* name :
             {L"libwinpthread-1.dll", L"libgcc_s_dw2-1.dll", L"libstdc++-6.dll"}) {
            loaded_.push_back(LoadLibraryW((RunTimeFolder() + L"\\" + name).c_str()));
            EXPECT_NE(loaded_.back(), nullptr) << GetLastError();
        }
    }
    ~SharedRunTimes() {
        for (HMODULE module : loaded_) FreeLibrary(module);
    }
    SharedRunTimes(const SharedRunTimes&) = delete;
    SharedRunTimes& operator=(const SharedRunTimes&) = delete;

  private:
    std::vector<HMODULE> loaded_;
};

TEST_F(Neighbours, RunTimesThatWereLoadedBeforeHarmNothing) {
    const std::wstring copy = Copy();
    const SharedRunTimes before;
    Guest guest(copy);
    FailIn(guest.NewClient());
    EXPECT_TRUE(guest.Unload());
}

TEST_F(Neighbours, RunTimesThatAreLoadedLaterHarmNothing) {
    const auto client = NewClient();
    const SharedRunTimes after;
    FailIn(client);
}

TEST_F(Neighbours, AnotherCopyOfTheComponentHasAnotherName) {
    Guest guest(Copy());
    ASSERT_NE(guest.Module(), module);
    {
        const auto one = NewClient();
        const auto other = guest.NewClient();
        FailIn(one);
        FailIn(other);
        // both windows at once, each with its own basket
        ASSERT_EQ(one->Initialize(Parent()), S_OK);
        const HWND first = BasketWindows().at(0);
        ASSERT_EQ(other->Initialize(Parent()), S_OK);
        ASSERT_EQ(BasketWindows().size(), 2u);
        const HWND second = BasketWindows()[0] == first ? BasketWindows()[1] : BasketWindows()[0];
        EXPECT_EQ(Follow(one.Get(), L"1000"), S_OK);
        EXPECT_EQ(Follow(other.Get(), L"2000"), S_OK);
        EXPECT_NE(BasketText(first).find(L"1000\tHammer\t1"), std::wstring::npos);
        EXPECT_EQ(BasketText(first).find(L"2000"), std::wstring::npos);
        EXPECT_NE(BasketText(second).find(L"2000\tZange\t1"), std::wstring::npos);
        Close(second, {IDNO});
    }
    // one goes, the other stays as it was
    EXPECT_TRUE(guest.Unload());
    const auto again = NewClient();
    BSTR text = nullptr;
    EXPECT_EQ(again->get_Caption(&text), kObjectNotSet);
}

// --- loading and unloading

int FreeTlsSlots() {
    std::vector<DWORD> slots;
    for (DWORD slot = TlsAlloc(); slot != TLS_OUT_OF_INDEXES; slot = TlsAlloc()) {
        slots.push_back(slot);
    }
    for (DWORD slot : slots) TlsFree(slot);
    return static_cast<int>(slots.size());
}

int Handles() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return static_cast<int>(count);
}

// Bytes in use in all heaps of the process.
long HeapBytes() {
    HANDLE heaps[64];
    const DWORD count = GetProcessHeaps(64, heaps);
    long bytes = 0;
    for (DWORD i = 0; i < std::min<DWORD>(count, 64); ++i) {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(heaps[i]);
        while (HeapWalk(heaps[i], &entry)) {
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) {
                bytes += static_cast<long>(entry.cbData);
            }
        }
        HeapUnlock(heaps[i]);
    }
    return bytes;
}

// Committed memory outside of the heaps, and what is reserved: addresses are what a 32-bit process
// runs out of first.
long AddressBytes() {
    long bytes = 0;
    MEMORY_BASIC_INFORMATION memory;
    for (char* at = nullptr; VirtualQuery(at, &memory, sizeof memory) != 0;
         at = static_cast<char*>(memory.BaseAddress) + memory.RegionSize) {
        if (memory.State != MEM_FREE && memory.Type == MEM_PRIVATE) {
            bytes += static_cast<long>(memory.RegionSize / 1024);
        }
        if (reinterpret_cast<UINT_PTR>(memory.BaseAddress) + memory.RegionSize == 0) break;
    }
    return bytes;
}

struct Used {
    int tls = -FreeTlsSlots();
    int handles = Handles();
    long heap = HeapBytes();
    long addresses = AddressBytes();  // in KB
};

// Handlers for the faults of a mapped file are called through memory that this process keeps for
// all copies of the component that come and go; it is named by an atom.
int Gates() {
    int gates = 0;
    for (unsigned atom = 0xC000; atom <= 0xFFFF; ++atom) {
        wchar_t name[64] = L"";
        GetAtomNameW(static_cast<ATOM>(atom), name, 64);
        if (std::wstring_view(name).starts_with(L"DemoVexClient.Gate1.")) ++gates;
    }
    return gates;
}

bool HasClass(HMODULE module, const wchar_t* name) {
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    return GetClassInfoExW(module, name, &description) != FALSE;
}

bool HasAnyClass(HMODULE module) {
    return HasClass(module, L"DemoVexClient.TestLibForm") ||
           HasClass(module, L"DemoVexClient.FlexGrid") ||
           HasClass(module, L"DemoVexClient.PictureBox") || HasClass(module, L"DemoVexClient.Note");
}

TEST_F(Neighbours, LoadingAndUnloadingLosesNothing) {
    const std::wstring copy = Copy();
    const auto cycle = [&] {
        Guest guest(copy);
        {
            const auto client = guest.NewClient();
            BSTR text = nullptr;
            ASSERT_EQ(client->get_Caption(&text), kObjectNotSet);
            SetErrorInfo(0, nullptr);
        }
        ASSERT_TRUE(guest.Unload());
    };
    for (int i = 0; i < 100; ++i) ASSERT_NO_FATAL_FAILURE(cycle());
    const Used before;
    for (int i = 0; i < 1200; ++i) ASSERT_NO_FATAL_FAILURE(cycle()) << i;
    const Used after;
    EXPECT_EQ(after.tls, before.tls);
    EXPECT_EQ(after.handles, before.handles);
    EXPECT_LT(after.heap - before.heap, 32 * 1024);
    EXPECT_LT(after.addresses - before.addresses, 512);
}

TEST_F(Neighbours, LoadingAndUnloadingWithABasketEachTimeLosesNothing) {
    const std::wstring copy = Copy(), file = LongBasket();
    int round = 0;
    const auto cycle = [&] {
        Guest guest(copy);
        const HMODULE was = guest.Module();
        {
            const auto client = guest.NewClient();
            ASSERT_EQ(client->Initialize(Parent()), S_OK);
            ASSERT_EQ(client->OpenFile(Bstr(file).Get()), S_OK);
            ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
            ASSERT_EQ(Follow(client.Get(), L"9999"), kTypeMismatch);
            SetErrorInfo(0, nullptr);
            // half of them are closed, the others destroyed by the host
            if (++round % 2 == 0) {
                Close(BasketWindows().at(0), {IDNO});
            } else {
                DestroyWindow(BasketWindows().at(0));
            }
            ASSERT_TRUE(BasketWindows().empty());
        }
        ASSERT_TRUE(guest.Unload());
        ASSERT_FALSE(HasAnyClass(was));
    };
    for (int i = 0; i < 20; ++i) ASSERT_NO_FATAL_FAILURE(cycle());
    const Used before;
    constexpr int kRounds = 60;
    for (int i = 0; i < kRounds; ++i) ASSERT_NO_FATAL_FAILURE(cycle()) << i;
    const Used after;
    EXPECT_EQ(after.tls, before.tls);
    EXPECT_EQ(after.handles, before.handles);
    EXPECT_LT(after.heap - before.heap, kRounds * 1024);
    EXPECT_LT(after.addresses - before.addresses, 512);
    EXPECT_EQ(Gates(), 1) << "the file was never mapped, or each loading left memory of its own";
}

// A thread of the host's that used the component may end after it was unloaded, or before.
TEST_F(Neighbours, WhatWasKeptForOtherThreadsGoesWithTheComponent) {
    const std::wstring copy = Copy();
    const auto failing_call = [](const Guest& guest) {
        OleInitialize(nullptr);
        {
            const auto client = guest.NewClient();
            BSTR text = nullptr;
            EXPECT_EQ(client->get_Caption(&text), kObjectNotSet);
        }
        SetErrorInfo(0, nullptr);
        OleUninitialize();
    };
    const auto cycle = [&] {
        Guest guest(copy);
        std::thread early([&] { failing_call(guest); });
        early.join();
        std::atomic<bool> called{false}, unloaded{false};
        std::thread late([&] {
            failing_call(guest);
            called = true;
            while (!unloaded) Sleep(1);
        });
        while (!called) Sleep(1);
        EXPECT_TRUE(guest.Unload());
        unloaded = true;
        late.join();
    };
    for (int i = 0; i < 20; ++i) cycle();
    const Used before;
    for (int i = 0; i < 100; ++i) cycle();
    const Used after;
    EXPECT_EQ(after.tls, before.tls);
    EXPECT_EQ(after.handles, before.handles);
    EXPECT_LT(after.heap - before.heap, 32 * 1024);
}

// A host's threads come and go while the component stays.
TEST_F(Neighbours, ThreadsThatEndWhileTheComponentStaysLeaveNothing) {
    const Guest guest(Copy());
    const auto thread = [&] {
        std::thread([&] {
            OleInitialize(nullptr);
            {
                const auto client = guest.NewClient();
                BSTR text = nullptr;
                EXPECT_EQ(client->get_Caption(&text), kObjectNotSet);
            }
            SetErrorInfo(0, nullptr);
            OleUninitialize();
        }).join();
    };
    for (int i = 0; i < 50; ++i) thread();
    const Used before;
    for (int i = 0; i < 2000; ++i) thread();
    const Used after;
    EXPECT_EQ(after.tls, before.tls);
    EXPECT_EQ(after.handles, before.handles);
    EXPECT_LT(after.heap - before.heap, 16 * 1024);
}

// While the component reads its article master much it looks at the exceptions of all threads:
// faults of that file may be among them. It must not go while another thread's is looked at.
constexpr DWORD kOfTheHost = 0xE0000042;

LONG CALLBACK GoOn(EXCEPTION_POINTERS* exception) {
    return exception->ExceptionRecord->ExceptionCode == kOfTheHost ? EXCEPTION_CONTINUE_EXECUTION
                                                                   : EXCEPTION_CONTINUE_SEARCH;
}

TEST_F(Neighbours, ExceptionsInOtherThreadsAreNoDangerToAComponentThatGoes) {
    const std::wstring copy = Copy(), file = LongBasket();
    PVOID hosts = AddVectoredExceptionHandler(0, &GoOn);
    std::atomic<bool> over{false};
    std::atomic<long> raised{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([&] {
            while (!over) {
                RaiseException(kOfTheHost, 0, 0, nullptr);
                ++raised;
            }
        });
    }
    for (int i = 0; i < 25; ++i) {
        Guest guest(copy);
        {
            const auto client = guest.NewClient();
            ASSERT_EQ(client->Initialize(Parent()), S_OK);
            ASSERT_EQ(client->OpenFile(Bstr(file).Get()), S_OK);
            DestroyWindow(BasketWindows().at(0));
        }
        ASSERT_TRUE(guest.Unload());
    }
    over = true;
    for (std::thread& thread : threads) thread.join();
    RemoveVectoredExceptionHandler(hosts);
    EXPECT_GT(raised, 100);
    EXPECT_EQ(Gates(), 1) << "nothing was looked at";
}

}  // namespace
}  // namespace demovex
