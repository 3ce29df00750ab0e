// Write, then rename.
// Never leaves half a file, neither under the target's name nor under the temporary one.
#include "artpack/output_file.h"

#include "artpack/error.h"

#include <fstream>
#include <system_error>

namespace artpack {

void writeFile(const std::filesystem::path& file, std::span<const std::uint8_t> bytes) {
    std::filesystem::path part = file;
    part += ".part";

    std::ofstream stream(part, std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    std::error_code error;
    if (stream)
        std::filesystem::rename(part, file, error);
    if (stream && !error)
        return;

    std::error_code ignored;
    std::filesystem::remove(part, ignored);
    throw Error(file.string() + ": cannot be written" + (error ? ": " + error.message() : ""));
}

} // namespace artpack
