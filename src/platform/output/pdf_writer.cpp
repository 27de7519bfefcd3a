#include "platform/output/pdf_writer.hpp"

#include "platform/core/date.hpp"
#include "platform/core/error.hpp"
#include "platform/core/system_formats.hpp"
#include "platform/output/output_error.hpp"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <fstream>
#include <functional>
#include <optional>
#include <string_view>


namespace qr::output {

namespace {

constexpr double kPointsPerTwip = 1.0 / page::kTwipsPerPoint;

page::Page blankPage(page::Orientation orientation) {
    page::Page blank;
    if (orientation == page::Orientation::Landscape)
        std::swap(blank.width, blank.height);
    return blank;
}

// A PDF date, "D:YYYYMMDDHHmmSS".
std::string pdfDate(Date date) {
    const Date::Parts p = date.parts();
    char text[32];
    std::snprintf(text, sizeof text, "D:%04d%02d%02d%02d%02d%02d", p.year, p.month, p.day, p.hour,
                  p.minute, p.second);
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
    : m_file(target, "PDF", kPdfSource), m_objects(m_file), m_fonts(m_objects),
      m_metadata(metadata) {
    // The document's dates come from the report clock, not the wall clock, so the same report
    // under the same SOURCE_DATE_EPOCH gives the same bytes.
    m_created = pdfDate(Clock::now());
    m_catalog = m_objects.reserve();
    m_pageTree = m_objects.reserve();
    m_resources = m_objects.reserve();
    m_info = m_objects.reserve();
}

PdfWriter::~PdfWriter() = default;

void PdfWriter::addPage(const page::Page& page, const std::vector<page::FontSpec>& fonts) {
    if (m_finished) {
        throw Error(errc::kComponent, kPdfSource,
                    "A page was added to \"" + m_file.target().string() +
                        "\" after it was finished.");
    }
    if (page.width <= 0 || page.height <= 0) {
        throw Error(errc::kComponent, kPdfSource,
                    "Page " + std::to_string(m_pages.size() + 1) + " has no paper size (" +
                        std::to_string(page.width) + " x " + std::to_string(page.height) +
                        " twips).");
    }
    const PageScene& scene = m_scenes.build(page, fonts);
    m_content.clear();
    pdf::appendContent(scene, m_fonts, m_content);
    const int contents = m_objects.reserve();
    m_objects.stream(contents, "", m_content);

    const int number = m_objects.reserve();
    std::string body = "<< /Type /Page /Parent ";
    pdf::appendInteger(body, m_pageTree);
    body += " 0 R /MediaBox [0 0 ";
    pdf::appendNumber(body, page.width * kPointsPerTwip, 2);
    body += ' ';
    pdf::appendNumber(body, page.height * kPointsPerTwip, 2);
    body += "] /Resources ";
    pdf::appendInteger(body, m_resources);
    body += " 0 R /Contents ";
    pdf::appendInteger(body, contents);
    body += " 0 R >>";
    m_objects.object(number, body);
    // Bookmarks added since the last page open this one.
    for (; m_waitingBookmark < m_bookmarks.size(); ++m_waitingBookmark) {
        m_bookmarks[m_waitingBookmark].page = m_pages.size();
        m_bookmarks[m_waitingBookmark].top = page.height * kPointsPerTwip;
    }
    m_pages.push_back(number);
}

void PdfWriter::addBookmark(const std::string& title) {
    if (m_finished) {
        throw Error(errc::kComponent, kPdfSource,
                    "A bookmark was added to \"" + m_file.target().string() +
                        "\" after it was finished.");
    }
    // The bookmark opens a named destination ("section1", "section2", ...) at the top-left
    // corner of the next page added: a link from outside can open the same place
    // (file.pdf#nameddest=section2).
    m_bookmarks.push_back(Bookmark{repairUtf8(title), 0, 0}); // placed by the next page added
}

void PdfWriter::writeOutline(int outline) {
    std::vector<int> items;
    for (std::size_t i = 0; i < m_bookmarks.size(); ++i)
        items.push_back(m_objects.reserve());
    std::string body = "<< /Type /Outlines /First ";
    pdf::appendInteger(body, items.front());
    body += " 0 R /Last ";
    pdf::appendInteger(body, items.back());
    body += " 0 R /Count ";
    pdf::appendInteger(body, static_cast<long long>(items.size()));
    body += " >>";
    m_objects.object(outline, body);
    for (std::size_t i = 0; i < items.size(); ++i) {
        body = "<< /Title " + pdf::textString(m_bookmarks[i].title) + " /Parent ";
        pdf::appendInteger(body, outline);
        body += " 0 R";
        if (i > 0) {
            body += " /Prev ";
            pdf::appendInteger(body, items[i - 1]);
            body += " 0 R";
        }
        if (i + 1 < items.size()) {
            body += " /Next ";
            pdf::appendInteger(body, items[i + 1]);
            body += " 0 R";
        }
        body += " /Dest " + pdf::textString(bookmarkDestination(i + 1)) + " >>";
        m_objects.object(items[i], body);
    }
}

void PdfWriter::writeDestinations(int names) {
    // A name tree lists its names in byte order ("section10" before "section2").
    std::vector<std::pair<std::string, const Bookmark*>> sorted;
    for (std::size_t i = 0; i < m_bookmarks.size(); ++i)
        sorted.emplace_back(bookmarkDestination(i + 1), &m_bookmarks[i]);
    std::sort(sorted.begin(), sorted.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    std::string body = "<< /Names [";
    for (const auto& [name, bookmark] : sorted) {
        body += pdf::textString(name) + " [";
        pdf::appendInteger(body, m_pages[bookmark->page]);
        body += " 0 R /XYZ 0 ";
        pdf::appendNumber(body, bookmark->top, 2);
        body += " 0] ";
    }
    body += "] >>";
    m_objects.object(names, body);
}

void PdfWriter::finish() {
    if (m_finished)
        return;
    // A document needs a page, and a bookmark added last needs one to open.
    if (m_pages.empty() || m_waitingBookmark < m_bookmarks.size())
        addPage(blankPage(page::Orientation::Portrait), {});
    m_finished = true;

    m_fonts.write();
    m_objects.object(m_resources, "<< /ProcSet [/PDF /Text] /Font " + m_fonts.dictionary() + " >>");

    std::string body = "<< /Type /Pages /Kids [";
    for (const int page : m_pages) {
        pdf::appendInteger(body, page);
        body += " 0 R ";
    }
    body += "] /Count ";
    pdf::appendInteger(body, static_cast<long long>(m_pages.size()));
    body += " >>";
    m_objects.object(m_pageTree, body);

    body = "<< /Type /Catalog /Pages ";
    pdf::appendInteger(body, m_pageTree);
    body += " 0 R";
    if (!m_bookmarks.empty()) {
        const int outline = m_objects.reserve();
        const int names = m_objects.reserve();
        writeOutline(outline);
        writeDestinations(names);
        body += " /Outlines ";
        pdf::appendInteger(body, outline);
        body += " 0 R /PageMode /UseOutlines /Names << /Dests ";
        pdf::appendInteger(body, names);
        body += " 0 R >>";
    }
    body += " >>";
    m_objects.object(m_catalog, body);

    body = "<<";
    const std::pair<const char*, const std::string*> information[] = {
        {"/Title", &m_metadata.title},
        {"/Author", &m_metadata.author},
        {"/Subject", &m_metadata.subject},
    };
    for (const auto& [key, value] : information) {
        if (!value->empty())
            body += std::string(" ") + key + " " + pdf::textString(repairUtf8(*value));
    }
    body += " /Creator (QuarvexReports) /Producer (QuarvexReports) /CreationDate (" + m_created +
            ") /ModDate (" + m_created + ") >>";
    m_objects.object(m_info, body);
    m_objects.finish(m_catalog, m_info);
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
