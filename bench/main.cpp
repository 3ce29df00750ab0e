// bench: how long each stage of the way of the pixels takes. Without arguments, one table for each group of stages.
#include "bench.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string_view>

int main(int argumentCount, char** argumentValues) try {
    const std::span<char*> arguments(argumentValues + 1, static_cast<std::size_t>(argumentCount - 1));
#ifdef __MINGW32__
    if (arguments.size() == 1 && std::string_view(arguments[0]) == "builds") {
        veldran::bench::printBuildHeader();
        return 0;
    }
    if (arguments.size() == 2 && std::string_view(arguments[0]) == "build") {
        veldran::bench::benchBuild(static_cast<int>(std::strtol(arguments[1], nullptr, 10)));
        return 0;
    }
#endif
    if (arguments.empty()) {
        veldran::bench::benchColours();
        veldran::bench::benchPixels();
        veldran::bench::benchSound();
        return 0;
    }
#ifdef VELDRAN_BENCH_PNG
    if (std::string_view(arguments[0]) == "quantize")
        return veldran::bench::quantize(arguments.subspan(1));
#endif
    std::fprintf(stderr, "bench                                                     all tables\n"
                         "bench builds                                              header of the next, on Windows\n"
                         "bench build N                                             a whole build of instrument N\n"
                         "bench quantize FRAMES_DIR OUT_DIR [--colours N] [--dither]   natively, where libpng is\n");
    return 2;
} catch (const std::exception& error) {
    std::fprintf(stderr, "bench: %s\n", error.what());
    return 1;
}
