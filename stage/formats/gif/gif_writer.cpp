// One function for each block of GIF89a; numbers are written low byte first.
#include "formats/gif/gif_writer.h"

#include "base/byte_sink.h"
#include "base/parallel.h"
#include "document/timing.h"
#include "formats/colours.h"
#include "formats/gif/lzw.h"
#include "formats/steps.h"

#include <algorithm>
#include <bit>
#include <string_view>

namespace stage {
namespace {

constexpr std::uint32_t kLargestWord = 65535;
constexpr std::size_t kLargestSubBlock = 255;
constexpr std::size_t kMostColours = 256;
constexpr std::uint8_t kExtension = 0x21;
constexpr std::uint8_t kTrailer = 0x3B;

// What becomes of a frame before the next is drawn; the values are those of GIF89a.
enum class GifDisposal : std::uint8_t { Keep = 1, RestoreBackground = 2 };

void putNumber(Bytes& bytes, std::uint32_t number) {
    bytes.push_back(static_cast<std::uint8_t>(number));
    bytes.push_back(static_cast<std::uint8_t>(number >> 8));
}

// Padded with black to 2^bits entries.
void putPalette(Bytes& bytes, std::span<const Pixel> palette, unsigned bits) {
    for (std::size_t i = 0; i < std::size_t{1} << bits; ++i) {
        const Rgb colour = i < palette.size() ? rgbOf(palette[i]) : Rgb{};
        bytes.insert(bytes.end(), {colour.red, colour.green, colour.blue});
    }
}

void putSubBlocks(Bytes& bytes, std::span<const std::uint8_t> data) {
    while (!data.empty()) {
        const std::size_t count = std::min(data.size(), kLargestSubBlock);
        bytes.push_back(static_cast<std::uint8_t>(count));
        bytes.insert(bytes.end(), data.begin(), data.begin() + static_cast<std::ptrdiff_t>(count));
        data = data.subspan(count);
    }
    bytes.push_back(0);
}

unsigned bitsFor(std::size_t entries) {
    return std::max(1u, static_cast<unsigned>(std::bit_width(std::max<std::size_t>(entries, 2) - 1)));
}

// A palette and the way back from a colour to its entry.
struct ColourTable {
    std::vector<Pixel> colours;
    std::optional<std::uint8_t> transparent; // an entry that no colour uses: the first, because low numbers are short
    PixelMap<std::uint8_t> entries;

