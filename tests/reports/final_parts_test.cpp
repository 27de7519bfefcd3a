// The three final parts reports over host data: the pricing by unit or by package and the
// captions it switches, the package-quantity rule, the line total the report works out, the
// title from the user's defaults, the heading's phone fallback, and a failing start handler.
#include "reports/parts/final_parts_report.hpp"
#include "reports/support/parts_fixture.hpp"

#include <memory>

namespace qr::test {
namespace {

using reports::FinalPartsLayout;

/// 12 units at 2.50 with multiplier 0.8, the host's package price 30.00 and total 99.99.
host::FinalPartsItem headLine() {
    return {12, "SF-4501", {"Frame", "Head | Dark Bronze", 0, 0.8}, 288, 0, 2, 2.50, 30.00, 99.99};
}

std::unique_ptr<reports::FinalPartsReport> reportOf(FinalPartsLayout layout) {
    switch (layout) {
    case FinalPartsLayout::Landscape:
        return std::make_unique<reports::FinalPartsAR>();
    case FinalPartsLayout::Portrait:
        return std::make_unique<reports::FinalPartsAR2>();
    case FinalPartsLayout::NoPrices:
        break;
    }
    return std::make_unique<reports::FinalPartsARNP>();
}

class FinalPartsTest : public PartsReportTest {
  protected:
    const page::Pages& run(FinalPartsLayout layout, const host::FinalPartsReportData& data,
                           const host::UserDefaults& defaults = {}) {
        m_report = reportOf(layout);
        m_report->ReportData = &data;
        m_report->UserDefaults = &defaults;
        m_report->run();
        return m_report->pages();
    }
    static host::FinalPartsReportData dataWith(std::vector<host::FinalPartsItem> items,
                                               bool priceByUnit) {
        host::FinalPartsReportData data;
        static_cast<host::PartsReportHeading&>(data) = partsHeading();
        data.PriceByUnit = priceByUnit;
        data.Items = std::move(items);
        return data;
    }

