// The multimedia file functions walk the chunks; they know about padding and nesting.
#include "sound/windows/wave_file.h"

#include <algorithm>

#include <mmsystem.h>

namespace veldran {
namespace {

void closeMedia(HMMIO file) {
    mmioClose(file, 0);
}
using MediaFile = Owner<HMMIO, closeMedia>;

bool readExactly(HMMIO file, void* to, std::uint32_t bytes) {
    const LONG wanted = static_cast<LONG>(bytes);
    return mmioRead(file, static_cast<HPSTR>(to), wanted) == wanted;
}

bool descendInto(HMMIO file, const char (&name)[5], MMCKINFO& chunk, MMCKINFO& parent) {
    chunk.ckid = mmioStringToFOURCCA(name, 0);
    return mmioDescend(file, &chunk, &parent, MMIO_FINDCHUNK) == MMSYSERR_NOERROR;
}

// Leaves the file at the first byte of the samples.
std::optional<WaveHeader> findSamples(HMMIO file) {
    MMCKINFO riff{};
    riff.fccType = mmioStringToFOURCCA("WAVE", 0);
    if (mmioDescend(file, &riff, nullptr, MMIO_FINDRIFF) != MMSYSERR_NOERROR)
        return std::nullopt;
    MMCKINFO chunk{};
    if (!descendInto(file, "fmt ", chunk, riff))
        return std::nullopt;
    WaveHeader header{};
    const auto formatBytes = std::min<std::uint32_t>(chunk.cksize, sizeof header.format);
    if (!readExactly(file, &header.format, formatBytes) || header.format.tag != kPcmTag)
        return std::nullopt;
    if (mmioAscend(file, &chunk, 0) != MMSYSERR_NOERROR || !descendInto(file, "data", chunk, riff))
        return std::nullopt;
    header.dataBytes = chunk.cksize;
    return header;
}

// Whether the file has `bytes` more from where it stands; a damaged length must not take memory that no read will fill.
bool holds(HMMIO file, std::uint32_t bytes) {
    const LONG here = mmioSeek(file, 0, SEEK_CUR);
    const LONG end = mmioSeek(file, 0, SEEK_END);
    return here >= 0 && end >= here && bytes <= static_cast<std::uint32_t>(end - here) &&
           mmioSeek(file, here, SEEK_SET) == here;
}

// The multimedia functions are not known to be careful with longer paths, and no file has one.
MediaFile openMedia(std::string& path) {
    if (path.empty() || path.size() >= MAX_PATH)
        return {};
    return MediaFile(mmioOpenA(path.data(), nullptr, MMIO_READ | MMIO_ALLOCBUF));
}

} // namespace

WaveSound readWaveFile(std::string path) {
    const MediaFile file = openMedia(path);
    if (!file)
        return {};
    const std::optional<WaveHeader> header = findSamples(file.get());
    if (!header || !holds(file.get(), header->dataBytes))
        return {};
    WaveSound sound{allocateGlobal(sizeof(WaveFormat) + header->dataBytes), header->dataBytes};
    const LockedBlock locked(sound.block.get());
    if (!locked)
        return {};
    *reinterpret_cast<WaveFormat*>(locked.data()) = header->format;
    if (!readExactly(file.get(), locked.data() + sizeof(WaveFormat), header->dataBytes))
        return {};
    return sound;
}

std::optional<WaveHeader> readWaveHeader(std::string path) {
    const MediaFile file = openMedia(path);
    return file ? findSamples(file.get()) : std::nullopt;
}

} // namespace veldran
