#!/usr/bin/env bash
# own_prefix.sh COMMAND...   runs a command with a Wine prefix that nothing else uses meanwhile, so that programs which
# write a person's settings run side by side. The prefixes share the system's files with the one of WINEPREFIX and have
# users and a registry of their own; they stay for the next commands, as do their servers for a minute.
set -euo pipefail
model=$WINEPREFIX
for ((slot = 1; ; ++slot)); do
    WINEPREFIX=$model-tests/$slot
    mkdir -p "$WINEPREFIX"
    exec {lock}>"$WINEPREFIX.lock"
    flock -n "$lock" && break
    exec {lock}>&-
done
export WINEPREFIX
if [ ! -f "$WINEPREFIX/ready" ] || [ "$model/ready-alone" -nt "$WINEPREFIX/ready" ]; then
    rm -rf "$WINEPREFIX"
    mkdir -p "$WINEPREFIX/drive_c"
    cp -a "$model"/*.reg "$model/.update-timestamp" "$model/dosdevices" "$WINEPREFIX"
    for folder in "$model"/drive_c/*; do
        if [ "${folder##*/}" = users ]; then cp -a "$folder" "$WINEPREFIX/drive_c"; else ln -s "$folder" "$WINEPREFIX/drive_c"; fi
    done
    touch "$WINEPREFIX/ready"
fi
# Nothing that stays may hold the lock or the caller's output. Where a server runs already this one ends by itself.
if wineserver -p60 {lock}>&- </dev/null >/dev/null 2>&1; then
    wine cmd /c exit {lock}>&- </dev/null >/dev/null 2>&1 || true # has the system's services started
fi
"$@" {lock}>&-
