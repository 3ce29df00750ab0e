# What ./run and ./test share: packages, the build trees, the Wine prefix. Sourced by bash from the project's root folder;
# every function ends the script with a message when it cannot do its work.

root=$(pwd)
build_packages="cmake ninja-build g++ g++-mingw-w64-x86-64-posix libz-mingw-w64-dev zlib1g-dev pkg-config \
wine64 wine fonts-liberation librsvg2-dev libcairo2-dev libjpeg-turbo-progs"

test_packages="googletest libgtest-dev clang-format gifsicle imagemagick perl zip unzip pngcheck python3 python3-pil \
pulseaudio pulseaudio-utils"

say() { printf '%s\n' "$*" >&2; }
die() { say "$@"; exit 1; }

# Installs those of the packages that are missing, when this user may; otherwise says how.
need_packages() {
    local missing=() package command
    for package in "$@"; do
        dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    command="apt-get update && apt-get install -y --no-install-recommends ${missing[*]}"
    if [ "$(id -u)" -eq 0 ]; then
        say "Installing: ${missing[*]}"
        DEBIAN_FRONTEND=noninteractive sh -c "$command" >&2 || die "Could not install the packages with: $command"
    elif sudo -n true 2>/dev/null; then
        say "Installing: ${missing[*]}"
        sudo -n DEBIAN_FRONTEND=noninteractive sh -c "$command" >&2 || die "Could not install the packages with: $command"
    else
        die "Packages are missing. Install them with:" "    sudo sh -c '$command'"
    fi
}

# configure PRESET: when that has not been done, or before GoogleTest was installed.
configure() {
    local preset=$1 log=build/$1.log
    mkdir -p build
    [ ! -d /usr/src/googletest ] || [ "$preset" != windows ] || [ -d build/windows/googletest ] || rm -f build/windows/build.ninja
    [ ! -f "build/$preset/build.ninja" ] || return 0
    cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" >&2; die "Could not configure $preset"; }
}

# build PRESET [TARGET...]: quiet unless something is wrong.
build() {
    local preset=$1 log=build/$1.log
    configure "$preset"
    shift
    say "Building $preset"
    cmake --build --preset "$preset" ${1:+--target "$@"} >"$log" 2>&1 || { cat "$log" >&2; die "Could not build $preset"; }
}

# A Wine prefix of the build tree's own, without display: dialogs work, nothing is shown.
use_wine() {
    export WINEPREFIX=$root/build/wine WINEDEBUG=-all
    unset DISPLAY WAYLAND_DISPLAY
    [ -f "$WINEPREFIX/ready-alone" ] && return
    say "Preparing Wine (once)"
    rm -rf "$WINEPREFIX"
    mkdir -p "$WINEPREFIX"
    { wine wineboot -i && wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f; } >build/wine.log 2>&1 ||
        { cat build/wine.log >&2; die "Could not prepare Wine"; }
    # The server has looked for a display already; the next one will not.
    wineserver -k || true
    # Documents are folders of the prefix, not links into this person's own: stage writes there.
    find "$WINEPREFIX/drive_c/users" -type l -exec sh -c 'rm "$1" && mkdir "$1"' sh {} \;
    touch "$WINEPREFIX/ready-alone"
}

# build_beside_wine PRESET [TARGET...]: builds while Wine is prepared, which waits most of the time.
build_beside_wine() {
    (use_wine) &
    local preparing=$!
    build "$@"
    wait $preparing || exit 1
    use_wine
}
