// Three running averages each way. Images are taken apart into strips of 16 sequences side by side, so that one
// register averages 16 bytes at a time: 16 columns of bytes for the vertical way; one channel of 16 rows, turned by 90
// degrees, for the horizontal one. A strip fits the first caches and goes through all its averages there.
#include "render/glow.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <emmintrin.h>
#include <memory>
#include <vector>

namespace veldran {
namespace {

constexpr int kLanes = 16; // sequences of a strip: bytes of a register
constexpr int kBoxes = 3;

// One place of the sequences of a strip.
template <class Value>
struct alignas(16) Lanes {
    Value values[kLanes];
};
using ByteLanes = Lanes<std::uint8_t>;
using WordLanes = Lanes<std::uint16_t>;

struct Block { // 16 x 16 bytes
    __m128i row[kLanes];
};

// The values of a place as 16-bit numbers.
struct Words {
    __m128i low;
    __m128i high;
};

__m128i loadBytes(const ByteLanes& lanes) {
    return _mm_load_si128(reinterpret_cast<const __m128i*>(lanes.values));
}

void storeBytes(ByteLanes& lanes, __m128i values) {
    _mm_store_si128(reinterpret_cast<__m128i*>(lanes.values), values);
}

Words loadWords(const ByteLanes& lanes) {
    const __m128i bytes = loadBytes(lanes);
    return {_mm_unpacklo_epi8(bytes, _mm_setzero_si128()), _mm_unpackhi_epi8(bytes, _mm_setzero_si128())};
}

Words loadWords(const WordLanes& lanes) {
    const auto* halves = reinterpret_cast<const __m128i*>(lanes.values);
    return {_mm_load_si128(halves), _mm_load_si128(halves + 1)};
}

void storeWords(WordLanes& lanes, const Words& words) {
    auto* halves = reinterpret_cast<__m128i*>(lanes.values);
    _mm_store_si128(halves, words.low);
    _mm_store_si128(halves + 1, words.high);
}

__m128i packed(const Words& words) {
    return _mm_packus_epi16(words.low, words.high);
}

// Radii of the boxes, as equal as can be, so that their sum is the reach of the light.
std::array<int, kBoxes> boxRadii(int radius) {
    const int reach = std::min(radius, kLargestBlurRadius);
    return {reach / kBoxes, (reach + 1) / kBoxes, (reach + 2) / kBoxes};
}

// Sixteen running sums of bytes and what turns them into rounded averages. A window has `count` bytes, an odd number up
// to 255, so its sum and the half that rounds are at most 255 x 255 + 127 < 2^16. The quotient is sum x multiplier >>
// 16 with 65536 / count rounded to nearest, which changes it by less than sum / 2^17, 0.497 at most. A flat window
// stands 1/2 - 1 / (2 x count) above a whole number, 0.498 for the largest count, and keeps within that number's unit.
class RunningAverage {
public:
    explicit RunningAverage(int count)
        : sum_{_mm_set1_epi16(static_cast<short>(count / 2)), _mm_set1_epi16(static_cast<short>(count / 2))},
          multiplier_(_mm_set1_epi16(static_cast<short>((65536 + count / 2) / count))) {}

