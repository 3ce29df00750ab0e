// The GIF files that the host writes, read back by a small decoder of GIF89a that shares nothing with the writer.
// Never compares compressed bytes: what counts is what a viewer shows.
#include "core/animation_recorder.h"
#include "core/failure.h"
#include "core/lzw.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace stage {
namespace {

using Bytes = std::vector<std::uint8_t>;

// A reader's LZW: strings are spelled out in full, the plainest way there is.
struct Decoded {
    Bytes indices;
    bool ended = false;
    std::size_t bytesUsed = 0;
};

Decoded decodeLzw(const Bytes& data, unsigned minimumCodeSize) {
    const unsigned clearCode = 1u << minimumCodeSize;
    std::vector<Bytes> strings;
    unsigned width = 0;
    Bytes previous;
    const auto restart = [&] {
        strings.assign(clearCode + 2, {});
        for (unsigned i = 0; i < clearCode; ++i)
            strings[i] = {static_cast<std::uint8_t>(i)};
        width = minimumCodeSize + 1;
        previous.clear();
    };
    restart();
    Decoded result;
    for (std::size_t bit = 0; bit + width <= data.size() * 8;) {
        unsigned code = 0;
        for (unsigned i = 0; i < width; ++i, ++bit)
            code |= (data[bit / 8] >> bit % 8 & 1u) << i;
        result.bytesUsed = (bit + 7) / 8;
        if (code == clearCode) {
            restart();
            continue;
        }
        result.ended = code == clearCode + 1;
        if (result.ended || code > strings.size() || (code == strings.size() && previous.empty()))
            return result;
        Bytes string = code < strings.size() ? strings[code] : previous;
        if (code == strings.size())
            string.push_back(previous[0]);
        result.indices.insert(result.indices.end(), string.begin(), string.end());
        if (!previous.empty() && strings.size() < 4096) {
            previous.push_back(string[0]);
            strings.push_back(previous);
        }
        if (strings.size() == 1u << width && width < 12)
            ++width;
        previous = std::move(string);
    }
    return result;
}

Bytes noise(std::size_t count, unsigned bits) {
    std::mt19937 random(7);
    Bytes indices(count);
    std::ranges::generate(indices, [&] { return static_cast<std::uint8_t>(random() % (1u << bits)); });
    return indices;
}

TEST(Lzw, EveryLengthAndWidthComesBack) {
    // One bit is carried in codes of at least 3 bits; noise of 8 bits fills the table of 4096 strings many times over,
    // and each length from none on meets the end code at another place of the growing width.
    for (const unsigned bits : {1u, 2u, 4u, 8u}) {
        const unsigned minimumCodeSize = std::max(2u, bits);
        for (std::size_t count = 0; count < 400; ++count) {
            const Bytes indices = noise(count, bits);
            const Bytes packed = compressLzw(indices, minimumCodeSize);
            const Decoded decoded = decodeLzw(packed, minimumCodeSize);
            ASSERT_TRUE(decoded.ended && decoded.indices == indices && decoded.bytesUsed == packed.size())
                << bits << " bits, " << count;
        }
    }
    const Bytes large = noise(60000, 8);
    EXPECT_EQ(decodeLzw(compressLzw(large, 8), 8).indices, large);
    // One colour: each string is one longer than the last and is used at once, the 4090 free codes cover 4090 * 4091 /
    // 2 = 8366095 indices, and about a thousand codes of 12 bits after the second clear code cover the rest.
    const Bytes flat(9000000, 0);
    const Bytes packed = compressLzw(flat, 2);
    EXPECT_LT(packed.size(), 8000u);
    EXPECT_EQ(decodeLzw(packed, 2).indices, flat);
}

struct GifPicture {
    unsigned delay = 0, disposal = 0, localBits = 0;
    int transparent = -1;
    std::vector<Rgb> colours; // of each pixel
    Bytes indices;
};

struct Gif {
    unsigned background = 0;
    std::vector<Rgb> palette;
    std::vector<GifPicture> pictures;
    std::string comment;
    bool repeats = false;
    bool complete = false; // the trailer is the last byte
};

class GifReader {
public:
    explicit GifReader(const std::string& file) : file_(file.begin(), file.end()) {}

