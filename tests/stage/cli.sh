#!/usr/bin/env bash
# Drives the real stage.exe through Wine: exit codes, messages, files that other programs can read, and above all that a
# person's saved settings stay as they are. Needs gifsicle, pngcheck, ImageMagick, Pillow and perl.
#   cli.sh <stage.exe> <work directory>      with WINEPREFIX set to a prefix made for tests
set -u
same_frames=$(dirname "$(realpath "$0")")/same_frames.py
stage=$(realpath "$1")
plugin=$(dirname "$stage")/veldran1_x64.dll
rm -rf "$2" && mkdir -p "$2" && cd "$2" || exit 2
failures=0

fail() {
    failures=$((failures + 1))
    printf 'FAILED: %s\n' "$1"
    [ -s errors ] && sed 's/^/    /' errors
}

# expect <exit code> <text in what is printed, may be empty> <arguments of stage...>
expect() {
    local code=$1 text=$2
    shift 2
    wine "$stage" "$@" >output 2>errors
    local got=$?
    [ $got -eq "$code" ] || fail "exit code $got instead of $code: $*"
    grep -qF -- "$text" output errors || fail "\"$text\" is not said: $*"
}

# equal <what> <expected> <got>
equal() {
    [ "$2" = "$3" ] || fail "$1: expected \"$2\", got \"$3\""
}

windows_folder() {
    winepath -u "$(wine cmd /c "echo %$1%" 2>/dev/null | tr -d '\r')" 2>/dev/null
}

private_folders() {
    find "$temporary" -maxdepth 1 -name 'veldran-stage-*' | wc -l
}

korvel=$(windows_folder APPDATA)/Korvel
temporary=$(windows_folder TEMP)
documents=$(windows_folder USERPROFILE)/Documents
gif_documents=$documents/My\ Tavolin\ 16\ Documents
png_documents=$documents/My\ Merrowin\ 16\ Documents
# A person's own settings, which must neither count nor change. What was there before comes back at the end.
aside() {
    [ -d "$1" ] && mv "$1" "$2"
}
back() {
    rm -rf "$1"
    aside "$2" "$1"
}
aside "$korvel" before
aside "$gif_documents" gif-before
aside "$png_documents" png-before
trap 'back "$korvel" before; back "$gif_documents" gif-before; back "$png_documents" png-before' EXIT
mkdir -p "$korvel/markers"
printf '; by hand\r\nMainEffect = 3\r\nMainRadarSize = 64\r\n\r\nUnknown = 1' >"$korvel/VELDRAN1.INI"
printf 'North,10,20\n' >"$korvel/markers/saved.txt"
touch -d '2001-02-03' "$korvel/VELDRAN1.INI" "$korvel/markers/saved.txt"
cp -a "$korvel" expected
untouched() {
    diff -r expected "$korvel" >errors || fail "the saved settings changed: $1"
    equal "the saved settings were written: $1" "$(stat -c '%Y' expected/VELDRAN1.INI)" \
        "$(stat -c '%Y' "$korvel/VELDRAN1.INI")"
}

# Six frames: the position of an increment of 60 degrees.
quick=(--effect radar --set MainRadarIncrement=33)

# What is wrong is said, and what is allowed.
convert -size 4x4 xc:red plain.gif
expect 0 'stage render --effect' help
expect 2 'nearest is render' rendr
expect 2 'nearest is --effect' render --efect radar
expect 2 'nearest name is "Radar"' render --effect Rader
expect 2 'nearest is "MainRadarSize"' render --effect radar --set MainRadarSiez=3
expect 2 'from 48 to 256' render --effect radar --set MainRadarSize=257
expect 2 '#RRGGBB' render --effect radar --set MainRadarPanelColor=green
expect 2 'with --effect' render --effect radar --set MainEffect=1
expect 2 'allows gif, apng, mng and png' render "${quick[@]}" --as bmp
expect 2 'has no markers' render --effect countdown --markers errors
expect 2 'does not remember' render --like plain.gif
expect 0 'Exit codes' help
expect 0 'MainRadarSize' list
expect 3 'missing.ini' render "${quick[@]}" --ini missing.ini
expect 3 'Cannot write "missing/radar.gif"' render "${quick[@]}" --out missing/radar.gif
mkdir folder
expect 3 'Cannot write "folder"' render "${quick[@]}" --out folder
expect 3 'Cannot make the folder' render "${quick[@]}" --frames errors/inside
expect 3 'neither a GIF nor' inspect errors
for verb in list render batch inspect help; do
    expect 0 'stage ' $verb --help
