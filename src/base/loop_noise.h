// Chance that runs in a circle: values that change from frame to frame and, after the last frame, are back where they
// began. Nothing is stored, so any frame of an animation of any length can be asked for at once. Core: knows no
// windows.
#pragma once

#include "base/runtime_random.h"

#include <algorithm>
#include <cstdint>

namespace veldran {

class LoopNoise {
public:
    // The same seed gives the same values everywhere. `frames` is 1 or more.
    LoopNoise(std::uint32_t seed, int frames) : seed_(seed), frames_(frames) {}

    // -1 to 1: a random value is held for about `hold` frames, then the next one of the `stream` takes its place.
    double held(std::uint32_t stream, int frame, int hold) const {
        const Place at = placeOf(frame, hold);
        return keyValue(stream, at.key);
    }

    // The same values, with a smooth way from each to the next one.
    double smooth(std::uint32_t stream, int frame, int hold) const {
        const Place at = placeOf(frame, hold);
        const double from = keyValue(stream, at.key);
        const double to = keyValue(stream, (at.key + 1) % at.keys);
        return from + (to - from) * at.part * at.part * (3 - 2 * at.part);
    }

    // -1 to 1, the same in all frames.
    double constant(std::uint32_t stream) const { return keyValue(stream, 0); }

private:
    struct Place {
        std::uint32_t key;
        std::uint32_t keys;
        double part; // of the way to the next key
    };

    // Whole numbers up to here, so that frame and frame + frames() are the same place to the last bit.
    Place placeOf(int frame, int hold) const {
        const std::int64_t keys = std::max((frames_ + hold / 2) / std::max(hold, 1), 1);
        const std::int64_t position = ((frame % frames_ + frames_) % frames_) * keys;
        return {static_cast<std::uint32_t>(position / frames_), static_cast<std::uint32_t>(keys),
                static_cast<double>(position % frames_) / frames_};
    }

    // Neighbouring seeds of the generator give similar first numbers: stream and key are stirred in before.
    double keyValue(std::uint32_t stream, std::uint32_t key) const {
        std::uint32_t state = seed_;
        for (const std::uint32_t number : {stream, key}) {
            state = (state ^ number) * 0x9E3779B1u; // 2^32 divided by the golden ratio
            state ^= state >> 15;
        }
        return RuntimeRandom(state).next() / 16383.5 - 1;
    }

    std::uint32_t seed_;
    int frames_;
};

} // namespace veldran
