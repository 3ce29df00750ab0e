// Reads the arguments and runs the job.
// Never writes before all inputs have been rendered.
#include "artpack/command_line.h"

#include "artpack/error.h"
#include "artpack/icon.h"
#include "artpack/output_file.h"
#include "artpack/record.h"
#include "artpack/sheet.h"

#include <charconv>
#include <new>
#include <optional>
#include <string_view>

#ifdef __SANITIZE_ADDRESS__
// Fontconfig and the font caches above it keep what they have loaded until the process ends, which LeakSanitizer
// reports as soon as any text has been drawn. Here, so that whatever links the command gets it.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}
#endif

namespace artpack {
namespace {

constexpr const char* kUsage = "usage: artpack --bits 8|24 --size WxH INPUT.svg OUTPUT.cpx\n"
                               "       artpack --sheet OUTPUT.png INPUT.svg...\n"
                               "       artpack --icon OUTPUT.ico INPUT.svg SIDE...\n";

// The whole text as a side of a picture.
std::optional<int> parseSide(std::string_view text) {
    int value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || value < 1 || value > kLargestSide)
        return std::nullopt;
    return value;
}

std::optional<Size> parseSize(std::string_view text) {
    const std::size_t cross = text.find('x');
    if (cross == std::string_view::npos)
        return std::nullopt;
    const std::optional<int> width = parseSide(text.substr(0, cross));
    const std::optional<int> height = parseSide(text.substr(cross + 1));
    if (!width || !height)
        return std::nullopt;
    return Size{*width, *height};
}

std::optional<Depth> parseDepth(std::string_view text) {
    if (text == "8")
        return Depth::Grey8;
    if (text == "24")
        return Depth::Colour24;
    return std::nullopt;
}

std::string toText(Size size) {
    return std::to_string(size.width) + " x " + std::to_string(size.height);
}

struct PackJob {
    Depth depth;
    Size size;
    std::string input;
    std::string output;
};

// The two options may come in either order, before the files.
std::optional<PackJob> parsePackJob(std::span<const std::string> arguments) {
    if (arguments.size() != 6)
        return std::nullopt;
    std::optional<Depth> depth;
    std::optional<Size> size;
    for (const std::size_t i : {0, 2}) {
        if (arguments[i] == "--bits")
            depth = parseDepth(arguments[i + 1]);
        else if (arguments[i] == "--size")
            size = parseSize(arguments[i + 1]);
    }
    if (!depth || !size)
        return std::nullopt;
    return PackJob{*depth, *size, arguments[4], arguments[5]};
}

void pack(const PackJob& job) {
    const Picture picture = renderSvg(job.input);
    if (picture.size != job.size)
        throw Error(job.input + ": is " + toText(picture.size) + " pixels, not " + toText(job.size));
    writeFile(job.output, packRecord(picture, job.depth));
}

void makeSheet(const std::string& output, std::span<const std::string> inputs) {
    std::vector<NamedPicture> pictures;
    for (const std::string& input : inputs)
        pictures.push_back({std::filesystem::path(input).filename().string(), renderSvg(input)});
    writeFile(output, drawSheet(pictures));
}

std::optional<std::vector<int>> parseIconSides(std::span<const std::string> texts) {
    std::vector<int> sides;
    for (const std::string& text : texts) {
        const std::optional<int> side = parseSide(text);
        if (!side || *side > kLargestIcon)
            return std::nullopt;
        sides.push_back(*side);
    }
    return sides;
}

} // namespace

int run(std::span<const std::string> arguments, std::ostream& errors) {
    try {
        if (arguments.size() >= 3 && arguments[0] == "--sheet") {
            makeSheet(arguments[1], arguments.subspan(2));
            return 0;
        }
        if (arguments.size() >= 4 && arguments[0] == "--icon") {
            if (const auto sides = parseIconSides(arguments.subspan(3))) {
                writeFile(arguments[1], drawIcon(arguments[2], *sides));
                return 0;
            }
        }
        if (const std::optional<PackJob> job = parsePackJob(arguments)) {
            pack(*job);
            return 0;
        }
    } catch (const Error& error) {
        errors << "artpack: " << error.what() << '\n';
        return 1;
    } catch (const std::bad_alloc&) {
        errors << "artpack: out of memory\n";
        return 1;
    }
    errors << kUsage;
    return 2;
}

} // namespace artpack
