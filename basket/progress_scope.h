// Long work tells the view how far it is. The view decides whether the user sees it (only work that
// takes longer than half a second), so the work reports cheaply and often.
#pragma once

#include <cstdint>
#include <string_view>

#include "basket/basket_view.h"

namespace demovex {

class ProgressScope {
  public:
    // Steps between two reports: rare enough to cost nothing, often enough for a smooth bar.
    static constexpr std::int32_t kStride = 256;

    ProgressScope(IBasketView& view, std::wstring_view what) : view_(view) {
        view_.BeginProgress(what);
    }
    ~ProgressScope() {
        try {
            view_.EndProgress();
        } catch (...) {  // a status bar that cannot be reset must not hide the work's own error
        }
    }
    ProgressScope(const ProgressScope&) = delete;
    ProgressScope& operator=(const ProgressScope&) = delete;

    void Report(double fraction) { view_.SetProgress(fraction); }
    // Step `step` of `count`, as a share of the range from `from` to `to`.
    void Step(std::int32_t step, std::int32_t count, double from = 0, double to = 1) {
        if (step % kStride == 0) Report(from + (to - from) * step / count);
    }

  private:
    IBasketView& view_;
};

}  // namespace demovex
