// The statement texts, the checks on pasted values, and the one statement whose grammar is
// adapted per database.
#include "data/schema.hpp"
#include "data/statements.hpp"
#include "platform/core/error.hpp"
#include "platform/db/test_databases.hpp"

#include <functional>
#include <gtest/gtest.h>

namespace qr::test {
namespace {

using db::Dialect;
namespace sql = data::sql;

TEST(Statements, ValidValuesGiveTheClassicTextsExactly) {
    const Dialect d = Dialect::Classic;
    const std::pair<std::string, const char*> cases[] = {
        {sql::jobLookup("345"), "SELECT * FROM JobSummary where JobID=345"},
        {sql::jobRow("345"), "Select * FROM JobSummary WHERE JobID=345"},
        {sql::company(), "SELECT * FROM Company"},
        {sql::customer(Variant(std::int32_t{12}), "contractor id"),
         "SELECT * FROM Customers WHERE CustID=12"},
        {sql::customer(Variant(std::int16_t{7}), "architect id"),
         "SELECT * FROM Customers WHERE CustID=7"},
        {sql::systemDefaults("12"), "SELECT * FROM SystemDefaults WHERE UserID=12"},
        {sql::reportTable("t", d), "t"},
        {sql::laborRows("laborreport1", d), "SELECT * FROM laborreport1 ORDER BY iElevSort ASC"},
        {sql::addedLaborTotals("345"),
         "SELECT SUM(cRate) AS Total, SUM(pHours) AS Hours FROM JobLabor WHERE JobID=345"},
        {sql::miscLaborRate("345"), "SELECT cMiscRate FROM JobMainLabor WHERE JobID=345"},
        {sql::addedLaborItems("345"),
         "SELECT * FROM JobLabor WHERE JobID=345 AND (pHours>0 OR cRate>0)"},
        {sql::framingSystems("t", d), "Select * FROM t"},
        {sql::glassByPart("t", d), "Select * FROM t ORDER BY sDesc, sPNum, pSqrft"},
        {sql::glassByElevation("t", d), "Select * FROM t ORDER BY iElevSort, sDesc, sPNum, pSqrft"},
        {sql::glassPerimeter(345),
         "SELECT SUM(pGlassPerimeter) as GlassSum FROM Elevations WHERE JobID=345"},
        {sql::glassToOrder("t", d),
         "Select * FROM t ORDER BY sDescription, sPartType, sWidth+sLeftHeight+sRightHeight"},
        {sql::glassCutList("t", d), "Select * from t"},
        {sql::glassLabels("t", d, false), "Select * FROM t ORDER BY sElevName,sLabel"},
        {sql::glassLabels("t", d, true), "SELECT * FROM t ORDER BY sElevName,sLabel"},
        {sql::finalGlassQuery(1),
         "SELECT * FROM JobGlass WHERE JobID=1 ORDER BY sDescription, pThickness, sGlassType, "
         "sTypeLabel"},
        // Signs are part of a decimal integer and are pasted as given.
        {sql::jobRow("-3"), "Select * FROM JobSummary WHERE JobID=-3"},
        {sql::systemDefaults("+12"), "SELECT * FROM SystemDefaults WHERE UserID=+12"},
        {sql::framingSystems("[rpt_1]", d), "Select * FROM [rpt_1]"},
        {sql::framingSystems("\"Rpt1\"", d), "Select * FROM \"Rpt1\""},
    };
    for (const auto& [built, expected] : cases)
        EXPECT_EQ(built, expected);
}

TEST(Statements, GlassToOrderJoinsTheSizeTextsAsEachDatabaseDoes) {
    EXPECT_EQ(sql::glassToOrder("t", Dialect::SQLite),
              "Select * FROM t ORDER BY sDescription, sPartType, COALESCE(sWidth, '') || "
              "COALESCE(sLeftHeight, '') || COALESCE(sRightHeight, '')");
    EXPECT_EQ(sql::glassToOrder("t", Dialect::PostgreSQL), sql::glassToOrder("t", Dialect::SQLite));
}

/// Every statement that pastes a value, with a way to build it from a chosen value.
struct Pasted {
    const char* statement;
    const char* field;
    std::function<std::string(const std::string&)> build;
};

std::vector<Pasted> pastedValues(Dialect d) {
    auto table = [d](std::string (*f)(std::string_view, Dialect)) {
        return [f, d](const std::string& v) { return f(v, d); };
    };
    return {
        {"jobLookup", "job id in request", [](const std::string& v) { return sql::jobLookup(v); }},
        {"jobRow", "job id in request", [](const std::string& v) { return sql::jobRow(v); }},
        {"addedLaborTotals", "job id in request",
         [](const std::string& v) { return sql::addedLaborTotals(v); }},
        {"miscLaborRate", "job id in request",
         [](const std::string& v) { return sql::miscLaborRate(v); }},
        {"addedLaborItems", "job id in request",
         [](const std::string& v) { return sql::addedLaborItems(v); }},
        {"systemDefaults", "user id in request",
         [](const std::string& v) { return sql::systemDefaults(v); }},
        {"customer", "contractor id in job row",
         [](const std::string& v) { return sql::customer(Variant(v), "contractor id"); }},
        {"reportTable", "table name in request", table(sql::reportTable)},
        {"laborRows", "table name in request", table(sql::laborRows)},
        {"framingSystems", "table name in request", table(sql::framingSystems)},
        {"glassByPart", "table name in request", table(sql::glassByPart)},
        {"glassByElevation", "table name in request", table(sql::glassByElevation)},
        {"glassToOrder", "table name in request", table(sql::glassToOrder)},
        {"glassCutList", "table name in request", table(sql::glassCutList)},
        {"glassLabels", "table name in request",
         [d](const std::string& v) { return sql::glassLabels(v, d, false); }},
    };
}

const char* const kAttacks[] = {
    "1 OR 1=1",
    "1; DROP TABLE JobSummary",
    "t; DROP TABLE JobSummary",
    "t WHERE 1=1",
    "t--",
    "1/*x*/",
    "",
    " 1",
    "1 ",
    "0x1F",
    "1e3",
    "12.5",
    "+",
    "9abc",
    "[t] x",
    "\"t\"\"; DROP TABLE x\"",
    "[t]; DROP TABLE x",
    "t'",
    "dbo.t",
    "täble",
};

TEST(Statements, EveryPastedValueIsCheckedBeforeTheTextIsBuilt) {
    for (const Pasted& p : pastedValues(Dialect::Classic)) {
        for (const char* attack : kAttacks) {
            try {
                const std::string built = p.build(attack);
                ADD_FAILURE() << p.statement << " accepted \"" << attack << "\": " << built;
            } catch (const Error& error) {
                EXPECT_EQ(error.number(), 999);
                EXPECT_EQ(error.source(), "PrintReports");
                EXPECT_EQ(error.description(),
                          "Invalid " + std::string(p.field) + ": " + std::string(attack))
                    << p.statement;
            }
        }
    }
}

TEST(Statements, TableNameQuotingFollowsTheDatabase) {
    struct Case {
        const char* name;
        Dialect dialect;
        bool accepted;
    };
    const Case cases[] = {
        {"rptLabor_12", Dialect::PostgreSQL, true},
        {"_t9", Dialect::SQLite, true},
        {"9t", Dialect::SQLite, false},
        {"[rpt]", Dialect::Classic, true},
        {"[rpt]", Dialect::SQLite, true},
        {"[rpt]", Dialect::PostgreSQL, false},
        {"\"rpt\"", Dialect::PostgreSQL, true},
        {"\"rpt\"", Dialect::Classic, true},
        {"[]", Dialect::Classic, false},
        {"\"\"", Dialect::SQLite, false},
        {"[r p]", Dialect::Classic, false},
        {"[rpt", Dialect::Classic, false},
    };
    for (const Case& c : cases) {
        bool accepted = true;
        try {
            data::checkedTableName(c.name, c.dialect);
        } catch (const Error&) {
            accepted = false;
        }
        EXPECT_EQ(accepted, c.accepted) << c.name << " on dialect " << static_cast<int>(c.dialect);
    }
}

TEST(Statements, CustomerIdsFromTheJobRowMustBeWholeNumbers) {
    EXPECT_EQ(sql::customer(Variant(40.0), "contractor id"),
              "SELECT * FROM Customers WHERE CustID=40");
    struct Case {
        Variant id;
        const char* description;
    };
    const Case cases[] = {
        {Variant::null(), "Invalid architect id in job row: Null"},
        {Variant(), "Invalid architect id in job row: Empty"},
        {Variant("4 OR 1=1"), "Invalid architect id in job row: 4 OR 1=1"},
        {Variant(2.5), "Invalid architect id in job row: 2.500000"},
    };
    for (const Case& c : cases) {
        try {
            sql::customer(c.id, "architect id");
            ADD_FAILURE() << c.description;
        } catch (const Error& error) {
            EXPECT_EQ(error.description(), c.description);
        }
    }
}

class StatementsOnDatabase : public BackendTest {
  protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped())
            return;
        loadFixture("data/glass_order.sql");
    }
};

