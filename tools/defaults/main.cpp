// Writes one of the default files:
//   defaults sound FILE.wav      4 s, stereo, 44.1 kHz, 16 bits; ends where it begins, so that it can be looped
//   defaults picture FILE.ppm    1024 x 64, for an encoder that makes a JPEG of it
// The same bytes every time. Exit codes: 0 done, 2 wrong usage, 3 the file could not be written.
#include "defaults/mixdown.h"
#include "defaults/picture.h"
#include "defaults/song.h"

#include <cstdio>
#include <fstream>
#include <string>
#include <string_view>

int main(int argc, char** argv) {
    const std::string_view what = argc == 3 ? argv[1] : "";
    if (what != "sound" && what != "picture") {
        std::fputs("usage: defaults sound|picture FILE\n", stderr);
        return 2;
    }
    const std::string bytes = what == "sound" ? defaults::waveFile(defaults::song()) : defaults::sunrise();
    std::ofstream file(argv[2], std::ios::binary);
    file << bytes;
    file.close();
    return file ? 0 : 3;
}
