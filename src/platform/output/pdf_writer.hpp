#pragma once
// PDF files from pages. Each page's scene goes out as one compressed content stream (fills,
// strokes, one text object per font and colour, underlines); the fonts are embedded as subsets
// of the glyphs shown, with a map back to their characters, so the text can be selected and
// extracted. The file is written as the pages come: nothing of a page is kept but its number.

#include "platform/engine/page/export_filter.hpp"
#include "platform/engine/page/page.hpp"
#include "platform/output/output_file.hpp"
#include "platform/output/page_scene.hpp"
#include "platform/output/pdf_content.hpp"
#include "platform/output/pdf_objects.hpp"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace qr::output {

/// The document information of a PDF: shown by viewers as the document's properties. Empty
/// members are left out.
struct PdfMetadata {
    std::string title;
    std::string author;
    std::string subject;
};

/// Pages that go into a document under one bookmark (a report of a bid package).
struct PdfSection {
    std::string title; ///< the bookmark's text
    const page::Pages* pages = nullptr;
};

/// Writes a PDF page by page, so a long report streams through with flat memory: nothing of a
/// page is kept once it is added. The file appears at its path only when finish() succeeds;
/// a writer destroyed before that (or failing) leaves neither the file nor a temporary behind.
class PdfWriter {
  public:
    /// Starts a document whose title metadata is `title`. Raises qr::Error naming the path when
    /// its folder cannot take the file.
    PdfWriter(const std::filesystem::path& target, const std::string& title);
    /// Starts a document with the given title, author and subject.
    PdfWriter(const std::filesystem::path& target, const PdfMetadata& metadata);
    ~PdfWriter();
    PdfWriter(const PdfWriter&) = delete;
    PdfWriter& operator=(const PdfWriter&) = delete;

    /// Draws one page, its paper size taken from the page (landscape pages are wider than
    /// tall); its text items index `fonts`. Raises qr::Error on a bad item or missing font.
    void addPage(const page::Page& page, const std::vector<page::FontSpec>& fonts);
    /// Adds a top-level bookmark titled `title` that opens the next page added, through the
    /// named destination bookmarkDestination(n) of the n-th bookmark.
    void addBookmark(const std::string& title);
    /// Completes the file and moves it into place. A document without pages, or ending in a
    /// bookmark, gets one more blank Letter page (a PDF needs a page, a bookmark one to open).
    /// Raises qr::Error naming the path and cause.
    void finish();

    std::size_t pageCount() const { return m_pages.size(); }

  private:
    struct Bookmark {
        std::string title;
        std::size_t page = 0; // from 0
        double top = 0;       // the page's height in points: its top edge in PDF space
    };
    void writeOutline(int outline);
    void writeDestinations(int names);

    OutputFile m_file;
    pdf::ObjectWriter m_objects;
    pdf::FontResources m_fonts;
    PdfMetadata m_metadata;
    std::string m_created; // the document's date, "D:YYYYMMDDHHmmSS"
    int m_catalog = 0, m_pageTree = 0, m_resources = 0, m_info = 0;
    SceneBuilder m_scenes;
    std::string m_content; // the page being written, its buffer kept from page to page
    std::vector<int> m_pages;           // object numbers of the pages, in order
    std::vector<Bookmark> m_bookmarks;
    std::size_t m_waitingBookmark = 0; // the bookmarks from here wait for the next page
    bool m_finished = false;
};

/// Writes all of `pages` to a PDF at `path`, whole or not at all (an existing file is replaced
/// only on success). An empty collection gives one blank page in the report's orientation.
/// Raises qr::Error naming the path and the cause.
void writePdf(const page::Pages& pages, const std::filesystem::path& path);

/// While one lives on a thread, writePdf on that thread remembers the document it drew last,
/// and a document of the same pages (same items, paper, fonts and title) is copied from that
/// file instead of being drawn again, provided the file is still as it was written. A report
/// exported to PDF and printed in one run so draws its pages once; the copy keeps the creation
/// date of the document it copies. A scope made inside another leaves the outer one in charge.
class PdfReuseScope {
  public:
    PdfReuseScope();
    ~PdfReuseScope();
    PdfReuseScope(const PdfReuseScope&) = delete;
    PdfReuseScope& operator=(const PdfReuseScope&) = delete;

  private:
    bool m_outermost = false;
};

/// The named destination of a document's n-th bookmark (from 1): "section<n>".
std::string bookmarkDestination(std::size_t number);

/// Writes the sections one after another into one PDF at `path`, with a top-level bookmark per
/// section at its first page (a section without pages gets one blank page in its orientation,
/// so its bookmark has a page to open) and `metadata` as the document information. The pages
/// are drawn as they are: each section keeps its own page numbering. Whole or not at all, like
/// writePdf. Raises qr::Error naming the path and the cause.
void writePdf(const std::vector<PdfSection>& sections, const std::filesystem::path& path,
              const PdfMetadata& metadata);

/// The engine's PDF export filter, writing through writePdf.
std::unique_ptr<page::ExportFilter> makePdfExportFilter();

} // namespace qr::output
