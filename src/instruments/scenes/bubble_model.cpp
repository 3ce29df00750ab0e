// Bubble chamber: numbers only.
#include "instruments/scenes/bubble_model.h"

#include "base/runtime_random.h"

#include <algorithm>
#include <utility>

namespace veldran {
namespace {

struct BubbleGroup {
    int count;
    int size;
    int speed;
    int level;
};

// Bubbles as wide as the tank leave no choice: the number is drawn all the same, so that the others keep their places.
int remainder(int number, int divisor) {
    return divisor == 0 ? 0 : number % divisor;
}

// Five numbers in this order, the third of them unused: another order would be another animation.
Bubble makeBubble(RuntimeRandom& random, const BubbleSet& set, const BubbleGroup& group) {
    Bubble bubble{};
    bubble.x = remainder(random.next(), set.width - group.size) + group.size / 2;
    bubble.y = remainder(random.next(), set.height);
    random.next();
    bubble.diameter = group.size - random.next() % std::max(group.size / 9, 1);
    bubble.angle = random.next() % 360;
    bubble.speed = group.speed;
    bubble.level = group.level;
    return bubble;
}

} // namespace

BubbleSet makeBubbleSet(const BubbleParameters& p) {
    const BubbleGroup groups[] = {
        {p.density / 2, 2 * p.size, 1, 255},
        {3 * p.density / 4, 6 * p.size / 4, 2, 160},
        {p.density, 2 * p.size / 2, 4, 128},
    };
    BubbleSet set{};
    set.width = 2 * p.width;
    set.height = 2 * p.height;
    set.frames = p.frames;
    set.drift = towardsZero(p.drift / -100.0 * set.width);
    RuntimeRandom random(static_cast<std::uint32_t>(p.seed));
    for (const BubbleGroup& group : groups)
        for (int i = 0; i < group.count; ++i)
            set.bubbles.push_back(makeBubble(random, set, group));
    return set;
}

BubbleMotion::BubbleMotion(BubbleSet set) : set_(std::move(set)), first_(set_.bubbles) {}

void BubbleMotion::advanceTo(int frame) {
    if (frame < frame_) {
        set_.bubbles = first_;
        frame_ = 0;
    }
    const double step = 360.0 / std::max(set_.frames, 1);
    for (; frame_ < frame; ++frame_)
        for (Bubble& bubble : set_.bubbles)
            bubble.angle += step;
}

std::vector<BubblePlace> BubbleMotion::places(int frame) {
    advanceTo(frame);
    const int risen = towardsZero(static_cast<double>(frame) / std::max(set_.frames, 1) * set_.height);
    std::vector<BubblePlace> places;
    places.reserve(set_.bubbles.size());
    for (const Bubble& bubble : set_.bubbles) {
        const int wobble = towardsZero(sineOfDegrees(bubble.angle) * set_.drift);
        places.push_back({{bubble.x - wobble, bubble.y - risen * bubble.speed}, bubble.diameter, bubble.level});
    }
    return places;
}

std::vector<std::uint8_t> bubbleGreys(int diameter, int level) {
    const int rings = diameter / 2;
    std::vector<std::uint8_t> greys;
    greys.reserve(static_cast<std::size_t>(rings));
    for (int k = 0; k < rings; ++k)
        greys.push_back(static_cast<std::uint8_t>(255 - towardsZero(static_cast<double>(k) / rings * level)));
    return greys;
}

TankGeometry tankGeometry(int width, int height) {
    const int side = std::min(width, height);
    return {side / 4, side / 4 / 4, side / 6};
}

std::vector<int> bevelFactors(int width, int depth) {
    std::vector<int> factors;
    factors.reserve(static_cast<std::size_t>(width));
    for (int k = 0; k < width; ++k)
        factors.push_back(towardsZero(sineOfDegrees(static_cast<double>(k) / width * 90) * depth) - depth + 255);
    return factors;
}

} // namespace veldran
