// The sample written into real databases, read back through the statements the reports use,
// and the two places the reports write: the labor table rewrite and the merge of the firm's
// texts into the job row. Vendor and master tables share one test database here.
#include "data/cost_categories.hpp"
#include "data/sample/sample_rows.hpp"
#include "data/sample/sample_writer.hpp"
#include "data/statements.hpp"
#include "platform/db/test_databases.hpp"

#include <gtest/gtest.h>

namespace qr::test {
namespace {

using namespace data;

Currency money(const char* text) {
    return *Currency::parseDecimal(text);
}

std::string show(const Variant& v) {
    switch (v.type()) {
    case VarType::Null:
        return "<null>";
    case VarType::String:
        return v.asString();
    case VarType::Long:
        return std::to_string(v.asLong());
    case VarType::Double:
        return std::to_string(v.asDouble());
    case VarType::Currency:
        return v.asCurrency().toDecimalText();
    case VarType::Boolean:
        return v.asBoolean() ? "true" : "false";
    case VarType::Date:
        return std::to_string(v.asDate().serial);
    default:
        return "?";
    }
}

class SampleWriterTest : public BackendTest {
  protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped())
            return;
        m_tables = sample::writeSample(connection(), connection());
    }

    long count(const std::string& sql) {
        return connection().openRecordset(sql)->value("N").asLong();
    }

    /// Every row of a table as text, for before/after comparisons.
    std::vector<std::string> dump(const std::string& table) {
        std::vector<std::string> rows;
        auto rs = connection().openRecordset(table);
        for (; !rs->eof(); rs->moveNext()) {
            std::string row;
            for (const std::string& column : rs->columns())
                row += show(rs->value(column)) + '|';
            rows.push_back(row);
        }
        std::sort(rows.begin(), rows.end());
        return rows;
    }

    std::vector<std::string> m_tables;
};

TEST_P(SampleWriterTest, NamesTheReportTablesAndRunsAgainToTheSameData) {
    ASSERT_EQ(m_tables.size(), 18u);
    EXPECT_EQ(m_tables.front(), "LaborReport1");
    EXPECT_EQ(m_tables.back(), "GlassCutReport3");
    const std::vector<std::string> before = dump("JobGlass");
    const long glassCuts = count("SELECT COUNT(*) AS N FROM GlassCutReport1");
    EXPECT_EQ(sample::writeSample(connection(), connection()), m_tables);
    EXPECT_EQ(dump("JobGlass"), before);
    EXPECT_EQ(count("SELECT COUNT(*) AS N FROM GlassCutReport1"), glassCuts);
    EXPECT_EQ(count("SELECT COUNT(*) AS N FROM JobSummary"), 3);
    EXPECT_EQ(count("SELECT COUNT(*) AS N FROM Users"), 2);
}

