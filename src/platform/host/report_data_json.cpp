#include "platform/host/report_data_json.hpp"

#include "platform/core/convert.hpp"
#include "platform/db/connection.hpp"
#include "platform/host/json_node.hpp"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

namespace qr::host {

namespace {

constexpr Presence kRequired = Presence::Required;
constexpr Presence kOptional = Presence::Optional;

Presence presence(bool required) {
    return required ? kRequired : kOptional;
}

// ---- Reading --------------------------------------------------------------------------------

/// The User, Company, Vendor and Job members of the glass data (and of the heading-only types).
void readHeading(const JsonNode& root, ReportHeading& heading, bool required) {
    const Presence need = presence(required);
    const JsonNode user = root.object("User", need);
    heading.User.name = user.text("Name", need);
    heading.User.phone = user.text("Phone", need);
    heading.User.email = user.text("Email", need);
    const JsonNode company = root.object("Company", need);
    heading.Company.name = company.text("Name", need);
    heading.Company.phone = company.text("Phone", need);
    heading.Company.fax = company.text("Fax", kOptional);
    heading.Company.email = company.text("Email", kOptional);
    heading.Vendor.name = root.object("Vendor", kOptional).text("Name", kOptional);
    const JsonNode job = root.object("Job", need);
    heading.Job.JobID = job.wholeNumber("JobID", need);
    heading.Job.JobName = job.text("JobName", need);
}

/// Which heading members of the parts data a report reads (and so requires). The phone, the
/// firm's name and phone, the vendor and the job name every parts report reads.
struct PartsHeadingReads {
    bool userNameAndEmail = false;
    bool companyFax = true;
    bool finishColor = true;
};

PartsReportHeading readPartsHeading(const JsonNode& data, PartsHeadingReads reads) {
    PartsReportHeading heading;
    const JsonNode user = data.object("User");
    heading.User.name = user.text("Name", presence(reads.userNameAndEmail));
    heading.User.phone = user.text("Phone");
    heading.User.email = user.text("Email", presence(reads.userNameAndEmail));
    const JsonNode company = data.object("Company");
    heading.Company.name = company.text("Name");
    heading.Company.phone = company.text("Phone");
    heading.Company.fax = company.text("Fax", presence(reads.companyFax));
    heading.Company.email = company.text("Email", kOptional);
    heading.Vendor.name = data.object("Vendor").text("Name");
    heading.JobName = data.text("JobName");
    heading.FinishColor = data.text("FinishColor", presence(reads.finishColor));
    return heading;
}

FinalPartsItem readFinalPartsItem(const JsonNode& item, bool showsPrices) {
    FinalPartsItem line;
    line.Quantity = item.number("Quantity");
    line.PartNumber = item.text("PartNumber");
    const JsonNode part = item.object("Part");
    line.Part.PartType = part.text("PartType");
    line.Part.Description = part.text("Description");
    line.Part.PackageQuantity = part.number("PackageQuantity");
    line.Part.Multiplier = part.number("Multiplier");
    line.StockLength = item.number("StockLength");
    line.PackageQuantity = item.number("PackageQuantity");
    line.PackagesToOrder = item.number("PackagesToOrder");
    line.UnitPrice = item.number("UnitPrice", presence(showsPrices));
    line.PackagePrice = item.number("PackagePrice");
    line.Total = item.number("Total");
    return line;
}

LinealItem readLinealItem(const JsonNode& item) {
    return {item.numberOrText("Quantity"),     item.text("PartNumber"),
            item.text("Description"),          item.text("FromTable"),
            item.numberOrText("PricePerUnit"), item.numberOrText("Multiplier")};
}

MetalRecapItem readMetalRecapItem(const JsonNode& item) {
    return {item.wholeNumber("Quantity"),      item.text("PartNumber"),
            item.text("Description"),          static_cast<float>(item.number("StockLength")),
            item.wholeNumber("StockQuantity"), item.text("LengthString")};
}

PartsReportListItem readPartsListItem(const JsonNode& item, bool byElevation) {
    return {item.wholeNumber("Quantity"),
            item.text("PartNumber"),
            item.text("Description"),
            item.text("PartType"),
            item.text("Length"),
            item.text("ElevationName", presence(byElevation)),
            item.wholeNumber("ElevationSortIndex", presence(byElevation))};
}

CutListRow readCutListRow(const JsonNode& item) {
    CutListRow row;
    row.PartNumber = item.text("PartNumber");
    row.Description = item.text("Description");
    row.StockLength = item.number("StockLength");
    row.Yield = item.number("Yield");
    const std::vector<JsonNode> cuts = item.list("Cuts");
    if (cuts.size() < row.Cuts.size()) {
        failReportData(item.path() +
                       ".Cuts must hold 8 entries (null where a position has no "
                       "cut), not " +
                       std::to_string(cuts.size()));
    }
    for (std::size_t i = 0; i < row.Cuts.size(); ++i) {
        if (!cuts[i].isNull())
            row.Cuts[i] = PatternCut{cuts[i].asObject().text("CutText")};
    }
    row.LengthOfCuts = item.number("LengthOfCuts");
    row.StockNumber = item.wholeNumber("StockNumber");
    row.StocksRequired = item.wholeNumber("StocksRequired");
    return row;
}

MetalCut readMetalCut(const JsonNode& item, CutReportReads reads) {
    const bool labels = reads != CutReportReads::Listing;
    MetalCut cut;
    cut.CutLength = item.number("CutLength");
    cut.ElevationName = item.text("ElevationName");
    cut.CutLabel = item.text("CutLabel", presence(labels));
    cut.PartType = item.text("PartType", presence(reads == CutReportReads::CutPartType));
    return cut;
}

StockPiece readStockPiece(const JsonNode& item, CutReportReads reads) {
    StockPiece piece;
    const JsonNode part = item.object("Part");
    piece.Part.PartNumber = part.text("PartNumber");
    piece.Part.PartType = part.text("PartType", presence(reads != CutReportReads::CutPartType));
    piece.StockNumber = item.wholeNumber("StockNumber");
    piece.StockCount = item.wholeNumber("StockCount", presence(reads == CutReportReads::Listing));
    const std::vector<JsonNode> cuts = item.list("Cuts");
    if (cuts.empty())
        failReportData(item.path() + ".Cuts must hold at least one cut");
    for (const JsonNode& cut : cuts)
        piece.Cuts.push_back(readMetalCut(cut.asObject(), reads));
    return piece;
}

/// The elevation as the elevation parts report reads it.
ElevationData readElevation(const JsonNode& node) {
    ElevationData elevation;
    elevation.Name = node.text("Name");
    elevation.Description = node.text("Description");
    elevation.RepeatCount = node.wholeNumber("RepeatCount");
    elevation.Finish = node.text("Finish");
    elevation.System.Name = node.object("System").text("Name");
    elevation.Job.JobID = node.object("Job").wholeNumber("JobID", kOptional);
    elevation.Job.JobName = node.object("Job").text("JobName");
    return elevation;
}

/// The user of the elevation parts report: its phone is all the report shows.
User readPhoneUser(const JsonNode& node) {
    User user;
    user.id = node.wholeNumber("UserID", kOptional);
    user.name = node.text("Name", kOptional);
    user.phone = node.text("Phone");
    user.email = node.text("Email", kOptional);
    return user;
}

PartsReportListItems readPartsList(const std::vector<JsonNode>& list) {
    PartsReportListItems items;
    items.reserve(list.size());
    for (const JsonNode& item : list)
        items.push_back(readPartsListItem(item.asObject(), false));
    return items;
}

ElevationPartsReportData readElevationParts(const JsonNode& node) {
    ElevationPartsReportData data;
    data.User = readPhoneUser(node.object("User"));
    data.Elevation = readElevation(node.object("Elevation"));
    const JsonNode company = node.object("Company");
    data.Company.name = company.text("Name");
    data.Company.phone = company.text("Phone");
    data.Company.fax = company.text("Fax");
    data.Company.email = company.text("Email", kOptional);
    data.Vendor.name = node.object("Vendor").text("Name");
    data.Items = readPartsList(node.list("Items"));
    return data;
}

/// Each item of the data's Items list through `read`.
template <class Item, class Read> std::vector<Item> readItems(const JsonNode& data, Read read) {
    std::vector<Item> items;
    for (const JsonNode& item : data.list("Items"))
        items.push_back(read(item.asObject()));
    return items;
}

ElevationGlassItem readElevationGlassItem(const JsonNode& item, bool blockFigures) {
    const Presence block = presence(blockFigures);
    ElevationGlassItem line;
    line.Quantity = item.wholeNumber("Quantity");
    line.Description = item.text("Description");
    line.Thickness = item.number("Thickness");
    line.GlassType = item.text("GlassType");
    line.TypeLabel = item.text("TypeLabel", block);
    line.PricePerSqFt = item.currency("PricePerSqFt");
    line.Width = item.number("Width");
    line.LeftHeight = item.number("LeftHeight");
    line.RightHeight = item.number("RightHeight");
    line.Area = item.number("Area");
    line.BlockWidth = item.wholeNumber("BlockWidth", block);
    line.BlockHeight = item.wholeNumber("BlockHeight", block);
    line.BlockArea = item.number("BlockArea", block);
    line.BlockPrice = item.currency("BlockPrice", block);
    return line;
}

ElevationGlassReportData readElevationGlass(const JsonNode& data, bool blockFigures) {
    ElevationGlassReportData elevation;
    const JsonNode user = data.object("User");
    elevation.User.name = user.text("Name", kOptional);
    elevation.User.phone = user.text("Phone");
    elevation.User.email = user.text("Email", kOptional);
    const JsonNode company = data.object("Company");
    elevation.Company.name = company.text("Name");
    elevation.Company.phone = company.text("Phone");
    elevation.Company.fax = company.text("Fax");
    elevation.Company.email = company.text("Email", kOptional);
    const JsonNode glassElevation = data.object("Elevation");
    elevation.Elevation.Name = glassElevation.text("Name");
    elevation.Elevation.Title = glassElevation.text("Title");
    elevation.Elevation.Repetitions = glassElevation.wholeNumber("Repetitions");
    const JsonNode job = glassElevation.object("Job");
    elevation.Elevation.Job.JobID = job.wholeNumber("JobID", kOptional);
    elevation.Elevation.Job.JobName = job.text("JobName");
    for (const JsonNode& item : data.list("GlassItems"))
        elevation.GlassItems.push_back(readElevationGlassItem(item.asObject(), blockFigures));
    return elevation;
}

// ---- Writing --------------------------------------------------------------------------------

QString qs(const std::string& text) {
    return QString::fromStdString(text);
}

QJsonValue numberOrText(const Variant& value) {
    if (value.type() == VarType::String)
        return qs(value.asString());
    if (value.isEmpty() || value.isNull())
        return QJsonValue(QJsonValue::Null);
    return toDouble(value);
}

QJsonObject companyJson(const Company& company) {
    return {{"Name", qs(company.name)},
            {"Phone", qs(company.phone)},
            {"Fax", qs(company.fax)},
            {"Email", qs(company.email)}};
}

QJsonObject partsHeadingJson(const PartsReportHeading& heading) {
    return {
        {"User", QJsonObject{{"Name", qs(heading.User.name)},
                             {"Phone", qs(heading.User.phone)},
                             {"Email", qs(heading.User.email)}}},
        {"Company", companyJson(heading.Company)},
        {"Vendor", QJsonObject{{"Name", qs(heading.Vendor.name)}}},
        {"JobName", qs(heading.JobName)},
        {"FinishColor", qs(heading.FinishColor)},
    };
}

/// The heading and the items (each through `write`) as one document.
template <class Data, class Write> QJsonObject partsDataJson(const Data& data, Write write) {
    QJsonObject object = partsHeadingJson(data);
    QJsonArray items;
    for (const auto& item : data.Items)
        items.append(write(item));
    object.insert("Items", items);
    return object;
}

QJsonObject userJson(const User& user) {
    return {{"UserID", user.id},
            {"Name", qs(user.name)},
            {"Phone", qs(user.phone)},
            {"Email", qs(user.email)}};
}

QJsonObject elevationJson(const ElevationData& elevation) {
    return {
        {"Name", qs(elevation.Name)},
        {"Description", qs(elevation.Description)},
        {"RepeatCount", elevation.RepeatCount},
        {"Finish", qs(elevation.Finish)},
        {"System", QJsonObject{{"Name", qs(elevation.System.Name)}}},
        {"Job",
         QJsonObject{{"JobID", elevation.Job.JobID}, {"JobName", qs(elevation.Job.JobName)}}},
    };
}

QJsonArray partsListJson(const PartsReportListItems& items) {
    QJsonArray list;
    for (const PartsReportListItem& item : items) {
        list.append(QJsonObject{
            {"Quantity", item.Quantity},
            {"PartNumber", qs(item.PartNumber)},
            {"Description", qs(item.Description)},
            {"PartType", qs(item.PartType)},
            {"Length", qs(item.Length)},
        });
    }
    return list;
}

std::string text(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Indented).toStdString();
}

QJsonObject reportHeadingJson(const ReportHeading& heading) {
    return {
        {"User", QJsonObject{{"Name", qs(heading.User.name)},
                             {"Phone", qs(heading.User.phone)},
                             {"Email", qs(heading.User.email)}}},
        {"Company", companyJson(heading.Company)},
        {"Vendor", QJsonObject{{"Name", qs(heading.Vendor.name)}}},
        {"Job", QJsonObject{{"JobID", heading.Job.JobID}, {"JobName", qs(heading.Job.JobName)}}},
    };
}

QJsonObject finalPartsJson(const FinalPartsReportData& data) {
    QJsonObject object = partsDataJson(data, [](const FinalPartsItem& item) {
        return QJsonObject{
            {"Quantity", item.Quantity},
            {"PartNumber", qs(item.PartNumber)},
            {"Part", QJsonObject{{"PartType", qs(item.Part.PartType)},
                                 {"Description", qs(item.Part.Description)},
                                 {"PackageQuantity", item.Part.PackageQuantity},
                                 {"Multiplier", item.Part.Multiplier}}},
            {"StockLength", item.StockLength},
            {"PackageQuantity", item.PackageQuantity},
            {"PackagesToOrder", item.PackagesToOrder},
            {"UnitPrice", item.UnitPrice},
            {"PackagePrice", item.PackagePrice},
            {"Total", item.Total},
        };
    });
    object.insert("PriceByUnit", data.PriceByUnit);
    return object;
}

/// Money as the number it is (four decimals at most, so a double carries it exactly enough to
/// read back to the same amount).
QJsonValue money(const Currency& amount) {
    return amount.toDouble();
}

QJsonObject elevationGlassJson(const ElevationGlassReportData& data) {
    QJsonArray items;
    for (const ElevationGlassItem& item : data.GlassItems) {
        items.append(QJsonObject{
            {"Quantity", item.Quantity},
            {"Description", qs(item.Description)},
            {"Thickness", item.Thickness},
            {"GlassType", qs(item.GlassType)},
            {"TypeLabel", qs(item.TypeLabel)},
            {"PricePerSqFt", money(item.PricePerSqFt)},
            {"Width", item.Width},
            {"LeftHeight", item.LeftHeight},
            {"RightHeight", item.RightHeight},
            {"Area", item.Area},
            {"BlockWidth", item.BlockWidth},
            {"BlockHeight", item.BlockHeight},
            {"BlockArea", item.BlockArea},
            {"BlockPrice", money(item.BlockPrice)},
        });
    }
    const GlassElevation& elevation = data.Elevation;
    return {
        {"User", QJsonObject{{"Name", qs(data.User.name)},
                             {"Phone", qs(data.User.phone)},
                             {"Email", qs(data.User.email)}}},
        {"Company", companyJson(data.Company)},
        {"Elevation", QJsonObject{{"Name", qs(elevation.Name)},
                                  {"Title", qs(elevation.Title)},
                                  {"Repetitions", elevation.Repetitions},
                                  {"Job", QJsonObject{{"JobID", elevation.Job.JobID},
                                                      {"JobName", qs(elevation.Job.JobName)}}}}},
        {"GlassItems", items},
    };
}

constexpr const char* kElevationGlassListParameter = "oElevationGlassReportDataList";

} // namespace

