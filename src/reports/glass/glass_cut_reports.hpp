#pragma once
// The glass cut listing and the glass labels: the lites the host wrote into a glass cut table
// (one row per lite to be cut, named in the request), printed as a list on plain paper or one
// label per lite on Avery 5260 and 5267 sheets to be stuck on the cut glass. None of the five
// computes a figure or exports a file.
//
// AR2GlassCutListings ("ar2glasscutlistings") keeps the table's order. The label sheets
// ("aravery5260glasslabels", "aravery5267aglasslabels", "aravery5267bglasslabels",
// "aravery5267cglasslabels") sort by elevation name, then glass label, and fill each sheet
// across, then down (reports/common/label_sheet.hpp). The request's label offsets move the
// whole print; the cut listing applies them too, as the last label request on the thread left
// them.
//
// The five share their handlers and differ in their design and in the statement that reads
// the rows.

#include "platform/engine/report.hpp"

namespace qr::reports {

/// The statement a glass cut report reads its rows with.
enum class GlassCutRows {
    TableOrder,            ///< "Select * from " + table
    LabelOrder,            ///< "Select * FROM " + table + " ORDER BY sElevName,sLabel"
    LabelOrderUpperSelect, ///< the same, spelt "SELECT * FROM "
};

/// The handlers of the five reports. Each run starts again from the design's margins, so the
/// offsets of one request never add to those of the last.
class GlassCutReport : public engine::Report {
  protected:
    GlassCutReport(engine::ReportDesign design, GlassCutRows rows);

    /// Binds the report to the request's table on the vendor connection, moves the page by the
    /// label offsets, and (cut listing) shows the date and time. Errors are shown through the
    /// host's error dialog naming the report and "ActiveReport_ReportStart"; the run goes on.
    void reportStart() override;
    /// Closes the rows.
    void reportEnd() override;

  private:
    void openGlassRows();
    void pageFooterFormat();

    engine::PageSettings m_designPage;
    GlassCutRows m_rows;
    bool m_listing = false;
};

/// "Glass Cut Sheet in List Format": one line per lite, in the table's order.
class AR2GlassCutListings : public GlassCutReport {
  public:
    AR2GlassCutListings();
};

/// "Avery 5260 Glass Label": label, glass type, part type; cut sizes; description; elevation;
/// job.
class arAvery5260GlassLabels : public GlassCutReport {
  public:
    arAvery5260GlassLabels();
};

/// "Avery 5267 Glass Label #1": glass label and description; cut sizes; elevation.
class arAvery5267AGlassLabels : public GlassCutReport {
  public:
    arAvery5267AGlassLabels();
};

/// "Avery 5267 Glass Label #2": glass label and glass type; cut sizes; elevation.
class arAvery5267BGlassLabels : public GlassCutReport {
  public:
    arAvery5267BGlassLabels();
};

/// "Avery 5267Glass Label #3": glass type and description; cut sizes; elevation.
class arAvery5267CGlassLabels : public GlassCutReport {
  public:
    arAvery5267CGlassLabels();
};

namespace glass_cut {
/// The designs, one per report (glass_cut_listing.cpp, glass_labels.cpp).
engine::ReportDesign cutListingDesign();
engine::ReportDesign avery5260Design();
/// The three 5267 labels: `variant` 'A', 'B' or 'C'.
engine::ReportDesign avery5267Design(char variant);
} // namespace glass_cut

} // namespace qr::reports
