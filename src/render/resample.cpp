// Area averaging in 64 bits, for every image there is, and the choice between it and the quicker ways.
#include "render/resample.h"

#include "render/area_coverage.h"
#include "render/resample_fast.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace veldran {
namespace {

// Weighted sums of one source row, one per target column and channel. A sum is at most 255 x source width, and sides
// are at most 65535, so it fits 32 bits.
void sumRow(const ConstImageView& source, int y, const AxisCoverage& columns, int channels,
            std::vector<std::uint32_t>& sums) {
    const std::uint8_t* row = source.row(y);
    const int step = source.bytesPerPixel();
    std::uint32_t* out = sums.data();
    for (const Coverage& column : columns.pixels) {
        std::uint32_t total[4] = {};
        const auto add = [&](int x, std::uint32_t weight) {
            const std::uint8_t* pixel = colourBytes(source, row + static_cast<std::ptrdiff_t>(x) * step);
            for (int c = 0; c < channels; ++c)
                total[c] += weight * pixel[c];
        };
        add(column.first, column.firstWeight);
        for (int x = column.first + 1; x < column.last; ++x)
            add(x, columns.wholePixel);
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

// Palette images are looked up as a whole first, so that the quick ways can take them; very large ones pixel by pixel.
constexpr std::size_t kMostExpandedBytes = std::size_t{32} << 20;

std::size_t expandedBytes(const ConstImageView& source) {
    return std::size_t{3} * static_cast<std::size_t>(source.width) * static_cast<std::size_t>(source.height);
}

std::vector<std::uint8_t> expanded(const ConstImageView& source) {
    std::vector<std::uint8_t> pixels(expandedBytes(source) + 1); // an entry's fourth byte spills into the next pixel
    std::uint8_t* out = pixels.data();
    for (int y = 0; y < source.height; ++y) {
        const std::uint8_t* pixel = source.row(y);
        for (int x = 0; x < source.width; ++x, ++pixel, out += 3)
            std::memcpy(out, colourBytes(source, pixel), 4);
    }
    return pixels;
}

} // namespace

int scaledLength(int length, int percent) {
    const std::int64_t product = static_cast<std::int64_t>(length) * std::max(percent, 0);
    return static_cast<int>(std::min<std::int64_t>((product + 50) / 100, INT32_MAX));
}

void resampleArea(const ConstImageView& source, const ImageView& target) {
    if (source.bits == 8 && target.bits == 24 && expandedBytes(source) <= kMostExpandedBytes) {
        const std::vector<std::uint8_t> pixels = expanded(source);
        resampleArea({pixels.data(), source.width, source.height, source.width * std::ptrdiff_t{3}, 24, nullptr},
                     target);
    } else if (!resampleWholeRatio(source, target) && !resampleFractionalRatio(source, target)) {
        resampleAreaWide(source, target);
    }
}

void resampleAreaWide(const ConstImageView& source, const ImageView& target) {
    const int channels = target.bytesPerPixel();
    const AxisCoverage columns(source.width, target.width);
    const AxisCoverage rows(source.height, target.height);
    const std::size_t values = columns.pixels.size() * static_cast<std::size_t>(channels);
    const std::uint64_t area = std::uint64_t{columns.total} * rows.total;
    std::vector<std::uint32_t> sums(values);
    std::vector<std::uint64_t> totals(values);
    int summedRow = -1;
    for (int y = 0; y < target.height; ++y) {
        const Coverage& covered = rows.pixels[static_cast<std::size_t>(y)];
        std::ranges::fill(totals, 0);
        for (int sourceY = covered.first; sourceY <= covered.last; ++sourceY) {
            if (sourceY != summedRow)
                sumRow(source, sourceY, columns, channels, sums);
            summedRow = sourceY;
            const std::uint32_t weight = sourceY == covered.first  ? covered.firstWeight
                                         : sourceY == covered.last ? covered.lastWeight
                                                                   : rows.wholePixel;
            addRow(sums, weight, totals);
        }
        std::uint8_t* out = target.row(y);
        for (std::size_t i = 0; i < values; ++i)
            out[i] = static_cast<std::uint8_t>((totals[i] + area / 2) / area);
    }
}

} // namespace veldran
