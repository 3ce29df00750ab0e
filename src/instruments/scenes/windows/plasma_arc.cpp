// Plasma arc: a glass tube with arcs between two capped electrodes. Tube, caps and electrodes are painted once; each
// frame is a copy of them with the light of its arcs and of the last two frames' added; the numbers come from
// plasma_arc_model.
#include "instruments/windows/instruments.h"

#include "instruments/scenes/plasma_arc_model.h"
#include "instruments/windows/painted_scene.h"
#include "settings/windows/parameter_reader.h"
#include "settings/windows/settings_store.h"

#include <array>
#include <cmath>
#include <memory>

namespace veldran::plasma_arc {
namespace {

constexpr std::uint32_t kBrightestGhost = 99; // per cent
constexpr double kCapCorner = 0.016;          // of the width

struct PlasmaColours {
    Colour arc;
    Colour background;
    Colour glare;
    Colour tube;
    Colour caps;
    Colour electrodes;
    Colour panel;
};

// What is the same for every frame.
struct PlasmaScene {
    PlasmaParameters parameters;
    PlasmaColours colours;
    Edges edges;
    bool showTube;
    std::array<int, 3> ghosts; // per cent of the light of this frame, the last one and the one before
    PlasmaGeometry geometry;
};

PlasmaParameters readParameters(HWND dialog) {
    PlasmaParameters p{};
    p.size = readParameter(dialog, kPlasmaArcControl<Setting::MainArclightSize>);
    p.frames = std::max(readParameter(dialog, kPlasmaArcControl<Setting::MainArclightFrames>), 1);
    p.energy = readParameter(dialog, kPlasmaArcControl<Setting::MainArclightEnergy>);
    p.complexity = readParameter(dialog, kPlasmaArcControl<Setting::MainArclightComplexity>);
    p.disturbance = readParameter(dialog, kPlasmaArcControl<Setting::MainArclightDisturbance>);
    p.seed = readParameter(dialog, kPlasmaArcControl<Setting::MainArclightSeed>);
    return p;
}

PlasmaColours readColours(HWND dialog) {
    PlasmaColours c{};
    c.arc = readColour(dialog, kPlasmaArcControl<Setting::MainArclightWhiteColor>);
    c.background = readColour(dialog, kPlasmaArcControl<Setting::MainArclightBlueColor>);
    c.glare = readColour(dialog, kPlasmaArcControl<Setting::MainArclightGlareColor>);
    c.tube = readColour(dialog, kPlasmaArcControl<Setting::MainArclightTubeColor>);
    c.caps = readColour(dialog, kPlasmaArcControl<Setting::MainArclightCapColor>);
    c.electrodes = readColour(dialog, kPlasmaArcControl<Setting::MainArclightElectrodeColor>);
    c.panel = background(dialog, 0);
    return c;
}

std::array<int, 3> readGhosts(HWND dialog) {
    if (!isChecked(dialog, kPlasmaArcControl<Setting::MainArclightAfterImage>))
        return {100, 0, 0};
    const auto percent = [](Setting setting) {
        return static_cast<int>(std::min(pluginSettings().number(setting), kBrightestGhost));
    };
    return {100, percent(Setting::AdvancedArcAfterImageIntensity),
            percent(Setting::AdvancedArcAfterAfterImageIntensity)};
}

PlasmaScene readScene(HWND dialog) {
    PlasmaScene scene{};
    scene.parameters = readParameters(dialog);
    scene.colours = readColours(dialog);
    scene.edges = readEdges(dialog);
    scene.showTube = isChecked(dialog, kPlasmaArcControl<Setting::MainArclightShowTube>);
    scene.ghosts = readGhosts(dialog);
    scene.geometry = plasmaGeometry(scene.parameters.size);
    return scene;
}

// The place across a horizontal cylinder: -1 at its upper edge, 1 at its lower one.
double roundness(const ShapeBox& box, double y) {
    return (2 * y - box.top - box.bottom) / (box.bottom - box.top);
}

// Dark at the walls, where one looks through most of the glass; the wall itself in the tube's colour.
void paintGas(const ImageView& picture, const PlasmaScene& scene) {
    const ShapeBox& tube = scene.geometry.tube;
    const double radius = (tube.bottom - tube.top) / 2;
    paintBox(picture, tube, 0, scene.edges, [&](double, double y) {
        if (!scene.showTube)
            return Paint{scene.colours.background};
        const double across = std::abs(roundness(tube, y));
        const double wall = std::pow(across, 6) * 0.75;
        const Colour gas = mixColours(scene.colours.background, scene.colours.tube, static_cast<int>(255 * wall));
        const double rim = std::max(
            1 - std::abs((1 - across) * radius - 0.55 * scene.geometry.glass) / (0.6 * scene.geometry.glass), 0.0);
        return Paint{tonedColour(gas, 0.30 * rim)};
    });
}

// One reflection of the light above, fading downwards, and a faint one of the ground.
void paintGlass(const ImageView& picture, const PlasmaScene& scene) {
    const ShapeBox& tube = scene.geometry.tube;
    const double depth = tube.bottom - tube.top;
    const ShapeBox window{tube.left + 0.12 * depth, tube.top + 0.09 * depth, tube.right - 0.12 * depth,
                          tube.top + 0.34 * depth};
    paintBox(picture, window, 0.1 * depth, scene.edges, [&](double, double y) {
        const double down = (y - window.top) / (window.bottom - window.top);
        return Paint{0xFFFFFF, 0.25 - 0.24 * down};
    });
    const ShapeBox ground{tube.left, tube.bottom - 0.16 * depth, tube.right, tube.bottom - 0.08 * depth};
    paintBox(picture, ground, 0.04 * depth, scene.edges, [](double, double) { return Paint{0xFFFFFF, 0.05}; });
}

void paintElectrode(const ImageView& picture, const PlasmaScene& scene, double from, double to) {
    const PlasmaGeometry& g = scene.geometry;
    const double middle = g.height / 2.0;
    const ShapeBox rod{std::min(from, to), middle - g.rodRadius, std::max(from, to), middle + g.rodRadius};
    paintBox(picture, rod, 0, scene.edges, [&](double, double y) {
        const double across = roundness(rod, y);
        return Paint{tonedColour(scene.colours.electrodes, 0.25 - 0.6 * (across + 0.4) * (across + 0.4))};
    });
    const ShapeBox ball{to - g.ballRadius, middle - g.ballRadius, to + g.ballRadius, middle + g.ballRadius};
    paintBox(picture, ball, g.ballRadius, scene.edges, [&](double x, double y) {
        const double light = std::hypot(x - to + 0.35 * g.ballRadius, y - middle + 0.45 * g.ballRadius) / g.ballRadius;
        return Paint{tonedColour(scene.colours.electrodes, 0.55 - 0.85 * light)};
    });
}

// Turned metal: the highlight in its upper third, two grooves, a dark seam towards the glass.
void paintCap(const ImageView& picture, const PlasmaScene& scene, const ShapeBox& cap) {
    const double unit = scene.geometry.width / 100.0;
    paintBox(picture, cap, kCapCorner * scene.geometry.width, scene.edges, [&](double x, double y) {
        const double across = roundness(cap, y);
        const double glint = std::exp(-26 * (across + 0.52) * (across + 0.52));
        double tone = 0.62 * glint + 0.10 - 0.75 * across * across * (across > 0 ? 1.0 : 0.75);
        for (const double groove : {0.32, 0.68}) {
            const double off = (x - std::lerp(cap.left, cap.right, groove)) / std::max(0.55 * unit, 0.6);
            tone += -0.45 * std::exp(-off * off) + 0.22 * std::exp(-(off - 1.8) * (off - 1.8));
        }
        const double end = std::min(x - cap.left, cap.right - x) / std::max(0.8 * unit, 0.8);
        return Paint{tonedColour(scene.colours.caps, tone - 0.5 * std::exp(-end))};
    });
}

GlobalBlock paintScenery(const PlasmaScene& scene) {
    const PlasmaGeometry& g = scene.geometry;
    return paintedImage(g.width, g.height, scene.colours.panel, [&](const ImageView& picture) {
        paintGas(picture, scene);
        paintElectrode(picture, scene, g.caps[0].right, g.caps[0].right + g.ballReach);
        paintElectrode(picture, scene, g.caps[1].left, g.caps[1].left - g.ballReach);
        if (scene.showTube)
            paintGlass(picture, scene);
        for (const ShapeBox& cap : g.caps)
            paintCap(picture, scene, cap);
    });
}

// The light of the frames that were asked for last: each is the ghost of the next two.
class LightHistory {
public:
    LightHistory(const PlasmaScene& scene)
        : scene_(scene), noise_(static_cast<std::uint32_t>(scene.parameters.seed), scene.parameters.frames),
          profile_(plasmaLight(scene.parameters, scene.colours.arc, scene.colours.glare)) {
        for (Moment& moment : moments_)
            moment.light = LightLayer(scene.geometry.width, scene.geometry.height);
    }