done
equal 'files of refused renders' './plain.gif' "$(find . -name '*.gif' -o -name '*.part')"

# A real animation with the defaults, not with the person's size.
expect 0 'Remapping' render --effect RAD --out 'rädar one.gif'
equal 'lines of status' 'Building Quantizing Remapping' "$(tr '\n' ' ' <errors | sed 's/ $//')"
equal 'summary' "file bytes frames size duration taken" "$(awk '{ printf "%s%s", sep, $1; sep = " " }' output)"
equal 'frames by ImageMagick' 60 "$(identify 'rädar one.gif' | wc -l)"
gifsicle --info 'rädar one.gif' >info 2>errors || fail 'gifsicle cannot read the animation'
equal 'warnings of gifsicle' '' "$(cat errors)"
grep -q 'loop forever' info || fail 'the animation does not repeat'
grep -q 'CREATED BY' info || fail 'the comment is missing'
equal 'pictures' 60 "$(grep -c '^  + image' info)"
equal 'delays' 60 "$(grep -c 'delay 0.05s' info)"
equal 'size' "$(awk '$1 == "size" { print $2 }' output)" "$(awk '/logical screen/ { print $3 }' info)"
equal 'bytes' "$(stat -c %s 'rädar one.gif')" "$(awk '$1 == "bytes" { print $2 }' output)"
untouched 'after a render'

# The same pictures in all files of one render, whole, as differences, with opacity and in true colour.
animated() {
    local name=$1 vanish=
    shift
    case $* in *Trans=1* | *Transparent=1*) vanish=yes ;; esac
    rm -rf frames
    expect 0 '' render "${quick[@]}" --as gif --as apng --as mng --out $name.gif --out $name.apng --out $name.mng \
        --frames frames "$@"
    equal "numbered files, $name" 6 "$(find frames -name 'frame-000[0-5].png' | wc -l)"
    pngcheck -q $name.apng $name.mng frames/*.png >errors || fail "pngcheck finds faults, $name"
    gifsicle --info $name.gif 2>errors >/dev/null
    equal "warnings of gifsicle, $name" '' "$(cat errors)"
    equal "$name.apng" same "$("$same_frames" $name.apng 50 frames/*.png)"
    rm -f shown-*.png
    convert $name.mng -coalesce shown-%d.png
    # ImageMagick does not clear what lies over the background before the next frame.
    for frame in $([ -n "$vanish" ] && echo 0 || echo 0 3 5); do
        equal "pixels of $name.mng that differ, frame $frame" 0 \
            "$(compare -metric AE shown-$frame.png frames/frame-000$frame.png null: 2>&1)"
    done
}
for supercompress in 0 1; do
    animated "whole$supercompress" --set "MainSupercompress=$supercompress"
    equal "whole$supercompress.gif" same "$("$same_frames" "whole$supercompress.gif" 50 frames/*.png)"
done
animated holes --set MainTransparent=1
equal 'holes.gif' same "$("$same_frames" holes.gif 50 frames/*.png)"
animated alpha --set MainAlphaTrans=1 --matte '#FFFFFF' --threshold 1
# Wholly transparent pixels and opaque ones look as they did; the others lie on the matte.
convert frames/frame-0002.png -background white -alpha remove wanted.png
convert alpha.gif -coalesce -background white -alpha remove shown-%d.png
difference=$(compare -metric MAE shown-2.png wanted.png null: 2>&1 | sed 's/ .*//')
[ "${difference%.*}" -lt 1300 ] || fail "the GIF of opacities differs by $difference of 65535"

# Files remember: the same again, the same with a change, markers of one's own.
expect 0 '' render "${quick[@]}" --set MainRadarSize=64 --set MainRadarGreenColor=#FF8000 --loop 3 --out first.apng
expect 0 '' render --like first.apng --as apng --out again.apng
cmp first.apng again.apng || fail 'the same again is not the same'
printf 'Here,45,50\nThere,200,70\n' >markers.txt
expect 0 '' render --like first.apng --set MainDelay=8 --markers markers.txt --out changed.gif --json
equal 'report' 'changed.gif gif 50' "$(perl -MJSON::PP -0777 -ne \
    '$r = decode_json($_); print join " ", map { ($_->{file}, $_->{format}, $_->{duration_ms}) } @{$r->{files}}' output)"
