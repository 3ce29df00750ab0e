// One function for each block of GIF89a; numbers are written low byte first.
#include "core/gif_writer.h"

#include "core/colours.h"
#include "core/lzw.h"
#include "core/steps.h"
#include "core/timing.h"

#include <algorithm>
#include <bit>
#include <memory>
#include <string_view>

namespace stage {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kLargestNumber = 65535;
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

std::span<const std::uint8_t> bytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

unsigned bitsFor(std::size_t entries) {
    return std::max(1u, static_cast<unsigned>(std::bit_width(std::max<std::size_t>(entries, 2) - 1)));
}

// A palette and the way back from a colour to its entry.
struct ColourTable {
    std::vector<Pixel> colours;
    std::optional<std::uint8_t> transparent; // an entry that no colour uses: the first, because low numbers are short
    std::unordered_map<Pixel, std::uint8_t> entries;

    enum class Hole { None, Reserved };
    // At most 256 colours, with a reserved entry 255.
    ColourTable(std::vector<Pixel> list, Hole hole) : colours(std::move(list)) {
        if (hole == Hole::Reserved) {
            colours.insert(colours.begin(), kTransparentPixel);
            transparent = std::uint8_t{0};
        }
        for (std::size_t i = transparent ? 1 : 0; i < colours.size(); ++i)
            entries.emplace(colours[i], static_cast<std::uint8_t>(i));
    }
    unsigned bits() const { return bitsFor(colours.size()); }
    std::optional<std::uint8_t> find(Pixel pixel) const {
        const auto found = entries.find(pixel);
        return found == entries.end() ? std::nullopt : std::optional(found->second);
    }
};

void putScreen(Bytes& bytes, const Animation& animation, const ColourTable& table) {
    std::ranges::copy(std::string_view("GIF89a"), std::back_inserter(bytes));
    putNumber(bytes, animation.width);
    putNumber(bytes, animation.height);
    // A global palette follows; eight bits per primary colour; the palette's size.
    bytes.push_back(static_cast<std::uint8_t>(0x80 | 0x70 | (table.bits() - 1)));
    const auto background = animation.background ? table.find(pixelOf(*animation.background)) : std::nullopt;
    bytes.push_back(table.transparent.value_or(background.value_or(0)));
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
    putNumber(bytes, plays == 0 ? 0 : std::min(plays - 1, kLargestNumber));
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
    putNumber(bytes, std::min(delay, kLargestNumber));
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

// The entry that stands for "as it was": the reserved one, or the first that no changed pixel needs.
std::optional<std::uint8_t> transparentEntry(const Part& part, const ColourTable& table) {
    if (std::ranges::find(part.isChanged, 0) == part.isChanged.end())
        return std::nullopt;
    if (table.transparent)
        return table.transparent;
    std::array<bool, kMostColours> used{};
    for (std::size_t i = 0; i < part.pixels.size(); ++i)
        if (part.isChanged[i] != 0)
            used[*table.find(part.pixels[i])] = true;
    const auto unused = std::ranges::find(used, false);
    return unused == used.end() ? std::nullopt : std::optional(static_cast<std::uint8_t>(unused - used.begin()));
}

// Nothing when the table lacks a colour that must be drawn.
std::optional<IndexedPart> indexed(const Part& part, const ColourTable& table) {
    IndexedPart result;
    std::size_t largest = 0;
    for (std::size_t i = 0; i < part.pixels.size(); ++i) {
        if (part.isChanged[i] == 0)
            continue;
        const auto entry = table.find(part.pixels[i]);
        if (!entry)
            return std::nullopt;
        largest = std::max<std::size_t>(largest, *entry);
    }
    result.transparent = transparentEntry(part, table);
    largest = std::max<std::size_t>(largest, result.transparent.value_or(0));
    result.codeSize = std::max(2u, bitsFor(largest + 1));
    result.indices.reserve(part.pixels.size());
    result.isFree.assign(part.pixels.size(), 0);
    for (std::size_t i = 0; i < part.pixels.size(); ++i) {
        const auto entry = table.find(part.pixels[i]);
        if (part.isChanged[i] != 0) {
            result.indices.push_back(*entry);
            continue;
        }
        const bool solid = entry && *entry < 1u << result.codeSize && entry != result.transparent;
        if (!solid && !result.transparent)
            return std::nullopt;
        result.indices.push_back(solid ? *entry : *result.transparent);
        result.isFree[i] = solid && result.transparent ? 1 : 0;
    }
    return result;
}

enum class TablePlace { Global, Local };

// The image with its palette, when it has one of its own; `hole` is set to the entry that is transparent.
std::optional<Bytes> imageBlock(const Part& part, const ColourTable& table, TablePlace place,
                                std::optional<std::uint8_t>& hole) {
    const auto pixels = indexed(part, table);
    if (!pixels)
        return std::nullopt;
    hole = pixels->transparent;
    Bytes bytes = {0x2C};
    for (const std::uint32_t number : {part.area.x, part.area.y, part.area.width, part.area.height})
        putNumber(bytes, number);
    bytes.push_back(static_cast<std::uint8_t>(place == TablePlace::Local ? 0x80 | (table.bits() - 1) : 0));
    if (place == TablePlace::Local)
        putPalette(bytes, table.colours, table.bits());
    bytes.push_back(static_cast<std::uint8_t>(pixels->codeSize));
    putSubBlocks(bytes, compressLzw({pixels->indices, pixels->isFree, hole.value_or(0)}, pixels->codeSize));
    return bytes;
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
        ColourCount all(std::size_t{1} << 24);
        bool framesFit = true;
        for (const Frame& frame : animation.frames) {
            const Picture picture = gifPicture(frame, options);
            ColourCount own(kMostColours);
            own.add(picture.pixels);
            framesFit = framesFit && !own.isOverLimit();
            all.add(picture.pixels);
        }
        if (!framesFit) // one entry stays for what is transparent
            nearest_ = std::make_unique<NearestEntry>(palette_ = reducedPalette(all.counts(), kMostColours - 1));
    }

    Picture at(std::size_t index) {
        Picture picture = gifPicture(animation_.frames[index], options_);
        if (nearest_)
            for (Pixel& pixel : picture.pixels)
                if (pixel != kTransparentPixel)
                    pixel = palette_[nearest_->find(pixel)];
        return picture;
    }

private:
    const Animation& animation_;
    const WriteOptions& options_;
    std::vector<Pixel> palette_;
    std::unique_ptr<NearestEntry> nearest_;
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
    std::unordered_map<Pixel, double> weights_;
};

// The palette of all frames when there is one, else that of the first frame.
ColourTable globalTable(GifPictures& pictures, std::span<const Step> steps) {
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

class GifFile {
public:
    GifFile(const Animation& animation, GifPictures& pictures, std::span<const Step> steps, ByteSink& sink)
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

    // `next` is null for the last picture.
    void add(const Picture& picture, const Picture* next, std::uint32_t delay) {
        Area area = isFirst_ ? Area{0, 0, picture.width, picture.height} : changedArea(canvas_, picture);
        isFirst_ = false;
        const Area vanishing = next == nullptr ? Area{} : vanishingArea(picture, *next);
        area = unitedArea(area, vanishing);
        if (area.width == 0)
            area = {0, 0, 1, 1};
        const Part part = partOf(picture, area);
        std::optional<std::uint8_t> hole;
        const Bytes image = shortestImage(part, hole);
        const bool clears = vanishing.width != 0;
        Bytes blocks;
        putGraphicControl(blocks, delay, clears ? GifDisposal::RestoreBackground : GifDisposal::Keep, hole);
        blocks.insert(blocks.end(), image.begin(), image.end());
        append(std::move(blocks));
        canvas_ = picture;
        if (clears)
            fill(canvas_, area, kTransparentPixel);
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

    Bytes shortestImage(const Part& part, std::optional<std::uint8_t>& hole) const {
        const auto shared = imageBlock(part, table_, TablePlace::Global, hole);
        const ColourTable own = ownTable(part);
        constexpr std::size_t kEntryBytes = 3;
        if (shared && shared->size() <= own.colours.size() * kEntryBytes)
            return *shared;
        std::optional<std::uint8_t> ownHole;
        const auto local = imageBlock(part, own, TablePlace::Local, ownHole);
        if (shared && (!local || shared->size() <= local->size()))
            return *shared;
        hole = ownHole;
        return *local;
    }

    // The trailer at the end gives way to the blocks and a new trailer.
    void append(Bytes blocks) {
        blocks.push_back(kTrailer);
        sink_.stepBack(1);
        sink_.write(blocks);
        sink_.flush();
    }

    ByteSink& sink_;
    ColourTable table_;
    Picture canvas_; // what a viewer shows before the next frame
    bool isFirst_ = true;
};

} // namespace

Picture gifPicture(const Frame& frame, const WriteOptions& options) {
    Picture picture = pictureOf(frame);
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
    GifPictures pictures(animation, options);
    const auto pictureAt = [&pictures](std::size_t index) { return pictures.at(index); };
    const std::vector<Step> steps =
        joinedSteps(animation, pictureAt, storedDelays(animation, OutputFormat::Gif), kLargestNumber * 10);
    GifFile file(animation, pictures, steps, sink);
    return writeSteps(steps, pictureAt, progress, [&](const Step& step, const Picture& picture, const Picture* next) {
        file.add(picture, next, step.delay / 10);
    });
}

} // namespace stage
