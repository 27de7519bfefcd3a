#include "platform/output/workbook.hpp"

#include "platform/core/error.hpp"
#include "platform/core/number_format.hpp"
#include "platform/output/biff_records.hpp"
#include "platform/output/output_file.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <gsf/gsf-outfile-msole.h>
#include <gsf/gsf-outfile.h>
#include <gsf/gsf-output-stdio.h>
#include <gsf/gsf-output.h>
#include <gsf/gsf-utils.h>
#include <limits>
#include <mutex>
#include <optional>
#include <random>
#include <stdexcept>

namespace qr::output {

namespace {

using biff::RecordWriter;
namespace record = biff::record;

constexpr int kFileAccessError = 75; // the classic runtime's "Path/File access error"

constexpr std::uint16_t kBiff8 = 0x0600;
constexpr std::uint16_t kGlobalsSubstream = 0x0005;
constexpr std::uint16_t kWorksheetSubstream = 0x0010;
constexpr std::uint16_t kUtf16CodePage = 1200;
// Excel expects the 15 style XFs first; cells use XF 15 or later.
constexpr std::uint16_t kStyleXfCount = 15;
constexpr std::uint16_t kDefaultCellXf = 15;
constexpr std::uint16_t kFirstGridXf = 16;
// Four default fonts; font index 4 does not exist, so the report's fonts start at 5.
constexpr std::uint16_t kDefaultFontCount = 4;
constexpr std::uint16_t kFirstReportFont = 5;
constexpr double kDefaultFontPoints = 10.0;
constexpr std::uint16_t kFirstCustomFormat = 164;
constexpr std::uint16_t kDefaultRowHeight = 255; // twips: 12.75 pt, the height for Arial 10
constexpr std::uint32_t kRowBlock = 32;          // rows per block of ROW records
constexpr std::size_t kMaxFormatLength = 255;
constexpr std::uint64_t kMinimumStreamSize = 4096;

/// Number formats Excel knows by identifier, without a FORMAT record.
constexpr std::array<std::pair<std::string_view, std::uint16_t>, 10> kBuiltInFormats{{
    {"General", 0},
    {"0", 1},
    {"0.00", 2},
    {"#,##0", 3},
    {"#,##0.00", 4},
    {"0%", 9},
    {"0.00%", 10},
    {"0.00E+00", 11},
    {"# ?/?", 12},
    {"@", 49},
}};

std::optional<std::uint16_t> builtInFormatId(std::string_view pattern) {
    for (const auto& [known, id] : kBuiltInFormats) {
        if (known == pattern) {
            return id;
        }
    }
    return std::nullopt;
}

/// The Excel pattern of a report's output format; a pattern the runtime would refuse shows
/// the number as General rather than failing the export.
std::string excelPatternOf(const std::string& reportFormat) {
    try {
        return NumberFormat::parse(reportFormat).excelPattern();
    } catch (const Error&) {
        return "General";
    }
}

struct SheetPart {
    std::string name;
    std::uint32_t firstRow = 0;
    std::uint32_t rowCount = 0;
    std::size_t firstCell = 0;
    std::size_t endCell = 0;
};

void writeBof(RecordWriter& out, std::uint16_t substream) {
    out.begin(record::kBof);
    out.u16(kBiff8);
    out.u16(substream);
    out.u16(0x0DBB); // build
    out.u16(0x07CC); // year
    out.u32(0);      // file history
    out.u32(0x06);   // lowest BIFF version that can read the file
    out.end();
}

void writeEof(RecordWriter& out) {
    out.begin(record::kEof);
    out.end();
}

/// Excel's column width (in 1/256 of the width of a digit of the default font, Arial 10: 7
/// pixels at 96 pixels an inch) for a column whose texts need `twips`: their pixels, rounded
/// up, plus the 5 pixels a column keeps around its text (2 each side and the grid line).
/// Rounded up again, so that Excel's own rounding of the width to whole pixels never takes a
/// pixel from the text.
std::uint16_t columnWidthUnits(int twips) {
    constexpr double kDigitPixels = 7.0;
    constexpr double kPaddingPixels = 5.0;
    const double pixels = std::ceil(std::max(twips, 0) / 15.0) + kPaddingPixels;
    const double units = std::ceil(pixels * 256.0 / kDigitPixels);
    return static_cast<std::uint16_t>(std::min(units, 255.0 * 256.0));
}

/// Excel's limits: 255 characters of header or footer text, 1,026 ranges a MERGEDCELLS record.
constexpr std::size_t kMaxFooterLength = 255;
constexpr std::size_t kMergesPerRecord = 1026;

/// The stream of one workbook: the globals (fonts, formats, cell formats, sheet list, shared
/// strings) followed by the sheets.
class WorkbookStream {
  public:
    WorkbookStream(const CellGrid& grid, const std::string& sheetName) : m_grid(grid) {
        planSheets(sheetName);
        planFormats();
    }

