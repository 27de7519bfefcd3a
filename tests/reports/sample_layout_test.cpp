// Every report of the sample jobs printed as an estimator would print it, and its pages looked
// over for faults of layout rather than of figures: texts cut to their boxes, group footers
// stranded at the top of a page, page headers that print nothing. On SQLite and PostgreSQL.
#include "data/schema.hpp"
#include "data/statements.hpp"
#include "platform/host/module_state.hpp"
#include "reports/cost/ar_markup.hpp"
#include "reports/cost/ar_markup2.hpp"
#include "reports/cost/final_labor.hpp"
#include "reports/cost/final_summary.hpp"
#include "reports/glass/final_glass_report.hpp"
#include "reports/support/cost_fixture.hpp"

#include <algorithm>
#include <functional>
#include <memory>

namespace qr::test {
namespace {

using data::ReportTableKind;

/// One report class and how it is asked for on a sample job.
struct ReportClass {
    const char* name;
    std::function<std::unique_ptr<engine::Report>()> make;
    ReportTableKind table; ///< the report table its request names (glass: none needed)
    bool glass = false;
    bool markup = false; ///< refuses job 3, whose markup table is empty
};

template <class R> std::unique_ptr<engine::Report> make() {
    return std::make_unique<R>();
}

const ReportClass kReports[] = {
    {"FinalGlassAR", make<reports::FinalGlassAR>, ReportTableKind::GlassTakeoff, true},
    {"FinalGlassAR2", make<reports::FinalGlassAR2>, ReportTableKind::GlassTakeoff, true},
    {"FinalGlassARNP", make<reports::FinalGlassARNP>, ReportTableKind::GlassTakeoff, true},
    {"FinalGlassARNP2", make<reports::FinalGlassARNP2>, ReportTableKind::GlassTakeoff, true},
    {"ARMarkup", make<reports::ARMarkup>, ReportTableKind::Markup, false, true},
    {"ARMarkup2", make<reports::ARMarkup2>, ReportTableKind::Markup, false, true},
    {"FinalSummaryAR", make<reports::FinalSummaryAR>, ReportTableKind::FramingSystems},
    {"FinalSummaryAR2", make<reports::FinalSummaryAR2>, ReportTableKind::FramingSystems},
    {"FinalLaborAR", make<reports::FinalLaborAR>, ReportTableKind::Labor},
};

/// What one run printed, with the names of the design's group footers.
struct Printed {
    std::string title; ///< "FinalGlassAR, job 1"
    page::Pages pages;
    std::vector<std::string> groupFooters;
};

const std::vector<std::string> kGlassFooters{"GroupFooter2", "GroupFooter1", "GroupFooter3",
                                             "gfOrderGroup"};

class SampleLayoutTest : public CostSampleTest {
  protected:
    /// Every report of sample job `jobId` that the job can be printed with; with `pictures`,
    /// its pages are also written as PNG files into the build tree, for looking at.
    std::vector<Printed> printJob(int jobId, bool pictures = false) {
        std::vector<Printed> printed;
        for (const ReportClass& c : kReports) {
            if (c.markup && jobId == 3)
                continue;
            setRequest(data::reportTableName(c.table, jobId), jobId, "212-48-6-3180.25-9");
            std::unique_ptr<engine::Report> report = c.make();
            host::FinalGlassReportData glass;
            if (c.glass) {
                glass = glassData(jobId);
                static_cast<reports::FinalGlassReport&>(*report).ReportData = &glass;
            }
            report->run();
            if (pictures)
                writeCostPngs(report->pages(), std::string("sample-layout-") + c.name);
            printed.push_back({std::string(c.name) + ", job " + std::to_string(jobId),
                               report->pages(),
                               c.glass ? kGlassFooters : std::vector<std::string>{}});
        }
        return printed;
    }

  private:
    /// The data the host hands the final glass reports for a sample job: the estimator, the
    /// firm, the job's glass with its suppliers shown (the longest description headings).
    host::FinalGlassReportData glassData(int jobId) {
        host::FinalGlassReportData data;
        data.User = {1, "Dana Whitfield", "(360) 555-0148",
                     "dana.whitfield@cascadeglazing.example"};
        data.Company = {"Cascade Glass & Glazing, Inc.", "(360) 555-0100", "(360) 555-0101", ""};
        data.Job = {jobId, host::moduleState().currentJobName};
        data.GlassQuery = data::sql::finalGlassQuery(jobId);
        data.ShowSupplier = true;
        data.Connection = host::moduleState().requestVendorConnection;
        return data;
    }
};

TEST_P(SampleLayoutTest, NoReportCutsATextItsDesignDoesNotMeanToCut) {
    for (int job : {1, 2, 3}) {
        for (const Printed& p : printJob(job, job == 1)) {
            for (const page::CutText& cut : p.pages.cutTexts) {
                if (!cut.clipped)
                    ADD_FAILURE() << p.title << ": page " << cut.page << " " << cut.section << "/"
                                  << cut.control << " \"" << cut.text << "\" printed as \""
                                  << cut.printed << "\"";
            }
        }
    }
}

/// The section of the first thing printed in the body of a page, below its page header.
std::string firstBodySection(const page::Page& page) {
    for (const page::Item& item : page.items) {
        const std::string section = std::visit([](const auto& i) { return i.section; }, item);
        if (section != "PageHeader" && section != "PageFooter")
            return section;
    }
    return "";
}

TEST_P(SampleLayoutTest, NoPageOpensWithAGroupFooter) {
    for (int job : {1, 2}) {
        for (const Printed& p : printJob(job)) {
            for (std::size_t n = 0; n < p.pages.pages.size(); ++n) {
                const std::string first = firstBodySection(p.pages.pages[n]);
                EXPECT_EQ(std::count(p.groupFooters.begin(), p.groupFooters.end(), first), 0)
                    << p.title << ": page " << n + 1 << " opens with " << first;
            }
        }
    }
}

TEST_P(SampleLayoutTest, EveryPageOfTheListsShowsThePageHeaderCaption) {
    for (const Printed& p : printJob(1)) {
        if (p.title.rfind("FinalGlass", 0) != 0 && p.title.rfind("FinalLabor", 0) != 0)
            continue;
        for (std::size_t n = 0; n < p.pages.pages.size(); ++n) {
            std::vector<std::string> captions;
            for (const page::Item& item : p.pages.pages[n].items) {
                const auto* text = std::get_if<page::TextItem>(&item);
                if (text && text->section == "PageHeader")
                    captions.push_back(text->text);
            }
            EXPECT_EQ(captions, std::vector<std::string>{"Total"}) << p.title << ": page " << n + 1;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Backends, SampleLayoutTest,
                         ::testing::Values(CostBackend::SQLite, CostBackend::PostgreSQL),
                         costBackendName);

} // namespace
} // namespace qr::test
