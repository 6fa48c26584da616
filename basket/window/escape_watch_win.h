// Whether the user presses Escape while this thread works and takes no input.
#pragma once

#include <windows.h>

#include <cstdint>

namespace demovex {

class EscapeWatch {
  public:
    // Work begins and ends in pairs, which may nest. A key that is down when the work has begun to
    // show was meant for something else; it counts once it has been let go of.
    void Begin() noexcept;
    // Takes the keys pressed meanwhile out of the queue when one of them has ended the work, so
    // that the message which says so does not go with the same key.
    void End() noexcept;

    // Whether Escape has been pressed at a window of this thread since the work shows, half a
    // second after its beginning. Handles no message.
    bool Pressed() noexcept;

  private:
    int depth_ = 0;
    std::uint64_t begun_ = 0;
    bool watching_ = false;
    bool held_ = false;
    bool pressed_ = false;
};

}  // namespace demovex
