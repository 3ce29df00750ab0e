// The binary interface between the plugin and the program that loads it: records, command numbers and the two exports.
// Shared by the plugin and the bundled host; every size and offset is fixed and checked by the compiler below.
//
// The legal order of calls, all on the host's user-interface thread:
//   1. The host loads veldran1_x64.dll and calls PLUGIN16GetPluginParams once to learn name and interface version.
//   2. For each invocation by the user it calls PLUGIN16DoBuild, which runs the modal configuration dialog. HostParams
//      stays valid and unchanged until the call returns.
//   3. Meanwhile the plugin calls HostParams::message with the commands of HostCommand. For one animation these come as
//      18, (10 and 13)..., 1 or 5, 15, 2 for each frame, 3 (when the comment is wanted), 4.
//   4. When PLUGIN16DoBuild has returned, the host may call it again or unload the library.
#pragma once

#include <cstddef>
#include <cstdint>

#ifdef _WIN32
#define PLUGIN16_CALL __stdcall
#else
#define PLUGIN16_CALL
#endif

// The interface version that the plugin writes into its records. Byte 1 is the major version, 16.
inline constexpr std::uint32_t kPluginInterfaceVersion = 0x1000;
// A host whose major version (byte 1 of HostParams::version) is lower than this is refused.
inline constexpr std::uint32_t kLowestHostMajorVersion = 16;

// Filled by PLUGIN16GetPluginParams. The host sets `size` to the size of its whole block, which may be smaller or
// larger than this record: the plugin clears `size` bytes, writes `size` back and never writes beyond it.
struct PluginInfo {
    std::uint32_t size;
    std::uint32_t version; // kPluginInterfaceVersion
    char name[261];        // NUL-terminated
    char credit[62];       // NUL-terminated; 61 characters
};

// A new document of the host. Filled by the plugin for commands 1 and 5, then passed as `task` to the later commands of
// the same build; owned by the plugin and valid until command 4 has returned.
struct HostTaskInfo {
    std::uint32_t size;    // sizeof(HostTaskInfo)
    std::uint32_t version; // kPluginInterfaceVersion
    void* owner;           // HWND of the configuration dialog
    std::uint32_t reserved0;
    std::uint32_t bitsPerPixel;   // 1 to 8: palette images; 24: true colour
    std::uint32_t width;          // pixels, the largest of all frames
    std::uint32_t height;         // pixels, the largest of all frames
    std::uint8_t palette[256][3]; // red, green, blue
    std::uint32_t reserved1;
    std::uint32_t frameCount;
    std::uint8_t reserved2[272];
};

// One frame, the value of command 2. `image` is a movable global-memory block with a packed bitmap: 40-byte header,
// colour table of 256 entries when it has 8 bits per pixel, bottom-up rows padded to four bytes. The block belongs to
// the plugin, which frees it after command 4: the host copies what it needs during the call.
struct HostImageInfo {
    std::uint32_t size;    // sizeof(HostImageInfo)
    std::uint32_t version; // kPluginInterfaceVersion
    void* image;           // HGLOBAL
    std::uint32_t reserved0;
    std::uint32_t alpha; // 1: 32-bit frame whose top byte is its opacity; else 0
    std::uint8_t reserved1[8];
    std::uint32_t delay;            // hundredths of a second or milliseconds, see kDelayInHundredths
    std::uint32_t index;            // zero-based frame number
    std::uint32_t transparentIndex; // palette index, 0xFFFFFFFF for none; 0 when `alpha` is 1
    std::uint8_t reserved2[68];
};

// Commands of the host's message entry. Those marked (task) carry the task, the others a null task. The result 0 means
// failure where the table names one and is ignored elsewhere.
enum HostCommand : std::uint32_t {
    kHostCreateTask = 1,     // lParam: HostTaskInfo*; 0 = no document could be made
    kHostAddImage = 2,       // (task) lParam: HostImageInfo*; 0 = not added
    kHostAddComment = 3,     // (task) lParam: text
    kHostFinishTask = 4,     // (task) wParam: 1 = success, 0 = failure
    kHostCreateTestTask = 5, // as 1, for a test build
    kHostLoadImage = 8,      // lParam: path; result: movable block with a packed bitmap, owned by the caller, or 0
    kHostShowHelp = 9,       // lParam: document name with optional "#topic"; non-zero = shown
    kHostShowStatus = 10,    // lParam: text
    kHostShowProgress = 13,  // wParam of lParam is done; (0, 0) clears the display
    kHostSetBackground = 15, // (task) wParam: kind, lParam: value
    kHostBuildBegins = 18,   // sent once by the dialog before a build or a test build
};

// Kinds of command 15.
inline constexpr std::uintptr_t kBackgroundByIndex = 'e';  // value: palette index
inline constexpr std::uintptr_t kBackgroundByColour = 'd'; // value: 0x00BBGGRR

// The host's message entry.
using HostCallbacks = std::intptr_t(PLUGIN16_CALL*)(HostTaskInfo* task, std::uint32_t command, std::uintptr_t wParam,
                                                    std::intptr_t lParam);

// Bits of HostParams::flags.
inline constexpr std::uint32_t kDelayInHundredths =
    1; // the format has a palette index as background and delays in 1/100 s
inline constexpr std::uint32_t kHostIsPngEditor = 2; // clear: the GIF editor

// What the host passes to PLUGIN16DoBuild. `size` is not checked.
struct HostParams {
    std::uint32_t size;
    std::uint32_t version;
    std::uint32_t buttonStyle; // 0: system buttons; 1, 2, 3, any other: one of four owner-drawn looks
    std::uint32_t reserved0;
    HostCallbacks message;
    void* reserved1;
    std::uint32_t flags;
};

// The two exports, undecorated. Both answer 1 on success and 0 on failure.
using GetPluginParamsFunction = int(PLUGIN16_CALL*)(PluginInfo* info);
using DoBuildFunction = int(PLUGIN16_CALL*)(void* parentWindow, HostParams* params);

static_assert(offsetof(PluginInfo, version) == 4 && offsetof(PluginInfo, name) == 8);
static_assert(offsetof(PluginInfo, credit) == 269);

static_assert(sizeof(HostTaskInfo) == 1080);
static_assert(offsetof(HostTaskInfo, owner) == 8 && offsetof(HostTaskInfo, reserved0) == 16);
static_assert(offsetof(HostTaskInfo, bitsPerPixel) == 20 && offsetof(HostTaskInfo, width) == 24);
static_assert(offsetof(HostTaskInfo, height) == 28 && offsetof(HostTaskInfo, palette) == 32);
static_assert(offsetof(HostTaskInfo, reserved1) == 800 && offsetof(HostTaskInfo, frameCount) == 804);
static_assert(offsetof(HostTaskInfo, reserved2) == 808);

static_assert(sizeof(HostImageInfo) == 112);
static_assert(offsetof(HostImageInfo, image) == 8 && offsetof(HostImageInfo, reserved0) == 16);
static_assert(offsetof(HostImageInfo, alpha) == 20 && offsetof(HostImageInfo, reserved1) == 24);
static_assert(offsetof(HostImageInfo, delay) == 32 && offsetof(HostImageInfo, index) == 36);
static_assert(offsetof(HostImageInfo, transparentIndex) == 40 && offsetof(HostImageInfo, reserved2) == 44);

static_assert(offsetof(HostParams, version) == 4 && offsetof(HostParams, buttonStyle) == 8);
static_assert(offsetof(HostParams, message) == 16 && offsetof(HostParams, flags) == 32);
