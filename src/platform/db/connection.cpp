#include "platform/db/connection.hpp"

#include "platform/db/db_error.hpp"
#include "platform/db/field_values.hpp"
#include "platform/db/recordset.hpp"
#include "platform/db/session.hpp"

#include <QSqlDriver>
#include <QSqlError>
#include <QSqlIndex>
#include <QSqlRecord>
#include <QStringList>
#include <QThread>
#include <algorithm>
#include <atomic>
#include <cctype>

namespace qr::db {
namespace detail {
namespace {

QString uniqueConnectionName() {
    static std::atomic<unsigned long long> counter{0};
    return QStringLiteral("qr-db-%1-%2")
        .arg(reinterpret_cast<quintptr>(QThread::currentThreadId()))
        .arg(++counter);
}

bool isPlainIdentifier(std::string_view text) {
    if (text.empty())
        return false;
    auto first = static_cast<unsigned char>(text[0]);
    if (!std::isalpha(first) && first != '_')
        return false;
    return std::all_of(text.begin(), text.end(),
                       [](unsigned char c) { return std::isalnum(c) || c == '_'; });
}

/// Ask an ODBC data source how it joins text: `||` on SQLite and PostgreSQL (and the other
/// ANSI databases), `+` on SQL Server and Access, where `||` is not text concatenation.
Dialect probeOdbcDialect(const QSqlDatabase& db) {
    QSqlQuery probe(db);
    probe.setForwardOnly(true);
    if (!probe.exec(QStringLiteral("SELECT 'a' || 'b'")) || !probe.next() ||
        probe.value(0).toString() != QStringLiteral("ab"))
        return Dialect::Classic;
    QSqlQuery sqlite(db);
    if (sqlite.exec(QStringLiteral("SELECT sqlite_version()")))
        return Dialect::SQLite;
    return Dialect::PostgreSQL;
}

/// Qt's ODBC driver passes a string naming a driver or server to the driver manager as it is,
/// and puts "DSN=" in front of anything else, so a data-source string must reach it as the
/// data-source name followed by its other attributes.
QString odbcStringForQt(const std::string& odbc) {
    const QString text = QString::fromStdString(odbc);
    const QString upper = text.toUpper();
    if (upper.contains(QStringLiteral("DRIVER=")) || upper.contains(QStringLiteral("SERVER=")) ||
        upper.contains(QStringLiteral(".DSN")))
        return text;
    QString dsn;
    QStringList others;
    for (const QString& part : text.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const qsizetype eq = part.indexOf(QLatin1Char('='));
        if (eq > 0 &&
            part.left(eq).trimmed().compare(QStringLiteral("DSN"), Qt::CaseInsensitive) == 0)
            dsn = part.mid(eq + 1).trimmed();
        else
            others << part;
    }
    if (dsn.isEmpty())
        return text;
    others.prepend(dsn);
    return others.join(QLatin1Char(';'));
}

} // namespace

bool isIdentifier(std::string_view text) {
    if (text.size() > 2 && ((text.front() == '[' && text.back() == ']') ||
                            (text.front() == '"' && text.back() == '"')))
        return isPlainIdentifier(text.substr(1, text.size() - 2));
    return isPlainIdentifier(text);
}

std::string unquoteIdentifier(const std::string& name) {
    if (name.size() > 2 && ((name.front() == '[' && name.back() == ']') ||
                            (name.front() == '"' && name.back() == '"')))
        return name.substr(1, name.size() - 2);
    return name;
}

Session::Session(const ConnectionSpec& parsed, std::string desc)
    : name(uniqueConnectionName()), engine(parsed.engine), description(std::move(desc)) {
    QSqlDatabase db;
    switch (parsed.engine) {
    case Engine::SQLite:
        db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(QString::fromStdString(parsed.path));
        db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
        dialect = Dialect::SQLite;
        break;
    case Engine::PostgreSQL:
        db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), name);
        db.setHostName(QString::fromStdString(parsed.host));
        db.setPort(parsed.port);
        db.setDatabaseName(QString::fromStdString(parsed.database));
        if (!parsed.user.empty())
            db.setUserName(QString::fromStdString(parsed.user));
        if (!parsed.password.empty())
            db.setPassword(QString::fromStdString(parsed.password));
        db.setConnectOptions(QStringLiteral("connect_timeout=10"));
        dialect = Dialect::PostgreSQL;
        break;
    case Engine::Odbc:
        db = QSqlDatabase::addDatabase(QStringLiteral("QODBC"), name);
        db.setDatabaseName(odbcStringForQt(parsed.odbc));
        db.setConnectOptions(QStringLiteral("SQL_ATTR_LOGIN_TIMEOUT=10"));
        break;
    }
    if (!db.isValid() || !db.open()) {
        QSqlError error = db.lastError();
        std::string why = error.databaseText().trimmed().toStdString();
        if (why.empty())
            why = error.driverText().toStdString();
        if (why.empty())
            why = "the database driver is not available";
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(name);
        throw Error(dberr::kProviderError, kConnectionSource,
                    "Cannot open the database " + description + ": " + why);
    }
    if (engine == Engine::Odbc)
        dialect = probeOdbcDialect(db);
    if (engine == Engine::SQLite) {
        // Sorts in memory: a report's ORDER BY over a whole job's lines is sorted in one piece
        // instead of being spilled to temporary files in slices and merged back.
        QSqlQuery(db).exec(QStringLiteral("PRAGMA temp_store = MEMORY"));
    }
}