FinalGlassReportData finalGlassReportDataFromJson(const std::string& json) {
    const JsonNode root = JsonNode::parse(json).asObject();
    FinalGlassReportData data;
    readHeading(root, data, true);
    data.ReportTitle = root.text("ReportTitle");
    data.GlassQuery = root.text("GlassQuery");
    data.ShowSupplier = root.boolean("ShowSupplier");
    data.Connection = std::make_shared<db::Connection>(root.text("Connection"));
    return data;
}

FinalPartsCallData finalPartsCallFromJson(const std::string& json, bool showsPrices) {
    const JsonNode root = JsonNode::parse(json).asObject();
    const JsonNode report = root.object("oReportData");
    FinalPartsCallData call;
    static_cast<PartsReportHeading&>(call.oReportData) =
        readPartsHeading(report, {.userNameAndEmail = true, .companyFax = false});
    call.oReportData.PriceByUnit = report.boolean("PriceByUnit");
    call.oReportData.Items = readItems<FinalPartsItem>(
        report, [&](const JsonNode& item) { return readFinalPartsItem(item, showsPrices); });
    call.oUserDefaults.FinalPartsReportTitle =
        root.object("oUserDefaults").textOrNull("FinalPartsReportTitle");
    return call;
}

std::string finalPartsCallToJson(const FinalPartsReportData& data, const UserDefaults& defaults) {
    const auto& title = defaults.FinalPartsReportTitle;
    return text(QJsonObject{
        {"oReportData", finalPartsJson(data)},
        {"oUserDefaults",
         QJsonObject{{"FinalPartsReportTitle",
                      title ? QJsonValue(qs(*title)) : QJsonValue(QJsonValue::Null)}}},
    });
}

