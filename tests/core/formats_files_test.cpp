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

constexpr OutputFormat kAnimated[] = {OutputFormat::Gif, OutputFormat::Apng, OutputFormat::Mng};

Bytes noise(std::size_t count, unsigned bits) {
    std::mt19937 random(7);
    Bytes indices(count);
    std::ranges::generate(indices, [&] { return static_cast<std::uint8_t>(random() % (1u << bits)); });
    return indices;
}

Bytes joined(Bytes head, const Bytes& tail) {
    head.insert(head.end(), tail.begin(), tail.end());
    return head;
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
    // Strings of a part that repeats are of no use in noise: the full table is given up.
    Bytes changing(40000);
    for (std::size_t i = 0; i < changing.size(); ++i)
        changing[i] = static_cast<std::uint8_t>(i * i / 900 % 5);
    const Bytes flat(400000, 0);
    for (const auto& [indices, size] :
         {std::pair{noise(60000, 8), 8u}, {joined(changing, noise(20000, 8)), 8u}, {flat, 2u}})
        EXPECT_EQ(expandLzw(compressLzw({indices}, size), size, indices.size()), indices) << indices.size();
    // One colour: each string is one longer than the last and is used at once; 894 of them cover 894 * 895 / 2 = 400065
    // indices with at most 10 bits each.
    EXPECT_LE(compressLzw({flat}, 2).size(), 894u * 10 / 8 + 2);
    // Pixels that may be transparent as well make it shorter.
    const Bytes grain = noise(20000, 6);
    EXPECT_LT(compressLzw({grain, Bytes(20000, 1), 77}, 7).size() * 5, compressLzw({grain}, 7).size() * 4);
}

TEST(Deflate, ZlibInflatesIt) {
    Bytes other(20000); // a kind of content for which the codes of another are too long
    for (std::size_t i = 0; i < other.size(); ++i)
        other[i] = static_cast<std::uint8_t>(200 + i * i % 41);
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
    const Bytes half = noise(32768, 8);
    // With the most bytes. Noise is stored: nothing is sent of codes, in one block or several. 6 bytes are the stream's
    // own, 5 a block's.
    std::vector<std::pair<Bytes, std::size_t>> cases = {
        {{}, 11},
        {noise(70000, 8), 70000 + 6 + 2 * 5},
        {noise(20000, 1), 20000},
        {Bytes(100000, 7), 130},     // 388 matches of 258 bytes, 2 bits each
        {joined(half, half), 33200}, // again at the farthest distance
        {joined(noise(20000, 2), other), 40000},
        {rare, rare.size()}};
    for (std::size_t count = 1; count < 300; count += 6)
        cases.emplace_back(noise(count, count % 8 + 1), count + 6 + 5);
    for (const auto& [bytes, most] : cases) {
        const Bytes packed = deflated(bytes);
        EXPECT_LE(packed.size(), most) << bytes.size();
        Bytes read(bytes.size() + 1);
        uLongf size = static_cast<uLongf>(read.size());
        ASSERT_EQ(uncompress(read.data(), &size, packed.data(), static_cast<uLong>(packed.size())), Z_OK);
        read.resize(size);
        ASSERT_EQ(read, bytes);
    }
}

// A patch wanders over a still ground, so that frames share most of their pixels; frame 2 is equal to frame 1 and
// counts as it. The level changes with the place and under the patch.
struct Spot {
    std::uint32_t frame, x, y;
    bool isPatch;
    std::uint8_t level;
};
using Look = std::function<Pixel(const Spot&)>;

