// Both methods: count colours, cut the set of colours until there are enough boxes, take each box's mean.
#include "host/quantizer.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <unordered_map>
#include <vector>

namespace veldran {
namespace {

// A colour or a cell of colours with the number of pixels that have it; channels in the order red, green, blue.
struct WeightedColour {
    std::array<double, 3> channel;
    double weight;
};

struct Box {
    std::size_t begin; // a range of the colours' array
    std::size_t end;
    std::array<double, 3> mean;
    double weight;
    double error; // summed squared distance to the mean
    int axis;     // the channel with the largest share of the error
};

// Calls `visit` with each pixel's colour that takes part.
template <class Visit>
void forEachColour(const QuantizeRequest& request, Visit visit) {
    for (const ConstImageView& frame : request.frames)
        for (int y = 0; y < frame.height; ++y) {
            const std::uint8_t* pixel = frame.row(y);
            for (int x = 0; x < frame.width; ++x, pixel += frame.bytesPerPixel()) {
                const Colour colour = makeColour(pixel[2], pixel[1], pixel[0]);
                if (colour != request.excluded)
                    visit(colour);
            }
        }
}

Box measure(const std::vector<WeightedColour>& colours, std::size_t begin, std::size_t end) {
    Box box{begin, end, {}, 0, 0, 0};
    std::array<double, 3> squares{};
    for (std::size_t i = begin; i < end; ++i) {
        box.weight += colours[i].weight;
        for (std::size_t c = 0; c < 3; ++c) {
            box.mean[c] += colours[i].weight * colours[i].channel[c];
            squares[c] += colours[i].weight * colours[i].channel[c] * colours[i].channel[c];
        }
    }
    double largest = -1;
    for (std::size_t c = 0; c < 3; ++c) {
        box.mean[c] /= box.weight;
        const double error = std::max(squares[c] - box.weight * box.mean[c] * box.mean[c], 0.0);
        box.error += error;
        if (error > largest) {
            largest = error;
            box.axis = static_cast<int>(c);
        }
    }
    return box;
}

// Orders a box's colours along its axis; the other channels break ties, so that the order does not depend on how the
// colours came.
void sortAlongAxis(std::vector<WeightedColour>& colours, const Box& box) {
    const auto axis = static_cast<std::size_t>(box.axis);
    const auto key = [axis](const WeightedColour& colour) {
        return std::array{colour.channel[axis], colour.channel[(axis + 1) % 3], colour.channel[(axis + 2) % 3]};
    };
    std::sort(colours.begin() + static_cast<std::ptrdiff_t>(box.begin),
              colours.begin() + static_cast<std::ptrdiff_t>(box.end),
              [&key](const WeightedColour& a, const WeightedColour& b) { return key(a) < key(b); });
}

// Where to cut a sorted box: between two different values on its axis, so that the summed error of the halves is least.
// With S and W the sum and weight of a half, that is where S^2/W of both together is largest.
std::size_t cutByVariance(const std::vector<WeightedColour>& colours, const Box& box) {
    const auto axis = static_cast<std::size_t>(box.axis);
    const double totalSum = box.mean[axis] * box.weight;
    double sum = 0;
    double weight = 0;
    double best = -1;
    std::size_t cut = box.begin + 1;
    for (std::size_t i = box.begin; i + 1 < box.end; ++i) {
        weight += colours[i].weight;
        sum += colours[i].weight * colours[i].channel[axis];
        if (colours[i].channel[axis] == colours[i + 1].channel[axis])
            continue;
        const double restSum = totalSum - sum;
        const double score = sum * sum / weight + restSum * restSum / (box.weight - weight);
        if (score > best) {
            best = score;
            cut = i + 1;
        }
    }
    return cut;
}

// Where to cut a sorted box: half of its pixels on each side.
std::size_t cutAtMedian(const std::vector<WeightedColour>& colours, const Box& box) {
    double weight = 0;
    std::size_t cut = box.begin;
    while (cut + 1 < box.end && weight < box.weight / 2)
        weight += colours[cut++].weight;
    return std::max(cut, box.begin + 1);
}

template <class Cut>
std::vector<Box> cutIntoBoxes(std::vector<WeightedColour>& colours, std::size_t wanted, Cut cut) {
    std::vector<Box> boxes;
    if (colours.size() <= wanted) {
        for (std::size_t i = 0; i < colours.size(); ++i)
            boxes.push_back(measure(colours, i, i + 1));
        return boxes;
    }
    boxes.push_back(measure(colours, 0, colours.size()));
    while (boxes.size() < wanted) {
        const auto widest = std::ranges::max_element(boxes, {}, &Box::error);
        if (widest->error <= 0 || widest->end - widest->begin < 2)
            break;
        sortAlongAxis(colours, *widest);
        const std::size_t middle = cut(colours, *widest);
        const Box right = measure(colours, middle, widest->end);
        *widest = measure(colours, widest->begin, middle);
        boxes.push_back(right);
    }
    return boxes;
}

PaletteEntry roundedEntry(const std::array<double, 3>& mean) {
    const auto round = [](double value) { return static_cast<std::uint8_t>(value + 0.5); };
    return {round(mean[0]), round(mean[1]), round(mean[2])};
}

std::size_t nearestMean(const std::vector<Box>& boxes, const WeightedColour& colour) {
    std::size_t nearest = 0;
    double least = std::numeric_limits<double>::max();
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        double distance = 0;
        for (std::size_t c = 0; c < 3; ++c) {
            const double difference = colour.channel[c] - boxes[i].mean[c];
            distance += difference * difference;
        }
        if (distance < least) {
            least = distance;
            nearest = i;
        }
    }
    return nearest;
}

// Moves each box's mean to the mean of the colours that are nearest to it.
void refineMeans(const std::vector<WeightedColour>& colours, std::vector<Box>& boxes) {
    std::vector<std::array<double, 4>> sums(boxes.size());
    for (const WeightedColour& colour : colours) {
        std::array<double, 4>& sum = sums[nearestMean(boxes, colour)];
        for (std::size_t c = 0; c < 3; ++c)
            sum[c] += colour.weight * colour.channel[c];
        sum[3] += colour.weight;
    }
    for (std::size_t i = 0; i < boxes.size(); ++i)
        if (sums[i][3] > 0)
            for (std::size_t c = 0; c < 3; ++c)
                boxes[i].mean[c] = sums[i][c] / sums[i][3];
}

int writePalette(const std::vector<Box>& boxes, Palette& palette) {
    palette = {};
    std::ranges::transform(boxes, palette.begin(), [](const Box& box) { return roundedEntry(box.mean); });
    // Dark to light, so that the palette does not depend on the order of the cuts.
    std::sort(palette.begin(), palette.begin() + static_cast<std::ptrdiff_t>(boxes.size()),
              [](const PaletteEntry& a, const PaletteEntry& b) {
                  const auto key = [](const PaletteEntry& e) {
                      return std::array<int, 4>{2 * e.red + 5 * e.green + e.blue, e.red, e.green, e.blue};
                  };
                  return key(a) < key(b);
              });
    return static_cast<int>(boxes.size());
}

std::vector<WeightedColour> countEveryColour(const QuantizeRequest& request) {
    std::unordered_map<Colour, double> counts;
    Colour last = kNoColour;
    double* lastCount = nullptr; // neighbours are often alike
    forEachColour(request, [&](Colour colour) {
        if (colour != last) {
            last = colour;
            lastCount = &counts[colour];
        }
        *lastCount += 1;
    });
    std::vector<WeightedColour> colours;
    colours.reserve(counts.size());
    for (const auto& [colour, count] : counts)
        colours.push_back({{double(redOf(colour)), double(greenOf(colour)), double(blueOf(colour))}, count});
    // The table's order is its own affair; sums of doubles must not depend on it.
    std::ranges::sort(colours, {}, &WeightedColour::channel);
    return colours;
}

// Cells of five bits a channel, each standing for its middle.
std::vector<WeightedColour> countCells(const QuantizeRequest& request) {
    constexpr int kDropped = 3;
    std::vector<std::uint64_t> counts(1u << 15);
    forEachColour(request, [&](Colour colour) {
        const int cell =
            redOf(colour) >> kDropped << 10 | greenOf(colour) >> kDropped << 5 | blueOf(colour) >> kDropped;
        ++counts[static_cast<std::size_t>(cell)];
    });
    std::vector<WeightedColour> colours;
    for (std::size_t cell = 0; cell < counts.size(); ++cell) {
        const auto middle = [](std::size_t level) { return static_cast<double>(level) * 255 / 31; };
        if (counts[cell] != 0)
            colours.push_back({{middle(cell >> 10), middle(cell >> 5 & 31), middle(cell & 31)}, double(counts[cell])});
    }
    return colours;
}

} // namespace

std::optional<int> optimalPalette(const QuantizeRequest& request, Palette& palette) try {
    constexpr int kRefinements = 4; // every pass lowers the error, the first ones by far the most
    std::vector<WeightedColour> colours = countEveryColour(request);
    std::vector<Box> boxes = cutIntoBoxes(colours, static_cast<std::size_t>(request.colours), cutByVariance);
    if (boxes.size() < colours.size())
        for (int i = 0; i < kRefinements; ++i)
            refineMeans(colours, boxes);
    return writePalette(boxes, palette);
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

std::optional<int> optimalPaletteInSmallMemory(const QuantizeRequest& request, Palette& palette) try {
    std::vector<WeightedColour> colours = countCells(request);
    return writePalette(cutIntoBoxes(colours, static_cast<std::size_t>(request.colours), cutAtMedian), palette);
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

} // namespace veldran
