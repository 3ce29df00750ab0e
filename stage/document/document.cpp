// Names and texts of a document; see the header.
#include "document/document.h"

#include "base/output_file.h"
#include "base/text.h"

#include <cstdio>

namespace stage {
namespace {

std::string withThousands(std::uint64_t number) {
    std::string text = std::to_string(number);
    for (std::ptrdiff_t place = static_cast<std::ptrdiff_t>(text.size()) - 3; place > 0; place -= 3)
        text.insert(static_cast<std::size_t>(place), 1, ',');
    return text;
}

} // namespace

bool Document::hasFileOfItsFormat() const {
    return !file.empty() && fileFormat == format && format != OutputFormat::Png;
}

std::string documentName(const Document& document) {
    return document.file.empty() ? "Untitled" : utf8FromPath(document.file.filename());
}

std::string windowTitle(const Document& document) {
    if (!document.animation)
        return "Stage";
    return documentName(document) + (document.isModified ? "* - Stage" : " - Stage");
}

std::filesystem::path suggestedFile(const Document& document, OutputFormat format) {
    std::filesystem::path file = document.file.empty() ? pathFromUtf8("animation") : document.file;
    return file.replace_extension(pathFromUtf8(std::string(formatExtension(format))));
}

std::string frameText(std::size_t frame, std::size_t frames) {
    return "Frame " + std::to_string(frame + 1) + " of " + std::to_string(frames);
}

std::string playingTimeText(const PlayingTime& time, std::uint32_t plays) {
    return secondsText(time.stored) + (plays == 0   ? ", forever"
                                       : plays == 1 ? ", once"
                                                    : ", " + std::to_string(plays) + " times");
}

std::string browserRateText(OutputFormat format, const PlayingTime& time) {
    if (format == OutputFormat::Mng)
        return "Not for browsers";
    if (format == OutputFormat::Png)
        return "Still pictures";
    char text[48];
    std::snprintf(text, sizeof(text), "Browsers: %.1f frames/s", time.framesPerSecond);
    return text;
}

std::string fileSizeText(OutputFormat format, std::optional<std::uint64_t> bytes) {
    return std::string(formatName(format)) + (bytes ? ": " + withThousands(*bytes) + " bytes" : ": counting bytes...");
}

std::string delayText(std::uint32_t stored, std::uint32_t inBrowsers) {
    const std::string text = std::to_string(stored) + " ms";
    return inBrowsers != stored ? text + " \u2192 " + std::to_string(inBrowsers) + " ms" : text;
}

} // namespace stage
