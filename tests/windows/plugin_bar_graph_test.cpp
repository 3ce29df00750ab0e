// The bar graph's pictures in true colour, and the images that a host gives it, good ones and bad ones.
#include "built_frames.h"

#include <cstring>

namespace {

using namespace recording;

// A flat bar of 40 x 4 (too shallow for light and shade) without border and padding, in telling colours.
constexpr char kBar[] = "*Truecolour=1 Type=1 Width=40 Depth=4 Frames=5 UseBorder=0 UsePadding=0 "
                        "LeftColor=#FF0000 RightColor=#00FF00 PanelColor=#0000FF";
constexpr COLORREF kLeft = 0x0000FF;
constexpr COLORREF kPanel = 0xFF0000;

TEST(BarGraph, FillsFromLeftToRight) {
    withBuilder("MainBarGraph", kBar, [](Builder& bar) {
        const std::vector<Frame> solid = bar.frames("");
        ASSERT_EQ(solid.size(), 5u);
        for (int i = 0; i < 5; ++i)
            for (int x = 0; x < 40; ++x)
                EXPECT_EQ(solid[static_cast<std::size_t>(i)].colour(x, 2), x < 10 * i ? kLeft : kPanel) << i << x;
        // Half a column is half filled, or whole where edges are hard.
        EXPECT_EQ(bar.frame("Frames=17", 1).colour(2, 0), RGB(128, 0, 127));
        EXPECT_EQ(bar.frame("Frames=17 *MainAntialias=0", 1).colour(2, 0), kLeft);
        const Frame gradient = bar.frame("Type=0", 4);
        EXPECT_NEAR(GetRValue(gradient.colour(0, 1)), 252, 3);
        EXPECT_NEAR(GetRValue(gradient.colour(20, 1)), 125, 4);
        EXPECT_NEAR(GetGValue(gradient.colour(39, 1)), 252, 3);

        const std::vector<Frame> segments = bar.frames("Type=3 Frames=11 PanelColor=0");
        ASSERT_EQ(segments.size(), 11u);
        for (int i = 0; i < 11; ++i)
            for (int segment = 0; segment < 10; ++segment) { // of 3 pixels and a gap
                const COLORREF colour = segments[static_cast<std::size_t>(i)].colour(4 * segment + 1, 1);
                EXPECT_EQ(GetRValue(colour) + GetGValue(colour) > 200, segment < i) << i << ' ' << segment;
            }
        EXPECT_NE(segments[0].colour(1, 1), 0u);  // dark ones can be seen
        EXPECT_EQ(segments[10].colour(3, 1), 0u); // gaps
    });
}

TEST(BarGraph, BorderPaddingAndCornersLieAround) {
    const std::string around = " Depth=20 Frames=2 UseBorder=1 BorderSize=3 UsePadding=1 PadSize=5 BorderColor=0";
    withBuilder("MainBarGraph", kBar + around + " PadColor=#FFFFFF", [](Builder& bar) {
        const Frame square = bar.frame("", 1);
        ASSERT_EQ(square.width(), 56);
        ASSERT_EQ(square.height(), 36);
        const std::pair<int, COLORREF> columns[] = {{0, 0}, {2, 0}, {3, 0xFFFFFF}, {7, 0xFFFFFF}, {8, kLeft}};
        for (const auto& [x, colour] : columns)
            EXPECT_TRUE(square.colour(x, 18) == colour && square.colour(55 - x, 18) == colour) << x;
        EXPECT_GT(GetGValue(square.colour(28, 8)), 80);   // lit above
        EXPECT_LT(GetRValue(square.colour(28, 27)), 225); // shaded below
        const Frame round = bar.frame("RoundCorners=1 Roundness=100 *MainAlphaTrans=1 *UseAlphaGreyBack=0", 1);
        ASSERT_EQ(round.bits(), 32);
        for (const int x : {0, 55})
            for (const int y : {0, 35}) {
                EXPECT_EQ(round.colour(x, y) & 0xFFFFFF, kPanel);
                EXPECT_EQ(round.alpha(x, y), 0);
            }
        EXPECT_EQ(round.alpha(28, 0) + round.alpha(1, 18), 2 * 255);
    });
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
    session.settings = settingsFile("MainBarGraph", kBar + std::string(" Type=2 ImageFile=C:\\pictures\\one.jpg"));
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
    EXPECT_EQ(seen.boxes, std::vector<std::string>(3, "Memory error"));
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
