// The PDF writer fed with arbitrary pages (fuzz_pages.hpp). Whatever the pages hold, the file
// is whole: its cross-reference table points at every object it numbers, and it holds one
// page object per page.

#include "fuzz/fuzz_input.hpp"
#include "fuzz/fuzz_pages.hpp"
#include "platform/output/pdf_writer.hpp"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>

namespace {

using namespace qr;

void require(bool condition) {
    if (!condition)
        std::abort();
}

void checkFile(const std::string& pdf, std::size_t pages) {
    require(pdf.rfind("%PDF-1.4\n", 0) == 0);
    require(pdf.size() > 6 && pdf.compare(pdf.size() - 6, 6, "%%EOF\n") == 0);
    const std::size_t start = pdf.rfind("startxref\n");
    require(start != std::string::npos);
    const std::size_t table = std::stoul(pdf.substr(start + 10));
    require(pdf.compare(table, 7, "xref\n0 ") == 0);
    const std::size_t objects = std::stoul(pdf.substr(table + 7));
    std::size_t entry = pdf.find('\n', table + 5) + 1 + 20; // after the free entry
    std::size_t pageObjects = 0;
    for (std::size_t number = 1; number < objects; ++number, entry += 20) {
        const std::size_t offset = std::stoul(pdf.substr(entry, 10));
        const std::string head = std::to_string(number) + " 0 obj\n";
        require(pdf.compare(offset, head.size(), head) == 0);
        // Counted where an object starts: a title may hold any text, this one included.
        const std::string page = "<< /Type /Page /";
        pageObjects += pdf.compare(offset + head.size(), page.size(), page) == 0;
    }
    require(pageObjects == pages);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    // One scratch file per process, removed when the fuzzer exits.
    static const std::filesystem::path path = [] {
        std::atexit([] {
            std::error_code ignored;
            std::filesystem::remove(std::filesystem::temp_directory_path() /
                                        ("qr-pdf-fuzz-" + std::to_string(::getpid()) + ".pdf"),
                                    ignored);
        });
        return std::filesystem::temp_directory_path() /
               ("qr-pdf-fuzz-" + std::to_string(::getpid()) + ".pdf");
    }();
    fuzz::refusalsAllowed([&] {
        const page::Pages pages = fuzz::pagesFrom(in);
        output::writePdf(pages, path);
        std::ifstream file(path, std::ios::binary);
        const std::string pdf{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        checkFile(pdf, pages.pages.empty() ? 1 : pages.pages.size());
    });
    return 0;
}