    std::unique_ptr<reports::FinalPartsReport> m_report;
};

TEST_F(FinalPartsTest, PricingByUnitOrPackageSwitchesPricesTotalsAndCaptions) {
    struct Case {
        FinalPartsLayout layout;
        bool byUnit;
        // control -> texts it printed, in order
        std::vector<std::pair<const char*, Texts>> shown;
    };
    const Case cases[] = {
        {FinalPartsLayout::Landscape,
         true,
         {{"LineItemPriceLabel", {"Unit Price"}},
          {"NoteUnderTitleLabel", {"(Priced by Unit Quantity)"}},
          {"UnitPriceField", {"$2.50"}},
          {"TotalPriceField", {"$24.00"}},
          {"GrandTotalField", {"$24.00"}}}},
        {FinalPartsLayout::Landscape,
         false,
         {{"LineItemPriceLabel", {"Pkg Price"}},
          {"NoteUnderTitleLabel", {}},
          {"UnitPriceField", {"$30.00"}},
          {"TotalPriceField", {"$99.99"}},
          {"GrandTotalField", {"$99.99"}}}},
        {FinalPartsLayout::Portrait,
         true,
         {{"ByPackageSubheading", {"(By Unit Quantity)"}},
          {"PackagesToOrderLabel", {"Unit Quantity"}},
          {"PricePerPackageLabel", {"Unit Price"}},
          {"PackageQuantityField", {"12"}},
          {"PackagePriceField", {"$2.50"}},
          {"TotalField", {"$24.00"}},
          {"Field8", {"$24.00"}}}},
        {FinalPartsLayout::Portrait,
         false,
         {{"ByPackageSubheading", {"(By Package)"}},
          {"PackagesToOrderLabel", {"Packages To Order"}},
          {"PricePerPackageLabel", {"Pkg Price"}},
          {"PackageQuantityField", {"2"}},
          {"PackagePriceField", {"$30.00"}},
          {"TotalField", {"$99.99"}},
          {"Field8", {"$99.99"}}}},
        // No prices: the pricing changes nothing, and nothing shows a price or a total.
        {FinalPartsLayout::NoPrices,
         true,
         {{"QuantityField", {"12"}},
          {"PackagesToOrderField", {"2"}},
          {"PackageQuantityField", {"1"}}}},
        {FinalPartsLayout::NoPrices,
         false,
         {{"QuantityField", {"12"}},
          {"PackagesToOrderField", {"2"}},
          {"PackageQuantityField", {"1"}}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(c.layout) << " by unit " << c.byUnit);
        const auto data = dataWith({headLine()}, c.byUnit);
        const page::Pages& pages = run(c.layout, data);
        for (const auto& [control, texts] : c.shown)
            EXPECT_EQ(printed(pages, control), texts) << control;
        const std::string text = pageText(pages.pages.at(0));
        EXPECT_EQ(text.find('$') == std::string::npos, c.layout == FinalPartsLayout::NoPrices);
        EXPECT_EQ(text.find("Parts Grand Total") == std::string::npos,
                  c.layout == FinalPartsLayout::NoPrices);
        EXPECT_EQ(printed(pages, "txtPageNumber"), Texts{"Page  1 of  1"});
    }
    EXPECT_TRUE(shown().empty());
}

TEST_F(FinalPartsTest, APartNotSoldInPackagesCountsAsAPackageOfOne) {
    auto line = [](double partPackage, double linePackage) {
        host::FinalPartsItem item = headLine();
        item.Part.PackageQuantity = partPackage;
        item.PackageQuantity = linePackage;
        return item;
    };
    const auto data = dataWith({line(0, 25), line(-4, 25), line(100, 25), line(100, 0)}, false);
    EXPECT_EQ(printed(run(FinalPartsLayout::Landscape, data), "PackageQuantityField"),
              (Texts{"1", "1", "25", "0"}));
    EXPECT_EQ(printed(run(FinalPartsLayout::NoPrices, data), "PackageQuantityField"),
              (Texts{"1", "1", "25", "0"}));
}

TEST_F(FinalPartsTest, UnitPricedLinesAreTheReportsOwnProductsAndAddUpUnrounded) {
    // 3 x 0.335 x 1 = 1.005 per line: each line shows $1.01 (halves away from zero at the
    // format), the total of three is 3.015, shown as $3.02.
    host::FinalPartsItem item = headLine();
    item.Quantity = 3;
    item.UnitPrice = 0.335;
    item.Part.Multiplier = 1;
    const auto data = dataWith({item, item, item}, true);
    const page::Pages& pages = run(FinalPartsLayout::Landscape, data);
    EXPECT_EQ(printed(pages, "TotalPriceField"), (Texts{"$1.01", "$1.01", "$1.01"}));
    EXPECT_EQ(printed(pages, "GrandTotalField"), Texts{"$3.02"});
}

TEST_F(FinalPartsTest, TheHeadingShowsTheUsersTitleAndPhoneWithTheirFallbacks) {
    struct Case {
        std::optional<std::string> title;
        std::string userPhone, firmPhone;
        std::string shownTitle, shownPhone;
    };
    const Case cases[] = {
        {std::nullopt, "(360) 555-0148", "(360) 555-0100", "Job Parts Report", "(360) 555-0148"},
        {"   ", "", "(360) 555-0100", "Job Parts Report", "(360) 555-0100"},
        {"  Storefront Parts ", "", "", "  Storefront Parts ", ""},
    };
    for (const Case& c : cases) {
        auto data = dataWith({}, true);
        data.User.phone = c.userPhone;
        data.Company.phone = c.firmPhone;
        host::UserDefaults defaults;
        defaults.FinalPartsReportTitle = c.title;
        for (auto layout : {FinalPartsLayout::Landscape, FinalPartsLayout::Portrait,
                            FinalPartsLayout::NoPrices}) {
            const page::Pages& pages = run(layout, data, defaults);
            EXPECT_EQ(printed(pages, "Label1"), Texts{c.shownTitle});
            EXPECT_EQ(printed(pages, "lPhone"),
                      c.shownPhone.empty() ? Texts{} : Texts{c.shownPhone});
            EXPECT_EQ(printed(pages, "lJobName"), Texts{kPartsJob});
            EXPECT_EQ(printed(pages, "lColor"), Texts{"Dark Bronze Anodized"});
            EXPECT_EQ(printed(pages, "lEmail"), Texts{"dana@cascadeglazing.example"});
            // An empty list: the heading and the captions, no lines, and no pricing note.
            EXPECT_TRUE(printed(pages, "PartNumberField").empty());
            EXPECT_TRUE(printed(pages, "NoteUnderTitleLabel").empty());
            EXPECT_EQ(printed(pages, "Label2"), Texts{"Vendor:"});
        }
    }
}

TEST_F(FinalPartsTest, AFailingStartIsShownNamingTheReportAndTheReportStillFinishes) {
    const auto data = dataWith({headLine()}, true);
    m_report = std::make_unique<reports::FinalPartsAR>();
    m_report->ReportData = &data; // no user defaults
    m_report->run();
    EXPECT_EQ(shown(),
              Texts{"Quarvex Error: Description: Object variable or With block variable "
                    "not set\r\nModule: FinalPartsAR\r\nFunction: ActiveReport_ReportStart"});
    const auto entries = m_host.host->usageEntries();
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].error, "Object variable or With block variable not set\r\n in "
                                "'FinalPartsAR.ActiveReport_ReportStart'");
    // The heading before the failing step is filled; the lines print.
    EXPECT_EQ(printed(m_report->pages(), "lJobName"), Texts{kPartsJob});
    EXPECT_EQ(printed(m_report->pages(), "TotalPriceField"), Texts{"$24.00"});
}

} // namespace
} // namespace qr::test
