// The sound that confirms an order: a short chime of two tones.
#pragma once

#include <string>

namespace demovex::tools {

// The bytes of a WAV file: 16 bits, one channel, 22,050 samples a second, about half a second.
std::string OrderSound();

}  // namespace demovex::tools