TEST_P(SampleWriterTest, TheJobRowReadsBackThroughTheReportsStatements) {
    const sample::JobFigures figures = sample::jobFigures(sample::sampleJobs()[0]);
    auto job = connection().openRecordset(sql::jobRow("1"));
    ASSERT_EQ(job->recordCount(), 1);
    EXPECT_EQ(job->value("sJobName"), Variant("Riverside Medical Office Building"));
    EXPECT_EQ(job->value("dBidDate"), Variant(Date::fromParts(2024, 3, 14)));
    EXPECT_EQ(job->value("cGlassTotal"), Variant(figures.glassTotal));
    const CategoryTotals totals = categoryTotals(*job);
    EXPECT_EQ(totals.doors, money("15250")) << "door override";
    EXPECT_EQ(totals.glass, money("48900")) << "glass override";
    EXPECT_EQ(totals.metal, money("78415.6"));
    EXPECT_EQ(totals.grandTotal(), figures.effective.grandTotal());

    auto glassSum =
        connection().openRecordset("SELECT SUM(pPriceTotal) AS Total FROM JobGlass WHERE JobID=1");
    EXPECT_NEAR(glassSum->value("Total").asDouble(), figures.glassTotal.toDouble(), 0.001);

    auto markup =
        connection().openRecordset(sql::reportTable("MarkupReport1", connection().dialect()));
    ASSERT_EQ(markup->recordCount(), 1);
    EXPECT_DOUBLE_EQ(markup->value("pgrandtot").asDouble(), figures.markup.grandTotal.toDouble());

    auto perimeter = connection().openRecordset(sql::glassPerimeter(1));
    EXPECT_GT(perimeter->value("GlassSum").asDouble(), 1000.0);

    auto contractor =
        connection().openRecordset(sql::customer(job->value("ContractorId"), "contractor id"));
    EXPECT_EQ(contractor->value("sCompany"), Variant("Hartwell Construction Group"));
    auto defaults = connection().openRecordset(sql::systemDefaults("1"));
    EXPECT_FALSE(defaults->value("mcompanynotes").asString().empty());
    auto labor = connection().openRecordset(sql::addedLaborItems("1"));
    EXPECT_EQ(labor->recordCount(), 4) << "the punch list allowance has neither hours nor amount";
}

TEST_P(SampleWriterTest, TheStandaloneHostFindsItsOwnTables) {
    auto users = connection().openRecordset("SELECT * FROM Users ORDER BY UserID");
    EXPECT_EQ(users->value("sName"), Variant("Dana Whitfield"));
    users->moveNext();
    EXPECT_EQ(users->value("sPhone"), Variant("")) << "falls back to the firm's phone";
    auto settings = connection().openRecordset(
        "SELECT iValue FROM UserSettings WHERE UserID=1 AND sName='LblLeft'");
    EXPECT_EQ(settings->value("iValue"), Variant(std::int32_t{-60}));
    auto company = connection().openRecordset(sql::company());
    EXPECT_EQ(company->value("sName"), Variant("Cascade Glass & Glazing, Inc."));
    EXPECT_EQ(company->value("sContractorLic"), Variant("CASCAGG873RQ"));
    EXPECT_EQ(connection().openRecordset("Vendor")->value("sName"),
              Variant("Pacific Architectural Aluminum"));
    connection().execute("INSERT INTO UsageLog (dLogged, sOutcome, sCategory, sLabel) "
                         "VALUES (?, ?, ?, ?)",
                         {Variant(Date::fromParts(2024, 5, 1, 9, 30, 0)), Variant("Previewed"),
                          Variant("Report"), Variant("PrintReport-armarkup")});
    auto log = connection().openRecordset("UsageLog");
    EXPECT_EQ(log->value("LogID"), Variant(std::int32_t{1})) << "the database numbers entries";
}

TEST_P(SampleWriterTest, TheThirdJobReadsAsNullsAndEmptyTables) {
    auto job = connection().openRecordset(sql::jobRow("3"));
    for (const char* column : {"sEstimator", "sstatus", "DefaultFinish", "mnotes", "mexclusions",
                               "dBidDate", "StockTotalOverride", "JobLaborOverride"})
        EXPECT_TRUE(job->value(column).isNull()) << column;
    EXPECT_EQ(job->value("pjobarea"), Variant(0.0));
    auto totals = connection().openRecordset(sql::addedLaborTotals("3"));
    EXPECT_TRUE(totals->value("Total").isNull());
    EXPECT_TRUE(totals->value("Hours").isNull());
    EXPECT_EQ(connection().openRecordset(sql::miscLaborRate("3"))->recordCount(), 0);
    EXPECT_EQ(connection()
                  .openRecordset(sql::customer(job->value("ContractorId"), "contractor id"))
                  ->recordCount(),
              0);
    for (const char* table : {"LaborReport3", "MarkupReport3", "GlassCutReport3"})
        EXPECT_EQ(connection().openRecordset(table)->recordCount(), 0) << table;
}

