#pragma once
// The errors the database layer raises, with the numbers and texts of the classic data access
// library, so that a report or a host that shows them sees what it always saw.

#include "platform/core/error.hpp"

#include <string>

namespace qr::db {

namespace dberr {
/// A statement the database refused (bad table, bad column, bad syntax).
inline constexpr int kCommandError = -2147217900;
/// A connection that could not be made, or an operation the provider failed.
inline constexpr int kProviderError = -2147467259;
/// An optimistic update that matched no row.
inline constexpr int kRowNotLocated = -2147217864;
/// Field lookup by a name the row does not have.
inline constexpr int kItemNotFound = 3265;
/// A field read or write with no current row (at end-of-file).
inline constexpr int kNoCurrentRecord = 3021;
/// A write on a recordset opened read-only or on something other than one table.
inline constexpr int kNotUpdatable = 3251;
/// Any operation on a closed recordset or connection.
inline constexpr int kObjectClosed = 3704;
} // namespace dberr

/// The classic texts, used verbatim.
inline constexpr const char* kRowNotLocatedText =
    "Row cannot be located for updating. Some values may have been changed since it was last "
    "read.";
inline constexpr const char* kTooManyRowsText =
    "Key column information is insufficient or incorrect. Too many rows were affected by "
    "update.";
inline constexpr const char* kItemNotFoundText =
    "Item cannot be found in the collection corresponding to the requested name or ordinal.";
inline constexpr const char* kNoCurrentRecordText =
    "Either BOF or EOF is True, or the current record has been deleted. Requested operation "
    "requires a current record.";
inline constexpr const char* kNotUpdatableText =
    "Current Recordset does not support updating. This may be a limitation of the provider, or "
    "of the selected locktype.";
inline constexpr const char* kObjectClosedText =
    "Operation is not allowed when the object is closed.";

/// Source of the errors raised by recordsets themselves (as opposed to the database).
inline constexpr const char* kRecordsetSource = "Recordset";

} // namespace qr::db
