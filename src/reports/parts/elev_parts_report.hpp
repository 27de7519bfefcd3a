#pragma once
// The elevation parts report, "Elevation Parts Report": the metal parts of one elevation of a
// job (units, part number, description, sort type and length of each part) under a heading
// that names the elevation, its framing system and finish, and says how many times the
// elevation occurs in the job.
//
// Run by PrintElevationPartsReport (which builds the report data from the user, the elevation,
// the parts and the firm's and vendor's records) and, once per elevation, as the sub-report of
// the multi-elevation parts report, which sets ReportData and runs the same object again.
// Asked for by request with the name "elevpartsar", it has no report data and its start
// handler reports that. It exports nothing.

#include "platform/engine/report.hpp"
#include "platform/host/report_data.hpp"

#include <cstdint>

namespace qr::reports {

class ElevPartsAR : public engine::Report {
  public:
    ElevPartsAR();

    /// The elevation and its parts lines, in print order; whoever runs the report keeps it
    /// alive during the run.
    const host::ElevationPartsReportData* ReportData = nullptr;

  protected:
    void initialize() override;
    /// Restarts the rows (the same object prints the next elevation) and fills the headings.
    void reportStart() override;
    void fetchData(bool& eof) override;

  private:
    void showHeadings();

    std::int32_t m_rowIndex = 0;
};

/// The elevation heading: the name alone when the description is the same text, otherwise
/// the name, " - " and the description.
std::string elevationHeading(const std::string& name, const std::string& description);

/// The repeat note for an elevation occurring `count` times ("Elevation was repeated 3
/// times."); empty below 2, where the note is hidden.
std::string repeatNote(std::int32_t count);

} // namespace qr::reports
