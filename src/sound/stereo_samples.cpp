// One loop for each layout; memory order of this processor family is the file's.
#include "sound/stereo_samples.h"

#include <algorithm>
#include <cstring>

namespace veldran {
namespace {

std::int16_t fromByte(std::uint8_t value) {
    return static_cast<std::int16_t>((value - kByteMidpoint) * 256);
}

std::int16_t wordAt(const std::uint8_t* bytes) {
    std::int16_t value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

StereoPair pairAt(SampleLayout layout, const std::uint8_t* bytes) {
    switch (layout) {
    case SampleLayout::Mono8:
        return {fromByte(bytes[0]), fromByte(bytes[0])};
    case SampleLayout::Stereo8:
        return {fromByte(bytes[0]), fromByte(bytes[1])};
    case SampleLayout::Mono16:
        return {wordAt(bytes), wordAt(bytes)};
    case SampleLayout::Stereo16:
        return {wordAt(bytes), wordAt(bytes + sizeof(std::int16_t))};
    }
    return {};
}

template <SampleLayout kLayout>
void readPairs(const std::uint8_t* from, std::span<StereoPair> to) {
    for (StereoPair& pair : to) {
        pair = pairAt(kLayout, from);
        from += sampleStride(kLayout);
    }
}

void readWhole(SampleLayout layout, const std::uint8_t* from, std::span<StereoPair> to) {
    switch (layout) {
    case SampleLayout::Mono8:
        return readPairs<SampleLayout::Mono8>(from, to);
    case SampleLayout::Stereo8:
        return readPairs<SampleLayout::Stereo8>(from, to);
    case SampleLayout::Mono16:
        return readPairs<SampleLayout::Mono16>(from, to);
    case SampleLayout::Stereo16:
        return readPairs<SampleLayout::Stereo16>(from, to);
    }
}

} // namespace

std::optional<SampleLayout> sampleLayout(const WaveFormat& format) {
    if (format.channels != 1 && format.channels != 2)
        return std::nullopt;
    const bool stereo = format.channels == 2;
    if (format.bitsPerSample == 8)
        return stereo ? SampleLayout::Stereo8 : SampleLayout::Mono8;
    if (format.bitsPerSample == 16)
        return stereo ? SampleLayout::Stereo16 : SampleLayout::Mono16;
    return std::nullopt;
}

void StereoSamples::read(std::size_t first, std::span<StereoPair> to) const {
    const std::size_t begin = std::min(first, size());
    const std::size_t whole = std::min(to.size(), size() - begin);
    readWhole(layout_, bytes_.data() + begin * sampleStride(layout_), to.first(whole));
    std::ranges::fill(to.subspan(whole), StereoPair{});
    const std::size_t rest = bytes_.size() % sampleStride(layout_);
    const bool reachesEnd = first <= size() && whole < to.size();
    if (layout_ == SampleLayout::Stereo16 && reachesEnd && rest >= sizeof(std::int16_t)) // a left sample on its own
        to[whole].left = wordAt(bytes_.data() + bytes_.size() - rest);
}

WaveFormat stereoFormat(const WaveFormat& format) {
    WaveFormat stereo = format;
    if (sampleLayout(format) == SampleLayout::Stereo16)
        return stereo;
    stereo.channels = 2;
    stereo.bitsPerSample = 16;
    stereo.blockAlignment = static_cast<std::uint16_t>(format.blockAlignment * 2);
    stereo.averageBytesPerSecond = stereo.blockAlignment * format.samplesPerSecond;
    return stereo;
}

} // namespace veldran
