#pragma once
// The report-data objects the host hands to the typed print methods. The host fills them; the
// reports only read them. Member names follow the host's (`User.Name`, `Job.JobID`, ...) so the
// JSON form the command line reads uses the same key paths.

#include "platform/core/currency.hpp"
#include "platform/core/variant.hpp"
#include "platform/host/services.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qr::host {

struct Job {
    std::int32_t JobID = 0;
    std::string JobName;
};

/// Heading members shared by the report-data types.
struct ReportHeading {
    ::qr::host::User User;
    ::qr::host::Company Company;
    ::qr::host::Vendor Vendor;
    ::qr::host::Job Job;
};

/// Data of the four final glass reports: the heading, the host's glass query and the
/// connection it runs on.
struct FinalGlassReportData : ReportHeading {
    std::string ReportTitle;
    std::string GlassQuery;
    bool ShowSupplier = false;
    ConnectionRef Connection;
};

// ---- Parts and metal reports ----------------------------------------------------------------
// Lists the host hands over (a Count and a zero-based Item) are vectors here, in print order.

/// Heading members of the parts and metal report data: who prints the report, for which job,
/// and in which finish. The reports show the user's phone, or the firm's when the user's is
/// empty.
struct PartsReportHeading {
    ::qr::host::User User;
    ::qr::host::Company Company;
    ::qr::host::Vendor Vendor;
    std::string JobName;
    std::string FinishColor;
};

/// The catalogue part behind a line of the final parts report.
struct CatalogPart {
    std::string PartType;
    std::string Description;
    double PackageQuantity = 0; ///< units per package; 0 or less: the part is not packaged
    double Multiplier = 1;      ///< price multiplier
};

/// One line of the final parts report, with the host's package counts and prices.
struct FinalPartsItem {
    double Quantity = 0; ///< units needed
    std::string PartNumber;
    CatalogPart Part;
    double StockLength = 0;
    double PackageQuantity = 0; ///< units per package for this line
    double PackagesToOrder = 0;
    double UnitPrice = 0;
    double PackagePrice = 0;
    double Total = 0; ///< the line's total as the host priced it
};

struct FinalPartsReportData : PartsReportHeading {
    /// True: parts are priced by unit quantity; false: by package.
    bool PriceByUnit = false;
    std::vector<FinalPartsItem> Items;
};

/// One part bought by the lineal foot. Quantity, price and multiplier are read as the report
/// prints them and converted back with the locale's number conversion, so the host may hand
/// over numbers or number texts ("$4.85", "1,250").
struct LinealItem {
    Variant Quantity;
    std::string PartNumber;
    std::string Description;
    std::string FromTable; ///< short text printed under "Type"/"Sort"
    Variant PricePerUnit;
    Variant Multiplier;
};

struct LinealReportData : PartsReportHeading {
    std::vector<LinealItem> Items;
};

/// One cut length of a part and stock length in the metal recap.
struct MetalRecapItem {
    std::int32_t Quantity = 0; ///< pieces of this cut length
    std::string PartNumber;
    std::string Description;
    float StockLength = 0;          ///< inches
    std::int32_t StockQuantity = 0; ///< stock lengths to buy for this part and stock length
    std::string LengthString;       ///< the cut length as printable text
};

struct MetalRecapReportData : PartsReportHeading {
    std::vector<MetalRecapItem> Items;
};

/// One line of the job parts lists (and of the elevation parts report).
struct PartsReportListItem {
    std::int32_t Quantity = 0;
    std::string PartNumber;
    std::string Description;
    std::string PartType;
    std::string Length; ///< printable length
    std::string ElevationName;
    std::int32_t ElevationSortIndex = 0;
};
using PartsReportListItems = std::vector<PartsReportListItem>;

struct JobPartsReportData : PartsReportHeading {
    PartsReportListItems Items;
};

/// A cut laid on a line of the optimized cut list: its length and elevation code, ready to
/// print ("72 3/8 (E2)").
struct PatternCut {
    std::string CutText;
};

