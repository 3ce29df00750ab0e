// The shell's drawing parts, called directly: canvases, frame images, the frame list, masks, artwork, error texts.
// Small odd sizes, and every pixel looked at.
#include "base/module.h"
#include "host/message_box.h"
#include "instruments/effect_registry.h"
#include "object_count.h"
#include "render/canvas.h"
#include "render/frame_image.h"
#include "render/frame_list.h"
#include "render/packed_image.h"
#include "render/shape_mask.h"
#include "settings/parameter_reader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <set>
#include <sstream>

#include <commctrl.h>

namespace {

using namespace veldran;

class Shell : public testing::Test {
protected:
    void SetUp() override { setModuleInstance(GetModuleHandleA(nullptr)); }
};

BITMAPINFOHEADER headerOf(HGLOBAL image) {
    const LockedBlock lock(image);
    BITMAPINFOHEADER header{};
    std::memcpy(&header, lock.data(), sizeof header);
    return header;
}

Colour pixelAt(HGLOBAL image, int x, int y) {
    const LockedImage locked(image);
    const std::uint8_t* bytes = locked.view().pixel(x, y);
    return makeColour(bytes[2], bytes[1], bytes[0]);
}

// An image of 24 bits whose channels tell the place, in blocks of `block` pixels.
GlobalBlock placeImage(int width, int height, int block = 1) {
    GlobalBlock image = createImage(width, height, 24);
    const LockedImage locked(image.get());
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            std::uint8_t* pixel = locked.view().pixel(x, y);
            pixel[0] = static_cast<std::uint8_t>(x / block);
            pixel[1] = static_cast<std::uint8_t>(y / block);
            pixel[2] = 200;
        }
    return image;
}

TEST_F(Shell, CanvasHeaderAndRecord) {
    Canvas canvas{};
    ASSERT_EQ(createCanvas(101, 67, canvas), 1);
    const BITMAPINFOHEADER header = *canvas.header;
    EXPECT_EQ(header.biSize, 40u);
    EXPECT_EQ(header.biWidth, 101);
    EXPECT_EQ(header.biHeight, 67);
    EXPECT_EQ(header.biPlanes, 1);
    EXPECT_EQ(header.biBitCount, 24);
    EXPECT_EQ(header.biCompression, static_cast<DWORD>(BI_RGB));
    EXPECT_EQ(header.biSizeImage, 304u * 67u); // 303 bytes a row, padded to four
    EXPECT_EQ(header.biXPelsPerMeter | header.biYPelsPerMeter, 0);
    EXPECT_EQ(header.biClrUsed | header.biClrImportant, 0u);
    EXPECT_EQ(canvas.bounds.left | canvas.bounds.top, 0);
    EXPECT_EQ(canvas.bounds.right, 101);
    EXPECT_EQ(canvas.bounds.bottom, 67);
    EXPECT_EQ(GetCurrentObject(canvas.memoryDc, OBJ_BITMAP), canvas.bitmap);

    EXPECT_EQ(destroyCanvas(canvas, kKeepImage), 1);
    ASSERT_NE(canvas.image, nullptr);
    EXPECT_EQ(canvas.header, nullptr);
    EXPECT_EQ(canvas.bitmap, nullptr);
    EXPECT_EQ(canvas.bits, nullptr);
    EXPECT_EQ(canvas.memoryDc, nullptr);
    EXPECT_EQ(canvas.screenDc, nullptr);
    EXPECT_EQ(GlobalFlags(canvas.image) & GMEM_LOCKCOUNT, 0u);
    EXPECT_GE(GlobalSize(canvas.image), 40u + 304u * 67u);
    EXPECT_EQ(destroyCanvas(canvas, 0), 1); // a second time: only the unlocked block is left
    canvas = {};
    EXPECT_EQ(destroyCanvas(canvas, 0), 1);
}

TEST_F(Shell, CanvasFailuresReleaseEverything) {
    const SIZE sizes[] = {{0, 10}, {10, 0}, {-1, 10}, {10, -1}, {65536, 1}, {1, 65536}, {INT32_MAX, INT32_MAX}};
    const int before = object_count::drawingObjects();
    for (const SIZE& size : sizes) {
        SCOPED_TRACE(testing::Message() << size.cx << " x " << size.cy);
        Canvas canvas{};
        EXPECT_EQ(createCanvas(size.cx, size.cy, canvas), 0);
        EXPECT_EQ(canvas.image, nullptr);
        EXPECT_EQ(canvas.memoryDc, nullptr);
        EXPECT_EQ(canvas.screenDc, nullptr);
        EXPECT_EQ(canvas.bitmap, nullptr);
        EXPECT_FALSE(ScopedCanvas(size.cx, size.cy));
    }
    EXPECT_EQ(object_count::drawingObjects(), before);
}

