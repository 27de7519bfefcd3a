#pragma once
// ARMarkup, "Markup Report with Cost Pricing": the estimator's one-page bid summary. The job's
// costs per category (with the estimator's overrides), the amounts added by hand, the
// surcharges, markups and taxes the host computed into the request's markup table, the
// pre-tax and grand totals, the cost and sell price per square foot, and the firm, job,
// contractor and architect details, then the sections bid, exclusions and notes.
//
// Asked for with the request name "armarkup"; exports "<job>-Markup.xls" and
// "<job>-Markup.pdf" when the request asks for files.

#include "reports/cost/markup_common.hpp"

#include <string>

namespace qr::reports {

class ARMarkup : public cost::MarkupReport {
  public:
    static constexpr ExportSuffixes kExportSuffixes{"-Markup.xls", "-Markup.pdf"};
    ARMarkup();

  protected:
    /// Binds the job row and fills the header blocks, the markup figures and the prices per
    /// square foot.
    void reportStart() override;
    /// The five category totals with the override rule, in the system currency format, and
    /// the exclusions and notes as the customer's estimate will print them.
    void fetchData(bool& eof) override;

  private:
    void showPricesPerSquareFoot(const db::Recordset& markup);

    // The job's exclusions and notes with the firm's standard texts merged in, as the
    // customer's estimate prints them; shown here but not stored.
    std::string m_exclusions;
    std::string m_notes;
};

} // namespace qr::reports
