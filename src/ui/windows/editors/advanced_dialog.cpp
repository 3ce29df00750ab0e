// Numbers are made from rows like a panel's; the font list and the labels stand below them.
#include "ui/windows/editors/advanced_dialog.h"

#include "base/windows/gdi.h"
#include "resources/resource_ids.h"
#include "settings/windows/settings_store.h"
#include "ui/help_topics.h"
#include "ui/windows/controls/parameter_control.h"
#include "ui/windows/controls/push_button.h"
#include "ui/windows/dialog_guard.h"
#include "ui/windows/editors/editor_layout.h"
#include "ui/windows/help.h"
#include "ui/windows/text_scale.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace veldran {
namespace {

constexpr ParameterRow number(const char* label, const char* range, Setting setting) {
    return {ParameterKind::Number, label, setting, range, ""};
}

// The left column, then the right one.
constexpr std::array kNumbers = {
    number("VU interchannel space:", "1,256,6", Setting::AdvancedDigitalVUInterchannelHorizontal),
    number("VU yellow range:", "1,254,160", Setting::DigitalVUYellowRange),
    number("VU red range:", "1,254,220", Setting::DigitalVURedRange),
    number("VU etch highlight:", "100,400,266", Setting::DigitalVUEtchHighlight),
    number("VU etch shadow:", "1,99,66", Setting::DigitalVUEtchShadow),
    number("VU inter-LED horizontal:", "1,256,2", Setting::DigitalVUInterledHorizontal),
    number("VU inter-LED vertical:", "1,256,1", Setting::DigitalVUInterledVertical),
    number("VU dark factor:", "1,99,66", Setting::DigitalVUDarkFactor),
    number("VU edge pad horizontal:", "1,256,3", Setting::DigitalVUEdgePadHorizontal),
    number("VU edge pad vertical:", "1,256,2", Setting::DigitalVUEdgePadVertical),
    number("Sound Scan dark factor:", "1,99,56", Setting::AdvancedVoiceDarkColorFactor),
    number("Radar marker font size:", "4,96,18", Setting::AdvancedRadarMarkerFontSize),
    number("Arc after-image intensity:", "1,99,40", Setting::AdvancedArcAfterImageIntensity),
    number("Arc after-after-image intensity:", "1,99,30", Setting::AdvancedArcAfterAfterImageIntensity),
    number("Jacob's ladder depth factor:", "100,300,200", Setting::AdvancedLadderDepthFactor),
    number("Data Pad darkness factor:", "1,99,45", Setting::AdvancedDatapadDarknessFactor),
    number("Altimeter barometric pressure:", "200,400,299", Setting::AdvancedAltimeterBarometricPressure),
    number("Altimeter sample altitude:", "0,25000,21400", Setting::AdvancedAltimeterSampleAltitude),
};
constexpr std::size_t kLeftRows = 10; // those of the digital VU meters

// Identities: label and field of each number, then the others in tab order.
constexpr int kFirstNumber = 100;
constexpr int kSeparator = 140;
constexpr int kFontLabel = 141;
constexpr int kFont = 142;
constexpr int kFontBold = 143;
constexpr int kFirstText = 144; // label and field of each text
constexpr int kHelpButton = 9;

struct TextRow {
    const char* label;
    Setting setting;
};

constexpr std::array<TextRow, 3> kTexts = {{{"&Left label:", Setting::LabelLeft},
                                            {"&Right label:", Setting::LabelRight},
                                            {"&Mono label:", Setting::LabelMono}}};

constexpr WPARAM kLongestEntry = 260; // bytes that a label's field takes
constexpr int kTextBuffer = 260;      // of these as many are stored as fit in here with a NUL
constexpr WPARAM kLongestNumber = 10; // digits of an unsigned 32-bit number
constexpr int kListRows = 12;

constexpr int labelId(int first, std::size_t row) {
    return first + 2 * static_cast<int>(row);
}

constexpr int fieldId(int first, std::size_t row) {
    return labelId(first, row) + 1;
}

BoundParameter numberAt(std::size_t row) {
    return {&kNumbers[row], labelId(kFirstNumber, row), fieldId(kFirstNumber, row)};
}

HostParams* hostOf(HWND dialog) {
    return reinterpret_cast<HostParams*>(GetWindowLongPtrA(dialog, DWLP_USER));
}

std::uint32_t buttonLook(HWND dialog) {
    const HostParams* host = hostOf(dialog);
    return host != nullptr ? host->buttonStyle : 0;
}

void createButton(HWND dialog, const char* text, int identity, ButtonRole role) {
    const std::uint32_t look = buttonLook(dialog);
    const HWND button =
        createChild(dialog, "BUTTON", text, pushButtonStyle(look) | WS_TABSTOP | WS_VISIBLE, 0, identity);
    preparePushButton(button, look, role);
}

// In tab order.
void createControls(HWND dialog) {
    for (std::size_t i = 0; i < kNumbers.size(); ++i)
        createParameter(dialog, numberAt(i), InitialVisibility::Shown);
    createChild(dialog, "STATIC", "", SS_ETCHEDHORZ | WS_VISIBLE, 0, kSeparator);
    createChild(dialog, "STATIC", "&Font:", SS_LEFT | WS_VISIBLE, 0, kFontLabel);
    createChild(dialog, "COMBOBOX", "",
                CBS_DROPDOWNLIST | CBS_OWNERDRAWFIXED | CBS_HASSTRINGS | CBS_SORT | WS_VSCROLL | WS_TABSTOP |
                    WS_VISIBLE,
                0, kFont);
    createChild(dialog, "BUTTON", "Font &bold", BS_AUTOCHECKBOX | WS_TABSTOP | WS_VISIBLE, 0, kFontBold);
    for (std::size_t i = 0; i < kTexts.size(); ++i) {
        createChild(dialog, "STATIC", kTexts[i].label, SS_LEFT | WS_VISIBLE, 0, labelId(kFirstText, i));
        createChild(dialog, "EDIT", "", ES_AUTOHSCROLL | WS_TABSTOP | WS_VISIBLE, WS_EX_CLIENTEDGE,
                    fieldId(kFirstText, i));
    }
    createButton(dialog, "OK", IDOK, ButtonRole::Default);
    createButton(dialog, "Cancel", IDCANCEL, ButtonRole::Ordinary);
    createButton(dialog, "&Help", kHelpButton, ButtonRole::Ordinary);
}

// The character set stays with the entry: a font of symbols cannot show its own name.
int CALLBACK addFontFamily(const LOGFONTA* font, const TEXTMETRICA*, DWORD, LPARAM combo) {
    const auto list = reinterpret_cast<HWND>(combo);
    const LRESULT entry = SendMessageA(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(font->lfFaceName));
    if (entry >= 0)
        SendMessageA(list, CB_SETITEMDATA, static_cast<WPARAM>(entry), font->lfCharSet);
    return 1; // go on
}

void fillFonts(HWND dialog, const std::string& chosen) {
    const HWND list = GetDlgItem(dialog, kFont);
    const HDC dc = GetDC(dialog);
    EnumFontFamiliesA(dc, nullptr, addFontFamily, reinterpret_cast<LPARAM>(list));
    ReleaseDC(dialog, dc);
    if (!chosen.empty())
        SendMessageA(list, CB_SELECTSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(chosen.c_str()));
}

void fillControls(HWND dialog) {
    const PlugInSettings& settings = pluginSettings();
    for (std::size_t i = 0; i < kNumbers.size(); ++i) {
        SendDlgItemMessageA(dialog, fieldId(kFirstNumber, i), EM_SETLIMITTEXT, kLongestNumber, 0);
        SetDlgItemInt(dialog, fieldId(kFirstNumber, i), settings.number(kNumbers[i].setting), FALSE);
    }
    fillFonts(dialog, settings.text(Setting::InstrumentFontName));
    CheckDlgButton(dialog, kFontBold, settings.number(Setting::InstrumentFontBold) != 0 ? BST_CHECKED : BST_UNCHECKED);
    for (std::size_t i = 0; i < kTexts.size(); ++i) {
        SendDlgItemMessageA(dialog, fieldId(kFirstText, i), EM_SETLIMITTEXT, kLongestEntry, 0);
        SetDlgItemTextA(dialog, fieldId(kFirstText, i), settings.text(kTexts[i].setting).c_str());
    }
}

// One column of numbers from `first` to before `last`, at `left`.
void placeNumbers(HWND dialog, const EditorLayout& layout, std::size_t first, std::size_t last, int left, int labels,
                  int width) {
    int top = layout.margin();
    for (std::size_t i = first; i < last; ++i) {
        placeParameter(dialog, numberAt(i), {left, top, left + width, top + layout.fieldHeight()}, labels);
        top += layout.fieldHeight() + scaled(4);
    }
}

void placeFont(HWND dialog, const EditorLayout& layout, int left, int top, int labels, int width) {
    const HWND list = GetDlgItem(dialog, kFont);
    const int line = layout.lineHeight() + scaled(2);
    SendMessageA(list, CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), layout.fieldHeight() - scaled(6));
    SendMessageA(list, CB_SETITEMHEIGHT, 0, line);
    layout.placeLabel(kFontLabel, left, top, labels);
    layout.place(kFont, left + labels, top, width - labels, layout.fieldHeight() + kListRows * line);
    layout.place(kFontBold, left + labels, top + layout.fieldHeight() + scaled(4), width - labels,
                 layout.fieldHeight());
}

