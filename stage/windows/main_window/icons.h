// The signs on the buttons, drawn at any size from shapes on a grid of 16 by 16.
#pragma once

#include "document/picture.h"
#include "windows/system/back_buffer.h"

namespace stage {

enum class Sign {
    NewAnimation,
    Open,
    Save,
    Parameters,
    Play,
    Pause,
    StepBack,
    StepForward,
    First,
    Last,
    ZoomIn,
    ZoomOut,
    ActualSize,
    Fit,
    Warning,
    Remember,
};

// The sign in one colour, `side` pixels wide and high, transparent around it.
Picture drawnSign(Sign sign, int side, Rgb colour);

} // namespace stage
