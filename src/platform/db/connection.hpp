#pragma once
// A database connection: the host's vendor or master database, the connection a final glass
// report receives with its data, or a test database. It is what the reports open recordsets
// on, what the engine's data control reads, and what the sample writer fills.
//
// Each Connection owns one uniquely named Qt SQL connection. Qt SQL connections belong to the
// thread that made them, as module state in this system belongs to its thread: make, use and
// destroy a Connection on one thread.

#include "platform/core/rows.hpp"
#include "platform/db/connection_string.hpp"
#include "platform/db/recordset.hpp"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qr::db {

namespace detail {
struct Session;
}

/// What differs in the grammar of the databases the statements run on.
enum class Dialect {
    SQLite,     ///< `||` joins text; names quoted with "..." or [...]
    PostgreSQL, ///< `||` joins text; names quoted with "..." only
    Classic     ///< SQL Server, Access and the rest reached by ODBC: `+` joins text, [...]
};

/// Text expression joining `parts` (column names or expressions) as `dialect` joins text: the
/// classic `a+b+c` where `+` is concatenation, else `COALESCE(a, '') || ...` so that one Null
/// part does not make the whole text Null. The one place where statement grammar differs.
std::string concatenateText(Dialect dialect, const std::vector<std::string>& parts);

class Connection : public RowProvider {
  public:
    /// Open the database a connection string names (see connection_string.hpp). Raises Error
    /// naming the string, password masked, when the string is malformed or the database cannot
    /// be reached. A SQLite file is created when it does not exist yet.
    explicit Connection(std::string_view connectionString);
    ~Connection() override;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    Engine engine() const;
    /// For ODBC, found by asking the database at the open (how it joins text).
    Dialect dialect() const;
    /// The connection string with its password masked.
    std::string describe() const override;

    /// Open a recordset (see recordset.hpp). `source` is SQL text or a bare table name.
    std::unique_ptr<Recordset> openRecordset(const std::string& source,
                                             CursorType cursor = CursorType::Static,
                                             LockType lock = LockType::ReadOnly);
    /// The same, as the engine's data control sees it.
    std::unique_ptr<RowCursor> openRows(const std::string& source, CursorType cursor,
                                        LockType lock) override;

    /// Run a statement that returns no rows (DDL, INSERT, UPDATE, DELETE), with `params` bound
    /// to its `?` placeholders in order; returns the number of rows it touched (-1 when the
    /// database does not say). Raises Error with the database's message when it fails.
    long execute(const std::string& sql, const std::vector<Variant>& params = {});
    /// Run one statement once per parameter row, prepared once.
    void executeMany(const std::string& sql, const std::vector<std::vector<Variant>>& rows);

    /// Whether a table (or view) of that name exists, without regard to case.
    bool tableExists(std::string_view name) const;

    void beginTransaction();
    void commit();
    void rollback();
    bool inTransaction() const;

    /// concatenateText for this connection's dialect.
    std::string concatenate(const std::vector<std::string>& parts) const;

    /// Called with the text of every statement just before it is sent to the database. Tests
    /// use it to prove that refused input never reaches a database.
    using StatementObserver = std::function<void(const std::string& sql)>;
    void setStatementObserver(StatementObserver observer);

  private:
    // Shared by the connection and the recordsets that may still write back through it, so
    // that an updatable recordset keeps its database open as it did in the classic library.
    std::shared_ptr<detail::Session> m_session;
};

/// Begins a transaction and rolls it back unless commit() is called.
class Transaction {
  public:
    explicit Transaction(Connection& connection);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit();

  private:
    Connection& m_connection;
    bool m_done = false;
};

} // namespace qr::db
