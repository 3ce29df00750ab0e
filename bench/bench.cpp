// What the parts of the bench share.
#include "bench.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>

namespace veldran::bench {
namespace {

constexpr int kRuns = 7;

void paint(std::uint8_t* pixels, int width, int height, double angle) {
    const double radius = std::min(width, height) * 0.35;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x, pixels += 3) {
            const double dx = (x - width / 2.0) / radius;
            const double dy = (y - height / 2.0) / radius;
            const bool border = x < 12 || y < 12 || x >= width - 12 || y >= height - 12;
            const double distance = std::hypot(dx, dy);
            double blue = border ? 96 : 40 + 120.0 * y / height;
            double green = border ? 96 : 20 + 60.0 * x / width;
            double red = border ? 96 : 30;
            if (!border && distance < 1) {
                const double light = 0.5 + 0.5 * std::cos(std::atan2(dy, dx) - angle);
                green = 40 + 200 * light * (1 - distance * distance / 2);
                red = 120 * light * distance;
                blue = 90 * (1 - light);
            }
            pixels[0] = static_cast<std::uint8_t>(blue);
            pixels[1] = static_cast<std::uint8_t>(green);
            pixels[2] = static_cast<std::uint8_t>(red);
        }
}

// At least so many, for a clock that may tick sixty times a second.
constexpr double kCopiedBytes = 4e8;

double medianSeconds(const std::function<void()>& run) {
    std::vector<double> seconds;
    for (int i = 0; i < kRuns; ++i) {
        const double start = processorSeconds();
        run();
        seconds.push_back(processorSeconds() - start);
    }
    std::ranges::sort(seconds);
    return seconds[kRuns / 2];
}

} // namespace

Scene::Scene(int width, int height, int frames) {
    const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    for (int i = 0; i < frames; ++i) {
        std::vector<std::uint8_t>& bytes = bytes_.emplace_back(3 * count);
        paint(bytes.data(), width, height, 6.2831853 * i / frames);
        views_.push_back({bytes.data(), width, height, 3 * static_cast<std::ptrdiff_t>(width), 24, nullptr});
    }
    pixels_ = static_cast<double>(count) * frames;
}

double processorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

void printTable(const std::string& title, std::span<const Stage> stages) {
    std::printf("%-36s %12s %12s %12s\n", title.c_str(), "ms/Mpixel", "ms/frame", "x copying");
    for (const Stage& stage : stages) {
        const double seconds = medianSeconds(stage.run);
        std::vector<char> from(static_cast<std::size_t>(stage.bytes), 1);
        std::vector<char> to(from.size());
        const int copies = std::max(20, static_cast<int>(kCopiedBytes / stage.bytes));
        const double copying = medianSeconds([&] {
            for (int i = 0; i < copies; ++i) {
                from[static_cast<std::size_t>(i) % from.size()] ^= 1;
                std::memcpy(to.data(), from.data(), from.size());
            }
        });
        std::printf("%-36s %12.2f %12.3f %12.1f\n", stage.name.c_str(), seconds * 1e9 / stage.pixels,
                    seconds * 1e3 / stage.frames, copying > 0 ? seconds * copies / copying : 0.0);
    }
    std::printf("\n");
}

} // namespace veldran::bench
