#include "platform/engine/data_control.hpp"

#include "platform/core/error.hpp"

namespace qr::engine {

void DataControl::refresh() {
    if (m_connection == nullptr)
        throw Error(errc::kObjectNotSet, m_reportName,
                    "The data control of " + m_reportName + " has no connection.");
    if (m_source.empty())
        throw Error(errc::kComponent, m_reportName,
                    "The data control of " + m_reportName + " has no source.");
    close();
    m_rows = m_connection->openRows(m_source, m_cursorType, m_lockType);
}

void DataControl::close() {
    // Dropping the cursor releases it; calling close() here could fail on a recordset that a
    // report already closed itself in its end handler.
    m_rows.reset();
}

} // namespace qr::engine
