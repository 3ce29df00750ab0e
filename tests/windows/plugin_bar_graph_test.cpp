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

// A bitmap of 24 bits, top-down, as a host gives it: `bytes` of them that count up from 255.
HGLOBAL imageBlock(std::size_t bytes) {
    BITMAPINFOHEADER header{sizeof header, 40, -4, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    const HGLOBAL block = GlobalAlloc(GHND, sizeof header + bytes);
    auto* data = static_cast<std::uint8_t*>(GlobalLock(block));
    std::memcpy(data, &header, sizeof header);
    for (std::size_t i = 0; i < bytes; ++i)
        data[sizeof header + i] = static_cast<std::uint8_t>(255 + i);
    GlobalUnlock(block);
    return block;
}

// One build in the same dialog for each image; all blocks are the plugin's to free.
TEST(BarGraph, ImagesAreRevealedAndWhatIsNoneFailsTheBuild) {
    const std::function<HGLOBAL()> images[] = {
        [] { return HGLOBAL{}; }, // the host has none
        [] { return GlobalAlloc(GHND, 0); },
        [] { return imageBlock(479); }, // a byte is missing
        [] { return imageBlock(480); },
    };
    const std::function<HGLOBAL()>* now = nullptr;
    std::vector<HGLOBAL> given;
    Session session;
    session.settings = std::string(kBar) + "MainBarGraphType = 2\nMainBarGraphImageFile = C:\\pictures\\one.jpg\n";
    for (const auto& image : images)
        session.steps.push_back([&](HWND dialog) {
            now = &image;
            press(dialog, kTest); // which leaves the dialog open
        });
    session.loadImage = [&](const std::string& path) {
        EXPECT_EQ(path, "C:\\pictures\\one.jpg");
        return now == nullptr ? nullptr : given.emplace_back((*now)());
    };
    const Recording seen = run(session);
    EXPECT_TRUE(seen.faults.empty());
    EXPECT_EQ(seen.boxes.size(), 3u);
    for (const std::string& box : seen.boxes)
        EXPECT_EQ(box, "Memory error");
    EXPECT_GE(given.size(), std::size(images));
    for (const HGLOBAL block : given)
        EXPECT_EQ(GlobalFlags(block), static_cast<UINT>(GMEM_INVALID_HANDLE));
    ASSERT_EQ(seen.frames.size(), 5u);
    for (int x = 0; x < 40; ++x)
        for (int y = 0; y < 4; ++y) {
            const int first = 120 * y + 3 * x + 255;
            const COLORREF own = RGB((first + 2) & 255, (first + 1) & 255, first & 255);
            EXPECT_EQ(seen.frames[2].colour(x, y), x < 20 ? own : kPanel) << x << ' ' << y;
        }
}

} // namespace