    /// Hands the whole stream to `sink`, in order.
    void write(const RecordWriter::Sink& sink) const {
        std::vector<std::size_t> sheetOffsetAt;
        std::vector<std::uint8_t> head = globals(sheetOffsetAt);
        // Each sheet's offset goes into the sheet list ahead of it, so every sheet but the
        // last is measured first.
        std::uint64_t offset = head.size();
        for (std::size_t i = 0; i < m_sheets.size(); ++i) {
            if (offset > std::numeric_limits<std::uint32_t>::max()) {
                throw std::length_error("the workbook would exceed 4 GB");
            }
            for (int b = 0; b < 4; ++b) {
                head[sheetOffsetAt[i] + b] = static_cast<std::uint8_t>(offset >> (8 * b));
            }
            if (i + 1 < m_sheets.size()) {
                RecordWriter counter;
                writeSheet(counter, m_sheets[i], i == 0);
                counter.flush();
                offset += counter.position();
            }
        }
        sink(head);
        RecordWriter out(sink);
        for (std::size_t i = 0; i < m_sheets.size(); ++i) {
            writeSheet(out, m_sheets[i], i == 0);
        }
        out.flush();
        offset = head.size() + out.position();
        if (offset < kMinimumStreamSize) {
            // Zeros after the last EOF bring a small workbook to 4,096 bytes, the least Excel's
            // own files have, which keeps it out of the compound file's small-block area.
            std::vector<std::uint8_t> padding(kMinimumStreamSize - offset, 0);
            sink(padding);
        }
    }

  private:
    void planSheets(const std::string& name) {
        std::uint32_t rows = m_grid.rowCount();
        std::uint32_t parts = rows == 0 ? 1 : (rows + kMaxSheetRows - 1) / kMaxSheetRows;
        std::size_t cell = 0;
        for (std::uint32_t p = 0; p < parts; ++p) {
            SheetPart part;
            if (p == 0) {
                part.name = excelSheetName(name);
            } else {
                std::string suffix = " (" + std::to_string(p + 1) + ")";
                part.name = excelSheetName(name, 31 - suffix.size()) + suffix;
            }
            part.firstRow = p * kMaxSheetRows;
            part.rowCount = std::min(kMaxSheetRows, rows - part.firstRow);
            part.firstCell = cell;
            std::uint32_t endRow = part.firstRow + part.rowCount;
            while (cell < m_grid.cells.size() && m_grid.cells[cell].row < endRow) {
                ++cell;
            }
            part.endCell = cell;
            m_sheets.push_back(std::move(part));
        }
    }

    /// Excel identifiers for the grid's number formats: built-in ones where Excel knows the
    /// pattern, FORMAT records from 164 on for the rest.
    void planFormats() {
        m_formatIds.assign(m_grid.formats.size(), 0);
        for (std::size_t i = 1; i < m_grid.formats.size(); ++i) {
            std::string pattern = excelPatternOf(m_grid.formats[i]);
            if (auto id = builtInFormatId(pattern)) {
                m_formatIds[i] = *id;
                continue;
            }
            auto it = std::find(m_customFormats.begin(), m_customFormats.end(), pattern);
            if (it == m_customFormats.end()) {
                it = m_customFormats.insert(it, std::move(pattern));
            }
            m_formatIds[i] =
                static_cast<std::uint16_t>(kFirstCustomFormat + (it - m_customFormats.begin()));
        }
    }

