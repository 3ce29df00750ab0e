// Everything is made at run time from the option rows, so that labels, identities and settings stand in one place.
#include "ui/windows/output_panel.h"

#include "instruments/effect_list.h"
#include "instruments/windows/effect_registry.h"
#include "settings/output_options.h"
#include "settings/windows/parameter_reader.h"
#include "settings/windows/settings_store.h"
#include "ui/windows/controls/push_button.h"
#include "ui/windows/panel.h"
#include "ui/windows/text_scale.h"

#include <algorithm>

namespace veldran {
namespace {

// In pixels at 100 % text size, client coordinates.
constexpr int kMargin = 12;
constexpr int kFrameInset = 12; // from a group's edge to what stands in it
constexpr int kFrameTop = 22;   // from a group's top to its first row
constexpr int kRowHeight = 24;
constexpr int kControlHeight = 21;
constexpr int kPanelWidth = 500;
constexpr int kPanelRows = 11;
constexpr int kPreviewWidth = 300;
constexpr int kEffectWidth = 330;
constexpr int kEffectLabelWidth = 52;
constexpr int kButtonWidth = 88;
constexpr int kButtonHeight = 26;
constexpr int kButtonGap = 8;
constexpr int kPanelHeight = kFrameTop + kPanelRows * kRowHeight + kFrameInset;
constexpr int kOutputRows = 3;
constexpr int kOutputHeight = kFrameTop + kOutputRows * kRowHeight + 6;
constexpr int kClientWidth = 3 * kMargin + kPanelWidth + kPreviewWidth;
constexpr int kPanelTop = kMargin + kRowHeight + 10;
constexpr int kOutputTop = kPanelTop + kPanelHeight + 8;
constexpr int kButtonTop = kOutputTop + kOutputHeight + 10;
constexpr int kClientHeight = kButtonTop + kButtonHeight + kMargin;

// Where each output option stands: column and row of a grid, its width, and how much of that the label takes.
struct OptionPlace {
    int control;
    int column;
    int row;
    int width;
    int labelWidth;
};

constexpr int kPlayWidth = 60;
constexpr int kNoteWidth = 380;

constexpr int kColumnLefts[] = {0, 142, 264, 408};
constexpr OptionPlace kOptionPlaces[] = {
    {kControlTrueColour, 0, 0, 138, 0},      {kControlAlpha, 0, 1, 138, 0},
    {kControlAlphaBackground, 0, 2, 138, 0}, {kControlAntialias, 1, 0, 118, 0},
    {kControlDither, 1, 1, 118, 0},          {kControlSupercompress, 1, 2, 118, 0},
    {kControlMaskBackground, 2, 0, 140, 0},  {kControlTransparent, 2, 1, 140, 0},
    {kControlCustomPalette, 2, 2, 140, 0},   {kControlPalette, 3, 0, 380, 56},
    {kControlDelay, 3, 1, 140, 56},
};

struct ButtonRow {
    int control;
    const char* text;
};

constexpr ButtonRow kLeftButtons[] = {
    {kControlHelp, "&Help"}, {kControlAdvanced, "Ad&vanced\x85"}, {kControlDefaults, "De&faults"}};
constexpr ButtonRow kRightButtons[] = {{kControlBuild, "Build"}, {kControlTest, "&Test"}, {kControlCancel, "Cancel"}};

BoundParameter bind(const OptionRow& option) {
    return {&option.parameter, option.labelControl, option.control};
}

const OptionRow& optionRow(int control) {
    return *std::ranges::find(kOutputOptions, control, &OptionRow::control);
}

// Everything given at 100 %.
void place(HWND dialog, int control, int left, int top, int width, int height) {
    MoveWindow(GetDlgItem(dialog, control), scaled(left), scaled(top), scaled(width), scaled(height), TRUE);
}

RECT scaledRect(int left, int top, int width, int height) {
    return {scaled(left), scaled(top), scaled(left + width), scaled(top + height)};
}

void createGroup(HWND dialog, const char* title, int identity) {
    createChild(dialog, "BUTTON", title, BS_GROUPBOX | WS_VISIBLE, 0, identity);
}

void createButton(HWND dialog, const ButtonRow& button, std::uint32_t look) {
    const HWND window =
        createChild(dialog, "BUTTON", button.text, pushButtonStyle(look) | WS_TABSTOP | WS_VISIBLE, 0, button.control);
    preparePushButton(window, look, button.control == kControlBuild ? ButtonRole::Default : ButtonRole::Ordinary);
}

void placeOptions(HWND dialog) {
    for (const OptionPlace& at : kOptionPlaces)
        placeParameter(dialog, bind(optionRow(at.control)),
                       scaledRect(kMargin + kFrameInset + kColumnLefts[at.column],
                                  kOutputTop + kFrameTop + at.row * kRowHeight, at.width, kControlHeight),
                       scaled(at.labelWidth));
    place(dialog, kControlDelayNote, kMargin + kFrameInset + kColumnLefts[3],
          kOutputTop + kFrameTop + 2 * kRowHeight + 3, kNoteWidth, kControlHeight);
}

void placePreview(HWND dialog) {
    const int left = 2 * kMargin + kPanelWidth;
    const int inner = left + kFrameInset;
    const int innerWidth = kPreviewWidth - 2 * kFrameInset;
    const int lineTop = kPanelTop + kPanelHeight - kFrameInset - kButtonHeight;
    place(dialog, kControlPreviewFrame, left, kPanelTop, kPreviewWidth, kPanelHeight);
    place(dialog, kControlPreview, inner, kPanelTop + kFrameTop, innerWidth, lineTop - 6 - kPanelTop - kFrameTop);
    place(dialog, kControlPlay, inner, lineTop, kPlayWidth, kButtonHeight);
    place(dialog, kControlSummary, inner + kPlayWidth + 8, lineTop + 6, innerWidth - kPlayWidth - 8, kControlHeight);
}

void placeButtons(HWND dialog) {
    int left = kMargin;
    for (const ButtonRow& button : kLeftButtons) {
        place(dialog, button.control, left, kButtonTop, kButtonWidth, kButtonHeight);
        left += kButtonWidth + kButtonGap;
    }
    left = kClientWidth - kMargin - 3 * kButtonWidth - 2 * kButtonGap;
    for (const ButtonRow& button : kRightButtons) {
        place(dialog, button.control, left, kButtonTop, kButtonWidth, kButtonHeight);
        left += kButtonWidth + kButtonGap;
    }
}

void resizeToClient(HWND dialog) {
    RECT frame = scaledRect(0, 0, kClientWidth, kClientHeight);
    AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongPtrA(dialog, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongPtrA(dialog, GWL_EXSTYLE)));
    const int width = frame.right - frame.left;
    const int height = frame.bottom - frame.top;
    RECT work{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    const int left = std::max<int>(work.left, (work.left + work.right - width) / 2);
    const int top = std::max<int>(work.top, (work.top + work.bottom - height) / 2);
    SetWindowPos(dialog, nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace

void createOutputControls(HWND dialog, std::uint32_t buttonLook) {
    const auto create = [dialog](int control) {
        createParameter(dialog, bind(optionRow(control)), InitialVisibility::Shown);
    };
    create(kControlEffect);
    for (const EffectRow& effect : effectRows())
        SendDlgItemMessageA(dialog, kControlEffect, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(effect.name));
    createGroup(dialog, "Parameters", kControlPanelFrame);
    createPanels(dialog);
    createGroup(dialog, "Preview", kControlPreviewFrame);
    createChild(dialog, "STATIC", "", SS_OWNERDRAW | WS_VISIBLE, 0, kControlPreview);
    createButton(dialog, {kControlPlay, "&Play"}, buttonLook);
    createChild(dialog, "STATIC", "", SS_LEFT | SS_NOPREFIX | SS_ENDELLIPSIS | WS_VISIBLE, 0, kControlSummary);
    createGroup(dialog, "Output", kControlOutputFrame);
    for (const OptionPlace& at : kOptionPlaces)
        create(at.control);
    createChild(dialog, "STATIC", "* The indicated effects should use a delay of 1 for GIF animations.",
                SS_LEFT | WS_VISIBLE, 0, kControlDelayNote);
    for (const ButtonRow& button : kLeftButtons)
        createButton(dialog, button, buttonLook);
    for (const ButtonRow& button : kRightButtons)
        createButton(dialog, button, buttonLook);
}

void fillOutputControls(HWND dialog) {
    for (const OptionRow& option : kOutputOptions)
        fillParameter(dialog, bind(option), pluginSettings());
}

void saveOutputControls(HWND dialog) {
    for (const OptionRow& option : kOutputOptions)
        saveParameter(dialog, bind(option));
}

void layOutMainDialog(HWND dialog) {
    resizeToClient(dialog);
    placeParameter(dialog, bind(optionRow(kControlEffect)), scaledRect(kMargin, kMargin, kEffectWidth, kControlHeight),
                   scaled(kEffectLabelWidth));
    place(dialog, kControlPanelFrame, kMargin, kPanelTop, kPanelWidth, kPanelHeight);
    placePreview(dialog);
    place(dialog, kControlOutputFrame, kMargin, kOutputTop, kClientWidth - 2 * kMargin, kOutputHeight);
    placeOptions(dialog);
    placeButtons(dialog);
}

void showSelectedPanel(HWND dialog) {
    const int effect = selectedEffect(dialog);
    showInstrumentControls(dialog, -1);
    placePanel(dialog, effect,
               scaledRect(kMargin + kFrameInset, kPanelTop + kFrameTop, kPanelWidth - 2 * kFrameInset,
                          kPanelHeight - kFrameTop - kFrameInset));
    showInstrumentControls(dialog, effect);
}

void OutputEnabling::apply(HWND dialog, int control, bool enabled) {
    const auto known = applied_.find(control);
    if (known == applied_.end() || known->second != enabled)
        EnableWindow(GetDlgItem(dialog, control), enabled);
    applied_[control] = enabled;
}

void OutputEnabling::refresh(HWND dialog) {
    const bool alpha = isChecked(dialog, kControlAlpha);
    const bool palette = !alpha && !isChecked(dialog, kControlTrueColour);
    const bool whole = palette && !isChecked(dialog, kControlSupercompress);
    apply(dialog, kControlTrueColour, !alpha);
    apply(dialog, kControlAlphaBackground, alpha);
    apply(dialog, kControlCustomPalette, palette);
    apply(dialog, kControlPalette, palette && !isChecked(dialog, kControlCustomPalette));
    apply(dialog, kControlDither, palette);
    apply(dialog, kControlSupercompress, palette);
    apply(dialog, kControlMaskBackground, whole);
    apply(dialog, kControlTransparent, whole);
}

int selectedEffect(HWND dialog) {
    return static_cast<int>(SendDlgItemMessageA(dialog, kControlEffect, CB_GETCURSEL, 0, 0));
}

} // namespace veldran
