// Replaces one function that a loaded library imports by another, for that library alone and as long as this lives.
// Never changes anything outside the library's own import table.
#pragma once

#include <windows.h>

namespace stage {

// What happens when the library does not import the function by name, or its table cannot be written.
enum class IfMissing { Refuse, Ignore };

class ImportPatch {
public:
    // With IfMissing::Refuse throws Failure(PluginFailed).
    ImportPatch(HMODULE importer, const char* library, const char* function, void* replacement, IfMissing ifMissing);
    ~ImportPatch();
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;

    // The function that was imported; null when there was none.
    void* original() const { return reinterpret_cast<void*>(original_); }

private:
    ULONGLONG* slot_;
    ULONGLONG original_;
};

} // namespace stage