    std::vector<std::uint8_t> globals(std::vector<std::size_t>& sheetOffsetAt) const {
        std::vector<std::uint8_t> bytes;
        RecordWriter out([&](std::span<const std::uint8_t> chunk) {
            bytes.insert(bytes.end(), chunk.begin(), chunk.end());
        });
        writeBof(out, kGlobalsSubstream);
        out.begin(record::kCodePage);
        out.u16(kUtf16CodePage);
        out.end();
        writeWindow1(out);
        out.begin(record::kDate1904);
        out.u16(0);
        out.end();
        writeFonts(out);
        writeFormats(out);
        writeXfs(out);
        out.begin(record::kStyle); // the built-in "Normal" style on XF 0
        out.u16(0x8000);
        out.u8(0);
        out.u8(0xFF);
        out.end();
        writeSheetList(out, sheetOffsetAt);
        std::uint32_t uses = static_cast<std::uint32_t>(
            std::count_if(m_grid.cells.begin(), m_grid.cells.end(),
                          [](const Cell& cell) { return cell.kind == CellKind::Text; }));
        biff::writeSharedStrings(out, m_grid.texts, uses);
        writeEof(out);
        out.flush();
        return bytes;
    }

    static void writeWindow1(RecordWriter& out) {
        out.begin(record::kWindow1);
        out.u16(0x0168); // left, top, width, height of the window in twips
        out.u16(0x001E);
        out.u16(0x3A5C);
        out.u16(0x2328);
        out.u16(0x0038); // scroll bars and sheet tabs shown
        out.u16(0);      // active sheet
        out.u16(0);      // first visible tab
        out.u16(1);      // selected tabs
        out.u16(600);    // tab bar width ratio
        out.end();
    }

    void writeFonts(RecordWriter& out) const {
        page::FontSpec standard;
        standard.sizePoints = kDefaultFontPoints;
        for (int i = 0; i < kDefaultFontCount; ++i) {
            writeFont(out, standard);
        }
        for (const page::FontSpec& font : m_grid.fonts) {
            writeFont(out, font);
        }
    }

    static void writeFont(RecordWriter& out, const page::FontSpec& font) {
        biff::BiffString name;
        biff::toBiffString(font.family.empty() ? "Arial" : font.family, 31, name);
        double twips = std::clamp(font.sizePoints * page::kTwipsPerPoint, 20.0, 8191.0);
        out.begin(record::kFont);
        out.u16(static_cast<std::uint16_t>(std::lround(twips)));
        out.u16(font.italic ? 0x0002 : 0);
        out.u16(0x7FFF); // automatic colour
        out.u16(font.bold ? 700 : 400);
        out.u16(0); // no super- or subscript
        out.u8(font.underline ? 1 : 0);
        out.u8(0); // family
        out.u8(0); // character set
        out.u8(0);
        biff::writeShortUnicodeString(out, name);
        out.end();
    }

    void writeFormats(RecordWriter& out) const {
        biff::BiffString text;
        for (std::size_t i = 0; i < m_customFormats.size(); ++i) {
            biff::toBiffString(m_customFormats[i], kMaxFormatLength, text);
            out.begin(record::kFormat);
            out.u16(static_cast<std::uint16_t>(kFirstCustomFormat + i));
            biff::writeUnicodeString(out, text);
            out.end();
        }
    }

    static void writeXf(RecordWriter& out, std::uint16_t font, std::uint16_t format, bool style,
                        std::uint8_t alignment, std::uint8_t usedAttributes) {
        out.begin(record::kXf);
        out.u16(font);
        out.u16(format);
        out.u16(style ? 0xFFF5 : 0x0001); // locked; a style has no parent, a cell's is Normal
        out.u8(alignment);
        out.u8(0); // rotation
        out.u8(0); // indent, shrink, reading order
        out.u8(usedAttributes);
        out.u32(0);      // no borders
        out.u32(0);      // no border colours, no diagonal
        out.u16(0x20C0); // pattern colours: system foreground and background
        out.end();
    }

