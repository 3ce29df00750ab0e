// Which options exclude which.
#include "host/build_options.h"

#include "settings/control_index.h"
#include "settings/output_options.h"
#include "settings/parameter_reader.h"
#include "settings/settings_store.h"

#include <algorithm>

namespace veldran {
namespace {

int readSelection(HWND dialog, int control) {
    const LRESULT selection = SendMessageA(controlWindow(dialog, control), CB_GETCURSEL, 0, 0);
    return static_cast<int>(std::max<LRESULT>(selection, 0));
}

} // namespace

BuildOptions readBuildOptions(HWND dialog, BuildKind kind) {
    BuildOptions options{};
    options.effect = readSelection(dialog, kControlEffect);
    options.palette = readSelection(dialog, kControlPalette);
    options.alpha = kind == BuildKind::Real && isChecked(dialog, kControlAlpha);
    options.trueColour = options.alpha || isChecked(dialog, kControlTrueColour);
    options.customPalette = isChecked(dialog, kControlCustomPalette);
    options.dither = isChecked(dialog, kControlDither);
    options.supercompress = !options.trueColour && isCheckedAndEnabled(dialog, kControlSupercompress);
    options.transparent = !options.supercompress && isCheckedAndEnabled(dialog, kControlTransparent);
    options.maskBackground = !options.supercompress && isChecked(dialog, kControlMaskBackground);
    options.addComment = pluginSettings().number(Setting::AddDescriptiveCommentBlock) != 0;
    return options;
}

AlphaCheckGuard::AlphaCheckGuard(HWND dialog, BuildKind kind)
    : dialog_(dialog),
      saved_(static_cast<WPARAM>(SendMessageA(controlWindow(dialog, kControlAlpha), BM_GETCHECK, 0, 0))) {
    if (kind == BuildKind::Test)
        SendMessageA(controlWindow(dialog, kControlAlpha), BM_SETCHECK, BST_UNCHECKED, 0);
}

AlphaCheckGuard::~AlphaCheckGuard() {
    SendMessageA(controlWindow(dialog_, kControlAlpha), BM_SETCHECK, saved_, 0);
}

} // namespace veldran
