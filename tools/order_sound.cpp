#include "tools/order_sound.h"

#include <cmath>
#include <cstdint>

namespace demovex::tools {
namespace {

constexpr int kRate = 22050;
constexpr double kSeconds = 0.55;
constexpr double kTau = 6.283185307179586;

// One struck bell-like tone `t` seconds after its stroke: partials that fade the faster the higher
// they are, with a soft attack.
double Tone(double frequency, double t) {
    if (t < 0) return 0;
    const double attack = t < 0.004 ? t / 0.004 : 1;
    return attack * (std::sin(kTau * frequency * t) * std::exp(-7 * t) +
                     0.35 * std::sin(kTau * frequency * 2 * t) * std::exp(-11 * t) +
                     0.12 * std::sin(kTau * frequency * 3 * t) * std::exp(-16 * t));
}

void Append(std::string& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
}

}  // namespace

std::string OrderSound() {
    const int samples = static_cast<int>(kRate * kSeconds);
    std::string data;
    for (int i = 0; i < samples; ++i) {
        const double t = static_cast<double>(i) / kRate;
        const double left = kSeconds - t;
        const double fade = left < 0.05 ? left / 0.05 : 1;  // no click at the end
        const double value = 0.42 * fade * (Tone(659.26, t) + Tone(987.77, t - 0.11));
        Append(data,
               static_cast<std::uint16_t>(
                   static_cast<std::int16_t>(std::lround(32767 * (value > 1    ? 1
                                                                  : value < -1 ? -1
                                                                               : value)))),
               2);
    }
    std::string wav = "RIFF";
    const auto length = static_cast<std::uint32_t>(data.size());
    Append(wav, 36 + length, 4);
    wav += "WAVEfmt ";
    Append(wav, 16, 4);         // length of this part
    Append(wav, 1, 2);          // plain samples
    Append(wav, 1, 2);          // channels
    Append(wav, kRate, 4);      // samples a second
    Append(wav, kRate * 2, 4);  // bytes a second
    Append(wav, 2, 2);          // bytes a sample
    Append(wav, 16, 2);         // bits a sample
    wav += "data";
    Append(wav, length, 4);
    return wav + data;
}

}  // namespace demovex::tools
