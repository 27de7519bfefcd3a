// JobGlassByPartAR and JobGlassByElevAR: the take-off priced by actual size on a portrait page,
// 7.5 inches of line.
#include "reports/glass/job_glass_layout.hpp"
#include "reports/glass/job_glass_report.hpp"

namespace qr::reports {

namespace {

using page::Align;

// control, field, format, x, width, align, heading over heading
const std::vector<job_glass::Column> kColumns{
    {"fUnits", "iGqty", "", 0, 500, Align::Right, "", "Units"},
    {"Field6", "sDesc", "", 600, 3000, Align::Left, "", "Description"},
    {"Field2", "sPnum", "", 3650, 800, Align::Left, "", "Type"},
    {"Field3", "sWide", "", 4500, 850, Align::Right, "", "Width"},
    {"Field4", "sHt1", "", 5400, 850, Align::Right, "", "L-Height"},
    {"Field5", "sHt2", "", 6300, 850, Align::Right, "", "R-Height"},
    {"Field8", "pGprc", "$#,##0.00", 7200, 1000, Align::Right, "Area", "Price"},
    {"lSquareFt", "", "", 8250, 1000, Align::Right, "Area", "Each"},
    {"lTotal", "", "", 9300, 1500, Align::Right, "", "Totals"},
};

} // namespace

JobGlassByPartAR::JobGlassByPartAR()
    : JobGlassReport(job_glass::buildDesign({.name = "JobGlassByPartAR",
                                             .wide = false,
                                             .byElevation = false,
                                             .groupedBy = "Grouped by: Glass Type,  SqFt",
                                             .columns = kColumns}),
                     {.byElevation = false, .blockFigures = false}) {}

JobGlassByElevAR::JobGlassByElevAR()
    : JobGlassReport(
          job_glass::buildDesign({.name = "JobGlassByElevAR",
                                  .wide = false,
                                  .byElevation = true,
                                  .groupedBy = "Grouped by:  Elevation, Glass Type, SqFt",
                                  .columns = kColumns}),
          {.byElevation = true, .blockFigures = false}) {}

} // namespace qr::reports
