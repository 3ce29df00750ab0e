// Lines into words; see the header.
#include "commands/batch.h"

#include "base/failure.h"
#include "base/text.h"

namespace stage {
namespace {

std::vector<std::string> wordsOf(std::string_view line, std::size_t number) {
    std::vector<std::string> words;
    bool isQuoted = false;
    bool isInWord = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        char c = line[i];
        if (!isQuoted && (c == ' ' || c == '\t')) {
            isInWord = false;
            continue;
        }
        if (!isInWord)
            words.emplace_back();
        isInWord = true;
        if (c == '"') {
            isQuoted = !isQuoted;
            continue;
        }
        if (isQuoted && c == '\\' && i + 1 < line.size() && line[i + 1] == '"')
            c = line[++i];
        words.back() += c;
    }
    if (isQuoted)
        throw Failure(ExitCode::WrongUsage, "Line " + std::to_string(number) + " has a quote that is not closed.");
    return words;
}

} // namespace

std::vector<BatchLine> parseBatch(std::string_view text) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark))
        text.remove_prefix(kByteOrderMark.size());
    std::vector<BatchLine> lines;
    std::size_t number = 0;
    for (std::string_view line : split(text, '\n')) {
        ++number;
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        std::vector<std::string> words = wordsOf(line, number);
        if (!words.empty() && !words.front().starts_with('#'))
            lines.push_back({number, std::move(words)});
    }
    return lines;
}

} // namespace stage
