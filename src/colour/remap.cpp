// Nearest entries from a table of all colours; error diffusion over several frames side by side; change masks.
#include "colour/remap.h"

#include "colour/pixel_runs.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace veldran {
namespace {

Colour colourOf(const std::uint8_t* pixel) {
    return makeColour(pixel[2], pixel[1], pixel[0]);
}

// A colour or pixel as a word: blue, green, red from the lowest byte on.
std::uint32_t wordOf(const std::uint8_t* pixel) {
    return pixel[0] | std::uint32_t{pixel[1]} << 8 | std::uint32_t{pixel[2]} << 16;
}

std::uint32_t wordOf(const PaletteEntry& entry) {
    return entry.blue | std::uint32_t{entry.green} << 8 | std::uint32_t{entry.red} << 16;
}

constexpr int kMaskByte = 8; // pixels of a change mask

// The same place of several frames: in a register blue, green, red and nothing of two of them, 16 bits each. Errors are
// carried in sixteenths: the four shares that meet at a pixel add up to 16 x 255 at the most.
template <std::size_t Lanes>
struct Registers {
    static constexpr std::size_t kCount = (Lanes + 1) / 2;
    __m128i two[kCount];

    __m128i& operator[](std::size_t i) { return two[i]; }
    const __m128i& operator[](std::size_t i) const { return two[i]; }
};

__m128i widen(std::uint32_t first, std::uint32_t second) {
    const __m128i both = _mm_cvtsi64_si128(static_cast<std::int64_t>(first | std::uint64_t{second} << 32));
    return _mm_unpacklo_epi8(both, _mm_setzero_si128());
}

// What goes on of an error: of a small one three eighths are forgotten, four levels at most. A shade near an entry then
// stays free of lone dots: against passing on all, files of dithered frames shrink by up to a sixth and lose up to 1.6
// dB after a low-pass, of 2.2 to 3.8 by which they were ahead of other programs' dithering. Larger errors than palettes
// of 256 colours make go on whole, so that few colours mix to the right mean.
__m128i passedOn(__m128i error) {
    constexpr short kMostForgotten = 4;
    constexpr short kLarge = 32;
    const __m128i part = _mm_srai_epi16(_mm_add_epi16(_mm_mullo_epi16(error, _mm_set1_epi16(3)), _mm_set1_epi16(4)), 3);
    const __m128i forgotten =
        _mm_max_epi16(_mm_min_epi16(part, _mm_set1_epi16(kMostForgotten)), _mm_set1_epi16(-kMostForgotten));
    const __m128i size = _mm_max_epi16(error, _mm_sub_epi16(_mm_setzero_si128(), error));
    return _mm_sub_epi16(error, _mm_and_si128(forgotten, _mm_cmplt_epi16(size, _mm_set1_epi16(kLarge))));
}

// The mask bits of eight pixels from (x, y) on, of which those before column `known` have something to compare with;
// copies what differs into `running`.
std::uint8_t updateMaskByte(const ImageView& running, const ConstImageView& frame, int x, int y, int known) {
    const int bytes = frame.bytesPerPixel();
    const int pixels = std::min(kMaskByte, known - x);
    if (pixels <= 0)
        return 0;
    std::uint8_t* before = running.pixel(x, y);
    const std::uint8_t* now = frame.pixel(x, y);
    int unchanged = 0;
    for (int i = 0; i < pixels; ++i) {
        int difference = 0; // a call to compare three bytes would cost more than they do
        for (int k = i * bytes; k < (i + 1) * bytes; ++k)
            difference |= before[k] ^ now[k];
        unchanged |= difference == 0 ? 0x80 >> i : 0;
    }
    std::memcpy(before, now, static_cast<std::size_t>(pixels) * static_cast<std::size_t>(bytes));
    return static_cast<std::uint8_t>(unchanged);
}

} // namespace

// What the frame before shows at a place.
struct Remapper::ShownPixel {
    std::uint32_t pixel = kNoColour; // no pixel's word has a fourth byte
    std::uint8_t entry = 0;
};

// One frame's walk along a row.
struct Remapper::LaneRow {
    const std::uint8_t* source;
    std::uint8_t* target;
    std::uint32_t last = kNoColour; // the pixel before
    std::uint32_t flat = kNoColour; // the colour of the flat area that was met last
    std::uint8_t flatEntry = 0;
    bool flatIsExact = false;
};

Remapper::Remapper(const Palette& palette, int count, Dithering dithering, Colour apart)
    : nearest_(palette, count, dithering == Dithering::None ? 1 : stepThatKeepsEntries(palette, count)),
      dithering_(dithering), apart_(apart == kNoColour ? kNoColour : wordOf(paletteEntry(apart))) {
    std::ranges::transform(palette, entries_.begin(), [](const PaletteEntry& entry) { return wordOf(entry); });
}

