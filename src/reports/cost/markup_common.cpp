#include "reports/cost/markup_common.hpp"

#include "data/statements.hpp"
#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/host/module_state.hpp"

namespace qr::reports::cost {

namespace {

using engine::ControlDesign;
using engine::textBox;

constexpr double kSize = kMarkupFontSize;
constexpr int kRow = kMarkupRow;

// Left block: captions and values; right block: the vendor and the firm.
constexpr int kLeftValueX = 1250;
constexpr int kLeftValueWidth = 4300;
constexpr int kRightX = 5900;
constexpr int kRightValueX = 6650;
constexpr int kRightValueWidth = 4150;
constexpr int kPrintWidth = 10800;

constexpr int kBlockTop = 560;
constexpr int kLine1Y = kBlockTop + 10 * kRow + 60;
constexpr int kArchitectTop = kLine1Y + 80;
constexpr int kLine2Y = kArchitectTop + 4 * kRow + 60;

int rowY(int row) {
    return kBlockTop + row * kRow;
}

ControlDesign leftValue(std::string name, int row) {
    return textLabel(std::move(name), {kLeftValueX, rowY(row), kLeftValueWidth, kRow}, kSize);
}

ControlDesign rightValue(std::string name, int row) {
    return textLabel(std::move(name), {kRightValueX, rowY(row), kRightValueWidth, kRow}, kSize);
}

ControlDesign architectValue(std::string name, int x, int width, int row) {
    return textLabel(std::move(name), {x, kArchitectTop + row * kRow, width, kRow}, kSize);
}

} // namespace

engine::SectionDesign markupPageHeader(std::string title, CaptionMaker& caption) {
    auto left = [&](int row, std::string text) {
        return caption({0, rowY(row), kLeftValueX - 50, kRow}, std::move(text));
    };
    auto right = [&](int row, std::string text) {
        return caption({kRightX, rowY(row), kRightValueX - kRightX - 50, kRow}, std::move(text));
    };
    auto architect = [&](int x, int row, std::string text) {
        return caption({x, kArchitectTop + row * kRow, 1150, kRow}, std::move(text));
    };
    const int fullWidth = kPrintWidth - kRightX;
    return engine::pageHeader(
        "PageHeader", kLine2Y + 120,
        {
            caption.bold({0, 0, 5000, 420}, std::move(title)).size(16),
            textLabel("RptDate", {8400, 0, 2400, kRow}, kSize).alignRight(),
            textLabel("RptTime", {8400, kRow, 2400, kRow}, kSize).alignRight(),
            // The job and its contractor.
            left(0, "Bid Date:"),
            textBox("Field9", {kLeftValueX, rowY(0), kLeftValueWidth, kRow}, "dBidDate")
                .size(kSize),
            left(1, "Estimator:"),
            textBox("sEstimator", {kLeftValueX, rowY(1), kLeftValueWidth, kRow}, "sEstimator")
                .size(kSize),
            left(2, "Job  Name:"),
            leftValue("lJobName", 2).bold(),
            left(3, "Contractor:"),
            leftValue("Contractor", 3),
            left(4, "Job Contact:"),
            leftValue("JobContact", 4),
            left(5, "Phone:"),
            leftValue("JobPhone", 5),
            left(6, "Fax:"),
            leftValue("JobFax", 6),
            left(7, "Address1:"),
            leftValue("JobAddr1", 7),
            left(8, "Address2:"),
            leftValue("JobAddr2", 8),
            left(9, "Address3:"),
            leftValue("JobAddr3", 9),
            // The vendor and the firm that prepares the bid.
            right(0, "Vendor:"),
            rightValue("lVendor", 0),
            textLabel("lGlassfirm", {kRightX, rowY(1), fullWidth, kRow}, kSize).bold(),
            textLabel("lFirmAddr1", {kRightX, rowY(2), fullWidth, kRow}, kSize),
            textLabel("lFirmAddr2", {kRightX, rowY(3), fullWidth, kRow}, kSize),
            textLabel("lFirmAddr3", {kRightX, rowY(4), fullWidth, kRow}, kSize),
            right(5, "Phone:"),
            rightValue("lPhone", 5),
            right(6, "Fax:"),
            rightValue("lFax", 6),
            textLabel("lFirmEmail", {kRightX, rowY(7), fullWidth, kRow}, kSize),
            textLabel("lFirmWebSite", {kRightX, rowY(8), fullWidth, kRow}, kSize),
            textLabel("lFirmLicense", {kRightX, rowY(9), fullWidth, kRow}, kSize),
            engine::line("Line1", 0, kLine1Y, kPrintWidth, kLine1Y),
            // The architect.
            architect(0, 0, "Architect:"),
            architectValue("Architect", kLeftValueX, kLeftValueWidth, 0),
            architect(0, 1, "Contact:"),
            architectValue("ArchName", kLeftValueX, kLeftValueWidth, 1),
            architect(0, 2, "Phone:"),
            architectValue("ArchPhone", kLeftValueX, kLeftValueWidth, 2),
            architect(0, 3, "Fax:"),
            architectValue("ArchFax", kLeftValueX, kLeftValueWidth, 3),
            architect(kRightX, 0, "Addr1:"),
            architectValue("ArchAddr1", kRightValueX, kRightValueWidth, 0),
            architect(kRightX, 1, "Addr2:"),
            architectValue("ArchAddr2", kRightValueX, kRightValueWidth, 1),
            architect(kRightX, 2, "Addr3:"),
            architectValue("ArchAddr3", kRightValueX, kRightValueWidth, 2),
            engine::line("Line2", 0, kLine2Y, kPrintWidth, kLine2Y),
        });
}

void MarkupReport::showJobAndParties() {
    const auto& state = host::moduleState();
    openDataSource(data::sql::jobRow(state.requestJobId));
    showReportDateTime(*this);
    label("lJobName").setCaption(state.currentJobName);
    label("lVendor").setCaption(state.vendorName);
    showFirm();

    RowCursor* job = dataControl().recordset();
    if (job->eof()) {
        throw Error(3021, className(),
                    "There is no job " + state.requestJobId + " in JobSummary to print.");
    }
    const Variant contractorId = job->value("ContractorId");
    // The architect id is taken as a 16-bit integer, as the job screens store it.
    const std::int16_t architectId = toInteger(job->value("ArchitectId"));
    showCustomer(
        data::sql::customer(contractorId, "contractor id"),
        {"Contractor", "JobContact", "JobPhone", "JobFax", "JobAddr1", "JobAddr2", "JobAddr3"});
    showCustomer(
        data::sql::customer(Variant(architectId), "architect id"),
        {"Architect", "ArchName", "ArchPhone", "ArchFax", "ArchAddr1", "ArchAddr2", "ArchAddr3"});
}

void MarkupReport::showFirm() {
    const auto& state = host::moduleState();
    auto firm = masterConnection().openRecordset(data::sql::company());
    if (!firm->eof()) {
        auto text = [&](std::string_view column) {
            return requiredText(*firm, column, "the Company row", className());
        };
        label("lGlassfirm").setCaption(state.firmName);
        label("lFirmAddr1").setCaption(text("saddress1"));
        label("lFirmAddr2").setCaption(text("saddress2"));
        label("lFirmAddr3").setCaption(text("saddress3"));
        label("lPhone").setCaption(state.firmPhone);
        label("lFax").setCaption(state.firmFax);
        label("lFirmEmail").setCaption(text("sEmail"));
        label("lFirmWebSite").setCaption(text("sWebAddress"));
        label("lFirmLicense").setCaption("License #" + text("sContractorLic"));
    }
    firm->close();
}

void MarkupReport::showCustomer(const std::string& statement, const PartyControls& controls) {
    static constexpr std::array<const char*, 7> kColumns{
        "sCompany", "sContact", "sPhone", "sFax", "sAddress1", "sAddress2", "sAddress3"};
    auto customer = masterConnection().openRecordset(statement);
    if (!customer->eof()) {
        for (std::size_t i = 0; i < kColumns.size(); ++i)
            label(controls[i]).setCaption(textOrEmpty(*customer, kColumns[i]));
    }
    customer->close();
}

std::unique_ptr<db::Recordset> MarkupReport::openMarkupTable() {
    const auto& state = host::moduleState();
    db::Connection& vendor = vendorConnection();
    auto markup =
        vendor.openRecordset(data::sql::reportTable(state.requestTable, vendor.dialect()));
    if (markup->eof()) {
        throw Error(3021, className(),
                    "The markup table " + state.requestTable + " holds no figures to print.");
    }
    return markup;
}

double MarkupReport::markupFigure(const db::Recordset& markup, std::string_view column) const {
    return requiredNumber(markup, column, "the markup table " + host::moduleState().requestTable,
                          className());
}

void MarkupReport::showMarkupFigures(const db::Recordset& markup,
                                     std::span<const MarkupFigure> figures) {
    for (const MarkupFigure& figure : figures) {
        double sum = 0;
        for (std::string_view column : figure.columns) {
            if (!column.empty())
                sum += markupFigure(markup, column);
        }
        label(figure.control).setNumber(sum, kMoneyFormat);
    }
}

double MarkupReport::jobArea() {
    const Variant area = jobValue("pjobarea");
    return area.isNull() ? 0.0 : toDouble(area);
}

Variant MarkupReport::jobValue(std::string_view column) {
    return dataControl().recordset()->value(column);
}

} // namespace qr::reports::cost
