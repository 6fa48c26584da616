// The printer where there is none; pages are printed for real by tests/print.
#include "platform/printer_win.h"

#include <gtest/gtest.h>

#include "base/error.h"

namespace demovex {
namespace {

TEST(WinPrinter, WithoutAnyQueueThereAreNoneAndAJobCannotBegin) {
    HWND owner = CreateWindowExW(0, L"STATIC", L"Warenkorb", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                                 100, 100, nullptr, nullptr, nullptr, nullptr);
    WinPrinter printer([&] { return owner; });
    if (printer.InstalledCount() != 0) GTEST_SKIP() << "this machine has a printer";
    try {
        printer.Begin(L"Warenkorb");
        FAIL() << "nothing raised";
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), 482);
        EXPECT_EQ(error.description(), L"Printer error");
    }
    EXPECT_TRUE(IsWindowEnabled(owner));
    DestroyWindow(owner);
}

}  // namespace
}  // namespace demovex
