// What PNG, APNG and MNG writers share: chunks, the choice of a colour type that loses nothing, rows and their
// compression.
#pragma once

#include "document/animation.h"
#include "formats/colours.h"

#include <string_view>

namespace stage {

using PngBytes = std::vector<std::uint8_t>;

inline constexpr std::uint8_t kPngSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
inline constexpr std::uint8_t kMngSignature[8] = {0x8A, 'M', 'N', 'G', '\r', '\n', 0x1A, '\n'};

// High byte first.
void putPngNumber(PngBytes& bytes, std::uint32_t number);
void putPngShort(PngBytes& bytes, std::uint32_t number);
// Length, type, data, and the check sum of type and data.
void putChunk(PngBytes& bytes, std::string_view type, std::span<const std::uint8_t> data);
// The text chunks of a document: its comment, and how it was made.
void putTexts(PngBytes& bytes, std::string_view comment, const std::optional<Remembered>& made);

// The values are those of the PNG standard.
enum class PngColour : std::uint8_t { Grey = 0, Rgb = 2, Palette = 3, RgbAlpha = 6 };

// How the pixels of all pictures of one file are stored.
struct PngLook {
    PngColour colour = PngColour::RgbAlpha;
    unsigned bitDepth = 8;          // 1, 2, 4 or 8 with a palette, else 8
    std::vector<Pixel> palette;     // of PngColour::Palette; what is not opaque comes first
    std::optional<Pixel> hole;      // the opaque colour that stands for "transparent"; kTransparentPixel itself where
                                    // that has an entry or opacity is stored; nothing when there is no such thing
    PixelMap<std::uint8_t> entries; // of the palette

    unsigned bitsPerPixel() const;
    std::size_t rowBytes(std::size_t width) const { return (width * bitsPerPixel() + 7) / 8; }
};

// Gathers what the choice depends on.
class PngSurvey {
public:
    void add(const Picture& picture);
    // The smallest pixels that lose nothing.
    PngLook look() const;
    // The looks that are worth a trial where frames may leave pixels as they were: what cannot say so may be larger in
    // the end.
    std::vector<PngLook> looksForChanges() const;

private:
    enum class Hole { IfUsed, Always };
    bool fitsPalette() const { return !colours_.isOverLimit(); }
    bool suitsGrey() const;
    PngLook paletteLook(Hole hole) const;
    PngLook greyLook(Hole hole) const;
    PngLook colourLook(Hole hole) const;
    std::optional<Pixel> unusedColour() const;

    ColourCount colours_{256};
    bool isGrey_ = true;
    bool hasHoles_ = false;
    bool hasHalfOpaque_ = false;
    std::vector<bool> used_; // by colour without opacity; empty while the colours are counted
};

void putHeaderChunk(PngBytes& bytes, std::string_view type, std::uint32_t width, std::uint32_t height,
                    const PngLook& look);
// PLTE and tRNS, each where the look has it.
void putPaletteChunk(PngBytes& bytes, const PngLook& look);
void putTransparencyChunk(PngBytes& bytes, const PngLook& look);

enum class PngEffort { Estimate, Best };
// The rows of a picture, filtered and deflated: the content of IDAT.
PngBytes packedRows(const Picture& picture, const PngLook& look, PngEffort effort);

// A whole still PNG file.
PngBytes encodePng(const Frame& frame, std::string_view comment, const std::optional<Remembered>& made);

} // namespace stage
