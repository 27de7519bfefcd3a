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

TEST(ElevationDataJson, WhatIsWrittenReadsBackTheSame) {
    const ElevationPartsReportDataList list = {elevationParts("E1", 3), elevationParts("E2", 0)};
    const std::string json = toJson(list);
    EXPECT_EQ(toJson(elevationPartsReportDataListFromJson(json)), json);
    const std::string keyed = R"({"oElevationPartsReportDataList": )" + json + "}";
    EXPECT_EQ(toJson(elevationPartsReportDataListFromJson(keyed)), json);

    const auto& one = list[0];
    const std::string call = elevationPartsCallToJson(one.User, one.Elevation, one.Items);
    const ElevationPartsCallData back = elevationPartsCallFromJson(call);
    EXPECT_EQ(elevationPartsCallToJson(back.oUser, back.oElevation, back.oPartsReportListItems),
              call);
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
