// The workbook writer fed with arbitrary pages (fuzz_pages.hpp). Whatever the pages hold, the
// stream is a sequence of whole BIFF records none longer than BIFF8 allows.

#include "fuzz/fuzz_input.hpp"
#include "fuzz/fuzz_pages.hpp"
#include "platform/engine/page/page.hpp"
#include "platform/output/cell_grid.hpp"
#include "platform/output/workbook.hpp"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <vector>

namespace {

using namespace qr;

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
        const page::Pages pages = fuzz::pagesFrom(in);
        std::vector<std::uint8_t> stream;
        output::writeWorkbookStream(output::buildCellGrid(pages), output::excelSheetName(pages.title),
                                    [&](std::span<const std::uint8_t> bytes) {
                                        stream.insert(stream.end(), bytes.begin(), bytes.end());
                                    });
        checkRecords(stream);
    });
    return 0;
}
