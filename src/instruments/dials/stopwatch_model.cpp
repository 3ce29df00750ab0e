// Stopwatch: numbers only.
#include "instruments/dials/stopwatch_model.h"

#include "instruments/real_time.h"

namespace veldran {
namespace {

// Pixels of the dial.
constexpr CanvasPoint kLargeCentre{277, 481};
constexpr CanvasPoint kSmallCentre{277, 381};
constexpr int kLargeLength = 202;
constexpr int kTailLength = 56;
constexpr int kSmallLength = 68;

// Whole degrees. The quotient comes first: 21 / 60 x 360 is 125.99..., and truncated 125.
int dialDegrees(int sixtieths) {
    return towardsZero(sixtieths / 60.0 * 360);
}

} // namespace

StopwatchHands stopwatchHands(int pad, int seconds) {
    const int large = dialDegrees(seconds % 60);
    const int small = dialDegrees(seconds / 60);
    StopwatchHands hands{};
    hands.largeCentre = {kLargeCentre.x + pad, kLargeCentre.y + pad};
    hands.largeTip = handEnd(hands.largeCentre, kLargeLength, large);
    hands.largeTail = handEnd(hands.largeCentre, -kTailLength, large);
    hands.smallCentre = {kSmallCentre.x + pad, kSmallCentre.y + pad};
    hands.smallTip = handEnd(hands.smallCentre, kSmallLength, small);
    return hands;
}

std::uint32_t stopwatchDelay(bool realTime, std::uint32_t hostFlags, std::uint32_t setDelay) {
    return realTime ? secondInHostUnit(hostFlags) : setDelay;
}

} // namespace veldran
