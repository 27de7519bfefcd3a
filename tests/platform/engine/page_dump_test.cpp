// The page dump that report tests compare, and the font table of a page collection.
#include "platform/engine/page/page.hpp"

#include <gtest/gtest.h>

namespace qr::page {
namespace {

TEST(PageDump, OneLinePerItemInDrawingOrder) {
    TextItem text;
    text.box = {5040, 3600, 900, 240};
    text.align = Align::Right;
    text.text = ".50";
    text.control = "Field9";
    text.section = "Detail";
    TextItem memo;
    memo.box = {720, 4000, 3000, 480};
    memo.text = "say \"hi\"\nC:\\jobs";
    memo.control = "mNotes";
    memo.section = "Detail";
    RectItem shape{{720, 14400, 10800, 480}, 15, kBlack, 0xD0E0F0, true, "Shape1", "PageFooter"};

    Page page;
    page.items = {text,
                  memo,
                  LineItem{720, 2160, 11520, 2160, 15, kBlack, "Line1", "ReportHeader"},
                  RectItem{{720, 100, 50, 60}, 15, kBlack, std::nullopt, false, "Box", "Detail"},
                  shape,
                  CheckBoxItem{{6480, 3630, 180, 180}, true, "CheckBox1", "Detail"},
                  CheckBoxItem{{6480, 3870, 180, 180}, false, "CheckBox1", "Detail"}};
    EXPECT_EQ(dump(page), "text  Detail/Field9 [5040,3600 900x240] R \".50\"\n"
                          "text  Detail/mNotes [720,4000 3000x480] L "
                          "\"say \\\"hi\\\"\\nC:\\\\jobs\"\n"
                          "line  ReportHeader/Line1 (720,2160)-(11520,2160)\n"
                          "rect  Detail/Box [720,100 50x60]\n"
                          "rect  PageFooter/Shape1 [720,14400 10800x480] rounded fill D0E0F0\n"
                          "check Detail/CheckBox1 [6480,3630 180x180] x\n"
                          "check Detail/CheckBox1 [6480,3870 180x180] -\n");

    Pages pages;
    pages.pages = {page, Page{}};
    pages.pages[1].items = {LineItem{0, 0, 10, 0, 15, kBlack, "L", "S"}};
    EXPECT_EQ(dump(pages), "page 1 of 2\n" + dump(page) + "page 2 of 2\nline  S/L (0,0)-(10,0)\n");
}

TEST(PageFonts, EachDistinctFontIsListedOnce) {
    Pages pages;
    FontSpec bold;
    bold.bold = true;
    FontSpec large;
    large.sizePoints = 14;
    EXPECT_EQ(pages.fontIndex(FontSpec{}), 0);
    EXPECT_EQ(pages.fontIndex(bold), 1);
    EXPECT_EQ(pages.fontIndex(FontSpec{}), 0);
    EXPECT_EQ(pages.fontIndex(large), 2);
    EXPECT_EQ(pages.fontIndex(bold), 1);
    EXPECT_EQ(pages.fonts.size(), 3u);
}

} // namespace
} // namespace qr::page