expect 0 'MainRadarSize = 64' inspect changed.gif
expect 0 'There,200,70' inspect changed.gif
expect 0 '3 times' inspect changed.gif
equal 'inspected frames' 6 "$(grep -c ' stays ' output)"
cmp -s <(wine "$stage" inspect changed.gif --json | perl -MJSON::PP -0777 -ne 'print decode_json($_)->{markers}') \
    markers.txt || fail 'the markers are not those that were given'
expect 0 '10 ms or less' render "${quick[@]}" --set MainDelay=1

# The delay of an animation made for a GIF stays in other formats.
expect 0 '"duration_ms":300' render "${quick[@]}" --out mine.gif --json
expect 0 '"duration_ms":300' render --like mine.gif --as apng --json

# A batch goes on after a failure.
cat >batch.txt <<'END'
# two good ones
--effect radar --set MainRadarIncrement=33 --out "in a batch.gif"
render --effect nothing
--effect radar --set MainRadarIncrement=33 --as png --out batch.png
END
expect 4 '2 of 3 renders done' batch batch.txt
expect 4 'line 3: There is no effect "nothing"' batch batch.txt
equal 'files of a batch' 7 "$(find . -name 'in a batch.gif' -o -name 'batch-000?.png' | wc -l)"

# Names that are long or of other scripts; targets that cannot be written.
long=$(printf 'n%.0s' $(seq 120))
mkdir -p "$long/$long"
expect 0 '' render "${quick[@]}" --out "$long/$long/レーダー $long.gif"
[ -s "$long/$long/レーダー $long.gif" ] || fail 'a path of more than 260 letters was not written'
expect 0 'GIF' inspect "$long/$long/レーダー $long.gif"
printf 'precious' >kept.gif
(
    trap '' XFSZ
    ulimit -f 8 # blocks of 1 KiB: the disk is full soon
    expect 3 'Cannot write "kept.gif"' render "${quick[@]}" --out kept.gif
    exit $failures
) || failures=$((failures + 1))
equal 'file before a full disk' 'precious' "$(cat kept.gif)"
chmod a-w kept.gif
expect 3 'it is write-protected' render "${quick[@]}" --out kept.gif
equal 'write-protected file' 'precious' "$(cat kept.gif)"
chmod u+w kept.gif
expect 0 'a-0000.png to a-0005.png' render "${quick[@]}" --as png --set Truecolour=1 --out a.png
equal 'true colour' 'PNG TrueColor 8' "$(identify -format '%m %[type] %z' a-0005.png | sed 's/Alpha//')"
expect 0 'b-0000.png' render "${quick[@]}" --as png --set MainAlphaTrans=1 --out b.png
equal 'opacity channel' 'True' "$(identify -format '%A' b-0000.png | sed 's/Blend/True/')"

# A configuration file, and a setting that wins over it; a test build; a name of its own.
printf 'MainRadarSize = 48\r\nMainDelay = 9\r\n; end' >my.ini
expect 0 '' render "${quick[@]}" --ini my.ini --set mainradarincrement=32 --test
gifsicle --info radar.gif >info
equal 'frames of --set' 8 "$(grep -c '^  + image' info)"
wine "$stage" render "${quick[@]}" --set MainRadarSize=48 --out small.gif >/dev/null 2>&1
equal 'size of --ini' "$(identify -format '%wx%h\n' small.gif | head -n 1)" "$(identify -format '%wx%h\n' radar.gif | head -n 1)"

# The text that the data pad shows at first is there before it is asked for, and a person's own one stays.
expect 0 '' render --effect extra --set MainDatapadSize=64 --out pad.gif
text=$gif_documents/Default.txt
equal 'frames of the first text' "$(wc -l <"$text")" "$(identify pad.gif | wc -l)"
equal 'lines of the first text that are too long' '' "$(tr -d '\r' <"$text" | grep -E '.{37}')"
equal 'characters of the first text that are not plain' '' "$(tr -d '\r\n -~' <"$text")"
printf 'mine\n' >"$text"
expect 0 '' render --effect extra --out pad.gif
equal 'frames of a text of my own' 1 "$(identify pad.gif | wc -l)"
equal 'text of my own' mine "$(cat "$text")"
expect 0 '' render --effect extra --as png --set MainDatapadSize=64 --out pad.png
equal 'files of the other editor' 'Default.jpg Default.txt Default.wav' "$(ls "$png_documents" | xargs)"
rm -r "$png_documents" && touch "$png_documents"
expect 0 'stage: Cannot make the folder' render "${quick[@]}" --as png --out pad.png
rm "$png_documents"

