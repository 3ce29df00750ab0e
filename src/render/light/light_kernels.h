// The loops of light over registers of one `Kind`.
//
// One file that includes this is compiled for processors that not everyone has. What it shares with others by name, as
// inline functions of the standard library, could be linked from there; so the loops use none, and depend on a kind
// that no other file knows. Core: knows no windows.
#pragma once

#include "render/light/light_loops.h"

namespace veldran {

// Words of the bytes of a register: those of the low and of the high eight bytes of each of its halves.
template <class Kind>
struct Words {
    typename Kind::Register low;
    typename Kind::Register high;
};

template <class Kind>
Words<Kind> widened(typename Kind::Register bytes) {
    return {Kind::unpackLow(bytes, Kind::zero()), Kind::unpackHigh(bytes, Kind::zero())};
}

// Words as they stand in memory.
template <class Kind>
Words<Kind> loadWords(const std::uint16_t* words) {
    constexpr int kSecondHalf = 16;
    return {Kind::loadHalves(words, words + kSecondHalf), Kind::loadHalves(words + 8, words + kSecondHalf + 8)};
}

template <class Kind>
void storeWords(std::uint16_t* words, const Words<Kind>& values) {
    constexpr int kSecondHalf = 16;
    Kind::storeHalves(words, words + kSecondHalf, values.low);
    Kind::storeHalves(words + 8, words + kSecondHalf + 8, values.high);
}

inline constexpr bool kWhole = true;

// A register of bytes, or the `count` that are left of a row and nothing behind them.
template <class Kind, bool kIsWhole>
typename Kind::Register loadBytes(const std::uint8_t* bytes, int count) {
    if constexpr (kIsWhole)
        return Kind::load(bytes);
    std::uint8_t part[Kind::kLanes] = {};
    for (int i = 0; i < count; ++i)
        part[i] = bytes[i];
    return Kind::load(part);
}

template <class Kind, bool kIsWhole>
void storeBytes(std::uint8_t* bytes, typename Kind::Register values, int count) {
    if constexpr (kIsWhole)
        return Kind::store(bytes, values);
    std::uint8_t part[Kind::kLanes];
    Kind::store(part, values);
    for (int i = 0; i < count; ++i)
        bytes[i] = part[i];
}

// Rounds light to bytes.
template <class Kind>
class Replace {
public:
    using Register = typename Kind::Register;
    explicit Replace(const LightUse& use)
        : half_(Kind::repeated(use.scale / 2)), multiplier_(Kind::repeated((65536 + use.scale / 2) / use.scale)) {}
    Register scaled(Register, const Words<Kind>& light) const {
        return Kind::packed(rounded(light.low), rounded(light.high));
    }
    // Of light that counts in whole units.
    Register whole(Register, const Words<Kind>& light) const { return Kind::packed(light.low, light.high); }

private:
    Register rounded(Register words) const { return Kind::timesHigh(Kind::plus(words, half_), multiplier_); }
    Register half_;
    Register multiplier_;
};

// Adds parts of what a pixel differs from the light on it.
template <class Kind>
class Lift {
public:
    using Register = typename Kind::Register;
    explicit Lift(const LightUse& use)
        : scale_(Kind::repeated(use.scale)), halo_(Kind::repeated(use.halo)), core_(Kind::repeated(use.core)) {}
    Register scaled(Register original, const Words<Kind>& light) const {
        const Words<Kind> words = widened<Kind>(original);
        return sum(original, Kind::minus(light.low, Kind::times(words.low, scale_)),
                   Kind::minus(light.high, Kind::times(words.high, scale_)));
    }
    // Of light that counts in whole units, which `scale` 128 makes 1 / 128.
    Register whole(Register original, const Words<Kind>& light) const {
        const Words<Kind> words = widened<Kind>(original);
        return sum(original, Kind::times128(Kind::minus(light.low, words.low)),
                   Kind::times128(Kind::minus(light.high, words.high)));
    }

private:
    Register sum(Register original, Register lackingLow, Register lackingHigh) const {
        return Kind::plusBytes(original, Kind::packed(lifted(lackingLow), lifted(lackingHigh)));
    }
    // One of the two products is negative unless both are zero.
    Register lifted(Register lacking) const {
        return Kind::larger(Kind::timesHighSigned(lacking, halo_), Kind::timesHighSigned(lacking, core_));
    }
    Register scale_;
    Register halo_;
    Register core_;
};

// The running averages of one strip: as many sequences side by side as a register has bytes. At tick t value t enters
// the first box and its average enters the next one, so nothing but what is inside the windows has to be kept. Before
// its first value and behind its last one a sequence continues them, and so do the averages in between.
template <class Kind, bool kHasEdges>
class Strip {
public:
    using Register = typename Kind::Register;