    enum class Hole { None, Reserved };
    // At most 256 colours, with a reserved entry 255.
    ColourTable(std::vector<Pixel> list, Hole hole) : colours(std::move(list)) {
        if (hole == Hole::Reserved) {
            colours.insert(colours.begin(), kTransparentPixel);
            transparent = std::uint8_t{0};
        }
        for (std::size_t i = transparent ? 1 : 0; i < colours.size(); ++i)
            entries[colours[i]] = static_cast<std::uint8_t>(i);
    }
    unsigned bits() const { return bitsFor(colours.size()); }
};

void putScreen(Bytes& bytes, const Animation& animation, const ColourTable& table) {
    std::ranges::copy(std::string_view("GIF89a"), std::back_inserter(bytes));
    putNumber(bytes, animation.width);
    putNumber(bytes, animation.height);
    // A global palette follows; eight bits per primary colour; the palette's size.
    bytes.push_back(static_cast<std::uint8_t>(0x80 | 0x70 | (table.bits() - 1)));
    const std::uint8_t* background =
        animation.background ? table.entries.find(pixelOf(*animation.background)) : nullptr;
    bytes.push_back(table.transparent.value_or(background == nullptr ? 0 : *background));
    bytes.push_back(0); // square pixels
    putPalette(bytes, table.colours, table.bits());
}

// Without this extension an animation is shown once; its number says how many times more.
void putLoop(Bytes& bytes, std::uint32_t plays) {
    if (plays == 1)
        return;
    bytes.insert(bytes.end(), {kExtension, 0xFF, 11});
    std::ranges::copy(std::string_view("NETSCAPE2.0"), std::back_inserter(bytes));
    bytes.insert(bytes.end(), {3, 1});
    putNumber(bytes, plays == 0 ? 0 : std::min(plays - 1, kLargestWord));
    bytes.push_back(0);
}

void putComment(Bytes& bytes, std::string_view text) {
    if (text.empty())
        return;
    bytes.insert(bytes.end(), {kExtension, 0xFE});
    putSubBlocks(bytes, bytesOf(text));
}

void putGraphicControl(Bytes& bytes, std::uint32_t delay, GifDisposal disposal, std::optional<std::uint8_t> hole) {
    const int flags = static_cast<int>(disposal) << 2 | (hole ? 1 : 0);
    bytes.insert(bytes.end(), {kExtension, 0xF9, 4, static_cast<std::uint8_t>(flags)});
    putNumber(bytes, std::min(delay, kLargestWord));
    bytes.push_back(hole.value_or(0));
    bytes.push_back(0);
}

// A part of the canvas that is about to be drawn.
struct Part {
    Area area;
    std::vector<Pixel> pixels;
    std::vector<std::uint8_t> isChanged; // 0: stands there already
};

// The part's pixels as entries of a palette.
struct IndexedPart {
    std::vector<std::uint8_t> indices;
    std::vector<std::uint8_t> isFree;
    std::optional<std::uint8_t> transparent;
    unsigned codeSize = 2;
};

// The entry that stands for "as it was": the reserved one, or the first that no changed pixel needs. `used` tells
// which those are.
std::optional<std::uint8_t> transparentEntry(const Part& part, const ColourTable& table,
                                             const std::array<bool, kMostColours>& used) {
    if (std::ranges::find(part.isChanged, 0) == part.isChanged.end())
        return std::nullopt;
    if (table.transparent)
        return table.transparent;
    const auto unused = std::ranges::find(used, false);
    return unused == used.end() ? std::nullopt : std::optional(static_cast<std::uint8_t>(unused - used.begin()));
}

// Nothing when the table lacks a colour that must be drawn.
std::optional<IndexedPart> indexed(const Part& part, const ColourTable& table) {
    constexpr std::uint16_t kNone = kMostColours;
    std::vector<std::uint16_t> entries(part.pixels.size()); // kNone: the table lacks it
    std::array<bool, kMostColours> used{};                  // by what must be drawn
    for (std::size_t i = 0; i < part.pixels.size(); ++i) {
        const bool isRun = i > 0 && part.pixels[i] == part.pixels[i - 1];
        const std::uint8_t* found = isRun ? nullptr : table.entries.find(part.pixels[i]);
        entries[i] = isRun ? entries[i - 1] : found != nullptr ? *found : kNone;
        if (part.isChanged[i] == 0)
            continue;
        if (entries[i] == kNone)
            return std::nullopt;
        used[entries[i]] = true;
    }
    IndexedPart result;
    result.transparent = transparentEntry(part, table, used);
    std::size_t largest = result.transparent.value_or(0);
    for (std::size_t entry = largest; entry < used.size(); ++entry)
        largest = used[entry] ? entry : largest;
    result.codeSize = std::max(2u, bitsFor(largest + 1));
    result.indices.reserve(part.pixels.size());
    result.isFree.assign(part.pixels.size(), 0);
    for (std::size_t i = 0; i < part.pixels.size(); ++i) {
        const auto entry = static_cast<std::uint8_t>(entries[i]);
        if (part.isChanged[i] != 0) {
            result.indices.push_back(entry);
            continue;
        }
        const bool solid = entries[i] < 1u << result.codeSize && entry != result.transparent;
        if (!solid && !result.transparent)
            return std::nullopt;
        result.indices.push_back(solid ? entry : *result.transparent);
        result.isFree[i] = solid && result.transparent ? 1 : 0;
    }
    return result;
}

enum class TablePlace { Global, Local };

struct ImageBlock {
    Bytes bytes;                      // with its palette, when it has one of its own
    std::optional<std::uint8_t> hole; // the entry that is transparent
    unsigned codeSize = 2;
};

// Nothing when the table lacks a colour that must be drawn.
std::optional<ImageBlock> imageBlock(const Part& part, const ColourTable& table, TablePlace place) {
    const auto pixels = indexed(part, table);
    if (!pixels)
        return std::nullopt;
    ImageBlock image{{0x2C}, pixels->transparent, pixels->codeSize};
    for (const std::uint32_t number : {part.area.x, part.area.y, part.area.width, part.area.height})
        putNumber(image.bytes, number);
    image.bytes.push_back(static_cast<std::uint8_t>(place == TablePlace::Local ? 0x80 | (table.bits() - 1) : 0));
    if (place == TablePlace::Local)
        putPalette(image.bytes, table.colours, table.bits());
    image.bytes.push_back(static_cast<std::uint8_t>(image.codeSize));
    putSubBlocks(image.bytes, compressLzw({pixels->indices, pixels->isFree, image.hole.value_or(0)}, image.codeSize));
    return image;
}

// Only the colours that must be drawn, and one for what stays.
ColourTable ownTable(const Part& part) {
    ColourCount count(kMostColours);
    for (std::size_t i = 0; i < part.pixels.size(); ++i)
        if (part.isChanged[i] != 0)
            count.add({&part.pixels[i], 1});
    const bool keepsSome = std::ranges::find(part.isChanged, 0) != part.isChanged.end();
    return {count.byFrequency(),
            keepsSome && count.size() < kMostColours ? ColourTable::Hole::Reserved : ColourTable::Hole::None};
}

// The frames as they shall look, with no more colours than the format has.
class GifPictures {
public:
    GifPictures(const Animation& animation, const WriteOptions& options) : animation_(animation), options_(options) {
        constexpr std::uint64_t kMostKept = std::uint64_t{1} << 24; // pixels; frames are asked for several times
        isKept_ = std::uint64_t{animation.width} * animation.height * animation.frames.size() <= kMostKept;
        ColourCount all((std::size_t{1} << 24) + 1); // every opaque colour, and what is transparent
        for (const Frame& frame : animation.frames) {
            Picture picture = gifPicture(frame, options);
            all.add(picture.pixels);
            if (isKept_)
                kept_.push_back(std::move(picture));
        }
        if (all.size() > kMostColours && !framesFit()) { // one entry stays for what is transparent
            const std::vector<Pixel> palette = reducedPalette(all.counts(), kMostColours - 1);
            for (const auto& entry : all.counts())
                if (entry.first != kTransparentPixel)
                    reduced_[entry.first] = nearestColour(palette, entry.first);
        }
    }

