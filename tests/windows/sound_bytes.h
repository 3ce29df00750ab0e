// Sound files that tests write.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace recording {

inline std::string little(std::uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(value >> (8 * i) & 255);
    return text;
}

// A chunk with its padding.
inline std::string chunk(const std::string& name, const std::string& body) {
    return name + little(static_cast<std::uint32_t>(body.size()), 4) + body + (body.size() % 2 != 0 ? "!" : "");
}

inline std::string riff(const std::string& chunks, const std::string& form = "WAVE") {
    return chunk("RIFF", form + chunks);
}

inline std::string formatBody(std::uint32_t tag, std::uint32_t channels = 1, std::uint32_t rate = 8000,
                              std::uint32_t bits = 8) {
    const std::uint32_t alignment = channels * bits / 8;
    return little(tag, 2) + little(channels, 2) + little(rate, 4) + little(rate * alignment, 4) + little(alignment, 2) +
           little(bits, 2);
}

// The bytes of a PCM file of two channels; `samples` are its data, `rate` pairs
// of them a second.
inline std::string stereoSound(std::uint32_t rate, std::uint32_t bits, const std::string& samples) {
    return riff(chunk("fmt ", formatBody(1, 2, rate, bits)) + chunk("data", samples));
}

// A sound for meters: 8 bits at 1000 pairs a second, 100 pairs for each of the
// levels, which are those of the left channel; the right one has them in
// reverse.
inline std::string levelSound(std::span<const int> levels) {
    std::string samples;
    for (std::size_t i = 0; i < levels.size(); ++i)
        for (int pair = 0; pair < 100; ++pair)
            for (const int level : {levels[i], levels[levels.size() - 1 - i]})
                samples += static_cast<char>(127 + level / 2);
    return stereoSound(1000, 8, samples);
}

} // namespace recording