TEST_P(SampleWriterTest, TheLaborTableOpensAsTheJobLaborReportsDataControlOpensIt) {
    const auto other = database().connect();
    RowProvider& provider = *other;
    auto rows = provider.openRows(sql::laborRows("laborreport1", connection().dialect()),
                                  CursorType::Static, LockType::Optimistic);
    ASSERT_EQ(rows->recordCount(), 12);
    std::int32_t lastSort = 0;
    for (; !rows->eof(); rows->moveNext()) {
        EXPECT_GT(rows->value("iElevSort").asLong(), lastSort);
        lastSort = rows->value("iElevSort").asLong();
    }
}

TEST_P(SampleWriterTest, TheLaborRewriteChangesOnlyItsOwnTable) {
    const auto otherJob = dump("LaborReport2");
    const auto jobs = dump("JobSummary");
    // As the job labor report does it: every figure times the quantity, the total recomputed.
    const char* figures[] = {"pfabhours",        "pfabtot",        "pinstallhours", "pinstalltot",
                             "pmischours",       "pmisctot",       "pentfabhours",  "pentfabtot",
                             "pentInstallhours", "pentinstalltot", "pglazhours",    "pglaztot"};
    auto rows = connection().openRecordset(sql::reportTable("LaborReport1", connection().dialect()),
                                           CursorType::Static, LockType::Optimistic);
    for (; !rows->eof(); rows->moveNext()) {
        const double quantity = rows->value("iquantity").asLong();
        for (const char* column : figures)
            rows->setValue(column, Variant(rows->value(column).asDouble() * quantity));
        double total = 0;
        for (const char* column :
             {"pfabtot", "pinstalltot", "pmisctot", "pentfabtot", "pentinstalltot", "pglaztot"})
            total += rows->value(column).asDouble();
        rows->setValue("pelevtot", Variant(std::round(total * 100) / 100));
        rows->update();
    }
    auto bay = connection().openRecordset(
        "SELECT * FROM LaborReport1 WHERE sElevName='E2 North Storefront Bay'");
    EXPECT_DOUBLE_EQ(bay->value("pFabHours").asDouble(), 9.6 * 3);
    EXPECT_DOUBLE_EQ(bay->value("pFabTot").asDouble(), 556.8 * 3);
    EXPECT_EQ(count("SELECT COUNT(*) AS N FROM LaborReport1"), 12);
    EXPECT_EQ(dump("LaborReport2"), otherJob);
    EXPECT_EQ(dump("JobSummary"), jobs);
}

TEST_P(SampleWriterTest, TheMergeOfFirmTextsChangesOnlyTheJobsRow) {
    const auto before = dump("JobSummary");
    auto job =
        connection().openRecordset(sql::jobRow("2"), CursorType::Static, LockType::Optimistic);
    const std::string merged = "Tenant improvement; existing storefront removed by others.\r\n\r\n"
                               "Prices firm for 30 days.";
    job->setValue("mexclusions", Variant("Performance and payment bonds."));
    job->update();
    job->setValue("mnotes", Variant(merged));
    job->update();

    auto after = connection().openRecordset("SELECT * FROM JobSummary ORDER BY JobID");
    for (; !after->eof(); after->moveNext()) {
        const bool merged2 = after->value("JobID").asLong() == 2;
        EXPECT_EQ(after->value("mnotes") == Variant(merged), merged2);
    }
    auto changed = dump("JobSummary");
    int differing = 0;
    for (std::size_t i = 0; i < changed.size(); ++i)
        differing += changed[i] != before[i];
    EXPECT_EQ(differing, 1);
    EXPECT_EQ(connection().openRecordset(sql::jobRow("1"))->value("cStockTotal"),
              Variant(money("78415.6")));
}

QR_INSTANTIATE_ON_ALL_BACKENDS(SampleWriterTest);

} // namespace
} // namespace qr::test
