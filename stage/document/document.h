// What the window works on: an animation, its file, whether it must be saved; and what the status line says of it.
// Never touches a file.
#pragma once

#include "document/animation.h"
#include "document/file_format.h"
#include "document/timing.h"

#include <filesystem>
#include <memory>
#include <string>

namespace stage {

struct Document {
    std::shared_ptr<const Animation> animation; // never changed, so that other threads may read it; null: nothing there
    std::filesystem::path file;                 // empty: it has none yet
    OutputFormat format = OutputFormat::Gif;    // in which it will be saved
    OutputFormat fileFormat = OutputFormat::Gif; // in which `file` was written or read
    bool isModified = false;

    std::size_t frames() const { return animation ? animation->frames.size() : 0; }
    // The file can be replaced without asking for a name. Numbered files are always asked for.
    bool hasFileOfItsFormat() const;
};

// The file's name, or "Untitled"; UTF-8.
std::string documentName(const Document& document);
// "radar.gif* - Stage"; the star says that it is not saved.
std::string windowTitle(const Document& document);
// What the file dialog begins with: the name with the format's extension.
std::filesystem::path suggestedFile(const Document& document, OutputFormat format);

// Parts of the status line. `frame` counts from 0.
std::string frameText(std::size_t frame, std::size_t frames);              // "Frame 1 of 60"
std::string playingTimeText(const PlayingTime& time, std::uint32_t plays); // "2.00 s, forever"
std::string browserRateText(OutputFormat format, const PlayingTime& time); // "Browsers: 30.0 frames/s"
// "GIF: 12,345 bytes"; without a number it is still counted.
std::string fileSizeText(OutputFormat format, std::optional<std::uint64_t> bytes);
// A delay below a thumbnail, in milliseconds: "40 ms"; where browsers differ, "10 ms → 100 ms".
std::string delayText(std::uint32_t stored, std::uint32_t inBrowsers);

} // namespace stage