void placeTexts(const EditorLayout& layout, int left, int top, int labels, int width) {
    for (std::size_t i = 0; i < kTexts.size(); ++i) {
        layout.placeLabel(labelId(kFirstText, i), left, top, labels);
        layout.place(fieldId(kFirstText, i), left + labels, top, width - labels, layout.fieldHeight());
        top += layout.fieldHeight() + scaled(4);
    }
}

int widestLabel(const EditorLayout& layout, int first, std::size_t begin, std::size_t end) {
    int widest = 0;
    for (std::size_t i = begin; i < end; ++i)
        widest = std::max(widest, layout.labelWidth(labelId(first, i)));
    return widest + layout.gap();
}

void layOut(HWND dialog) {
    const EditorLayout layout(dialog);
    const int margin = layout.margin();
    const int step = layout.fieldHeight() + scaled(4);
    const int field = layout.textWidth("000000") + scaled(30); // the longest number, the field's inset and the spinner
    const int leftLabels = widestLabel(layout, kFirstNumber, 0, kLeftRows);
    const int rightLabels = widestLabel(layout, kFirstNumber, kLeftRows, kNumbers.size());
    const int leftWidth = leftLabels + field;
    const int rightWidth = rightLabels + field;
    const int right = margin + leftWidth + 2 * margin;
    const int clientWidth = right + rightWidth + margin;
    placeNumbers(dialog, layout, 0, kLeftRows, margin, leftLabels, leftWidth);
    placeNumbers(dialog, layout, kLeftRows, kNumbers.size(), right, rightLabels, rightWidth);
    int top = margin + static_cast<int>(kLeftRows) * step + layout.gap();
    layout.place(kSeparator, margin, top, clientWidth - 2 * margin, 2);
    top += layout.gap() + scaled(4);
    placeFont(dialog, layout, margin, top, layout.labelWidth(kFontLabel) + layout.gap(), leftWidth);
    placeTexts(layout, right, top, widestLabel(layout, kFirstText, 0, kTexts.size()), rightWidth);
    top += static_cast<int>(kTexts.size()) * step + margin;
    const int button = layout.buttonWidth({IDOK, IDCANCEL, kHelpButton});
    layout.placeButtons({IDOK, IDCANCEL, kHelpButton}, clientWidth - margin - 3 * button - 2 * layout.gap(), top,
                        button);
    layout.finish(clientWidth, top + layout.buttonHeight() + margin);
}

