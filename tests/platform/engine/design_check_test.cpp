// Designs are checked when a report object is built: faults are refused with error 999 from
// "ReportDesign", naming the report and the section or control at fault.
#include "platform/engine/engine_test_support.hpp"

#include <functional>
#include <gtest/gtest.h>

namespace qr::engine::test {
namespace {

ReportDesign goodDesign() {
    return designOf(
        "FinalGlassAR",
        {reportHeader("ReportHeader", 600,
                      {label("Label1", {0, 0, 4000, 300}, "Job Glass Report"),
                       line("Line1", 0, 590, 10800, 590)}),
         pageHeader("PageHeader", 240, {label("Label15", {10000, 0, 800, 240}, "Total")}),
         groupHeader("TypeHeader", "sGlassType", 240,
                     {textBox("Field18", {0, 0, 2000, 240}, "sGlassType")}),
         detail("Detail", 240,
                {textBox("Field1", {0, 0, 600, 240}, "iQuantity"),
                 checkBox("CheckBox1", {700, 0, 240, 240}, "brake"),
                 line("Rising", 1000, 240, 1500, 0)}),
         groupFooter("GroupFooter1", "TypeHeader", 240,
                     {textBox("Field3", {0, 0, 600, 240}, "iQuantity").sum("TypeHeader"),
                      textBox("Field11", {700, 0, 1200, 240}, "pPriceTotal")
                          .format("$#,##0.00")
                          .sum("TypeHeader")}),
         pageFooter("PageFooter", 240, {textBox("txtPageNumber", {0, 0, 3000, 240}).pageCount()}),
         reportFooter("ReportFooter", 240,
                      {textBox("Field14", {0, 0, 1200, 240}, "pPriceTotal").sum()})});
}

SectionDesign& sectionNamed(ReportDesign& d, const std::string& name) {
    for (SectionDesign& s : d.sections) {
        if (s.name == name)
            return s;
    }
    throw std::runtime_error("no section " + name);
}

TEST(DesignCheck, AcceptsAWellFormedDesign) {
    EXPECT_NO_THROW(checkDesign(goodDesign()));
    ReportDesign landscape = goodDesign();
    landscape.page.orientation = page::Orientation::Landscape;
    landscape.page.printWidth = 14400;
    EXPECT_NO_THROW(checkDesign(landscape));
}

TEST(DesignCheck, RefusesFaultsNamingReportAndCulprit) {
    struct Case {
        const char* what;
        std::function<void(ReportDesign&)> spoil;
        std::vector<std::string> mentions;
    };
    const std::vector<Case> cases = {
        {"two controls with one name",
         [](ReportDesign& d) {
             sectionNamed(d, "Detail").controls.push_back(textBox("Field18", {0, 0, 10, 10}));
         },
         {"FinalGlassAR", "two controls are named Field18"}},
        {"summary over a group that does not exist",
         [](ReportDesign& d) {
             sectionNamed(d, "GroupFooter1").controls[0].summary.group = "ghNone";
         },
         {"FinalGlassAR", "Field3", "ghNone"}},
        {"group footer without its header",
         [](ReportDesign& d) { sectionNamed(d, "GroupFooter1").header = "ghNone"; },
         {"FinalGlassAR", "GroupFooter1", "ghNone"}},
        {"footers out of nesting order",
         [](ReportDesign& d) {
             d.sections.insert(d.sections.begin() + 2,
                               groupHeader("ghOuter", "sDescription", 0, {}));
             d.sections.insert(d.sections.begin() + 5, groupFooter("gfOuter", "ghOuter", 0, {}));
         },
         {"GroupFooter1", "nesting order"}},
        {"control outside the print width",
         [](ReportDesign& d) {
             sectionNamed(d, "Detail").controls.push_back(textBox("Wide", {10000, 0, 900, 240}));
         },
         {"FinalGlassAR", "Wide", "print width 10800"}},
        {"control below its section",
         [](ReportDesign& d) {
             sectionNamed(d, "Detail").controls.push_back(label("Low", {0, 100, 500, 240}, "x"));
         },
         {"Low", "below the bottom of its section"}},
        {"no detail",
         [](ReportDesign& d) {
             std::erase_if(d.sections, [](const SectionDesign& s) { return s.name == "Detail"; });
         },
         {"FinalGlassAR", "no detail"}},
        {"page footer above the detail",
         [](ReportDesign& d) { std::swap(d.sections[3], d.sections[5]); },
         {"out of order"}},
        {"two page headers",
         [](ReportDesign& d) {
             d.sections.insert(d.sections.begin() + 1, pageHeader("Again", 0, {}));
         },
         {"out of order or repeated"}},
        {"two sections with one name",
         [](ReportDesign& d) { sectionNamed(d, "PageHeader").name = "Detail"; },
         {"two sections are named Detail"}},
        {"a label bound to a field",
         [](ReportDesign& d) { sectionNamed(d, "PageHeader").controls[0].dataField = "sJob"; },
         {"Label15", "cannot show a field"}},
        {"a summary on a label",
         [](ReportDesign& d) { sectionNamed(d, "PageHeader").controls[0].sum(); },
         {"Label15", "only text boxes"}},
        {"a summary of no field",
         [](ReportDesign& d) { sectionNamed(d, "ReportFooter").controls[0].dataField.clear(); },
         {"Field14", "summarises no field"}},
        {"an output format that does not parse",
         [](ReportDesign& d) { sectionNamed(d, "Detail").controls[0].format("0.00\\"); },
         {"Field1", "0.00\\"}},
        {"margins and print width wider than the paper",
         [](ReportDesign& d) { d.page.printWidth = 10900; },
         {"FinalGlassAR", "print width 10900", "paper width 12240"}},
        {"label columns wider than the print width",
         [](ReportDesign& d) {
             sectionNamed(d, "Detail").columns(3, ColumnDirection::AcrossThenDown, 4000);
         },
         {"Detail", "3 columns"}},
        {"a control of negative size",
         [](ReportDesign& d) { sectionNamed(d, "Detail").controls[0].rect.width = -5; },
         {"Field1", "negative size"}},
        {"a group field on a detail",
         [](ReportDesign& d) { sectionNamed(d, "Detail").groupField = "x"; },
         {"Detail", "group field"}},
        {"a report without a name", [](ReportDesign& d) { d.name.clear(); }, {"no name"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ReportDesign d = goodDesign();
        c.spoil(d);
        try {
            checkDesign(d);
            ADD_FAILURE() << "accepted";
        } catch (const Error& e) {
            EXPECT_EQ(e.number(), errc::kComponent);
            EXPECT_EQ(e.source(), "ReportDesign");
            for (const std::string& m : c.mentions)
                EXPECT_NE(e.description().find(m), std::string::npos) << e.description();
        }
    }
}

TEST(DesignCheck, BuildingAReportChecksItsDesign) {
    ReportDesign d = goodDesign();
    sectionNamed(d, "GroupFooter1").header = "ghNone";
    EXPECT_THROW(ListReport(std::move(d), {}, {}), Error);
}

} // namespace
} // namespace qr::engine::test
