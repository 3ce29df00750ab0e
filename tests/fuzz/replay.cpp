// Runs a fuzz target over known bytes:
//   replay TARGET FILE     for instance one that the search found
//   replay TARGET FOLDER   each file in it; there must be some
// In a folder each file is run whole, cut off at some places, and with a byte changed at others, always the same ones.
// A failure names the bytes that led to it.
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <sanitizer/common_interface_defs.h>
#include <string>
#include <vector>

#define FUZZ_TARGET(name) extern "C" int fuzz_##name(const std::uint8_t* data, std::size_t size);
#include "targets.inc"
#undef FUZZ_TARGET

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

// By their names.
const std::map<std::string, int (*)(const std::uint8_t* data, std::size_t size)> kTargets = {
#define FUZZ_TARGET(name) {#name, fuzz_##name},
#include "targets.inc"
#undef FUZZ_TARGET
};

constexpr std::size_t kChangedRuns = 100; // the files of a folder together

// What is being run, for those who tell of a failure.
std::string current;

void tellCurrent() {
    std::fprintf(stderr, "It failed with: %s\n", current.c_str());
}

Bytes bytesOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(stream), {});
}

void run(const std::string& target, const Bytes& bytes, const std::string& what) {
    current = what;
    kTargets.at(target)(bytes.data(), bytes.size());
}

// A quarter of the runs has the front of the file, the others all of it with a byte changed.
void runChanged(const std::string& target, const Bytes& whole, const std::string& name, std::size_t runs) {
    std::mt19937 random(1);
    for (std::size_t i = 0; i < runs && !whole.empty(); ++i) {
        Bytes changed = whole;
        const std::size_t at = random() % whole.size();
        const auto byte = static_cast<std::uint8_t>(random());
        if (i % 4 == 0)
            changed.resize(at);
        else
            changed[at] = byte;
        run(target, changed,
            name + (i % 4 == 0 ? " cut at " : " with byte " + std::to_string(byte) + " at ") + std::to_string(at));
    }
}

} // namespace

int main(int count, char** words) {
    __sanitizer_set_death_callback(tellCurrent);
    std::signal(SIGABRT, [](int) { tellCurrent(); });
    if (count != 3 || !kTargets.contains(words[1])) {
        std::fprintf(stderr, "replay TARGET FILE, or replay TARGET FOLDER\n");
        return 2;
    }
    const bool isFolder = fs::is_directory(words[2]);
    const std::vector<fs::path> files =
        isFolder ? std::vector<fs::path>(fs::directory_iterator(words[2]), {}) : std::vector<fs::path>{words[2]};
    for (const fs::path& file : files) {
        const Bytes whole = bytesOf(file);
        run(words[1], whole, file.string());
        runChanged(words[1], whole, file.string(), isFolder ? kChangedRuns / files.size() : 0);
    }
    return files.empty() ? 1 : 0;
}
