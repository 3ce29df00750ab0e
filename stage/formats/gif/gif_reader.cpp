// The blocks of GIF in the order in which they come. A file that lacks its trailer is taken; one that ends inside a
// block is not.
#include "formats/gif/gif_reader.h"

#include "base/byte_cursor.h"
#include "document/timing.h"
#include "formats/frame_canvas.h"
#include "formats/gif/lzw.h"

#include <algorithm>
#include <string_view>

namespace stage {
namespace {

constexpr std::size_t kSignatureBytes = 6;

std::string_view textOf(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

class GifReader {
public:
    GifReader(std::span<const std::uint8_t> bytes, const ReadOptions& options)
        : bytes_(bytes.subspan(kSignatureBytes)), canvas_(readScreen(options)) {}

    AnimationFile read() {
        for (bool ended = bytes_.left() == 0; !ended;) {
            switch (bytes_.byte()) {
            case 0x2C:
                readImage();
                break;
            case 0x21:
                readExtension();
                break;
            case 0x3B:
                ended = true;
                break;
            default:
                requireOfFile(false, "it has a block of an unknown kind");
            }
            ended = ended || bytes_.left() == 0;
        }
        requireOfFile(!file_.stored.empty(), "it has no frames");
        return std::move(file_);
    }

private:
    FrameCanvas readScreen(const ReadOptions& options) {
        const std::uint32_t width = bytes_.littleShort();
        const std::uint32_t height = bytes_.littleShort();
        file_.format = OutputFormat::Gif;
        file_.animation.width = width;
        file_.animation.height = height;
        file_.animation.plays = 1; // until an extension says otherwise
        const std::uint8_t flags = bytes_.byte();
        const std::uint8_t background = bytes_.byte();
        bytes_.byte();
        if (flags & 0x80)
            global_ = readPalette(flags);
        if (background < global_.size())
            file_.animation.background = rgbOf(global_[background]);
        return {width, height, options};
    }

    std::vector<Pixel> readPalette(std::uint8_t flags) {
        std::vector<Pixel> palette(std::size_t{2} << (flags & 7));
        for (Pixel& entry : palette) {
            const auto c = bytes_.take(3);
            entry = pixelOf({c[0], c[1], c[2]});
        }
        return palette;
    }

    std::vector<std::uint8_t> readSubBlocks() {
        std::vector<std::uint8_t> data;
        for (std::uint8_t count = bytes_.byte(); count != 0; count = bytes_.byte()) {
            const auto block = bytes_.take(count);
            data.insert(data.end(), block.begin(), block.end());
        }
        return data;
    }

    void readExtension() {
        const std::uint8_t label = bytes_.byte();
        const std::vector<std::uint8_t> data = readSubBlocks();
        if (label == 0xF9) {
            requireOfFile(data.size() >= 4, "a graphic control block is too short");
            readControl(data);
        } else if (label == 0xFE) {
            readComment(textOf(data));
        } else if (label == 0xFF && textOf(data).starts_with("NETSCAPE2.0") && data.size() >= 14 && data[11] == 1) {
            const std::uint32_t more = data[12] | std::uint32_t{data[13]} << 8;
            file_.animation.plays = more == 0 ? 0 : more + 1;
        }
    }

    void readControl(std::span<const std::uint8_t> data) {
        constexpr std::array kDisposals = {Disposal::Keep, Disposal::Keep, Disposal::Clear, Disposal::Restore};
        const unsigned disposal = data[0] >> 2 & 7u;
        next_.disposal = disposal < kDisposals.size() ? kDisposals[disposal] : Disposal::Keep;
        next_.delay = millisecondsFromHundredths(data[1] | std::uint32_t{data[2]} << 8);
        hole_ = data[0] & 1 ? std::optional(data[3]) : std::nullopt;
    }

    void readComment(std::string_view text) {
        if (auto made = rememberedFrom(text))
            file_.animation.made = std::move(made);
        else
            file_.animation.comment += text;
    }

    void readImage() {
        next_.x = bytes_.littleShort();
        next_.y = bytes_.littleShort();
        next_.width = bytes_.littleShort();
        next_.height = bytes_.littleShort();
        next_.blend = Blend::Over;
        requireOfFile(next_.width >= 1 && next_.height >= 1, "a frame has no pixels");
        const std::uint8_t flags = bytes_.byte();
        const std::vector<Pixel> local = flags & 0x80 ? readPalette(flags) : std::vector<Pixel>();
        const std::vector<Pixel>& palette = local.empty() ? global_ : local;
        requireOfFile(!palette.empty(), "a frame has no palette");
        next_.colours = static_cast<std::uint32_t>(palette.size());
        const std::uint8_t codeSize = bytes_.byte();
        requireOfFile(codeSize >= 1 && codeSize <= 8, "a frame's codes have a size that does not exist");
        const std::vector<std::uint8_t> packed = readSubBlocks();
        next_.bytes = packed.size();
        const Picture part = readPixels(packed, codeSize, palette, (flags & 0x40) != 0);
        file_.animation.frames.push_back(canvas_.show(next_, part));
        file_.stored.push_back(next_);
        next_ = {};
        hole_.reset();
    }

    // Rows of an interlaced picture come in four passes: every eighth row, the ones between, and so on.
    std::vector<std::uint32_t> rowOrder(bool interlaced) const {
        struct Pass {
            std::uint32_t first, step;
        };
        constexpr Pass kInPasses[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
        constexpr Pass kInOrder[] = {{0, 1}};
        std::vector<std::uint32_t> rows;
        for (const Pass& pass : interlaced ? std::span<const Pass>(kInPasses) : std::span<const Pass>(kInOrder))
            for (std::uint32_t y = pass.first; y < next_.height; y += pass.step)
                rows.push_back(y);
        return rows;
    }

    Picture readPixels(std::span<const std::uint8_t> packed, unsigned codeSize, std::span<const Pixel> palette,
                       bool interlaced) {
        const std::size_t count = std::size_t{next_.width} * next_.height;
        canvas_.reserve(count);
        const auto indices = expandLzw(packed, codeSize, count);
        requireOfFile(indices.has_value(), "a frame's pixels hold a code that was not defined");
        requireOfFile(indices->size() == count, "a frame has fewer pixels than its size says");
        Picture part{next_.width, next_.height, std::vector<Pixel>(count)};
        const std::uint8_t* from = indices->data();
        for (const std::uint32_t y : rowOrder(interlaced))
            for (std::uint32_t x = 0; x < next_.width; ++x, ++from) {
                requireOfFile(*from < palette.size() || *from == hole_, "a pixel lies outside the palette");
                part.pixels[std::size_t{y} * next_.width + x] = *from == hole_ ? kTransparentPixel : palette[*from];
            }
        return part;
    }

    ByteCursor bytes_;
    AnimationFile file_;
    std::vector<Pixel> global_;
    StoredFrame next_;
    std::optional<std::uint8_t> hole_;
    FrameCanvas canvas_; // made last, from the screen's description
};

} // namespace

bool isGif(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < kSignatureBytes)
        return false;
    const std::string_view signature = textOf(bytes.first(kSignatureBytes));
    return signature == "GIF89a" || signature == "GIF87a";
}

AnimationFile readGif(std::span<const std::uint8_t> bytes, const ReadOptions& options) {
    return GifReader(bytes, options).read();
}

} // namespace stage
