#include "reports/parts/lineal_report.hpp"

#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/core/number_format.hpp"
#include "platform/host/error_log.hpp"
#include "reports/common/page_footer.hpp"
#include "reports/parts/parts_layout.hpp"

namespace qr::reports {

namespace {

// ---- Design ---------------------------------------------------------------------------------

using engine::ControlDesign;
using page::Align;
using parts::Column;

constexpr int kWidth = 10800;
constexpr const char* kTotalFormat = "$###,###,##0.00";

const std::vector<Column>& columns() {
    static const std::vector<Column> kColumns{
        {"Field1", "Quantity", "", 0, 800, Align::Right, {"Units"}},
        {"Field2", "PartNumber", "", 950, 1800, Align::Left, {"Part #"}},
        parts::growing({"Field3", "Description", "", 2850, 3500, Align::Left, {"Description"}}),
        {"Field4", "FromTable", "", 6450, 900, Align::Left, {"Type", "Sort"}},
        {"Field5", "UnitPrice", "$#,##0.00", 7450, 1000, Align::Right, {"Unit Price"}},
        {"Field6", "Multiplier", "#,##0.00##", 8550, 900, Align::Right, {"Multiplier"}},
        {"Label55", "", "", 9550, 1250, Align::Right, {"Total"}},
    };
    return kColumns;
}

engine::SectionDesign reportHeader(CaptionMaker& captions) {
    std::vector<ControlDesign> controls;
    const int headingHeight = parts::addHeadingBlock(
        controls,
        {.title = "Lineal Final Parts Report",
         .width = kWidth,
         .left = {{"Vendor:", "lVendor"}, {"Job  Name:", "lJobName"}, {"Finish Color:", "lColor"}},
         .right = {{"Phone:", "lPhone"}, {"Fax:", "lFax"}}},
        captions);
    parts::addColumnCaptions(controls, columns(), headingHeight, captions);
    const int rule = headingHeight + parts::kCaptionRows * parts::kCaptionRowHeight + 40;
    controls.push_back(engine::line("Line1", 0, rule, kWidth, rule).weight(20));
    return engine::reportHeader("ReportHeader", rule + 80, std::move(controls));
}

engine::SectionDesign reportFooter() {
    const Column& total = columns().back();
    const double size = parts::kHeadingTextSize;
    return engine::reportFooter(
        "ReportFooter", 700,
        {engine::line("Line2", 0, 40, kWidth, 40).weight(20),
         engine::label("Label52", {0, 120, total.x - 120, 240}, "Parts Grand Total")
             .bold()
             .alignRight()
             .size(size),
         engine::label("Label56", {total.x, 120, total.width, 240}, "")
             .bold()
             .alignRight()
             .size(size),
         engine::label("Label51", {0, 420, 6000, 240}, "Calc Method is by Lineal Foot")
             .size(size)});
}

engine::ReportDesign design() {
    CaptionMaker captions(parts::kHeadingTextSize);
    engine::ReportDesign d{"FinalPartsLineal",
                           "Final Parts Recap Report",
                           {.marginLeft = 720,
                            .marginTop = 720,
                            .marginRight = 720,
                            .marginBottom = 1080,
                            .printWidth = kWidth},
                           {}};
    d.sections = {
        reportHeader(captions),   engine::pageHeader("PageHeader", 0, {}),
        parts::lineOf(columns()), parts::partsPageFooter(kWidth),
        reportFooter(),
    };
    return d;
}

/// The number a printed text stands for, read as the locale reads numbers ("$1,250.50" too);
/// a text that is none is a type mismatch.
double printedNumber(const std::string& text, const std::string& report) {
    const std::optional<double> number = numberFromText(text);
    if (!number)
        throw Error::typeMismatch(report);
    return *number;
}

} // namespace

// ---- Handlers, in the order the engine raises them ------------------------------------------

FinalPartsLineal::FinalPartsLineal() : Report(design()) {
    onFormat("Detail", &FinalPartsLineal::detailFormat);
    onFormat("PageFooter", [this] { formatPageNumberFooter(*this); });
    onFormat("ReportFooter", &FinalPartsLineal::reportFooterFormat);
}

const host::LinealReportData& FinalPartsLineal::data() const {
    return parts::reportData(*this, ReportData);
}

void FinalPartsLineal::initialize() {
    for (const char* name :
         {"Quantity", "PartNumber", "Description", "FromTable", "UnitPrice", "Multiplier"})
        fields().add(name);
}

void FinalPartsLineal::reportStart() {
    host::runTrapped(className(), "ActiveReport_ReportStart",
                     [this] { parts::showPartsHeading(*this, data(), {.finish = "lColor"}); });
}

void FinalPartsLineal::fetchData(bool& eof) {
    const host::LinealItem* row = parts::nextRow(data().Items, m_rowIndex, eof);
    if (row == nullptr)
        return;
    const host::LinealItem& item = *row;
    fields()["Quantity"].setValue(item.Quantity);
    fields()["PartNumber"].setValue(item.PartNumber);
    fields()["Description"].setValue(item.Description);
    fields()["FromTable"].setValue(item.FromTable);
    fields()["UnitPrice"].setValue(item.PricePerUnit);
    fields()["Multiplier"].setValue(item.Multiplier);
}

void FinalPartsLineal::detailFormat() {
    host::runTrapped(className(), "Detail_Format", [this] {
        // The line total comes from what the line prints, converted back to numbers; a text
        // that is not a number leaves the grand total and the total caption as they were.
        const double quantity = printedNumber(textBox("Field1").text(), className());
        const double unitPrice = printedNumber(textBox("Field5").text(), className());
        const double multiplier = printedNumber(textBox("Field6").text(), className());
        const double total = unitPrice * quantity * multiplier;
        m_grandTotal += roundHalfEven(total, 2);
        label("Label55").setNumber(total, kTotalFormat);
    });
}

void FinalPartsLineal::reportFooterFormat() {
    label("Label56").setNumber(m_grandTotal, kTotalFormat);
}

void FinalPartsLineal::reportEnd() {
    host::runTrapped(className(), "ActiveReport_ReportEnd", [this] {
        exportAtReportEnd(pages(), data().JobName, UserWantsExcelExport, UserWantsPdfExport,
                          kExportSuffixes);
    });
}

} // namespace qr::reports
