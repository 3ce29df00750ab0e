// LZW for GIF. Writing follows the longest string of the table at every step. Where pixels are free, several strings
// fit, and all of them are followed: the table holds at most 4096, so a step stays short.
#include "formats/gif/lzw.h"

#include <algorithm>
#include <array>

namespace stage {
namespace {

constexpr std::uint32_t kCodeLimit = 4096; // GIF89a: codes have at most 12 bits
constexpr unsigned kLargestCodeSize = 12;

// From a string's code and the index that follows it to the code of the longer string, all three in one number. Twice
// as many places as there are codes keep the chains short and the table in the processor's first cache.
class StringTable {
public:
    void clear() { entries_.fill(kEmpty); }

    // The code of the longer string, or kCodeLimit.
    std::uint32_t find(std::uint32_t code, std::uint8_t index) const {
        const std::uint32_t entry = entries_[placeOf(keyOf(code, index))];
        return entry == kEmpty ? kCodeLimit : entry % kCodeLimit;
    }
    void put(std::uint32_t code, std::uint8_t index, std::uint32_t newCode) {
        const std::uint32_t key = keyOf(code, index);
        entries_[placeOf(key)] = key | newCode;
    }
    // Of what was put last: nothing else can have made way for it.
    void takeBack(std::uint32_t code, std::uint8_t index) { entries_[placeOf(keyOf(code, index))] = kEmpty; }

private:
    static constexpr std::size_t kPlaces = 2 * kCodeLimit;
    static constexpr std::uint32_t kEmpty = 0xFFFFFFFF; // nothing follows the last code of all
    static std::uint32_t keyOf(std::uint32_t code, std::uint8_t index) {
        return code << (8 + kLargestCodeSize) | std::uint32_t{index} << kLargestCodeSize;
    }
    // The place of the pair: where it is, or where it belongs.
    std::size_t placeOf(std::uint32_t key) const {
        // Knuth's multiplier, 2^32 divided by the golden ratio; 13 bits stay.
        std::size_t place = (key >> kLargestCodeSize) * 2654435761u >> 19;
        while (entries_[place] != kEmpty && (entries_[place] ^ key) >> kLargestCodeSize != 0)
            place = (place + 1) % kPlaces;
        return place;
    }

    std::array<std::uint32_t, kPlaces> entries_;
};

// Codes of growing width, the lowest bit first.
class BitPacker {
public:
    void put(std::uint32_t code, unsigned bits) {
        pending_ |= code << pendingBits_;
        for (pendingBits_ += bits; pendingBits_ >= 8; pendingBits_ -= 8, pending_ >>= 8)
            bytes_.push_back(static_cast<std::uint8_t>(pending_));
    }
    std::vector<std::uint8_t> finish() {
        if (pendingBits_ > 0)
            bytes_.push_back(static_cast<std::uint8_t>(pending_));
        return std::move(bytes_);
    }

private:
    std::vector<std::uint8_t> bytes_;
    std::uint32_t pending_ = 0; // at most 7 bits wait while 12 are added
    unsigned pendingBits_ = 0;
};

// What is done when the table is full: begin anew at once, or go on with it as long as its strings fit well.
enum class FullTable { Clear, Keep };

class Compressor {
public:
    Compressor(const LzwPixels& pixels, unsigned minimumCodeSize, FullTable fullTable)
        : pixels_(pixels), fullTable_(fullTable), clearCode_(1u << minimumCodeSize), startSize_(minimumCodeSize + 1) {
        codeSize_ = startSize_;
        clear();
    }

    std::vector<std::uint8_t> compress() {
        const std::size_t count = pixels_.indices.size();
        if (count > 0) {
            Match match = longestFrom(0);
            while (match.end < count) {
                bits_.put(match.code, codeSize_);
                match = next(match);
            }
            bits_.put(match.code, codeSize_);
            growFor(nextCode_);
        }
        bits_.put(clearCode_ + 1, codeSize_);
        return bits_.finish();
    }

