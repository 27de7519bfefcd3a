#pragma once
// Every SQL statement the reports issue, in one place, built from the request values exactly as
// the host's reports always built them: the value appended to the text, unquoted.
//
// Nothing the host hands in is trusted as SQL. Each value is checked before its statement is
// built: an id must be a decimal integer (an optional sign and digits), a table name a plain
// identifier (letters, digits, underscore; not starting with a digit), optionally bracketed
// ([name], where the database accepts brackets) or double-quoted ("name"). Anything else raises
// Error 999 from "PrintReports" whose description names the field and the value, e.g.
// "Invalid job id in request: 1 OR 1=1" -- before any statement reaches a database. Valid
// values give exactly the classic texts.

#include "platform/core/error.hpp"
#include "platform/core/variant.hpp"
#include "platform/db/connection.hpp"

#include <cstdint>
#include <string>
#include <string_view>

namespace qr::data {

/// Source of the errors raised for refused values.
inline constexpr const char* kStatementSource = "PrintReports";

/// `value` when it is a decimal integer; else Error 999 "Invalid <field>: <value>".
std::string checkedId(std::string_view value, std::string_view field);
/// `name` when it is an identifier `dialect` accepts; else Error 999
/// "Invalid table name in request: <name>". Brackets are refused on PostgreSQL.
std::string checkedTableName(std::string_view name, db::Dialect dialect);

namespace sql {

/// Job lookup of the request dispatcher: "SELECT * FROM JobSummary where JobID=" + job id.
std::string jobLookup(std::string_view requestJobId);
/// The job row of the markup and final summary reports:
/// "Select * FROM JobSummary WHERE JobID=" + job id.
std::string jobRow(std::string_view requestJobId);
/// "SELECT * FROM Company".
std::string company();
/// "SELECT * FROM Customers WHERE CustID=" + id. `custId` as it comes from the job row (or
/// converted by the report); `field` names it in the error ("contractor id", "architect id").
/// A Null id is refused like any other value that is not a whole number.
std::string customer(const Variant& custId, std::string_view field);
/// "SELECT * FROM SystemDefaults WHERE UserID=" + user id.
std::string systemDefaults(std::string_view requestUserId);
/// The report table by its bare name (markup and labor tables).
std::string reportTable(std::string_view requestTable, db::Dialect dialect);
/// Job labor report data source: "SELECT * FROM " + table + " ORDER BY iElevSort ASC".
std::string laborRows(std::string_view requestTable, db::Dialect dialect);
/// "SELECT SUM(cRate) AS Total, SUM(pHours) AS Hours FROM JobLabor WHERE JobID=" + job id.
std::string addedLaborTotals(std::string_view requestJobId);
/// "SELECT cMiscRate FROM JobMainLabor WHERE JobID=" + job id.
std::string miscLaborRate(std::string_view requestJobId);
/// Added job labor sub-report: "SELECT * FROM JobLabor WHERE JobID=" + job id +
/// " AND (pHours>0 OR cRate>0)".
std::string addedLaborItems(std::string_view requestJobId);
/// Final summary data source: "Select * FROM " + table.
std::string framingSystems(std::string_view requestTable, db::Dialect dialect);
/// Job glass by part: "Select * FROM " + table + " ORDER BY sDesc, sPNum, pSqrft".
std::string glassByPart(std::string_view requestTable, db::Dialect dialect);
/// Job glass by elevation: "Select * FROM " + table + " ORDER BY iElevSort, sDesc, sPNum, pSqrft".
std::string glassByElevation(std::string_view requestTable, db::Dialect dialect);
/// Final glass perimeter: "SELECT SUM(pGlassPerimeter) as GlassSum FROM Elevations WHERE
/// JobID=" + job id of the report data (a 32-bit integer, so nothing to check).
std::string glassPerimeter(std::int32_t jobId);
/// Glass to order: "Select * FROM " + table + " ORDER BY sDescription, sPartType, " and the
/// three size texts joined: "sWidth+sLeftHeight+sRightHeight" where `+` joins text, the
/// dialect's concatenation elsewhere (db::concatenateText), so the rows come in the order the
/// host intended on every database.
std::string glassToOrder(std::string_view requestTable, db::Dialect dialect);
/// Glass cut listing: "Select * from " + table.
std::string glassCutList(std::string_view requestTable, db::Dialect dialect);
/// Glass labels: "Select * FROM " + table + " ORDER BY sElevName,sLabel"; with `upperSelect`
/// the same text starting "SELECT * FROM " (two of the label reports spell it so).
std::string glassLabels(std::string_view requestTable, db::Dialect dialect, bool upperSelect);
/// The query the standalone host hands the final glass reports for a job:
/// "SELECT * FROM JobGlass WHERE JobID=" + id + " ORDER BY sDescription, pThickness,
/// sGlassType, sTypeLabel" (the order the report groups by).
std::string finalGlassQuery(std::int32_t jobId);
/// The job size of a bid package, from the job's glass-to-order table (one row per lite of
/// one occurrence of an elevation): "SELECT sPartType, SUM(iElevQty) AS iLites,
/// SUM(pSqrFt*iElevQty) AS pArea FROM " + table + " GROUP BY sPartType".
std::string litesByPartType(std::string_view requestTable, db::Dialect dialect);
/// "SELECT SUM(iQuantity) AS iElevations FROM Elevations WHERE JobID=" + job id.
std::string elevationCount(std::int32_t jobId);

} // namespace sql
} // namespace qr::data
