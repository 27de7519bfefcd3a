// Recordset semantics the reports rely on, on every engine: snapshot counts, end-of-file,
// fields by name without regard to case, typed values with Null kept, exact money, and the
// optimistic write-back of the current row.
#include "platform/db/db_error.hpp"
#include "platform/db/recordset.hpp"
#include "platform/db/test_databases.hpp"

#include <gtest/gtest.h>

namespace qr::test {
namespace {

using db::Recordset;

Currency money(const char* text) {
    return *Currency::parseDecimal(text);
}

class RecordsetTest : public BackendTest {
  protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped())
            return;
        loadFixture("db/recordsets.sql");
    }

    std::unique_ptr<Recordset> open(const std::string& source, LockType lock = LockType::ReadOnly) {
        return connection().openRecordset(source, CursorType::Static, lock);
    }

    /// One value read afresh from the database.
    Variant fetch(const std::string& sql, const std::string& column) {
        auto rows = database().connect()->openRecordset(sql);
        EXPECT_FALSE(rows->eof()) << sql;
        return rows->eof() ? Variant() : rows->value(column);
    }

    template <class F> int errorNumberOf(F&& action) {
        try {
            action();
        } catch (const Error& error) {
            return error.number();
        }
        return 0;
    }
};

TEST_P(RecordsetTest, StaticSnapshotHasExactCountAndWalksRowsInOrder) {
    auto rows = open("SELECT * FROM Parts ORDER BY PartID");
    EXPECT_EQ(rows->recordCount(), 3);
    std::vector<std::int32_t> ids;
    for (; !rows->eof(); rows->moveNext())
        ids.push_back(rows->value("PartID").asLong());
    EXPECT_EQ(ids, (std::vector<std::int32_t>{1, 2, 3}));
    EXPECT_THROW(rows->moveNext(), Error);

    auto none = open("SELECT * FROM Parts WHERE PartID=99");
    EXPECT_EQ(none->recordCount(), 0);
    EXPECT_TRUE(none->eof());
    EXPECT_TRUE(none->bof());
    EXPECT_EQ(none->columns().size(), 9u) << "an empty result still names its columns";
}

TEST_P(RecordsetTest, FieldsAreFoundByNameWithoutRegardToCase) {
    auto rows = open("SELECT * FROM Parts WHERE PartID=1");
    for (const char* name : {"sName", "SNAME", "sname", "SName"}) {
        EXPECT_TRUE(rows->hasColumn(name)) << name;
        EXPECT_EQ(rows->value(name), Variant("Sill flashing")) << name;
    }
    EXPECT_FALSE(rows->hasColumn("sNothing"));
    EXPECT_EQ(errorNumberOf([&] { rows->value("sNothing"); }), db::dberr::kItemNotFound);
    // By position (how a report reads its rows) each column gives what its name gives.
    for (std::size_t i = 0; i < rows->columns().size(); ++i)
        EXPECT_EQ(rows->valueAt(i), rows->value(rows->columns()[i])) << rows->columns()[i];
    EXPECT_EQ(errorNumberOf([&] { rows->valueAt(rows->columns().size()); }),
              db::dberr::kItemNotFound);
    rows->moveNext();
    EXPECT_EQ(errorNumberOf([&] { rows->value("sName"); }), db::dberr::kNoCurrentRecord);
    EXPECT_EQ(errorNumberOf([&] { rows->valueAt(0); }), db::dberr::kNoCurrentRecord);
    rows->close();
    EXPECT_EQ(errorNumberOf([&] { rows->recordCount(); }), db::dberr::kObjectClosed);
}

