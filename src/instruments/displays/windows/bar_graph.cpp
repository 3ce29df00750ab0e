// Bar graph: a bar that fills. The empty and the full bar are painted once; a frame takes its left columns from the
// full one and the rest from the empty one; the numbers come from bar_graph_model.
#include "instruments/windows/instruments.h"

#include "base/windows/host_link.h"
#include "instruments/displays/bar_graph_model.h"
#include "instruments/windows/painted_scene.h"
#include "render/foreign_bitmap.h"
#include "render/resample.h"
#include "settings/windows/parameter_reader.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

namespace veldran::bar_graph {
namespace {

constexpr int kUnlitWeight = 50;      // of a dark segment's own colour, in 255ths
constexpr int kShallowestShading = 6; // pixels of depth: below, light and shade would be all there is
constexpr double kSunken = 0.05;      // how much darker the empty bar is than the panel
constexpr double kShadow = 0.20;      // and how much more so under its upper edge

struct BarGraphColours {
    Colour left;
    Colour right;
    Colour panel;
    Colour border;
    Colour pad;
};

// What is the same for every frame.
struct BarGraphScene {
    BarGraphParameters parameters;
    BarGraphColours colours;
    Edges edges;
    BarGraphGeometry geometry;
    std::vector<BarSegment> segments;
    GlobalBlock image; // of the bar's size; empty for other types
};

int readSizeIf(HWND dialog, int check, int size) {
    return isChecked(dialog, check) ? readParameter(dialog, size) : 0;
}

BarGraphParameters readParameters(HWND dialog) {
    BarGraphParameters p{};
    p.width = std::max(readParameter(dialog, kBarGraphControl<Setting::MainBarGraphWidth>), 1);
    p.depth = std::max(readParameter(dialog, kBarGraphControl<Setting::MainBarGraphDepth>), 1);
    p.frames = std::max(readParameter(dialog, kBarGraphControl<Setting::MainBarGraphFrames>), 1);
    p.type = static_cast<BarType>(readParameter(dialog, kBarGraphControl<Setting::MainBarGraphType>));
    p.border = readSizeIf(dialog, kBarGraphControl<Setting::MainBarGraphUseBorder>,
                          kBarGraphControl<Setting::MainBarGraphBorderSize>);
    p.pad = readSizeIf(dialog, kBarGraphControl<Setting::MainBarGraphUsePadding>,
                       kBarGraphControl<Setting::MainBarGraphPadSize>);
    p.roundness = readSizeIf(dialog, kBarGraphControl<Setting::MainBarGraphRoundCorners>,
                             kBarGraphControl<Setting::MainBarGraphRoundness>);
    return p;
}

BarGraphColours readColours(HWND dialog) {
    return {readColour(dialog, kBarGraphControl<Setting::MainBarGraphLeftColor>),
            readColour(dialog, kBarGraphControl<Setting::MainBarGraphRightColor>), background(dialog, 0),
            readColour(dialog, kBarGraphControl<Setting::MainBarGraphBorderColor>),
            readColour(dialog, kBarGraphControl<Setting::MainBarGraphPadColor>)};
}

// The part's pixels of `source` over `ground`, as an image of 24 bits.
GlobalBlock flattenedPart(const ForeignBitmap& source, const CanvasRect& part, Colour ground) {
    GlobalBlock picture = createImage(part.right - part.left, part.bottom - part.top, 24);
    const LockedImage image(picture.get());
    if (!image)
        return {};
    std::vector<ForeignBitmap::Pixel> row(static_cast<std::size_t>(image.view().width));
    const int under[3] = {blueOf(ground), greenOf(ground), redOf(ground)};
    for (int y = 0; y < image.view().height; ++y) {
        source.readRow(part.top + y, part.left, row);
        std::uint8_t* out = image.view().row(y);
        for (const ForeignBitmap::Pixel& pixel : row)
            for (std::size_t c = 0; c < 3; ++c)
                *out++ = static_cast<std::uint8_t>(divideBy255(pixel[c] * pixel[3] + under[c] * (255 - pixel[3])));
    }
    return picture;
}

// The host's image as the bar shows it when it is full; empty when there is none.
GlobalBlock loadBarImage(const HostParams* host, const std::string& path, const BarGraphParameters& p, Colour ground) {
    const auto answer = reinterpret_cast<HGLOBAL>(
        sendToHost(host, nullptr, kHostLoadImage, 0, reinterpret_cast<std::intptr_t>(path.c_str())));
    if (GlobalFlags(answer) == GMEM_INVALID_HANDLE) // nothing that could be read, nor freed
        return {};
    const GlobalBlock loaded(answer);
    const LockedBlock block(loaded.get());
    const std::optional<ForeignBitmap> source = block ? ForeignBitmap::open(block.bytes()) : std::nullopt;
    if (!source)
        return {};
    const GlobalBlock part =
        flattenedPart(*source, partShapedLike(source->width(), source->height(), p.width, p.depth), ground);
    const LockedImage from(part.get());
    GlobalBlock picture = createImage(p.width, p.depth, 24);
    const LockedImage to(picture.get());
    if (!from || !to)
        return {};
    resampleArea(from.view(), to.view());
    return picture;
}

ShapeBox boxOf(const CanvasRect& rectangle) {
    return {double(rectangle.left), double(rectangle.top), double(rectangle.right), double(rectangle.bottom)};
}

// Light on the bar's upper side, shade on its lower one, the plain colour between.
Colour shadedRow(const BarGraphScene& scene, Colour colour, double row) {
    const int depth = scene.parameters.depth;
    if (depth < kShallowestShading)
        return colour;
    const double down = (row - scene.geometry.bar.top) / depth;
    return tonedColour(colour, 0.45 * std::max(0.35 - down, 0.0) / 0.35 - 0.25 * std::max(down - 0.65, 0.0) / 0.35);
}

// The empty bar is a channel: its upper edge throws a shadow into it.
Colour sunkenRow(const BarGraphScene& scene, double row) {
    const int depth = scene.parameters.depth;
    if (depth < kShallowestShading)
        return scene.colours.panel;
    const double lit = std::min((row - scene.geometry.bar.top) / (0.5 * depth), 1.0);
    return tonedColour(scene.colours.panel, -kSunken - kShadow * (1 - lit) * (1 - lit));
}

Colour gradientAt(const BarGraphScene& scene, double column) {
    const double part = column / scene.parameters.width;
    return mixColours(scene.colours.left, scene.colours.right,
                      static_cast<int>(255 * std::clamp(part, 0.0, 1.0) + 0.5));
}

// What the bar is in a column and row where it is filled, or where it is not.
Colour barColour(const BarGraphScene& scene, const ConstImageView& image, double x, double y, bool filled) {
    const BarGraphScene& s = scene;
    const double column = x - s.geometry.bar.left;
    if (s.parameters.type == BarType::Segments) {
        for (const BarSegment& segment : s.segments)
            if (column > segment.left && column < segment.right) {
                const Colour own = gradientAt(s, (segment.left + segment.right) / 2.0);
                return filled ? shadedRow(s, own, y) : mixColours(sunkenRow(s, y), own, kUnlitWeight);
            }
        return sunkenRow(s, y);
    }
    if (!filled)
        return sunkenRow(s, y);
    if (s.parameters.type == BarType::Image) {
        const std::uint8_t* pixel = image.pixel(static_cast<int>(column), static_cast<int>(y - s.geometry.bar.top));
        return makeColour(pixel[2], pixel[1], pixel[0]);
    }
    return shadedRow(s, s.parameters.type == BarType::Solid ? s.colours.left : gradientAt(s, column), y);
}

// The whole picture with a bar that is full or empty; nothing when memory is exhausted.
GlobalBlock paintBar(const BarGraphScene& scene, bool full) {
    const BarGraphGeometry& g = scene.geometry;
    const BarGraphParameters& p = scene.parameters;
    const LockedImage image(scene.image.get());
    if (scene.image && !image)
        return {};
    const ConstImageView pixels = image ? ConstImageView(image.view()) : ConstImageView();
    return paintedImage(g.width, g.height, scene.colours.panel, [&](const ImageView& picture) {
        const auto flat = [](Colour colour) { return [colour](double, double) { return Paint{colour}; }; };
        if (p.border > 0)
            paintBox(picture, {0, 0, double(g.width), double(g.height)}, g.radius, scene.edges,
                     flat(scene.colours.border));
        if (p.pad > 0)
            paintBox(picture, boxOf(g.padded), g.radius - p.border, scene.edges, flat(scene.colours.pad));
        paintBox(picture, boxOf(g.bar), g.radius - p.border - p.pad, scene.edges,
                 [&](double x, double y) { return Paint{barColour(scene, pixels, x, y, full)}; });
    });
}

// Takes the first `columns` columns of the bar from `full`; of a column that is filled in part, as much as is filled.
void fillBar(const ImageView& picture, const ConstImageView& full, const CanvasRect& bar, double columns) {
    const int whole = static_cast<int>(columns);
    const int weight = static_cast<int>(255 * (columns - whole) + 0.5);
    for (int y = bar.top; y < bar.bottom; ++y) {
        std::memcpy(picture.pixel(bar.left, y), full.pixel(bar.left, y), 3 * static_cast<std::size_t>(whole));
        if (weight == 0)
            continue;
        std::uint8_t* pixel = picture.pixel(bar.left + whole, y);
        const std::uint8_t* over = full.pixel(bar.left + whole, y);
        for (int c = 0; c < 3; ++c)
            pixel[c] = static_cast<std::uint8_t>(divideBy255(over[c] * weight + pixel[c] * (255 - weight)));
    }
}

class BarGraphSequence : public FrameSequence {
public:
    BarGraphSequence(HWND dialog, BarGraphScene scene)
        : FrameSequence(dialog), scene_(std::move(scene)), empty_(paintBar(scene_, false)),
          full_(paintBar(scene_, true)) {}