TEST_F(Shell, LogicalUnitsArePixelsToTheLastRowAndColumn) {
    const int before = object_count::drawingObjects();
    const SIZE sizes[] = {{586, 586}, {101, 67}, {1, 1}, {2, 300}, {640, 3}, {1550, 1550}, {566, 567}};
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
        const LockedImage locked(image.get());
        ASSERT_TRUE(locked);
        EXPECT_EQ(pixelAt(image.get(), right, bottom), right > 0 && bottom > 0 ? 0x030201u : 0x090807u);
        if (right > 0 && bottom > 0) {
            EXPECT_EQ(pixelAt(image.get(), right, 0), 0x060504u);
            EXPECT_EQ(pixelAt(image.get(), 0, bottom), 0x090807u);
        }
        int white = 0;
        for (int y = 0; y <= bottom; ++y)
            for (int x = 0; x <= right; ++x)
                white += std::memcmp(locked.view().pixel(x, y), "\xFF\xFF\xFF", 3) == 0;
        EXPECT_EQ(white, size.cx * size.cy - (right > 0 && bottom > 0 ? 3 : 1));
    }
    EXPECT_EQ(object_count::drawingObjects(), before);
}

TEST_F(Shell, ImagesAreCopiedWhole) {
    const GlobalBlock image = placeImage(7, 5);
    const GlobalBlock copy = copyImage(image.get());
    ASSERT_TRUE(copy);
    EXPECT_NE(copy.get(), image.get());
    const LockedBlock a(image.get());
    const LockedBlock b(copy.get());
    EXPECT_TRUE(std::equal(a.bytes().begin(), a.bytes().end(), b.bytes().begin(), b.bytes().end()));
    EXPECT_FALSE(copyImage(nullptr));
    const GlobalBlock empty(GlobalAlloc(GMEM_MOVEABLE, 0));
    EXPECT_FALSE(copyImage(empty.get()));
}

TEST_F(Shell, ScaledSidesRoundHalvesUp) {
    const struct {
        SIZE size;
        int percentX;
        int percentY;
        SIZE scaled;
    } cases[] = {{{255, 255}, 50, 50, {128, 128}}, {{586, 586}, 33, 33, {193, 193}}, {{1550, 1550}, 25, 25, {388, 388}},
                 {{9, 7}, 100, 100, {9, 7}},       {{10, 4}, 200, 25, {20, 1}},      {{3, 3}, 1, 1, {0, 0}}};
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.size.cx << " x " << row.size.cy << " at " << row.percentX);
        const GlobalBlock image = placeImage(row.size.cx, row.size.cy, 8);
        const GlobalBlock scaled = EmitFrame(image.get(), row.percentX, row.percentY);
        ASSERT_EQ(static_cast<bool>(scaled), row.scaled.cx > 0); // no bitmap has no pixels
        if (!scaled)
            continue;
        EXPECT_EQ(headerOf(scaled.get()).biWidth, row.scaled.cx);
        EXPECT_EQ(headerOf(scaled.get()).biHeight, row.scaled.cy);
        EXPECT_EQ(headerOf(scaled.get()).biBitCount, 24);
        EXPECT_EQ(pixelAt(scaled.get(), 0, 0) & 0xFF, 200u);
    }
    // Four pixels of a block become one of its value.
    const GlobalBlock blocks = placeImage(8, 6, 2);
    const GlobalBlock half = EmitFrame(blocks.get(), 50, 50);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(pixelAt(half.get(), x, y), makeColour(200, y, x));
    EXPECT_FALSE(EmitFrame(nullptr, 50, 50));
    const GlobalBlock deep = createImage(6, 6, 32);
    EXPECT_EQ(headerOf(EmitFrame(deep.get(), 50, 50).get()).biBitCount, 32);
    const GlobalBlock indexed = createImage(6, 6, 8);
    EXPECT_EQ(headerOf(EmitFrame(indexed.get(), 50, 50).get()).biBitCount, 24);
}

TEST_F(Shell, BlankFramesAreWhite) {
    const GlobalBlock frame = blankFrame(3, 2);
    EXPECT_EQ(headerOf(frame.get()).biSizeImage, 24u);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x)
            EXPECT_EQ(pixelAt(frame.get(), x, y), 0xFFFFFFu);
    EXPECT_FALSE(blankFrame(0, 5));
}