const Look kFew = [](const Spot& s) { return pixelOf(s.isPatch ? Rgb{255, 200, 0} : Rgb{0, 0, 90}); };
const Look kPalette = [](const Spot& s) { return pixelOf({std::uint8_t(s.level / 2), 30, std::uint8_t(s.level > 9)}); };
const Look kFull = [](const Spot& s) { return pixelOf({s.level, std::uint8_t(255 - s.level), 7}); };
const Look kGrey = [](const Spot& s) { return pixelOf({s.level, s.level, s.level}); };
const Look kMany = [](const Spot& s) {
    return pixelOf({s.level, std::uint8_t(s.x * 5), std::uint8_t(s.y * 6 + (s.isPatch ? 3 : 0))});
};
const Look kHoles = [](const Spot& s) {
    return s.isPatch ? pixelOf({s.level, 1, 2}) : (s.x + s.y) % 11 == 0 ? pixelOf({9, 9, 200}) : kTransparentPixel;
};
const Look kHalfOpaque = [](const Spot& s) { return pixelOf({s.level, 80, 160}, s.isPatch ? 255 : s.level); };
// The colours of each frame fit a palette, but not those of all together.
const Look kOwnPalettes = [](const Spot& s) {
    return pixelOf({std::uint8_t(14 * s.y + s.x), std::uint8_t(80 * s.frame), 3});
};

Animation animationOf(const Look& look, std::uint32_t width, std::uint32_t height, std::uint32_t frames) {
    Animation animation{width, height, {}, 0, {}, {}, {}};
    for (std::uint32_t i = 0; i < frames; ++i) {
        const std::uint32_t step = i == 2 ? 1 : i;
        Picture picture{width, height, {}};
        for (std::uint32_t at = 0; at < width * height; ++at) {
            const std::uint32_t x = at % width, y = at / width;
            const bool isPatch = x >= step * 2 && x < step * 2 + 9 && y >= step && y < step + 7;
            const auto level = static_cast<std::uint8_t>(x * 7 + y * 13 + (isPatch ? 100 + step * 5 : 0));
            picture.pixels.push_back(look({step, x, y, isPatch, level}));
        }
        animation.frames.push_back(frameOf(picture));
        animation.frames.back().delay = 20 + i * 10;
    }
    return animation;
}

void expectSameShow(const Animation& wanted, const Animation& read, const std::string& name) {
    EXPECT_EQ(std::pair(read.width, read.height), std::pair(wanted.width, wanted.height)) << name;
    EXPECT_TRUE(shownPictures(read) == shownPictures(wanted)) << name;
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
    const std::tuple<const Look*, std::uint32_t, std::uint32_t> cases[] = {
        {&kFew, 47, 33},   {&kPalette, 47, 33}, {&kFull, 64, 40},       {&kGrey, 33, 47},  {&kMany, 47, 33},
        {&kHoles, 47, 33}, {&kFew, 1, 1},       {&kHalfOpaque, 33, 20}, {&kHoles, 2, 300}, {&kOwnPalettes, 14, 14}};
    for (const auto& [look, width, height] : cases)
        for (const OutputFormat format : kAnimated) {
            if (format == OutputFormat::Gif && look == &kHalfOpaque)
                continue; // which it cannot hold
            const Animation animation = animationOf(*look, width, height, 6);
            const AnimationFile file = readBack(animation, format);
            EXPECT_EQ(file.format, format);
            if (format == OutputFormat::Gif && look == &kMany) {
                expectAlike(pictureOf(animation.frames[1]), pictureOf(file.animation.frames[1]));
                continue;
            }
            const std::string name = std::string(formatName(format)) + " " + std::to_string(width);
            expectSameShow(animation, file.animation, name);
            EXPECT_LE(file.stored.size(), 5u) << name; // equal frames are one
        }
}

// A frame that something covers for a moment costs next to nothing when it comes again.
TEST(StageFiles, PicturesOfAMomentAreTakenBack) {
    const Bytes grain = noise(40 * 40, 7);
    Animation animation = animationOf(
        [&](const Spot& s) {
            const std::uint8_t level = grain[40 * s.y + s.x];
            return s.frame == 1 && s.y > 4 ? pixelOf({255, 0, std::uint8_t(level / 2)}) : pixelOf({level, 9, 9});
        },
        40, 40, 2);
    animation.frames.push_back(animation.frames[0]);
    const AnimationFile file = readBack(animation, OutputFormat::Apng);
    expectSameShow(animation, file.animation, "a moment");
    EXPECT_LT(file.stored.at(2).bytes * 4, file.stored.at(0).bytes);
}

