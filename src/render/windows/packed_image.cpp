// Finds the record, allocates what it says, lets the core inflate it.
#include "render/windows/packed_image.h"

#include "base/windows/module.h"
#include "render/packed_record.h"

#include <algorithm>
#include <optional>

namespace veldran {
GlobalBlock unpackImage(std::span<const std::uint8_t> record) {
    const std::optional<std::size_t> size = unpackedSize(record);
    if (!size || *size == 0)
        return {};
    GlobalBlock image = allocateGlobal(*size);
    const LockedBlock lock(image.get());
    // The block may be a little larger than asked for; the image ends where its record says.
    if (!lock || !unpackRecord(record, lock.bytes().first(std::min(*size, lock.bytes().size()))))
        return {};
    return image;
}

GlobalBlock loadPackedImage(int identity) {
    const HRSRC resource = FindResourceA(moduleInstance(), MAKEINTRESOURCEA(identity), "CPX");
    if (resource == nullptr)
        return {};
    const HGLOBAL loaded = LoadResource(moduleInstance(), resource);
    const auto* bytes = static_cast<const std::uint8_t*>(loaded != nullptr ? LockResource(loaded) : nullptr);
    if (bytes == nullptr)
        return {};
    return unpackImage({bytes, SizeofResource(moduleInstance(), resource)});
}

} // namespace veldran
