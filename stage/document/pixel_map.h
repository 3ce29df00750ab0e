// A hash table with pixels as keys, for what is looked up once a pixel of every frame.
#pragma once

#include "document/picture.h"

#include <utility>
#include <vector>

namespace stage {

// Entries stay in the order in which they came; references hold until the next one comes.
template <class Value>
class PixelMap {
public:
    // The pixel's value; Value{} for a pixel that was not there.
    Value& operator[](Pixel pixel) {
        std::size_t place = placeOf(pixel);
        if (slots_[place] == 0) {
            entries_.emplace_back(pixel, Value{});
            slots_[place] = static_cast<std::uint32_t>(entries_.size());
            if (2 * entries_.size() > slots_.size())
                grow();
            return entries_.back().second;
        }
        return entries_[slots_[place] - 1].second;
    }
    // Null for a pixel that is not there.
    const Value* find(Pixel pixel) const {
        const std::uint32_t slot = slots_[placeOf(pixel)];
        return slot == 0 ? nullptr : &entries_[slot - 1].second;
    }
    std::size_t size() const { return entries_.size(); }
    auto begin() const { return entries_.begin(); }
    auto end() const { return entries_.end(); }

private:
    // Where the pixel is or belongs.
    std::size_t placeOf(Pixel pixel) const {
        // Knuth's multiplier, 2^32 divided by the golden ratio; its high bits depend on all of the pixel's.
        std::size_t place = pixel * 2654435761u >> shift_;
        while (slots_[place] != 0 && entries_[slots_[place] - 1].first != pixel)
            place = (place + 1) % slots_.size();
        return place;
    }
    void grow() {
        --shift_;
        slots_.assign(2 * slots_.size(), 0);
        for (std::size_t i = 0; i < entries_.size(); ++i)
            slots_[placeOf(entries_[i].first)] = static_cast<std::uint32_t>(i + 1);
    }

    std::vector<std::pair<Pixel, Value>> entries_;
    std::vector<std::uint32_t> slots_ = std::vector<std::uint32_t>(512); // number of an entry, counted from 1; 0: empty
    unsigned shift_ = 32 - 9;
};

} // namespace stage
