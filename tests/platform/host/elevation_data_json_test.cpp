// The JSON of the elevation parts methods: PrintElevationPartsReport's three host objects keyed
// by parameter name, the list of PrintMultipleElevationPartsReports as the document's array;
// what is written reads back the same, and what is wrong is named by its key path.
#include "platform/core/error.hpp"
#include "platform/host/report_data_json.hpp"

#include <gtest/gtest.h>

namespace qr::host {
namespace {

ElevationData elevation(const std::string& name, std::int32_t repeats) {
    return {name, "North Entrance", repeats, "Dark Bronze", {"Storefront"}, {2, "Maple Street"}};
}

ElevationPartsReportData elevationParts(const std::string& name, int lines) {
    ElevationPartsReportData data;
    data.User = {3, "Dana", "(360) 555-0148", "dana@example.com"};
    data.Company = {"Cascade Glass", "(360) 555-0100", "(360) 555-0101", ""};
    data.Vendor = {"Pacific Architectural Aluminum"};
    data.Elevation = elevation(name, 2);
    for (int i = 0; i < lines; ++i)
        data.Items.push_back({i + 1, "SF-450" + std::to_string(i), "Jamb", "Frame", "120", "", 0});
    return data;
}

void expectSame(const ElevationPartsReportData& a, const ElevationPartsReportData& b) {
    EXPECT_EQ(a.User.phone, b.User.phone);
    EXPECT_EQ(a.Company.name, b.Company.name);
    EXPECT_EQ(a.Company.fax, b.Company.fax);
    EXPECT_EQ(a.Vendor.name, b.Vendor.name);
    EXPECT_EQ(a.Elevation.Name, b.Elevation.Name);
    EXPECT_EQ(a.Elevation.RepeatCount, b.Elevation.RepeatCount);
    EXPECT_EQ(a.Elevation.System.Name, b.Elevation.System.Name);
    EXPECT_EQ(a.Elevation.Job.JobName, b.Elevation.Job.JobName);
    ASSERT_EQ(a.Items.size(), b.Items.size());
    for (std::size_t i = 0; i < a.Items.size(); ++i) {
        EXPECT_EQ(a.Items[i].Quantity, b.Items[i].Quantity);
        EXPECT_EQ(a.Items[i].PartNumber, b.Items[i].PartNumber);
        EXPECT_EQ(a.Items[i].Length, b.Items[i].Length);
    }
}

TEST(ElevationDataJson, WhatIsWrittenReadsBackTheSame) {
    const ElevationPartsReportDataList list = {elevationParts("E1", 3), elevationParts("E2", 0)};
    const ElevationPartsReportDataList back = elevationPartsReportDataListFromJson(toJson(list));
    ASSERT_EQ(back.size(), 2u);
    expectSame(back[0], list[0]);
    expectSame(back[1], list[1]);
    const auto keyed = elevationPartsReportDataListFromJson(
        R"({"oElevationPartsReportDataList": )" + toJson(list) + "}");
    ASSERT_EQ(keyed.size(), 2u);
    expectSame(keyed[1], list[1]);

    const auto& one = list[0];
    const ElevationPartsCallData call =
        elevationPartsCallFromJson(elevationPartsCallToJson(one.User, one.Elevation, one.Items));
    EXPECT_EQ(call.oUser.phone, one.User.phone);
    EXPECT_EQ(call.oElevation.Description, one.Elevation.Description);
    EXPECT_EQ(call.oElevation.Finish, one.Elevation.Finish);
    ASSERT_EQ(call.oPartsReportListItems.size(), 3u);
    EXPECT_EQ(call.oPartsReportListItems[2].PartNumber, "SF-4502");
}

TEST(ElevationDataJson, NamesTheKeyPathOfWhatIsMissingOrOfTheWrongKind) {
    const std::string good = toJson(ElevationPartsReportDataList{elevationParts("E1", 2)});
    const auto replaced = [&](const std::string& from, const std::string& to) {
        std::string text = good;
        const auto at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        return text.replace(at, from.size(), to);
    };
    struct Case {
        std::string json;
        std::string error;
    };
    const Case cases[] = {
        {R"({"Elevation": {}})", "missing key oElevationPartsReportDataList"},
        {"[3]", "[0] must be an object"},
        {replaced("\"RepeatCount\": 2", "\"RepeatCount\": \"2\""),
         "[0].Elevation.RepeatCount must be a whole number"},
        {replaced("\"Fax\"", "\"Facsimile\""), "missing key [0].Company.Fax"},
        {replaced("\"Quantity\": 2", "\"Quantity\": 2.5"),
         "[0].Items[1].Quantity must be a whole number"},
        {replaced("\"System\": {", "\"Systems\": {"), "missing key [0].Elevation.System"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.json.substr(0, 80));
        try {
            elevationPartsReportDataListFromJson(c.json);
            ADD_FAILURE() << "no error";
        } catch (const Error& e) {
            EXPECT_EQ(e.description(), "Report data: " + c.error);
        }
    }
    try {
        elevationPartsCallFromJson(R"({"oUser": {"Phone": ""}, "oElevation": {}})");
        ADD_FAILURE() << "no error";
    } catch (const Error& e) {
        EXPECT_EQ(e.description(), "Report data: missing key oElevation.Name");
    }
}

} // namespace
} // namespace qr::host
