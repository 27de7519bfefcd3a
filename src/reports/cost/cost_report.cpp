#include "reports/cost/cost_report.hpp"

#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/core/system_formats.hpp"

namespace qr::reports::cost {

float pricePerSquareFoot(double amount, double area) {
    return static_cast<float>(roundHalfEven(amount / area, 2));
}

Variant requiredValue(const RowCursor& row, std::string_view column, std::string_view where,
                      const std::string& source) {
    Variant value = row.value(column);
    if (value.isNull()) {
        throw Error(errc::kInvalidUseOfNull, source,
                    "Invalid use of Null: " + std::string(column) + " of " + std::string(where) +
                        " is empty (Null).");
    }
    return value;
}

double requiredNumber(const RowCursor& row, std::string_view column, std::string_view where,
                      const std::string& source) {
    return toDouble(requiredValue(row, column, where, source));
}

std::string requiredText(const RowCursor& row, std::string_view column, std::string_view where,
                         const std::string& source) {
    return toText(requiredValue(row, column, where, source));
}

std::string textOrEmpty(const RowCursor& row, std::string_view column) {
    const Variant value = row.value(column);
    return value.isNull() ? std::string() : toText(value);
}

} // namespace qr::reports::cost
