// The override rule behind every category total of the cost reports.
#include "data/cost_categories.hpp"
#include "platform/core/error.hpp"

#include <gtest/gtest.h>
#include <map>

namespace qr::test {
namespace {

Currency money(const char* text) {
    return *Currency::parseDecimal(text);
}

TEST(OverrideRule, OverrideWinsUnlessItIsNull) {
    struct Case {
        Variant overrideValue;
        Variant computed;
        const char* expected;
    };
    const Case cases[] = {
        {Variant::null(), Variant(money("48312.75")), "48312.75"},
        {Variant(money("41500")), Variant(money("39870.12")), "41500"},
        {Variant(money("0")), Variant(money("14860")), "0"}, // an override of 0 is real
        {Variant(money("-250.5")), Variant(money("100")), "-250.5"},
        {Variant::null(), Variant(1234.56789), "1234.5679"}, // a double rounds at four places
        {Variant::null(), Variant("19.99"), "19.99"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(data::effectiveTotal(c.overrideValue, c.computed), money(c.expected))
            << c.expected;
}

TEST(OverrideRule, NullComputedTotalWithoutOverrideIsAnError) {
    try {
        data::effectiveTotal(Variant::null(), Variant::null());
        FAIL() << "no error";
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), errc::kInvalidUseOfNull);
    }
}

TEST(OverrideRule, FiveCategoriesAreReadInTheReportsOrderAndSummedExactly) {
    const std::map<std::string, Variant> row{
        {"StockTotalOverride", Variant::null()},      {"cStockTotal", Variant(money("0.1"))},
        {"DoorTotalOverride", Variant(money("0.2"))}, {"cDoorTotal", Variant(money("999"))},
        {"MiscTotalOverride", Variant::null()},       {"cMiscPartsTotal", Variant(money("0.3"))},
        {"GlassTotalOverride", Variant(money("0"))},  {"cGlassTotal", Variant(money("5000"))},
        {"JobLaborOverride", Variant::null()},        {"cLaborTotal", Variant(money("100000.07"))},
    };
    std::vector<std::string> asked;
    const data::CategoryTotals totals = data::categoryTotals([&](std::string_view column) {
        asked.emplace_back(column);
        return row.at(std::string(column));
    });
    EXPECT_EQ(totals.metal, money("0.1"));
    EXPECT_EQ(totals.doors, money("0.2"));
    EXPECT_EQ(totals.miscParts, money("0.3"));
    EXPECT_EQ(totals.glass, money("0"));
    EXPECT_EQ(totals.labor, money("100000.07"));
    EXPECT_EQ(totals.grandTotal(), money("100000.67"));
    EXPECT_EQ(asked,
              (std::vector<std::string>{"StockTotalOverride", "cStockTotal", "DoorTotalOverride",
                                        "MiscTotalOverride", "cMiscPartsTotal",
                                        "GlassTotalOverride", "JobLaborOverride", "cLaborTotal"}))
        << "a computed total is only read when its override is Null";
}

} // namespace
} // namespace qr::test
