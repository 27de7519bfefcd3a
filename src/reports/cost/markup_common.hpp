#pragma once
// What the two markup reports share: the page header (job, firm, contractor and architect
// blocks), the first steps of their start handler that fill it, and the markup table the host
// computes the bid figures into.

#include "platform/db/recordset.hpp"
#include "reports/common/design_helpers.hpp"
#include "reports/cost/cost_report.hpp"

#include <array>
#include <memory>
#include <span>
#include <string>

namespace qr::reports::cost {

/// Font size and row pitch of the markup reports' header and figure columns.
inline constexpr double kMarkupFontSize = 9;
inline constexpr int kMarkupRow = 220;

/// The page header of both markup reports, titled `title`: date and time, bid date, estimator
/// and job name, the contractor block, the vendor and firm block, and the architect block.
/// Its captions come from `captions`, so that the report's other sections go on numbering.
engine::SectionDesign markupPageHeader(std::string title, CaptionMaker& captions);

/// A label showing the sum of up to three markup table columns (unused ones empty).
struct MarkupFigure {
    const char* control;
    std::array<std::string_view, 3> columns;
};

class MarkupReport : public CostReport {
  protected:
    using CostReport::CostReport;

    /// The start steps both reports share, in order: bind the report to the job's JobSummary
    /// row, fill the date, time, job and vendor, the firm block from Company, and the
    /// contractor and architect blocks from Customers. A job id with no JobSummary row raises
    /// an error naming the job.
    void showJobAndParties();

    /// The request's markup table, opened read-only by its bare name; its first row holds the
    /// figures. Raises an error naming the table when it holds no row.
    std::unique_ptr<db::Recordset> openMarkupTable();

    /// A figure of the markup table; Null raises Error 94 naming the column and the table.
    double markupFigure(const db::Recordset& markup, std::string_view column) const;

    /// Sets each label to the sum of its columns in "$###,###,###.00".
    void showMarkupFigures(const db::Recordset& markup, std::span<const MarkupFigure> figures);

    /// The job area of the bound job row, or 0 when it is Null (no per-square-foot prices).
    double jobArea();

    /// The bound job row's value of `column` (the data control's current row).
    Variant jobValue(std::string_view column);

  private:
    using PartyControls = std::array<const char*, 7>;
    void showFirm();
    void showCustomer(const std::string& statement, const PartyControls& controls);
};

} // namespace qr::reports::cost
