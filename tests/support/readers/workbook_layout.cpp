#include "support/readers/workbook_layout.hpp"

#include "platform/core/number_format.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <gsf/gsf-infile-msole.h>
#include <gsf/gsf-infile.h>
#include <gsf/gsf-input-stdio.h>
#include <gsf/gsf-utils.h>
#include <gtest/gtest.h>
#include <mutex>

namespace qr::test {

namespace {

constexpr std::uint16_t kBof = 0x0809;
constexpr std::uint16_t kFont = 0x0031;
constexpr std::uint16_t kFormat = 0x041E;
constexpr std::uint16_t kXf = 0x00E0;
constexpr std::uint16_t kBoundSheet = 0x0085;
constexpr std::uint16_t kDefColWidth = 0x0055;
constexpr std::uint16_t kColInfo = 0x007D;
constexpr std::uint16_t kRow = 0x0208;
constexpr std::uint16_t kMergedCells = 0x00E5;
constexpr std::uint16_t kFooter = 0x0015;
constexpr std::uint16_t kWorksheet = 0x0010;
// Cell records whose first six bytes are row, column and XF index.
constexpr std::uint16_t kCellRecords[] = {0x00FD, 0x027E, 0x0203, 0x0204, 0x0201, 0x0205};

// Advance widths of Arial (and of Liberation Sans, metric-compatible with it) for the
// characters 32 to 126, in 1/1000 of the em, regular and bold.
constexpr std::uint16_t kArial[95] = {
    278, 278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333,  278, 278, 556, 556, 556,
    556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556, 1015, 667, 667, 722, 722, 667,
    611, 778, 722, 278, 500, 667, 556, 833, 722, 778, 667, 778, 722, 667,  611, 722, 667, 944, 667,
    667, 611, 278, 278, 278, 469, 556, 333, 556, 556, 500, 556, 556, 278,  556, 556, 222, 222, 500,
    222, 833, 556, 556, 556, 556, 333, 500, 278, 556, 500, 722, 500, 500,  500, 334, 260, 334, 584};
constexpr std::uint16_t kArialBold[95] = {
    278, 333, 474, 556, 556, 889, 722, 238, 333, 333, 389, 584, 278, 333, 278, 278, 556, 556, 556,
    556, 556, 556, 556, 556, 556, 556, 333, 333, 584, 584, 584, 611, 975, 722, 722, 722, 722, 667,
    611, 778, 722, 278, 556, 722, 611, 833, 722, 778, 667, 778, 722, 667, 611, 722, 667, 944, 667,
    667, 611, 333, 278, 333, 584, 556, 333, 556, 611, 556, 611, 556, 333, 611, 611, 278, 278, 556,
    278, 889, 611, 611, 611, 611, 389, 556, 333, 611, 556, 778, 556, 556, 500, 389, 280, 389, 584};
// Characters outside the table count as wide as "W", the widest letter.
constexpr std::uint16_t kWide = 944;

class Bytes {
  public:
    Bytes(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}
    std::size_t size() const { return m_size; }
    std::uint8_t u8(std::size_t at) const { return at < m_size ? m_data[at] : 0; }
    std::uint16_t u16(std::size_t at) const { return u8(at) | u8(at + 1) << 8; }
    std::uint32_t u32(std::size_t at) const { return u16(at) | std::uint32_t{u16(at + 2)} << 16; }
    /// A BIFF8 string of `count` characters at `at`, after its flags byte (Latin-1 or UTF-16),
    /// as UTF-8.
    std::string chars(std::size_t at, std::size_t count) const {
        const bool wide = (u8(at) & 1) != 0;
        std::string out;
        for (std::size_t i = 0; i < count; ++i) {
            const unsigned code = wide ? u16(at + 1 + 2 * i) : u8(at + 1 + i);
            if (code < 0x80) {
                out += static_cast<char>(code);
            } else if (code < 0x800) {
                out += static_cast<char>(0xC0 | code >> 6);
                out += static_cast<char>(0x80 | (code & 0x3F));
            } else {
                out += static_cast<char>(0xE0 | code >> 12);
                out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
                out += static_cast<char>(0x80 | (code & 0x3F));
            }
        }
        return out;
    }

