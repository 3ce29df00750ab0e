#!/usr/bin/env bash
# package.sh BUILD_TREE ZIP: packs what a person needs on Windows into a zip file, in a folder of its own; the same files
# give the same zip. Run from the project's root folder.
set -euo pipefail
tree=$1 zip=$(realpath -m "$2")
here=tools/package
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
folder=$work/Voltane-1
mkdir -p "$folder/defaults" "$folder/licences" "$(dirname "$zip")"

cp "$tree/bin/veldran1_x64.dll" "$tree/bin/stage.exe" "$tree/bin/VELDRap1.HTML" "$folder"
cp "$tree/src/defaults/Default.wav" "$tree/src/defaults/Default.jpg" stage/resources/Default.txt "$folder/defaults"
# Notepad of older systems wants lines to end in CR LF.
for text in README.txt THIRD-PARTY.txt; do sed 's/$/\r/' "$here/$text" >"$folder/$text"; done
for licence in zlib:libz-mingw-w64 gcc:gcc-mingw-w64-base mingw-w64:mingw-w64-common; do
    sed 's/$/\r/' "/usr/share/doc/${licence#*:}/copyright" >"$folder/licences/${licence%%:*}.txt"
done
chmod -R u=rwX,go=rX "$folder"
find "$folder" -exec touch -d @"$(git log -1 --format=%ct)" {} +
rm -f "$zip"
(cd "$work" && find Voltane-1 | LC_ALL=C sort | TZ=UTC zip -q -X -9 "$zip" -@)
