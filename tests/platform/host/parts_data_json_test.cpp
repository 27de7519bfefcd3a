// The JSON contract of the parts report data: keys are the host's member names, lists are
// arrays, a method with several host objects takes them keyed by parameter name, and whatever
// the report reads must be there with a value of its kind, or the error names its key path.
#include "platform/core/error.hpp"
#include "platform/host/json_node.hpp"
#include "platform/host/report_data_json.hpp"

#include <functional>
#include <gtest/gtest.h>

namespace qr::host {
namespace {

const std::string kHeading = R"(
  "User": {"Name": "Dana Whitfield", "Phone": "", "Email": "dana@example.com"},
  "Company": {"Name": "Cascade Glass", "Phone": "(360) 555-0100", "Fax": "(360) 555-0101"},
  "Vendor": {"Name": "Pacific Architectural Aluminum"},
  "JobName": "Maple Street Dental", "FinishColor": "Dark Bronze")";

std::string finalPartsItem(const std::string& multiplier) {
    return R"({"Quantity": 12, "PartNumber": "SF-4501", "StockLength": 288,
      "Part": {"PartType": "Frame", "Description": "Head", "PackageQuantity": 0,
               "Multiplier": )" +
           multiplier + R"(},
      "PackageQuantity": 0, "PackagesToOrder": 12, "UnitPrice": 2.5, "PackagePrice": 2.5,
      "Total": 24})";
}

std::string finalParts(const std::string& fourthMultiplier = "0.8",
                       const std::string& defaults = R"({"FinalPartsReportTitle": null})") {
    std::string items;
    for (const char* m : {"0.8", "0.8", "0.8"})
        items += finalPartsItem(m) + ",";
    items += finalPartsItem(fourthMultiplier);
    return R"({"oReportData": {)" + kHeading + R"(, "PriceByUnit": true, "Items": [)" + items +
           R"(]}, "oUserDefaults": )" + defaults + "}";
}

std::string cutList(const std::string& cuts) {
    return "{" + kHeading + R"(, "Items": [{"PartNumber": "CW-7501", "Description": "Mullion",
      "StockLength": 288, "Yield": 0.9, "LengthOfCuts": 21.5, "StockNumber": 1,
      "StocksRequired": 3, "Cuts": )" +
           cuts + "}]}";
}

std::string jobParts(const std::string& item) {
    return "{" + kHeading + R"(, "Items": [{"Quantity": 2, "PartNumber": "SF-4503",
      "Description": "Jamb", "PartType": "Frame", "Length": "120")" +
           item + "}]}";
}

// Two stock pieces as the metal cut listing and the metal labels read them.
std::string metalCuts(const std::string& secondCut = R"("CutLength": 12.375)") {
    return R"({"Job": {"JobName": "Harbor Point"}, "TopOffset": 100, "LeftOffset": -50,
      "StockPieces": [
        {"Part": {"PartNumber": "SF-4503", "PartType": "Frame"}, "StockNumber": 1,
         "StockCount": 2, "Cuts": [
           {"CutLength": 120, "ElevationName": "E1", "CutLabel": "E1-01", "PartType": "Jamb"},
           {)" +
           secondCut +
           R"(, "ElevationName": "E1", "CutLabel": "E1-02", "PartType": "Head"}]},
        {"Part": {"PartNumber": "SF-4503", "PartType": "Frame"}, "StockNumber": 2,
         "StockCount": 2, "Cuts": [
           {"CutLength": 30, "ElevationName": "E2", "CutLabel": "E2-01", "PartType": "Sill"}]}]})";
}

std::string without(std::string text, const std::string& part) {
    const auto at = text.find(part);
    EXPECT_NE(at, std::string::npos) << part;
    return text.erase(at, part.size());
}

