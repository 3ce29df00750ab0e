// Replaces one function that a loaded library imports by another, for that library alone and as long as this lives.
// Never changes anything outside the library's own import table.
#pragma once

#include <windows.h>

namespace stage {

class ImportPatch {
public:
    // Throws Failure(PluginFailed) when the library does not import `function` by name from `library`, or when its
    // table cannot be written.
    ImportPatch(HMODULE importer, const char* library, const char* function, void* replacement);
    ~ImportPatch();
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;

private:
    ULONGLONG* slot_;
    ULONGLONG original_;
};

} // namespace stage
