// Joining equal frames and walking through the rest; see the header.
#include "core/steps.h"

namespace stage {

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
        picture = std::move(next);
    }
    return true;
}

} // namespace stage