TEST(StageFiles, OnlyWhatChangesIsStored) {
    // The patch of 9 x 7 moves by 2 and 1: from the first frame to the second it covers 11 x 8.
    for (const OutputFormat format : kAnimated) {
        const StoredFrame stored = readBack(animationOf(kFew, 60, 50, 2), format).stored.at(1);
        EXPECT_EQ((Area{stored.x, stored.y, stored.width, stored.height}), (Area{0, 0, 11, 8})) << formatName(format);
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
    for (const Look& look : {kPalette, kHoles})
        for (const OutputFormat format : kAnimated) {
            WatchedSink sink;
            writeAnimation(animationOf(look, 40, 30, 5), format, {}, sink);
            EXPECT_EQ(sink.counts, (std::vector<std::size_t>{1, 2, 3, 4})) << formatName(format);
        }
}

TEST(StageFiles, LoopsCommentsAndOriginComeBack) {
    for (const OutputFormat format : kAnimated)
        for (const std::uint32_t plays : {0u, 1u, 2u, 300u}) {
            Animation animation = animationOf(kFew, 20, 20, 2);
            animation.plays = plays;
            animation.comment = "first line\n" + std::string(600, 'c') + "\xC3\xA4";
            animation.made =
                Remembered{"A = 1\nMainEffect = 15\n", plays == 1 ? std::nullopt : std::optional("N,1,2\n")};
            const Animation read = readBack(animation, format).animation;
            EXPECT_EQ(std::tie(read.plays, read.comment, read.made),
                      std::tie(animation.plays, animation.comment, animation.made))
                << formatName(format);
        }
    EXPECT_TRUE(!rememberedFrom("CREATED BY...") && !rememberedFrom("[Voltane #1]\nA = \x1A\n"));
}

TEST(StageFiles, GifCutsOpacityAtTheThresholdOverTheMatte) {
    Animation animation = animationOf(kFew, 3, 1, 1);
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

using Delays = std::vector<std::uint32_t>;

TEST(StageTiming, HundredthsCarryTheRemainderAndBrowsersSlowDown) {
    const Delays hundredths = delaysInHundredths(Delays(30, 33));
    EXPECT_EQ(std::accumulate(hundredths.begin(), hundredths.end(), 0u), 99u);
    EXPECT_EQ(Delays(hundredths.begin(), hundredths.begin() + 6), (Delays{3, 4, 3, 3, 4, 3}));
    const PlayingTime time = playingTime(Delays{10, 20, 0, 100});
    EXPECT_EQ(std::tuple(time.stored, time.inBrowsers, time.slowedFrames, time.framesPerSecond),
              std::tuple(130u, 320u, 2u, 12.5));
}

// A browser does not slow down equal frames that are one picture of 20 ms in the file.
TEST(StageTiming, BrowsersShowJoinedFramesForTheirWholeTime) {
    Animation animation = animationOf(kFew, 5, 5, 2);
    animation.frames[0].delay = 10;
    animation.frames[1].delay = 3;
    for (const std::size_t frame : {0u, 2u})
        animation.frames.insert(animation.frames.begin() + frame, animation.frames[frame]);
    const FrameTimes times = frameTimes(animation, OutputFormat::Apng);
    EXPECT_EQ(std::pair(times.stored, times.inBrowsers), std::pair(Delays{10, 10, 3, 3}, Delays{10, 10, 97, 3}));
    EXPECT_EQ(std::tuple(times.whole.inBrowsers, times.whole.slowedFrames, times.whole.frames),
              std::tuple(120u, 1u, 2u));
    EXPECT_EQ(frameTimes(animation, OutputFormat::Png).whole.frames, 4u);
}

// Equal frames are joined only as long as the format can count the time.
TEST(StageTiming, LongDelaysStay) {
    Animation animation = animationOf(kFew, 5, 5, 1);
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

Frame indexedFrame(Bytes pixels, std::optional<std::uint8_t> transparent = {}) {
    Frame frame = frameOf({static_cast<std::uint32_t>(pixels.size()), 1, {}});
    frame.format = PixelFormat::Indexed;
    frame.palette = greys();
    frame.pixels = std::move(pixels);
    frame.delay = 7;
    frame.transparentIndex = transparent;
    return frame;
}

// The grey levels of each frame, with dots where nothing is, and how long all are shown.
std::string levelsOf(const Animation& animation) {
    std::string text;
    for (const Frame& frame : animation.frames) {
        for (const Pixel pixel : pictureOf(frame).pixels)
            text += pixel == kTransparentPixel ? "." : std::to_string(rgbOf(pixel).green);
        text += ' ';
    }
    return text + std::to_string(totalDelay(animation)) + " ms";
}

// What the recorder makes of the transparent index: holes, or what the frame before shows there. Differences whose
// palette changes, and frames smaller than the animation, become pictures of their own.
TEST(StageRecorder, TransparencyMeansHolesOrUnchanged) {
    const std::vector<Frame> two = {indexedFrame({0, 3, 1}, 3), indexedFrame({3, 2, 3}, 3)};
    std::vector<Frame> others = {indexedFrame({3, 3, 1}, 3), indexedFrame({3, 2, 3}, 3), indexedFrame({7, 8})};
    others[1].palette[2] = {6, 6, 6};
    const auto onEntry = [](AnimationRecorder& recorder) { recorder.setBackgroundIndex(5); };
    const auto onColour = [](AnimationRecorder& recorder) { recorder.setBackgroundColour({9, 9, 9}); };
    const struct {
        const char* levels;
        bool deltas;
        std::function<void(AnimationRecorder&)> setBackground;
        const std::vector<Frame>& frames;
    } cases[] = {{"0.1 .2. 140 ms", false, onEntry, two},
                 {"051 021 140 ms", true, onEntry, two},
                 {"091 021 140 ms", true, onColour, two},
                 {"001 061 78. 210 ms", true, [](AnimationRecorder&) {}, others}}; // on the palette's first colour
    for (const auto& c : cases) {
        AnimationRecorder recorder(DelayUnit::Hundredths);
        if (c.deltas)
            recorder.announceDeltas();
        recorder.begin({3, 1, 8, greys(), static_cast<std::uint32_t>(c.frames.size())});
        c.setBackground(recorder);
        for (const Frame& frame : c.frames)
            recorder.addFrame(frame);
        EXPECT_EQ(levelsOf(recorder.finish()), c.levels);
    }
}

TEST(StageRecorder, NamesFilesAfterTheEffect) {
    for (const auto& [effect, name] : {std::pair{"Analog VU Meter (round)", "analog-vu-meter-round"},
                                       {"Plasma Arc *", "plasma-arc"},
                                       {"Jacob's  Ladder", "jacobs-ladder"},
                                       {" * ", "animation"}})
        EXPECT_EQ(defaultFileName(effect), name);
}

TEST(StageRecorder, TellsWhetherAnythingIsTransparent) {
    Frame opaque = frameOf({1, 1, {pixelOf({1, 2, 3}, 254)}});
    opaque.pixels[3] = 255;
    for (const auto& [frame, isTransparent] : {std::pair{indexedFrame({1, 2}), false},
                                               {indexedFrame({1, 2}, 3), false},
                                               {indexedFrame({1, 2}, 2), true},
                                               {opaque, false}})
        EXPECT_EQ(hasTransparency({1, 1, {frame}, 0, {}, {}, {}}), isTransparent);
}

TEST(StageRecorder, WrongOrderAndWrongDataAreRefused) {
    const auto begin = [](auto& recorder, std::uint32_t width = 1) { recorder.begin({width, 1, 8, greys(), 1}); };
    const Frame frame = indexedFrame({0, 0});
    const std::function<void(AnimationRecorder&)> faults[] = {[&](auto& r) { begin(r, 0); },
                                                              [&](auto& r) { begin(r, 65536); },
                                                              [&](auto& r) { r.addFrame(frame); },
                                                              [&](auto& r) { begin(r), r.finish(); },
                                                              [&](auto& r) { begin(r), begin(r); },
                                                              [&](auto& r) { begin(r), r.addFrame(frame); },
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
    auto fileCount() const { return std::distance(std::filesystem::directory_iterator(folder_), {}); }

    std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / ("stage-target-" + std::to_string(::getpid()));
    std::filesystem::path target_ = folder_ / pathFromUtf8("r\xC3\xB6hre 1.gif");
};

TEST_F(StageTarget, TakesItsPlaceOnlyWhenComplete) {
    writeFile(target_, "precious");
    const Animation animation = animationOf(kPalette, 20, 20, 4);
    const auto halfWay = [](std::size_t done, std::size_t) { return done < 2; };
    EXPECT_EQ(saveAnimation(animation, OutputFormat::Gif, {}, target_, halfWay), std::nullopt);
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
    EXPECT_EQ(fileCount(), 1);
    const auto written = saveAnimation(animation, OutputFormat::Gif, {}, target_);
    EXPECT_EQ(written->bytes, std::filesystem::file_size(target_));
    // Counts near the start are written again once they are known.
    MemorySink memory;
    writeAnimation(animation, OutputFormat::Apng, {}, memory);
    saveAnimation(animation, OutputFormat::Apng, {}, target_);
    EXPECT_EQ(readFile(target_), std::string(memory.bytes().begin(), memory.bytes().end()));
    EXPECT_EQ(saveAnimation(animation, OutputFormat::Png, {}, folder_ / "a.b.png")->last, folder_ / "a.b-0003.png");
    EXPECT_EQ(fileCount(), 5);
    for (const std::filesystem::path& wrong :
         {folder_, folder_ / "missing" / "a.gif", target_ / "a.gif", folder_ / std::string(256, 'x')})
        EXPECT_THROW(OutputFile{wrong}, Failure) << wrong;
    std::filesystem::permissions(target_, std::filesystem::perms::owner_read);
    EXPECT_THROW(saveAnimation(animation, OutputFormat::Gif, {}, target_), Failure); // its owner has protected it
    EXPECT_EQ(fileCount(), 5);
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
    EXPECT_TRUE(!formatOfFile("radar") && !formatOfFile("radar."));
}

// Frames are compressed side by side; more of them than are taken at once.
TEST(StageWriting, BytesDoNotDependOnTheThreads) {
    const Animation animation = animationOf(
        [](const Spot& s) {
            const bool isPast = 30 * s.y + s.x >= s.frame;
            return pixelOf(isPast ? Rgb{9, 9, 9} : Rgb{std::uint8_t(s.frame), 100, 50});
        },
        30, 30, 70);
    for (const OutputFormat format : kAnimated) {
        MemorySink alone, together;
        std::vector<std::size_t> told;
        ASSERT_TRUE(writeAnimation(animation, format, {.threads = 1}, alone));
        ASSERT_TRUE(writeAnimation(animation, format, {.threads = 3}, together, [&](std::size_t done, std::size_t) {
            told.push_back(done);
            return true;
        }));
        EXPECT_EQ(alone.bytes(), together.bytes()) << formatName(format);
        EXPECT_EQ(told.size(), 69u); // two frames are equal
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
        writeAnimation(animationOf(kPalette, 20, 20, 4), format, {}, sink);
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