TEST_F(Shell, AlphaIsTheLowByteOfItsImage) {
    const GlobalBlock colours = placeImage(5, 4);
    const GlobalBlock alpha = createImage(3, 4, 24);
    {
        const LockedImage locked(alpha.get());
        const std::uint8_t bytes[] = {0x56, 0x34, 0x12};
        std::memcpy(locked.view().pixel(2, 1), bytes, 3);
    }
    const GlobalBlock merged = mergeAlpha(colours.get(), alpha.get());
    const LockedImage locked(merged.get());
    ASSERT_TRUE(locked);
    EXPECT_EQ(locked.view().bits, 32);
    EXPECT_EQ(locked.view().width, 5);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 5; ++x) {
            EXPECT_EQ(pixelAt(merged.get(), x, y), makeColour(200, y, x));
            EXPECT_EQ(locked.view().pixel(x, y)[3], x == 2 && y == 1 ? 0x56 : 0);
        }
    EXPECT_FALSE(mergeAlpha(colours.get(), nullptr));
    EXPECT_FALSE(mergeAlpha(nullptr, alpha.get()));
}

TEST_F(Shell, FrameListHoldsExactlyItsRecords) {
    const std::size_t before = object_count::heapBytes();
    FrameList list;
    for (std::uint32_t i = 0; i < 10; ++i) {
        FrameRecord record{};
        record.image = createImage(100, 100, 24).release();
        record.changeMask = i % 2 == 0 ? createImage(100, 100, 1).release() : nullptr;
        record.delay = 7 * i;
        record.transparent = i;
        std::memset(record.instrumentData, static_cast<int>(i), sizeof record.instrumentData);
        ASSERT_EQ(append(list, record), 1);
        EXPECT_EQ(list.count, static_cast<std::int32_t>(i + 1));
        EXPECT_EQ(GlobalSize(list.block), (i + 1) * sizeof(FrameRecord));
        EXPECT_EQ(GlobalFlags(list.block) & GMEM_LOCKCOUNT, 0u);
    }
    {
        const LockedBlock lock(list.block);
        const auto* records = reinterpret_cast<const FrameRecord*>(lock.data());
        for (std::uint32_t i = 0; i < 10; ++i) {
            EXPECT_EQ(records[i].delay, 7 * i);
            EXPECT_EQ(records[i].transparent, i);
            EXPECT_EQ(records[i].instrumentData[31], i);
        }
    }
    freeAll(list);
    EXPECT_EQ(list.count, 0);
    EXPECT_EQ(list.block, nullptr);
    EXPECT_LT(object_count::heapBytes(), before + 10000); // an image has 30000 bytes
    freeAll(list);
}

TEST_F(Shell, MasksAreWhiteInsideAndBlackOutside) {
    const struct {
        const char* name;
        GlobalBlock mask;
    } cases[] = {{"ellipse", ellipseMask(100, 60, {0, 0, 200, 120}, 2)},
                 {"plain ellipse", ellipseMask(100, 60, {0, 0, 100, 60}, 1)},
                 {"reduced ellipse", ellipseMaskReduced(300, 180, {0, 0, 300, 180}, 33)},
                 {"rounded", roundedRectangleMask(100, 60, 100, 60, 2)}}; // corners so large that it is an ellipse
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        ASSERT_TRUE(row.mask);
        const BITMAPINFOHEADER header = headerOf(row.mask.get());
        const bool reduced = header.biWidth == 99;
        EXPECT_TRUE(reduced || header.biWidth == 100);
        EXPECT_EQ(header.biHeight, reduced ? 59 : 60); // 59.4
        std::set<Colour> greys;
        for (int y = 0; y < header.biHeight; ++y)
            for (int x = 0; x < header.biWidth; ++x) {
                const Colour colour = pixelAt(row.mask.get(), x, y);
                const double radius = std::hypot((x + 0.5 - header.biWidth / 2.0) / (header.biWidth / 2.0),
                                                 (y + 0.5 - header.biHeight / 2.0) / (header.biHeight / 2.0));
                ASSERT_TRUE(radius > 0.94 || colour == 0xFFFFFF) << x << ' ' << y;
                ASSERT_TRUE(radius < 1.06 || colour == 0) << x << ' ' << y;
                ASSERT_EQ(colour, (colour & 0xFF) * 0x010101);
                greys.insert(colour);
            }
        EXPECT_EQ(greys.size() > 2, std::string(row.name) != "plain ellipse"); // smoothed where drawn larger
    }
    EXPECT_FALSE(ellipseMask(0, 10, {0, 0, 10, 10}, 2));
}

