// Names and extensions; see the header.
#include "document/file_format.h"

#include "base/text.h"

#include <algorithm>
#include <array>

namespace stage {
namespace {

struct FormatRow {
    OutputFormat format;
    std::string_view name;
    std::string_view extension;
};
constexpr std::array<FormatRow, 4> kFormats = {{{OutputFormat::Gif, "GIF", ".gif"},
                                                {OutputFormat::Apng, "APNG", ".apng"},
                                                {OutputFormat::Mng, "MNG", ".mng"},
                                                {OutputFormat::Png, "PNG", ".png"}}};

const FormatRow& rowOf(OutputFormat format) {
    return *std::ranges::find(kFormats, format, &FormatRow::format);
}

} // namespace

std::string_view formatName(OutputFormat format) {
    return rowOf(format).name;
}

std::string_view formatExtension(OutputFormat format) {
    return rowOf(format).extension;
}

std::optional<OutputFormat> formatNamed(std::string_view name) {
    for (const FormatRow& row : kFormats)
        if (equalIgnoringCase(row.name, name))
            return row.format;
    return std::nullopt;
}

std::optional<OutputFormat> formatOfFile(const std::filesystem::path& file) {
    const std::u8string extension = file.extension().u8string();
    if (extension.size() < 2)
        return std::nullopt;
    return formatNamed(std::string(extension.begin() + 1, extension.end()));
}

} // namespace stage
