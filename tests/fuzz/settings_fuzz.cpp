// The configuration file, which people edit by hand.
#include "fuzz_target.h"

#include "settings/settings_file.h"

using namespace veldran;

namespace {

constexpr std::string_view kTime = "Sat Nov 14 14:41:00 2026";
constexpr std::size_t kLongestLine = 258; // that is read in one piece, without its end

bool hasLongLine(std::string_view file) {
    while (!file.empty()) {
        const std::size_t end = std::min(file.find("\r\n"), file.size());
        if (end > kLongestLine)
            return true;
        file.remove_prefix(std::min(end + 2, file.size()));
    }
    return false;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    PlugInSettings settings;
    readSettings(fuzz::Input(data, size).text(), settings);
    const std::string written = writeSettings(settings, kTime);
    PlugInSettings again;
    readSettings(written, again);
    fuzz::mustHold(hasLongLine(written) || writeSettings(again, kTime) == written, "settings come back as written");
    return 0;
}
