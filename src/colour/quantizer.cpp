// Both methods: count colours, cut the set of colours until there are enough boxes, take each box's mean. The first one
// then lets every colour choose the nearest mean and moves the means to their colours, until that gains nothing more.
#include "colour/quantizer.h"

#include "colour/candidates.h"
#include "colour/colour_histogram.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <new>
#include <utility>
#include <vector>

namespace veldran {
namespace {

using Points = std::vector<ColourPoint>;
using Channels = std::array<double, 3>;

// Weighted sums of a set of points. Doubles hold whole numbers up to 2^53: enough for 2^45 pixels of 255.
struct Moments {
    Channels sum{};
    double weight = 0;

    void add(const ColourPoint& point) {
        for (std::size_t c = 0; c < 3; ++c)
            sum[c] += double{point.weight} * point.place[c];
        weight += point.weight;
    }
    Moments& operator+=(const Moments& other) {
        for (std::size_t c = 0; c < 3; ++c)
            sum[c] += other.sum[c];
        weight += other.weight;
        return *this;
    }
    Moments operator-(const Moments& other) const {
        Moments rest = *this;
        for (std::size_t c = 0; c < 3; ++c)
            rest.sum[c] -= other.sum[c];
        rest.weight -= other.weight;
        return rest;
    }
    // What the squared error of the set falls short of its summed squares when all points take their mean.
    double explained() const { return weight > 0 ? (sum[0] * sum[0] + sum[1] * sum[1] + sum[2] * sum[2]) / weight : 0; }
    std::array<float, 3> mean() const {
        std::array<float, 3> place{};
        for (std::size_t c = 0; c < 3; ++c)
            place[c] = static_cast<float>(sum[c] / weight);
        return place;
    }
};

// A range of the points' array and the best cut through it: points below `level` on `axis` come before the others.
struct Box {
    std::size_t begin;
    std::size_t end;
    Moments moments;
    double gain; // of squared error, by the cut; 0 when nothing can be cut
    std::size_t axis;
    int level;
};

Box measure(const Points& points, std::size_t begin, std::size_t end) {
    std::array<std::array<Moments, 256>, 3> bins{}; // by channel and whole level
    Box box{begin, end, {}, 0, 0, 0};
    for (std::size_t i = begin; i < end; ++i) {
        Moments moments;
        moments.add(points[i]);
        box.moments += moments;
        for (std::size_t c = 0; c < 3; ++c)
            bins[c][static_cast<std::size_t>(points[i].place[c])] += moments;
    }
    const double whole = box.moments.explained();
    for (std::size_t c = 0; c < 3; ++c) {
        Moments below;
        for (int level = 1; level < 256; ++level) {
            const Moments& bin = bins[c][static_cast<std::size_t>(level - 1)];
            if (bin.weight <= 0)
                continue;
            below += bin;
            if (below.weight >= box.moments.weight)
                break;
            const double gain = below.explained() + (box.moments - below).explained() - whole;
            if (gain > box.gain) {
                box.gain = gain;
                box.axis = c;
                box.level = level;
            }
        }
    }
    return box;
}

// Cuts where it lowers the squared error most, until there are `wanted` boxes or nothing is left to cut.
std::vector<Box> cutIntoBoxes(Points& points, std::size_t wanted) {
    std::vector<Box> boxes;
    if (points.empty())
        return boxes;
    boxes.reserve(wanted);
    boxes.push_back(measure(points, 0, points.size()));
    while (boxes.size() < wanted) {
        Box& box = *std::ranges::max_element(boxes, {}, &Box::gain);
        if (box.gain <= 0)
            break;
        const auto first = points.begin();
        const auto middle = std::partition(
            first + static_cast<std::ptrdiff_t>(box.begin), first + static_cast<std::ptrdiff_t>(box.end),
            [&box](const ColourPoint& point) { return point.place[box.axis] < static_cast<float>(box.level); });
        const auto cut = static_cast<std::size_t>(middle - first);
        const Box right = measure(points, cut, box.end);
        box = measure(points, box.begin, cut);
        boxes.push_back(right);
    }
    return boxes;
}

// Points that stand close together, and the box around them: they share the search for the nearest centres.
struct Neighbourhood {
    std::size_t begin;
    std::size_t end;
    ColourBox box;
};

// The parts of `points` that are cubes of 16 levels a side of `counted`, which stand in Morton order and so cube by
// cube. Both have the same order; `points` may have been moved.
std::vector<Neighbourhood> neighbourhoods(const Points& points, const Points& counted) {
    constexpr float kSide = 16;
    std::vector<Neighbourhood> all;
    std::array<int, 3> cube{-1, -1, -1};
    for (std::size_t i = 0; i < points.size(); ++i) {
        const std::array<float, 3>& place = points[i].place;
        std::array<int, 3> here{};
        for (std::size_t c = 0; c < 3; ++c)
            here[c] = static_cast<int>(counted[i].place[c] / kSide);
        if (here != cube)
            all.push_back({i, i, {place, place}});
        cube = here;
        Neighbourhood& last = all.back();
        last.end = i + 1;
        for (std::size_t c = 0; c < 3; ++c) {
            last.box.low[c] = std::min(last.box.low[c], place[c]);
            last.box.high[c] = std::max(last.box.high[c], place[c]);
        }
    }
    return all;
}

std::size_t nearestOf(const PointSet& centres, const std::array<float, 3>& place) {
    std::size_t nearest = 0;
    float least = std::numeric_limits<float>::max();
    for (std::size_t i = 0; i < centres.count; ++i) {
        float distance = 0;
        for (std::size_t c = 0; c < 3; ++c) {
            const float difference = centres.axis[c][i] - place[c];
            distance += difference * difference;
        }
        if (distance < least) {
            least = distance;
            nearest = i;
        }
    }
    return nearest;
}

using ClusterMoments = std::array<Moments, kMostEntries>;

// Moves each centre to the mean of the points that are nearest to it. Keeps which centre each point chose, and the sums
// of the points that chose it.
void refine(const Points& points, const std::vector<Neighbourhood>& all, PointSet& centres,
            std::vector<std::uint8_t>& labels, ClusterMoments& chosen) {
    chosen = {};
    PointSet candidates;
    for (const Neighbourhood& here : all) {
        findCandidates(centres, here.box, candidates);
        for (std::size_t i = here.begin; i < here.end; ++i) {
            labels[i] = candidates.number[nearestOf(candidates, points[i].place)];
            chosen[labels[i]].add(points[i]);
        }
    }
    for (std::size_t i = 0; i < centres.count; ++i)
        if (chosen[i].weight > 0)
            for (std::size_t c = 0; c < 3; ++c)
                centres.axis[c][i] = static_cast<float>(chosen[i].sum[c] / chosen[i].weight);
}

PointSet centresOf(const std::vector<Box>& boxes) {
    PointSet centres;
    for (const Box& box : boxes)
        centres.add(box.moments.mean(), static_cast<std::uint8_t>(centres.count));
    return centres;
}

// What the squared error rises by when two clusters share one mean (Ward).
double costOfMerging(const Moments& a, const Moments& b) {
    Moments both = a;
    both += b;
    return a.explained() + b.explained() - both.explained();
}

// Clusters with their points brought together, each with its best cut.
std::vector<Box> boxesOf(const Points& points, const std::vector<std::uint8_t>& labels, std::size_t count,
                         Points& sorted) {
    std::array<std::size_t, kMostEntries + 1> ends{};
    for (const std::uint8_t label : labels)
        ++ends[label + 1u];
    for (std::size_t i = 1; i <= count; ++i)
        ends[i] += ends[i - 1];
    std::array<std::size_t, kMostEntries + 1> next = ends;
    sorted.resize(points.size());
    for (std::size_t i = 0; i < points.size(); ++i)
        sorted[next[labels[i]]++] = points[i];
    std::vector<Box> boxes;
    boxes.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        boxes.push_back(measure(sorted, ends[i], ends[i + 1]));
    return boxes;
}

// K-means finds the nearest valley only. Where two neighbouring clusters cost less to merge than a third gains by a
// cut, one of the two moves over there. Returns how many moved.
int relocate(const Points& points, const std::vector<std::uint8_t>& labels, const ClusterMoments& chosen,
             PointSet& centres) {
    struct Merge {
        double cost;
        std::size_t from;
        std::size_t into;
    };
    std::vector<Merge> merges;
    merges.reserve(centres.count);
    for (std::size_t i = 0; i < centres.count; ++i) {
        Merge best{std::numeric_limits<double>::max(), i, i};
        for (std::size_t k = 0; k < centres.count; ++k)
            if (k != i)
                if (const double cost = costOfMerging(chosen[i], chosen[k]); cost < best.cost)
                    best = {cost, i, k};
        merges.push_back(best);
    }
    std::ranges::stable_sort(merges, {}, &Merge::cost);
    Points sorted;
    const std::vector<Box> boxes = boxesOf(points, labels, centres.count, sorted);
    std::vector<std::size_t> splits(boxes.size());
    for (std::size_t i = 0; i < splits.size(); ++i)
        splits[i] = i;
    std::ranges::stable_sort(splits, std::greater<>{}, [&boxes](std::size_t i) { return boxes[i].gain; });

    std::array<bool, kMostEntries> touched{};
    auto split = splits.begin();
    int moved = 0;
    for (const Merge& merge : merges) {
        while (split != splits.end() && touched[*split])
            ++split;
        if (split == splits.end() || boxes[*split].gain <= merge.cost)
            break;
        if (touched[merge.from] || touched[merge.into] || merge.from == *split || merge.into == *split)
            continue;
        touched[merge.from] = touched[merge.into] = touched[*split] = true;
        Moments both = chosen[merge.from];
        both += chosen[merge.into];
        const Box& box = boxes[*split];
        Moments below;
        for (std::size_t i = box.begin; i < box.end; ++i)
            if (sorted[i].place[box.axis] < static_cast<float>(box.level))
                below.add(sorted[i]);
        const auto put = [&centres](std::size_t i, const std::array<float, 3>& place) {
            for (std::size_t c = 0; c < 3; ++c)
                centres.axis[c][i] = place[c];
        };
        put(merge.into, both.mean());
        put(merge.from, below.mean());
        put(*split, (box.moments - below).mean());
        ++moved;
    }
    return moved;
}

// Centres, and which of them each point has chosen.
struct Clustering {
    PointSet centres;
    std::vector<std::uint8_t> labels;
};

// Three passes settle what a cut or a relocation has disturbed, three rounds of relocations find nearly all there are:
// on shaded spheres, landscapes and glowing traces more of either gain less than 0.02 dB.
void refineUntilSettled(const Points& points, const std::vector<Neighbourhood>& all, Clustering& clustering) {
    constexpr int kRelocations = 3;
    constexpr int kPasses = 3;
    clustering.labels.resize(points.size());
    ClusterMoments chosen;
    const auto settle = [&] {
        for (int pass = 0; pass < kPasses; ++pass)
            refine(points, all, clustering.centres, clustering.labels, chosen);
    };
    settle();
    for (int i = 0; i < kRelocations && relocate(points, clustering.labels, chosen, clustering.centres) > 0; ++i)
        settle();
}

float squaredDistance(const std::array<float, 3>& a, const std::array<float, 3>& b) {
    float sum = 0;
    for (std::size_t c = 0; c < 3; ++c)
        sum += (a[c] - b[c]) * (a[c] - b[c]);
    return sum;
}

// Root mean square distances of points to their centres.
std::array<float, kMostEntries> spreads(const Points& points, const Clustering& clustering) {
    std::array<double, kMostEntries> sum{};
    std::array<double, kMostEntries> weight{};
    for (std::size_t i = 0; i < points.size(); ++i) {
        const std::uint8_t label = clustering.labels[i];
        sum[label] += double{points[i].weight} * squaredDistance(points[i].place, clustering.centres.place(label));
        weight[label] += points[i].weight;
    }
    std::array<float, kMostEntries> spread{};
    for (std::size_t i = 0; i < spread.size(); ++i)
        spread[i] = weight[i] > 0 ? static_cast<float>(std::sqrt(sum[i] / weight[i])) : 0.0F;
    return spread;
}

// From the middle of the nearest other centres to this one, as a part of the distance to the furthest of those: near
// nothing inside the cloud of centres, about a half at its rim.
std::array<float, 3> outwardDirection(const PointSet& centres, std::size_t i) {
    constexpr std::size_t kNeighbours = 12;
    std::array<std::pair<float, std::size_t>, kMostEntries> order;
    for (std::size_t k = 0; k < centres.count; ++k)
        order[k] = {squaredDistance(centres.place(i), centres.place(k)), k};
    const std::size_t count = std::min(kNeighbours + 1, centres.count); // the centre itself is one of them
    std::partial_sort(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(count),
                      order.begin() + static_cast<std::ptrdiff_t>(centres.count));
    std::array<float, 3> direction{};
    const float reach = std::sqrt(order[count - 1].first) * static_cast<float>(count - 1);
    for (std::size_t k = 0; k < count && reach > 0; ++k)
        for (std::size_t c = 0; c < 3; ++c)
            direction[c] += (centres.axis[c][i] - centres.axis[c][order[k].second]) / reach;
    return direction;
}

// Dithering mixes what lies between entries, and means leave the outermost colours outside. Entries at the rim move out
// to about where their own colours end; an entry of one colour, or of a few that are hardly different, stays.
void reachOutwards(const Points& points, Clustering& clustering) {
    constexpr float kInside = 0.2F; // length of the direction of centres that have neighbours all around
    constexpr float kReach = 3.0F;  // in spreads, for each unit of length beyond that
    constexpr float kAlike = 3.0F;  // spread in levels
    const PointSet before = clustering.centres;
    const std::array<float, kMostEntries> spread = spreads(points, clustering);
    for (std::size_t i = 0; i < before.count; ++i) {
        if (spread[i] < kAlike)
            continue;
        const std::array<float, 3> direction = outwardDirection(before, i);
        const float length = std::sqrt(squaredDistance(direction, {}));
        if (length <= kInside)
            continue;
        const float move = (length - kInside) * kReach * spread[i] / length;
        for (std::size_t c = 0; c < 3; ++c)
            clustering.centres.axis[c][i] = std::clamp(before.axis[c][i] + move * direction[c], 0.0F, 255.0F);
    }
}

int writePalette(const PointSet& centres, Palette& palette) {
    palette = {};
    const auto round = [](float value) { return static_cast<std::uint8_t>(value + 0.5F); };
    for (std::size_t i = 0; i < centres.count; ++i)
        palette[i] = {round(centres.axis[0][i]), round(centres.axis[1][i]), round(centres.axis[2][i])};
    // Dark to light, so that the palette does not depend on the order of the cuts.
    const auto end = palette.begin() + static_cast<std::ptrdiff_t>(centres.count);
    std::sort(palette.begin(), end, [](const PaletteEntry& a, const PaletteEntry& b) {
        const auto key = [](const PaletteEntry& e) {
            return std::array<int, 4>{2 * e.red + 5 * e.green + e.blue, e.red, e.green, e.blue};
        };
        return key(a) < key(b);
    });
    return static_cast<int>(centres.count);
}

PointSet centresOf(const Points& points) {
    PointSet centres;
    for (const ColourPoint& point : points)
        centres.add(point.place, static_cast<std::uint8_t>(centres.count));
    return centres;
}

// The part that each channel has in the distance of two colours while they are grouped: the eye sees a difference in
// green best.
constexpr std::array<float, 3> kChannelScale = {0.83F, 1, 0.83F};

// Colours as they are grouped when nothing is dithered. A mean of squares is ruled by its few large terms, the eye by
// the common ones; and the more vivid a colour is, the less the eye sees of a difference. Against grouping by squared
// RGB distances alone the mean difference that the eye sees (CIEDE2000) falls by 4 to 20 per cent on traces, shaded
// spheres and landscapes, and the squared error rises by 0.1 dB at most, on sweeping radar beams 0.3.
Points asSeen(Points points) {
    constexpr float kFrequencyExponent = 1.2F;
    constexpr float kHalfWeight = 130; // how far a colour is from grey, in levels, when it counts half
    for (ColourPoint& point : points) {
        const auto [least, most] = std::ranges::minmax(point.place);
        point.weight = std::pow(point.weight, kFrequencyExponent) / (1 + (most - least) / kHalfWeight);
        for (std::size_t c = 0; c < 3; ++c)
            point.place[c] *= kChannelScale[c];
    }
    return points;
}

// Dithering wants entries spread more widely, and mixes what its neighbours in RGB are.
Points asMixed(Points points) {
    constexpr float kFrequencyExponent = 0.9F;
    for (ColourPoint& point : points)
        point.weight = std::pow(point.weight, kFrequencyExponent);
    return points;
}

PointSet bestCentres(const Points& points, const QuantizeRequest& request) {
    const auto wanted = static_cast<std::size_t>(request.colours);
    if (points.size() <= wanted)
        return centresOf(points);
    const Points grouped = request.forDithering ? asMixed(points) : asSeen(points);
    Points shuffled = grouped;
    Clustering clustering{centresOf(cutIntoBoxes(shuffled, wanted)), {}};
    refineUntilSettled(grouped, neighbourhoods(grouped, points), clustering);
    if (!request.forDithering)
        for (std::size_t i = 0; i < clustering.centres.count; ++i)
            for (std::size_t c = 0; c < 3; ++c)
                clustering.centres.axis[c][i] /= kChannelScale[c];
    // The entries are the means of the pixels that they stand for. What was grouped otherwise needs two passes.
    const std::vector<Neighbourhood> all = neighbourhoods(points, points);
    ClusterMoments chosen;
    for (int pass = request.forDithering ? 1 : 0; pass < 2; ++pass)
        refine(points, all, clustering.centres, clustering.labels, chosen);
    if (request.forDithering)
        reachOutwards(points, clustering);
    return clustering.centres;
}

Points countColours(const QuantizeRequest& request) {
    // On frames of 500 000 colours and more, four times fewer points cost 0.1 dB, eight times more gain nothing.
    constexpr std::size_t kMostPoints = 1u << 17;
    ColourHistogram histogram;
    histogram.count(request.frames);
    if (request.excluded)
        histogram.remove(*request.excluded);
    return histogram.points(kMostPoints);
}

// The means of cubes of eight levels a side.
Points countCubes(const QuantizeRequest& request) {
    constexpr int kDropped = 3 * 3;
    std::vector<Moments> cubes(kMortonColours >> kDropped);
    for (const ConstImageView& frame : request.frames)
        for (int y = 0; y < frame.height; ++y) {
            const std::uint8_t* pixel = frame.row(y);
            for (int x = 0; x < frame.width; ++x, pixel += frame.bytesPerPixel()) {
                const Colour colour = makeColour(pixel[2], pixel[1], pixel[0]);
                if (colour == request.excluded)
                    continue;
                cubes[mortonIndex(colour) >> kDropped].add({{float(pixel[2]), float(pixel[1]), float(pixel[0])}, 1.0F});
            }
        }
    Points points;
    for (const Moments& cube : cubes)
        if (cube.weight > 0)
            points.push_back({cube.mean(), static_cast<float>(cube.weight)});
    return points;
}

} // namespace

std::optional<int> optimalPalette(const QuantizeRequest& request, Palette& palette) try {
    return writePalette(bestCentres(countColours(request), request), palette);
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

std::optional<int> optimalPaletteInSmallMemory(const QuantizeRequest& request, Palette& palette) try {
    Points points = countCubes(request);
    return writePalette(centresOf(cutIntoBoxes(points, static_cast<std::size_t>(request.colours))), palette);
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

} // namespace veldran
