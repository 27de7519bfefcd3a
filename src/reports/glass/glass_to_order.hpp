#pragma once
// The glass to order reports: the list a glazier sends to the glass supplier. Every lite to be
// cut, grouped by glass description and then glass type, with its units, width, left (and
// right) height, the actual and the block (ordered) area of one lite, and its location code
// (elevation code - glass position). Each glass-type group ends with its quantity and its
// actual and block areas times the units; the report ends with the job's totals of the three.
//
// Two report classes print it, one handler class behind both: JobGlassToOrder
// ("jobglasstoorder") with the right-height column, JobGlassToOrder2 ("jobglasstoorder2")
// without it. Both export "<job>-GlassToOrder.xls" and "<job>-GlassToOrder.pdf" when the
// request asks for files.
//
// The host writes the job's glass order into a table of its own and names it in the request;
// the report reads it ordered by description, part type and the joined size texts, and groups
// consecutive rows, so one glass type separated by another within a description prints as
// two groups.

#include "reports/common/request_report.hpp"

namespace qr::reports {

class GlassToOrderReport : public RequestReport {
  protected:
    /// `rightHeight`: the design has the right-height column (lRHeight).
    GlassToOrderReport(engine::ReportDesign design, bool rightHeight);

    /// Binds the report to the request's glass-to-order table, fills the heading and starts
    /// every figure from zero.
    void reportStart() override;
    /// Exports as the request asked, then lets go of the rows.
    void reportEnd() override;

  private:
    void detailFormat();
    void ghTypeFooterFormat();
    void reportFooterFormat();

    bool m_rightHeight;
    // Areas times units: of the current glass-type group, and of the job.
    double m_actualArea = 0;
    double m_blockArea = 0;
    double m_totalActualArea = 0;
    double m_totalBlockArea = 0;
};

/// Width, left height and right height.
class JobGlassToOrder : public GlassToOrderReport {
  public:
    static constexpr ExportSuffixes kExportSuffixes{"-GlassToOrder.xls", "-GlassToOrder.pdf"};
    JobGlassToOrder();
};

/// Width and left height only.
class JobGlassToOrder2 : public GlassToOrderReport {
  public:
    static constexpr ExportSuffixes kExportSuffixes{"-GlassToOrder.xls", "-GlassToOrder.pdf"};
    JobGlassToOrder2();
};

} // namespace qr::reports