    Gif read() {
        Gif gif;
        EXPECT_EQ(std::string(file_.begin(), file_.begin() + 6), "GIF89a");
        at_ = 6;
        number();
        number();
        const unsigned flags = byte();
        gif.background = byte();
        byte();
        EXPECT_TRUE(flags & 0x80);
        gif.palette = palette((flags & 7) + 1);
        GifPicture next;
        for (unsigned kind = byte(); at_ <= file_.size() && kind != 0x3B; kind = byte()) {
            if (kind == 0x2C) {
                readPicture(next, gif.palette);
                gif.pictures.push_back(std::exchange(next, {}));
            } else {
                readExtension(gif, next);
            }
        }
        gif.complete = at_ == file_.size();
        return gif;
    }

private:
    unsigned byte() { return at_ < file_.size() ? file_[at_++] : (++at_, 0x3Bu); }
    unsigned number() {
        const unsigned low = byte();
        return low | byte() << 8;
    }
    std::vector<Rgb> palette(unsigned bits) {
        std::vector<Rgb> colours(std::size_t{1} << bits);
        for (Rgb& c : colours) {
            for (std::uint8_t* channel : {&c.red, &c.green, &c.blue})
                *channel = static_cast<std::uint8_t>(byte());
        }
        return colours;
    }
    Bytes subBlocks() {
        Bytes data;
        for (unsigned count = byte(); count != 0 && at_ + count <= file_.size(); count = byte()) {
            const auto from = file_.begin() + static_cast<std::ptrdiff_t>(at_);
            data.insert(data.end(), from, from + count);
            at_ += count;
        }
        return data;
    }
    void readExtension(Gif& gif, GifPicture& next) {
        const unsigned label = byte();
        const Bytes data = subBlocks();
        const std::string text(data.begin(), data.end());
        if (label == 0xF9) {
            next.disposal = data.at(0) >> 2 & 7u;
            next.delay = data.at(1) | data.at(2) << 8u;
            next.transparent = data.at(0) & 1 ? data.at(3) : -1;
        } else if (label == 0xFE) {
            gif.comment = text;
        } else if (label == 0xFF) {
            gif.repeats = text == std::string("NETSCAPE2.0\1\0\0", 14);
        }
    }
    void readPicture(GifPicture& picture, const std::vector<Rgb>& global) {
        EXPECT_EQ(number() + number(), 0u);
        const unsigned width = number();
        const unsigned height = number();
        const unsigned flags = byte();
        picture.localBits = flags & 0x80 ? (flags & 7) + 1 : 0;
        const std::vector<Rgb> colours = picture.localBits != 0 ? palette(picture.localBits) : global;
        const unsigned minimumCodeSize = byte();
        const Decoded decoded = decodeLzw(subBlocks(), minimumCodeSize);
        EXPECT_TRUE(decoded.ended);
        EXPECT_EQ(decoded.indices.size(), std::size_t{width} * height);
        picture.indices = decoded.indices;
        for (const std::uint8_t index : decoded.indices)
            picture.colours.push_back(colours.at(index));
    }

    Bytes file_;
    std::size_t at_ = 0;
};

class StageGif : public testing::Test {
protected:
    void SetUp() override {
        folder_ = std::filesystem::temp_directory_path() /
                  ("stage-gif-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directories(folder_);
        target_ = folder_ / pathFromUtf8("r\xC3\xB6hre 1.gif");
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    std::size_t fileCount() const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder_), {}));
    }

    std::filesystem::path folder_, target_;
};

Palette greys() {
    Palette palette;
    for (std::size_t i = 0; i < palette.size(); ++i)
        palette[i] = {static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i)};
    return palette;
}

Frame indexedFrame(std::uint32_t width, std::uint32_t height, unsigned bits) {
    Frame frame;
    frame.width = width;
    frame.height = height;
    frame.palette = greys();
    frame.pixels = noise(std::size_t{width} * height, bits);
    frame.delay = 7;
    return frame;
}