    Strip(const BoxCascade& cascade, int length, std::uint8_t* state)
        : cascade_(cascade), length_(length), sums_(state), ring_(state + 2 * kPair * kBoxes) {
        for (int k = 0; k < kBoxes; ++k) {
            const Box& box = cascade.boxes[k];
            multiplier_[k] = Kind::repeated(box.multiplier);
            half_[k] = Kind::repeated(box.half);
            inner_[k] = Kind::repeated(box.inner);
            edge_[k] = Kind::repeated(box.edge);
        }
    }

    // Ticks from `from` to the one before `to`. load(t) gives value t as bytes; emit(place, words) takes averages.
    template <class Load, class Emit>
    void run(int from, int to, Load load, Emit emit) {
        int t = from;
        for (; t < to && t <= cascade_.delay; ++t)
            tickAtBorder(t, load, emit);
        const int steadyEnd = to < length_ ? to : length_;
        if (t < steadyEnd) {
            const Strip fixed = *this; // stays in registers: nothing that is written can change it
            Moving moving[kBoxes];
            for (int k = 0; k < kBoxes; ++k)
                moving[k] = stored(k);
            for (; t < steadyEnd; ++t) {
                Words<Kind> words = widened<Kind>(load(t));
                words = fixed.template push<0>(moving[0], t, words);
                words = fixed.template push<1>(moving[1], t, words);
                words = fixed.template push<2>(moving[2], t, words);
                emit(t - fixed.cascade_.delay, words);
            }
            for (int k = 0; k < kBoxes; ++k)
                store(k, moving[k]);
        }
        for (; t < to; ++t)
            tickAtBorder(t, load, emit);
    }

private:
    static constexpr int kPair = 2 * Kind::kLanes; // bytes of Words

    struct Moving {
        Words<Kind> sum;
        Words<Kind> before; // the last value that has left; known only where edges count
    };

    static Words<Kind> loadPair(const std::uint8_t* from) {
        return {Kind::load(from), Kind::load(from + Kind::kLanes)};
    }
    static void storePair(std::uint8_t* to, const Words<Kind>& words) {
        Kind::store(to, words.low);
        Kind::store(to + Kind::kLanes, words.high);
    }
    static Words<Kind> sumOf(const Words<Kind>& a, const Words<Kind>& b) {
        return {Kind::plus(a.low, b.low), Kind::plus(a.high, b.high)};
    }
    Moving stored(int k) const {
        return {loadPair(sums_ + 2 * k * kPair), kHasEdges ? loadPair(sums_ + (2 * k + 1) * kPair) : Words<Kind>{}};
    }
    void store(int k, const Moving& moving) {
        storePair(sums_ + 2 * k * kPair, moving.sum);
        if (kHasEdges)
            storePair(sums_ + (2 * k + 1) * kPair, moving.before);
    }
    std::uint8_t* slot(int k, int tick) const {
        const std::ptrdiff_t size = kSlotRegisters * Kind::kLanes;
        return ring_ + ((tick * size) & ((cascade_.slots - 1) * size)) + k * kPair;
    }

