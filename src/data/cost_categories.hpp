#pragma once
// The override rule, the one rule behind every category total the cost reports show: for each
// of the five cost categories the effective total is the estimator's `...Override` column when
// it is not Null, otherwise the computed `c...` column, taken as currency. An override of 0 is
// a real override; only Null falls back.

#include "platform/core/currency.hpp"
#include "platform/core/rows.hpp"
#include "platform/core/variant.hpp"

#include <array>
#include <functional>
#include <string_view>

namespace qr::data {

/// A cost category of the job row: its override column and its computed column.
struct CostCategory {
    std::string_view name;
    std::string_view overrideColumn;
    std::string_view computedColumn;
};

/// The five categories in the order the reports evaluate them.
inline constexpr std::array<CostCategory, 5> kCostCategories{{
    {"metal", "StockTotalOverride", "cStockTotal"},
    {"doors", "DoorTotalOverride", "cDoorTotal"},
    {"misc parts", "MiscTotalOverride", "cMiscPartsTotal"},
    {"glass", "GlassTotalOverride", "cGlassTotal"},
    {"labor", "JobLaborOverride", "cLaborTotal"},
}};

/// `override` as currency unless it is Null, else `computed` as currency. Conversions follow
/// the runtime (a Null computed total is Invalid use of Null, text that is no number a Type
/// mismatch).
Currency effectiveTotal(const Variant& overrideValue, const Variant& computed);

/// The five effective totals of one job row.
struct CategoryTotals {
    Currency metal, doors, miscParts, glass, labor;
    /// metal + doors + misc parts + glass + labor, exact.
    Currency grandTotal() const;
};

/// Reads the five pairs through `field` (a column lookup by name: a recordset, a report's
/// Fields collection), metal first, labor last.
CategoryTotals categoryTotals(const std::function<Variant(std::string_view)>& field);
/// The same from the current row of a job recordset.
CategoryTotals categoryTotals(const RowCursor& jobRow);

} // namespace qr::data