TEST_P(StatementsOnDatabase, RefusedValuesNeverReachTheDatabase) {
    int sent = 0;
    connection().setStatementObserver([&](const std::string&) { ++sent; });
    for (const Pasted& p : pastedValues(connection().dialect())) {
        for (const std::string attack :
             {"1; DROP TABLE JobSummary", "JobSummary; DROP TABLE JobSummary", "1 OR 1=1",
              "GlassOrder WHERE 1=1"}) {
            EXPECT_THROW(connection().openRecordset(p.build(attack)), Error) << p.statement;
        }
    }
    EXPECT_EQ(sent, 0);
    connection().setStatementObserver(nullptr);
    EXPECT_TRUE(connection().tableExists("JobSummary"));
    EXPECT_EQ(connection().openRecordset(sql::jobRow("1"))->recordCount(), 1);
}

TEST_P(StatementsOnDatabase, GlassToOrderRowsComeInTheHostsOrder) {
    auto rows = connection().openRecordset(sql::glassToOrder("GlassOrder", connection().dialect()));
    std::vector<std::string> labels;
    for (; !rows->eof(); rows->moveNext())
        labels.push_back(rows->value("sLabel").asString());
    // By description, then part type, then the size text: width, left and right height
    // joined, compared as text ("120..." sorts before "48..."), a Null part as empty text.
    EXPECT_EQ(labels, (std::vector<std::string>{"A1", "A2", "A3", "A4", "A5", "B1", "B2"}));
}

