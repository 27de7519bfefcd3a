#pragma once
// The data control of a bound report: a connection, two cursor settings, a source text, and an
// open (refresh) that yields the recordset the engine reads its rows from. It works over any
// RowProvider, so the engine does not depend on the database layer.

#include "platform/core/rows.hpp"

#include <memory>
#include <string>

namespace qr::engine {

class DataControl {
  public:
    /// `reportName` names the report in error messages.
    explicit DataControl(std::string reportName) : m_reportName(std::move(reportName)) {}

    /// The connection rows are opened on; borrowed, the host keeps it open.
    void setConnection(RowProvider* connection) { m_connection = connection; }
    RowProvider* connection() const { return m_connection; }
    /// The two cursor settings: the cursor type (3, static) and the lock type (3, optimistic)
    /// the source is opened with. Defaults: static, read-only.
    void setCursorType(CursorType type) { m_cursorType = type; }
    CursorType cursorType() const { return m_cursorType; }
    void setLockType(LockType lock) { m_lockType = lock; }
    LockType lockType() const { return m_lockType; }
    /// SQL text or a table name.
    void setSource(std::string source) { m_source = std::move(source); }
    const std::string& source() const { return m_source; }

    /// Open the source (closing a recordset opened before, so a second refresh re-reads it).
    /// Raises qr::Error naming the report when no connection or no source is set; errors of
    /// the connection pass through.
    void refresh();
    /// The open recordset, positioned on its current row; nullptr when not open.
    RowCursor* recordset() const { return m_rows.get(); }
    bool isOpen() const { return m_rows != nullptr; }
    /// Close and forget the recordset.
    void close();

  private:
    std::string m_reportName;
    RowProvider* m_connection = nullptr;
    CursorType m_cursorType = CursorType::Static;
    LockType m_lockType = LockType::ReadOnly;
    std::string m_source;
    std::unique_ptr<RowCursor> m_rows;
};

} // namespace qr::engine
