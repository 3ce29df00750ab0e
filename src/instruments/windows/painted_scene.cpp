// The one thing about painted scenery that asks the dialog.
#include "instruments/windows/painted_scene.h"

#include "settings/output_options.h"
#include "settings/windows/parameter_reader.h"

namespace veldran {

Edges readEdges(HWND dialog) {
    return isChecked(dialog, kControlAntialias) ? Edges::Smooth : Edges::Hard;
}

} // namespace veldran