    void writeXfs(RecordWriter& out) const {
        constexpr std::uint8_t kBottom = 0x20;
        writeXf(out, 0, 0, true, kBottom, 0x00);
        for (int i = 1; i < kStyleXfCount; ++i) {
            writeXf(out, 0, 0, true, kBottom, 0xF4);
        }
        writeXf(out, 0, 0, false, kBottom, 0x00);
        for (const CellStyle& style : m_grid.styles) {
            std::uint16_t font =
                style.font < 0 ? 0 : static_cast<std::uint16_t>(kFirstReportFont + style.font);
            std::uint8_t horizontal = style.align == page::Align::Right    ? 3
                                      : style.align == page::Align::Center ? 2
                                                                           : 1;
            // Top alignment, as the texts stand in their printed bands.
            std::uint8_t alignment = horizontal | (style.wrap ? 0x08 : 0x00);
            writeXf(out, font, m_formatIds[style.format], false, alignment, 0xFC);
        }
    }

    void writeSheetList(RecordWriter& out, std::vector<std::size_t>& sheetOffsetAt) const {
        biff::BiffString name;
        for (const SheetPart& part : m_sheets) {
            biff::toBiffString(part.name, 31, name);
            sheetOffsetAt.push_back(static_cast<std::size_t>(out.position()) + 4);
            out.begin(record::kBoundSheet);
            out.u32(0); // position of the sheet's BOF, filled in once the globals are measured
            out.u8(0);  // visible
            out.u8(0);  // worksheet
            biff::writeShortUnicodeString(out, name);
            out.end();
        }
    }

    void writeSheet(RecordWriter& out, const SheetPart& part, bool first) const {
        writeBof(out, kWorksheetSubstream);
        writeFooter(out);
        out.begin(record::kDefColWidth);
        out.u16(8);
        out.end();
        for (std::size_t c = 0; c < m_grid.columns.size(); ++c) {
            out.begin(record::kColInfo);
            out.u16(static_cast<std::uint16_t>(c));
            out.u16(static_cast<std::uint16_t>(c));
            out.u16(columnWidthUnits(m_grid.columns[c].width));
            out.u16(kDefaultCellXf);
            out.u16(0x0002); // width set by the user
            out.u16(0);
            out.end();
        }
        writeDimensions(out, part);
        for (std::size_t cell = part.firstCell; cell < part.endCell;) {
            std::uint32_t blockEnd =
                (m_grid.cells[cell].row - part.firstRow) / kRowBlock * kRowBlock + kRowBlock +
                part.firstRow;
            std::size_t end = cell;
            while (end < part.endCell && m_grid.cells[end].row < blockEnd) {
                ++end;
            }
            writeRowBlock(out, part, cell, end);
            cell = end;
        }
        writeWindow2(out, first);
        writeMerges(out, part);
        writeEof(out);
    }

    /// The report's page footer, printed at the foot of every page the sheet prints on.
    void writeFooter(RecordWriter& out) const {
        if (m_grid.footer.empty()) {
            return;
        }
        biff::BiffString text;
        biff::toBiffString(m_grid.footer, kMaxFooterLength, text);
        out.begin(record::kFooter);
        biff::writeUnicodeString(out, text);
        out.end();
    }

    /// The merged cells of the sheet's rows, rows counted from the sheet's first.
    void writeMerges(RecordWriter& out, const SheetPart& part) const {
        std::vector<const MergedCells*> merges;
        for (const MergedCells& merge : m_grid.merges) {
            if (merge.row >= part.firstRow && merge.row - part.firstRow < part.rowCount) {
                merges.push_back(&merge);
            }
        }
        for (std::size_t begin = 0; begin < merges.size(); begin += kMergesPerRecord) {
            const std::size_t end = std::min(merges.size(), begin + kMergesPerRecord);
            out.begin(record::kMergedCells);
            out.u16(static_cast<std::uint16_t>(end - begin));
            for (std::size_t i = begin; i < end; ++i) {
                const auto row = static_cast<std::uint16_t>(merges[i]->row - part.firstRow);
                out.u16(row);
                out.u16(row);
                out.u16(merges[i]->firstColumn);
                out.u16(merges[i]->lastColumn);
            }
            out.end();
        }
    }

