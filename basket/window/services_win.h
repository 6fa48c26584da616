// The system's own services, put together for one basket window.
#pragma once

#include <windows.h>

#include <memory>

#include "basket/services.h"

namespace demovex {

class WindowServices {
  public:
    // Boxes and dialogs belong to `window`; `module` says where the component was loaded from.
    WindowServices(HINSTANCE module, HWND window);
    ~WindowServices();
    WindowServices(const WindowServices&) = delete;
    WindowServices& operator=(const WindowServices&) = delete;

    Services& Get() noexcept;
    // The user has changed settings of the system: reads the number formats anew.
    void SettingsChanged();

  private:
    struct All;
    std::unique_ptr<All> all_;
};

}  // namespace demovex