/// One printed line of the optimized cut list: a stock piece, or eight more cuts of it.
struct CutListRow {
    std::string PartNumber;
    std::string Description;
    double StockLength = 0; ///< inches
    double Yield = 0;       ///< fraction of the stock piece its cuts use (0.85 = 85 %)
    /// The cuts of this line by position; a position without a cut holds none.
    std::array<std::optional<PatternCut>, 8> Cuts;
    double LengthOfCuts = 0; ///< feet cut from stock on this line
    std::int32_t StockNumber = 0;
    std::int32_t StocksRequired = 0;
};

struct OptimizedCutListReportData : PartsReportHeading {
    /// Ordered by part number, then stock length, then stock piece.
    std::vector<CutListRow> Items;
};

// ---- Metal cut listing and cut labels -------------------------------------------------------

/// The part a stock piece is cut from.
struct StockPart {
    std::string PartNumber;
    std::string PartType;
};

/// One cut laid on a stock piece.
struct MetalCut {
    double CutLength = 0; ///< inches
    std::string ElevationName;
    std::string CutLabel; ///< the piece label marked on the cut
    std::string PartType; ///< the part type as three of the label sheets print it
};

/// One stock piece and the cuts laid on it (at least one).
struct StockPiece {
    StockPart Part;
    std::int32_t StockNumber = 0; ///< this piece among the part's pieces: 1, 2, ...
    std::int32_t StockCount = 0;  ///< pieces of the part
    std::vector<MetalCut> Cuts;
};

/// Data of the metal cut listing and the four metal label sheets. The heading's Job gives the
/// job name; the offsets (twips) shift a label sheet to fit the printer.
struct CutLabelsReportData : ReportHeading {
    std::vector<StockPiece> StockPieces; ///< in print order
    std::int32_t TopOffset = 0;
    std::int32_t LeftOffset = 0;
};

// ---- Elevation reports ----------------------------------------------------------------------

/// A framing system (storefront, curtain wall, ...).
struct FramingSystem {
    std::string Name;
};

/// The elevation as the elevation parts report reads it.
struct ElevationData {
    std::string Name;
    std::string Description;
    std::int32_t RepeatCount = 0; ///< times the elevation occurs in the job
    std::string Finish;
    FramingSystem System;
    ::qr::host::Job Job;
};

/// What PrintElevationPartsReport builds from host services for its report, and what the
/// multi-elevation parts report hands to its sub-report for each elevation.
struct ElevationPartsReportData {
    ::qr::host::User User;
    ElevationData Elevation;
    ::qr::host::Company Company;
    ::qr::host::Vendor Vendor;
    PartsReportListItems Items;
};
using ElevationPartsReportDataList = std::vector<ElevationPartsReportData>;

/// The elevation as the elevation glass reports read it.
struct GlassElevation {
    std::string Name;
    std::string Title;
    std::int32_t Repetitions = 0; ///< times the elevation occurs in the job
    ::qr::host::Job Job;
};

/// One glass line of an elevation.
struct ElevationGlassItem {
    std::int32_t Quantity = 0; ///< lites
    std::string Description;
    double Thickness = 0; ///< inches
    std::string GlassType;
    std::string TypeLabel; ///< empty: the block-size report shows the glass type's first letter
    Currency PricePerSqFt;
    double Width = 0, LeftHeight = 0, RightHeight = 0; ///< inches
    double Area = 0;                                   ///< square feet of one lite
    std::int32_t BlockWidth = 0, BlockHeight = 0;      ///< block size, inches
    double BlockArea = 0;                              ///< square feet of one lite at block size
    Currency BlockPrice;                               ///< one lite at block size
};

/// Data of the elevation glass reports: one elevation and its glass.
struct ElevationGlassReportData {
    ::qr::host::User User;
    ::qr::host::Company Company;
    GlassElevation Elevation;
    std::vector<ElevationGlassItem> GlassItems; ///< in print order
};
using ElevationGlassReportDataList = std::vector<ElevationGlassReportData>;

/// The user's default settings; the final parts reports read their title from here.
struct UserDefaults {
    /// Null (none) or the title the user chose for the final parts reports.
    std::optional<std::string> FinalPartsReportTitle;
};

} // namespace qr::host
