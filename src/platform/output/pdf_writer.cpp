#include "platform/output/pdf_writer.hpp"

#include "platform/core/date.hpp"
#include "platform/core/error.hpp"
#include "platform/core/system_formats.hpp"
#include "platform/output/cairo_renderer.hpp"
#include "platform/output/output_error.hpp"

#include <cairo-pdf.h>
#include <cstdio>
#include <mutex>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace qr::output {

namespace {

constexpr double kPointsPerTwip = 1.0 / page::kTwipsPerPoint;

page::Page blankPage(page::Orientation orientation) {
    page::Page blank;
    if (orientation == page::Orientation::Landscape)
        std::swap(blank.width, blank.height);
    return blank;
}

// cairo compresses each page's content with a fresh zlib stream, whose few hundred kilobytes
// of buffers are the newest memory on the heap; glibc hands them back to the kernel when the
// page is done and takes them again for the next one. Measured here that churn (a heap trim
// per page, each a TLB shootdown on a virtual machine) was three quarters of the time of a long
// export. Keeping a modest pad at the top of the heap stops it; it is the process's setting, so
// it is made once and only raised.
void keepHeapPadForPages() {
#ifdef __GLIBC__
    static std::once_flag once;
    std::call_once(once, [] { mallopt(M_TOP_PAD, 16 * 1024 * 1024); });
#endif
}

// "YYYY-MM-DDThh:mm:ss", the ISO 8601 form cairo turns into the PDF date.
std::string pdfDate(Date date) {
    const Date::Parts p = date.parts();
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", p.year, p.month, p.day,
                  p.hour, p.minute, p.second);
    return text;
}

class PdfExportFilter final : public page::ExportFilter {
  public:
    void setFileName(const std::string& fileName) override { m_fileName = fileName; }
    void exportPages(const page::Pages& pages) override {
        if (m_fileName.empty()) {
            throw Error(kFileAccessError, kPdfSource, "No file name was set for the PDF export.");
        }
        writePdf(pages, m_fileName);
    }

  private:
    std::string m_fileName;
};

} // namespace

PdfWriter::PdfWriter(const std::filesystem::path& target, const std::string& title)
    : PdfWriter(target, PdfMetadata{title, {}, {}}) {}

PdfWriter::PdfWriter(const std::filesystem::path& target, const PdfMetadata& metadata)
    : m_file(target, "PDF", kPdfSource) {
    keepHeapPadForPages();
    m_surface = cairo_pdf_surface_create_for_stream(&OutputFile::cairoWrite, &m_file,
                                                    page::kLetterWidth * kPointsPerTwip,
                                                    page::kLetterHeight * kPointsPerTwip);
    m_cr = cairo_create(m_surface);
    check("starting the document");
    const std::pair<cairo_pdf_metadata_t, const std::string*> information[] = {
        {CAIRO_PDF_METADATA_TITLE, &metadata.title},
        {CAIRO_PDF_METADATA_AUTHOR, &metadata.author},
        {CAIRO_PDF_METADATA_SUBJECT, &metadata.subject},
    };
    for (const auto& [key, value] : information) {
        if (!value->empty())
            cairo_pdf_surface_set_metadata(m_surface, key, repairUtf8(*value).c_str());
    }
    cairo_pdf_surface_set_metadata(m_surface, CAIRO_PDF_METADATA_CREATOR, "QuarvexReports");
    // The document's dates come from the report clock, not the wall clock, so the same report
    // under the same SOURCE_DATE_EPOCH gives the same bytes.
    const std::string created = pdfDate(Clock::now());
    cairo_pdf_surface_set_metadata(m_surface, CAIRO_PDF_METADATA_CREATE_DATE, created.c_str());
    cairo_pdf_surface_set_metadata(m_surface, CAIRO_PDF_METADATA_MOD_DATE, created.c_str());
    // User space in twips: page items are drawn with their own coordinates.
    cairo_scale(m_cr, kPointsPerTwip, kPointsPerTwip);
}

PdfWriter::~PdfWriter() {
    release();
}

void PdfWriter::release() noexcept {
    if (m_cr)
        cairo_destroy(m_cr);
    if (m_surface)
        cairo_surface_destroy(m_surface);
    m_cr = nullptr;
    m_surface = nullptr;
}

