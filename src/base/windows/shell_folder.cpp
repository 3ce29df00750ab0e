// Asks the shell.
#include "base/windows/shell_folder.h"

#include "base/owner.h"

#include <windows.h>

#include <shlobj.h>

namespace veldran {
namespace {

void freeItemList(PIDLIST_ABSOLUTE list) {
    CoTaskMemFree(list);
}
using ItemList = Owner<PIDLIST_ABSOLUTE, freeItemList>;

} // namespace

std::string shellFolder(int specialFolder) {
    PIDLIST_ABSOLUTE found = nullptr;
    if (FAILED(SHGetSpecialFolderLocation(nullptr, specialFolder, &found)))
        return {};
    const ItemList list(found);
    char path[MAX_PATH] = "";
    if (!SHGetPathFromIDListA(list.get(), path))
        return {};
    std::string folder = path;
    if (!folder.empty() && !folder.ends_with('\\'))
        folder += '\\';
    return folder;
}

} // namespace veldran
