#include "platform/db/recordset.hpp"

#include "platform/core/text.hpp"
#include "platform/db/db_error.hpp"
#include "platform/db/field_values.hpp"
#include "platform/db/session.hpp"
#include "platform/db/sqlite_rows.hpp"

#include <QSqlDriver>
#include <QSqlError>
#include <QSqlField>
#include <QSqlRecord>
#include <algorithm>
#include <cctype>
#include <regex>

namespace qr::db {
namespace {

/// The table of "SELECT * FROM T", optionally followed by WHERE or ORDER BY; "" otherwise.
std::string singleTableOf(const std::string& sql) {
    static const std::regex pattern(
        R"(^\s*select\s+\*\s+from\s+([A-Za-z_][A-Za-z0-9_]*|\[[A-Za-z_][A-Za-z0-9_]*\]|"[A-Za-z_][A-Za-z0-9_]*")(\s+(where|order)\b[\s\S]*)?\s*;?\s*$)",
        std::regex::icase | std::regex::ECMAScript);
    std::smatch match;
    if (std::regex_match(sql, match, pattern))
        return match[1].str();
    return {};
}

bool locksForWriting(LockType lock) {
    return lock == LockType::Optimistic || lock == LockType::Pessimistic ||
           lock == LockType::BatchOptimistic;
}

/// A query's rows as Qt's driver gives them. The query reads forward only, so the driver
/// holds one row at a time and the recordset's packed copy is the only one of the result.
class DriverRows {
  public:
    explicit DriverRows(QSqlQuery query) : m_query(std::move(query)), m_record(m_query.record()) {}
    bool next() { return m_query.next(); }
    int columns() const { return m_record.count(); }
    std::string name(int column) const { return m_record.fieldName(column).toStdString(); }
    QMetaType declared(int column) const { return m_record.field(column).metaType(); }
    Variant value(int column, ColumnKind kind, QMetaType declared) const {
        return fromDriverValue(m_query.value(column), kind, declared);
    }
    QVariant raw(int column) const { return m_query.value(column); }

