// The four job glass designs: the take-off by actual size on a portrait page (7.5 inches of
// line), and on a landscape page with each lite's block size, block area and block price beside
// its actual figures.
#include "reports/glass/job_glass_layout.hpp"
#include "reports/glass/job_glass_report.hpp"

namespace qr::reports {

namespace {

using job_glass::Column;
using page::Align;

/// The item columns every layout starts with; `more` follows them.
std::vector<Column> line(std::initializer_list<Column> more) {
    // control, field, format, x, width, align, heading over heading
    std::vector<Column> columns{
        {"fUnits", "iGqty", "", 0, 500, Align::Right, "", "Units"},
        {"Field6", "sDesc", "", 600, 3000, Align::Left, "", "Description"},
        {"Field2", "sPnum", "", 3650, 800, Align::Left, "", "Type"},
        {"Field3", "sWide", "", 4500, 850, Align::Right, "", "Width"},
        {"Field4", "sHt1", "", 5400, 850, Align::Right, "", "L-Height"},
        {"Field5", "sHt2", "", 6300, 850, Align::Right, "", "R-Height"},
    };
    columns.insert(columns.end(), more);
    return columns;
}

const std::vector<Column> kPortrait = line({
    {"Field8", "pGprc", "$#,##0.00", 7200, 1000, Align::Right, "Area", "Price"},
    {"lSquareFt", "", "", 8250, 1000, Align::Right, "Area", "Each"},
    {"lTotal", "", "", 9300, 1500, Align::Right, "", "Totals"},
});

const std::vector<Column> kWide = line({
    {"Field8", "pGprc", "$#,##0.00", 7200, 950, Align::Right, "Area", "Price"},
    {"lSquareFt", "", "", 8200, 950, Align::Right, "Actual", "SqrFt"},
    {"lTotal", "", "", 9200, 1250, Align::Right, "Actual Size", "Totals"},
    {"Field9", "sblocksize", "", 10500, 1100, Align::Right, "Block", "Size"},
    {"fBlkArea", "pblksqrft", "#,##0.00", 11650, 950, Align::Right, "Block", "SqrFt"},
    {"lBlockTotal", "", "", 12650, 1780, Align::Right, "Total", "Block Price"},
});

/// The design of one of the four, and the options its handlers follow.
JobGlassReport::Setup setup(const char* name, bool wide, bool byElevation, const char* groupedBy) {
    return {job_glass::buildDesign({.name = name,
                                    .wide = wide,
                                    .byElevation = byElevation,
                                    .groupedBy = groupedBy,
                                    .columns = wide ? kWide : kPortrait}),
            {.byElevation = byElevation, .blockFigures = wide}};
}

} // namespace

JobGlassByPartAR::JobGlassByPartAR()
    : JobGlassReport(setup("JobGlassByPartAR", false, false, "Grouped by: Glass Type,  SqFt")) {}

JobGlassByElevAR::JobGlassByElevAR()
    : JobGlassReport(
          setup("JobGlassByElevAR", false, true, "Grouped by:  Elevation, Glass Type, SqFt")) {}

JobGlassWideByPartAR2::JobGlassWideByPartAR2()
    : JobGlassReport(setup("JobGlassWideByPartAR2", true, false, "Grouped by: Glass Type, SqFt")) {}

JobGlassWideByElevAR2::JobGlassWideByElevAR2()
    : JobGlassReport(
          setup("JobGlassWideByElevAR2", true, true, "Grouped by: Elevation, Glass Type, SqFt")) {}

} // namespace qr::reports
