#include "reports/cost/final_summary.hpp"

#include "data/cost_categories.hpp"
#include "data/statements.hpp"
#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/host/module_state.hpp"
#include "reports/common/design_helpers.hpp"

#include <array>

namespace qr::reports {

namespace cost {

namespace {

using engine::ControlDesign;

constexpr double kSize = 9;
constexpr int kRow = 230;
constexpr int kPrintWidth = page::kLetterWidth - 720 - 500;

// Left column: captions and values; right column: the firm, then the totals.
constexpr int kLeftValueX = 1250;
constexpr int kRightX = 5800;
constexpr int kRightValueX = 6550;
constexpr int kTotalsValueX = kPrintWidth - 2400;

constexpr int kJobTop = 560;
constexpr int kLine1Y = kJobTop + 4 * kRow + 60;
constexpr int kHeadingsY = kLine1Y + 80;
constexpr int kSizeTop = kHeadingsY + kRow + 60;
constexpr int kLine2Y = kSizeTop + 5 * kRow + 30;
constexpr int kGrandY = kLine2Y + 50;
constexpr int kNotesHeadingY = kSizeTop + 9 * kRow + 80;
constexpr int kNotesY = kNotesHeadingY + kRow;
constexpr int kLine4Y = kNotesY + kRow + 60;

// The notices of the first layout's page footer, with the lines each takes across the page.
constexpr std::pair<const char*, int> kNotices[] = {
    {"This final summary lists cost pricing only, and does not include any tax or markup "
     "amounts. Please use the Markup Report for these figures. Always check your bids carefully "
     "before ordering and purchasing material. ",
     2},
    {"No wind load calculations are made by the program. You must make your own calculations "
     "and adjust accordingly.",
     1},
    {"Labor conditions vary with every job. Be sure to add extra charges for tall buildings, "
     "outside costs, and oversized glass and materials.",
     1},
};

engine::SectionDesign pageHeader(CaptionMaker& caption) {
    auto jobRow = [](int row) { return kJobTop + row * kRow; };
    auto sizeRow = [](int row) { return kSizeTop + row * kRow; };
    std::vector<ControlDesign> controls{
        caption.bold({0, 0, 5000, 420}, "Final Summary").size(16),
        textLabel("RptDate", {kPrintWidth - 2400, 0, 2400, kRow}, kSize).alignRight(),
        textLabel("RptTime", {kPrintWidth - 2400, kRow, 2400, kRow}, kSize).alignRight(),
        textLabel("lGlassfirm", {kRightX, jobRow(0), kPrintWidth - kRightX, kRow}, kSize, "xx")
            .bold(),
        engine::line("Line1", 0, kLine1Y, kPrintWidth, kLine1Y),
        caption.bold({0, kHeadingsY, 4000, kRow}, "Approximate Job Size"),
        caption.bold({kRightX, kHeadingsY, 4000, kRow}, "All Totals are at Cost"),
        engine::line("Line2", kRightX, kLine2Y, kPrintWidth, kLine2Y),
        caption.bold({kRightX, kGrandY, 2400, 280}, "Grand Total:").size(10),
        figureLabel("lGrandTotal", {kTotalsValueX, kGrandY, 2400, 280}, 10).bold(),
        caption.bold({0, kNotesHeadingY, 4000, kRow}, "Job Notes"),
        textLabel("lJobNotes", {0, kNotesY, kPrintWidth, kRow}, kSize).grow(),
        engine::line("Line4", 0, kLine4Y, kPrintWidth, kLine4Y),
    };
    struct Row {
        int x, y;
        const char* caption;
        const char* control;
    };
    // The job: estimator, status, name and colour at the left; the firm at the right.
    const Row job[] = {
        {0, jobRow(0), "Estimator:", "lEstimator"}, {0, jobRow(1), "Job  Status:", "lJobStatus"},
        {0, jobRow(2), "Job  Name:", "lJobName"},   {0, jobRow(3), "Job Color:", "lJobColor"},
        {kRightX, jobRow(1), "Phone:", "lPhone"},   {kRightX, jobRow(2), "Fax:", "lFax"},
        {kRightX, jobRow(3), "Vendor:", "lVendor"}};
    for (const Row& row : job) {
        const int valueX = row.x == 0 ? kLeftValueX : kRightValueX;
        const int valueRight = row.x == 0 ? kRightX - 200 : kPrintWidth;
        controls.push_back(caption({row.x, row.y, valueX - row.x - 50, kRow}, row.caption));
        controls.push_back(
            textLabel(row.control, {valueX, row.y, valueRight - valueX, kRow}, kSize, "xx"));
    }
    // The job's size at the left, its totals at cost at the right; figures right-aligned.
    const Row figures[] = {{0, sizeRow(0), "Elevation Count:", "lElevationCount"},
                           {0, sizeRow(1), "Frame Panels:", "lPanelCount"},
                           {0, sizeRow(2), "Door Count:", "lDoorCount"},
                           {0, sizeRow(3), "Job Area:", "lSquareFeet"},
                           {0, sizeRow(4), "Glass Area:", "lGlassArea"},
                           {0, sizeRow(5), "Job Perimeter:", "lPerimFeet"},
                           {0, sizeRow(6), "Glass Lite Count:", "lLiteCount"},
                           {0, sizeRow(7), "Joint Count:", "lJointCount"},
                           {0, sizeRow(8), "Cut Count:", "lTotalCuts"},
                           {kRightX, sizeRow(0), "Glass Total:", "lGlassTotal"},
                           {kRightX, sizeRow(1), "Metal Total:", "lMetalTotal"},
                           {kRightX, sizeRow(2), "Door Total:", "lDoorTotal"},
                           {kRightX, sizeRow(3), "Misc Total:", "lMiscTotal"},
                           {kRightX, sizeRow(4), "Labor Total:", "lLaborTotal"}};
    for (const Row& row : figures) {
        const int valueX = row.x == 0 ? 1850 : kTotalsValueX;
        const int width = row.x == 0 ? 1500 : 2400;
        controls.push_back(caption({row.x, row.y, 1750, kRow}, row.caption));
        controls.push_back(figureLabel(row.control, {valueX, row.y, width, kRow}, kSize));
    }
    return engine::pageHeader("PageHeader", kLine4Y + 100, std::move(controls));
}

engine::SectionDesign detail(CaptionMaker& caption) {
    return engine::detail(
        "Detail", 2 * kRow + 100,
        {caption.bold({0, 40, 1500, kRow}, "Framing System:"),
         engine::textBox("Field8", {1550, 40, kPrintWidth - 1550, kRow}, "sDescription")
             .size(kSize)
             .bold(),
         caption({0, 40 + kRow, 1500, kRow}, "System Notes:"),
         engine::textBox("Field7", {1550, 40 + kRow, kPrintWidth - 1550, kRow}, "mNotes")
             .size(kSize)
             .grow()});
}

engine::SectionDesign pageFooter(CaptionMaker& caption, bool withNotices) {
    std::vector<ControlDesign> controls;
    int y = 0;
    if (withNotices) {
        controls.push_back(engine::line("Line5", 0, 40, kPrintWidth, 40));
        controls.push_back(caption.bold({0, 100, 600, 200}, "Note:").size(8));
        y = 100;
        for (const auto& [notice, lines] : kNotices) {
            const int height = lines * 190;
            controls.push_back(caption({650, y, kPrintWidth - 650, height}, notice).size(8));
            y += height + 30;
        }
    }
    controls.push_back(engine::textBox("txtPageNumber", {kPrintWidth - 3000, y + 60, 3000, 240})
                           .size(kSize)
                           .alignRight()
                           .pageCount());
    return engine::pageFooter("PageFooter", y + 340, std::move(controls));
}

engine::ReportDesign design(const char* className, bool withNotices) {
    CaptionMaker caption(kSize);
    engine::ReportDesign d;
    d.name = className;
    d.title = "Final Summary Report";
    d.page.marginLeft = 720;
    d.page.marginRight = 500;
    d.page.marginTop = d.page.marginBottom = 720;
    d.page.printWidth = kPrintWidth;
    d.sections.push_back(pageHeader(caption));
    d.sections.push_back(detail(caption));
    d.sections.push_back(pageFooter(caption, withNotices));
    return d;
}

/// A job-size value of the request, shown as the text it is. A plain number (its own general
/// text, "3180.25" but not "012") also keeps its value, so the workbook holds it as a number.
void showRequestValue(engine::Label& label, const std::string& text) {
    const std::optional<double> number = numberFromText(text);
    if (number && toText(Variant(*number)) == text)
        label.setNumber(*number, "");
    else
        label.setCaption(text);
}

} // namespace

FinalSummaryReport::FinalSummaryReport(const char* className, bool withNotices,
                                       ExportSuffixes suffixes)
    : CostReport(design(className, withNotices), suffixes) {
    onFormat("PageFooter", [this] { pageFooterFormat(); });
}

void FinalSummaryReport::reportStart() {
    restoreDesignCaptions();
    const auto& state = host::moduleState();
    db::Connection& vendor = vendorConnection();
    openDataSource(data::sql::framingSystems(state.requestTable, vendor.dialect()));
    showReportDateTime(*this);
    showHeading(*this, requestHeading(), kFirmHeading);
    label("lVendor").setCaption(state.vendorName);

    auto job = vendor.openRecordset(data::sql::jobRow(state.requestJobId));
    if (!job->eof())
        showJob(*job);
    job->close();
    showJobCounts();
}

void FinalSummaryReport::showJob(const RowCursor& job) {
    showTotals(job);
    label("lJobColor").setCaption(textOrEmpty(job, "DefaultFinish"));
    label("lJobStatus").setCaption(textOrEmpty(job, "sstatus"));
    label("lEstimator").setCaption(textOrEmpty(job, "sEstimator"));
    // The job's size as the job row stores it, unformatted.
    const std::pair<const char*, const char*> sizes[] = {{"lSquareFeet", "pjobarea"},
                                                         {"lPerimFeet", "pjobperimeter"},
                                                         {"lJointCount", "itotaljoints"},
                                                         {"lTotalCuts", "icuts"}};
    for (const auto& [control, column] : sizes)
        label(control).setNumber(requiredValue(job, column, "the job row", className()), "");
    label("lJobNotes").setCaption(textOrEmpty(job, "mnotes"));
}

void FinalSummaryReport::showTotals(const RowCursor& job) {
    const data::CategoryTotals totals = data::categoryTotals(job);
    label("lMetalTotal").setNumber(totals.metal, kSystemCurrency);
    label("lDoorTotal").setNumber(totals.doors, kSystemCurrency);
    label("lMiscTotal").setNumber(totals.miscParts, kSystemCurrency);
    label("lGlassTotal").setNumber(totals.glass, kSystemCurrency);
    label("lLaborTotal").setNumber(totals.labor, kSystemCurrency);
    label("lGrandTotal").setNumber(totals.grandTotal(), kSystemCurrency);
}

void FinalSummaryReport::showJobCounts() {
    static constexpr std::array<const char*, 4> kCounts{"lLiteCount", "lPanelCount", "lDoorCount",
                                                        "lGlassArea"};
    // The request's tail is consumed as it is read, the way the host expects to find it.
    std::string& tail = host::moduleState().requestTail;
    const std::string asGiven = tail;
    for (std::size_t i = 0; i < kCounts.size(); ++i) {
        const auto dash = tail.find('-');
        if (dash == std::string::npos) {
            throw Error(errc::kInvalidCall, className(),
                        "The job size in the request, \"" + asGiven + "\", holds " +
                            std::to_string(i + 1) + (i == 0 ? " value" : " values") +
                            " where five are needed, separated by \"-\": lite count, panel "
                            "count, door count, glass area and elevation count.");
        }
        showRequestValue(label(kCounts[i]), tail.substr(0, dash));
        tail.erase(0, dash + 1);
    }
    showRequestValue(label("lElevationCount"), tail);
}

} // namespace cost

FinalSummaryAR::FinalSummaryAR() : FinalSummaryReport("FinalSummaryAR", true, kExportSuffixes) {}

FinalSummaryAR2::FinalSummaryAR2()
    : FinalSummaryReport("FinalSummaryAR2", false, kExportSuffixes) {}

} // namespace qr::reports
