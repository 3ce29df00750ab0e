// Counting and reducing colours; see the header.
#include "formats/colours.h"

#include <algorithm>
#include <array>

namespace stage {
namespace {

using Channels = std::array<double, 3>;

Channels channelsOf(Pixel pixel) {
    const Rgb colour = rgbOf(pixel);
    return {double(colour.red), double(colour.green), double(colour.blue)};
}

struct Weighted {
    Channels colour;
    double weight;
};

// A part of the colours, a run of the array that holds all of them.
struct Box {
    std::span<Weighted> colours;
    Channels mean{};
    Channels error{}; // squared, by channel

    explicit Box(std::span<Weighted> part) : colours(part) {
        double weight = 0;
        for (const Weighted& c : colours) {
            weight += c.weight;
            for (std::size_t i = 0; i < 3; ++i)
                mean[i] += c.weight * c.colour[i];
        }
        for (double& channel : mean)
            channel /= weight;
        for (const Weighted& c : colours)
            for (std::size_t i = 0; i < 3; ++i)
                error[i] += c.weight * (c.colour[i] - mean[i]) * (c.colour[i] - mean[i]);
        for (std::size_t i = 0; i < 3; ++i) {
            const auto [least, most] = std::ranges::minmax(colours, {}, [i](const Weighted& c) { return c.colour[i]; });
            if (least.colour[i] == most.colour[i]) // whatever rounding says
                error[i] = 0;
        }
    }
    double worst() const { return *std::ranges::max_element(error); }
};

// At the mean of the channel that errs most; each half has at least one colour, because that channel varies.
std::array<Box, 2> cut(const Box& box) {
    const auto channel = static_cast<std::size_t>(std::ranges::max_element(box.error) - box.error.begin());
    const double level = box.mean[channel];
    const auto upper = std::partition(box.colours.begin(), box.colours.end(),
                                      [&](const Weighted& c) { return c.colour[channel] <= level; });
    const auto lower = static_cast<std::size_t>(upper - box.colours.begin());
    return {Box(box.colours.first(lower)), Box(box.colours.subspan(lower))};
}

double distance(const Channels& a, const Channels& b) {
    double sum = 0;
    for (std::size_t i = 0; i < 3; ++i)
        sum += (a[i] - b[i]) * (a[i] - b[i]);
    return sum;
}

// One step of k-means.
void moveToMeans(std::vector<Channels>& palette, std::span<const Weighted> colours) {
    std::vector<Channels> sums(palette.size());
    std::vector<double> weights(palette.size());
    for (const Weighted& c : colours) {
        std::size_t best = 0;
        for (std::size_t i = 1; i < palette.size(); ++i)
            if (distance(palette[i], c.colour) < distance(palette[best], c.colour))
                best = i;
        weights[best] += c.weight;
        for (std::size_t i = 0; i < 3; ++i)
            sums[best][i] += c.weight * c.colour[i];
    }
    for (std::size_t k = 0; k < palette.size(); ++k)
        for (std::size_t i = 0; i < 3 && weights[k] > 0; ++i)
            palette[k][i] = sums[k][i] / weights[k];
}

// Alike colours are taken together where there are very many, so that the work stays bounded: 5 bits a channel leave at
// most 32768.
std::vector<Weighted> weightedColours(const PixelMap<std::uint64_t>& counts) {
    constexpr std::size_t kMany = 32768;
    std::vector<std::pair<Pixel, std::uint64_t>> sorted;
    for (const auto& [pixel, count] : counts)
        if (opacityOf(pixel) != 0)
            sorted.emplace_back(pixel, count);
    std::ranges::sort(sorted); // the result shall not depend on the order of a hash table
    std::vector<Weighted> colours;
    if (sorted.size() <= kMany) {
        for (const auto& [pixel, count] : sorted)
            colours.push_back({channelsOf(pixel), double(count)});
        return colours;
    }
    std::vector<Weighted> cells(kMany);
    for (const auto& [pixel, count] : sorted) {
        const Rgb c = rgbOf(pixel);
        Weighted& cell = cells[std::size_t{c.red} >> 3 << 10 | std::size_t{c.green} >> 3 << 5 | c.blue >> 3];
        const Channels channels = channelsOf(pixel);
        for (std::size_t i = 0; i < 3; ++i)
            cell.colour[i] += channels[i] * double(count);
        cell.weight += double(count);
    }
    for (Weighted& cell : cells) {
        if (cell.weight == 0)
            continue;
        for (double& channel : cell.colour)
            channel /= cell.weight;
        colours.push_back(cell);
    }
    return colours;
}

Pixel rounded(const Channels& c) {
    return pixelOf({static_cast<std::uint8_t>(c[0] + 0.5), static_cast<std::uint8_t>(c[1] + 0.5),
                    static_cast<std::uint8_t>(c[2] + 0.5)});
}

} // namespace

void ColourCount::add(std::span<const Pixel> pixels) {
    // Runs of one colour are long in drawn pictures.
    for (std::size_t i = 0; i < pixels.size();) {
        std::size_t end = i + 1;
        while (end < pixels.size() && pixels[end] == pixels[i])
            ++end;
        if (counts_.size() >= limit_ && counts_.find(pixels[i]) == nullptr)
            overLimit_ = true;
        else
            counts_[pixels[i]] += end - i;
        i = end;
    }
}

std::vector<Pixel> ColourCount::byFrequency() const {
    std::vector<std::pair<Pixel, std::uint64_t>> sorted(counts_.begin(), counts_.end());
    std::ranges::sort(sorted, [](const auto& a, const auto& b) {
        return a.second != b.second ? a.second > b.second : a.first < b.first;
    });
    std::vector<Pixel> colours;
    colours.reserve(sorted.size());
    for (const auto& entry : sorted)
        colours.push_back(entry.first);
    return colours;
}

std::vector<Pixel> reducedPalette(const PixelMap<std::uint64_t>& counts, std::size_t size) {
    constexpr int kMeansSteps = 3;
    std::vector<Weighted> colours = weightedColours(counts);
    if (colours.empty())
        return {};
    std::vector<Box> boxes = {Box(colours)};
    while (boxes.size() < size) {
        const auto worst = std::ranges::max_element(boxes, {}, &Box::worst);
        if (worst->worst() <= 0)
            break;
        const auto [lower, upper] = cut(*worst);
        *worst = lower;
        boxes.push_back(upper);
    }
    std::vector<Channels> palette;
    std::ranges::transform(boxes, std::back_inserter(palette), &Box::mean);
    for (int i = 0; i < kMeansSteps; ++i)
        moveToMeans(palette, colours);
    std::vector<Pixel> result;
    std::ranges::transform(palette, std::back_inserter(result), rounded);
    std::ranges::sort(result);
    result.erase(std::unique(result.begin(), result.end()), result.end());
    return result;
}

Pixel nearestColour(std::span<const Pixel> palette, Pixel pixel) {
    const Channels wanted = channelsOf(pixel);
    return *std::ranges::min_element(palette, {}, [&](Pixel entry) { return distance(channelsOf(entry), wanted); });
}

} // namespace stage
