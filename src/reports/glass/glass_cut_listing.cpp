// AR2GlassCutListings: one line per lite to be cut, on plain Letter paper, in the order the host
// wrote the glass cut table.
#include "reports/common/heading.hpp"
#include "reports/common/page_footer.hpp"
#include "reports/glass/glass_cut_reports.hpp"

#include <array>

namespace qr::reports {

namespace {

constexpr int kWidth = 10830;
constexpr double kSize = 9;
constexpr int kHeadingTop = 880;
constexpr int kLineTop = 60;
constexpr int kLineHeight = 250;

// One column of the list: its heading caption, the detail box and the column it shows. Texts
// are cut at the column's edge, so a long description never runs into the elevation.
struct CutColumn {
    const char* caption;
    const char* heading;
    const char* box;
    const char* column;
    int x;
    int width;
};

constexpr std::array<CutColumn, 8> kColumns{{
    {"Label2", "Glass Label", "txtLabel", "sLabel", 0, 1100},
    {"Label3", "Glass Type", "txtGlassType", "sGlassType", 1150, 1600},
    {"Label4", "Part Type", "PartType", "sPartType", 2800, 900},
    {"Label5", "Width", "txtWidth", "sWidth", 3750, 850},
    {"Label6", "L Height", "txtLeftHeight", "sLeftHeight", 4650, 850},
    {"Label7", "R Height", "txtRightHeight", "sRightHeight", 5550, 850},
    {"Label9", "Description", "txtDescription", "sDescription", 6450, 2600},
    {"Label10", "Elevation", "txtElevation", "sElevName", 9100, kWidth - 9100},
}};

engine::SectionDesign pageHeader() {
    std::vector<engine::ControlDesign> controls{
        engine::label("Label1", {0, 0, 6000, 380}, "Glass Cut Listing Report").size(14).bold(),
        engine::label("Label8", {0, 500, 1150, 260}, "Job  Name:").size(kSize).bold(),
        engine::textBox("txtJobname", {1200, 500, 6000, 260}, "sJobname").size(kSize).noWrap(),
        engine::line("Line1", 0, 820, kWidth, 820),
    };
    for (auto& c : dateTimeLabels({kWidth - 2400, 0, 2400, 240}, kSize))
        controls.push_back(std::move(c));
    for (const CutColumn& c : kColumns) {
        controls.push_back(
            engine::label(c.caption, {c.x, kHeadingTop, c.width, kLineHeight}, c.heading)
                .size(kSize)
                .bold()
                .noWrap());
    }
    return engine::pageHeader("PageHeader", kHeadingTop + kLineHeight + 60, std::move(controls));
}

engine::SectionDesign detail() {
    std::vector<engine::ControlDesign> controls;
    for (const CutColumn& c : kColumns) {
        controls.push_back(
            engine::textBox(c.box, {c.x, kLineTop, c.width - 50, kLineHeight}, c.column)
                .size(kSize)
                .noWrap());
    }
    return engine::detail("Detail", 405, std::move(controls)).fixedHeight();
}

} // namespace

namespace glass_cut {

engine::ReportDesign cutListingDesign() {
    engine::ReportDesign d;
    d.name = "AR2GlassCutListings";
    d.title = "Glass Cut Sheet in List Format";
    d.page.marginLeft = 225;
    d.page.marginRight = 0;
    d.page.marginTop = 760;
    d.page.marginBottom = 400;
    d.page.printWidth = kWidth;
    d.sections.push_back(pageHeader());
    d.sections.push_back(detail());
    d.sections.push_back(pageNumberFooter({kWidth - 3000, 60, 3000, 240}, kSize));
    return d;
}

} // namespace glass_cut

AR2GlassCutListings::AR2GlassCutListings()
    : GlassCutReport(glass_cut::cutListingDesign(), GlassCutRows::TableOrder) {}

} // namespace qr::reports
