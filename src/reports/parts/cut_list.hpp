#pragma once
// AR2CutList: the optimized cut list. For each part and stock length, the cut patterns the
// host's cutting optimiser laid out: one line per stock piece (or per eight more cuts of it),
// the piece's number on its first line only, up to eight framed cut boxes, and per part the
// stock lengths required, the lineal feet cut and the average yield, which the engine sums and
// averages over the part's lines.

#include "platform/engine/report.hpp"
#include "platform/host/report_data.hpp"
#include "reports/common/print_reports.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace qr::reports {

class AR2CutList : public engine::Report {
  public:
    static constexpr ExportSuffixes kExportSuffixes{"-CutList.xls", "-CutList.pdf"};

    AR2CutList();

    /// The patterns, ordered by part number, then stock length, then stock piece; the host
    /// keeps it alive during the run.
    const host::OptimizedCutListReportData* ReportData = nullptr;
    bool UserWantsExcelExport = false;
    bool UserWantsPdfExport = false;

  protected:
    void initialize() override;
    void reportStart() override;
    void fetchData(bool& eof) override;
    void reportEnd() override;

  private:
    const host::OptimizedCutListReportData& data() const;
    /// Fills the field of cut `position` (0 to 7) from the row's cuts: the cut's text, or ""
    /// where the position holds no cut.
    void setCutField(std::int32_t position,
                     const std::array<std::optional<host::PatternCut>, 8>& cuts);
    void groupHeader2Format();
    void detailFormat();

    std::int32_t m_rowIndex = 0;
    std::int32_t m_previousStockNumber = 0;
    std::string m_previousPartNumber;
    /// The current line continues the stock piece of the line before it.
    bool m_samePiece = false;
};

} // namespace qr::reports
