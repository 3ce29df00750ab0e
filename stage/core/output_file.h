// A file that comes into being beside its target and takes the target's place only when it is complete.
// Never harms what stood at the target before.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>

namespace stage {

// Paths from and to the UTF-8 text that people give and see.
std::filesystem::path pathFromUtf8(const std::string& text);
std::string utf8FromPath(const std::filesystem::path& path);

// The whole content. Throws Failure(FileTrouble) with the system's reason.
std::string readFile(const std::filesystem::path& path);
// Writes a whole file in place. Throws as above.
void writeFile(const std::filesystem::path& path, std::string_view content);

// With all folders above it, where missing. Throws as above.
void makeFolder(const std::filesystem::path& folder);

class OutputFile {
public:
    // Creates `target` with ".part" appended. Throws Failure(FileTrouble) with the system's reason, as all members do.
    explicit OutputFile(std::filesystem::path target);
    // Removes the unfinished file unless commit() succeeded.
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void write(std::span<const std::uint8_t> bytes);
    // The next write begins `count` bytes before the end.
    void stepBack(std::uint64_t count);
    void flush();
    // Closes the file and renames it to the target, replacing what was there.
    void commit();
    std::uint64_t size() const { return size_; }

private:
    [[noreturn]] void fail(const std::string& reason) const;

    std::filesystem::path target_;
    std::filesystem::path part_;
    std::ofstream stream_;
    std::uint64_t size_ = 0;
};

} // namespace stage
