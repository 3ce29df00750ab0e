// Decoding through the Windows Imaging Component; see the header.
#include "windows/plugin/image_loader.h"

#include <wincodec.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace stage {
namespace {

struct LoadedPicture {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::uint8_t> pixels; // top-down, blue, green, red, opacity; not premultiplied
};

constexpr std::uint32_t kLargestSide = 16384; // keeps a block below 2^30 bytes

bool decode(const std::wstring& path, LoadedPicture& picture) {
    ComReference<IWICImagingFactory> factory;
    ComReference<IWICBitmapDecoder> decoder;
    ComReference<IWICBitmapFrameDecode> frame;
    ComReference<IWICFormatConverter> converter;
    if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                reinterpret_cast<void**>(factory.put()))) ||
        FAILED(factory->CreateDecoderFromFilename(path.c_str(), nullptr, GENERIC_READ, WICDecodeMetadataCacheOnDemand,
                                                  decoder.put())) ||
        FAILED(decoder->GetFrame(0, frame.put())) || FAILED(factory->CreateFormatConverter(converter.put())) ||
        FAILED(converter->Initialize(frame.get(), GUID_WICPixelFormat32bppBGRA, WICBitmapDitherTypeNone, nullptr, 0,
                                     WICBitmapPaletteTypeCustom)) ||
        FAILED(converter->GetSize(&picture.width, &picture.height)))
        return false;
    if (picture.width == 0 || picture.height == 0 || picture.width > kLargestSide || picture.height > kLargestSide)
        return false;
    const UINT stride = picture.width * 4;
    picture.pixels.resize(std::size_t{stride} * picture.height);
    return SUCCEEDED(
        converter->CopyPixels(nullptr, stride, static_cast<UINT>(picture.pixels.size()), picture.pixels.data()));
}

bool isOpaque(const LoadedPicture& picture) {
    for (std::size_t i = 3; i < picture.pixels.size(); i += 4)
        if (picture.pixels[i] != 255)
            return false;
    return true;
}

} // namespace

GlobalBlock loadImage(const std::wstring& path) {
    LoadedPicture picture;
    if (!decode(path, picture))
        return {};
    const std::size_t pixelBytes = isOpaque(picture) ? 3 : 4;
    const std::size_t stride = (picture.width * pixelBytes + 3) / 4 * 4;
    BITMAPINFOHEADER header{};
    header.biSize = sizeof(header);
    header.biWidth = static_cast<LONG>(picture.width);
    header.biHeight = static_cast<LONG>(picture.height);
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(pixelBytes * 8);
    header.biSizeImage = static_cast<DWORD>(stride * picture.height);

    GlobalBlock block(GlobalAlloc(GHND, sizeof(header) + stride * picture.height));
    if (!block)
        return {};
    const LockedBlock locked(block.get());
    auto* bytes = static_cast<std::uint8_t*>(locked.bytes());
    if (bytes == nullptr)
        return {};
    std::memcpy(bytes, &header, sizeof(header));
    for (std::size_t y = 0; y < picture.height; ++y) {
        const std::uint8_t* from = picture.pixels.data() + (picture.height - 1 - y) * picture.width * 4;
        std::uint8_t* to = bytes + sizeof(header) + y * stride;
        for (std::size_t x = 0; x < picture.width; ++x, from += 4, to += pixelBytes)
            std::memcpy(to, from, pixelBytes);
    }
    return block;
}

} // namespace stage