    void writeDimensions(RecordWriter& out, const SheetPart& part) const {
        std::uint16_t firstColumn = 0;
        std::uint16_t endColumn = 0;
        for (std::size_t i = part.firstCell; i < part.endCell; ++i) {
            const Cell& cell = m_grid.cells[i];
            firstColumn = i == part.firstCell ? cell.column
                                              : std::min<std::uint16_t>(firstColumn, cell.column);
            endColumn = std::max<std::uint16_t>(endColumn, cell.column + 1);
        }
        bool empty = part.firstCell == part.endCell;
        out.begin(record::kDimensions);
        out.u32(empty ? 0 : m_grid.cells[part.firstCell].row - part.firstRow);
        out.u32(empty ? 0 : m_grid.cells[part.endCell - 1].row - part.firstRow + 1);
        out.u16(firstColumn);
        out.u16(endColumn);
        out.u16(0);
        out.end();
    }

    /// The ROW records of up to 32 rows, then their cells. A counting writer only counts
    /// their bytes: the records have fixed sizes.
    void writeRowBlock(RecordWriter& out, const SheetPart& part, std::size_t begin,
                       std::size_t end) const {
        if (out.counting()) {
            std::uint64_t size = 0;
            for (std::size_t i = begin; i < end; ++i) {
                const bool rowStarts = i == begin || m_grid.cells[i - 1].row != m_grid.cells[i].row;
                size += (rowStarts ? kRowRecordBytes : 0) + cellRecordBytes(m_grid.cells[i]);
            }
            out.count(size);
            return;
        }
        for (std::size_t i = begin; i < end;) {
            std::size_t last = i;
            while (last + 1 < end && m_grid.cells[last + 1].row == m_grid.cells[i].row) {
                ++last;
            }
            int height = m_grid.rowHeights[m_grid.cells[i].row];
            bool custom = height > 0;
            out.begin(record::kRow);
            out.u16(static_cast<std::uint16_t>(m_grid.cells[i].row - part.firstRow));
            out.u16(m_grid.cells[i].column);
            out.u16(static_cast<std::uint16_t>(m_grid.cells[last].column + 1));
            out.u16(custom ? static_cast<std::uint16_t>(std::min(height, 8192))
                           : kDefaultRowHeight);
            out.u16(0);
            out.u16(0);
            out.u16(custom ? 0x0140 : 0x0100); // custom height flag; a reserved bit that is 1
            out.u16(kDefaultCellXf);
            out.end();
            i = last + 1;
        }
        for (std::size_t i = begin; i < end; ++i) {
            writeCell(out, m_grid.cells[i], part.firstRow);
        }
    }

    // Record sizes, header included: a ROW record, a text or RK cell, a NUMBER cell.
    static constexpr std::uint64_t kRowRecordBytes = 4 + 16;
    static constexpr std::uint64_t kShortCellBytes = 4 + 10;
    static constexpr std::uint64_t kNumberCellBytes = 4 + 14;

    static std::uint64_t cellRecordBytes(const Cell& cell) {
        return cell.kind == CellKind::Text || biff::encodeRk(cell.number) ? kShortCellBytes
                                                                          : kNumberCellBytes;
    }

    static void writeCell(RecordWriter& out, const Cell& cell, std::uint32_t firstRow) {
        auto row = static_cast<std::uint16_t>(cell.row - firstRow);
        auto xf = static_cast<std::uint16_t>(kFirstGridXf + cell.style);
        if (cell.kind == CellKind::Text) {
            out.begin(record::kLabelSst);
            out.u16(row);
            out.u16(cell.column);
            out.u16(xf);
            out.u32(cell.text);
            out.end();
        } else if (auto rk = biff::encodeRk(cell.number)) {
            out.begin(record::kRk);
            out.u16(row);
            out.u16(cell.column);
            out.u16(xf);
            out.u32(*rk);
            out.end();
        } else {
            out.begin(record::kNumber);
            out.u16(row);
            out.u16(cell.column);
            out.u16(xf);
            out.f64(cell.number);
            out.end();
        }
    }

