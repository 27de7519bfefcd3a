#pragma once
// The job labor report, "Final Labor Report": per elevation of the job the hours and dollars of
// each labor kind (frame and entrance fabrication, miscellaneous, frame and entrance
// installation, glazing) and the elevation's labor total, multiplied out by the number of times
// the elevation occurs in the job; then the column grand totals, the added job labor (the
// estimator's extra items) and the job's labor grand total, with the added items listed in a
// sub-report.
//
// The host computes one elevation's figures into the labor table the request names; the
// report multiplies each row by its quantity and writes the job figures back into that table
// before printing it. The host refills the table before each print: printing twice from the
// same table multiplies twice.
//
// Asked for with the request name "finallaborar"; exports "<job>-FinalLabor.xls" and
// "<job>-FinalLabor.pdf" when the request asks for files.

#include "reports/cost/cost_report.hpp"

namespace qr::reports {

/// "Added Job Labor Details": the job's added labor items with hours or a fixed amount above
/// zero, run inside the labor report's footer.
class JobLaborSub : public cost::CostReport {
  public:
    JobLaborSub();

  protected:
    void reportStart() override;
    /// A sub-report exports nothing of its own.
    void reportEnd() override {}

  private:
    void detailFormat();
};

class FinalLaborAR : public cost::CostReport {
  public:
    static constexpr ExportSuffixes kExportSuffixes{"-FinalLabor.xls", "-FinalLabor.pdf"};
    FinalLaborAR();

  protected:
    /// Multiplies out the labor table, binds the report to it in elevation order, and reads
    /// the added job labor and the job's miscellaneous labor rate.
    void reportStart() override;

  private:
    void multiplyOutLaborTable(db::Connection& vendor);
    void readAddedLabor(db::Connection& vendor);
    void detailBeforePrint();
    void reportFooterFormat();
    void reportFooterBeforePrint();

    // The running grand total is kept in single precision, as the job labor report always
    // printed it: from a hundred thousand dollars up it keeps dimes, not cents.
    float m_grandTotal = 0;
    double m_addedFixedAmount = 0;
    float m_addedHours = 0;
    float m_miscRate = 0;
};

} // namespace qr::reports
