// The six glass reports asked for the way the host asks, PrintReport with a request string, on
// the sample job's own tables: each prints several groups over more than one page, and its job
// totals agree with the sums the database makes of the same table; on SQLite and PostgreSQL.
#include "platform/core/convert.hpp"
#include "platform/core/number_format.hpp"
#include "reports/support/glass_request_fixture.hpp"
#include "service/report_objects.hpp"
#include "support/readers/file_readers.hpp"

#include <algorithm>
#include <cctype>

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

TEST_P(GlassSampleRequestTest, EachRequestPrintsTheSampleJobsTableOverSeveralPages) {
    const std::string order = "GlassOrderReport1";
    const std::string takeoff = "GlassTakeoffReport1";
    struct Total {
        const char* control;
        const char* sum;
        std::string_view format;
    };
    struct Case {
        const char* request;
        const char* className;
        std::string table;
        const char* title;
        std::vector<Total> totals;
        std::string groups; // the distinct groups a group footer closes, as SQL
    };
    const std::vector<Total> orderTotals{{"lAreaGrandTotal", "SUM(iElevQty * pSqrFt)", kArea},
                                         {"lBlockGrandTotal", "SUM(iElevQty * pBlockSize)", kArea},
                                         {"fTotalPieces", "SUM(iElevQty)", "0"}};
    std::vector<Total> takeoffTotals{{"lAreaGrandTotal", "SUM(pSqrFt * iGqty)", kArea},
                                     {"lGrandTotal", "SUM(ptotals)", kMoney},
                                     {"fTotalPieces", "SUM(iGqty)", "0"}};
    std::vector<Total> wideTotals = takeoffTotals;
    wideTotals.push_back({"lBlkAreaGTot", "SUM(pblksqrft * iGqty)", kArea});
    wideTotals.push_back({"lBlockGTotal", "SUM(pblkpricetotal)", kMoney});
    const std::string byPart = "SELECT DISTINCT sDesc, sPNum FROM " + takeoff;
    const std::string byElevation = "SELECT DISTINCT iElevSort, sDesc, sPNum FROM " + takeoff;
    const Case cases[] = {
        {"jobglasstoorder", "JobGlassToOrder", order, "Glass to Order for Job:", orderTotals,
         "SELECT DISTINCT sDescription FROM " + order},
        {"jobglasstoorder2", "JobGlassToOrder2", order, "Glass to Order for Job:", orderTotals,
         "SELECT DISTINCT sDescription FROM " + order},
        {"jobglassbypartar", "JobGlassByPartAR", takeoff, "Glass Report for Job:", takeoffTotals,
         byPart},
        {"jobglassbyelevar", "JobGlassByElevAR", takeoff, "Glass Report for Job:", takeoffTotals,
         byElevation},
        {"jobglasswidebypartar2", "JobGlassWideByPartAR2", takeoff,
         "Glass Report for Job:", wideTotals, byPart},
        {"jobglasswidebyelevar2", "JobGlassWideByElevAR2", takeoff,
         "Glass Report for Job:", wideTotals, byElevation},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.request);
        const auto printed = printRequest(std::string(c.request) + " " + c.table +
                                          " false 1 1 false false false |x |");
        EXPECT_TRUE(shownMessages().empty()) << shownMessages().front();
        const page::Pages& pages = service::reportObject(c.className).pages();
        writeCostPngs(pages, std::string("sample-") + c.className);

        EXPECT_GT(pages.pages.size(), 1u);
        const long groups = count("SELECT COUNT(*) AS N FROM (" + c.groups + ") g");
        EXPECT_GE(groups, 5);
        // The glass order's glass-type groups split further where part types interleave.
        EXPECT_GE(static_cast<long>(costTexts(pages, "lSqrFtSubTot").size()), groups);
        for (const Total& total : c.totals)
            EXPECT_EQ(costText(pages, total.control), sum(total.sum, c.table, total.format))
                << total.control;
        // Every item of the sample is priced.
        EXPECT_TRUE(costTexts(pages, "lWarning").empty());

        const std::string text = pdfText(printed);
        EXPECT_NE(text.find(c.title), std::string::npos);
        EXPECT_NE(text.find(kGlassSampleJob), std::string::npos);
    }
}

TEST_P(GlassSampleRequestTest, ANullTheReportNeedsIsShownNamingTheColumnAndTheTable) {
    // The sample's own tables with one value taken out; nothing prints.
    struct Case {
        const char* request;
        const char* copyOf;
        const char* column;
    };
    const Case cases[] = {
        {"jobglasstoorder", "GlassOrderReport1", "pSqrFt"},
        {"jobglasstoorder2", "GlassOrderReport1", "sLeftHeight"},
        {"jobglassbypartar", "GlassTakeoffReport1", "ptotals"},
        {"jobglasswidebyelevar2", "GlassTakeoffReport1", "pblkpricetotal"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.request);
        const std::string table = std::string("Holey_") + c.column;
        execVendor("CREATE TABLE " + table + " AS SELECT * FROM " + c.copyOf);
        execVendor("UPDATE " + table + " SET " + c.column + " = NULL");
        const auto printed = printRequest(std::string(c.request) + " " + table +
                                          " false 1 1 false false false |x |");
        const auto shown = shownMessages();
        ASSERT_EQ(shown.size(), 1u);
        std::string lower = table;
        std::transform(lower.begin(), lower.end(), lower.begin(), ::tolower);
        EXPECT_EQ(shown[0], "Error Encountered: Invalid use of Null: " + std::string(c.column) +
                                " of the report table " + lower + " is empty (Null).");
        EXPECT_FALSE(std::filesystem::exists(printed));
        m_host->messages->shown.clear();
    }
}

QR_GLASS_REQUEST_ON_BOTH_BACKENDS(GlassSampleRequestTest);

} // namespace
} // namespace qr::test
