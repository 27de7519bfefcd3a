#include "data/sample/parts_examples.hpp"

#include "data/sample/parts_report_data.hpp"
#include "data/sample/sample_jobs.hpp"
#include "platform/host/report_data_json.hpp"

namespace qr::data::sample {

namespace {

/// The small storefront job (job 2) as the examples' heading.
host::PartsReportHeading heading() {
    return partsHeading(sampleJobs().at(1));
}

std::optional<host::PatternCut> cut(const char* text) {
    return host::PatternCut{text};
}

} // namespace

std::string finalPartsExampleJson() {
    host::FinalPartsReportData data;
    static_cast<host::PartsReportHeading&>(data) = heading();
    data.PriceByUnit = false;
    data.Items = {
        {3,
         "SF-4501",
         {"Frame", "Head, 2 x 4-1/2 in. thermal | Dark Bronze Anodized", 0, 0.58},
         288,
         0,
         3,
         92.40,
         92.40,
         160.78},
        {140,
         "AC-4402",
         {"Fastener", "#12 x 1-1/2 in. pan head screw | Stainless", 100, 0.72},
         0,
         100,
         2,
         0.18,
         18.00,
         25.92},
        {1,
         "DH-3002",
         {"Hardware", "Surface closer with hold open | Aluminum", 0, 1},
         0,
         0,
         1,
         212.50,
         212.50,
         212.50},
    };
    host::UserDefaults defaults;
    defaults.FinalPartsReportTitle = "Storefront Parts Order";
    return host::finalPartsCallToJson(data, defaults);
}

std::string linealExampleJson() {
    host::LinealReportData data;
    static_cast<host::PartsReportHeading&>(data) = heading();
    data.Items = {
        {Variant(212.0), "LN-6601", "Exterior glazing gasket, EPDM | Black", "Gasket",
         Variant(0.34), Variant(0.65)},
        {Variant("96"), "LN-6604", "Closed-cell backer rod, 3/8 in. | Gray", "Sealant",
         Variant("$0.08"), Variant(1.0)},
    };
    return host::toJson(data);
}

std::string metalRecapExampleJson() {
    host::MetalRecapReportData data;
    static_cast<host::PartsReportHeading&>(data) = heading();
    data.Items = {
        {2, "SF-4503", "Jamb, 2 x 4-1/2 in. thermal | Dark Bronze Anodized", 252, 2, "120"},
        {2, "SF-4503", "Jamb, 2 x 4-1/2 in. thermal | Dark Bronze Anodized", 252, 2, "96"},
        {4, "SF-4505", "Intermediate horizontal, 2 x 4-1/2 in. | Dark Bronze Anodized", 192, 1,
         "42 1/2"},
    };
    return host::toJson(data);
}

std::string jobPartsExampleJson() {
    host::JobPartsReportData data;
    static_cast<host::PartsReportHeading&>(data) = heading();
    data.Items = {
        {2, "SF-4503", "Jamb, 2 x 4-1/2 in. thermal | Dark Bronze Anodized", "Frame", "120",
         "E1 - Entrance", 1},
        {1, "DR-2001", "Medium stile door stile, 4 in. | Dark Bronze Anodized", "Door", "87 3/4",
         "E1 - Entrance", 1},
        {4, "SF-4503", "Jamb, 2 x 4-1/2 in. thermal | Dark Bronze Anodized", "Frame", "120",
         "E2 - Storefront", 2},
    };
    return host::toJson(data);
}

std::string cutListExampleJson() {
    host::OptimizedCutListReportData data;
    static_cast<host::PartsReportHeading&>(data) = heading();
    host::CutListRow first{
        "SF-4505", "Intermediate horizontal, 2 x 4-1/2 in. | Dark Bronze Anodized",
        192,       0.98,
        {},        14.83,
        1,         2};
    first.Cuts = {cut("22 1/4 (E2)"), cut("22 1/4 (E2)"), cut("22 1/4 (E2)"), cut("22 1/4 (E2)"),
                  cut("22 1/4 (E2)"), cut("22 1/4 (E2)"), cut("22 1/4 (E2)"), cut("22 1/4 (E2)")};
    host::CutListRow continued = first;
    continued.Cuts = {cut("9 1/2 (E1)"), {}, {}, {}, {}, {}, {}, {}};
    continued.LengthOfCuts = 0.79;
    host::CutListRow second{"SF-4505", first.Description, 192, 0.48, {}, 7.75, 2, 2};
    second.Cuts = {cut("46 1/2 (E1)"), cut("46 1/2 (E1)"), {}, {}, {}, {}, {}, {}};
    data.Items = {first, continued, second};
    return host::toJson(data);
}

std::string cutLabelsExampleJson() {
    host::CutLabelsReportData data;
    const host::PartsReportHeading h = heading();
    data.User = h.User;
    data.Company = h.Company;
    data.Vendor = h.Vendor;
    data.Job = {2, h.JobName};
    data.StockPieces = {
        {{"SF-4503", "Frame"},
         1,
         2,
         {{120, "E1 - Entrance", "E1-01", "Jamb"},
          {120, "E1 - Entrance", "E1-02", "Jamb"},
          {12.375, "E1 - Entrance", "E1-03", "Jamb"}}},
        {{"SF-4503", "Frame"},
         2,
         2,
         {{96.5, "E2 - Storefront", "E2-01", "Jamb"}, {96.5, "E2 - Storefront", "E2-02", "Jamb"}}},
    };
    return host::toJson(data);
}

} // namespace qr::data::sample
