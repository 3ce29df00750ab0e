// Parsing of the command line; see the header.
#include "commands/arguments.h"

#include "base/failure.h"
#include "base/output_file.h"
#include "base/text.h"
#include "commands/setting_value.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace stage {
namespace {

constexpr std::array<std::string_view, 5> kVerbs = {"list", "render", "batch", "inspect", "help"};
constexpr std::array<std::string_view, 14> kOptions = {"--effect", "--set",  "--ini",  "--like",  "--markers",
                                                       "--as",     "--out",  "--loop", "--matte", "--threshold",
                                                       "--test",   "--json", "--help", "--frames"};

[[noreturn]] void refuse(const std::string& message) {
    throw Failure(ExitCode::WrongUsage, message);
}

void setOnce(std::optional<std::string>& place, std::string_view option, const std::string& value) {
    if (place)
        refuse("The option " + std::string(option) + " is given twice.");
    if (value.empty())
        refuse("The option " + std::string(option) + " has an empty value.");
    place = value;
}

KeyValue parseKeyValue(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0)
        refuse("The option --set wants KEY=VALUE, not \"" + text + "\".");
    return {text.substr(0, equals), text.substr(equals + 1)};
}

OutputFormat parseFormat(const std::string& text) {
    const auto format = formatNamed(text);
    if (!format)
        refuse("The option --as allows gif, apng, mng and png, not \"" + text + "\".");
    return *format;
}

std::uint32_t parseCount(std::string_view option, const std::string& text, std::uint32_t least, std::uint32_t most) {
    const auto number = parseNumber(text);
    if (!number || *number < least || *number > most)
        refuse("The option " + std::string(option) + " wants a whole number from " + std::to_string(least) + " to " +
               std::to_string(most) + ", not \"" + text + "\".");
    return *number;
}

Rgb parseMatte(const std::string& text) {
    const auto colour = parseColour(text);
    if (!colour)
        refuse("The option --matte wants a colour such as #FFFFFF, not \"" + text + "\".");
    return rgbFromColour(*colour);
}

// The texts of the options of a render that are given once.
struct RenderWords {
    std::optional<std::string> effect, ini, like, markers, loop, matte, threshold, frames;
    std::vector<std::string> formats, files;

    std::optional<std::string>& once(std::string_view option) {
        if (option == "--effect")
            return effect;
        if (option == "--ini")
            return ini;
        if (option == "--like")
            return like;
        if (option == "--markers")
            return markers;
        if (option == "--loop")
            return loop;
        if (option == "--matte")
            return matte;
        return option == "--threshold" ? threshold : frames;
    }
};

