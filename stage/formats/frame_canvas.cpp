// Drawing of parts; see the header.
#include "formats/frame_canvas.h"

#include "base/byte_cursor.h"

#include <algorithm>

namespace stage {
namespace {

// Over what may be half opaque itself, with colours that are not multiplied by their opacity.
Pixel over(Pixel upper, Pixel lower) {
    const std::uint32_t a = opacityOf(upper);
    if (a == 255 || opacityOf(lower) == 0)
        return upper;
    if (a == 0)
        return lower;
    const std::uint32_t under = opacityOf(lower) * (255 - a); // in 1/255
    const std::uint32_t both = a * 255 + under;
    const auto mixed = [&](std::uint8_t u, std::uint8_t l) {
        return static_cast<std::uint8_t>((u * a * 255 + l * under + both / 2) / both);
    };
    const Rgb u = rgbOf(upper);
    const Rgb l = rgbOf(lower);
    return pixelOf({mixed(u.red, l.red), mixed(u.green, l.green), mixed(u.blue, l.blue)}, (both + 127) / 255);
}

} // namespace

FrameCanvas::FrameCanvas(std::uint32_t width, std::uint32_t height, const ReadOptions& options)
    : pixelsLeft_(options.pixels), progress_(options.progress) {
    requireOfFile(width >= 1 && height >= 1, "its picture has no pixels");
    requireOfFile(width <= kLargestSide && height <= kLargestSide, "its picture is larger than 65535 pixels a side");
    canvas_ = {width, height, {}};
    reserve(0);
    canvas_.pixels.resize(std::size_t{width} * height, kTransparentPixel);
}

void FrameCanvas::reserve(std::uint64_t partPixels) {
    const std::uint64_t wanted = partPixels + std::uint64_t{canvas_.width} * canvas_.height;
    if (wanted > pixelsLeft_)
        throw Failure(ExitCode::FileTrouble, "The file holds more pixels than this program takes.");
    pixelsLeft_ -= wanted - partPixels; // the part itself is freed again
}

Frame FrameCanvas::show(const StoredFrame& stored, const Picture& part) {
    const Picture before = stored.disposal == Disposal::Restore ? canvas_ : Picture{};
    const std::uint32_t left = std::min(stored.x, canvas_.width);
    const std::uint32_t top = std::min(stored.y, canvas_.height);
    const Area seen{left, top, std::min(stored.width, canvas_.width - left),
                    std::min(stored.height, canvas_.height - top)};
    for (std::uint32_t y = 0; y < seen.height; ++y) {
        Pixel* to = canvas_.pixels.data() + std::size_t{seen.y + y} * canvas_.width + seen.x;
        const Pixel* from = part.pixels.data() + std::size_t{y} * part.width;
        for (std::uint32_t x = 0; x < seen.width; ++x)
            to[x] = stored.blend == Blend::Replace ? from[x] : over(from[x], to[x]);
    }
    Frame frame = frameOf(canvas_);
    frame.delay = stored.delay;
    if (stored.disposal == Disposal::Restore)
        canvas_ = before;
    else if (stored.disposal == Disposal::Clear)
        fill(canvas_, seen, kTransparentPixel);
    bytes_ += stored.bytes;
    if (progress_ && !progress_(bytes_))
        throw Failure(ExitCode::FileTrouble, "Reading was stopped.");
    return frame;
}

} // namespace stage
