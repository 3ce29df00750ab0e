// The command line as a record. Knows the verbs and options, nothing of effects and settings: those come from the
// plugin. Never touches a file.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace stage {

enum class Verb { Help, List, Render };
enum class OutputFormat { Gif, Png };
enum class BuildButton { Build, Test };

struct KeyValue {
    std::string key;
    std::string value;
};

// All texts are UTF-8 and as given.
struct RenderOptions {
    std::string effect;
    std::vector<KeyValue> settings;
    std::optional<std::string> iniFile;
    OutputFormat format = OutputFormat::Gif;
    BuildButton button = BuildButton::Build;
    std::optional<std::string> outFile;
    std::optional<std::string> framesFolder;
};

struct Arguments {
    Verb verb = Verb::Help;
    RenderOptions render; // for Verb::Render
};

// `words` are those after the program's name. Throws Failure(WrongUsage).
Arguments parseArguments(std::span<const std::string> words);

std::string usageText();

} // namespace stage