LinealReportData linealReportDataFromJson(const std::string& json) {
    const JsonNode root = JsonNode::parse(json).asObject();
    LinealReportData data;
    static_cast<PartsReportHeading&>(data) = readPartsHeading(root, {});
    data.Items = readItems<LinealItem>(root, readLinealItem);
    return data;
}

std::string toJson(const LinealReportData& data) {
    return text(partsDataJson(data, [](const LinealItem& item) {
        return QJsonObject{
            {"Quantity", numberOrText(item.Quantity)},
            {"PartNumber", qs(item.PartNumber)},
            {"Description", qs(item.Description)},
            {"FromTable", qs(item.FromTable)},
            {"PricePerUnit", numberOrText(item.PricePerUnit)},
            {"Multiplier", numberOrText(item.Multiplier)},
        };
    }));
}

MetalRecapReportData metalRecapReportDataFromJson(const std::string& json) {
    const JsonNode root = JsonNode::parse(json).asObject();
    MetalRecapReportData data;
    static_cast<PartsReportHeading&>(data) = readPartsHeading(root, {.finishColor = false});
    data.Items = readItems<MetalRecapItem>(root, readMetalRecapItem);
    return data;
}

std::string toJson(const MetalRecapReportData& data) {
    return text(partsDataJson(data, [](const MetalRecapItem& item) {
        return QJsonObject{
            {"Quantity", item.Quantity},
            {"PartNumber", qs(item.PartNumber)},
            {"Description", qs(item.Description)},
            {"StockLength", static_cast<double>(item.StockLength)},
            {"StockQuantity", item.StockQuantity},
            {"LengthString", qs(item.LengthString)},
        };
    }));
}

