#pragma once
// The final parts reports: the parts a job needs, one line per part, with the quantity to
// order, the package data and prices the host worked out, and a grand total. Three report
// classes print the same list: FinalPartsAR (landscape, unit or package price, multiplier and
// total), FinalPartsAR2 (portrait, the first column switching between packages and units) and
// FinalPartsARNP (portrait, no prices). They differ in their design table and in the pricing
// captions they switch; the handlers are shared.
//
// The report computes nothing of the host's package counts or package prices; priced by unit
// quantity, a line's total is its quantity times its unit price times the part's multiplier.

#include "platform/engine/report.hpp"
#include "platform/host/report_data.hpp"
#include "reports/common/print_reports.hpp"

#include <cstdint>

namespace qr::reports {

/// Which of the three layouts a final parts report is.
enum class FinalPartsLayout { Landscape, Portrait, NoPrices };

/// The shared handlers of the three final parts reports. Set the public members, then run; the
/// row index starts at zero when the object is created (the service makes a fresh one for
/// every call).
class FinalPartsReport : public engine::Report {
  public:
    /// The parts list and its heading; the host owns it and keeps it alive during the run.
    const host::FinalPartsReportData* ReportData = nullptr;
    /// At report end, write the pages as a workbook to the job's folder.
    bool UserWantsExcelExport = false;
    /// At report end, write the pages as a PDF to the job's folder (after the workbook).
    bool UserWantsPdfExport = false;
    /// The user's defaults; the title comes from FinalPartsReportTitle when it has one.
    const host::UserDefaults* UserDefaults = nullptr;

  protected:
    FinalPartsReport(engine::ReportDesign design, FinalPartsLayout layout, ExportSuffixes suffixes);

    void initialize() override;
    void reportStart() override;
    void fetchData(bool& eof) override;
    void reportEnd() override;

  private:
    const host::FinalPartsReportData& data() const;
    void showTitle();
    void showPricingCaptions(bool priceByUnit);
    void fillRow(const host::FinalPartsItem& item, bool priceByUnit);

    FinalPartsLayout m_layout;
    ExportSuffixes m_suffixes;
    std::int32_t m_rowIndex = 0;
};

/// Landscape, priced (PrintFinalPartsReportLandscape).
class FinalPartsAR : public FinalPartsReport {
  public:
    static constexpr ExportSuffixes kExportSuffixes{"-FinalPartsReport.xls",
                                                    "-FinalPartsReport.pdf"};
    FinalPartsAR();
};

/// Portrait, priced (PrintFinalPartsReportPortrait).
class FinalPartsAR2 : public FinalPartsReport {
  public:
    static constexpr ExportSuffixes kExportSuffixes{"-FinalParts (Basic).xls",
                                                    "-FinalParts (Basic).pdf"};
    FinalPartsAR2();
};

/// Portrait, without prices (PrintFinalPartsReportWithNoPrices).
class FinalPartsARNP : public FinalPartsReport {
  public:
    static constexpr ExportSuffixes kExportSuffixes{"-FinalParts (No Prices).xls",
                                                    "-FinalParts (No Prices).pdf"};
    FinalPartsARNP();
};

} // namespace qr::reports
