#!/usr/bin/env python3
"""The order in which the rooms of both programs stand on each other. Prints every include against it; ends with 1 then.

A room is a folder of src or stage. It includes itself and the rooms before it. Its folder `windows`, and nothing else,
includes headers of Windows and files in folders `windows`. A room within a room includes itself and what its room has at
the top; only the files named below know all of them. The host includes of the plugin its binary interface alone.
"""
import pathlib
import re
import sys

ORDER = {
    "src": ["abi", "resources", "base", "render", "colour", "settings", "sound", "instruments", "host", "ui", "windows"],
    "stage": ["base", "document", "formats", "commands", "view", "windows"],
}
# The table of instruments; the doors to the formats; the windows.
SEE_ALL = re.compile(r"src/instruments/effect_list\.cpp|stage/formats/animation_(reader|writer)\.cpp|(src/ui|stage)/windows/.*")
SHARED = {"stage": {"abi/plugin_abi.h"}}
WINDOWS_HEADER = re.compile(r"(windows|windowsx|commctrl|commdlg|mmsystem|objbase|psapi|shell[a-z]+|shl[a-z]+|wincodec)\.h")
INCLUDE = re.compile(r'^#include (?:"([^"]+)"|<([^>]+)>)', re.M)


def faults(program, rooms, file):
    path = file.relative_to(program)
    in_windows = "windows" in path.parts
    room, *inner = (part for part in path.parent.parts if part != "windows" or path.parts[0] == "windows")
    if room not in rooms:
        yield "stands in a room without a place in the order"
        return
    for own, system in INCLUDE.findall(file.read_text()):
        if system:
            if WINDOWS_HEADER.fullmatch(system) and not in_windows:
                yield f"core includes <{system}>"
            continue
        if own in SHARED.get(program, set()) or not (pathlib.Path(program) / own).exists():
            if own not in SHARED.get(program, set()) and "/" in own:
                yield f"includes {own}, which is not of this program"
            continue
        other, *other_inner = (part for part in pathlib.PurePath(own).parent.parts
                               if part != "windows" or own.startswith("windows/"))
        if other not in rooms or rooms.index(other) > rooms.index(room):
            yield f"includes {own}, which stands above it"
        if "windows" in pathlib.PurePath(own).parts and not in_windows:
            yield f"core includes {own}"
        if other == room and other_inner and other_inner != inner and not SEE_ALL.fullmatch(str(file)):
            yield f"includes {own} of the room beside it"


found = [f"{file}: {fault}" for program, rooms in ORDER.items() for file in sorted(pathlib.Path(program).rglob("*"))
         if file.suffix in (".h", ".cpp") for fault in faults(program, rooms, file)]
print("\n".join(found))
sys.exit(1 if found else 0)
