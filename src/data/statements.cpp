#include "data/statements.hpp"

#include "platform/core/error.hpp"

#include <algorithm>
#include <cctype>
#include <cmath>

namespace qr::data {
namespace {

constexpr std::string_view kJobId = "job id in request";
constexpr std::string_view kUserId = "user id in request";

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isPlainIdentifier(std::string_view text) {
    if (text.empty() || isDigit(text[0]))
        return false;
    return std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || isDigit(c) || c == '_';
    });
}

[[noreturn]] void refuse(std::string_view field, std::string_view value) {
    throw Error::component(kStatementSource,
                           "Invalid " + std::string(field) + ": " + std::string(value));
}

std::string table(std::string_view name, db::Dialect dialect) {
    return checkedTableName(name, dialect);
}

} // namespace

std::string checkedId(std::string_view value, std::string_view field) {
    std::string_view digits = value;
    if (!digits.empty() && (digits[0] == '+' || digits[0] == '-'))
        digits.remove_prefix(1);
    if (digits.empty() || !std::all_of(digits.begin(), digits.end(), isDigit))
        refuse(field, value);
    return std::string(value);
}

std::string checkedTableName(std::string_view name, db::Dialect dialect) {
    bool ok = isPlainIdentifier(name);
    if (!ok && name.size() > 2) {
        const std::string_view inner = name.substr(1, name.size() - 2);
        if (name.front() == '"' && name.back() == '"')
            ok = isPlainIdentifier(inner);
        if (name.front() == '[' && name.back() == ']')
            ok = dialect != db::Dialect::PostgreSQL && isPlainIdentifier(inner);
    }
    if (!ok)
        refuse("table name in request", name);
    return std::string(name);
}

namespace sql {

std::string jobLookup(std::string_view requestJobId) {
    return "SELECT * FROM JobSummary where JobID=" + checkedId(requestJobId, kJobId);
}

std::string jobRow(std::string_view requestJobId) {
    return "Select * FROM JobSummary WHERE JobID=" + checkedId(requestJobId, kJobId);
}

std::string company() {
    return "SELECT * FROM Company";
}

std::string customer(const Variant& custId, std::string_view field) {
    std::string text;
    switch (custId.type()) {
    case VarType::Integer:
        text = std::to_string(custId.asInteger());
        break;
    case VarType::Long:
        text = std::to_string(custId.asLong());
        break;
    case VarType::Double: {
        const double d = custId.asDouble();
        if (std::nearbyint(d) == d && std::fabs(d) < 1e15)
            text = std::to_string(static_cast<long long>(d));
        else
            refuse(std::string(field) + " in job row", std::to_string(d));
        break;
    }
    case VarType::String:
        text = custId.asString();
        break;
    default:
        refuse(std::string(field) + " in job row", typeName(custId.type()));
    }
    return "SELECT * FROM Customers WHERE CustID=" +
           checkedId(text, std::string(field) + " in job row");
}

std::string systemDefaults(std::string_view requestUserId) {
    return "SELECT * FROM SystemDefaults WHERE UserID=" + checkedId(requestUserId, kUserId);
}

std::string reportTable(std::string_view requestTable, db::Dialect dialect) {
    return table(requestTable, dialect);
}

std::string laborRows(std::string_view requestTable, db::Dialect dialect) {
    return "SELECT * FROM " + table(requestTable, dialect) + " ORDER BY iElevSort ASC";
}

std::string addedLaborTotals(std::string_view requestJobId) {
    return "SELECT SUM(cRate) AS Total, SUM(pHours) AS Hours FROM JobLabor WHERE JobID=" +
           checkedId(requestJobId, kJobId);
}

std::string miscLaborRate(std::string_view requestJobId) {
    return "SELECT cMiscRate FROM JobMainLabor WHERE JobID=" + checkedId(requestJobId, kJobId);
}

std::string addedLaborItems(std::string_view requestJobId) {
    return "SELECT * FROM JobLabor WHERE JobID=" + checkedId(requestJobId, kJobId) +
           " AND (pHours>0 OR cRate>0)";
}

std::string framingSystems(std::string_view requestTable, db::Dialect dialect) {
    return "Select * FROM " + table(requestTable, dialect);
}

std::string glassByPart(std::string_view requestTable, db::Dialect dialect) {
    return "Select * FROM " + table(requestTable, dialect) + " ORDER BY sDesc, sPNum, pSqrft";
}

std::string glassByElevation(std::string_view requestTable, db::Dialect dialect) {
    return "Select * FROM " + table(requestTable, dialect) +
           " ORDER BY iElevSort, sDesc, sPNum, pSqrft";
}

std::string glassPerimeter(std::int32_t jobId) {
    return "SELECT SUM(pGlassPerimeter) as GlassSum FROM Elevations WHERE JobID=" +
           std::to_string(jobId);
}

std::string glassToOrder(std::string_view requestTable, db::Dialect dialect) {
    return "Select * FROM " + table(requestTable, dialect) + " ORDER BY sDescription, sPartType, " +
           db::concatenateText(dialect, {"sWidth", "sLeftHeight", "sRightHeight"});
}

std::string glassCutList(std::string_view requestTable, db::Dialect dialect) {
    return "Select * from " + table(requestTable, dialect);
}

std::string glassLabels(std::string_view requestTable, db::Dialect dialect, bool upperSelect) {
    return (upperSelect ? "SELECT * FROM " : "Select * FROM ") + table(requestTable, dialect) +
           " ORDER BY sElevName,sLabel";
}

std::string finalGlassQuery(std::int32_t jobId) {
    return "SELECT * FROM JobGlass WHERE JobID=" + std::to_string(jobId) +
           " ORDER BY sDescription, pThickness, sGlassType, sTypeLabel";
}

std::string litesByPartType(std::string_view requestTable, db::Dialect dialect) {
    return "SELECT sPartType, SUM(iElevQty) AS iLites, SUM(pSqrFt*iElevQty) AS pArea FROM " +
           table(requestTable, dialect) + " GROUP BY sPartType";
}

std::string elevationCount(std::int32_t jobId) {
    return "SELECT SUM(iQuantity) AS iElevations FROM Elevations WHERE JobID=" +
           std::to_string(jobId);
}

} // namespace sql
} // namespace qr::data
