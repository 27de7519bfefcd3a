// The multi-elevation glass report to PDF: elevations of 20 glass lines each (four make-ups of
// five lites, so the block-size report breaks its groups as on a real job) through
// ElevGlassMultipleReport in the landscape form, one ElevGlassAR2 run per elevation, and the
// PDF written from the pages. Run with 100 and with 500 elevations: the rate must stay the same
// (nothing a sub-report does may grow with the run). After the table of Google Benchmark the
// program prints the best run's rate, in the process's CPU time, for each count:
//   elevations=500 elevations_per_s=123

#include "platform/core/currency.hpp"
#include "platform/host/report_data.hpp"
#include "platform/output/cairo_text_measurer.hpp"
#include "platform/output/pdf_writer.hpp"
#include "reports/multi/elevation_multiple_report.hpp"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <map>
#include <string>
#include <unistd.h>

namespace {

using namespace qr;

constexpr int kLinesPerElevation = 20;

/// Best rate per elevation count.
std::map<long, double> g_best;

double processSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

host::ElevationGlassReportData elevation(long index) {
    static const char* const kMakeUps[] = {"1\" Insulated Low-E Clear", "1/4\" Clear Tempered",
                                           "1\" Insulated Spandrel", "1/4\" Laminated Clear"};
    static const char* const kTypes[] = {"Annealed", "Tempered", "Heat Strengthened", "Laminated"};
    host::ElevationGlassReportData data;
    data.User = {1, "Dana Whitfield", "(360) 555-0148", "dana@cascadeglazing.example"};
    data.Company = {"Cascade Glass & Glazing, Inc.", "(360) 555-0100", "(360) 555-0101", ""};
    data.Elevation = {"E" + std::to_string(index + 1),
                      "Storefront bay " + std::to_string(index + 1),
                      static_cast<std::int32_t>(1 + index % 3),
                      {1, "Riverside Medical Office Building"}};
    for (int i = 0; i < kLinesPerElevation; ++i) {
        host::ElevationGlassItem item;
        item.Quantity = 1 + i % 4;
        item.Description = kMakeUps[i / 5];
        item.Thickness = i < 5 || i >= 10 ? 1.0 : 0.25;
        item.GlassType = kTypes[i / 5];
        item.TypeLabel = "GL-" + std::to_string(1 + i / 5);
        item.PricePerSqFt = Currency::fromDouble(14.85);
        item.Width = 34.75 + i;
        item.LeftHeight = 83.125;
        item.RightHeight = i % 7 == 0 ? 90.5 : 83.125;
        item.Area = item.Width * item.LeftHeight / 144.0;
        item.BlockWidth = static_cast<std::int32_t>(item.Width) + 2;
        item.BlockHeight = 86;
        item.BlockArea = item.BlockWidth * item.BlockHeight / 144.0;
        item.BlockPrice = Currency::fromDouble(item.BlockArea * 14.85);
        data.GlassItems.push_back(item);
    }
    return data;
}

/// How many elevation headings the run printed.
long headingsPrinted(const page::Pages& pages) {
    long count = 0;
    page::Item item;
    for (const page::Page& page : pages.pages) {
        for (std::size_t i = 0; i < page.items.size(); ++i) {
            page.items.decodeInto(i, item);
            if (const auto* text = std::get_if<page::TextItem>(&item))
                count += text->control == "ElevationNameLabel" ? 1 : 0;
        }
    }
    return count;
}

void BM_MultiElevationGlassToPdf(benchmark::State& state) {
    if (!engine::textMeasurer())
        engine::setTextMeasurer(std::make_shared<output::CairoTextMeasurer>());
    const long elevations = state.range(0);
    host::ElevationGlassReportDataList list;
    for (long e = 0; e < elevations; ++e)
        list.push_back(elevation(e));
    const auto pdf = std::filesystem::temp_directory_path() /
                     ("qr-multi-elevation-bench-" + std::to_string(::getpid()) + ".pdf");
    std::size_t pages = 0;
    for (auto _ : state) {
        // A new container each run, as the service makes one for every call.
        reports::ElevGlassMultipleReport report;
        report.ElevationGlassReportDataList = &list;
        report.ReportFormat = "block";
        const double start = processSeconds();
        report.run();
        output::writePdf(report.pages(), pdf);
        const double took = processSeconds() - start;
        pages = report.pages().pages.size();
        if (headingsPrinted(report.pages()) != elevations) {
            state.SkipWithError("the elevations did not all print");
            break;
        }
        g_best[elevations] = std::max(g_best[elevations], elevations / took);
    }
    state.counters["pages"] = static_cast<double>(pages);
    state.counters["elevations_per_s"] = benchmark::Counter(
        static_cast<double>(elevations), benchmark::Counter::kIsIterationInvariantRate);
    std::filesystem::remove(pdf);
}
BENCHMARK(BM_MultiElevationGlassToPdf)
    ->Arg(100)
    ->Arg(500)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(2);

} // namespace

/// The elevation lines after the benchmark table, one per count that ran.
void printMultiElevationRates() {
    for (const auto& [elevations, rate] : g_best)
        std::printf("elevations=%ld elevations_per_s=%.0f\n", elevations, rate);
}
