// Dialogs run on one thread, one main dialog at a time, so the index is small and needs no lock.
#include "settings/control_index.h"

#include <map>
#include <unordered_map>

namespace veldran {
namespace {

std::map<HWND, std::unordered_map<int, HWND>>& index() {
    static std::map<HWND, std::unordered_map<int, HWND>> dialogs;
    return dialogs;
}

} // namespace

void rememberControl(HWND dialog, int identity, HWND control) {
    index()[dialog][identity] = control;
}

void forgetControls(HWND dialog) {
    index().erase(dialog);
}

HWND controlWindow(HWND dialog, int identity) {
    const auto known = index().find(dialog);
    if (known != index().end())
        if (const auto control = known->second.find(identity); control != known->second.end())
            return control->second;
    return GetDlgItem(dialog, identity);
}

} // namespace veldran
