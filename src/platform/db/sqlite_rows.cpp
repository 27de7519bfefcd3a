#include "platform/db/sqlite_rows.hpp"

#include "platform/core/text.hpp"
#include "platform/db/db_error.hpp"
#include "platform/db/field_values.hpp"
#include "platform/db/session.hpp"

#include <QByteArray>
#include <QSqlDriver>
#include <QString>
#include <cstring>
#include <sqlite3.h>

namespace qr::db::detail {
namespace {

/// The connection's SQLite handle, or null when its driver does not lend one.
sqlite3* handleOf(const QSqlDatabase& db) {
    const QSqlDriver* driver = db.driver();
    if (driver == nullptr)
        return nullptr;
    const QVariant handle = driver->handle();
    if (!handle.isValid() || std::strcmp(handle.typeName(), "sqlite3*") != 0)
        return nullptr;
    return *static_cast<sqlite3* const*>(handle.constData());
}

/// The driver's type for a declared column type (compared without regard to case).
QMetaType typeOfDeclaration(std::string_view declaration) {
    const std::string name = lowerCase(declaration);
    if (name == "integer" || name == "int")
        return QMetaType(QMetaType::Int);
    if (name == "double" || name == "float" || name == "real" || name.starts_with("numeric"))
        return QMetaType(QMetaType::Double);
    if (name == "blob")
        return QMetaType(QMetaType::QByteArray);
    if (name == "boolean" || name == "bool")
        return QMetaType(QMetaType::Bool);
    return QMetaType(QMetaType::QString);
}

/// The driver's type for a column without a declared type, from its first value.
QMetaType typeOfStorageClass(int storageClass) {
    switch (storageClass) {
    case SQLITE_INTEGER:
        return QMetaType(QMetaType::Int);
    case SQLITE_FLOAT:
        return QMetaType(QMetaType::Double);
    case SQLITE_BLOB:
        return QMetaType(QMetaType::QByteArray);
    case SQLITE_TEXT:
        return QMetaType(QMetaType::QString);
    default:
        return QMetaType();
    }
}

} // namespace

bool canReadSqliteDirectly(const Session& session) {
    return session.engine == Engine::SQLite && handleOf(session.database()) != nullptr;
}

SqliteRows::SqliteRows(Session& session, const std::string& sql)
    : m_description(session.description) {
    m_db = handleOf(session.databaseFor(sql));
    if (m_db == nullptr)
        fail("The SQLite driver gave no database handle");
    const char* tail = nullptr;
    if (sqlite3_prepare_v2(m_db, sql.data(), static_cast<int>(sql.size()), &m_statement, &tail) !=
        SQLITE_OK)
        fail(sqlite3_errmsg(m_db));
    if (m_statement == nullptr)
        fail("The statement is empty");
    if (!isBlank(std::string_view(tail, sql.data() + sql.size() - tail))) {
        sqlite3_finalize(m_statement);
        m_statement = nullptr;
        fail("Unable to execute multiple statements at a time");
    }
}

SqliteRows::~SqliteRows() {
    sqlite3_finalize(m_statement);
}

void SqliteRows::fail(const std::string& text) const {
    throw Error(dberr::kCommandError, m_description, text);
}

bool SqliteRows::next() {
    const int result = sqlite3_step(m_statement);
    if (result != SQLITE_ROW && result != SQLITE_DONE)
        fail(sqlite3_errmsg(m_db));
    if (m_declared.empty()) {
        const int count = columns();
        for (int i = 0; i < count; ++i) {
            const char* declaration = sqlite3_column_decltype(m_statement, i);
            if (declaration != nullptr && *declaration != '\0')
                m_declared.push_back(typeOfDeclaration(declaration));
            else if (result == SQLITE_ROW)
                m_declared.push_back(typeOfStorageClass(sqlite3_column_type(m_statement, i)));
            else
                m_declared.emplace_back();
        }
    }
    return result == SQLITE_ROW;
}

int SqliteRows::columns() const {
    return sqlite3_column_count(m_statement);
}

std::string SqliteRows::name(int column) const {
    std::string name = sqlite3_column_name(m_statement, column);
    std::erase(name, '"');
    return name;
}

std::string_view SqliteRows::utf8(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column));
    return {text, static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column))};
}

QVariant SqliteRows::raw(int column) const {
    switch (sqlite3_column_type(m_statement, column)) {
    case SQLITE_NULL:
        return QVariant(QMetaType::fromType<QString>());
    case SQLITE_INTEGER:
        return QVariant(static_cast<qlonglong>(sqlite3_column_int64(m_statement, column)));
    case SQLITE_FLOAT:
        return QVariant(sqlite3_column_double(m_statement, column));
    case SQLITE_BLOB: {
        const void* blob = sqlite3_column_blob(m_statement, column);
        const int size = sqlite3_column_bytes(m_statement, column);
        return QVariant(QByteArray(static_cast<const char*>(blob), size));
    }
    default:
        break;
    }
    const std::string_view text = utf8(column);
    if (isValidUtf8(text))
        return QVariant(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    // Malformed text is converted as SQLite converts it for the driver.
    const auto* units = static_cast<const QChar*>(sqlite3_column_text16(m_statement, column));
    const int bytes = sqlite3_column_bytes16(m_statement, column);
    return QVariant(QString(units, bytes / static_cast<int>(sizeof(QChar))));
}

Variant SqliteRows::value(int column, ColumnKind kind, QMetaType declared) const {
    switch (sqlite3_column_type(m_statement, column)) {
    case SQLITE_NULL:
        return Variant::null();
    case SQLITE_TEXT:
        if (const std::string_view text = utf8(column); isValidUtf8(text))
            return fromDriverText(text, kind, declared);
        break;
    default:
        break;
    }
    return fromDriverValue(raw(column), kind, declared);
}

} // namespace qr::db::detail
