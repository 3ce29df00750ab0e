// Everything is made at run time from the option rows, so that labels, identities and settings stand in one place.
#include "ui/output_panel.h"

#include "instruments/effect_list.h"
#include "settings/output_options.h"
#include "settings/parameter_reader.h"
#include "ui/panel.h"
#include "ui/parameter_control.h"

#include <algorithm>

namespace veldran {
namespace {

// All in pixels, client coordinates.
constexpr int kMargin = 12;
constexpr int kFrameInset = 12; // from a group's edge to what stands in it
constexpr int kFrameTop = 22;   // from a group's top to its first row
constexpr int kRowHeight = 24;
constexpr int kControlHeight = 21;
constexpr int kPanelWidth = 500;
constexpr int kPanelRows = 11;
constexpr int kPreviewWidth = 292;
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

constexpr int kColumnLefts[] = {0, 150, 300, 470};
constexpr OptionPlace kOptionPlaces[] = {
    {kControlTrueColour, 0, 0, 140, 0},      {kControlAlpha, 0, 1, 140, 0},
    {kControlAlphaBackground, 0, 2, 140, 0}, {kControlAntialias, 1, 0, 140, 0},
    {kControlDither, 1, 1, 140, 0},          {kControlSupercompress, 1, 2, 140, 0},
    {kControlMaskBackground, 2, 0, 160, 0},  {kControlTransparent, 2, 1, 160, 0},
    {kControlCustomPalette, 2, 2, 160, 0},   {kControlPalette, 3, 0, 310, 56},
    {kControlDelay, 3, 1, 140, 56},
};

BoundParameter bind(const OptionRow& option) {
    return {&option.parameter, option.labelControl, option.control};
}

const OptionRow& optionRow(int control) {
    return *std::ranges::find(kOutputOptions, control, &OptionRow::control);
}

void place(HWND dialog, int control, int left, int top, int width, int height) {
    MoveWindow(GetDlgItem(dialog, control), left, top, width, height, TRUE);
}

void createGroup(HWND dialog, const char* title, int identity) {
    createChild(dialog, "BUTTON", title, BS_GROUPBOX | WS_VISIBLE, 0, identity);
}

void createButton(HWND dialog, const char* text, DWORD style, int identity) {
    createChild(dialog, "BUTTON", text, style | WS_TABSTOP | WS_VISIBLE, 0, identity);
}

void placeOptions(HWND dialog) {
    for (const OptionPlace& at : kOptionPlaces) {
        RECT cell{};
        cell.left = kMargin + kFrameInset + kColumnLefts[at.column];
        cell.top = kOutputTop + kFrameTop + at.row * kRowHeight;
        cell.right = cell.left + at.width;
        cell.bottom = cell.top + kControlHeight;
        placeParameter(dialog, bind(optionRow(at.control)), cell, at.labelWidth);
    }
}

void placeFrames(HWND dialog) {
    const int previewLeft = 2 * kMargin + kPanelWidth;
    place(dialog, kControlPanelFrame, kMargin, kPanelTop, kPanelWidth, kPanelHeight);
    place(dialog, kControlPreviewFrame, previewLeft, kPanelTop, kPreviewWidth, kPanelHeight);
    place(dialog, kControlPreview, previewLeft + kFrameInset, kPanelTop + kFrameTop, kPreviewWidth - 2 * kFrameInset,
          kPanelHeight - kFrameTop - kFrameInset);
    place(dialog, kControlOutputFrame, kMargin, kOutputTop, kClientWidth - 2 * kMargin, kOutputHeight);
}

void placeButtons(HWND dialog) {
    int left = kClientWidth - kMargin;
    for (const int control : {kControlCancel, kControlTest, kControlBuild}) {
        left -= kButtonWidth;
        place(dialog, control, left, kButtonTop, kButtonWidth, kButtonHeight);
        left -= kButtonGap;
    }
    place(dialog, kControlDelayNote, kMargin, kButtonTop + 6, left - kMargin, kControlHeight);
}

void resizeToClient(HWND dialog) {
    RECT frame{0, 0, kClientWidth, kClientHeight};
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

void createOutputControls(HWND dialog) {
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
    createGroup(dialog, "Output", kControlOutputFrame);
    for (const OptionPlace& at : kOptionPlaces)
        create(at.control);
    createChild(dialog, "STATIC", "* The indicated effects should use a delay of 1 for GIF animations.",
                SS_LEFT | WS_VISIBLE, 0, kControlDelayNote);
    createButton(dialog, "Build", BS_DEFPUSHBUTTON, kControlBuild);
    createButton(dialog, "&Test", BS_PUSHBUTTON, kControlTest);
    createButton(dialog, "Cancel", BS_PUSHBUTTON, kControlCancel);
}

void fillOutputControls(HWND dialog) {
    for (const OptionRow& option : kOutputOptions)
        fillParameter(dialog, bind(option));
}

void saveOutputControls(HWND dialog) {
    for (const OptionRow& option : kOutputOptions)
        saveParameter(dialog, bind(option));
}

void layOutMainDialog(HWND dialog) {
    resizeToClient(dialog);
    placeParameter(dialog, bind(optionRow(kControlEffect)),
                   {kMargin, kMargin, kMargin + kEffectWidth, kMargin + kControlHeight}, kEffectLabelWidth);
    placeFrames(dialog);
    placePanels(dialog, {kMargin + kFrameInset, kPanelTop + kFrameTop, kMargin + kPanelWidth - kFrameInset,
                         kPanelTop + kPanelHeight - kFrameInset});
    placeOptions(dialog);
    placeButtons(dialog);
}

void refreshEnabling(HWND dialog) {
    const auto enable = [dialog](int control, bool enabled) { EnableWindow(GetDlgItem(dialog, control), enabled); };
    const bool alpha = isChecked(dialog, kControlAlpha);
    const bool palette = !alpha && !isChecked(dialog, kControlTrueColour);
    const bool whole = palette && !isChecked(dialog, kControlSupercompress);
    enable(kControlTrueColour, !alpha);
    enable(kControlAlphaBackground, alpha);
    enable(kControlCustomPalette, palette);
    enable(kControlPalette, palette && !isChecked(dialog, kControlCustomPalette));
    enable(kControlDither, palette);
    enable(kControlSupercompress, palette);
    enable(kControlMaskBackground, whole);
    enable(kControlTransparent, whole);
}

int selectedEffect(HWND dialog) {
    return static_cast<int>(SendDlgItemMessageA(dialog, kControlEffect, CB_GETCURSEL, 0, 0));
}

} // namespace veldran
