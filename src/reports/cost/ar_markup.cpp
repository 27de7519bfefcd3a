#include "reports/cost/ar_markup.hpp"

#include "data/cost_categories.hpp"
#include "platform/core/convert.hpp"
#include "platform/host/module_state.hpp"
#include "reports/cost/firm_texts.hpp"

namespace qr::reports {

namespace {

using namespace cost;
using engine::ControlDesign;

constexpr double kSize = kMarkupFontSize;
constexpr int kRow = kMarkupRow;
constexpr int kColumnWidth = 3500;
constexpr int kValueOffset = 1950; // value boxes end at the column's right edge
constexpr int kValueWidth = kColumnWidth - kValueOffset;
constexpr int kMaterialX = 0;
constexpr int kLaborX = 3650;
constexpr int kMarkupX = 7300;
constexpr int kTop = 80;

constexpr int rowY(int row) {
    return kTop + row * kRow;
}

// Under the figure columns: the prices per square foot, then the job's texts across the page.
constexpr int kPriceTop = rowY(18);
constexpr int kRuleY = kPriceTop + kRow + 30;
constexpr int kPriceRow = kRuleY + 60;
constexpr int kTextTop = kPriceRow + 2 * kRow + 120;
constexpr int kTextPitch = kRow + 140;
constexpr int kDetailHeight = kTextTop + 3 * kTextPitch;

// The layout of one figure column: captions at the left, values right-aligned at its edge.
struct FigureColumn {
    CaptionMaker& caption;
    int x;