void Remapper::remap(std::span<const RemapPair> frames, const RemapPair* before) {
    while (!frames.empty()) {
        if (before != nullptr && !sameShape(before->source, frames[0].source))
            before = nullptr;
        std::size_t done = 1;
        if (dithering_ == Dithering::None) {
            remapNearest(frames[0], before);
        } else {
            while (done < std::min(frames.size(), kSideBySide) && sameShape(frames[0].source, frames[done].source))
                ++done;
            done = diffuseFirst(frames.first(done), before);
        }
        before = &frames[done - 1];
        frames = frames.subspan(done);
    }
}

// As many of the frames as can be diffused at once; returns how many.
std::size_t Remapper::diffuseFirst(std::span<const RemapPair> frames, const RemapPair* before) {
    constexpr std::size_t kFewer = kSideBySide / 2;
    if (frames.size() == kSideBySide) {
        diffuse<kSideBySide>(frames.data(), before);
        return kSideBySide;
    }
    if (frames.size() >= kFewer) {
        diffuse<kFewer>(frames.data(), before);
        return kFewer;
    }
    diffuse<1>(frames.data(), before);
    return 1;
}

void Remapper::remapNearest(const RemapPair& frame, const RemapPair* before) {
    const ConstImageView& source = frame.source;
    const int bytes = source.bytesPerPixel();
    for (int y = 0; y < source.height; ++y) {
        if (before != nullptr && sameRun(source.row(y), before->source.row(y), source.width, bytes)) {
            std::memcpy(frame.target.row(y), before->target.row(y), static_cast<std::size_t>(source.width));
            continue;
        }
        for (int x = 0; x < source.width; x += kRunPixels) {
            const int length = std::min(kRunPixels, source.width - x);
            const std::uint8_t* pixel = source.pixel(x, y);
            std::uint8_t* out = frame.target.row(y) + x;
            if (before != nullptr && sameRun(pixel, before->source.pixel(x, y), length, bytes)) {
                std::memcpy(out, before->target.row(y) + x, static_cast<std::size_t>(length));
                continue;
            }
            for (int i = 0; i < length; ++i, pixel += bytes)
                out[i] = nearest_.entryFor(pixel[2], pixel[1], pixel[0]);
        }
    }
}

// Whether the pixel lies in a flat area of a palette colour: it is as the one before, and an entry is exactly so.
inline bool Remapper::isFlat(LaneRow& row, std::uint32_t pixel) {
    if (pixel != row.last) {
        row.last = pixel;
        return false;
    }
    if (pixel != row.flat) {
        row.flat = pixel;
        row.flatEntry = entryFor(pixel);
        row.flatIsExact = entries_[row.flatEntry] == pixel;
    }
    return row.flatIsExact;
}

// Chooses the entries of one or two frames at column x and writes them; returns the errors. `due` is what the
// neighbours have passed on, in levels.
inline __m128i Remapper::choose(std::span<LaneRow> rows, int x, int bytes, __m128i due, ShownPixel& shown) {
    // Pixels that stand still pass on what comes from moving neighbours without answering it. On long ways that would
    // add up; errors of the size that a palette makes by itself get through.
    constexpr short kMostFromStill = 8;
    std::array<std::uint32_t, 2> source{};
    for (std::size_t i = 0; i < rows.size(); ++i)
        source[i] = wordOf(rows[i].source + x * bytes);
    const __m128i wanted = _mm_add_epi16(widen(source[0], source[1]), due);
    // Packing limits to 0 to 255.
    const auto limited = static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_packus_epi16(wanted, wanted)));
    const std::array<std::uint32_t, 2> goal = {static_cast<std::uint32_t>(limited),
                                               static_cast<std::uint32_t>(limited >> 32)};
    std::array<std::uint32_t, 2> chosen{};
    std::array<std::int64_t, 2> still{};
    for (std::size_t i = 0; i < rows.size(); ++i) {
        std::uint8_t entry = entryFor(goal[i]);
        const bool flat = isFlat(rows[i], source[i]);
        const bool unchanged = source[i] == shown.pixel;
        entry = flat ? rows[i].flatEntry : entry;
        entry = unchanged ? shown.entry : entry;
        still[i] = unchanged ? -1 : 0;
        shown = {source[i], entry};
        rows[i].target[x] = entry;
        chosen[i] = flat || source[i] == apart_ ? goal[i] : entries_[entry];
    }
    const __m128i error = _mm_sub_epi16(widen(goal[0], goal[1]), widen(chosen[0], chosen[1]));
    const __m128i bounded =
        _mm_max_epi16(_mm_min_epi16(error, _mm_set1_epi16(kMostFromStill)), _mm_set1_epi16(-kMostFromStill));
    const __m128i mask = _mm_set_epi64x(still[1], still[0]);
    return _mm_or_si128(_mm_and_si128(mask, bounded), _mm_andnot_si128(mask, error));
}

