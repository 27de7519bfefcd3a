#include "platform/output/pdf_writer.hpp"

#include "platform/core/date.hpp"
#include "platform/core/error.hpp"
#include "platform/core/system_formats.hpp"
#include "platform/output/cairo_renderer.hpp"
#include "platform/output/output_error.hpp"

#include <bit>
#include <cairo-pdf.h>
#include <cstdio>
#include <fstream>
#include <functional>
#include <mutex>
#include <optional>
#include <string_view>

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

// ---- Drawing a document once -----------------------------------------------------------------

/// The document writePdf drew last on this thread, while a PdfReuseScope lives.
struct DrawnPdf {
    std::uint64_t digest = 0;
    std::filesystem::path path;
    std::uintmax_t size = 0;
    std::filesystem::file_time_type modified;
};

struct ReuseState {
    bool active = false;
    std::optional<DrawnPdf> last;
};

thread_local ReuseState t_reuse;

std::uint64_t mix(std::uint64_t seed, std::uint64_t value) {
    return seed ^ (value + 0x9E3779B97F4A7C15ULL + (seed << 6) + (seed >> 2));
}

/// What the drawing of `pages` depends on, as one number.
std::uint64_t digestOf(const page::Pages& pages) {
    const std::hash<std::string_view> hash;
    std::uint64_t digest = mix(hash(pages.title), static_cast<std::uint64_t>(pages.orientation));
    for (const page::FontSpec& font : pages.fonts) {
        digest = mix(digest, hash(font.family));
        digest = mix(digest, std::bit_cast<std::uint64_t>(font.sizePoints));
        digest = mix(digest, static_cast<std::uint64_t>(font.bold) |
                                 static_cast<std::uint64_t>(font.italic) << 1 |
                                 static_cast<std::uint64_t>(font.underline) << 2);
    }
    digest = mix(digest, pages.pages.size());
    for (const page::Page& page : pages.pages) {
        digest = mix(digest, static_cast<std::uint32_t>(page.width) |
                                 static_cast<std::uint64_t>(static_cast<std::uint32_t>(page.height))
                                     << 32);
        digest = mix(digest, page.items.size());
        digest = mix(digest, page.items.digest());
    }
    return digest;
}

/// Copies the document drawn last to `target` when it is still as it was written; false when
/// it is not (moved, changed, removed), and then nothing was written. A failure to write the
/// copy raises qr::Error naming the target and the cause, as drawing it would.
bool copyDrawn(const DrawnPdf& drawn, const std::filesystem::path& target) {
    std::error_code error;
    if (std::filesystem::equivalent(drawn.path, target, error)) {
        return false; // drawn again in place: a file is not copied onto itself
    }
    const std::uintmax_t size = std::filesystem::file_size(drawn.path, error);
    if (error || size != drawn.size) {
        return false;
    }
    const auto modified = std::filesystem::last_write_time(drawn.path, error);
    if (error || modified != drawn.modified) {
        return false;
    }
    std::ifstream in(drawn.path, std::ios::binary);
    if (!in) {
        return false;
    }
    OutputFile out(target, "PDF", kPdfSource);
    std::vector<char> buffer(1 << 16);
    std::uintmax_t copied = 0;
    while (in.read(buffer.data(), static_cast<std::streamsize>(buffer.size())) || in.gcount() > 0) {
        out.write(buffer.data(), static_cast<std::size_t>(in.gcount()));
        copied += static_cast<std::uintmax_t>(in.gcount());
    }
    if (in.bad() || copied != drawn.size) {
        return false; // the temporary goes with `out`
    }
    out.commit();
    return true;
}

void rememberDrawn(std::uint64_t digest, const std::filesystem::path& path) {
    std::error_code error;
    DrawnPdf drawn{digest, path, std::filesystem::file_size(path, error), {}};
    if (!error) {
        drawn.modified = std::filesystem::last_write_time(path, error);
    }
    if (error) {
        t_reuse.last.reset();
    } else {
        t_reuse.last = std::move(drawn);
    }
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

PdfReuseScope::PdfReuseScope() : m_outermost(!t_reuse.active) {
    t_reuse.active = true;
}

PdfReuseScope::~PdfReuseScope() {
    if (m_outermost) {
        t_reuse = ReuseState{};
    }
}

void writePdf(const page::Pages& pages, const std::filesystem::path& path) {
    std::uint64_t digest = 0;
    if (t_reuse.active) {
        digest = digestOf(pages);
        if (t_reuse.last && t_reuse.last->digest == digest && copyDrawn(*t_reuse.last, path))
            return;
    }
    PdfWriter writer(path, pages.title);
    for (const auto& page : pages.pages)
        writer.addPage(page, pages.fonts);
    if (pages.pages.empty())
        writer.addPage(blankPage(pages.orientation), pages.fonts);
    writer.finish();
    if (t_reuse.active)
        rememberDrawn(digest, path);
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
