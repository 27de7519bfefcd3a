#pragma once
// The final summary: the job at cost. Job identification, the approximate job size (counts from
// the request's job size text, areas, perimeter, joints and cuts from the job row), the five
// category totals at cost with the estimator's overrides and their grand total, the job notes,
// then one band per framing system of the job (the request's table) with its notes. No tax or
// markup appears on it.
//
// Two layouts: FinalSummaryAR ("finalsummaryar") closes each page with the notices about
// what the summary leaves out; FinalSummaryAR2 ("finalsummaryar2") with the page number only.
// They export "<job>-FinalSummary" and "<job>-FinalSummaryNN" (.xls, .pdf) respectively.
//
// The job size text is the request's last field: lite count, frame panel count, door count,
// glass area and elevation count separated by "-" (48-12-2-310.5-4). The report consumes it:
// afterwards the request's tail holds the elevation count only. A text with fewer than four
// "-" raises an error naming the text and what it lacks.

#include "reports/cost/cost_report.hpp"

namespace qr::reports {

namespace cost {

class FinalSummaryReport : public CostReport {
  protected:
    /// `withNotices`: the page footer carries the notices (FinalSummaryAR).
    FinalSummaryReport(const char* className, bool withNotices, ExportSuffixes suffixes);

    /// Binds the framing systems, fills the heading, the job's size and totals from its
    /// JobSummary row, and the counts from the job size text.
    void reportStart() override;

  private:
    void showJob(const RowCursor& job);
    void showTotals(const RowCursor& job);
    void showJobCounts();
};

} // namespace cost

class FinalSummaryAR : public cost::FinalSummaryReport {
  public:
    static constexpr ExportSuffixes kExportSuffixes{"-FinalSummary.xls", "-FinalSummary.pdf"};
    FinalSummaryAR();
};

class FinalSummaryAR2 : public cost::FinalSummaryReport {
  public:
    static constexpr ExportSuffixes kExportSuffixes{"-FinalSummaryNN.xls", "-FinalSummaryNN.pdf"};
    FinalSummaryAR2();
};

} // namespace qr::reports