    Picture at(std::size_t index) const {
        Picture picture = isKept_ ? kept_[index] : gifPicture(animation_.frames[index], options_);
        if (reduced_.size() > 0)
            for (Pixel& pixel : picture.pixels)
                if (pixel != kTransparentPixel)
                    pixel = *reduced_.find(pixel);
        return picture;
    }

private:
    bool framesFit() const {
        for (std::size_t i = 0; i < animation_.frames.size(); ++i) {
            ColourCount own(kMostColours);
            own.add(at(i).pixels);
            if (own.isOverLimit())
                return false;
        }
        return true;
    }

    const Animation& animation_;
    const WriteOptions& options_;
    bool isKept_ = false;
    std::vector<Picture> kept_;
    PixelMap<Pixel> reduced_; // empty: colours stay as they are
};

// Orders the colours of all pictures so that those of pictures with few come first: the largest entry that a picture
// draws decides how long its codes are at the beginning.
class PaletteOrder {
public:
    void add(std::span<const Pixel> drawn) {
        ColourCount own(kMostColours);
        own.add(drawn);
        for (const auto& entry : own.counts())
            weights_[entry.first] += 1.0 / static_cast<double>(own.size());
    }
    std::size_t size() const { return weights_.size(); }
    std::vector<Pixel> colours() const {
        std::vector<std::pair<double, Pixel>> sorted;
        for (const auto& [pixel, weight] : weights_)
            sorted.emplace_back(-weight, pixel);
        std::ranges::sort(sorted);
        std::vector<Pixel> colours;
        std::ranges::transform(sorted, std::back_inserter(colours), &std::pair<double, Pixel>::second);
        return colours;
    }

private:
    PixelMap<double> weights_;
};

// The palette of all frames when there is one, else that of the first frame.
ColourTable globalTable(const GifPictures& pictures, std::span<const Step> steps) {
    PaletteOrder all;
    PaletteOrder first;
    bool hasHoles = false;
    Picture before;
    for (const Step& step : steps) {
        Picture picture = pictures.at(step.frame);
        std::vector<Pixel> drawn;
        for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
            if (picture.pixels[i] == kTransparentPixel)
                hasHoles = true;
            else if (before.pixels.empty() || before.pixels[i] != picture.pixels[i])
                drawn.push_back(picture.pixels[i]);
        }
        if (before.pixels.empty())
            first.add(drawn);
        all.add(drawn);
        before = std::move(picture);
    }
    std::vector<Pixel> colours = (all.size() > kMostColours ? first : all).colours();
    // An entry for what is transparent costs nothing while the palette does not double.
    const bool isCheap = bitsFor(colours.size()) == bitsFor(colours.size() + 1);
    const bool reserves = colours.size() < kMostColours && (hasHoles || isCheap);
    return {std::move(colours), reserves ? ColourTable::Hole::Reserved : ColourTable::Hole::None};
}

// Where something opaque must vanish for the next picture to show nothing.
Area vanishingArea(const Picture& shown, const Picture& next) {
    Picture kept = shown;
    for (std::size_t i = 0; i < kept.pixels.size(); ++i)
        if (next.pixels[i] == kTransparentPixel)
            kept.pixels[i] = kTransparentPixel;
    return changedArea(shown, kept);
}

// A frame on its way into the file.
struct GifFrame {
    Part part;
    std::uint32_t delay = 0; // 1/100 s
    GifDisposal disposal = GifDisposal::Keep;
    Bytes blocks; // once it is compressed
};

class GifFile {
public:
    GifFile(const Animation& animation, const GifPictures& pictures, std::span<const Step> steps, ByteSink& sink)
        : sink_(sink), table_(globalTable(pictures, steps)), canvas_{animation.width, animation.height,
                                                                     std::vector<Pixel>(std::size_t{animation.width} *
                                                                                            animation.height,
                                                                                        kTransparentPixel)} {
        Bytes bytes;
        putScreen(bytes, animation, table_);
        putLoop(bytes, animation.plays);
        putComment(bytes, animation.comment);
        if (animation.made)
            putComment(bytes, rememberedText(*animation.made));
        bytes.push_back(kTrailer);
        sink_.write(bytes);
    }

