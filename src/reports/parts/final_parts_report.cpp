// The handlers the three final parts reports share, in the order the engine raises them.
#include "reports/parts/final_parts_report.hpp"

#include "platform/core/error.hpp"
#include "platform/core/text.hpp"
#include "platform/host/error_log.hpp"
#include "reports/common/page_footer.hpp"
#include "reports/parts/parts_layout.hpp"

namespace qr::reports {

namespace {

/// The field that holds the line's price: the unit or package price by the pricing, or always
/// the package price in the report without prices (which fills it but shows no price).
const char* priceField(FinalPartsLayout layout) {
    switch (layout) {
    case FinalPartsLayout::Landscape:
        return "UnitPrice";
    case FinalPartsLayout::Portrait:
        return "UnitOrPackagePrice";
    case FinalPartsLayout::NoPrices:
        break;
    }
    return "PackagePrice";
}

} // namespace

FinalPartsReport::FinalPartsReport(engine::ReportDesign design, FinalPartsLayout layout,
                                   ExportSuffixes suffixes)
    : Report(std::move(design)), m_layout(layout), m_suffixes(suffixes) {
    onFormat("PageFooter", [this] { formatPageNumberFooter(*this); });
}

const host::FinalPartsReportData& FinalPartsReport::data() const {
    return parts::reportData(*this, ReportData);
}

void FinalPartsReport::initialize() {
    for (const char* name :
         {"Quantity", "PartNumber", "PartType", "Description", "StockLength", "PackageQuantity",
          "PackagesToOrder", priceField(m_layout), "Multiplier", "TotalPrice"})
        fields().add(name);
}

// ---- Report start ---------------------------------------------------------------------------

void FinalPartsReport::reportStart() {
    host::runTrapped(className(), "ActiveReport_ReportStart", [this] {
        const host::FinalPartsReportData& report = data();
        parts::showPartsHeading(
            *this, report,
            {.user = "lUserName", .email = "lEmail", .fax = nullptr, .finish = "lColor"});
        showTitle();
        showPricingCaptions(report.PriceByUnit);
    });
}

void FinalPartsReport::showTitle() {
    if (UserDefaults == nullptr)
        throw Error::objectNotSet(className());
    // A title of blanks only keeps the stored one; a chosen title prints as the user typed it.
    const std::optional<std::string>& title = UserDefaults->FinalPartsReportTitle;
    if (title && !isBlank(*title, " "))
        label("Label1").setCaption(*title);
}

void FinalPartsReport::showPricingCaptions(bool priceByUnit) {
    switch (m_layout) {
    case FinalPartsLayout::Landscape:
        label("LineItemPriceLabel").setCaption(priceByUnit ? "Unit Price" : "Pkg Price");
        break;
    case FinalPartsLayout::Portrait:
        label("ByPackageSubheading")
            .setCaption(priceByUnit ? "(By Unit Quantity)" : "(By Package)");
        label("PackagesToOrderLabel")
            .setCaption(priceByUnit ? "Unit Quantity" : "Packages To Order");
        textBox("PackageQuantityField").setDataField(priceByUnit ? "Quantity" : "PackagesToOrder");
        label("PricePerPackageLabel").setCaption(priceByUnit ? "Unit Price" : "Pkg Price");
        break;
    case FinalPartsLayout::NoPrices:
        break;
    }
}

// ---- Rows -----------------------------------------------------------------------------------

void FinalPartsReport::fetchData(bool& eof) {
    const host::FinalPartsReportData& report = data();
    // The pricing is read afresh for every line, as the captions read it at the start.
    if (const host::FinalPartsItem* item = parts::nextRow(report.Items, m_rowIndex, eof))
        fillRow(*item, report.PriceByUnit);
}

void FinalPartsReport::fillRow(const host::FinalPartsItem& item, bool priceByUnit) {
    const auto set = [this](const char* field, Variant value) {
        fields()[field].setValue(std::move(value));
    };
    set("Quantity", item.Quantity);
    set("PartNumber", item.PartNumber);
    set("PartType", item.Part.PartType);
    set("Description", item.Part.Description);
    set("StockLength", item.StockLength);
    // A part that is not sold in packages counts as a package of one.
    set("PackageQuantity",
        item.Part.PackageQuantity > 0 ? Variant(item.PackageQuantity) : Variant(std::int16_t{1}));
    set("PackagesToOrder", item.PackagesToOrder);
    if (m_layout == FinalPartsLayout::NoPrices) {
        set("PackagePrice", item.PackagePrice);
        set("Multiplier", item.Part.Multiplier);
        set("TotalPrice", item.Total);
        return;
    }
    set(priceField(m_layout), priceByUnit ? item.UnitPrice : item.PackagePrice);
    set("Multiplier", item.Part.Multiplier);
    // Priced by unit, the line's total is the report's own (whatever the host's Total holds),
    // multiplied in this order and not rounded.
    set("TotalPrice",
        priceByUnit ? item.Quantity * item.UnitPrice * item.Part.Multiplier : item.Total);
    if (m_layout == FinalPartsLayout::Landscape)
        label("NoteUnderTitleLabel").setVisible(priceByUnit);
}

// ---- Report end -----------------------------------------------------------------------------

void FinalPartsReport::reportEnd() {
    host::runTrapped(className(), "ActiveReport_ReportEnd", [this] {
        exportAtReportEnd(pages(), data().JobName, UserWantsExcelExport, UserWantsPdfExport,
                          m_suffixes);
    });
}

} // namespace qr::reports