TEST(PartsReportDataJson, NamesTheKeyPathOfWhatIsMissingOrOfTheWrongKind) {
    using Read = std::function<void(const std::string&)>;
    const Read priced = [](const std::string& j) { finalPartsCallFromJson(j, true); };
    const Read noPrices = [](const std::string& j) { finalPartsCallFromJson(j, false); };
    const Read perJob = [](const std::string& j) { jobPartsReportDataFromJson(j, false); };
    const Read byElevation = [](const std::string& j) { jobPartsReportDataFromJson(j, true); };
    const Read cuts = [](const std::string& j) { optimizedCutListReportDataFromJson(j); };
    const Read lineal = [](const std::string& j) { linealReportDataFromJson(j); };
    const Read recap = [](const std::string& j) { metalRecapReportDataFromJson(j); };
    const Read listing = [](const std::string& j) {
        cutLabelsReportDataFromJson(j, CutReportReads::Listing);
    };
    const Read cutLabels = [](const std::string& j) {
        cutLabelsReportDataFromJson(j, CutReportReads::CutPartType);
    };
    const Read pieceLabels = [](const std::string& j) {
        cutLabelsReportDataFromJson(j, CutReportReads::PiecePartType);
    };
    const std::string eightCuts = R"J([{"CutText": "120 (C1)"}, null, null, null, null, null,
                                        null, null])J";
    struct Case {
        Read read;
        std::string json;
        std::string error; // empty: accepted
    };
    const Case cases[] = {
        {priced, finalParts(), ""},
        {priced, finalParts("\"0.8\""), "oReportData.Items[3].Part.Multiplier must be a number"},
        {priced, without(finalParts(), R"(, "oUserDefaults": {"FinalPartsReportTitle": null})"),
         "missing key oUserDefaults"},
        {priced, finalParts("0.8", "{}"), "missing key oUserDefaults.FinalPartsReportTitle"},
        {priced, finalParts("0.8", R"({"FinalPartsReportTitle": 7})"),
         "oUserDefaults.FinalPartsReportTitle must be a text"},
        {priced, without(finalParts(), R"("UnitPrice": 2.5, )"),
         "missing key oReportData.Items[0].UnitPrice"},
        // The report without prices never reads the unit price.
        {noPrices, without(finalParts(), R"("UnitPrice": 2.5, )"), ""},
        {priced, without(finalParts(), R"(, "Email": "dana@example.com")"),
         "missing key oReportData.User.Email"},
        {priced, R"({"oReportData": [], "oUserDefaults": {}})", "oReportData must be an object"},
        {priced, "[]", "the document must be a JSON object"},
        {priced, "{\"oReportData\": ", "not valid JSON at offset"},
        {perJob, jobParts(""), ""},
        {byElevation, jobParts(""), "missing key Items[0].ElevationName"},
        {byElevation, jobParts(R"(, "ElevationName": "E1", "ElevationSortIndex": 1.5)"),
         "Items[0].ElevationSortIndex must be a whole number"},
        {perJob, without(jobParts(""), R"(, "FinishColor": "Dark Bronze")"),
         "missing key FinishColor"},
        {perJob, without(jobParts(""), R"(, "Fax": "(360) 555-0101")"), "missing key Company.Fax"},
        {cuts, cutList(eightCuts), ""},
        {cuts, cutList(R"([null, null])"),
         "Items[0].Cuts must hold 8 entries (null where a position has no cut), not 2"},
        {cuts, cutList(R"([null, "120", null, null, null, null, null, null])"),
         "Items[0].Cuts[1] must be an object"},
        {cuts, cutList(R"([{"Text": "120"}, null, null, null, null, null, null, null])"),
         "missing key Items[0].Cuts[0].CutText"},
        {cuts, cutList(R"({"0": null})"), "Items[0].Cuts must be a list"},
        {lineal, "{" + kHeading + R"(, "Items": [{"Quantity": "1,250", "PartNumber": "LN-1",
           "Description": "Gasket", "FromTable": "Gasket", "PricePerUnit": "$0.34",
           "Multiplier": 0.65}]})",
         ""},
        {lineal, "{" + kHeading + R"(, "Items": [{"Quantity": true, "PartNumber": "LN-1",
           "Description": "Gasket", "FromTable": "Gasket", "PricePerUnit": 1, "Multiplier": 1}]})",
         "Items[0].Quantity must be a number or a text"},
        {recap, "{" + kHeading + R"(, "Items": [{"Quantity": 2, "PartNumber": "SF-1",
           "Description": "Jamb", "StockLength": 252, "StockQuantity": 2.5,
           "LengthString": "120"}]})",
         "Items[0].StockQuantity must be a whole number"},
        {recap, "{" + kHeading + R"(, "Items": {}})", "Items must be a list"},
        {cutLabels, metalCuts(), ""},
        {cutLabels, metalCuts(R"("CutLength": "12 3/8")"),
         "StockPieces[0].Cuts[1].CutLength must be a number"},
        {cutLabels, without(metalCuts(), R"(, "PartType": "Sill")"),
         "missing key StockPieces[1].Cuts[0].PartType"},
        // The listing reads neither the offsets nor the cuts' labels and part types; variant
        // C of the labels prints the piece's part type, not the cut's.
        {listing, without(without(metalCuts(), R"("TopOffset": 100, )"), R"(, "PartType": "Sill")"),
         ""},
        {listing, without(metalCuts(), R"("StockCount": 2, )"),
         "missing key StockPieces[0].StockCount"},
        {pieceLabels, without(metalCuts(), R"(, "PartType": "Sill")"), ""},
        {pieceLabels, without(metalCuts(), R"(, "PartType": "Frame")"),
         "missing key StockPieces[0].Part.PartType"},
        {listing, R"({"Job": {"JobName": "J"}, "StockPieces": [{"Part": {"PartNumber": "P",
           "PartType": "T"}, "StockNumber": 1, "StockCount": 1, "Cuts": []}]})",
         "StockPieces[0].Cuts must hold at least one cut"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.json);
        try {
            c.read(c.json);
            EXPECT_EQ(c.error, "") << "accepted";
        } catch (const Error& e) {
            EXPECT_EQ(e.number(), 999);
            EXPECT_EQ(e.description().rfind("Report data: " + c.error, 0), 0u) << e.description();
            EXPECT_NE(c.error, "") << e.description();
        }
    }
}