# The plugin's own failure is printed, and the file that was there stays.
printf 'precious' >kept.gif
expect 1 'Memory error' render --effect magic --set MainMagicEyeSound=nowhere.wav --out kept.gif
equal 'file before a failure' 'precious' "$(cat kept.gif)"
equal 'unfinished files' '' "$(find . -name '*.part')"
equal 'private folders' 0 "$(private_folders)"
untouched 'after failures'

# Killed half-way: nothing of the person's changes, and the next run clears up.
wine "$stage" render --effect radar --set MainRadarSize=256 --set MainRadarIncrement=17 --out killed.gif >output 2>errors &
for _ in $(seq 100); do
    grep -q Building errors && break
    sleep 0.1
done
kill -9 $!
wait $! 2>/dev/null
equal 'a killed render' 137 $?
equal 'private folder of a killed render' 1 "$(private_folders)"
[ -e killed.gif ] && fail 'a killed render left a file under the final name'
untouched 'after a kill'
expect 0 '' render "${quick[@]}"
equal 'private folders after the next render' 0 "$(private_folders)"
untouched 'after the next render'

# Other libraries in the plugin's place. tampered <exit text> <perl substitution> <arguments...>
mkdir other && cp "$stage" other/stage.exe
own=$stage
stage=$PWD/other/stage.exe
expect 1 'is missing' list
cp "$own" other/veldran1_x64.dll
expect 1 'is not a plugin' list
tampered() {
    local text=$1 change=$2
    shift 2
    perl -0777 -pe "$change" "$plugin" >other/veldran1_x64.dll
    cmp -s "$plugin" other/veldran1_x64.dll && fail "nothing to change: $change"
    expect 1 "$text" "$@"
}
tampered 'is another plugin' 's/Voltane #1\0/Voltane #2\0/g' list
tampered 'does not know' 's/voltane-effects\t1/voltane-effects\t2/' list
tampered 'damaged at line 2' 's/button\ttest/button\ttoast/; s/\n$//' list
tampered 'cannot redirect' 's/SHGetSpecialFolderLocation\0/SHGetSpecialFolderPathA\0\0\0\0/' render "${quick[@]}"
# The Test button is said to be Cancel, so the dialog closes without having built anything.
tampered 'without having built' 's/(button\ttest\t)(\d+)/$1 . sprintf("%0*d", length $2, 2)/e' render "${quick[@]}" --test
# Code that traps at once, in the place of one of the plugin's two entries.
crash_at() {
    perl -0777 -e '
        open F, "<", $ARGV[0] or die; binmode F; $_ = <F>;
        sub u { unpack "V", substr $_, $_[0], 4 }
        $pe = u(0x3C); $count = unpack "v", substr $_, $pe + 6, 2; $at = $pe + 24 + unpack "v", substr $_, $pe + 20, 2;
        for $i (0 .. $count - 1) { push @sections, [unpack "V4", substr($_, $at + 40 * $i + 8, 16)] }
        sub offset { for $s (@sections) { return $_[0] - $s->[1] + $s->[3] if $_[0] >= $s->[1] && $_[0] < $s->[1] + $s->[2] } }
        $exports = offset(u($pe + 24 + 112)); $functions = offset(u($exports + 28)); $names = offset(u($exports + 32));
        $ordinals = offset(u($exports + 36));
        for $i (0 .. u($exports + 24) - 1) {
            $name = unpack "Z*", substr $_, offset(u($names + 4 * $i)), 64;
            next if $name ne $ARGV[1];
            $ordinal = unpack "v", substr $_, $ordinals + 2 * $i, 2;
            substr($_, offset(u($functions + 4 * $ordinal)), 2) = "\x0F\x0B"; # an undefined instruction
        }
        binmode STDOUT; print' "$plugin" "$1" >other/veldran1_x64.dll
}
crash_at PLUGIN16GetPluginParams
expect 1 '"veldran1_x64.dll" crashed' list
crash_at PLUGIN16DoBuild
printf 'precious' >kept.gif
expect 1 '"veldran1_x64.dll" crashed' render "${quick[@]}" --out kept.gif
equal 'file before a crash' 'precious' "$(cat kept.gif)"
# Its first code, which the system runs while it loads the library.
perl -0777 -pe '$pe = unpack "V", substr $_, 0x3C, 4; substr($_, $pe + 40, 4) = pack "V", 0x10' "$plugin" >other/veldran1_x64.dll
expect 1 'veldran1_x64.dll' list
untouched 'after other libraries'

[ $failures -eq 0 ] && echo "all well"
exit $((failures > 0))