QSqlDatabase Session::database() const {
    if (std::this_thread::get_id() != owner)
        throw Error(dberr::kProviderError, description,
                    "The connection " + description +
                        " was opened on another thread; open one on this thread");
    return QSqlDatabase::database(name, false);
}

Session::~Session() {
    if (std::this_thread::get_id() == owner) {
        QSqlDatabase db = database();
        if (db.isOpen()) {
            if (inTransaction)
                db.rollback();
            db.close();
        }
    }
    QSqlDatabase::removeDatabase(name);
}

void Session::fail(const QSqlError& error) const {
    std::string text = error.databaseText().trimmed().toStdString();
    if (text.empty())
        text = error.driverText().trimmed().toStdString();
    throw Error(dberr::kCommandError, description, text);
}

QSqlDatabase Session::databaseFor(const std::string& sql) {
    QSqlDatabase db = database();
    if (!db.isOpen())
        throw Error(dberr::kObjectClosed, description, kObjectClosedText);
    if (observer)
        observer(sql);
    return db;
}

QSqlQuery Session::run(const std::string& sql, const QVariantList& params) {
    QSqlQuery query(databaseFor(sql));
    query.setForwardOnly(true);
    query.setNumericalPrecisionPolicy(QSql::HighPrecision);
    const QString text = QString::fromStdString(sql);
    bool ok;
    if (params.isEmpty()) {
        ok = query.exec(text);
    } else {
        ok = query.prepare(text);
        if (ok) {
            for (const QVariant& p : params)
                query.addBindValue(p);
            ok = query.exec();
        }
    }
    if (!ok)
        fail(query.lastError());
    return query;
}

const std::vector<std::string>& Session::primaryKey(const std::string& table) {
    if (auto found = keys.find(table); found != keys.end())
        return found->second;
    const bool quoted = table.size() > 2 && (table.front() == '"' || table.front() == '[');
    std::string bare = unquoteIdentifier(table);
    QStringList candidates{QString::fromStdString(bare)};
    // Unquoted names are folded by the database (PostgreSQL to lower case).
    if (!quoted) {
        candidates << QString::fromStdString(bare).toLower()
                   << QString::fromStdString(bare).toUpper();
    }
    std::vector<std::string> columns;
    QSqlDatabase db = database();
    for (const QString& candidate : candidates) {
        const QSqlIndex index = db.primaryIndex(candidate);
        for (int i = 0; i < index.count(); ++i)
            columns.push_back(index.fieldName(i).toStdString());
        if (!columns.empty())
            break;
    }
    return keys.emplace(table, std::move(columns)).first->second;
}

} // namespace detail

