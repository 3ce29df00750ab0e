// The directory of an .ico file and the pictures behind it; see the header.
#include "artpack/icon.h"

#include "artpack/picture.h"

namespace artpack {
namespace {

void append(std::vector<std::uint8_t>& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i)
        bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

} // namespace

std::vector<std::uint8_t> drawIcon(const std::filesystem::path& svg, std::span<const int> sides) {
    constexpr std::size_t kHeader = 6;
    constexpr std::size_t kEntry = 16;
    std::vector<std::uint8_t> icon;
    append(icon, 0, 2);
    append(icon, 1, 2); // an icon
    append(icon, static_cast<std::uint32_t>(sides.size()), 2);
    std::vector<std::uint8_t> pictures;
    for (const int side : sides) {
        const std::vector<std::uint8_t> png = renderPng(svg, side);
        const auto byte = static_cast<std::uint32_t>(side % kLargestIcon); // 0 stands for 256
        append(icon, byte, 1);
        append(icon, byte, 1);
        append(icon, 0, 2);  // no palette
        append(icon, 1, 2);  // plane
        append(icon, 32, 2); // bits a pixel
        append(icon, static_cast<std::uint32_t>(png.size()), 4);
        append(icon, static_cast<std::uint32_t>(kHeader + kEntry * sides.size() + pictures.size()), 4);
        pictures.insert(pictures.end(), png.begin(), png.end());
    }
    icon.insert(icon.end(), pictures.begin(), pictures.end());
    return icon;
}

} // namespace artpack
