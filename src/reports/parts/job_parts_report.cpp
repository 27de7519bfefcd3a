#include "reports/parts/job_parts_report.hpp"

#include "platform/core/error.hpp"
#include "platform/host/error_log.hpp"
#include "reports/common/page_footer.hpp"
#include "reports/parts/parts_layout.hpp"

namespace qr::reports {

namespace {

// ---- Designs --------------------------------------------------------------------------------

using engine::ControlDesign;
using page::Align;
using parts::Column;

constexpr int kWidth = 10800;

std::vector<Column> columns(const char* lengthCaption) {
    return {
        {"QuantityField", "Quantity", "", 0, 700, Align::Right, {"Units"}},
        {"PartNumberField", "PartNumber", "", 850, 1900, Align::Left, {"Part #"}},
        parts::growing(
            {"DescriptionField", "Description", "", 2850, 4600, Align::Left, {"Description"}}),
        {"PartTypeField", "PartType", "", 7550, 1300, Align::Left, {"Sort Type"}},
        {"LengthField", "Length", "", 8950, 1850, Align::Left, {lengthCaption}},
    };
}

engine::PageSettings pageSettings() {
    return {.marginLeft = 720,
            .marginTop = 720,
            .marginRight = 720,
            .marginBottom = 720,
            .printWidth = kWidth};
}

/// Title, date and time, firm, vendor, phone, fax, job and finish; returns its height.
int addHeading(std::vector<ControlDesign>& controls, CaptionMaker& captions) {
    return parts::addHeadingBlock(
        controls,
        {.title = "Job Parts Report",
         .width = kWidth,
         .left = {{"Vendor:", "lVendor"}, {"Job  Name:", "lJobName"}, {"Finish:", "lFinish"}},
         .right = {{"Phone:", "lPhone"}, {"Fax:", "lFax"}}},
        captions);
}

/// The column captions at `top` and the rule Line1 under them; returns the height used.
int addCaptionsAndRule(std::vector<ControlDesign>& controls, const std::vector<Column>& line,
                       int top, CaptionMaker& captions) {
    parts::addColumnCaptions(controls, line, top, captions);
    const int rule = top + parts::kCaptionRows * parts::kCaptionRowHeight + 40;
    controls.push_back(engine::line("Line1", 0, rule, kWidth, rule).weight(20));
    return rule + 80;
}

engine::ReportDesign jobDesign() {
    CaptionMaker captions(parts::kHeadingTextSize);
    const std::vector<Column> line = columns("Length");
    std::vector<ControlDesign> heading;
    const int height = addCaptionsAndRule(heading, line, addHeading(heading, captions), captions);
    engine::ReportDesign d{"JobPartsAR", "Job Parts Report", pageSettings(), {}};
    d.sections = {
        engine::pageHeader("PageHeader", height, std::move(heading)),
        parts::lineOf(line),
        parts::partsPageFooter(kWidth, "Line2"),
    };
    return d;
}

engine::ReportDesign byElevationDesign() {
    CaptionMaker captions(parts::kHeadingTextSize);
    const std::vector<Column> line = columns("Length of Part");
    std::vector<ControlDesign> heading;
    const int headingHeight = addHeading(heading, captions);
    std::vector<ControlDesign> captionRow;
    const int captionHeight = addCaptionsAndRule(captionRow, line, 0, captions);
    engine::ReportDesign d{"JobElevAR", "Job Parts Report by Elevation", pageSettings(), {}};
    d.sections = {
        engine::reportHeader("ReportHeader", headingHeight, std::move(heading)),
        engine::pageHeader("PageHeader", captionHeight, std::move(captionRow)),
        engine::groupHeader(
            "ghElevHeader", "ElevationSortIndex", 360,
            {engine::label("Label77", {0, 80, 1100, 240}, "Elevation:").bold().size(10),
             engine::textBox("ElevationNameField", {1150, 80, kWidth - 1150, 240}, "ElevationName")
                 .bold()
                 .size(10)}),
        parts::lineOf(line),
        engine::groupFooter("ghElevFooter", "ghElevHeader", 120, {}),
        parts::partsPageFooter(kWidth, "Line2"),
        engine::reportFooter("ReportFooter", 0, {}),
    };
    return d;
}

} // namespace

// ---- Handlers, in the order the engine raises them ------------------------------------------

JobPartsReport::JobPartsReport(engine::ReportDesign design, bool byElevation)
    : Report(std::move(design)), m_byElevation(byElevation) {
    onFormat("PageFooter", [this] { formatPageNumberFooter(*this); });
}

JobPartsAR::JobPartsAR() : JobPartsReport(jobDesign(), false) {}

JobElevAR::JobElevAR() : JobPartsReport(byElevationDesign(), true) {}

const host::JobPartsReportData& JobPartsReport::data() const {
    return parts::reportData(*this, ReportData);
}

void JobPartsReport::initialize() {
    for (const char* name : {"Quantity", "PartNumber", "Description", "PartType", "Length"})
        fields().add(name);
    if (m_byElevation) {
        fields().add("ElevationName");
        fields().add("ElevationSortIndex");
    }
}

void JobPartsReport::reportStart() {
    host::runTrapped(className(), "ActiveReport_ReportStart",
                     [this] { parts::showPartsHeading(*this, data(), {.finish = "lFinish"}); });
}

void JobPartsReport::fetchData(bool& eof) {
    const host::PartsReportListItem* row = parts::nextRow(data().Items, m_rowIndex, eof);
    if (row == nullptr)
        return;
    const host::PartsReportListItem& item = *row;
    fields()["Quantity"].setValue(item.Quantity);
    fields()["PartNumber"].setValue(item.PartNumber);
    fields()["Description"].setValue(item.Description);
    fields()["PartType"].setValue(item.PartType);
    fields()["Length"].setValue(item.Length);
    if (m_byElevation) {
        fields()["ElevationName"].setValue(item.ElevationName);
        fields()["ElevationSortIndex"].setValue(item.ElevationSortIndex);
    }
}

} // namespace qr::reports
