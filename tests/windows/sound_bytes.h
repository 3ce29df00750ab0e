// Sound files that tests write.
#pragma once

#include <cstdint>
#include <string>

namespace recording {

// The bytes of a PCM file of two channels; `samples` are its data, `rate` pairs of them a second.
inline std::string stereoSound(std::uint32_t rate, std::uint32_t bits, const std::string& samples) {
    const auto little = [](std::uint32_t value, int bytes) {
        std::string text;
        for (int i = 0; i < bytes; ++i)
            text += static_cast<char>(value >> 8 * i & 255);
        return text;
    };
    const std::uint32_t pair = bits / 4;
    const std::string body = "WAVEfmt " + little(16, 4) + little(1, 2) + little(2, 2) + little(rate, 4) +
                             little(rate * pair, 4) + little(pair, 2) + little(bits, 2) + "data" +
                             little(static_cast<std::uint32_t>(samples.size()), 4) + samples;
    return "RIFF" + little(static_cast<std::uint32_t>(body.size()), 4) + body;
}

} // namespace recording
