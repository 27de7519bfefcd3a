// Engine + PDF on a synthetic grouped glass list: 12 cells a line, four group levels, a
// subtotal footer per glass-type group, "Page n of m" on every page. Besides Google
// Benchmark's table, each size is also run once in a child process of its own, so its peak
// memory is its own, and the program ends with one line per size (item_bytes: what a page
// item takes packed, on average, offsets included):
//   lines=100000 lines_per_s=23456 peak_mib=61 item_bytes=41

#include "platform/engine/report.hpp"
#include "platform/output/cairo_text_measurer.hpp"
#include "platform/output/pdf_writer.hpp"

#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <ctime>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>

namespace {

using namespace qr;
using namespace qr::engine;

ReportDesign glassListDesign() {
    PageSettings page;
    page.marginLeft = page.marginRight = page.marginTop = page.marginBottom = 720;
    page.printWidth = 10800;
    auto cell = [](const char* name, int x, int w, const char* field) {
        return textBox(name, {x, 0, w, 220}, field).size(8);
    };
    return {"BenchGlassList",
            "Job Glass Report",
            page,
            {pageHeader("PageHeader", 300,
                        {label("hQty", {0, 0, 500, 240}, "Qty").alignRight(),
                         label("hType", {600, 0, 1100, 240}, "Type"),
                         label("hWidth", {3100, 0, 900, 240}, "Width"),
                         label("hTotal", {9600, 0, 1200, 240}, "Totals").alignRight(),
                         line("Line1", 0, 280, 10800, 280)}),
             groupHeader("ghOrderGroup", "sDescription", 260,
                         {textBox("txtDescription", {0, 0, 8000, 240}, "sDescription").bold()}),
             groupHeader("ThicknessGroup", "pThickness", 240,
                         {label("lThickness", {200, 0, 900, 240}, "Thickness:"),
                          textBox("txtThickness", {1100, 0, 900, 240}, "pThickness").format("0.#####\"")}),
             groupHeader("TypeHeader", "sGlassType", 240,
                         {textBox("txtType", {400, 0, 2000, 240}, "sGlassType").bold()}),
             groupHeader("ghTypeLabel", "sTypeLabel", 240,
                         {textBox("txtLabel", {600, 0, 2000, 240}, "sTypeLabel")}),
             detail("Detail", 220,
                    {cell("Field1", 0, 500, "iQuantity").alignRight(),
                     cell("Field2", 600, 1100, "sGlassType"),
                     cell("Field17", 1750, 1300, "sCategory"),
                     cell("Field4", 3100, 900, "sWidth"),
                     cell("Field5", 4050, 900, "sHeight"),
                     cell("Field6", 5000, 1100, "SBLOCKSIZE"),
                     cell("Field7", 6150, 400, "sRake"),
                     cell("Field9", 6600, 700, "pSqrFt").format("##,###.00").alignRight(),
                     cell("Field8", 7350, 800, "pPrice").format("$#,##0.00").alignRight(),
                     cell("Field11", 8200, 800, "pLineArea").format("###,###.00").alignRight(),
                     cell("Field10", 9050, 1000, "pPriceTotal").format("$#,##0.00").alignRight(),
                     cell("Field12", 10100, 700, "sNote")}),
             groupFooter("GroupFooter2", "ghTypeLabel", 0, {}),
             groupFooter("GroupFooter1", "TypeHeader", 260,
                         {textBox("Field3", {0, 0, 500, 240}, "iQuantity").sum("TypeHeader").alignRight(),
                          textBox("Field13", {8200, 0, 800, 240}, "pLineArea")
                              .sum("TypeHeader").format("###,###.00").alignRight(),
                          textBox("Field14", {9050, 0, 1000, 240}, "pPriceTotal")
                              .sum("TypeHeader").format("$###,###.00").alignRight()}),
             groupFooter("GroupFooter3", "ThicknessGroup", 0, {}),
             groupFooter("gfOrderGroup", "ghOrderGroup", 0, {}),
             pageFooter("PageFooter", 300,
                        {textBox("txtPageNumber", {7800, 0, 3000, 240}).pageCount().alignRight()})}};
}

class BenchGlassList : public Report {
  public:
    explicit BenchGlassList(long lines) : Report(glassListDesign()), m_lines(lines) {
        onFormat("PageFooter", [this] {
            textBox("txtPageNumber")
                .setOutputFormat("\"Page  " + std::to_string(pageNumber()) + " of  \"#");
        });
    }

