#pragma once
// Report data read from JSON (and written back as JSON), for the command line, the sample data
// and tests. One contract for every typed method (json_node.hpp gives the rules):
//
// - A method with one host object takes that object as the document: {"User": {"Name": ...},
//   "JobName": ..., "Items": [{"PartNumber": ...}, ...]}.
// - A method with more than one host object takes one object keyed by the parameter names:
//   {"oReportData": {...}, "oUserDefaults": {...}}.
// - A list parameter on its own is the JSON array itself.
//
// Every member the method's report can read must be there, with a value of its kind; a member
// it never reads may be left out. A missing member or a wrong kind raises qr::Error (999,
// "ReportData") naming the key path ("Items[3].Part.Multiplier must be a number"). Keys the
// report does not read are ignored.

#include "platform/host/report_data.hpp"

#include <string>

namespace qr::host {

/// Parse `json` as the data of the final glass reports: User.Name, User.Phone, User.Email,
/// Company.Name, Company.Phone, Job.JobID, Job.JobName, ReportTitle, GlassQuery, ShowSupplier
/// and Connection (a connection string, opened here) are required; Company.Fax, Company.Email
/// and Vendor.Name may be given.
FinalGlassReportData finalGlassReportDataFromJson(const std::string& json);

/// The two host objects of the three final parts methods.
struct FinalPartsCallData {
    FinalPartsReportData oReportData;
    UserDefaults oUserDefaults;
};

/// {"oReportData": {...}, "oUserDefaults": {"FinalPartsReportTitle": text or null}}. The
/// report data's heading (User.Name, User.Phone, User.Email, Company.Name, Company.Phone,
/// Vendor.Name, JobName, FinishColor), PriceByUnit and every member of each item are required;
/// `showsPrices` false (the report without prices) leaves Items[i].UnitPrice optional.
FinalPartsCallData finalPartsCallFromJson(const std::string& json, bool showsPrices);
std::string finalPartsCallToJson(const FinalPartsReportData& data, const UserDefaults& defaults);

/// The lineal report's data: the heading (User.Phone, Company.Name, Company.Phone,
/// Company.Fax, Vendor.Name, JobName, FinishColor) and Items with Quantity, PricePerUnit and
/// Multiplier (each a number or a number text), PartNumber, Description and FromTable.
LinealReportData linealReportDataFromJson(const std::string& json);
std::string toJson(const LinealReportData& data);

/// The metal recap's data: the heading as the lineal report's but without FinishColor, and
/// Items with Quantity and StockQuantity (whole numbers), StockLength (a number),
/// PartNumber, Description and LengthString.
MetalRecapReportData metalRecapReportDataFromJson(const std::string& json);
std::string toJson(const MetalRecapReportData& data);

/// The job parts lists' data: the heading as the lineal report's, and Items with Quantity (a
/// whole number), PartNumber, Description, PartType and Length; `byElevation` (the report by
/// elevation) also requires ElevationName and ElevationSortIndex (a whole number).
JobPartsReportData jobPartsReportDataFromJson(const std::string& json, bool byElevation);
std::string toJson(const JobPartsReportData& data);

/// The optimized cut list's data: the heading as the lineal report's, and Items with
/// PartNumber, Description, StockLength, Yield, LengthOfCuts (numbers), StockNumber and
/// StocksRequired (whole numbers) and Cuts: a list of at least eight entries, each an object
/// with CutText or null where the position holds no cut (entries after the eighth are not
/// read).
OptimizedCutListReportData optimizedCutListReportDataFromJson(const std::string& json);
std::string toJson(const OptimizedCutListReportData& data);

/// Which report reads the data of the metal cut listing and the metal labels: each requires
/// what it reads.
enum class CutReportReads {
    Listing,       ///< the cut listing: the piece's part type and StockCount
    CutPartType,   ///< the labels that print the cut's part type (5260, 5267 A and B)
    PiecePartType, ///< the label that prints the piece's part type (5267 C)
};

/// The metal cut listing's and the metal labels' data: Job.JobName (the other heading members
/// may be given), and StockPieces, each with Part.PartNumber, StockNumber (a whole number) and
/// Cuts, at least one, each with CutLength (a number) and ElevationName. The listing also
/// requires Part.PartType and StockCount; the labels CutLabel, TopOffset and LeftOffset (whole
/// numbers, twips) and the part type they print (the cut's PartType, or the piece's
/// Part.PartType for `PiecePartType`).
CutLabelsReportData cutLabelsReportDataFromJson(const std::string& json, CutReportReads reads);
std::string toJson(const CutLabelsReportData& data);

/// The host objects of PrintElevationPartsReport (the firm and the vendor come from the
/// service's connections, not from the data).
struct ElevationPartsCallData {
    User oUser;
    ElevationData oElevation;
    PartsReportListItems oPartsReportListItems;
};

/// {"oUser": {...}, "oElevation": {...}, "oPartsReportListItems": [...]}. Required:
/// oUser.Phone; oElevation's Name, Description, RepeatCount (a whole number), Finish,
/// System.Name and Job.JobName; every item's Quantity (a whole number), PartNumber,
/// Description, PartType and Length. oUser.Name and oUser.Email may be given.
ElevationPartsCallData elevationPartsCallFromJson(const std::string& json);
std::string elevationPartsCallToJson(const User& user, const ElevationData& elevation,
                                     const PartsReportListItems& items);

/// The list of PrintMultipleElevationPartsReports, the JSON array itself (or keyed by its
/// parameter name, {"oElevationPartsReportDataList": [...]}, as the glass list is): per elevation
/// User.Phone, Company.Name, Company.Phone, Company.Fax, Vendor.Name, Elevation (as
/// oElevation above) and Items (as oPartsReportListItems above).
ElevationPartsReportDataList elevationPartsReportDataListFromJson(const std::string& json);
std::string toJson(const ElevationPartsReportDataList& list);

/// One elevation of the elevation glass reports: User.Phone, Company.Name, Company.Phone,
/// Company.Fax, Elevation.Name, Elevation.Title, Elevation.Repetitions (a whole number),
/// Elevation.Job.JobName and GlassItems, each with Quantity (a whole number), Description,
/// Thickness, GlassType, PricePerSqFt (money, as a number), Width, LeftHeight, RightHeight
/// and Area (numbers). `blockFigures` (the block-size report, ElevGlassAR2) also requires
/// each item's TypeLabel, BlockWidth and BlockHeight (whole numbers), BlockArea and
/// BlockPrice (money); without it they are optional. User.Name, User.Email, Company.Email and
/// Elevation.Job.JobID may be given.
ElevationGlassReportData elevationGlassReportDataFromJson(const std::string& json,
                                                          bool blockFigures);
std::string toJson(const ElevationGlassReportData& data);

/// The elevations of the multi-elevation glass report, in print order, each read as above:
/// the JSON array itself, written so (an object keyed by the parameter name,
/// {"oElevationGlassReportDataList": [...]}, is read as well). ReportFormat is not part of the data: it is the
/// method's own argument.
ElevationGlassReportDataList elevationGlassReportDataListFromJson(const std::string& json,
                                                                  bool blockFigures);
std::string toJson(const ElevationGlassReportDataList& list);

} // namespace qr::host