    static void writeWindow2(RecordWriter& out, bool selected) {
        out.begin(record::kWindow2);
        // Grid lines, headers, zeros, outline symbols shown; the first sheet is the active one.
        out.u16(selected ? 0x06B6 : 0x00B6);
        out.u16(0);  // top row
        out.u16(0);  // left column
        out.u16(64); // grid line colour: automatic
        out.u16(0);
        out.u16(0); // zoom in page break preview: default
        out.u16(0); // zoom in normal view: default
        out.u32(0);
        out.end();
    }

    const CellGrid& m_grid;
    std::vector<SheetPart> m_sheets;
    std::vector<std::uint16_t> m_formatIds; // per grid format
    std::vector<std::string> m_customFormats;
};

// --- the file ----------------------------------------------------------------------------

[[noreturn]] void fail(const std::filesystem::path& path, const std::string& cause) {
    throw Error(kFileAccessError, kWorkbookSource,
                "Cannot write the workbook \"" + path.string() + "\": " + cause);
}

std::string gsfCause(GsfOutput* output, const char* fallback) {
    const GError* error = output != nullptr ? gsf_output_error(output) : nullptr;
    return error != nullptr && error->message != nullptr ? error->message : fallback;
}

/// The compound file being written: the file sink, the OLE2 container over it and the
/// "Workbook" stream inside. Closes and releases whatever is still open when destroyed.
class Container {
  public:
    explicit Container(const std::filesystem::path& target) : m_target(target) {
        static std::once_flag initialised;
        std::call_once(initialised, [] { gsf_init(); });
    }

    /// Takes over `file` (closed on every path from here on) and opens the container in it.
    void open(const std::filesystem::path& temporary, std::FILE* file) {
        m_sink = gsf_output_stdio_new_FILE(temporary.string().c_str(), file, FALSE);
        if (m_sink == nullptr) {
            std::fclose(file);
            fail(m_target, "the file cannot be opened for writing");
        }
        m_ole = gsf_outfile_msole_new(m_sink);
        m_stream = m_ole != nullptr ? gsf_outfile_new_child(m_ole, "Workbook", FALSE) : nullptr;
        if (m_stream == nullptr) {
            fail(m_target, gsfCause(m_sink, "the compound file cannot be created"));
        }
    }
    ~Container() {
        for (GsfOutput* output : {m_stream, m_ole ? GSF_OUTPUT(m_ole) : nullptr, m_sink}) {
            if (output != nullptr) {
                if (!gsf_output_is_closed(output)) {
                    gsf_output_close(output);
                }
                g_object_unref(output);
            }
        }
    }
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;

    void write(std::span<const std::uint8_t> bytes) {
        if (!gsf_output_write(m_stream, bytes.size(), bytes.data())) {
            fail(m_target, gsfCause(m_stream, "writing failed"));
        }
    }

    /// Completes the stream, the directory of the compound file and the file itself.
    void close() {
        // Closing the container closes the file under it as well.
        for (GsfOutput* output : {m_stream, GSF_OUTPUT(m_ole), m_sink}) {
            if (!gsf_output_is_closed(output) && !gsf_output_close(output)) {
                fail(m_target, gsfCause(output, "closing the file failed"));
            }
        }
    }

