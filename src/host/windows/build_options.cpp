// Which options exclude which.
#include "host/windows/build_options.h"

#include "settings/output_options.h"
#include "settings/windows/parameter_reader.h"
#include "settings/windows/settings_store.h"

#include <algorithm>

namespace veldran {
namespace {

int readSelection(HWND dialog, int control) {
    const LRESULT selection = SendDlgItemMessageA(dialog, control, CB_GETCURSEL, 0, 0);
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
    : dialog_(dialog), saved_(IsDlgButtonChecked(dialog, kControlAlpha)) {
    if (kind == BuildKind::Test)
        CheckDlgButton(dialog, kControlAlpha, BST_UNCHECKED);
}

AlphaCheckGuard::~AlphaCheckGuard() {
    CheckDlgButton(dialog_, kControlAlpha, saved_);
}

} // namespace veldran