    // What the next picture adds to what is there; `next` is the one after it, null at the end.
    GifFrame plan(const Picture& picture, const Picture* next, std::uint32_t delay) {
        Area area = isFirst_ ? Area{0, 0, picture.width, picture.height} : changedArea(canvas_, picture);
        isFirst_ = false;
        const Area vanishing = next == nullptr ? Area{} : vanishingArea(picture, *next);
        area = unitedArea(area, vanishing);
        if (area.width == 0)
            area = {0, 0, 1, 1};
        GifFrame frame{partOf(picture, area),
                       delay,
                       vanishing.width != 0 ? GifDisposal::RestoreBackground : GifDisposal::Keep,
                       {}};
        canvas_ = picture;
        if (frame.disposal == GifDisposal::RestoreBackground)
            fill(canvas_, area, kTransparentPixel);
        return frame;
    }

    // Makes the frame's blocks. May be called for several frames at once.
    void compress(GifFrame& frame) const {
        const ImageBlock image = shortestImage(frame.part);
        putGraphicControl(frame.blocks, frame.delay, frame.disposal, image.hole);
        frame.blocks.insert(frame.blocks.end(), image.bytes.begin(), image.bytes.end());
    }

    // The trailer at the end gives way to the blocks and a new trailer.
    void append(GifFrame frame) {
        frame.blocks.push_back(kTrailer);
        sink_.stepBack(1);
        sink_.write(frame.blocks);
        sink_.flush();
    }

private:
    Part partOf(const Picture& picture, const Area& area) const {
        Part part{area, cutOut(picture, area).pixels, {}};
        const std::vector<Pixel> before = cutOut(canvas_, area).pixels;
        part.isChanged.reserve(part.pixels.size());
        for (std::size_t i = 0; i < part.pixels.size(); ++i)
            part.isChanged.push_back(part.pixels[i] != before[i] ? 1 : 0);
        return part;
    }