TEST_P(StatementsOnDatabase, EachStatementRunsOnTheSchema) {
    data::createTables(connection(), data::vendorTables());
    data::createTables(connection(), data::masterTables());
    const Dialect d = connection().dialect();
    for (const auto kind : data::kReportTableKinds) {
        const std::string name = data::reportTableName(kind, 7);
        data::createTables(connection(), {data::reportTableDef(kind, name)});
    }
    const std::string statements[] = {
        sql::jobLookup("1"),
        sql::company(),
        sql::customer(Variant(std::int32_t{1}), "contractor id"),
        sql::systemDefaults("1"),
        sql::reportTable("MarkupReport7", d),
        sql::laborRows("LaborReport7", d),
        sql::addedLaborTotals("1"),
        sql::miscLaborRate("1"),
        sql::addedLaborItems("1"),
        sql::framingSystems("FramingReport7", d),
        sql::glassByPart("GlassTakeoffReport7", d),
        sql::glassByElevation("GlassTakeoffReport7", d),
        sql::glassPerimeter(1),
        sql::glassToOrder("GlassOrderReport7", d),
        sql::glassCutList("GlassCutReport7", d),
        sql::glassLabels("GlassCutReport7", d, true),
        sql::finalGlassQuery(1),
    };
    for (const std::string& statement : statements) {
        EXPECT_NO_THROW(connection().openRecordset(statement)) << statement;
    }
    // Creating again leaves the tables as they are.
    EXPECT_NO_THROW(data::createTables(connection(), data::vendorTables()));
}

QR_INSTANTIATE_ON_ALL_BACKENDS(StatementsOnDatabase);

} // namespace
} // namespace qr::test