std::string concatenateText(Dialect dialect, const std::vector<std::string>& parts) {
    std::string out;
    for (const std::string& part : parts) {
        if (dialect == Dialect::Classic) {
            if (!out.empty())
                out += '+';
            out += part;
        } else {
            if (!out.empty())
                out += " || ";
            out += "COALESCE(" + part + ", '')";
        }
    }
    return out;
}

Connection::Connection(std::string_view connectionString) {
    ConnectionSpec parsed = parseConnectionString(connectionString);
    m_session = std::make_shared<detail::Session>(parsed, maskConnectionString(connectionString));
}

Connection::~Connection() = default;

Engine Connection::engine() const {
    return m_session->engine;
}
Dialect Connection::dialect() const {
    return m_session->dialect;
}
std::string Connection::describe() const {
    return m_session->description;
}

std::unique_ptr<Recordset> Connection::openRecordset(const std::string& source, CursorType cursor,
                                                     LockType lock) {
    return std::make_unique<Recordset>(m_session, source, cursor, lock);
}

std::unique_ptr<RowCursor> Connection::openRows(const std::string& source, CursorType cursor,
                                                LockType lock) {
    return openRecordset(source, cursor, lock);
}

long Connection::execute(const std::string& sql, const std::vector<Variant>& params) {
    QVariantList bound;
    const bool dateAsText = m_session->engine == Engine::SQLite;
    for (const Variant& v : params)
        bound << toBindValue(v, dateAsText);
    QSqlQuery query = m_session->run(sql, bound);
    return query.numRowsAffected();
}

void Connection::executeMany(const std::string& sql,
                             const std::vector<std::vector<Variant>>& rows) {
    if (rows.empty())
        return;
    QSqlDatabase db = m_session->database();
    if (!db.isOpen())
        throw Error(dberr::kObjectClosed, describe(), kObjectClosedText);
    if (m_session->observer)
        m_session->observer(sql);
    QSqlQuery query(db);
    if (!query.prepare(QString::fromStdString(sql)))
        m_session->fail(query.lastError());
    const bool dateAsText = m_session->engine == Engine::SQLite;
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i)
            query.bindValue(static_cast<int>(i), toBindValue(row[i], dateAsText));
        if (!query.exec())
            m_session->fail(query.lastError());
    }
}

bool Connection::tableExists(std::string_view name) const {
    const QString wanted =
        QString::fromStdString(detail::unquoteIdentifier(std::string(name))).toLower();
    const QSqlDatabase db = m_session->database();
    for (QSql::TableType type : {QSql::Tables, QSql::Views})
        for (const QString& table : db.tables(type))
            if (table.toLower() == wanted)
                return true;
    return false;
}

void Connection::beginTransaction() {
    QSqlDatabase db = m_session->database();
    if (!db.transaction())
        m_session->fail(db.lastError());
    m_session->inTransaction = true;
}

void Connection::commit() {
    QSqlDatabase db = m_session->database();
    if (!db.commit())
        m_session->fail(db.lastError());
    m_session->inTransaction = false;
}

void Connection::rollback() {
    QSqlDatabase db = m_session->database();
    m_session->inTransaction = false;
    if (!db.rollback())
        m_session->fail(db.lastError());
}

bool Connection::inTransaction() const {
    return m_session->inTransaction;
}

std::string Connection::concatenate(const std::vector<std::string>& parts) const {
    return concatenateText(m_session->dialect, parts);
}

void Connection::setStatementObserver(StatementObserver observer) {
    m_session->observer = std::move(observer);
}

Transaction::Transaction(Connection& connection) : m_connection(connection) {
    m_connection.beginTransaction();
}

Transaction::~Transaction() {
    if (m_done)
        return;
    try {
        m_connection.rollback();
    } catch (const Error&) {
        // Nothing more can be done for a transaction whose connection has failed.
    }
}

void Transaction::commit() {
    m_connection.commit();
    m_done = true;
}

} // namespace qr::db
