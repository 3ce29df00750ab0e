// Reading and writing of files; see the header.
#include "base/output_file.h"

#include "base/failure.h"

#include <cerrno>
#include <cstdio>
#include <iterator>
#include <random>
#include <system_error>
#include <type_traits>

namespace stage {
namespace {

std::string reasonOf(int errorNumber) {
    return errorNumber == 0 ? "unknown reason" : std::generic_category().message(errorNumber);
}

[[noreturn]] void failFor(const char* deed, const std::filesystem::path& path, const std::string& reason) {
    throw Failure(ExitCode::FileTrouble,
                  std::string("Cannot ") + deed + " \"" + utf8FromPath(path) + "\": " + reason + ".");
}

// Windows takes paths of 260 letters and more only in full, with this in front.
std::filesystem::path systemPath(const std::filesystem::path& path) {
    if constexpr (std::is_same_v<std::filesystem::path::value_type, wchar_t>) {
        constexpr std::size_t kShort = 240; // leaves room for the names of unfinished files
        std::error_code error;
        std::filesystem::path whole = std::filesystem::absolute(path, error).lexically_normal().make_preferred();
        const auto& text = whole.native();
        const bool isOnDrive = text.size() > 1 && text[1] == ':';
        if (!error && isOnDrive && text.size() >= kShort)
            return std::filesystem::path("\\\\?\\") += whole;
    }
    return path;
}

// A file that its owner has protected is not replaced, although the system might let one.
bool isWriteProtected(const std::filesystem::path& path) {
    using std::filesystem::perms;
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    constexpr perms kAnyWrite = perms::owner_write | perms::group_write | perms::others_write;
    return !error && std::filesystem::is_regular_file(status) && (status.permissions() & kAnyWrite) == perms::none;
}

// Beside the target, so that taking its place is one step. Two programs never choose the same name.
std::filesystem::path unfinishedName(const std::filesystem::path& target) {
    char name[32];
    std::snprintf(name, sizeof(name), "stage-%08x.part", std::random_device{}());
    return target.parent_path() / name;
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
    if (std::filesystem::is_directory(systemPath(path), ignored))
        failFor("read", path, reasonOf(EISDIR));
    errno = 0;
    std::ifstream stream(systemPath(path), std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream.is_open() || stream.bad())
        failFor("read", path, reasonOf(errno));
    return content;
}

void writeFile(const std::filesystem::path& path, std::string_view content) {
    errno = 0;
    std::ofstream stream(systemPath(path), std::ios::binary | std::ios::trunc);
    stream << content;
    stream.close();
    if (!stream)
        failFor("write", path, reasonOf(errno));
}

void makeFolder(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(systemPath(folder), error);
    if (error)
        failFor("make the folder", folder, error.message());
}

OutputFile::OutputFile(std::filesystem::path target)
    : target_(std::move(target)), part_(unfinishedName(systemPath(target_))) {
    std::error_code ignored;
    if (std::filesystem::is_directory(systemPath(target_), ignored))
        fail(reasonOf(EISDIR));
    if (target_.filename().native().size() > 255)
        fail(reasonOf(ENAMETOOLONG));
    if (isWriteProtected(systemPath(target_)))
        fail("it is write-protected");
    errno = 0;
    stream_.open(part_, std::ios::binary | std::ios::trunc);
    check();
}

OutputFile::~OutputFile() {
    if (part_.empty())
        return;
    stream_.close();
    std::error_code ignored;
    std::filesystem::remove(part_, ignored);
}

void OutputFile::fail(const std::string& reason) const {
    failFor("write", target_, reason);
}

void OutputFile::check() const {
    if (!stream_)
        fail(reasonOf(errno));
}

void OutputFile::write(std::span<const std::uint8_t> bytes) {
    errno = 0;
    stream_.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    check();
    size_ += bytes.size();
}

void OutputFile::rewrite(std::uint64_t position, std::span<const std::uint8_t> bytes) {
    errno = 0;
    stream_.seekp(static_cast<std::streamoff>(position));
    stream_.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    stream_.seekp(static_cast<std::streamoff>(size_));
    check();
}

void OutputFile::stepBack(std::uint64_t count) {
    errno = 0;
    size_ -= count;
    stream_.seekp(static_cast<std::streamoff>(size_));
    check();
}

void OutputFile::flush() {
    errno = 0;
    stream_.flush();
    check();
}

void OutputFile::close() {
    errno = 0;
    stream_.close();
    check();
}

void OutputFile::commit() {
    if (stream_.is_open())
        close();
    std::error_code error;
    std::filesystem::rename(part_, systemPath(target_), error);
    if (error)
        fail(error.message());
    part_.clear();
}

} // namespace stage
