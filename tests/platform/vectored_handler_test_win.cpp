#include "platform/vectored_handler_win.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cwchar>
#include <thread>

#include "tests/support/wait_until.h"

namespace demovex {
namespace {

constexpr DWORD kPlain = 0xE0000001;    // the handler passes at once
constexpr DWORD kWaiting = 0xE0000002;  // it waits within

std::atomic<int> g_calls{0};
HANDLE g_within = nullptr;
HANDLE g_go_on = nullptr;

LONG CALLBACK Handle(EXCEPTION_POINTERS* exception) noexcept {
    const DWORD code = exception->ExceptionRecord->ExceptionCode;
    if (code != kPlain && code != kWaiting) return EXCEPTION_CONTINUE_SEARCH;
    ++g_calls;
    if (code == kWaiting) {
        SetEvent(g_within);
        WaitForSingleObject(g_go_on, 10'000);
    }
    return EXCEPTION_CONTINUE_EXECUTION;
}

// The last of all handlers, so that no exception of these tests ends the program.
LONG CALLBACK Otherwise(EXCEPTION_POINTERS* exception) noexcept {
    const DWORD code = exception->ExceptionRecord->ExceptionCode;
    return code == kPlain || code == kWaiting ? EXCEPTION_CONTINUE_EXECUTION
                                              : EXCEPTION_CONTINUE_SEARCH;
}

int Gates() {
    int gates = 0;
    for (unsigned atom = 0xC000; atom <= 0xFFFF; ++atom) {
        wchar_t name[64];
        gates += GetAtomNameW(static_cast<ATOM>(atom), name, 64) != 0 &&
                 std::wcsncmp(name, L"DemoVexClient.Gate1.", 20) == 0;
    }
    return gates;
}

struct VectoredHandlers : testing::Test {
    PVOID otherwise = AddVectoredExceptionHandler(0, &Otherwise);
    VectoredHandlers() {
        g_calls = 0;
        g_within = CreateEventW(nullptr, FALSE, FALSE, nullptr);
        g_go_on = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    }
    ~VectoredHandlers() override {
        CloseHandle(g_within);
        CloseHandle(g_go_on);
        RemoveVectoredExceptionHandler(otherwise);
    }
};

TEST_F(VectoredHandlers, AreCalledFromInstallToRemove) {
    VectoredHandler handler(&Handle);
    RaiseException(kPlain, 0, 0, nullptr);
    EXPECT_EQ(g_calls, 0);
    for (int round = 1; round <= 3; ++round) {
        ASSERT_TRUE(handler.Install());
        EXPECT_TRUE(handler.Installed());
        RaiseException(kPlain, 0, 0, nullptr);
        EXPECT_EQ(g_calls, round);
        handler.Remove();
        EXPECT_FALSE(handler.Installed());
        RaiseException(kPlain, 0, 0, nullptr);
        EXPECT_EQ(g_calls, round);
    }
}

TEST_F(VectoredHandlers, GoOnlyWhenNoThreadIsWithin) {
    VectoredHandler handler(&Handle);
    ASSERT_TRUE(handler.Install());
    std::thread within([] { RaiseException(kWaiting, 0, 0, nullptr); });
    ASSERT_EQ(WaitForSingleObject(g_within, 10'000), WAIT_OBJECT_0);
    std::atomic<bool> removed{false};
    std::thread remover([&] {
        handler.Remove();
        removed = true;
    });
    // another thread's exception passes a handler that is being removed; it never waits for it
    ASSERT_TRUE(WaitUntil([&] {
        const int before = g_calls;
        RaiseException(kPlain, 0, 0, nullptr);
        return g_calls == before;
    }));
    EXPECT_FALSE(removed);
    SetEvent(g_go_on);
    remover.join();
    within.join();
    EXPECT_TRUE(removed);
}

TEST_F(VectoredHandlers, TakeOverTheMemoryOfThoseBefore) {
    const auto use_one = [] {
        VectoredHandler handler(&Handle);
        ASSERT_TRUE(handler.Install());
        RaiseException(kPlain, 0, 0, nullptr);
    };
    use_one();
    const int gates = Gates();
    EXPECT_GE(gates, 1);
    for (int i = 0; i < 20; ++i) use_one();
    EXPECT_EQ(g_calls, 21);
    EXPECT_EQ(Gates(), gates);
    // one that is in use is not taken over
    VectoredHandler first(&Handle), second(&Handle);
    ASSERT_TRUE(first.Install());
    ASSERT_TRUE(second.Install());
    first.Remove();
    RaiseException(kPlain, 0, 0, nullptr);
    EXPECT_EQ(g_calls, 22);
}

TEST_F(VectoredHandlers, CountEveryThreadThatPasses) {
    VectoredHandler handler(&Handle);
    std::atomic<bool> over{false};
    std::atomic<int> raised{0};
    std::thread raiser([&] {
        while (!over) {
            RaiseException(kPlain, 0, 0, nullptr);
            ++raised;
        }
    });
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(handler.Install());
        const int before = raised;
        ASSERT_TRUE(WaitUntil([&] { return raised > before + 1; }));
        handler.Remove();
        const int calls = g_calls;
        const int then = raised;
        ASSERT_TRUE(WaitUntil([&] { return raised > then + 1; }));
        ASSERT_EQ(g_calls, calls);
    }
    over = true;
    raiser.join();
    EXPECT_GE(g_calls, 100);
}

}  // namespace
}  // namespace demovex
