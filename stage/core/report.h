// What is printed for people: the list of effects, the summary of a render, the progress of a render.
// Never prints itself: every function answers text, so that it can be tested and sent anywhere.
#pragma once

#include "core/animation_recorder.h"
#include "core/effect_catalog.h"

namespace stage {

std::string listText(const EffectCatalog& catalog);

// One aligned line each: file, frames, size, bytes, duration, seconds taken.
std::string summaryText(const Recording& recording, std::uint32_t delaysPerSecond, double secondsTaken);

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
