// The packed record that the plugin keeps its artwork in: a header of 52 bytes and a zlib stream (RFC 1950) of a
// bitmap. Never depends on Windows: the bitmap's header is written field by field.
//
//   offset  size  all numbers little-endian
//        0     8  "CPX_HEAD"
//        8     4  bytes of the bitmap
//       12     4  bytes of the stream
//       16     4  1
//       20    32  zero
//       52        the stream
//
// The bitmap is a packed DIB: a BITMAPINFOHEADER of 40 bytes without compression, at 8 bits a table of 256 greys (blue,
// green, red, 0 each), then the rows from the bottom up, each padded with zeros to four bytes.
#pragma once

#include "artpack/picture.h"

#include <cstdint>
#include <vector>

namespace artpack {

enum class Depth : std::uint16_t {
    Grey8 = 8,    // Rec. 601 luma, rounded
    Colour24 = 24 // blue, green, red
};

// Equal pictures give equal bytes. Throws Error when the bitmap is larger than its 32-bit sizes can say.
std::vector<std::uint8_t> packRecord(const Picture& picture, Depth depth);

} // namespace artpack
