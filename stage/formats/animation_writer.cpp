// Chooses the writer, and puts files into place; see the header.
#include "formats/animation_writer.h"

#include "base/failure.h"
#include "base/output_file.h"
#include "formats/gif/gif_writer.h"
#include "formats/png/apng_writer.h"
#include "formats/png/mng_writer.h"
#include "formats/png/png_coding.h"

#include <cassert>
#include <cstdio>
#include <memory>

namespace stage {
namespace {

namespace fs = std::filesystem;

void checkWritable(const Animation& animation) {
    if (animation.frames.empty())
        throw Failure(ExitCode::WrongUsage, "An animation without frames cannot be written.");
    if (animation.width < 1 || animation.width > kLargestSide || animation.height < 1 ||
        animation.height > kLargestSide)
        throw Failure(ExitCode::WrongUsage, "Each side of an animation must have 1 to 65535 pixels.");
    for (const Frame& frame : animation.frames)
        if (frame.width != animation.width || frame.height != animation.height)
            throw Failure(ExitCode::WrongUsage, "A frame has another size than its animation.");
}

// Calls `take` with the bytes of every file.
template <class Take>
bool encodeSequence(const Animation& animation, const WriteProgress& progress, const Take& take) {
    for (std::size_t i = 0; i < animation.frames.size(); ++i) {
        if (progress && !progress(i, animation.frames.size()))
            return false;
        take(i, encodePng(animation.frames[i], animation.comment, animation.made));
    }
    return true;
}

// All files are complete before the first takes its place.
std::optional<WrittenFiles> saveSequence(const Animation& animation, const fs::path& pattern,
                                         const WriteProgress& progress) {
    std::vector<std::unique_ptr<OutputFile>> files;
    WrittenFiles written{numberedFile(pattern, 0), numberedFile(pattern, animation.frames.size() - 1), 0};
    const bool isDone = encodeSequence(animation, progress, [&](std::size_t number, const PngBytes& png) {
        files.push_back(std::make_unique<OutputFile>(numberedFile(pattern, number)));
        files.back()->write(png);
        files.back()->close();
        written.bytes += png.size();
    });
    if (!isDone)
        return std::nullopt;
    for (const auto& file : files)
        file->commit();
    return written;
}

} // namespace

std::filesystem::path numberedFile(const fs::path& pattern, std::size_t number) {
    char digits[24];
    std::snprintf(digits, sizeof(digits), "-%04zu", number);
    fs::path path = pattern.parent_path() / pattern.stem();
    path += digits;
    path += pattern.has_extension() ? pattern.extension() : fs::path(".png");
    return path;
}

bool writeAnimation(const Animation& animation, OutputFormat format, const WriteOptions& options, ByteSink& sink,
                    const WriteProgress& progress) {
    checkWritable(animation);
    switch (format) {
    case OutputFormat::Gif:
        return writeGif(animation, options, sink, progress);
    case OutputFormat::Apng:
        return writeApng(animation, sink, progress);
    case OutputFormat::Mng:
        return writeMng(animation, sink, progress);
    case OutputFormat::Png:
        break;
    }
    return encodeSequence(animation, progress, [&](std::size_t, const PngBytes& png) { sink.write(png); });
}

std::optional<std::uint64_t> encodedSize(const Animation& animation, OutputFormat format, const WriteOptions& options,
                                         const WriteProgress& progress) {
    CountingSink sink;
    if (!writeAnimation(animation, format, options, sink, progress))
        return std::nullopt;
    return sink.size();
}

std::optional<WrittenFiles> saveAnimation(const Animation& animation, OutputFormat format, const WriteOptions& options,
                                          const fs::path& file, const WriteProgress& progress) {
    checkWritable(animation);
    if (format == OutputFormat::Png)
        return saveSequence(animation, file, progress);
    OutputFile out(file);
    if (!writeAnimation(animation, format, options, out, progress))
        return std::nullopt;
    const std::uint64_t bytes = out.size();
    out.commit();
    return WrittenFiles{file, file, bytes};
}

} // namespace stage
