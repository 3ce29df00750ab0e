// The contract between an instrument and the rest of the plugin: its three entries and the record they receive.
#pragma once

#include "abi/plugin_abi.h"
#include "render/colour.h"
#include "render/windows/frame_list.h"

#include <array>
#include <cstddef>
#include <memory>

#include <windows.h>

namespace veldran {

// What every entry receives; cleared before each preview and build. Handles in it belong to whom the field says.
struct BuildContext {
    HWND dialog;          // the configuration dialog, from whose controls entries read their parameters
    FrameList* frames;    // what `build` appends to
    void* reserved;       // null
    HostParams* host;     // message entry for progress, flags for the unit of delays
    HGLOBAL previewImage; // set by `preview`; the dialog's from then on
    const void* artwork;  // the instrument's locked artwork during one entry; set and cleared by the entry
};

class FrameSequence;

// One instrument. Entries answer 1 on success and 0 on failure; `build` leaves what it has appended to the caller, who
// frees the list. No entry is null.
struct EffectDescriptor {
    const char* name;
    int (*preview)(BuildContext* context); // one representative frame
    int (*build)(BuildContext* context);   // all frames, with delays and progress
    // The colour of the empty area, or kNoColour. `transparent`: the background is about to become transparent.
    Colour (*background)(HWND dialog, int transparent);
    const int* controls; // identities of its controls, spinners after their fields; ends with 0
    // The animation's frames one by one, as `build` makes them, for playing; null when it cannot be opened.
    std::unique_ptr<FrameSequence> (*open)(HWND dialog, HostParams* host);
};

// The twenty instruments; the index is what the setting MainEffect stores.
const std::array<EffectDescriptor, 20>& EffectRegistry();

// The descriptor of a row; rows beyond the table count as the nearest one.
const EffectDescriptor& effectDescriptor(int row);

// Shows the controls of the registry's `row` and hides all other instrument controls; -1 hides them all.
void showInstrumentControls(HWND dialog, int row);

} // namespace veldran
