// Data points: a curve over an animation, as the text that settings keep and as a list that a person edits.
// Core: knows no windows.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace veldran {

enum class PointsKind : std::uint8_t { Speed, Altitude };

struct DataPoint {
    int position; // per cent of the animation
    int value;    // thousandths of full scale
    bool operator==(const DataPoint&) const = default;
};

inline constexpr std::size_t kMostDataPoints = 24;
inline constexpr int kLastPosition = 100;
inline constexpr int kHighestValue = 1000;

// Full scale in the unit that people see: revolutions per minute (the tachometer's needle stop) or feet.
constexpr int fullScale(PointsKind kind) {
    return kind == PointsKind::Speed ? 8000 : 25000;
}

// Reads "position,value;position,value...": at most 24 points. The first that is malformed ends the list; what follows
// a value up to its semicolon is skipped. Order and ranges are as they stand.
std::vector<DataPoint> parseDataPoints(std::string_view text);

std::string formatDataPoints(std::span<const DataPoint> points);

// The points put into the order that the operations below need and keep: two to 24 points, values 0 to 1000, positions
// strictly increasing, the first 0 and the last 100. A missing end takes the value of its neighbour.
std::vector<DataPoint> editableDataPoints(std::vector<DataPoint> points);

// Adds a point between the ends; its index, or nothing when the list is full or has a point there already.
std::optional<std::size_t> insertDataPoint(std::vector<DataPoint>& points, DataPoint point);

// Moves a point as far towards `target` as its neighbours allow; the ends keep their position.
void moveDataPoint(std::vector<DataPoint>& points, std::size_t index, DataPoint target);

// False for the ends, which stay.
bool removeDataPoint(std::vector<DataPoint>& points, std::size_t index);

} // namespace veldran
