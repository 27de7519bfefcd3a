#pragma once
// ar2MetalRecap: per part and stock length, how many stock lengths to buy and which cut
// lengths come out of them. The part number, description, stock length and stock quantity
// head each part and stock length; one line follows per cut length.

#include "platform/engine/report.hpp"
#include "platform/host/report_data.hpp"

#include <cstdint>

namespace qr::reports {

class ar2MetalRecap : public engine::Report {
  public:
    ar2MetalRecap();

    /// The recap rows, ordered by part number, then stock length; the host keeps it alive
    /// during the run.
    const host::MetalRecapReportData* ReportData = nullptr;

  protected:
    void initialize() override;
    void reportStart() override;
    void fetchData(bool& eof) override;

  private:
    const host::MetalRecapReportData& data() const;
    void stockLengthHeadingFormat();

    std::int32_t m_rowIndex = 0;
};

} // namespace qr::reports