    void add(const Words& entering) {
        sum_ = {_mm_add_epi16(sum_.low, entering.low), _mm_add_epi16(sum_.high, entering.high)};
    }
    void replace(const Words& leaving, const Words& entering) {
        add({_mm_sub_epi16(entering.low, leaving.low), _mm_sub_epi16(entering.high, leaving.high)});
    }
    Words value() const { return {_mm_mulhi_epu16(sum_.low, multiplier_), _mm_mulhi_epu16(sum_.high, multiplier_)}; }

private:
    Words sum_;
    __m128i multiplier_;
};

// Hands emit(place, average) the averages over `radius` places to both sides.
template <class Place, class Emit>
void averageStrip(const Place* strip, int length, int radius, Emit emit) {
    if (radius == 0) {
        for (int i = 0; i < length; ++i)
            emit(i, loadWords(strip[i]));
        return;
    }
    const int last = length - 1;
    RunningAverage average(2 * radius + 1);
    for (int i = -radius; i <= radius; ++i)
        average.add(loadWords(strip[std::clamp(i, 0, last)]));
    // Between these two places the window moves freely; before the one its tail, behind the other its head stands
    // still.
    const int tailMoves = std::min(radius, length);
    const int headStands = std::max(last - radius, 0);
    const auto run = [&](int from, int to) {
        const Place* leaving = strip + std::max(from - radius, 0);
        const Place* entering = strip + std::min(from + radius + 1, last);
        const int leavingStep = from >= tailMoves;
        const int enteringStep = from < headStands;
        RunningAverage window = average; // kept in registers, which the shared one is not
        for (int i = from; i < to; ++i, leaving += leavingStep, entering += enteringStep) {
            emit(i, window.value());
            window.replace(loadWords(*leaving), loadWords(*entering));
        }
        average = window;
    };
    run(0, std::min(tailMoves, headStands));
    run(std::min(tailMoves, headStands), std::max(tailMoves, headStands));
    run(std::max(tailMoves, headStands), length);
}

// Room for what lies between the averages of a strip.
struct Room {
    std::vector<WordLanes> first;
    std::vector<WordLanes> second;
    explicit Room(int length) : first(static_cast<std::size_t>(length)), second(static_cast<std::size_t>(length)) {}
};

// All averages of a strip; the last one goes to emit(place, bytes).
template <class Emit>
void blurStrip(const ByteLanes* strip, int length, int radius, Room& room, Emit emit) {
    const std::array<int, kBoxes> radii = boxRadii(radius);
    WordLanes* const first = room.first.data();
    WordLanes* const second = room.second.data();
    averageStrip(strip, length, radii[0], [=](int i, const Words& words) { storeWords(first[i], words); });
    averageStrip(first, length, radii[1], [=](int i, const Words& words) { storeWords(second[i], words); });
    averageStrip(second, length, radii[2], [=](int i, const Words& words) { emit(i, packed(words)); });
}

// Rows become columns: interleaving the halves of the list four times takes byte c of row r to byte r of row c.
Block transposed(Block block) {
    for (int round = 0; round < 4; ++round) {
        Block next;
        for (int i = 0; i < kLanes / 2; ++i) {
            next.row[2 * i] = _mm_unpacklo_epi8(block.row[i], block.row[i + kLanes / 2]);
            next.row[2 * i + 1] = _mm_unpackhi_epi8(block.row[i], block.row[i + kLanes / 2]);
        }
        block = next;
    }
    return block;
}

// 16 bytes of a row, or the `count` that are left of it and nothing behind them.
__m128i loadPart(const std::uint8_t* bytes, int count) {
    if (count >= kLanes)
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
    ByteLanes part{};
    std::memcpy(part.values, bytes, static_cast<std::size_t>(count));
    return loadBytes(part);
}

void storePart(std::uint8_t* bytes, __m128i values, int count) {
    if (count >= kLanes)
        return _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), values);
    ByteLanes part;
    storeBytes(part, values);
    std::memcpy(bytes, part.values, static_cast<std::size_t>(count));
}

// An image blurred horizontally, cut into strips of 16 columns of bytes that stand one behind the other.
class Columns {
public:
    Columns(const ConstImageView& image, int radius)
        : image_(image), channels_(image.bytesPerPixel()), rowBytes_(image.width * channels_),
          strips_((rowBytes_ + kLanes - 1) / kLanes), rows_((image.height + kLanes - 1) / kLanes * kLanes),
          length_((strips_ * kLanes + channels_ - 1) / channels_),
          lanes_(std::make_unique_for_overwrite<ByteLanes[]>(static_cast<std::size_t>(strips_) *
                                                             static_cast<std::size_t>(rows_))) {
        std::vector<ByteLanes> turned(static_cast<std::size_t>(channels_ * length_));
        Room room(image.width);
        for (int y = 0; y < image.height; y += kLanes) {
            turnRows(y, turned.data());
            for (int c = 0; c < channels_; ++c) {
                ByteLanes* const strip = turned.data() + c * length_;
                blurStrip(strip, image.width, radius, room, [=](int i, __m128i bytes) { storeBytes(strip[i], bytes); });
            }
            turnBack(turned.data(), y);
        }
    }

