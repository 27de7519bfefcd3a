// SQLite recordsets read their rows through SQLite's own interface. What they give must be
// what Qt's driver gives for the same rows, value for value, whatever a column's name, declared
// type and stored value.
#include "platform/db/db_error.hpp"
#include "platform/db/field_values.hpp"
#include "platform/db/recordset.hpp"
#include "platform/db/test_databases.hpp"

#include <QSqlDatabase>
#include <QSqlField>
#include <QSqlQuery>
#include <QSqlRecord>
#include <gtest/gtest.h>

namespace qr::test {
namespace {

/// The rows of `sql` as Qt's driver gives them, converted as the recordsets convert driver
/// values; one vector per row.
std::vector<std::vector<Variant>> throughTheDriver(const std::string& file,
                                                   const std::string& sql) {
    std::vector<std::vector<Variant>> rows;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), "driver-view");
        db.setDatabaseName(QString::fromStdString(file));
        EXPECT_TRUE(db.open());
        QSqlQuery query(db);
        query.setForwardOnly(true);
        EXPECT_TRUE(query.exec(QString::fromStdString(sql))) << sql;
        const QSqlRecord record = query.record();
        while (query.next()) {
            rows.emplace_back();
            for (int i = 0; i < record.count(); ++i)
                rows.back().push_back(db::fromDriverValue(
                    query.value(i), db::columnKindOf(record.fieldName(i).toStdString()),
                    record.field(i).metaType()));
        }
    }
    QSqlDatabase::removeDatabase("driver-view");
    return rows;
}

class SqliteRowsTest : public ::testing::Test {
  protected:
    TestDatabase m_database{Backend::SQLite};
    std::string file() const { return m_database.connectionString().substr(7); }
    db::Connection& connection() { return *m_database.connection(); }
};

TEST_F(SqliteRowsTest, EveryValueReadsAsTheDriverGivesIt) {
    // Each kind of column twice: without a declared type (SQLite keeps any value as it came)
    // and with the type a job database declares (SQLite converts some values on the way in).
    connection().execute(
        "CREATE TABLE Mixed (sName, pLength, cPrice, iQty, bActive, dAdded, Misc, "
        "sNameT VARCHAR(40), pLengthD DOUBLE PRECISION, pLengthR REAL, cPriceN NUMERIC(19,4), "
        "iQtyI INTEGER, bActiveB BOOLEAN, dAddedT TIMESTAMP, MiscN NUMERIC, MiscB BLOB)");
    const char* values[] = {"42",
                            "-7",
                            "0",
                            "2.5",
                            "0.1",
                            "1e20",
                            "-1234.5678",
                            "4294967296",
                            "'Sill flashing'",
                            "'Été € 😀'",
                            "''",
                            "'12.5'",
                            "' 17 '",
                            "'true'",
                            "'-1'",
                            "'2024-03-15'",
                            "'2024-03-16 14:30:00'",
                            "'2024-03-16T08:05'",
                            "X'00FF41'",
                            "CAST(X'C3' AS TEXT)",
                            "CAST(X'61FF62' AS TEXT)",
                            "CAST(X'EDA080' AS TEXT)",
                            "NULL"};
    for (const char* value : values) {
        std::string row;
        for (int column = 0; column < 16; ++column)
            row += std::string(column ? ", " : "") + value;
        connection().execute("INSERT INTO Mixed VALUES (" + row + ")");
    }
    const std::string queries[] = {
        "SELECT * FROM Mixed ORDER BY rowid",
        // Expressions have no declared type: the driver types them by their first value.
        "SELECT Misc AS MiscCopy, Misc || '' AS sJoined, pLength + 0 AS pSum, "
        "typeof(Misc) AS Kind, SUM(iQty) OVER () AS Total FROM Mixed ORDER BY rowid DESC",
        "SELECT Misc AS MiscCopy, dAdded AS dCopy FROM Mixed WHERE rowid > 8 ORDER BY rowid",
    };
    for (const std::string& sql : queries) {
        const auto expected = throughTheDriver(file(), sql);
        for (LockType lock : {LockType::ReadOnly, LockType::Optimistic}) {
            auto rows = connection().openRecordset(sql, CursorType::Static, lock);
            ASSERT_EQ(rows->recordCount(), static_cast<long>(expected.size())) << sql;
            for (std::size_t r = 0; r < expected.size(); ++r, rows->moveNext())
                for (std::size_t c = 0; c < expected[r].size(); ++c)
                    EXPECT_EQ(rows->valueAt(c), expected[r][c])
                        << sql << "\n  row " << r << ", " << rows->columns()[c];
        }
    }
}

TEST_F(SqliteRowsTest, RowsOfAKeylessTableWithAnyValuesAreFoundForUpdate) {
    // An update finds a keyless row by the values it was read with, so those must bind back
    // exactly: text with accents, whole numbers beyond 32 bits, fractions, blobs and Nulls.
    connection().execute("CREATE TABLE Scratch (sName, Misc, pLength DOUBLE PRECISION, iQty)");
    connection().execute("INSERT INTO Scratch VALUES ('Été', 9223372036854775807, 0.1, NULL)");
    connection().execute("INSERT INTO Scratch VALUES ('Été', X'00FF', 0.1, 3)");
    auto rows = connection().openRecordset("Scratch", CursorType::Static, LockType::Optimistic);
    for (int n = 1; !rows->eof(); rows->moveNext(), ++n) {
        rows->setValue("iQty", Variant(std::int32_t{n * 10}));
        rows->update();
    }
    auto check = connection().openRecordset("SELECT iQty FROM Scratch ORDER BY rowid");
    EXPECT_EQ(check->valueAt(0), Variant(std::int32_t{10}));
    check->moveNext();
    EXPECT_EQ(check->valueAt(0), Variant(std::int32_t{20}));
}

TEST_F(SqliteRowsTest, AFailureAfterTheFirstRowIsAnErrorNotAShorterSnapshot) {
    connection().execute("CREATE TABLE Numbers (iValue INTEGER)");
    connection().execute("INSERT INTO Numbers VALUES (1), (2), (3)");
    struct Case {
        const char* sql;
        const char* mentions;
    } cases[] = {
        // abs() of the smallest whole number overflows, on the second row only.
        {"SELECT CASE WHEN iValue > 1 THEN abs(-9223372036854775807 - 1) ELSE iValue END AS iX "
         "FROM Numbers ORDER BY iValue",
         "overflow"},
        {"SELECT * FROM Numbers; DELETE FROM Numbers", "multiple statements"},
        {"   ", "empty"},
    };
    for (const Case& c : cases) {
        try {
            connection().openRecordset(c.sql);
            ADD_FAILURE() << c.sql << " opened";
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), db::dberr::kCommandError) << c.sql;
            EXPECT_NE(error.description().find(c.mentions), std::string::npos)
                << error.description();
        }
    }
    EXPECT_EQ(connection().openRecordset("Numbers")->recordCount(), 3) << "nothing was deleted";
}

} // namespace
} // namespace qr::test
