#include "platform/db/data_control.hpp"

#include "platform/core/error.hpp"

namespace qr::db {
namespace {
constexpr int kInvalidProcedureCall = 5;
}

void DataControl::setConnection(std::shared_ptr<RowProvider> connection) {
    m_connection = std::move(connection);
}

void DataControl::refresh() {
    if (!m_connection)
        throw Error::objectNotSet("DataControl");
    if (m_cursorType != static_cast<int>(CursorType::Static) &&
        m_cursorType != static_cast<int>(CursorType::Unspecified))
        throw Error(kInvalidProcedureCall, "DataControl",
                    "Only static cursors are supported (cursor type " +
                        std::to_string(m_cursorType) + ")");
    close();
    m_rows = m_connection->openRows(m_source, CursorType::Static, m_lock);
}

void DataControl::close() {
    if (m_rows)
        m_rows->close();
    m_rows.reset();
}

} // namespace qr::db
