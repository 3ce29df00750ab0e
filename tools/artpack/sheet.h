// One page with all artwork, for a quick look.
// Never part of what is shipped: only the order and the names have to be right.
#pragma once

#include "artpack/picture.h"

#include <cstdint>
#include <string>
#include <vector>

namespace artpack {

struct NamedPicture {
    std::string name;
    Picture picture;
};

// A PNG file's bytes: the pictures at their own size in rows from left to right, each with its name and size beneath,
// on light grey. Throws Error when the page becomes larger than kLargestSide.
std::vector<std::uint8_t> drawSheet(const std::vector<NamedPicture>& pictures);

} // namespace artpack