    bool tableWasFull() const { return wasFull_; }

private:
    struct Match {
        std::uint32_t code = 0;
        std::uint8_t first = 0; // index
        std::size_t end = 0;    // the pixel behind it
    };

    void clear() {
        bits_.put(clearCode_, codeSize_);
        table_.clear();
        codeSize_ = startSize_;
        nextCode_ = clearCode_ + 2;
        codesSinceFull_ = 0;
    }

    // The reader knows a new string one code later than the writer, so the width grows with the first string whose code
    // itself needs it.
    void growFor(std::uint32_t code) {
        if (code == 1u << codeSize_ && codeSize_ < kLargestCodeSize)
            ++codeSize_;
    }

    bool isChoice(std::size_t at) const {
        return !pixels_.isFree.empty() && pixels_.isFree[at] != 0 && pixels_.indices[at] != pixels_.transparent;
    }

    // The longest string of the table that begins with `first` at `start`; the first found of several.
    Match longestFrom(std::size_t start, std::uint8_t first) {
        Match best{first, first, start + 1};
        open_.clear();
        open_.push_back({first, start + 1});
        while (!open_.empty()) {
            const auto [code, at] = open_.back();
            open_.pop_back();
            if (at > best.end) {
                best.code = code;
                best.end = at;
            }
            if (at == pixels_.indices.size())
                continue;
            follow(code, pixels_.indices[at], at);
            if (isChoice(at))
                follow(code, pixels_.transparent, at);
        }
        return best;
    }

    void follow(std::uint32_t code, std::uint8_t index, std::size_t at) {
        if (const std::uint32_t longer = table_.find(code, index); longer != kCodeLimit)
            open_.push_back({longer, at + 1});
    }

    Match longestFrom(std::size_t start) {
        const Match solid = longestFrom(start, pixels_.indices[start]);
        if (!isChoice(start))
            return solid;
        const Match clear = longestFrom(start, pixels_.transparent);
        return clear.end >= solid.end ? clear : solid;
    }

    // The new string, which the next match may be the first to use, ends with the next match's first index: either is
    // tried.
    Match next(const Match& before) {
        if (nextCode_ == kCodeLimit) {
            wasFull_ = true;
            if (shallClear(before))
                clear();
            return longestFrom(before.end);
        }
        Match best = longestWithNew(before, pixels_.indices[before.end]);
        if (isChoice(before.end)) {
            const Match clear = longestWithNew(before, pixels_.transparent);
            if (clear.end >= best.end)
                best = clear;
        }
        table_.put(before.code, best.first, nextCode_);
        growFor(nextCode_++);
        return best;
    }

    Match longestWithNew(const Match& before, std::uint8_t index) {
        table_.put(before.code, index, nextCode_);
        const Match match = longestFrom(before.end, index);
        table_.takeBack(before.code, index);
        return match;
    }

    // With a full table: when the last codes stood for clearly fewer pixels each than the best of those before.
    bool shallClear(const Match& before) {
        if (fullTable_ == FullTable::Clear)
            return true;
        constexpr unsigned kWindow = 256; // codes
        if (codesSinceFull_ % kWindow == 0) {
            const std::size_t pixels = before.end - windowStart_;
            const bool measured = codesSinceFull_ > 0;
            windowStart_ = before.end;
            if (measured && codesSinceFull_ > kWindow && pixels * 4 < bestWindow_ * 3)
                return true;
            if (measured)
                bestWindow_ = codesSinceFull_ == kWindow ? pixels : std::max(bestWindow_, pixels);
        }
        ++codesSinceFull_;
        return false;
    }

