// Rendering: from options to files; see the header.
#include "windows/plugin/render.h"

#include "base/failure.h"
#include "base/output_file.h"
#include "commands/report.h"
#include "commands/setting_value.h"
#include "commands/settings_text.h"
#include "document/animation_recorder.h"
#include "formats/animation_reader.h"
#include "formats/animation_writer.h"
#include "formats/steps.h"
#include "windows/plugin/animation_build.h"
#include "windows/system/console.h"
#include "windows/system/wide_text.h"

#include <psapi.h>

#include <chrono>

namespace stage {
namespace {

// What the settings and markers of a render begin with.
struct Beginning {
    std::string iniText;
    std::vector<KeyValue> settings;
    std::optional<std::uint32_t> effectRow;
    std::optional<OutputFormat> editor;
    std::optional<std::string> markers; // UTF-8
    std::uint32_t plays = 0;
    std::vector<std::string> warnings;
};

Beginning beginningLike(const EffectCatalog& catalog, const std::string& name) {
    const std::string content = readFile(pathFromUtf8(name));
    const Animation animation =
        readAnimation({reinterpret_cast<const std::uint8_t*>(content.data()), content.size()}).animation;
    if (!animation.made)
        throw Failure(ExitCode::WrongUsage, "The file \"" + name + "\" does not remember how it was made.");
    RecalledSettings recalled = recalledSettings(catalog, animation.made->settings, systemFromUtf8);
    return {{},
            std::move(recalled.settings),
            effectRowIn(animation.made->settings),
            editorIn(animation.made->settings),
            animation.made->markers,
            animation.plays,
            std::move(recalled.refusals)};
}

Beginning beginningOf(const EffectCatalog& catalog, const RenderOptions& options) {
    Beginning beginning;
    if (options.likeFile)
        beginning = beginningLike(catalog, *options.likeFile);
    if (options.iniFile)
        beginning.iniText = readFile(pathFromUtf8(*options.iniFile));
    if (options.markersFile)
        beginning.markers = readFile(pathFromUtf8(*options.markersFile));
    return beginning;
}

const Effect& effectOf(const EffectCatalog& catalog, const RenderOptions& options, const Beginning& beginning) {
    if (!options.effect && !beginning.effectRow)
        throw Failure(ExitCode::WrongUsage, "The file does not remember its effect: give --effect.");
    return catalog.findEffect(options.effect ? *options.effect : std::to_string(*beginning.effectRow));
}

std::string settingsFor(const EffectCatalog& catalog, const RenderOptions& options, const Beginning& beginning,
                        const Effect& effect) {
    std::vector<KeyValue> checked = beginning.settings;
    for (const KeyValue& given : options.settings) {
        const Setting& setting = catalog.findSetting(given.key);
        if (setting.key == kEffectKey)
            throw Failure(ExitCode::WrongUsage, "The effect is chosen with --effect, not with --set.");
        checked.push_back({setting.key, checkedValue(setting, given.value, systemFromUtf8)});
    }
    return composeSettings(beginning.iniText, checked, effect.row);
}

std::optional<std::string> markersFor(const EffectCatalog& catalog, const RenderOptions& options,
                                      const Beginning& beginning, const Effect& effect) {
    if (options.markersFile && !catalog.hasMarkers(effect))
        throw Failure(ExitCode::WrongUsage, "\"" + effect.name + "\" has no markers.");
    if (!beginning.markers)
        return std::nullopt;
    auto encoded = systemFromUtf8(*beginning.markers);
    if (!encoded)
        throw Failure(ExitCode::WrongUsage, "The markers hold letters that the system's code page lacks.");
    return encoded;
}

struct Target {
    OutputFormat format;
    std::filesystem::path file; // of numbered files the pattern
};

std::vector<Target> targetsOf(const RenderOptions& options, const Effect& effect) {
    std::vector<Target> targets;
    for (const OutputRequest& output : options.outputs)
        targets.push_back(
            {output.format, pathFromUtf8(output.file.value_or(defaultFileName(effect.name) +
                                                              std::string(formatExtension(output.format))))});
    if (options.framesFolder) {
        makeFolder(pathFromUtf8(*options.framesFolder));
        targets.push_back({OutputFormat::Png, pathFromUtf8(*options.framesFolder) / "frame.png"});
    }
    // Made and thrown away: trouble with a file shows before the work is done.
    for (const Target& target : targets)
        OutputFile(target.format == OutputFormat::Png ? numberedFile(target.file, 0) : target.file);
    return targets;
}

WriteOptions writeOptionsOf(const RenderOptions& options) {
    WriteOptions write;
    write.matte = options.matte.value_or(write.matte);
    write.opacityThreshold = options.opacityThreshold.value_or(write.opacityThreshold);
    return write;
}

FileReport save(const Animation& animation, const Target& target, const WriteOptions& options) {
    const auto written = saveAnimation(animation, target.format, options, target.file);
    FileReport report{target.format, utf8FromPath(written->first), written->bytes,
                      frameTimes(animation, target.format).whole};
    if (written->last != written->first)
        report.file += " to " + utf8FromPath(written->last.filename());
    return report;
}

std::uint64_t peakMemory() {
    PROCESS_MEMORY_COUNTERS counters{};
    return GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters)) ? counters.PeakWorkingSetSize : 0;
}

} // namespace

RenderReport render(const PluginLibrary& plugin, const RenderOptions& options) {
    const auto begin = std::chrono::steady_clock::now();
    StageClock clock;
    const EffectCatalog& catalog = plugin.catalog();
    const Beginning beginning = beginningOf(catalog, options);
    const Effect& effect = effectOf(catalog, options, beginning);
    const BuildRequest request{effect, settingsFor(catalog, options, beginning, effect),
                               markersFor(catalog, options, beginning, effect),
                               beginning.editor.value_or(options.outputs.front().format), options.button};
    const std::vector<Target> targets = targetsOf(options, effect);
    BuiltAnimation built = buildAnimation(plugin, request, clock);
    Animation& animation = built.animation;
    animation.plays = options.plays.value_or(beginning.plays);

    RenderReport report{std::string(plainName(effect.name)),
                        animation.width,
                        animation.height,
                        animation.frames.size(),
                        {},
                        beginning.warnings};
    report.warnings.insert(report.warnings.end(), built.warnings.begin(), built.warnings.end());
    for (std::size_t i = 0; i < targets.size(); ++i) {
        clock.begin("Writing " + std::string(formatName(targets[i].format)));
        const FileReport file = save(animation, targets[i], writeOptionsOf(options));
        if (const auto warning = browserWarning(file))
            report.warnings.push_back(*warning);
        if (i < options.outputs.size()) // the additional frames are not reported
            report.files.push_back(file);
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    report.secondsTaken = taken.count();
    report.stages = clock.finish();
    report.peakMemory = peakMemory();
    return report;
}

} // namespace stage
