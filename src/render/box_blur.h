// Three running averages each way. Images are taken apart into strips of 16 sequences side by side, so that one
// register averages 16 bytes at a time: 16 columns of bytes for the vertical way; one channel of 16 rows, turned by 90
// degrees, for the horizontal one. A strip fits the first caches and goes through all its averages there.
// Core: knows no windows.
#pragma once

#include "render/image_view.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <emmintrin.h>
#include <memory>
#include <vector>

namespace veldran {

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

inline __m128i loadBytes(const ByteLanes& lanes) {
    return _mm_load_si128(reinterpret_cast<const __m128i*>(lanes.values));
}

inline void storeBytes(ByteLanes& lanes, __m128i values) {
    _mm_store_si128(reinterpret_cast<__m128i*>(lanes.values), values);
}

inline Words loadWords(const ByteLanes& lanes) {
    const __m128i bytes = loadBytes(lanes);
    return {_mm_unpacklo_epi8(bytes, _mm_setzero_si128()), _mm_unpackhi_epi8(bytes, _mm_setzero_si128())};
}

inline Words loadWords(const WordLanes& lanes) {
    const auto* halves = reinterpret_cast<const __m128i*>(lanes.values);
    return {_mm_load_si128(halves), _mm_load_si128(halves + 1)};
}

inline void storeWords(WordLanes& lanes, const Words& words) {
    auto* halves = reinterpret_cast<__m128i*>(lanes.values);
    _mm_store_si128(halves, words.low);
    _mm_store_si128(halves + 1, words.high);
}

inline __m128i packed(const Words& words) {
    return _mm_packus_epi16(words.low, words.high);
}

// A running average: 2 x radius + 1 values count `inner` times, the one behind them on each side `edge` times. The
// weights' sum is 256 at most.
struct BoxWindow {
    int radius;
    int inner = 1; // 1 where there are no edges
    int edge = 0;  // `inner` at most

    int weights() const { return inner * (2 * radius + 1) + 2 * edge; }
};
using BoxWindows = std::array<BoxWindow, kBoxes>;

// Sixteen rounded averages of bytes that run along a strip. A weighted sum and the half that rounds are at most 256 x
// 255 + 128 < 2^16. The quotient is sum x multiplier >> 16 with 65536 / weights rounded to nearest, which changes it by
// less than sum / 2^17, 0.499 at most. A flat window stands 1/2 - 1 / (2 x weights), or 1/2 for an even sum of weights,
// above a whole number, and both keep within that number's unit: a half stays below, and 255 odd weights move their
// 0.498 by 0.497 at most.
template <bool kHasEdges>
class RunningAverage {
public:
    explicit RunningAverage(const BoxWindow& window)
        : multiplier_(repeated((65536 + window.weights() / 2) / window.weights())),
          half_(repeated(window.weights() / 2)), inner_(repeated(window.inner)), edge_(repeated(window.edge)) {
        if constexpr (!kHasEdges)
            sum_ = {half_, half_};
    }

    void add(const Words& entering) { sum_ = sumOf(sum_, entering); }
    void replace(const Words& leaving, const Words& entering) {
        add({_mm_sub_epi16(entering.low, leaving.low), _mm_sub_epi16(entering.high, leaving.high)});
    }
    // `before` and `behind` are the values beside the window; they count only where edges do.
    Words value(const Words& before, const Words& behind) const {
        if constexpr (!kHasEdges)
            return {_mm_mulhi_epu16(sum_.low, multiplier_), _mm_mulhi_epu16(sum_.high, multiplier_)};
        const Words edges = sumOf(before, behind);
        return {weighted(sum_.low, edges.low), weighted(sum_.high, edges.high)};
    }

private:
    static __m128i repeated(int value) { return _mm_set1_epi16(static_cast<short>(value)); }
    static Words sumOf(const Words& a, const Words& b) {
        return {_mm_add_epi16(a.low, b.low), _mm_add_epi16(a.high, b.high)};
    }
    __m128i weighted(__m128i sum, __m128i edges) const {
        const __m128i all = _mm_add_epi16(_mm_mullo_epi16(sum, inner_), _mm_mullo_epi16(edges, edge_));
        return _mm_mulhi_epu16(_mm_add_epi16(all, half_), multiplier_);
    }

