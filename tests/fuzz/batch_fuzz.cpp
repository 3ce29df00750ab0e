// Batch files, and their lines as command lines.
#include "fuzz_target.h"

#include "base/failure.h"
#include "commands/arguments.h"
#include "commands/batch.h"

#include <optional>

using namespace stage;
using fuzz::mustHold;

namespace {

// The word so that a batch file gives it back: a quote alone in quotes, backslashes outside of them.
std::string inQuotes(std::string_view word) {
    std::string text = "\"\"";
    for (const char c : word)
        if (c == '"')
            text += "\"\\\"\"";
        else if (c == ' ' || c == '\t')
            text.append("\"").append(1, c).append("\"");
        else
            text += c;
    return text;
}

// A refusal must be one of the command line.
template <class Action>
auto unlessRefused(const Action& action) -> std::optional<decltype(action())> {
    try {
        return action();
    } catch (const Failure& failure) {
        mustHold(failure.code() == ExitCode::WrongUsage, "a refusal is about what was given");
        return std::nullopt;
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::Input(data, size).text();
    const auto lines = unlessRefused([&] { return parseBatch(text); });
    for (const BatchLine& line : lines.value_or(std::vector<BatchLine>())) {
        std::string again;
        for (const std::string& word : line.words)
            again += (again.empty() ? "" : " ") + inQuotes(word);
        // A carriage return at a line's end belongs to the line's end.
        if (!again.ends_with('\r')) {
            const std::vector<BatchLine> read = parseBatch(again);
            mustHold(read.size() == 1 && read[0].words == line.words, "words come back as quoted");
        }
        unlessRefused([&] { return parseArguments(line.words); });
    }
    return 0;
}
