// LZW for GIF: codes are found through an open hash of (string so far, next index).
#include "core/lzw.h"

#include <algorithm>
#include <array>

namespace stage {
namespace {

constexpr std::uint32_t kCodeLimit = 4096; // GIF89a: codes have at most 12 bits
constexpr unsigned kLargestCodeSize = 12;

// From a string's code and the index that follows it to the code of the longer string. Four times as many places as
// there are codes keep the chains near one.
class StringTable {
public:
    void clear() { keys_.fill(kEmpty); }

    // The place of the pair: where it is, or where it belongs.
    std::size_t find(std::uint32_t code, std::uint8_t index) const {
        const std::uint32_t key = keyOf(code, index);
        std::size_t place =
            key * 2654435761u >> 18; // Knuth's multiplier, 2^32 divided by the golden ratio; 14 bits stay
        while (keys_[place] != kEmpty && keys_[place] != key)
            place = (place + 1) % kPlaces;
        return place;
    }
    bool isTaken(std::size_t place) const { return keys_[place] != kEmpty; }
    std::uint32_t codeAt(std::size_t place) const { return codes_[place]; }
    void put(std::size_t place, std::uint32_t code, std::uint8_t index, std::uint32_t newCode) {
        keys_[place] = keyOf(code, index);
        codes_[place] = static_cast<std::uint16_t>(newCode);
    }

private:
    static constexpr std::size_t kPlaces = 1u << 14;
    static constexpr std::uint32_t kEmpty = 0xFFFFFFFF;
    static std::uint32_t keyOf(std::uint32_t code, std::uint8_t index) { return code << 8 | index; }

    std::array<std::uint32_t, kPlaces> keys_;
    std::array<std::uint16_t, kPlaces> codes_;
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

class Compressor {
public:
    explicit Compressor(unsigned minimumCodeSize) : clearCode_(1u << minimumCodeSize), startSize_(minimumCodeSize + 1) {
        codeSize_ = startSize_;
        clear();
    }

    std::vector<std::uint8_t> compress(std::span<const std::uint8_t> indices) {
        if (!indices.empty()) {
            std::uint32_t current = indices[0];
            for (const std::uint8_t index : indices.subspan(1))
                current = extend(current, index);
            bits_.put(current, codeSize_);
            growFor(nextCode_);
        }
        bits_.put(clearCode_ + 1, codeSize_);
        return bits_.finish();
    }

private:
    void clear() {
        bits_.put(clearCode_, codeSize_);
        table_.clear();
        codeSize_ = startSize_;
        nextCode_ = clearCode_ + 2;
    }

    // The reader knows a new string one code later than the writer, so the width grows with the first string whose code
    // itself needs it.
    void growFor(std::uint32_t code) {
        if (code == 1u << codeSize_ && codeSize_ < kLargestCodeSize)
            ++codeSize_;
    }

    std::uint32_t extend(std::uint32_t current, std::uint8_t index) {
        const std::size_t place = table_.find(current, index);
        if (table_.isTaken(place))
            return table_.codeAt(place);
        bits_.put(current, codeSize_);
        if (nextCode_ == kCodeLimit) {
            clear();
        } else {
            table_.put(place, current, index, nextCode_);
            growFor(nextCode_++);
        }
        return index;
    }

    std::uint32_t clearCode_;
    unsigned startSize_;
    unsigned codeSize_ = 0;
    std::uint32_t nextCode_ = 0;
    StringTable table_;
    BitPacker bits_;
};

} // namespace

std::vector<std::uint8_t> compressLzw(std::span<const std::uint8_t> indices, unsigned minimumCodeSize) {
    return Compressor(minimumCodeSize).compress(indices);
}

} // namespace stage