    Words sum_{_mm_setzero_si128(), _mm_setzero_si128()};
    __m128i multiplier_;
    __m128i half_;
    __m128i inner_;
    __m128i edge_;
};

template <bool kHasEdges, class Place, class Emit>
void runAlong(const Place* strip, int length, const BoxWindow& window, Emit emit) {
    const int radius = window.radius;
    const int last = length - 1;
    RunningAverage<kHasEdges> average(window);
    for (int i = -radius; i <= radius; ++i)
        average.add(loadWords(strip[std::clamp(i, 0, last)]));
    Words before = loadWords(strip[0]);
    // Between these two places the window moves freely; before the one its tail, behind the other its head stands
    // still.
    const int tailMoves = std::min(radius, length);
    const int headStands = std::max(last - radius, 0);
    const auto run = [&](int from, int to) {
        const Place* leaving = strip + std::max(from - radius, 0);
        const Place* entering = strip + std::min(from + radius + 1, last);
        const int leavingStep = from >= tailMoves;
        const int enteringStep = from < headStands;
        RunningAverage moving = average; // kept in registers, which the shared ones are not
        Words left = before;
        for (int i = from; i < to; ++i, leaving += leavingStep, entering += enteringStep) {
            const Words behind = loadWords(*entering);
            emit(i, moving.value(left, behind));
            left = loadWords(*leaving);
            moving.replace(left, behind);
        }
        average = moving;
        before = left;
    };
    run(0, std::min(tailMoves, headStands));
    run(std::min(tailMoves, headStands), std::max(tailMoves, headStands));
    run(std::max(tailMoves, headStands), length);
}

// Hands emit(place, average) the averages of every place's window.
template <class Place, class Emit>
void averageStrip(const Place* strip, int length, const BoxWindow& window, Emit emit) {
    if (window.edge != 0)
        return runAlong<true>(strip, length, window, emit);
    if (window.radius != 0)
        return runAlong<false>(strip, length, window, emit);
    for (int i = 0; i < length; ++i)
        emit(i, loadWords(strip[i]));
}

// Room for what lies between the averages of a strip.
struct Room {
    std::vector<WordLanes> first;
    std::vector<WordLanes> second;
    explicit Room(int length) : first(static_cast<std::size_t>(length)), second(static_cast<std::size_t>(length)) {}
};

// All averages of a strip; the last one goes to emit(place, words).
template <class Emit>
void blurStrip(const ByteLanes* strip, int length, const BoxWindows& windows, Room& room, Emit emit) {
    WordLanes* const first = room.first.data();
    WordLanes* const second = room.second.data();
    averageStrip(strip, length, windows[0], [=](int i, const Words& words) { storeWords(first[i], words); });
    averageStrip(first, length, windows[1], [=](int i, const Words& words) { storeWords(second[i], words); });
    averageStrip(second, length, windows[2], emit);
}

// Rows become columns: interleaving the halves of the list four times takes byte c of row r to byte r of row c.
inline Block transposed(Block block) {
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
inline __m128i loadPart(const std::uint8_t* bytes, int count) {
    if (count >= kLanes)
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
    ByteLanes part{};
    std::memcpy(part.values, bytes, static_cast<std::size_t>(count));
    return loadBytes(part);
}

inline void storePart(std::uint8_t* bytes, __m128i values, int count) {
    if (count >= kLanes)
        return _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), values);
    ByteLanes part;
    storeBytes(part, values);
    std::memcpy(bytes, part.values, static_cast<std::size_t>(count));
}

// An image blurred horizontally, cut into strips of 16 columns of bytes that stand one behind the other.
class Columns {
public:
    Columns(const ConstImageView& image, const BoxWindows& windows)
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
                blurStrip(strip, image.width, windows, room,
                          [=](int i, const Words& words) { storeBytes(strip[i], packed(words)); });
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

// Blurs an image and replaces 16 bytes at a time by combine(original, blurred), the blurred ones as words.
template <class Combine>
void boxBlur(const ImageView& image, const BoxWindows& across, const BoxWindows& down, Combine combine) {
    const Columns columns(image, across);
    Room room(image.height);
    const int rowBytes = image.width * image.bytesPerPixel();
    for (int s = 0; s < columns.strips(); ++s) {
        std::uint8_t* const top = image.top + s * kLanes;
        const int count = rowBytes - s * kLanes;
        blurStrip(columns.strip(s), image.height, down, room, [&](int y, const Words& blurred) {
            std::uint8_t* const bytes = top + y * image.stride;
            storePart(bytes, combine(loadPart(bytes, count), blurred), count);
        });
    }
}

} // namespace veldran