    // Takes a value into box k and gives its average, which belongs to the place delays[k] before.
    template <int k>
    Words<Kind> push(Moving& moving, int tick, const Words<Kind>& entering) const {
        const Words<Kind> leaving = loadPair(slot(k, tick - 2 * cascade_.boxes[k].radius - 1));
        storePair(slot(k, tick), entering);
        const Words<Kind> sum = moving.sum;
        moving.sum = sumOf({Kind::minus(sum.low, leaving.low), Kind::minus(sum.high, leaving.high)}, entering);
        if constexpr (!kHasEdges)
            return {Kind::timesHigh(moving.sum.low, multiplier_[k]), Kind::timesHigh(moving.sum.high, multiplier_[k])};
        const Words<Kind> edges = sumOf(moving.before, entering);
        moving.before = leaving;
        return {weighted(k, sum.low, edges.low), weighted(k, sum.high, edges.high)};
    }
    Register weighted(int k, Register sum, Register edges) const {
        const Register all = Kind::plus(Kind::times(sum, inner_[k]), Kind::times(edges, edge_[k]));
        return Kind::timesHigh(Kind::plus(all, half_[k]), multiplier_[k]);
    }

    // The window before the first value: all of it is that value.
    Moving started(int k, const Words<Kind>& first) {
        for (int i = 0; i < cascade_.slots; ++i)
            storePair(slot(k, i), first);
        const Register count = Kind::repeated(2 * cascade_.boxes[k].radius + 1);
        const Words<Kind> sum{Kind::times(first.low, count), Kind::times(first.high, count)};
        return {kHasEdges ? sum : sumOf(sum, {half_[k], half_[k]}), first};
    }

    template <class Load, class Emit>
    void tickAtBorder(int tick, Load load, Emit emit) {
        Words<Kind> words = widened<Kind>(load(tick < length_ ? tick : length_ - 1));
        if (passBox<0>(tick, tick, words) && passBox<1>(tick, tick - cascade_.delays[0], words) &&
            passBox<2>(tick, tick - cascade_.delays[0] - cascade_.delays[1], words))
            emit(tick - cascade_.delay, words);
    }
    // What enters at `place` of the sequence becomes an average, if it is time for one.
    template <int k>
    bool passBox(int tick, int place, Words<Kind>& words) {
        if (place >= length_)
            words = loadPair(slot(k, tick - 1));
        Moving moving = place == 0 ? started(k, words) : stored(k);
        words = push<k>(moving, tick, words);
        store(k, moving);
        return place >= cascade_.delays[k];
    }

    BoxCascade cascade_;
    int length_;
    std::uint8_t* sums_;
    std::uint8_t* ring_; // a value of each box for every tick
    Register multiplier_[kBoxes];
    Register half_[kBoxes];
    Register inner_[kBoxes];
    Register edge_[kBoxes];
};

constexpr int kBlock = 16; // columns of bytes that are turned at a time

// A block of as many rows as a register has bytes, in its turned order or not: register i holds row i and, where it has
// two halves, row i + 16; turned, it holds column i.
template <class Kind>
struct Block {
    typename Kind::Register registers[kBlock];

    // Interleaving the halves of the list four times takes byte c of row r to byte r of row c.
    void transpose() {
        for (int round = 0; round < 4; ++round) {
            Block next;
            for (int i = 0; i < kBlock / 2; ++i) {
                next.registers[2 * i] = Kind::unpackLow(registers[i], registers[i + kBlock / 2]);
                next.registers[2 * i + 1] = Kind::unpackHigh(registers[i], registers[i + kBlock / 2]);
            }
            *this = next;
        }
    }
};

// Goes through an image in bands of rows: a band is blurred across and enters the strips down, whose averages are
// written to rows that have been read before.
template <class Kind>
class Blur {
public:
    explicit Blur(const BlurJob& job)
        : job_(job), rowBytes_(job.width * job.channels), strips_((rowBytes_ + kLanes - 1) / kLanes) {}

    template <class Use>
    void run(const Use& use) {
        for (int y = 0; y < job_.height; y += kLanes) {
            turnRows(y);
            if (job_.across.hasEdges)
                averageAcross<true>();
            else
                averageAcross<false>();
            turnBack();
            averageDown(y, y + kLanes < job_.height ? y + kLanes : job_.height + job_.down.delay, use);
        }
    }

private:
    static constexpr int kLanes = Kind::kLanes;

    std::uint8_t* turned(int column) const { return job_.turned + static_cast<std::ptrdiff_t>(column) * kLanes; }
    std::uint8_t* band(int strip) const { return job_.band + static_cast<std::ptrdiff_t>(strip) * kLanes * kLanes; }