    int strips() const { return strips_; }
    const ByteLanes* strip(int index) const { return lanes_.get() + static_cast<std::ptrdiff_t>(index) * rows_; }

private:
    // Calls visit(place) for 16 bytes of turned rows, from byte `at` on. Each channel has its own strip of `length_`
    // places, which has room for the bytes by which blocks of 16 reach beyond the end of the rows.
    template <class Visit>
    void visitPlaces(ByteLanes* turned, int at, Visit visit) const {
        int channel = at % channels_;
        int x = at / channels_;
        for (int i = 0; i < kLanes; ++i) {
            visit(turned[channel * length_ + x], i);
            if (++channel == channels_) {
                channel = 0;
                ++x;
            }
        }
    }
    // 16 rows from `y` on. Those that the image does not have repeat its last one.
    void turnRows(int y, ByteLanes* turned) const {
        for (int at = 0; at < rowBytes_; at += kLanes) {
            Block block;
            for (int i = 0; i < kLanes; ++i)
                block.row[i] = loadPart(image_.row(std::min(y + i, image_.height - 1)) + at, rowBytes_ - at);
            block = transposed(block);
            visitPlaces(turned, at, [&block](ByteLanes& place, int i) { storeBytes(place, block.row[i]); });
        }
    }
    void turnBack(ByteLanes* turned, int y) {
        for (int s = 0; s < strips_; ++s) {
            Block block;
            visitPlaces(turned, s * kLanes, [&block](ByteLanes& place, int i) { block.row[i] = loadBytes(place); });
            block = transposed(block);
            ByteLanes* const out = lanes_.get() + static_cast<std::ptrdiff_t>(s) * rows_ + y;
            for (int i = 0; i < kLanes; ++i)
                storeBytes(out[i], block.row[i]);
        }
    }

    ConstImageView image_;
    int channels_;
    int rowBytes_;
    int strips_;
    int rows_;                           // height, rounded up to whole blocks
    int length_;                         // places of a turned row
    std::unique_ptr<ByteLanes[]> lanes_; // written as a whole before anything is read
};

// Replaces 16 bytes at a time by combine(original, blurred).
template <class Combine>
void blurAndCombine(const ImageView& image, int radius, Combine combine) {
    if (radius <= 0)
        return;
    const Columns columns(image, radius);
    Room room(image.height);
    const int rowBytes = image.width * image.bytesPerPixel();
    for (int s = 0; s < columns.strips(); ++s) {
        std::uint8_t* const top = image.top + s * kLanes;
        const int count = rowBytes - s * kLanes;
        blurStrip(columns.strip(s), image.height, radius, room, [&](int y, __m128i blurred) {
            std::uint8_t* const bytes = top + y * image.stride;
            storePart(bytes, combine(loadPart(bytes, count), blurred), count);
        });
    }
}

// Parts of what a pixel differs from the blurred image, at full strength. A line thinner than the radius leaves little
// light in the blurred image, so the halo takes more than all of it; much more would fill acute angles. The core's part
// heats thin lines, yet draws no seams along the edges of wide ones.
constexpr int kHaloEighths = 12;
constexpr int kCoreEighths = 3;
constexpr int kMostStrength = 8000;

} // namespace

void blurImage(const ImageView& image, int radius) {
    blurAndCombine(image, radius, [](__m128i, __m128i blurred) { return blurred; });
}

void glowImage(const ImageView& image, int strength, int radius) {
    // Weights count in 1/256: 80 x 256 x 12 / 8 = 30720 at most. A lift is at most 255 x 30720 / 256 = 30600, so that
    // its sum with a byte is below 2^15, from where on the saturation to bytes would take it for negative.
    const int weight = std::clamp(strength, 0, kMostStrength) * 256 / 100;
    const __m128i halo = _mm_set1_epi16(static_cast<short>(weight * kHaloEighths / 8));
    const __m128i core = _mm_set1_epi16(static_cast<short>(weight * kCoreEighths / 8));
    const __m128i zero = _mm_setzero_si128();
    blurAndCombine(image, radius, [=](__m128i original, __m128i blurred) {
        const __m128i below = _mm_subs_epu8(blurred, original); // one of the two is 0
        const __m128i above = _mm_subs_epu8(original, blurred);
        const auto lift = [=](__m128i belowHigh, __m128i aboveHigh, __m128i bytes) {
            return _mm_add_epi16(bytes,
                                 _mm_add_epi16(_mm_mulhi_epu16(belowHigh, halo), _mm_mulhi_epu16(aboveHigh, core)));
        };
        // The differences come into the high bytes, so that the high half of a product is difference x weight / 256.
        return _mm_packus_epi16(
            lift(_mm_unpacklo_epi8(zero, below), _mm_unpacklo_epi8(zero, above), _mm_unpacklo_epi8(original, zero)),
            lift(_mm_unpackhi_epi8(zero, below), _mm_unpackhi_epi8(zero, above), _mm_unpackhi_epi8(original, zero)));
    });
}

} // namespace veldran
