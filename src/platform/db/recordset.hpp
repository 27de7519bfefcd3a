#pragma once
// A recordset with the semantics the reports were written for.
//
// - A static recordset is a snapshot: every row is read at the open, so recordCount() is exact
//   right away and a count of 0 means no row. (Other cursor types are read the same way; the
//   reports only ask for static ones.)
// - Fields are found by name without regard to case; values are Variants with Null kept, typed
//   by the column's name (field_values.hpp): money exactly as Currency, dates as Date.
// - Opened with optimistic (or pessimistic) locking on one table -- a bare table name or
//   "SELECT * FROM T ..." -- the current row can be changed: setValue() then update() writes
//   it back, found by the table's primary key or, where the table has none, by all the values
//   it was read with, as the classic library does. The update must touch exactly one row:
//   none means someone else changed it ("Row cannot be located for updating..."), several
//   means the row cannot be told apart; both raise Error and change nothing. After a
//   successful update the snapshot shows the new values.
// - Moving to the next row with changes pending updates first, as the classic library did.

#include "platform/core/rows.hpp"
#include "platform/db/row_store.hpp"

#include <QMetaType>
#include <QVariant>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace qr::db {

namespace detail {
struct Session;
}
enum class ColumnKind;

class Recordset : public RowCursor {
  public:
    /// Opens `source` on the session; use Connection::openRecordset.
    Recordset(std::shared_ptr<detail::Session> session, const std::string& source,
              CursorType cursor, LockType lock);
    ~Recordset() override;

    bool eof() const override;
    /// True before the first row: only for an empty recordset, since opening moves to row 1.
    bool bof() const;
    void moveNext() override;
    void moveFirst();
    long recordCount() const override;
    const std::vector<std::string>& columns() const override;
    bool hasColumn(std::string_view name) const override;
    /// Value of a column of the current row, pending changes included (typed as the column
    /// gives it back once written). Raises Error 3265 for
    /// an unknown column, 3021 with no current row, 3704 once closed.
    Variant value(std::string_view name) const override;
    Variant valueAt(std::size_t column) const override;
    void close() override;
    bool isOpen() const { return m_open; }

    /// Whether setValue()/update() are allowed: an optimistic or pessimistic lock on a source
    /// that is one table.
    bool updatable() const { return !m_table.empty(); }
    /// The table written back to ("" when not updatable), as the source names it.
    const std::string& table() const { return m_table; }

    /// Change a column of the current row; written by update(). Raises 3251 when the
    /// recordset is not updatable.
    void setValue(std::string_view name, const Variant& value);
    /// Write the pending changes of the current row back to the database (nothing to do when
    /// none are pending). Raises Error as described above; on error the changes stay pending.
    void update();
    /// Drop the pending changes of the current row.
    void cancelUpdate();

  private:
    std::size_t columnIndex(std::string_view name) const;
    void requireCurrentRow() const;
    /// A written value as the column gives it back when read (a whole number written to a
    /// p-column reads as Double, a Currency written to it as its decimal value).
    Variant asStored(std::size_t column, const Variant& value) const;
    void readRows(const std::string& sql);
    /// Every row of `rows` (SQLite's own interface or Qt's driver), and the values an update
    /// finds each by.
    template <class Rows> void readFrom(Rows& rows, const std::vector<std::string>& keys);
    /// The columns an update finds its row by.
    std::vector<std::size_t> whereColumns(const std::vector<std::string>& keys) const;
    std::string whereClause(QVariantList& params) const;

    std::shared_ptr<detail::Session> m_session; // kept only while the recordset can write
    std::string m_source;
    std::string m_table;
    std::vector<std::string> m_columns;
    std::vector<ColumnKind> m_kinds;
    std::vector<QMetaType> m_declared;
    std::unordered_map<std::string, std::size_t> m_index; // lower-cased name -> column
    RowStore m_values;                                    // every row, packed
    /// The values an update finds its row by (the primary key's columns, or every column of a
    /// table without one) as read from the driver; only for updatable recordsets.
    RowStore m_raw;
    std::vector<std::size_t> m_whereColumns;
    std::map<std::size_t, Variant> m_pending;
    std::size_t m_rowCount = 0;
    std::size_t m_row = 0;
    bool m_open = false;
};

} // namespace qr::db
