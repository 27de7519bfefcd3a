#pragma once
// What the engine's data control needs of a database: open a source on a connection and walk
// its rows. The database layer implements these for real connections; the engine sees nothing
// else of a database.

#include "platform/core/variant.hpp"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qr {

/// Cursor and lock settings as the host's data library numbers them.
enum class CursorType { Unspecified = -1, ForwardOnly = 0, Keyset = 1, Dynamic = 2, Static = 3 };
enum class LockType {
    Unspecified = -1,
    ReadOnly = 1,
    Pessimistic = 2,
    Optimistic = 3,
    BatchOptimistic = 4
};

/// An open row set positioned on one row (or at end-of-file).
class RowCursor {
  public:
    virtual ~RowCursor() = default;
    virtual bool eof() const = 0;
    virtual void moveNext() = 0;
    /// Exact for static cursors right after the open.
    virtual long recordCount() const = 0;
    /// Column names in result order.
    virtual const std::vector<std::string>& columns() const = 0;
    /// Whether a column exists, by name without regard to case.
    virtual bool hasColumn(std::string_view name) const = 0;
    /// Value of a column of the current row, by name without regard to case; raises
    /// Error "Item cannot be found in the collection..." (subscript out of range) for an
    /// unknown column and when at end-of-file.
    virtual Variant value(std::string_view name) const = 0;
    /// Value of the current row's column at `column`, a position in columns(); what value()
    /// gives for the first column of that name. Raises as value() does.
    virtual Variant valueAt(std::size_t column) const { return value(columns().at(column)); }
    virtual void close() = 0;
};

/// Something rows can be opened on: a database connection.
class RowProvider {
  public:
    virtual ~RowProvider() = default;
    /// Open `source` (SQL text or a bare table name). Errors raise Error with the database's
    /// own message.
    virtual std::unique_ptr<RowCursor> openRows(const std::string& source, CursorType cursor,
                                                LockType lock) = 0;
    /// The connection string with any password masked, for messages.
    virtual std::string describe() const = 0;
};

} // namespace qr