TEST_F(Shell, GraticuleIsUnpackedFromTheResources) {
    const GlobalBlock image = loadPackedImage(7210);
    ASSERT_TRUE(image);
    const BITMAPINFOHEADER header = headerOf(image.get());
    EXPECT_EQ(header.biWidth, 526);
    EXPECT_EQ(header.biHeight, 526);
    EXPECT_EQ(header.biBitCount, 8);
    const LockedImage locked(image.get());
    ASSERT_TRUE(locked);
    int ink = 0;
    for (int y = 0; y < 526; ++y)
        for (int x = 0; x < 526; ++x)
            ink += *colourBytes(locked.view(), locked.view().row(y) + x) < 128;
    EXPECT_GT(ink, 526); // at least the cross hairs
    EXPECT_LT(ink, 526 * 526 / 4);
    EXPECT_EQ(*colourBytes(locked.view(), locked.view().row(0)), 255); // nothing outside of the disc
    EXPECT_FALSE(loadPackedImage(7209));
}

TEST_F(Shell, ErrorTextsAreNeverEmpty) {
    std::istringstream texts("Ok;Error opening file;Corrupted file;Error reading file;Function cancelled;"
                             "Unsupported function;Memory error;Information error;Unsupported format;"
                             "Error renaming file;Error creating file;Error writing file;Too many colours;"
                             "Unsuitable image;Resource error;Library error;Fatal error");
    int code = 0;
    for (std::string text; std::getline(texts, text, ';'); ++code)
        EXPECT_EQ(errorText(static_cast<ErrorCode>(code)), text);
    EXPECT_EQ(code, 17);
    EXPECT_EQ(errorText(static_cast<ErrorCode>(17)), "String table error - this application may be damaged");
}

class ScratchDialog : public Shell {
protected:
    void SetUp() override {
        Shell::SetUp();
        dialog = CreateWindowA("#32770", "", WS_POPUP, 0, 0, 400, 300, nullptr, nullptr, nullptr, nullptr);
        ASSERT_NE(dialog, nullptr);
    }
    void TearDown() override { DestroyWindow(dialog); }

    HWND add(const char* windowClass, const std::string& text, int identity, DWORD style = 0) {
        return CreateWindowA(windowClass, text.c_str(), WS_CHILD | style, 0, 0, 50, 20, dialog,
                             reinterpret_cast<HMENU>(static_cast<INT_PTR>(identity)), nullptr, nullptr);
    }

    HWND dialog = nullptr;
};

TEST_F(ScratchDialog, NumbersAreLimitedByTheirSpinners) {
    const struct {
        const char* text;
        const char* range; // null: no spinner
        int value;
    } cases[] = {{"500", "30,180,90", 180},
                 {"5", "30,180,90", 30},
                 {"90", "30,180,90", 90},
                 {"-7", "-60,60,0", -7},
                 {"-99", "-60,60,0", -60},
                 {"", "30,180,90", 30},
                 {"4294967295", "1,32768,1", 32768},
                 {"", nullptr, 0},
                 {"101", nullptr, 100},
                 {"50", nullptr, 50},
                 {"50", "rubbish", 50},
                 {"500", "200", 100}};
    int identity = 100;
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.text << " in " << (row.range != nullptr ? row.range : "nothing"));
        add("EDIT", row.text, identity);
        if (row.range != nullptr)
            add(UPDOWN_CLASSA, row.range, identity + 10000);
        EXPECT_EQ(readParameter(dialog, identity), row.value);
        ++identity;
    }
    EXPECT_EQ(readParameter(dialog, 99), 0); // no such control
}

TEST_F(ScratchDialog, OnlyTheChosenInstrumentIsShown) {
    const int identities[] = {99, 100, 329, 330, 340, 350, 351, 670, 671, 10099, 10100, 10340, 10670, 10671, -1};
    for (const int identity : identities)
        add("STATIC", "", identity, WS_VISIBLE);
    const auto shown = [&] {
        std::set<int> all;
        for (const int identity : identities)
            if ((GetWindowLongA(GetDlgItem(dialog, identity), GWL_STYLE) & WS_VISIBLE) != 0)
                all.insert(identity);
        return all;
    };
    const std::set<int> others = {-1, 99, 671, 10099, 10671};
    showInstrumentControls(dialog, -1);
    EXPECT_EQ(shown(), others);
    std::set<int> radar = others;
    radar.insert({329, 330, 340, 350, 10340});
    showInstrumentControls(dialog, 15);
    EXPECT_EQ(shown(), radar);
    showInstrumentControls(dialog, -1);
    EXPECT_EQ(shown(), others);
}

} // namespace
