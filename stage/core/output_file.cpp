// Reading and writing of files; see the header.
#include "core/output_file.h"

#include "core/failure.h"

#include <cerrno>
#include <iterator>
#include <system_error>

namespace stage {
namespace {

std::string reasonOf(int errorNumber) {
    return errorNumber == 0 ? "unknown reason" : std::generic_category().message(errorNumber);
}

[[noreturn]] void failFor(const char* deed, const std::filesystem::path& path, const std::string& reason) {
    throw Failure(ExitCode::FileTrouble,
                  std::string("Cannot ") + deed + " \"" + utf8FromPath(path) + "\": " + reason + ".");
}

} // namespace

std::filesystem::path pathFromUtf8(const std::string& text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

std::string utf8FromPath(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

std::string readFile(const std::filesystem::path& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored))
        failFor("read", path, reasonOf(EISDIR));
    errno = 0;
    std::ifstream stream(path, std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream.is_open() || stream.bad())
        failFor("read", path, reasonOf(errno));
    return content;
}

void writeFile(const std::filesystem::path& path, std::string_view content) {
    errno = 0;
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream << content;
    stream.close();
    if (!stream)
        failFor("write", path, reasonOf(errno));
}

void makeFolder(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        failFor("make the folder", folder, error.message());
}

OutputFile::OutputFile(std::filesystem::path target) : target_(std::move(target)), part_(target_) {
    part_ += ".part";
    std::error_code ignored;
    if (std::filesystem::is_directory(target_, ignored))
        fail(reasonOf(EISDIR));
    errno = 0;
    stream_.open(part_, std::ios::binary | std::ios::trunc);
    if (!stream_)
        fail(reasonOf(errno));
}

OutputFile::~OutputFile() {
    if (stream_.is_open()) {
        stream_.close();
        std::error_code ignored;
        std::filesystem::remove(part_, ignored);
    }
}

void OutputFile::fail(const std::string& reason) const {
    failFor("write", target_, reason);
}

void OutputFile::write(std::span<const std::uint8_t> bytes) {
    errno = 0;
    stream_.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!stream_)
        fail(reasonOf(errno));
    size_ += bytes.size();
}

void OutputFile::stepBack(std::uint64_t count) {
    stream_.seekp(-static_cast<std::streamoff>(count), std::ios::end);
    if (!stream_)
        fail(reasonOf(errno));
    size_ -= count;
}

void OutputFile::flush() {
    errno = 0;
    if (!stream_.flush())
        fail(reasonOf(errno));
}

void OutputFile::commit() {
    flush();
    stream_.close();
    std::error_code error;
    std::filesystem::rename(part_, target_, error);
    if (!error)
        return;
    std::error_code ignored;
    std::filesystem::remove(part_, ignored);
    fail(error.message());
}

} // namespace stage