    // Rows that the image does not have repeat its last one.
    void turnRows(int y) {
        const std::uint8_t* rows[std::size_t{kLanes}];
        for (int i = 0; i < kLanes; ++i)
            rows[i] = job_.top + (y + i < job_.height ? y + i : job_.height - 1) * job_.stride;
        const int wholeBytes = rowBytes_ / kBlock * kBlock;
        for (int at = 0; at < wholeBytes; at += kBlock) {
            Block<Kind> block;
            for (int i = 0; i < kBlock; ++i)
                block.registers[i] = Kind::loadHalves(rows[i] + at, rows[kLanes - kBlock + i] + at);
            block.transpose();
            std::uint8_t* const out = turned(at);
            for (int i = 0; i < kBlock; ++i)
                Kind::store(out + i * kLanes, block.registers[i]);
        }
        for (int at = wholeBytes; at < rowBytes_; ++at)
            for (int i = 0; i < kLanes; ++i)
                turned(at)[i] = rows[i][at];
    }

    template <bool kHasEdges>
    void averageAcross() {
        for (int channel = 0; channel < job_.channels; ++channel) {
            Strip<Kind, kHasEdges> strip(job_.across, job_.width, job_.stateAcross);
            std::uint8_t* const values = turned(channel);
            const std::ptrdiff_t step = static_cast<std::ptrdiff_t>(job_.channels) * kLanes;
            strip.run(
                0, job_.width + job_.across.delay, [=](int x) { return Kind::load(values + x * step); },
                [=](int x, const Words<Kind>& words) {
                    Kind::store(values + x * step, Kind::packed(words.low, words.high));
                });
        }
    }

    void turnBack() {
        for (int at = 0; at < rowBytes_; at += kBlock) {
            Block<Kind> block;
            const std::uint8_t* const columns = turned(at);
            for (int i = 0; i < kBlock; ++i)
                block.registers[i] = Kind::load(columns + i * kLanes);
            block.transpose();
            std::uint8_t* const out = band(at / kLanes) + at % kLanes;
            for (int i = 0; i < kBlock; ++i)
                Kind::storeHalves(out + i * kLanes, out + (i + kBlock) * kLanes, block.registers[i]);
        }
    }

    // The ticks from `from`, where the band begins, to the one before `to`.
    template <class Use>
    void averageDown(int from, int to, const Use& use) {
        if (job_.down.hasEdges)
            averageStrips<true>(from, to, use);
        else
            averageStrips<false>(from, to, use);
    }
    template <bool kHasEdges, class Use>
    void averageStrips(int from, int to, const Use& use) {
        for (int s = 0; s < strips_; ++s) {
            Strip<Kind, kHasEdges> strip(job_.down, job_.height,
                                         job_.statesDown + static_cast<std::ptrdiff_t>(s) * job_.down.state * kLanes);
            const int count = rowBytes_ - s * kLanes;
            if (count >= kLanes)
                averageStrip<kWhole>(strip, from, to, s, count, use);
            else
                averageStrip<!kWhole>(strip, from, to, s, count, use);
        }
    }
    template <bool kIsWhole, class Values, class Use>
    void averageStrip(Values& strip, int from, int to, int s, int count, const Use& use) {
        const std::uint8_t* const values = band(s);
        std::uint8_t* const top = job_.top + s * kLanes;
        const std::ptrdiff_t stride = job_.stride;
        strip.run(
            from, to, [=](int y) { return Kind::load(values + (y - from) * kLanes); },
            [=](int y, const Words<Kind>& light) { // copies stay in registers
                std::uint8_t* const bytes = top + y * stride;
                storeBytes<Kind, kIsWhole>(bytes, use.whole(loadBytes<Kind, kIsWhole>(bytes, count), light), count);
            });
    }