TEST_P(RecordsetTest, ValuesAreTypedByTheColumnPrefixWithNullKept) {
    struct Case {
        int id;
        const char* column;
        Variant expected;
    };
    const Case cases[] = {
        {1, "cPrice", Variant(money("1234.5678"))},
        {1, "PriceOverride", Variant::null()},
        {2, "PriceOverride", Variant(Currency())},
        {3, "PriceOverride", Variant(money("17.5"))},
        {1, "pLength", Variant(0.1)},
        {3, "pLength", Variant(96.0)},
        {2, "iQty", Variant(std::int32_t{12})},
        {1, "dAdded", Variant(Date::fromParts(2024, 3, 15))},
        {2, "dAdded", Variant(Date::fromParts(2024, 3, 16, 14, 30, 0))},
        {3, "dAdded", Variant::null()},
        {1, "bActive", Variant(true)},
        {2, "bActive", Variant(false)},
        {3, "bActive", Variant::null()},
        {1, "mNotes", Variant("Line one; with a semicolon")},
        {2, "mNotes", Variant::null()},
        {3, "mNotes", Variant("It's quoted")},
        {3, "PartID", Variant(std::int32_t{3})},
    };
    for (const Case& c : cases) {
        auto rows = open("SELECT * FROM Parts WHERE PartID=" + std::to_string(c.id));
        EXPECT_EQ(rows->value(c.column), c.expected) << "part " << c.id << ", " << c.column;
    }
}

TEST_P(RecordsetTest, MoneyReadsBackToTheTenThousandth) {
    connection().execute(
        "CREATE TABLE Amounts (AmountID INTEGER PRIMARY KEY, cAmount NUMERIC(19,4))");
    const char* amounts[] = {"0.1",       "0.2",           "0.3",
                             "19.99",     "-1234.5",       "0.0001",
                             "100000.07", "12345678.9123", "99999999999.9999",
                             "0"};
    int id = 0;
    for (const char* amount : amounts)
        connection().execute("INSERT INTO Amounts VALUES (" + std::to_string(++id) + ", " + amount +
                             ")");
    auto rows = open("SELECT * FROM Amounts ORDER BY AmountID");
    for (const char* amount : amounts) {
        ASSERT_FALSE(rows->eof());
        EXPECT_EQ(rows->value("cAmount"), Variant(money(amount))) << amount;
        rows->moveNext();
    }
}

TEST_P(RecordsetTest, AggregateOverNoRowsIsNullAndOverRowsIsANumber) {
    auto none =
        open("SELECT SUM(cPrice) AS Total, SUM(pLength) AS Hours FROM Parts WHERE PartID=99");
    ASSERT_EQ(none->recordCount(), 1);
    EXPECT_TRUE(none->value("Total").isNull());
    EXPECT_TRUE(none->value("Hours").isNull());

    auto some = open("SELECT SUM(cPrice) AS Total, COUNT(*) AS N FROM Parts WHERE PartID<3");
    EXPECT_DOUBLE_EQ(some->value("Total").asDouble(), 1254.5578);
    EXPECT_EQ(some->value("N"), Variant(std::int32_t{2}));
}

TEST_P(RecordsetTest, BareTableNameIsTheWholeSource) {
    for (const char* source : {"Parts", " Parts ", "\"Parts\""}) {
        if (GetParam() != Backend::SQLite && source[0] == '"')
            continue; // quoted is exact case
        auto rows = open(source);
        EXPECT_EQ(rows->recordCount(), 3) << source;
    }
}

TEST_P(RecordsetTest, DatabaseErrorsCarryTheDatabasesOwnMessage) {
    struct Case {
        const char* sql;
        const char* mentions;
    };
    const Case cases[] = {
        {"SELECT * FROM NoSuchTable", "nosuchtable"},
        {"SELECT sNoSuchColumn FROM Parts", "snosuchcolumn"},
        {"SELECT * FROM Parts WHERE", ""},
    };
    for (const Case& c : cases) {
        try {
            open(c.sql);
            ADD_FAILURE() << c.sql << " opened";
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), db::dberr::kCommandError) << c.sql;
            std::string lowered = error.description();
            for (char& ch : lowered)
                ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
            EXPECT_NE(lowered.find(c.mentions), std::string::npos) << error.description();
            EXPECT_FALSE(error.description().empty());
        }
    }
}