    ImageBlock shortestImage(const Part& part) const {
        std::optional<ImageBlock> shared = imageBlock(part, table_, TablePlace::Global);
        const ColourTable own = ownTable(part);
        constexpr std::size_t kEntryBytes = 3;
        // Its own palette helps by shorter codes, or by an entry for what stays, and costs its bytes.
        const bool mayHelp = !shared || ((!shared->hole || std::max(own.bits(), 2u) < shared->codeSize) &&
                                         shared->bytes.size() > own.colours.size() * kEntryBytes);
        std::optional<ImageBlock> local = mayHelp ? imageBlock(part, own, TablePlace::Local) : std::nullopt;
        return !local || (shared && shared->bytes.size() <= local->bytes.size()) ? std::move(*shared)
                                                                                 : std::move(*local);
    }

    ByteSink& sink_;
    ColourTable table_;
    Picture canvas_; // what a viewer shows before the next frame
    bool isFirst_ = true;
};

} // namespace

Picture gifPicture(const Frame& frame, const WriteOptions& options) {
    Picture picture = pictureOf(frame);
    if (frame.format != PixelFormat::Rgba) // wholly transparent at most
        return picture;
    for (Pixel& pixel : picture.pixels) {
        const std::uint32_t opacity = opacityOf(pixel);
        if (opacity == 255)
            continue;
        const Rgb colour = rgbOf(pixel);
        const auto mixed = [opacity](std::uint8_t over, std::uint8_t under) {
            return static_cast<std::uint8_t>((over * opacity + under * (255 - opacity) + 127) / 255);
        };
        pixel = opacity < options.opacityThreshold
                    ? kTransparentPixel
                    : pixelOf({mixed(colour.red, options.matte.red), mixed(colour.green, options.matte.green),
                               mixed(colour.blue, options.matte.blue)});
    }
    return picture;
}

bool writeGif(const Animation& animation, const WriteOptions& options, ByteSink& sink, const WriteProgress& progress) {
    const GifPictures pictures(animation, options);
    const auto pictureAt = [&pictures](std::size_t index) { return pictures.at(index); };
    const std::vector<Step> steps =
        joinedSteps(animation, pictureAt, storedDelays(animation, OutputFormat::Gif), kLargestWord * 10);
    GifFile file(animation, pictures, steps, sink);
    constexpr std::size_t kBatch = 32; // frames that are compressed side by side
    std::vector<GifFrame> batch;
    std::size_t done = 0;
    const auto finishBatch = [&] {
        forEachInParallel(batch.size(), options.threads, [&](std::size_t i) { file.compress(batch[i]); });
        for (GifFrame& frame : batch) {
            if (progress && !progress(done++, steps.size()))
                return false;
            file.append(std::move(frame));
        }
        batch.clear();
        return true;
    };
    const auto mayGoOn = [&](std::size_t, std::size_t) { return batch.size() < kBatch || finishBatch(); };
    return writeSteps(steps, pictureAt, mayGoOn,
                      [&](const Step& step, const Picture& picture, const Picture* next) {
                          batch.push_back(file.plan(picture, next, step.delay / 10));
                      }) &&
           finishBatch();
}

} // namespace stage
