// The shell's drawing parts, called directly: canvases and refusals.
// Small odd sizes, and every pixel looked at.
#include "base/windows/module.h"
#include "object_count.h"
#include "render/windows/canvas.h"
#include "render/windows/frame_image.h"
#include "render/windows/packed_image.h"
#include "render/windows/shape_mask.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using namespace veldran;

class Shell : public testing::Test {
protected:
    void SetUp() override { setModuleInstance(GetModuleHandleA(nullptr)); }
};

Colour pixelAt(HGLOBAL image, int x, int y) {
    const LockedImage locked(image);
    const std::uint8_t* bytes = locked.view().pixel(x, y);
    return makeColour(bytes[2], bytes[1], bytes[0]);
}

TEST_F(Shell, CanvasGivesItsImageAwayOnce) {
    Canvas canvas{};
    ASSERT_EQ(createCanvas(101, 67, canvas), 1);
    EXPECT_EQ(canvas.header->biSizeImage, 304u * 67u); // 303 bytes a row, padded to four
    EXPECT_TRUE(canvas.header->biBitCount == 24 && canvas.bounds.right == 101 && canvas.bounds.bottom == 67);
    EXPECT_EQ(destroyCanvas(canvas, kKeepImage), 1);
    ASSERT_NE(canvas.image, nullptr);
    EXPECT_TRUE(canvas.bits == nullptr && canvas.memoryDc == nullptr);
    EXPECT_EQ(GlobalFlags(canvas.image) & GMEM_LOCKCOUNT, 0u);
    EXPECT_EQ(destroyCanvas(canvas, 0), 1); // a second time: only the unlocked block is left
    canvas = {};
    EXPECT_EQ(destroyCanvas(canvas, 0), 1);
}

TEST_F(Shell, CanvasFailuresReleaseEverything) {
    const SIZE sizes[] = {{0, 10},    {10, 0},    {-1, 10},       {10, -1},
                          {65536, 1}, {1, 65536}, {28089, 26891}, {INT32_MAX, INT32_MAX}};
    const int before = object_count::drawingObjects();
    for (const SIZE& size : sizes) {
        SCOPED_TRACE(testing::Message() << size.cx << " x " << size.cy);
        Canvas canvas{};
        EXPECT_EQ(createCanvas(size.cx, size.cy, canvas), 0);
        EXPECT_EQ(canvas.image, nullptr);
        EXPECT_FALSE(ScopedCanvas(size.cx, size.cy));
    }
    EXPECT_EQ(object_count::drawingObjects(), before);
}

TEST_F(Shell, LogicalUnitsArePixelsToTheLastRowAndColumn) {
    const int before = object_count::drawingObjects();
    const SIZE sizes[] = {{101, 67}, {2, 300}, {1550, 1550}, {566, 567}};
    for (const SIZE& size : sizes) {
        SCOPED_TRACE(testing::Message() << size.cx << " x " << size.cy);
        const int right = size.cx - 1;
        const int bottom = size.cy - 1;
        ScopedCanvas canvas(size.cx, size.cy);
        ASSERT_TRUE(canvas);
        FillRect(canvas.dc(), &canvas.bounds(), static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
        SetPixelV(canvas.dc(), right, bottom, RGB(1, 2, 3));
        SetPixelV(canvas.dc(), right, 0, RGB(4, 5, 6));
        SetPixelV(canvas.dc(), 0, bottom, RGB(7, 8, 9));
        const GlobalBlock image = canvas.finish();
        EXPECT_EQ(pixelAt(image.get(), right, bottom), 0x030201u);
        EXPECT_EQ(pixelAt(image.get(), right, 0), 0x060504u);
        EXPECT_EQ(pixelAt(image.get(), 0, bottom), 0x090807u);
        const LockedImage locked(image.get());
        int white = 0;
        for (int y = 0; y <= bottom; ++y)
            for (int x = 0; x <= right; ++x)
                white += std::memcmp(locked.view().pixel(x, y), "\xFF\xFF\xFF", 3) == 0;
        EXPECT_EQ(white, size.cx * size.cy - 3);
    }
    EXPECT_EQ(object_count::drawingObjects(), before);
}

TEST_F(Shell, WhatIsMissingOrEmptyGivesNoImage) {
    EXPECT_FALSE(EmitFrame(nullptr, 50, 50));
    EXPECT_FALSE(EmitFrame(createImage(3, 3, 24).get(), 1, 1));
    EXPECT_FALSE(blankFrame(0, 5));
    EXPECT_FALSE(copyImage(nullptr));
    EXPECT_FALSE(mergeAlpha(nullptr, nullptr));
    EXPECT_FALSE(ellipseMask(0, 10, {0, 0, 10, 10}, 2));
    EXPECT_FALSE(roundedRectangleMask(10, 10, 4, 4, 0));
    EXPECT_FALSE(bezelMask(10, 0, {BezelStyle::Round, 2, 2}));
    EXPECT_FALSE(loadPackedImage(7199)); // no such resource
}

} // namespace
