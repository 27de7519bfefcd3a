// The multi-elevation reports: one sub-report per list item in list order, page numbers that
// count the whole run across sub-reports, the glass report's format choosing the portrait or
// the landscape elevation report, and the two service methods printing them.
#include "reports/multi/elevation_multiple_report.hpp"
#include "reports/support/parts_fixture.hpp"
#include "service/print_service.hpp"

#include <cstdlib>
#include <tuple>

namespace qr::test {
namespace {

host::ElevationPartsReportData partsElevation(const std::string& name, int lines) {
    const host::PartsReportHeading heading = partsHeading();
    host::ElevationPartsReportData data;
    data.User = heading.User;
    data.Company = heading.Company;
    data.Vendor = heading.Vendor;
    data.Elevation = {name,           "Elevation " + name, 1, "Dark Bronze Anodized",
                      {"Storefront"}, {2, kPartsJob}};
    for (int i = 1; i <= lines; ++i)
        data.Items.push_back({1, name + "-" + std::to_string(i), "Jamb", "Frame", "120", "", 0});
    return data;
}

host::ElevationGlassReportData glassElevation(const std::string& name, int lines) {
    host::ElevationGlassReportData data;
    data.User = partsHeading().User;
    data.Company = partsHeading().Company;
    data.Elevation = {name, "Elevation " + name, 1, {2, kPartsJob}};
    host::ElevationGlassItem item;
    item.Quantity = 2;
    item.Description = "1/4\" Clear";
    item.GlassType = "Tempered";
    item.Width = item.LeftHeight = item.RightHeight = 36;
    data.GlassItems.assign(static_cast<std::size_t>(lines), item);
    return data;
}

/// "Page  k of  N" for every page of the run.
Texts pageFooters(std::size_t pages) {
    Texts footers;
    for (std::size_t k = 1; k <= pages; ++k)
        footers.push_back("Page  " + std::to_string(k) + " of  " + std::to_string(pages));
    return footers;
}

/// The texts `control` of the container's page footer printed (the elevation reports have
/// controls of the same names in their own sections).
Texts footerTexts(const page::Pages& pages, const std::string& control) {
    Texts texts;
    for (const page::Page& page : pages.pages) {
        for (const page::Item& item : page.items) {
            if (const auto* t = std::get_if<page::TextItem>(&item);
                t && t->control == control && t->section == "PageFooter")
                texts.push_back(t->text);
        }
    }
    return texts;
}

using MultiElevationTest = PartsReportTest;

TEST_F(MultiElevationTest, PageNumbersCountTheWholeRunAcrossTheSubReports) {
    // Lines per elevation; the run takes at least `minimumPages` (an elevation of 70 lines
    // takes about a page and a third, one of 12 under half a page).
    struct Case {
        std::vector<int> lines;
        std::size_t minimumPages;
    };
    const Case cases[] = {
        {{}, 1}, {{3}, 1}, {{3, 5, 2}, 1}, {{70}, 2}, {{70, 70}, 3}, {{5, 70, 1, 70, 12}, 4},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::PrintToString(c.lines));
        host::ElevationPartsReportDataList list;
        for (std::size_t e = 0; e < c.lines.size(); ++e)
            list.push_back(partsElevation("E" + std::to_string(e + 1), c.lines[e]));
        reports::ElevPartsMultipleReport report;
        report.ElevationPartsReportDataList = &list;
        report.run();
        const page::Pages& pages = report.pages();
        EXPECT_GE(pages.pages.size(), c.minimumPages);
        EXPECT_EQ(footerTexts(pages, "Field1"), pageFooters(pages.pages.size()));
        // The sub-report's own page footer never prints inside the container.
        EXPECT_TRUE(printed(pages, "txtPageNumber").empty());
        // Every elevation once, in list order, and every line.
        Texts headings, expected;
        for (const auto& data : list)
            expected.push_back(data.Elevation.Name + " - " + data.Elevation.Description);
        EXPECT_EQ(printed(pages, "lElevation"), expected);
        std::size_t lines = 0;
        for (int n : c.lines)
            lines += static_cast<std::size_t>(n);
        EXPECT_EQ(printed(pages, "Field2").size(), lines);
        if (!c.lines.empty()) {
            EXPECT_EQ(printed(pages, "Field2").front(), "E1-1");
            EXPECT_EQ(printed(pages, "Field2").back(), list.back().Items.empty()
                                                           ? std::string()
                                                           : list.back().Items.back().PartNumber);
        }
        for (const page::CutText& cut : pages.cutTexts)
            ADD_FAILURE() << cut.control << " \"" << cut.text << "\" printed as \"" << cut.printed
                          << "\"";
        EXPECT_EQ(report.subReport("ElevationPartsReport").report(), nullptr)
            << "released at the end of the run";
    }
    EXPECT_TRUE(shown().empty());
}

TEST_F(MultiElevationTest, OnlyBasicExactlyChoosesThePortraitGlassReport) {
    struct Case {
        const char* format;
        bool portrait;
    };
    const Case cases[] = {{"basic", true},  {"Basic", false},  {"", false},
                          {"BASIC", false}, {"basic ", false}, {"block", false}};
    host::ElevationGlassReportDataList list = {glassElevation("G1", 2), glassElevation("G2", 3),
                                               glassElevation("G3", 1)};
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string("\"") + c.format + "\"");
        reports::ElevGlassMultipleReport report;
        report.ElevationGlassReportDataList = &list;
        report.ReportFormat = c.format;
        report.run();
        const page::Pages& pages = report.pages();
        const int width = c.portrait ? 10800 : reports::ElevGlassMultipleReport::kLandscapeWidth;
        EXPECT_EQ(pages.orientation,
                  c.portrait ? page::Orientation::Portrait : page::Orientation::Landscape);
        EXPECT_EQ(report.printWidth(), width);
        EXPECT_EQ(report.control("PageNumberField").width(), width);
        EXPECT_EQ(report.control("ElevationGlassReport").width(), width);
        // ElevGlassAR titles its heading with Label1, ElevGlassAR2 with TitleLabel.
        EXPECT_EQ(printed(pages, "Label1").size(), c.portrait ? 3u : 0u);
        EXPECT_EQ(printed(pages, "TitleLabel").size(), c.portrait ? 0u : 3u);
        EXPECT_EQ(printed(pages, "ElevationNameLabel"),
                  (Texts{"G1 - Elevation G1", "G2 - Elevation G2", "G3 - Elevation G3"}));
        EXPECT_EQ(footerTexts(pages, "PageNumberField"), pageFooters(pages.pages.size()));
        EXPECT_EQ(footerTexts(pages, "lReportDate"), Texts(pages.pages.size(), "3/15/2024"));
        for (const page::CutText& cut : pages.cutTexts)
            ADD_FAILURE() << cut.control << " \"" << cut.text << "\" printed as \"" << cut.printed
                          << "\"";
    }
    EXPECT_TRUE(shown().empty());
}

