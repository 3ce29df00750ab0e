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
constexpr char kImageBar[] = "MainBarGraphType = 2\nMainBarGraphImageFile = C:\\pictures\\one.jpg\n";

Recording build(const std::string& settings, std::function<HGLOBAL(const std::string&)> loadImage = nullptr) {
    Session session;
    session.settings = kBar + settings;
    session.steps = {pressing(kBuild)};
    session.loadImage = std::move(loadImage);
    return run(session);
}

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

// An image as a host gives it: header, then bytes that count up.
HGLOBAL imageBlock(int width, int height, int bits, std::size_t bytes, DWORD headerSize = kHeader) {
    const HGLOBAL block = GlobalAlloc(GHND, kHeader + bytes);
    auto* data = static_cast<std::uint8_t*>(GlobalLock(block));
    BITMAPINFOHEADER header{};
    header.biSize = headerSize;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(bits);
    std::memcpy(data, &header, kHeader);
    for (std::size_t i = 0; i < bytes; ++i)
        data[kHeader + i] = static_cast<std::uint8_t>(i);
    GlobalUnlock(block);
    return block;
}

TEST(BarGraph, ImagesAreRevealed) {
    std::string asked;
    const Recording seen = build(kImageBar, [&](const std::string& path) {
        asked = path;
        // 40 x 4, top-down: rows of 120 bytes that count up.
        return imageBlock(40, -4, 24, 480);
    });
    EXPECT_EQ(asked, "C:\\pictures\\one.jpg");
    ASSERT_EQ(seen.frames.size(), 5u);
    const Frame& half = seen.frames[2];
    for (int x = 0; x < 40; ++x)
        for (int y = 0; y < 4; ++y) {
            const int first = 120 * y + 3 * x;
            const COLORREF own = RGB((first + 2) & 255, (first + 1) & 255, first & 255);
            EXPECT_EQ(half.colour(x, y), x < 20 ? own : kPanel) << x << ' ' << y;
        }
}

TEST(BarGraph, SmallAndLargeImagesAreScaled) {
    // One pixel of opacity 3: nearly all panel. Then a hundred million pixels of one bit.
    const Recording small = build(kImageBar, [](const std::string&) { return imageBlock(1, 1, 32, 4); });
    ASSERT_EQ(small.frames.size(), 5u);
    EXPECT_NEAR(GetBValue(small.frames[4].colour(39, 3)), 252, 1);
    const auto large = [](const std::string&) { return imageBlock(10000, 10000, 1, 8 + 1252 * std::size_t{10000}); };
    EXPECT_EQ(build(kImageBar, large).frames.size(), 5u);
}

TEST(BarGraph, ImagesThatAreNoneFailTheBuild) {
    const std::function<HGLOBAL(const std::string&)> bad[] = {
        nullptr, // the host has none
        [](const std::string&) { return imageBlock(40, 4, 24, 479); },
        [](const std::string&) { return imageBlock(0x7FFFFFFF, 0x7FFFFFFF, 32, 4096); },
        [](const std::string&) { return imageBlock(-40, 4, 24, 480); },
        [](const std::string&) { return imageBlock(40, 4, 24, 480, 0xFFFFFFF0); },
        [](const std::string&) { return GlobalAlloc(GHND, 3); },
        [](const std::string&) { return GlobalAlloc(GHND, 0); },
    };
    for (const auto& loadImage : bad) {
        const Recording seen = build(kImageBar, loadImage);
        EXPECT_TRUE(seen.frames.empty());
        EXPECT_TRUE(seen.tasks.empty());
        ASSERT_EQ(seen.boxes.size(), 1u);
        EXPECT_NE(seen.boxes[0].find("Memory error"), std::string::npos);
    }
}

} // namespace
