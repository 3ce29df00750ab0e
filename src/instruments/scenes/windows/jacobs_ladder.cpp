// Jacob's ladder: two rods that part as they rise from a base, and an arc that climbs them. Rods and base are painted
// once; each frame is a copy of them with the arc's light added; the numbers come from jacobs_ladder_model.
#include "instruments/windows/instruments.h"

#include "instruments/scenes/jacobs_ladder_model.h"
#include "instruments/windows/painted_scene.h"
#include "settings/windows/parameter_reader.h"
#include "settings/windows/settings_store.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace veldran::jacobs_ladder {
namespace {

struct LadderColours {
    Colour arc;
    Colour background;
    Colour electrodes;
    Colour base;
};

// What is the same for every frame.
struct LadderScene {
    LadderParameters parameters;
    LadderColours colours;
    Edges edges;
    LadderGeometry geometry;
};

LadderParameters readParameters(HWND dialog) {
    LadderParameters p{};
    p.size = readParameter(dialog, kJacobsLadderControl<Setting::MainLadderSize>);
    p.depthFactor = static_cast<int>(std::clamp(pluginSettings().number(Setting::AdvancedLadderDepthFactor),
                                                kLeastDepthFactor, kGreatestDepthFactor));
    p.frames = std::max(readParameter(dialog, kJacobsLadderControl<Setting::MainLadderFrames>), 1);
    p.energy = readParameter(dialog, kJacobsLadderControl<Setting::MainLadderEnergy>);
    p.complexity = readParameter(dialog, kJacobsLadderControl<Setting::MainLadderComplexity>);
    p.disturbance = readParameter(dialog, kJacobsLadderControl<Setting::MainLadderDisturbance>);
    p.seed = readParameter(dialog, kJacobsLadderControl<Setting::MainLadderSeed>);
    return p;
}

LadderColours readColours(HWND dialog) {
    return {readColour(dialog, kJacobsLadderControl<Setting::MainLadderWhiteColor>), background(dialog, 0),
            readColour(dialog, kJacobsLadderControl<Setting::MainLadderElectrodeColor>),
            readColour(dialog, kJacobsLadderControl<Setting::MainLadderBaseColor>)};
}

// A rod is round: lit on its left, dark on its right.
void paintRods(const ImageView& picture, const LadderScene& scene) {
    const LadderGeometry& g = scene.geometry;
    for (const int side : {-1, 1}) {
        const auto across = [&](double x, double y) { return x - g.width / 2.0 - side * rodDistance(g, y); };
        // What a step across is to the rod's own axis where it leans.
        const auto upright = [&](double y) {
            return 1 / std::hypot(1, rodDistance(g, y + 0.5) - rodDistance(g, y - 0.5));
        };
        const auto distance = [&](double x, double y) {
            const double sideways = std::abs(across(x, y)) * upright(y);
            return std::max(std::hypot(sideways, std::max(g.rodTop - y, 0.0)), y - g.rodBottom) - g.rodRadius;
        };
        const auto paint = [&](double x, double y) {
            const double place = across(x, y) * upright(y) / g.rodRadius; // -1 to 1
            const double glint = std::exp(-8 * (place + 0.35) * (place + 0.35));
            return Paint{tonedColour(scene.colours.electrodes, 0.7 * glint - 0.28 - 0.42 * place)};
        };
        paintShape(picture, {0, g.rodTop - g.rodRadius, double(g.width), double(g.height)}, scene.edges, distance,
                   paint);
    }
}

// A moulded block, light on its upper edge, with a collar for each rod.
void paintBase(const ImageView& picture, const LadderScene& scene) {
    const LadderGeometry& g = scene.geometry;
    const double unit = g.width / 100.0;
    const ShapeBox block{6 * unit, g.height - 17 * unit, 94 * unit, g.height - 3 * unit};
    const ShapeBox foot{2 * unit, g.height - 6 * unit, 98 * unit, g.height - 1.0 * unit};
    const auto moulded = [&](const ShapeBox& box, double lift) {
        return [&scene, box, lift](double x, double y) {
            const double down = (y - box.top) / (box.bottom - box.top);
            const double across = (x - box.left) / (box.right - box.left);
            const double rim = std::exp(-(y - box.top) * 0.9);
            return Paint{tonedColour(scene.colours.base, lift + 0.45 * rim - 0.42 * down * down - 0.10 * across)};
        };
    };
    for (const int side : {-1, 1}) {
        const double middle = g.width / 2.0 + side * g.narrowest;
        const double half = std::min(4.2 * unit, g.narrowest - 0.3);
        const ShapeBox collar{middle - half, g.height - 23 * unit, middle + half, g.height - 15 * unit};
        paintBox(picture, collar, 1.2 * unit, scene.edges, [&](double x, double y) {
            const double place = (x - middle) / half;
            const double groove = 0.12 * std::cos((y - collar.top) / unit * 2.4);
            return Paint{tonedColour(scene.colours.base, 0.30 - 0.55 * (place + 0.35) * (place + 0.35) + groove)};
        });
    }
    paintBox(picture, foot, 1.6 * unit, scene.edges, moulded(foot, -0.12));
    paintBox(picture, block, 3 * unit, scene.edges, moulded(block, 0.08));
}

GlobalBlock paintScenery(const LadderScene& scene) {
    return paintedImage(scene.geometry.width, scene.geometry.height, scene.colours.background,
                        [&scene](const ImageView& picture) {
                            paintRods(picture, scene);
                            paintBase(picture, scene);
                        });
}

LadderScene readScene(HWND dialog) {
    const LadderParameters parameters = readParameters(dialog);
    return {parameters, readColours(dialog), readEdges(dialog), ladderGeometry(parameters)};
}

class JacobsLadderSequence : public FrameSequence {
public:
    explicit JacobsLadderSequence(HWND dialog)
        : FrameSequence(dialog), scene_(readScene(dialog)),
          noise_(static_cast<std::uint32_t>(scene_.parameters.seed), scene_.parameters.frames),
          profile_(ladderLight(scene_.parameters, scene_.colours.arc)),
          light_(scene_.geometry.width, scene_.geometry.height), scenery_(paintScenery(scene_)) {}

    int frames() const override { return scene_.parameters.frames; }
    GlobalBlock render(int index) override {
        light_.clear();
        for (const Arc& arc : ladderArcs(scene_.geometry, scene_.parameters, noise_, index))
            light_.addLine(arc.points, profile_, arc.intensity);
        return drawnCopy(scenery_, [this](const ImageView& picture) {
            light_.shineOn(picture, {0, 0, picture.width, picture.height}, 100);
        });
    }
    GlobalBlock renderStill() override { return render(0); }
    GlobalBlock renderMask() override { return blankFrame(scene_.geometry.width, scene_.geometry.height); }

private:
    LadderScene scene_;
    LoopNoise noise_;
    LightProfile profile_;
    LightLayer light_;
    GlobalBlock scenery_;
};

} // namespace

std::unique_ptr<FrameSequence> open(HWND dialog, HostParams*) {
    return std::make_unique<JacobsLadderSequence>(dialog);
}

Colour background(HWND dialog, int) {
    return backgroundOr(dialog, readColour(dialog, kJacobsLadderControl<Setting::MainLadderBlueColor>));
}

} // namespace veldran::jacobs_ladder
