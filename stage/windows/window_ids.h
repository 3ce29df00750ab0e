/* Numbers of the window's commands, controls and resources, for the resource script and the code. */
#pragma once

#define ID_ICON 1 /* the first of all: the system shows that one for the file */
#define ID_MENU 101
#define ID_ACCELERATORS 102
#define ID_LOOKS_MANIFEST 103
#define ID_FILE_OPTIONS_DIALOG 104

/* Commands. */
#define ID_NEW_GIF 200
#define ID_NEW_PNG 201
#define ID_OPEN 202
#define ID_SAVE 203
#define ID_SAVE_GIF 204 /* in the order of the formats, as the next ones */
#define ID_SAVE_APNG 205
#define ID_SAVE_MNG 206
#define ID_SAVE_PNG 207
#define ID_EXIT 208

#define ID_EDIT_PARAMETERS 220
#define ID_FORMAT_GIF 221
#define ID_FORMAT_APNG 222
#define ID_FORMAT_MNG 223
#define ID_FORMAT_PNG 224
#define ID_REPEAT 225
#define ID_FILE_OPTIONS 226

#define ID_ZOOM_IN 240
#define ID_ZOOM_OUT 241
#define ID_ZOOM_ACTUAL 242
#define ID_ZOOM_FIT 243
#define ID_BACKDROP_CHECKERBOARD 244 /* in the order of the kinds, as the next ones */
#define ID_BACKDROP_WHITE 245
#define ID_BACKDROP_BLACK 246
#define ID_BACKDROP_COLOUR 247
#define ID_SHOW_STRIP 248

#define ID_PLAY 260
#define ID_STEP_BACK 261
#define ID_STEP_FORWARD 262
#define ID_FIRST_FRAME 263
#define ID_LAST_FRAME 264
#define ID_SLOWER 265
#define ID_FASTER 266
#define ID_NORMAL_SPEED 267
#define ID_AS_BROWSERS 268

#define ID_HELP_MANUAL 280
#define ID_ABOUT 281
#define ID_STOP_WORK 282
#define ID_CLOSE_NOTICE 283

/* Child windows. */
#define ID_VIEW 300
#define ID_STRIP 301
#define ID_SLIDER 302
#define ID_STATUS 303
#define ID_PROGRESS 304
#define ID_SPEED 305
#define ID_FORMAT 306
#define ID_NOTICE 307

/* Controls of the file options; radio buttons in a row. */
#define ID_FOREVER 320
#define ID_COUNTED 321
#define ID_PLAYS 322
#define ID_PLAYS_SPIN 323
#define ID_THRESHOLD 324
#define ID_THRESHOLD_SPIN 325
#define ID_SWATCH 326
#define ID_MATTE 327
