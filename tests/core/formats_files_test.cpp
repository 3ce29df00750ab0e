// Animations written in every format and read back: what was given is what is shown, after every frame.
// Sizes and bytes are the business of other programs (tests/stage).
#include "base/failure.h"
#include "base/output_file.h"
#include "base/parallel.h"
#include "document/animation_recorder.h"
#include "document/picture.h"
#include "document/timing.h"
#include "formats/animation_reader.h"
#include "formats/animation_writer.h"
#include "formats/colours.h"
#include "formats/gif/lzw.h"
#include "formats/png/deflate.h"
#include "formats/steps.h"
#include "shown_pictures.h"

#include <gtest/gtest.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <numeric>
#include <random>
#include <tuple>

namespace stage {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr OutputFormat kAnimated[] = {OutputFormat::Gif, OutputFormat::Apng, OutputFormat::Mng};

Bytes noise(std::size_t count, unsigned bits) {
    std::mt19937 random(7);
    Bytes indices(count);
    std::ranges::generate(indices, [&] { return static_cast<std::uint8_t>(random() % (1u << bits)); });
    return indices;
}

TEST(Lzw, EveryLengthAndWidthComesBack) {
    // One bit is carried in codes of at least 3 bits; noise of 8 bits fills the table of 4096 strings many times over,
    // and each length from none on meets the end code at another place of the growing width.
    for (const unsigned bits : {1u, 2u, 4u, 8u})
        for (std::size_t count = 0; count < 400; ++count) {
            const Bytes indices = noise(count, bits);
            const unsigned size = std::max(2u, bits);
            ASSERT_EQ(expandLzw(compressLzw({indices}, size), size, count), indices) << bits << " bits, " << count;
        }
    const Bytes large = noise(60000, 8);
    EXPECT_EQ(expandLzw(compressLzw({large}, 8), 8, large.size()), large);
    // Strings of a part that repeats are of no use in noise: the full table is given up.
    Bytes changing(60000, 1);
    for (std::size_t i = 0; i < 40000; ++i)
        changing[i] = static_cast<std::uint8_t>(i * i / 900 % 5);
    std::ranges::copy(noise(20000, 8), changing.begin() + 40000);
    EXPECT_EQ(expandLzw(compressLzw({changing}, 8), 8, changing.size()), changing);
    // One colour: each string is one longer than the last and is used at once; 894 of them cover 894 * 895 / 2 = 400065
    // indices with at most 10 bits each.
    const Bytes flat(400000, 0);
    const Bytes packed = compressLzw({flat}, 2);
    EXPECT_LE(packed.size(), 894u * 10 / 8 + 2);
    EXPECT_EQ(expandLzw(packed, 2, flat.size()), flat);
    // Pixels that may be transparent as well make it shorter.
    const Bytes grain = noise(20000, 6);
    const Bytes free(grain.size(), 1);
    EXPECT_LT(compressLzw({grain, free, 77}, 7).size() * 5, compressLzw({grain}, 7).size() * 4);
}

TEST(Deflate, ZlibInflatesIt) {
    std::vector<Bytes> cases = {{}, noise(70000, 8), noise(20000, 1), Bytes(100000, 7)};
    for (std::size_t count = 1; count < 300; count += 6)
        cases.push_back(noise(count, count % 8 + 1));
    Bytes far = noise(32768, 8); // comes again at the farthest distance
    far.insert(far.end(), far.begin(), far.end());
    cases.push_back(far);
    Bytes parts = noise(20000, 2); // two kinds of content, for which one set of codes is too long
    for (std::size_t i = 0; i < 20000; ++i)
        parts.push_back(static_cast<std::uint8_t>(200 + i * i % 41));
    cases.push_back(parts);
    // A tail of frequencies like Fibonacci's numbers below 200 values that are equally frequent makes codes that are
    // longer than allowed, and so little repeats that matches take nothing of it away.
    Bytes rare = noise(40000, 8);
    for (std::uint8_t& byte : rare)
        byte %= 200;
    for (std::size_t value = 200, count = 1, before = 1; value < 212; ++value) {
        rare.insert(rare.end(), count, static_cast<std::uint8_t>(value));
        before = std::exchange(count, count + before);
    }
    std::ranges::shuffle(rare, std::mt19937(3));
    cases.push_back(rare);
    for (const Bytes& bytes : cases) {
        const Bytes packed = deflated(bytes);
        Bytes read(bytes.size() + 1);
        uLongf size = static_cast<uLongf>(read.size());
        ASSERT_EQ(uncompress(read.data(), &size, packed.data(), static_cast<uLong>(packed.size())), Z_OK);
        read.resize(size);
        ASSERT_EQ(read, bytes);
    }
    EXPECT_LT(deflated(far).size(), 33200u);
    // Noise is stored: nothing is sent of codes, in one block or several. 6 bytes are the stream's own, 5 a block's.
    EXPECT_EQ(deflated(noise(600, 8)).size(), 600u + 6 + 5);
    EXPECT_EQ(deflated(noise(70000, 8)).size(), 70000u + 6 + 2 * 5);
    EXPECT_LT(deflated(cases[3]).size(), 130u); // 388 matches of 258 bytes, of 2 bits each
}

enum class Content { Few, Palette, Full, Grey, Many, Holes, HalfOpaque };

// A patch wanders over a still ground, so that frames share most of their pixels; frame 2 is equal to frame 1.
Pixel pixelAt(Content content, std::uint32_t x, std::uint32_t y, std::size_t frame) {
    const std::size_t step = frame == 2 ? 1 : frame;
    const bool isPatch = x >= step * 2 && x < step * 2 + 9 && y >= step && y < step + 7;
    const auto low = static_cast<std::uint8_t>(x * 7 + y * 13 + (isPatch ? 100 + step * 5 : 0));
    switch (content) {
    case Content::Few:
        return pixelOf(isPatch ? Rgb{255, 200, 0} : Rgb{0, 0, 90});
    case Content::Palette:
        return pixelOf({static_cast<std::uint8_t>(low / 2), 30, low > 9 ? std::uint8_t{4} : std::uint8_t{5}});
    case Content::Full: // of 256 colours every one
        return pixelOf({low, static_cast<std::uint8_t>(255 - low), 7});
    case Content::Grey:
        return pixelOf({low, low, low});
    case Content::Many:
        return pixelOf({low, static_cast<std::uint8_t>(x * 5), static_cast<std::uint8_t>(y * 6 + (isPatch ? 3 : 0))});
    case Content::Holes:
        return isPatch ? pixelOf({low, 1, 2}) : (x + y) % 11 == 0 ? pixelOf({9, 9, 200}) : kTransparentPixel;
    case Content::HalfOpaque:
        break;
    }
    return pixelOf({low, 80, 160}, isPatch ? 255 : low);
}

// Frames of what `pixel` answers for frame, x and y.
template <class PixelAt>
Animation paintedAnimation(std::uint32_t width, std::uint32_t height, std::size_t frames, const PixelAt& pixel) {
    Animation animation{width, height, {}, 0, {}, {}, {}};
    for (std::size_t i = 0; i < frames; ++i) {
        Picture picture{width, height, {}};
        for (std::uint32_t at = 0; at < width * height; ++at)
            picture.pixels.push_back(pixel(i, at % width, at / width));
        animation.frames.push_back(frameOf(picture));
        animation.frames.back().delay = static_cast<std::uint32_t>(20 + i * 10);
    }
    return animation;
}

Animation animationOf(Content content, std::uint32_t width, std::uint32_t height, std::size_t frames) {
    return paintedAnimation(width, height, frames, [&](std::size_t frame, std::uint32_t x, std::uint32_t y) {
        return pixelAt(content, x, y, frame);
    });
}

void expectSameShow(const Animation& wanted, const Animation& read, const std::string& name) {
    EXPECT_EQ(read.width, wanted.width) << name;
    EXPECT_EQ(read.height, wanted.height) << name;
    const std::vector<ShownPicture> wantedShow = shownPictures(wanted);
    const std::vector<ShownPicture> readShow = shownPictures(read);
    ASSERT_EQ(readShow.size(), wantedShow.size()) << name;
    for (std::size_t i = 0; i < readShow.size(); ++i) {
        ASSERT_EQ(readShow[i].picture, wantedShow[i].picture) << name << ", picture " << i;
        EXPECT_EQ(readShow[i].delay, wantedShow[i].delay) << name << ", picture " << i;
    }
}

// 255 entries for a cube of 256 levels a side leave cells of about 40 levels, whose mean square error is 40^2 / 12.
void expectAlike(const Picture& wanted, const Picture& read) {
    double error = 0;
    for (std::size_t i = 0; i < wanted.pixels.size(); ++i)
        error += std::pow(rgbOf(wanted.pixels[i]).green - rgbOf(read.pixels[i]).green, 2);
    EXPECT_LT(error / static_cast<double>(wanted.pixels.size()), 140);
}

AnimationFile readBack(const Animation& animation, OutputFormat format, const WriteOptions& options = {}) {
    MemorySink sink;
    EXPECT_TRUE(writeAnimation(animation, format, options, sink));
    return readAnimation(sink.bytes());
}

TEST(StageFiles, EveryFormatShowsWhatItWasGiven) {
    const std::tuple<Content, std::uint32_t, std::uint32_t> cases[] = {
        {Content::Few, 47, 33},  {Content::Palette, 47, 33},    {Content::Full, 64, 40},
        {Content::Grey, 33, 47}, {Content::Many, 47, 33},       {Content::Holes, 47, 33},
        {Content::Few, 1, 1},    {Content::HalfOpaque, 33, 20}, {Content::Holes, 2, 300}};
    for (const auto& [content, width, height] : cases)
        for (const OutputFormat format : kAnimated) {
            if (format == OutputFormat::Gif && content == Content::HalfOpaque)
                continue; // which it cannot hold
            const std::string name = std::string(formatName(format)) + " of content " +
                                     std::to_string(static_cast<int>(content)) + ", " + std::to_string(width);
            const Animation animation = animationOf(content, width, height, 6);
            const AnimationFile file = readBack(animation, format);
            EXPECT_EQ(file.format, format);
            if (format == OutputFormat::Gif && content == Content::Many) {
                expectAlike(pictureOf(animation.frames[1]), pictureOf(file.animation.frames[1]));
                continue;
            }
            expectSameShow(animation, file.animation, name);
            EXPECT_LE(file.stored.size(), 5u) << name; // equal frames are one
        }
}

// The colours of each frame fit a palette, but not those of all together.
TEST(StageFiles, PalettesOfTheirOwnLoseNothing) {
    const Animation animation = paintedAnimation(14, 14, 3, [](std::size_t frame, std::uint32_t x, std::uint32_t y) {
        return pixelOf({std::uint8_t(14 * y + x), std::uint8_t(80 * frame), 3});
    });
    for (const OutputFormat format : kAnimated)
        expectSameShow(animation, readBack(animation, format).animation, std::string(formatName(format)));
}

// A frame that something covers for a moment costs next to nothing when it comes again.
TEST(StageFiles, PicturesOfAMomentAreTakenBack) {
    const Bytes grain = noise(40 * 40, 7);
    const Animation animation = paintedAnimation(40, 40, 3, [&](std::size_t frame, std::uint32_t x, std::uint32_t y) {
        const std::uint8_t level = grain[40 * y + x];
        return frame == 1 && y > 4 ? pixelOf({255, 0, std::uint8_t(level / 2)}) : pixelOf({level, 9, 9});
    });
    const AnimationFile file = readBack(animation, OutputFormat::Apng);
    expectSameShow(animation, file.animation, "a moment");
    EXPECT_LT(file.stored.at(2).bytes * 4, file.stored.at(0).bytes);
}

TEST(StageFiles, OnlyWhatChangesIsStored) {
    // The patch of 9 x 7 moves by 2 and 1: from the first frame to the second it covers 11 x 8.
    const Animation animation = animationOf(Content::Few, 60, 50, 2);
    for (const OutputFormat format : kAnimated) {
        const StoredFrame stored = readBack(animation, format).stored.at(1);
        EXPECT_EQ(stored.width * 100 + stored.height, 1108u) << formatName(format);
        EXPECT_EQ(stored.x + stored.y, 0u) << formatName(format);
    }
}

// A sink that has everything read back whenever the writer says that a reader could.
class WatchedSink final : public ByteSink {
public:
    void write(std::span<const std::uint8_t> bytes) override { inner_.write(bytes); }
    void rewrite(std::uint64_t position, std::span<const std::uint8_t> bytes) override {
        inner_.rewrite(position, bytes);
    }
    void stepBack(std::uint64_t count) override { inner_.stepBack(count); }
    std::uint64_t size() const override { return inner_.size(); }
    void flush() override { counts.push_back(readAnimation(inner_.bytes()).stored.size()); }

