// The bar graph's pictures in true colour, and the images that a host gives it, good ones and bad ones.
#include "built_frames.h"

#include <cstring>

namespace {

using namespace recording;

// A flat bar of 40 x 4 (too shallow for light and shade) without border and padding, in telling colours.
constexpr char kBar[] =
    "MainEffect = 5\nTruecolour = 1\nMainBarGraphWidth = 40\nMainBarGraphDepth = 4\n"
    "MainBarGraphFrames = 5\nMainBarGraphUseBorder = 0\nMainBarGraphUsePadding = 0\n"
    "MainBarGraphLeftColor = 255\nMainBarGraphRightColor = 65280\nMainBarGraphPanelColor = 16711680\n";
constexpr COLORREF kLeft = 0x0000FF;
constexpr COLORREF kPanel = 0xFF0000;

std::vector<Frame> frames(const std::string& settings) {
    return buildFrames(kBar + settings);
}

TEST(BarGraph, FillsFromLeftToRight) {
    const std::vector<Frame> solid = frames("MainBarGraphType = 1\n");
    ASSERT_EQ(solid.size(), 5u);
    for (int i = 0; i < 5; ++i)
        for (int x = 0; x < 40; ++x)
            EXPECT_EQ(solid[static_cast<std::size_t>(i)].colour(x, 2), x < 10 * i ? kLeft : kPanel) << i << ' ' << x;
    // Half a column is half filled, or whole where edges are hard.
    const std::string half = "MainBarGraphType = 1\nMainBarGraphFrames = 17\n";
    EXPECT_EQ(frames(half)[1].colour(2, 0), RGB(128, 0, 127));
    EXPECT_EQ(frames(half + "MainAntialias = 0\n")[1].colour(2, 0), kLeft);
    const Frame gradient = frames("")[4];
    EXPECT_NEAR(GetRValue(gradient.colour(0, 1)), 252, 3);
    EXPECT_NEAR(GetRValue(gradient.colour(20, 1)), 125, 4);
    EXPECT_NEAR(GetGValue(gradient.colour(39, 1)), 252, 3);
}

TEST(BarGraph, SegmentsLightUpOneByOne) {
    const std::vector<Frame> seen =
        frames("MainBarGraphType = 3\nMainBarGraphFrames = 11\nMainBarGraphPanelColor = 0\n");
    ASSERT_EQ(seen.size(), 11u);
    for (int i = 0; i < 11; ++i)
        for (int segment = 0; segment < 10; ++segment) { // of 3 pixels and a gap
            const COLORREF colour = seen[static_cast<std::size_t>(i)].colour(4 * segment + 1, 1);
            EXPECT_EQ(GetRValue(colour) + GetGValue(colour) > 200, segment < i) << i << ' ' << segment;
        }
    EXPECT_NE(seen[0].colour(1, 1), 0u);  // dark ones can be seen
    EXPECT_EQ(seen[10].colour(3, 1), 0u); // gaps
}

TEST(BarGraph, BorderPaddingAndCornersLieAround) {
    const std::string around =
        "MainBarGraphType = 1\nMainBarGraphDepth = 20\nMainBarGraphFrames = 2\n"
        "MainBarGraphUseBorder = 1\nMainBarGraphBorderSize = 3\nMainBarGraphUsePadding = 1\n"
        "MainBarGraphPadSize = 5\nMainBarGraphBorderColor = 0\nMainBarGraphPadColor = 16777215\n";
    const Frame square = frames(around)[1];
    ASSERT_EQ(square.width(), 56);
    ASSERT_EQ(square.height(), 36);
    const std::pair<int, COLORREF> columns[] = {{0, 0}, {2, 0}, {3, 0xFFFFFF}, {7, 0xFFFFFF}, {8, kLeft}};
    for (const auto& [x, colour] : columns)
        EXPECT_TRUE(square.colour(x, 18) == colour && square.colour(55 - x, 18) == colour) << x;
    EXPECT_GT(GetGValue(square.colour(28, 8)), 80);   // lit above
    EXPECT_LT(GetRValue(square.colour(28, 27)), 225); // shaded below
    const Frame round = frames(around + "MainBarGraphRoundCorners = 1\nMainBarGraphRoundness = 100\n"
                                        "MainAlphaTrans = 1\nUseAlphaGreyBack = 0\n")[1];
    ASSERT_EQ(round.bits(), 32);
    for (const int x : {0, 55})
        for (const int y : {0, 35}) {
            EXPECT_EQ(round.colour(x, y) & 0xFFFFFF, kPanel);
            EXPECT_EQ(round.alpha(x, y), 0);
        }
    EXPECT_EQ(round.alpha(28, 0), 255);
    EXPECT_EQ(round.alpha(1, 18), 255);
}

constexpr std::size_t kHeader = sizeof(BITMAPINFOHEADER);

struct Layout {
    int bits;
    LONG width = 40;
    LONG height = 4;
    DWORD compression = BI_RGB;
    DWORD coloursUsed = 0;
    DWORD headerSize = kHeader;
    WORD planes = 1;
};

// An image as a host gives it: a header, then bytes that count up by `step` from 255.
HGLOBAL imageBlock(const Layout& layout, std::size_t bytes, int step = 1) {
    const HGLOBAL block = GlobalAlloc(GHND, kHeader + bytes);
    auto* data = static_cast<std::uint8_t*>(GlobalLock(block));
    BITMAPINFOHEADER header{};
    header.biSize = layout.headerSize;
    header.biWidth = layout.width;
    header.biHeight = layout.height;
    header.biPlanes = layout.planes;
    header.biBitCount = static_cast<WORD>(layout.bits);
    header.biCompression = layout.compression;
    header.biClrUsed = layout.coloursUsed;
    std::memcpy(data, &header, kHeader);
    for (std::size_t i = 0; i < bytes; ++i)
        data[kHeader + i] = static_cast<std::uint8_t>(255 + step * static_cast<int>(i & 255));
    GlobalUnlock(block);
    return block;
}

using Image = std::function<HGLOBAL()>;

// One build in the same dialog for each image that the host is to give. All blocks are the plugin's to free.
Recording buildWith(const std::vector<Image>& images) {
    const Image* now = nullptr;
    std::vector<HGLOBAL> given;
    Session session;
    session.settings = std::string(kBar) + "MainBarGraphType = 2\nMainBarGraphImageFile = C:\\pictures\\one.jpg\n";
    for (const Image& image : images)
        session.steps.push_back([&](HWND dialog) {
            now = &image;
            press(dialog, kTest); // which leaves the dialog open
        });
    session.loadImage = [&](const std::string& path) {
        EXPECT_EQ(path, "C:\\pictures\\one.jpg");
        return now == nullptr ? nullptr : given.emplace_back((*now)());
    };
    Recording seen = run(session);
    EXPECT_GE(given.size(), images.size());
    for (const HGLOBAL block : given)
        EXPECT_EQ(GlobalFlags(block), static_cast<UINT>(GMEM_INVALID_HANDLE));
    EXPECT_TRUE(seen.faults.empty());
    return seen;
}

Image imageOf(const Layout& layout, std::size_t bytes, int step = 1) {
    return [=] { return imageBlock(layout, bytes, step); };
}

TEST(BarGraph, ImagesAreRevealed) {
    const Recording seen = buildWith({imageOf({24, 40, -4}, 480)}); // top-down: rows of 120 bytes
    ASSERT_EQ(seen.frames.size(), 5u);
    const Frame& half = seen.frames[2];
    for (int x = 0; x < 40; ++x)
        for (int y = 0; y < 4; ++y) {
            const int first = 120 * y + 3 * x + 255;
            const COLORREF own = RGB((first + 2) & 255, (first + 1) & 255, first & 255);
            EXPECT_EQ(half.colour(x, y), x < 20 ? own : kPanel) << x << ' ' << y;
        }
}

TEST(BarGraph, WhiteImagesOfAnyDepthAndSizeAreWhite) {
    const std::vector<Image> white{
        imageOf({1}, 8 + 4 * 8, 0),
        imageOf({4}, 64 + 4 * 20, 0),
        imageOf({8}, 1024 + 4 * 40, 0),
        imageOf({16}, 4 * 80, 0),
        imageOf({32, 40, -4}, 4 * 160, 0),
        imageOf({32, 1, 1}, 4, 0),
        imageOf({1, 10000, 10000}, 8 + 1252 * std::size_t{10000}, 0),
    };
    const std::vector<Frame> frames = buildWith(white).frames;
    ASSERT_EQ(frames.size(), 5 * white.size());
    for (std::size_t i = 4; i < frames.size(); i += 5)
        EXPECT_TRUE(frames[i].colour(0, 0) == 0xFFFFFF && frames[i].colour(39, 3) == 0xFFFFFF) << i;
}

TEST(BarGraph, ImagesThatAreNoneFailTheBuild) {
    constexpr LONG kMost = 0x7FFFFFFF;
    const std::vector<Image> bad{
        [] { return HGLOBAL{}; }, // the host has none
        [] { return GlobalAlloc(GHND, 0); },
        [] { return GlobalAlloc(GHND, 3); },
        imageOf({24}, 479), // a byte is missing
        imageOf({24, -40}, 4096),
        imageOf({24, 40, -kMost - 1}, 4096),
        imageOf({32, kMost, kMost}, 4096),
        imageOf({32, 32768, 32768}, 4096), // 2 to the power of 32 bytes
        imageOf({24, 40, 4, BI_RGB, 0, 0xFFFFFFF0}, 480),
        imageOf({24, 40, 4, BI_RGB, 0, kHeader, 0}, 480), // no planes
        imageOf({8, 40, 4, BI_RLE8}, 4096),
        imageOf({8, 40, 4, BI_RGB, 0xFFFFFFFF}, 4096),
        imageOf({16, 40, 4, BI_BITFIELDS}, 11), // a mask is cut
    };
    const Recording seen = buildWith(bad);
    EXPECT_TRUE(seen.frames.empty() && seen.tasks.empty());
    ASSERT_EQ(seen.boxes.size(), bad.size());
    for (const std::string& box : seen.boxes)
        EXPECT_NE(box.find("Memory error"), std::string::npos) << box;
}

} // namespace
