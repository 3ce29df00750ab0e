// Kept beside the settings, never written with them.
#include "settings/windows/session_colour.h"

namespace veldran {
namespace {

constexpr Colour kFirstBezelColour = 0xCCD9D9;
Colour current = kFirstBezelColour;

} // namespace

Colour sessionColour() {
    return current;
}

void setSessionColour(Colour colour) {
    current = colour;
}

void resetSessionColour() {
    current = kFirstBezelColour;
}

} // namespace veldran
