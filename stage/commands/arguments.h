// The command line as a record. Knows the verbs and options, nothing of effects and settings: those come from the
// plugin. Never touches a file.
#pragma once

#include "document/animation.h"
#include "document/file_format.h"
#include "document/frame.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace stage {

enum class Verb { Help, List, Render, Batch, Inspect };
enum class BuildButton { Build, Test };
enum class ReportStyle { Text, Json };

struct KeyValue {
    std::string key;
    std::string value;
};

struct OutputRequest {
    OutputFormat format = OutputFormat::Gif;
    std::optional<std::string> file; // nothing: named after the effect
};

// All texts are UTF-8 and as given.
struct RenderOptions {
    std::optional<std::string> effect; // nothing only with `likeFile`
    std::vector<KeyValue> settings;
    std::optional<std::string> iniFile;
    std::optional<std::string> likeFile;
    std::optional<std::string> markersFile;
    std::vector<OutputRequest> outputs = {OutputRequest{}}; // at least one
    std::optional<std::uint32_t> plays;                     // 0: forever
    std::optional<Rgb> matte;
    std::optional<std::uint8_t> opacityThreshold; // 1 to 255
    BuildButton button = BuildButton::Build;
    std::optional<std::string> framesFolder;
    ReportStyle report = ReportStyle::Text;
};

struct Arguments {
    Verb verb = Verb::Help;
    RenderOptions render;                   // of Verb::Render
    std::string file;                       // of Verb::Batch and Verb::Inspect
    ReportStyle report = ReportStyle::Text; // of all verbs that report
    std::optional<Verb> helpOn;             // of Verb::Help
};

// `words` are those after the program's name. Throws Failure(WrongUsage).
Arguments parseArguments(std::span<const std::string> words);

// All verbs, or one with its options.
std::string usageText(std::optional<Verb> verb = std::nullopt);

} // namespace stage