template <std::size_t Lanes>
void Remapper::diffuse(const RemapPair* frames, const RemapPair* before) {
    using Place = Registers<Lanes>;
    const ConstImageView& shape = frames[0].source;
    const int bytes = shape.bytesPerPixel();
    // Between two rows, a column of margin on both sides. Behind the walk it already holds what row y + 1 gets.
    std::vector<Place> carried(static_cast<std::size_t>(shape.width) + 2);
    for (int y = 0; y < shape.height; ++y) {
        const int ahead = y % 2 == 0 ? 1 : -1;
        int x = ahead > 0 ? 0 : shape.width - 1;
        std::array<LaneRow, Lanes> rows;
        for (std::size_t lane = 0; lane < Lanes; ++lane)
            rows[lane] = {frames[lane].source.row(y), frames[lane].target.row(y)};
        Place next{};     // for the pixel ahead in this row
        Place straight{}; // collected so far for the place below the pixel ahead
        Place behind{};   // and for the one below this pixel
        for (int i = 0; i < shape.width; ++i, x += ahead) {
            ShownPixel shown;
            if (before != nullptr)
                shown = {wordOf(before->source.pixel(x, y)), before->target.row(y)[x]};
            const Place& here = carried[static_cast<std::size_t>(x) + 1];
            Place& done = carried[static_cast<std::size_t>(x + 1 - ahead)];
            for (std::size_t r = 0; r < Place::kCount; ++r) {
                // A shift rounds positive and negative errors the same way; a division would not.
                const __m128i sum = _mm_add_epi16(_mm_add_epi16(here[r], next[r]), _mm_set1_epi16(8));
                const std::span<LaneRow> pair = std::span(rows).subspan(2 * r, std::min<std::size_t>(Lanes, 2));
                const __m128i error = passedOn(choose(pair, x, bytes, _mm_srai_epi16(sum, 4), shown));
                next[r] = _mm_mullo_epi16(error, _mm_set1_epi16(7));
                done[r] = _mm_add_epi16(behind[r], _mm_mullo_epi16(error, _mm_set1_epi16(3)));
                behind[r] = _mm_add_epi16(straight[r], _mm_mullo_epi16(error, _mm_set1_epi16(5)));
                straight[r] = error;
            }
        }
        carried[static_cast<std::size_t>(x + 1 - ahead)] = behind;
    }
}

void updateChangeMask(const ImageView& running, const ConstImageView& frame, const ImageView& mask) {
    const int bytes = frame.bytesPerPixel();
    for (int y = 0; y < frame.height; ++y) {
        const int known = y < running.height ? std::min(running.width, frame.width) : 0;
        std::uint8_t* unchanged = mask.row(y);
        for (int x = 0; x < frame.width; x += kRunPixels) {
            std::uint8_t* maskRun = unchanged + x / kMaskByte;
            if (x + kRunPixels <= known && sameRun(running.pixel(x, y), frame.pixel(x, y), kRunPixels, bytes))
                std::memset(maskRun, 0xFF, kRunPixels / kMaskByte);
            else
                for (int k = x; k < std::min(x + kRunPixels, frame.width); k += kMaskByte)
                    *maskRun++ = updateMaskByte(running, frame, k, y, known);
        }
    }
}

void fillUnchanged(const ImageView& target, const ConstImageView& mask, std::uint8_t slot) {
    for (int y = 0; y < target.height; ++y) {
        std::uint8_t* out = target.row(y);
        for (int x = 0; x < target.width; x += kMaskByte) {
            const int bits = mask.row(y)[x / kMaskByte];
            const int pixels = std::min(kMaskByte, target.width - x);
            if (bits == 0xFF)
                std::memset(out + x, slot, static_cast<std::size_t>(pixels));
            else
                for (int i = 0; bits != 0 && i < pixels; ++i)
                    if ((bits << i & 0x80) != 0)
                        out[x + i] = slot;
        }
    }
}

void mapColourToSlot(const ImageView& target, const ConstImageView& source, Colour colour, std::uint8_t slot) {
    for (int y = 0; y < source.height; ++y) {
        const std::uint8_t* pixel = source.row(y);
        std::uint8_t* out = target.row(y);
        for (int x = 0; x < source.width; ++x, pixel += source.bytesPerPixel())
            if (colourOf(pixel) == colour)
                out[x] = slot;
    }
}

} // namespace veldran
