// Copying from the screen; see the header.
#include "photograph.h"

#include "base/windows/gdi.h"

#include <fstream>
#include <vector>

namespace screenshots {
namespace {

void writeBitmapFile(const std::string& path, const BITMAPINFOHEADER& header, const std::vector<char>& pixels) {
    BITMAPFILEHEADER file{};
    file.bfType = 0x4D42; // "BM"
    file.bfOffBits = sizeof file + sizeof header;
    file.bfSize = file.bfOffBits + static_cast<DWORD>(pixels.size());
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(&file), sizeof file);
    out.write(reinterpret_cast<const char*>(&header), sizeof header);
    out.write(pixels.data(), static_cast<std::streamsize>(pixels.size()));
}

} // namespace

void photograph(HWND window, const std::string& path) {
    RECT box{};
    GetWindowRect(window, &box);
    const int width = box.right - box.left;
    const int height = box.bottom - box.top;
    const HDC screen = GetDC(nullptr);
    {
        const veldran::MemoryDc memory(CreateCompatibleDC(screen));
        const veldran::Bitmap bitmap(CreateCompatibleBitmap(screen, width, height));
        {
            const veldran::Selected selected(memory.get(), bitmap.get());
            BitBlt(memory.get(), 0, 0, width, height, screen, box.left, box.top, SRCCOPY);
        }
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        std::vector<char> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
        GetDIBits(memory.get(), bitmap.get(), 0, static_cast<UINT>(height), pixels.data(), &info, DIB_RGB_COLORS);
        writeBitmapFile(path, info.bmiHeader, pixels);
    }
    ReleaseDC(nullptr, screen);
}

} // namespace screenshots