  private:
    QSqlQuery m_query;
    QSqlRecord m_record;
};

[[noreturn]] void raise(int number, const char* text) {
    throw Error(number, kRecordsetSource, text);
}

} // namespace

Recordset::Recordset(std::shared_ptr<detail::Session> session, const std::string& source,
                     CursorType /*cursor: every cursor is read as a snapshot*/, LockType lock)
    : m_source(source) {
    const std::string trimmedSource(trimmed(source));
    std::string sql = source;
    std::string table;
    if (detail::isIdentifier(trimmedSource)) {
        // A bare table name is the whole source, as the classic library accepted it.
        sql = "SELECT * FROM " + trimmedSource;
        table = trimmedSource;
    } else {
        table = singleTableOf(source);
    }
    if (locksForWriting(lock) && !table.empty())
        m_table = table;
    m_session = std::move(session);
    readRows(sql);
    // Read-only recordsets are plain snapshots; only writers keep the database.
    if (m_table.empty())
        m_session.reset();
    m_open = true;
}

Recordset::~Recordset() = default;

void Recordset::readRows(const std::string& sql) {
    // The table's key is looked up first: on some drivers (PostgreSQL) a second query on the
    // connection ends a forward-only read in progress.
    const std::vector<std::string> keys =
        m_table.empty() ? std::vector<std::string>{} : m_session->primaryKey(m_table);
    if (detail::canReadSqliteDirectly(*m_session)) {
        detail::SqliteRows rows(*m_session, sql);
        readFrom(rows, keys);
    } else {
        DriverRows rows(m_session->run(sql));
        readFrom(rows, keys);
    }
}

template <class Rows> void Recordset::readFrom(Rows& rows, const std::vector<std::string>& keys) {
    bool more = rows.next();
    const int count = rows.columns();
    for (int i = 0; i < count; ++i) {
        std::string name = rows.name(i);
        m_kinds.push_back(columnKindOf(name));
        m_declared.push_back(rows.declared(i));
        m_index.emplace(lowerCase(name), static_cast<std::size_t>(i)); // the first of a name wins
        m_columns.push_back(std::move(name));
    }
    m_values = RowStore(m_columns.size());
    if (!m_table.empty())
        m_whereColumns = whereColumns(keys);
    m_raw = RowStore(m_whereColumns.size());
    const bool keepRaw = !m_table.empty();
    for (; more; more = rows.next()) {
        m_values.beginRow();
        for (int i = 0; i < count; ++i)
            m_values.append(rows.value(i, m_kinds[i], m_declared[i]));
        if (keepRaw) {
            m_raw.beginRow();
            for (std::size_t column : m_whereColumns)
                m_raw.append(rows.raw(static_cast<int>(column)));
        }
        ++m_rowCount;
    }
    m_values.shrinkToFit();
    m_raw.shrinkToFit();
}

std::vector<std::size_t> Recordset::whereColumns(const std::vector<std::string>& keys) const {
    std::vector<std::size_t> columns;
    for (const std::string& key : keys) {
        auto found = m_index.find(lowerCase(key));
        if (found == m_index.end()) {
            columns.clear();
            break;
        }
        columns.push_back(found->second);
    }
    if (columns.empty())
        for (std::size_t c = 0; c < m_columns.size(); ++c)
            columns.push_back(c);
    return columns;
}

bool Recordset::eof() const {
    return !m_open || m_row >= m_rowCount;
}
bool Recordset::bof() const {
    return m_open && m_rowCount == 0;
}

void Recordset::moveNext() {
    if (!m_open)
        raise(dberr::kObjectClosed, kObjectClosedText);
    if (eof())
        raise(dberr::kNoCurrentRecord, kNoCurrentRecordText);
    update();
    ++m_row;
}

void Recordset::moveFirst() {
    if (!m_open)
        raise(dberr::kObjectClosed, kObjectClosedText);
    update();
    m_row = 0;
}

long Recordset::recordCount() const {
    if (!m_open)
        raise(dberr::kObjectClosed, kObjectClosedText);
    return static_cast<long>(m_rowCount);
}

const std::vector<std::string>& Recordset::columns() const {
    return m_columns;
}

bool Recordset::hasColumn(std::string_view name) const {
    return m_index.count(lowerCase(name)) != 0;
}

std::size_t Recordset::columnIndex(std::string_view name) const {
    auto found = m_index.find(lowerCase(name));
    if (found == m_index.end())
        raise(dberr::kItemNotFound, kItemNotFoundText);
    return found->second;
}

void Recordset::requireCurrentRow() const {
    if (!m_open)
        raise(dberr::kObjectClosed, kObjectClosedText);
    if (eof())
        raise(dberr::kNoCurrentRecord, kNoCurrentRecordText);
}

Variant Recordset::value(std::string_view name) const {
    if (!m_open)
        raise(dberr::kObjectClosed, kObjectClosedText);
    const std::size_t column = columnIndex(name);
    requireCurrentRow();
    if (auto pending = m_pending.find(column); pending != m_pending.end())
        return asStored(column, pending->second);
    return m_values.value(m_row, column);
}

Variant Recordset::valueAt(std::size_t column) const {
    if (!m_open)
        raise(dberr::kObjectClosed, kObjectClosedText);
    if (column >= m_columns.size())
        raise(dberr::kItemNotFound, kItemNotFoundText);
    requireCurrentRow();
    if (auto pending = m_pending.find(column); pending != m_pending.end())
        return asStored(column, pending->second);
    return m_values.value(m_row, column);
}

void Recordset::close() {
    m_pending.clear();
    m_values.clear();
    m_raw.clear();
    m_session.reset();
    m_open = false;
}

void Recordset::setValue(std::string_view name, const Variant& value) {
    if (!m_open)
        raise(dberr::kObjectClosed, kObjectClosedText);
    if (!updatable())
        raise(dberr::kNotUpdatable, kNotUpdatableText);
    const std::size_t column = columnIndex(name);
    requireCurrentRow();
    m_pending[column] = value;
}

void Recordset::cancelUpdate() {
    m_pending.clear();
}

Variant Recordset::asStored(std::size_t column, const Variant& value) const {
    const bool dateAsText = m_session && m_session->engine == Engine::SQLite;
    return fromDriverValue(toBindValue(value, dateAsText), m_kinds[column], m_declared[column]);
}

std::string Recordset::whereClause(QVariantList& params) const {
    const QSqlDriver* driver = m_session->database().driver();
    std::string where;
    for (std::size_t w = 0; w < m_whereColumns.size(); ++w) {
        const std::size_t column = m_whereColumns[w];
        const QVariant original = m_raw.raw(m_row, w);
        const std::string name =
            driver
                ->escapeIdentifier(QString::fromStdString(m_columns[column]), QSqlDriver::FieldName)
                .toStdString();
        if (!where.empty())
            where += " AND ";
        if (!original.isValid() || original.isNull()) {
            where += name + " IS NULL";
        } else {
            where += name + " = ?";
            params << original;
        }
    }
    return where;
}

void Recordset::update() {
    if (m_pending.empty())
        return;
    requireCurrentRow();
    const QSqlDriver* driver = m_session->database().driver();
    const bool dateAsText = m_session->engine == Engine::SQLite;

    std::string sql = "UPDATE " + m_table + " SET ";
    QVariantList params;
    std::vector<std::pair<std::size_t, QVariant>> written;
    bool first = true;
    for (const auto& [column, value] : m_pending) {
        if (!first)
            sql += ", ";
        first = false;
        sql +=
            driver
                ->escapeIdentifier(QString::fromStdString(m_columns[column]), QSqlDriver::FieldName)
                .toStdString();
        if (value.type() == VarType::Currency) {
            // Exact decimal literal: no driver gets the chance to make a double of it.
            const std::string literal = sqlMoneyLiteral(value.asCurrency());
            sql += " = " + literal;
            written.emplace_back(column, QVariant(QString::fromStdString(literal)));
        } else {
            sql += " = ?";
            QVariant bound = toBindValue(value, dateAsText);
            params << bound;
            written.emplace_back(column, bound);
        }
    }

    sql += " WHERE " + whereClause(params);

    // Run alone in a transaction, so that an update that would touch several rows touches none.
    QSqlDatabase db = m_session->database();
    const bool ownTransaction = !m_session->inTransaction &&
                                db.driver()->hasFeature(QSqlDriver::Transactions) &&
                                db.transaction();
    long affected = 0;
    try {
        QSqlQuery query = m_session->run(sql, params);
        affected = query.numRowsAffected();
    } catch (...) {
        if (ownTransaction)
            db.rollback();
        throw;
    }
    if (affected != 1) {
        if (ownTransaction)
            db.rollback();
        if (affected == 0)
            throw Error(dberr::kRowNotLocated, kRecordsetSource, kRowNotLocatedText);
        throw Error(dberr::kProviderError, kRecordsetSource, kTooManyRowsText);
    }
    if (ownTransaction && !db.commit())
        m_session->fail(db.lastError());

    for (const auto& [column, value] : m_pending)
        m_values.set(m_row, column, asStored(column, value));
    for (const auto& [column, bound] : written)
        for (std::size_t w = 0; w < m_whereColumns.size(); ++w)
            if (m_whereColumns[w] == column)
                m_raw.set(m_row, w, bound);
    m_pending.clear();
}

} // namespace qr::db