  protected:
    void initialize() override {
        for (const char* f : {"sDescription", "pThickness", "sGlassType", "sTypeLabel", "iQuantity",
                              "sCategory", "sWidth", "sHeight", "SBLOCKSIZE", "sRake", "pSqrFt",
                              "pPrice", "pLineArea", "pPriceTotal", "sNote"})
            fields().add(f);
    }
    void reportStart() override { m_row = 0; }
    void fetchData(bool& eof) override {
        if (m_row >= m_lines) {
            eof = true;
            return;
        }
        static const char* kDescriptions[] = {"1\" Insulated Clear Low-E", "1/4\" Clear",
                                              "1\" Insulated Spandrel", "1/4\" Tinted"};
        static const char* kTypes[] = {"Annealed", "Tempered", "Heat Strengthened", "Spandrel"};
        // Groups change every 200, 100, 50 and 10 lines.
        const long r = m_row;
        auto& f = fields();
        f["sDescription"].setValue(kDescriptions[(r / 200) % 4]);
        f["pThickness"].setValue(0.25 + 0.125 * ((r / 100) % 2));
        f["sGlassType"].setValue(kTypes[(r / 50) % 4]);
        f["sTypeLabel"].setValue("GL-" + std::to_string((r / 10) % 40));
        const std::int32_t qty = static_cast<std::int32_t>(r % 5 + 1);
        const double area = 4.0 + (r % 37) * 0.75;
        const double price = 12.5 + (r % 11);
        f["iQuantity"].setValue(qty);
        f["sCategory"].setValue(r % 13 == 0 ? "door glass" : "storefront");
        f["sWidth"].setValue(std::to_string(24 + r % 96) + " 15/16");
        f["sHeight"].setValue(std::to_string(36 + r % 84) + " 1/4");
        f["SBLOCKSIZE"].setValue(std::to_string(26 + r % 96) + " x " + std::to_string(38 + r % 84));
        f["sRake"].setValue(r % 17 == 0 ? "Y" : "");
        f["pSqrFt"].setValue(area);
        f["pPrice"].setValue(price);
        f["pLineArea"].setValue(area * qty);
        f["pPriceTotal"].setValue(area * qty * price);
        f["sNote"].setValue(r % 7 == 0 ? "temp" : "");
        ++m_row;
        eof = false;
    }

  private:
    long m_lines;
    long m_row = 0;
};

std::filesystem::path benchPdfPath() {
    return std::filesystem::temp_directory_path() /
           ("qr-bench-" + std::to_string(::getpid()) + ".pdf");
}

struct RunFigures {
    size_t pages = 0;
    size_t items = 0;
    size_t itemBytes = 0; // encoded items and their offsets
};

// One run: engine (events, formats, summaries, pagination), then the PDF.
RunFigures runOnce(long lines) {
    BenchGlassList report(lines);
    report.run();
    const auto path = benchPdfPath();
    output::writePdf(report.pages(), path);
    RunFigures figures;
    figures.pages = report.pages().pages.size();
    for (const page::Page& page : report.pages().pages) {
        figures.items += page.items.size();
        figures.itemBytes += page.items.encodedBytes() + page.items.size() * sizeof(std::uint32_t);
    }
    std::filesystem::remove(path);
    return figures;
}

void installMeasurer() {
    static bool done = false;
    if (!done) {
        engine::setTextMeasurer(std::make_shared<output::CairoTextMeasurer>());
        done = true;
    }
}

void BM_GlassListEnginePlusPdf(benchmark::State& state) {
    installMeasurer();
    size_t pages = 0;
    for (auto _ : state) pages = runOnce(state.range(0)).pages;
    state.counters["pages"] = static_cast<double>(pages);
    state.counters["lines_per_s"] =
        benchmark::Counter(static_cast<double>(state.range(0)), benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_GlassListEnginePlusPdf)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(1);

// One size, run by a fresh copy of this program (so the peak memory is that run's alone, not
// what the benchmarks before it left behind). Time is the process's CPU time around the run:
// on an idle machine the same as the wall clock, and not skewed when other work shares it.
int childRun(long lines) {
    installMeasurer();
    timespec start{}, end{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &start);
    const RunFigures figures = runOnce(lines);
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &end);
    const double seconds = (end.tv_sec - start.tv_sec) + (end.tv_nsec - start.tv_nsec) / 1e9;
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    std::printf("lines=%ld lines_per_s=%.0f peak_mib=%ld item_bytes=%.0f\n", lines, lines / seconds,
                usage.ru_maxrss / 1024,
                static_cast<double>(figures.itemBytes) / static_cast<double>(figures.items));
    return 0;
}

void summaryLine(const char* self, long lines) {
    std::fflush(stdout);
    const pid_t child = ::fork();
    if (child == 0) {
        const std::string arg = "--qr-child=" + std::to_string(lines);
        ::execl(self, self, arg.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) std::printf("lines=%ld failed\n", lines);
}

} // namespace

void withGlassListPages(long lines, const std::function<void(const qr::page::Pages&)>& use) {
    installMeasurer();
    BenchGlassList report(lines);
    report.run();
    use(report.pages());
}

void printGlassLabelsRate();     // glass_labels_bench.cpp
void printMultiElevationRates(); // multi_elevation_bench.cpp
void printPipelineFigures();      // pipeline_bench.cpp
int pipelineChild(const std::string& arg);
void printOutputRates();          // pipeline_bench.cpp

int main(int argc, char** argv) {
    if (argc == 2 && std::string(argv[1]).rfind("--qr-child=", 0) == 0)
        return childRun(std::stol(std::string(argv[1]).substr(11)));
    if (argc == 2 && std::string(argv[1]).rfind("--qr-e2e=", 0) == 0)
        return pipelineChild(argv[1]);
    if (argc == 2 && std::string(argv[1]) == "--qr-outputs") { // the workbook and PNG lines only
        printOutputRates();
        return 0;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::fflush(stdout);
    for (long lines : {1000L, 10000L, 100000L}) summaryLine("/proc/self/exe", lines);
    printGlassLabelsRate();
    printMultiElevationRates();
    printPipelineFigures();
    return 0;
}