  private:
    const std::uint8_t* m_data;
    std::size_t m_size;
};

void readSheetRecord(SheetLayout& sheet, std::uint16_t type, const Bytes& r) {
    if (type == kDefColWidth) {
        sheet.defaultColumnWidth = r.u16(0);
    } else if (type == kColInfo) {
        for (unsigned c = r.u16(0); c <= r.u16(2); ++c)
            sheet.columnWidths[static_cast<unsigned short>(c)] = r.u16(4);
    } else if (type == kRow) {
        sheet.rowHeights[r.u16(0)] = r.u16(6) & 0x7FFF;
    } else if (type == kMergedCells) {
        for (unsigned i = 0; i < r.u16(0); ++i) {
            const std::size_t at = 2 + 8 * i;
            sheet.merged.push_back({r.u16(at), r.u16(at + 2), r.u16(at + 4), r.u16(at + 6)});
        }
    } else if (type == kFooter) {
        sheet.footer = r.size() == 0 ? std::string() : r.chars(2, r.u16(0));
    } else if (std::find(std::begin(kCellRecords), std::end(kCellRecords), type) !=
               std::end(kCellRecords)) {
        sheet.cellXfs[{r.u16(0), r.u16(2)}] = r.u16(4);
    }
}

/// A sheet as the sheet list names it: its name and where its BOF record starts.
struct ListedSheet {
    std::string name;
    std::size_t offset = 0;
};

void readGlobalRecord(WorkbookLayout& layout, std::vector<ListedSheet>& listed,
                      std::uint16_t type, const Bytes& r) {
    if (type == kFont) {
        WorkbookFont font;
        font.points = r.u16(0) / 20.0;
        font.bold = r.u16(6) >= 700;
        const auto index = static_cast<std::uint16_t>(layout.fonts.size());
        layout.fonts[index >= 4 ? index + 1 : index] = font;
    } else if (type == kFormat) {
        layout.formats[r.u16(0)] = r.chars(4, r.u16(2));
    } else if (type == kXf) {
        layout.xfs.push_back({r.u16(0), r.u16(2)});
    } else if (type == kBoundSheet) {
        listed.push_back({r.chars(7, r.u8(6)), r.u32(0)});
    }
}

} // namespace

std::vector<std::uint8_t> workbookStream(const std::filesystem::path& path) {
    static std::once_flag initialised;
    std::call_once(initialised, [] { gsf_init(); });
    std::vector<std::uint8_t> bytes;
    GError* error = nullptr;
    GsfInput* file = gsf_input_stdio_new(path.c_str(), &error);
    if (file == nullptr) {
        ADD_FAILURE() << "cannot open " << path << ": " << (error ? error->message : "?");
        if (error)
            g_error_free(error);
        return bytes;
    }
    GsfInfile* ole = gsf_infile_msole_new(file, &error);
    GsfInput* stream = ole ? gsf_infile_child_by_name(ole, "Workbook") : nullptr;
    if (stream == nullptr) {
        ADD_FAILURE() << path << " holds no Workbook stream" << (error ? error->message : "");
    } else {
        bytes.resize(static_cast<std::size_t>(gsf_input_size(stream)));
        if (!bytes.empty() && gsf_input_read(stream, bytes.size(), bytes.data()) == nullptr) {
            ADD_FAILURE() << "cannot read the Workbook stream of " << path;
            bytes.clear();
        }
        g_object_unref(stream);
    }
    if (error)
        g_error_free(error);
    if (ole)
        g_object_unref(ole);
    g_object_unref(file);
    return bytes;
}

const MergedRange* SheetLayout::mergeAt(unsigned row, unsigned short column) const {
    for (const MergedRange& range : merged) {
        if (row >= range.firstRow && row <= range.lastRow && column >= range.firstColumn &&
            column <= range.lastColumn)
            return &range;
    }
    return nullptr;
}

WorkbookLayout readWorkbookLayout(const std::filesystem::path& path) {
    WorkbookLayout layout;
    const std::vector<std::uint8_t> stream = workbookStream(path);
    std::vector<ListedSheet> listed;
    SheetLayout* sheet = nullptr;
    for (std::size_t at = 0; at + 4 <= stream.size();) {
        const std::size_t start = at;
        const Bytes head(stream.data() + at, 4);
        const std::uint16_t type = head.u16(0);
        const std::size_t size = std::min<std::size_t>(head.u16(2), stream.size() - at - 4);
        const Bytes record(stream.data() + at + 4, size);
        at += 4 + size;
        if (type == 0 && size == 0)
            break; // the padding after the last EOF
        if (type == kBof) {
            if (record.u16(2) == kWorksheet) {
                layout.sheets.emplace_back();
                sheet = &layout.sheets.back();
                const std::size_t index = layout.sheets.size() - 1;
                sheet->name = index < listed.size() ? listed[index].name : std::string();
                // Readers find a sheet by the offset the sheet list gives, not by walking.
                if (index < listed.size() && listed[index].offset != start)
                    ADD_FAILURE() << "sheet " << index << " starts at " << start
                                  << ", the sheet list says " << listed[index].offset;
            } else {
                sheet = nullptr;
            }
        } else if (sheet != nullptr) {
            readSheetRecord(*sheet, type, record);
        } else {
            readGlobalRecord(layout, listed, type, record);
        }
    }
    return layout;
}

const WorkbookFont& WorkbookLayout::fontOf(const SheetLayout& sheet, unsigned row,
                                           unsigned short column) const {
    static const WorkbookFont kDefault;
    auto cell = sheet.cellXfs.find({row, column});
    if (cell == sheet.cellXfs.end() || cell->second >= xfs.size())
        return kDefault;
    auto font = fonts.find(xfs[cell->second].font);
    return font == fonts.end() ? kDefault : font->second;
}

std::string WorkbookLayout::formatOf(const SheetLayout& sheet, unsigned row,
                                     unsigned short column) const {
    static const std::map<std::uint16_t, std::string> kBuiltIn{
        {0, "General"}, {1, "0"},      {2, "0.00"},      {3, "#,##0"}, {4, "#,##0.00"},
        {9, "0%"},      {10, "0.00%"}, {11, "0.00E+00"}, {49, "@"}};
    auto cell = sheet.cellXfs.find({row, column});
    if (cell == sheet.cellXfs.end() || cell->second >= xfs.size())
        return "General";
    const std::uint16_t id = xfs[cell->second].format;
    if (auto custom = formats.find(id); custom != formats.end())
        return custom->second;
    auto known = kBuiltIn.find(id);
    return known == kBuiltIn.end() ? "General" : known->second;
}

int WorkbookLayout::digitPixels() const {
    const WorkbookFont font = fonts.empty() ? WorkbookFont{} : fonts.begin()->second;
    return static_cast<int>(std::lround(textPixels("0", font)));
}

int WorkbookLayout::columnPixels(const SheetLayout& sheet, unsigned short column) const {
    const int digit = digitPixels();
    auto width = sheet.columnWidths.find(column);
    if (width == sheet.columnWidths.end())
        return static_cast<int>(sheet.defaultColumnWidth) * digit + 5;
    // Excel's rule: pixels = trunc(((256 w + trunc(128 / digit)) / 256) * digit).
    return static_cast<int>((width->second + 128 / digit) * digit / 256);
}

double textPixels(const std::string& text, const WorkbookFont& font) {
    double units = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if ((c & 0xC0) == 0x80)
            continue; // the rest of a UTF-8 sequence
        if (c >= 32 && c < 127)
            units += (font.bold ? kArialBold : kArial)[c - 32];
        else
            units += kWide;
    }
    return units / 1000.0 * font.points * 96.0 / 72.0;
}

std::string excelFormatted(double value, const std::string& format) {
    if (format == "General" || format == "@") {
        char text[32];
        std::snprintf(text, sizeof text, "%.10g", value);
        return text;
    }
    return NumberFormat::parse(format).format(value);
}

} // namespace qr::test
