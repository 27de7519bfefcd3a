#pragma once
// ARMarkup2, "Markup Report without Cost Pricing": the job estimate for the customer. The
// markups are folded into the material, labor and outside-cost totals, so no cost, rate,
// surcharge or markup figure shows; only the sales tax percent and amount, the pre-tax and
// grand totals and the price per square foot. Before printing, the firm's standard exclusions
// and notes are merged into the job's own (and stay there), so the estimate carries them.
//
// Asked for with the request name "armarkup2"; exports "<job>-MarkupNoCost.xls" and
// "<job>-MarkupNoCost.pdf" when the request asks for files.

#include "reports/cost/firm_texts.hpp"
#include "reports/cost/markup_common.hpp"

namespace qr::reports {

class ARMarkup2 : public cost::MarkupReport {
  public:
    static constexpr ExportSuffixes kExportSuffixes{"-MarkupNoCost.xls", "-MarkupNoCost.pdf"};
    ARMarkup2();

  protected:
    /// Fills the header blocks, merges the firm's texts into the job row, then shows the
    /// merged texts, the estimate's totals and the price per square foot.
    void reportStart() override;

  private:
    /// Writes the firm's texts into the job's exclusions and notes in one update of the job
    /// row: both texts change or, when anything fails, neither does.
    void mergeFirmTextsIntoJob(const cost::FirmTexts& firm);
    void showTaxAndPrice(const db::Recordset& markup);
};

} // namespace qr::reports
