// The stages that work on pixels alone, for whoever measures them.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace veldran::bench {

struct PixelStage {
    std::string name;
    std::size_t bytes;         // read and written by one run; pixels that a filter reads and writes count twice
    std::function<void()> run; // owns its images; every run does the same work
};

// All stages, on images of `width` x `height`: both at least 48. Made from a fixed seed.
std::vector<PixelStage> pixelStages(int width, int height);

} // namespace veldran::bench
