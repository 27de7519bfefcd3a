// The lineal report's own line totals and its half-to-even grand total, and the metal recap's
// part and stock-length headings over their cut lines.
#include "reports/parts/lineal_report.hpp"
#include "reports/parts/metal_recap.hpp"
#include "reports/support/parts_fixture.hpp"

namespace qr::test {
namespace {

class LinealReportTest : public PartsReportTest {
  protected:
    const page::Pages& run(std::vector<host::LinealItem> items) {
        static_cast<host::PartsReportHeading&>(m_data) = partsHeading();
        m_data.Items = std::move(items);
        m_report.ReportData = &m_data;
        m_report.run();
        return m_report.pages();
    }
    static host::LinealItem line(Variant quantity, Variant price, Variant multiplier) {
        return {std::move(quantity),       "LN-6601",
                "Exterior glazing gasket", "Gasket",
                std::move(price),          std::move(multiplier)};
    }

    host::LinealReportData m_data;
    reports::FinalPartsLineal m_report;
};

TEST_F(LinealReportTest, LineTotalsShowUnroundedAndAddToTheGrandTotalRoundedHalfToEven) {
    // 0.125 adds 0.12 and 0.375 adds 0.38; each line shows its own total through the format.
    const page::Pages& pages = run({line(1.0, 0.125, 1.0), line(3.0, 0.125, 1.0),
                                    line(Variant("2"), Variant("$1,250.00"), Variant("0.5"))});
    EXPECT_EQ(printed(pages, "Label55"), (Texts{"$0.13", "$0.38", "$1,250.00"}));
    EXPECT_EQ(printed(pages, "Label56"), Texts{"$1,250.50"});
    EXPECT_EQ(printed(pages, "Field5"), (Texts{"$0.13", "$0.13", "$1,250.00"}));
    EXPECT_EQ(printed(pages, "Field6"), (Texts{"1.00", "1.00", "0.50"}));
    EXPECT_EQ(printed(pages, "Label51"), Texts{"Calc Method is by Lineal Foot"});
    EXPECT_EQ(printed(pages, "lColor"), Texts{"Dark Bronze Anodized"});
    EXPECT_EQ(printed(pages, "lFax"), Texts{"(360) 555-0101"});
    EXPECT_TRUE(shown().empty());
}

TEST_F(LinealReportTest, ATextThatIsNoNumberIsShownAndLeavesTheTotalsAsTheyWere) {
    const page::Pages& pages =
        run({line(4.0, 2.5, 1.0), line(Variant("about 6"), 2.5, 1.0), line(2.0, 2.5, 1.0)});
    EXPECT_EQ(shown(), Texts{"Quarvex Error: Description: Type mismatch\r\nModule: "
                             "FinalPartsLineal\r\nFunction: Detail_Format"});
    // The failing line keeps the caption of the line before it.
    EXPECT_EQ(printed(pages, "Label55"), (Texts{"$10.00", "$10.00", "$5.00"}));
    EXPECT_EQ(printed(pages, "Label56"), Texts{"$15.00"});
}

TEST_F(PartsReportTest, MetalRecapHeadsEachPartAndStockLengthOnceOverItsCutLines) {
    host::MetalRecapReportData data;
    static_cast<host::PartsReportHeading&>(data) = partsHeading();
    data.Items = {
        {4, "SF-4503", "Jamb", 252, 3, "120"},
        {2, "SF-4503", "Jamb", 252, 3, "96 1/2"},
        {1, "SF-4503", "Jamb", 288.5f, 1, "250"},
        {6, "SF-4505", "Horizontal", 144, 2, "42 1/4"},
    };
    reports::ar2MetalRecap report;
    report.ReportData = &data;
    report.run();
    const page::Pages& pages = report.pages();
    EXPECT_TRUE(shown().empty());
    EXPECT_EQ(printed(pages, "StockLengthField"), (Texts{"252 in.", "288.5 in.", "144 in."}));
    EXPECT_EQ(printed(pages, "PartNumberField"), (Texts{"SF-4503", "SF-4503", "SF-4505"}));
    EXPECT_EQ(printed(pages, "StockQuantityField"), (Texts{"3", "1", "2"}));
    EXPECT_EQ(printed(pages, "QuantityField"), (Texts{"4", "2", "1", "6"}));
    EXPECT_EQ(printed(pages, "LengthStringField"), (Texts{"120", "96 1/2", "250", "42 1/4"}));
    EXPECT_EQ(timesPrinted(pages, "Line2"), 2) << "one rule closing each part";
    EXPECT_EQ(printed(pages, "lFax"), Texts{"(360) 555-0101"});
    EXPECT_EQ(printed(pages, "Label1"), Texts{"Final Metal Recap Report"});
}

} // namespace
} // namespace qr::test
