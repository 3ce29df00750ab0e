// One tip window serves all fields; it takes their mouse messages itself.
#include "ui/windows/controls/tool_tips.h"

#include "base/windows/module.h"
#include "instruments/effect_list.h"
#include "settings/output_options.h"
#include "ui/windows/panel.h"

#include <commctrl.h>

namespace veldran {
namespace {

void addTip(HWND tips, HWND dialog, const BoundParameter& parameter) {
    std::string text = tipFor(parameter);
    if (text.empty())
        return;
    TOOLINFOA tool{};
    tool.cbSize = sizeof tool;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = dialog;
    tool.uId = reinterpret_cast<UINT_PTR>(GetDlgItem(dialog, parameter.control));
    tool.lpszText = text.data();
    SendMessageA(tips, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
}

} // namespace

void attachToolTips(HWND dialog) {
    const HWND tips =
        CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, "", WS_POPUP | TTS_NOPREFIX, CW_USEDEFAULT, CW_USEDEFAULT,
                        CW_USEDEFAULT, CW_USEDEFAULT, dialog, nullptr, moduleInstance(), nullptr);
    if (tips == nullptr)
        return;
    for (int effect = 0; effect < kEffectCount; ++effect)
        for (const BoundParameter& parameter : panelOf(effect))
            addTip(tips, dialog, parameter);
    for (const OptionRow& option : kOutputOptions)
        addTip(tips, dialog, {&option.parameter, option.labelControl, option.control});
}

} // namespace veldran
