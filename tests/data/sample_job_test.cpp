// The sample jobs as the estimator planned them, and the host's arithmetic the sample writer
// uses: glass sizes and block sizes, prices, and the markup figures.
#include "data/sample/glass_sizes.hpp"
#include "data/sample/markup.hpp"
#include "data/sample/sample_jobs.hpp"
#include "data/sample/sample_rows.hpp"
#include "platform/core/error.hpp"

#include <gtest/gtest.h>
#include <set>

namespace qr::test {
namespace {

using namespace data::sample;

Currency money(const char* text) {
    return *Currency::parseDecimal(text);
}

TEST(GlassSizes, TextAndSixteenthsRoundTripAndBlocksRoundUpToEvenInches) {
    struct Case {
        const char* text;
        int sixteenths;
        const char* normalised;
        int block;
    };
    const Case cases[] = {
        {"48 1/4", 772, "48 1/4", 50},   {"120 15/16", 1935, "120 15/16", 122},
        {"36", 576, "36", 36},           {"49", 784, "49", 50},
        {"5/8", 10, "5/8", 2},           {"3 8/16", 56, "3 1/2", 4},
        {"50 1/16", 801, "50 1/16", 52}, {"0", 0, "0", 0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(sixteenthsOf(c.text), c.sixteenths) << c.text;
        EXPECT_EQ(inchesText(c.sixteenths), c.normalised) << c.text;
        EXPECT_EQ(blockInches(c.sixteenths), c.block) << c.text;
    }
    for (const char* bad : {"48 1/3", "48 1/32", "1/0", "", "x", "48  1/4", "4/4", "-3"})
        EXPECT_THROW(sixteenthsOf(bad), Error) << bad;
}

TEST(Markup, FiguresFollowTheHostsArithmetic) {
    MarkupInputs in;
    in.metal = money("1000");
    in.doors = money("200");
    in.miscParts = money("100");
    in.glass = money("500");
    in.labor = money("300");
    in.addToLabor = money("50");
    in.addToMaterial = money("25");
    in.subcontractorCosts = money("100");
    in.rentalCosts = money("40");
    in.otherCosts = money("10");
    in.rates = {10, 20, 5, 30, 4, 2, 8, 6, 1, 0, 8};
    const MarkupFigures f = computeMarkup(in);
    const std::pair<Currency, const char*> expected[] = {
        {f.totalMetal, "1325"},         {f.totalMaterial, "1825"},    {f.metalSurcharge, "53"},
        {f.metalPlusSurcharge, "1378"}, {f.glassSurcharge, "10"},     {f.glassPlusSurcharge, "510"},
        {f.totalSurcharge, "63"},       {f.totalLabor, "350"},        {f.totalOutside, "150"},
        {f.materialMarkup, "239.8"},    {f.laborMarkup, "105"},       {f.outsideMarkup, "7.5"},
        {f.totalMarkup, "352.3"},       {f.totalBeforeTax, "2740.3"}, {f.salesTax, "142.54"},
        {f.grandTotal, "2882.84"},
    };
    for (const auto& [figure, text] : expected)
        EXPECT_EQ(figure, money(text)) << text;
    EXPECT_EQ(percentOf(money("1234.57"), 8.4), money("103.7"));
}

TEST(SampleJobs, TheMedicalOfficeIsARealisticJob) {
    const JobPlan& job = sampleJobs().at(0);
    ASSERT_EQ(job.jobId, 1);
    EXPECT_GE(job.elevations.size(), 10u);
    EXPECT_LE(job.elevations.size(), 14u);
    EXPECT_TRUE(std::any_of(job.elevations.begin(), job.elevations.end(),
                            [](const ElevationPlan& e) { return e.quantity > 1; }));

    const auto lines = glassLines(job);
    EXPECT_GE(lines.size(), 40u);
    EXPECT_LE(lines.size(), 60u);
    std::set<std::string> types;
    int doorLites = 0, raked = 0, underMinimum = 0;
    for (const GlassLine& line : lines) {
        types.insert(line.product->glassType);
        doorLites += line.category == "door glass";
        raked += line.raked();
        underMinimum += !line.minimumMet;
    }
    for (const char* type :
         {"Annealed", "Heat Strengthened", "Tempered", "Spandrel", "Panel", "Vent", "Laminated"})
        EXPECT_EQ(types.count(type), 1u) << type;
    EXPECT_GT(doorLites, 0);
    EXPECT_GT(raked, 0);
    EXPECT_GT(underMinimum, 0);

    const int overrides = !job.stockOverride.isNull() + !job.doorOverride.isNull() +
                          !job.miscOverride.isNull() + !job.glassOverride.isNull() +
                          !job.laborOverride.isNull();
    EXPECT_EQ(overrides, 2);
    EXPECT_TRUE(std::any_of(job.addedLabor.begin(), job.addedLabor.end(), [](const AddedLabor& a) {
        return a.hours == 0 && a.fixedAmount == Currency();
    })) << "an item the added-labor sub-report leaves out";
}

TEST(SampleJobs, JobFiguresAddUp) {
    for (const JobPlan& job : sampleJobs()) {
        const JobFigures f = jobFigures(job);
        Currency glass;
        for (const GlassLine& line : glassLines(job))
            glass += Currency::fromDouble(line.priceTotal);
        EXPECT_EQ(f.glassTotal, glass) << job.name;
        const MarkupFigures& m = f.markup;
        EXPECT_EQ(m.metalPlusSurcharge, m.totalMetal + m.metalSurcharge) << job.name;
        EXPECT_EQ(m.totalMaterial, m.totalMetal + f.effective.glass) << job.name;
        EXPECT_EQ(m.grandTotal, m.totalBeforeTax + m.salesTax) << job.name;
        for (const LaborLine& l : laborLines(job))
            EXPECT_NEAR(l.elevationTotal,
                        l.fabTotal + l.installTotal + l.miscTotal + l.entFabTotal +
                            l.entInstallTotal + l.glazTotal,
                        0.005)
                << l.elevationName;
    }
}

TEST(SampleJobs, TheThirdJobIsOneOfNullsAndEmptyTables) {
    const JobPlan& job = sampleJobs().at(2);
    ASSERT_EQ(job.jobId, 3);
    for (const Variant* v : {&job.stockOverride, &job.doorOverride, &job.miscOverride,
                             &job.glassOverride, &job.laborOverride, &job.estimator, &job.status,
                             &job.finish, &job.notes, &job.exclusions, &job.bidDate})
        EXPECT_TRUE(v->isNull());
    EXPECT_TRUE(job.addedLabor.empty());
    EXPECT_TRUE(job.elevations.empty());
    EXPECT_FALSE(job.miscLaborRate.has_value());
}

} // namespace
} // namespace qr::test
