// Positions are whole per cents, so that 24 points always find room between 0 and 100.
#include "settings/data_points.h"

#include "settings/integer_text.h"

#include <algorithm>

namespace veldran {
namespace {

// Spreads points that share a position or lie outside, moving each no further than it must.
void separatePositions(std::vector<DataPoint>& points) {
    points.front().position = 0;
    for (std::size_t i = 1; i < points.size(); ++i)
        points[i].position = std::max(points[i].position, points[i - 1].position + 1);
    points.back().position = kLastPosition;
    for (std::size_t i = points.size() - 1; i-- > 1;)
        points[i].position = std::min(points[i].position, points[i + 1].position - 1);
}

bool isEnd(std::span<const DataPoint> points, std::size_t index) {
    return index == 0 || index + 1 >= points.size();
}

} // namespace

std::vector<DataPoint> parseDataPoints(std::string_view text) {
    std::vector<DataPoint> points;
    while (!text.empty() && points.size() < kMostDataPoints) {
        const std::optional<int> position = takeInteger(text);
        if (!position || !takeComma(text))
            break;
        const std::optional<int> value = takeInteger(text);
        if (!value)
            break;
        points.push_back({*position, *value});
        text.remove_prefix(std::min(text.find(';'), text.size()));
        text.remove_prefix(std::min<std::size_t>(1, text.size()));
    }
    return points;
}

std::string formatDataPoints(std::span<const DataPoint> points) {
    std::string text;
    for (const DataPoint& point : points) {
        if (!text.empty())
            text += ';';
        text += std::to_string(point.position) + ',' + std::to_string(point.value);
    }
    return text;
}

std::vector<DataPoint> editableDataPoints(std::vector<DataPoint> points) {
    if (points.empty())
        points.push_back({0, 0});
    for (DataPoint& point : points)
        point = {std::clamp(point.position, 0, kLastPosition), std::clamp(point.value, 0, kHighestValue)};
    std::ranges::stable_sort(points, {}, &DataPoint::position);
    if (points.size() > kMostDataPoints)
        points.resize(kMostDataPoints);
    if (points.front().position > 0 && points.size() < kMostDataPoints)
        points.insert(points.begin(), {0, points.front().value});
    if ((points.size() == 1 || points.back().position < kLastPosition) && points.size() < kMostDataPoints)
        points.push_back({kLastPosition, points.back().value});
    separatePositions(points);
    return points;
}

std::optional<std::size_t> insertDataPoint(std::vector<DataPoint>& points, DataPoint point) {
    point.position = std::clamp(point.position, 1, kLastPosition - 1);
    point.value = std::clamp(point.value, 0, kHighestValue);
    const auto next = std::ranges::lower_bound(points, point.position, {}, &DataPoint::position);
    if (points.size() >= kMostDataPoints || next == points.end() || next->position == point.position)
        return std::nullopt;
    const auto index = static_cast<std::size_t>(next - points.begin());
    points.insert(next, point);
    return index;
}

void moveDataPoint(std::vector<DataPoint>& points, std::size_t index, DataPoint target) {
    if (index >= points.size())
        return;
    points[index].value = std::clamp(target.value, 0, kHighestValue);
    if (!isEnd(points, index))
        points[index].position =
            std::clamp(target.position, points[index - 1].position + 1, points[index + 1].position - 1);
}

bool removeDataPoint(std::vector<DataPoint>& points, std::size_t index) {
    if (isEnd(points, index))
        return false;
    points.erase(points.begin() + static_cast<std::ptrdiff_t>(index));
    return true;
}

} // namespace veldran
