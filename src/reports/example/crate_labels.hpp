#pragma once
// ExampleCrateLabels: the worked example of docs/adding-a-report.md, kept small and complete so
// the next report starts from something that runs. It prints the glass crates of a shipment:
// grouped by site, then by elevation, one crate label per crate three across the page, with
// the lites of each elevation and the weight of each site totalled in code. It is not one of
// the component's reports and nothing registers it for the host; its test registers it.

#include "platform/engine/report.hpp"
#include "platform/host/report_data.hpp"
#include "reports/common/print_reports.hpp"

#include <string>
#include <vector>

namespace qr::reports {

/// One crate of the shipment.
struct Crate {
    std::string site;
    std::string elevation;
    std::string crateNumber;
    int lites = 0;
    double weightPounds = 0;
};

/// The report data a host would hand over: the heading, and the crates ordered by site, then
/// elevation (the report groups consecutive rows).
struct CrateLabelsData : host::ReportHeading {
    std::vector<Crate> Crates;
};

class ExampleCrateLabels : public engine::Report {
  public:
    static constexpr ExportSuffixes kExportSuffixes{"-Crates.xls", "-Crates.pdf"};

    ExampleCrateLabels();

    /// The shipment to print; the caller keeps it alive during the run.
    const CrateLabelsData* ReportData = nullptr;
    bool ShouldExportToPdf = false;

  protected:
    void initialize() override;
    void reportStart() override;
    void fetchData(bool& eof) override;
    void reportEnd() override;

  private:
    void detailFormat();
    void elevationFooterFormat();
    void siteFooterFormat();

    std::size_t m_next = 0;
    int m_elevationLites = 0;
    double m_siteWeight = 0;
};

} // namespace qr::reports
