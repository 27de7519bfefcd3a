// The six glass reports asked for the way the host asks, PrintReport with a request string, on
// the sample job's own tables: each prints several groups over more than one page, and its job
// totals agree with the sums the database makes of the same table; on SQLite and PostgreSQL.
#include "platform/core/convert.hpp"
#include "platform/core/number_format.hpp"
#include "reports/support/glass_request_fixture.hpp"
#include "service/report_objects.hpp"

namespace qr::test {
namespace {

class GlassSampleRequestTest : public GlassRequestTest {
  protected:
    /// A sum the database makes over a table of the sample job, formatted as the report
    /// formats that figure.
    std::string sum(const std::string& expression, const std::string& table,
                    std::string_view format) {
        const Variant value = vendorValue("SELECT " + expression + " AS S FROM " + table, "S");
        return formatNumber(toDouble(value), format);
    }
    long count(const std::string& sql) { return toLong(vendorValue(sql, "N")); }
};

constexpr std::string_view kArea = "###,###.00";
constexpr std::string_view kMoney = "$###,###.00";

TEST_P(GlassSampleRequestTest, TheGlassOrderOfTheSampleJob) {
    const std::string table = "GlassOrderReport1";
    for (const char* name : {"jobglasstoorder", "jobglasstoorder2"}) {
        SCOPED_TRACE(name);
        const auto printed =
            printRequest(std::string(name) + " " + table + " false 1 1 false false false |x |");
        EXPECT_TRUE(shownMessages().empty()) << shownMessages().front();
        const std::string className =
            std::string(name) == "jobglasstoorder" ? "JobGlassToOrder" : "JobGlassToOrder2";
        const page::Pages& pages = service::reportObject(className).pages();

        EXPECT_GT(pages.pages.size(), 1u);
        EXPECT_GT(costTexts(pages, "Field13").size(), 3u);
        EXPECT_GT(costTexts(pages, "lSqrFtSubTot").size(), 5u);
        EXPECT_EQ(costText(pages, "lAreaGrandTotal"), sum("SUM(iElevQty * pSqrFt)", table, kArea));
        EXPECT_EQ(costText(pages, "lBlockGrandTotal"),
                  sum("SUM(iElevQty * pBlockSize)", table, kArea));
        EXPECT_EQ(costText(pages, "fTotalPieces"), sum("SUM(iElevQty)", table, "0"));
        writeCostPngs(pages, std::string("sample-") + className);

        const std::string text = costPdfText(printed);
        EXPECT_NE(text.find("Glass to Order for Job:"), std::string::npos);
        EXPECT_NE(text.find(kGlassSampleJob), std::string::npos);
        EXPECT_NE(text.find("E1-A1"), std::string::npos);
    }
}

TEST_P(GlassSampleRequestTest, TheGlassTakeoffOfTheSampleJob) {
    const std::string table = "GlassTakeoffReport1";
    struct Case {
        const char* request;
        const char* className;
        bool byElevation;
        bool wide;
    };
    const Case cases[] = {
        {"jobglassbypartar", "JobGlassByPartAR", false, false},
        {"jobglassbyelevar", "JobGlassByElevAR", true, false},
        {"jobglasswidebypartar2", "JobGlassWideByPartAR2", false, true},
        {"jobglasswidebyelevar2", "JobGlassWideByElevAR2", true, true},
    };
    const long parts =
        count("SELECT COUNT(*) AS N FROM (SELECT DISTINCT sDesc, sPNum FROM " + table + ") p");
    const long elevationParts = count("SELECT COUNT(*) AS N FROM (SELECT DISTINCT iElevSort, "
                                      "sDesc, sPNum FROM " +
                                      table + ") p");
    const long elevations =
        count("SELECT COUNT(*) AS N FROM (SELECT DISTINCT iElevSort FROM " + table + ") e");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.request);
        const auto printed = printRequest(std::string(c.request) + " " + table +
                                          " false 1 1 false false false |x |");
        EXPECT_TRUE(shownMessages().empty()) << shownMessages().front();
        const page::Pages& pages = service::reportObject(c.className).pages();

        EXPECT_GT(pages.pages.size(), 1u);
        EXPECT_EQ(static_cast<long>(costTexts(pages, "lSqrFtSubTot").size()),
                  c.byElevation ? elevationParts : parts);
        EXPECT_EQ(static_cast<long>(costTexts(pages, "lElevSqrFtSubTot").size()),
                  c.byElevation ? elevations : 0);
        EXPECT_EQ(costText(pages, "lAreaGrandTotal"), sum("SUM(pSqrFt * iGqty)", table, kArea));
        EXPECT_EQ(costText(pages, "lGrandTotal"), sum("SUM(ptotals)", table, kMoney));
        EXPECT_EQ(costText(pages, "fTotalPieces"), sum("SUM(iGqty)", table, "0"));
        if (c.wide) {
            EXPECT_EQ(costText(pages, "lBlkAreaGTot"), sum("SUM(pblksqrft * iGqty)", table, kArea));
            EXPECT_EQ(costText(pages, "lBlockGTotal"), sum("SUM(pblkpricetotal)", table, kMoney));
        } else {
            // Every item of the sample is priced.
            EXPECT_TRUE(costTexts(pages, "lWarning").empty());
        }
        writeCostPngs(pages, std::string("sample-") + c.className);

        const std::string text = costPdfText(printed);
        EXPECT_NE(text.find("Glass Report for Job:"), std::string::npos);
        EXPECT_NE(text.find("- Type Totals -"), std::string::npos);
        EXPECT_EQ(text.find("- Elevation Totals -") != std::string::npos, c.byElevation);
    }
}

QR_GLASS_REQUEST_ON_BOTH_BACKENDS(GlassSampleRequestTest);

} // namespace
} // namespace qr::test
