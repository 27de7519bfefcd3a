#include "reports/parts/elev_parts_report.hpp"

#include "platform/host/error_log.hpp"
#include "reports/common/design_helpers.hpp"
#include "reports/common/heading.hpp"
#include "reports/common/page_footer.hpp"
#include "reports/parts/parts_layout.hpp"

#include <string>
#include <vector>

namespace qr::reports {

namespace {

// ---- Design ---------------------------------------------------------------------------------

using engine::ControlDesign;
using page::Align;
using parts::Column;

constexpr int kWidth = 10800;
constexpr int kRow = 240;
constexpr int kCaptionWidth = 1300;

std::vector<Column> columns() {
    return {
        {"Field1", "Quantity", "", 0, 700, Align::Right, {"Units"}},
        {"Field2", "PartNumber", "", 850, 1900, Align::Left, {"Part #"}},
        parts::growing({"Field3", "Description", "", 2850, 4600, Align::Left, {"Description"}}),
        {"Field4", "PartType", "", 7550, 1300, Align::Left, {"Sort Type"}},
        {"Field5", "Length", "", 8950, 1850, Align::Left, {"Length of Part"}},
    };
}

/// A caption and the label a handler fills beside it.
void captioned(std::vector<ControlDesign>& controls, CaptionMaker& captions, int x, int y,
               int width, const char* caption, const char* valueLabel) {
    controls.push_back(captions({x, y, kCaptionWidth, kRow}, caption));
    controls.push_back(textLabel(valueLabel, {x + kCaptionWidth, y, width - kCaptionWidth, kRow},
                                 parts::kHeadingTextSize, "xx"));
}

/// Title, firm, phone and fax at the right, vendor, job and finish at the left.
engine::SectionDesign reportHeader(CaptionMaker& captions) {
    std::vector<ControlDesign> controls;
    captions.setSize(14);
    controls.push_back(captions.bold({0, 0, kWidth, 400}, "Elevation Parts Report"));
    captions.setSize(parts::kHeadingTextSize);
    controls.push_back(textLabel("lCompanyName", {0, 460, kWidth / 2, 270}, 11, "xx").bold());
    const int top = 790, half = kWidth / 2;
    captioned(controls, captions, half, top, half, "Phone:", "lPhone");
    captioned(controls, captions, half, top + kRow, half, "Fax:", "lFax");
    captioned(controls, captions, 0, top, half - 200, "Vendor:", "lVendor");
    captioned(controls, captions, 0, top + kRow, half - 200, "Job  Name:", "lJobName");
    captioned(controls, captions, 0, top + 2 * kRow, half - 200, "Finish:", "lFinish");
    return engine::reportHeader("ReportHeader", top + 3 * kRow + 60, std::move(controls));
}

/// The elevation, its repeat note and system over the column captions: printed once, above
/// the first line.
engine::SectionDesign elevationHeader(CaptionMaker& captions, const std::vector<Column>& line) {
    std::vector<ControlDesign> controls;
    controls.push_back(textLabel("lElevation", {0, 60, 7000, 260}, 10, "xx").bold());
    auto repeated = textLabel("lRepeated", {7100, 60, kWidth - 7100, 260}, parts::kHeadingTextSize);
    repeated.align = Align::Right;
    controls.push_back(std::move(repeated));
    const int captionTop = 340 + kRow + 60;
    parts::addColumnCaptions(controls, line, captionTop, captions);
    // "System:" comes after the column captions in the design's numbering.
    captioned(controls, captions, 0, 340, kWidth / 2, "System:", "lSystem");
    return engine::groupHeader("GroupHeader1", "",
                               captionTop + parts::kCaptionRows * parts::kCaptionRowHeight + 60,
                               std::move(controls));
}

/// The page number at the right, the date and time of printing at the left, under a rule.
engine::SectionDesign pageFooter() {
    engine::SectionDesign footer =
        pageNumberFooter({kWidth - 3000, 100, 3000, 220}, parts::kLineTextSize, Align::Right, 520);
    footer.controls.push_back(engine::line("Line2", 0, 60, kWidth, 60).weight(10));
    for (ControlDesign& c : dateTimeLabels({0, 100, 2400, 200}, parts::kLineTextSize, Align::Left))
        footer.controls.push_back(std::move(c));
    return footer;
}

engine::ReportDesign design() {
    CaptionMaker captions(parts::kHeadingTextSize);
    const std::vector<Column> line = columns();
    engine::ReportDesign d{"ElevPartsAR",
                           "Elevation Parts Report",
                           {.marginLeft = 720,
                            .marginTop = 720,
                            .marginRight = 720,
                            .marginBottom = 720,
                            .printWidth = kWidth},
                           {}};
    d.sections = {
        reportHeader(captions),
        engine::pageHeader("PageHeader", 0, {}),
        elevationHeader(captions, line),
        parts::lineOf(line),
        engine::groupFooter("GroupFooter1", "GroupHeader1", 0, {}),
        pageFooter(),
        engine::reportFooter("ReportFooter", 0, {}),
    };
    return d;
}

} // namespace

std::string elevationHeading(const std::string& name, const std::string& description) {
    return description == name ? name : name + " - " + description;
}

std::string repeatNote(std::int32_t count) {
    return count < 2 ? std::string()
                     : "Elevation was repeated " + std::to_string(count) + " times.";
}

// ---- Handlers, in the order the engine raises them ------------------------------------------

ElevPartsAR::ElevPartsAR() : Report(design()) {
    onFormat("PageFooter", [this] { formatPageNumberFooter(*this); });
}

void ElevPartsAR::initialize() {
    for (const char* name : {"Quantity", "PartNumber", "Description", "PartType", "Length"})
        fields().add(name);
}

void ElevPartsAR::reportStart() {
    m_rowIndex = 0;
    host::runTrapped(className(), "ActiveReport_ReportStart", [this] { showHeadings(); });
}

void ElevPartsAR::showHeadings() {
    const host::ElevationPartsReportData& data = parts::reportData(*this, ReportData);
    const host::ElevationData& elevation = data.Elevation;
    label("lElevation").setCaption(elevationHeading(elevation.Name, elevation.Description));
    engine::Label& repeated = label("lRepeated");
    repeated.setVisible(elevation.RepeatCount >= 2);
    if (repeated.visible())
        repeated.setCaption(repeatNote(elevation.RepeatCount));
    label("lFinish").setCaption(elevation.Finish);
    label("lSystem").setCaption(elevation.System.Name);
    // The firm, the phone (the user's, or the firm's when the user's is empty), the fax and
    // the elevation's job.
    host::PartsReportHeading heading;
    heading.User = data.User;
    heading.Company = data.Company;
    heading.JobName = elevation.Job.JobName;
    showHeading(*this, headingOf(heading),
                HeadingControls{.firm = "lCompanyName",
                                .user = nullptr,
                                .phone = "lPhone",
                                .email = nullptr,
                                .fax = "lFax",
                                .job = "lJobName"});
    label("lVendor").setCaption(data.Vendor.name);
    showReportDateTime(*this);
}

void ElevPartsAR::fetchData(bool& eof) {
    const host::PartsReportListItem* row =
        parts::nextRow(parts::reportData(*this, ReportData).Items, m_rowIndex, eof);
    if (row == nullptr)
        return;
    fields()["Quantity"].setValue(row->Quantity);
    fields()["PartNumber"].setValue(row->PartNumber);
    fields()["Description"].setValue(row->Description);
    fields()["PartType"].setValue(row->PartType);
    fields()["Length"].setValue(row->Length);
}

} // namespace qr::reports