    ControlDesign heading(int row, std::string text) const {
        return caption.bold({x, rowY(row), kColumnWidth, kRow}, std::move(text));
    }
    ControlDesign name(int row, std::string text) const {
        return caption({x, rowY(row), kValueOffset - 50, kRow}, std::move(text));
    }
    page::Rect valueBox(int row) const { return {x + kValueOffset, rowY(row), kValueWidth, kRow}; }
    ControlDesign figure(const char* control, int row) const {
        return figureLabel(control, valueBox(row), kSize);
    }
    ControlDesign computed(const char* control, int row) const {
        return engine::textBox(control, valueBox(row)).size(kSize).alignRight();
    }
    ControlDesign bound(const char* control, int row, const char* column,
                        std::string_view format = {}) const {
        return boundFigure(control, valueBox(row), kSize, column, std::string(format));
    }
    // A surcharge row: caption, the rate with its "%", and the surcharge amount.
    std::vector<ControlDesign> surcharge(int row, std::string text, const char* rateControl,
                                         const char* rateColumn, const char* amount) const {
        return {caption({x, rowY(row), 1400, kRow}, std::move(text)),
                boundFigure(rateControl, {x + 1400, rowY(row), 450, kRow}, kSize, rateColumn, ""),
                caption({x + 1870, rowY(row), 150, kRow}, "%"),
                figureLabel(amount, {x + 2050, rowY(row), kColumnWidth - 2050, kRow}, kSize)};
    }
};

void append(std::vector<ControlDesign>& to, std::vector<ControlDesign> more) {
    for (auto& control : more)
        to.push_back(std::move(control));
}

// The material column: the category totals with overrides, surcharges, the material total.
std::vector<ControlDesign> materialColumn(CaptionMaker& caption) {
    const FigureColumn material{caption, kMaterialX};
    std::vector<ControlDesign> controls{
        material.heading(0, "Material"),
        material.name(1, "Stock Material:"),
        material.computed("StockBaseCostField", 1),
        material.name(2, "Misc:"),
        material.computed("MiscBaseCostField", 2),
        material.name(3, "Doors:"),
        material.computed("DoorBaseCostField", 3),
        material.name(4, "Added Material:"),
        material.bound("Field21", 4, "cAddToMaterial", kBoundMoneyFormat),
        material.name(5, "Total Metal:"),
        material.figure("lTotalMetal", 5).bold(),
    };
    append(controls, material.surcharge(6, "Metal Surcharge", "Field32", "pMetalSurchargeRate",
                                        "lMetalSurcharge"));
    append(controls, {material.name(7, "Total w/Surcharge"), material.figure("lTotalMetalWSur", 7),
                      material.name(8, "Glass:"),
                      material.bound("GlassBaseCostField", 8, "cGlassTotal", kBoundMoneyFormat)});
    append(controls, material.surcharge(9, "Glass Surcharge", "Field33", "pGlassSurchargeRate",
                                        "lGlassSurcharge"));
    append(controls,
           {material.name(10, "Total w/Surcharge"), material.figure("lTotalGlassWSur", 10),
            material.name(11, "Total Material:"), material.figure("lTotalMaterial", 11).bold()});
    return controls;
}

// The middle column: labor, outside costs and the tax rates.
std::vector<ControlDesign> laborColumn(CaptionMaker& caption) {
    const FigureColumn labor{caption, kLaborX};
    return {
        labor.heading(0, "Labor"),
        labor.name(1, "Job Labor:"),
        labor.computed("LaborBaseCostField", 1),
        labor.name(2, "Add to Labor:"),
        labor.bound("Field18", 2, "cAddToLabor", kBoundMoneyFormat),
        labor.name(3, "Total Labor:"),
        labor.figure("lTotalLabor", 3).bold(),
        labor.heading(5, "Outside Costs"),
        labor.name(6, "Subcontractor Costs:"),
        labor.bound("Field23", 6, "cSubcontractorCosts", kBoundMoneyFormat),
        labor.name(7, "Equipment Rental:"),
        labor.bound("Field24", 7, "cRentalCosts", kBoundMoneyFormat),
        labor.name(8, "Miscellaneous:"),
        labor.bound("Field34", 8, "cOtherCosts", kBoundMoneyFormat),
        labor.name(9, "Total Outside:"),
        labor.figure("lTotalOutside", 9).bold(),
        labor.heading(11, "Tax"),
        labor.name(12, "Metal and Misc Tax %"),
        labor.bound("Field39", 12, "pStockTaxRate"),
        labor.name(13, "Glass Tax %"),
        labor.bound("Field42", 13, "pGlassTaxRate"),
        labor.name(14, "Outside Tax %"),
        labor.bound("Field43", 14, "pOtherCostsTaxRate"),
        labor.name(15, "Labor Tax %"),
        labor.bound("Field44", 15, "pLaborTaxRate"),
        labor.name(16, "Surcharge Tax %"),
        labor.bound("Field45", 16, "pSurchargeTaxRate"),
    };
}

// The right column: the markup rates, then the host's calculated totals down to the grand total.
std::vector<ControlDesign> markupColumn(CaptionMaker& caption) {
    const FigureColumn markup{caption, kMarkupX};
    return {
        markup.heading(0, "Markup"),
        markup.name(1, "Metal and Misc %"),
        markup.bound("Field28", 1, "pStockMarkupRate"),
        markup.name(2, "Glass Markup %"),
        markup.bound("Field36", 2, "pGlassMarkupRate"),
        markup.name(3, "Other Material  %"),
        markup.bound("Field37", 3, "pOtherMarkupRate"),
        markup.name(4, "Labor Markup %"),
        markup.bound("Field38", 4, "pLaborMarkupRate"),
        markup.heading(6, "Calculated Totals"),
        markup.name(7, "Total Material:"),
        markup.figure("lTotMaterialAfterSurcharges", 7),
        markup.name(8, "Material Markup:"),
        markup.figure("lMaterialMarkup", 8),
        markup.name(9, "Total Ouside Costs:"),
        markup.figure("lTotOutside", 9),
        markup.name(10, "Outside Markup:"),
        markup.figure("lOutsideMarkup", 10),
        markup.name(11, "Total Labor:"),
        markup.figure("lTotLabor", 11),
        markup.name(12, "Labor Markup:"),
        markup.figure("lLaborMarkup", 12),
        markup.name(13, "Markup Subtotal:"),
        markup.figure("lMarkupSubtotal", 13),
        markup.name(14, "Pre-Tax Total:"),
        markup.figure("lPreTaxTotal", 14),
        markup.name(15, "Sales Tax:"),
        markup.figure("lTaxDollars", 15),
        caption.bold({kMarkupX, rowY(16) + 60, kValueOffset - 50, 300}, "Job Grand Total:")
            .size(10),
        figureLabel("lGrandTotal",
                    {kMarkupX + kValueOffset - 300, rowY(16) + 60, kValueWidth + 300, 300}, 10.5)
            .bold(),
    };
}

// Under the columns: the prices per square foot, then the job's texts across the page, which
// grow with their text.
std::vector<ControlDesign> pricesAndTexts(CaptionMaker& caption) {
    auto priceName = [&](int x, int row, std::string text) {
        return caption({x, kPriceRow + row * kRow, kValueOffset - 50, kRow}, std::move(text));
    };
    auto priceBox = [&](int x, int row) {
        return page::Rect{x + kValueOffset, kPriceRow + row * kRow, kValueWidth, kRow};
    };
    auto jobText = [&](int row, std::string text, const char* control, const char* column) {
        return std::vector<ControlDesign>{
            caption.bold({0, kTextTop + row * kTextPitch, 1250, kRow}, std::move(text)),
            engine::textBox(control, {1300, kTextTop + row * kTextPitch, 9500, kRow}, column)
                .size(kSize)
                .grow()};
    };
    std::vector<ControlDesign> controls{
        caption.bold({0, kPriceTop, 4000, kRow}, "Price per Square Foot"),
        engine::line("Line3", 0, kRuleY, 10800, kRuleY),
        priceName(kMaterialX, 0, "Total Perimeter Ft:"),
        boundFigure("Field26", priceBox(kMaterialX, 0), kSize, "pJobPerimeter", ""),
        priceName(kLaborX, 0, "Total Square Ft:"),
        boundFigure("Field27", priceBox(kLaborX, 0), kSize, "pJobArea", ""),
        priceName(kMaterialX, 1, "Cost / Square Ft:"),
        figureLabel("lCostPerFt", priceBox(kMaterialX, 1), kSize).bold(),
        priceName(kLaborX, 1, "Sell / Square Ft:"),
        figureLabel("lSellPerFt", priceBox(kLaborX, 1), kSize).bold(),
    };
    append(controls, jobText(0, "Sections Bid:", "Field1", "mSectionBid"));
    append(controls, jobText(1, "Exclusions:", "Field2", "mExclusions"));
    append(controls, jobText(2, "Notes:", "Field3", "mNotes"));
    return controls;
}

std::vector<ControlDesign> detailControls(CaptionMaker& caption) {
    std::vector<ControlDesign> controls = materialColumn(caption);
    append(controls, laborColumn(caption));
    append(controls, markupColumn(caption));
    append(controls, pricesAndTexts(caption));
    return controls;
}

engine::ReportDesign design() {
    CaptionMaker caption(kSize);
    engine::ReportDesign d;
    d.name = "ARMarkup";
    d.title = "Markup Report with Cost Pricing";
    d.page.marginLeft = d.page.marginRight = d.page.marginTop = d.page.marginBottom = 720;
    d.page.printWidth = page::kLetterWidth - 2 * 720;
    d.sections.push_back(markupPageHeader("Markup Report", caption));
    d.sections.push_back(engine::detail("Detail", kDetailHeight, detailControls(caption)));
    d.sections.push_back(pageNumberFooter({7800, 60, 3000, 240}, kSize));
    return d;
}

// The markup table's figures and the labels that show them.
constexpr MarkupFigure kFigures[] = {
    {"lTotalMetal", {"ptotalmetal"}},
    {"lTotalLabor", {"ptotlabor"}},
    {"lTotLabor", {"ptotlabor"}},
    {"lTotalOutside", {"ptotoutside"}},
    {"lTotOutside", {"ptotoutside"}},
    {"lMetalSurcharge", {"pmetalsur"}},
    {"lTotalMetalWSur", {"pmetalplussur"}},
    {"lGlassSurcharge", {"pglasssur"}},
    {"lTotalGlassWSur", {"pglassplussur"}},
    {"lTotalMaterial", {"ptotmaterial", "pmetalsur", "pglasssur"}},
    {"lTotMaterialAfterSurcharges", {"ptotmaterial", "pmetalsur", "pglasssur"}},
    {"lMaterialMarkup", {"pmtrlmarkup"}},
    {"lLaborMarkup", {"plabormarkup"}},
    {"lOutsideMarkup", {"poutsidemarkup"}},
    {"lMarkupSubtotal", {"ptotalmarkup"}},
    {"lPreTaxTotal", {"ptotbeforetax"}},
    {"lTaxDollars", {"psalestax"}},
    {"lGrandTotal", {"pgrandtot"}},
};

} // namespace

ARMarkup::ARMarkup() : MarkupReport(design(), kExportSuffixes) {
    onFormat("PageFooter", [this] { pageFooterFormat(); });
}

void ARMarkup::reportStart() {
    restoreDesignCaptions();
    showJobAndParties();

    // The exclusions and notes as the customer's estimate prints them (the firm's standard
    // texts merged in); the job row itself is left alone here.
    const FirmTexts firm = readFirmTexts(masterConnection(), host::moduleState().requestUserId);
    const std::string exclusions = textOrEmpty(*dataControl().recordset(), "mexclusions");
    const std::string notes = textOrEmpty(*dataControl().recordset(), "mnotes");
    m_exclusions = mergedFirmText(exclusions, firm.exclusions).value_or(exclusions);
    m_notes = mergedFirmText(notes, firm.notes).value_or(notes);

    dataControl().refresh();
    auto markup = openMarkupTable();
    showMarkupFigures(*markup, kFigures);
    showPricesPerSquareFoot(*markup);
    markup->close();
}

void ARMarkup::showPricesPerSquareFoot(const db::Recordset& markup) {
    const double area = jobArea();
    if (!(area > 0))
        return;
    const double cost = markupFigure(markup, "ptotmaterial") + markupFigure(markup, "ptotlabor") +
                        markupFigure(markup, "ptotoutside") + markupFigure(markup, "pmetalsur") +
                        markupFigure(markup, "pglasssur");
    label("lCostPerFt").setNumber(pricePerSquareFoot(cost, area), kShortMoneyFormat);
    // The sell price goes through the grand total's text, as the estimate's figures do.
    const double grandTotal = toDouble(Variant(toText(Variant(markupFigure(markup, "pgrandtot")))));
    label("lSellPerFt").setNumber(pricePerSquareFoot(grandTotal, area), kShortMoneyFormat);
}

void ARMarkup::fetchData(bool&) {
    const data::CategoryTotals totals =
        data::categoryTotals([this](std::string_view column) { return fields()[column].value(); });
    textBox("StockBaseCostField").setNumber(totals.metal, kSystemCurrency);
    textBox("DoorBaseCostField").setNumber(totals.doors, kSystemCurrency);
    textBox("MiscBaseCostField").setNumber(totals.miscParts, kSystemCurrency);
    textBox("GlassBaseCostField").setNumber(totals.glass, kSystemCurrency);
    textBox("LaborBaseCostField").setNumber(totals.labor, kSystemCurrency);
    textBox("Field2").setText(m_exclusions);
    textBox("Field3").setText(m_notes);
}

} // namespace qr::reports