// The first --as belongs to the first --out, and so on. A file without a format is told by its name.
std::vector<OutputRequest> outputsOf(const RenderWords& words) {
    std::vector<OutputRequest> outputs(std::max<std::size_t>({1, words.formats.size(), words.files.size()}));
    for (std::size_t i = 0; i < words.files.size(); ++i) {
        if (words.files[i].empty())
            refuse("The option --out has an empty value.");
        outputs[i].file = words.files[i];
        outputs[i].format = formatOfFile(pathFromUtf8(words.files[i])).value_or(OutputFormat::Gif);
    }
    for (std::size_t i = 0; i < words.formats.size(); ++i)
        outputs[i].format = parseFormat(words.formats[i]);
    for (std::size_t i = 0; i < outputs.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            if (outputs[i].file == outputs[j].file && (outputs[i].file || outputs[i].format == outputs[j].format))
                refuse("Two outputs would be the same file.");
    return outputs;
}

RenderOptions parseRender(std::span<const std::string> given) {
    RenderOptions options;
    RenderWords words;
    for (std::size_t i = 0; i < given.size(); ++i) {
        const std::string& option = given[i];
        if (std::ranges::find(kOptions, option) == kOptions.end())
            refuse("There is no option \"" + option + "\"; the nearest is " + std::string(nearest(option, kOptions)) +
                   ".");
        if (option == "--test")
            options.button = BuildButton::Test;
        else if (option == "--json")
            options.report = ReportStyle::Json;
        else if (++i == given.size())
            refuse("The option " + option + " wants a value after it.");
        else if (option == "--set")
            options.settings.push_back(parseKeyValue(given[i]));
        else if (option == "--as")
            words.formats.push_back(given[i]);
        else if (option == "--out")
            words.files.push_back(given[i]);
        else
            setOnce(words.once(option), option, given[i]);
    }
    if (!words.effect && !words.like)
        refuse("The verb render wants --effect with a name or a row number, or --like with a file.");
    if (words.ini && words.like)
        refuse("The settings begin either with those of --ini or with those of --like.");
    options.effect = words.effect;
    options.iniFile = words.ini;
    options.likeFile = words.like;
    options.markersFile = words.markers;
    options.framesFolder = words.frames;
    options.outputs = outputsOf(words);
    if (words.loop)
        options.plays = parseCount("--loop", *words.loop, 0, kMostPlays);
    if (words.matte)
        options.matte = parseMatte(*words.matte);
    if (words.threshold)
        options.opacityThreshold = static_cast<std::uint8_t>(parseCount("--threshold", *words.threshold, 1, 255));
    return options;
}

std::optional<Verb> verbNamed(std::string_view word) {
    constexpr std::array kOrder = {Verb::List, Verb::Render, Verb::Batch, Verb::Inspect, Verb::Help};
    const auto found = std::ranges::find(kVerbs, word);
    return found == kVerbs.end() ? std::nullopt
                                 : std::optional(kOrder[static_cast<std::size_t>(found - kVerbs.begin())]);
}

Arguments parseHelp(std::span<const std::string> words) {
    Arguments arguments;
    if (words.empty())
        return arguments;
    arguments.helpOn = verbNamed(words[0]);
    if (!arguments.helpOn || words.size() > 1)
        refuse("The verb help takes the name of one verb, not \"" + words.back() + "\".");
    return arguments;
}

// Of the verbs that take one file.
Arguments parseFileVerb(Verb verb, const std::string& name, std::span<const std::string> words) {
    Arguments arguments;
    arguments.verb = verb;
    for (const std::string& word : words) {
        if (word == "--json")
            arguments.report = ReportStyle::Json;
        else if (word.starts_with("--") || !arguments.file.empty())
            refuse("The verb " + name + " takes one file and --json, but \"" + word + "\" was given.");
        else
            arguments.file = word;
    }
    if (arguments.file.empty())
        refuse("The verb " + name + " wants a file after it.");
    return arguments;
}

} // namespace

Arguments parseArguments(std::span<const std::string> words) {
    if (words.empty())
        refuse("What shall be done?\n\n" + usageText());
    const std::string& name = words.front();
    const std::span<const std::string> rest = words.subspan(1);
    if (name == "--help")
        return parseHelp(rest);
    const auto verb = verbNamed(name);
    if (!verb)
        refuse("There is no verb \"" + name + "\"; the nearest is " + std::string(nearest(name, kVerbs)) + ".\n\n" +
               usageText());
    if (std::ranges::find(rest, "--help") != rest.end()) {
        Arguments arguments;
        arguments.helpOn = verb;
        return arguments;
    }
    Arguments arguments;
    switch (*verb) {
    case Verb::Help:
        return parseHelp(rest);
    case Verb::Render:
        arguments.render = parseRender(rest);
        arguments.report = arguments.render.report;
        break;
    case Verb::Batch:
    case Verb::Inspect:
        return parseFileVerb(*verb, name, rest);
    case Verb::List:
        if (!rest.empty())
            refuse("The verb list takes nothing after it, but \"" + rest[0] + "\" was given.");
        break;
    }
    arguments.verb = *verb;
    return arguments;
}

} // namespace stage
