#pragma once
// How column values cross between the drivers and the project's Variant.
//
// The column name says what a value is (the host's prefix convention): `c...` and `...Override`
// money, `d...` a date, `b...` a Boolean, `i...` and `...Id` whole numbers, `p...` floating
// point, `s...`/`m...` text. The name is a hint and the stored value decides: a hinted column
// whose value does not fit the hint (a "Category" holding words) keeps its natural type, so a
// stray name never turns good data into an error.
//
// Money never passes through binary floating point arithmetic. PostgreSQL and ODBC hand
// NUMERIC over as decimal text, which Currency parses exactly. SQLite keeps a NUMERIC value
// with a fraction as an 8-byte real that holds 15 significant digits (its documented promise
// for NUMERIC affinity); its own CAST(x AS TEXT) prints that real with 15 significant digits,
// which gives back the decimal that was stored. The driver hands us the real, we print it the
// same way and parse the text exactly: every amount a money column holds (up to eleven integer
// digits and four decimals) reads back to the ten-thousandth.

#include "platform/core/variant.hpp"

#include <QMetaType>
#include <QVariant>
#include <string>
#include <string_view>

namespace qr::db {

enum class ColumnKind { Natural, Money, Date, Boolean, Integer, Number, Text };

/// The kind a column's name announces (case is not significant).
ColumnKind columnKindOf(std::string_view columnName);

/// A driver value as a Variant of the column's kind; Null stays Null. `declared` is the type
/// the driver reports for the column (it tells a NUMERIC aggregate delivered as text from a
/// word).
Variant fromDriverValue(const QVariant& raw, ColumnKind kind, QMetaType declared);

/// What fromDriverValue gives for a driver's text value, from the text's well-formed UTF-8.
/// Text and most untyped columns take the bytes as they are, without a round trip through
/// UTF-16.
Variant fromDriverText(std::string_view utf8, ColumnKind kind, QMetaType declared);

/// Exact decimal text of a money value as a driver delivered it; empty when it is not a
/// number. Exposed for tests of the SQLite path.
std::string moneyText(const QVariant& raw);

/// What to bind for a Variant written to a column. Dates go to SQLite as ISO text
/// ("2024-03-15" or "2024-03-15 14:30:00"), to the other engines as timestamps. Money is not
/// bound (see sqlMoneyLiteral).
QVariant toBindValue(const Variant& value, bool dateAsText);

/// A Currency as an SQL numeric literal ("-1234.5678"): digits, sign and point only, so it is
/// safe to write into statement text. Every engine reads such a literal as an exact decimal.
std::string sqlMoneyLiteral(Currency value);

/// Parse ISO date text ("YYYY-MM-DD", optionally followed by " HH:MM[:SS[.fff]]" or with a
/// "T"); false when the text is not such a date.
bool parseIsoDate(std::string_view text, Date& out);

} // namespace qr::db
