// The JSON form of the elevation glass report data: one elevation as a document, the list of
// the multi-elevation report as the JSON array itself; what the reports read must be there
// with a value of its kind (money as numbers), or the error names its key path.
#include "platform/core/error.hpp"
#include "platform/host/report_data_json.hpp"

#include <gtest/gtest.h>

namespace qr::host {
namespace {

const std::string kBlock = R"(, "TypeLabel": "", "BlockWidth": 50, "BlockHeight": 98,
    "BlockArea": 34.03, "BlockPrice": 513.85)";

std::string elevation(const std::string& price = "15.1", const std::string& block = kBlock) {
    return R"({"User": {"Phone": ""},
  "Company": {"Name": "Cascade Glass", "Phone": "(360) 555-0100", "Fax": "(360) 555-0101"},
  "Elevation": {"Name": "E1", "Title": "North Entrance", "Repetitions": 3,
                "Job": {"JobName": "Riverside Medical Office Building"}},
  "GlassItems": [{"Quantity": 2, "Description": "1\" Insulated Low-E Clear", "Thickness": 1,
    "GlassType": "Tempered", "PricePerSqFt": )" +
           price + R"(, "Width": 48.25, "LeftHeight": 96.625,
    "RightHeight": 96.625, "Area": 32.37)" +
           block + "}]}";
}

std::string without(std::string text, const std::string& part) {
    const auto at = text.find(part);
    EXPECT_NE(at, std::string::npos) << part;
    return text.erase(at, part.size());
}

TEST(ElevationGlassJson, NamesTheKeyPathOfWhatIsMissingOrOfTheWrongKind) {
    enum Read { Basic, Block, ListBlock };
    struct Case {
        Read read;
        std::string json;
        std::string error; // empty: accepted
    };
    const std::string list = R"({"oElevationGlassReportDataList": [)" + elevation() + ", " +
                             elevation("\"15.10\"") + "]}";
    const Case cases[] = {
        {Block, elevation(), ""},
        {Block, elevation("\"15.10\""), "GlassItems[0].PricePerSqFt must be a number"},
        // The block figures are read by the block-size report only.
        {Basic, elevation("15.1", ""), ""},
        {Block, elevation("15.1", ""), "missing key GlassItems[0].TypeLabel"},
        {Basic, without(elevation(), R"("Repetitions": 3,)"), "missing key Elevation.Repetitions"},
        {Basic, without(elevation(), R"("Quantity": 2, )"), "missing key GlassItems[0].Quantity"},
        {ListBlock, list, "oElevationGlassReportDataList[1].GlassItems[0].PricePerSqFt must be"},
        {ListBlock, "[" + elevation() + ", {}]", "missing key [1].User"},
        {ListBlock, R"({"oElevationGlassReportDataList": {}})",
         "oElevationGlassReportDataList must be a list"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.json);
        try {
            if (c.read == ListBlock)
                elevationGlassReportDataListFromJson(c.json, true);
            else
                elevationGlassReportDataFromJson(c.json, c.read == Block);
            EXPECT_EQ(c.error, "") << "accepted";
        } catch (const Error& e) {
            EXPECT_EQ(e.number(), 999);
            EXPECT_EQ(e.description().rfind("Report data: " + c.error, 0), 0u) << e.description();
            EXPECT_NE(c.error, "") << e.description();
        }
    }
}

TEST(ElevationGlassJson, ReadsMoneyFromNumbersAndTheListReadsBackAsWritten) {
    const ElevationGlassReportData one = elevationGlassReportDataFromJson(elevation(), true);
    EXPECT_EQ(one.Elevation.Repetitions, 3);
    EXPECT_EQ(one.GlassItems.at(0).PricePerSqFt.ticks(), 151000);
    EXPECT_EQ(one.GlassItems.at(0).BlockPrice.ticks(), 5138500);

    ElevationGlassReportData other = one;
    other.GlassItems[0].PricePerSqFt = Currency::fromTicks(123457); // $12.3457
    const std::string written = toJson(ElevationGlassReportDataList{one, other});
    EXPECT_EQ(written.front(), '[') << "a list parameter on its own is the array itself";
    const ElevationGlassReportDataList read = elevationGlassReportDataListFromJson(written, true);
    ASSERT_EQ(read.size(), 2u);
    EXPECT_EQ(read[1].GlassItems[0].PricePerSqFt.ticks(), 123457);
    EXPECT_EQ(toJson(read), written);
    // The list keyed by its parameter name is the same list.
    const std::string keyed = "{\"oElevationGlassReportDataList\": " + written + "}";
    EXPECT_EQ(toJson(elevationGlassReportDataListFromJson(keyed, true)), written);
}

} // namespace
} // namespace qr::host
