#include "reports/cost/ar_markup2.hpp"

#include "data/statements.hpp"
#include "platform/core/convert.hpp"
#include "platform/host/module_state.hpp"

namespace qr::reports {

namespace {

using namespace cost;
using engine::ControlDesign;

constexpr double kSize = 10;
constexpr int kRow = 260;

// Totals at the right: caption, then the value right-aligned at the page's edge.
constexpr int kTotalsX = 5600;
constexpr int kTotalsValueX = 8400;
constexpr int kTotalsValueWidth = 2400;
constexpr int kPrintWidth = 10800;

constexpr int kMaterialY = 80;
constexpr int kLaborY = kMaterialY + kRow;
constexpr int kOutsideY = kLaborY + kRow;
constexpr int kLine5Y = kOutsideY + kRow + 30;
constexpr int kPreTaxY = kLine5Y + 50;
constexpr int kTaxY = kPreTaxY + kRow;
constexpr int kLine4Y = kTaxY + kRow + 30;
constexpr int kGrandY = kLine4Y + 50;
constexpr int kLine3Y = kGrandY + 420;
constexpr int kTextTop = kLine3Y + 100;
constexpr int kTextPitch = kRow + 140;
constexpr int kDetailHeight = kTextTop + 3 * kTextPitch;

std::vector<ControlDesign> detailControls(CaptionMaker& caption) {
    auto total = [&](int y, std::string text, const char* control) {
        return std::vector<ControlDesign>{
            caption({kTotalsX, y, 2700, kRow}, std::move(text)),
            figureLabel(control, {kTotalsValueX, y, kTotalsValueWidth, kRow}, kSize)};
    };
    auto price = [&](int y, std::string text) {
        return caption({0, y, 1900, kRow}, std::move(text));
    };
    auto priceBox = [](int y) { return page::Rect{1950, y, 1600, kRow}; };
    auto jobText = [&](int row, std::string text, const char* control, const char* column) {
        const int y = kTextTop + row * kTextPitch;
        return std::vector<ControlDesign>{
            caption.bold({0, y, 1400, kRow}, std::move(text)),
            engine::textBox(control, {1450, y, kPrintWidth - 1450, kRow}, column)
                .size(kSize)
                .grow()};
    };

    std::vector<ControlDesign> controls{
        // The price per square foot at the left.
        caption.bold({0, kMaterialY, 3550, kRow}, "Price per Square Foot"),
        price(kLaborY, "Total Perimeter Ft:"),
        boundFigure("Field26", priceBox(kLaborY), kSize, "pJobPerimeter", ""),
        price(kOutsideY, "Total Square Ft:"),
        boundFigure("Field27", priceBox(kOutsideY), kSize, "pJobArea", ""),
        price(kPreTaxY, "Price / Square Ft:"),
        figureLabel("lSellPerFt", priceBox(kPreTaxY), kSize).bold(),
        // The estimate's totals at the right.
        engine::line("Line5", kTotalsX, kLine5Y, kPrintWidth, kLine5Y),
        caption({kTotalsX, kTaxY, 1300, kRow}, "Sales Tax %"),
        figureLabel("lTaxPcnt", {kTotalsX + 1300, kTaxY, 800, kRow}, kSize, ""),
        figureLabel("lTaxDollars", {kTotalsValueX, kTaxY, kTotalsValueWidth, kRow}, kSize),
        engine::line("Line4", kTotalsX, kLine4Y, kPrintWidth, kLine4Y),
        caption.bold({kTotalsX, kGrandY, 2700, 320}, "Job Grand Total:").size(11),
        figureLabel("lGrandTotal", {kTotalsValueX, kGrandY, kTotalsValueWidth, 320}, 11).bold(),
        engine::line("Line3", 0, kLine3Y, kPrintWidth, kLine3Y),
    };
    for (auto group : {total(kMaterialY, "Total Material:", "lTotalMaterial"),
                       total(kLaborY, "Total Labor:", "lTotalLabor"),
                       total(kOutsideY, "Total Outside Costs:", "lTotalOutside"),
                       total(kPreTaxY, "Pre-Tax Total:", "lPreTaxTotal"),
                       jobText(0, "Sections Bid:", "Field1", "mSectionBid"),
                       jobText(1, "Exclusions:", "Field2", "mExclusions"),
                       jobText(2, "Notes:", "Field3", "mNotes")}) {
        for (auto& control : group)
            controls.push_back(std::move(control));
    }
    return controls;
}

engine::ReportDesign design() {
    CaptionMaker caption(kMarkupFontSize);
    engine::ReportDesign d;
    d.name = "ARMarkup2";
    d.title = "Markup Report without Cost Pricing";
    d.page.marginLeft = d.page.marginRight = 720;
    d.page.marginTop = d.page.marginBottom = 1080;
    d.page.printWidth = kPrintWidth;
    d.sections.push_back(markupPageHeader("Job Estimate", caption));
    caption.setSize(kSize);
    d.sections.push_back(engine::detail("Detail", kDetailHeight, detailControls(caption)));
    d.sections.push_back(pageNumberFooter({7800, 60, 3000, 240}, kMarkupFontSize));
    return d;
}

// The estimate's totals: the markups folded into the totals they belong to.
constexpr MarkupFigure kFigures[] = {
    {"lTotalMaterial", {"ptotmaterial", "ptotsur", "pmtrlmarkup"}},
    {"lTotalLabor", {"ptotlabor", "plabormarkup"}},
    {"lTotalOutside", {"ptotoutside", "poutsidemarkup"}},
    {"lPreTaxTotal", {"ptotbeforetax"}},
    {"lTaxDollars", {"psalestax"}},
    {"lGrandTotal", {"pgrandtot"}},
};

} // namespace

ARMarkup2::ARMarkup2() : MarkupReport(design(), kExportSuffixes) {
    onFormat("PageFooter", [this] { pageFooterFormat(); });
}

void ARMarkup2::reportStart() {
    restoreDesignCaptions();
    showJobAndParties();
    mergeFirmTextsIntoJob(readFirmTexts(masterConnection(), host::moduleState().requestUserId));
    // Read the job row again, so the exclusions and notes print as merged.
    dataControl().refresh();
    auto markup = openMarkupTable();
    showMarkupFigures(*markup, kFigures);
    showTaxAndPrice(*markup);
    markup->close();
}

void ARMarkup2::mergeFirmTextsIntoJob(const FirmTexts& firm) {
    const std::pair<const char*, const std::string&> texts[] = {{"mexclusions", firm.exclusions},
                                                                {"mnotes", firm.notes}};
    auto job = vendorConnection().openRecordset(data::sql::jobRow(host::moduleState().requestJobId),
                                                CursorType::Static, LockType::Optimistic);
    if (!job->eof()) {
        bool changed = false;
        for (const auto& [column, firmText] : texts) {
            if (auto merged = mergedFirmText(textOrEmpty(*job, column), firmText)) {
                job->setValue(column, Variant(std::move(*merged)));
                changed = true;
            }
        }
        if (changed)
            job->update();
    }
    job->close();
}

void ARMarkup2::showTaxAndPrice(const db::Recordset& markup) {
    const double taxRate =
        requiredNumber(*dataControl().recordset(), "pstocktaxrate", "the job row", className());
    label("lTaxPcnt").setCaption(decimalText(taxRate, true));

    const double area = jobArea();
    if (area > 0) {
        const float grandTotal = toSingle(Variant(markupFigure(markup, "pgrandtot")));
        label("lSellPerFt").setNumber(pricePerSquareFoot(grandTotal, area), kShortMoneyFormat);
    }
}

} // namespace qr::reports
