#!/usr/bin/env bash
# device.sh PROGRAM SOUND   runs the tests of sounds once more, now with a device, and compares what the device was given
# with the WAV file SOUND, which PROGRAM plays. The device is a sound server's empty sink, recorded from its monitor.
set -uo pipefail
program=$1 sound=$2
for command in pulseaudio parec perl wine; do
    command -v "$command" >/dev/null || { echo "$command is not installed"; exit 77; }
done
# A socket's path must be short.
folder=$(mktemp -d)
export XDG_RUNTIME_DIR=$folder XDG_CONFIG_HOME=$folder PULSE_SERVER=unix:$folder/socket
recording=$folder/recording
pulseaudio -n --daemonize=no --exit-idle-time=-1 --use-pid-file=no \
    -L "module-null-sink rate=44100 channels=2 format=s16le" \
    -L "module-native-protocol-unix socket=$folder/socket auth-anonymous=1" >"$folder/log" 2>&1 &
server=$!
recorder=
trap 'kill $recorder $server 2>/dev/null; wait; rm -rf "$folder"' EXIT

# await COMMAND...: until it succeeds, ten seconds at most.
await() {
    for _ in $(seq 100); do
        "$@" && return
        sleep 0.1
    done
    cat "$folder/log"
    echo "Waited in vain for: $*"
    exit 1
}
await test -S "$folder/socket"
parec --format=s16le --rate=44100 --channels=2 --raw --latency-msec=100 >"$recording" 2>>"$folder/log" &
recorder=$!
await test -s "$recording"

wine "$program" shell_sound >"$folder/tests" 2>&1 || { cat "$folder/tests"; exit 1; }
! grep SKIPPED "$folder/tests" || exit 1

# A monitor misses what a stream puts back in place of silence that was already given out, which it does when it begins,
# and a busy machine inserts gaps. So it is pieces of 1024 pairs that are looked for, in their order, each to the bit.
perl -e '
    my ($recorded, $played) = map { local $/; open my $file, "<:raw", $_ or die "$_: $!\n"; scalar <$file> } @ARGV;
    my ($found, $all, $from) = (0, 0, 0);
    for (my $at = 44; $at + 4096 <= length $played; $at += 4096) {
        ++$all;
        my $here = index $recorded, substr($played, $at, 4096), $from;
        next if $here < 0;
        ++$found;
        $from = $here + 4096;
    }
    print "$found of $all pieces were played as they are\n";
    exit($found < 0.7 * $all);
' "$recording" "$sound"
