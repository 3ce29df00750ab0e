/* Identities that the resource script and the code share. Read by the resource compiler too, so nothing but macros. */
#pragma once

#define DIALOG_MAIN 1000
#define MESSAGE_TEXT 20
#define MESSAGE_ICON 21
#define ERROR_TEXT_BASE 500
