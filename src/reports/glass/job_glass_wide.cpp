// JobGlassWideByPartAR2 and JobGlassWideByElevAR2: the take-off on a landscape page, each
// lite's block size, block area and block price beside its actual figures.
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
    {"Field8", "pGprc", "$#,##0.00", 7200, 950, Align::Right, "Area", "Price"},
    {"lSquareFt", "", "", 8200, 950, Align::Right, "Actual", "SqrFt"},
    {"lTotal", "", "", 9200, 1250, Align::Right, "Actual Size", "Totals"},
    {"Field9", "sblocksize", "", 10500, 1100, Align::Right, "Block", "Size"},
    {"fBlkArea", "pblksqrft", "#,##0.00", 11650, 950, Align::Right, "Block", "SqrFt"},
    {"lBlockTotal", "", "", 12650, 1780, Align::Right, "Total", "Block Price"},
};

} // namespace

JobGlassWideByPartAR2::JobGlassWideByPartAR2()
    : JobGlassReport(job_glass::buildDesign({.name = "JobGlassWideByPartAR2",
                                             .wide = true,
                                             .byElevation = false,
                                             .groupedBy = "Grouped by: Glass Type, SqFt",
                                             .columns = kColumns}),
                     {.byElevation = false, .blockFigures = true}) {}

JobGlassWideByElevAR2::JobGlassWideByElevAR2()
    : JobGlassReport(job_glass::buildDesign({.name = "JobGlassWideByElevAR2",
                                             .wide = true,
                                             .byElevation = true,
                                             .groupedBy = "Grouped by: Elevation, Glass Type, SqFt",
                                             .columns = kColumns}),
                     {.byElevation = true, .blockFigures = true}) {}

} // namespace qr::reports
