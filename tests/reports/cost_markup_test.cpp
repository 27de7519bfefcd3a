// The markup reports: the estimator's markup report and the customer's estimate, on the
// fixture's jobs and markup tables, on SQLite and PostgreSQL.
#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/host/module_state.hpp"
#include "reports/cost/ar_markup.hpp"
#include "reports/cost/ar_markup2.hpp"
#include "reports/support/cost_fixture.hpp"

namespace qr::test {
namespace {

class MarkupReportTest : public CostFixtureTest {
  protected:
    std::string jobText(int jobId, const std::string& column) {
        const Variant value = vendorValue(
            "SELECT " + column + " FROM JobSummary WHERE JobID=" + std::to_string(jobId), column);
        return value.isNull() ? "<null>" : toText(value);
    }
};

TEST_P(MarkupReportTest, ShowsTheJobTheFirmBothCustomersAndTheFigures) {
    setRequest("MarkupClinic", kClinicJob);
    reports::ARMarkup report;
    const page::Pages& pages = run(report);
    ASSERT_EQ(pages.pages.size(), 1u);
    const std::pair<const char*, const char*> expected[] = {
        {"RptDate", "3/15/2024"},
        {"RptTime", "2:05 PM"},
        {"Field9", "3/20/2024"},
        {"sEstimator", "Dana Whitfield"},
        {"lJobName", "Riverside Clinic"},
        {"lVendor", kCostVendor},
        {"lGlassfirm", kCostFirm},
        {"lFirmAddr1", "2750 NW Industrial Street"},
        {"lFirmAddr3", "Portland, OR 97210"},
        {"lPhone", "(503) 555-0142"},
        {"lFirmWebSite", "www.cascadeglass.example"},
        {"lFirmLicense", "License #C-1234"},
        {"Contractor", "Hartwell Construction Group"},
        {"JobContact", "Renee Okafor"},
        {"JobAddr2", "Suite 300"},
        {"Architect", "Linden & Shaw Architects"},
        {"ArchName", "Paul Linden, AIA"},
        {"ArchAddr3", "Portland, OR 97205"},
        {"StockBaseCostField", "$48,250.75"}, // override Null: the computed total
        {"DoorBaseCostField", "$11,850.00"},  // overridden
        {"MiscBaseCostField", "$0.00"},       // an override of 0 is an override
        {"GlassBaseCostField", "$36,410.25"},
        {"LaborBaseCostField", "$52,980.00"},
        {"Field21", "$850.00"},
        {"Field18", "$1,500.00"},
        {"Field32", "3.5"},
        {"Field39", "7.75"},
        {"lTotalMetal", "$60,950.75"},
        {"lMetalSurcharge", "$2,133.28"},
        {"lTotalGlassWSur", "$37,138.45"},
        {"lTotalMaterial", "$100,222.48"}, // material plus both surcharges
        {"lTotMaterialAfterSurcharges", "$100,222.48"},
        {"lTotLabor", "$54,480.00"},
        {"lOutsideMarkup", "$665.00"},
        {"lMarkupSubtotal", "$29,576.50"},
        {"lPreTaxTotal", "$190,928.98"},
        {"lTaxDollars", "$7,767.24"},
        {"lGrandTotal", "$198,696.22"},
        {"lCostPerFt", "$65.84"},
        {"lSellPerFt", "$81.08"},
    };
    for (const auto& [control, text] : expected)
        EXPECT_EQ(costText(pages, control), text) << control;
    // Null customer columns print nothing.
    EXPECT_TRUE(costTexts(pages, "ArchFax").empty());
    EXPECT_TRUE(costTexts(pages, "ArchAddr2").empty());
    // The firm's texts are merged into what prints, not into the job's row.
    EXPECT_EQ(costText(pages, "Field2"), "Caulking at the perimeter by others.\n\nPermits, bonds "
                                         "and engineering are excluded.");
    EXPECT_EQ(costText(pages, "Field3"),
              "Storefront at grade, curtain wall above.\n\nPrices are good for 30 days.");
    EXPECT_EQ(jobText(kClinicJob, "mexclusions"), "Caulking at the perimeter by others.");
    writeCostPngs(pages, "armarkup");
}

TEST_P(MarkupReportTest, AllFiguresZeroPrintDollarPointZeroZero) {
    setRequest("MarkupZero", kClinicJob);
    reports::ARMarkup report;
    const page::Pages& pages = run(report);
    for (const char* control :
         {"lTotalMetal", "lTotalLabor", "lTotalOutside", "lMetalSurcharge", "lTotalMaterial",
          "lMaterialMarkup", "lMarkupSubtotal", "lPreTaxTotal", "lTaxDollars", "lGrandTotal",
          "lCostPerFt", "lSellPerFt"})
        EXPECT_EQ(costText(pages, control), "$.00") << control;
}

TEST_P(MarkupReportTest, PricesPerSquareFootRoundHalvesToEven) {
    // 212.50 and 237.50 over 100 square feet: 2.125 and 2.375.
    setRequest("MarkupRound", kRoundingJob);
    reports::ARMarkup markup;
    const page::Pages& pages = run(markup);
    EXPECT_EQ(costText(pages, "lCostPerFt"), "$2.12");
    EXPECT_EQ(costText(pages, "lSellPerFt"), "$2.38");
    reports::ARMarkup2 estimate;
    EXPECT_EQ(costText(run(estimate), "lSellPerFt"), "$2.38");
}

TEST_P(MarkupReportTest, NoJobAreaLeavesThePricesPerSquareFootAtTheirDesignText) {
    for (const Variant& area : {Variant(0.0), Variant::null()}) {
        execVendor("UPDATE JobSummary SET pjobarea = ? WHERE JobID = 102", {area});
        setRequest("MarkupClinic", kLubeJob);
        reports::ARMarkup markup;
        const page::Pages& pages = run(markup);
        EXPECT_EQ(costText(pages, "lCostPerFt"), "xx");
        EXPECT_EQ(costText(pages, "lSellPerFt"), "xx");
        reports::ARMarkup2 estimate;
        EXPECT_EQ(costText(run(estimate), "lSellPerFt"), "xx");
    }
}

TEST_P(MarkupReportTest, AMissingContractorLeavesItsBlockEmptyAndTheArchitectFilled) {
    setRequest("MarkupClinic", kLubeJob);
    reports::ARMarkup report;
    const page::Pages& pages = run(report);
    for (const char* control :
         {"Contractor", "JobContact", "JobPhone", "JobFax", "JobAddr1", "JobAddr2", "JobAddr3"})
        EXPECT_TRUE(costTexts(pages, control).empty()) << control;
    EXPECT_EQ(costText(pages, "Architect"), "Linden & Shaw Architects");
}

TEST_P(MarkupReportTest, ARunAfterAnotherStartsFromTheDesignTexts) {
    reports::ARMarkup report;
    setRequest("MarkupClinic", kClinicJob);
    run(report);
    setRequest("MarkupClinic", kLubeJob);
    const page::Pages& pages = run(report);
    EXPECT_TRUE(costTexts(pages, "Contractor").empty());
    EXPECT_EQ(costText(pages, "lCostPerFt"), "xx");
    EXPECT_EQ(costText(pages, "lJobName"), "Quick Lube Storefront");
}

TEST_P(MarkupReportTest, EstimateFoldsTheMarkupsIntoItsTotals) {
    setRequest("MarkupClinic", kClinicJob);
    reports::ARMarkup2 report;
    const page::Pages& pages = run(report);
    const std::pair<const char*, const char*> expected[] = {
        {"lTotalMaterial", "$117,148.38"},
        {"lTotalLabor", "$66,465.60"},
        {"lTotalOutside", "$7,315.00"},
        {"lPreTaxTotal", "$190,928.98"},
        {"lTaxPcnt", " 7.75"},
        {"lTaxDollars", "$7,767.24"},
        {"lGrandTotal", "$198,696.22"},
        {"lSellPerFt", "$81.08"},
    };
    for (const auto& [control, text] : expected)
        EXPECT_EQ(costText(pages, control), text) << control;
    // No cost, rate or markup figure of the markup report appears on the estimate.
    const std::string dump = page::dump(pages);
    for (const char* cost : {"$48,250.75", "$2,133.28", "$16,925.90", "18", "3.5"})
        EXPECT_EQ(dump.find("\"" + std::string(cost) + "\""), std::string::npos) << cost;
    writeCostPngs(pages, "armarkup2");

    execVendor("UPDATE MarkupZero SET ptotmaterial = 1000, ptotsur = 50, pmtrlmarkup = 210.5");
    setRequest("MarkupZero", kClinicJob);
    EXPECT_EQ(costText(run(report), "lTotalMaterial"), "$1,260.50");
}

TEST_P(MarkupReportTest, EstimateMergesTheFirmTextsIntoTheJobOnce) {
    setRequest("MarkupClinic", kClinicJob);
    const std::string exclusions =
        "Caulking at the perimeter by others.\r\n\r\nPermits, bonds and engineering are excluded.";
    const std::string notes =
        "Storefront at grade, curtain wall above.\r\n\r\nPrices are good for 30 days.";
    for (int print = 1; print <= 2; ++print) {
        reports::ARMarkup2 report;
        const page::Pages& pages = run(report);
        EXPECT_EQ(jobText(kClinicJob, "mexclusions"), exclusions) << "print " << print;
        EXPECT_EQ(jobText(kClinicJob, "mnotes"), notes) << "print " << print;
        EXPECT_EQ(costText(pages, "Field2"), "Caulking at the perimeter by others.\n\nPermits, "
                                             "bonds and engineering are excluded.");
    }
}

TEST_P(MarkupReportTest, EstimateMergeRulesOnTheJobRow) {
    struct Case {
        const char* name;
        int userId;
        Variant jobExclusions;
        Variant expected; // Null: <null>
    };
    const Case cases[] = {
        {"blank job text takes the firm text alone", 1, Variant("   "),
         Variant("Permits, bonds and engineering are excluded.")},
        {"Null job text takes the firm text alone", 1, Variant::null(),
         Variant("Permits, bonds and engineering are excluded.")},
        {"no firm text leaves the job text untouched, blanks and all", 2,
         Variant("  Glass by owner.  "), Variant("  Glass by owner.  ")},
        {"no firm text leaves a Null alone", 2, Variant::null(), Variant::null()},
    };
    for (const Case& c : cases) {
        execVendor("UPDATE JobSummary SET mexclusions = ? WHERE JobID = 103", {c.jobExclusions});
        setRequest("MarkupRound", kRoundingJob);
        host::moduleState().requestUserId = std::to_string(c.userId);
        reports::ARMarkup2 report;
        run(report);
        EXPECT_EQ(jobText(kRoundingJob, "mexclusions"),
                  c.expected.isNull() ? "<null>" : toText(c.expected))
            << c.name;
    }
}

TEST_P(MarkupReportTest, AFailedMergeLeavesTheJobRowAsItWas) {
    // Here the notes may not grow past 60 characters, so the merged row cannot be written;
    // the exclusions, which could be, must not be written either.
    execVendor("CREATE TABLE JobKeep AS SELECT * FROM JobSummary");
    execVendor("DROP TABLE JobSummary");
    std::string create = data::createTableSql(data::vendorTables().front(), vendor().dialect());
    create.insert(create.size() - 1, ", CHECK (LENGTH(mnotes) < 60)");
    execVendor(create);
    execVendor("INSERT INTO JobSummary SELECT * FROM JobKeep");

    setRequest("MarkupClinic", kClinicJob);
    reports::ARMarkup2 report;
    EXPECT_THROW(report.run(), Error);
    EXPECT_EQ(jobText(kClinicJob, "mexclusions"), "Caulking at the perimeter by others.");
    EXPECT_EQ(jobText(kClinicJob, "mnotes"), "Storefront at grade, curtain wall above.");
}

TEST_P(MarkupReportTest, AJobWithoutAJobRowIsAnErrorNamingTheJob) {
    setRequest("MarkupClinic", 404);
    for (bool estimate : {false, true}) {
        std::unique_ptr<engine::Report> report;
        if (estimate)
            report = std::make_unique<reports::ARMarkup2>();
        else
            report = std::make_unique<reports::ARMarkup>();
        try {
            report->run();
            ADD_FAILURE() << report->className() << " printed a job that does not exist";
        } catch (const Error& error) {
            EXPECT_NE(error.description().find("no job 404 in JobSummary"), std::string::npos)
                << error.description();
        }
    }
}

TEST_P(MarkupReportTest, ANullMarkupFigureIsAnErrorNamingIt) {
    setRequest("MarkupNull", kClinicJob);
    reports::ARMarkup report;
    try {
        report.run();
        FAIL() << "a Null grand total was printed";
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), errc::kInvalidUseOfNull);
        EXPECT_NE(error.description().find("pgrandtot"), std::string::npos) << error.description();
        EXPECT_NE(error.description().find("MarkupNull"), std::string::npos) << error.description();
    }
}

INSTANTIATE_TEST_SUITE_P(Backends, MarkupReportTest,
                         ::testing::Values(CostBackend::SQLite, CostBackend::PostgreSQL),
                         costBackendName);

} // namespace
} // namespace qr::test
