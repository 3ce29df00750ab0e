// A file that comes into being beside its target and takes the target's place only when it is complete.
// Never harms what stood at the target before.
#pragma once

#include "base/byte_sink.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

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

class OutputFile final : public ByteSink {
public:
    // Creates a file of an unused name, ending in ".part", in the target's folder. Throws Failure(FileTrouble) with the
    // system's reason, as all members do.
    explicit OutputFile(std::filesystem::path target);
    // Removes the unfinished file unless commit() succeeded.
    ~OutputFile() override;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void write(std::span<const std::uint8_t> bytes) override;
    void rewrite(std::uint64_t position, std::span<const std::uint8_t> bytes) override;
    void stepBack(std::uint64_t count) override;
    void flush() override;
    std::uint64_t size() const override { return size_; }

    // Nothing more will be written.
    void close();
    // Closes the file and renames it to the target, replacing what was there.
    void commit();

private:
    [[noreturn]] void fail(const std::string& reason) const;
    void check() const;

    std::filesystem::path target_;
    std::filesystem::path part_; // empty once committed
    std::ofstream stream_;
    std::uint64_t size_ = 0;
};

} // namespace stage