    const LightLayer& at(int frame) {
        Moment& moment = moments_[static_cast<std::size_t>(frame) % moments_.size()];
        if (moment.frame != frame) {
            moment.frame = frame;
            moment.light.clear();
            for (const Arc& arc : plasmaArcs(scene_.geometry, scene_.parameters, noise_, frame))
                moment.light.addLine(arc.points, profile_, arc.intensity);
        }
        return moment.light;
    }

private:
    struct Moment {
        int frame = -1;
        LightLayer light{1, 1};
    };
    const PlasmaScene& scene_;
    LoopNoise noise_;
    LightProfile profile_;
    std::array<Moment, 3> moments_;
};

class PlasmaArcSequence : public FrameSequence {
public:
    explicit PlasmaArcSequence(HWND dialog)
        : FrameSequence(dialog), scene_(readScene(dialog)), light_(scene_), scenery_(paintScenery(scene_)) {}

    int frames() const override { return scene_.parameters.frames; }
    GlobalBlock render(int index) override {
        const PlasmaGeometry& g = scene_.geometry;
        // Light ends at the caps and within the wall: what lies outside of the tube never changes.
        const LightArea inside{static_cast<int>(std::ceil(g.caps[0].right)), static_cast<int>(std::ceil(g.tube.top)),
                               static_cast<int>(g.caps[1].left), static_cast<int>(g.tube.bottom)};
        return drawnCopy(scenery_, [&](const ImageView& picture) {
            for (std::size_t age = 0; age < scene_.ghosts.size(); ++age)
                if (scene_.ghosts[age] > 0)
                    light_.at((index - static_cast<int>(age) + frames()) % frames())
                        .shineOn(picture, inside, scene_.ghosts[age]);
        });
    }
    GlobalBlock renderStill() override { return render(0); }
    GlobalBlock renderMask() override {
        const PlasmaGeometry& g = scene_.geometry;
        return paintedImage(g.width, g.height, 0x000000, [&](const ImageView& mask) {
            const auto white = [](double, double) { return Paint{0xFFFFFF}; };
            paintBox(mask, g.tube, 0, scene_.edges, white);
            for (const ShapeBox& cap : g.caps)
                paintBox(mask, cap, kCapCorner * g.width, scene_.edges, white);
        });
    }

private:
    PlasmaScene scene_;
    LightHistory light_;
    GlobalBlock scenery_;
};

} // namespace

std::unique_ptr<FrameSequence> open(HWND dialog, HostParams*) {
    return std::make_unique<PlasmaArcSequence>(dialog);
}

Colour background(HWND dialog, int) {
    return backgroundOr(dialog, readColour(dialog, kPlasmaArcControl<Setting::MainArclightPanelColor>));
}

} // namespace veldran::plasma_arc