void onInitialise(HWND dialog, LPARAM host) {
    SetWindowLongPtrA(dialog, DWLP_USER, host);
    createControls(dialog);
    fillControls(dialog);
    layOut(dialog);
    SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, fieldId(kFirstNumber, 0))), TRUE);
}

// A font that the system does not offer is not chosen in the list and stays what it is.
void saveFont(HWND dialog, PlugInSettings& settings) {
    char name[kTextBuffer] = "";
    if (SendDlgItemMessageA(dialog, kFont, CB_GETCURSEL, 0, 0) == CB_ERR)
        return;
    GetDlgItemTextA(dialog, kFont, name, kTextBuffer);
    settings.setText(Setting::InstrumentFontName, name);
}

void onAccept(HWND dialog) {
    PlugInSettings& settings = pluginSettings();
    for (std::size_t i = 0; i < kNumbers.size(); ++i)
        saveParameter(dialog, numberAt(i));
    settings.setNumber(Setting::InstrumentFontBold, IsDlgButtonChecked(dialog, kFontBold) != BST_UNCHECKED ? 1 : 0);
    for (std::size_t i = 0; i < kTexts.size(); ++i) {
        char text[kTextBuffer] = "";
        GetDlgItemTextA(dialog, fieldId(kFirstText, i), text, kTextBuffer);
        settings.setText(kTexts[i].setting, text);
    }
    saveFont(dialog, settings);
    EndDialog(dialog, 1);
}

