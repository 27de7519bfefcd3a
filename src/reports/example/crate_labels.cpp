#include "reports/example/crate_labels.hpp"

#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/core/number_format.hpp"
#include "reports/common/design_helpers.hpp"
#include "reports/common/heading.hpp"
#include "reports/common/page_footer.hpp"

namespace qr::reports {

namespace {

// ---- Design ---------------------------------------------------------------------------------

constexpr int kWidth = 11520; // 8 inches of print width
constexpr double kSize = 9;
// A crate label: 2 5/8 x 1 inch, three across with 1/8 inch between them.
constexpr int kLabelWidth = 3780;
constexpr int kLabelHeight = 1440;
constexpr int kLabelGap = 90;

engine::ReportDesign design() {
    CaptionMaker caption(kSize);
    std::vector<engine::ControlDesign> heading = {
        caption.bold({0, 0, 6000, 360}, "Crate Labels").size(14),
        textLabel("lGlassfirm", {0, 400, 6000, 240}, kSize),
        caption({0, 660, 1000, 240}, "Job Name:"),
        textLabel("lJobName", {1000, 660, 5000, 240}, kSize).bold(),
    };
    for (auto& c : dateTimeLabels({kWidth - 2400, 0, 2400, 240}, kSize))
        heading.push_back(c);

    engine::ReportDesign d{"ExampleCrateLabels",
                           "Crate Labels",
                           engine::PageSettings{.marginLeft = 360,
                                                .marginTop = 720,
                                                .marginRight = 360,
                                                .marginBottom = 720,
                                                .printWidth = kWidth},
                           {}};
    d.sections = {
        engine::reportHeader("ReportHeader", 1000, std::move(heading)),
        engine::groupHeader("ghSite", "Site", 320,
                            {engine::textBox("txtSite", {0, 40, 6000, 260}, "Site").bold()}),
        engine::groupHeader(
            "ghElevation", "Elevation", 280,
            {engine::textBox("txtElevation", {360, 20, 6000, 240}, "Elevation").size(kSize)}),
        engine::detail(
            "Detail", kLabelHeight,
            {engine::shape("shpLabel", {0, 0, kLabelWidth, kLabelHeight - 60}),
             engine::textBox("txtCrate", {90, 60, kLabelWidth - 180, 300}, "CrateNumber")
                 .bold()
                 .size(12),
             textLabel("lLites", {90, 420, kLabelWidth - 180, 240}, kSize),
             textLabel("lWeight", {90, 680, kLabelWidth - 180, 240}, kSize),
             engine::textBox("txtWhere", {90, 940, kLabelWidth - 180, 240}, "Elevation").size(8)})
            .columns(3, engine::ColumnDirection::AcrossThenDown, kLabelWidth, kLabelGap),
        engine::groupFooter("gfElevation", "ghElevation", 300,
                            {caption.right({360, 30, 4000, 240}, "Lites on this elevation:"),
                             figureLabel("lElevationLites", {4400, 30, 1200, 240}, kSize)}),
        engine::groupFooter("gfSite", "ghSite", 360,
                            {caption.bold({0, 60, 4360, 240}, "Site weight (lb):").alignRight(),
                             figureLabel("lSiteWeight", {4400, 60, 1200, 240}, kSize).bold()}),
        pageNumberFooter({kWidth - 3000, 60, 3000, 240}, kSize),
    };
    return d;
}

constexpr const char* kWeightFormat = "#,##0.0";

} // namespace

// ---- Handlers, in the order the engine raises them ------------------------------------------

ExampleCrateLabels::ExampleCrateLabels() : Report(design()) {
    onFormat("Detail", &ExampleCrateLabels::detailFormat);
    onFormat("gfElevation", &ExampleCrateLabels::elevationFooterFormat);
    onFormat("gfSite", &ExampleCrateLabels::siteFooterFormat);
    onFormat("PageFooter", [this] { formatPageNumberFooter(*this); });
}

void ExampleCrateLabels::initialize() {
    for (const char* name : {"Site", "Elevation", "CrateNumber", "Lites", "Weight"})
        fields().add(name);
}

void ExampleCrateLabels::reportStart() {
    if (!ReportData)
        throw Error::objectNotSet();
    // Every run starts its figures from zero, however often the object runs.
    m_next = 0;
    m_elevationLites = 0;
    m_siteWeight = 0;
    showHeading(*this, headingOf(*ReportData),
                HeadingControls{.user = nullptr, .phone = nullptr, .email = nullptr});
    showReportDateTime(*this);
}

void ExampleCrateLabels::fetchData(bool& eof) {
    if (m_next >= ReportData->Crates.size()) {
        eof = true;
        return;
    }
    const Crate& crate = ReportData->Crates[m_next++];
    fields()["Site"].setValue(Variant(crate.site));
    fields()["Elevation"].setValue(Variant(crate.elevation));
    fields()["CrateNumber"].setValue(Variant(crate.crateNumber));
    fields()["Lites"].setValue(Variant(static_cast<std::int32_t>(crate.lites)));
    fields()["Weight"].setValue(Variant(crate.weightPounds));
}

void ExampleCrateLabels::detailFormat() {
    // The row's values are the fields' (the engine may already have read ahead a row to see
    // whether the group ends).
    const auto lites = toLong(fields()["Lites"].value());
    const double weight = toDouble(fields()["Weight"].value());
    m_elevationLites += lites;
    m_siteWeight += weight;
    label("lLites").setCaption(std::to_string(lites) + (lites == 1 ? " lite" : " lites"));
    label("lWeight").setCaption(formatNumber(weight, kWeightFormat) + " lb");
}

void ExampleCrateLabels::elevationFooterFormat() {
    label("lElevationLites").setCaption(std::to_string(m_elevationLites));
    m_elevationLites = 0;
}

void ExampleCrateLabels::siteFooterFormat() {
    label("lSiteWeight").setCaption(formatNumber(m_siteWeight, kWeightFormat));
    m_siteWeight = 0;
}

void ExampleCrateLabels::reportEnd() {
    exportAtReportEnd(pages(), ReportData->Job.JobName, false, ShouldExportToPdf, kExportSuffixes);
}

} // namespace qr::reports
