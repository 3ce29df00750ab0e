// quantize FRAMES_DIR OUT_DIR [--colours N] [--dither]: reads numbered PNG frames, gives them one palette, writes them
// as indexed PNG files of the same names and prints the seconds of the reduction alone, so that other programs can be
// compared on the same frames.
#include "bench.h"

#include "colour/quantizer.h"
#include "colour/remap.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <png.h>

namespace veldran::bench {
namespace {

namespace fs = std::filesystem;

struct Frame {
    std::string name;
    int width;
    int height;
    std::vector<std::uint8_t> pixels;  // blue, green, red
    std::vector<std::uint8_t> indices; // the result

    ConstImageView source() const { return {pixels.data(), width, height, 3L * width, 24, nullptr}; }
    ImageView target() { return {indices.data(), width, height, width, 8, nullptr}; }
};

struct Choice {
    fs::path in;
    fs::path out;
    int colours = 256;
    Dithering dithering = Dithering::None;
};

class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

Choice readArguments(std::span<char*> arguments) {
    std::vector<fs::path> folders;
    Choice choice;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string argument = arguments[i];
        if (argument == "--dither")
            choice.dithering = Dithering::ErrorDiffusion;
        else if (argument == "--colours" && i + 1 < arguments.size())
            choice.colours = static_cast<int>(std::strtol(arguments[++i], nullptr, 10));
        else
            folders.emplace_back(argument);
    }
    if (folders.size() != 2 || choice.colours < 1 || choice.colours > 256)
        throw UsageError("bench quantize FRAMES_DIR OUT_DIR [--colours 1-256] [--dither]");
    choice.in = folders[0];
    choice.out = folders[1];
    return choice;
}

Frame readFrame(const fs::path& path) {
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&png, path.c_str()) == 0)
        throw std::runtime_error(path.string() + ": " + png.message);
    png.format = PNG_FORMAT_BGR;
    Frame frame{path.filename().string(), static_cast<int>(png.width), static_cast<int>(png.height), {}, {}};
    frame.pixels.resize(PNG_IMAGE_SIZE(png));
    frame.indices.resize(std::size_t{png.width} * png.height);
    const png_color black{};
    if (png_image_finish_read(&png, &black, frame.pixels.data(), 0, nullptr) == 0)
        throw std::runtime_error(path.string() + ": " + png.message);
    return frame;
}

std::vector<Frame> readFrames(const fs::path& folder) {
    std::vector<fs::path> paths;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        if (entry.path().extension() == ".png")
            paths.push_back(entry.path());
    std::ranges::sort(paths);
    std::vector<Frame> frames;
    frames.reserve(paths.size());
    for (const fs::path& path : paths)
        frames.push_back(readFrame(path));
    if (frames.empty())
        throw std::runtime_error("No PNG files in " + folder.string());
    return frames;
}

void writeFrame(const fs::path& path, const Frame& frame, const Palette& palette) {
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(frame.width);
    png.height = static_cast<png_uint_32>(frame.height);
    png.format = PNG_FORMAT_RGB_COLORMAP;
    png.colormap_entries = static_cast<png_uint_32>(palette.size());
    if (png_image_write_to_file(&png, path.c_str(), 0, frame.indices.data(), 0, palette.data()) == 0)
        throw std::runtime_error(path.string() + ": " + png.message);
}

} // namespace

int quantize(std::span<char*> arguments) try {
    const Choice choice = readArguments(arguments);
    std::vector<Frame> frames = readFrames(choice.in);
    std::vector<ConstImageView> sources;
    std::vector<RemapPair> pairs;
    double pixels = 0;
    for (Frame& frame : frames) {
        sources.push_back(frame.source());
        pairs.push_back({frame.source(), frame.target()});
        pixels += static_cast<double>(frame.indices.size());
    }
    Palette palette{};
    const double start = processorSeconds();
    const bool dither = choice.dithering == Dithering::ErrorDiffusion;
    const std::optional<int> colours = optimalPalette({sources, choice.colours, {}, dither}, palette);
    if (!colours)
        throw std::bad_alloc();
    const double middle = processorSeconds();
    Remapper(palette, *colours, choice.dithering).remap(pairs);
    const double end = processorSeconds();
    std::printf(
        "palette %.4f s  %.2f ns per pixel\nmapping %.4f s  %.2f ns per pixel\nall     %.4f s  %.2f ns per pixel\n",
        middle - start, (middle - start) / pixels * 1e9, end - middle, (end - middle) / pixels * 1e9, end - start,
        (end - start) / pixels * 1e9);
    fs::create_directories(choice.out);
    for (const Frame& frame : frames)
        writeFrame(choice.out / frame.name, frame, palette);
    return 0;
} catch (const UsageError& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 2;
} catch (const std::exception& error) {
    std::fprintf(stderr, "bench: %s\n", error.what());
    return 1;
}

} // namespace veldran::bench
