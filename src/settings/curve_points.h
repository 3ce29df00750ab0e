// A colour curve: five heights of five bits each in one number, the leftmost in the lowest bits. Core: knows no
// windows.
#pragma once

#include <array>
#include <cstdint>

namespace veldran {

inline constexpr int kCurvePointCount = 5;
inline constexpr int kHighestCurvePoint = 31;

using CurvePoints = std::array<int, kCurvePointCount>;

// Bits above the five heights are ignored.
CurvePoints unpackCurve(std::uint32_t value);

// Heights outside of 0 to 31 are clamped.
std::uint32_t packCurve(const CurvePoints& points);

} // namespace veldran