TEST_F(StageGif, SmallOddPicturesAreValidAfterEveryFrame) {
    const struct {
        std::uint32_t width, height;
        unsigned bits;
    } cases[] = {{1, 1, 1}, {2, 2, 1}, {47, 33, 3}, {47, 33, 8}, {300, 1, 7}};
    for (const auto& c : cases) {
        OutputFile file(target_);
        std::filesystem::path part = target_;
        part += ".part";
        GifWriter writer(file, {c.width, c.height, c.bits, greys(), 1});
        const Frame frame = indexedFrame(c.width, c.height, c.bits);
        for (std::size_t count = 1; count <= 3; ++count) {
            writer.addFrame(frame, Disposal::Keep);
            const Gif gif = GifReader(readFile(part)).read();
            ASSERT_TRUE(gif.complete && gif.repeats);
            ASSERT_EQ(gif.pictures.size(), count);
            EXPECT_EQ(gif.palette.size(), std::size_t{1} << c.bits);
            EXPECT_EQ(gif.background, 1u);
            EXPECT_EQ(gif.pictures.back().indices, frame.pixels) << c.width << "x" << c.height << " " << c.bits;
            EXPECT_EQ(gif.pictures.back().delay, 7u);
            EXPECT_EQ(gif.pictures.back().localBits, 0u);
            EXPECT_EQ(readFile(part).size(), file.size());
        }
        EXPECT_FALSE(std::filesystem::exists(target_));
    }
}

TEST_F(StageGif, PaletteOfItsOwnOnlyWhereThePictureWouldChange) {
    OutputFile file(target_);
    GifWriter writer(file, {4, 1, 2, greys(), 0});
    Frame same = indexedFrame(4, 1, 1);
    same.pixels = {0, 1, 2, 3};
    Frame unusedDiffers = same;
    unusedDiffers.palette[200] = {9, 9, 9};
    Frame transparentDiffers = same;
    transparentDiffers.transparentIndex = 3;
    transparentDiffers.palette[3] = {255, 0, 255};
    Frame differs = same;
    differs.palette[2] = {10, 20, 30};
    Frame beyond = same; // an index that the global palette of four does not have
    beyond.pixels = {0, 1, 2, 77};
    for (const Frame& frame : {same, unusedDiffers, transparentDiffers, differs, beyond})
        writer.addFrame(frame, Disposal::Keep);
    Frame slow = same;
    slow.delay = 100000;
    writer.addFrame(slow, Disposal::RestoreBackground);
    const std::string longComment(600, 'c'); // three sub-blocks
    writer.addComment(longComment);
    file.commit();

    const Gif gif = GifReader(readFile(target_)).read();
    ASSERT_EQ(gif.pictures.size(), 6u);
    const unsigned localBits[] = {0, 0, 0, 2, 7, 0};
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(gif.pictures[i].localBits, localBits[i]) << i;
    EXPECT_EQ(gif.pictures[3].colours[2], (Rgb{10, 20, 30}));
    EXPECT_EQ(gif.pictures[4].colours[3], (Rgb{77, 77, 77}));
    EXPECT_EQ(gif.pictures[5].delay, 65535u);
    EXPECT_EQ(gif.pictures[5].disposal, 2u);
    EXPECT_EQ(gif.comment, longComment);
    EXPECT_TRUE(gif.complete);
}

// What the recorder makes of the transparent index.
TEST_F(StageGif, TransparencyMeansHolesOrUnchanged) {
    enum class Delivered { Opaque, Holes, Deltas };
    const struct {
        Delivered delivered;
        unsigned disposal;
        int firstTransparent, secondTransparent;
    } cases[] = {{Delivered::Opaque, 1, -1, -1}, {Delivered::Holes, 2, 3, 3}, {Delivered::Deltas, 1, -1, 3}};
    for (const auto& c : cases) {
        AnimationRecorder recorder({OutputFormat::Gif, target_, std::nullopt});
        if (c.delivered == Delivered::Deltas)
            recorder.announceDeltas();
        recorder.begin({5, 4, 2, greys(), 2});
        recorder.setBackgroundIndex(3);
        Frame frame = indexedFrame(5, 4, 2);
        if (c.delivered != Delivered::Opaque)
            frame.transparentIndex = 3;
        recorder.addFrame(frame);
        recorder.addFrame(frame);
        const Recording recording = recorder.finish();
        EXPECT_EQ(recording.duration, 14u);
        EXPECT_EQ(recording.bytes, std::filesystem::file_size(target_));
        const Gif gif = GifReader(readFile(target_)).read();
        ASSERT_EQ(gif.pictures.size(), 2u);
        EXPECT_EQ(gif.background, 3u);
        EXPECT_EQ(gif.pictures[0].disposal, c.disposal);
        EXPECT_EQ(gif.pictures[0].transparent, c.firstTransparent);
        EXPECT_EQ(gif.pictures[1].transparent, c.secondTransparent);
    }
}

