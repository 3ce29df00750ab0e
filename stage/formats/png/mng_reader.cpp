// The chunks of MNG 1.0 that an animation of whole or partial pictures needs; see the header.
#include "formats/png/mng_reader.h"

#include "formats/frame_canvas.h"
#include "formats/png/png_chunks.h"
#include "formats/png/png_coding.h"

#include <algorithm>

namespace stage {
namespace {

// Chunks that change nothing of what a file of low complexity shows.
constexpr std::array<std::string_view, 4> kWithoutEffect = {"BACK", "SAVE", "SEEK", "nEED"};

class MngReader {
public:
    MngReader(std::span<const std::uint8_t> bytes, const ReadOptions& options)
        : bytes_(bytes.subspan(std::size(kMngSignature))), canvas_(readStart(options)) {}

    AnimationFile read() {
        for (Chunk chunk = nextChunk(bytes_); chunk.type != "MEND"; chunk = nextChunk(bytes_))
            readChunk(chunk);
        requireOfFile(!file_.stored.empty(), "it has no frames");
        return std::move(file_);
    }

private:
    FrameCanvas readStart(const ReadOptions& options) {
        const Chunk chunk = nextChunk(bytes_);
        requireOfFile(chunk.type == "MHDR" && chunk.data.size() >= 28, "it does not begin with a header");
        ByteCursor bytes(chunk.data);
        const std::uint32_t width = bytes.bigNumber();
        const std::uint32_t height = bytes.bigNumber();
        ticksPerSecond_ = bytes.bigNumber();
        file_.format = OutputFormat::Mng;
        file_.animation.width = width;
        file_.animation.height = height;
        file_.animation.plays = 1;
        return {width, height, options};
    }

    void readChunk(const Chunk& chunk) {
        if (chunk.type == "IHDR")
            readImage(chunk);
        else if (chunk.type == "PLTE")
            global_.palette.assign(chunk.data.begin(), chunk.data.end());
        else if (chunk.type == "tRNS")
            global_.transparency.assign(chunk.data.begin(), chunk.data.end());
        else if (chunk.type == "TERM")
            readTermination(chunk.data);
        else if (chunk.type == "FRAM")
            readFraming(chunk.data);
        else if (chunk.type == "DEFI")
            readPlace(chunk.data);
        else if (std::ranges::find(kWithoutEffect, chunk.type) == kWithoutEffect.end()) {
            if (chunk.isCritical())
                throw Failure(
                    ExitCode::FileTrouble,
                    "The file uses a feature of MNG that this program does not know: " + std::string(chunk.type) + ".");
            readText(chunk, file_.animation);
        }
    }

    void readTermination(std::span<const std::uint8_t> data) {
        constexpr std::uint8_t kRepeat = 3;
        constexpr std::uint32_t kForever = 0x7FFFFFFF;
        ByteCursor bytes(data);
        if (bytes.byte() != kRepeat)
            return;
        bytes.take(5); // what follows the last time, and a delay
        const std::uint32_t plays = bytes.bigNumber();
        file_.animation.plays = plays == kForever ? 0 : plays;
    }

    // An empty chunk ends a part of the animation without changing anything.
    void readFraming(std::span<const std::uint8_t> data) {
        if (data.empty())
            return;
        ByteCursor bytes(data);
        const std::uint8_t mode = bytes.byte();
        requireOfFile(mode <= 4, "its frames are put together in a way that does not exist");
        if (mode != 0)
            mode_ = mode;
        onceDelay_.reset();
        while (bytes.left() > 0 && bytes.byte() != 0) // the part's name
            ;
        if (bytes.left() < 4)
            return;
        const std::uint8_t changesDelay = bytes.byte();
        bytes.take(3);
        if (changesDelay == 1)
            onceDelay_ = bytes.bigNumber();
        else if (changesDelay == 2)
            delay_ = bytes.bigNumber();
    }

    void readPlace(std::span<const std::uint8_t> data) {
        ByteCursor bytes(data);
        requireOfFile(bytes.bigShort() == 0, "it uses stored objects, which this program does not know");
        if (data.size() < 12)
            return;
        bytes.take(2);
        x_ = bytes.bigNumber();
        y_ = bytes.bigNumber();
    }

    void readImage(const Chunk& start) {
        const PngHeader header = readHeader(start.data);
        PngColours colours;
        std::vector<std::uint8_t> packed;
        bool hasTransparency = false;
        for (Chunk chunk = nextChunk(bytes_); chunk.type != "IEND"; chunk = nextChunk(bytes_)) {
            if (chunk.type == "PLTE") {
                colours.palette.assign(chunk.data.begin(), chunk.data.end());
            } else if (chunk.type == "tRNS") {
                colours.transparency.assign(chunk.data.begin(), chunk.data.end());
                hasTransparency = true;
            } else if (chunk.type == "IDAT") {
                packed.insert(packed.end(), chunk.data.begin(), chunk.data.end());
            } else {
                requireOfFile(!chunk.isCritical(), "a frame has an unknown chunk " + std::string(chunk.type));
            }
        }
        if (colours.palette.empty()) { // an empty palette stands for the one of all frames
            colours.palette = global_.palette;
            if (hasTransparency && colours.transparency.empty())
                colours.transparency = global_.transparency;
        }
        show(header, colours, packed);
    }

    void show(const PngHeader& header, const PngColours& colours, std::span<const std::uint8_t> packed) {
        constexpr unsigned kOverBackground = 3;
        StoredFrame frame;
        frame.x = x_;
        frame.y = y_;
        frame.width = header.width;
        frame.height = header.height;
        requireOfFile(std::uint64_t{frame.x} + frame.width <= file_.animation.width &&
                          std::uint64_t{frame.y} + frame.height <= file_.animation.height,
                      "a frame lies outside the picture");
        const std::uint64_t ticks = onceDelay_.value_or(delay_);
        constexpr std::uint64_t kLongest = 0xFFFFFFFF;
        frame.delay =
            ticksPerSecond_ == 0 ? 0 : static_cast<std::uint32_t>(std::min(ticks * 1000 / ticksPerSecond_, kLongest));
        frame.blend = Blend::Over;
        frame.disposal = mode_ >= kOverBackground ? Disposal::Clear : Disposal::Keep;
        frame.colours = header.colour == 3 ? static_cast<std::uint32_t>(colours.palette.size() / 3) : 0;
        frame.bytes = packed.size();
        canvas_.reserve(std::uint64_t{frame.width} * frame.height);
        file_.animation.frames.push_back(canvas_.show(frame, readPicture(header, colours, packed)));
        file_.stored.push_back(frame);
    }

    ByteCursor bytes_;
    AnimationFile file_;
    std::uint32_t ticksPerSecond_ = 0;
    PngColours global_;
    unsigned mode_ = 1;
    std::uint32_t delay_ = 1; // ticks
    std::optional<std::uint32_t> onceDelay_;
    std::uint32_t x_ = 0;
    std::uint32_t y_ = 0;
    FrameCanvas canvas_; // made last, from the header
};

} // namespace

bool isMng(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= std::size(kMngSignature) &&
           std::equal(std::begin(kMngSignature), std::end(kMngSignature), bytes.begin());
}

AnimationFile readMng(std::span<const std::uint8_t> bytes, const ReadOptions& options) {
    return MngReader(bytes, options).read();
}

} // namespace stage
