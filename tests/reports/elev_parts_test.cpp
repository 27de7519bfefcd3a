// The elevation parts report: its elevation heading, repeat note and phone fallback, rows that
// start over at every run of the same object, and PrintElevationPartsReport building the data
// from the firm's and vendor's records it reads through the service's connections.
#include "platform/core/error.hpp"
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
        EXPECT_EQ(printed(pages, "lFax"), Texts{"(360) 555-0101"});
        EXPECT_EQ(printed(pages, "lVendor"), Texts{"Pacific Architectural Aluminum"});
        EXPECT_EQ(printed(pages, "lJobName"), Texts{kPartsJob});
        EXPECT_EQ(printed(pages, "Field2"), (Texts{"SF-4501", "SF-4502", "SF-4503"}));
        EXPECT_EQ(printed(pages, "Field5"), Texts(3, "120 1/4"));
        EXPECT_EQ(printed(pages, "txtPageNumber"), Texts{"Page  1 of  1"});
        EXPECT_EQ(printed(pages, "RptDate"), Texts{"3/15/2024"});
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

TEST_F(PartsReportTest, WithoutReportDataTheStartHandlerReportsItAndTheRunFails) {
    reports::ElevPartsAR report;
    EXPECT_THROW(report.run(), Error);
    EXPECT_EQ(shown(),
              Texts{"Quarvex Error: Description: Object variable or With block variable "
                    "not set\r\nModule: ElevPartsAR\r\nFunction: ActiveReport_ReportStart"});
}

// ---- PrintElevationPartsReport ---------------------------------------------------------------

class ElevationPartsServiceTest : public PartsReportTest {
  protected:
    void SetUp() override {
        PartsReportTest::SetUp();
        m_master = std::make_shared<db::Connection>("sqlite::memory:");
        m_master->execute("CREATE TABLE Company (sName TEXT, sPhone TEXT, sFax TEXT, sEmail TEXT)");
        m_master->execute("INSERT INTO Company VALUES ('Harbor Glass Works', '(206) 555-0190', "
                          "'(206) 555-0191', 'office@harborglass.example')");
        m_vendor = std::make_shared<db::Connection>("sqlite::memory:");
        m_vendor->execute("CREATE TABLE Vendor (sName TEXT)");
        m_vendor->execute("INSERT INTO Vendor VALUES ('Northwest Extrusions')");
        ::setenv("QUARVEX_PRINTER", ("file:" + printedFile().string()).c_str(), 1);
    }
    void TearDown() override {
        ::unsetenv("QUARVEX_PRINTER");
        PartsReportTest::TearDown();
    }
    std::filesystem::path printedFile() const { return m_dir / "printed.pdf"; }

    host::ConnectionRef m_master, m_vendor;
};

TEST_F(ElevationPartsServiceTest, TheFirmAndVendorComeFromTheConnectionsTheRestFromTheArguments) {
    service::PrintService service;
    service.setMasterConnection(m_master);
    service.setVendorConnection(m_vendor);
    host::User user{7, "Lee Ames", "", "lee@harborglass.example"};
    host::ElevationData elevation = elevationParts("S1", "Lobby", 4, 0).Elevation;
    host::PartsReportListItems items = parts(2);
    std::string vendorPath = m_dir.path().string();
    service.PrintElevationPartsReport(user, elevation, items, vendorPath, false);

    EXPECT_TRUE(shown().empty());
    const std::string text = costPdfText(printedFile());
    for (const char* expected :
         {"Elevation Parts Report", "Harbor Glass Works", "Northwest Extrusions", "(206) 555-0190",
          "(206) 555-0191", "S1 - Lobby", "Elevation was repeated 4 times.", "SF-4502"})
        EXPECT_NE(text.find(expected), std::string::npos) << expected;
    EXPECT_EQ(host::moduleState().vendorPath, m_dir.path().string());
    // Nothing is exported.
    EXPECT_FALSE(std::filesystem::exists(m_dir / "Jobs"));
}

TEST_F(ElevationPartsServiceTest, AFailureShowsTheErrorEncounteredBoxAndTheMethodReturns) {
    struct Case {
        const char* what;
        bool vendorTable;
        const char* printer;
        const char* description; ///< the start of the message
    };
    const Case cases[] = {
        {"the vendor record cannot be read", false, nullptr, ""},
        {"printing fails", true, "file:", "QUARVEX_PRINTER asks for a file but names none"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        m_host.messages->shown.clear();
        service::PrintService service;
        service.setMasterConnection(m_master);
        service.setVendorConnection(
            c.vendorTable ? m_vendor : std::make_shared<db::Connection>("sqlite::memory:"));
        if (c.printer)
            ::setenv("QUARVEX_PRINTER", c.printer, 1);
        host::User user;
        host::ElevationData elevation;
        host::PartsReportListItems items = parts(1);
        std::string vendorPath = "/data/vendor";
        EXPECT_NO_THROW(
            service.PrintElevationPartsReport(user, elevation, items, vendorPath, false));
        ASSERT_EQ(m_host.messages->shown.size(), 1u);
        const auto& message = m_host.messages->shown[0];
        EXPECT_EQ(message.title, "Error Encountered");
        EXPECT_EQ(message.icon, host::MessageIcon::Information);
        EXPECT_FALSE(message.text.empty());
        EXPECT_EQ(message.text.rfind(c.description, 0), 0u) << message.text;
        EXPECT_EQ(host::moduleState().vendorPath, "/data/vendor") << "stored before the vendor";
    }
}

} // namespace
} // namespace qr::test
