#pragma once
// The multi-elevation reports: the parts report or the glass report of many elevations of a
// job in one run. Each row is one item of the host's list of elevations, in list order, and
// prints as a sub-report (the elevation parts report, or one of the elevation glass reports)
// inside the detail section; the page footer numbers the pages of the whole run.
//
//   ElevPartsMultipleReport   PrintMultipleElevationPartsReports   ElevPartsAR per elevation
//   ElevGlassMultipleReport   PrintMultipleElevationGlassReports   ElevGlassAR when ReportFormat
//                                                                  is "basic", otherwise
//                                                                  ElevGlassAR2 on landscape
//
// The two differ only in their design and in which sub-report they make, and share the
// handlers below. They read no database, export nothing and trap no errors: a failure ends the
// run and reaches the service method that runs them.

#include "platform/engine/report.hpp"
#include "platform/host/report_data.hpp"

#include <cstdint>
#include <memory>
#include <string>

namespace qr::reports {

/// The shared handlers: a new elevation report each run (made at the start, released at the
/// end), one row per elevation, each handed to the elevation report as its ReportData.
class ElevationMultipleReport : public engine::Report {
  protected:
    /// The design's names for what the handlers fill.
    struct Controls {
        const char* subReport;
        const char* pageNumber; ///< the page-count box the footer numbers
    };

    ElevationMultipleReport(engine::ReportDesign design, Controls controls);

    /// How many elevations the list holds (raises when no list is set).
    virtual std::int32_t elevationCount() const = 0;
    /// A new elevation report for this run; may change the page settings it needs.
    virtual std::unique_ptr<engine::Report> makeElevationReport() = 0;
    /// Points `elevationReport` (made by makeElevationReport) at the list item `index`.
    virtual void setElevation(engine::Report& elevationReport, std::int32_t index) = 0;

    void initialize() override;
    void reportStart() override;
    void fetchData(bool& eof) override;
    void reportEnd() override;

    const Controls& controls() const { return m_controls; }

  private:
    void detailFormat();
    void pageFooterFormat();

    Controls m_controls;
    /// The list item being printed; -1 before the first. Set only when the object is made: the
    /// service makes a new container for every call.
    std::int32_t m_rowIndex = -1;
};

/// The parts reports of many elevations, one ElevPartsAR run per elevation.
class ElevPartsMultipleReport : public ElevationMultipleReport {
  public:
    ElevPartsMultipleReport();

    /// The elevations to print, in print order; the host keeps the list alive during the run.
    host::ElevationPartsReportDataList* ElevationPartsReportDataList = nullptr;

  protected:
    std::int32_t elevationCount() const override;
    std::unique_ptr<engine::Report> makeElevationReport() override;
    void setElevation(engine::Report& elevationReport, std::int32_t index) override;
};

/// The glass reports of many elevations: ElevGlassAR per elevation when ReportFormat is
/// "basic" (exactly: "Basic" is another format), otherwise ElevGlassAR2 with the page turned
/// to landscape and widened for it.
class ElevGlassMultipleReport : public ElevationMultipleReport {
  public:
    /// The format that selects the portrait report.
    static constexpr const char* kBasicFormat = "basic";
    /// Print width of the landscape form, twips.
    static constexpr int kLandscapeWidth = 14430;

    ElevGlassMultipleReport();

    /// The elevations to print, in print order; the host keeps the list alive during the run.
    host::ElevationGlassReportDataList* ElevationGlassReportDataList = nullptr;
    std::string ReportFormat;

  protected:
    std::int32_t elevationCount() const override;
    std::unique_ptr<engine::Report> makeElevationReport() override;
    void setElevation(engine::Report& elevationReport, std::int32_t index) override;
};

} // namespace qr::reports
