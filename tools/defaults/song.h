// The default sound: two bars of music in which every band of a spectrum moves.
#pragma once

#include "defaults/mixdown.h"

namespace defaults {

Loop song();

} // namespace defaults