void PdfWriter::check(const char* step) {
    cairo_status_t status = cairo_status(m_cr);
    if (status == CAIRO_STATUS_SUCCESS)
        status = cairo_surface_status(m_surface);
    if (status == CAIRO_STATUS_SUCCESS)
        return;
    release();
    m_file.fail(std::string(cairo_status_to_string(status)) + " (" + step + ")");
}

void PdfWriter::addPage(const page::Page& page, const std::vector<page::FontSpec>& fonts) {
    if (m_finished) {
        throw Error(errc::kComponent, kPdfSource,
                    "A page was added to \"" + m_file.target().string() +
                        "\" after it was finished.");
    }
    if (page.width <= 0 || page.height <= 0) {
        throw Error(errc::kComponent, kPdfSource,
                    "Page " + std::to_string(m_pageCount + 1) + " has no paper size (" +
                        std::to_string(page.width) + " x " + std::to_string(page.height) +
                        " twips).");
    }
    const PageScene& scene = m_scenes.build(page, fonts);
    cairo_pdf_surface_set_size(m_surface, page.width * kPointsPerTwip,
                               page.height * kPointsPerTwip);
    if (!m_pendingDestination.empty()) {
        const std::string attributes = "name='" + m_pendingDestination + "' x=0 y=0";
        cairo_tag_begin(m_cr, CAIRO_TAG_DEST, attributes.c_str());
        cairo_tag_end(m_cr, CAIRO_TAG_DEST);
        m_pendingDestination.clear();
        // cairo drops the tags of a page it has nothing to draw on (an empty report's blank
        // page), and the bookmark would open nothing: a white twip in the corner keeps it.
        if (page.items.empty()) {
            cairo_save(m_cr);
            cairo_set_source_rgb(m_cr, 1, 1, 1);
            cairo_rectangle(m_cr, 0, 0, 1, 1);
            cairo_fill(m_cr);
            cairo_restore(m_cr);
        }
    }
    drawScene(m_cr, scene);
    cairo_show_page(m_cr);
    ++m_pageCount;
    check("drawing a page");
}

void PdfWriter::addBookmark(const std::string& title) {
    if (m_finished) {
        throw Error(errc::kComponent, kPdfSource,
                    "A bookmark was added to \"" + m_file.target().string() +
                        "\" after it was finished.");
    }
    // The bookmark opens a named destination ("section1", "section2", ...) that the next page
    // places at its top-left corner: a link from outside can open the same place
    // (file.pdf#nameddest=section2). cairo resolves the name when the document is finished.
    m_pendingDestination = bookmarkDestination(++m_bookmarkCount);
    const std::string link = "dest='" + m_pendingDestination + "'";
    cairo_pdf_surface_add_outline(m_surface, CAIRO_PDF_OUTLINE_ROOT, repairUtf8(title).c_str(),
                                  link.c_str(), cairo_pdf_outline_flags_t{});
    check("adding a bookmark");
}

void PdfWriter::finish() {
    if (m_finished)
        return;
    if (m_pageCount == 0)
        addPage(blankPage(page::Orientation::Portrait), {});
    m_finished = true;
    cairo_destroy(m_cr);
    m_cr = nullptr;
    cairo_surface_finish(m_surface);
    const cairo_status_t status = cairo_surface_status(m_surface);
    cairo_surface_destroy(m_surface);
    m_surface = nullptr;
    if (status != CAIRO_STATUS_SUCCESS)
        m_file.fail(cairo_status_to_string(status));
    m_file.commit();
}

void writePdf(const page::Pages& pages, const std::filesystem::path& path) {
    PdfWriter writer(path, pages.title);
    for (const auto& page : pages.pages)
        writer.addPage(page, pages.fonts);
    if (pages.pages.empty())
        writer.addPage(blankPage(pages.orientation), pages.fonts);
    writer.finish();
}

std::string bookmarkDestination(std::size_t number) {
    return "section" + std::to_string(number);
}

void writePdf(const std::vector<PdfSection>& sections, const std::filesystem::path& path,
              const PdfMetadata& metadata) {
    PdfWriter writer(path, metadata);
    for (const PdfSection& section : sections) {
        writer.addBookmark(section.title);
        const page::Pages& pages = *section.pages;
        for (const auto& page : pages.pages)
            writer.addPage(page, pages.fonts);
        if (pages.pages.empty())
            writer.addPage(blankPage(pages.orientation), pages.fonts);
    }
    writer.finish();
}

std::unique_ptr<page::ExportFilter> makePdfExportFilter() {
    return std::make_unique<PdfExportFilter>();
}

} // namespace qr::output