// A difference with nothing behind it shows the document's background, whatever colour its reserved entry has.
TEST_F(StageGif, FirstDifferenceStandsOnTheBackground) {
    for (const bool byColour : {false, true}) {
        AnimationRecorder recorder({OutputFormat::Gif, target_, std::nullopt});
        recorder.announceDeltas();
        recorder.begin({2, 1, 2, greys(), 1});
        if (byColour)
            recorder.setBackgroundColour({9, 8, 7});
        else
            recorder.setBackgroundIndex(1);
        Frame frame = indexedFrame(2, 1, 2);
        frame.pixels = {0, 3};
        frame.transparentIndex = 3;
        recorder.addFrame(frame);
        recorder.finish();
        const Gif gif = GifReader(readFile(target_)).read();
        const auto& picture = gif.pictures.at(0);
        EXPECT_EQ(picture.transparent, -1);
        EXPECT_EQ(picture.colours.at(1), (byColour ? Rgb{9, 8, 7} : greys()[1]));
        EXPECT_EQ(picture.colours.at(0), greys()[0]);
    }
}

ExitCode codeOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const Failure& failure) {
        return failure.code();
    }
    return ExitCode::Done;
}

TEST_F(StageGif, TroubleKeepsTheFileThatWasThere) {
    writeFile(target_, "precious");
    const struct {
        const char* name;
        AnimationInfo info;
        Frame frame;
        ExitCode code;
    } cases[] = {
        {"wider than a GIF can say", {65536, 1, 8, greys(), 1}, indexedFrame(1, 1, 1), ExitCode::PluginFailed},
        {"no pixels", {0, 1, 8, greys(), 1}, indexedFrame(1, 1, 1), ExitCode::PluginFailed},
        {"fewer frames than announced", {4, 4, 8, greys(), 2}, indexedFrame(4, 4, 8), ExitCode::PluginFailed},
        {"true colour announced", {4, 4, 24, greys(), 1}, indexedFrame(4, 4, 8), ExitCode::WrongUsage},
        {"true colour delivered",
         {1, 1, 8, greys(), 1},
         {1, 1, PixelFormat::Rgb, {}, {1, 2, 3}, 0, {}},
         ExitCode::WrongUsage},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(codeOf([&] {
                      AnimationRecorder recorder({OutputFormat::Gif, target_, std::nullopt});
                      recorder.begin(c.info);
                      recorder.addFrame(c.frame);
                      recorder.finish();
                  }),
                  c.code)
            << c.name;
        EXPECT_EQ(readFile(target_), "precious") << c.name;
        EXPECT_EQ(fileCount(), 1u) << c.name;
    }
    EXPECT_EQ(codeOf([&] { OutputFile{folder_}; }), ExitCode::FileTrouble); // a folder stands there
    EXPECT_EQ(codeOf([&] { OutputFile{folder_ / "missing" / "a.gif"}; }), ExitCode::FileTrouble);
    EXPECT_EQ(codeOf([&] { OutputFile{target_ / "a.gif"}; }), ExitCode::FileTrouble);
}

TEST_F(StageGif, TargetThatCannotBeReplaced) {
    OutputFile file(target_);
    file.write(Bytes{1, 2, 3});
    std::filesystem::create_directories(target_ / "inside");
    EXPECT_EQ(codeOf([&] { file.commit(); }), ExitCode::FileTrouble);
    EXPECT_TRUE(std::filesystem::exists(target_ / "inside"));
    EXPECT_EQ(fileCount(), 1u); // the unfinished file is gone
}

} // namespace
} // namespace stage
