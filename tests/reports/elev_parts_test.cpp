// The elevation parts report: its elevation heading, repeat note and phone fallback, rows that
// start over at every run of the same object, and PrintElevationPartsReport building the data
// from the firm's and vendor's records it reads through the service's connections.
#include "platform/db/connection.hpp"
#include "reports/parts/elev_parts_report.hpp"
#include "reports/support/parts_fixture.hpp"
#include "service/print_service.hpp"

#include <cstdlib>

namespace qr::test {
namespace {

host::PartsReportListItem part(const std::string& number) {
    return {2, number, "Jamb, 2 x 4-1/2 in. thermal", "Frame", "120 1/4", "", 0};
}

host::PartsReportListItems parts(int count) {
    host::PartsReportListItems items;
    for (int i = 1; i <= count; ++i)
        items.push_back(part("SF-" + std::to_string(4500 + i)));
    return items;
}

host::ElevationPartsReportData elevationParts(const std::string& name,
                                              const std::string& description,
                                              std::int32_t repeatCount, int lines) {
    const host::PartsReportHeading heading = partsHeading();
    host::ElevationPartsReportData data;
    data.User = heading.User;
    data.Company = heading.Company;
    data.Vendor = heading.Vendor;
    data.Elevation = {name,
                      description,
                      repeatCount,
                      "Dark Bronze Anodized",
                      {"Series 450T thermal storefront"},
                      {2, kPartsJob}};
    data.Items = parts(lines);
    return data;
}

TEST_F(PartsReportTest, ElevationHeadingRepeatNoteAndPhoneFollowTheData) {
    struct Case {
        const char* name;
        const char* description;
        std::int32_t repeatCount;
        const char* userPhone;
        Texts heading, repeated, phone;
    };
    const Case cases[] = {
        {"E1",
         "North Entrance",
         1,
         "(360) 555-0148",
         {"E1 - North Entrance"},
         {},
         {"(360) 555-0148"}},
        {"E2", "E2", 2, "", {"E2"}, {"Elevation was repeated 2 times."}, {"(360) 555-0100"}},
        {"E3", "e3", 0, "", {"E3 - e3"}, {}, {"(360) 555-0100"}},
        {"E4", "", 12, " ", {"E4 - "}, {"Elevation was repeated 12 times."}, {" "}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        host::ElevationPartsReportData data =
            elevationParts(c.name, c.description, c.repeatCount, 3);
        data.User.phone = c.userPhone;
        reports::ElevPartsAR report;
        report.ReportData = &data;
        report.run();
        const page::Pages& pages = report.pages();
        EXPECT_EQ(printed(pages, "lElevation"), c.heading);
        EXPECT_EQ(printed(pages, "lRepeated"), c.repeated);
        EXPECT_EQ(printed(pages, "lPhone"), c.phone);
        EXPECT_EQ(printed(pages, "lSystem"), Texts{"Series 450T thermal storefront"});
        EXPECT_EQ(printed(pages, "lFinish"), Texts{"Dark Bronze Anodized"});
        EXPECT_EQ(printed(pages, "lCompanyName"), Texts{"Cascade Glass & Glazing, Inc."});
        EXPECT_EQ(printed(pages, "lVendor"), Texts{"Pacific Architectural Aluminum"});
        EXPECT_EQ(printed(pages, "lJobName"), Texts{kPartsJob});
        EXPECT_EQ(printed(pages, "Field2"), (Texts{"SF-4501", "SF-4502", "SF-4503"}));
        EXPECT_EQ(printed(pages, "txtPageNumber"), Texts{"Page  1 of  1"});
    }
    EXPECT_TRUE(shown().empty());
}

TEST_F(PartsReportTest, TheSameObjectPrintsEveryLineOfEachElevationItRuns) {
    const auto first = elevationParts("E1", "Entrance", 1, 70);
    const auto second = elevationParts("E2", "Storefront", 3, 4);
    const auto empty = elevationParts("E3", "Vestibule", 1, 0);
    reports::ElevPartsAR report;
    for (const auto* data : {&first, &second, &first, &empty}) {
        report.ReportData = data;
        report.run();
        const page::Pages& pages = report.pages();
        Texts expected;
        for (const auto& item : data->Items)
            expected.push_back(item.PartNumber);
        EXPECT_EQ(printed(pages, "Field2"), expected);
        // The elevation heading stands over the first line; the firm's heading always prints.
        EXPECT_EQ(printed(pages, "lElevation").size(), data->Items.empty() ? 0u : 1u);
        EXPECT_EQ(printed(pages, "lCompanyName").size(), 1u);
        const std::string count = std::to_string(pages.pages.size());
        Texts footers;
        for (std::size_t k = 1; k <= pages.pages.size(); ++k)
            footers.push_back("Page  " + std::to_string(k) + " of  " + count);
        EXPECT_EQ(printed(pages, "txtPageNumber"), footers);
    }
    EXPECT_TRUE(shown().empty());
}

// ---- PrintElevationPartsReport ---------------------------------------------------------------

TEST_F(PartsReportTest, PrintElevationPartsReportReadsTheFirmAndVendorThroughItsConnections) {
    auto master = std::make_shared<db::Connection>("sqlite::memory:");
    master->execute("CREATE TABLE Company (sName TEXT, sPhone TEXT, sFax TEXT, sEmail TEXT)");
    master->execute("INSERT INTO Company VALUES ('Harbor Glass Works', '(206) 555-0190', "
                    "'(206) 555-0191', '')");
    auto vendor = std::make_shared<db::Connection>("sqlite::memory:");
    vendor->execute("CREATE TABLE Vendor (sName TEXT)");
    vendor->execute("INSERT INTO Vendor VALUES ('Northwest Extrusions')");
    service::PrintService service;
    service.setMasterConnection(master);
    service.setVendorConnection(vendor);
    host::User user{7, "Lee Ames", "", ""};
    host::ElevationData elevation = elevationParts("S1", "Lobby", 4, 0).Elevation;
    host::PartsReportListItems items = parts(2);
    std::string vendorPath = m_dir.path().string();
    const auto printedFile = m_dir / "printed.pdf";
    ::setenv("QUARVEX_PRINTER", ("file:" + printedFile.string()).c_str(), 1);
    service.PrintElevationPartsReport(user, elevation, items, vendorPath, false);
    EXPECT_TRUE(shown().empty());
    const std::string text = costPdfText(printedFile);
    for (const char* expected : {"Harbor Glass Works", "Northwest Extrusions", "(206) 555-0190",
                                 "S1 - Lobby", "Elevation was repeated 4 times.", "SF-4502"})
        EXPECT_NE(text.find(expected), std::string::npos) << expected;
    EXPECT_FALSE(std::filesystem::exists(m_dir / "Jobs")) << "nothing is exported";

    // A run that fails (printing to a file without a name) shows the message box, not the
    // error dialog.
    ::setenv("QUARVEX_PRINTER", "file:", 1);
    service.PrintElevationPartsReport(user, elevation, items, vendorPath, false);
    ::unsetenv("QUARVEX_PRINTER");
    ASSERT_EQ(m_host.messages->shown.size(), 1u);
    EXPECT_EQ(m_host.messages->shown[0].title, "Error Encountered");
    EXPECT_EQ(m_host.messages->shown[0].text.rfind("QUARVEX_PRINTER asks for a file", 0), 0u);
}

} // namespace
} // namespace qr::test
