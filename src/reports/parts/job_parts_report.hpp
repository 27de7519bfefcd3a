#pragma once
// The job parts lists: the metal parts of a job without prices, one line per part. JobPartsAR
// lists the whole job under a heading repeated on every page; JobElevAR groups the same lines
// under each elevation, with the heading once at the top and the column captions on every
// page. They share their handlers.

#include "platform/engine/report.hpp"
#include "platform/host/report_data.hpp"

#include <cstdint>

namespace qr::reports {

/// The shared handlers of the two job parts lists.
class JobPartsReport : public engine::Report {
  public:
    /// The parts lines in print order (JobElevAR: by elevation sort index, then as wanted
    /// within the elevation); the host keeps it alive during the run.
    const host::JobPartsReportData* ReportData = nullptr;

  protected:
    JobPartsReport(engine::ReportDesign design, bool byElevation);

    void initialize() override;
    void reportStart() override;
    void fetchData(bool& eof) override;

  private:
    const host::JobPartsReportData& data() const;

    bool m_byElevation;
    std::int32_t m_rowIndex = 0;
};

/// The whole job's parts (PrintJobPartsReport, request "jobpartsar").
class JobPartsAR : public JobPartsReport {
  public:
    JobPartsAR();
};

/// The parts by elevation (PrintJobPartsReportByElevation, request "jobelevar").
class JobElevAR : public JobPartsReport {
  public:
    JobElevAR();
};

} // namespace qr::reports
