// Integers throughout: a float would show 0.29 s as 28 hundredths.
#include "sound/wave_summary.h"

namespace veldran {
namespace {

constexpr std::uint64_t kHundredthsPerSecond = 100;
constexpr std::uint64_t kMillisecondsPerSecond = 1000;
constexpr std::uint64_t kSecondsPerMinute = 60;
constexpr std::uint32_t kHertzPerKilohertz = 1000;

// In parts of a second of which there are `perSecond`.
std::uint64_t playingParts(const WaveFormat& format, std::size_t dataBytes, std::uint64_t perSecond) {
    const std::uint64_t bytesPerSecond = std::uint64_t{format.blockAlignment} * format.samplesPerSecond;
    if (bytesPerSecond == 0)
        return 0;
    // A file's lengths have 32 bits, so the product stays below 2^42.
    return std::uint64_t{dataBytes} * perSecond / bytesPerSecond;
}

const char* channelName(const WaveFormat& format) {
    return format.channels == 1 ? "Mono" : "Stereo";
}

// Kilohertz with one decimal, rounded down.
std::string rateText(std::uint32_t hertz) {
    const std::uint32_t tenths = hertz % kHertzPerKilohertz / (kHertzPerKilohertz / 10);
    return std::to_string(hertz / kHertzPerKilohertz) + "." + std::to_string(tenths) + " kHz";
}

// At least two digits.
std::string twoDigits(std::uint64_t number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

// Minutes, seconds and hundredths; minutes grow beyond two digits where they must.
std::string timeText(std::uint64_t hundredths) {
    const std::uint64_t seconds = hundredths / kHundredthsPerSecond;
    return twoDigits(seconds / kSecondsPerMinute) + ":" + twoDigits(seconds % kSecondsPerMinute) + "." +
           twoDigits(hundredths % kHundredthsPerSecond);
}

} // namespace

std::uint64_t playingHundredths(const WaveFormat& format, std::size_t dataBytes) {
    return playingParts(format, dataBytes, kHundredthsPerSecond);
}

std::uint64_t playingMilliseconds(const WaveFormat& format, std::size_t dataBytes) {
    return playingParts(format, dataBytes, kMillisecondsPerSecond);
}

std::string waveFigures(const WaveFormat& format, std::size_t dataBytes) {
    return std::string(channelName(format)) + ", " + rateText(format.samplesPerSecond) + ", " +
           timeText(playingHundredths(format, dataBytes));
}

std::string waveSummary(std::string_view fileName, const WaveFormat& format, std::size_t dataBytes) {
    return std::string(fileName) + "\n\nChannels: " + channelName(format) +
           "\nSample rate: " + rateText(format.samplesPerSecond) +
           "\nPlaying time: " + timeText(playingHundredths(format, dataBytes));
}

} // namespace veldran
