#pragma once
// Inside the database layer: one open Qt SQL connection with what the layer knows about it.
// Not for use outside platform/db.

#include "platform/core/variant.hpp"
#include "platform/db/connection.hpp"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace qr::db::detail {

struct Session {
    Session(const ConnectionSpec& parsed, std::string description);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// The Qt connection; raises Error when called on another thread than the one that opened
    /// it (Qt SQL connections cannot cross threads).
    QSqlDatabase database() const;

    /// The open database `sql` is about to run on, after telling the observer of it; raises
    /// Error when the connection is closed or belongs to another thread.
    QSqlDatabase databaseFor(const std::string& sql);

    /// Prepare and run `sql` with `params` bound in order; raises Error with the database's
    /// message. A forward-only query is enough for every reader here: recordsets copy rows.
    QSqlQuery run(const std::string& sql, const QVariantList& params = {});

    /// Columns of the table's primary key as the database names them; empty when the table
    /// has none (then rows are found by all their original values).
    const std::vector<std::string>& primaryKey(const std::string& table);

    [[noreturn]] void fail(const QSqlError& error) const;

    QString name;
    Engine engine;
    Dialect dialect = Dialect::SQLite;
    std::string description;
    Connection::StatementObserver observer;
    bool inTransaction = false;
    std::map<std::string, std::vector<std::string>> keys;
    std::thread::id owner = std::this_thread::get_id();
};

/// `[name]` and `"name"` without their quotes; a plain name unchanged.
std::string unquoteIdentifier(const std::string& name);

/// Whether `text` is a plain, bracketed or double-quoted identifier.
bool isIdentifier(std::string_view text);

} // namespace qr::db::detail
