#pragma once
// FinalPartsLineal: the parts a job buys by the lineal foot, one line per part with its
// quantity, unit price and multiplier, a line total the report works out from what it prints,
// and a grand total of the line totals rounded to the cent (half to even).

#include "platform/engine/report.hpp"
#include "platform/host/report_data.hpp"
#include "reports/common/print_reports.hpp"

#include <cstdint>

namespace qr::reports {

class FinalPartsLineal : public engine::Report {
  public:
    static constexpr ExportSuffixes kExportSuffixes{"-FinalPartsLineal.xls",
                                                    "-FinalPartsLineal.pdf"};

    FinalPartsLineal();

    /// The lineal parts and the heading; the host keeps it alive during the run.
    const host::LinealReportData* ReportData = nullptr;
    bool UserWantsExcelExport = false;
    bool UserWantsPdfExport = false;

  protected:
    void initialize() override;
    void reportStart() override;
    void fetchData(bool& eof) override;
    void reportEnd() override;

  private:
    const host::LinealReportData& data() const;
    void detailFormat();
    void reportFooterFormat();

    std::int32_t m_rowIndex = 0;
    /// Sum of the line totals, each rounded to the cent; it only grows while lines format.
    double m_grandTotal = 0;
};

} // namespace qr::reports
