#pragma once
// The tables of the job databases: what the reports read (the job, its labor, the firm, its
// customers and defaults, elevations), the report tables the host fills before a print, the
// final glass rows of a job, and the standalone host's own tables (users, their settings, the
// usage log, the vendor). Column types follow the prefix convention; money is fixed-point
// NUMERIC(19,4). DDL is written for SQLite and PostgreSQL.
//
// Other tools fill the standalone host's tables, so their names are fixed: on the master
// connection Users (UserID, sName, sPhone, sEmail), UserSettings (UserID, sName, iValue),
// UsageLog (LogID, dLogged, sOutcome, sCategory, sLabel, sError) and the firm's sName, sPhone,
// sFax, sEmail on the first Company row; on the vendor connection Vendor (sName).

#include "platform/db/connection.hpp"

#include <string>
#include <vector>

namespace qr::data {

enum class ColumnType {
    Integer, ///< whole number (i..., ...Id)
    Serial,  ///< whole number the database numbers itself (the usage log's id)
    Number,  ///< floating point (p...)
    Money,   ///< fixed point, four decimals (c..., ...Override)
    Text,    ///< up to 255 characters (s...)
    Memo,    ///< long text (m...)
    Date,    ///< date and time (d...)
    Boolean  ///< b...
};

struct ColumnDef {
    std::string name;
    ColumnType type;
};

struct TableDef {
    std::string name;
    std::vector<ColumnDef> columns;
    std::vector<std::string> primaryKey; ///< empty: no key (the host's report tables)
};

/// JobSummary, JobLabor, JobMainLabor, Elevations, JobGlass, Vendor.
const std::vector<TableDef>& vendorTables();
/// Company, Customers, SystemDefaults, Users, UserSettings, UsageLog.
const std::vector<TableDef>& masterTables();

/// The kinds of table the host fills for one print and names in the request.
enum class ReportTableKind { Labor, Markup, FramingSystems, GlassTakeoff, GlassToOrder, GlassCut };
inline constexpr ReportTableKind kReportTableKinds[] = {
    ReportTableKind::Labor,        ReportTableKind::Markup,       ReportTableKind::FramingSystems,
    ReportTableKind::GlassTakeoff, ReportTableKind::GlassToOrder, ReportTableKind::GlassCut};

/// The standalone host's name for a job's report table of a kind: LaborReport<job>,
/// MarkupReport<job>, FramingReport<job>, GlassTakeoffReport<job>, GlassOrderReport<job>,
/// GlassCutReport<job>.
std::string reportTableName(ReportTableKind kind, int jobId);
/// The columns of a report table of `kind` (no key: a host's scratch table).
TableDef reportTableDef(ReportTableKind kind, const std::string& name);

/// CREATE TABLE IF NOT EXISTS for `table`; raises Error for the classic dialect (SQL Server
/// and Access databases are the host's to create).
std::string createTableSql(const TableDef& table, db::Dialect dialect);
/// Create the tables that do not exist yet.
void createTables(db::Connection& connection, const std::vector<TableDef>& tables);

} // namespace qr::data
