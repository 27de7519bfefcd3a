// The glass to order reports over a hand-made order table, figures worked out by hand, read
// off their pages; on SQLite and PostgreSQL.
#include "reports/glass/glass_to_order.hpp"
#include "reports/support/glass_request_fixture.hpp"
#include "support/readers/file_readers.hpp"

#include <algorithm>
#include <functional>
#include <memory>

namespace qr::test {
namespace {

using Texts = std::vector<std::string>;

struct OrderReport {
    const char* name;
    std::function<std::unique_ptr<engine::Report>()> make;
    bool rightHeight;
};

const OrderReport kOrderReports[] = {
    {"JobGlassToOrder", [] { return std::make_unique<reports::JobGlassToOrder>(); }, true},
    {"JobGlassToOrder2", [] { return std::make_unique<reports::JobGlassToOrder2>(); }, false},
};

// Printed in the statement's order (description, part type, size text): the door lite, the
// worked example, a second tempered lite that the annealed one separates from the first, a
// raked laminated lite, and a spandrel lite under one square foot. Columns: description, part
// type, type label, glass type, width, left and right height, position, code, units, area and
// block area of one lite.
const std::vector<ReportRow> kOrder{
    {"Clear IG", "Frame", "GL-1", "Annealed", "24", "36", "36", "A1", "E1", 3, 4.5, 6.0},
    {"Clear IG", "Door", "GL-3", "Tempered", "36", "84", "84", "D1", "E1", 2, 21.0, 22.0},
    {"Clear IG", "Frame", "GL-3", "Tempered", "30", "40", "40", "B1", "E2", 1, 8.33, 9.0},
    {"Laminated", "Frame", "LM-1", "Laminated", "48", "60", "54", "L1", "C1", 2, 19.5, 20.0},
    {"Spandrel", "Frame", "SP-1", "Spandrel", "12", "6", "6", "S1", "E3", 1, 0.5, 1.0},
};

bool printedInPageHeader(const page::Pages& pages, const std::string& text) {
    for (const page::Page& page : pages.pages)
        for (const page::Item& item : page.items)
            if (const auto* t = std::get_if<page::TextItem>(&item);
                t && t->section == "PageHeader" && t->text == text)
                return true;
    return false;
}

void expectOrder(const OrderReport& r, const page::Pages& pages) {
    EXPECT_EQ(costTexts(pages, "Field13"), (Texts{"Clear IG", "Laminated", "Spandrel"}));
    // Consecutive rows group: the two tempered lites are two groups.
    EXPECT_EQ(costTexts(pages, "Field18"),
              (Texts{"Tempered", "Annealed", "Tempered", "Laminated", "Spandrel"}));
    EXPECT_EQ(costTexts(pages, "fUnits"), (Texts{"2", "3", "1", "2", "1"}));
    EXPECT_EQ(costTexts(pages, "lWidth"), (Texts{"36", "24", "30", "48", "12"}));
    EXPECT_EQ(costTexts(pages, "lLHeight"), (Texts{"84", "36", "40", "60", "6"}));
    EXPECT_EQ(costTexts(pages, "lRHeight"),
              r.rightHeight ? (Texts{"84", "36", "40", "54", "6"}) : Texts{});
    EXPECT_EQ(printedInPageHeader(pages, "R-Height"), r.rightHeight);
    EXPECT_EQ(costTexts(pages, "lPosition"), (Texts{"E1-D1", "E1-A1", "E2-B1", "C1-L1", "E3-S1"}));
    EXPECT_EQ(costTexts(pages, "Field20"), (Texts{"21.00", "4.50", "8.33", "19.50", "0.50"}));
    EXPECT_EQ(costTexts(pages, "Field21"), (Texts{"22.00", "6.00", "9.00", "20.00", "1.00"}));

    // 3 units of 4.5 and 6 square feet: 13.50 actual and 18.00 block.
    EXPECT_EQ(costTexts(pages, "Field11"), (Texts{"2", "3", "1", "2", "1"}));
    EXPECT_EQ(costTexts(pages, "lSqrFtSubTot"), (Texts{"42.00", "13.50", "8.33", "39.00", ".50"}));
    EXPECT_EQ(costTexts(pages, "lBlockSubTot"), (Texts{"44.00", "18.00", "9.00", "40.00", "1.00"}));
    EXPECT_EQ(costText(pages, "fTotalPieces"), "9");
    EXPECT_EQ(costText(pages, "lAreaGrandTotal"), "103.33");
    EXPECT_EQ(costText(pages, "lBlockGrandTotal"), "112.00");

    EXPECT_EQ(costText(pages, "Label1"), "Glass to Order for Job:");
    EXPECT_EQ(costText(pages, "lJobName"), kGlassSampleJob);
    EXPECT_EQ(costText(pages, "Label8"), "Sorted by:  Description, Glass Type, SqFt");
    EXPECT_EQ(costText(pages, "txtPageNumber"), "Page  1 of  1");
    EXPECT_TRUE(costTexts(pages, "lRepeated").empty());
}

class GlassToOrderTest : public GlassRequestTest {};

TEST_P(GlassToOrderTest, LinesGroupTotalsAndJobTotalsOfBothReportsRunTwice) {
    makeTable(data::ReportTableKind::GlassToOrder, "OrderT", kOrder);
    for (const OrderReport& r : kOrderReports) {
        auto report = r.make();
        for (int run = 1; run <= 2; ++run) {
            SCOPED_TRACE(std::string(r.name) + " run " + std::to_string(run));
            expectOrder(r, runOn(*report, "OrderT"));
        }
    }
}

TEST_P(GlassToOrderTest, EachRequestExportsTheSameTwoFilesWhenAskedFor) {
    makeTable(data::ReportTableKind::GlassToOrder, "OrderT", kOrder);
    const auto folder = reportsFolder(kGlassSampleJob);
    const auto xls = folder / (std::string(kGlassSampleJob) + "-GlassToOrder.xls");
    const auto pdf = folder / (std::string(kGlassSampleJob) + "-GlassToOrder.pdf");
    for (const OrderReport& r : kOrderReports) {
        SCOPED_TRACE(r.name);
        std::filesystem::remove_all(folder);
        const std::string name = r.rightHeight ? "jobglasstoorder" : "jobglasstoorder2";
        printRequest(name + " OrderT false 1 1 true true false |x |");
        EXPECT_TRUE(shownMessages().empty()) << shownMessages().front();
        ASSERT_TRUE(std::filesystem::exists(xls));
        ASSERT_TRUE(std::filesystem::exists(pdf));

        const std::string text = pdfText(pdf);
        for (const char* shown : {"Glass to Order for Job:", "E1-A1", "Actual SqrFt x Qty:",
                                  "13.50", "Total Block", "112.00", "103.33"})
            EXPECT_NE(text.find(shown), std::string::npos) << shown;
        EXPECT_EQ(text.find("R-Height") != std::string::npos, r.rightHeight);

        const auto sheets = readWorkbook(xls);
        ASSERT_FALSE(sheets.empty());
        const Texts cells = textsOf(sheets.front());
        for (const char* shown : {kGlassSampleJob, "E2-B1"})
            EXPECT_NE(std::find(cells.begin(), cells.end(), shown), cells.end()) << shown;
        // The bound areas and the computed totals go out as numbers.
        const auto numbers = numbersOf(sheets.front());
        for (double figure : {4.5, 112.0})
            EXPECT_NE(std::find(numbers.begin(), numbers.end(), figure), numbers.end()) << figure;
    }

    // Only the files asked for: the PDF alone.
    std::filesystem::remove_all(folder);
    printRequest("jobglasstoorder OrderT false 1 1 false true false |x |");
    EXPECT_TRUE(std::filesystem::exists(pdf));
    EXPECT_FALSE(std::filesystem::exists(xls));
}

QR_GLASS_REQUEST_ON_BOTH_BACKENDS(GlassToOrderTest);

} // namespace
} // namespace qr::test
