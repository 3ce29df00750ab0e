// Parsing of the command line; see the header.
#include "core/arguments.h"

#include "core/failure.h"
#include "core/text.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace stage {
namespace {

constexpr std::array<std::string_view, 3> kVerbs = {"list", "render", "help"};
constexpr std::array<std::string_view, 7> kOptions = {"--effect", "--set", "--ini",   "--as",
                                                      "--test",   "--out", "--frames"};

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
    if (equalIgnoringCase(text, "gif"))
        return OutputFormat::Gif;
    if (equalIgnoringCase(text, "png"))
        return OutputFormat::Png;
    refuse("The option --as allows gif and png, not \"" + text + "\".");
}

RenderOptions parseRender(std::span<const std::string> words) {
    RenderOptions options;
    std::optional<std::string> effect;
    std::optional<std::string> format;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& option = words[i];
        if (std::ranges::find(kOptions, option) == kOptions.end())
            refuse("There is no option \"" + option + "\"; the nearest is " + std::string(nearest(option, kOptions)) +
                   ".");
        if (option == "--test") {
            options.button = BuildButton::Test;
            continue;
        }
        if (++i == words.size())
            refuse("The option " + option + " wants a value after it.");
        if (option == "--set")
            options.settings.push_back(parseKeyValue(words[i]));
        else if (option == "--effect")
            setOnce(effect, option, words[i]);
        else if (option == "--as")
            setOnce(format, option, words[i]);
        else if (option == "--ini")
            setOnce(options.iniFile, option, words[i]);
        else if (option == "--out")
            setOnce(options.outFile, option, words[i]);
        else
            setOnce(options.framesFolder, option, words[i]);
    }
    if (!effect)
        refuse("The verb render wants --effect with a name or a row number.");
    options.effect = *effect;
    if (format)
        options.format = parseFormat(*format);
    return options;
}

} // namespace

Arguments parseArguments(std::span<const std::string> words) {
    if (words.empty())
        refuse("What shall be done?\n\n" + usageText());
    const std::string& verb = words.front();
    if (verb == "render")
        return {Verb::Render, parseRender(words.subspan(1))};
    if (verb != "list" && verb != "help" && verb != "--help")
        refuse("There is no verb \"" + verb + "\"; the nearest is " + std::string(nearest(verb, kVerbs)) + ".\n\n" +
               usageText());
    if (words.size() > 1)
        refuse("The verb " + verb + " takes nothing after it, but \"" + words[1] + "\" was given.");
    return {verb == "list" ? Verb::List : Verb::Help, {}};
}

std::string usageText() {
    return R"(stage renders the animated instruments of the plugin veldran1_x64.dll beside it.

  stage list     shows the effects and their settings: key, kind, default, what is allowed
  stage render --effect NAME|ROW [options]
  stage help     shows this text

Options of render:
  --effect NAME|ROW  the effect's name, the beginning of it, or its row number
  --set KEY=VALUE    a setting; may be given many times, the last one of a key counts
  --ini FILE         begin with the settings of that configuration file, not with the defaults
  --as gif|png       gif: one animated file; png: one numbered file for each frame
  --test             press the plugin's Test button, not Build
  --out FILE         the file to write; when left out, the effect's name
  --frames DIR       also write each frame as DIR/frame-0000.png, frame-0001.png and so on

A person's own saved settings are neither used nor changed.
Exit codes: 0 done, 1 the plugin failed, 2 wrong usage, 3 trouble with a file.
)";
}

} // namespace stage
