#include "data/schema.hpp"

#include "platform/core/error.hpp"

namespace qr::data {
namespace {

using T = ColumnType;

std::vector<ColumnDef> numbers(std::initializer_list<const char*> names) {
    std::vector<ColumnDef> out;
    for (const char* name : names)
        out.push_back({name, T::Number});
    return out;
}

std::vector<ColumnDef> join(std::vector<ColumnDef> a, const std::vector<ColumnDef>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

TableDef jobSummary() {
    std::vector<ColumnDef> columns{
        {"JobID", T::Integer},
        {"sJobName", T::Text},
        {"sEstimator", T::Text},
        {"sstatus", T::Text},
        {"DefaultFinish", T::Text},
        {"dBidDate", T::Date},
        {"pjobarea", T::Number},
        {"pjobperimeter", T::Number},
        {"itotaljoints", T::Integer},
        {"icuts", T::Integer},
        {"mnotes", T::Memo},
        {"mexclusions", T::Memo},
        {"mSectionBid", T::Memo},
        {"ContractorId", T::Integer},
        {"ArchitectId", T::Integer},
        {"cStockTotal", T::Money},
        {"StockTotalOverride", T::Money},
        {"cDoorTotal", T::Money},
        {"DoorTotalOverride", T::Money},
        {"cMiscPartsTotal", T::Money},
        {"MiscTotalOverride", T::Money},
        {"cGlassTotal", T::Money},
        {"GlassTotalOverride", T::Money},
        {"cLaborTotal", T::Money},
        {"JobLaborOverride", T::Money},
        {"cAddToLabor", T::Money},
        {"cAddToMaterial", T::Money},
        {"cSubcontractorCosts", T::Money},
        {"cRentalCosts", T::Money},
        {"cOtherCosts", T::Money},
    };
    columns = join(columns, numbers({"pStockMarkupRate", "pGlassMarkupRate", "pOtherMarkupRate",
                                     "pLaborMarkupRate", "pMetalSurchargeRate",
                                     "pGlassSurchargeRate", "pStockTaxRate", "pGlassTaxRate",
                                     "pOtherCostsTaxRate", "pLaborTaxRate", "pSurchargeTaxRate"}));
    return {"JobSummary", columns, {"JobID"}};
}

} // namespace

const std::vector<TableDef>& vendorTables() {
    static const std::vector<TableDef> tables{
        jobSummary(),
        {"JobLabor",
         {{"JobLaborID", T::Integer},
          {"JobID", T::Integer},
          {"sItemName", T::Text},
          {"pHours", T::Number},
          {"cRate", T::Money}},
         {"JobLaborID"}},
        {"JobMainLabor", {{"JobID", T::Integer}, {"cMiscRate", T::Money}}, {"JobID"}},
        {"Elevations",
         {{"ElevID", T::Integer},
          {"JobID", T::Integer},
          {"sElevName", T::Text},
          {"sCode", T::Text},
          {"iQuantity", T::Integer},
          {"iElevSort", T::Integer},
          {"pWidth", T::Number},
          {"pHeight", T::Number},
          {"pGlassPerimeter", T::Number}},
         {"ElevID"}},
        {"JobGlass",
         {{"GlassID", T::Integer},
          {"JobID", T::Integer},
          {"sDescription", T::Text},
          {"sSupplier", T::Text},
          {"pThickness", T::Number},
          {"sGlassType", T::Text},
          {"sTypeLabel", T::Text},
          {"sCategory", T::Text},
          {"iQuantity", T::Integer},
          {"sWidth", T::Text},
          {"sHeight", T::Text},
          {"SBLOCKSIZE", T::Text},
          {"brake", T::Boolean},
          {"pSqrFt", T::Number},
          {"pPrice", T::Number},
          {"pPriceTotal", T::Number},
          {"pminblockarea", T::Number},
          {"bMinOK", T::Boolean}},
         {"GlassID"}},
        {"Vendor", {{"VendorID", T::Integer}, {"sName", T::Text}}, {"VendorID"}},
    };
    return tables;
}

const std::vector<TableDef>& masterTables() {
    static const std::vector<TableDef> tables{
        {"Company",
         {{"CompanyID", T::Integer},
          {"sName", T::Text},
          {"sPhone", T::Text},
          {"sFax", T::Text},
          {"sEmail", T::Text},
          {"saddress1", T::Text},
          {"saddress2", T::Text},
          {"saddress3", T::Text},
          {"sWebAddress", T::Text},
          {"sContractorLic", T::Text}},
         {"CompanyID"}},
        {"Customers",
         {{"CustID", T::Integer},
          {"sCompany", T::Text},
          {"sContact", T::Text},
          {"sPhone", T::Text},
          {"sFax", T::Text},
          {"sAddress1", T::Text},
          {"sAddress2", T::Text},
          {"sAddress3", T::Text}},
         {"CustID"}},
        {"SystemDefaults",
         {{"UserID", T::Integer}, {"mcompanyexclusions", T::Memo}, {"mcompanynotes", T::Memo}},
         {"UserID"}},
        {"Users",
         {{"UserID", T::Integer}, {"sName", T::Text}, {"sPhone", T::Text}, {"sEmail", T::Text}},
         {"UserID"}},
        {"UserSettings",
         {{"UserID", T::Integer}, {"sName", T::Text}, {"iValue", T::Integer}},
         {"UserID", "sName"}},
        {"UsageLog",
         {{"LogID", T::Serial},
          {"dLogged", T::Date},
          {"sOutcome", T::Text},
          {"sCategory", T::Text},
          {"sLabel", T::Text},
          {"sError", T::Memo}},
         {"LogID"}},
    };
    return tables;
}

std::string reportTableName(ReportTableKind kind, int jobId) {
    const char* stem = "";
    switch (kind) {
    case ReportTableKind::Labor:
        stem = "LaborReport";
        break;
    case ReportTableKind::Markup:
        stem = "MarkupReport";
        break;
    case ReportTableKind::FramingSystems:
        stem = "FramingReport";
        break;
    case ReportTableKind::GlassTakeoff:
        stem = "GlassTakeoffReport";
        break;
    case ReportTableKind::GlassToOrder:
        stem = "GlassOrderReport";
        break;
    case ReportTableKind::GlassCut:
        stem = "GlassCutReport";
        break;
    }
    return stem + std::to_string(jobId);
}

TableDef reportTableDef(ReportTableKind kind, const std::string& name) {
    switch (kind) {
    case ReportTableKind::Labor:
        return {name,
                join({{"sElevName", T::Text}, {"iQuantity", T::Integer}, {"iElevSort", T::Integer}},
                     numbers({"pFabHours", "pFabTot", "pInstallHours", "pInstallTot", "pMiscHours",
                              "pMiscTot", "pEntFabHours", "pEntFabTot", "pEntInstallHours",
                              "pEntInstallTot", "pGlazHours", "pGlazTot", "pElevTot"})),
                {}};
    case ReportTableKind::Markup:
        return {name,
                numbers({"ptotalmetal", "ptotlabor", "ptotoutside", "pmetalsur", "pmetalplussur",
                         "pglasssur", "pglassplussur", "ptotmaterial", "ptotsur", "pmtrlmarkup",
                         "plabormarkup", "poutsidemarkup", "ptotalmarkup", "ptotbeforetax",
                         "psalestax", "pgrandtot"}),
                {}};
    case ReportTableKind::FramingSystems:
        return {name, {{"sDescription", T::Text}, {"mNotes", T::Memo}}, {}};
    case ReportTableKind::GlassTakeoff:
        return {name,
                {{"sElevName", T::Text},
                 {"iElevSort", T::Integer},
                 {"sDesc", T::Text},
                 {"sTypeLabel", T::Text},
                 {"sPNum", T::Text},
                 {"iGqty", T::Integer},
                 {"sWide", T::Text},
                 {"sHt1", T::Text},
                 {"sHt2", T::Text},
                 {"pGprc", T::Number},
                 {"pSqrFt", T::Number},
                 {"ptotals", T::Number},
                 {"pblkpricetotal", T::Number},
                 {"sblocksize", T::Text},
                 {"pblksqrft", T::Number}},
                {}};
    case ReportTableKind::GlassToOrder:
        return {name,
                {{"sDescription", T::Text},
                 {"sPartType", T::Text},
                 {"sTypeLabel", T::Text},
                 {"sGlassType", T::Text},
                 {"sWidth", T::Text},
                 {"sLeftHeight", T::Text},
                 {"sRightHeight", T::Text},
                 {"sLabel", T::Text},
                 {"Code", T::Text},
                 {"iElevQty", T::Integer},
                 {"pSqrFt", T::Number},
                 {"pBlockSize", T::Number}},
                {}};
    case ReportTableKind::GlassCut:
        return {name,
                {{"sJobname", T::Text},
                 {"sElevName", T::Text},
                 {"iElevSort", T::Integer},
                 {"sLabel", T::Text},
                 {"sDescription", T::Text},
                 {"sGlassType", T::Text},
                 {"sPartType", T::Text},
                 {"sWidth", T::Text},
                 {"sLeftHeight", T::Text},
                 {"sRightHeight", T::Text}},
                {}};
    }
    throw Error::component("Schema", "Unknown report table kind");
}

std::string createTableSql(const TableDef& table, db::Dialect dialect) {
    if (dialect == db::Dialect::Classic)
        throw Error::component("Schema", "Tables are created here on SQLite and PostgreSQL only; " +
                                             table.name + " must be created by the host");
    const bool pg = dialect == db::Dialect::PostgreSQL;
    std::string sql = "CREATE TABLE IF NOT EXISTS " + table.name + " (";
    bool serialKey = false;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const ColumnDef& column = table.columns[i];
        if (i)
            sql += ", ";
        sql += column.name + ' ';
        switch (column.type) {
        case T::Integer:
            sql += "INTEGER";
            break;
        case T::Serial:
            // The database numbers the rows; the column is the whole key.
            sql += pg ? "INTEGER GENERATED BY DEFAULT AS IDENTITY PRIMARY KEY"
                      : "INTEGER PRIMARY KEY AUTOINCREMENT";
            serialKey = true;
            break;
        case T::Number:
            sql += pg ? "DOUBLE PRECISION" : "REAL";
            break;
        case T::Money:
            sql += "NUMERIC(19,4)";
            break;
        case T::Text:
            sql += "VARCHAR(255)";
            break;
        case T::Memo:
            sql += "TEXT";
            break;
        case T::Date:
            sql += "TIMESTAMP";
            break;
        case T::Boolean:
            sql += "BOOLEAN";
            break;
        }
    }
    if (!table.primaryKey.empty() && !serialKey) {
        sql += ", PRIMARY KEY (";
        for (std::size_t i = 0; i < table.primaryKey.size(); ++i)
            sql += (i ? ", " : "") + table.primaryKey[i];
        sql += ')';
    }
    return sql + ')';
}

void createTables(db::Connection& connection, const std::vector<TableDef>& tables) {
    for (const TableDef& table : tables)
        if (!connection.tableExists(table.name))
            connection.execute(createTableSql(table, connection.dialect()));
}

} // namespace qr::data
