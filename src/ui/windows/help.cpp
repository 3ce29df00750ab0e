// The document's name is fixed; where it stands, the host knows.
#include "ui/windows/help.h"

#include "base/windows/host_link.h"
#include "host/windows/message_box.h"

#include <cstdio>

namespace veldran {
namespace {

constexpr char kDocument[] = "VELDRap1.HTML";
constexpr std::size_t kLongestAddress = 260; // bytes, without the terminating NUL; what is longer is cut

} // namespace

void showHelp(HWND parent, HostParams* host, const char* topic) {
    char address[kLongestAddress + 1];
    const bool hasTopic = topic != nullptr && topic[0] != '\0';
    std::snprintf(address, sizeof address, "%s%s%s", kDocument, hasTopic ? "#" : "", hasTopic ? topic : "");
    if (sendToHost(host, nullptr, kHostShowHelp, 0, reinterpret_cast<std::intptr_t>(address)) != 0)
        return;
    showMessage(parent, "There has been an error displaying the Help document.");
    UpdateWindow(parent);
}

} // namespace veldran
