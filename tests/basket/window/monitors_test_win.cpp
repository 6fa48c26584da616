// Where the basket window opens on the user's monitors. Runs on one monitor with the other window
// tests, and once more on a display of three with bars at its edges (DEMOVEX_MONITORS and
// DEMOVEX_WORKAREA, see wine_env.sh).
#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "basket/window/handles_win.h"
#include "tests/support/test_basket_window_win.h"

namespace demovex {
namespace {

struct Monitor {
    HMONITOR handle;
    RECT all;
    RECT work;
};

BOOL CALLBACK AddMonitor(HMONITOR monitor, HDC, RECT*, LPARAM data) {
    MONITORINFO info{};
    info.cbSize = sizeof info;
    GetMonitorInfoW(monitor, &info);
    reinterpret_cast<std::vector<Monitor>*>(data)->push_back(
        {monitor, info.rcMonitor, info.rcWork});
    return TRUE;
}

std::vector<Monitor> Monitors() {
    std::vector<Monitor> monitors;
    EnumDisplayMonitors(nullptr, nullptr, &AddMonitor, reinterpret_cast<LPARAM>(&monitors));
    return monitors;
}

int Width(const RECT& rect) {
    return rect.right - rect.left;
}
int Height(const RECT& rect) {
    return rect.bottom - rect.top;
}

// Opens a basket for a host whose window stands at `host` and tells where it stands.
class Opened : public BasketWindowFixture {
  public:
    explicit Opened(const RECT& at) : BasketWindowFixture(HostLoop::kBare, 0, false) {
        SetWindowPos(host.handle, HWND_TOP, at.left, at.top, Width(at), Height(at), 0);
        SetForegroundWindow(host.handle);
        SetActiveWindow(host.handle);  // the system may pass over a window that is out of view
        EXPECT_EQ(GetActiveWindow(), host.handle);
        window->Initialize();
        window->Show();
        PumpUntil([this] { return GetActiveWindow() == Handle(); });
    }
    RECT Place() const {
        RECT rect{};
        GetWindowRect(Handle(), &rect);
        return rect;
    }
};

void ExpectInside(const RECT& place, const RECT& area) {
    EXPECT_GE(place.left, area.left);
    EXPECT_GE(place.top, area.top);
    EXPECT_LE(place.right, area.right);
    EXPECT_LE(place.bottom, area.bottom);
    EXPECT_GE(Width(place), 400);
    EXPECT_GE(Height(place), 200);
}

TEST(WindowMonitors, TheDisplayHasTheMonitorsThatThisRunIsFor) {
    const char* named = std::getenv("DEMOVEX_MONITORS");
    std::size_t expected = 1;
    for (const char* at = named; at != nullptr && *at != '\0'; ++at) expected += *at == ' ';
    const std::vector<Monitor> monitors = Monitors();
    ASSERT_EQ(monitors.size(), expected);
    if (std::getenv("DEMOVEX_WORKAREA") == nullptr) return;
    // the other tests see that the bars are kept clear of
    EXPECT_GT(monitors[0].work.left, monitors[0].all.left);
    EXPECT_LT(monitors[0].work.bottom, monitors[0].all.bottom);
}

TEST(WindowMonitors, OpensInTheMiddleOfTheHostsMonitorWhollyInItsWorkArea) {
    for (const Monitor& monitor : Monitors()) {
        SCOPED_TRACE(::testing::Message() << "monitor at " << monitor.all.left);
        const RECT corner = {monitor.all.right - 210, monitor.all.bottom - 110,
                             monitor.all.right - 10, monitor.all.bottom - 10};
        const Opened basket(corner);
        const RECT place = basket.Place();
        ExpectInside(place, monitor.work);
        EXPECT_NEAR(place.left - monitor.work.left, monitor.work.right - place.right, 1);
        EXPECT_NEAR(place.top - monitor.work.top, monitor.work.bottom - place.bottom, 1);
    }
}

TEST(WindowMonitors, AHostAcrossTwoMonitorsHasItOnTheOneThatShowsMoreOfTheHost) {
    const std::vector<Monitor> monitors = Monitors();
    for (std::size_t i = 1; i < monitors.size(); ++i) {
        const Monitor& left = monitors[i - 1];
        const Monitor& right = monitors[i];
        ASSERT_EQ(left.all.right, right.all.left);
        for (const int on_the_right : {50, 150}) {
            SCOPED_TRACE(::testing::Message() << "edge " << i << ", " << on_the_right << " of 200");
            const LONG x = right.all.left + on_the_right - 200;
            const LONG y = right.all.top + 100;
            const Opened basket({x, y, x + 200, y + 100});
            ExpectInside(basket.Place(), on_the_right > 100 ? right.work : left.work);
        }
    }
}

TEST(WindowMonitors, AHostOutsideAllMonitorsHasItOnTheNearest) {
    const std::vector<Monitor> monitors = Monitors();
    {
        const Monitor& last = monitors.back();
        const LONG x = last.all.right + 500, y = last.all.top + 50;
        const Opened basket({x, y, x + 200, y + 100});
        ExpectInside(basket.Place(), last.work);
    }
    const Monitor& first = monitors.front();
    const LONG x = first.all.left - 900, y = first.all.top + 50;
    const Opened basket({x, y, x + 200, y + 100});
    ExpectInside(basket.Place(), first.work);
}

TEST(WindowMonitors, FurtherBasketsStepAsideAndStayOnTheMonitor) {
    for (const Monitor& monitor : Monitors()) {
        const RECT corner = {monitor.all.left + 10, monitor.all.top + 10, monitor.all.left + 210,
                             monitor.all.top + 110};
        std::vector<std::unique_ptr<Opened>> baskets;
        for (int i = 0; i < 5; ++i) {
            baskets.push_back(std::make_unique<Opened>(corner));
            const RECT place = baskets.back()->Place();
            ExpectInside(place, monitor.work);
            if (Height(place) == Height(monitor.work)) continue;  // no room to step aside
            for (int other = 0; other < i; ++other) {
                const RECT taken = baskets[static_cast<std::size_t>(other)]->Place();
                EXPECT_FALSE(taken.left == place.left && taken.top == place.top);
            }
        }
    }
}

}  // namespace
}  // namespace demovex