TEST_P(RecordsetTest, UpdateByKeyWritesExactlyThatRowAndTheSnapshotShowsIt) {
    auto rows = open("SELECT * FROM Parts WHERE PartID=2", LockType::Optimistic);
    ASSERT_TRUE(rows->updatable());
    rows->setValue("MNOTES", Variant("Merged\r\n\r\nnotes"));
    rows->setValue("cPrice", Variant(money("21.4999")));
    rows->setValue("dAdded", Variant(Date::fromParts(2025, 1, 31)));
    rows->setValue("bActive", Variant(true));
    EXPECT_EQ(rows->value("mNotes"), Variant("Merged\r\n\r\nnotes")) << "pending value visible";
    rows->update();
    // A second write to the same row after the first, as the markup report saves twice.
    rows->setValue("sName", Variant("Head receptor 2"));
    rows->update();

    EXPECT_EQ(rows->value("cPrice"), Variant(money("21.4999")));
    EXPECT_EQ(fetch("SELECT * FROM Parts WHERE PartID=2", "mNotes"),
              Variant("Merged\r\n\r\nnotes"));
    EXPECT_EQ(fetch("SELECT * FROM Parts WHERE PartID=2", "cPrice"), Variant(money("21.4999")));
    EXPECT_EQ(fetch("SELECT * FROM Parts WHERE PartID=2", "dAdded"),
              Variant(Date::fromParts(2025, 1, 31)));
    EXPECT_EQ(fetch("SELECT * FROM Parts WHERE PartID=2", "bActive"), Variant(true));
    EXPECT_EQ(fetch("SELECT * FROM Parts WHERE PartID=2", "sName"), Variant("Head receptor 2"));
    // The other rows are untouched.
    EXPECT_EQ(fetch("SELECT * FROM Parts WHERE PartID=1", "mNotes"),
              Variant("Line one; with a semicolon"));
    EXPECT_EQ(fetch("SELECT * FROM Parts WHERE PartID=3", "cPrice"), Variant(money("0.0001")));
}

TEST_P(RecordsetTest, AKeyOfTwoColumnsNamedOutOfColumnOrderFindsTheRow) {
    // The key lists iB before iA: the row must be found by each column's own value.
    connection().execute("CREATE TABLE Pairs (iA INTEGER NOT NULL, iB INTEGER NOT NULL, "
                         "sName VARCHAR(20), PRIMARY KEY (iB, iA))");
    connection().execute("INSERT INTO Pairs VALUES (1, 2, 'first')");
    connection().execute("INSERT INTO Pairs VALUES (2, 1, 'second')");
    auto rows = open("SELECT * FROM Pairs ORDER BY iA", LockType::Optimistic);
    rows->moveNext();
    rows->setValue("sName", Variant("changed"));
    rows->update();
    EXPECT_EQ(rows->value("sName"), Variant("changed"));
    rows->moveFirst();
    rows->setValue("sName", Variant("again"));
    rows->update();
    EXPECT_EQ(fetch("SELECT * FROM Pairs WHERE iA=2 AND iB=1", "sName"), Variant("changed"));
    EXPECT_EQ(fetch("SELECT * FROM Pairs WHERE iA=1 AND iB=2", "sName"), Variant("again"));
}

TEST_P(RecordsetTest, RowsOfAKeylessTableAreRewrittenByTheirOriginalValues) {
    // The job labor report's rewrite: every figure multiplied by the quantity.
    auto rows = open("LaborScratch", LockType::Optimistic);
    ASSERT_TRUE(rows->updatable());
    for (int n = 0; n < 2 && !rows->eof(); ++n, rows->moveNext()) {
        const double quantity = rows->value("iQuantity").asLong();
        for (const char* column : {"pFabHours", "pFabTot", "pInstallTot"}) {
            const Variant v = rows->value(column);
            rows->setValue(column, v.isNull() ? v : Variant(v.asDouble() * quantity));
        }
        rows->update();
    }
    auto check = database().connect()->openRecordset("SELECT * FROM LaborScratch");
    std::vector<std::tuple<std::string, double, double, Variant>> seen;
    for (; !check->eof(); check->moveNext())
        seen.emplace_back(check->value("sElevName").asString(),
                          check->value("pFabHours").asDouble(), check->value("pFabTot").asDouble(),
                          check->value("pInstallTot"));
    std::sort(seen.begin(), seen.end(),
              [](auto& a, auto& b) { return std::get<0>(a) < std::get<0>(b); });
    ASSERT_EQ(seen.size(), 4u);
    EXPECT_EQ(seen[0],
              std::make_tuple(std::string("East storefront"), 2.25, 91.0, Variant::null()));
    EXPECT_EQ(seen[1],
              std::make_tuple(std::string("North storefront"), 7.5, 300.0, Variant(150.75)));
    EXPECT_EQ(seen[2], std::make_tuple(std::string("Twin"), 1.0, 10.0, Variant(10.0)));
    EXPECT_EQ(seen[3], std::make_tuple(std::string("Twin"), 1.0, 10.0, Variant(10.0)));
}

