// The text of what a file remembers: a line that names it, the settings, a line, the markers.
#include "document/remembered.h"

#include "base/text.h"

#include <algorithm>

namespace stage {
namespace {

constexpr std::string_view kHead = "[Voltane #1]\n";
constexpr std::string_view kMarkers = "[Markers]\n";

bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < 32 && c != '\n') || byte == 127;
}

} // namespace

std::string rememberedText(const Remembered& remembered) {
    std::string text(kHead);
    text += remembered.settings;
    if (remembered.markers)
        text.append(kMarkers) += *remembered.markers;
    return text;
}

std::optional<Remembered> rememberedFrom(std::string_view text) {
    std::string plain(text); // an editor may have given its lines other ends
    std::erase(plain, '\r');
    if (!plain.starts_with(kHead) || std::ranges::any_of(plain, isControl))
        return std::nullopt;
    plain.erase(0, kHead.size());
    if (!plain.empty() && !plain.ends_with('\n'))
        plain += '\n';
    Remembered remembered;
    const std::size_t markers = plain.starts_with(kMarkers) ? 0 : plain.find("\n" + std::string(kMarkers));
    if (markers == std::string::npos) {
        remembered.settings = plain;
    } else {
        const std::size_t end = plain.find(kMarkers, markers);
        remembered.settings = plain.substr(0, end);
        remembered.markers = plain.substr(end + kMarkers.size());
    }
    return remembered;
}

} // namespace stage
