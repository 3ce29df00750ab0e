// Joining equal frames and walking through the rest; see the header.
#include "formats/steps.h"

#include <limits>

namespace stage {

std::vector<Step> writtenSteps(const Animation& animation, OutputFormat format) {
    const std::vector<std::uint32_t> delays = storedDelays(animation, format);
    const auto pictureAt = [&](std::size_t i) { return pictureOf(animation.frames[i]); };
    constexpr std::uint32_t kLongest = std::numeric_limits<std::uint32_t>::max();
    if (format != OutputFormat::Png)
        return joinedSteps(animation, pictureAt, delays, kLongest);
    std::vector<Step> steps;
    for (std::size_t i = 0; i < delays.size(); ++i)
        steps.push_back({i, delays[i]});
    return steps;
}

FrameTimes frameTimes(const Animation& animation, OutputFormat format) {
    FrameTimes times;
    times.stored = storedDelays(animation, format);
    times.inBrowsers = times.stored;
    std::vector<std::uint32_t> delays;
    for (const Step& step : writtenSteps(animation, format)) {
        delays.push_back(step.delay);
        if (format != OutputFormat::Png)
            times.inBrowsers[step.frame] += delayInBrowsers(step.delay) - step.delay;
    }
    times.whole = playingTime(delays);
    return times;
}

std::vector<Step> joinedSteps(const Animation& animation, const PictureAt& pictureAt,
                              std::span<const std::uint32_t> delays, std::uint32_t longestDelay) {
    std::vector<Step> steps;
    Picture last;
    for (std::size_t i = 0; i < animation.frames.size(); ++i) {
        Picture picture = pictureAt(i);
        if (!steps.empty() && picture == last && delays[i] <= longestDelay &&
            steps.back().delay <= longestDelay - delays[i]) {
            steps.back().delay += delays[i];
            continue;
        }
        steps.push_back({i, delays[i]});
        last = std::move(picture);
    }
    return steps;
}

bool writeSteps(std::span<const Step> steps, const PictureAt& pictureAt, const WriteProgress& progress,
                const std::function<void(const Step&, const Picture&, const Picture* next)>& write) {
    Picture picture = pictureAt(steps.front().frame);
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (progress && !progress(i, steps.size()))
            return false;
        const bool isLast = i + 1 == steps.size();
        Picture next = isLast ? Picture{} : pictureAt(steps[i + 1].frame);
        write(steps[i], picture, isLast ? nullptr : &next);
        picture = std::move(next); // NOLINT(clang-analyzer-cplusplus.Move): another one each time round
    }
    return true;
}

} // namespace stage
