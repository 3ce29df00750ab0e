// Where the time of a render goes: the moments at which its stages begin, one after the other.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace stage {

struct StageTime {
    std::string name;
    double seconds = 0;

    bool operator==(const StageTime&) const = default;
};

class StageClock {
public:
    using Moment = std::chrono::steady_clock::time_point;

    // Ends the stage before. The same name again goes on with its stage.
    void begin(std::string_view name, Moment now = std::chrono::steady_clock::now());
    // Ends the last stage. In the order in which they began.
    std::vector<StageTime> finish(Moment now = std::chrono::steady_clock::now());

private:
    std::vector<StageTime> stages_;
    Moment since_;
};

} // namespace stage