  private:
    const std::filesystem::path& m_target;
    GsfOutput* m_sink = nullptr;
    GsfOutfile* m_ole = nullptr;
    GsfOutput* m_stream = nullptr;
};

/// A new file beside the target, opened exclusively so two writers never share one.
std::FILE* createTemporary(const std::filesystem::path& target, std::filesystem::path& temporary) {
    std::filesystem::path folder = target.parent_path();
    std::random_device entropy;
    int error = 0;
    for (int attempt = 0; attempt < 16; ++attempt) {
        char suffix[32];
        std::snprintf(suffix, sizeof suffix, ".%08x.tmp", static_cast<unsigned>(entropy()));
        temporary = folder / ("." + target.filename().string() + suffix);
        if (std::FILE* file = std::fopen(temporary.string().c_str(), "wbx")) {
            return file;
        }
        error = errno;
        if (error != EEXIST) {
            break;
        }
    }
    fail(target, std::strerror(error));
}

} // namespace

void writeWorkbook(const page::Pages& pages, const std::filesystem::path& path,
                   const std::string& sheetName) {
    writeWorkbook(buildCellGrid(pages), path, sheetName.empty() ? pages.title : sheetName);
}

void writeWorkbook(const CellGrid& grid, const std::filesystem::path& path,
                   const std::string& sheetName) {
    if (path.filename().empty()) {
        fail(path, "the path names no file");
    }
    if (const std::string refusal = replaceRefusal(path); !refusal.empty()) {
        fail(path, refusal);
    }
    WorkbookStream stream(grid, sheetName);
    std::filesystem::path temporary;
    std::FILE* file = createTemporary(path, temporary);
    try {
        {
            // libgsf and the GLib object system under it make no promise for threads writing
            // containers at once, so one thread at a time writes its compound file; the
            // stream's bytes are worked out before, in parallel.
            static std::mutex gsfMutex;
            std::lock_guard gsfLock(gsfMutex);
            Container container(path);
            container.open(temporary, file);
            stream.write([&](std::span<const std::uint8_t> bytes) { container.write(bytes); });
            container.close();
        }
        std::error_code error;
        std::filesystem::rename(temporary, path, error);
        if (error) {
            fail(path, error.message());
        }
    } catch (const Error&) {
        std::error_code ignored;
        std::filesystem::remove(temporary, ignored);
        throw;
    } catch (const std::exception& e) {
        std::error_code ignored;
        std::filesystem::remove(temporary, ignored);
        fail(path, e.what());
    }
}

void writeWorkbookStream(const CellGrid& grid, const std::string& sheetName,
                         const std::function<void(std::span<const std::uint8_t>)>& sink) {
    WorkbookStream(grid, sheetName).write(sink);
}

std::string excelSheetName(std::string_view title, std::size_t maxLength) {
    biff::BiffString units;
    biff::toBiffString(title, title.size(), units);
    std::u16string name;
    for (char16_t unit : units.units) {
        if (unit < 0x20 || unit == 0x7F) {
            continue;
        }
        bool reserved = std::u16string_view(u":\\/?*[]").find(unit) != std::u16string_view::npos;
        name.push_back(reserved ? u'_' : unit);
    }
    auto trim = [&] {
        auto blank = [](char16_t c) { return c == u' ' || c == u'\''; };
        while (!name.empty() && blank(name.back())) {
            name.pop_back();
        }
        std::size_t lead = 0;
        while (lead < name.size() && blank(name[lead])) {
            ++lead;
        }
        name.erase(0, lead);
    };
    trim();
    if (name.size() > maxLength) {
        bool splitsPair =
            maxLength > 0 && name[maxLength - 1] >= 0xD800 && name[maxLength - 1] < 0xDC00;
        name.resize(splitsPair ? maxLength - 1 : maxLength);
        trim();
    }
    std::string out;
    for (std::size_t i = 0; i < name.size(); ++i) {
        char32_t code = name[i];
        if (code >= 0xD800 && code < 0xDC00 && i + 1 < name.size()) {
            code = 0x10000 + ((code - 0xD800) << 10) + (name[++i] - 0xDC00);
        }
        if (code < 0x80) {
            out += static_cast<char>(code);
        } else if (code < 0x800) {
            out += static_cast<char>(0xC0 | (code >> 6));
            out += static_cast<char>(0x80 | (code & 0x3F));
        } else if (code < 0x10000) {
            out += static_cast<char>(0xE0 | (code >> 12));
            out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (code & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (code >> 18));
            out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    if (out.empty()) {
        return "Sheet1";
    }
    std::string lower = out;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; });
    return lower == "history" ? out + "_" : out;
}

namespace {

class WorkbookExportFilter : public page::ExportFilter {
  public:
    void setFileName(const std::string& fileName) override { m_fileName = fileName; }
    void exportPages(const page::Pages& pages) override { writeWorkbook(pages, m_fileName); }

  private:
    std::string m_fileName;
};

} // namespace

std::unique_ptr<page::ExportFilter> makeWorkbookExportFilter() {
    return std::make_unique<WorkbookExportFilter>();
}

} // namespace qr::output