    std::vector<std::size_t> counts;

private:
    MemorySink inner_;
};

TEST(StageFiles, ValidAfterEveryFrame) {
    for (const Content content : {Content::Palette, Content::Holes})
        for (const OutputFormat format : kAnimated) {
            WatchedSink sink;
            writeAnimation(animationOf(content, 40, 30, 5), format, {}, sink);
            EXPECT_EQ(sink.counts, (std::vector<std::size_t>{1, 2, 3, 4})) << formatName(format);
        }
}

TEST(StageFiles, LoopsCommentsAndOriginComeBack) {
    for (const OutputFormat format : kAnimated)
        for (const std::uint32_t plays : {0u, 1u, 2u, 300u}) {
            Animation animation = animationOf(Content::Few, 20, 20, 2);
            animation.plays = plays;
            animation.comment = "first line\n" + std::string(600, 'c') + "\xC3\xA4";
            animation.made =
                Remembered{"A = 1\nMainEffect = 15\n", plays == 1 ? std::nullopt : std::optional("N,1,2\n")};
            const Animation read = readBack(animation, format).animation;
            EXPECT_EQ(read.plays, plays) << formatName(format);
            EXPECT_EQ(read.comment, animation.comment) << formatName(format);
            EXPECT_EQ(read.made, animation.made) << formatName(format);
        }
    EXPECT_EQ(rememberedFrom("CREATED BY..."), std::nullopt);
    EXPECT_EQ(rememberedFrom("[Voltane #1]\nA = \x1A\n"), std::nullopt);
}

TEST(StageFiles, GifCutsOpacityAtTheThresholdOverTheMatte) {
    Animation animation = animationOf(Content::Few, 3, 1, 1);
    animation.frames[0] = frameOf({3, 1, {pixelOf({200, 0, 0}, 99), pixelOf({200, 0, 0}, 102), pixelOf({1, 2, 3})}});
    const WriteOptions options{{0, 100, 50}, 100};
    // 102 / 255 is 0.4: 200 * 0.4 = 80, 100 * 0.6 = 60, 50 * 0.6 = 30.
    EXPECT_EQ(pictureOf(readBack(animation, OutputFormat::Gif, options).animation.frames[0]).pixels,
              (std::vector<Pixel>{kTransparentPixel, pixelOf({80, 60, 30}), pixelOf({1, 2, 3})}));
}

// More colours than are gone through one by one, down to cells of 8 levels; few colours need no cutting.
TEST(StageColours, PalettesOfVeryManyAndVeryFew) {
    PixelMap<std::uint64_t> counts;
    for (std::uint32_t i = 0; i < 64 * 64 * 16; ++i)
        counts[pixelOf({std::uint8_t(i << 2), std::uint8_t(i >> 4 & 0xFC), std::uint8_t(i >> 8 & 0xF0)})] = 1;
    const std::vector<Pixel> palette = reducedPalette(counts, 8);
    EXPECT_EQ(palette.size(), 8u);
    EXPECT_EQ(nearestColour(palette, palette[5]), palette[5]);
    double error = 0;
    for (const auto& entry : counts)
        error += std::pow(rgbOf(entry.first).green - rgbOf(nearestColour(palette, entry.first)).green, 2);
    // Eight boxes of equal volume have sides of 128 levels.
    EXPECT_LT(error / static_cast<double>(counts.size()), 128.0 * 128 / 12 * 1.1);
    PixelMap<std::uint64_t> few;
    few[kTransparentPixel] = 5;
    EXPECT_TRUE(reducedPalette(few, 4).empty());
    few[pixelOf({1, 2, 3})] = 5;
    few[pixelOf({9, 9, 9})] = 1;
    EXPECT_EQ(reducedPalette(few, 4).size(), 2u);
}

TEST(StageTiming, HundredthsCarryTheRemainderAndBrowsersSlowDown) {
    const std::vector<std::uint32_t> thirds(30, 33);
    const std::vector<std::uint32_t> hundredths = delaysInHundredths(thirds);
    EXPECT_EQ(std::accumulate(hundredths.begin(), hundredths.end(), 0u), 99u);
    EXPECT_EQ(std::vector(hundredths.begin(), hundredths.begin() + 6), (std::vector<std::uint32_t>{3, 4, 3, 3, 4, 3}));
    const std::vector<std::uint32_t> stored = {10, 20, 0, 100};
    const PlayingTime time = playingTime(stored);
    EXPECT_EQ(time.stored, 130u);
    EXPECT_EQ(time.inBrowsers, 320u);
    EXPECT_EQ(time.slowedFrames, 2u);
    EXPECT_DOUBLE_EQ(time.framesPerSecond, 12.5);
}

// A browser does not slow down equal frames that are one picture of 20 ms in the file.
TEST(StageTiming, BrowsersShowJoinedFramesForTheirWholeTime) {
    Animation animation = animationOf(Content::Few, 5, 5, 2);
    animation.frames.insert(animation.frames.begin(), animation.frames[0]);
    animation.frames.push_back(animation.frames[2]);
    for (const auto& [frame, delay] : {std::pair{0u, 10u}, {1u, 10u}, {2u, 3u}, {3u, 3u}})
        animation.frames[frame].delay = delay;
    const FrameTimes times = frameTimes(animation, OutputFormat::Apng);
    EXPECT_EQ(times.stored, (std::vector<std::uint32_t>{10, 10, 3, 3}));
    EXPECT_EQ(times.inBrowsers, (std::vector<std::uint32_t>{10, 10, 97, 3}));
    EXPECT_EQ((std::array<std::uint64_t, 3>{times.whole.inBrowsers, times.whole.slowedFrames, times.whole.frames}),
              (std::array<std::uint64_t, 3>{120, 1, 2}));
    EXPECT_EQ(frameTimes(animation, OutputFormat::Png).whole.frames, 4u);
}

// Equal frames are joined only as long as the format can count the time.
TEST(StageTiming, LongDelaysStay) {
    Animation animation = animationOf(Content::Few, 5, 5, 1);
    animation.frames[0].delay = 400000;
    animation.frames.push_back(animation.frames[0]);
    EXPECT_EQ(readBack(animation, OutputFormat::Gif).stored.size(), 2u);
    EXPECT_EQ(readBack(animation, OutputFormat::Mng).stored.size(), 1u);
    for (const OutputFormat format : kAnimated)
        EXPECT_EQ(totalDelay(readBack(animation, format).animation), 800000u) << formatName(format);
}

Palette greys() {
    Palette palette;
    for (std::size_t i = 0; i < palette.size(); ++i)
        palette[i].red = palette[i].green = palette[i].blue = static_cast<std::uint8_t>(i);
    return palette;
}

Pixel greyPixel(std::uint8_t level) {
    return pixelOf({level, level, level});
}

Frame indexedFrame(Bytes pixels, std::optional<std::uint8_t> transparent = {}) {
    Frame frame = frameOf({static_cast<std::uint32_t>(pixels.size()), 1, {}});
    frame.format = PixelFormat::Indexed;
    frame.palette = greys();
    frame.pixels = std::move(pixels);
    frame.delay = 7;
    frame.transparentIndex = transparent;
    return frame;
}

// What the recorder makes of the transparent index: holes, or what the frame before shows there.
TEST(StageRecorder, TransparencyMeansHolesOrUnchanged) {
    const Pixel hole = kTransparentPixel;
    const auto grey = greyPixel;
    const struct {
        const char* name;
        bool deltas, byColour;
        std::vector<Pixel> first, second;
    } cases[] = {{"holes", false, false, {grey(0), hole, grey(1)}, {hole, grey(2), hole}},
                 {"differences on an entry", true, false, {grey(0), grey(5), grey(1)}, {grey(0), grey(2), grey(1)}},
                 {"differences on a colour", true, true, {grey(0), grey(9), grey(1)}, {grey(0), grey(2), grey(1)}}};
    for (const auto& c : cases) {
        AnimationRecorder recorder(DelayUnit::Hundredths);
        if (c.deltas)
            recorder.announceDeltas();
        recorder.begin({3, 1, 8, greys(), 2});
        if (c.byColour)
            recorder.setBackgroundColour({9, 9, 9});
        else
            recorder.setBackgroundIndex(5);
        recorder.addFrame(indexedFrame({0, 3, 1}, std::uint8_t{3}));
        recorder.addFrame(indexedFrame({3, 2, 3}, std::uint8_t{3}));
        const Animation animation = recorder.finish();
        EXPECT_EQ(pictureOf(animation.frames.at(0)).pixels, c.first) << c.name;
        EXPECT_EQ(pictureOf(animation.frames.at(1)).pixels, c.second) << c.name;
        EXPECT_EQ(totalDelay(animation), 140u) << c.name;
    }
}

// Differences whose palette changes, and frames smaller than the animation, become pictures of their own.
TEST(StageRecorder, PutsFramesTogetherAcrossPalettesAndSizes) {
    const auto grey = greyPixel;
    AnimationRecorder recorder(DelayUnit::Milliseconds);
    recorder.announceDeltas();
    recorder.begin({3, 1, 8, greys(), 3});
    recorder.addFrame(indexedFrame({3, 3, 1}, std::uint8_t{3})); // holes of the first: the palette's first colour
    Frame other = indexedFrame({3, 2, 3}, std::uint8_t{3});
    other.palette[2] = {1, 2, 3};
    recorder.addFrame(other);
    recorder.addFrame(indexedFrame({7, 8}));
    const Animation animation = recorder.finish();
    EXPECT_EQ(pictureOf(animation.frames.at(0)).pixels, (std::vector{grey(0), grey(0), grey(1)}));
    EXPECT_EQ(pictureOf(animation.frames.at(1)).pixels, (std::vector{grey(0), pixelOf({1, 2, 3}), grey(1)}));
    EXPECT_EQ(pictureOf(animation.frames.at(2)).pixels, (std::vector{grey(7), grey(8), kTransparentPixel}));
    EXPECT_EQ(totalDelay(animation), 21u);
}

TEST(StageRecorder, NamesFilesAfterTheEffect) {
    for (const auto& [effect, name] : {std::pair{"Analog VU Meter (round)", "analog-vu-meter-round"},
                                       {"Plasma Arc *", "plasma-arc"},
                                       {"Jacob's  Ladder", "jacobs-ladder"},
                                       {" * ", "animation"}})
        EXPECT_EQ(defaultFileName(effect), name);
}

TEST(StageRecorder, TellsWhetherAnythingIsTransparent) {
    Frame threeBytes = indexedFrame({1, 2, 3}), fourBytes = indexedFrame({1, 2, 3, 255});
    threeBytes.format = PixelFormat::Rgb;
    fourBytes.format = PixelFormat::Rgba;
    const std::pair<Frame, bool> cases[] = {{indexedFrame({1, 2}), false},
                                            {indexedFrame({1, 2}, std::uint8_t{3}), false},
                                            {indexedFrame({1, 2}, std::uint8_t{2}), true},
                                            {frameOf({1, 1, {pixelOf({1, 2, 3})}}), false},
                                            {frameOf({1, 1, {pixelOf({1, 2, 3}, 254)}}), true},
                                            {threeBytes, false},
                                            {fourBytes, false}};
    for (const auto& [frame, isTransparent] : cases)
        EXPECT_EQ(hasTransparency({1, 1, {frame}, 0, {}, {}, {}}), isTransparent);
}

TEST(StageRecorder, WrongOrderAndWrongDataAreRefused) {
    const auto begin = [](AnimationRecorder& recorder, std::uint32_t width = 1) {
        recorder.begin({width, 1, 8, greys(), 1});
    };
    const std::function<void(AnimationRecorder&)> faults[] = {[&](auto& r) { begin(r, 0); },
                                                              [&](auto& r) { begin(r, 65536); },
                                                              [&](auto& r) { r.addFrame(indexedFrame({0})); },
                                                              [&](auto& r) { begin(r), r.finish(); },
                                                              [&](auto& r) { begin(r), begin(r); },
                                                              [&](auto& r) {
                                                                  begin(r), r.addFrame(indexedFrame({0, 0}));
                                                              },
                                                              [&](auto& r) { r.setBackgroundIndex(256); }};
    for (const auto& fault : faults) {
        AnimationRecorder recorder(DelayUnit::Milliseconds);
        EXPECT_THROW(fault(recorder), Failure) << &fault - faults;
    }
}

class StageTarget : public testing::Test {
protected:
    void SetUp() override {
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directories(folder_);
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }
    std::size_t fileCount() const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder_), {}));
    }

    std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / ("stage-target-" + std::to_string(::getpid()));
    std::filesystem::path target_ = folder_ / pathFromUtf8("r\xC3\xB6hre 1.gif");
};

