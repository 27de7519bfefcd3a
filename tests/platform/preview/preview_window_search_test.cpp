// Finding text in pages for the preview's find bar: what is found, in which order, and where the
// highlight goes.
#include "platform/output/output_test_support.hpp"
#include "platform/preview/preview_search.hpp"

#include <gtest/gtest.h>

namespace qr::output {
namespace {

page::Pages glassOrder() {
    test::PageBuilder b("Glass Order");
    b.addPage();
    b.text(720, 1440, "Tempered glass 1/4\" clear");
    b.text(720, 1800, "TEMPERED LOW-E");
    b.addPage();
    b.text(1440, 2000, "Laminated glass");
    b.text(720, 2400, "Caf\xE9 storefront, tempered"); // Latin-1 e acute, as legacy data has it
    b.text(720, 2800, "aaaa");
    return b.pages();
}

TEST(TextFinder, FindsEveryOccurrenceIgnoringCaseInReadingOrder) {
    const page::Pages pages = glassOrder();
    struct Case {
        std::string needle;
        std::vector<std::size_t> pagesOfMatches;
    };
    const Case cases[] = {
        {"tempered", {0, 0, 1}},
        {"GLASS", {0, 1}},
        {"low-e", {0}},
        {"caf\xC3\xA9", {1}},             // typed as UTF-8, stored as Latin-1
        {"aa", {1, 1}},                   // matches within a line do not overlap
        {"glass 1/4\" clear", {0}},       // punctuation and quotes are plain text
        {"tempered glass laminated", {}}, // lines are searched one by one
        {"", {}},
        {"   ", {}},
        {"mirror", {}},
    };
    TextFinder finder;
    for (const auto& c : cases) {
        const auto matches = finder.find(pages, c.needle);
        std::vector<std::size_t> found;
        for (const auto& m : matches)
            found.push_back(m.page);
        EXPECT_EQ(found, c.pagesOfMatches) << "\"" << c.needle << "\"";
    }
}

TEST(TextFinder, BoxCoversTheMatchedCharactersWithTheDrawnAdvances) {
    const page::Pages pages = glassOrder();
    CairoTextMeasurer measurer;
    const page::FontSpec font; // the builder's default font
    const auto metrics = measurer.metrics(font);
    struct Case {
        std::string needle;
        std::size_t index;  // which match
        std::string line;   // the line it is in
        std::string before; // the text before it in the line
        std::string matched;
        int x, baseline;
    };
    const Case cases[] = {
        {"GLASS 1/4", 0, "Tempered glass 1/4\" clear", "Tempered ", "glass 1/4", 720, 1440},
        {"tempered", 1, "TEMPERED LOW-E", "", "TEMPERED", 720, 1800},
        {"storefront", 0, "", "Caf\xC3\xA9 ", "storefront", 720, 2400},
        {"aa", 1, "aaaa", "aa", "aa", 720, 2800},
    };
    TextFinder finder;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.needle);
        const auto matches = finder.find(pages, c.needle);
        ASSERT_GT(matches.size(), c.index);
        const TextMatch& m = matches[c.index];
        EXPECT_NEAR(m.x, c.x + measurer.width(font, c.before), 1.0);
        EXPECT_NEAR(m.width, measurer.width(font, c.matched), 1.0);
        EXPECT_NEAR(m.y, c.baseline - metrics.ascent, 1.0);
        EXPECT_NEAR(m.height, metrics.ascent + metrics.descent, 1.0);
    }
}

TEST(TextFinder, SkipsTextWhoseFontIsMissingAndKeepsSearching) {
    page::Pages pages = glassOrder();
    page::Item first = pages.pages[0].items[0];
    std::get<page::TextItem>(first).font = 7; // not in the list
    pages.pages[0].items.set(0, first);
    TextFinder finder;
    const auto matches = finder.find(pages, "tempered");
    ASSERT_EQ(matches.size(), 2u);
    EXPECT_EQ(matches[0].page, 0u); // "TEMPERED LOW-E"
    EXPECT_EQ(matches[1].page, 1u);
}

} // namespace
} // namespace qr::output
