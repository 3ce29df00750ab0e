// Where writers put their bytes: a file, memory, or nowhere but a count. Positions are counted from the start.
// Formats that count their frames near the start rewrite that place after every frame.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace stage {

using Bytes = std::vector<std::uint8_t>;

inline std::span<const std::uint8_t> bytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

class ByteSink {
public:
    virtual ~ByteSink() = default;

    // Behind what has been written so far. Throws what the sink throws; the two below do as well.
    virtual void write(std::span<const std::uint8_t> bytes) = 0;
    // In place of bytes that have been written.
    virtual void rewrite(std::uint64_t position, std::span<const std::uint8_t> bytes) = 0;
    // The next write begins `count` bytes before the end.
    virtual void stepBack(std::uint64_t count) = 0;
    // All that has been written could be read now.
    virtual void flush() {}
    virtual std::uint64_t size() const = 0;
};

class MemorySink final : public ByteSink {
public:
    void write(std::span<const std::uint8_t> bytes) override;
    void rewrite(std::uint64_t position, std::span<const std::uint8_t> bytes) override;
    void stepBack(std::uint64_t count) override;
    std::uint64_t size() const override { return bytes_.size(); }

    const Bytes& bytes() const { return bytes_; }

private:
    Bytes bytes_;
};

// Keeps nothing but the size.
class CountingSink final : public ByteSink {
public:
    void write(std::span<const std::uint8_t> bytes) override { size_ += bytes.size(); }
    void rewrite(std::uint64_t, std::span<const std::uint8_t>) override {}
    void stepBack(std::uint64_t count) override { size_ -= count; }
    std::uint64_t size() const override { return size_; }

private:
    std::uint64_t size_ = 0;
};

} // namespace stage