TEST_F(StageTarget, TakesItsPlaceOnlyWhenComplete) {
    writeFile(target_, "precious");
    const Animation animation = animationOf(Content::Palette, 20, 20, 4);
    // Stopped half-way.
    EXPECT_EQ(
        saveAnimation(animation, OutputFormat::Gif, {}, target_, [](std::size_t i, std::size_t) { return i < 2; }),
        std::nullopt);
    const auto atOnce = [](std::size_t, std::size_t) { return false; };
    EXPECT_EQ(saveAnimation(animation, OutputFormat::Png, {}, target_, atOnce), std::nullopt);
    EXPECT_EQ(encodedSize(animation, OutputFormat::Apng, {}, atOnce), std::nullopt);
    EXPECT_THROW(saveAnimation({}, OutputFormat::Gif, {}, target_), Failure); // no frames
    for (const auto& [width, height] : {std::pair{20u, 21u}, {65536u, 20u}, {20u, 0u}}) {
        Animation wrong = animation;
        wrong.width = width;
        wrong.height = height;
        EXPECT_THROW(saveAnimation(wrong, OutputFormat::Gif, {}, target_), Failure) << width;
    }
    EXPECT_EQ(readFile(target_), "precious");
    EXPECT_EQ(fileCount(), 1u);
    const auto written = saveAnimation(animation, OutputFormat::Gif, {}, target_);
    EXPECT_EQ(written->bytes, std::filesystem::file_size(target_));
    EXPECT_EQ(written->bytes, encodedSize(animation, OutputFormat::Gif, {}));
    // Counts near the start are written again once they are known.
    MemorySink memory;
    writeAnimation(animation, OutputFormat::Apng, {}, memory);
    saveAnimation(animation, OutputFormat::Apng, {}, target_);
    EXPECT_EQ(readFile(target_), std::string(memory.bytes().begin(), memory.bytes().end()));
    EXPECT_EQ(saveAnimation(animation, OutputFormat::Png, {}, folder_ / "a.b.png")->last, folder_ / "a.b-0003.png");
    EXPECT_EQ(fileCount(), 5u);
    for (const std::filesystem::path& wrong :
         {folder_, folder_ / "missing" / "a.gif", target_ / "a.gif", folder_ / std::string(256, 'x')})
        EXPECT_THROW(OutputFile{wrong}, Failure) << wrong;
    std::filesystem::permissions(target_, std::filesystem::perms::owner_read);
    EXPECT_THROW(saveAnimation(animation, OutputFormat::Gif, {}, target_), Failure); // its owner has protected it
    EXPECT_EQ(fileCount(), 5u);
}