TEST_P(RecordsetTest, UpdateOfARowChangedElsewhereFailsAndWritesNothing) {
    struct Case {
        const char* source;
        const char* otherWriter;
    };
    const Case cases[] = {
        {"SELECT * FROM Parts WHERE PartID=1", "DELETE FROM Parts WHERE PartID=1"},
        {"SELECT * FROM LaborScratch WHERE sElevName='North storefront'",
         "UPDATE LaborScratch SET pFabTot=101 WHERE sElevName='North storefront'"},
    };
    for (const Case& c : cases) {
        auto rows = open(c.source, LockType::Optimistic);
        database().connect()->execute(c.otherWriter);
        const char* column = rows->hasColumn("sName") ? "sName" : "sElevName";
        rows->setValue(column, Variant("changed"));
        try {
            rows->update();
            ADD_FAILURE() << c.source << ": update succeeded";
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), db::dberr::kRowNotLocated);
            EXPECT_EQ(error.description(), db::kRowNotLocatedText);
        }
    }
    auto count = open("SELECT COUNT(*) AS N FROM LaborScratch WHERE sElevName='changed'");
    EXPECT_EQ(count->value("N"), Variant(std::int32_t{0}));
}

TEST_P(RecordsetTest, UpdateThatWouldTouchSeveralRowsChangesNone) {
    auto rows = open("SELECT * FROM LaborScratch WHERE sElevName='Twin'", LockType::Optimistic);
    ASSERT_EQ(rows->recordCount(), 2);
    rows->setValue("pFabTot", Variant(99.0));
    EXPECT_EQ(errorNumberOf([&] { rows->update(); }), db::dberr::kProviderError);
    auto check = open("SELECT COUNT(*) AS N FROM LaborScratch WHERE pFabTot=99");
    EXPECT_EQ(check->value("N"), Variant(std::int32_t{0}));
}

TEST_P(RecordsetTest, OnlyOneTableOpenedForWritingAcceptsChanges) {
    struct Case {
        const char* source;
        LockType lock;
    };
    const Case refused[] = {
        {"Parts", LockType::ReadOnly},
        {"SELECT * FROM Parts WHERE PartID=1", LockType::ReadOnly},
        {"SELECT sName FROM Parts WHERE PartID=1", LockType::Optimistic},
        {"SELECT * FROM Parts p, LaborScratch l WHERE p.PartID=1", LockType::Optimistic},
        {"SELECT SUM(cPrice) AS cTotal FROM Parts", LockType::Optimistic},
    };
    for (const Case& c : refused) {
        auto rows = open(c.source, c.lock);
        EXPECT_FALSE(rows->updatable()) << c.source;
        EXPECT_EQ(errorNumberOf([&] { rows->setValue(rows->columns()[0], Variant(1)); }),
                  db::dberr::kNotUpdatable)
            << c.source;
    }
}

TEST_P(RecordsetTest, MovingOnWithChangesPendingSavesThemFirst) {
    auto rows = open("SELECT * FROM Parts ORDER BY PartID", LockType::Optimistic);
    rows->setValue("iQty", Variant(std::int32_t{30}));
    rows->moveNext();
    rows->setValue("iQty", Variant(std::int32_t{120}));
    rows->cancelUpdate();
    rows->moveNext();
    EXPECT_EQ(fetch("SELECT * FROM Parts WHERE PartID=1", "iQty"), Variant(std::int32_t{30}));
    EXPECT_EQ(fetch("SELECT * FROM Parts WHERE PartID=2", "iQty"), Variant(std::int32_t{12}));
}

TEST_P(RecordsetTest, StatementObserverSeesEveryStatementSent) {
    std::vector<std::string> seen;
    connection().setStatementObserver([&](const std::string& sql) { seen.push_back(sql); });
    open("Parts");
    connection().execute("DELETE FROM Parts WHERE PartID=3");
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0], "SELECT * FROM Parts");
    EXPECT_EQ(seen[1], "DELETE FROM Parts WHERE PartID=3");
}

QR_INSTANTIATE_ON_ALL_BACKENDS(RecordsetTest);

} // namespace
} // namespace qr::test