    const BlurJob& job_;
    int rowBytes_;
    int strips_;
};

template <class Kind>
void blurLight(const BlurJob& job) {
    if (job.use.lifts)
        Blur<Kind>(job).run(Lift<Kind>(job.use));
    else
        Blur<Kind>(job).run(Replace<Kind>(job.use));
}

template <class Kind, int kCount, bool kIsWhole>
void sumColumns(const std::uint8_t* const* rows, int at, int bytes, std::uint16_t* sums) {
    Words<Kind> sum = widened<Kind>(loadBytes<Kind, kIsWhole>(rows[0] + at, bytes));
    for (int i = 1; i < kCount; ++i) {
        const Words<Kind> words = widened<Kind>(loadBytes<Kind, kIsWhole>(rows[i] + at, bytes));
        sum = {Kind::plus(sum.low, words.low), Kind::plus(sum.high, words.high)};
    }
    storeWords<Kind>(sums + at, sum);
}

template <class Kind, int kCount>
void sumRows(const std::uint8_t* const* given, int rowBytes, std::uint16_t* sums) {
    const std::uint8_t* rows[std::size_t{kCount}];
    for (int i = 0; i < kCount; ++i)
        rows[i] = given[i];
    int at = 0;
    for (; at + Kind::kLanes <= rowBytes; at += Kind::kLanes)
        sumColumns<Kind, kCount, kWhole>(rows, at, Kind::kLanes, sums);
    if (at < rowBytes)
        sumColumns<Kind, kCount, !kWhole>(rows, at, rowBytes - at, sums);
}

template <class Kind>
void sumLightRows(const std::uint8_t* const* rows, int count, int rowBytes, std::uint16_t* sums) {
    static_assert(kLargestCell == 5);
    switch (count) {
    case 1:
        return sumRows<Kind, 1>(rows, rowBytes, sums);
    case 2:
        return sumRows<Kind, 2>(rows, rowBytes, sums);
    case 3:
        return sumRows<Kind, 3>(rows, rowBytes, sums);
    case 4:
        return sumRows<Kind, 4>(rows, rowBytes, sums);
    default:
        return sumRows<Kind, kLargestCell>(rows, rowBytes, sums);
    }
}

// The rows of a job, kRows of them or as many as it says if that is 0, in as many columns as a register has bytes or
// the `count` that are left of them.
template <class Kind, int kRows, bool kIsWhole, class Use>
void fillColumns(const FillJob& job, int at, int count, const Use& use) {
    using Register = typename Kind::Register;
    const Register weight = Kind::repeated(job.weight);
    const Register rest = Kind::repeated(2 * job.size - job.weight);
    const Words<Kind> upper = loadWords<Kind>(job.upper + at);
    const Words<Kind> lower = loadWords<Kind>(job.lower + at);
    const auto mixed = [&](Register above, Register below) {
        return Kind::plus(Kind::times(below, weight), Kind::times(above, rest));
    };
    const auto step = [](Register above, Register below) {
        const Register difference = Kind::minus(below, above);
        return Kind::plus(difference, difference);
    };
    Words<Kind> light{mixed(upper.low, lower.low), mixed(upper.high, lower.high)};
    const Words<Kind> move{step(upper.low, lower.low), step(upper.high, lower.high)};
    std::uint8_t* bytes = job.top + at;
    const int rows = kRows == 0 ? job.rows : kRows;
    const std::ptrdiff_t stride = job.stride;
    for (int y = 0; y < rows; ++y, bytes += stride) {
        storeBytes<Kind, kIsWhole>(bytes, use.scaled(loadBytes<Kind, kIsWhole>(bytes, count), light), count);
        light = {Kind::plus(light.low, move.low), Kind::plus(light.high, move.high)};
    }
}

template <class Kind, int kRows, class Use>
void fillRows(const FillJob job, const Use use) { // copies stay in registers
    int at = 0;
    for (; at + Kind::kLanes <= job.rowBytes; at += Kind::kLanes)
        fillColumns<Kind, kRows, kWhole>(job, at, Kind::kLanes, use);
    if (at < job.rowBytes)
        fillColumns<Kind, kRows, !kWhole>(job, at, job.rowBytes - at, use);
}

template <class Kind, class Use>
void fillWith(const FillJob& job, const Use& use) {
    if (job.rows == 2) // all rows between two middles, where cells are small and these loops take most of the time
        fillRows<Kind, 2>(job, use);
    else
        fillRows<Kind, 0>(job, use);
}

template <class Kind>
void fillLight(const FillJob& job) {
    if (job.use.lifts)
        fillWith<Kind>(job, Lift<Kind>(job.use));
    else
        fillWith<Kind>(job, Replace<Kind>(job.use));
}

} // namespace veldran
