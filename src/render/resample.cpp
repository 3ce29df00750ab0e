// Area averaging in two passes, rows first. Each axis is measured in units of 1/target, so that every overlap of a
// source pixel with a target pixel is a whole number and the weights of a target pixel sum to the source's length.
#include "render/resample.h"

#include <algorithm>
#include <vector>

namespace veldran {
namespace {

// The source pixels [first, last] under a target pixel; all but these two weigh `target` units each.
struct Coverage {
    int first;
    int last;
    std::uint32_t firstWeight;
    std::uint32_t lastWeight; // not used when first == last
};

std::vector<Coverage> coverageOf(int sourceLength, int targetLength) {
    std::vector<Coverage> all(static_cast<std::size_t>(targetLength));
    for (int i = 0; i < targetLength; ++i) {
        const std::int64_t begin = static_cast<std::int64_t>(i) * sourceLength;
        const std::int64_t end = begin + sourceLength;
        Coverage& c = all[static_cast<std::size_t>(i)];
        c.first = static_cast<int>(begin / targetLength);
        c.last = static_cast<int>((end - 1) / targetLength);
        const std::int64_t firstEnd = static_cast<std::int64_t>(c.first + 1) * targetLength;
        c.firstWeight = static_cast<std::uint32_t>(std::min(firstEnd, end) - begin);
        c.lastWeight = static_cast<std::uint32_t>(end - static_cast<std::int64_t>(c.last) * targetLength);
    }
    return all;
}

// Weighted sums of one source row, one per target column and channel. A sum is at most 255 x source width, and sides
// are at most 65535, so it fits 32 bits.
void sumRow(const ConstImageView& source, int y, const std::vector<Coverage>& columns, std::uint32_t middleWeight,
            int channels, std::vector<std::uint32_t>& sums) {
    const std::uint8_t* row = source.row(y);
    const int step = source.bytesPerPixel();
    std::uint32_t* out = sums.data();
    for (const Coverage& column : columns) {
        std::uint32_t total[4] = {};
        const auto add = [&](int x, std::uint32_t weight) {
            const std::uint8_t* pixel = colourBytes(source, row + static_cast<std::ptrdiff_t>(x) * step);
            for (int c = 0; c < channels; ++c)
                total[c] += weight * pixel[c];
        };
        add(column.first, column.firstWeight);
        for (int x = column.first + 1; x < column.last; ++x)
            add(x, middleWeight);
        if (column.last > column.first)
            add(column.last, column.lastWeight);
        for (int c = 0; c < channels; ++c)
            *out++ = total[c];
    }
}

void addRow(const std::vector<std::uint32_t>& sums, std::uint64_t weight, std::vector<std::uint64_t>& totals) {
    for (std::size_t i = 0; i < sums.size(); ++i)
        totals[i] += weight * sums[i];
}

} // namespace

int scaledLength(int length, int percent) {
    const std::int64_t product = static_cast<std::int64_t>(length) * std::max(percent, 0);
    return static_cast<int>(std::min<std::int64_t>((product + 50) / 100, INT32_MAX));
}

void resampleArea(const ConstImageView& source, const ImageView& target) {
    const int channels = target.bytesPerPixel();
    const std::vector<Coverage> columns = coverageOf(source.width, target.width);
    const std::vector<Coverage> rows = coverageOf(source.height, target.height);
    const std::size_t values = columns.size() * static_cast<std::size_t>(channels);
    const std::uint64_t area = static_cast<std::uint64_t>(source.width) * static_cast<std::uint64_t>(source.height);
    std::vector<std::uint32_t> sums(values);
    std::vector<std::uint64_t> totals(values);
    int summedRow = -1;
    for (int y = 0; y < target.height; ++y) {
        const Coverage& covered = rows[static_cast<std::size_t>(y)];
        std::ranges::fill(totals, 0);
        for (int sourceY = covered.first; sourceY <= covered.last; ++sourceY) {
            if (sourceY != summedRow)
                sumRow(source, sourceY, columns, static_cast<std::uint32_t>(target.width), channels, sums);
            summedRow = sourceY;
            const std::uint32_t weight = sourceY == covered.first  ? covered.firstWeight
                                         : sourceY == covered.last ? covered.lastWeight
                                                                   : static_cast<std::uint32_t>(target.height);
            addRow(sums, weight, totals);
        }
        std::uint8_t* out = target.row(y);
        for (std::size_t i = 0; i < values; ++i)
            out[i] = static_cast<std::uint8_t>((totals[i] + area / 2) / area);
    }
}

} // namespace veldran
