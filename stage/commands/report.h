// What is printed for people, and for scripts as JSON: effects, the summary of a render, its progress, what a file
// holds. Never prints itself: every function answers text, so that it can be tested and sent anywhere.
#pragma once

#include "base/failure.h"
#include "commands/effect_catalog.h"
#include "commands/stage_clock.h"
#include "document/timing.h"
#include "formats/animation_reader.h"

namespace stage {

std::string listText(const EffectCatalog& catalog);

struct FileReport {
    OutputFormat format = OutputFormat::Gif;
    std::string file; // as shown to the person
    std::uint64_t bytes = 0;
    PlayingTime time;
};

struct RenderReport {
    std::string effect;
    std::uint32_t width = 0;  // pixels
    std::uint32_t height = 0; // pixels
    std::size_t frames = 0;
    std::vector<FileReport> files;
    std::vector<std::string> warnings;
    double secondsTaken = 0;
    std::vector<StageTime> stages = {}; // of the time taken
    std::uint64_t peakMemory = 0;       // bytes that the program held at most
};

// What a person should know before giving such a file away: how browsers show it otherwise than it says.
std::optional<std::string> browserWarning(const FileReport& file);

// One aligned line each: file and bytes of every file, frames, size, duration, seconds taken. Warnings are not in it.
std::string summaryText(const RenderReport& report);
// One line of JSON, as the next ones.
std::string summaryJson(const RenderReport& report);
std::string failureJson(const Failure& failure);

// What a file holds, frame by frame. `bytes` is the file's size.
std::string inspectionText(const AnimationFile& file, const std::string& name, std::uint64_t bytes);
std::string inspectionJson(const AnimationFile& file, const std::string& name, std::uint64_t bytes);

struct BatchFailure {
    std::size_t line = 0;
    std::string message;
};
std::string batchText(std::size_t renders, std::span<const BatchFailure> failures);
std::string batchJson(std::size_t renders, std::span<const BatchFailure> failures);

enum class ProgressStyle { RedrawnLine, PlainLines };

// Builds the text for each step of a render. Redrawn: one line, returned to with a carriage return, nothing else that a
// terminal must understand. Plain: one line for each new status.
class ProgressText {
public:
    explicit ProgressText(ProgressStyle style) : style_(style) {}

    // Texts to print; often empty.
    std::string showStatus(const std::string& status);
    std::string showProgress(std::uint64_t done, std::uint64_t total);
    // Leaves no trace of the redrawn line.
    std::string clear();

private:
    std::string redraw(const std::string& line);

    ProgressStyle style_;
    std::string status_;
    std::string shown_;
};

} // namespace stage
