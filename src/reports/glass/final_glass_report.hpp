#pragma once
// The final glass reports: the job's priced glass list, every lite of the job grouped by glass
// description, thickness, glass type and type label, with a subtotal per glass type and a
// block of job totals at the end (all lites, lites without doors, the glass perimeter of the
// job's elevations, area and cost per glass category, door lites apart).
//
// Four report classes print the same list: FinalGlassAR (portrait, priced), FinalGlassAR2
// (landscape, priced, with the minimum block area check), FinalGlassARNP (portrait, no prices)
// and FinalGlassARNP2 (landscape, no prices, with the check). They differ in their design
// table and in the few options below; the handlers are shared.
//
// The host prices the glass: the report prints the rows of the host's query as they come,
// multiplies each lite's area by its quantity, sorts rows into categories by glass type and
// sums. The only statement it builds itself is the perimeter sum of the job's elevations.

#include "platform/engine/report.hpp"
#include "platform/host/report_data.hpp"
#include "reports/common/print_reports.hpp"

#include <array>
#include <cstdint>

namespace qr::reports {

/// What sets the four final glass reports apart besides their layout.
struct FinalGlassOptions {
    /// Price columns and cost figures. Without prices a row whose glass type is none of the
    /// known types (and not "Miscellaneous") adds to no category area, only to the group and
    /// grand areas; with prices it lands in Miscellaneous.
    bool prices = true;
    /// Each line checks its area against the row's minimum block area (chkMinArea).
    bool minimumAreaCheck = false;
    /// The description heading is the label lDescriptionSupplier, written when its group
    /// formats, with two spaces before the supplier's parenthesis. Otherwise it is the bound
    /// DescriptionSupplierField, extended just before it prints, with one space.
    bool descriptionLabel = false;
    ExportSuffixes suffixes{"-FinalGlass.xls", "-FinalGlass.pdf"};
};

/// The shared handlers and figures of the four final glass reports. Set the public members,
/// then run: every run starts its figures from zero, however often the object runs.
class FinalGlassReport : public engine::Report {
  public:
    /// At report end, write the finished pages as a workbook to the job's folder.
    bool ShouldExportToExcel = false;
    /// At report end, write the finished pages as a PDF to the job's folder (after the
    /// workbook when both are asked for).
    bool ShouldExportToPdf = false;
    /// Everything the report prints; the host owns it and keeps it alive during the run. Its
    /// GlassQuery must deliver rows ordered by sDescription, pThickness, sGlassType,
    /// sTypeLabel, since the report groups consecutive rows.
    host::FinalGlassReportData* ReportData = nullptr;

    const FinalGlassOptions& options() const { return m_options; }

  protected:
    FinalGlassReport(engine::ReportDesign design, FinalGlassOptions options);

    void reportStart() override;
    void reportEnd() override;

  private:
    /// The glass categories a row's type sorts it into (door lites are counted apart).
    enum Category { Annealed, HeatStrengthened, Tempered, Spandrel, Panel, Vent, Misc, kCount };

    void ghOrderGroupBeforePrint();
    void ghOrderGroupFormat();
    void detailFormat();
    void groupFooter1Format();
    void pageFooterFormat();
    void reportFooterBeforePrint();

    host::FinalGlassReportData& data();
    void openGlassRows();
    void fillHeading();
    void resetFigures();
    /// The category of a row of `glassType`; kCount when it counts in none.
    Category categoryOf(const std::string& glassType) const;
    void addDoorLites(double quantity);
    void checkMinimumArea(const Variant& areaEach);
    void showPerimeter();
    /// A number column of the current row; Null counts as 0, text that is not a number is an
    /// error naming the column.
    double numberOf(const char* column, const Variant& value) const;
    /// The description heading text: the description, and the supplier in parentheses after
    /// `gap` when the report data asks for it and the row has one.
    std::string withSupplier(std::string description, const char* gap);

    FinalGlassOptions m_options;

    std::array<double, kCount> m_area{};
    std::array<double, kCount> m_cost{};
    std::int16_t m_doorLiteCount = 0;
    double m_doorArea = 0;
    double m_doorCost = 0;
    double m_lineArea = 0;
    double m_typeArea = 0;
    double m_grandArea = 0;
};

/// The portrait priced list (PrintFinalGlassPortraitReport).
class FinalGlassAR : public FinalGlassReport {
  public:
    static constexpr ExportSuffixes kExportSuffixes{"-FinalGlass.xls", "-FinalGlass.pdf"};
    FinalGlassAR();
};

/// The landscape priced list with the minimum block area check (PrintFinalGlassLandscapeReport).
class FinalGlassAR2 : public FinalGlassReport {
  public:
    static constexpr ExportSuffixes kExportSuffixes{"-FinalGlass.xls", "-FinalGlass.pdf"};
    FinalGlassAR2();
};

/// The portrait list without prices (PrintFinalGlassReportWithoutPrices).
class FinalGlassARNP : public FinalGlassReport {
  public:
    static constexpr ExportSuffixes kExportSuffixes{"-FinalGlassNP.xls", "-FinalGlassNP.pdf"};
    FinalGlassARNP();
};

/// The landscape list without prices, with the minimum block area check
/// (PrintFinalGlassLandscapeReportWithoutPrices).
class FinalGlassARNP2 : public FinalGlassReport {
  public:
    static constexpr ExportSuffixes kExportSuffixes{"-FinalGlassNP.xls", "-FinalGlassNP.pdf"};
    FinalGlassARNP2();
};

} // namespace qr::reports