JobPartsReportData jobPartsReportDataFromJson(const std::string& json, bool byElevation) {
    const JsonNode root = JsonNode::parse(json).asObject();
    JobPartsReportData data;
    static_cast<PartsReportHeading&>(data) = readPartsHeading(root, {});
    data.Items = readItems<PartsReportListItem>(
        root, [&](const JsonNode& item) { return readPartsListItem(item, byElevation); });
    return data;
}

std::string toJson(const JobPartsReportData& data) {
    return text(partsDataJson(data, [](const PartsReportListItem& item) {
        return QJsonObject{
            {"Quantity", item.Quantity},
            {"PartNumber", qs(item.PartNumber)},
            {"Description", qs(item.Description)},
            {"PartType", qs(item.PartType)},
            {"Length", qs(item.Length)},
            {"ElevationName", qs(item.ElevationName)},
            {"ElevationSortIndex", item.ElevationSortIndex},
        };
    }));
}

OptimizedCutListReportData optimizedCutListReportDataFromJson(const std::string& json) {
    const JsonNode root = JsonNode::parse(json).asObject();
    OptimizedCutListReportData data;
    static_cast<PartsReportHeading&>(data) = readPartsHeading(root, {});
    data.Items = readItems<CutListRow>(root, readCutListRow);
    return data;
}

