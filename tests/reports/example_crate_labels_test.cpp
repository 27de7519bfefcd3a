// The worked example report runs as a report of the component would: registered by class
// name, its groups totalled in code, its labels three across, its pages numbered.

#include "reports/example/crate_labels.hpp"
#include "reports/support/glass_fixture.hpp"
#include "service/component.hpp"
#include "service/report_objects.hpp"
#include "support/host/recording_host.hpp"

#include <gtest/gtest.h>
#include <map>
#include <set>

namespace qr::test {
namespace {

reports::CrateLabelsData shipment() {
    reports::CrateLabelsData data;
    data.Company.name = "Cascade Glass & Glazing, Inc.";
    data.Job.JobName = "Riverside Medical Office Building";
    // Two sites; the first has two elevations. 40 crates fill more than one page.
    int number = 0;
    const std::pair<const char*, const char*> groups[] = {
        {"North Yard", "E1 Main Entrance"},
        {"North Yard", "E2 East Storefront"},
        {"South Yard", "C4 Stair Tower Curtain Wall"}};
    const int counts[] = {7, 5, 28};
    for (int g = 0; g < 3; ++g) {
        for (int i = 0; i < counts[g]; ++i) {
            ++number;
            data.Crates.push_back({groups[g].first, groups[g].second,
                                   "CR-" + std::to_string(100 + number), 1 + number % 4,
                                   55.5 + number});
        }
    }
    return data;
}

TEST(ExampleCrateLabels, GroupsTotalInCodeLabelsGoThreeAcrossAndPagesAreNumbered) {
    service::addReportClass("ExampleCrateLabels",
                            [] { return std::make_unique<reports::ExampleCrateLabels>(); });
    RecordingHost host;
    service::initializeComponent();
    const auto data = shipment();
    auto& report = service::reportObjectAs<reports::ExampleCrateLabels>("ExampleCrateLabels");
    report.ReportData = &data;
    report.run();
    const page::Pages& pages = report.pages();

    // Per-group totals, computed from the crates themselves.
    std::map<std::string, int> lites;
    std::map<std::string, double> weight;
    for (const auto& c : data.Crates) {
        lites[c.elevation] += c.lites;
        weight[c.site] += c.weightPounds;
    }
    EXPECT_EQ(glassTexts(pages, "lElevationLites"),
              (std::vector<std::string>{std::to_string(lites["E1 Main Entrance"]),
                                        std::to_string(lites["E2 East Storefront"]),
                                        std::to_string(lites["C4 Stair Tower Curtain Wall"])}));
    // 12 crates of 55.5 lb plus 1..12, and 28 of 55.5 lb plus 13..40.
    EXPECT_DOUBLE_EQ(weight["North Yard"], 744.0);
    EXPECT_EQ(glassTexts(pages, "lSiteWeight"), (std::vector<std::string>{"744.0", "2,296.0"}));

    // Every crate printed once, in three columns of labels 3870 twips apart.
    EXPECT_EQ(glassTexts(pages, "txtCrate").size(), data.Crates.size());
    std::set<int> columns;
    for (const page::Page& page : pages.pages) {
        for (const page::Item& item : page.items) {
            if (const auto* t = std::get_if<page::TextItem>(&item); t && t->control == "txtCrate")
                columns.insert(t->box.x);
        }
    }
    ASSERT_EQ(columns.size(), 3u);
    EXPECT_EQ(*std::next(columns.begin()) - *columns.begin(), 3780 + 90);

    ASSERT_GE(pages.pages.size(), 2u);
    const auto numbers = glassTexts(pages, "txtPageNumber");
    ASSERT_EQ(numbers.size(), pages.pages.size());
    EXPECT_EQ(numbers.front(), "Page  1 of  " + std::to_string(pages.pages.size()));
    EXPECT_EQ(glassText(pages, "lJobName"), "Riverside Medical Office Building");
    service::releaseReportObject("ExampleCrateLabels");
}

} // namespace
} // namespace qr::test
