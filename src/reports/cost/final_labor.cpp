#include "reports/cost/final_labor.hpp"

#include "data/statements.hpp"
#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/host/module_state.hpp"
#include "reports/common/design_helpers.hpp"

#include <algorithm>
#include <array>
#include <optional>

namespace qr::reports {

namespace {

using namespace cost;
using engine::ControlDesign;

constexpr double kSize = 8;
constexpr int kPrintWidth = page::kLetterHeight - 2 * 300; // landscape
constexpr int kGap = 25;
constexpr int kDetailRow = 230;
constexpr const char* kHours = "#,##0.00";
constexpr std::string_view kMoney = kBoundMoneyFormat;

// One column of the labor table: its heading, the detail box, the grand-total box under it,
// the labor table column both are bound to, their format and the column's width.
struct LaborColumn {
    const char* heading;
    const char* detail;
    const char* grandTotal; // none under the elevation name
    const char* column;
    std::string_view format;
    int width;
    int headingLines; // the heading wraps to two lines in its width
};

// The figure columns are as wide as a figure of a large job needs at 8 points ("$1,234,567.89"
// and "12,345.00" with room to spare); the elevation name takes the rest of the landscape line,
// room for about 35 characters, so names like "I1 Interior Reception Storefront" print whole.
constexpr int kHoursWidth = 720;
constexpr int kMoneyWidth = 1000;
constexpr std::array<LaborColumn, 15> kColumns{{
    {"Elevation", "Field1", nullptr, "sElevName", "", 0, 1}, // takes the width left over
    {"Qty", "Field2", "Field20", "iQuantity", "#,##0", 520, 1},
    {"Fab Hours", "Field23", "Field24", "pFabHours", kHours, kHoursWidth, 2},
    {"Frame Fab", "Field4", "Field19", "pFabTot", kMoney, kMoneyWidth, 1},
    {"Ent Fab Hours", "Field29", "Field30", "pEntFabHours", kHours, kHoursWidth, 2},
    {"Ent Fab", "Field33", "Field36", "pEntFabTot", kMoney, kMoneyWidth, 1},
    {"Misc Hours", "Field27", "Field28", "pMiscHours", kHours, kHoursWidth, 2},
    {"Misc", "Field6", "Field17", "pMiscTot", kMoney, kMoneyWidth, 1},
    {"Install Hours", "Field25", "Field26", "pInstallHours", kHours, kHoursWidth, 2},
    {"Frame Install", "Field5", "Field18", "pInstallTot", kMoney, kMoneyWidth, 2},
    {"Entr Hours", "Field34", "Field35", "pEntInstallHours", kHours, kHoursWidth, 2},
    {"Entrance Install", "Field7", "Field16", "pEntInstallTot", kMoney, kMoneyWidth, 2},
    {"Glaze Hours", "Field31", "Field32", "pGlazHours", kHours, kHoursWidth, 2},
    {"Glazing", "Field8", "Field15", "pGlazTot", kMoney, kMoneyWidth, 1},
    {"Totals", "Field10", "Field14", "pElevTot", kMoney, 1200, 1},
}};

struct Span {
    int x, width;
};

// Left edge and width of each column across the print width.
std::array<Span, kColumns.size()> columnSpans() {
    int fixed = 0;
    for (const LaborColumn& c : kColumns)
        fixed += c.width + kGap;
    std::array<Span, kColumns.size()> spans{};
    int x = 0;
    for (std::size_t i = 0; i < kColumns.size(); ++i) {
        const int width = kColumns[i].width ? kColumns[i].width : kPrintWidth - fixed + kGap;
        spans[i] = {x, width};
        x += width + kGap;
    }
    return spans;
}

// The labor table's hours and dollars per labor kind, in the order they are multiplied out.
constexpr std::array<const char*, 12> kLaborFigures{
    "pfabhours",    "pfabtot",    "pinstallhours",    "pinstalltot",    "pmischours", "pmisctot",
    "pentfabhours", "pentfabtot", "pentInstallhours", "pentinstalltot", "pglazhours", "pglaztot"};
// The dollars that make up an elevation's total.
constexpr std::array<const char*, 6> kLaborDollars{"pfabtot",    "pinstalltot",    "pmisctot",
                                                   "pentfabtot", "pentinstalltot", "pglaztot"};

// The column headings stand on the rule under them: a one-line heading starts a line lower. A
// two-line heading stands right-aligned in a box narrower than a money column, so it breaks
// into its two words even where the column could hold them side by side.
void addColumnHeadings(CaptionMaker& caption, int top, std::vector<ControlDesign>& controls) {
    constexpr int kTwoLineWidth = 800;
    const auto spans = columnSpans();
    for (std::size_t i = 0; i < kColumns.size(); ++i) {
        const bool twoLines = kColumns[i].headingLines == 2;
        const int y = top + (twoLines ? 40 : 230);
        const int width = twoLines ? std::min(spans[i].width, kTwoLineWidth) : spans[i].width;
        auto heading = caption.bold({spans[i].x + spans[i].width - width, y, width, top + 420 - y},
                                    kColumns[i].heading);
        controls.push_back(i == 0 ? heading : heading.alignRight());
    }
    controls.push_back(engine::line("Line1", 0, top + 450, kPrintWidth, top + 450));
}

engine::SectionDesign reportHeader(CaptionMaker& caption) {
    const int right = 10240; // the firm block
    constexpr int kHeadingsTop = 1040;
    std::vector<ControlDesign> controls{
        caption.bold({0, 0, 6000, 420}, "Final Labor Report").size(16),
        textLabel("RptDate", {kPrintWidth - 2400, 0, 2400, 220}, 9).alignRight(),
        textLabel("RptTime", {kPrintWidth - 2400, 220, 2400, 220}, 9).alignRight(),
        caption({0, 540, 1100, 220}, "Job  Name:").size(9),
        textLabel("lJobName", {1150, 540, 6000, 220}, 9).bold(),
        caption({0, 760, 1100, 220}, "Vendor:").size(9),
        textLabel("lVendor", {1150, 760, 6000, 220}, 9),
        textLabel("lGlassfirm", {right, 540, kPrintWidth - right, 220}, 9).bold(),
        caption({right, 760, 700, 220}, "Phone:").size(9),
        textLabel("lPhone", {right + 750, 760, 2000, 220}, 9),
        caption({right + 2800, 760, 500, 220}, "Fax:").size(9),
        textLabel("lFax", {right + 3300, 760, kPrintWidth - right - 3300, 220}, 9)};
    addColumnHeadings(caption, kHeadingsTop, controls);
    return engine::reportHeader("ReportHeader", kHeadingsTop + 500, std::move(controls));
}

// Every page opens with the caption of the totals column.
engine::SectionDesign pageHeader(CaptionMaker& caption) {
    const Span totals = columnSpans().back();
    return engine::pageHeader(
        "PageHeader", 240, {caption.bold({totals.x, 20, totals.width, 200}, "Total").alignRight()});
}

engine::SectionDesign detail() {
    const auto spans = columnSpans();
    std::vector<ControlDesign> controls;
    for (std::size_t i = 0; i < kColumns.size(); ++i) {
        const LaborColumn& c = kColumns[i];
        const page::Rect box{spans[i].x, 15, spans[i].width, 200};
        controls.push_back(
            i == 0 ? engine::textBox(c.detail, box, c.column).size(kSize)
                   : boundFigure(c.detail, box, kSize, c.column, std::string(c.format)));
    }
    return engine::detail("Detail", kDetailRow, std::move(controls));
}

engine::SectionDesign reportFooter(CaptionMaker& caption) {
    const auto spans = columnSpans();
    const Span totals = spans.back();
    std::vector<ControlDesign> controls{
        engine::line("Line4", 0, 40, kPrintWidth, 40),
        caption.bold({0, 100, spans[0].width, 200}, "Grand Totals:"),
    };
    for (std::size_t i = 1; i < kColumns.size(); ++i) {
        const LaborColumn& c = kColumns[i];
        controls.push_back(boundFigure(c.grandTotal, {spans[i].x, 100, spans[i].width, 200}, kSize,
                                       c.column, std::string(c.format))
                               .bold()
                               .sum());
    }
    const int captionX = totals.x - 2600;
    controls.push_back(caption.right({captionX, 420, 2550, 220}, "Added Job Labor:").size(9));
    // The added labor and the job's grand total: unbound boxes whose text the footer sets.
    controls.push_back(engine::textBox("Field21", {totals.x, 420, totals.width, 220})
                           .format(std::string(kMoney))
                           .size(9)
                           .alignRight());
    controls.push_back(
        caption.right({captionX, 700, 2550, 260}, "Job Grand Total:").size(10).bold());
    controls.push_back(engine::textBox("Field22", {totals.x - 300, 700, totals.width + 300, 260})
                           .format(std::string(kMoney))
                           .size(10)
                           .bold()
                           .alignRight());
    // The added items at the left, beside the job's totals.
    controls.push_back(engine::line("Line5", 0, 400, 8400, 400));
    controls.push_back(engine::subReport("SubReport1", {0, 460, 8400, 200}));
    return engine::reportFooter("ReportFooter", 1020, std::move(controls));
}

engine::ReportDesign laborDesign() {
    CaptionMaker caption(kSize);
    engine::ReportDesign d;
    d.name = "FinalLaborAR";
    d.title = "Job Labor Report";
    d.page.orientation = page::Orientation::Landscape;
    d.page.marginLeft = d.page.marginRight = 300;
    d.page.marginTop = d.page.marginBottom = 720;
    d.page.printWidth = kPrintWidth;
    d.sections.push_back(reportHeader(caption));
    d.sections.push_back(pageHeader(caption));
    d.sections.push_back(detail());
    d.sections.push_back(pageNumberFooter({kPrintWidth - 3000, 60, 3000, 240}, 9));
    d.sections.push_back(reportFooter(caption));
    return d;
}

engine::ReportDesign subDesign() {
    constexpr double size = 8;
    CaptionMaker caption(size);
    engine::ReportDesign d;
    d.name = "JobLaborSub";
    d.title = "Added Job Labor Details";
    d.page.printWidth = 8400;
    d.sections.push_back(
        engine::reportHeader("ReportHeader", 480,
                             {caption.bold({0, 0, 4600, 220}, "Added Job Labor Details").size(9),
                              caption.bold({0, 240, 4600, 200}, "Item Description"),
                              caption.bold({4700, 240, 1500, 200}, "Misc Hours").alignRight(),
                              caption.bold({6300, 240, 1800, 200}, "Fixed Amount").alignRight()}));
    d.sections.push_back(
        engine::detail("Detail", 220,
                       {engine::textBox("ItemName", {0, 10, 4600, 200}, "sItemName").size(size),
                        boundFigure("MiscHours", {4700, 10, 1500, 200}, size, "pHours", kHours),
                        boundFigure("FixedAmount", {6300, 10, 1800, 200}, size, "cRate", kHours)}));
    d.sections.push_back(engine::reportFooter("ReportFooter", 0, {}));
    return d;
}

} // namespace

// ---- JobLaborSub ----------------------------------------------------------------------------

JobLaborSub::JobLaborSub() : CostReport(subDesign(), {"", ""}) {
    onFormat("Detail", &JobLaborSub::detailFormat);
}

void JobLaborSub::reportStart() {
    openDataSource(data::sql::addedLaborItems(host::moduleState().requestJobId));
}

void JobLaborSub::detailFormat() {
    engine::TextBox& amount = textBox("FixedAmount");
    amount.setNumber(amount.value(), "$##,###.00");
}

// ---- FinalLaborAR ---------------------------------------------------------------------------

FinalLaborAR::FinalLaborAR() : CostReport(laborDesign(), kExportSuffixes) {
    onBeforePrint("Detail", &FinalLaborAR::detailBeforePrint);
    onFormat("PageFooter", [this] { pageFooterFormat(); });
    onFormat("ReportFooter", &FinalLaborAR::reportFooterFormat);
    onBeforePrint("ReportFooter", &FinalLaborAR::reportFooterBeforePrint);
}

void FinalLaborAR::reportStart() {
    m_grandTotal = 0;
    m_addedFixedAmount = 0;
    m_addedHours = 0;
    m_miscRate = 0;
    restoreDesignCaptions();
    const auto& state = host::moduleState();
    db::Connection& vendor = vendorConnection();
    multiplyOutLaborTable(vendor);
    openDataSource(data::sql::laborRows(state.requestTable, vendor.dialect()));
    readAddedLabor(vendor);
    showReportDateTime(*this);
    showHeading(*this, requestHeading(), kFirmHeading);
    label("lVendor").setCaption(state.vendorName);
}

void FinalLaborAR::multiplyOutLaborTable(db::Connection& vendor) {
    const std::string& table = host::moduleState().requestTable;
    auto rows = vendor.openRecordset(data::sql::reportTable(table, vendor.dialect()),
                                     CursorType::Static, LockType::Optimistic);
    // Every figure is checked before any row changes, so a table the host left incomplete is
    // refused whole instead of half multiplied.
    for (; !rows->eof(); rows->moveNext()) {
        const std::string where =
            "the labor table " + table + " (elevation " + textOrEmpty(*rows, "sElevName") + ")";
        requiredNumber(*rows, "iquantity", where, className());
        for (const char* column : kLaborFigures)
            requiredNumber(*rows, column, where, className());
    }
    std::optional<db::Transaction> transaction;
    if (!vendor.inTransaction())
        transaction.emplace(vendor);
    for (rows->moveFirst(); !rows->eof(); rows->moveNext()) {
        const double quantity = toDouble(rows->value("iquantity"));
        for (const char* column : kLaborFigures)
            rows->setValue(column, Variant(toDouble(rows->value(column)) * quantity));
        double total = 0;
        for (const char* column : kLaborDollars)
            total += toDouble(rows->value(column));
        rows->setValue("pelevtot", Variant(roundHalfEven(total, 2)));
        rows->update();
    }
    rows->close();
    if (transaction)
        transaction->commit();
}

void FinalLaborAR::readAddedLabor(db::Connection& vendor) {
    const std::string& jobId = host::moduleState().requestJobId;
    auto added = vendor.openRecordset(data::sql::addedLaborTotals(jobId));
    if (!added->eof()) {
        const Variant total = added->value("Total");
        const Variant hours = added->value("Hours");
        if (!total.isNull())
            m_addedFixedAmount = toDouble(total);
        if (!hours.isNull())
            m_addedHours = toSingle(hours);
    }
    added->close();
    auto rate = vendor.openRecordset(data::sql::miscLaborRate(jobId));
    if (!rate->eof())
        m_miscRate = toSingle(requiredValue(*rate, "cMiscRate", "JobMainLabor", className()));
    rate->close();
}

void FinalLaborAR::detailBeforePrint() {
    // The elevation total as printed, so the grand total adds up the figures on the page.
    const std::string& printed = textBox("Field10").text();
    const std::optional<double> total = numberFromText(printed);
    if (!total) {
        throw Error(errc::kTypeMismatch, className(),
                    "The elevation total \"" + printed + "\" is not a number.");
    }
    m_grandTotal = static_cast<float>(static_cast<double>(m_grandTotal) + *total);
}

void FinalLaborAR::reportFooterFormat() {
    subReport("SubReport1").setReport(std::make_unique<JobLaborSub>());
}

void FinalLaborAR::reportFooterBeforePrint() {
    const float hoursAtRate = m_addedHours * m_miscRate;
    const double addedLabor = static_cast<double>(hoursAtRate) + m_addedFixedAmount;
    m_grandTotal = static_cast<float>(static_cast<double>(m_grandTotal) + addedLabor);
    textBox("Field21").setNumber(addedLabor, kShortMoneyFormat);
    textBox("Field22").setNumber(m_grandTotal, kShortMoneyFormat);
}

} // namespace qr::reports
