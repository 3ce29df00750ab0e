// What the fuzz targets share. A target is a file NAME_fuzz.cpp with one LLVMFuzzerTestOneInput, which takes any bytes:
// it gives them to the code that reads such bytes and says what must hold then. The sanitizers watch for the rest.
// clang's libFuzzer searches for bytes that break something; the program that replays known bytes gives each function a
// name of its own.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

// Answers 0. Ends the program when something does not hold.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

// `what` says what should have been so.
inline void mustHold(bool condition, const char* what) {
    if (condition)
        return;
    std::fprintf(stderr, "Does not hold: %s\n", what);
    std::abort();
}

// Takes numbers off the front of the bytes; beyond the end all are 0.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

    template <class Number>
    Number take() {
        static_assert(std::is_trivially_copyable_v<Number>);
        Number number{};
        const std::size_t count = std::min(sizeof number, rest_.size());
        if (count > 0)
            std::memcpy(&number, rest_.data(), count);
        rest_ = rest_.subspan(count);
        return number;
    }
    // From 0 to `most`, which is at most 255.
    unsigned number(unsigned most) { return take<std::uint8_t>() % (most + 1); }
    // What is left.
    std::span<const std::uint8_t> bytes() const { return rest_; }
    // What is left, once for each of up to `most` changes that stand before it: long bytes of parts that differ, out of
    // short ones.
    std::vector<std::uint8_t> lengthened(unsigned most) {
        struct Change {
            std::uint8_t cleared, turned;
        };
        std::vector<Change> changes(1 + number(most - 1));
        for (Change& change : changes)
            change = take<Change>();
        std::vector<std::uint8_t> all;
        for (const Change& change : changes)
            for (const std::uint8_t byte : rest_)
                all.push_back(static_cast<std::uint8_t>((byte & ~change.cleared) ^ change.turned));
        return all;
    }
    std::string_view text() const { return {reinterpret_cast<const char*>(rest_.data()), rest_.size()}; }

private:
    std::span<const std::uint8_t> rest_;
};

} // namespace fuzz