    const LzwPixels& pixels_;
    FullTable fullTable_;
    std::uint32_t clearCode_;
    unsigned startSize_;
    unsigned codeSize_ = 0;
    std::uint32_t nextCode_ = 0;
    bool wasFull_ = false;
    unsigned codesSinceFull_ = 0;
    std::size_t windowStart_ = 0;
    std::size_t bestWindow_ = 0; // pixels
    StringTable table_;
    BitPacker bits_;
    struct Open {
        std::uint32_t code;
        std::size_t at;
    };
    std::vector<Open> open_; // strings that may grow; kept to spare allocations
};

} // namespace

std::vector<std::uint8_t> compressLzw(const LzwPixels& pixels, unsigned minimumCodeSize) {
    Compressor keeping(pixels, minimumCodeSize, FullTable::Keep);
    std::vector<std::uint8_t> kept = keeping.compress();
    if (!keeping.tableWasFull())
        return kept;
    std::vector<std::uint8_t> cleared = Compressor(pixels, minimumCodeSize, FullTable::Clear).compress();
    return cleared.size() < kept.size() ? cleared : kept;
}

namespace {

class BitReader {
public:
    explicit BitReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    // Nothing when fewer bits are left.
    std::optional<std::uint32_t> take(unsigned bits) {
        while (count_ < bits) {
            if (at_ == bytes_.size())
                return std::nullopt;
            pending_ |= std::uint32_t{bytes_[at_++]} << count_;
            count_ += 8;
        }
        const std::uint32_t code = pending_ & ((1u << bits) - 1);
        pending_ >>= bits;
        count_ -= bits;
        return code;
    }

private:
    std::span<const std::uint8_t> bytes_;
    std::size_t at_ = 0;
    std::uint32_t pending_ = 0; // at most 19 bits
    unsigned count_ = 0;
};

// The strings of a reader's table, each a place in what has been written: a string and the index behind it stand there
// in full when the string is defined.
class StringPlaces {
public:
    explicit StringPlaces(std::uint32_t firstCode) : first_(firstCode) {}

    void clear() { count_ = 0; }
    bool isFull() const { return first_ + count_ >= kCodeLimit; }
    std::uint32_t nextCode() const { return first_ + count_; }
    void add(std::size_t start, std::size_t length) { places_[count_++] = {start, length}; }
    std::size_t start(std::uint32_t code) const { return places_[code - first_].start; }
    std::size_t length(std::uint32_t code) const { return places_[code - first_].length; }

private:
    struct Place {
        std::size_t start;
        std::size_t length;
    };
    std::uint32_t first_;
    std::uint32_t count_ = 0;
    std::array<Place, kCodeLimit> places_;
};

} // namespace

std::optional<std::vector<std::uint8_t>> expandLzw(std::span<const std::uint8_t> bytes, unsigned minimumCodeSize,
                                                   std::size_t count) {
    const std::uint32_t clearCode = 1u << minimumCodeSize;
    BitReader bits(bytes);
    StringPlaces strings(clearCode + 2);
    std::vector<std::uint8_t> out;
    unsigned width = minimumCodeSize + 1;
    std::size_t before = 0; // length of the string before, which stands at the end of `out`; 0: none
    while (out.size() < count) {
        const auto code = bits.take(width);
        if (!code || *code == clearCode + 1)
            break;
        if (*code == clearCode) {
            strings.clear();
            width = minimumCodeSize + 1;
            before = 0;
            continue;
        }
        // The string before and the first index of this one make a new string, which this code may name already.
        if (before > 0 && !strings.isFull())
            strings.add(out.size() - before, before + 1);
        std::size_t length = 1;
        if (*code < clearCode) {
            out.push_back(static_cast<std::uint8_t>(*code));
        } else {
            if (*code >= strings.nextCode())
                return std::nullopt;
            length = strings.length(*code);
            const std::size_t start = strings.start(*code);
            for (std::size_t i = 0; i < length; ++i)
                out.push_back(out[start + i]);
        }
        before = length;
        if (strings.nextCode() >= 1u << width && width < kLargestCodeSize)
            ++width;
    }
    if (out.size() > count)
        out.resize(count);
    return out;
}

} // namespace stage
