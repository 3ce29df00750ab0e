#!/usr/bin/env bash
# package.sh BUILD_TREE WORK_FOLDER: the package, unpacked elsewhere, has everything and works from its folder.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/../.."
tree=$1 work=$2
fail() { echo "FAILED: $*" >&2; exit 1; }
rm -rf "$work"
mkdir -p "$work/unpacked here"
bash tools/package/package.sh "$tree" "$work/one.zip"
bash tools/package/package.sh "$tree" "$work/two.zip"
cmp "$work/one.zip" "$work/two.zip" || fail "the same files give another zip"
cd "$work/unpacked here"
unzip -q ../one.zip
cd Voltane-1
for file in README.txt THIRD-PARTY.txt VELDRap1.HTML defaults/Default.{wav,txt,jpg} licences/{zlib,gcc,mingw-w64}.txt; do
    [ -s "$file" ] || fail "$file is missing"
done
wine stage.exe render --effect Altimeter --set MainAltimeterFrames=8 --set MainAltimeterSize=64 --out made.gif \
    >render.log 2>&1 || { cat render.log >&2; fail "stage does not work from the unpacked folder"; }
[ "$(head -c 6 made.gif)" = GIF89a ] || fail "no GIF was written"
