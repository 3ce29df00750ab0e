/* Identities that the resource script and the code share. Read by the resource compiler too, so nothing but macros. */
#pragma once

#define DIALOG_MAIN 1000
#define MESSAGE_TEXT 20
#define MESSAGE_ICON 21
#define ERROR_TEXT_BASE 500

#define DIALOG_SOUND_CHOOSER 1040
#define SOUND_PREVIEW 201
#define SOUND_LOOP 202
#define SOUND_STATUS 203

/* Controls of the editors: markers, data points. */
#define EDITOR_HELP 9
#define EDITOR_ADD 10
#define EDITOR_DELETE 11
#define EDITOR_UNDO 12
#define MARKER_LIST_LABEL 20
#define MARKER_LIST 21
#define MARKER_UP 22
#define MARKER_DOWN 23
#define MARKER_PICTURE 24
#define MARKER_NAME_LABEL 25
#define MARKER_NAME 26
#define MARKER_BEARING_LABEL 27
#define MARKER_BEARING 28
#define MARKER_BEARING_SPIN 29
#define MARKER_BEARING_UNIT 30
#define MARKER_DISTANCE_LABEL 31
#define MARKER_DISTANCE 32
#define MARKER_DISTANCE_SPIN 33
#define MARKER_DISTANCE_UNIT 34
#define MARKER_FAULT 35
#define POINT_HINT 40
#define POINT_GRAPH 41
#define POINT_POSITION_LABEL 42
#define POINT_POSITION 43
#define POINT_POSITION_SPIN 44
#define POINT_POSITION_UNIT 45
#define POINT_VALUE_LABEL 46
#define POINT_VALUE 47
#define POINT_VALUE_SPIN 48
#define POINT_VALUE_UNIT 49

#define VISUAL_STYLES_MANIFEST 1060

#define DIALOG_ADVANCED 1050
