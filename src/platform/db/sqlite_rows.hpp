#pragma once
// Inside the database layer: a query's rows read through SQLite's own interface. Qt's driver hands
// every value over as a QVariant and every text as UTF-16, which the row store turns back into
// UTF-8; read here, text stays UTF-8 from the database file to the page. The values are the ones
// the driver route gives: numbers, blobs and Nulls are handed to the same conversions as the
// driver's values of the same storage class, and a text that is not well-formed UTF-8 goes the
// driver's way.
//
// The statement runs on the connection's own SQLite handle, so it sees the connection's open
// transaction and busy timeout.

#include "platform/core/variant.hpp"

#include <QMetaType>
#include <QVariant>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace qr::db {
enum class ColumnKind;
}

namespace qr::db::detail {

struct Session;

class SqliteRows {
  public:
    /// Prepares `sql` on the session's SQLite database; raises Error with SQLite's message when
    /// it is refused, and when the text holds more than one statement.
    SqliteRows(Session& session, const std::string& sql);
    ~SqliteRows();
    SqliteRows(const SqliteRows&) = delete;
    SqliteRows& operator=(const SqliteRows&) = delete;

    /// Moves to the next row; false after the last. Raises Error when the database fails.
    bool next();

    int columns() const;
    /// A column's name as the driver gives it (double quotes removed).
    std::string name(int column) const;
    /// The type the driver reports for a column: from its declared type, or for an expression
    /// from the first row's value. Known once next() has been called.
    QMetaType declared(int column) const { return m_declared[static_cast<std::size_t>(column)]; }
    /// The current row's value of a column, as fromDriverValue gives it.
    Variant value(int column, ColumnKind kind, QMetaType declared) const;
    /// The current row's value of a column as the driver's own value (what an update binds to
    /// find the row again).
    QVariant raw(int column) const;

  private:
    [[noreturn]] void fail(const std::string& text) const;
    std::string_view utf8(int column) const;

    sqlite3* m_db = nullptr;
    sqlite3_stmt* m_statement = nullptr;
    std::string m_description;
    std::vector<QMetaType> m_declared; // filled at the first next()
};

/// Whether the session's database is SQLite reached through the driver that lends its handle.
bool canReadSqliteDirectly(const Session& session);

} // namespace qr::db::detail
