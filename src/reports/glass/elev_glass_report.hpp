#pragma once
// The elevation glass reports: the glass of one elevation, every lite with its units,
// description, thickness, glass type, width and heights in inches and fractions, and its
// price per square foot.
//
//   ElevGlassAR   "elevglassar"   portrait: area and price total of each line, the elevation's
//                                 total, notes on how it prices and a warning when some line
//                                 prices at nothing
//   ElevGlassAR2  "elevglassar2"  landscape: actual and block-size figures of each line grouped
//                                 by description, glass type, type label and thickness, with
//                                 totals per glass type and for the elevation
//
// Both are unbound: whoever runs them points ReportData at one elevation and its glass before
// the run, and the report prints one row per glass item. Every run starts over (row index and
// elevation total), so one object can print elevation after elevation, as the multi-elevation
// glass report does with it as its sub-report. A request by name hands over no data: the start
// handler then reports the missing object through the error dialog and the run fails.

#include "platform/engine/report.hpp"
#include "platform/host/report_data.hpp"
#include "reports/common/fraction_formatter.hpp"

#include <cstdint>
#include <optional>

namespace qr::reports {

/// The handlers the two elevation glass reports share.
class ElevGlassReport : public engine::Report {
  public:
    /// The elevation and its glass; the caller keeps it alive during the run and may point it
    /// at another elevation before the next run.
    const host::ElevationGlassReportData* ReportData = nullptr;

  protected:
    /// `blockFigures`: the landscape report's block-size figures, groups and subtotals.
    ElevGlassReport(engine::ReportDesign design, bool blockFigures);

    void initialize() override;
    /// Starts the row index (and the portrait report's total) from zero, then shows the
    /// elevation heading, the repetition line and the firm's heading. Traps its errors.
    void reportStart() override;
    /// Fills the fields from the item at the row index; Detail's Format moves the index on.
    void fetchData(bool& eof) override;

  private:
    void detailFormat();
    void detailBeforePrint();
    void thicknessGroupHeaderBeforePrint();
    void glassTypeGroupFooterBeforePrint();
    void reportFooterBeforePrint();
    void reportFooterFormat();

    void showElevationHeading();
    const host::ElevationGlassReportData& data() const;

    bool m_blockFigures;
    std::optional<FractionFormatter> m_fractions;
    std::int32_t m_rowIndex = 0;
    /// Portrait report: the sum of the line totals, and whether some line priced at nothing.
    double m_totalCost = 0;
    bool m_unpricedItems = false;
};

/// Portrait, priced by actual size, with the elevation's total and the no-price warning.
class ElevGlassAR : public ElevGlassReport {
  public:
    ElevGlassAR();
};

/// Landscape, actual and block-size figures with subtotals per glass type and grand totals.
class ElevGlassAR2 : public ElevGlassReport {
  public:
    ElevGlassAR2();
};

} // namespace qr::reports
