// The chunks of PNG with those of its animations; see the header.
#include "formats/png/png_reader.h"

#include "formats/frame_canvas.h"
#include "formats/png/png_chunks.h"
#include "formats/png/png_coding.h"

#include <algorithm>

namespace stage {
namespace {

class PngReader {
public:
    PngReader(std::span<const std::uint8_t> bytes, const ReadOptions& options)
        : bytes_(bytes.subspan(std::size(kPngSignature))), canvas_(readStart(options)) {}

    AnimationFile read() {
        for (Chunk chunk = nextChunk(bytes_); chunk.type != "IEND"; chunk = nextChunk(bytes_))
            readChunk(chunk);
        finishFrame();
        if (file_.stored.empty()) // a still picture
            showStill();
        requireOfFile(announced_ == 0 || announced_ == file_.stored.size(),
                      "it announces another number of frames than it holds");
        return std::move(file_);
    }

private:
    FrameCanvas readStart(const ReadOptions& options) {
        const Chunk chunk = nextChunk(bytes_);
        requireOfFile(chunk.type == "IHDR", "it does not begin with a header");
        header_ = readHeader(chunk.data);
        file_.format = OutputFormat::Png;
        file_.animation.width = header_.width;
        file_.animation.height = header_.height;
        file_.animation.plays = 1;
        return {header_.width, header_.height, options};
    }

    void readChunk(const Chunk& chunk) {
        if (chunk.type == "PLTE")
            colours_.palette.assign(chunk.data.begin(), chunk.data.end());
        else if (chunk.type == "tRNS")
            colours_.transparency.assign(chunk.data.begin(), chunk.data.end());
        else if (chunk.type == "acTL")
            readAnimationControl(chunk.data);
        else if (chunk.type == "fcTL")
            readFrameControl(chunk.data);
        else if (chunk.type == "IDAT")
            readPixels(chunk.data, still_);
        else if (chunk.type == "fdAT")
            readFramePixels(chunk.data);
        else {
            requireOfFile(!chunk.isCritical(), "it has an unknown chunk " + std::string(chunk.type));
            readText(chunk, file_.animation);
        }
    }

    void readAnimationControl(std::span<const std::uint8_t> data) {
        ByteCursor bytes(data);
        announced_ = bytes.bigNumber();
        file_.animation.plays = bytes.bigNumber();
        file_.format = OutputFormat::Apng;
        requireOfFile(announced_ >= 1, "it announces no frames");
    }

    void readFrameControl(std::span<const std::uint8_t> data) {
        if (announced_ == 0) // without a word of an animation before it: the file is a still picture
            return;
        finishFrame();
        ByteCursor bytes(data);
        readSequenceNumber(bytes);
        StoredFrame frame;
        frame.width = bytes.bigNumber();
        frame.height = bytes.bigNumber();
        frame.x = bytes.bigNumber();
        frame.y = bytes.bigNumber();
        requireOfFile(frame.width >= 1 && frame.height >= 1 && std::uint64_t{frame.x} + frame.width <= header_.width &&
                          std::uint64_t{frame.y} + frame.height <= header_.height,
                      "a frame lies outside the picture");
        const std::uint64_t part = bytes.bigShort();
        const std::uint32_t parts = bytes.bigShort();
        frame.delay = static_cast<std::uint32_t>(part * 1000 / (parts == 0 ? 100 : parts)); // 0 stands for 100
        const std::uint8_t disposal = bytes.byte();
        const std::uint8_t blend = bytes.byte();
        requireOfFile(disposal <= 2 && blend <= 1, "a frame is shown in a way that does not exist");
        frame.disposal = static_cast<Disposal>(disposal);
        if (file_.stored.empty() && frame.disposal == Disposal::Restore) // to nothing
            frame.disposal = Disposal::Clear;
        frame.blend = static_cast<Blend>(blend);
        frame.colours = static_cast<std::uint32_t>(colours_.palette.size() / 3);
        next_ = frame;
    }

    void readSequenceNumber(ByteCursor& bytes) {
        requireOfFile(bytes.bigNumber() == sequence_++, "its animation chunks are in a wrong order");
    }

    // Of a still picture that is not part of the animation, or of the first frame.
    void readPixels(std::span<const std::uint8_t> data, std::vector<std::uint8_t>& still) {
        std::vector<std::uint8_t>& target = next_ ? packed_ : still;
        target.insert(target.end(), data.begin(), data.end());
    }

    void readFramePixels(std::span<const std::uint8_t> data) {
        requireOfFile(next_.has_value(), "pixels of a frame come before the frame");
        ByteCursor bytes(data);
        readSequenceNumber(bytes);
        const auto pixels = bytes.take(bytes.left());
        packed_.insert(packed_.end(), pixels.begin(), pixels.end());
    }

    void finishFrame() {
        if (!next_)
            return;
        show(*next_, packed_);
        next_.reset();
        packed_.clear();
    }

    void showStill() {
        requireOfFile(!still_.empty(), "it has no pixels");
        StoredFrame frame;
        frame.width = header_.width;
        frame.height = header_.height;
        frame.colours = static_cast<std::uint32_t>(colours_.palette.size() / 3);
        show(frame, still_);
    }

    void show(StoredFrame frame, std::span<const std::uint8_t> packed) {
        PngHeader header = header_;
        header.width = frame.width;
        header.height = frame.height;
        frame.bytes = packed.size();
        canvas_.reserve(std::uint64_t{frame.width} * frame.height);
        file_.animation.frames.push_back(canvas_.show(frame, readPicture(header, colours_, packed)));
        file_.stored.push_back(frame);
    }

    ByteCursor bytes_;
    AnimationFile file_;
    PngHeader header_;
    PngColours colours_;
    std::uint32_t announced_ = 0; // frames; 0: it is a still picture
    std::uint32_t sequence_ = 0;
    std::optional<StoredFrame> next_;
    std::vector<std::uint8_t> packed_; // of the next frame
    std::vector<std::uint8_t> still_;
    FrameCanvas canvas_; // made last, from the header
};

} // namespace

bool isPng(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= std::size(kPngSignature) &&
           std::equal(std::begin(kPngSignature), std::end(kPngSignature), bytes.begin());
}

AnimationFile readPng(std::span<const std::uint8_t> bytes, const ReadOptions& options) {
    return PngReader(bytes, options).read();
}

} // namespace stage
