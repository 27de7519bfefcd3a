// The workbook writer fed with arbitrary pages: texts with any bytes, boxes anywhere (negative,
// overlapping, off the paper), numbers with any format, check boxes, lines. Whatever the pages
// hold, the stream is a sequence of whole BIFF records none longer than BIFF8 allows.

#include "fuzz/fuzz_input.hpp"
#include "platform/engine/page/page.hpp"
#include "platform/output/cell_grid.hpp"
#include "platform/output/workbook.hpp"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <vector>

namespace {

using namespace qr;

page::Rect rectFrom(FuzzedDataProvider& in) {
    return {in.ConsumeIntegralInRange(-2000, 20000), in.ConsumeIntegralInRange(-2000, 20000),
            in.ConsumeIntegralInRange(-100, 15000), in.ConsumeIntegralInRange(-100, 3000)};
}

page::Pages pagesFrom(FuzzedDataProvider& in) {
    page::Pages pages;
    pages.title = in.ConsumeRandomLengthString(40);
    pages.fonts.push_back({});
    pages.fonts.push_back({"Times New Roman", in.ConsumeFloatingPointInRange(1.0, 72.0), true});
    const int pageCount = in.ConsumeIntegralInRange(1, 4);
    for (int p = 0; p < pageCount && in.remaining_bytes() > 0; ++p) {
        page::Page& page = pages.pages.emplace_back();
        const int itemCount = in.ConsumeIntegralInRange(0, 40);
        for (int i = 0; i < itemCount && in.remaining_bytes() > 0; ++i) {
            switch (in.ConsumeIntegralInRange(0, 3)) {
            case 0: {
                page::TextItem text;
                text.box = rectFrom(in);
                text.font = in.ConsumeIntegralInRange(0, 1);
                text.align = static_cast<page::Align>(in.ConsumeIntegralInRange(0, 2));
                text.text = in.ConsumeRandomLengthString(300);
                text.runs.push_back({text.box.x, text.box.y + 200, text.box.width, text.text});
                if (in.ConsumeBool())
                    text.numericValue = in.ConsumeFloatingPoint<double>();
                if (in.ConsumeBool())
                    text.format = in.ConsumeRandomLengthString(30);
                text.pageBand = static_cast<page::PageBand>(in.ConsumeIntegralInRange(0, 2));
                page.items.push_back(text);
                break;
            }
            case 1:
                page.items.push_back(page::LineItem{in.ConsumeIntegral<int>(), in.ConsumeIntegral<int>(),
                                              in.ConsumeIntegral<int>(), in.ConsumeIntegral<int>()});
                break;
            case 2:
                page.items.push_back(page::RectItem{rectFrom(in)});
                break;
            default:
                page.items.push_back(page::CheckBoxItem{rectFrom(in), in.ConsumeBool()});
                break;
            }
        }
    }
    return pages;
}

// Walks the stream record by record: a four-byte header (type, length) and that many bytes.
// The stream may end in zero padding after the last record.
void checkRecords(const std::vector<std::uint8_t>& stream) {
    std::size_t at = 0;
    while (at + 4 <= stream.size()) {
        const unsigned type = stream[at] | stream[at + 1] << 8;
        const unsigned length = stream[at + 2] | stream[at + 3] << 8;
        if (type == 0 && length == 0)
            return; // padding
        if (length > 8224 || at + 4 + length > stream.size())
            std::abort();
        at += 4 + length;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    fuzz::refusalsAllowed([&] {
        const page::Pages pages = pagesFrom(in);
        std::vector<std::uint8_t> stream;
        output::writeWorkbookStream(output::buildCellGrid(pages), output::excelSheetName(pages.title),
                                    [&](std::span<const std::uint8_t> bytes) {
                                        stream.insert(stream.end(), bytes.begin(), bytes.end());
                                    });
        checkRecords(stream);
    });
    return 0;
}