// ---- The service methods ---------------------------------------------------------------------

TEST_F(MultiElevationTest, BothServiceMethodsPrintEveryElevationInOrder) {
    host::ElevationPartsReportDataList parts = {partsElevation("N1", 60), partsElevation("N2", 4)};
    host::ElevationGlassReportDataList glass = {glassElevation("G1", 40), glassElevation("G2", 3)};
    const auto printedFile = m_dir / "printed.pdf";
    ::setenv("QUARVEX_PRINTER", ("file:" + printedFile.string()).c_str(), 1);
    service::PrintService service;
    bool preview = false;
    std::string format = "landscape";
    service.PrintMultipleElevationPartsReports(parts, preview);
    const std::string partsText = costPdfText(printedFile);
    service.PrintMultipleElevationGlassReports(glass, format, preview);
    const std::string glassText = costPdfText(printedFile);
    ::unsetenv("QUARVEX_PRINTER");
    EXPECT_TRUE(shown().empty()) << shown().front();
    EXPECT_EQ(format, "landscape");
    for (const auto& [text, first, second] :
         {std::tuple{partsText, "N1 - Elevation N1", "N2 - Elevation N2"},
          std::tuple{glassText, "G1 - Elevation G1", "G2 - Elevation G2"}}) {
        ASSERT_NE(text.find(first), std::string::npos) << first;
        EXPECT_GT(text.find(second), text.find(first)) << second;
        EXPECT_NE(text.find("Page 2 of"), std::string::npos);
    }
}

} // namespace
} // namespace qr::test