std::string toJson(const OptimizedCutListReportData& data) {
    return text(partsDataJson(data, [](const CutListRow& row) {
        QJsonArray cuts;
        for (const auto& cut : row.Cuts) {
            cuts.append(cut ? QJsonValue(QJsonObject{{"CutText", qs(cut->CutText)}})
                            : QJsonValue(QJsonValue::Null));
        }
        return QJsonObject{
            {"PartNumber", qs(row.PartNumber)},
            {"Description", qs(row.Description)},
            {"StockLength", row.StockLength},
            {"Yield", row.Yield},
            {"Cuts", cuts},
            {"LengthOfCuts", row.LengthOfCuts},
            {"StockNumber", row.StockNumber},
            {"StocksRequired", row.StocksRequired},
        };
    }));
}

CutLabelsReportData cutLabelsReportDataFromJson(const std::string& json, CutReportReads reads) {
    const JsonNode root = JsonNode::parse(json).asObject();
    const bool labels = reads != CutReportReads::Listing;
    CutLabelsReportData data;
    readHeading(root, data, false);
    data.Job.JobName = root.object("Job").text("JobName");
    for (const JsonNode& piece : root.list("StockPieces"))
        data.StockPieces.push_back(readStockPiece(piece.asObject(), reads));
    data.TopOffset = root.wholeNumber("TopOffset", presence(labels));
    data.LeftOffset = root.wholeNumber("LeftOffset", presence(labels));
    return data;
}

