// Small animations of any pixels: what the writers make of them must show the same when it is read back. Bytes: sides,
// frames, plays, then for each frame its delay and the areas that change in it, a byte that is missing being 0.
#include "animation_files.h"

#include "formats/png/png_coding.h"

#include <array>
#include <random>

using namespace stage;
using fuzz::Input;
using fuzz::mustHold;

namespace {

enum class Content : unsigned { Colour, Hole, Greys, Colours, ManyColours, HalfOpaque };

void changeArea(Input& input, Picture& picture) {
    const std::uint32_t x = input.number(picture.width - 1), y = input.number(picture.height - 1);
    const std::uint32_t width = 1 + input.number(picture.width - x - 1);
    const std::uint32_t height = 1 + input.number(picture.height - y - 1);
    const auto content = static_cast<Content>(input.number(5));
    const auto bytes = input.take<std::array<std::uint8_t, 4>>();
    std::minstd_rand random(bytes[0]);
    const auto noise = [&] { return static_cast<std::uint8_t>(random() >> 8); };
    for (std::uint32_t i = 0; i < width * height; ++i) {
        const std::uint8_t red = content == Content::Colour ? bytes[1] : noise() & bytes[1];
        Rgb colour{red, bytes[2], bytes[3]};
        if (content == Content::Greys)
            colour = {red, red, red};
        if (content == Content::ManyColours)
            colour = {red, noise(), noise()};
        const std::uint8_t opacity = content == Content::Hole ? 0 : content == Content::HalfOpaque ? noise() : 255;
        picture.pixels[(y + i / width) * picture.width + x + i % width] = pixelOf(colour, opacity);
    }
}

Animation takeAnimation(Input& input) {
    Animation animation;
    animation.width = 1 + input.number(19);
    animation.height = 1 + input.number(19);
    const std::size_t frames = 1 + input.number(4);
    animation.plays = input.take<std::uint16_t>();
    Picture picture{animation.width, animation.height, {}};
    picture.pixels.resize(std::size_t{picture.width} * picture.height, pixelOf({}));
    while (animation.frames.size() < frames) {
        const std::uint32_t delay = input.number(255) * 10;
        for (unsigned areas = input.number(3); areas > 0; --areas)
            changeArea(input, picture);
        animation.frames.push_back(frameOf(picture));
        animation.frames.back().delay = delay;
    }
    animation.comment = "comment";
    animation.made = Remembered{"MainEffect = 1\n", "A,1,2\n"};
    return animation;
}

void checkStills(const Animation& animation) {
    for (const Frame& frame : animation.frames) {
        const AnimationFile file = readAnimation(encodePng(frame, animation.comment, animation.made));
        mustHold(file.format == OutputFormat::Png && file.animation.frames.size() == 1, "a still is one picture");
        mustHold(pictureOf(file.animation.frames[0]) == pictureOf(frame), "a still comes back");
        mustHold(file.animation.comment == animation.comment, "a comment comes back");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const Animation animation = takeAnimation(input);
    for (const OutputFormat format : {OutputFormat::Gif, OutputFormat::Apng, OutputFormat::Mng})
        fuzz::mustComeBack(animation, format);
    checkStills(animation);
    return 0;
}
