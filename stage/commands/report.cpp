// Texts for people; see the header.
#include "commands/report.h"

#include "base/json.h"
#include "base/text.h"
#include "commands/setting_value.h"
#include "commands/settings_text.h"

#include <algorithm>
#include <cstdio>

namespace stage {
namespace {

void appendPadded(std::string& text, std::string_view word, std::size_t width) {
    text += word;
    text.append(word.size() < width ? width - word.size() : 1, ' ');
}

void appendSetting(std::string& text, const Setting& setting) {
    constexpr std::size_t kKeyWidth = 36;
    constexpr std::size_t kKindWidth = 9;
    constexpr std::size_t kDefaultWidth = 10;
    text += "    ";
    appendPadded(text, setting.key, kKeyWidth);
    appendPadded(text, kindName(setting.kind), kKindWidth);
    std::string shown = shownValue(setting, setting.defaultValue);
    const bool isText = setting.kind == SettingKind::Text || setting.kind == SettingKind::File;
    if (isText)
        shown = "\"" + shown + "\"";
    appendPadded(text, shown, kDefaultWidth);
    if (setting.kind == SettingKind::Integer || setting.kind == SettingKind::Choice)
        text += allowedValues(setting) + "  ";
    text += setting.label;
    while (text.ends_with(' '))
        text.pop_back();
    text += '\n';
}

void appendSettingsOf(std::string& text, const EffectCatalog& catalog, std::optional<std::uint32_t> owner) {
    for (const Setting& setting : catalog.settings())
        if (setting.owner == owner && setting.key != kEffectKey) // which is given with --effect
            appendSetting(text, setting);
}

template <class... Values>
std::string formatted(const char* format, Values... values) {
    char buffer[64];
    std::snprintf(buffer, sizeof(buffer), format, values...);
    return buffer;
}

std::string row(const char* name, const std::string& value) {
    return formatted("%-10s", name) + value + "\n";
}

std::string sizeText(std::uint32_t width, std::uint32_t height) {
    return std::to_string(width) + "x" + std::to_string(height);
}

void addTime(JsonObject& object, const PlayingTime& time) {
    object.addNumber("duration_ms", time.stored)
        .addNumber("browser_duration_ms", time.inBrowsers)
        .addNumber("slowed_frames", time.slowedFrames)
        .add("browser_frames_per_second", jsonNumber(time.framesPerSecond));
}

std::vector<std::uint32_t> delaysOf(const AnimationFile& file) {
    std::vector<std::uint32_t> delays;
    for (const StoredFrame& frame : file.stored)
        delays.push_back(frame.delay);
    return delays;
}

const char* disposalName(Disposal disposal) {
    return disposal == Disposal::Keep ? "stays" : disposal == Disposal::Clear ? "clears" : "undone";
}

const char* blendName(Blend blend) {
    return blend == Blend::Replace ? "replace" : "over";
}

// Each line of a text under one name. What a terminal might take for a command is left out.
void appendLines(std::string& text, const char* name, std::string_view lines) {
    for (std::string_view line : split(lines, '\n')) {
        std::string shown(line);
        std::erase_if(shown, [](char c) { return static_cast<unsigned char>(c) < 32 || c == 127; });
        if (shown.empty())
            continue;
        text += row(name, shown);
        name = "";
    }
}

} // namespace

std::string listText(const EffectCatalog& catalog) {
    std::string text = "Effects, each with its settings: key, kind, default, what is allowed, label\n";
    for (const Effect& effect : catalog.effects()) {
        text += formatted("\n%2u  ", effect.row) + effect.name + '\n';
        appendSettingsOf(text, catalog, effect.row);
    }
    text += "\nOptions of every effect\n";
    appendSettingsOf(text, catalog, std::nullopt);
    return text;
}

std::optional<std::string> browserWarning(const FileReport& file) {
    if (file.format == OutputFormat::Mng)
        return "Browsers do not show MNG files.";
    if (file.format == OutputFormat::Png || file.time.frames < 2 || file.time.slowedFrames == 0)
        return std::nullopt;
    return "Browsers show \"" + file.file + "\" in " + secondsText(file.time.inBrowsers) + " instead of " +
           secondsText(file.time.stored) + ": " + std::to_string(file.time.slowedFrames) + " of " +
           std::to_string(file.time.frames) + " frames have 10 ms or less, which they take for 100 ms.";
}

std::string summaryText(const RenderReport& report) {
    std::string text;
    for (const FileReport& file : report.files)
        text += row("file", file.file) + row("bytes", std::to_string(file.bytes));
    return text + row("frames", std::to_string(report.frames)) + row("size", sizeText(report.width, report.height)) +
           row("duration", report.files.empty() ? "" : secondsText(report.files[0].time.stored)) +
           row("taken", formatted("%.2f s", report.secondsTaken));
}

std::string summaryJson(const RenderReport& report) {
    JsonArray files;
    for (const FileReport& file : report.files) {
        JsonObject object;
        object.addText("file", file.file).addText("format", lowerCase(formatName(file.format)));
        addTime(object.addNumber("bytes", file.bytes), file.time);
        files.add(object.text());
    }
    JsonArray warnings;
    for (const std::string& warning : report.warnings)
        warnings.add(jsonText(warning));
    JsonArray stages;
    for (const StageTime& stage : report.stages)
        stages.add(JsonObject().addText("stage", stage.name).add("seconds", jsonNumber(stage.seconds)).text());
    return JsonObject()
               .addText("effect", report.effect)
               .addNumber("frames", report.frames)
               .addNumber("width", report.width)
               .addNumber("height", report.height)
               .add("files", files.text())
               .add("warnings", warnings.text())
               .add("seconds_taken", jsonNumber(report.secondsTaken))
               .add("stages", stages.text())
               .addNumber("peak_memory_bytes", report.peakMemory)
               .text() +
           "\n";
}

std::string failureJson(const Failure& failure) {
    return JsonObject()
               .addText("error", failure.what())
               .addNumber("exit_code", static_cast<unsigned>(failure.code()))
               .text() +
           "\n";
}

std::string inspectionText(const AnimationFile& file, const std::string& name, std::uint64_t bytes) {
    const Animation& animation = file.animation;
    const PlayingTime time = playingTime(delaysOf(file));
    std::string text =
        row("file", name) + row("format", std::string(formatName(file.format))) +
        row("size", sizeText(animation.width, animation.height)) + row("frames", std::to_string(file.stored.size())) +
        row("bytes", std::to_string(bytes)) + row("duration", secondsText(time.stored)) +
        row("browsers", secondsText(time.inBrowsers) + formatted(", %.1f frames/s", time.framesPerSecond)) +
        row("shown", animation.plays == 0 ? "forever" : std::to_string(animation.plays) + " times");
    appendLines(text, "comment", animation.comment);
    if (animation.made) {
        appendLines(text, "settings", animation.made->settings);
        appendLines(text, "markers", animation.made->markers.value_or(""));
    }
    text += "\nframe  delay ms  colours     bytes  then     drawn    place\n";
    for (std::size_t i = 0; i < file.stored.size(); ++i) {
        const StoredFrame& f = file.stored[i];
        text += formatted("%5zu  %8u  ", i, f.delay) +
                (f.colours == 0 ? std::string("   true") : formatted("%7u", f.colours)) +
                formatted("  %8llu  %-7s  %-7s  ", static_cast<unsigned long long>(f.bytes), disposalName(f.disposal),
                          blendName(f.blend)) +
                sizeText(f.width, f.height) + formatted("+%u+%u\n", f.x, f.y);
    }
    return text;
}

std::string inspectionJson(const AnimationFile& file, const std::string& name, std::uint64_t bytes) {
    const Animation& animation = file.animation;
    JsonArray frames;
    for (const StoredFrame& f : file.stored)
        frames.add(JsonObject()
                       .addNumber("delay_ms", f.delay)
                       .addNumber("x", f.x)
                       .addNumber("y", f.y)
                       .addNumber("width", f.width)
                       .addNumber("height", f.height)
                       .addNumber("colours", f.colours)
                       .addNumber("bytes", f.bytes)
                       .addText("then", disposalName(f.disposal))
                       .addText("drawn", blendName(f.blend))
                       .text());
    JsonObject object;
    object.addText("file", name)
        .addText("format", lowerCase(formatName(file.format)))
        .addNumber("bytes", bytes)
        .addNumber("width", animation.width)
        .addNumber("height", animation.height)
        .addNumber("plays", animation.plays);
    addTime(object, playingTime(delaysOf(file)));
    if (!animation.comment.empty())
        object.addText("comment", animation.comment);
    if (animation.made) {
        object.addText("settings", animation.made->settings);
        if (animation.made->markers)
            object.addText("markers", *animation.made->markers);
    }
    return object.add("frames", frames.text()).text() + "\n";
}

std::string batchText(std::size_t renders, std::span<const BatchFailure> failures) {
    std::string text = std::to_string(renders - failures.size()) + " of " + std::to_string(renders) + " renders done\n";
    for (const BatchFailure& failure : failures)
        text += "line " + std::to_string(failure.line) + ": " + failure.message + "\n";
    return text;
}

std::string batchJson(std::size_t renders, std::span<const BatchFailure> failures) {
    JsonArray list;
    for (const BatchFailure& failure : failures)
        list.add(JsonObject().addNumber("line", failure.line).addText("error", failure.message).text());
    return JsonObject()
               .addNumber("renders", renders)
               .addNumber("done", renders - failures.size())
               .add("failures", list.text())
               .text() +
           "\n";
}

std::string ProgressText::redraw(const std::string& line) {
    if (line == shown_)
        return {};
    std::string text = "\r" + line;
    if (shown_.size() > line.size())
        text.append(shown_.size() - line.size(), ' ');
    shown_ = line;
    return text;
}

std::string ProgressText::showStatus(const std::string& status) {
    if (status == status_)
        return {};
    status_ = status;
    return style_ == ProgressStyle::PlainLines ? status + "\n" : redraw(status);
}

std::string ProgressText::showProgress(std::uint64_t done, std::uint64_t total) {
    constexpr std::size_t kBarWidth = 30;
    if (style_ == ProgressStyle::PlainLines)
        return {};
    if (total == 0)
        return redraw(status_);
    const double share = static_cast<double>(std::min(done, total)) / static_cast<double>(total);
    const auto marks = static_cast<std::size_t>(share * kBarWidth);
    return redraw(formatted("%-16s", status_.substr(0, 16).c_str()) + "[" + std::string(marks, '#') +
                  std::string(kBarWidth - marks, '.') + formatted("] %3d %%", static_cast<int>(share * 100)));
}

std::string ProgressText::clear() {
    if (shown_.empty())
        return {};
    return redraw("") + "\r";
}

} // namespace stage
