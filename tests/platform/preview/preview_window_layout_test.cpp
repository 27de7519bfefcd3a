// The arithmetic behind the preview window: where pages go at a zoom, which page is being read,
// how zooming steps, how the find bar moves between matches, and when windows may be shown.
#include "platform/engine/page/page.hpp"
#include "platform/preview/desktop_session.hpp"
#include "platform/preview/preview_layout.hpp"
#include "platform/preview/preview_search.hpp"

#include <gtest/gtest.h>

namespace qr::output {
namespace {

constexpr PaperSize kPortrait{page::kLetterWidth, page::kLetterHeight};
constexpr PaperSize kLandscape{page::kLetterHeight, page::kLetterWidth};
constexpr int kGap = PageColumn::kGap;

TEST(ZoomSteps, StepThroughTheListAndStopAtTheEnds) {
    struct Case {
        int from, in, out;
    };
    const Case cases[] = {
        {50, 75, 50},    {75, 100, 50}, {100, 125, 75},  {110, 125, 100},
        {400, 400, 300}, {30, 50, 50},  {500, 400, 400}, {72, 75, 50},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(zoomInStep(c.from), c.in) << c.from;
        EXPECT_EQ(zoomOutStep(c.from), c.out) << c.from;
    }
    EXPECT_EQ(clampZoomPercent(10), kMinZoomPercent);
    EXPECT_EQ(clampZoomPercent(1000), kMaxZoomPercent);
    EXPECT_EQ(clampZoomPercent(180), 180);
}

TEST(ZoomScale, FitsTheLargestPaperOrFollowsThePercentage) {
    const double hundred = 96.0 / page::kTwipsPerInch; // 100 % at 96 dpi
    const ViewGeometry wide{1224 + 2 * kGap, 800, 96};
    struct Case {
        const char* name;
        Zoom zoom;
        std::vector<PaperSize> papers;
        ViewGeometry view;
        double scale;
    };
    const Case cases[] = {
        {"percent", {ZoomMode::Percent, 150}, {kPortrait}, wide, 1.5 * hundred},
        {"percent clamped", {ZoomMode::Percent, 900}, {kPortrait}, wide, 4 * hundred},
        {"width", {ZoomMode::FitWidth, 0}, {kPortrait}, wide, 1224.0 / page::kLetterWidth},
        // A landscape page among portrait ones is the widest: it decides the width.
        {"width, mixed",
         {ZoomMode::FitWidth, 0},
         {kPortrait, kLandscape},
         wide,
         1224.0 / page::kLetterHeight},
        {"page, height decides",
         {ZoomMode::FitPage, 0},
         {kPortrait},
         wide,
         (800.0 - 2 * kGap) / page::kLetterHeight},
        {"page, width decides",
         {ZoomMode::FitPage, 0},
         {kPortrait},
         {300, 2000, 96},
         (300.0 - 2 * kGap) / page::kLetterWidth},
        {"tiny view keeps a floor",
         {ZoomMode::FitPage, 0},
         {kPortrait},
         {10, 10, 96},
         0.05 * hundred},
        {"no pages: Letter", {ZoomMode::FitWidth, 0}, {}, wide, 1224.0 / page::kLetterWidth},
    };
    for (const auto& c : cases)
        EXPECT_NEAR(zoomScale(c.zoom, c.papers, c.view), c.scale, 1e-9) << c.name;
}

TEST(PageColumn, StacksPagesCentredWithGaps) {
    PageColumn column;
    column.layout({kPortrait, kLandscape, kPortrait}, 0.05, 1000);
    // 0.05 px a twip: portrait 612 x 792, landscape 792 x 612.
    ASSERT_EQ(column.pageCount(), 3u);
    EXPECT_EQ(column.page(0), (PixelRect{194, kGap, 612, 792}));
    EXPECT_EQ(column.page(1), (PixelRect{104, 2 * kGap + 792, 792, 612}));
    EXPECT_EQ(column.page(2), (PixelRect{194, 3 * kGap + 792 + 612, 612, 792}));
    EXPECT_EQ(column.width(), 1000);
    EXPECT_EQ(column.height(), 4 * kGap + 2 * 792 + 612);

    // A view narrower than the widest page: the column is as wide as that page and its gaps.
    column.layout({kPortrait, kLandscape}, 0.05, 300);
    EXPECT_EQ(column.width(), 792 + 2 * kGap);
    EXPECT_EQ(column.page(1).x, kGap);
}

TEST(PageColumn, FindsThePagesInABandAndTheOneBeingRead) {
    PageColumn column;
    column.layout({kPortrait, kPortrait, kPortrait, kPortrait}, 0.05, 700); // pages 792 high
    const int pitch = 792 + kGap;
    struct Case {
        const char* name;
        int top, height;
        std::size_t first, last, mostVisible;
    };
    const Case cases[] = {
        {"top of the document", 0, 600, 0, 1, 0},
        {"across a page break, more of the first", pitch - 300, 500, 0, 2, 0},
        {"across a page break, more of the second", pitch - 100, 500, 0, 2, 1},
        {"inside the gap only", pitch + 2, 5, 1, 1, 1},
        {"two whole pages: the earlier", kGap, 2 * pitch, 0, 2, 0},
        {"past the end", 10 * pitch, 100, 4, 4, 3},
        {"the whole column", 0, column.height(), 0, 4, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto [first, last] = column.pagesIn(c.top, c.height);
        EXPECT_EQ(first, c.first);
        EXPECT_EQ(last, c.last);
        EXPECT_EQ(column.mostVisiblePage(c.top, c.height), c.mostVisible);
    }
    EXPECT_EQ(column.topOf(0), 0);
    EXPECT_EQ(column.topOf(2), 2 * pitch);
    // Going to a page and reading off the page being read agree, however small the pages.
    column.layout(std::vector<PaperSize>(50, kPortrait), 0.01, 700);
    for (std::size_t i = 0; i < 50; ++i)
        EXPECT_EQ(column.mostVisiblePage(column.topOf(i), 900), i);
}

TEST(StepMatch, MovesForwardsAndBackwardsAndWraps) {
    const std::vector<TextMatch> matches = {{0}, {2}, {2}, {5}};
    struct Case {
        const char* name;
        int current;
        bool forwards;
        std::size_t fromPage;
        int expected;
    };
    const Case cases[] = {
        {"next", 1, true, 0, 2},
        {"next wraps", 3, true, 0, 0},
        {"previous", 2, false, 0, 1},
        {"previous wraps", 0, false, 9, 3},
        {"first from the page read", -1, true, 1, 1},
        {"first on the page read", -1, true, 2, 1},
        {"none after the page read: the first", -1, true, 6, 0},
        {"backwards from the page read", -1, false, 4, 2},
        {"backwards from the first page", -1, false, 0, 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(stepMatch(matches, c.current, c.forwards, c.fromPage), c.expected) << c.name;
    // Nothing at or before the page read going backwards: round to the last match.
    EXPECT_EQ(stepMatch({{3}, {4}}, -1, false, 1), 1);
    EXPECT_EQ(stepMatch({}, -1, true, 0), -1);
    EXPECT_EQ(stepMatch({}, 3, false, 0), -1);
}

TEST(DesktopSession, WindowsOnlyWhereSomeoneCanSeeThem) {
    struct Case {
        const char* name;
        SessionFacts facts;
        bool interactive;
    };
    const Case cases[] = {
        {"X display", {true, false, "xcb", true}, true},
        {"Wayland with arguments", {true, false, "wayland:nocsd", true}, true},
        {"no display", {false, false, "xcb", true}, false},
        {"host refuses", {true, true, "xcb", true}, false},
        {"offscreen platform", {true, false, "offscreen", true}, false},
        {"offscreen asked first", {true, false, "offscreen;xcb", true}, false},
        {"minimal platform", {true, false, "minimal", true}, false},
        {"not on Qt's thread", {true, false, "xcb", false}, false},
        {"platform still to be chosen", {true, false, "", true}, true},
    };
    for (const auto& c : cases)
        EXPECT_EQ(isInteractive(c.facts), c.interactive) << c.name;
}

} // namespace
} // namespace qr::output