std::string toJson(const CutLabelsReportData& data) {
    QJsonObject object = reportHeadingJson(data);
    QJsonArray pieces;
    for (const StockPiece& piece : data.StockPieces) {
        QJsonArray cuts;
        for (const MetalCut& cut : piece.Cuts) {
            cuts.append(QJsonObject{
                {"CutLength", cut.CutLength},
                {"ElevationName", qs(cut.ElevationName)},
                {"CutLabel", qs(cut.CutLabel)},
                {"PartType", qs(cut.PartType)},
            });
        }
        pieces.append(QJsonObject{
            {"Part", QJsonObject{{"PartNumber", qs(piece.Part.PartNumber)},
                                 {"PartType", qs(piece.Part.PartType)}}},
            {"StockNumber", piece.StockNumber},
            {"StockCount", piece.StockCount},
            {"Cuts", cuts},
        });
    }
    object.insert("StockPieces", pieces);
    object.insert("TopOffset", data.TopOffset);
    object.insert("LeftOffset", data.LeftOffset);
    return text(object);
}

ElevationPartsCallData elevationPartsCallFromJson(const std::string& json) {
    const JsonNode root = JsonNode::parse(json).asObject();
    return {readPhoneUser(root.object("oUser")), readElevation(root.object("oElevation")),
            readPartsList(root.list("oPartsReportListItems"))};
}

std::string elevationPartsCallToJson(const User& user, const ElevationData& elevation,
                                     const PartsReportListItems& items) {
    return text(QJsonObject{{"oUser", userJson(user)},
                            {"oElevation", elevationJson(elevation)},
                            {"oPartsReportListItems", partsListJson(items)}});
}

ElevationPartsReportDataList elevationPartsReportDataListFromJson(const std::string& json) {
    const JsonNode root = JsonNode::parse(json);
    const std::vector<JsonNode> elevations =
        root.isObject() ? root.list("oElevationPartsReportDataList") : root.asList();
    ElevationPartsReportDataList list;
    for (const JsonNode& item : elevations)
        list.push_back(readElevationParts(item.asObject()));
    return list;
}

std::string toJson(const ElevationPartsReportDataList& list) {
    QJsonArray array;
    for (const ElevationPartsReportData& data : list) {
        array.append(QJsonObject{
            {"User", userJson(data.User)},
            {"Company", companyJson(data.Company)},
            {"Vendor", QJsonObject{{"Name", qs(data.Vendor.name)}}},
            {"Elevation", elevationJson(data.Elevation)},
            {"Items", partsListJson(data.Items)},
        });
    }
    return QJsonDocument(array).toJson(QJsonDocument::Indented).toStdString();
}

ElevationGlassReportData elevationGlassReportDataFromJson(const std::string& json,
                                                          bool blockFigures) {
    return readElevationGlass(JsonNode::parse(json).asObject(), blockFigures);
}

std::string toJson(const ElevationGlassReportData& data) {
    return text(elevationGlassJson(data));
}

ElevationGlassReportDataList elevationGlassReportDataListFromJson(const std::string& json,
                                                                  bool blockFigures) {
    const JsonNode root = JsonNode::parse(json);
    const std::vector<JsonNode> elevations =
        root.isList() ? root.asList() : root.asObject().list(kElevationGlassListParameter);
    ElevationGlassReportDataList list;
    for (const JsonNode& elevation : elevations)
        list.push_back(readElevationGlass(elevation.asObject(), blockFigures));
    return list;
}

std::string toJson(const ElevationGlassReportDataList& list) {
    QJsonArray elevations;
    for (const ElevationGlassReportData& data : list)
        elevations.append(elevationGlassJson(data));
    return QJsonDocument(elevations).toJson(QJsonDocument::Indented).toStdString();
}

} // namespace qr::host
