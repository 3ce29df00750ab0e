// What the parts of the bench share: pictures to work on, a stop watch, a table.
#pragma once

#include "render/image_view.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace veldran::bench {

// Frames of 24 bits like those of an instrument: a shaded disc turns on a still gradient with a flat border. Bottom-up
// rows without padding.
class Scene {
public:
    Scene(int width, int height, int frames);
    std::span<const ConstImageView> frames() const { return views_; }
    double pixels() const { return pixels_; } // of all frames

private:
    std::vector<std::vector<std::uint8_t>> bytes_;
    std::vector<ConstImageView> views_;
    double pixels_ = 0;
};

// One stage of the way of the pixels.
struct Stage {
    std::string name;
    double pixels;             // that one run works on
    double bytes;              // that one run touches; as many are copied to compare
    int frames;                // that the pixels are spread over
    std::function<void()> run; // does the work once
};

// Runs each stage several times and prints a table: milliseconds per megapixel, milliseconds per frame, and the ratio
// to copying as many bytes; medians of processor time.
void printTable(const std::string& title, std::span<const Stage> stages);

// Processor seconds of this program so far.
double processorSeconds();

// The groups. Each prints its table.
void benchColours();
void benchPixels();
void benchSound();
#ifdef __MINGW32__
// A row for one of the instruments, 0 to 19, from a whole build of it; its figures are explained by the header.
void printBuildHeader();
void benchBuild(int effect);
#endif

#ifdef VELDRAN_BENCH_PNG
// quantize FRAMES_DIR OUT_DIR [--colours N] [--dither]. Returns the exit code.
int quantize(std::span<char*> arguments);
#endif

} // namespace veldran::bench
