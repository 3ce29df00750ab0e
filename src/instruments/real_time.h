// Delays of instruments that run in real time. Core: knows no windows.
#pragma once

#include "abi/plugin_abi.h"

#include <cstdint>

namespace veldran {

// A second in the unit in which a host with these flags counts delays.
constexpr std::uint32_t secondInHostUnit(std::uint32_t hostFlags) {
    return (hostFlags & kDelayInHundredths) != 0 ? 100 : 1000;
}

} // namespace veldran
