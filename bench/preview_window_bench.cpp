// The preview window over a long report: how long from finished pages to a window showing its
// first page (built, shown and painted, thumbnails included), and how long a find over every
// page takes. Pages are 50 lines of 12 cells, as a long glass list prints. Qt runs offscreen
// unless a display is set.

#include "platform/output/cairo_text_measurer.hpp"
#include "platform/preview/preview_page_view.hpp"
#include "platform/preview/preview_window.hpp"

#include <QApplication>
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <string>

namespace {

using namespace qr;

page::Pages longReport(int pageCount) {
    output::CairoTextMeasurer measurer;
    page::Pages pages;
    pages.title = "Job Glass Report";
    pages.fonts.push_back(page::FontSpec{"Arial", 8});
    const auto metrics = measurer.metrics(pages.fonts[0]);
    for (int p = 0; p < pageCount; ++p) {
        page::Page& pg = pages.pages.emplace_back();
        for (int line = 0; line < 50; ++line) {
            const int baseline = 1440 + line * 260;
            for (int cell = 0; cell < 12; ++cell) {
                std::string text = cell == 1 ? "Tempered 1/4\" clear"
                                             : std::to_string((p * 50 + line) * 12 + cell);
                const int x = 720 + cell * 900;
                const int width = measurer.width(pages.fonts[0], text);
                page::TextItem item;
                item.box = {x, baseline - metrics.ascent, width, metrics.ascent + metrics.descent};
                item.runs.push_back({x, baseline, width, text});
                item.text = std::move(text);
                pg.items.emplace_back(std::move(item));
            }
        }
    }
    return pages;
}

// Gives the report's memory back to the system, so the other benchmarks of this program that
// measure their peak memory in child processes do not inherit it.
void release(page::Pages& pages) {
    page::Pages().pages.swap(pages.pages);
    ::malloc_trim(0);
}

void BM_PreviewOpen(benchmark::State& state) {
    page::Pages pages = longReport(int(state.range(0)));
    for (auto _ : state) {
        output::PreviewWindow window(pages, pages.title);
        window.show();
        QCoreApplication::processEvents();
        // The first page as the user sees it, painted now.
        benchmark::DoNotOptimize(window.grab());
        window.close();
    }
    state.counters["pages"] = double(pages.pages.size());
    release(pages);
}
BENCHMARK(BM_PreviewOpen)->Arg(2000)->Unit(benchmark::kMillisecond);

void BM_PreviewFindEverywhere(benchmark::State& state) {
    page::Pages pages = longReport(int(state.range(0)));
    {
        output::PreviewWindow window(pages, pages.title);
        for (auto _ : state) {
            window.find("tempered");
            benchmark::DoNotOptimize(window.matchCount());
            window.find(QString());
        }
    }
    state.counters["matches"] = double(pages.pages.size() * 50);
    release(pages);
}
BENCHMARK(BM_PreviewFindEverywhere)->Arg(2000)->Unit(benchmark::kMillisecond);

} // namespace
