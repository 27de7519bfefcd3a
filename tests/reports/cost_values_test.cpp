// The cost reports' own rules that need no database: merging the firm's standard texts into a
// job's, and the money texts of host figures and prices per square foot, as the reports show
// them (a double or a single-precision figure through its money pattern).
#include "platform/core/number_format.hpp"
#include "reports/cost/cost_report.hpp"
#include "reports/cost/firm_texts.hpp"

#include <gtest/gtest.h>

namespace qr::reports::cost {
namespace {

TEST(FirmTextMerge, FollowsTheRulesOfTheEstimate) {
    struct Case {
        const char* name;
        std::string job;
        std::string firm;
        std::optional<std::string> merged; // nullopt: the job text stays exactly as it is
    };
    const Case cases[] = {
        {"no firm text leaves the job alone", "  Glass by owner.  ", "", std::nullopt},
        {"an empty job takes the firm text", "", "Permits excluded.", "Permits excluded."},
        {"a blank job takes the firm text", " \r\n \t", "Permits excluded.", "Permits excluded."},
        {"a job text gets a blank line and the firm text", "  Glass by owner. ",
         "Permits excluded.", "Glass by owner.\r\n\r\nPermits excluded."},
        {"already merged: not again", "Glass by owner.\r\n\r\nPermits excluded.",
         "Permits excluded.", std::nullopt},
        {"already merged, then edited after: not again",
         "Glass by owner.\r\n\r\nPermits excluded.\r\n\r\nNo night work.", "Permits excluded.",
         std::nullopt},
        {"a job text that is the firm text: not again", "Permits excluded.", "Permits excluded.",
         std::nullopt},
        {"a multi-line firm text already merged", "Glass by owner.\r\n\r\nPermits.\r\nBonds.",
         "Permits.\r\nBonds.", std::nullopt},
        {"the firm text inside a sentence is not a merge", "Permits excluded. Bonds extra.",
         "Bonds", "Permits excluded. Bonds extra.\r\n\r\nBonds"},
        {"a longer line starting with the firm text is not a merge", "Permits excluded by owner.",
         "Permits excluded", "Permits excluded by owner.\r\n\r\nPermits excluded"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(mergedFirmText(c.job, c.firm), c.merged) << c.name;
}

TEST(CostMoneyText, ShowsHostFiguresThroughTheirDecimalText) {
    struct Case {
        double value;
        std::string_view pattern;
        const char* shown;
    };
    const Case cases[] = {
        {0, kMoneyFormat, "$.00"},
        {1234567890.5, kShortMoneyFormat, "$1,234,567,890.50"},
        {-3, kMoneyFormat, "-$3.00"},
        {0.1 + 0.2, kMoneyFormat, "$.30"},
        {97361.0 + 2133.28 + 728.2, kMoneyFormat, "$100,222.48"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(formatValue(Variant(c.value), c.pattern), c.shown) << c.value;
    // A single-precision total keeps seven digits.
    EXPECT_EQ(formatValue(Variant(100000.07f), kShortMoneyFormat), "$100,000.10");
    EXPECT_EQ(formatValue(Variant(20695.25f), kShortMoneyFormat), "$20,695.25");
}

TEST(CostMoneyText, PricesPerSquareFootRoundHalvesToTheEvenCent) {
    struct Case {
        double amount, area;
        const char* shown;
    };
    const Case cases[] = {
        {212.5, 100, "$2.12"},         {237.5, 100, "$2.38"}, {198696.22, 2450.5, "$81.08"},
        {161352.48, 2450.5, "$65.84"}, {1, 3, "$.33"},        {0, 2450.5, "$.00"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(formatValue(Variant(pricePerSquareFoot(c.amount, c.area)), kShortMoneyFormat),
                  c.shown)
            << c.amount << " / " << c.area;
}

} // namespace
} // namespace qr::reports::cost
