// artpack: packs SVG artwork into the records that the plugin loads, or shows it on one page.
// Does nothing itself: see command_line.h.
#include "artpack/command_line.h"

#include <iostream>
#include <vector>

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    return artpack::run(arguments, std::cerr);
}
