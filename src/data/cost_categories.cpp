#include "data/cost_categories.hpp"

#include "platform/core/convert.hpp"

namespace qr::data {

Currency effectiveTotal(const Variant& overrideValue, const Variant& computed) {
    return toCurrency(overrideValue.isNull() ? computed : overrideValue);
}

Currency CategoryTotals::grandTotal() const {
    return metal + doors + miscParts + glass + labor;
}

CategoryTotals categoryTotals(const std::function<Variant(std::string_view)>& field) {
    std::array<Currency, kCostCategories.size()> totals;
    for (std::size_t i = 0; i < kCostCategories.size(); ++i) {
        const CostCategory& category = kCostCategories[i];
        // The override is read first, as the reports did: a missing column fails the same way.
        const Variant overrideValue = field(category.overrideColumn);
        totals[i] = overrideValue.isNull() ? toCurrency(field(category.computedColumn))
                                           : toCurrency(overrideValue);
    }
    return CategoryTotals{totals[0], totals[1], totals[2], totals[3], totals[4]};
}

CategoryTotals categoryTotals(const RowCursor& jobRow) {
    return categoryTotals([&jobRow](std::string_view column) { return jobRow.value(column); });
}

} // namespace qr::data
