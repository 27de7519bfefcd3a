#pragma once
// How a workbook looks, as opposed to what its cells hold (readWorkbook): the column widths,
// fonts and number formats of cells, merged ranges, row heights and the page footer of each
// sheet. libfreexl reads values only, so this reads the "Workbook" stream's BIFF8
// records itself, through libgsf's compound-file reader; it shares nothing with the writer.
//
// It also knows how wide a text comes out in Excel: the glyph advances of Arial (Liberation
// Sans has the same metrics), at the cell's font size, at 96 dots per inch, against the
// column's width in pixels, measured in units of the width of "0" in the workbook's default
// font as Excel measures them.

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace qr::test {

struct WorkbookFont {
    double points = 10;
    bool bold = false;
};

/// One cell format (XF record).
struct WorkbookXf {
    std::uint16_t font = 0;   // as XF records count fonts: index 4 does not exist
    std::uint16_t format = 0; // number format identifier
};

/// A rectangle of merged cells, inclusive.
struct MergedRange {
    unsigned firstRow = 0, lastRow = 0;
    unsigned short firstColumn = 0, lastColumn = 0;
};

struct SheetLayout {
    std::string name;
    /// COLINFO widths in 1/256 of a character of the default font, padding included.
    std::map<unsigned short, unsigned> columnWidths;
    /// DEFCOLWIDTH: characters, padding excluded, for columns without a COLINFO.
    unsigned defaultColumnWidth = 8;
    /// ROW heights in twips.
    std::map<unsigned, unsigned> rowHeights;
    /// (row, column) -> XF index of every cell record.
    std::map<std::pair<unsigned, unsigned short>, std::uint16_t> cellXfs;
    std::vector<MergedRange> merged;
    std::optional<std::string> footer;

    /// The merged range holding (row, column), if any.
    const MergedRange* mergeAt(unsigned row, unsigned short column) const;
};

struct WorkbookLayout {
    /// In the order XF records index them (the missing index 4 is skipped).
    std::map<std::uint16_t, WorkbookFont> fonts;
    /// FORMAT records by identifier; built-in identifiers have none.
    std::map<std::uint16_t, std::string> formats;
    std::vector<WorkbookXf> xfs;
    std::vector<SheetLayout> sheets;

    /// The font and the Excel number format of a cell of `sheet`.
    const WorkbookFont& fontOf(const SheetLayout& sheet, unsigned row, unsigned short column) const;
    std::string formatOf(const SheetLayout& sheet, unsigned row, unsigned short column) const;
    /// Width in pixels of "0" in the default font (the first FONT), as Excel rounds it.
    int digitPixels() const;
    /// Width of a column in pixels, padding included.
    int columnPixels(const SheetLayout& sheet, unsigned short column) const;
};

/// The bytes of the "Workbook" stream of an .xls file; fails the calling test and returns none
/// when there is no such stream.
std::vector<std::uint8_t> workbookStream(const std::filesystem::path& path);

/// Reads the layout of an .xls file; fails the calling test and returns an empty layout when
/// the file is no compound file with a BIFF8 workbook stream.
WorkbookLayout readWorkbookLayout(const std::filesystem::path& path);

/// Width in pixels of one line of `text` (UTF-8) in Arial of `font`'s size and weight at 96
/// dots per inch, without hinting: the widths Excel lays a cell's text out with, give or take
/// the rounding of each glyph.
double textPixels(const std::string& text, const WorkbookFont& font);

/// The text Excel shows for `value` under the Excel number format `format` ("General",
/// "$#,##0.00", `\$###,###.00`, ...).
std::string excelFormatted(double value, const std::string& format);

} // namespace qr::test
