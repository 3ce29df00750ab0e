// Walks the import table of a library mapped by the Windows loader, whose structures the PE format lays down.
#include "windows/plugin/import_patch.h"

#include "base/failure.h"

#include <cstring>

namespace stage {
namespace {

template <class T>
T* at(HMODULE module, ULONGLONG offset) {
    return reinterpret_cast<T*>(reinterpret_cast<BYTE*>(module) + offset);
}

ULONGLONG* findInLibrary(HMODULE module, const IMAGE_IMPORT_DESCRIPTOR& library, const char* function) {
    const auto* names = at<IMAGE_THUNK_DATA64>(module, library.OriginalFirstThunk);
    auto* slots = at<IMAGE_THUNK_DATA64>(module, library.FirstThunk);
    for (; names->u1.AddressOfData != 0; ++names, ++slots) {
        if (IMAGE_SNAP_BY_ORDINAL64(names->u1.Ordinal))
            continue;
        const auto* entry = at<IMAGE_IMPORT_BY_NAME>(module, names->u1.AddressOfData);
        if (std::strcmp(reinterpret_cast<const char*>(entry->Name), function) == 0)
            return &slots->u1.Function;
    }
    return nullptr;
}

ULONGLONG* findSlot(HMODULE module, const char* library, const char* function) {
    const auto* dos = at<IMAGE_DOS_HEADER>(module, 0);
    const auto* headers = at<IMAGE_NT_HEADERS64>(module, static_cast<ULONGLONG>(dos->e_lfanew));
    const IMAGE_DATA_DIRECTORY& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (directory.VirtualAddress == 0)
        return nullptr;
    const auto* imported = at<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress);
    for (; imported->Name != 0; ++imported)
        if (lstrcmpiA(at<char>(module, imported->Name), library) == 0 && imported->OriginalFirstThunk != 0)
            if (ULONGLONG* slot = findInLibrary(module, *imported, function))
                return slot;
    return nullptr;
}

bool writeSlot(ULONGLONG* slot, ULONGLONG value) {
    DWORD protection = 0;
    if (!VirtualProtect(slot, sizeof(*slot), PAGE_READWRITE, &protection))
        return false;
    *slot = value;
    VirtualProtect(slot, sizeof(*slot), protection, &protection);
    return true;
}

} // namespace

ImportPatch::ImportPatch(HMODULE importer, const char* library, const char* function, void* replacement,
                         IfMissing ifMissing)
    : slot_(findSlot(importer, library, function)), original_(slot_ == nullptr ? 0 : *slot_) {
    if (slot_ != nullptr && writeSlot(slot_, reinterpret_cast<ULONGLONG>(replacement)))
        return;
    slot_ = nullptr;
    if (ifMissing == IfMissing::Refuse)
        throw Failure(ExitCode::PluginFailed,
                      "The plugin finds its settings in a way that this program cannot redirect. "
                      "Nothing was rendered, so that your saved settings stay as they are.");
}

ImportPatch::~ImportPatch() {
    if (slot_ != nullptr)
        writeSlot(slot_, original_);
}

} // namespace stage