void onCommand(HWND dialog, int control, int code) {
    if (code != BN_CLICKED)
        return;
    if (control == IDOK)
        onAccept(dialog);
    else if (control == IDCANCEL)
        EndDialog(dialog, 0);
    else if (control == kHelpButton)
        showHelp(dialog, hostOf(dialog), kHelpAdvanced);
}

// What an entry is drawn with. Without an entry the list's field shows the font that is set and not offered, in gray.
struct FontEntry {
    char name[kTextBuffer] = "";
    bool ownFace = false;
    int colour = COLOR_GRAYTEXT;
};

FontEntry fontEntryOf(const DRAWITEMSTRUCT& item) {
    FontEntry entry;
    if (item.itemID == static_cast<UINT>(-1)) {
        std::snprintf(entry.name, sizeof entry.name, "%s", pluginSettings().text(Setting::InstrumentFontName).c_str());
        return entry;
    }
    if (SendMessageA(item.hwndItem, CB_GETLBTEXTLEN, item.itemID, 0) < kTextBuffer)
        SendMessageA(item.hwndItem, CB_GETLBTEXT, item.itemID, reinterpret_cast<LPARAM>(entry.name));
    entry.ownFace = item.itemData != SYMBOL_CHARSET;
    entry.colour = COLOR_WINDOWTEXT;
    return entry;
}

Font createFace(HFONT plain, const char* name) {
    LOGFONTA description{};
    GetObjectA(plain, sizeof description, &description);
    std::snprintf(description.lfFaceName, sizeof description.lfFaceName, "%s", name);
    description.lfCharSet = DEFAULT_CHARSET;
    return Font(CreateFontIndirectA(&description));
}

// The list's entry in its own face.
void drawFontName(const DRAWITEMSTRUCT& item) {
    const bool chosen = (item.itemState & ODS_SELECTED) != 0;
    FillRect(item.hDC, &item.rcItem, GetSysColorBrush(chosen ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    const FontEntry entry = fontEntryOf(item);
    const auto plain = reinterpret_cast<HFONT>(SendMessageA(item.hwndItem, WM_GETFONT, 0, 0));
    const Font own = entry.ownFace ? createFace(plain, entry.name) : Font();
    RECT box = item.rcItem;
    {
        const Selected font(item.hDC, own ? own.get() : plain);
        const TextStyle style(item.hDC, GetSysColor(chosen ? COLOR_HIGHLIGHTTEXT : entry.colour));
        InflateRect(&box, -scaled(3), 0);
        DrawTextA(item.hDC, entry.name, -1, &box, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    }
    if ((item.itemState & ODS_FOCUS) != 0 && (item.itemState & ODS_NOFOCUSRECT) == 0)
        DrawFocusRect(item.hDC, &item.rcItem);
}

void onDrawItem(HWND dialog, const DRAWITEMSTRUCT& item) {
    if (item.CtlType == ODT_COMBOBOX)
        drawFontName(item);
    else
        drawPushButton(item, buttonLook(dialog), item.CtlID == IDOK);
}

INT_PTR handleMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        onInitialise(dialog, lParam);
        return FALSE; // the focus is set
    case WM_COMMAND:
        onCommand(dialog, LOWORD(wParam), HIWORD(wParam));
        return TRUE;
    case WM_DRAWITEM:
        onDrawItem(dialog, *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
    default:
        return FALSE;
    }
}

INT_PTR CALLBACK advancedProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return handleSafely(dialog, message, [=] { return handleMessage(dialog, message, wParam, lParam); });
}

} // namespace

bool runAdvancedDialog(HWND owner, HostParams* host) {
    return runDialog(owner, MAKEINTRESOURCEA(DIALOG_ADVANCED), advancedProc, reinterpret_cast<LPARAM>(host)) == 1;
}

} // namespace veldran