TEST_F(StageTarget, FoldersAndFilesThatCannotBe) {
    makeFolder(folder_ / "new" / "nested");
    EXPECT_TRUE(std::filesystem::is_directory(folder_ / "new" / "nested"));
    EXPECT_THROW(readFile(folder_), Failure);
    EXPECT_THROW(readFile(folder_ / "missing"), Failure);
    EXPECT_THROW(writeFile(folder_, "text"), Failure);
    OutputFile file(target_);
    file.write(Bytes{1, 2, 3});
    makeFolder(target_ / "inside");
    EXPECT_THROW(file.commit(), Failure); // a folder has taken the place
    EXPECT_TRUE(std::filesystem::exists(target_ / "inside"));
    writeFile(folder_ / "file", "text");
    EXPECT_THROW(makeFolder(folder_ / "file" / "inside"), Failure);
    EXPECT_EQ(formatOfFile("radar"), std::nullopt);
    EXPECT_EQ(formatOfFile("radar."), std::nullopt);
}

// Frames are compressed side by side; more of them than are taken at once.
TEST(StageWriting, BytesDoNotDependOnTheThreads) {
    Animation animation{30, 30, {}, 0, {}, {}, {}};
    Picture picture{30, 30, std::vector<Pixel>(900, pixelOf({9, 9, 9}))};
    for (std::uint8_t i = 0; i < 70; ++i) {
        std::fill_n(picture.pixels.begin() + i, 200, pixelOf({i, 100, 50}));
        animation.frames.push_back(frameOf(picture));
    }
    for (const OutputFormat format : kAnimated) {
        MemorySink alone, together;
        std::vector<std::size_t> told;
        ASSERT_TRUE(writeAnimation(animation, format, {.threads = 1}, alone));
        ASSERT_TRUE(writeAnimation(animation, format, {.threads = 3}, together, [&](std::size_t done, std::size_t) {
            told.push_back(done);
            return true;
        }));
        EXPECT_EQ(alone.bytes(), together.bytes()) << formatName(format);
        EXPECT_EQ(told.size(), 70u);
        EXPECT_FALSE(writeAnimation(animation, format, {.threads = 3}, together,
                                    [](std::size_t done, std::size_t) { return done < 40; }));
    }
}

TEST(StageWriting, WhatAThreadThrowsReachesTheCaller) {
    std::atomic<int> calls = 0;
    const auto work = [&](std::size_t i) {
        ++calls;
        if (i == 5)
            throw std::bad_alloc();
    };
    EXPECT_THROW(forEachInParallel(1000, 3, work), std::bad_alloc);
    EXPECT_LT(calls, 1000);
    forEachInParallel(0, 0, work);
}

TEST(StageReading, TellsHowFarItIsAndStops) {
    for (const OutputFormat format : kAnimated) {
        MemorySink sink;
        writeAnimation(animationOf(Content::Palette, 20, 20, 4), format, {}, sink);
        std::vector<std::uint64_t> told;
        ReadOptions options;
        options.progress = [&](std::uint64_t done) {
            told.push_back(done);
            return told.size() < 3;
        };
        EXPECT_THROW(readAnimation(sink.bytes(), options), Failure) << formatName(format);
        ASSERT_EQ(told.size(), 3u);
        EXPECT_TRUE(0 < told[0] && told[0] < told[1] && told[1] < told[2] && told[2] < sink.size());
    }
}

} // namespace
} // namespace stage