TEST(PartsReportDataJson, ReadsTheMembersAndIgnoresKeysItDoesNotKnow) {
    std::string json = finalParts("0.75", R"({"FinalPartsReportTitle": "  Parts  ", "Theme": 2})");
    json.insert(json.find("\"PriceByUnit\""), R"("Estimate": {"Revision": 3}, )");
    const FinalPartsCallData call = finalPartsCallFromJson(json, true);
    const FinalPartsReportData& data = call.oReportData;
    EXPECT_EQ(data.User.phone, "");
    EXPECT_EQ(data.Company.fax, "(360) 555-0101");
    EXPECT_EQ(data.Vendor.name, "Pacific Architectural Aluminum");
    EXPECT_EQ(data.FinishColor, "Dark Bronze");
    EXPECT_TRUE(data.PriceByUnit);
    ASSERT_EQ(data.Items.size(), 4u);
    EXPECT_EQ(data.Items[3].Part.Multiplier, 0.75);
    EXPECT_EQ(data.Items[0].Quantity, 12);
    EXPECT_EQ(data.Items[0].Total, 24);
    EXPECT_EQ(call.oUserDefaults.FinalPartsReportTitle, "  Parts  ") << "not trimmed";
    EXPECT_FALSE(finalPartsCallFromJson(finalParts(), true).oUserDefaults.FinalPartsReportTitle);

    const auto rows = optimizedCutListReportDataFromJson(
        cutList(R"J([{"CutText": "120 (C1)"}, null, {"CutText": ""}, null, null, null, null,
                      null, {"CutText": "not read"}])J"));
    ASSERT_EQ(rows.Items.size(), 1u);
    const auto& cuts = rows.Items[0].Cuts;
    EXPECT_EQ(cuts[0]->CutText, "120 (C1)");
    EXPECT_FALSE(cuts[1]);
    EXPECT_EQ(cuts[2]->CutText, "") << "a cut with an empty text is still a cut";
    EXPECT_EQ(rows.Items[0].StocksRequired, 3);
}

TEST(JsonNode, DatesAreIsoTextAndMoneyKeepsFourDecimals) {
    const JsonNode root = JsonNode::parse(R"({"a": "2024-03-15", "b": "2024-03-15T14:05",
        "c": "2024-03-15 14:05:30", "d": "2024-02-30", "e": "15/03/2024", "f": 20240315,
        "g": "2024-03-15T25:00", "m": 12.34567})");
    EXPECT_EQ(root.date("a"), Date::fromParts(2024, 3, 15));
    EXPECT_EQ(root.date("b"), Date::fromParts(2024, 3, 15, 14, 5));
    EXPECT_EQ(root.date("c"), Date::fromParts(2024, 3, 15, 14, 5, 30));
    for (const char* bad : {"d", "e", "f", "g"}) {
        try {
            root.date(bad);
            ADD_FAILURE() << bad << " accepted";
        } catch (const Error& e) {
            EXPECT_EQ(
                e.description().rfind("Report data: " + std::string(bad) + " must be a date", 0),
                0u)
                << e.description();
        }
    }
    EXPECT_EQ(root.currency("m").ticks(), 123457);
    EXPECT_EQ(root.date("missing", Presence::Optional), Date());
}

} // namespace
} // namespace qr::host
