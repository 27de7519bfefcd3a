// Glass labels from a table to PDF: the Avery 5260 glass label report reading 10,000 lites (the
// sample job's, over and over) from a glass cut table in a SQLite database through its data
// control, laying out 334 sheets, and the PDF written from them. The table is written once, outside
// the timing. After the table of Google Benchmark the program prints the best run's rate, in the
// process's CPU time, on a line of its own:
//   labels=10000 labels_per_s=45678

#include "data/sample/sample_writer.hpp"
#include "data/schema.hpp"
#include "platform/core/error.hpp"
#include "platform/db/connection.hpp"
#include "platform/host/module_state.hpp"
#include "platform/output/cairo_text_measurer.hpp"
#include "platform/output/pdf_writer.hpp"
#include "reports/glass/glass_cut_reports.hpp"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace {

using namespace qr;

constexpr const char* kTable = "GlassCutBench";

struct Best {
    long labels = 0;
    double labelsPerSecond = 0;
};
Best g_best;

// The process's CPU time: on an idle machine the same as the wall clock, and not skewed when
// other work shares the machine.
double processSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

std::filesystem::path benchFile(const char* suffix) {
    return std::filesystem::temp_directory_path() /
           ("qr-labels-bench-" + std::to_string(::getpid()) + suffix);
}

// A glass cut table of `labels` lites: the sample job's lites over and over, as the host writes
// them for a print.
std::shared_ptr<db::Connection> glassCutTable(long labels) {
    const auto path = benchFile(".db");
    std::filesystem::remove(path);
    auto vendor = std::make_shared<db::Connection>("sqlite:" + path.string());
    db::Connection master("sqlite::memory:");
    data::sample::writeSample(*vendor, master);
    const std::string sample = data::reportTableName(data::ReportTableKind::GlassCut, 1);
    data::createTables(*vendor, {data::reportTableDef(data::ReportTableKind::GlassCut, kTable)});
    db::Transaction transaction(*vendor);
    long written = 0;
    while (written < labels) {
        const long added =
            vendor->execute(std::string("INSERT INTO ") + kTable + " SELECT * FROM " + sample);
        if (added <= 0)
            throw Error::component("GlassLabelsBench", sample + " has no lites to repeat.");
        written += added;
    }
    vendor->execute(std::string("DELETE FROM ") + kTable + " WHERE rowid > " +
                    std::to_string(labels));
    transaction.commit();
    return vendor;
}

void BM_GlassLabelsTableToPdf(benchmark::State& state) {
    if (!engine::textMeasurer())
        engine::setTextMeasurer(std::make_shared<output::CairoTextMeasurer>());
    const long labels = state.range(0);
    auto& module = host::moduleState();
    module.requestVendorConnection = glassCutTable(labels);
    module.requestTable = kTable;
    const auto pdf = benchFile(".pdf");
    reports::arAvery5260GlassLabels report;
    const long sheets = (labels + 29) / 30;
    for (auto _ : state) {
        const double start = processSeconds();
        report.run();
        output::writePdf(report.pages(), pdf);
        const double took = processSeconds() - start;
        if (static_cast<long>(report.pages().pages.size()) != sheets) {
            state.SkipWithError("the labels did not fill the sheets they should");
            break;
        }
        report.releasePages();
        g_best.labels = labels;
        g_best.labelsPerSecond = std::max(g_best.labelsPerSecond, labels / took);
    }
    state.counters["sheets"] = static_cast<double>(sheets);
    state.counters["labels_per_s"] = benchmark::Counter(
        static_cast<double>(labels), benchmark::Counter::kIsIterationInvariantRate);
    module.requestVendorConnection.reset();
    std::filesystem::remove(pdf);
    std::filesystem::remove(benchFile(".db"));
}
BENCHMARK(BM_GlassLabelsTableToPdf)->Arg(10000)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

/// The label line after the benchmark table (nothing when the label case did not run).
void printGlassLabelsRate() {
    if (g_best.labels > 0)
        std::printf("labels=%ld labels_per_s=%.0f\n", g_best.labels, g_best.labelsPerSecond);
}