    int frames() const override { return scene_.parameters.frames; }
    GlobalBlock render(int index) override { return renderFilled(index); }
    // Filled to three quarters.
    GlobalBlock renderStill() override { return renderFilled((frames() - 1) * 3 / 4); }
    GlobalBlock renderMask() override {
        const BarGraphGeometry& g = scene_.geometry;
        return paintedImage(g.width, g.height, 0x000000, [&](const ImageView& mask) {
            paintBox(mask, {0, 0, double(g.width), double(g.height)}, g.radius, scene_.edges,
                     [](double, double) { return Paint{0xFFFFFF}; });
        });
    }

private:
    GlobalBlock renderFilled(int index) const {
        const LockedImage full(full_.get());
        if (!full)
            return {};
        const double exact = filledColumns(scene_.parameters, scene_.segments, index);
        const double columns = scene_.edges == Edges::Smooth ? exact : std::floor(exact + 0.5);
        return drawnCopy(
            empty_, [&](const ImageView& picture) { fillBar(picture, full.view(), scene_.geometry.bar, columns); });
    }

    BarGraphScene scene_;
    GlobalBlock empty_;
    GlobalBlock full_;
};

} // namespace

std::unique_ptr<FrameSequence> open(HWND dialog, HostParams* host) {
    BarGraphScene scene{};
    scene.parameters = readParameters(dialog);
    scene.colours = readColours(dialog);
    scene.edges = readEdges(dialog);
    scene.geometry = barGraphGeometry(scene.parameters);
    scene.segments = barSegments(scene.parameters.width, scene.parameters.depth);
    if (scene.parameters.type == BarType::Image) {
        const std::string path = readText(dialog, kBarGraphControl<Setting::MainBarGraphImageFile>);
        scene.image = loadBarImage(host, path, scene.parameters, scene.colours.panel);
        if (!scene.image)
            return nullptr;
    }
    return std::make_unique<BarGraphSequence>(dialog, std::move(scene));
}

Colour background(HWND dialog, int) {
    return backgroundOr(dialog, readColour(dialog, kBarGraphControl<Setting::MainBarGraphPanelColor>));
}

} // namespace veldran::bar_graph
