// Differences of moments; see the header.
#include "commands/stage_clock.h"

#include <utility>

namespace stage {

void StageClock::begin(std::string_view name, Moment now) {
    if (!stages_.empty()) {
        if (stages_.back().name == name)
            return;
        finish(now);
    }
    stages_.push_back({std::string(name)});
    since_ = now;
}

std::vector<StageTime> StageClock::finish(Moment now) {
    if (!stages_.empty())
        stages_.back().seconds += std::chrono::duration<double>(now - std::exchange(since_, now)).count();
    return stages_;
}

} // namespace stage
