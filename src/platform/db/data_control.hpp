#pragma once
// The data control of a bound report: a connection, two cursor settings, a source text, and
// open/re-open. After refresh() its recordset holds the source's rows; a second refresh()
// reads the source again, so rows written in between (a report that merges texts into its own
// job row) show their new values.

#include "platform/core/rows.hpp"

#include <memory>
#include <string>

namespace qr::db {

class DataControl {
  public:
    /// The connection the source is read on. Shared with the host that lent it; the control
    /// keeps it for as long as its rows may be re-read.
    void setConnection(std::shared_ptr<RowProvider> connection);
    /// The classic control's two numeric cursor settings (the reports set both to 3: a client
    /// side, static cursor). Any value other than 3 for the cursor type is refused at refresh,
    /// since only snapshots have the exact record count the reports rely on.
    void setCursorLocation(int location) { m_cursorLocation = location; }
    void setCursorType(int type) { m_cursorType = type; }
    /// Lock type of the open; read-only unless set.
    void setLockType(LockType lock) { m_lock = lock; }
    void setSource(std::string source) { m_source = std::move(source); }
    const std::string& source() const { return m_source; }

    /// Open the source (again). Raises Error 91 without a connection, Error 5 for a cursor
    /// type other than static, and the database's errors as they come.
    void refresh();
    /// The rows of the last refresh; null before the first one.
    RowCursor* recordset() const { return m_rows.get(); }
    void close();

  private:
    std::shared_ptr<RowProvider> m_connection;
    int m_cursorLocation = 3;
    int m_cursorType = 3;
    LockType m_lock = LockType::ReadOnly;
    std::string m_source;
    std::unique_ptr<RowCursor> m_rows;
};

} // namespace qr::db
